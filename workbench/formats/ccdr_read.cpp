#include <algorithm>
#include <cmath>
#include <cstring>

#include "workbench/formats/ccdr.h"
#include "workbench/formats/ccdr_layout.h"

namespace vantrel::workbench {
namespace {

using fake::Array;

constexpr std::size_t maxDepth = 500;
constexpr std::int32_t maxRank = 15;

struct Notes {
    std::size_t inexact = 0;
    bool decimal = false;
};

// Reads one block and those inside it. `bytes` is the room that the block may take, `fileOffset` where that begins.
class BlockReader {
public:
    BlockReader(std::string_view bytes, std::size_t fileOffset, std::size_t depth, Notes& notes)
        : bytes_(bytes), fileOffset_(fileOffset), depth_(depth), notes_(notes)
    {
        if (depth > maxDepth) Fail(0, "nested deeper than " + std::to_string(maxDepth) + " levels");
        ReadHeader();
    }

    std::size_t Size() const { return size_; }

    Array Read(CcdrNode& node)
    {
        node.type = type_;
        node.flags = flags_;
        Array array = type_ == CcdrType::Nested ? ReadNested(node) : ReadSimple(node);
        if (version_ == 1 && shape_.size() >= 3) ReadAxisNames(node);
        return array;
    }

private:
    [[noreturn]] void Fail(std::size_t at, const std::string& reason) const
    {
        throw FormatError("byte " + std::to_string(fileOffset_ + at) + ": " + reason);
    }

    template <typename T> T Load(std::size_t at) const
    {
        if (at > bytes_.size() || bytes_.size() - at < sizeof(T)) Fail(at, "the image ends too early");
        T value;
        std::memcpy(&value, bytes_.data() + at, sizeof(T));
        return value;
    }

    void ReadHeader()
    {
        const bool hasMagic = bytes_.starts_with(CcdrLayout::magic);
        version_ = hasMagic ? Load<std::uint32_t>(CcdrLayout::version) : 0;
        if (hasMagic && version_ != 1) Fail(4, "version " + std::to_string(version_) + " is not supported");
        base_ = hasMagic ? 0 : CcdrLayout::magicBytes;
        const auto size = Load<std::uint64_t>(CcdrLayout::size - base_);
        if (size > bytes_.size())
            Fail(CcdrLayout::size - base_, "the block claims more bytes than there are");
        size_ = static_cast<std::size_t>(size);
        if (size_ < CcdrLayout::shape - base_)
            Fail(CcdrLayout::size - base_, "the block claims fewer bytes than its header has");
        bytes_ = bytes_.substr(0, size_);
        type_ = Load<std::uint32_t>(CcdrLayout::type - base_);
        const auto rank = Load<std::int32_t>(CcdrLayout::rank - base_);
        flags_ = Load<std::uint8_t>(CcdrLayout::flags - base_);
        if (rank < 0 || rank > maxRank)
            Fail(CcdrLayout::rank - base_, "the rank " + std::to_string(rank) + " is not possible");
        payload_ = CcdrLayout::shape - base_;
        for (std::int32_t k = 0; k < rank; ++k, payload_ += 8)
            shape_.push_back(Load<std::int64_t>(payload_));
        ReadCount();
    }

    void ReadCount()
    {
        try {
            count_ = fake::CountOf(shape_);
        } catch (const std::length_error& error) {
            Fail(CcdrLayout::shape - base_, error.what());
        }
        if (Load<std::int64_t>(CcdrLayout::count - base_) != static_cast<std::int64_t>(count_)) {
            Fail(CcdrLayout::count - base_, "the element count is not the product of the shape");
        }
    }

    // The payload's first byte, once it is known that there are so many.
    const char* Payload(std::size_t itemBytes, std::size_t items)
    {
        const std::size_t room = bytes_.size() - payload_;
        if (items > room / itemBytes) Fail(payload_, "the block is too small for its elements");
        end_ = payload_ + itemBytes * items;
        return bytes_.data() + payload_;
    }

    std::vector<std::uint8_t> CopyPayload(std::size_t itemBytes, std::size_t items)
    {
        const char* data = Payload(itemBytes, items);
        return {data, data + itemBytes * items};
    }

