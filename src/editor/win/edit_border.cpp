// The window's border, by which its box is given another size, and the cursor that says so.
#include <windowsx.h>

#include "editor/win/edit_instance.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

static_assert(HitClient == HTCLIENT && HitGrow == HTGROWBOX && HitRight == HTRIGHT && HitBottom == HTBOTTOM &&
              HitCorner == HTBOTTOMRIGHT && HitBorder == HTBORDER);

EditFrame FrameOf(const EditInstance& instance) noexcept
{
    RECT rect{};
    GetWindowRect(WindowOf(instance), &rect);
    const LONG_PTR style = GetWindowLongPtrW(WindowOf(instance), GWL_STYLE);
    return {{rect.right - rect.left, rect.bottom - rect.top},
            {(style & WS_VSCROLL) != 0 ? GetSystemMetrics(SM_CXVSCROLL) : 0,
             (style & WS_HSCROLL) != 0 ? GetSystemMetrics(SM_CYHSCROLL) : 0}};
}

const wchar_t* CursorOf(const EditInstance& instance, WORD hitCode) noexcept
{
    if (instance.edit.view->busy) return IDC_WAIT;
    if (hitCode == HTCLIENT) return IDC_IBEAM;
    if (!HasSizeOfItsOwn(instance.edit)) return IDC_ARROW;
    switch (hitCode) {
    case HTGROWBOX:
    case HTBOTTOMRIGHT: return IDC_SIZENWSE;
    case HTRIGHT: return IDC_SIZEWE;
    case HTBOTTOM: return IDC_SIZENS;
    default: return IDC_ARROW;
    }
}

} // namespace

LRESULT OnNcHitTest(EditInstance& instance, LPARAM screen)
{
    const TraceScope trace("edit_border.cpp", "OnNcHitTest");
    const HWND window = WindowOf(instance);
    const LRESULT code = DefaultEditProc(window, WM_NCHITTEST, 0, screen);
    RECT rect{};
    GetWindowRect(window, &rect);
    const Point64 point{GET_X_LPARAM(screen) - rect.left, GET_Y_LPARAM(screen) - rect.top};
    return HitBorderOf(instance.edit, FrameOf(instance), point, static_cast<std::int32_t>(code));
}

LRESULT OnNcButtonDown(EditInstance& instance, WPARAM hitCode, LPARAM screen)
{
    const TraceScope trace("edit_border.cpp", "OnNcButtonDown");
    const HWND window = WindowOf(instance);
    const bool begun = !instance.edit.view->busy &&
                       BeginResize(instance.edit, FrameOf(instance), static_cast<std::int32_t>(hitCode),
                                   {GET_X_LPARAM(screen), GET_Y_LPARAM(screen)});
    if (!begun) return DefaultEditProc(window, WM_NCLBUTTONDOWN, hitCode, screen);
    if (GetFocus() != window) SetFocus(window);
    HideEditCaret(instance); // the text moves under it until the border is let go
    SetCapture(window);
    SetCursor(LoadCursorW(nullptr, CursorOf(instance, static_cast<WORD>(hitCode))));
    return 0;
}

void ResizeToMouse(EditInstance& instance)
{
    const TraceScope trace("edit_border.cpp", "ResizeToMouse");
    const HWND window = WindowOf(instance);
    if (instance.edit.view->node != instance.edit.pressed) return;
    POINT screen{static_cast<LONG>(instance.lastMousePoint.x), static_cast<LONG>(instance.lastMousePoint.y)};
    ClientToScreen(window, &screen);
    const Size64 size = ResizedTo(instance.edit, {screen.x, screen.y});
    const Size64 present = FrameOf(instance).window;
    if (size.width == present.width && size.height == present.height) return;
    SetWindowPos(window, nullptr, 0, 0, static_cast<int>(size.width), static_cast<int>(size.height),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    instance.edit.effects->notify(instance.edit, EditNotifyResized);
}

LRESULT OnSetCursor(EditInstance& instance, WORD hitCode)
{
    const TraceScope trace("edit_border.cpp", "OnSetCursor");
    SetCursor(LoadCursorW(nullptr, CursorOf(instance, hitCode)));
    return TRUE;
}

} // namespace vantrel
