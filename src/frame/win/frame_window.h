// The frame's instance record and its handlers, shared by the files of this room.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "entry/edit_context.h"
#include "frame/options.h"
#include "model/scdr.h"

namespace vantrel {

struct FrameWindow {
    EditContext* context = nullptr;
    HWND window = nullptr;
    HWND client = nullptr;
    HWND status = nullptr;
    HWND nameBox = nullptr; // lies over the pick index in the status bar
    HWND toolBar = nullptr;
    HWND findBar = nullptr;
    HWND information = nullptr; // pops up over the view
    HWND focus = nullptr;       // child that had the keyboard when the window was left
    HIMAGELIST pictures = nullptr;
    HIMAGELIST disabledPictures = nullptr;
    HostObject value = nullptr;     // the array as handed over, for Revert; the interpreter's
    HostObject name = nullptr;      // the variable's name; null by value
    std::uint32_t options = 0;      // FrameOption bits
    std::int32_t pickIndexPart = 0; // of the status bar
    int findBarWidth = 0;           // at which its text box is as wide as it was made
    int findBarShift = 0;           // what it is narrower now; not positive
    bool nameBoxChanging = false;   // the program writes into the name box
    bool nameBoxTyping = false;     // what is typed there is selecting an array
    bool saveSelected = false;      // Save As takes the selected array only
    bool counted = false;           // this frame is among the open frames and windows
    bool closing = false;           // a close waits until the view is no longer busy
    bool closeUnasked = false;      // the close on its way asks nothing, whatever the option says
    bool asking = false;            // a question or dialog is on show
    bool destroyed = false;         // the window has gone; the record goes when its outermost message returns
    std::int32_t depth = 0;         // messages being handled, one inside the other
    FrameWindow* next = nullptr;    // all frames of the process
};

// A child's id travels as its menu.
inline HMENU ChildId(std::int32_t id) noexcept
{
    return reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)); // NOLINT
}

// While it lives a question or dialog of the frame is on show: closing waits.
class AskingScope {
public:
    explicit AskingScope(FrameWindow& frame) noexcept : frame_(frame), previous_(frame.asking)
    {
        frame_.asking = true;
    }
    ~AskingScope() { frame_.asking = previous_; }
    AskingScope(const AskingScope&) = delete;
    AskingScope& operator=(const AskingScope&) = delete;

private:
    FrameWindow& frame_;
    bool previous_;
};

// frame_list
// The frame is the first to be asked about closing, and its numbers are taken, until it is uncounted.
void CountFrame(FrameWindow& frame);
void UncountFrame(FrameWindow& frame);
// Whether any frame of the same edit wishes to close: the long operation that asks may be another frame's.
[[nodiscard]] bool IsAnyFrameClosing(const EditContext* context) noexcept;

// frame_commands
LRESULT OnCommand(FrameWindow& frame, WPARAM wParam, LPARAM lParam);

// frame_options
void ReadOptions(FrameWindow& frame);
void SaveOptions(const FrameWindow& frame);
// Gives all option items their check marks.
void ShowOptionsInMenu(const FrameWindow& frame);
[[nodiscard]] bool IsOptionCommand(std::int32_t id) noexcept;
void ToggleOption(FrameWindow& frame, std::int32_t id);

// frame_file
// Saves the tree as the call's result or the variable's value. True on success; the user has been told either way.
bool SaveTree(FrameWindow& frame);
LRESULT OnRevert(FrameWindow& frame);
void OnSaveAs(FrameWindow& frame);
void OnOpen(FrameWindow& frame);
// Shows the language environment's pending error in the status bar and clears it, since the user now knows.
void ShowHostError(FrameWindow& frame);
// Has the view report a save that failed.
void ReportFailedSave(const FrameWindow& frame);

// frame_debug
void OnDebug(FrameWindow& frame);

