// What the library carries: menus, keys, texts.
#include <windows.h>

#include <gtest/gtest.h>

#include <commctrl.h>

#include <array>
#include <cstdio>
#include <map>

#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int Separator = 0;

HMODULE Module()
{
    static_cast<void>(Library());
    return GetModuleHandleW(L"vantrel.dll");
}

struct Item {
    int id;
    const wchar_t* text;
};
using Items = std::vector<Item>;

std::wstring TextAt(HMENU menu, int position)
{
    wchar_t text[128] = {};
    GetMenuStringW(menu, static_cast<UINT>(position), text, 128, MF_BYPOSITION);
    return text;
}

void ExpectItems(HMENU menu, const Items& items)
{
    ASSERT_EQ(GetMenuItemCount(menu), static_cast<int>(items.size()));
    for (std::size_t i = 0; i < items.size(); ++i) {
        const int position = static_cast<int>(i);
        if (GetSubMenu(menu, position) == nullptr) {
            EXPECT_EQ(GetMenuItemID(menu, position), static_cast<UINT>(items[i].id));
        }
        EXPECT_EQ(TextAt(menu, position), items[i].text == nullptr ? L"" : items[i].text) << "item " << i;
    }
}

const Items FileItems = {
    {4101, L"&Revert"},        {4106, L"&Open...\tCtrl+O"}, {4109, L"Open Object\tShift+Ctrl+O"},
    {4102, L"&Save\tCtrl+S"},  {4103, L"Save &As…"},        {4104, L"Save and &close"},
    {Separator, nullptr},      {4105, L"E&xit\tAlt+F4"},    {Separator, nullptr},
    {4107, L"Page Set&up..."}, {4108, L"&Print..."}};
const Items EditItems = {{4207, L"Check and align\tF5"},
                         {Separator, nullptr},
                         {4201, L"Cu&t array\tCtrl+Shift+X"},
                         {4202, L"&Copy array\tCtrl+Shift+C"},
                         {4203, L"&Paste array\tCtrl+Shift+V"},
                         {4204, L"&Undo array\tCtrl+Shift+Z"},
                         {4205, L"&Redo array\tCtrl+Shift+Y"},
                         {4208, L"&Empty array undo buffer"},
                         {Separator, nullptr},
                         {4003, L"Cut\tCtrl+X"},
                         {4004, L"Copy\tCtrl+C"},
                         {4005, L"Paste\tCtrl+V"},
                         {Separator, nullptr},
                         {4206, L"&Find…\tCtrl+F"},
                         {4209, L"Find Next\tF3"},
                         {4210, L"Find Previous\tShift+F3"}};
const Items ActionItems = {{4601, L"Si&ze to definition"},
                           {4604, L"Restore"},
                           {4605, L"Minimize"},
                           {4606, L"Maximize"},
                           {4602, L"Reset size"},
                           {4603, L"Reset all sizes"},
                           {Separator, nullptr},
                           {4607, L"Convert to character"},
                           {4608, L"Convert to numeric"},
                           {4617, L"Sort ascending"},
                           {4618, L"Sort descending"},
                           {Separator, nullptr},
                           {4629, L"Execute"},
                           {4609, L"Ravel"},
                           {4613, L"Enlist"},
                           {4610, L"First"},
                           {4612, L"Enclose"},
                           {4611, L"Disclose"},
                           {4614, L"Reverse along last axis"},
                           {4615, L"Reverse along first axis"},
                           {4616, L"Transpose (reverse axes)"},
                           {4628, L"Reorder axes..."},
                           {4619, L"Make into rows of matrix"},
                           {4621, L"Make array of rows"}};
const Items InsertItems = {{4701, L"Item to the left"},   {4702, L"Item to the right"},
                           {4703, L"Column to the left"}, {4704, L"Column to the right"},
                           {4705, L"Row above"},          {4706, L"Row below"}};
