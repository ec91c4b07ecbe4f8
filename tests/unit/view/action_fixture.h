// A shown tree on which structural actions run, and an interpreter that computes its primitives here and keeps a clipboard.
#pragma once

#include "builtin/structural.h"
#include "unit/support/trees.h"
#include "view/actions.h"
#include "view/commands.h"
#include "view/menu_state.h"
#include "view/pick_index.h"
#include "view/report.h"
#include "view/undo.h"
#include "view_fixture.h"

namespace vantrel {

class ActionTest : public ViewTest {
protected:
    ActionTest()
    {
        HostOperations& host = environment.Operations;
        host.CallPrimitiveReturningScdr = Primitive;
        host.ScdrToClipboard = Copy;
        host.ClipboardToScdr = Paste;
        host.ClipboardCanPaste = [](EditContext* editContext) -> std::int32_t {
            return TestOf(editContext).clipboard != nullptr ? 1 : 0;
        };
    }

    static ActionTest& TestOf(EditContext* editContext)
    {
        return static_cast<ActionTest&>(*static_cast<ViewTest*>(editContext->host));
    }

    static ScdrPtr Compute(EditContext* editContext, std::int32_t primitive, const Scdr& argument)
    {
        ActionTest& test = TestOf(editContext);
        if (test.onPrimitive) return test.onPrimitive(primitive, argument);
        switch (primitive) {
        case CommandConvertToCharacter: return BuiltinFormat(editContext, const_cast<Scdr&>(argument));
        case CommandConvertToNumeric: return BuiltinCtn(editContext, argument);
        case CommandRavel: return BuiltinRavel(editContext, argument);
        case CommandFirst: return BuiltinFirst(editContext, argument);
        case CommandDisclose: return BuiltinDisclose(editContext, argument);
        case CommandEnclose: return BuiltinEnclose(editContext, argument);
        case CommandEnlist: return BuiltinEnlist(editContext, argument);
        case CommandReverse: return BuiltinReverse(editContext, argument);
        case CommandReverseFirstAxis: return BuiltinReverseAxis1(editContext, argument);
        case CommandTranspose: return BuiltinTranspose(editContext, argument);
        case CommandSortAscending: return BuiltinGradeUp(editContext, argument);
        case CommandSortDescending: return BuiltinGradeDown(editContext, argument);
        default: return nullptr;
        }
    }
    static Scdr* Primitive(EditContext* editContext, std::int32_t primitive, const Scdr* argument,
                           const Scdr*)
    {
        ActionTest& test = TestOf(editContext);
        ++test.primitiveCalls;
        SetErrorCode(editContext, test.primitiveError);
        if (test.primitiveError != VTERROR_CODE::NoError) return nullptr;
        return Compute(editContext, primitive, *argument).release();
    }
    static std::int32_t Copy(EditContext* editContext, WindowHandle, const Scdr* node)
    {
        ActionTest& test = TestOf(editContext);
        SetErrorCode(editContext, test.copyError);
        if (test.copyError != VTERROR_CODE::NoError) return 0;
        test.clipboard = CopyScdr(editContext, *node);
        return test.clipboard != nullptr ? 1 : 0;
    }
    static Scdr* Paste(EditContext* editContext, WindowHandle)
    {
        const ScdrPtr& clipboard = TestOf(editContext).clipboard;
        return clipboard != nullptr ? CopyScdr(editContext, *clipboard).release() : nullptr;
    }

    void Select(Scdr& node)
    {
        ASSERT_EQ(SelectScdr(view, node, false), 0);
        log.Clear();
    }
    // The node at these item positions from the root down.
    Scdr& At(std::initializer_list<std::int64_t> path)
    {
        Scdr* node = view.root;
        for (const std::int64_t index : path)
            node = Children(*node)[index];
        return *node;
    }
    void SelectAt(std::initializer_list<std::int64_t> path) { Select(At(path)); }
    void Run(std::int32_t command) { RunViewCommand(view, command); }
    [[nodiscard]] std::string Tree() const { return test::DumpTree(*view.root); }
    [[nodiscard]] std::u16string PickIndex()
    {
        char16_t* const text = GetPickIndex(view, false, *Selected(view));
        std::u16string result = text;
        FreeBytes(text);
        return result;
    }
    [[nodiscard]] std::int32_t LastStatus() const
    {
        return log.statuses.empty() ? 0 : log.statuses.back().id;
    }
    [[nodiscard]] bool Enabled(std::int32_t command) { return IsCommandEnabled(view, command); }
    ScdrPtr Scalar(std::int64_t value) { return Integers({}, {value}); }
    ScdrPtr Letter(char16_t value) { return Characters({}, std::u16string(1, value)); }
    // An empty nested array with its prototype.
    ScdrPtr Empty(const std::vector<std::int64_t>& shape, ScdrPtr prototype)
    {
        return NestedOf(shape, std::move(prototype));
    }

    // The command, undone and redone: the tree goes there, back and there again.
    void ExpectThereAndBack(std::int32_t command, const std::string& expected)
    {
        const std::string before = Tree();
        const UndoEntry* const below = view.undo;
        Run(command);
        EXPECT_EQ(Tree(), expected);
        EXPECT_TRUE(test::IsSoundTree(*view.root));
        EXPECT_EQ(view.flags & ViewModified, ViewModified);
        EXPECT_FALSE(view.errorShown);
        Run(CommandUndoArray);
        EXPECT_EQ(Tree(), before);
        EXPECT_EQ(view.undo, below);
        Run(CommandRedoArray);
        EXPECT_EQ(Tree(), expected);
        EXPECT_EQ(view.redo, nullptr);
        EXPECT_TRUE(test::IsSoundTree(*view.root));
        EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
    }

    ScdrPtr clipboard;
    VTERROR_CODE copyError = VTERROR_CODE::NoError;
    VTERROR_CODE primitiveError = VTERROR_CODE::NoError;
    std::function<ScdrPtr(std::int32_t, const Scdr&)> onPrimitive; // computes in the interpreter's place
};

} // namespace vantrel
