// What the tests of the cell editor have in common.
#pragma once

#include <gtest/gtest.h>

#include "ui/menus.h"
#include "ui/view_support.h"

namespace vantrel::ui {

using namespace fake;

inline constexpr int SaveAndClose = 4104;
inline constexpr int OvertypeOption = 4311;
inline constexpr int RankOneBarsOption = 4315;
inline constexpr UINT MoveCaretMessage = 33071;
inline constexpr UINT SelectAllMessage = 33072;
inline constexpr int Rim = 2; // between the client area's edge and the text

class EditorTest : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

// A little right of a character's left edge, in an editor that shows no margins.
inline POINT At(HWND editor, int column, int line)
{
    const FontSize font = FontOf(editor);
    return {Rim + column * font.character + 2, Rim + line * font.line + font.line / 2};
}

// A matrix of characters, one row a line.
inline Array Matrix(const std::vector<std::u32string>& rows)
{
    std::u32string all;
    for (const std::u32string& row : rows)
        all += row;
    return CharacterArray(ElementType::Char16,
                          {static_cast<int>(rows.size()), static_cast<int>(rows[0].size())}, all);
}

inline Array MatrixItem(const std::vector<std::u32string>& rows)
{
    return NestedArray({2}, {Matrix(rows), Text(u"other")});
}

// The only item of the saved vector that these tests edit.
inline Array First(const Outcome& outcome)
{
    return outcome.edit.hasResult && !outcome.edit.result.items.empty() ? outcome.edit.result.items[0]
                                                                        : Array{};
}

inline void Expect(const Outcome& outcome, const Array& expected)
{
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(First(outcome), expected)) << Dump(outcome.edit.result);
}

inline std::vector<std::u32string> Letters()
{
    return {U"abcdefghij", U"klmnopqrst", U"uvwxyzABCD", U"EFGHIJKLMN"};
}

inline RECT WindowRect(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
}

inline int WidthOf(const RECT& rect)
{
    return rect.right - rect.left;
}

inline int HeightOf(const RECT& rect)
{
    return rect.bottom - rect.top;
}

inline void ClearClipboard()
{
    while (!OpenClipboard(nullptr))
        Sleep(10);
    EmptyClipboard();
    CloseClipboard();
}

inline void PutOnClipboard(std::u16string_view text)
{
    while (!OpenClipboard(nullptr))
        Sleep(10);
    EmptyClipboard();
    HGLOBAL const block = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(char16_t));
    auto* const out = static_cast<char16_t*>(GlobalLock(block));
    out[text.copy(out, text.size())] = u'\0';
    GlobalUnlock(block);
    SetClipboardData(CF_UNICODETEXT, block);
    CloseClipboard();
}

} // namespace vantrel::ui
