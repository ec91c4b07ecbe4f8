#include "ui/menus.h"

#include <commctrl.h>

namespace vantrel::ui {
namespace {

constexpr int PollMilliseconds = 10;
constexpr int MostPolls = 500;

// The positions that lead from the menu to the item; empty when it is not there.
std::vector<int> PathTo(HMENU menu, int id)
{
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        HMENU const below = GetSubMenu(menu, i);
        if (below == nullptr && static_cast<int>(GetMenuItemID(menu, i)) == id) return {i};
        std::vector<int> path = below != nullptr ? PathTo(below, id) : std::vector<int>{};
        if (path.empty()) continue;
        path.insert(path.begin(), i);
        return path;
    }
    return {};
}

struct Sought {
    HMENU menu; // null: any
    HWND window;
};

BOOL CALLBACK TakeMenuWindow(HWND window, LPARAM parameter)
{
    auto& sought = *reinterpret_cast<Sought*>(parameter);
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    if (wcscmp(name, L"#32768") != 0 || !IsWindowVisible(window)) return TRUE;
    const auto shown = reinterpret_cast<HMENU>(SendMessageW(window, MN_GETHMENU, 0, 0));
    if (shown == nullptr || (sought.menu != nullptr && shown != sought.menu)) return TRUE;
    sought.window = window;
    return FALSE;
}

} // namespace

HWND WaitForMenuWindow(HMENU menu)
{
    Sought sought{menu, nullptr};
    for (int i = 0; i < MostPolls; ++i) {
        EnumWindows(TakeMenuWindow, reinterpret_cast<LPARAM>(&sought));
        if (sought.window != nullptr) return sought.window;
        Sleep(PollMilliseconds);
    }
    return nullptr;
}

namespace {

void ClickItem(User& user, HWND owner, HMENU menu, int position)
{
    RECT rect{};
    GetMenuItemRect(owner, menu, static_cast<UINT>(position), &rect);
    const POINT point{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    user.Mouse(GetDesktopWindow(), point, MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_LEFTUP);
}

// Down the open menu to the item.
bool ChooseFromOpenMenu(User& user, HMENU menu, int id)
{
    for (const int position : PathTo(menu, id)) {
        HWND const window = WaitForMenuWindow(menu);
        if (window == nullptr) return false;
        ClickItem(user, window, menu, position);
        menu = GetSubMenu(menu, position);
    }
    return true;
}

// From a window's context menu, opened as by the keyboard.
bool ChooseFromMenuOf(User& user, HWND window, int id)
{
    PostMessageW(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window), -1);
    HMENU const menu = WaitForMenu();
    if (menu == nullptr) return false;
    if (!PathTo(menu, id).empty() && !IsGrayed(menu, id)) return ChooseFromOpenMenu(user, menu, id);
    user.Key(VK_ESCAPE);
    return false;
}

} // namespace

HMENU WaitForMenu()
{
    HWND const window = WaitForMenuWindow(nullptr);
    return window == nullptr ? nullptr : reinterpret_cast<HMENU>(SendMessageW(window, MN_GETHMENU, 0, 0));
}

void CloseMenu(User& user)
{
    user.Key(VK_ESCAPE);
    for (int i = 0; i < MostPolls && FindWindowW(L"#32768", nullptr) != nullptr; ++i)
        Sleep(PollMilliseconds);
}

bool IsGrayed(HMENU menu, int id)
{
    return (GetMenuState(menu, static_cast<UINT>(id), MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED)) != 0;
}

HWND ToolBarOf(const User& user)
{
    return FindWindowExW(user.Frame(), nullptr, TOOLBARCLASSNAMEW, nullptr);
}

void PressTool(User& user, int command)
{
    HWND const bar = ToolBarOf(user);
    const LRESULT index = SendMessageW(bar, TB_COMMANDTOINDEX, static_cast<WPARAM>(command), 0);
    RECT place{};
    SendMessageW(bar, TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
    const POINT centre{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    user.Mouse(bar, centre, MOUSEEVENTF_LEFTDOWN);
    user.Mouse(bar, centre, MOUSEEVENTF_LEFTUP);
}

bool ChooseFromMenuBar(User& user, int id)
{
    HMENU const bar = GetMenu(user.Frame());
    const std::vector<int> path = PathTo(bar, id);
    if (path.size() != 2 || IsGrayed(bar, id)) return false;
    ClickItem(user, user.Frame(), bar, path[0]);
    return ChooseFromOpenMenu(user, GetSubMenu(bar, path[0]), id);
}

bool ChooseFromContextMenu(User& user, int id)
{
    return ChooseFromMenuOf(user, user.Client(), id);
}

bool ChooseFromEditorMenu(User& user, int id)
{
    return ChooseFromMenuOf(user, user.Editor(), id);
}

} // namespace vantrel::ui
