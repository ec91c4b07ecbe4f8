// Long walks of random commands on random trees: the tree stays whole, boxes stand where a new layout would put them, and undo and redo lead
// through the very states that the commands led through.
#include <algorithm>
#include <random>

#include "action_fixture.h"
#include "view/commit.h"
#include "view/options.h"

namespace vantrel {
namespace {

constexpr std::int32_t Commands[] = {
    CommandCutArray,
    CommandCopyArray,
    CommandPasteArray,
    CommandCheckAndAlign,
    CommandResetAllSizes,
    CommandRestore,
    CommandMinimize,
    CommandMaximize,
    CommandConvertToCharacter,
    CommandConvertToNumeric,
    CommandRavel,
    CommandFirst,
    CommandDisclose,
    CommandEnclose,
    CommandEnlist,
    CommandReverse,
    CommandReverseFirstAxis,
    CommandTranspose,
    CommandSortAscending,
    CommandSortDescending,
    CommandMakeMatrix,
    CommandMakeArrayOfRows,
    CommandReorderAxes,
    CommandExecute,
    CommandInsertItemLeft,
    CommandInsertItemRight,
    CommandInsertColumnLeft,
    CommandInsertColumnRight,
    CommandInsertRowAbove,
    CommandInsertRowBelow,
    CommandPlaneUp,
    4623,
    4625,
    CommandUndoArray,
    CommandUndoArray,
    CommandUndoArray,
    CommandRedoArray,
    CommandRedoArray,
};
constexpr std::size_t LargestTree = 3000; // as text; a larger one is left for a new one

class ActionWalk : public ActionTest {
protected:
    std::mt19937 random;
    std::vector<std::string> states; // by the number of actions that can be undone

    ActionWalk()
    {
        log.onAxes = [this](const Scdr& node, std::int32_t* axes) {
            std::shuffle(axes, axes + node.Rank, random);
            return Pick(0, 4) != 0;
        };
    }

    int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

    // As interpreters make them, and as they are after every action.
    static void BlankPrototypes(Scdr& node)
    {
        for (std::int64_t i = 0; i < ChildCount(node); ++i) {
            if (node.ElementCount == 0) ZeroScdr(*Children(node)[i]);
            BlankPrototypes(*Children(node)[i]);
        }
    }

    void ShowNewTree()
    {
        test::RandomTreeLimits limits;
        limits.deepest = 3;
        limits.highestRank = 3;
        limits.longestAxis = 3;
        limits.decimals = false; // which only an interpreter can format
        ScdrPtr tree = test::RandomTree(&context, random, limits);
        BlankPrototypes(*tree);
        SetSimplestType(*tree);
        ASSERT_EQ(ShowTree(view, std::move(tree)), 0);
        states.assign(1, State());
        view.flags = 0;
    }

    static void AddMarks(const Scdr& node, std::string& text)
    {
        text += std::to_string(node.Flags & (FlagStructure | FlagKeptSize)) + " ";
        for (std::int64_t i = 0; i < ChildCount(node); ++i)
            AddMarks(*Children(node)[i], text);
    }
    // The tree and what an adapter marked in it.
    std::string State() const
    {
        std::string text = Tree();
        AddMarks(*view.root, text);
        return text;
    }

    void SelectAnything()
    {
        std::vector<Scdr*> nodes;
        const auto collect = [&nodes](auto&& self, Scdr& node) -> void {
            nodes.push_back(&node);
            for (std::int64_t i = 0; i < ChildCount(node); ++i)
                self(self, *Children(node)[i]);
        };
        collect(collect, *view.root);
        ASSERT_EQ(SelectScdr(view,
                             *nodes[static_cast<std::size_t>(Pick(0, static_cast<int>(nodes.size()) - 1))],
                             Pick(0, 1) != 0),
                  0);
    }

    // Actions on the stack: linked entries belong to the one below.
    static std::size_t Actions(const UndoEntry* stack)
    {
        std::size_t count = 0;
        for (; stack != nullptr; stack = stack->next)
            count += (stack->flags & UndoLinked) == 0 ? 1 : 0;
        return count;
    }

    void ExpectKnownState(std::int32_t command, std::size_t undoable)
    {
        const std::size_t now = Actions(view.undo);
        if (now == undoable + 1 && command != CommandRedoArray) {
            states.resize(now);
            states.push_back(State());
            EXPECT_EQ(view.redo, nullptr);
        }
        ASSERT_LT(now, states.size());
        EXPECT_EQ(State(), states[now]);
    }

    void ExpectWhole() const
    {
        const Scdr& selected = *Selected(view);
        EXPECT_TRUE(IsBelow(*view.root, selected));
        EXPECT_TRUE(view.top == view.root || (view.top->Flags & FlagMaximized) != 0);
        EXPECT_TRUE(IsBelow(*view.top, selected));
        EXPECT_EQ(view.flags & ~ViewModified, 0);
        EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
        EXPECT_EQ(view.editorActive, IsShownInEditor(selected));
        // An array that fills the window has left its place meanwhile.
        EXPECT_TRUE(view.top != view.root || test::IsSoundTree(*view.root));
    }

