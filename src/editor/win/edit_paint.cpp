#include <algorithm>

#include "editor/paint_rows.h"
#include "editor/ruler.h"
#include "editor/win/edit_instance.h"
#include "entry/trace.h"
#include "tools/win/drawing.h"
#include "tools/win/visual_cues.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

constexpr COLORREF BorderColor = RGB(255, 0, 0);   // as the view marks a maximised array
constexpr COLORREF LineNumberColor = RGB(7, 0, 0); // fixed, whatever the user's colours are
constexpr int DropMarkWidth = 2;                   // pixels, more than a caret's
constexpr int PieceUnits = 512;                    // characters of the ruler handed to the system at a time

// --- small things ---

// Clips to a rectangle for as long as it lives.
class Clip {
public:
    Clip(HDC dc, const RECT& area) noexcept : dc_(dc), saved_(SaveDC(dc))
    {
        IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    }
    ~Clip() { RestoreDC(dc_, saved_); }
    Clip(const Clip&) = delete;
    Clip& operator=(const Clip&) = delete;

private:
    HDC dc_;
    int saved_;
};

// What one paint needs everywhere.
struct Painter {
    EditInstance& instance;
    EditWindow& edit;
    HDC dc;
    COLORREF textColor;
    COLORREF backColor;
};

// --- the parts of the picture ---

void FillMargin(Painter& painter, const Rect64& area) noexcept
{
    const RECT rect = ToRect(area);
    FillRect(painter.dc, &rect, GetSysColorBrush(COLOR_MENUBAR));
}

void DrawFrame(Painter& painter) noexcept
{
    const RECT client = ToRect(painter.edit.client);
    const OwnPen pen(1, BorderColor);
    const SelectedObject selectedPen(painter.dc, pen.Get());
    const SelectedObject selectedBrush(painter.dc, GetStockObject(NULL_BRUSH));
    Rectangle(painter.dc, client.left, client.top, client.right, client.bottom);
}

void DrawRuler(Painter& painter)
{
    const TraceScope trace("edit_paint.cpp", "DrawRuler");
    const Rect64 area = TextArea(painter.edit);
    const Rect64 band{area.left, painter.edit.text.top, area.right, area.top};
    FillMargin(painter, band);
    const Clip clip(painter.dc, ToRect(band));
    SetBkMode(painter.dc, TRANSPARENT);
    SetTextColor(painter.dc, painter.textColor);
    const VisibleRuler ruler = FindVisibleRuler(painter.edit);
    const int digit = std::max(painter.edit.view->widths.CharWidth(u'0'), 1);
    int advances[PieceUnits];
    std::fill_n(advances, PieceUnits, digit);
    char16_t text[PieceUnits];
    for (std::int64_t first = ruler.first; first < ruler.end; first += PieceUnits) {
        const std::int64_t count = std::min<std::int64_t>(ruler.end - first, PieceUnits);
        FillRuler(text, first, count);
        ExtTextOutW(painter.dc, ToPixel(ruler.x + (first - ruler.first) * digit), ToPixel(band.top), 0,
                    nullptr, AsWide(text), static_cast<UINT>(count), advances);
    }
}

void DrawLineNumbers(Painter& painter)
{
    const TraceScope trace("edit_paint.cpp", "DrawLineNumbers");
    const Rect64 area = TextArea(painter.edit);
    const Rect64 band{painter.edit.text.left, area.top, area.left, area.bottom};
    FillMargin(painter, band);
    const Clip clip(painter.dc, ToRect(band));
    SetBkMode(painter.dc, TRANSPARENT);
    SetTextColor(painter.dc, LineNumberColor);
    const VisibleEditLines lines = FindVisibleLines(painter.edit);
    const std::int64_t origin = painter.edit.view->context->indexOrigin;
    std::int64_t y = lines.top;
    for (std::int64_t line = lines.first; line < lines.end; ++line, y += painter.edit.view->lineHeight) {
        char16_t text[LineNumberCapacity];
        const TextRun number{text, FormatLineNumber(text, line + origin), {band.left, y}};
        DrawUnits(painter.dc, painter.edit.view->widths, number, 0, {});
    }
}

void DrawMargins(Painter& painter)
{
    const Point64 margins = Margins(painter.edit);
    const Rect64& text = painter.edit.text;
    if (margins.y > 0) DrawRuler(painter);
    if (margins.x > 0) DrawLineNumbers(painter);
    if (margins.x > 0 && margins.y > 0) {
        FillMargin(painter, {text.left, text.top, text.left + margins.x, text.top + margins.y}); // the corner
    }
}

// Far from the text's colour and from the selection's. Modulo 255, not 256: a full component wraps to the shift itself.
COLORREF Shifted(COLORREF color, int red, int green, int blue) noexcept
{
    return RGB((GetRValue(color) + red) % 255, (GetGValue(color) + green) % 255,
               (GetBValue(color) + blue) % 255);
}

