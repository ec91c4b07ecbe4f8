#include "view/commit.h"

#include "view_fixture.h"

namespace vantrel {
namespace {

class Commit : public ViewTest {
protected:
    void Select(Scdr& node)
    {
        EXPECT_EQ(SelectScdr(view, node, false), 0);
        log.Clear();
    }
    bool Check() { return CheckScdr(view, *view.root) != 0; }

    static std::vector<double> Numbers(const Scdr& node)
    {
        std::vector<double> values;
        for (std::int64_t i = 0; i < node.ElementCount; ++i) {
            switch (node.Type) {
            case TypeBoolean: values.push_back(GetBit(node.data, i) ? 1 : 0); break;
            case TypeInteger:
                values.push_back(static_cast<double>(static_cast<const std::int64_t*>(node.data)[i]));
                break;
            case TypeReal: values.push_back(static_cast<const double*>(node.data)[i]); break;
            default: ADD_FAILURE() << "no numbers: type " << node.Type; return values;
            }
        }
        return values;
    }
};

TEST_F(Commit, TextThatNobodyChangedStays)
{
    Scdr& root = Show(Vec(Word(u"abc"), Integers({2}, {1, 2})));
    Scdr* const item = &Item(root, 0);
    EXPECT_TRUE(Check());
    EXPECT_EQ(&Item(root, 0), item);
    EXPECT_TRUE(log.calls.empty());
    EXPECT_EQ(primitiveCalls, 0);
}

TEST_F(Commit, TypedTextBecomesTheArray)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    Type(Item(root, 0), 0, u"longer");
    EXPECT_TRUE(Check());
    const Scdr& item = Item(root, 0);
    EXPECT_EQ(DataText(item), u"longer");
    EXPECT_EQ(item.Rank, 1);
    EXPECT_EQ(item.parent, &root);
    EXPECT_EQ(RowText(item, 0), u"longer");
    EXPECT_EQ(item.records.flags & RecordsEdited, 0);
    EXPECT_EQ(item.width, 48 + 22);
    EXPECT_EQ(OriginOf(Item(root, 1)).x, 7 + 65);
    EXPECT_EQ(root.width, 65 + 25 + 5 + 14);
    EXPECT_EQ(view.scroll.horizontal.dataSize, root.width);
    EXPECT_EQ(log.Count("notify 6"), 1);
    EXPECT_EQ(log.Count("notify 1"), 1);
    EXPECT_EQ(log.Count("notify 5"), 0);
    EXPECT_EQ(view.flags & ViewModified, 0); // typing says so itself
}

TEST_F(Commit, LinesAreJoined)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    OwnedRecords line;
    ASSERT_TRUE(StringToRecords(&context, u"second", 6, line.list, false));
    InsertRecords(Item(root, 0).records, 1, line.list);
    MarkEdited(Item(root, 0));
    EXPECT_TRUE(Check());
    EXPECT_EQ(DataText(Item(root, 0)), u"abc\r\nsecond");
    EXPECT_EQ(Item(root, 0).records.count, 2);
}

TEST_F(Commit, NumbersAreReadAsNumbers)
{
    Scdr& root = Show(Vec(Integers({2}, {1, 2}), Integers({}, {3}), Integers({2, 2}, {1, 2, 3, 4})));
    Type(Item(root, 0), 0, u"10 20.5 30");
    Type(Item(root, 1), 0, u"44");
    Type(Item(root, 2), 1, u"5 6 7");
    EXPECT_TRUE(Check());
    EXPECT_EQ(Numbers(Item(root, 0)), (std::vector<double>{10, 20.5, 30}));
    EXPECT_EQ(Item(root, 1).Rank, 0);
    EXPECT_EQ(Numbers(Item(root, 1)), (std::vector<double>{44}));
    EXPECT_EQ(Item(root, 2).Shape[1], 3);
    EXPECT_EQ(Numbers(Item(root, 2)), (std::vector<double>{1, 2, 0, 5, 6, 7}));
}

TEST_F(Commit, AVectorThatIsNoNumberBecomesText)
{
    Scdr& root = Show(Vec(Integers({2}, {1, 2})));
    Type(Item(root, 0), 0, u"abc");
    EXPECT_TRUE(Check());
    EXPECT_EQ(Item(root, 0).Type, std::uint32_t{TypeCharacter});
    EXPECT_EQ(DataText(Item(root, 0)), u"abc");
    // That it was no number must not come up as an error when the edit ends.
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
    EXPECT_EQ(log.Count("notify 5"), 0);
}