    static void CollectBoxes(const Scdr& node, std::vector<std::int64_t>& boxes)
    {
        const Point64 origin = OriginOf(node);
        boxes.insert(boxes.end(), {origin.x, origin.y, node.width, node.height});
        if ((node.Flags & FlagMinimized) != 0) return;
        for (std::int64_t i = 0; i < ChildCount(node); ++i)
            CollectBoxes(*Children(node)[i], boxes);
    }
    // What fills the window as text has no box of its own.
    void ExpectLaidOut()
    {
        if (IsSimple(*view.top)) return;
        std::vector<std::int64_t> before;
        std::vector<std::int64_t> after;
        CollectBoxes(*view.top, before);
        InvalidateDescendentsOriginsAndSizes(*view.top);
        ASSERT_EQ(CalculateScdrSizes(view), 0);
        CollectBoxes(*view.top, after);
        EXPECT_EQ(before, after);
    }

    // Some of it is no number.
    void TypeSomething()
    {
        Scdr& node = *Selected(view);
        if (!IsShownInEditor(node) || ShownRows(node) < 1) return;
        const std::u16string texts[] = {u"", u"7", u"12 3.5 6", u"two words", u"Wide"};
        const std::int64_t row = FirstShownRow(node) + Pick(0, static_cast<int>(ShownRows(node)) - 1);
        if (row < node.records.count) Type(node, row, texts[Pick(0, 4)]);
    }

    void ChangeOption()
    {
        const std::int32_t options[] = {OptionSmallMargins, OptionWholeCell, OptionRankOneScrollBars,
                                        OptionEnableUndo};
        const std::uint32_t effects = SetViewOption(view, options[Pick(0, 3)], Pick(0, 1) != 0);
        const bool again = (effects & OptionEffectLayOutAgain) != 0;
        EXPECT_TRUE(!again || LayOutAgain(view, Pick(0, 1) != 0) == 0);
        if ((effects & OptionEffectEmptyUndo) != 0) UndoPurge(view);
    }

    void TypingStep()
    {
        SelectAnything();
        if (Pick(0, 9) == 0) ChangeOption();
        if (Pick(0, 2) == 0) TypeSomething();
        if (Pick(0, 2) == 0) SelectAnything();
        const std::int32_t command = Commands[Pick(0, static_cast<int>(std::size(Commands)) - 1)];
        SCOPED_TRACE(std::to_string(command) + " on " + test::DumpTree(*Selected(view)).substr(0, 300));
        Run(command);
        ExpectWhole();
        // Text that is not taken yet may need more room than its box has.
        if (Pick(0, 1) == 0 && CheckAndAlignScdr(view) != 0) ExpectLaidOut();
        environment.ErrorCode = VTERROR_CODE::NoError;
    }

    // The command may be done or not, or some of its steps where it has several.
    void FaultyStep()
    {
        SelectAnything();
        const std::int32_t command = Commands[Pick(0, static_cast<int>(std::size(Commands)) - 1)];
        SCOPED_TRACE(std::to_string(command) + " on " + test::DumpTree(*Selected(view)).substr(0, 300));
        if (Pick(0, 3) == 0) TypeSomething();
        ArmAllocationFault(Pick(1, 30), Pick(0, 1) != 0);
        Run(command);
        DisarmAllocationFault();
        ExpectWhole();
        if (CheckAndAlignScdr(view) != 0 && CalculateScdrSizes(view) == 0) ExpectLaidOut();
        environment.ErrorCode = VTERROR_CODE::NoError;
    }

    void Step()
    {
        SelectAnything();
        const std::int32_t command = Commands[Pick(0, static_cast<int>(std::size(Commands)) - 1)];
        const std::size_t undoable = Actions(view.undo);
        const std::string place = test::DumpTree(*Selected(view));
        SCOPED_TRACE(std::to_string(command) + " on " + place.substr(0, 300));
        Run(command);
        ExpectKnownState(command, undoable);
        ExpectWhole();
        ExpectLaidOut();
    }

    // Sixty walks of sixty steps each; none leaves anything behind.
    template <typename WalkStep> void Walk(WalkStep step)
    {
        const std::int64_t live = LiveAllocations();
        for (unsigned seed = 0; seed < 60 && !HasFailure(); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            random.seed(seed);
            ShowNewTree();
            for (int taken = 0; taken < 60 && !HasFailure() && Tree().size() < LargestTree; ++taken)
                step();
            EXPECT_EQ(ShowTree(view, nullptr), 0);
            clipboard = nullptr;
            EXPECT_EQ(LiveAllocations(), live);
        }
    }
};

TEST_F(ActionWalk, EveryStateIsUndoneAndRedone)
{
    const std::int64_t live = LiveAllocations();
    for (unsigned seed = 0; seed < 60 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        random.seed(seed);
        ShowNewTree();
        for (int step = 0; step < 60 && !HasFailure() && Tree().size() < LargestTree; ++step)
            Step();
        while (view.undo != nullptr && !HasFailure()) {
            const std::size_t undoable = Actions(view.undo);
            Run(CommandUndoArray);
            ASSERT_EQ(Actions(view.undo), undoable - 1);
            EXPECT_EQ(State(), states[undoable - 1]);
        }
    }
    EXPECT_EQ(ShowTree(view, nullptr), 0);
    clipboard = nullptr;
    EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(ActionWalk, TypedTextLeavesTheTreeWhole)
{
    Walk([&] { TypingStep(); });
}

TEST_F(ActionWalk, ALackOfMemoryLeavesTheTreeWhole)
{
    Walk([&] { FaultyStep(); });
}

} // namespace
} // namespace vantrel
