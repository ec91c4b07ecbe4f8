#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "entry/trace.h"
#include "frame/messages.h"
#include "frame/toolbar.h"
#include "frame/win/frame_window.h"
#include "frame/win/tool_pictures.h"
#include "tools/win/fonts.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"

namespace vantrel {
namespace {

constexpr int ButtonPadding = 3; // around a picture, on each side, at the usual resolution

int DotsPerInch(HWND window) noexcept
{
    const WindowDc dc(window);
    return GetDeviceCaps(dc, LOGPIXELSX);
}

HWND CreateBar(const FrameWindow& frame) noexcept
{
    const DWORD shown = (frame.options & FrameToolBar) != 0 ? WS_VISIBLE : 0;
    // A list whose buttons show no texts: these stand neither below a picture nor beside an empty place; they are drawn over the button.
    const DWORD style = WS_CHILD | WS_CLIPSIBLINGS | TBSTYLE_FLAT | TBSTYLE_LIST | TBSTYLE_TOOLTIPS |
                        TBSTYLE_WRAPABLE | CCS_TOP | CCS_NODIVIDER | CCS_NORESIZE | CCS_NOPARENTALIGN;
    return CreateWindowExW(0, TOOLBARCLASSNAMEW, nullptr, style | shown, 0, 0, 0, 0, frame.window,
                           ChildId(ToolBarId), ModuleInstance(), nullptr);
}

TBBUTTON MakeButton(HWND bar, const ToolButton& button) noexcept
{
    TBBUTTON made{};
    made.idCommand = button.command;
    made.iString = -1;
    made.fsStyle = BTNS_SEP;
    if (button.command == 0) return made;
    made.fsState = TBSTATE_ENABLED;
    made.fsStyle = BTNS_BUTTON | BTNS_AUTOSIZE;
    made.iBitmap = button.picture;
    if (button.label == nullptr) return made;
    // Two terminators end a list of strings.
    wchar_t label[16] = {};
    lstrcpynW(label, AsWide(button.label), 15);
    made.iString = SendMessageW(bar, TB_ADDSTRINGW, 0, reinterpret_cast<LPARAM>(label));
    made.iBitmap = I_IMAGENONE;
    made.fsStyle = BTNS_BUTTON;
    return made;
}

void AddButtons(HWND bar)
{
    for (const ToolButton& button : ToolButtons()) {
        TBBUTTON made = MakeButton(bar, button);
        SendMessageW(bar, TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&made));
    }
}

void RemoveButtons(HWND bar, Dialect dialect)
{
    for (const ToolButton& button : ToolButtons()) {
        if (button.command == 0 || !IsToolButtonRemoved(dialect, button.command)) continue;
        const LRESULT index = SendMessageW(bar, TB_COMMANDTOINDEX, static_cast<WPARAM>(button.command), 0);
        if (index >= 0) SendMessageW(bar, TB_DELETEBUTTON, static_cast<WPARAM>(index), 0);
    }
}

void FreePictures(FrameWindow& frame) noexcept
{
    if (frame.pictures != nullptr) ImageList_Destroy(frame.pictures);
    if (frame.disabledPictures != nullptr) ImageList_Destroy(frame.disabledPictures);
    frame.pictures = frame.disabledPictures = nullptr;
}

int ButtonPaddingOf(const FrameWindow& frame) noexcept
{
    return MulDiv(ButtonPadding, DotsPerInch(frame.window), USER_DEFAULT_SCREEN_DPI);
}

SIZE LabelSize(const FrameWindow& frame, const char16_t* label) noexcept
{
    const WindowDc dc(frame.toolBar);
    const SelectedObject font(dc, reinterpret_cast<HFONT>(SendMessageW(frame.toolBar, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32W(dc, AsWide(label), lstrlenW(AsWide(label)), &size);
    return size;
}

// Room for the labels in their font.
void SizeLabels(const FrameWindow& frame) noexcept
{
    for (const ToolButton& button : ToolButtons()) {
        if (button.label == nullptr) continue;
        TBBUTTONINFOW info{};
        info.cbSize = sizeof info;
        info.dwMask = TBIF_SIZE;
        info.cx = static_cast<WORD>(LabelSize(frame, button.label).cx + 4 * ButtonPaddingOf(frame));
        SendMessageW(frame.toolBar, TB_SETBUTTONINFOW, static_cast<WPARAM>(button.command),
                     reinterpret_cast<LPARAM>(&info));
    }
}

int PictureSize(const FrameWindow& frame) noexcept
{
    return ToolPictureSize((frame.options & FrameSmallIcons) != 0, DotsPerInch(frame.window));
}

void GivePictures(FrameWindow& frame)
{
    const int size = PictureSize(frame);
    frame.pictures = LoadToolPictures(size, {COLOR_BTNTEXT, COLOR_HIGHLIGHT});
    frame.disabledPictures = LoadToolPictures(size, {COLOR_GRAYTEXT, COLOR_GRAYTEXT});
    SendMessageW(frame.toolBar, TB_SETBITMAPSIZE, 0, MAKELPARAM(size, size));
    SendMessageW(frame.toolBar, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(frame.pictures));
    SendMessageW(frame.toolBar, TB_SETDISABLEDIMAGELIST, 0, reinterpret_cast<LPARAM>(frame.disabledPictures));
    const int padding = 2 * ButtonPaddingOf(frame);
    SendMessageW(frame.toolBar, TB_SETPADDING, 0, MAKELPARAM(padding, padding));
}

const ToolButton* FindButton(std::uintptr_t command) noexcept
{
    for (const ToolButton& button : ToolButtons()) {
        if (button.command != 0 && static_cast<std::uintptr_t>(button.command) == command) return &button;
    }
    return nullptr;
}

void DrawLabel(const NMTBCUSTOMDRAW& drawing)
{
    const ToolButton* const button = FindButton(drawing.nmcd.dwItemSpec);
    if (button == nullptr || button->label == nullptr) return;
    const HWND bar = drawing.nmcd.hdr.hwndFrom;
    const bool enabled = SendMessageW(bar, TB_ISBUTTONENABLED, drawing.nmcd.dwItemSpec, 0) != 0;
    HDC const dc = drawing.nmcd.hdc;
    const SelectedObject font(dc, reinterpret_cast<HFONT>(SendMessageW(bar, WM_GETFONT, 0, 0)));
    const COLORREF previousColor = SetTextColor(dc, GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    const int previousMode = SetBkMode(dc, TRANSPARENT);
    RECT place = drawing.nmcd.rc;
    DrawTextW(dc, AsWide(button->label), -1, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    SetBkMode(dc, previousMode);
    SetTextColor(dc, previousColor);
}

} // namespace

bool ToolbarCreate(FrameWindow& frame)
{
    TraceScope trace("tool_bar.cpp", "ToolbarCreate");
    frame.toolBar = CreateBar(frame);
    if (frame.toolBar == nullptr) return false;
    SendMessageW(frame.toolBar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    SendMessageW(frame.toolBar, TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_MIXEDBUTTONS);
    GivePictures(frame);
    AddButtons(frame.toolBar);
    ToolbarSetFont(frame);
    RemoveButtons(frame.toolBar, frame.context->langEnv->DialectKind);
    SendMessageW(frame.toolBar, TB_AUTOSIZE, 0, 0);
    return true;
}

void ToolbarCreateAgain(FrameWindow& frame)
{
    TraceScope trace("tool_bar.cpp", "ToolbarCreateAgain");
    ToolbarDestroy(frame);
    ToolbarCreate(frame);
    GiveBarsTheirLook(frame);
    ToolbarFollowMenu(frame);
    SendWmSize(frame.window);
}

void ToolbarDestroy(FrameWindow& frame)
{
    if (frame.toolBar != nullptr) {
        CopyFontToWindow(frame.toolBar, nullptr);
        DestroyWindow(frame.toolBar);
    }
    frame.toolBar = nullptr;
    FreePictures(frame);
}

void ToolbarSetFont(FrameWindow& frame)
{
    TraceScope trace("tool_bar.cpp", "ToolbarSetFont");
    if (frame.toolBar == nullptr) return;
    const auto viewFont = reinterpret_cast<HFONT>(SendMessageW(frame.client, WM_GETFONT, 0, 0));
    LOGFONTW logFont{};
    if (viewFont == nullptr || GetObjectW(viewFont, sizeof logFont, &logFont) == 0) return;
    // The array's text may be as large as the user likes; a label stands among pictures.
    const LONG most = PictureSize(frame);
    logFont.lfHeight = std::clamp(logFont.lfHeight, -most, most);
    const HFONT font = CreateFontIndirectW(&logFont);
    CopyFontToWindow(frame.toolBar, font);
    DeleteObject(font);
    SizeLabels(frame);
}

LRESULT OnDrawTool(const NMTBCUSTOMDRAW& drawing)
{
    switch (drawing.nmcd.dwDrawStage) {
    case CDDS_PREPAINT: return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT: return CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPOSTPAINT: return DrawLabel(drawing), CDRF_DODEFAULT;
    default: return CDRF_DODEFAULT;
    }
}

int ToolbarWrap(const FrameWindow& frame, int width)
{
    TraceScope trace("tool_bar.cpp", "ToolbarWrap");
    RECT bar{};
    GetWindowRect(frame.toolBar, &bar);
    SetWindowPos(frame.toolBar, nullptr, 0, 0, width, bar.bottom - bar.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(frame.toolBar, TB_AUTOSIZE, 0, 0);
    // The bar's own idea of its height counts rows that only separators would need.
    RECT last{};
    const auto count = static_cast<WPARAM>(SendMessageW(frame.toolBar, TB_BUTTONCOUNT, 0, 0));
    SendMessageW(frame.toolBar, TB_GETITEMRECT, count - 1, reinterpret_cast<LPARAM>(&last));
    return last.bottom + ButtonPaddingOf(frame);
}

void ToolbarFollowMenu(const FrameWindow& frame)
{
    HMENU const menu = GetMenu(frame.window);
    for (const ToolButton& button : ToolButtons()) {
        if (button.command == 0) continue;
        const bool enabled = !IsMenuItemDisabled(menu, static_cast<UINT>(button.command));
        SendMessageW(frame.toolBar, TB_ENABLEBUTTON, static_cast<WPARAM>(button.command),
                     MAKELPARAM(enabled ? TRUE : FALSE, 0));
    }
}

void OnToolTip(NMTTDISPINFOW& tip) noexcept
{
    const ToolButton* const button = FindButton(tip.hdr.idFrom);
    if (button == nullptr) return;
    tip.hinst = ModuleInstance();
    tip.lpszText = MAKEINTRESOURCEW(button->tip);
}

// A button with a text that the bar does not show itself is explained by that text unless the bar is told better.
void OnToolInfo(NMTBGETINFOTIPW& tip) noexcept
{
    const ToolButton* const button = FindButton(static_cast<std::uintptr_t>(tip.iItem));
    if (button == nullptr) return;
    LoadStringW(ModuleInstance(), static_cast<UINT>(button->tip), tip.pszText, tip.cchTextMax);
}

} // namespace vantrel
