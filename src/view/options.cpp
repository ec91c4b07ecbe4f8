#include "view/options.h"

#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr std::int64_t SmallMargin = 5;
constexpr std::int64_t LargeMargin = 10;

constexpr ViewOptionRow optionTable[ViewOptionCount] = {
    {OptionSmallMargins, u"Use small margins", true,
     [](View& view) -> bool& { return view.options.smallMargins; }},
    {Option3dEdges, u"Use 3D edges", false, [](View& view) -> bool& { return view.options.edges3d; }},
    {OptionWholeCell, u"Show whole cell", true, [](View& view) -> bool& { return view.options.wholeCell; }},
    {OptionOvertype, u"Overtype", false, [](View& view) -> bool& { return view.edit.overtype; }},
    {OptionRejectBadData, u"Reject unsupported data", true,
     [](View& view) -> bool& { return view.options.rejectBadData; }},
    {OptionLineNumbers, u"Line numbers", true, [](View& view) -> bool& { return view.edit.lineNumbers; }},
    {OptionRuler, u"Ruler", true, [](View& view) -> bool& { return view.edit.ruler; }},
    {OptionRankOneScrollBars, u"Show rank 1 scrollbars", false,
     [](View& view) -> bool& { return view.edit.rankOneScrollBars; }},
    {OptionEnableUndo, u"Enable undo array", true,
     [](View& view) -> bool& { return view.options.enableUndo; }},
};

std::uint32_t EffectsOf(ViewOption id, bool value) noexcept
{
    switch (id) {
    case OptionSmallMargins: return OptionEffectLayOutAgain;
    case Option3dEdges: return OptionEffectRepaint;
    case OptionOvertype: return OptionEffectDrawCaret;
    case OptionLineNumbers: return OptionEffectLineNumbers;
    case OptionRuler: return OptionEffectRuler;
    case OptionRankOneScrollBars: return OptionEffectScrollbars | OptionEffectLayOutAgain;
    case OptionEnableUndo: return value ? OptionEffectUndoMenu : OptionEffectUndoMenu | OptionEffectEmptyUndo;
    case OptionWholeCell:
    case OptionRejectBadData: return OptionEffectNone;
    }
    return OptionEffectNone;
}

} // namespace

const ViewOptionRow* ViewOptionTable() noexcept
{
    return optionTable;
}

const ViewOptionRow* FindViewOption(std::int32_t id) noexcept
{
    for (const ViewOptionRow& row : optionTable) {
        if (row.id == id) return &row;
    }
    return nullptr;
}

bool GetViewOption(View& view, std::int32_t id) noexcept
{
    TraceScope trace("options.cpp", "GetViewOption");
    const ViewOptionRow* row = FindViewOption(id);
    return row != nullptr && row->field(view);
}

std::uint32_t SetViewOption(View& view, std::int32_t id, bool value) noexcept
{
    TraceScope trace("options.cpp", "SetViewOption");
    const ViewOptionRow* row = FindViewOption(id);
    if (row == nullptr || row->field(view) == value) return OptionEffectNone;
    row->field(view) = value;
    ApplyViewOptions(view);
    return EffectsOf(row->id, value);
}

void ApplyViewOptions(View& view) noexcept
{
    view.metrics.margin = view.options.smallMargins ? SmallMargin : LargeMargin;
}

} // namespace vantrel