// frame_close
// IDYES, IDNO or IDCANCEL.
int AskYesNoCancel(FrameWindow& frame, HWND owner, const wchar_t* question);
// A long operation of the view is running: it must not lose the tree that it works on.
[[nodiscard]] bool IsBusy(const FrameWindow& frame);
// Asks, saves and destroys as the user wishes. While the view is busy the close is only noted, for the long operation to end first.
void OnClose(FrameWindow& frame);
void CloseWithoutQuestion(FrameWindow& frame);
void OnCloseTimer(FrameWindow& frame);
// Whether the user's session may end now. With changes it may not, and the system says why until the session goes on or ends all the same.
[[nodiscard]] bool MayEndSession(FrameWindow& frame);
void OnEndSession(const FrameWindow& frame) noexcept;

// frame_layout
void OnSize(FrameWindow& frame);
// Gives the frame the size at which the view shows the whole array, as far as the screen allows.
void OnSizeFrameToDefinition(FrameWindow& frame);

// tool_bar
// False when the bar could not be made.
bool ToolbarCreate(FrameWindow& frame);
// After a change of size, colours or resolution.
void ToolbarCreateAgain(FrameWindow& frame);
void ToolbarDestroy(FrameWindow& frame);
// The labels are written in the view's font.
void ToolbarSetFont(FrameWindow& frame);
// Wraps the buttons into as many rows as a width asks for; the answer is the height of all rows.
[[nodiscard]] int ToolbarWrap(const FrameWindow& frame, int width);
// Gives every button the state of its menu item.
void ToolbarFollowMenu(const FrameWindow& frame);
// NM_CUSTOMDRAW: writes the labels.
LRESULT OnDrawTool(const NMTBCUSTOMDRAW& drawing);
void OnToolTip(NMTTDISPINFOW& tip) noexcept;
void OnToolInfo(NMTBGETINFOTIPW& tip) noexcept;

// status_bar
bool StatusBarCreate(FrameWindow& frame);
// Shows an array's attributes; nothing for no array.
void DisplayScdrAttributes(FrameWindow& frame, const Scdr* node);
// How far a text of the bar stands from the edge of its part. Pixels.
[[nodiscard]] int StatusTextInset() noexcept;

// name_box
bool NameBoxCreate(FrameWindow& frame);
// Text that somebody is typing is left alone.
void UpdateNameBox(FrameWindow& frame, const char16_t* pickIndex);
void OnPositionPickIndex(FrameWindow& frame, std::int32_t part);
// EN_... of the name box.
void OnNameBox(FrameWindow& frame, int notification);

// find_bar
bool FindBarCreate(FrameWindow& frame);
void FindBarShow(FrameWindow& frame);
void FindBarHide(FrameWindow& frame);
// Narrows the text box, as far as it can be used, so that the other controls stay in sight.
void FindBarFit(FrameWindow& frame, int width);
// Presses Next or Previous, where the bar is shown and holds a text.
void FindBarPress(FrameWindow& frame, int button);
// Takes over what the bar says and enables what can be done with it. Called whenever it changes.
void CheckFindText(FrameWindow& frame);
[[nodiscard]] bool IsFocusInFindBar(const FrameWindow& frame) noexcept;

// information
bool InformationCreate(FrameWindow& frame);
// Shows everything about the selected array and gives it the keyboard; nothing without an array.
void InformationShow(FrameWindow& frame);
void InformationHide(const FrameWindow& frame);
void InformationToggle(FrameWindow& frame);
// After the frame has changed its size.
void InformationPlace(const FrameWindow& frame);
LRESULT OnColorInformation(HDC dc) noexcept;

// frame_focus
// Gives the keyboard to the next (or previous) part of the frame that is on show.
void FocusNextPart(FrameWindow& frame, bool backwards);

// bar_look
void GiveBarsTheirLook(const FrameWindow& frame);

// about
void ShowAbout(FrameWindow& frame);

// printer
// 1 when printing is possible, 0 when there is no default printer.
std::int32_t PrinterInitializeInfo();
void PrinterSetupPage(FrameWindow& frame);
void Print(FrameWindow& frame);

} // namespace vantrel
