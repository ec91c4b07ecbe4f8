#include <algorithm>
#include <string>

#include "entry/trace.h"
#include "model/ccdr.h"
#include "model/ccdr_layout.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

// Decimal elements need memory that no byte of the image stands for, so they get an allowance.
constexpr std::int64_t FreeDecimalBytes = std::int64_t{64} << 20;
constexpr std::int64_t DecimalBytesPerImageByte = 16;

// A block whose header was checked: it lies in the image, and shape and payload lie in the block.
struct BlockHeader {
    std::int64_t start = 0;
    std::int64_t end = 0;
    std::int64_t shape = 0;
    std::int64_t payload = 0;
    std::int64_t payloadEnd = 0;
    std::int64_t count = 0;
    std::uint32_t type = 0;
    std::int32_t rank = 0;
    std::uint8_t flags = 0;
    bool hasAxisNames = false;
};

struct OpenBlock {
    Scdr* node;
    BlockHeader header;
    std::int64_t childrenEnd; // where the children read so far end
    std::int64_t nextChild;
};

void Require(bool sound)
{
    if (!sound) throw VTERROR_CODE::DomainError;
}

class ImageReader {
public:
    ImageReader(EditContext* context, const std::uint8_t* image, std::int64_t size) noexcept
        : context_(context), image_(image), size_(size),
          decimalBytesLeft_(FreeDecimalBytes + std::min(size, FreeDecimalBytes) * DecimalBytesPerImageByte)
    {
    }

    ScdrPtr Read()
    {
        const BlockHeader header = ReadHeader(0, size_);
        ScdrPtr root = MakeNode(nullptr, header);
        FinishOrOpen(*root, header);
        while (!open_.empty()) {
            OpenBlock& block = open_.back();
            if (block.nextChild < ChildCount(*block.node)) {
                ReadNextChild(block);
            } else {
                ReadAxisNames(*block.node, block.header, block.childrenEnd);
                open_.pop_back();
            }
        }
        return root;
    }

private:
    template <typename T> T Load(std::int64_t at) const noexcept { return LoadNumber<T>(image_ + at); }

    // Whether a shape of `rank` lengths stands in the block and has `count` items.
    bool HasShape(const BlockHeader& header, std::int32_t rank) const noexcept
    {
        if (rank < 0 || rank > (header.end - header.shape) / 8) return false;
        bool empty = false;
        bool overflows = false;
        std::int64_t product = 1;
        for (std::int32_t axis = 0; axis < rank; ++axis) {
            const auto length = Load<std::int64_t>(header.shape + 8 * std::int64_t{axis});
            if (length < 0) return false;
            empty = empty || length == 0;
            overflows = overflows || (length > 0 && product > INT64_MAX / length);
            if (!empty && !overflows) product *= length;
        }
        return empty ? header.count == 0 : !overflows && product == header.count;
    }

    // Whether the payload of that many items stands in the block behind a shape of `rank` lengths.
    bool HasPayload(const BlockHeader& header, std::int32_t rank) const
    {
        const std::int64_t room = header.end - header.shape - 8 * std::int64_t{rank};
        if (header.type == TypeDecimal) return true;
        if (header.count / 8 > room) return false; // bits are the smallest items
        return static_cast<std::int64_t>(CcdrPayloadSize(header.type, header.count)) <= room;
    }

    // An old block may keep its rank in one of two places; only one of them agrees with shape and size.
    void FindOldRank(BlockHeader& header) const
    {
        const auto wideRank = Load<std::int32_t>(header.shape + CcdrOldWideRankAt);
        if (header.rank == 0 && wideRank > 0 && HasShape(header, wideRank) && HasPayload(header, wideRank)) {
            header.rank = wideRank;
            header.flags = 0;
        }
        // What is a flag in the one form is zero in the other.
        header.flags = static_cast<std::uint8_t>(header.flags | image_[header.shape + CcdrOldWideFlagsAt]);
    }

    BlockHeader ReadHeader(std::int64_t start, std::int64_t limit) const
    {
        Require(limit - start >= CcdrOldHeaderSize);
        const bool old = Load<std::uint32_t>(start) != CcdrMagic;
        const std::int64_t headerSize = old ? CcdrOldHeaderSize : CcdrHeaderSize;
        Require(limit - start >= headerSize);
        Require(old || Load<std::uint32_t>(start + CcdrVersionAt) == CcdrVersion);
        BlockHeader header;
        header.start = start;
        header.shape = start + headerSize;
        const auto size = Load<std::int64_t>(header.shape + CcdrSizeAt);
        Require(size >= headerSize && size <= limit - start);
        header.end = start + size;
        header.count = Load<std::int64_t>(header.shape + CcdrCountAt);
        header.type = Load<std::uint32_t>(header.shape + CcdrTypeAt);
        header.rank = Load<std::int32_t>(header.shape + CcdrRankAt);
        header.flags = image_[header.shape + CcdrFlagsAt];
        Require(header.count >= 0 && IsValidType(header.type));
        if (old) FindOldRank(header);
        Require(HasShape(header, header.rank) && HasPayload(header, header.rank));
        header.payload = header.shape + 8 * std::int64_t{header.rank};
        header.payloadEnd =
            header.payload + static_cast<std::int64_t>(CcdrPayloadSize(header.type, header.count));
        header.hasAxisNames = !old && header.rank >= 3;
        return header;
    }