const Items OptionItems = {{4301, L"&Tool bar"},
                           {4302, L"&Status bar"},
                           {4303, L"&Font…"},
                           {4306, L"&Always on top"},
                           {4304, L"&Confirm close"},
                           {4316, L"&Enable Undo array"},
                           {4313, L"&Line numbers"},
                           {4311, L"&Overtype"},
                           {4312, L"Reject &unsupported data"},
                           {4314, L"&Ruler"},
                           {4315, L"Show rank 1 array scrollbars"},
                           {4310, L"Show &whole cell"},
                           {4305, L"Si&ze to definition on open"},
                           {4307, L"Use small &icons"},
                           {4308, L"Use small &margins"},
                           {4309, L"Use &3D edges"}};
const Items GraphicsItems = {{4901, L"&Area"}, {4902, L"&Bar"}, {4903, L"&Contour"}, {4904, L"&Histogram"},
                             {4905, L"&Mesh"}, {4906, L"&Pie"}, {4907, L"&Plot"},    {4908, L"&Surface"}};
const Items HelpItems = {{4501, L"General &Help"}, {4502, L"&Keys Help"}, {4503, L"&About Vantrel..."}};

TEST(FrameResources, TheMenuBarHasEveryItemWithItsTextInOrder)
{
    HMENU const menu = LoadMenuW(Module(), MAKEINTRESOURCEW(101));
    ExpectItems(menu, {{-1, L"&File"},
                       {-1, L"&Edit"},
                       {-1, L"&Actions"},
                       {-1, L"&Insert"},
                       {-1, L"&Options"},
                       {-1, L"&Graphics"},
                       {-1, L"&Help"}});
    const Items* const menus[] = {&FileItems,   &EditItems,     &ActionItems, &InsertItems,
                                  &OptionItems, &GraphicsItems, &HelpItems};
    for (int i = 0; i < 7; ++i)
        ExpectItems(GetSubMenu(menu, i), *menus[i]);
    DestroyMenu(menu);
}

wchar_t AccessKey(const std::wstring& text)
{
    const std::size_t mark = text.find(L'&');
    return mark == text.npos ? L'\0' : static_cast<wchar_t>(towlower(text[mark + 1]));
}

// "&Pie" and "&Plot" are the only two that share one: the key goes from one to the other.
TEST(FrameResources, AccessKeysAreUniqueInEachMenu)
{
    HMENU const menu = LoadMenuW(Module(), MAKEINTRESOURCEW(101));
    for (int i = -1; i < 7; ++i) {
        HMENU const popup = i < 0 ? menu : GetSubMenu(menu, i);
        std::map<wchar_t, int> uses;
        for (int item = 0; item < GetMenuItemCount(popup); ++item)
            ++uses[AccessKey(TextAt(popup, item))];
        uses.erase(L'\0');
        for (const auto& [key, count] : uses)
            EXPECT_EQ(count, i == 5 && key == L'p' ? 2 : 1)
                << "menu " << i << ", key " << static_cast<char>(key);
    }
    DestroyMenu(menu);
}

struct Key {
    int flags;
    int key;
    int id;
    bool operator==(const Key&) const = default;
};

std::vector<Key> KeysOf(int table)
{
    HACCEL const accelerators = LoadAcceleratorsW(Module(), MAKEINTRESOURCEW(table));
    std::array<ACCEL, 64> entries{};
    const int count = CopyAcceleratorTableW(accelerators, entries.data(), static_cast<int>(entries.size()));
    std::vector<Key> keys;
    for (int i = 0; i < count; ++i) {
        const ACCEL& entry = entries[static_cast<std::size_t>(i)];
        keys.push_back({entry.fVirt & (FVIRTKEY | FCONTROL | FSHIFT | FALT), entry.key, entry.cmd});
    }
    return keys;
}

constexpr int Plain = FVIRTKEY;
constexpr int Ctrl = FVIRTKEY | FCONTROL;
constexpr int Shift = FVIRTKEY | FSHIFT;
constexpr int Alt = FVIRTKEY | FALT;
constexpr int CtrlShift = Ctrl | FSHIFT;
constexpr int AltShift = Alt | FSHIFT;

