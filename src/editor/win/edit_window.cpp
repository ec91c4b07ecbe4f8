#include "editor/win/edit_window.h"

#include <richedit.h>

#include <new>

#include "editor/win/edit_instance.h"
#include "entry/trace.h"
#include "tools/win/guard.h"
#include "tools/win/scroll_bars.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

int g_classUsers = 0;

// --- life ---

LRESULT OnCreate(HWND window, const CREATESTRUCTW& creation) noexcept
{
    const TraceScope trace("edit_window.cpp", "OnCreate");
    auto* instance = new (std::nothrow) EditInstance;
    if (instance == nullptr) return -1;
    instance->edit.view = static_cast<EditView*>(creation.lpCreateParams);
    instance->edit.window = window;
    instance->edit.effects = &g_editEffects;
    instance->edit.readOnly = (creation.style & ES_READONLY) != 0;
    instance->edit.frameWidth = GetSystemMetrics(SM_CXFRAME);
    instance->font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(instance));
    return 0;
}

LRESULT OnDestroy(HWND window) noexcept
{
    const TraceScope trace("edit_window.cpp", "OnDestroy");
    EditInstance* instance = GetEditInstance(window);
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    delete instance;
    return 0;
}

// --- font and styles ---

// The one of the view's edit windows that is shown over the node.
bool IsActiveEditor(const EditInstance& instance) noexcept
{
    if (!HasEditedNode(instance.edit)) return false;
    const bool shown = (GetWindowLongPtrW(WindowOf(instance), GWL_STYLE) & WS_VISIBLE) != 0;
    return shown && StateOf(instance.edit).scroll.window == instance.edit.window;
}

LRESULT OnSetFont(EditInstance& instance, HFONT font, bool redraw)
{
    const TraceScope trace("edit_window.cpp", "OnSetFont");
    instance.font = font;
    GiveFontToInputMethod(instance, font);
    if (IsActiveEditor(instance)) OnFontChanged(instance.edit);
    if (redraw) InvalidateRect(WindowOf(instance), nullptr, FALSE);
    return 0;
}

LRESULT OnStyleChanged(EditInstance& instance, WPARAM which, const STYLESTRUCT& styles) noexcept
{
    const TraceScope trace("edit_window.cpp", "OnStyleChanged");
    if (static_cast<int>(which) == GWL_STYLE) instance.edit.readOnly = (styles.styleNew & ES_READONLY) != 0;
    RedrawWindow(WindowOf(instance), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_FRAME);
    return 0;
}

LRESULT OnSetReadOnly(EditInstance& instance, bool readOnly) noexcept
{
    const TraceScope trace("edit_window.cpp", "OnSetReadOnly");
    if (instance.edit.readOnly != readOnly) InvalidateRect(WindowOf(instance), nullptr, FALSE);
    instance.edit.readOnly = readOnly;
    return TRUE;
}

LRESULT OnInvalidate(EditInstance& instance) noexcept
{
    InvalidateRect(WindowOf(instance), nullptr, FALSE);
    return 0;
}

LRESULT OnSetModify(EditInstance& instance, bool modified) noexcept
{
    StateOf(instance.edit).modified = modified;
    return 0;
}

// --- focus and size ---

// A match is marked only while the keyboard is elsewhere.
void RedrawMatch(const EditInstance& instance) noexcept
{
    if (IsActiveEditor(instance) && instance.edit.view->findMatch)
        InvalidateRect(WindowOf(instance), nullptr, FALSE);
}

LRESULT OnSetFocus(EditInstance& instance)
{
    const TraceScope trace("edit_window.cpp", "OnSetFocus");
    RedrawMatch(instance);
    DrawCaret(instance.edit);
    instance.edit.effects->notify(instance.edit, EditNotifySetFocus);
    return 0;
}

LRESULT OnKillFocus(EditInstance& instance) noexcept
{
    const TraceScope trace("edit_window.cpp", "OnKillFocus");
    RedrawMatch(instance);
    HideEditCaret(instance); // also in the middle of a selection
    return 0;
}

LRESULT OnSize(EditInstance& instance, WPARAM kind, LPARAM size)
{
    const TraceScope trace("edit_window.cpp", "OnSize");
    if (kind == SIZE_RESTORED || kind == SIZE_MAXIMIZED) LayOutEdit(instance.edit);
    return DefaultEditProc(WindowOf(instance), WM_SIZE, kind, size);
}

