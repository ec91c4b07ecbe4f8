// Which arrays hold typed text, and the name that the user points at.
#include "view/edited.h"

#include "action_fixture.h"
#include "view/commit.h"
#include "view/open_object.h"

namespace vantrel {
namespace {

class Edited : public ActionTest {
protected:
    // As the editor leaves the array: changed, while it is the selected one.
    void TypeInto(Scdr& node)
    {
        ASSERT_EQ(SelectScdr(view, node, false), 0);
        SpliceRecord(node.records, 0, 0, 0, u"x", 1);
        node.records.flags |= RecordsEdited;
    }
};

TEST_F(Edited, WhatWasTypedIsFoundInItemOrderHoweverItWasTyped)
{
    Show(Vec(Word(u"a"), Vec(Word(u"b"), NestedOf({1, 2}, Word(u"c"), Word(u"d"))), Word(u"e")));
    TypeInto(At({2}));
    TypeInto(At({1, 1, 1}));
    TypeInto(At({0}));
    TypeInto(At({1, 0}));
    TypeInto(At({2}));
    const Vector<Scdr*> all = EditedBelow(view, *view.root);
    EXPECT_EQ(std::vector<Scdr*>(all.begin(), all.end()),
              (std::vector<Scdr*>{&At({0}), &At({1, 0}), &At({1, 1, 1}), &At({2})}));
    const Vector<Scdr*> some = EditedBelow(view, At({1}));
    EXPECT_EQ(std::vector<Scdr*>(some.begin(), some.end()),
              (std::vector<Scdr*>{&At({1, 0}), &At({1, 1, 1})}));
}

TEST_F(Edited, ASelectionThatLeavesNothingTypedIsNotNoted)
{
    Show(Vec(Word(u"a"), Word(u"b")));
    SelectAt({0});
    SelectAt({1});
    EXPECT_TRUE(EditedBelow(view, *view.root).empty());
    EXPECT_TRUE(view.edited.empty());
}

TEST_F(Edited, WithoutRoomForTheListEverythingIsLookedAt)
{
    Show(Vec(Word(u"a"), Word(u"b")));
    TypeInto(At({0}));
    ArmAllocationFault(1, false);
    MakeSelected(view, &At({1}));
    EXPECT_EQ(DisarmAllocationFault(), 1);
    EXPECT_TRUE(view.editedUnknown);
    EXPECT_NE(CheckScdr(view, *view.root), 0);
    EXPECT_EQ(DataText(At({0})), u"xa");
}

TEST_F(Edited, WhatIsReplacedIsForgotten)
{
    Show(Vec(Vec(Word(u"a"), Word(u"b")), Word(u"c")));
    TypeInto(At({0, 0}));
    SelectAt({0});
    Run(CommandEnclose);
    EXPECT_TRUE(EditedBelow(view, *view.root).empty());
    Run(CommandUndoArray);
    EXPECT_EQ(Tree(), "General[2](General[2](Character[2]'xa' Character[1]'b') Character[1]'c')");
}

TEST_F(Edited, AnArrayThatFillsTheWindowIsBelowTheOneThatHoldsIt)
{
    Show(Vec(Word(u"a"), Word(u"b")));
    SelectAt({0});
    ASSERT_EQ(MaximizeScdr(view), 0);
    EXPECT_TRUE(IsBelow(*view.root, At({0})));
    EXPECT_FALSE(IsBelow(At({0}), *view.root));
}

TEST_F(Edited, AfterASaveTheNextChangeIsTheFirstAgain)
{
    Show(Vec(Word(u"a"), Word(u"b")));
    TypeInto(At({0}));
    EditStateOf(At({0})).modified = true;
    SelectAt({1});
    EditStateOf(At({1})).modified = true;
    ForgetModified(view);
    EXPECT_FALSE(At({0}).editState->modified);
    EXPECT_FALSE(At({1}).editState->modified);
}

class OpenObject : public ActionTest {
protected:
    OpenObject()
    {
        environment.ValidNameCharacters = u"abcdefgh0123456789";
        environment.LeadingForbiddenCharacters = u"0123456789";
        environment.LongestName = 20;
        environment.Operations.UnicodeToObject = [](EditContext* editContext, const char16_t* text,
                                                    std::int64_t length) -> HostObject {
            name.assign(text, static_cast<std::size_t>(length));
            return editContext;
        };
        context.openVariable = [](EditContext* editContext, HostObject object) -> std::int32_t {
            opened = object == editContext;
            return refuse ? static_cast<std::int32_t>(!SetErrorCode(editContext, VTERROR_CODE::ValueError))
                          : 0;
        };
        opened = false;
        refuse = false;
        name.clear();
    }
    EditState& ShowText(const std::u16string& text)
    {
        Show(Word(text));
        return EditStateOf(*view.root);
    }
    static inline std::u16string name;
    static inline bool opened = false;
    static inline bool refuse = false;
};

TEST_F(OpenObject, TheLineOfTheCaretIsTheName)
{
    EditState& state = ShowText(u"abc\r\n  def  ");
    EXPECT_EQ(NameAtCaret(view), u"abc");
    state.caretLine = state.anchorLine = state.endLine = 1;
    EXPECT_EQ(NameAtCaret(view), u"def");
}

TEST_F(OpenObject, OrWhatIsSelectedInIt)
{
    EditState& state = ShowText(u"abc def gh");
    state.anchorColumn = 7;
    state.endColumn = 3;
    EXPECT_EQ(NameAtCaret(view), u"def");
}

TEST_F(OpenObject, OtherArraysNameNothing)
{
    Show(Integers({2}, {1, 2}));
    EditStateOf(*view.root);
    EXPECT_EQ(NameAtCaret(view), u"");
    Show(Vec(Word(u"abc")));
    EXPECT_EQ(NameAtCaret(view), u"");
    OpenNamedObject(view);
    EXPECT_EQ(LastStatus(), MessageNameIsInvalid);
    EXPECT_FALSE(opened);
}

TEST_F(OpenObject, AVariableIsOpened)
{
    ShowText(u"abc");
    OpenNamedObject(view);
    EXPECT_EQ(name, u"abc");
    EXPECT_TRUE(opened);
    EXPECT_EQ(log.Count("notify 5"), 0);
    refuse = true;
    OpenNamedObject(view);
    EXPECT_EQ(log.Count("notify 5"), 1);
}

} // namespace
} // namespace vantrel
