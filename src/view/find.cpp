#include "view/find.h"

#include <algorithm>
#include <limits>

#include "entry/trace.h"
#include "model/tree_walk.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/selection.h"

namespace vantrel {
namespace {

constexpr std::int64_t Endless = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t RecordsPerClockLook = 256;

// --- the order of arrays ---

// An empty array's one child is its prototype, which is no item.
bool HasItems(const Scdr& node) noexcept
{
    return !IsSimple(node) && node.ElementCount > 0;
}

const Scdr* StoredChildBefore(const Scdr& node, std::int64_t index) noexcept
{
    while (--index >= 0) {
        if (const Scdr* const child = Children(node)[index]) return child;
    }
    return nullptr;
}

const Scdr* LastUnder(const Scdr& node) noexcept
{
    const Scdr* last = &node;
    while (HasItems(*last)) {
        const Scdr* const child = StoredChildBefore(*last, ChildCount(*last));
        if (child == nullptr) break;
        last = child;
    }
    return last;
}

// Null behind the last array of the tree.
const Scdr* NextArray(const Scdr& root, const Scdr& node) noexcept
{
    if (HasItems(node)) {
        if (const Scdr* const child = StoredChildFrom(node, 0)) return child;
    }
    for (const Scdr* item = &node; item != &root;) {
        const Scdr* const holder = HoldingNode(*item);
        if (holder == nullptr) return nullptr;
        if (HasItems(*holder)) {
            const std::int64_t index = IndexInHolder(*holder, *item, 0);
            if (const Scdr* const sibling = StoredChildFrom(*holder, index + 1)) return sibling;
        }
        item = holder;
    }
    return nullptr;
}

// Null before the first.
const Scdr* PreviousArray(const Scdr& root, const Scdr& node) noexcept
{
    if (&node == &root) return nullptr;
    const Scdr* const holder = HoldingNode(node);
    if (holder == nullptr) return nullptr;
    if (HasItems(*holder)) {
        if (const Scdr* const sibling = StoredChildBefore(*holder, IndexInHolder(*holder, node, 0)))
            return LastUnder(*sibling);
    }
    return holder;
}

// --- one search ---

class Search {
public:
    Search(View& view, bool forward) : view_(view), forward_(forward), matcher_(view.edit.find) {}

    FindResult Run();
    [[nodiscard]] Scdr& Node() const noexcept { return const_cast<Scdr&>(*node_); } // the view's own tree
    [[nodiscard]] const FindPlace& Place() const noexcept { return place_; }

private:
    [[nodiscard]] bool IsSearchable(const Scdr& node) const noexcept
    {
        return IsSimple(node) && (!IsNumericFind(view_.edit.find) || node.Type != TypeCharacter);
    }
    [[nodiscard]] const Scdr* Step(const Scdr& node) const noexcept
    {
        return forward_ ? NextArray(*view_.root, node) : PreviousArray(*view_.root, node);
    }
    // The array with which a turn begins at this end of the tree.
    [[nodiscard]] const Scdr* FirstOfTurn() const noexcept
    {
        return forward_ ? view_.root : LastUnder(*view_.root);
    }
    [[nodiscard]] FindPlace FindStart(const Scdr& start) const noexcept;
    bool SearchForward(const Scdr& node, FindPlace from, FindPlace before);
    bool SearchBackward(const Scdr& node, FindPlace from, FindPlace behind);
    bool SearchAll(const Scdr& node);
    bool SearchRest(const Scdr& node, const FindPlace& start, bool beyondStart);
    bool Found(const Scdr& node, std::int64_t record) noexcept
    {
        node_ = &node;
        place_.record = record;
        return true;
    }
    bool IsStopped();