// --- keyboard ---

LRESULT OnKeyDownMessage(EditInstance& instance, UINT message, WPARAM key, LPARAM state)
{
    if (OnKeyDown(instance.edit, static_cast<std::uint32_t>(key))) return 0;
    return DefaultEditProc(WindowOf(instance), message, key, state);
}

LRESULT OnCharMessage(EditInstance& instance, WPARAM character, LPARAM state)
{
    auto unit = static_cast<wchar_t>(character);
    if (!IsWindowUnicode(WindowOf(instance))) {
        const char byte = static_cast<char>(character);
        MultiByteToWideChar(CP_ACP, 0, &byte, 1, &unit, 1);
    }
    OnChar(instance.edit, static_cast<char16_t>(unit),
           (static_cast<std::uint32_t>(state) & 0x80000000u) != 0);
    return 0;
}

// --- scrolling ---

LRESULT OnScroll(EditInstance& instance, UINT message, WPARAM wParam)
{
    const TraceScope trace("edit_window.cpp", "OnScroll");
    ScrollRecord& scroll = StateOf(instance.edit).scroll;
    const auto code = static_cast<std::int32_t>(LOWORD(wParam));
    if (message == WM_HSCROLL) {
        OnHscroll(scroll, code);
    } else {
        OnVscroll(scroll, code);
    }
    MoveCaretIntoWindow(instance.edit);
    DrawCaret(instance.edit); // the text moved under it
    return 0;
}

// --- the model's routines as messages ---

template <typename Routine> LRESULT Run(EditInstance& instance, Routine routine)
{
    routine(instance.edit);
    return 0;
}

LRESULT OnPaintMessage(EditInstance& instance)
{
    PaintEditWindow(instance);
    return 0;
}

LRESULT OnMoveCaretMessage(EditInstance& instance, const std::int64_t* deltas)
{
    const TraceScope trace("edit_window.cpp", "OnMoveCaretMessage");
    if (deltas == nullptr) return 0;
    MoveCaret(instance.edit, deltas[0], deltas[1]);
    SelectionReset(instance.edit);
    return 0;
}

LRESULT OnEditedMessage(EditInstance& instance, UINT message, WPARAM wParam, LPARAM lParam)
{
    EditWindow& edit = instance.edit;
    switch (message) {
    case WM_SIZE: return OnSize(instance, wParam, lParam);
    case WM_SETFOCUS: return OnSetFocus(instance);
    case WM_KILLFOCUS: return OnKillFocus(instance);
    case WM_PAINT: return OnPaintMessage(instance);
    case WM_ERASEBKGND: return 1;
    case WM_SYSCOLORCHANGE: return OnInvalidate(instance);
    case WM_SETCURSOR: return OnSetCursor(instance, LOWORD(lParam));
    case WM_CONTEXTMENU: return OnContextMenu(instance, lParam);
    case WM_NCHITTEST: return OnNcHitTest(instance, lParam);
    case WM_NCLBUTTONDOWN: return OnNcButtonDown(instance, wParam, lParam);
    case WM_STYLECHANGED:
        return OnStyleChanged(instance, wParam, *reinterpret_cast<const STYLESTRUCT*>(lParam));
    case WM_GETDLGCODE: return DLGC_WANTARROWS | DLGC_WANTTAB | DLGC_WANTALLKEYS | DLGC_WANTCHARS;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: return OnKeyDownMessage(instance, message, wParam, lParam);
    case WM_CHAR: return OnCharMessage(instance, wParam, lParam);
    case WM_HSCROLL:
    case WM_VSCROLL: return OnScroll(instance, message, wParam);
    case WM_MOUSEWHEEL: return OnWheel(instance, wParam, lParam);
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN: return OnButtonDown(instance, message, wParam, lParam);
    case WM_LBUTTONUP: return OnButtonUp(instance, lParam);
    case WM_MOUSEMOVE: return OnMouseMove(instance, lParam);
    case WM_CAPTURECHANGED: return OnCaptureChanged(instance);
    case WM_IME_NOTIFY: return OnImeNotify(instance, wParam, lParam);
    case WM_CUT: return Run(instance, CutSelection);
    case WM_COPY: return Run(instance, CopySelection);
    case WM_PASTE: return Run(instance, PasteClipboard);
    case WM_CLEAR: return Run(instance, ClearSelection);
    case WM_UNDO:
    case EM_UNDO: return Undo(edit);
    case EM_CANUNDO: return CanUndo(edit);
    case EM_REDO: return Redo(edit);
    case EM_CANREDO: return CanRedo(edit);
    case EM_EMPTYUNDOBUFFER: return Run(instance, EmptyUndo);
    case EM_SETREADONLY: return OnSetReadOnly(instance, wParam != 0);
    case EM_SETMODIFY: return OnSetModify(instance, wParam != 0);
    case EM_GETMODIFY: return StateOf(edit).modified;
    case EditMessageDrawCaret: return Run(instance, DrawCaret);
    case EditMessageFreeRedo: return Run(instance, FreeRedo);
    case EditMessageMoveCaret:
        return OnMoveCaretMessage(instance, reinterpret_cast<const std::int64_t*>(wParam));
    case EditMessageSelectAll: return Run(instance, SelectAll);
    case EditMessageNewPlane: return Run(instance, OnNewPlane);
    case EditMessageUseScdr: OnUseScdr(edit, wParam != 0); return 0;
    case EditMessageLineNumbers: return Run(instance, OnSetLineNumbers);
    case EditMessageRuler: return Run(instance, OnSetRuler);
    case EditMessageScrollbars: return Run(instance, OnSetScrollbars);
    default: return DefaultEditProc(WindowOf(instance), message, wParam, lParam);
    }
}

