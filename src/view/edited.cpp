#include "view/edited.h"

#include <algorithm>

#include "entry/trace.h"
#include "model/edit_state.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

std::int64_t LevelOf(const Scdr& node) noexcept
{
    std::int64_t level = 0;
    for (const Scdr* holder = HoldingNode(node); holder != nullptr; holder = HoldingNode(*holder))
        ++level;
    return level;
}

// Whether `a` comes before `b` in item order. Edited arrays are simple, so neither lies inside the other.
bool ComesBefore(const Scdr* a, const Scdr* b) noexcept
{
    std::int64_t levelA = LevelOf(*a);
    std::int64_t levelB = LevelOf(*b);
    for (; levelA > levelB; --levelA)
        a = HoldingNode(*a);
    for (; levelB > levelA; --levelB)
        b = HoldingNode(*b);
    while (a != b) {
        const Scdr* const holderA = HoldingNode(*a);
        const Scdr* const holderB = HoldingNode(*b);
        if (holderA == holderB) {
            return holderA != nullptr && IndexInHolder(*holderA, *a, 0) < IndexInHolder(*holderB, *b, 0);
        }
        a = holderA;
        b = holderB;
    }
    return false;
}

Vector<Scdr*> FindAllEdited(Scdr& root)
{
    Vector<Scdr*> found;
    ForEachNode(root, [&](Scdr& node) {
        if (HasTypedText(node)) found.push_back(&node);
    });
    return found;
}

} // namespace

bool IsBelow(const Scdr& root, const Scdr& node) noexcept
{
    const Scdr* item = &node;
    while (item != nullptr && item != &root)
        item = HoldingNode(*item);
    return item != nullptr;
}

void NoteEdited(View& view, Scdr& node) noexcept
{
    if (std::find(view.edited.begin(), view.edited.end(), &node) != view.edited.end()) return;
    try {
        view.edited.push_back(&node);
    } catch (VTERROR_CODE) {
        view.editedUnknown = true; // from now on everything is looked at
    }
}

void MakeSelected(View& view, Scdr* node) noexcept
{
    Scdr* const previous = Selected(view);
    if (previous != nullptr && previous != node && HasTypedText(*previous)) NoteEdited(view, *previous);
    view.edit.node = node;
}

void ForgetEditedBelow(View& view, const Scdr& root) noexcept
{
    const auto end = std::remove_if(view.edited.begin(), view.edited.end(),
                                    [&](const Scdr* node) { return IsBelow(root, *node); });
    view.edited.erase(end, view.edited.end());
}

void ForgetAllEdited(View& view) noexcept
{
    Vector<Scdr*>().swap(view.edited);
    view.editedUnknown = false;
}

void ForgetModified(View& view) noexcept
{
    TraceScope trace("edited.cpp", "ForgetModified");
    const auto forget = [](const Scdr* node) {
        if (node != nullptr && node->editState != nullptr) node->editState->modified = false;
    };
    forget(Selected(view));
    for (const Scdr* node : view.edited)
        forget(node);
}

Vector<Scdr*> EditedBelow(View& view, Scdr& root)
{
    TraceScope trace("edited.cpp", "EditedBelow");
    if (view.editedUnknown) return FindAllEdited(root);
    Scdr* const selected = Selected(view);
    if (selected != nullptr && HasTypedText(*selected)) NoteEdited(view, *selected);
    if (view.editedUnknown) return FindAllEdited(root);
    Vector<Scdr*> found;
    for (Scdr* node : view.edited) {
        if (HasTypedText(*node) && IsBelow(root, *node)) found.push_back(node);
    }
    std::sort(found.begin(), found.end(), ComesBefore);
    return found;
}

} // namespace vantrel
