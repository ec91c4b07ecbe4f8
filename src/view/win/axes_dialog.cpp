// The dialog that puts the axes of an array in order: a list whose lines are dragged or moved by two buttons.
#include <windows.h>

#include <commctrl.h>

#include <cwchar>
#include <string>

#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

struct AxesDialog {
    const Scdr* node;
    std::int32_t* axes;
    HWND list;
    int dragged;
};

UINT DragMessage() noexcept
{
    static const UINT message = RegisterWindowMessage(DRAGLISTMSGSTRING);
    return message;
}

AxesDialog& DialogOf(HWND window) noexcept
{
    return *reinterpret_cast<AxesDialog*>(GetWindowLongPtrW(window, DWLP_USER));
}

// Each line carries its axis as item data, so that the list itself is the order.
void FillList(const AxesDialog& dialog)
{
    char16_t* const* const names = dialog.node->extra->AxisNames;
    for (std::int32_t place = 0; place < dialog.node->Rank; ++place) {
        const std::int32_t axis = dialog.axes[place];
        const LRESULT line =
            SendMessageW(dialog.list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(names[axis]));
        SendMessageW(dialog.list, LB_SETITEMDATA, static_cast<WPARAM>(line), axis);
    }
    SendMessageW(dialog.list, LB_SETCURSEL, 0, 0);
}

void MoveLine(const AxesDialog& dialog, int from, int to)
{
    const auto count = static_cast<int>(SendMessageW(dialog.list, LB_GETCOUNT, 0, 0));
    if (from == to || from < 0 || to < 0 || from >= count || to >= count) return;
    const LRESULT axis = SendMessageW(dialog.list, LB_GETITEMDATA, static_cast<WPARAM>(from), 0);
    SendMessageW(dialog.list, LB_DELETESTRING, static_cast<WPARAM>(from), 0);
    SendMessageW(dialog.list, LB_INSERTSTRING, static_cast<WPARAM>(to),
                 reinterpret_cast<LPARAM>(dialog.node->extra->AxisNames[axis]));
    SendMessageW(dialog.list, LB_SETITEMDATA, static_cast<WPARAM>(to), axis);
    SendMessageW(dialog.list, LB_SETCURSEL, static_cast<WPARAM>(to), 0);
}

void MoveSelectedLine(const AxesDialog& dialog, int distance)
{
    const auto line = static_cast<int>(SendMessageW(dialog.list, LB_GETCURSEL, 0, 0));
    MoveLine(dialog, line, line + distance);
}

// A line's axis, by what the line carries, else by its name; -1 where the line is of no axis that is left.
std::int32_t AxisOfLine(const AxesDialog& dialog, std::int32_t line, const Vector<bool>& taken)
{
    const auto at = static_cast<WPARAM>(line);
    const auto length = SendMessageW(dialog.list, LB_GETTEXTLEN, at, 0);
    if (length < 0) return -1;
    std::wstring name(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessageW(dialog.list, LB_GETTEXT, at, reinterpret_cast<LPARAM>(name.data()));
    const auto isFree = [&](std::int32_t axis) {
        return !taken[static_cast<std::size_t>(axis)] &&
               std::wcscmp(AsWide(dialog.node->extra->AxisNames[axis]), name.c_str()) == 0;
    };
    const LRESULT carried = SendMessageW(dialog.list, LB_GETITEMDATA, at, 0);
    if (carried >= 0 && carried < dialog.node->Rank && isFree(static_cast<std::int32_t>(carried)))
        return static_cast<std::int32_t>(carried);
    std::int32_t axis = 0;
    while (axis < dialog.node->Rank && !isFree(axis))
        ++axis;
    return axis < dialog.node->Rank ? axis : -1;
}

// The list from top to bottom. False where it is no order of the axes.
bool ReadOrder(const AxesDialog& dialog)
{
    Vector<bool> taken(static_cast<std::size_t>(dialog.node->Rank), false);
    for (std::int32_t line = 0; line < dialog.node->Rank; ++line) {
        const std::int32_t axis = AxisOfLine(dialog, line, taken);
        if (axis < 0) return false;
        taken[static_cast<std::size_t>(axis)] = true;
        dialog.axes[line] = axis;
    }
    return true;
}

INT_PTR OnInitDialog(HWND window, AxesDialog& dialog)
{
    SetWindowLongPtrW(window, DWLP_USER, reinterpret_cast<LONG_PTR>(&dialog));
    dialog.list = GetDlgItem(window, IDC_AXES_LIST);
    FillList(dialog);
    MakeDragList(dialog.list);
    return TRUE;
}

INT_PTR Answer(HWND window, LONG_PTR result)
{
    SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
    return TRUE;
}

INT_PTR OnDrag(HWND window, AxesDialog& dialog, const DRAGLISTINFO& drag)
{
    const int line = LBItemFromPt(drag.hWnd, drag.ptCursor, TRUE);
    switch (drag.uNotification) {
    case DL_BEGINDRAG: dialog.dragged = line; return Answer(window, line >= 0);
    case DL_DRAGGING:
        // The mark stands where the line will be: before the one pointed at, or behind it on the way down.
        DrawInsert(window, drag.hWnd, line > dialog.dragged ? line + 1 : line);
        return Answer(window, DL_MOVECURSOR);
    case DL_DROPPED:
        DrawInsert(window, drag.hWnd, -1);
        MoveLine(dialog, dialog.dragged, line);
        return Answer(window, DL_CURSORSET);
    default: DrawInsert(window, drag.hWnd, -1); return Answer(window, 0);
    }
}

INT_PTR OnDialogCommand(HWND window, WORD id)
{
    switch (id) {
    case IDOK: EndDialog(window, ReadOrder(DialogOf(window)) ? IDOK : IDCANCEL); return TRUE;
    case IDCANCEL: EndDialog(window, IDCANCEL); return TRUE;
    case IDC_AXES_UP: MoveSelectedLine(DialogOf(window), -1); return TRUE;
    case IDC_AXES_DOWN: MoveSelectedLine(DialogOf(window), 1); return TRUE;
    default: return FALSE;
    }
}

INT_PTR HandleDialog(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) return OnInitDialog(window, *reinterpret_cast<AxesDialog*>(lParam));
    if (message == DragMessage())
        return OnDrag(window, DialogOf(window), *reinterpret_cast<const DRAGLISTINFO*>(lParam));
    return message == WM_COMMAND ? OnDialogCommand(window, LOWORD(wParam)) : FALSE;
}

INT_PTR CALLBACK AxesProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    return Sealed<INT_PTR>(FALSE, [&] { return HandleDialog(window, message, wParam, lParam); });
}

} // namespace

bool AskAxisOrder(View& view, const Scdr& node, std::int32_t* axes)
{
    const TraceScope trace("axes_dialog.cpp", "AskAxisOrder");
    AxesDialog dialog{&node, axes, nullptr, -1};
    return DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(IDD_REORDER_AXES), view.frame, &AxesProc,
                           reinterpret_cast<LPARAM>(&dialog)) == IDOK;
}

} // namespace vantrel
