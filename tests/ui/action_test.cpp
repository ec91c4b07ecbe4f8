// Every command that restructures the array: its effect on the saved array, on undo and on redo.
#include <gtest/gtest.h>

#include <cstring>

#include "ui/menus.h"
#include "ui/tree_image.h"
#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr UINT GetModified = 32973;
constexpr int Save = 4102;
constexpr int CutArray = 4201;
constexpr int CopyArray = 4202;
constexpr int PasteArray = 4203;
constexpr int UndoArray = 4204;
constexpr int RedoArray = 4205;
constexpr int ReorderAxes = 4628;

void ExpectSame(const Array& actual, const Array& expected, const char* when)
{
    EXPECT_TRUE(SameValues(actual, expected))
        << when << ": " << Dump(actual) << " instead of " << Dump(expected);
}

struct KeyOf {
    int command;
    WORD key;
    std::initializer_list<WORD> modifiers;
};

// The accelerators of array commands.
const KeyOf Keys[] = {
    {CutArray, 'X', {VK_CONTROL, VK_SHIFT}},   {CopyArray, 'C', {VK_CONTROL, VK_SHIFT}},
    {PasteArray, 'V', {VK_CONTROL, VK_SHIFT}}, {UndoArray, 'Z', {VK_CONTROL, VK_SHIFT}},
    {RedoArray, 'Y', {VK_CONTROL, VK_SHIFT}},  {4701, VK_LEFT, {VK_CONTROL, VK_SHIFT}},
    {4702, VK_RIGHT, {VK_CONTROL, VK_SHIFT}},  {4703, VK_LEFT, {VK_MENU, VK_SHIFT}},
    {4704, VK_RIGHT, {VK_MENU, VK_SHIFT}},     {4705, VK_UP, {VK_MENU, VK_SHIFT}},
    {4706, VK_DOWN, {VK_MENU, VK_SHIFT}},
};

// False for a command that has no key.
bool PressKeyOf(User& user, int command)
{
    for (const KeyOf& key : Keys) {
        if (key.command != command) continue;
        user.Key(key.key, key.modifiers);
        return true;
    }
    return false;
}

struct ActionCase {
    const char* name;
    int command;
    const char16_t* index; // null: the whole array
    Array argument;
    Array expected;
    const char16_t* copied = nullptr; // put on the clipboard before
};

void PrintTo(const ActionCase& action, std::ostream* out)
{
    *out << action.name;
}

