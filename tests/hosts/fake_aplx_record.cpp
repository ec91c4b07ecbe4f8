#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

#include "hosts/fake_aplx.h"

namespace vantrel::fake {
namespace {

constexpr std::size_t headerBytes = 16;
constexpr std::size_t highestRank = 63;
// Stands where only the interpreter looks.
constexpr std::uint8_t noise = 0x5A;

const std::u16string& Characters()
{
    static const std::u16string characters = [] {
        std::u16string all;
        for (char16_t c = 0; c < 128; ++c)
            all += c;
        all += u"⎕⍞⌶⋄⍺⍵∊⍴⍳○↑↓←→⊣⊢⌈⌊∇∆⍙∘≤≥≠∨∧⍱⍲⍒⍋⍉";
        all += u"⌽¡⊖£€¥⍟⌹¨⍎⍕⍝⌷⍷⍸¯⍪⍫⌿⍀⊤⊥⊂⊃∩∪≡≢⍬⍤⍥¿";
        for (char16_t c = 192; c < 256; ++c)
            all += c;
        return all;
    }();
    return characters;
}

template <typename T> void Append(AplxRecord& record, T value)
{
    std::uint8_t bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    record.insert(record.end(), bytes, bytes + sizeof(T));
}

template <typename T> T Load(const std::uint8_t* at)
{
    T value;
    std::memcpy(&value, at, sizeof(T));
    return value;
}

template <typename T> void Store(std::uint8_t* at, T value)
{
    std::memcpy(at, &value, sizeof(T));
}

void AppendWords(AplxRecord& data, const Array& array, std::size_t count)
{
    for (std::size_t start = 0; start < count; start += 64) {
        std::uint64_t word = 0;
        for (std::size_t i = start; i < std::min(count, start + 64); ++i)
            word |= std::uint64_t{RealAt(array, i) != 0.0} << (63 - i % 64);
        Append(data, word);
    }
}

std::uint8_t PositionOf(char32_t character)
{
    const std::size_t position =
        character < 0x10000 ? Characters().find(static_cast<char16_t>(character)) : std::u16string::npos;
    if (position == std::u16string::npos) throw std::invalid_argument("APLX has no such character");
    return static_cast<std::uint8_t>(position);
}

int TypeOf(const Array& array)
{
    if (IsCharacterType(array.type)) return AplxType::Character;
    switch (array.type) {
    case ElementType::Bit: return AplxType::Boolean;
    case ElementType::Int8:
    case ElementType::Int16:
    case ElementType::Int32: return AplxType::Integer;
    case ElementType::Float: return AplxType::Float;
    case ElementType::Nested: return AplxType::Nested;
    default: throw std::invalid_argument("APLX has no complex, rational or decimal numbers");
    }
}

AplxRecord SimpleData(const Array& array, int type)
{
    AplxRecord data;
    const std::size_t count = CountOf(array);
    switch (type) {
    case AplxType::Boolean: AppendWords(data, array, count); break;
    case AplxType::Float: data = array.data; break;
    case AplxType::Integer:
        for (std::size_t i = 0; i < count; ++i)
            Append(data, static_cast<std::int64_t>(RealAt(array, i)));
        break;
    default:
        for (std::size_t i = 0; i < count; ++i)
            data.push_back(PositionOf(CharacterAt(array, i)));
    }
    return data;
}

AplxRecord NestedData(const Array& array)
{
    AplxRecord items;
    AplxRecord data;
    const std::size_t count = CountOf(array);
    const std::size_t itemsAt = headerBytes + array.shape.size() * 8 + count * 8;
    for (const Array& item : array.items) {
        if (count > 0) Append(data, static_cast<std::int64_t>(itemsAt + items.size()));
        const AplxRecord record = MakeAplxRecord(item);
        items.insert(items.end(), record.begin(), record.end());
    }
    data.insert(data.end(), items.begin(), items.end());
    return data;
}

// Reads one record that must begin at `at` and takes up the bytes that its length says.
class Decoder {
public:
    Decoder(const AplxRecord& bytes, std::vector<std::string>& complaints)
        : bytes_(bytes), complaints_(complaints)
    {
    }

    Array Decode(std::size_t at, std::size_t limit, std::size_t* end)
    {
        *end = limit;
        if (limit - at < headerBytes) return Refuse("a record is shorter than its header");
        const std::uint8_t* const record = bytes_.data() + at;
        const auto length = Load<std::int64_t>(record + 4);
        if (length < static_cast<std::int64_t>(headerBytes) ||
            static_cast<std::uint64_t>(length) > limit - at)
            return Refuse("a record's length is " + std::to_string(length));
        *end = at + static_cast<std::size_t>(length);
        const auto rankField = Load<std::uint16_t>(record + 14);
        const std::size_t rank = rankField / 4;
        if (rankField % 4 != 0 || rank > highestRank) return Refuse("a rank field is not 4 x rank");
        const std::size_t dataAt = at + headerBytes + rank * 8;
        if (dataAt > *end) return Refuse("a shape goes over its record's end");
        Shape shape(rank);
        if (rank > 0) std::memcpy(shape.data(), record + headerBytes, rank * 8);
        try {
            return Items(record[12], shape, at, dataAt, *end);
        } catch (const std::exception& error) {
            return Refuse(error.what());
        }
    }

private:
    Array Refuse(const std::string& reason)
    {
        complaints_.push_back(reason);
        return EmptyVector();
    }

