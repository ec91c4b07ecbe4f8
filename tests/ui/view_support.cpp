#include "ui/view_support.h"

namespace vantrel::ui {

LRESULT SelectIndex(const User& user, const char16_t* index)
{
    return SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(index));
}

void Switch(User& user, int option, bool on)
{
    SendMessageW(user.Client(), SetOption, MAKEWPARAM(option, on ? 1 : 0), 0);
    user.Wait();
}

int EdgeWidth()
{
    HDC const dc = CreateCompatibleDC(nullptr);
    RECT area{0, 0, 100, 100};
    DrawEdge(dc, &area, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    DeleteDC(dc);
    return (100 - (area.right - area.left)) / 2;
}

RECT EditorRect(const User& user)
{
    RECT rect{};
    GetWindowRect(user.Editor(), &rect);
    MapWindowPoints(nullptr, user.Client(), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

int BarPosition(HWND window, int bar)
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS;
    GetScrollInfo(window, bar, &info);
    return info.nPos;
}

FontSize FontOf(HWND window)
{
    HDC const dc = GetDC(window);
    HGDIOBJ const previous =
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, previous);
    ReleaseDC(window, dc);
    return {metrics.tmAveCharWidth, metrics.tmHeight + metrics.tmExternalLeading};
}

} // namespace vantrel::ui
