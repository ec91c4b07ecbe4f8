#include <algorithm>

#include "entry/trace.h"
#include "tools/win/visual_cues.h"
#include "tools/win/wide.h"
#include "view/box_bars.h"
#include "view/layout.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

// The cell editor keeps this distance between its border and its text.
constexpr std::int64_t TextInset = 2;
constexpr std::int64_t PieceUnits = 256; // characters handed to the system at a time

bool IsGreyed(const View& view, const Scdr& node) noexcept
{
    if ((node.Flags & FlagKeptSize) != 0 || IsScdrInsideEmptyAncestor(node)) return true;
    return IsNumericFind(view.edit.find) && node.Type == TypeCharacter;
}

// Sets numbers off from text. Modulo 255, not 256, so that a full component wraps to the shift itself.
COLORREF Tinted(COLORREF color) noexcept
{
    const auto shifted = [](int component, int by) { return static_cast<BYTE>((component + by) % 255); };
    return RGB(shifted(GetRValue(color), 64), shifted(GetGValue(color), 64), shifted(GetBValue(color), 224));
}

// The rows in sight: where their text stands and what of it shows.
struct TextArea {
    RECT clip;              // window coordinates
    std::int64_t left, top; // of the unscrolled text, window coordinates
    std::int64_t scrolledX, scrolledY;
};

// From the corner of the content to the text: where the editor's would be, so that nothing jumps when a box is selected.
Point64 TextOffset(const View& view, const Scdr& node) noexcept
{
    if (node.Rank == 0) return {TextInset, TextInset};
    const std::int64_t borderX = GetSystemMetrics(SM_CXBORDER);
    const std::int64_t borderY = GetSystemMetrics(SM_CYBORDER);
    return {borderX + TextInset - view.metrics.edge.width, borderY + TextInset - view.metrics.edge.height};
}

TextArea AreaOf(const PaintTarget& target, const Scdr& node, const Rect64& content) noexcept
{
    TextArea area{};
    const RECT panel = DrawableRect(content);
    IntersectRect(&area.clip, &panel, &target.client);
    const Point64 inset = TextOffset(target.view, node);
    area.left = content.left + inset.x;
    area.top = content.top + inset.y;
    if (const ScrollRecord* const scroll = ScrollOf(node)) {
        area.scrolledX = scroll->horizontal.position;
        area.scrolledY = scroll->vertical.position;
    }
    return area;
}

// With the widths that the layout and the editor count with, so that no character moves when the box is selected.
void DrawUnits(PaintTarget& target, const TextArea& area, const char16_t* text, std::int64_t length,
               std::int64_t x, std::int64_t y)
{
    int advances[PieceUnits];
    while (length > 0) {
        const std::int64_t count = std::min(length, PieceUnits);
        std::int64_t width = 0;
        for (std::int64_t i = 0; i < count; ++i)
            width += advances[i] = target.view.edit.widths.CharWidth(text[i]);
        ExtTextOutW(target.dc, static_cast<int>(x), static_cast<int>(y), ETO_CLIPPED, &area.clip,
                    AsWide(text), static_cast<UINT>(count), advances);
        x += width;
        text += count;
        length -= count;
    }
}

// A row may be far longer than the box: only the characters in sight are drawn.
void DrawRow(PaintTarget& target, const TextArea& area, const RecordText& row, std::int64_t y)
{
    CharWidths& widths = target.view.edit.widths;
    const std::int64_t origin = area.left - area.scrolledX;
    const std::int64_t hidden = std::max<std::int64_t>(area.clip.left - origin, 0);
    const std::int64_t first = widths.ColumnAt(row.text, row.length, hidden);
    const std::int64_t x = origin + widths.TextWidth(row.text, first);
    const std::int64_t rest = row.length - first;
    const std::int64_t count =
        std::min(widths.ColumnAt(row.text + first, rest, area.clip.right - x) + 1, rest);
    DrawUnits(target, area, row.text + first, count, x, y);
}

void DrawRows(PaintTarget& target, const Scdr& node, const TextArea& area)
{
    const std::int64_t lineHeight = target.view.edit.lineHeight;
    if (lineHeight <= 0 || IsRectEmpty(&area.clip)) return;
    const std::int64_t firstRecord = FirstShownRow(node);
    const std::int64_t rows = ShownRows(node);
    const std::int64_t top = area.top - area.scrolledY;
    std::int64_t row = std::clamp<std::int64_t>((area.clip.top - top) / lineHeight, 0, rows);
    for (; row < rows; ++row) {
        const std::int64_t y = top + row * lineHeight;
        if (y >= area.clip.bottom) return;
        DrawRow(target, area, GetRecord(node.records, firstRecord + row), y);
    }
}

// A vector without scroll bars shows by arrows that there is more of it.
void DrawCues(const PaintTarget& target, const Scdr& node, const TextArea& area, const Rect64& content)
{
    const std::int64_t lineHeight = target.view.edit.lineHeight;
    const std::int64_t right = area.left - area.scrolledX + node.records.widest;
    const std::int64_t bottom = area.top - area.scrolledY + ShownRows(node) * lineHeight;
    std::uint32_t sides = 0;
    if (area.scrolledX > 0) sides |= CueLeft;
    if (area.scrolledY > 0) sides |= CueTop;
    if (right > content.right) sides |= CueRight;
    if (bottom > content.bottom) sides |= CueBottom;
    const EditView& edit = target.view.edit;
    DrawRankOneVisualCues(target.dc, DrawableRect(content), sides, edit.rankOneArrowOpacity,
                          edit.rankOneEdgeOpacity);
}

} // namespace

ArrayColors ColorsOf(const View& view, const Scdr& node) noexcept
{
    if (IsGreyed(view, node)) return {COLOR_3DFACE, GetSysColor(COLOR_GRAYTEXT)};
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    return {COLOR_WINDOW, node.Type == TypeCharacter ? text : Tinted(text)};
}

void DrawScdrSimple(PaintTarget& target, Scdr& node, const Rect64& content)
{
    const TraceScope trace("painting_simple.cpp", "DrawScdrSimple");
    const ArrayColors colors = ColorsOf(target.view, node);
    const TextArea area = AreaOf(target, node, content);
    FillRect(target.dc, &area.clip, GetSysColorBrush(colors.background));
    const COLORREF previousText = SetTextColor(target.dc, colors.text);
    const int previousMode = SetBkMode(target.dc, TRANSPARENT);
    DrawRows(target, node, area);
    SetBkMode(target.dc, previousMode);
    SetTextColor(target.dc, previousText);
    if (node.Rank == 1 && !HasBoxScrollBars(target.view, node)) DrawCues(target, node, area, content);
}

} // namespace vantrel
