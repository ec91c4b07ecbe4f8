// Formatting: every simple array gets the records that are its text.
#include "view/layout.h"

#include <cstring>

#include "builtin/format.h"
#include "entry/trace.h"
#include "model/rebuild.h"
#include "view/progress.h"
#include "view/report.h"

namespace vantrel {
namespace {

// Below this size a number array is formatted faster than the clock could be asked.
constexpr std::int64_t ElementsWorthPolling = 4096;

std::int64_t CheckedRowsOfAllPlanes(const Scdr& node)
{
    const std::int64_t rows = RowsOfAllPlanes(node);
    if (rows < 0) throw VTERROR_CODE::SystemLimit;
    return rows;
}

struct NumberFormatting {
    View& view;
    LayoutProgress& progress;
    const Scdr& node;
    std::int64_t rowsReported;
};

void ReportRows(NumberFormatting& formatting, std::int64_t rowsDone)
{
    UpdateProgressReport(formatting.view, formatting.progress, formatting.node,
                         rowsDone - formatting.rowsReported);
    formatting.rowsReported = rowsDone;
}

// The interpreter's own interrupt key counts as much as closing the window.
bool IsHostInterrupted(const View& view)
{
    const auto check = view.context->langEnv->Operations.CheckForInterrupt;
    return check != nullptr && check(view.context) != 0;
}

bool PollNumberFormatting(void* state, std::int64_t rowsDone)
{
    auto& formatting = *static_cast<NumberFormatting*>(state);
    ReportRows(formatting, rowsDone);
    if (IsHostInterrupted(formatting.view)) return true;
    return formatting.view.effects.isInterruptOrClosePending(formatting.view);
}

void FormatNumberArray(View& view, Scdr& node, LayoutProgress& progress)
{
    NumberFormatting formatting{view, progress, node, 0};
    const FormatPoll poll{PollNumberFormatting, &formatting};
    FormattedText block =
        FormatNumbers(view.context, node, node.ElementCount < ElementsWorthPolling ? nullptr : &poll);
    const std::int64_t rows = block.rows;
    SetBulkRecordsOwning(node.records, std::move(block.text), rows, block.length);
    ReportRows(formatting, rows);
}

// Decimal text is the interpreter's business; its rows become records of ours. False when it gave none.
bool FormatDecimalArray(View& view, Scdr& node)
{
    const ScdrPtr text(view.context->langEnv->Operations.CallPrimitiveReturningScdr(
        view.context, ActionConvertToCharacter, &node, nullptr));
    if (text == nullptr) return false;
    if (text->Type != TypeCharacter) throw VTERROR_CODE::NonceError;
    const std::int64_t rows = text->Rank < 2 ? 1 : CheckedRowsOfAllPlanes(*text);
    OwnedArray<char16_t> block = AllocateArray<char16_t>(text->ElementCount);
    std::memcpy(block.get(), text->data, static_cast<std::size_t>(text->ElementCount) * sizeof(char16_t));
    SetBulkRecordsOwning(node.records, std::move(block), rows, text->Rank == 0 ? 1 : Columns(*text));
    return true;
}

// False on failure, with ErrorCode.
bool FormatCharacterArray(View& view, Scdr& node)
{
    const auto* text = static_cast<const char16_t*>(node.data);
    // A scalar is one cell of one row even when it is a line feed: splitting it would lose the character on the next commit.
    if (node.Rank == 0) {
        SetBulkRecords(node.records, text, 1, 1);
        return true;
    }
    if (node.Rank == 1) return StringToRecords(view.context, text, node.ElementCount, node.records, true);
    SetBulkRecords(node.records, text, CheckedRowsOfAllPlanes(node), Columns(node));
    return true;
}

// True stops formatting.
bool FormatScdrSimple(View& view, Scdr& node, LayoutProgress& progress)
{
    if (node.records.count > 0) return false;
    if (node.Type == TypeCharacter) {
        if (!FormatCharacterArray(view, node)) return true;
        UpdateProgressReport(view, progress, node, node.Rank < 2 ? 1 : node.records.count);
    } else if (node.Type == TypeDecimal) {
        if (!FormatDecimalArray(view, node)) return true;
        UpdateProgressReport(view, progress, node, node.records.count);
    } else {
        FormatNumberArray(view, node, progress);
    }
    node.records.flags |= RecordsFormatted;
    return false;
}

// True stops formatting.
bool FormatScdrChild(View& view, Scdr& node, LayoutProgress& progress)
{
    if (IsSimple(node)) return FormatScdrSimple(view, node, progress);
    const std::int64_t count = ChildCount(node);
    for (std::int64_t i = 0; i < count; ++i) {
        Scdr& item = *Children(node)[i];
        if (IsInterrupted(view, progress, 1 + item.ElementCount / WorkPerClockLook)) return true;
        if (FormatScdrChild(view, item, progress)) return true;
    }
    return false;
}

bool FormatWholeTree(View& view, Scdr& root, LayoutProgress& progress)
{
    try {
        return FormatScdrChild(view, root, progress);
    } catch (VTERROR_CODE code) {
        // Breaking off is the user's wish, not an error of the array.
        if (code != VTERROR_CODE::Interrupt) SetErrorCode(view.context, code);
        return true;
    }
}

void ReportFormatFailure(View& view)
{
    if (HasError(view.context)) {
        // While an array loads that would be refused, the error is the interpreter's to report: shown, it would be spent.
        const bool loading = (view.context->flags & EditContextLoading) != 0;
        if (!loading || !view.options.rejectBadData) ReportHostError(view);
    } else if ((view.flags & ViewQuiet) == 0) {
        ShowError(view, StatusUnableToFormat);
    }
}

} // namespace

std::int32_t FormatScdr(View& view, Scdr& root)
{
    TraceScope trace("layout_format.cpp", "FormatScdr");
    const bool quiet = (view.flags & ViewQuiet) != 0;
    view.flags |= ViewFormatting;
    if (!quiet) view.effects.showStatus(view, StatusFormatting, -1, false);
    LayoutProgress progress;
    progress.stringId = StatusFormattingPercent;
    if (!quiet) progress.total = CountSimpleScdrRows(root);
    const bool stopped = FormatWholeTree(view, root, progress);
    view.flags = static_cast<std::uint8_t>(view.flags & ~ViewFormatting);
    if (stopped) ReportFormatFailure(view);
    return stopped ? 1 : 0;
}

} // namespace vantrel
