// Every allocation of every action fails once, and then with all later ones: the tree is what it was or what it was to become, the user is
// told, nothing leaks, and the next attempt succeeds.
#include <set>

#include "action_fixture.h"

namespace vantrel {
namespace {

struct FaultCase {
    const char* name;
    std::int32_t command;
    std::vector<std::int64_t> path;
};

class ActionFaults : public ActionTest {
protected:
    ScdrPtr RichTree()
    {
        return Vec(Word(u"12"), Vec(Letter(u'a'), Scalar(1), Letter(u'c')),
                   NestedOf({1, 2}, Word(u"ab"), Integers({2, 2}, {4, 3, 2, 1})),
                   Integers({1, 2, 2}, {1, 2, 3, 4}), Vec(Word(u"x"), Vec(Word(u"y"))));
    }
    void Prepare(const FaultCase& fault)
    {
        ASSERT_EQ(ShowTree(view, RichTree()), 0);
        clipboard = Letter(u'b');
        Scdr* node = view.root;
        for (const std::int64_t index : fault.path)
            node = Children(*node)[index];
        ASSERT_EQ(SelectScdr(view, *node, false), 0);
        view.flags = 0;
        log.Clear();
    }
    // The trees that the command leads through; what is undone or redone passes them too.
    std::set<std::string> StatesOf(const FaultCase& fault)
    {
        Prepare(fault);
        std::set<std::string> states{Tree()};
        Run(fault.command);
        states.insert(Tree());
        while (view.undo != nullptr) {
            view.undo->flags = 0; // each step by itself
            Run(CommandUndoArray);
            states.insert(Tree());
        }
        return states;
    }
    // Runs `attempt` with each of its allocations failing; `verify` sees whether one did.
    template <typename Before, typename Attempt, typename Verify>
    void Sweep(Before before, Attempt attempt, Verify verify)
    {
        for (const bool sticky : {false, true}) {
            for (std::int64_t nth = 1;; ++nth) {
                SCOPED_TRACE(std::to_string(nth) + (sticky ? " and all later" : ""));
                ASSERT_EQ(ShowTree(view, nullptr), 0);
                clipboard = nullptr;
                const std::int64_t live = LiveAllocations();
                before();
                ArmAllocationFault(nth, sticky);
                attempt();
                const bool fired = DisarmAllocationFault() > 0;
                EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
                EXPECT_TRUE(test::IsSoundTree(*view.root));
                EXPECT_EQ(view.flags & (ViewBusy | ViewFormatting | ViewQuiet | ViewRedoInProgress), 0);
                verify(fired);
                ASSERT_EQ(ShowTree(view, nullptr), 0);
                clipboard = nullptr;
                EXPECT_EQ(LiveAllocations(), live);
                if (HasFailure()) return;
                if (!fired) break;
                ASSERT_LT(nth, 2000);
            }
        }
    }
    void ExpectToldWhenNothingHappened(bool fired, const std::string& before)
    {
        if (!fired || Tree() != before) return;
        EXPECT_TRUE(view.errorShown);
        // A clipboard that does not take the array has a message of its own.
        const bool notCopied = log.Count("status 109") > 0;
        const std::int32_t message = notCopied ? MessageSystemError : MessageErrorAllocating;
        EXPECT_EQ(log.statuses.back(), (StatusText{message, -1, true}));
        EXPECT_EQ(view.undo, nullptr);
    }
};

const std::vector<FaultCase>& Cases()
{
    static const std::vector<FaultCase> cases = {
        {"insert item", CommandInsertItemLeft, {0}},
        {"insert column", CommandInsertColumnRight, {2, 1}},
        {"insert row", CommandInsertRowBelow, {2, 0}},
        {"cut", CommandCutArray, {1, 1}},
        {"paste", CommandPasteArray, {1, 1}},
        {"make matrix", CommandMakeMatrix, {0}},
        {"make matrix of boxes", CommandMakeMatrix, {1}},
        {"rows", CommandMakeArrayOfRows, {3}},
        {"rows of boxes", CommandMakeArrayOfRows, {2}},
        {"numeric", CommandConvertToNumeric, {0}},
        {"character", CommandConvertToCharacter, {2, 1}},
        {"enlist", CommandEnlist, {4}},
        {"sort", CommandSortAscending, {2, 1}},
        {"reorder", CommandReorderAxes, {3}},
        {"enclose", CommandEnclose, {1}},
    };
    return cases;
}

TEST_F(ActionFaults, EveryActionIsDoneOrNot)
{
    log.onAxes = [](const Scdr&, std::int32_t* axes) {
        std::swap(axes[0], axes[2]);
        return true;
    };
    for (const FaultCase& fault : Cases()) {
        SCOPED_TRACE(fault.name);
        const std::set<std::string> states = StatesOf(fault);
        Prepare(fault);
        const std::string before = Tree();
        Run(fault.command);
        const std::string after = Tree();
        EXPECT_NE(after, before);
        Sweep([&] { Prepare(fault); }, [&] { Run(fault.command); },
              [&](bool fired) {
                  EXPECT_TRUE(states.count(Tree()) == 1) << Tree();
                  ExpectToldWhenNothingHappened(fired, before);
                  if (Tree() == before) { // with memory at hand it is done
                      Run(fault.command);
                      EXPECT_EQ(Tree(), after);
                  }
                  if (fired) return;
                  Run(CommandUndoArray);
                  EXPECT_EQ(Tree(), before);
              });
    }
}

TEST_F(ActionFaults, StructuralActionsSpeakOfStorage)
{
    for (const FaultCase& fault : Cases()) {
        const bool structural = fault.command == CommandMakeMatrix ||
                                fault.command == CommandMakeArrayOfRows ||
                                fault.command >= CommandInsertItemLeft;
        if (!structural) continue;
        SCOPED_TRACE(fault.name);
        Prepare(fault);
        const std::string before = Tree();
        ArmAllocationFault(1, true);
        Run(fault.command);
        DisarmAllocationFault();
        EXPECT_EQ(Tree(), before);
        EXPECT_EQ(log.statuses.back(), (StatusText{MessageErrorAllocating, -1, true}));
    }
}

TEST_F(ActionFaults, UndoAndRedoAreDoneOrNot)
{
    for (const FaultCase& fault : Cases()) {
        if (fault.command == CommandReorderAxes) continue;
        SCOPED_TRACE(fault.name);
        const std::set<std::string> states = StatesOf(fault);
        const auto isAState = [&](bool) {
            EXPECT_TRUE(states.count(Tree()) == 1) << Tree();
            // Whatever is left on the stacks still fits the tree.
            while (view.undo != nullptr)
                Run(CommandUndoArray);
            EXPECT_TRUE(states.count(Tree()) == 1) << Tree();
            while (view.redo != nullptr)
                Run(CommandRedoArray);
            EXPECT_TRUE(states.count(Tree()) == 1) << Tree();
        };
        Sweep(
            [&] {
                Prepare(fault);
                Run(fault.command);
            },
            [&] { Run(CommandUndoArray); }, isAState);
        Sweep(
            [&] {
                Prepare(fault);
                Run(fault.command);
                Run(CommandUndoArray);
            },
            [&] { Run(CommandRedoArray); }, isAState);
    }
}

TEST_F(ActionFaults, WithoutRoomForUndoTheActionGoesOnAndSaysSo)
{
    static std::u16string told;
    view.effects.notifyFrame = [](View& changed, std::int32_t code) {
        const char16_t* const detail = changed.context->langEnv->ErrorDetail;
        if (code == ViewNotifyError && detail != nullptr) told = detail;
    };
    const FaultCase fault{"reverse", CommandReverse, {0}};
    bool cleared = false;
    for (std::int64_t nth = 1; nth < 200; ++nth) {
        told.clear();
        Prepare(fault);
        Run(CommandReverse);
        ASSERT_NE(view.undo, nullptr);
        ArmAllocationFault(nth, false);
        Run(CommandReverse);
        const bool fired = DisarmAllocationFault() > 0;
        const bool done = DataText(At({0})) == u"12";
        if (done && view.undo == nullptr) {
            EXPECT_EQ(told, u"Out of storage.  Undo buffer cleared");
            EXPECT_EQ(view.redo, nullptr);
            cleared = true;
        }
        if (!fired) break;
    }
    EXPECT_TRUE(cleared);
}

} // namespace
} // namespace vantrel
