// What the interpreter's process has of its own - signal handlers, the floating-point control word, its window classes - is its own again after
// an edit, also after one that a fault ended.
#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <cfloat>
#include <csignal>

#include "ui/driver.h"
#include "ui/message_watch.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int Debug = 4504;
constexpr int Exit = 4105;
constexpr std::array Signals = {SIGINT, SIGSEGV, SIGTERM, 21};
constexpr unsigned HostsControl = _EM_INVALID | _EM_DENORMAL | _EM_INEXACT; // it is told of the others
constexpr const wchar_t* Classes[] = {L"quillmoor vantrel frame class", L"quillmoor vantrel client class",
                                      L"quillmoor Vantrel edit control class"};

using Handler = void (*)(int);
using Handlers = std::array<Handler, Signals.size()>;

template <int Number> void HandleSignal(int) {}

constexpr Handlers HostsHandlers = {&HandleSignal<0>, &HandleSignal<1>, &HandleSignal<2>, &HandleSignal<3>};
constexpr Handlers DefaultHandlers = {SIG_DFL, SIG_DFL, SIG_DFL, SIG_DFL};

// Asking is setting.
Handlers ExchangeHandlers(const Handlers& handlers)
{
    Handlers before{};
    for (std::size_t i = 0; i < Signals.size(); ++i)
        before[i] = std::signal(Signals[i], handlers[i]);
    return before;
}

Handlers HandlersNow()
{
    const Handlers now = ExchangeHandlers(DefaultHandlers);
    ExchangeHandlers(now);
    return now;
}

bool HasWindowClass(const wchar_t* name)
{
    WNDCLASSEXW found{};
    found.cbSize = sizeof found;
    return GetClassInfoExW(GetModuleHandleW(L"vantrel.dll"), name, &found) != 0;
}

class HostState : public testing::Test {
protected:
    void SetUp() override
    {
        ForgetOptions();
        static_cast<void>(Library()); // starting it must not count as a change
        control_ = _control87(0, 0);
        _control87(HostsControl | _RC_UP, _MCW_EM | _MCW_RC);
        hostsControl_ = _control87(0, 0);
        handlers_ = ExchangeHandlers(HostsHandlers);
    }
    void TearDown() override
    {
        _clearfp();
        _control87(control_, _MCW_EM | _MCW_RC);
        ExchangeHandlers(handlers_);
    }

    // One edit, in which the state is looked at on the interpreter's own thread.
    Outcome Run(const Script& script)
    {
        const MessageWatch watch([&](const CWPRETSTRUCT& message) {
            if (message.message != WM_COMMAND && message.message != WM_SETFOCUS) return;
            looked_ = true;
            duringHandlers_ = HandlersNow();
            duringMasks_ = _control87(0, 0) & _MCW_EM;
            for (const wchar_t* const name : Classes)
                hadClasses_ = hadClasses_ && HasWindowClass(name);
        });
        return RunEdit(interpreter, Text(u"abc"), script);
    }

    void ExpectEditorsStateDuringTheEdit() const
    {
        EXPECT_TRUE(looked_);
        EXPECT_EQ(duringHandlers_, DefaultHandlers);
        EXPECT_EQ(duringMasks_, static_cast<unsigned>(_MCW_EM));
        EXPECT_TRUE(hadClasses_);
    }
    void ExpectHostsState() const
    {
        EXPECT_EQ(HandlersNow(), HostsHandlers);
        EXPECT_EQ(_control87(0, 0), hostsControl_);
        for (const wchar_t* const name : Classes)
            EXPECT_FALSE(HasWindowClass(name)) << testing::PrintToString(std::wstring(name));
    }

    Interpreter interpreter;

private:
    Handlers handlers_{};
    unsigned control_ = 0;
    unsigned hostsControl_ = 0;
    bool looked_ = false;
    bool hadClasses_ = true;
    Handlers duringHandlers_{};
    unsigned duringMasks_ = 0;
};

TEST_F(HostState, IsAsBeforeAfterAnEdit)
{
    const Outcome outcome = Run([](User& user) {
        user.Type(u"x");
        user.Command(4104);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    ExpectEditorsStateDuringTheEdit();
    ExpectHostsState();
}

TEST_F(HostState, IsAsBeforeAfterAFault)
{
    const Outcome outcome = Run([](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        user.AnswerBox(L"Vantrel Debug Message", IDYES);
        user.AnswerBox(L"Vantrel Error Message", IDOK);
    });
    ASSERT_TRUE(outcome.edit.error.signalled);
    EXPECT_EQ(outcome.edit.error.number, 91u);
    ExpectEditorsStateDuringTheEdit();
    ExpectHostsState();
}

TEST_F(HostState, IsAsBeforeAfterAnArgumentThatIsRefused)
{
    const Outcome outcome = RunEdit(
        interpreter, RawArray(ElementType::Rational, {1}, std::vector<std::uint8_t>(16)), [](User&) {});
    ASSERT_TRUE(outcome.edit.error.signalled);
    ExpectHostsState();
}

TEST_F(HostState, TheClassesComeAgainWithTheNextEdit)
{
    for (int round = 0; round < 2; ++round) {
        const Outcome outcome = Run([](User& user) { user.Command(Exit); });
        EXPECT_TRUE(outcome.windowCame);
        ExpectEditorsStateDuringTheEdit();
        ExpectHostsState();
    }
}

} // namespace
} // namespace vantrel::ui