// The view sets these before its node has met an editor.
bool NeedsNoState(UINT message) noexcept
{
    return message == EditMessageUseScdr || message == EM_SETREADONLY || message == WM_STYLECHANGED;
}

bool HasSimpleNode(const EditInstance& instance) noexcept
{
    const EditView* view = instance.edit.view;
    return view != nullptr && view->node != nullptr && IsSimple(*view->node);
}

LRESULT Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    EditInstance* instance = GetEditInstance(window);
    if (message == WM_CREATE) return OnCreate(window, *reinterpret_cast<const CREATESTRUCTW*>(lParam));
    if (instance == nullptr) return DefaultEditProc(window, message, wParam, lParam);
    switch (message) {
    case WM_DESTROY: return OnDestroy(window);
    case WM_SETFONT: return OnSetFont(*instance, reinterpret_cast<HFONT>(wParam), LOWORD(lParam) != 0);
    case WM_GETFONT: return reinterpret_cast<LRESULT>(instance->font);
    // What began over one node must end although the view has gone on to another.
    case WM_LBUTTONUP: return OnButtonUp(*instance, lParam);
    case WM_CAPTURECHANGED: return OnCaptureChanged(*instance);
    case WM_KILLFOCUS: return OnKillFocus(*instance);
    default: break;
    }
    const bool handled = HasEditedNode(instance->edit) || (HasSimpleNode(*instance) && NeedsNoState(message));
    if (!handled) return DefaultEditProc(window, message, wParam, lParam);
    return OnEditedMessage(*instance, message, wParam, lParam);
}

LRESULT CALLBACK EditProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const LRESULT failed = message == WM_CREATE ? -1 : 0;
    return Sealed<LRESULT>(failed, [&] { return Dispatch(window, message, wParam, lParam); });
}

} // namespace

EditInstance* GetEditInstance(HWND window) noexcept
{
    return reinterpret_cast<EditInstance*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

LRESULT DefaultEditProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    return IsWindowUnicode(window) ? DefWindowProcW(window, message, wParam, lParam)
                                   : DefWindowProcA(window, message, wParam, lParam);
}

bool RegisterEditClass()
{
    const TraceScope trace("edit_window.cpp", "RegisterEditClass");
    if (g_classUsers > 0) {
        ++g_classUsers;
        return true;
    }
    WNDCLASSEXW editClass{};
    editClass.cbSize = sizeof editClass;
    editClass.style = CS_HREDRAW | CS_VREDRAW;
    editClass.lpfnWndProc = EditProc;
    editClass.hInstance = ModuleInstance();
    editClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    editClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    editClass.lpszClassName = AsWide(EditClassName);
    if (RegisterClassExW(&editClass) == 0) return false;
    g_classUsers = 1;
    return true;
}

void UnregisterEditClass()
{
    const TraceScope trace("edit_window.cpp", "UnregisterEditClass");
    if (g_classUsers > 0 && --g_classUsers == 0) UnregisterClassW(AsWide(EditClassName), ModuleInstance());
}

} // namespace vantrel
