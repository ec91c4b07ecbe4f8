#include "view/commit.h"

#include <algorithm>

#include "entry/trace.h"
#include "model/edit_state.h"
#include "model/rebuild.h"
#include "view/busy.h"
#include "view/edited.h"
#include "view/layout.h"
#include "view/layout_change.h"
#include "view/messages.h"
#include "view/report.h"
#include "view/selection.h"

namespace vantrel {
namespace {

struct Commit {
    View& view;
    std::int64_t replaced;
    bool editorKindChanged; // a scalar became a vector or the other way round while the editor stands over it
    bool onlyOne;           // array is edited: its box alone is laid out anew
    bool laidOut;           // sizes and places are right already
};

struct CaretPlace {
    std::int64_t column = 0;
    std::int64_t line = 0;
};

// Failures that say nothing about the text: taking it for characters because of them would quietly turn numbers into text.
bool IsPassingFailure(VTERROR_CODE code) noexcept
{
    return code == VTERROR_CODE::OutOfMemory || code == VTERROR_CODE::WsFull ||
           code == VTERROR_CODE::Interrupt;
}

// The array that the records say; null on failure, with ErrorCode.
ScdrPtr BuildFromText(View& view, const Scdr& node)
{
    LangEnv& environment = *view.context->langEnv;
    VTERROR_CODE& code = environment.ErrorCode;
    const VTERROR_CODE before = code;
    const char16_t* const detailBefore = environment.ErrorDetail;
    code = VTERROR_CODE::NoError;
    const bool numeric = node.Type != TypeNested && node.Type != TypeCharacter;
    ScdrPtr fresh = BuildScdrFromRecords(view.context, node, numeric);
    if (fresh == nullptr || IsPassingFailure(code)) return nullptr;
    // Text that is no number stays as characters; that is an answer, and its error must not end the edit later.
    code = before;
    environment.ErrorDetail = detailBefore;
    return fresh;
}

// A maximised array remembers its place; the room for that is made here, where a failure still harms nothing.
bool MakeRoomForState(View& view, const Scdr& node, Scdr& fresh)
{
    if ((node.Flags & FlagMaximized) == 0) return true;
    try {
        ExtraOf(fresh);
        return true;
    } catch (VTERROR_CODE code) {
        return SetErrorCode(view.context, code);
    }
}

ScdrPtr BuildFormatted(View& view, const Scdr& node)
{
    ScdrPtr fresh = BuildFromText(view, node);
    if (fresh == nullptr || FormatScdr(view, *fresh) != 0) return nullptr;
    return MakeRoomForState(view, node, *fresh) ? std::move(fresh) : nullptr;
}

// The user goes on where he was: a closed box stays closed, the shown plane stays shown.
void TakeState(const Scdr& old, Scdr& fresh) noexcept
{
    fresh.Flags = static_cast<std::uint8_t>(fresh.Flags | (old.Flags & FlagMinimized));
    if (old.Rank > 2 && fresh.Rank == old.Rank) {
        SetCurrentPlane(fresh, std::min(CurrentPlane(old), PlaneCount(fresh) - 1));
    }
}

// From here on nothing can fail: the new node stands where the old one stood, and the old one is freed.
Scdr& TakePlace(View& view, Scdr& node, ScdrPtr fresh) noexcept
{
    Scdr* const taken = fresh.get();
    TakeState(node, *taken);
    if (view.root == &node) view.root = taken;
    if (view.top == &node) view.top = taken;
    if (view.edit.node == &node) view.edit.node = taken;
    ForgetEditedBelow(view, node);
    if (node.parent != nullptr) {
        SetChild(*node.parent, IndexInParent(node), std::move(fresh));
    } else {
        static_cast<void>(fresh.release());
    }
    Scdr* old = &node;
    FreeScdr(&old);
    return *taken;
}

void ReloadEditor(View& view)
{
    const Scdr* node = Selected(view);
    if (view.editorActive && node != nullptr && IsShownInEditor(*node)) view.effects.reloadEditor(view);
}

CaretPlace CaretOf(const View& view) noexcept
{
    const Scdr* const node = Selected(view);
    if (node == nullptr || node->editState == nullptr) return {};
    return {node->editState->caretColumn, node->editState->caretLine};
}

// Saving in the middle of a word must not send what is typed next to the start of the text.
void PutCaretBack(View& view, const CaretPlace& caret)
{
    const Scdr* const node = Selected(view);
    if (!view.editorActive || node == nullptr || !IsSimple(*node) || node->records.count == 0) return;
    const std::int64_t line =
        std::clamp<std::int64_t>(caret.line, 0, std::max<std::int64_t>(ShownRows(*node), 1) - 1);
    const std::int64_t length = GetRecord(node->records, FirstShownRow(*node) + line).length;
    const std::int64_t column = std::min(caret.column, length);
    if (column != 0 || line != 0) view.effects.moveEditorCaret(view, column, line);
}

bool CheckSimpleScdr(Commit& commit, Scdr& node)
{
    TraceScope trace("commit.cpp", "CheckSimpleScdr");
    View& view = commit.view;
    ScdrPtr fresh = BuildFormatted(view, node);
    if (fresh == nullptr) return false;
    const bool maximized = (node.Flags & FlagMaximized) != 0;
    if (maximized) {
        MakeSelected(view, &node); // it fills the window, so it is the selection
        if (RestoreScdr(view) != 0) return false;
    }
    const bool selected = Selected(view) == &node;
    commit.editorKindChanged =
        commit.editorKindChanged || (selected && (node.Rank == 0) != (fresh->Rank == 0));
    ++commit.replaced;
    const BoxGeometry before = GeometryOf(node);
    Scdr& placed = TakePlace(view, node, std::move(fresh));
    if (selected) ReloadEditor(view); // before anything else asks the editor for what it knew of the old node
    commit.laidOut = commit.onlyOne && !maximized && LayOutChangedBox(view, placed, before);
    if (maximized) MaximizeScdr(view);
    if (!commit.laidOut) InvalidateAncestorsSizesAndLaterSiblingsOrigins(placed);
    return true;
}

// Stops at the first failure.
bool CheckEdited(Commit& commit, Scdr& root)
{
    try {
        const Vector<Scdr*> edited = EditedBelow(commit.view, root);
        commit.onlyOne = edited.size() == 1;
        return std::all_of(edited.begin(), edited.end(),
                           [&](Scdr* node) { return CheckSimpleScdr(commit, *node); });
    } catch (VTERROR_CODE code) {
        return SetErrorCode(commit.view.context, code);
    }
}

// One new layout for all that was replaced.
void FollowReplacements(const Commit& commit, const CaretPlace& caret)
{
    View& view = commit.view;
    view.effects.invalidate(view);
    if (!commit.laidOut) CalculateScdrSizes(view);
    SetScrollBarsDataSizeFromScdr(view);
    if (commit.editorKindChanged) EditBegin(view);
    ReloadEditor(view);
    EditResize(view);
    PutCaretBack(view, caret);
    view.effects.notifyFrame(view, ViewNotifyMenu);
    view.effects.notifyFrame(view, ViewNotifyState);
}

} // namespace

std::int32_t CheckScdr(View& view, Scdr& node)
{
    TraceScope trace("commit.cpp", "CheckScdr");
    const BusyMark busy(view);
    const CaretPlace caret = CaretOf(view);
    Commit commit{view, 0, false, false, false};
    const bool passed = CheckEdited(commit, node);
    if (commit.replaced > 0) FollowReplacements(commit, caret);
    if (!passed) ReportHostError(view);
    return passed ? 1 : 0;
}

std::int32_t CheckAndAlignScdr(View& view)
{
    TraceScope trace("commit.cpp", "CheckAndAlignScdr");
    const BusyMark busy(view);
    const CaretPlace caret = CaretOf(view);
    if (view.root == nullptr || CheckScdr(view, *view.root) == 0) return 0;
    const auto quiet = static_cast<std::uint8_t>(view.flags & ViewQuiet);
    view.flags |= ViewQuiet;
    CalculateScdrSizes(view);
    view.flags = static_cast<std::uint8_t>((view.flags & ~ViewQuiet) | quiet);
    SetScrollBarsDataSizeFromScdr(view);
    ReloadEditor(view);
    EditResize(view);
    PutCaretBack(view, caret);
    view.effects.invalidate(view);
    TellFrame(view);
    return 1;
}

} // namespace vantrel