    Array ReadSimple(CcdrNode& node)
    {
        switch (type_) {
        case CcdrType::Character: {
            std::u16string text(count_, u'\0');
            const char* data = Payload(2, count_);
            if (count_ > 0) std::memcpy(text.data(), data, 2 * count_);
            return fake::TextOf(shape_, text);
        }
        case CcdrType::Boolean:
            return fake::RawArray(fake::ElementType::Bit, shape_,
                                  CopyPayload(1, count_ / 8 + (count_ % 8 != 0)));
        case CcdrType::Integer: return ReadIntegers(node);
        case CcdrType::Real: return fake::RawArray(fake::ElementType::Float, shape_, CopyPayload(8, count_));
        case CcdrType::Complex:
            return fake::RawArray(fake::ElementType::Complex, shape_, CopyPayload(16, count_));
        case CcdrType::Decimal: return ReadDecimals();
        default: Fail(CcdrLayout::type - base_, "the type code " + std::to_string(type_) + " is unknown");
        }
    }

    Array ReadIntegers(CcdrNode& node)
    {
        const char* data = Payload(8, count_);
        node.integers.resize(count_);
        if (count_ > 0) std::memcpy(node.integers.data(), data, 8 * count_);
        std::vector<double> values;
        for (const std::int64_t value : node.integers) {
            values.push_back(static_cast<double>(value));
            notes_.inexact += !IsExact(value);
        }
        return fake::NumericArray(shape_, values);
    }

    static bool IsExact(std::int64_t value)
    {
        // 2 to the 63rd is one more than any 64-bit number, and would not convert back.
        const auto real = static_cast<double>(value);
        return real < 9223372036854775808.0 && static_cast<std::int64_t>(real) == value;
    }

    Array ReadDecimals()
    {
        Payload(1, 0);
        notes_.decimal = true;
        // No payload bounds the count of these.
        if (count_ > bytes_.size()) Fail(CcdrLayout::count - base_, "too many decimal elements");
        return fake::DecimalArray(shape_, std::vector<std::string>(count_, "0"));
    }

    Array ReadNested(CcdrNode& node)
    {
        const std::size_t children = std::max<std::size_t>(count_, 1);
        Payload(8, children);
        std::vector<Array> items;
        for (std::size_t i = 0; i < children; ++i) {
            const auto offset = Load<std::uint64_t>(payload_ + 8 * i);
            // Blocks stand one behind the other: two that share bytes could multiply without end.
            if (offset < end_ || offset > bytes_.size())
                Fail(payload_ + 8 * i, "the offset of a child is not possible");
            const auto at = static_cast<std::size_t>(offset);
            BlockReader child(bytes_.substr(at), fileOffset_ + at, depth_ + 1, notes_);
            node.children.emplace_back();
            items.push_back(child.Read(node.children.back()));
            end_ = at + child.Size();
        }
        if (count_ == 0) return fake::EmptyNestedArray(shape_, std::move(items[0]));
        return fake::NestedArray(shape_, std::move(items));
    }

    void ReadAxisNames(CcdrNode& node)
    {
        for (std::size_t k = 0; k < shape_.size(); ++k) {
            std::u16string name;
            for (char16_t unit = Load<char16_t>(end_); unit != 0; unit = Load<char16_t>(end_)) {
                name += unit;
                end_ += 2;
            }
            end_ += 2;
            node.axisNames.push_back(std::move(name));
        }
    }

    std::string_view bytes_;
    std::size_t fileOffset_;
    std::size_t depth_;
    Notes& notes_;
    std::size_t base_ = 0; // bytes that this version's header lacks at its beginning
    std::uint32_t version_ = 0;
    std::size_t size_ = 0;
    std::size_t count_ = 0;
    std::uint32_t type_ = 0;
    std::uint8_t flags_ = 0;
    fake::Shape shape_;
    std::size_t payload_ = 0;
    std::size_t end_ = 0; // behind what has been read
};

} // namespace

Document ReadCcdr(std::string bytes)
{
    Document document;
    document.format = Format::Ccdr;
    document.bytes = std::move(bytes);
    auto source = std::make_shared<CcdrSource>();
    Notes notes;
    document.array = BlockReader(document.bytes, 0, 0, notes).Read(source->root);
    if (notes.inexact > 0) {
        document.notes.push_back(std::to_string(notes.inexact) +
                                 " whole numbers have more digits than the array can hold; "
                                 "what is not edited is written back with every digit");
    }
    if (notes.decimal)
        document.notes.push_back("the image carries no digits of its decimal elements; they are shown as 0");
    document.ccdr = std::move(source);
    return document;
}

} // namespace vantrel::workbench
