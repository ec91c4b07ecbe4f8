#include "ui/driver.h"

#include <windows.h>

#include <commctrl.h>
#include <shlwapi.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "ui/picture_file.h"

namespace vantrel::ui {
namespace {

constexpr wchar_t FrameClass[] = L"quillmoor vantrel frame class";
constexpr wchar_t EditClass[] = L"quillmoor Vantrel edit control class";
constexpr wchar_t OptionsKey[] = L"Software\\Quillmoor\\Vantrel\\1.1\\Options";
constexpr int ClientChild = 0x8008;
constexpr int StatusChild = 32788;
constexpr UINT GetPickIndexMessage = 32975;
constexpr UINT GetSelectedMessage = 32978;
constexpr UINT GetBusyMessage = 32986;
constexpr int ExitForce = 4110;
constexpr int PollMilliseconds = 10;

bool PollUntil(const std::function<bool()>& condition)
{
    for (int waited = 0; waited < TestPatience().answerMilliseconds; waited += PollMilliseconds) {
        if (condition()) return true;
        Sleep(PollMilliseconds);
    }
    return condition();
}

struct FoundWindow {
    DWORD process;
    HWND window;
};

BOOL CALLBACK TakeFrame(HWND window, LPARAM parameter)
{
    auto& found = *reinterpret_cast<FoundWindow*>(parameter);
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != found.process || wcscmp(name, FrameClass) != 0 || !IsWindowVisible(window)) return TRUE;
    found.window = window;
    return FALSE;
}

HWND FindFrame()
{
    FoundWindow found{GetCurrentProcessId(), nullptr};
    EnumWindows(TakeFrame, reinterpret_cast<LPARAM>(&found));
    return found.window;
}

void Send(std::vector<INPUT>& inputs)
{
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

INPUT KeyInput(WORD key, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = flags;
    return input;
}

INPUT UnicodeInput(char16_t unit, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = static_cast<WORD>(unit);
    input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
    return input;
}

INPUT MouseInput(POINT screen, DWORD flags)
{
    const int width = GetSystemMetrics(SM_CXSCREEN);
    const int height = GetSystemMetrics(SM_CYSCREEN);
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = MulDiv(screen.x, 65536, width) + 32768 / width;
    input.mi.dy = MulDiv(screen.y, 65536, height) + 32768 / height;
    input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | flags;
    return input;
}

bool IsExtendedKey(WORD key)
{
    switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
    case VK_HOME:
    case VK_END:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_INSERT:
    case VK_DELETE: return true;
    default: return false;
    }
}

// Ends the program when a test hangs, so that the run as a whole goes on to say which.
class Watchdog {
public:
    explicit Watchdog(const std::string& name)
        : thread_([this, name] {
              const auto end =
                  std::chrono::steady_clock::now() + std::chrono::seconds(TestPatience().editSeconds);
              while (!done_) {
                  if (std::chrono::steady_clock::now() > end) {
                      std::fprintf(stderr, "%s hangs\n", name.c_str());
                      std::fflush(stderr);
                      TerminateProcess(GetCurrentProcess(), 3);
                  }
                  Sleep(PollMilliseconds);
              }
          })
    {
    }
    ~Watchdog()
    {
        done_ = true;
        thread_.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    std::atomic<bool> done_{false};
    std::thread thread_;
};

// Loading the display driver from one thread while another loads the library locks the two against each other.
void WarmUp()
{
    ReleaseDC(nullptr, GetDC(nullptr));
    static_cast<void>(Library());
}

std::string TestName()
{
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    return test == nullptr ? "test" : std::string(test->test_suite_name()) + "." + test->name();
}

BOOL CALLBACK PrintTitle(HWND window, LPARAM)
{
    char title[128] = {};
    GetWindowTextA(window, title, 128);
    if (IsWindowVisible(window)) std::fprintf(stderr, "  on the screen: \"%s\"\n", title);
    return TRUE;
}

// The modal edit cannot be ended from outside, so the program ends and says what it saw.
void GiveUp(const User& user)
{
    const std::u16string status = user.StatusText();
    std::fprintf(stderr, "%s: the window does not close; busy %d, status \"%s\"\n", TestName().c_str(),
                 static_cast<int>(SendMessageW(user.Client(), GetBusyMessage, 0, 0)),
                 std::string(status.begin(), status.end()).c_str());
    for (const std::string& failure : user.Failures())
        std::fprintf(stderr, "  not so: %s\n", failure.c_str());
    EnumWindows(PrintTitle, 0);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 3);
}

void PlayUser(User& user, const Script& script, const std::atomic<bool>& editEnded, bool& windowCame)
{
    while (!editEnded && FindFrame() == nullptr)
        Sleep(PollMilliseconds);
    if (editEnded) return; // no window came up
    windowCame = true;
    if (user.WaitForWindow()) script(user);
    if (user.IsOpen()) {
        PostMessageW(user.Frame(), WM_COMMAND, ExitForce, 0);
        if (!PollUntil([&] { return !user.IsOpen(); })) GiveUp(user);
    }
}

std::wstring OptionsSubKey(const wchar_t* subKey)
{
    std::wstring key = OptionsKey;
    if (*subKey != 0) key += std::wstring(L"\\") + subKey;
    return key;
}

} // namespace

