#include <algorithm>
#include <limits>
#include <string>

#include "entry/trace.h"
#include "model/ccdr.h"
#include "model/ccdr_layout.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

std::size_t NameUnits(const char16_t* name) noexcept
{
    return (name != nullptr ? std::char_traits<char16_t>::length(name) : 0) + 1;
}

std::size_t AxisNamesBytes(const Scdr& node)
{
    if (node.Rank < 3) return 0;
    std::size_t units = 0;
    for (std::int32_t axis = 0; axis < node.Rank; ++axis)
        units += NameUnits(node.extra->AxisNames[axis]);
    return units * sizeof(char16_t);
}

// The node's block without the blocks of its children.
std::size_t OwnBytes(const Scdr& node)
{
    const auto fixed = static_cast<std::size_t>(CcdrHeaderSize + 8 * std::int64_t{node.Rank});
    return CheckedAdd(fixed + AxisNamesBytes(node), CcdrPayloadSize(node.Type, node.ElementCount));
}

class ImageWriter {
public:
    explicit ImageWriter(std::uint8_t* image) noexcept : image_(image) {}

    void Write(const Scdr& root)
    {
        WriteNode(root);
        while (!open_.empty()) {
            Block& block = open_.back();
            if (block.nextChild < ChildCount(*block.node)) {
                WriteNextChild(block);
            } else {
                FinishBlock(*block.node, block.start);
                open_.pop_back();
            }
        }
    }

private:
    struct Block {
        const Scdr* node;
        std::int64_t start;
        std::int64_t payload; // of a nested node the table of offsets
        std::int64_t nextChild;
    };

    // A simple array's whole block; of a nested one, which stays open, everything in front of the children.
    void WriteNode(const Scdr& node)
    {
        const std::int64_t start = end_;
        const std::int64_t shape = start + CcdrHeaderSize;
        const std::int64_t payload = shape + 8 * std::int64_t{node.Rank};
        WriteHeader(node, image_ + end_);
        if (node.Rank > 0) std::memcpy(image_ + shape, node.Shape, 8 * static_cast<std::size_t>(node.Rank));
        const std::size_t payloadSize = CcdrPayloadSize(node.Type, node.ElementCount);
        if (IsSimple(node) && payloadSize > 0) std::memcpy(image_ + payload, node.data, payloadSize);
        end_ = payload + static_cast<std::int64_t>(payloadSize);
        if (IsSimple(node)) {
            FinishBlock(node, start);
        } else {
            open_.push_back({&node, start, payload, 0});
        }
    }

    // All but the size, which is known when the block is finished.
    static void WriteHeader(const Scdr& node, std::uint8_t* header) noexcept
    {
        std::memset(header, 0, CcdrHeaderSize);
        StoreNumber(header, CcdrMagic);
        StoreNumber(header + CcdrVersionAt, CcdrVersion);
        std::uint8_t* end = header + CcdrHeaderSize;
        StoreNumber(end + CcdrCountAt, node.ElementCount);
        StoreNumber(end + CcdrTypeAt, node.Type);
        StoreNumber(end + CcdrRankAt, node.Rank);
        if (!IsSimple(node) && (node.Flags & FlagStructure) != 0) end[CcdrFlagsAt] = CcdrFlagStructure;
    }

    // `block` is not valid afterwards: the child may be the newest open block.
    void WriteNextChild(Block& block)
    {
        const std::int64_t index = block.nextChild++;
        const std::int64_t start = end_;
        StoreNumber(image_ + block.payload + 8 * index, start - block.start);
        const Scdr& child = *Children(*block.node)[index];
        WriteNode(child);
        if ((child.Flags & FlagKeptSize) != 0)
            image_[start + CcdrHeaderSize + CcdrFlagsAt] |= CcdrFlagKeptSize;
    }

    void FinishBlock(const Scdr& node, std::int64_t start) noexcept
    {
        for (std::int32_t axis = 0; node.Rank >= 3 && axis < node.Rank; ++axis)
            WriteName(node.extra->AxisNames[axis]);
        StoreNumber(image_ + start + CcdrHeaderSize + CcdrSizeAt, end_ - start);
    }

    void WriteName(const char16_t* name) noexcept
    {
        const std::size_t bytes = NameUnits(name) * sizeof(char16_t);
        std::memcpy(image_ + end_, name != nullptr ? name : u"", bytes);
        end_ += static_cast<std::int64_t>(bytes);
    }

    std::uint8_t* image_;
    std::int64_t end_ = 0; // of what is written
    Vector<Block> open_;
};

} // namespace

std::int64_t CalcCcdrSize(const Scdr& node)
{
    TraceScope trace("ccdr_write.cpp", "CalcCcdrSize");
    std::size_t size = 0;
    for (SubtreeWalk walk(node); walk.Node() != nullptr; walk.Next())
        size = CheckedAdd(size, OwnBytes(*walk.Node()));
    if (size > static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max()))
        throw VTERROR_CODE::OutOfMemory;
    return static_cast<std::int64_t>(size);
}

std::uint8_t* ScdrToCcdr(EditContext* context, const Scdr& node, std::uint8_t* destination)
{
    TraceScope trace("ccdr_write.cpp", "ScdrToCcdr");
    try {
        OwnedArray<std::uint8_t> made;
        if (destination == nullptr) made = AllocateZeroedArray<std::uint8_t>(CalcCcdrSize(node));
        ImageWriter(destination != nullptr ? destination : made.get()).Write(node);
        return destination != nullptr ? destination : made.release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
