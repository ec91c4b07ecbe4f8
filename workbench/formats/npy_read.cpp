#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "workbench/formats/npy.h"
#include "workbench/formats/utf.h"

namespace vantrel::workbench {
namespace {

using fake::Array;

constexpr std::string_view magic = "\x93NUMPY";
constexpr std::size_t maxRank = 15;
constexpr double exactWholeLimit = 9007199254740992.0;

// The header is the text of a Python dictionary of three entries.
class HeaderReader {
public:
    HeaderReader(std::string_view text, std::size_t offset) : text_(text), offset_(offset) {}

    void Read(NpySource& source)
    {
        Expect('{');
        while (!Accept('}')) {
            const std::string key = ReadString();
            Expect(':');
            if (key == "descr")
                source.type = ReadType();
            else if (key == "fortran_order")
                source.fortranOrder = ReadTruth();
            else if (key == "shape")
                source.shape = ReadShape();
            else
                Fail("unknown entry '" + key + "'");
            seen_ += key + ' ';
            if (!Accept(',')) {
                Expect('}');
                break;
            }
        }
        for (const char* key : {"descr ", "fortran_order ", "shape "}) {
            if (seen_.find(key) == std::string::npos) Fail("an entry is missing");
        }
    }

private:
    [[noreturn]] void Fail(const std::string& reason) const
    {
        throw FormatError("byte " + std::to_string(offset_ + at_) + ": header: " + reason);
    }

    void SkipBlanks()
    {
        while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\n'))
            ++at_;
    }

    bool Accept(char c)
    {
        SkipBlanks();
        if (at_ == text_.size() || text_[at_] != c) return false;
        ++at_;
        return true;
    }

    void Expect(char c)
    {
        if (!Accept(c)) Fail(std::string("'") + c + "' expected");
    }

    std::string ReadString()
    {
        SkipBlanks();
        const char quote = at_ < text_.size() ? text_[at_] : '\0';
        const std::size_t end =
            quote == '\'' || quote == '"' ? text_.find(quote, at_ + 1) : std::string_view::npos;
        if (end == std::string_view::npos)
            Fail("a quoted text expected (structured element types are not supported)");
        std::string value(text_.substr(at_ + 1, end - at_ - 1));
        at_ = end + 1;
        return value;
    }

    bool ReadTruth()
    {
        SkipBlanks();
        for (const std::string_view word : {"True", "False"}) {
            if (text_.substr(at_).starts_with(word)) {
                at_ += word.size();
                return word == "True";
            }
        }
        Fail("True or False expected");
    }

    fake::Shape ReadShape()
    {
        fake::Shape shape;
        Expect('(');
        while (!Accept(')')) {
            SkipBlanks();
            std::int64_t length = 0;
            const char* end = text_.data() + text_.size();
            const auto result = std::from_chars(text_.data() + at_, end, length);
            if (result.ec != std::errc() || length < 0) Fail("an axis length expected");
            at_ = static_cast<std::size_t>(result.ptr - text_.data());
            // Python 2 wrote a suffix behind long numbers.
            Accept('L');
            shape.push_back(length);
            if (!Accept(',')) {
                Expect(')');
                break;
            }
        }
        if (shape.size() > maxRank) Fail("more than 15 axes");
        return shape;
    }

    NpyType ReadType()
    {
        const std::string text = ReadString();
        const std::size_t from =
            !text.empty() && std::string_view("<>|=").find(text[0]) != std::string_view::npos ? 1 : 0;
        NpyType type;
        type.bigEndian = from == 1 && text[0] == '>';
        type.kind = from < text.size() ? text[from] : '\0';
        const char* end = text.data() + text.size();
        const auto result = std::from_chars(text.data() + std::min(from + 1, text.size()), end, type.size);
        if (result.ec != std::errc() || result.ptr != end || !IsSupported(type)) {
            Fail("the element type '" + text + "' is not supported");
        }
        if (type.kind == 'U') type.size *= 4;
        return type;
    }

    static bool IsSupported(const NpyType& type)
    {
        switch (type.kind) {
        case 'b': return type.size == 1;
        case 'i':
        case 'u': return type.size == 1 || type.size == 2 || type.size == 4 || type.size == 8;
        case 'f': return type.size == 2 || type.size == 4 || type.size == 8;
        case 'c': return type.size == 8 || type.size == 16;
        // The bound keeps the products of sizes small.
        case 'S':
        case 'U': return type.size > 0 && type.size < (std::size_t{1} << 30);
        default: return false;
        }
    }

