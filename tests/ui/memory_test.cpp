// The library is refused memory from any single request on that a command makes, in its real window: the array is what it was or what it was
// to become, the user is told, and the editor goes on working.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "ui/driver.h"
#include "ui/memory_faults.h"
#include "ui/tree_image.h"

namespace vantrel::ui {
namespace {

using fake::Array;
using fake::Interpreter;
using fake::NestedArray;
using fake::NumericArray;
using fake::Text;
using fake::TextOf;

constexpr UINT GetModified = 32973;
constexpr UINT SetPickIndex = 32981;
constexpr UINT Find = 32971;
constexpr UINT GetBusy = 32986;
constexpr UINT SelectAllText = 33072;
constexpr int Revert = 4101;
constexpr int Save = 4102;
constexpr int CutArray = 4201;
constexpr int CopyArray = 4202;
constexpr int PasteArray = 4203;
constexpr int UndoArray = 4204;
constexpr int RedoArray = 4205;
constexpr int CheckAndAlign = 4207;
constexpr int Enclose = 4612;
constexpr char16_t ErrorAllocating[] =
    u"Error allocating storage.  Data may be corrupted.  Recommend closing window.";
constexpr char16_t SystemError[] = u"System Error"; // what a clipboard says that takes no array
constexpr std::int64_t RequestAndError = 2;         // what says that there is no memory needs some itself
constexpr std::int64_t AllLater = std::numeric_limits<std::int64_t>::max();

constexpr int Rounds = 5;

using Image = std::vector<std::uint8_t>;

struct MemoryCase {
    const char* name;
    int command;
    const char16_t* index;
    Array argument;
    Array expected;
    const char16_t* typed = u""; // into the item before the command
};

void PrintTo(const MemoryCase& tested, std::ostream* out)
{
    *out << tested.name;
}

void Send(const User& user, int command)
{
    SendMessageW(user.Frame(), WM_COMMAND, static_cast<WPARAM>(command), 0);
}

LRESULT Ask(const User& user, UINT message)
{
    return SendMessageW(user.Client(), message, 0, 0);
}

// The array as it was handed over, with the item selected and what is typed there.
void Prepare(const User& user, const MemoryCase& tested)
{
    Send(user, Revert);
    SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(tested.index));
    for (const char16_t* unit = tested.typed; *unit != 0; ++unit)
        SendMessageW(user.Editor(), WM_CHAR, *unit, 0);
}

// A command that puts the array on the clipboard may learn only there that there is no memory, and the clipboard does not say why.
bool IsToldOf(const User& user, int command)
{
    const std::u16string text = user.StatusText();
    const bool copies = command == CutArray || command == CopyArray;
    return text == ErrorAllocating || (copies && text == SystemError);
}

// The first error that finds no memory for itself makes ready what all later ones use. What is painted meanwhile may take the refusals away
// from it.
void MakeErrorsReady(User& user)
{
    bool told = false;
    for (std::int64_t i = 0; i < Rounds * Rounds && !told; ++i) {
        MemoryFaults faults;
        faults.Arm(1 + i % Rounds, RequestAndError);
        Send(user, Enclose);
        faults.Disarm();
        told = IsToldOf(user, Enclose);
        Send(user, Revert);
    }
    user.Expect(told, "a lack of memory is told of");
}

class OutOfMemoryIn : public testing::TestWithParam<MemoryCase> {
protected:
    void SetUp() override { ForgetOptions(); }

