#include <algorithm>

#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

bool IsSurrogate(char16_t unit) noexcept
{
    return (unit & 0xF800) == 0xD800;
}

bool HasSurrogate(const char16_t* text, std::int64_t length) noexcept
{
    constexpr std::int64_t Block = 64; // of a fixed size, so that compilers make it vector code
    for (; length >= Block; text += Block, length -= Block) {
        std::uint16_t found = 0;
        for (std::int64_t i = 0; i < Block; ++i)
            found = static_cast<std::uint16_t>(found | (IsSurrogate(text[i]) ? 1 : 0));
        if (found != 0) return true;
    }
    return std::any_of(text, text + length, IsSurrogate);
}

struct CopiedRange {
    const RecordList& records;
    std::int64_t firstRow;
    RecordRange range;
};

bool PutSelection(EditWindow& window)
{
    const EditSelection selection = NormalisedSelection(window);
    const CopiedRange copied{
        window.view->node->records,
        FirstEditRow(window),
        {selection.start.column, selection.start.line, selection.end.column, selection.end.line}};
    const ClipboardWriter writer{[](const void* state, char16_t* block) noexcept {
                                     const auto& part = *static_cast<const CopiedRange*>(state);
                                     WriteRecords(part.records, part.firstRow, part.range, block);
                                 },
                                 &copied};
    try {
        return window.effects->putClipboardText(
            window, RecordsToStringLength(copied.records, copied.firstRow, copied.range), writer);
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
        return false;
    }
}

void PasteText(EditWindow& window, const char16_t* text, std::int64_t length)
{
    if (HasSurrogate(text, length)) {
        window.effects->beep(window, EditBeep::Asterisk);
    } else {
        PasteString(window, text, length, true);
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
    window.effects->withClipboardText(window, &PasteText);
}

} // namespace vantrel