TEST_F(Commit, AMatrixThatIsNoNumberKeepsItsTextAndItsNode)
{
    Scdr& root = Show(Vec(Integers({2, 2}, {1, 2, 3, 4})));
    Scdr* const item = &Item(root, 0);
    Type(*item, 1, u"3 x");
    EXPECT_FALSE(Check());
    EXPECT_EQ(&Item(root, 0), item);
    EXPECT_EQ(RowText(*item, 1), u"3 x");
    EXPECT_TRUE((item->records.flags & RecordsEdited) != 0);
    EXPECT_EQ(Numbers(*item), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_NE(environment.ErrorCode, VTERROR_CODE::NoError);
    EXPECT_EQ(log.Count("notify 5"), 1);
    EXPECT_EQ(log.Count("notify 1"), 0);
}

TEST_F(Commit, ALackOfMemoryDoesNotTurnNumbersIntoText)
{
    Scdr& root = Show(Vec(Integers({2}, {1, 2})));
    Type(Item(root, 0), 0, u"5 6");
    environment.Operations.CallPrimitiveReturningScdr = [](EditContext* editContext, std::int32_t,
                                                           const Scdr*, const Scdr*) -> Scdr* {
        SetErrorCode(editContext, VTERROR_CODE::WsFull);
        return nullptr;
    };
    EXPECT_FALSE(Check());
    EXPECT_EQ(Item(root, 0).Type, std::uint32_t{TypeInteger});
    EXPECT_EQ(RowText(Item(root, 0), 0), u"5 6");
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::WsFull);
}

TEST_F(Commit, StopsAtTheFirstFailureAndKeepsWhatPassed)
{
    Scdr& root = Show(Vec(Word(u"a"), Integers({1, 1}, {1}), Word(u"b")));
    Type(Item(root, 0), 0, u"passed");
    Type(Item(root, 1), 0, u"x");
    Type(Item(root, 2), 0, u"waiting");
    EXPECT_FALSE(Check());
    EXPECT_EQ(DataText(Item(root, 0)), u"passed");
    EXPECT_EQ(DataText(Item(root, 2)), u"b");
    EXPECT_EQ(RowText(Item(root, 2), 0), u"waiting");
    EXPECT_TRUE((Item(root, 2).records.flags & RecordsEdited) != 0);
    EXPECT_EQ(OriginOf(Item(root, 1)).x, 7 + 48 + 22 - 5); // what passed is laid out
}

TEST_F(Commit, ManyChangesTakeOneLayout)
{
    Scdr& root = Show(Filled({50}));
    for (std::int64_t i = 0; i < 50; i += 7)
        Type(Item(root, i), 0, u"xyz");
    EXPECT_TRUE(Check());
    EXPECT_EQ(log.Count("status 131"), 1);
    EXPECT_EQ(Item(root, 49).width, 46);
    EXPECT_EQ(log.Count("notify 1"), 1);
}

TEST_F(Commit, OnlyTheGivenPartIsCommitted)
{
    Scdr& root = Show(Vec(Word(u"a"), Vec(Word(u"b"))));
    Type(Item(root, 0), 0, u"x");
    Type(Item(Item(root, 1), 0), 0, u"y");
    EXPECT_NE(CheckScdr(view, Item(root, 1)), 0);
    EXPECT_EQ(DataText(Item(root, 0)), u"a");
    EXPECT_EQ(DataText(Item(Item(root, 1), 0)), u"y");
}

TEST_F(Commit, TheSelectionMovesToTheNewNode)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    Select(Item(root, 1));
    Type(Item(root, 1), 0, u"ef");
    EXPECT_TRUE(Check());
    EXPECT_EQ(Selected(view), &Item(root, 1));
    EXPECT_TRUE(view.editorActive);
    EXPECT_GE(log.Count("reload"), 1);
    EXPECT_EQ(log.Count("place 53 12 28 28"), 1);
}

TEST_F(Commit, TheEditorIsChangedWhereAScalarBecomesAVector)
{
    Scdr& root = Show(Vec(Integers({}, {1})));
    Select(Item(root, 0));
    Type(Item(root, 0), 0, u"1 2 3");
    EXPECT_TRUE(Check());
    EXPECT_EQ(Item(root, 0).Rank, 1);
    EXPECT_EQ(log.Count("begin array"), 1);
}

TEST_F(Commit, AnEmptyScalarCellIsABlankOrZero)
{
    Scdr& root = Show(Vec(Characters({}, u"x"), Integers({}, {7})));
    Type(Item(root, 0), 0, u"");
    Type(Item(root, 1), 0, u"");
    EXPECT_TRUE(Check());
    EXPECT_EQ(DataText(Item(root, 0)), u" ");
    EXPECT_EQ(Numbers(Item(root, 1)), (std::vector<double>{0}));
    EXPECT_EQ(Item(root, 1).Rank, 0);
}

