#include <algorithm>

#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

bool HasSurrogate(const Text& text) noexcept
{
    return std::any_of(text.begin(), text.end(),
                       [](char16_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; });
}

bool PutSelection(EditWindow& window)
{
    const EditSelection range = NormalisedSelection(window);
    try {
        const Text text =
            RecordsToString(window.view->node->records, FirstEditRow(window),
                            {range.start.column, range.start.line, range.end.column, range.end.line});
        return window.effects->putClipboardText(window, text.c_str(), static_cast<std::int64_t>(text.size()));
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
        return false;
    }
}

} // namespace

std::int32_t CopyMarked(EditWindow& window)
{
    const TraceScope trace("clipboard.cpp", "CopyMarked");
    if (!window.effects->openClipboard(window)) return 1;
    const bool done = PutSelection(window);
    window.effects->closeClipboard(window);
    return done ? 0 : 1;
}

void CopySelection(EditWindow& window)
{
    const TraceScope trace("clipboard.cpp", "CopySelection");
    if (IsSelectionEmpty(window)) return;
    CopyMarked(window);
    SelectionReset(window);
}

void CutSelection(EditWindow& window)
{
    const TraceScope trace("clipboard.cpp", "CutSelection");
    if (RefuseChange(window) || IsSelectionEmpty(window)) return;
    CopyMarked(window);
    PasteString(window, u"", 0, true);
}

void ClearSelection(EditWindow& window)
{
    const TraceScope trace("clipboard.cpp", "ClearSelection");
    if (IsSelectionEmpty(window) || RefuseChange(window)) return;
    PasteString(window, u"", 0, true);
}

void PasteClipboard(EditWindow& window)
{
    const TraceScope trace("clipboard.cpp", "PasteClipboard");
    if (RefuseChange(window)) return;
    Text text;
    try {
        if (!window.effects->getClipboardText(window, text)) return;
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
        return;
    }
    if (HasSurrogate(text)) {
        window.effects->beep(window, EditBeep::Asterisk);
        return;
    }
    PasteString(window, text.c_str(), static_cast<std::int64_t>(text.size()), true);
}

} // namespace vantrel