class EveryAction : public testing::TestWithParam<ActionCase> {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

// By every road that leads to it.
TEST_P(EveryAction, IsSavedUndoneAndRedone)
{
    const ActionCase& action = GetParam();
    const Outcome outcome = RunEdit(interpreter, action.argument, [&](User& user) {
        const auto before = TreeImage(user);
        if (action.copied != nullptr) {
            SelectIndex(user, action.copied);
            user.Expect(ChooseFromMenuBar(user, CopyArray), "the menu bar offers to copy");
        }
        const auto select = [&] {
            if (action.index != nullptr) SelectIndex(user, action.index);
        };
        select();
        user.Expect(ChooseFromMenuBar(user, action.command), "the menu bar offers it");
        const auto after = TreeImage(user);
        user.Expect(after != before, "the array changes");
        user.ExpectEqual(SendMessageW(user.Client(), GetModified, 0, 0), 1, "and is modified");
        PressKeyOf(user, UndoArray);
        user.Expect(TreeImage(user) == before, "it is undone by its key");
        user.Expect(ChooseFromContextMenu(user, RedoArray), "the context menu offers redo");
        user.Expect(TreeImage(user) == after, "it is redone");
        user.Expect(ChooseFromMenuBar(user, UndoArray), "the menu bar offers undo");
        select();
        user.Expect(ChooseFromContextMenu(user, action.command), "the context menu offers it");
        user.Expect(TreeImage(user) == after, "and does the same");
        user.Expect(ChooseFromContextMenu(user, UndoArray), "the context menu offers undo");
        user.Expect(TreeImage(user) == before, "it is undone");
        select();
        if (PressKeyOf(user, action.command)) {
            user.Expect(TreeImage(user) == after, "its key does the same");
        } else {
            user.Expect(ChooseFromMenuBar(user, RedoArray), "the menu bar offers redo");
        }
        user.Command(Save);
        user.ExpectEqual(user.StatusText(), u"Data saved", "it is saved");
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    ExpectSame(outcome.edit.result, action.expected, "saved");
}

Array Beside(const Array& item)
{
    return NestedArray({2}, {item, Text(u"zz")});
}
Array Numbers(Shape shape, const std::vector<double>& values)
{
    return NumericArray(std::move(shape), values);
}
Array Letters(Shape shape)
{
    std::vector<Array> items;
    for (std::size_t i = 0; i < CountOf(shape); ++i)
        items.push_back(Text(std::u16string(2, static_cast<char16_t>(u'a' + i))));
    return NestedArray(std::move(shape), std::move(items));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, EveryAction,
    testing::Values(
        ActionCase{"ConvertToCharacter", 4607, u"1", Beside(Numbers({2}, {10, 2.5})),
                   Beside(Text(u"10 2.5"))},
        ActionCase{"ConvertToNumeric", 4608, u"1", Beside(Text(u"10 ¯2.5")),
                   Beside(Numbers({2}, {10, -2.5}))},
        ActionCase{"Ravel", 4609, nullptr, Numbers({2, 2}, {1, 2, 3, 4}), Numbers({4}, {1, 2, 3, 4})},
        ActionCase{"First", 4610, u"1", Beside(NestedArray({2}, {Text(u"ab"), Number(5)})),
                   Beside(Text(u"ab"))},
        ActionCase{"Disclose", 4611, u"1", Beside(NestedArray({2}, {Text(u"ab"), Text(u"c")})),
                   Beside(TextOf({2, 2}, u"abc "))},
        ActionCase{"Enclose", 4612, u"1", Beside(Text(u"ab")), Beside(NestedArray({}, {Text(u"ab")}))},
        ActionCase{"Enlist", 4613, nullptr, NestedArray({2}, {Text(u"ab"), Text(u"cd")}), Text(u"abcd")},
        ActionCase{"Reverse", 4614, u"1", Beside(Numbers({2, 2}, {1, 2, 3, 4})),
                   Beside(Numbers({2, 2}, {2, 1, 4, 3}))},
        ActionCase{"ReverseFirstAxis", 4615, u"1", Beside(Numbers({2, 2}, {1, 2, 3, 4})),
                   Beside(Numbers({2, 2}, {3, 4, 1, 2}))},
        ActionCase{"Transpose", 4616, u"1", Beside(Numbers({2, 3}, {1, 2, 3, 4, 5, 6})),
                   Beside(Numbers({3, 2}, {1, 4, 2, 5, 3, 6}))},
        ActionCase{"SortAscending", 4617, u"1", Beside(Numbers({4}, {3, 1, 4, 1})),
                   Beside(Numbers({4}, {1, 1, 3, 4}))},
        ActionCase{"SortDescending", 4618, u"1", Beside(Text(u"bca")), Beside(Text(u"cba"))},
        ActionCase{"MakeMatrix", 4619, u"1", Beside(Text(u"abc")), Beside(TextOf({3, 1}, u"abc"))},
        ActionCase{"MakeArrayOfRows", 4621, nullptr, TextOf({2, 3}, u"abcdef"),
                   NestedArray({2}, {Text(u"abc"), Text(u"def")})},
        ActionCase{"InsertItemLeft", 4701, u"1", Beside(Text(u"ab")),
                   NestedArray({3}, {Text(u"  "), Text(u"ab"), Text(u"zz")})},
        ActionCase{"InsertItemRight", 4702, u"2", Beside(Text(u"ab")),
                   NestedArray({3}, {Text(u"ab"), Text(u"zz"), Text(u"  ")})},
        ActionCase{"InsertColumnLeft", 4703, u"(2 1)", Letters({2, 1}),
                   NestedArray({2, 2}, {Text(u"  "), Text(u"aa"), Text(u"  "), Text(u"bb")})},
        ActionCase{"InsertColumnRight", 4704, u"(1 1)", Letters({2, 1}),
                   NestedArray({2, 2}, {Text(u"aa"), Text(u"  "), Text(u"bb"), Text(u"  ")})},
        ActionCase{"InsertRowAbove", 4705, u"(1 2)", Letters({1, 2}),
                   NestedArray({2, 2}, {Text(u"  "), Text(u"  "), Text(u"aa"), Text(u"bb")})},
        ActionCase{"InsertRowBelow", 4706, u"(1 1)", Letters({1, 2}),
                   NestedArray({2, 2}, {Text(u"aa"), Text(u"bb"), Text(u"  "), Text(u"  ")})},
        ActionCase{"Paste", PasteArray, u"1", Beside(Text(u"ab")), Beside(Text(u"zz")), u"2"},
        ActionCase{"CutItemOfVector", CutArray, u"2", Letters({3}),
                   NestedArray({2}, {Text(u"aa"), Text(u"cc")})},
        ActionCase{"CutItemOfRow", CutArray, u"(1 2)", Letters({1, 3}),
                   NestedArray({1, 2}, {Text(u"aa"), Text(u"cc")})},
        ActionCase{"CutOnlyItem", CutArray, u"1", Letters({1}), EmptyNestedArray({0}, Text(u"  "))}),
    [](const testing::TestParamInfo<ActionCase>& tested) { return std::string(tested.param.name); });

class Action : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

TEST_F(Action, WhatIsCopiedFromTheContextMenuIsPasted)
{
    const Array argument = NestedArray({2}, {Text(u"ab"), NestedArray({2}, {Number(1), Text(u"cd")})});
    const Outcome outcome = RunEdit(interpreter, argument, [&](User& user) {
        SelectIndex(user, u"2");
        user.Expect(ChooseFromContextMenu(user, CopyArray), "the context menu offers to copy");
        SelectIndex(user, u"1");
        user.Expect(ChooseFromContextMenu(user, PasteArray), "and to paste");
        user.ExpectEqual(user.PickIndex(), u"1", "what was pasted is selected");
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, NestedArray({2}, {argument.items[1], argument.items[1]}), "pasted");
}

TEST_F(Action, UnusableDataOnTheClipboardChangesNothing)
{
    const Outcome outcome = RunEdit(interpreter, Beside(Text(u"ab")), [](User& user) {
        OpenClipboard(nullptr);
        EmptyClipboard();
        HGLOBAL const block = GlobalAlloc(GMEM_MOVEABLE, 16);
        std::memcpy(GlobalLock(block), "CCDRrubbish.....", 16);
        GlobalUnlock(block);
        SetClipboardData(RegisterClipboardFormatW(L"Vantrel Clipboard Data"), block);
        CloseClipboard();
        SelectIndex(user, u"1");
        SendMessageW(user.Client(), WM_COMMAND, PasteArray, 0);
        user.ExpectEqual(user.StatusText(), u"Can not convert clipboard data to an array", "the message");
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, Beside(Text(u"ab")), "refused");
}

TEST_F(Action, RefusedCommandsSayWhyAndChangeNothing)
{
    const Array argument = Letters({2, 2});
    const Outcome outcome = RunEdit(interpreter, argument, [](User& user) {
        // Straight to the view: the frame does not let through what its menu has grayed.
        const auto refused = [&](int command, const char16_t* message) {
            SendMessageW(user.Client(), WM_COMMAND, static_cast<WPARAM>(command), 0);
            user.ExpectEqual(user.StatusText(), message, "the message stays in sight");
        };
        refused(CutArray, u"Cannot delete top level array");
        refused(4701, u"Array is not a child");
        refused(4619, u"Array is not a vector");
        refused(ReorderAxes, u"Not supported");
        SelectIndex(user, u"(1 1)");
        refused(4702, u"Parent array is not a vector");
        refused(4629, u"System Error"); // this interpreter does not execute
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, argument, "refused");
}

TEST_F(Action, SortingWhatHasNoOrderSaysSo)
{
    RunEdit(interpreter, Beside(Letters({2})), [](User& user) {
        SelectIndex(user, u"1");
        SendMessageW(user.Client(), WM_COMMAND, 4617, 0);
        user.ExpectEqual(user.StatusText(), u"Sorting nested arrays is not supported", "the message");
    });
}

TEST_F(Action, KeysInsertItemsRowsAndColumns)
{
    const Outcome outcome = RunEdit(interpreter, Letters({1, 1}), [](User& user) {
        user.Key(VK_TAB);
        user.Key(VK_RIGHT, {VK_MENU, VK_SHIFT});
        user.Key(VK_DOWN, {VK_MENU, VK_SHIFT});
        user.ExpectEqual(user.PickIndex(), u"(1 1)", "the item stays selected");
        user.Key(VK_LEFT, {VK_MENU, VK_SHIFT});
        user.Key(VK_UP, {VK_MENU, VK_SHIFT});
        user.ExpectEqual(user.PickIndex(), u"(2 2)", "and moves with its row and column");
        user.Command(Save);
    });
    std::vector<Array> items(9, Text(u"  "));
    items[4] = Text(u"aa");
    ExpectSame(outcome.edit.result, NestedArray({3, 3}, items), "inserted");
}

TEST_F(Action, KeysCopyCutPasteUndoAndRedo)
{
    const Outcome outcome = RunEdit(interpreter, Letters({3}), [](User& user) {
        user.Key(VK_TAB);
        user.Key('C', {VK_CONTROL, VK_SHIFT});
        user.Key(VK_TAB);
        user.Key('V', {VK_CONTROL, VK_SHIFT});
        user.Key('Z', {VK_CONTROL, VK_SHIFT});
        user.Key('Y', {VK_CONTROL, VK_SHIFT});
        user.Key(VK_RIGHT, {VK_CONTROL, VK_SHIFT});
        user.Key(VK_TAB, {VK_SHIFT});
        user.Key('X', {VK_CONTROL, VK_SHIFT});
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, NestedArray({3}, {Text(u"aa"), Text(u"  "), Text(u"cc")}), "by keys");
}

TEST_F(Action, TextTypedAnywhereIsNotLost)
{
    const Outcome outcome = RunEdit(interpreter, Letters({2}), [](User& user) {
        user.Key(VK_TAB);
        user.Type(u"1");
        user.Key(VK_TAB);
        user.Type(u"2");
        user.Key(VK_LEFT, {VK_CONTROL, VK_SHIFT});
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, NestedArray({3}, {Text(u"1aa"), Text(u"   "), Text(u"2bb")}),
               "typed and inserted");
}

TEST_F(Action, TheModifiedQuestionComesForActionsAndForWhatIsTypedAfterASave)
{
    RunEdit(interpreter, Beside(Text(u"ab")), [](User& user) {
        user.Command(4614);
        user.ExpectEqual(SendMessageW(user.Client(), 32973, 0, 0), 1, "modified by the action");
        user.Command(Save);
        user.ExpectEqual(SendMessageW(user.Client(), 32973, 0, 0), 0, "saved");
        user.Key(VK_TAB);
        user.Command(4614);
        user.Command(Save);
        user.Type(u"x");
        user.ExpectEqual(SendMessageW(user.Client(), 32973, 0, 0), 1, "modified by typing");
    });
}

TEST_F(Action, AxesAreReorderedByDraggingTheirNames)
{
    const Array argument = Numbers({1, 2, 3}, {1, 2, 3, 4, 5, 6});
    const Outcome outcome = RunEdit(interpreter, argument, [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, ReorderAxes, 0);
        HWND const dialog = user.WaitForBox(L"Reorder Axes");
        if (dialog == nullptr) return;
        HWND const list = FindWindowExW(dialog, nullptr, L"ListBox", nullptr);
        user.ExpectEqual(SendMessageW(list, LB_GETCOUNT, 0, 0), 3, "one line for each axis");
        wchar_t text[64] = L"";
        SendMessageW(list, LB_GETTEXT, 0, reinterpret_cast<LPARAM>(text));
        user.Expect(std::wstring(text) == L"Axis name 1", "by name");
        RECT first{};
        RECT last{};
        SendMessageW(list, LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
        SendMessageW(list, LB_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&last));
        user.Drag(list, {20, (last.top + last.bottom) / 2}, {20, (first.top + first.bottom) / 2});
        SendMessageW(list, LB_GETTEXT, 0, reinterpret_cast<LPARAM>(text));
        user.Expect(std::wstring(text) == L"Axis name 3", "the dragged line is the first");
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
        user.Wait();
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, Numbers({3, 1, 2}, {1, 4, 2, 5, 3, 6}), "reordered");
}

TEST_F(Action, AxesAreReorderedByButtonsFromEitherMenu)
{
    const Array argument = Numbers({1, 2, 3}, {1, 2, 3, 4, 5, 6});
    const Outcome outcome = RunEdit(interpreter, argument, [&](User& user) {
        const auto before = TreeImage(user);
        const auto reorder = [&](bool (*choose)(User&, int)) {
            user.Expect(choose(user, ReorderAxes), "the menu offers it");
            HWND const dialog = user.WaitForBox(L"Reorder Axes");
            if (dialog == nullptr) return;
            SendMessageW(FindWindowExW(dialog, nullptr, L"Button", L"Move d&own"), BM_CLICK, 0, 0);
            PostMessageW(dialog, WM_COMMAND, IDOK, 0);
            user.Wait();
        };
        reorder(ChooseFromMenuBar);
        const auto after = TreeImage(user);
        user.Expect(after != before, "the array changes");
        user.Command(UndoArray);
        user.Expect(TreeImage(user) == before, "it is undone");
        reorder(ChooseFromContextMenu);
        user.Expect(TreeImage(user) == after, "the other menu does the same");
        user.Command(UndoArray);
        user.Command(RedoArray);
        user.Expect(TreeImage(user) == after, "it is redone");
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, Numbers({2, 1, 3}, {1, 2, 3, 4, 5, 6}), "reordered");
}

TEST_F(Action, ACancelledDialogChangesNothing)
{
    const Array argument = Numbers({1, 2, 3}, {1, 2, 3, 4, 5, 6});
    const Outcome outcome = RunEdit(interpreter, argument, [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, ReorderAxes, 0);
        HWND const dialog = user.WaitForBox(L"Reorder Axes");
        if (dialog != nullptr) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        user.Wait();
        user.ExpectEqual(SendMessageW(user.Client(), 32973, 0, 0), 0, "nothing is modified");
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, argument, "cancelled");
}

TEST_F(Action, ABoxOfAnyKindIsMinimisedMaximisedAndRestored)
{
    const Array argument = NestedArray({2}, {Text(u"ab"), Letters({2})});
    const Outcome outcome = RunEdit(interpreter, argument, [](User& user) {
        for (const char16_t* index : {u"1", u"2"}) {
            SelectIndex(user, index);
            for (const int command : {4605, 4604, 4606, 4604})
                user.Command(command);
            user.ExpectEqual(user.PickIndex(), std::u16string(index), "still selected");
        }
        user.Command(4601);
        user.Command(4603);
        user.Command(Save);
    });
    ExpectSame(outcome.edit.result, argument, "only the look changes");
}

TEST_F(Action, OpeningAnObjectNeedsAHostThatHasVariables)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Key('O', {VK_CONTROL, VK_SHIFT});
        user.ExpectEqual(user.StatusText(), u"Nonce Error", "the message");
    });
    RunEdit(interpreter, Text(u"1abc"), [](User& user) {
        user.Command(4109);
        user.ExpectEqual(user.StatusText(), u"Name is invalid", "the message");
    });
}

} // namespace
} // namespace vantrel::ui
