// An array's attributes as texts, for as long as they are shown.
#pragma once

#include "frame/status.h"
#include "frame/win/frame_window.h"
#include "frame/win/pick_index_text.h"

namespace vantrel {

class NodeAttributes {
public:
    // The node and its names must outlive this. Throws OutOfMemory.
    NodeAttributes(const FrameWindow& frame, const Scdr& node)
        : pickIndex_(frame, node), shape_(ShapeText(node)),
          plane_(node.Rank >= 3 ? PlaneText(node, frame.context->indexOrigin) : Text())
    {
        attributes_.type = node.Type;
        attributes_.depth = ScdrDepth(node);
        attributes_.count = node.ElementCount;
        attributes_.rank = node.Rank;
        attributes_.shape = node.Rank > 0 ? shape_.c_str() : nullptr;
        attributes_.pickIndex = pickIndex_.Get();
        attributes_.plane = node.Rank >= 3 ? plane_.c_str() : nullptr;
    }
    NodeAttributes(const NodeAttributes&) = delete;
    NodeAttributes& operator=(const NodeAttributes&) = delete;
    [[nodiscard]] const ScdrAttributes& Get() const noexcept { return attributes_; }

private:
    PickIndexText pickIndex_;
    Text shape_;
    Text plane_;
    ScdrAttributes attributes_;
};

} // namespace vantrel
