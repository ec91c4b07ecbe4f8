#include "entry/win/debug_channel.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr UINT Print = WM_USER + 1;
constexpr UINT Clear = WM_USER + 2;
constexpr std::size_t HeaderBytes = 12;
constexpr std::size_t MostCharacters = 128000;

// Plays the external viewer: it makes the mutex and the block, and its window takes what arrives.
class Viewer {
public:
    Viewer()
        : mutex_(CreateMutexW(nullptr, FALSE, L"APL Printf Mutex")),
          mapping_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      HeaderBytes + 2 * MostCharacters, L"APL Printf Shared Block")),
          bytes_(static_cast<unsigned char*>(MapViewOfFile(mapping_, FILE_MAP_ALL_ACCESS, 0, 0, 0))),
          thread_([this] { Run(); })
    {
        while (!ready_)
            Sleep(1);
    }
    ~Viewer()
    {
        PostMessageW(window_, WM_CLOSE, 0, 0);
        thread_.join();
        UnmapViewOfFile(bytes_);
        CloseHandle(mapping_);
        CloseHandle(mutex_);
    }
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    std::vector<std::u16string> texts;
    std::vector<std::uint32_t> colours;
    int clears = 0;

private:
    void Run()
    {
        window_ =
            CreateWindowExW(0, L"STATIC", L"viewer", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Viewer::Procedure));
        const auto handle = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(window_));
        std::memcpy(bytes_, &handle, sizeof handle);
        ready_ = true;
        MSG message{};
        while (GetMessageW(&message, nullptr, 0, 0) > 0)
            DispatchMessageW(&message);
    }
    void Take()
    {
        std::uint32_t colour = 0;
        std::int32_t length = 0;
        std::memcpy(&colour, bytes_ + 4, sizeof colour);
        std::memcpy(&length, bytes_ + 8, sizeof length);
        colours.push_back(colour);
        texts.emplace_back(reinterpret_cast<const char16_t*>(bytes_ + HeaderBytes),
                           static_cast<std::size_t>(length));
    }
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* const viewer = reinterpret_cast<Viewer*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        switch (message) {
        case Print: viewer->Take(); return 0;
        case Clear: ++viewer->clears; return 0;
        case WM_CLOSE: DestroyWindow(window); return 0;
        case WM_DESTROY: PostQuitMessage(0); return 0;
        default: return DefWindowProcW(window, message, wParam, lParam);
        }
    }

    HANDLE mutex_;
    HANDLE mapping_;
    unsigned char* bytes_;
    std::atomic<bool> ready_{false};
    HWND window_ = nullptr;
    std::thread thread_;
};

using Texts = std::vector<std::u16string>;

TEST(DebugChannel, WithoutAViewerNothingHappens)
{
    EXPECT_EQ(DebugPrintf(L"%i", 12), 2);
    DebugClear();
}

TEST(DebugChannel, FormatsAndSendsALineInTheColourOfWindowText)
{
    Viewer viewer;
    EXPECT_EQ(DebugPrintf(L"%ls %i\r\n", L"⍴", 3), 5);
    EXPECT_EQ(viewer.texts, Texts{u"⍴ 3"});
    EXPECT_EQ(viewer.colours, std::vector<std::uint32_t>{GetSysColor(COLOR_WINDOWTEXT)});
}

TEST(DebugChannel, AnEmptyTextIsNotSent)
{
    Viewer viewer;
    EXPECT_EQ(DebugPrintf(L"%ls", L""), 0);
    EXPECT_TRUE(viewer.texts.empty());
}

TEST(DebugChannel, EachLineIsAMessage)
{
    Viewer viewer;
    SendDebugText(u"a\r\nb");
    EXPECT_EQ(viewer.texts, (Texts{u"a", u"b"}));
}

TEST(DebugChannel, ALongTextGoesOutInPieces)
{
    Viewer viewer;
    SendDebugText(std::u16string(300000, u'x'));
    std::vector<std::size_t> lengths;
    for (const std::u16string& text : viewer.texts)
        lengths.push_back(text.size());
    EXPECT_EQ(lengths, (std::vector<std::size_t>{128000, 128000, 44000}));
}

TEST(DebugChannel, ClearsTheViewer)
{
    Viewer viewer;
    DebugClear();
    EXPECT_EQ(viewer.clears, 1);
    EXPECT_TRUE(viewer.texts.empty());
}

TEST(DebugChannel, TraceLinesNameFileLineAndRoutine)
{
    Viewer viewer;
    const TraceScope trace("C:\\sources\\some.cpp", "SomeRoutine");
    TraceStarting(42);
    TraceMessage(42, L"⍳3");
    TraceInteger(7, -5);
    TraceText(7, "failed");
    TraceLastError(12345, "failed", 6);
    const std::u16string head = u"       some.cpp[00042]               SomeRoutine";
    const std::u16string second = u"       some.cpp[00007]               SomeRoutine";
    const std::u16string third = u"       some.cpp[12345]               SomeRoutine";
    EXPECT_EQ(viewer.texts,
              (Texts{head + u" Starting\n", head + u"    Message: ⍳3\n", second + u"    Integer: -5\n",
                     second + u"    failed\n", third + u"    failed GetLastError(): 6\n"}));
}

} // namespace
} // namespace vantrel