    std::string_view text_;
    std::size_t offset_;
    std::size_t at_ = 0;
    std::string seen_;
};

std::size_t ReadLength(std::string_view bytes, std::size_t at, std::size_t size)
{
    if (bytes.size() < at + size)
        throw FormatError("byte " + std::to_string(bytes.size()) + ": the file ends in its header");
    std::size_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

NpySource ReadHeader(std::string_view bytes)
{
    if (!bytes.starts_with(magic)) throw FormatError("byte 0: this is no .npy file");
    NpySource source;
    source.version = static_cast<int>(ReadLength(bytes, magic.size(), 1));
    if (source.version < 1 || source.version > 3) {
        throw FormatError("byte 6: version " + std::to_string(source.version) +
                          " of the format is not supported");
    }
    const std::size_t lengthBytes = source.version == 1 ? 2 : 4;
    const std::size_t headerAt = magic.size() + 2 + lengthBytes;
    const std::size_t length = ReadLength(bytes, magic.size() + 2, lengthBytes);
    if (bytes.size() - headerAt < length)
        throw FormatError("byte " + std::to_string(bytes.size()) + ": the file ends in its header");
    HeaderReader(bytes.substr(headerAt, length), headerAt).Read(source);
    source.dataOffset = headerAt + length;
    return source;
}

void CheckSize(NpySource& source, std::size_t fileBytes)
{
    const std::size_t present = fileBytes - source.dataOffset;
    std::size_t needed = 0;
    try {
        source.count = fake::CountOf(source.shape);
        if (source.count > present / source.type.size + 1)
            throw std::length_error("more items than the file has bytes");
        needed = source.count * source.type.size;
    } catch (const std::length_error&) {
        needed = present + 1;
    }
    if (needed > present) {
        throw FormatError("byte " + std::to_string(fileBytes) + ": the file ends before its array does");
    }
    if (needed < present) {
        throw FormatError("byte " + std::to_string(source.dataOffset + needed) +
                          ": there is more behind the array; files of several arrays are not supported");
    }
}

class ItemReader {
public:
    ItemReader(const NpySource& source, const std::string& bytes)
        : source_(source), data_(bytes.data() + source.dataOffset)
    {
    }

    Array Read() const
    {
        return source_.type.kind == 'S' || source_.type.kind == 'U' ? ReadStrings() : ReadNumbers();
    }

    // Whole numbers that a double does not hold exactly.
    std::size_t InexactCount() const
    {
        if ((source_.type.kind != 'i' && source_.type.kind != 'u') || source_.type.size < 8) return 0;
        std::size_t count = 0;
        for (std::size_t i = 0; i < source_.count; ++i) {
            std::string again;
            const fake::ComplexNumber value = ReadNpyNumber(source_.type, ItemAt(i));
            if (std::abs(value.real) < exactWholeLimit) continue;
            if (NpyTypeHolds(source_.type, value)) AppendNpyNumber(again, source_.type, value);
            count += again.empty() || std::memcmp(again.data(), ItemAt(i), source_.type.size) != 0;
        }
        return count;
    }

private:
    const char* ItemAt(std::size_t index) const
    {
        return data_ +
               (source_.fortranOrder ? FortranPosition(source_.shape, index) : index) * source_.type.size;
    }

    Array ReadNumbers() const
    {
        std::vector<fake::ComplexNumber> values;
        std::vector<double> reals;
        for (std::size_t i = 0; i < source_.count; ++i) {
            values.push_back(ReadNpyNumber(source_.type, ItemAt(i)));
            reals.push_back(values.back().real);
        }
        if (source_.type.kind == 'c') return fake::ComplexArray(source_.shape, values);
        if (source_.type.kind == 'f') return fake::FloatArray(source_.shape, reals);
        return fake::NumericArray(source_.shape, reals);
    }

    std::u16string StringAt(std::size_t index) const
    {
        const std::size_t unit = source_.type.kind == 'U' ? 4 : 1;
        const NpyType unitType{'u', unit, source_.type.bigEndian};
        std::u16string text;
        std::size_t used = 0;
        for (std::size_t i = 0; i < source_.type.size; i += unit) {
            const double c = ReadNpyNumber(unitType, ItemAt(index) + i).real;
            if (c > 0x10FFFF)
                throw FormatError("item " + std::to_string(index) + " holds what is no character");
            AppendUtf16(text, static_cast<char32_t>(c));
            if (c != 0) used = text.size();
        }
        // Zeros fill a shorter string up.
        text.resize(used);
        return text;
    }

    Array ReadStrings() const
    {
        std::vector<std::u16string> texts;
        for (std::size_t i = 0; i < source_.count; ++i)
            texts.push_back(StringAt(i));
        if (source_.shape.empty()) return fake::Text(texts[0]);
        const std::size_t characters = source_.type.size / (source_.type.kind == 'U' ? 4 : 1);
        const bool single = std::all_of(texts.begin(), texts.end(),
                                        [](const std::u16string& text) { return text.size() == 1; });
        if (characters == 1 && single) {
            std::u16string all;
            for (const std::u16string& text : texts)
                all += text;
            return fake::TextOf(source_.shape, all);
        }
        if (texts.empty()) return fake::EmptyNestedArray(source_.shape, fake::Text(u""));
        std::vector<Array> items;
        for (const std::u16string& text : texts)
            items.push_back(fake::Text(text));
        return fake::NestedArray(source_.shape, std::move(items));
    }

    const NpySource& source_;
    const char* data_;
};

} // namespace

Document ReadNpy(std::string bytes)
{
    Document document;
    document.format = Format::Npy;
    document.bytes = std::move(bytes);
    auto source = std::make_shared<NpySource>(ReadHeader(document.bytes));
    CheckSize(*source, document.bytes.size());
    const ItemReader reader(*source, document.bytes);
    document.array = reader.Read();
    const std::size_t inexact = reader.InexactCount();
    if (inexact > 0) {
        document.notes.push_back(std::to_string(inexact) +
                                 " whole numbers have more digits than the array can hold; "
                                 "what is not edited is written back with every digit");
    }
    document.npy = std::move(source);
    return document;
}

} // namespace vantrel::workbench