void* LibraryEntry(const char* name)
{
    static HMODULE const library = LoadLibraryW(L"vantrel.dll");
    return library == nullptr ? nullptr : reinterpret_cast<void*>(GetProcAddress(library, name));
}

Patience& TestPatience()
{
    static Patience patience;
    return patience;
}

const fake::EntryPoints& Library()
{
    static const fake::EntryPoints points = [] {
        fake::EntryPoints found;
        const auto get = LibraryEntry;
        found.getInterpreterFunctions =
            reinterpret_cast<decltype(found.getInterpreterFunctions)>(get("DyalogGetInterpreterFunctions"));
        found.editArray = reinterpret_cast<decltype(found.editArray)>(get("DyalogEditArray"));
        found.editArrayTitle = reinterpret_cast<decltype(found.editArrayTitle)>(get("DyalogEditArrayTitle"));
        return found;
    }();
    return points;
}

bool IsThemed()
{
    const char* const theme = std::getenv("VANTREL_THEME");
    return theme == nullptr || std::string(theme) != "0";
}

int Picture::Count(COLORREF colour, const RECT& part) const
{
    int count = 0;
    for (LONG y = std::max(0L, part.top); y < std::min<LONG>(height_, part.bottom); ++y) {
        for (LONG x = std::max(0L, part.left); x < std::min<LONG>(width_, part.right); ++x) {
            if (At(x, y) == colour) ++count;
        }
    }
    return count;
}

bool User::WaitForWindow()
{
    if (!PollUntil([&] { return (frame_ = FindFrame()) != nullptr; })) return false;
    const bool shown = PollUntil([&] {
        if (!IsOpen()) return true;
        return Client() != nullptr && SendMessageW(Client(), GetBusyMessage, 0, 0) == 0 &&
               SendMessageW(Client(), GetSelectedMessage, 0, 0) != 0;
    });
    Wait();
    return shown;
}

HWND User::Client() const
{
    return GetDlgItem(frame_, ClientChild);
}

HWND User::Status() const
{
    return GetDlgItem(frame_, StatusChild);
}

HWND User::Editor() const
{
    for (HWND child = nullptr; (child = FindWindowExW(Client(), child, EditClass, nullptr)) != nullptr;) {
        if (IsWindowVisible(child)) return child;
    }
    return nullptr;
}

HWND User::Focus() const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(frame_, nullptr), &info);
    return info.hwndFocus;
}

void User::Wait()
{
    // Messages that are sent overtake the input that is on its way, hence the pauses.
    for (int round = 0; round < 3 && IsOpen(); ++round) {
        Sleep(30);
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(frame_, WM_NULL, 0, 0, SMTO_NORMAL,
                            static_cast<UINT>(TestPatience().answerMilliseconds), &answer);
    }
}

