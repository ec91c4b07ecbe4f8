#include <windows.h>

#include <commctrl.h>

#include <memory>

#include "editor/edit_messages.h"
#include "entry/trace.h"
#include "tools/win/default_font.h"
#include "tools/win/fonts.h"
#include "tools/win/options.h"
#include "tools/win/scroll_bars.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/busy.h"
#include "view/messages.h"
#include "view/selection.h"
#include "view/undo.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

// How thick the system draws a sunken edge: no metric tells, so one is drawn.
Size64 GetEdgeSize(HWND window) noexcept
{
    constexpr LONG Side = 100;
    const WindowDc dc(window);
    RECT rect{0, 0, Side, Side};
    DrawEdge(dc, &rect, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    return {(Side - (rect.right - rect.left)) / 2, (Side - (rect.bottom - rect.top)) / 2};
}

HWND CreateEdit(ClientWindow& client, std::int32_t id, DWORD style)
{
    const HWND edit = CreateWindowExW(0, AsWide(EditClassName), L"", WS_CHILD | style, 0, 0, 0, 0,
                                      client.window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                      ModuleInstance(), &client.view.edit);
    if (edit != nullptr)
        SetWindowSubclass(edit, &FocusSubclass, FocusSubclassId, reinterpret_cast<DWORD_PTR>(&client));
    return edit;
}

bool CreateEdits(ClientWindow& client)
{
    client.scalarEdit = CreateEdit(client, ScalarEditId, WS_BORDER);
    client.spareEdit = CreateEdit(client, SpareEditId, 0);
    client.arrayEdit = CreateEdit(client, ArrayEditId, WS_BORDER | WS_HSCROLL | WS_VSCROLL);
    return client.scalarEdit != nullptr && client.spareEdit != nullptr && client.arrayEdit != nullptr;
}

void DestroyEdit(HWND edit)
{
    if (edit == nullptr) return;
    RemoveWindowSubclass(edit, &FocusSubclass, FocusSubclassId);
    CopyFontToWindow(edit, nullptr);
    DestroyWindow(edit);
}

void DestroyEdits(ClientWindow& client)
{
    client.activeEdit = nullptr;
    DestroyEdit(client.scalarEdit);
    DestroyEdit(client.spareEdit);
    DestroyEdit(client.arrayEdit);
}

// Registers or unregisters the window. Systems without these routines leave the paste commands as they were when last asked for.
void ListenToClipboard(HWND window, const char* routine) noexcept
{
    using Listen = BOOL(WINAPI*)(HWND);
    const auto listen = reinterpret_cast<Listen>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), routine)));
    if (listen != nullptr) listen(window);
}

void SetDefaultFont(HWND window)
{
    const HFONT font = GetDefaultFont();
    CopyFontToWindow(window, font);
    DeleteObject(font);
}

void SaveFont(const ClientWindow& client)
{
    LOGFONTA logFont{};
    if (GetObjectA(client.font, sizeof logFont, &logFont) != 0)
        SaveOption(nullptr, u"Font", &logFont, sizeof logFont);
}

void ReleaseWindowResources(ClientWindow& client)
{
    client.measurer.Close(); // lets go of the font before it is deleted
    DestroyEdits(client);
    CopyFontToWindow(client.window, nullptr);
    client.font = nullptr;
    DeleteObject(client.redPen);
    client.redPen = nullptr;
}

} // namespace

LRESULT OnCreate(HWND window, const CREATESTRUCTW& create)
{
    const TraceScope trace("client_create.cpp", "OnCreate");
    // Reachable from the window at once: whatever fails below, OnDestroy finds and frees it.
    ClientWindow& client = *std::make_unique<ClientWindow>().release();
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&client));
    View& view = client.view;
    client.window = window;
    view.win = &client;
    view.window = window;
    view.frame = create.hwndParent;
    view.context = static_cast<EditContext*>(create.lpCreateParams);
    view.edit.context = view.context;
    view.effects = WindowViewEffects();
    view.metrics.edge = GetEdgeSize(window);
    ReadPlatform(view);
    const RECT area = QmGetClientRectangle(window);
    view.metrics.client = {area.right, area.bottom};
    client.redPen = CreatePen(PS_SOLID, 1, RGB(255, 0, 0));
    ReadViewOptions(client);
    InitializeWindowsScrollbars(view.scroll, window);
    if (!CreateEdits(client)) return -1;
    SetDefaultFont(window);
    view.effects.showWindowScrollBars(view, true);
    ListenToClipboard(window, "AddClipboardFormatListener");
    return 0;
}

void ReadPlatform(View& view)
{
    const TraceScope trace("client_create.cpp", "ReadPlatform");
    ViewMetrics& metrics = view.metrics;
    metrics.verticalBarWidth = GetSystemMetrics(SM_CXVSCROLL);
    metrics.horizontalBarHeight = GetSystemMetrics(SM_CYHSCROLL);
    metrics.verticalArrow = GetSystemMetrics(SM_CYVSCROLL);
    metrics.horizontalArrow = GetSystemMetrics(SM_CXHSCROLL);
    metrics.shortestThumb = {GetSystemMetrics(SM_CXHTHUMB) / 2, GetSystemMetrics(SM_CYVTHUMB) / 2};
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    metrics.workArea = {work.right - work.left, work.bottom - work.top};
}

void OnSettingChange(ClientWindow& client)
{
    const TraceScope trace("client_create.cpp", "OnSettingChange");
    View& view = client.view;
    if ((view.flags & ViewBusy) != 0) return; // the layout that runs has asked, or the next one will
    const ViewMetrics before = view.metrics;
    ReadPlatform(view);
    const ViewMetrics& now = view.metrics;
    if (now.workArea.width == before.workArea.width && now.workArea.height == before.workArea.height &&
        now.verticalBarWidth == before.verticalBarWidth &&
        now.horizontalBarHeight == before.horizontalBarHeight)
        return;
    LayOutAgain(view, false);
}

void OnLookChange(ClientWindow& client, UINT message, WPARAM wParam, LPARAM lParam)
{
    const TraceScope trace("client_create.cpp", "OnLookChange");
    for (const HWND edit : {client.scalarEdit, client.spareEdit, client.arrayEdit}) {
        SendMessageW(edit, message, wParam, lParam);
        InvalidateRect(edit, nullptr, FALSE);
    }
    client.view.effects.invalidate(client.view);
}

void OnDestroy(ClientWindow& client)
{
    const TraceScope trace("client_create.cpp", "OnDestroy");
    // From here on nothing that the going windows send finds the record.
    SetWindowLongPtrW(client.window, GWLP_USERDATA, 0);
    ListenToClipboard(client.window, "RemoveClipboardFormatListener");
    UndoPurge(client.view);
    SaveFont(client);
    SaveViewOptions(client);
    ReleaseWindowResources(client);
    client.destroyed = true;
}

void OnSetFont(ClientWindow& client, HFONT font)
{
    const TraceScope trace("client_create.cpp", "OnSetFont");
    View& view = client.view;
    const BusyMark busy(view);
    client.font = font;
    const FontMetrics metrics = GetFontMetrics(client.window, font);
    view.edit.averageCharWidth = metrics.averageCharWidth;
    view.edit.lineHeight = metrics.lineHeight;
    client.measurer.Open(font, view.edit.widths);
    for (const HWND edit : {client.scalarEdit, client.spareEdit, client.arrayEdit})
        CopyFontToWindow(edit, font);
    LayOutAgain(view, true);
}

} // namespace vantrel