TEST_F(Commit, ASimpleRootIsReplaced)
{
    Scdr& old = Show(Word(u"abc"));
    Type(old, 0, u"new");
    EXPECT_TRUE(Check());
    EXPECT_EQ(DataText(*view.root), u"new");
    EXPECT_EQ(Selected(view), view.root);
    EXPECT_EQ(view.top, view.root);
    EXPECT_EQ(view.root->parent, nullptr);
    EXPECT_EQ(view.root->Flags & FlagMaximized, FlagMaximized);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(view.top, view.root);
    EXPECT_EQ(view.root->width, 46);
}

TEST_F(Commit, AMaximisedItemStaysMaximised)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d"), Word(u"e")));
    Select(Item(root, 1));
    EXPECT_EQ(MaximizeScdr(view), 0);
    Type(Item(root, 1), 0, u"longer");
    EXPECT_TRUE(Check());
    Scdr& item = Item(root, 1);
    EXPECT_EQ(view.top, &item);
    EXPECT_EQ(Selected(view), &item);
    EXPECT_EQ(item.extra->savedParent, &root);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(item.parent, &root);
    EXPECT_EQ(item.width, 70);
    EXPECT_EQ(OriginOf(Item(root, 2)).x, 7 + 41 + 65);
}

TEST_F(Commit, InsideAMaximisedBox)
{
    Scdr& root = Show(Vec(Word(u"abc"), Vec(Word(u"d"))));
    Select(Item(root, 1));
    EXPECT_EQ(MaximizeScdr(view), 0);
    Type(Item(Item(root, 1), 0), 0, u"longer");
    EXPECT_TRUE(Check());
    EXPECT_EQ(view.top, &Item(root, 1));
    EXPECT_EQ(view.top->width, 70 + 14);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(root.width, 41 + 79 + 5 + 14);
}

TEST_F(Commit, AClosedBoxStaysClosed)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    Select(Item(root, 0));
    Type(Item(root, 0), 0, u"longer");
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_TRUE(Check());
    Scdr& item = Item(root, 0);
    EXPECT_EQ(item.Flags & FlagMinimized, FlagMinimized);
    EXPECT_EQ(item.width, 30);
    EXPECT_FALSE(view.editorActive);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(item.width, 70);
}

TEST_F(Commit, TheShownPlaneStays)
{
    Scdr& old = Show(Characters({3, 2, 1}, u"abcdef"));
    ChangePlane(view, 4625);
    Type(old, 5, u"Z");
    EXPECT_TRUE(Check());
    EXPECT_EQ(DataText(*view.root), u"abcdeZ");
    EXPECT_EQ(CurrentPlane(*view.root), 2);
}

TEST_F(Commit, CheckingAndAligningIsQuietAboutSizes)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    Select(Item(root, 0));
    EXPECT_NE(CheckAndAlignScdr(view), 0);
    EXPECT_TRUE(log.statuses.empty());
    EXPECT_EQ(log.Count("reload"), 1);
    EXPECT_EQ(log.Count("place 12 12 36 28"), 1);
    EXPECT_EQ(log.Count("invalidate"), 1);
    EXPECT_EQ(log.Count("notify 1"), 1);
    EXPECT_EQ(view.flags & (ViewQuiet | ViewBusy), 0);
}

TEST_F(Commit, CheckingAndAligningCommits)
{
    Scdr& root = Show(Vec(Integers({1, 1}, {1})));
    Type(Item(root, 0), 0, u"12");
    EXPECT_NE(CheckAndAlignScdr(view), 0);
    EXPECT_EQ(Numbers(Item(root, 0)), (std::vector<double>{12}));
    Type(Item(root, 0), 0, u"x");
    EXPECT_EQ(CheckAndAlignScdr(view), 0);
}

TEST_F(Commit, CheckingWithoutATreeFails)
{
    EXPECT_EQ(CheckAndAlignScdr(view), 0);
}

TEST_F(Commit, TheViewIsBusyMeanwhile)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    Type(Item(root, 0), 0, u"d");
    bool busy = false;
    log.onStatus = [&](const StatusText&) { busy = view.edit.busy; };
    EXPECT_TRUE(Check());
    EXPECT_TRUE(busy);
    EXPECT_FALSE(view.edit.busy);
}

} // namespace
} // namespace vantrel