void User::Type(std::u16string_view text)
{
    for (const char16_t unit : text) {
        std::vector<INPUT> inputs{UnicodeInput(unit, 0), UnicodeInput(unit, KEYEVENTF_KEYUP)};
        Send(inputs);
    }
    Wait();
}

void User::Key(WORD key, std::initializer_list<WORD> modifiers)
{
    const DWORD extended = IsExtendedKey(key) ? KEYEVENTF_EXTENDEDKEY : 0;
    std::vector<INPUT> inputs;
    for (const WORD modifier : modifiers)
        inputs.push_back(KeyInput(modifier, 0));
    inputs.push_back(KeyInput(key, extended));
    inputs.push_back(KeyInput(key, extended | KEYEVENTF_KEYUP));
    for (auto modifier = std::rbegin(modifiers); modifier != std::rend(modifiers); ++modifier) {
        inputs.push_back(KeyInput(*modifier, KEYEVENTF_KEYUP));
    }
    Send(inputs);
    Wait();
}

void User::Click(HWND window, int x, int y, int times)
{
    POINT point{x, y};
    ClientToScreen(window, &point);
    Sleep(GetDoubleClickTime() + 50); // never a double click with the click before
    for (int i = 0; i < times; ++i) {
        std::vector<INPUT> inputs{MouseInput(point, 0), MouseInput(point, MOUSEEVENTF_LEFTDOWN),
                                  MouseInput(point, MOUSEEVENTF_LEFTUP)};
        Send(inputs);
    }
    Wait();
}

void User::Drag(HWND window, POINT from, POINT to)
{
    ClientToScreen(window, &from);
    ClientToScreen(window, &to);
    Sleep(GetDoubleClickTime() + 50);
    std::vector<INPUT> down{MouseInput(from, 0), MouseInput(from, MOUSEEVENTF_LEFTDOWN)};
    Send(down);
    constexpr int Steps = 8;
    for (int step = 1; step <= Steps; ++step) {
        Sleep(30);
        const POINT at{from.x + (to.x - from.x) * step / Steps, from.y + (to.y - from.y) * step / Steps};
        std::vector<INPUT> move{MouseInput(at, 0)};
        Send(move);
    }
    Sleep(30);
    std::vector<INPUT> up{MouseInput(to, MOUSEEVENTF_LEFTUP)};
    Send(up);
    Wait();
}

void User::Mouse(HWND window, POINT point, DWORD flags, int wheel)
{
    ClientToScreen(window, &point);
    std::vector<INPUT> inputs{MouseInput(point, 0)};
    if (flags != 0) inputs.push_back(MouseInput(point, flags));
    inputs.back().mi.mouseData = static_cast<DWORD>(wheel);
    Send(inputs);
    Wait();
}

void User::Command(int id)
{
    PostMessageW(frame_, WM_COMMAND, static_cast<WPARAM>(id), 0);
    Wait();
}

HWND User::WaitForBox(const wchar_t* title)
{
    HWND box = nullptr;
    PollUntil([&] {
        box = FindWindowW(L"#32770", title);
        return box != nullptr && IsWindowVisible(box);
    });
    if (box == nullptr) Expect(false, "a message box comes up");
    return box;
}

std::wstring User::AnswerBox(const wchar_t* title, int button)
{
    HWND const box = WaitForBox(title);
    if (box == nullptr) return {};
    wchar_t text[2048] = {};
    GetDlgItemTextW(box, 0xFFFF, text, 2048);
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    PollUntil([&] { return !IsWindow(box); });
    Wait();
    return text;
}

std::u16string User::StatusText() const
{
    wchar_t text[1024] = {};
    SendMessageW(Status(), SB_GETTEXTW, 0, reinterpret_cast<LPARAM>(text));
    return reinterpret_cast<const char16_t*>(text);
}

std::u16string User::PickIndex() const
{
    const LRESULT node = SendMessageW(Client(), GetSelectedMessage, 0, 0);
    const auto* const text =
        reinterpret_cast<const char16_t*>(SendMessageW(Client(), GetPickIndexMessage, 0, node));
    return text == nullptr ? u"" : text;
}

