#include <algorithm>

#include "editor/edit_model.h"
#include "editor/ruler.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

constexpr std::int64_t Rim = 2;
// Range, position, and a bar that stays when there is nothing to scroll.
constexpr std::uint32_t ShownBarMask = 0x01 | 0x04 | 0x08;

void MeasureLineNumbers(EditWindow& window)
{
    EditView& view = *window.view;
    view.lineNumbersWidth = 0;
    if (!view.lineNumbers) return;
    char16_t text[LineNumberCapacity];
    const std::int64_t length = FormatLineNumber(text, EditRows(window));
    view.lineNumbersWidth =
        static_cast<std::int32_t>(view.widths.TextWidth(text, length)) + window.frameWidth;
}

void MeasureRuler(EditWindow& window) noexcept
{
    window.view->rulerHeight = window.view->ruler ? window.view->lineHeight : 0;
}

void ClampState(EditWindow& window)
{
    EditState& state = StateOf(window);
    const EditCaret caret = ClampToText(window, CaretOf(window));
    const EditCaret anchor = ClampToText(window, {state.anchorColumn, state.anchorLine});
    const EditCaret end = ClampToText(window, {state.endColumn, state.endLine});
    state.caretColumn = caret.column;
    state.caretLine = caret.line;
    state.anchorColumn = anchor.column;
    state.anchorLine = anchor.line;
    state.endColumn = end.column;
    state.endLine = end.line;
}

// Takes a fresh node, or an old one anew: scrolled to the start, the caret in the first row.
void InitialiseState(EditWindow& window)
{
    EditState& state = StateOf(window);
    window.effects->initializeScroll(window, state.scroll);
    state.caretColumn = state.caretLine = 0;
    state.anchorColumn = state.anchorLine = 0;
    state.endColumn = state.endLine = 0;
    state.inUse = true;
}

struct ShownBars {
    bool horizontal;
    bool vertical;
};

ShownBars BarsOf(const EditWindow& window) noexcept
{
    switch (window.view->node->Rank) {
    case 0: return {false, false};
    case 1: return {window.view->rankOneScrollBars, window.view->rankOneScrollBars};
    default: return {true, true};
    }
}

void UpdateShownBar(ScrollRecord& scroll, ScrollAxis axis, bool shown)
{
    if (!shown) return;
    (axis == ScrollAxis::Horizontal ? scroll.horizontal : scroll.vertical).mask = ShownBarMask;
    if (scroll.effects != nullptr && scroll.effects->updateBar != nullptr)
        scroll.effects->updateBar(scroll, axis);
}

Rect64 Inset(const Rect64& client) noexcept
{
    return Shrunk(client, Rim, Rim);
}

} // namespace

void SetMaxWidth(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "SetMaxWidth");
    EditView& view = *window.view;
    try {
        StateOf(window).maximumWidth = GetRecordWidths(view.node->records, view.widths, nullptr);
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
    }
}

void SetModified(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "SetModified");
    window.view->findMatch = false;
    if (StateOf(window).modified) return;
    StateOf(window).modified = true;
    window.effects->notify(window, EditNotifyModified);
}

void NotifyOutOfMemory(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "NotifyOutOfMemory");
    window.outOfMemory = true;
    window.effects->notify(window, EditNotifyOutOfMemory);
}

void TextChanged(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "TextChanged");
    window.view->node->records.flags |= RecordsEdited;
    SetMaxWidth(window);
    MeasureLineNumbers(window);
    MeasureRuler(window);
    LayOutEdit(window);
}

void OnUseScdr(EditWindow& window, bool force)
{
    const TraceScope trace("setup.cpp", "OnUseScdr");
    Scdr* node = window.view == nullptr ? nullptr : window.view->node;
    if (node == nullptr || !IsSimple(*node)) return;
    window.lineWidths.Forget();
    try {
        EditState& state = EditStateOf(*node);
        if (!state.inUse || force) {
            InitialiseState(window);
        } else if (state.scroll.window != window.window) {
            // It drives another window's bars, or was measured with another font.
            window.effects->initializeScroll(window, state.scroll);
        }
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
        return;
    }
    ClampState(window); // the view may have formatted the node anew meanwhile
    SetMaxWidth(window);
    OnSetScrollbars(window);
    MeasureLineNumbers(window);
    OnSetRuler(window);
}

void OnNewPlane(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "OnNewPlane");
    ClampState(window);
    SelectionReset(window);
    DrawCaret(window);
}

void OnSetScrollbars(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "OnSetScrollbars");
    ScrollRecord& scroll = StateOf(window).scroll;
    const ShownBars bars = BarsOf(window);
    scroll.horizontalShown = bars.horizontal;
    scroll.verticalShown = bars.vertical;
    window.effects->showScrollBars(window, bars.horizontal, bars.vertical);
    UpdateShownBar(scroll, ScrollAxis::Horizontal, bars.horizontal);
    UpdateShownBar(scroll, ScrollAxis::Vertical, bars.vertical);
}

void OnSetLineNumbers(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "OnSetLineNumbers");
    MeasureLineNumbers(window);
    LayOutEdit(window);
}

void OnSetRuler(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "OnSetRuler");
    MeasureRuler(window);
    LayOutEdit(window);
}

void OnFontChanged(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "OnFontChanged");
    const EditCaret caret = CaretOf(window);
    MoveCaret(window, CaretHome, CaretHome);
    window.lineWidths.Forget();
    ForgetRecordWidths(window.view->node->records);
    SetMaxWidth(window);
    MeasureLineNumbers(window);
    OnSetRuler(window);
    MoveCaretTo(window, caret);
}

void LayOutEdit(EditWindow& window)
{
    const TraceScope trace("setup.cpp", "LayOutEdit");
    EditState& state = StateOf(window);
    // A hidden window of the same view has no say in how far the shown one has scrolled.
    if (state.scroll.window != window.window) return;
    window.client = window.effects->clientRectangle(window);
    window.text = Inset(window.client);
    const Rect64 area = TextArea(window);
    const std::int64_t width = std::max<std::int64_t>(area.right - area.left, 0);
    const std::int64_t height = std::max<std::int64_t>(area.bottom - area.top, 0);
    window.columnsPerPage = width / std::max(window.view->averageCharWidth, 1);
    window.linesPerPage = height / std::max(window.view->lineHeight, 1);
    SetScrollBarsDataSize(state.scroll, state.maximumWidth, EditRows(window) * window.view->lineHeight);
    SetScrollBarsWindowSize(state.scroll, width, height);
    AdjustScrollPositions(state.scroll);
    ScrollCaretIntoWindow(window);
    DrawCaret(window);
    window.effects->invalidate(window);
}

} // namespace vantrel