struct PieceColors {
    COLORREF text;
    COLORREF back;
};

PieceColors ColorsOfPiece(const Painter& painter, PieceKind kind) noexcept
{
    const COLORREF windowText = GetSysColor(COLOR_WINDOWTEXT);
    switch (kind) {
    case PieceKind::Selected: return {GetSysColor(COLOR_HIGHLIGHTTEXT), GetSysColor(COLOR_HIGHLIGHT)};
    case PieceKind::FindMatch: return {Shifted(windowText, 224, 64, 64), Shifted(windowText, 128, 224, 192)};
    default: return {painter.textColor, painter.backColor};
    }
}

void DrawTextPiece(void* state, const TextPiece& piece)
{
    auto& painter = *static_cast<Painter*>(state);
    const PieceColors colors = ColorsOfPiece(painter, piece.kind);
    SetTextColor(painter.dc, colors.text);
    SetBkColor(painter.dc, colors.back);
    const RECT cell{ToPixel(piece.point.x), ToPixel(piece.point.y), ToPixel(piece.point.x + piece.width),
                    ToPixel(piece.point.y + painter.edit.view->lineHeight)};
    const UINT options = piece.kind != PieceKind::Plain ? ETO_OPAQUE | ETO_CLIPPED : 0;
    DrawUnits(painter.dc, painter.edit.view->widths, {piece.text, piece.length, piece.point}, options, cell);
}

void DrawRows(Painter& painter)
{
    const TraceScope trace("edit_paint.cpp", "DrawRows");
    const Clip clip(painter.dc, ToRect(TextArea(painter.edit)));
    SetBkMode(painter.dc, TRANSPARENT);
    const bool focused = GetFocus() == WindowOf(painter.instance);
    ForEachVisiblePiece(painter.edit, focused, &DrawTextPiece, &painter);
}

void DrawDropMark(Painter& painter)
{
    const CaretPicture mark = GetDropMark(painter.edit);
    if (!mark.shown) return;
    const RECT line =
        ToRect({mark.point.x, mark.point.y, mark.point.x + DropMarkWidth, mark.point.y + mark.height});
    FillRect(painter.dc, &line, GetSysColorBrush(COLOR_WINDOWTEXT));
}

// A vector without scroll bars shows by arrows that there is more of it.
void DrawCues(const Painter& painter)
{
    const EditView& view = *painter.edit.view;
    if (view.node->Rank != 1 || view.rankOneScrollBars) return;
    const HiddenSides hidden = FindHiddenSides(painter.edit);
    const std::uint32_t sides = (hidden.left ? CueLeft : 0u) | (hidden.top ? CueTop : 0u) |
                                (hidden.right ? CueRight : 0u) | (hidden.bottom ? CueBottom : 0u);
    DrawRankOneVisualCues(painter.dc, ToRect(painter.edit.client), sides, view.rankOneArrowOpacity,
                          view.rankOneEdgeOpacity);
}

// Asks the parent for the colours, as every edit control does; answers the background brush.
HBRUSH AskParentForColors(EditInstance& instance, HDC dc) noexcept
{
    SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    const HWND window = WindowOf(instance);
    const LRESULT brush = SendMessageW(GetParent(window), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc),
                                       reinterpret_cast<LPARAM>(window));
    return brush != 0 ? reinterpret_cast<HBRUSH>(brush) : GetSysColorBrush(COLOR_WINDOW);
}

void DrawPicture(EditInstance& instance, HDC dc)
{
    EditWindow& edit = instance.edit;
    const SelectedObject font(dc, instance.font);
    const HBRUSH brush = AskParentForColors(instance, dc);
    const bool grey = edit.readOnly || IsLocked(edit);
    Painter painter{instance, edit, dc, grey ? GetSysColor(COLOR_GRAYTEXT) : GetTextColor(dc),
                    GetBkColor(dc)};
    const RECT client = ToRect(edit.client);
    FillRect(dc, &client, brush);
    if (ShowsMargins(edit)) DrawFrame(painter);
    DrawMargins(painter);
    DrawRows(painter);
    DrawDropMark(painter);
    DrawCues(painter);
}

} // namespace

void PaintEditWindow(EditInstance& instance)
{
    const TraceScope trace("edit_paint.cpp", "PaintEditWindow");
    const PaintScope paint(WindowOf(instance));
    const Rect64 client = instance.edit.client;
    PaintBuffer buffer(paint.Dc(), ToPixel(client.right), ToPixel(client.bottom));
    DrawPicture(instance, buffer.Dc());
    buffer.Present(paint.Part());
}

} // namespace vantrel