    // One command whose nth request for memory and all later ones are refused. False when it makes fewer.
    static bool TryOnce(User& user, const MemoryCase& tested, const Image& before, const Image& done,
                        std::int64_t nth)
    {
        if (TreeImage(user) != before) Prepare(user, tested);
        const LRESULT modified = Ask(user, GetModified);
        MemoryFaults faults;
        faults.Arm(nth, AllLater);
        Send(user, tested.command);
        const bool refused = faults.Refused() > 0;
        // What is painted now is painted without memory, too.
        RedrawWindow(user.Frame(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        faults.Disarm();
        Sleep(1); // an edit that ends does so when its thread next looks for messages
        const Image after = TreeImage(user);
        user.Expect(user.IsOpen() && !after.empty(), "the window and its array stay");
        if (!user.IsOpen() || after.empty()) return false;
        user.Expect(Ask(user, GetBusy) == 0, "the view is ready for the next command");
        user.Expect(after == before || after == done, "the command is done or not");
        if (after == before) {
            user.Expect(IsToldOf(user, tested.command), "the user is told");
            user.Expect(Ask(user, GetModified) == modified, "nothing is modified");
        }
        return refused;
    }
    static void TryEveryRequest(User& user, const MemoryCase& tested, const Image& before, const Image& done)
    {
        std::int64_t nth = 1;
        while (user.IsOpen() && TryOnce(user, tested, before, done, nth))
            ++nth;
        user.Expect(nth > 1, "the command asks for memory");
    }

    Interpreter interpreter;
};

TEST_P(OutOfMemoryIn, TheArrayStaysWholeAndTheEditorGoesOn)
{
    const MemoryCase& tested = GetParam();
    const Outcome outcome = RunEdit(interpreter, tested.argument, [&](User& user) {
        MakeErrorsReady(user);
        SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(u"2"));
        Send(user, CopyArray);
        Prepare(user, tested);
        const Image before = TreeImage(user);
        Send(user, tested.command);
        const Image done = TreeImage(user);
        user.Expect(done != before, "the command changes the array");
        TryEveryRequest(user, tested, before, done);
        if (!user.IsOpen()) return;
        user.Expect(TreeImage(user) == done, "with memory at hand it is done");
        const bool isAction = tested.command != CheckAndAlign;
        Send(user, UndoArray);
        user.Expect(TreeImage(user) == (isAction ? before : done), "and undone");
        Send(user, RedoArray);
        Send(user, Save);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, tested.expected)) << Dump(outcome.edit.result);
}

// Longer than what needs no memory of its own.
const std::u16string Long(40, u'x');

Array Beside(const Array& item)
{
    return NestedArray({2}, {item, Text(Long + u"zz")});
}
std::vector<double> Count(int count, int step)
{
    std::vector<double> values;
    for (int i = 0; i < count; ++i)
        values.push_back(i * step % (count - 1));
    values.back() = count - 1;
    return values;
}

INSTANTIATE_TEST_SUITE_P(
    Commands, OutOfMemoryIn,
    testing::Values(
        MemoryCase{"Commit", CheckAndAlign, u"1", Beside(Text(Long)), Beside(Text(u"45" + Long)), u"45"},
        MemoryCase{"Paste", PasteArray, u"1", Beside(Text(Long)), Beside(Text(Long + u"zz"))},
        MemoryCase{
            "InsertItem", 4701, u"1", Beside(Text(Long)),
            NestedArray({3}, {Text(std::u16string(Long.size(), u' ')), Text(Long), Text(Long + u"zz")})},
        MemoryCase{"Cut", CutArray, u"1", Beside(Text(Long)), NestedArray({1}, {Text(Long + u"zz")})},
        MemoryCase{"Enclose", Enclose, u"1", Beside(Text(Long)), Beside(NestedArray({}, {Text(Long)}))},
        MemoryCase{"MakeMatrix", 4619, u"1", Beside(Text(Long)),
                   Beside(TextOf({static_cast<std::int64_t>(Long.size()), 1}, Long))},
        // The numbers 0 to 19 row by row, and then in fives.
        MemoryCase{"Transpose", 4616, u"1", Beside(NumericArray({4, 5}, Count(20, 1))),
                   Beside(NumericArray({5, 4}, Count(20, 5)))}),
    [](const testing::TestParamInfo<MemoryCase>& tested) { return std::string(tested.param.name); });

class WithoutMemory : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

// Does something while no request for memory is granted.
void DoWithoutMemory(User& user, const std::function<void()>& act)
{
    MemoryFaults faults;
    faults.Arm(1, AllLater);
    act();
    RedrawWindow(user.Frame(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    faults.Disarm();
    Sleep(1);
    user.Expect(user.IsOpen() && FindWindowW(L"#32770", L"Vantrel Error Message") == nullptr,
                "the window stays");
    user.Expect(Ask(user, GetBusy) == 0, "the view is ready for what comes next");
}

TEST_F(WithoutMemory, WhateverTheUserDoesTheWindowStays)
{
    const Array argument = NestedArray(
        {2}, {Text(Long), NestedArray({2}, {Text(Long), NumericArray({3, 2}, {1, 2, 3, 4, 5, 6})})});
    const Outcome outcome = RunEdit(interpreter, argument, [](User& user) {
        MakeErrorsReady(user);
        const auto select = [&](const char16_t* index) {
            DoWithoutMemory(
                user, [&] { SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(index)); });
        };
        const auto edit = [&](UINT message, WPARAM wParam) {
            DoWithoutMemory(user, [&] { SendMessageW(user.Editor(), message, wParam, 0); });
        };
        const auto run = [&](std::initializer_list<int> commands) {
            for (const int command : commands)
                DoWithoutMemory(user, [&] { Send(user, command); });
        };
        select(u"1");
        edit(WM_CHAR, u'x');
        edit(WM_CHAR, u'\r');
        edit(WM_UNDO, 0);
        edit(SelectAllText, 0);
        edit(WM_COPY, 0);
        edit(WM_PASTE, 0);
        for (const char16_t* index : {u"2 2", u"2"}) {
            select(index);
            run({4606, 4604, 4605, 4604}); // filling the window, closed, restored
        }
        run({4603, 4308, 4308, 4309, 4314, 4315, 4301, 4301, 4307, 4302, 4302}); // sizes, options, bars
        run({CopyArray, PasteArray, UndoArray, RedoArray, 4206, 4601});
        DoWithoutMemory(user, [&] { SendMessageW(user.Client(), Find, 1, 0); });
        run({Save, Revert});
        Send(user, Revert);
        Send(user, Save);
        user.ExpectEqual(user.StatusText(), u"Data saved", "with memory at hand all is well");
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, argument)) << Dump(outcome.edit.result);
}

} // namespace
} // namespace vantrel::ui