    void AllowDecimals(const BlockHeader& header)
    {
        if (header.type != TypeDecimal) return;
        if (header.count > decimalBytesLeft_ / 16) throw VTERROR_CODE::SystemLimit;
        decimalBytesLeft_ -= header.count * 16;
    }

    ScdrPtr MakeNode(Scdr* parent, const BlockHeader& header)
    {
        AllowDecimals(header);
        shape_.resize(static_cast<std::size_t>(header.rank));
        if (header.rank > 0)
            std::memcpy(shape_.data(), image_ + header.shape, shape_.size() * sizeof(std::int64_t));
        // Decimal data is not in the image; zeroes are at least nobody's old memory.
        const bool fill = header.type == TypeNested || header.type == TypeDecimal;
        ScdrPtr node = AllocateScdr(context_, parent, header.type, header.rank, shape_.data(), fill);
        if (!IsSimple(*node)) {
            if ((header.flags & CcdrFlagStructure) != 0) node->Flags = FlagStructure;
            return node;
        }
        if ((header.flags & CcdrFlagKeptSize) != 0) node->Flags = FlagKeptSize;
        const std::int64_t bytes = header.payloadEnd - header.payload;
        if (bytes > 0) std::memcpy(node->data, image_ + header.payload, static_cast<std::size_t>(bytes));
        return node;
    }

    // A simple array is complete, and its items are at hand: its simplest type costs least now. A nested one waits for its children.
    void FinishOrOpen(Scdr& node, const BlockHeader& header)
    {
        if (IsSimple(node)) {
            SetSimplestType(node);
            ReadAxisNames(node, header, header.payloadEnd);
            return;
        }
        if (static_cast<std::int64_t>(open_.size()) >= DeepestNesting) throw VTERROR_CODE::SystemLimit;
        open_.push_back({&node, header, header.payloadEnd, 0});
    }

    // Children stand one behind the other, so that no byte is read twice. `block` is not valid afterwards.
    void ReadNextChild(OpenBlock& block)
    {
        const std::int64_t index = block.nextChild++;
        const auto offset = Load<std::int64_t>(block.header.payload + 8 * index);
        Require(offset >= block.childrenEnd - block.header.start &&
                offset <= block.header.end - block.header.start);
        const BlockHeader header = ReadHeader(block.header.start + offset, block.header.end);
        block.childrenEnd = header.end;
        ScdrPtr child = MakeNode(block.node, header);
        Scdr& node = *child;
        SetChild(*block.node, index, std::move(child));
        FinishOrOpen(node, header);
    }

    void ReadAxisNames(Scdr& node, const BlockHeader& header, std::int64_t at)
    {
        if (!header.hasAxisNames) return;
        for (std::int32_t axis = 0; axis < node.Rank; ++axis) {
            const std::int64_t units = TerminatedUnits(at, header.end);
            OwnedArray<char16_t> name = AllocateArray<char16_t>(units);
            std::memcpy(name.get(), image_ + at, static_cast<std::size_t>(units) * sizeof(char16_t));
            FreeBytes(node.extra->AxisNames[axis]);
            node.extra->AxisNames[axis] = name.release();
            at += units * std::int64_t{sizeof(char16_t)};
        }
    }

    // Units of the string at `at`, its terminator included.
    std::int64_t TerminatedUnits(std::int64_t at, std::int64_t end) const
    {
        std::int64_t units = 0;
        for (;; ++units) {
            Require(end - at >= std::int64_t{sizeof(char16_t)} * (units + 1));
            if (Load<char16_t>(at + 2 * units) == 0) return units + 1;
        }
    }

    EditContext* context_;
    const std::uint8_t* image_;
    std::int64_t size_;
    std::int64_t decimalBytesLeft_;
    Vector<OpenBlock> open_;
    Vector<std::int64_t> shape_;
};

} // namespace

ScdrPtr CcdrToScdr(EditContext* context, const std::uint8_t* block, std::int64_t size)
{
    TraceScope trace("ccdr_read.cpp", "CcdrToScdr");
    try {
        return ImageReader(context, block, size).Read();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