    View& view_;
    bool forward_;
    TextMatcher matcher_;
    InterruptPacer pacer_;
    std::int64_t untilClock_ = RecordsPerClockLook;
    bool stopped_ = false;
    const Scdr* node_ = nullptr;
    FindPlace place_;
};

bool Search::IsStopped()
{
    if (!stopped_ && --untilClock_ <= 0) {
        untilClock_ = RecordsPerClockLook;
        stopped_ = pacer_.Due() && view_.effects.isInterruptOrClosePending(view_);
    }
    return stopped_;
}

// Just behind (backwards: before) the present match, else the caret; in an array without either its own end, where the turn begins.
FindPlace Search::FindStart(const Scdr& start) const noexcept
{
    const FindState& find = view_.edit.find;
    const bool isMatch = find.node == &start && (view_.edit.findMatch || !view_.editorActive);
    if (isMatch) return {find.record, forward_ ? find.column + find.length : find.column};
    if (view_.editorActive && start.editState != nullptr)
        return {FirstShownRow(start) + start.editState->caretLine, start.editState->caretColumn};
    return forward_ ? FindPlace{} : FindPlace{Endless, Endless};
}

// Matches from one place on that begin before another.
bool Search::SearchForward(const Scdr& node, FindPlace from, FindPlace before)
{
    const std::int64_t last = std::min(node.records.count - 1, before.record);
    for (std::int64_t record = from.record; record <= last && !IsStopped(); ++record) {
        const std::int64_t column = record == from.record ? from.column : 0;
        if (!matcher_.First(GetRecord(node.records, record), column, place_)) continue;
        if (record == before.record && place_.column >= before.column) return false;
        return Found(node, record);
    }
    return false;
}

// Matches that end at one place or before it, and behind another.
bool Search::SearchBackward(const Scdr& node, FindPlace from, FindPlace behind)
{
    const std::int64_t first = std::max<std::int64_t>(behind.record, 0);
    for (std::int64_t record = std::min(node.records.count - 1, from.record); record >= first && !IsStopped();
         --record) {
        const std::int64_t column = record == from.record ? from.column : Endless;
        if (!matcher_.Last(GetRecord(node.records, record), column, place_)) continue;
        if (record == behind.record && place_.column + place_.length <= behind.column) return false;
        return Found(node, record);
    }
    return false;
}

bool Search::SearchAll(const Scdr& node)
{
    if (!IsSearchable(node)) return false;
    constexpr FindPlace start{};
    constexpr FindPlace end{Endless, Endless};
    return forward_ ? SearchForward(node, start, end) : SearchBackward(node, end, {-1, 0});
}

// The array in which the turn begins has two parts: the one that is searched first, and the one at the turn's end.
bool Search::SearchRest(const Scdr& node, const FindPlace& start, bool beyondStart)
{
    if (!IsSearchable(node) || IsScdrInsideEmptyAncestor(node)) return false;
    constexpr FindPlace end{Endless, Endless};
    if (forward_) return beyondStart ? SearchForward(node, start, end) : SearchForward(node, {}, start);
    return beyondStart ? SearchBackward(node, start, {-1, 0}) : SearchBackward(node, end, start);
}

FindResult Search::Run()
{
    const Scdr& start = Selected(view_) != nullptr ? *Selected(view_) : *view_.root;
    const FindPlace place = FindStart(start);
    bool found = SearchRest(start, place, true);
    for (const Scdr* node = Step(start); !found && !stopped_ && node != nullptr; node = Step(*node))
        found = SearchAll(*node);
    for (const Scdr* node = FirstOfTurn(); !found && !stopped_ && node != nullptr && node != &start;
         node = Step(*node))
        found = SearchAll(*node);
    if (!found && !stopped_) found = SearchRest(start, place, false);
    if (stopped_) return FindResult::Stopped;
    return found ? FindResult::Found : FindResult::NotFound;
}

// --- showing a match ---

std::int64_t PlaneOf(const Scdr& node, std::int64_t record) noexcept
{
    return node.Rank >= 3 ? record / std::max<std::int64_t>(Rows(node), 1) : 0;
}

bool TurnToPlane(View& view, Scdr& node, std::int64_t plane)
{
    if (node.Rank < 3 || plane == CurrentPlane(node)) return false;
    SetCurrentPlane(node, plane);
    view.effects.invalidate(view);
    return true;
}

// The array that holds the match is selected, open and shows the match's plane. 0 on success.
std::int32_t ShowArray(View& view, Scdr& node, std::int64_t plane)
{
    if (&node != Selected(view) && SelectScdr(view, node, false) != 0) return 1;
    if (TurnToPlane(view, node, plane) && view.editorActive) view.effects.showEditorPlane(view);
    return (node.Flags & FlagMinimized) != 0 ? RestoreScdr(view) : 0;
}

void PutCaretOnMatch(View& view, const Scdr& node, const FindPlace& match)
{
    if (view.editorActive && node.editState != nullptr) {
        view.effects.moveEditorCaret(view, match.column - node.editState->caretColumn,
                                     match.record - FirstShownRow(node) - node.editState->caretLine);
    }
    // Only now: moving the caret ends every match.
    view.edit.findMatch = true;
}

FindResult ShowMatch(View& view, Scdr& node, const FindPlace& match)
{
    if (ShowArray(view, node, PlaneOf(node, match.record)) != 0) return FindResult::Stopped;
    view.edit.find.node = &node;
    view.edit.find.record = match.record;
    view.edit.find.column = match.column;
    view.edit.find.length = match.length;
    PutCaretOnMatch(view, node, match);
    view.effects.invalidate(view);
    view.effects.notifyFrame(view, ViewNotifyState); // also takes an earlier message away
    return FindResult::Found;
}

} // namespace

FindResult FindNextMatch(View& view, bool forward)
{
    TraceScope trace("find.cpp", "FindNextMatch");
    if (view.root == nullptr || view.edit.find.text[0] == u'\0') return FindResult::NotFound;
    try {
        Search search(view, forward);
        const FindResult result = search.Run();
        return result == FindResult::Found ? ShowMatch(view, search.Node(), search.Place()) : result;
    } catch (VTERROR_CODE code) {
        SetErrorCode(view.context, code);
        view.effects.notifyFrame(view, ViewNotifyError);
        return FindResult::Stopped;
    }
}

} // namespace vantrel
