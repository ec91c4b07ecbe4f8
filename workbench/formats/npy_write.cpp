#include <algorithm>

#include "workbench/formats/npy.h"
#include "workbench/formats/numbers.h"
#include "workbench/formats/utf.h"

namespace vantrel::workbench {
namespace {

using fake::Array;
using fake::ComplexNumber;

constexpr std::size_t headerAlignment = 64;

std::string TypeText(const NpyType& type)
{
    const std::size_t size = type.kind == 'U' ? type.size / 4 : type.size;
    const bool orderless = type.kind == 'S' || (type.size == 1 && type.kind != 'U');
    return std::string(1, orderless ? '|' : type.bigEndian ? '>' : '<') + type.kind + std::to_string(size);
}

std::string ShapeText(const fake::Shape& shape)
{
    std::string text = "(";
    for (std::size_t i = 0; i < shape.size(); ++i)
        text += (i == 0 ? "" : " ") + std::to_string(shape[i]) + ",";
    // Only a tuple of one keeps its comma.
    if (shape.size() > 1) text.pop_back();
    return text + ")";
}

std::string Header(const NpyType& type, const fake::Shape& shape, bool fortranOrder, int version)
{
    std::string header = "{'descr': '" + TypeText(type) +
                         "', 'fortran_order': " + (fortranOrder ? "True" : "False") +
                         ", 'shape': " + ShapeText(shape) + ", }";
    const std::size_t lengthBytes = version == 1 ? 2 : 4;
    const std::size_t before = 6 + 2 + lengthBytes;
    header.append(headerAlignment - (before + header.size() + 1) % headerAlignment, ' ');
    header += '\n';
    std::string out = "\x93NUMPY";
    out += static_cast<char>(version);
    out += '\0';
    for (std::size_t i = 0; i < lengthBytes; ++i)
        out += static_cast<char>(header.size() >> 8 * i & 255);
    return out + header;
}

// Items in the order of the file; `append` writes the item of a row-major position.
template <typename Append>
void AppendItems(const fake::Shape& shape, std::size_t count, bool fortranOrder, Append append)
{
    std::vector<std::size_t> order(count);
    for (std::size_t i = 0; i < count; ++i)
        order[fortranOrder ? FortranPosition(shape, i) : i] = i;
    for (const std::size_t index : order)
        append(index);
}

// --- numbers ---

NpyType NewNumberType(const Array& array)
{
    switch (array.type) {
    case fake::ElementType::Bit: return {'b', 1, false};
    case fake::ElementType::Float: return {'f', 8, false};
    case fake::ElementType::Complex: return {'c', 16, false};
    default: return {'i', 8, false};
    }
}

bool IsNumberKind(char kind)
{
    return kind != 'S' && kind != 'U';
}

class NumberWriter {
public:
    NumberWriter(const Array& array, const Document* original, WriteContext& context)
        : array_(array), context_(context)
    {
        const std::size_t count = fake::CountOf(array);
        for (std::size_t i = 0; i < count; ++i)
            values_.push_back(fake::ComplexAt(array, i));
        if (original == nullptr || !IsNumberKind(original->npy->type.kind)) return;
        source_ = original->npy.get();
        data_ = original->bytes.data() + source_->dataOffset;
        if (source_->shape != array.shape) data_ = nullptr;
    }

    std::string Write()
    {
        const bool keepsType = source_ != nullptr && AllFit();
        const NpyType type = keepsType ? source_->type : NewNumberType(array_);
        const bool fortranOrder = source_ != nullptr && source_->fortranOrder;
        std::string out = Header(type, array_.shape, fortranOrder, source_ != nullptr ? source_->version : 1);
        AppendItems(array_.shape, values_.size(), fortranOrder, [&](std::size_t index) {
            if (keepsType && IsKept(index))
                out.append(OriginalItem(index), type.size);
            else
                AppendNpyNumber(out, type, values_[index]);
        });
        if (shortened_ > 0) {
            context_.notes.push_back("kept " + std::to_string(shortened_) +
                                     " items that the editor cannot save as whole numbers");
        }
        return out;
    }

private:
    const char* OriginalItem(std::size_t index) const
    {
        return data_ +
               (source_->fortranOrder ? FortranPosition(source_->shape, index) : index) * source_->type.size;
    }

