#include "tools/win/placement.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <shlwapi.h>

#include <string>
#include <utility>

#include "tools/win/options.h"

namespace vantrel {
namespace {

// A window that is counted as long as it lives.
class CountedWindow {
public:
    CountedWindow()
        : window_(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 10, 20, 300, 200, nullptr, nullptr,
                                  nullptr, nullptr))
    {
        CountOpenWindow(window_);
    }
    ~CountedWindow()
    {
        UncountOpenWindow(window_);
        DestroyWindow(window_);
    }
    CountedWindow(const CountedWindow&) = delete;
    CountedWindow& operator=(const CountedWindow&) = delete;
    [[nodiscard]] HWND Get() const { return window_; }

private:
    HWND window_;
};

class Placements : public testing::Test {
protected:
    Placements() { context.langEnv = &environment; }
    void SetUp() override { SHDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Quillmoor"); }
    void TearDown() override { SHDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Quillmoor"); }

    void Store(UINT showCommand)
    {
        WINDOWPLACEMENT placement{};
        placement.length = sizeof placement;
        placement.showCmd = showCommand;
        placement.rcNormalPosition = {40, 50, 440, 350};
        SaveOption(u"MATLAB Vantrel window 1", u"Window placement", &placement, sizeof placement);
    }
    // The show command that brought the window back.
    void Restore(HWND window)
    {
        environment.DialectKind = Dialect::Matlab;
        WindowPlacementRestore(&context, window);
    }

    LangEnv environment{};
    EditContext context;
};

TEST_F(Placements, AreNamedByTheHostAndTheNumberOfTheWindow)
{
    const std::pair<Dialect, const char16_t*> hosts[] = {{Dialect::Apl2, u"APL2"},
                                                         {Dialect::Aplx, u"APLX"},
                                                         {Dialect::Dyalog, u"Dyalog"},
                                                         {Dialect::Matlab, u"MATLAB"}};
    const CountedWindow first;
    const CountedWindow second;
    for (const auto& [dialect, name] : hosts) {
        environment.DialectKind = dialect;
        WindowPlacementSave(&context, first.Get());
        WindowPlacementSave(&context, second.Get());
        WINDOWPLACEMENT read{};
        for (const char16_t* number : {u"1", u"2"}) {
            const std::u16string key = std::u16string(name) + u" Vantrel window " + number;
            EXPECT_EQ(ReadOption(key.c_str(), u"Window placement", &read, 44), 0);
        }
    }
}

TEST_F(Placements, NeverComeBackHiddenOrMinimised)
{
    for (const UINT command : {SW_HIDE, SW_SHOWMINIMIZED, SW_MINIMIZE, SW_SHOWMINNOACTIVE, SW_SHOWNORMAL,
                               SW_SHOWNOACTIVATE, SW_SHOW, SW_SHOWNA, SW_RESTORE, 12345}) {
        const CountedWindow window;
        Store(command);
        Restore(window.Get());
        EXPECT_TRUE(IsWindowVisible(window.Get())) << command;
        EXPECT_FALSE(IsIconic(window.Get())) << command;
        EXPECT_FALSE(IsZoomed(window.Get())) << command;
        RECT place{};
        GetWindowRect(window.Get(), &place);
        EXPECT_EQ(place.left, 40) << command;
        EXPECT_EQ(place.bottom, 350) << command;
    }
}

TEST_F(Placements, MaximisedStaysMaximised)
{
    const CountedWindow window;
    Store(SW_SHOWMAXIMIZED);
    Restore(window.Get());
    EXPECT_TRUE(IsZoomed(window.Get()));
}

TEST_F(Placements, WithoutOneTheWindowOpensNormally)
{
    const CountedWindow window;
    Restore(window.Get());
    EXPECT_TRUE(IsWindowVisible(window.Get()));
    RECT place{};
    GetWindowRect(window.Get(), &place);
    EXPECT_EQ(place.left, 10);
}

TEST_F(Placements, TheCounterFollowsTheOpenWindows)
{
    const long before = g_openWindowCount;
    {
        const CountedWindow first;
        const CountedWindow second;
        EXPECT_EQ(g_openWindowCount, before + 2);
    }
    EXPECT_EQ(g_openWindowCount, before);
}

} // namespace
} // namespace vantrel
