#include <algorithm>

#include "entry/trace.h"
#include "tools/win/drawing.h"
#include "tools/win/visual_cues.h"
#include "view/box_bars.h"
#include "view/layout.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

// The cell editor keeps this distance between its border and its text.
constexpr std::int64_t TextInset = 2;

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

void DrawTextRows(HDC dc, View& view, const Scdr& node, const Point64& corner, UINT options,
                  const RECT& sight)
{
    const std::int64_t lineHeight = view.edit.lineHeight;
    if (lineHeight <= 0 || IsRectEmpty(&sight)) return;
    const std::int64_t firstRecord = FirstShownRow(node);
    const std::int64_t rows = ShownRows(node);
    std::int64_t row = std::clamp<std::int64_t>((sight.top - corner.y) / lineHeight, 0, rows);
    for (; row < rows; ++row) {
        const std::int64_t y = corner.y + row * lineHeight;
        if (y >= sight.bottom) return;
        const RecordText text = GetRecord(node.records, firstRecord + row);
        DrawUnitsInSight(dc, view.edit.widths, {text.text, text.length, {corner.x, y}}, options, sight);
    }
}

void DrawScdrSimple(PaintTarget& target, Scdr& node, const Rect64& content)
{
    const TraceScope trace("painting_simple.cpp", "DrawScdrSimple");
    const ArrayColors colors = ColorsOf(target.view, node);
    const TextArea area = AreaOf(target, node, content);
    FillRect(target.dc, &area.clip, GetSysColorBrush(colors.background));
    const COLORREF previousText = SetTextColor(target.dc, colors.text);
    const int previousMode = SetBkMode(target.dc, TRANSPARENT);
    DrawTextRows(target.dc, target.view, node, {area.left - area.scrolledX, area.top - area.scrolledY},
                 ETO_CLIPPED, area.clip);
    SetBkMode(target.dc, previousMode);
    SetTextColor(target.dc, previousText);
    if (node.Rank == 1 && !HasBoxScrollBars(target.view, node)) DrawCues(target, node, area, content);
}

} // namespace vantrel
