// Real scroll bars of a real window.
#include "tools/win/scroll_bars.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace vantrel {
namespace {

constexpr wchar_t ClassName[] = L"window with scroll bars";
constexpr std::int64_t Huge = 10'000'000'000;
constexpr int ScaledMaximum = 32767; // of a bar whose data the system cannot count

// What is read from the bar each time that its thumb has moved.
std::vector<ScrollInformation> g_tracked;
ScrollInformation g_read;

LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_VSCROLL && LOWORD(wParam) == SB_THUMBTRACK) {
        QmGetScrollInfo(window, SB_VERT, g_read);
        g_tracked.push_back(g_read);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

class ScrollBars : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = WindowProc;
        windowClass.lpszClassName = ClassName;
        RegisterClassW(&windowClass);
    }
    static void TearDownTestSuite() { UnregisterClassW(ClassName, nullptr); }
    void SetUp() override
    {
        g_tracked.clear();
        window =
            CreateWindowExW(WS_EX_TOPMOST, ClassName, L"", WS_POPUP | WS_VISIBLE | WS_HSCROLL | WS_VSCROLL,
                            100, 100, 300, 400, nullptr, nullptr, nullptr, nullptr);
        ASSERT_NE(window, nullptr);
    }
    void TearDown() override { DestroyWindow(window); }

    [[nodiscard]] ScrollInformation ShowAndRead(std::int32_t bar, const ScrollInformation& shown) const
    {
        ScrollInformation information = shown;
        QmSetScrollInfo(window, bar, information);
        information.position = -1;
        information.trackPosition = -1;
        QmGetScrollInfo(window, bar, information);
        return information;
    }

    HWND window = nullptr;
};

ScrollInformation Information(std::int64_t dataSize, std::int64_t pageSize, std::int64_t position)
{
    ScrollInformation information;
    information.dataSize = dataSize;
    information.pageSize = pageSize;
    information.position = position;
    return information;
}

TEST_F(ScrollBars, TellThePositionThatTheyShow)
{
    for (const std::int32_t bar : {SB_HORZ, SB_VERT}) {
        const ScrollInformation read = ShowAndRead(bar, Information(5000, 100, 1234));
        EXPECT_EQ(read.position, 1234);
        EXPECT_EQ(read.trackPosition, 1234) << "no thumb is held";
        EXPECT_EQ(read.dataSize, 5000) << "what the data are is the caller's";
        EXPECT_EQ(read.pageSize, 100);
    }
}

TEST_F(ScrollBars, OfOneWindowAreReadApart)
{
    ScrollInformation across = Information(5000, 100, 17);
    ScrollInformation down = Information(90000, 100, 70000);
    QmSetScrollInfo(window, SB_HORZ, across);
    QmSetScrollInfo(window, SB_VERT, down);
    across.position = down.position = 0;
    QmGetScrollInfo(window, SB_HORZ, across);
    QmGetScrollInfo(window, SB_VERT, down);
    EXPECT_EQ(across.position, 17);
    EXPECT_EQ(down.position, 70000);
}

TEST_F(ScrollBars, TellAPositionThatTheSystemCannotCountToAStepOfTheBar)
{
    constexpr std::int64_t Step = Huge / ScaledMaximum;
    constexpr std::int64_t Position = 7'654'321'000;
    EXPECT_EQ(ShowAndRead(SB_VERT, Information(Huge, 100, Position)).position, Position / Step * Step);
    EXPECT_EQ(ShowAndRead(SB_VERT, Information(Huge, 100, 0)).position, 0);
}

TEST_F(ScrollBars, TellTheEndExactly)
{
    const ScrollInformation read = ShowAndRead(SB_VERT, Information(Huge, 100, Huge - 99));
    EXPECT_EQ(read.position, Huge - 99);
    EXPECT_EQ(read.trackPosition, Huge - 99);
}

TEST_F(ScrollBars, OfAWindowThatHasNoneTellTheBeginning)
{
    HWND const bare =
        CreateWindowExW(0, ClassName, L"", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
    ScrollInformation information = Information(5000, 100, 1234);
    information.trackPosition = 1234;
    QmGetScrollInfo(bare, SB_VERT, information);
    EXPECT_EQ(information.position, 0);
    EXPECT_EQ(information.trackPosition, 0);
    DestroyWindow(bare);
}

void Point(POINT screen, DWORD flags)
{
    const int width = GetSystemMetrics(SM_CXSCREEN);
    const int height = GetSystemMetrics(SM_CYSCREEN);
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = MulDiv(screen.x, 65536, width) + 32768 / width;
    input.mi.dy = MulDiv(screen.y, 65536, height) + 32768 / height;
    input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | flags;
    SendInput(1, &input, sizeof input);
    Sleep(50);
}

// Drags the thumb of the vertical bar some pixels down while this thread serves the window.
void DragThumb(HWND window, int distance)
{
    SCROLLBARINFO bar{};
    bar.cbSize = sizeof bar;
    GetScrollBarInfo(window, OBJID_VSCROLL, &bar);
    const POINT thumb{(bar.rcScrollBar.left + bar.rcScrollBar.right) / 2,
                      bar.rcScrollBar.top + (bar.xyThumbTop + bar.xyThumbBottom) / 2};
    const DWORD server = GetCurrentThreadId();
    std::thread user([=] {
        Point(thumb, 0);
        Point(thumb, MOUSEEVENTF_LEFTDOWN);
        Point({thumb.x, thumb.y + distance / 2}, 0);
        Point({thumb.x, thumb.y + distance}, 0);
        Point({thumb.x, thumb.y + distance}, MOUSEEVENTF_LEFTUP);
        PostThreadMessageW(server, WM_QUIT, 0, 0);
    });
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    user.join();
}

TEST_F(ScrollBars, TellWhereTheThumbIsHeldBesideThePositionThatTheyStillShow)
{
    for (const std::int64_t dataSize : {std::int64_t{20000}, Huge}) {
        g_tracked.clear();
        g_read = Information(dataSize, 100, 0);
        QmSetScrollInfo(window, SB_VERT, g_read);
        DragThumb(window, 100);
        ASSERT_FALSE(g_tracked.empty());
        EXPECT_EQ(g_tracked.back().position, 0) << "nobody has moved it";
        EXPECT_GT(g_tracked.back().trackPosition, dataSize / 10);
        EXPECT_LT(g_tracked.back().trackPosition, dataSize / 2);
    }
}

} // namespace
} // namespace vantrel
