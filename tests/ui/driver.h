// Drives the real library in a real window: the test's main thread is the interpreter's and sits in the modal edit, a second thread plays
// the user.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "hosts/array.h"
#include "hosts/fake_dyalog.h"

namespace vantrel::ui {

// How long the user waits for a window or an answer, and how long one edit may last before it counts as hanging.
struct Patience {
    int answerMilliseconds = 15000;
    int editSeconds = 60;
};
Patience& TestPatience();

// The exports of the vantrel.dll beside the test program.
const fake::EntryPoints& Library();
// Any export by its name; null where there is none.
void* LibraryEntry(const char* name);
bool IsThemed(); // what this run promises: VANTREL_THEME=0 says no

// A picture of a window's client area with its children.
class Picture {
public:
    Picture(int width, int height)
        : width_(width), height_(height), pixels_(static_cast<std::size_t>(width * height))
    {
    }
    [[nodiscard]] int Width() const { return width_; }
    [[nodiscard]] int Height() const { return height_; }
    // 0x00BBGGRR, as system colours are.
    [[nodiscard]] COLORREF At(int x, int y) const
    {
        return pixels_[static_cast<std::size_t>(y * width_ + x)];
    }
    [[nodiscard]] COLORREF* Data() { return pixels_.data(); }
    // Pixels of a colour inside a rectangle.
    [[nodiscard]] int Count(COLORREF colour, const RECT& part) const;
    [[nodiscard]] int Count(COLORREF colour) const { return Count(colour, {0, 0, width_, height_}); }

private:
    int width_;
    int height_;
    std::vector<COLORREF> pixels_;
};

// What the user's thread can do. Every action waits until the window has dealt with it.
class User {
public:
    User() = default;

    // Waits for the frame and until the array is on show. False when no window came up in time.
    bool WaitForWindow();
    [[nodiscard]] HWND Frame() const { return frame_; }
    [[nodiscard]] HWND Client() const;
    [[nodiscard]] HWND Status() const;
    // The visible cell editor, or null.
    [[nodiscard]] HWND Editor() const;
    // The window that has the keyboard, or null.
    [[nodiscard]] HWND Focus() const;
    [[nodiscard]] bool IsOpen() const { return IsWindow(frame_) != 0; }

    void Type(std::u16string_view text);
    // A key by its virtual code; modifiers are pressed in the given order.
    void Key(WORD key, std::initializer_list<WORD> modifiers = {});
    // A point of a window's client area.
    void Click(HWND window, int x, int y, int times = 1);
    void Drag(HWND window, POINT from, POINT to);
    // A step of the mouse: to a point of a window's client area, where `flags` (MOUSEEVENTF_...) happens.
    void Mouse(HWND window, POINT point, DWORD flags = 0, int wheel = 0);
    void Command(int id);
    void Wait(); // until all posted work is done

    // Waits for a message box or dialog with the title; null when none comes.
    HWND WaitForBox(const wchar_t* title);
    // Waits for a message box (or dialog) with the title, returns its text and presses a button.
    std::wstring AnswerBox(const wchar_t* title, int button);
    [[nodiscard]] std::u16string StatusText() const;
    // The pick index of the selected node.
    [[nodiscard]] std::u16string PickIndex() const;
    [[nodiscard]] std::wstring Title() const;
    // Where the caret blinks, in its window's client area; no window when there is none.
    struct CaretPlace {
        HWND window;
        RECT rect;
    };
    [[nodiscard]] CaretPlace Caret() const;
    [[nodiscard]] std::u16string ClipboardText() const;
    [[nodiscard]] Picture Shot(HWND window) const;
    // Keeps a picture beside the program, for a person to look at.
    void SavePicture(HWND window, const wchar_t* name) const;

    // Expectations of the user's thread; failures are collected and reported by the main thread.
    void Expect(bool condition, const char* what);
    template <typename A, typename B> void ExpectEqual(const A& actual, const B& expected, const char* what)
    {
        Expect(actual == expected, what);
    }
    [[nodiscard]] const std::vector<std::string>& Failures() const { return failures_; }

private:
    HWND frame_ = nullptr;
    std::vector<std::string> failures_;
};

using Script = std::function<void(User&)>;

struct Outcome {
    fake::EditResult edit;
    bool windowCame = false;
};

// Runs `call`, which opens the editor and returns when its windows have closed, while `script` plays the user; a window left open is closed
// without saving. Fails the test for what the script did not find as expected. Whether a window came up.
bool RunWithUser(const std::function<void()>& call, const Script& script);
// One edit of `argument` in which `script` plays the user; a window left open is closed without saving. Fails the test for what the script did
// not find as expected and for complaints of the interpreter's books.
Outcome RunEdit(fake::Interpreter& interpreter, const fake::Array& argument, const Script& script,
                const fake::EditOptions& options = {});

// Registry helpers under the editor's own key. Removing it makes the next edit a first start.
void ForgetOptions();
std::vector<std::uint8_t> StoredOption(const wchar_t* name, const wchar_t* subKey = L"");
void StoreOption(const wchar_t* name, const std::vector<std::uint8_t>& value, const wchar_t* subKey = L"");
void StoreFlag(const wchar_t* name, std::uint32_t value);

} // namespace vantrel::ui