    Array Items(int type, const Shape& shape, std::size_t at, std::size_t dataAt, std::size_t end)
    {
        const std::size_t count = CountOf(shape);
        if (type == AplxType::Nested) return Nested(shape, count, at, dataAt, end);
        const std::size_t expected = type == AplxType::Boolean     ? (count + 63) / 64 * 8
                                     : type == AplxType::Character ? count
                                                                   : count * 8;
        if (end - dataAt != expected) return Refuse("the items of a record do not end with it");
        const std::uint8_t* const data = bytes_.data() + dataAt;
        switch (type) {
        case AplxType::Boolean: return Bits(shape, count, data);
        case AplxType::Integer: return Integers(shape, count, data);
        case AplxType::Float: return RawArray(ElementType::Float, shape, {data, data + count * 8});
        case AplxType::Character: return Text(shape, count, data);
        default: return Refuse("a record's type is " + std::to_string(type));
        }
    }

    Array Bits(const Shape& shape, std::size_t count, const std::uint8_t* data)
    {
        std::vector<int> bits;
        for (std::size_t i = 0; i < (count + 63) / 64 * 64; ++i) {
            const int bit = static_cast<int>(Load<std::uint64_t>(data + i / 64 * 8) >> (63 - i % 64) & 1);
            if (i < count)
                bits.push_back(bit);
            else if (bit != 0)
                return Refuse("bits stand behind the last item");
        }
        return BooleanArray(shape, bits);
    }

    // Wider integers than the array type has become floats.
    static Array Integers(const Shape& shape, std::size_t count, const std::uint8_t* data)
    {
        std::vector<std::int64_t> values(count);
        if (count > 0) std::memcpy(values.data(), data, count * 8);
        const bool narrow = std::all_of(values.begin(), values.end(), [](std::int64_t value) {
            return value >= std::numeric_limits<std::int32_t>::min() &&
                   value <= std::numeric_limits<std::int32_t>::max();
        });
        if (narrow) return IntegerArray(ElementType::Int32, shape, values);
        return FloatArray(shape, {values.begin(), values.end()});
    }

    static Array Text(const Shape& shape, std::size_t count, const std::uint8_t* data)
    {
        std::u16string text;
        for (std::size_t i = 0; i < count; ++i)
            text += Characters()[data[i]];
        return TextOf(shape, text);
    }

    Array Nested(const Shape& shape, std::size_t count, std::size_t at, std::size_t dataAt, std::size_t end)
    {
        std::size_t next = dataAt + count * 8;
        if (next > end) return Refuse("offsets go over a record's end");
        std::vector<Array> items;
        for (std::size_t i = 0; i < std::max<std::size_t>(count, 1); ++i) {
            if (count > 0 &&
                Load<std::int64_t>(bytes_.data() + dataAt + i * 8) != static_cast<std::int64_t>(next - at))
                return Refuse("an item does not stand where the one before it ends");
            items.push_back(Decode(next, end, &next));
        }
        if (next != end) return Refuse("the items of a record do not end with it");
        return count > 0 ? NestedArray(shape, std::move(items)) : EmptyNestedArray(shape, items.front());
    }

    const AplxRecord& bytes_;
    std::vector<std::string>& complaints_;
};

} // namespace

std::u16string_view AplxCharacters()
{
    return Characters();
}

bool AplxCanHold(const Array& array, std::string* reason)
{
    try {
        MakeAplxRecord(array);
        return true;
    } catch (const std::invalid_argument& error) {
        *reason = error.what();
        return false;
    }
}

AplxRecord RawAplxRecord(int type, const Shape& shape, const std::vector<std::uint8_t>& data)
{
    AplxRecord record(headerBytes, noise);
    record[12] = static_cast<std::uint8_t>(type);
    Store(record.data() + 14, static_cast<std::uint16_t>(shape.size() * 4));
    for (const std::int64_t length : shape)
        Append(record, length);
    record.insert(record.end(), data.begin(), data.end());
    Store(record.data() + 4, static_cast<std::int64_t>(record.size()));
    return record;
}

AplxRecord MakeAplxRecord(const Array& array)
{
    if (array.shape.size() > highestRank) throw std::invalid_argument("APLX has no array of such a rank");
    const int type = TypeOf(array);
    return RawAplxRecord(type, array.shape,
                         type == AplxType::Nested ? NestedData(array) : SimpleData(array, type));
}

Array ArrayOfAplxRecord(const AplxRecord& record, std::vector<std::string>& complaints)
{
    std::size_t end = 0;
    Array array = Decoder(record, complaints).Decode(0, record.size(), &end);
    if (end != record.size()) complaints.push_back("a record ends before its bytes do");
    return array;
}

} // namespace vantrel::fake