TEST(FrameResources, TheMainKeysAreThese)
{
    const std::vector<Key> expected = {
        {CtrlShift, 'C', 4202},    {Ctrl, 'F', 4206},          {Ctrl, 'O', 4106},
        {CtrlShift, 'O', 4109},    {Ctrl, 'S', 4102},          {CtrlShift, 'V', 4203},
        {CtrlShift, 'X', 4201},    {CtrlShift, 'Z', 4204},     {CtrlShift, 'Y', 4205},
        {Plain, VK_F3, 4209},      {Shift, VK_F3, 4210},       {Plain, VK_F5, 4207},
        {Plain, VK_ESCAPE, 4801},  {Alt, VK_UP, 4622},         {Alt, VK_DOWN, 4623},
        {Alt, VK_HOME, 4624},      {Alt, VK_END, 4625},        {Alt, VK_PRIOR, 4626},
        {Alt, VK_NEXT, 4627},      {CtrlShift, VK_LEFT, 4701}, {CtrlShift, VK_RIGHT, 4702},
        {AltShift, VK_LEFT, 4703}, {AltShift, VK_RIGHT, 4704}, {AltShift, VK_UP, 4705},
        {AltShift, VK_DOWN, 4706}};
    EXPECT_TRUE(KeysOf(101) == expected);
}

TEST(FrameResources, EachInterpreterHasKeysOfItsOwn)
{
    EXPECT_TRUE(KeysOf(102) ==
                (std::vector<Key>{{Plain, VK_F2, 4102}, {Plain, VK_F3, 4105}, {Plain, VK_F4, 4104}}));
    EXPECT_TRUE(KeysOf(103) == (std::vector<Key>{{Ctrl, 'W', 4105}}));
    EXPECT_TRUE(KeysOf(104) == (std::vector<Key>{{Plain, VK_ESCAPE, 4104}, {Shift, VK_ESCAPE, 4110}}));
    EXPECT_TRUE(KeysOf(105) == (std::vector<Key>{{Ctrl, 'W', 4105}}));
}

TEST(FrameResources, EveryMessageHasItsText)
{
    const wchar_t* const texts[] = {
        L"String is nested",
        L"Array is scalar",
        L"Array is simple",
        L"Array is not a vector",
        L"Can not convert clipboard data to an array",
        L"Data saved",
        L"Unable to format array",
        L"Not supported",
        L"Error allocating storage.  Data may be corrupted.  Recommend closing window.",
        L"System Error",
        L"Too many characters",
        L"Invalid characters for numeric value",
        L"Invalid number found on row %I64i",
        L"Name is a function",
        L"Name is invalid",
        L"Name is a label",
        L"Name is an operator",
        L"Name's coupling is not zero",
        L"Array is not a child",
        L"Not found",
        L"Parent is empty",
        L"Parent array is not a matrix",
        L"Parent array is not a vector",
        L"The array has been modified. Do you want to save your changes?",
        L"%s already exists.  Do you want to replace it?",
        L"Vantrel",
        L"Variable Editor",
        L"Cannot delete top level array",
        L"Converting array to internal format. Please wait…",
        L"Formatting array. Please wait…",
        L"Formatting array. Percent done: %i",
        L"Calculating array sizes. Please wait…",
        L"Calculating array sizes. Percent done: %i",
        L"Array contains an unsupported type of data",
        L"Unable to calculate array sizes",
        L"Calculating widths of simple array's rows. Percent done: %i",
        L"The interpreter is processing the request. Please wait...",
        L"The editor is busy. Please wait..."};
    for (UINT i = 0; i < std::size(texts); ++i) {
        wchar_t text[384] = {};
        LoadStringW(Module(), 100 + i, text, 384);
        EXPECT_STREQ(text, texts[i]) << 100 + i;
    }
}