std::wstring User::Title() const
{
    wchar_t text[512] = {};
    GetWindowTextW(frame_, text, 512);
    return text;
}

User::CaretPlace User::Caret() const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(frame_, nullptr), &info);
    return {info.hwndCaret, info.rcCaret};
}

std::u16string User::ClipboardText() const
{
    std::u16string text;
    PollUntil([&] { return OpenClipboard(nullptr) != FALSE; });
    HANDLE const block = GetClipboardData(CF_UNICODETEXT);
    if (block != nullptr) text = static_cast<const char16_t*>(GlobalLock(block));
    if (block != nullptr) GlobalUnlock(block);
    CloseClipboard();
    return text;
}

Picture User::Shot(HWND window) const
{
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    // What was just being painted counts as painted: the answer comes when it is.
    SendMessageW(window, WM_NULL, 0, 0);
    RECT client{};
    GetClientRect(window, &client);
    Picture picture(client.right, client.bottom);
    BITMAPINFO format{};
    format.bmiHeader = {sizeof(BITMAPINFOHEADER), client.right, -client.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    HDC const source = GetDC(window);
    HDC const memory = CreateCompatibleDC(source);
    HBITMAP const bitmap = CreateDIBSection(source, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ const previous = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, client.right, client.bottom, source, 0, 0, SRCCOPY);
    GdiFlush();
    const auto* const from = static_cast<const std::uint32_t*>(bits);
    for (int i = 0; i < client.right * client.bottom; ++i) {
        const std::uint32_t value = from[i];
        picture.Data()[i] = ((value & 0xFF) << 16) | (value & 0xFF00) | ((value >> 16) & 0xFF);
    }
    SelectObject(memory, previous);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, source);
    return picture;
}

void User::SavePicture(HWND window, const wchar_t* name) const
{
    SavePictureFile(Shot(window), name);
}

void User::Expect(bool condition, const char* what)
{
    if (!condition) failures_.emplace_back(what);
}

bool RunWithUser(const std::function<void()>& call, const Script& script)
{
    WarmUp();
    const Watchdog watchdog(TestName());
    User user;
    bool windowCame = false;
    std::atomic<bool> editEnded{false};
    std::thread player([&] { PlayUser(user, script, editEnded, windowCame); });
    call();
    editEnded = true;
    player.join();
    for (const std::string& failure : user.Failures())
        ADD_FAILURE() << failure;
    return windowCame;
}

Outcome RunEdit(fake::Interpreter& interpreter, const fake::Array& argument, const Script& script,
                const fake::EditOptions& options)
{
    Outcome outcome;
    outcome.windowCame =
        RunWithUser([&] { outcome.edit = interpreter.Edit(Library(), argument, options); }, script);
    for (const std::string& complaint : outcome.edit.complaints)
        ADD_FAILURE() << complaint;
    EXPECT_EQ(outcome.edit.handshake, 0);
    return outcome;
}

void ForgetOptions()
{
    SHDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Quillmoor");
}

std::vector<std::uint8_t> StoredOption(const wchar_t* name, const wchar_t* subKey)
{
    std::vector<std::uint8_t> value(4096);
    auto size = static_cast<DWORD>(value.size());
    const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, OptionsSubKey(subKey).c_str(), name,
                                        RRF_RT_REG_BINARY, nullptr, value.data(), &size);
    value.resize(status == ERROR_SUCCESS ? size : 0);
    return value;
}

void StoreOption(const wchar_t* name, const std::vector<std::uint8_t>& value, const wchar_t* subKey)
{
    RegSetKeyValueW(HKEY_CURRENT_USER, OptionsSubKey(subKey).c_str(), name, REG_BINARY, value.data(),
                    static_cast<DWORD>(value.size()));
}

void StoreFlag(const wchar_t* name, std::uint32_t value)
{
    StoreOption(name, {static_cast<std::uint8_t>(value), 0, 0, 0});
}

} // namespace vantrel::ui
