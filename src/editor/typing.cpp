#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

constexpr char16_t LineBreak[] = u"\r\n";

// Extends a selection from the caret by one movement.
void SelectByMoving(EditWindow& window, std::int64_t columns)
{
    SelectionStart(window);
    MoveCaret(window, columns, 0);
    SelectionEnd(window);
}

void DeleteSelection(EditWindow& window)
{
    PasteString(window, u"", 0, true);
}

} // namespace

void TypeChar(EditWindow& window, char16_t character)
{
    const TraceScope trace("typing.cpp", "TypeChar");
    if (RefuseChange(window) || EditRows(window) <= 0) return;
    // At a line's end this selects the line break: the typed character takes its place and the lines join.
    if (IsSelectionEmpty(window) && IsOvertyping(window)) SelectByMoving(window, 1);
    PasteString(window, &character, 1, true);
}

void DeleteBack(EditWindow& window)
{
    const TraceScope trace("typing.cpp", "DeleteBack");
    if (RefuseChange(window)) return;
    if (IsSelectionEmpty(window)) SelectByMoving(window, -1);
    DeleteSelection(window);
}

void DeleteForward(EditWindow& window)
{
    const TraceScope trace("typing.cpp", "DeleteForward");
    if (RefuseChange(window)) return;
    if (IsSelectionEmpty(window)) SelectByMoving(window, 1);
    DeleteSelection(window);
}

void DeleteToLineEnd(EditWindow& window)
{
    const TraceScope trace("typing.cpp", "DeleteToLineEnd");
    if (RefuseChange(window)) return;
    SelectByMoving(window, CaretEnd);
    DeleteSelection(window);
}

void TypeLineBreak(EditWindow& window)
{
    const TraceScope trace("typing.cpp", "TypeLineBreak");
    const Scdr& node = *window.view->node;
    if (RefuseChange(window)) return;
    const bool numericVector = node.Rank == 1 && node.Type != TypeCharacter && node.Type != TypeNested;
    if (numericVector || node.Rank == 0 || node.Rank >= 3) {
        window.effects->beep(window, EditBeep::Asterisk);
        return;
    }
    PasteString(window, LineBreak, 2, true);
}

} // namespace vantrel