// 212 and 226 are not used.
const std::map<int, const wchar_t*> Tips = {{200, L"Copy array (Ctrl+Shift+C)"},
                                            {201, L"Cut array (Ctrl+Shift+X)"},
                                            {202, L"Disclose"},
                                            {203, L"Enclose"},
                                            {204, L"Create vector of simple items"},
                                            {205, L"Execute"},
                                            {206, L"Find (Ctrl+F)"},
                                            {207, L"First"},
                                            {208, L"Convert to character"},
                                            {209, L"Sort descending"},
                                            {210, L"Sort ascending"},
                                            {211, L"Help"},
                                            {213, L"Make into rows of matrix"},
                                            {214, L"Maximize"},
                                            {215, L"Minimize"},
                                            {216, L"Paste array (Ctrl+Shif+V)"},
                                            {217, L"Create vector of items"},
                                            {218, L"Redo array operation (Ctrl+Shift+Y)"},
                                            {219, L"Restore"},
                                            {220, L"Reverse along last axis"},
                                            {221, L"Reverse along first axis"},
                                            {222, L"Revert"},
                                            {223, L"Save (Ctrl+S)"},
                                            {224, L"Transpose (reverse axes)"},
                                            {225, L"Undo array operation (Ctrl+Shift+Z)"},
                                            {227, L"Make array of rows"},
                                            {228, L"Insert item to the left (Ctrl+Shift+Left arrow)"},
                                            {229, L"Insert item to the right (Ctrl+Shift+Right arrow)"},
                                            {230, L"Insert column to the left (Alt+Shift+Left arrow)"},
                                            {231, L"Insert column to the right (Alt+Shift+Right arrow)"},
                                            {232, L"Insert row above (Alt+Shift+Up arrow)"},
                                            {233, L"Insert row below (Alt+Shift+Down arrow)"},
                                            {234, L"Reorder axes"},
                                            {235, L"Convert to numeric"},
                                            {236, L"Print"}};

TEST(FrameResources, EveryTipHasItsText)
{
    for (const auto& [id, expected] : Tips) {
        wchar_t text[384] = {};
        LoadStringW(Module(), static_cast<UINT>(id), text, 384);
        EXPECT_STREQ(text, expected) << id;
    }
}

struct Button {
    int id;
    int tip;
    const wchar_t* label;
};

const std::vector<Button> Buttons = {
    {4101, 222, L""},    {4102, 223, L""},      {4108, 236, L""},    {0, 0, L""},      {4201, 201, L""},
    {4202, 200, L""},    {4203, 216, L""},      {4204, 225, L""},    {4205, 218, L""}, {4206, 206, L""},
    {0, 0, L""},         {4605, 215, L""},      {4604, 219, L""},    {4606, 214, L""}, {0, 0, L""},
    {4607, 208, L"ABC"}, {4608, 235, L"123"},   {4617, 210, L""},    {4618, 209, L""}, {0, 0, L""},
    {4609, 217, L""},    {4613, 204, L",['']"}, {4610, 207, L"1st"}, {4612, 203, L""}, {4611, 202, L""},
    {4614, 220, L""},    {4615, 221, L""},      {4616, 224, L""},    {4628, 234, L""}, {4619, 213, L""},
    {4621, 227, L""},    {0, 0, L""},           {4701, 228, L""},    {4702, 229, L""}, {4703, 230, L""},
    {4704, 231, L""},    {4705, 232, L""},      {4706, 233, L""},    {0, 0, L""},      {4501, 211, L""}};

TBBUTTON ButtonAt(HWND bar, std::size_t index)
{
    TBBUTTON button{};
    SendMessageW(bar, TB_GETBUTTON, index, reinterpret_cast<LPARAM>(&button));
    return button;
}

std::wstring LabelOf(HWND bar, int id)
{
    wchar_t text[64] = {};
    SendMessageW(bar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(text));
    return text;
}

// What the bar asks for when the pointer rests on a button.
// As the bar's own tooltip window would show it.
std::wstring TipOf(HWND bar, int id)
{
    wchar_t text[256] = {};
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.hwnd = bar;
    tool.uId = static_cast<UINT_PTR>(id);
    tool.lpszText = text;
    const auto tips = reinterpret_cast<HWND>(SendMessageW(bar, TB_GETTOOLTIPS, 0, 0));
    SendMessageW(tips, TTM_GETTEXTW, 256, reinterpret_cast<LPARAM>(&tool));
    return text;
}

