// Planes of arrays of rank 3 and more: which one is shown.
#include <algorithm>

#include "entry/trace.h"
#include "view/commands.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/selection.h"

namespace vantrel {
namespace {

constexpr std::int64_t PlanesPerPage = 10;

std::int64_t TargetPlane(std::int32_t command, std::int64_t plane, std::int64_t count) noexcept
{
    switch (command) {
    case CommandPlaneUp: return std::max<std::int64_t>(plane - 1, 0);
    case CommandPlaneDown: return std::min(plane + 1, count - 1);
    case CommandPlaneFirst: return 0;
    case CommandPlaneLast: return count - 1;
    case CommandPlanePageUp: return std::max<std::int64_t>(plane - PlanesPerPage, 0);
    case CommandPlanePageDown: return std::min(plane + PlanesPerPage, count - 1);
    default: return plane;
    }
}

} // namespace

void SetCurrentPlane(Scdr& node, std::int64_t plane) noexcept
{
    ScdrExtra& extra = *node.extra;
    extra.CurrentPlane = plane;
    if (extra.PlaneIndex == nullptr) return;
    for (std::int32_t axis = node.Rank - 3; axis >= 0; --axis) {
        const std::int64_t length = std::max<std::int64_t>(node.Shape[axis], 1);
        extra.PlaneIndex[axis] = plane % length;
        plane /= length;
    }
}

void SelectPlane(View& view, Scdr& node)
{
    TraceScope trace("planes.cpp", "SelectPlane");
    for (Scdr* item = &node; item->parent != nullptr; item = item->parent) {
        Scdr& parent = *item->parent;
        if (parent.Rank < 3 || parent.ElementCount == 0) continue;
        const std::int64_t planeSize = Rows(parent) * Columns(parent);
        const std::int64_t index = IndexInParent(*item, CurrentPlane(parent) * planeSize);
        if (index < 0 || index / planeSize == CurrentPlane(parent)) continue;
        SetCurrentPlane(parent, index / planeSize);
        view.effects.invalidate(view);
    }
}

void ChangePlane(View& view, std::int32_t command)
{
    TraceScope trace("planes.cpp", "ChangePlane");
    const Scdr* node = Selected(view);
    if (node != nullptr && node->Rank >= 3)
        ShowPlane(view, TargetPlane(command, CurrentPlane(*node), PlaneCount(*node)));
}

void ShowPlane(View& view, std::int64_t plane)
{
    TraceScope trace("planes.cpp", "ShowPlane");
    Scdr* node = Selected(view);
    if (node == nullptr || node->Rank < 3 || plane == CurrentPlane(*node)) return;
    if (plane < 0 || plane >= PlaneCount(*node)) return;
    SetCurrentPlane(*node, plane);
    view.effects.invalidate(view);
    if (view.editorActive) view.effects.showEditorPlane(view);
    view.effects.notifyFrame(view, ViewNotifyState);
}

} // namespace vantrel