    NumberChange ChangeOf(std::size_t index) const
    {
        if (data_ == nullptr) return NumberChange::Edited;
        const ComplexNumber before = ReadNpyNumber(source_->type, OriginalItem(index));
        const NumberChange real = CompareNumbers(before.real, values_[index].real, context_.precision);
        const NumberChange imaginary =
            CompareNumbers(before.imaginary, values_[index].imaginary, context_.precision);
        return imaginary == NumberChange::None ? real : NumberChange::Edited;
    }

    bool IsKept(std::size_t index)
    {
        const NumberChange change = ChangeOf(index);
        shortened_ += change == NumberChange::Shortened;
        return change != NumberChange::Edited;
    }

    bool AllFit() const
    {
        for (std::size_t i = 0; i < values_.size(); ++i) {
            if (!NpyTypeHolds(source_->type, values_[i]) && ChangeOf(i) == NumberChange::Edited) return false;
        }
        return true;
    }

    const Array& array_;
    WriteContext& context_;
    std::vector<ComplexNumber> values_;
    const NpySource* source_ = nullptr;
    const char* data_ = nullptr;
    std::size_t shortened_ = 0;
};

// --- strings ---

std::u32string CodePoints(const std::u16string& text)
{
    std::u32string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsPairAt(text, i))
            out += PairAt(text, i++);
        else
            out += static_cast<char32_t>(text[i]);
    }
    return out;
}

struct Strings {
    fake::Shape shape;
    std::vector<std::u32string> texts;
};

// The last axis of a character array runs along the strings, unless the file kept single characters.
Strings StringsOfCharacters(const Array& array, bool single)
{
    Strings strings;
    const std::u16string text = fake::TextOfArray(array);
    std::size_t length = 1;
    strings.shape = array.shape;
    if (!single && !array.shape.empty()) {
        length = static_cast<std::size_t>(array.shape.back());
        strings.shape.pop_back();
    }
    const std::size_t count = fake::CountOf(strings.shape);
    for (std::size_t i = 0; i < count; ++i)
        strings.texts.push_back(CodePoints(text.substr(i * length, length)));
    return strings;
}

Strings StringsOfNested(const Array& array)
{
    Strings strings;
    strings.shape = array.shape;
    const std::size_t count = fake::CountOf(array);
    for (std::size_t i = 0; i < count; ++i) {
        const Array& item = array.items[i];
        if (!fake::IsCharacterType(item.type) || item.shape.size() > 1) {
            throw FormatError("a nested array does not fit a .npy file unless all its items are texts");
        }
        strings.texts.push_back(CodePoints(fake::TextOfArray(item)));
    }
    return strings;
}

std::string WriteStrings(const Strings& strings, const NpySource* source)
{
    std::size_t length = 1;
    char32_t most = 0;
    for (const std::u32string& text : strings.texts) {
        length = std::max(length, text.size());
        for (const char32_t c : text)
            most = std::max(most, c);
    }
    NpyType type{'U', 4 * length, false};
    const bool hadStrings = source != nullptr && !IsNumberKind(source->type.kind);
    if (hadStrings && source->type.kind == 'S' && most < 256)
        type = {'S', std::max(length, source->type.size), false};
    else if (hadStrings && source->type.kind == 'U')
        type = {'U', std::max(4 * length, source->type.size), source->type.bigEndian};
    const bool fortranOrder = source != nullptr && source->fortranOrder;
    std::string out = Header(type, strings.shape, fortranOrder, source != nullptr ? source->version : 1);
    const NpyType unit{'u', type.kind == 'U' ? std::size_t{4} : std::size_t{1}, type.bigEndian};
    AppendItems(strings.shape, strings.texts.size(), fortranOrder, [&](std::size_t index) {
        const std::u32string& text = strings.texts[index];
        for (std::size_t k = 0; k < type.size / unit.size; ++k) {
            AppendNpyNumber(out, unit, {k < text.size() ? static_cast<double>(text[k]) : 0, 0});
        }
    });
    return out;
}

} // namespace

std::string WriteNpy(const Array& array, const Document* original, WriteContext& context)
{
    const NpySource* source = original != nullptr ? original->npy.get() : nullptr;
    if (array.type == fake::ElementType::Nested) return WriteStrings(StringsOfNested(array), source);
    if (fake::IsCharacterType(array.type)) {
        const bool single = source != nullptr && !source->shape.empty() &&
                            source->shape.size() == array.shape.size() && !IsNumberKind(source->type.kind);
        return WriteStrings(StringsOfCharacters(array, single), source);
    }
    if (array.type == fake::ElementType::Decimal) throw FormatError("decimal numbers do not fit a .npy file");
    return NumberWriter(array, original, context).Write();
}

} // namespace vantrel::workbench