TEST(FrameResources, TheToolBarHasItsButtonsLabelsAndTipsInOrder)
{
    ForgetOptions();
    Interpreter interpreter;
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        HWND const bar = FindWindowExW(user.Frame(), nullptr, TOOLBARCLASSNAMEW, nullptr);
        user.ExpectEqual(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0), static_cast<LRESULT>(Buttons.size()),
                         "all entries but Execute, which this interpreter does not offer");
        for (std::size_t i = 0; i < Buttons.size(); ++i) {
            const Button& expected = Buttons[i];
            const TBBUTTON button = ButtonAt(bar, i);
            user.ExpectEqual(button.idCommand, expected.id, "the command");
            user.ExpectEqual((button.fsStyle & BTNS_SEP) != 0, expected.id == 0, "a separator or not");
            if (expected.id == 0) continue;
            user.Expect(TipOf(bar, expected.id) == Tips.at(expected.tip), "the tip");
            user.Expect(LabelOf(bar, expected.id) == expected.label, "the label");
        }
    });
}

std::vector<std::uint8_t> VersionOfTheLibrary()
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(Module(), path, MAX_PATH);
    DWORD handle = 0;
    std::vector<std::uint8_t> block(GetFileVersionInfoSizeW(path, &handle));
    const auto size = static_cast<DWORD>(block.size());
    if (block.empty() || !GetFileVersionInfoW(path, 0, size, block.data())) return {};
    return block;
}

TEST(FrameResources, TheVersionIsTheOneThatAboutNames)
{
    const std::vector<std::uint8_t> block = VersionOfTheLibrary();
    ASSERT_FALSE(block.empty());
    void* found = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &found, &length));
    ASSERT_EQ(length, sizeof(VS_FIXEDFILEINFO));
    const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(found);
    EXPECT_EQ(fixed.dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(fixed.dwFileVersionMS, 0x00010001u);
    EXPECT_EQ(fixed.dwFileVersionLS, 92u);
    EXPECT_EQ(fixed.dwProductVersionMS, 0x00010001u);
    EXPECT_EQ(fixed.dwProductVersionLS, 92u);
    EXPECT_EQ(fixed.dwFileFlags & fixed.dwFileFlagsMask, 0u);
    EXPECT_EQ(fixed.dwFileOS, static_cast<DWORD>(VOS_NT_WINDOWS32));
    EXPECT_EQ(fixed.dwFileType, static_cast<DWORD>(VFT_DLL));
}

TEST(FrameResources, TheFilesPropertiesNameTheProduct)
{
    const std::pair<const wchar_t*, const wchar_t*> expected[] = {
        {L"CompanyName", L"Quillmoor"},
        {L"FileDescription", L"Vantrel"},
        {L"FileVersion", L"1.1.0.92"},
        {L"InternalName", L"vantrel"},
        {L"LegalCopyright", L"Copyright © 2026 Quillmoor"},
        {L"OriginalFilename", L"vantrel.dll"},
        {L"ProductName", L"Vantrel"},
        {L"ProductVersion", L"1.1.0.92"},
    };
    const std::vector<std::uint8_t> block = VersionOfTheLibrary();
    ASSERT_FALSE(block.empty());
    void* found = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &found, &length));
    ASSERT_EQ(length, sizeof(DWORD));
    EXPECT_EQ(*static_cast<const DWORD*>(found), 0x04B00409u) << "American English in UTF-16";
    for (const auto& [name, text] : expected) {
        const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
        ASSERT_TRUE(VerQueryValueW(block.data(), path.c_str(), &found, &length))
            << testing::PrintToString(path);
        EXPECT_STREQ(static_cast<const wchar_t*>(found), text);
    }
}

} // namespace
} // namespace vantrel::ui
