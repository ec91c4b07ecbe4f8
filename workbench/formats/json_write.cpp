#include <algorithm>
#include <cmath>

#include "workbench/formats/align.h"
#include "workbench/formats/json.h"
#include "workbench/formats/numbers.h"
#include "workbench/formats/utf.h"

namespace vantrel::workbench {
namespace {

using Kind = JsonValue::Kind;
using fake::Array;

constexpr std::size_t maxInlineItems = 20;

// --- texts ---

void AppendEscaped(std::string& out, char32_t c)
{
    static const char digits[] = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += digits[c >> shift & 15];
}

void AppendCharacter(std::string& out, char32_t c)
{
    switch (c) {
    case '"': out += "\\\""; break;
    case '\\': out += "\\\\"; break;
    case '\b': out += "\\b"; break;
    case '\f': out += "\\f"; break;
    case '\n': out += "\\n"; break;
    case '\r': out += "\\r"; break;
    case '\t': out += "\\t"; break;
    default:
        // A lone surrogate is no character that UTF-8 could write.
        if (c < 32 || (c >= 0xD800 && c < 0xE000))
            AppendEscaped(out, c);
        else
            AppendUtf8(out, c);
    }
}

std::string QuotedText(std::u16string_view text)
{
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsPairAt(text, i))
            AppendCharacter(out, PairAt(text, i++));
        else
            AppendCharacter(out, text[i]);
    }
    return out + "\"";
}

bool IsText(const Array& array)
{
    return fake::IsCharacterType(array.type) && array.shape.size() < 2;
}

// --- comparing with the file ---

class Writer {
public:
    Writer(const JsonSource* source, WriteContext& context) : context_(context)
    {
        if (source == nullptr) return;
        indent_ = source->indent;
        spaced_ = source->spaced;
        newline_ = source->crlf ? "\r\n" : "\n";
    }

    void Write(const Array& array, const JsonValue* original);
    std::string Take() { return std::move(out_); }
    const std::string& Newline() const { return newline_; }

private:
    struct List {
        char close;
        bool multiline;
        bool any = false;
    };

    // One row of an object as it is now.
    struct Member {
        std::u16string name;
        const Array* value;
        const JsonValue* originalName = nullptr;
        const JsonValue* originalValue = nullptr;
    };

    void WriteTextValue(const Array& array, const JsonValue* original);
    void WriteScalar(const Array& array, std::size_t index, const JsonValue* original);
    void WriteRealNumber(double value, const JsonValue* original);
    void WriteAxis(const Array& array, std::size_t axis, std::size_t offset, const JsonValue* original);
    void WriteVector(const Array& array, const JsonValue* original);
    void WriteObject(const Array& array, const JsonValue* original);
    void MatchMembers(std::vector<Member>& members, const JsonValue& original);
    bool Unedited(const Array& array, const JsonValue& original);
    std::vector<const JsonValue*> MatchItems(const std::vector<const Array*>& items,
                                             const JsonValue* original);

    void Open(char open, char close, bool multiline);
    void NextItem();
    void Close();
    void BreakLine();

    WriteContext& context_;
    std::string out_;
    std::vector<List> lists_;
    std::string indent_ = "  ";
    std::string newline_ = "\n";
    bool spaced_ = true;
};

void Writer::Open(char open, char close, bool multiline)
{
    out_ += open;
    lists_.push_back({close, multiline && !indent_.empty()});
}

void Writer::BreakLine()
{
    out_ += newline_;
    for (std::size_t i = 0; i < lists_.size(); ++i)
        out_ += indent_;
}

void Writer::NextItem()
{
    List& list = lists_.back();
    if (list.any) out_ += ',';
    if (list.multiline)
        BreakLine();
    else if (list.any && spaced_)
        out_ += ' ';
    list.any = true;
}

void Writer::Close()
{
    const List list = lists_.back();
    lists_.pop_back();
    if (list.any && list.multiline) BreakLine();
    out_ += list.close;
}

void Writer::WriteTextValue(const Array& array, const JsonValue* original)
{
    std::u16string text = fake::TextOfArray(array);
    if (original != nullptr && original->kind == Kind::String) {
        text = WithLineEndsOf(text, original->text);
        if (text == original->text) {
            out_ += original->raw;
            return;
        }
    }
    out_ += QuotedText(text);
}

void Writer::WriteRealNumber(double value, const JsonValue* original)
{
    if (original != nullptr && original->kind == Kind::Boolean && (value == 0 || value == 1)) {
        out_ += value == 1 ? "true" : "false";
        return;
    }
    if (original != nullptr && original->kind == Kind::Number) {
        const NumberChange change = CompareNumbers(original->number, value, context_.precision);
        if (change == NumberChange::Shortened) {
            context_.notes.push_back("kept " + original->raw +
                                     ", which the editor cannot save as a whole number");
        }
        if (change != NumberChange::Edited) {
            out_ += original->raw;
            return;
        }
    }
    if (std::isnan(value))
        out_ += "\"NaN\"";
    else if (std::isinf(value))
        out_ += value < 0 ? "\"-Infinity\"" : "\"Infinity\"";
    else
        out_ += NumberToText(value);
}

void Writer::WriteScalar(const Array& array, std::size_t index, const JsonValue* original)
{
    if (fake::IsCharacterType(array.type)) {
        WriteTextValue(fake::ItemAt(array, index), original);
    } else if (array.type == fake::ElementType::Decimal) {
        const std::string text = fake::DecimalTextAt(array, index);
        out_ += IsJsonNumber(text) ? text : '"' + text + '"';
    } else if (fake::ComplexAt(array, index).imaginary != 0) {
        const fake::ComplexNumber value = fake::ComplexAt(array, index);
        out_ += '"' + NumberToText(value.real) + 'J' + NumberToText(value.imaginary) + '"';
    } else {
        WriteRealNumber(fake::RealAt(array, index), original);
    }
}

bool Writer::Unedited(const Array& array, const JsonValue& original)
{
    return fake::SameValues(array, ArrayOfJson(original));
}

// Which value of the file each item was.
std::vector<const JsonValue*> Writer::MatchItems(const std::vector<const Array*>& items,
                                                 const JsonValue* original)
{
    std::vector<const JsonValue*> matches(items.size(), nullptr);
    if (original == nullptr || original->kind != Kind::Array) return matches;
    const std::vector<JsonValue>& before = original->items;
    const auto same = [&](std::size_t now, std::size_t then) { return Unedited(*items[now], before[then]); };
    const std::vector<std::size_t> indices = AlignItems(items.size(), before.size(), same);
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (indices[i] != noMatch) matches[i] = &before[indices[i]];
    }
    return matches;
}

void Writer::WriteVector(const Array& array, const JsonValue* original)
{
    std::vector<const Array*> items;
    const std::size_t count = fake::CountOf(array);
    for (std::size_t i = 0; i < count; ++i)
        items.push_back(&array.items[i]);
    const std::vector<const JsonValue*> matches = MatchItems(items, original);
    Open('[', ']', original == nullptr || original->kind != Kind::Array || original->multiline);
    for (std::size_t i = 0; i < count; ++i) {
        NextItem();
        Write(array.items[i], matches[i]);
    }
    Close();
}

const JsonValue* ItemOf(const JsonValue* original, std::size_t index)
{
    const bool has = original != nullptr && original->kind == Kind::Array && index < original->items.size();
    return has ? &original->items[index] : nullptr;
}

// One axis of a numeric, character or nested array; `offset` counts items before it in row-major order.
void Writer::WriteAxis(const Array& array, std::size_t axis, std::size_t offset, const JsonValue* original)
{
    if (axis == array.shape.size()) {
        if (array.type == fake::ElementType::Nested)
            Write(array.items[offset], original);
        else
            WriteScalar(array, offset, original);
        return;
    }
    const bool last = axis + 1 == array.shape.size();
    const auto length = static_cast<std::size_t>(array.shape[axis]);
    if (last && fake::IsCharacterType(array.type)) {
        WriteTextValue(fake::Text(fake::TextOfArray(array).substr(offset, length)), original);
        return;
    }
    const std::size_t stride = fake::CountOf(
        fake::Shape(array.shape.begin() + static_cast<std::ptrdiff_t>(axis) + 1, array.shape.end()));
    const bool isNew = original == nullptr || original->kind != Kind::Array;
    Open('[', ']', isNew ? !last || length > maxInlineItems : original->multiline);
    for (std::size_t i = 0; i < length; ++i) {
        NextItem();
        WriteAxis(array, axis + 1, offset + i * stride, ItemOf(original, i));
    }
    Close();
}

void Writer::MatchMembers(std::vector<Member>& members, const JsonValue& original)
{
    std::vector<bool> used(original.items.size());
    const auto take = [&](Member& member, std::size_t index) {
        used[index] = true;
        member.originalName = &original.names[index];
        member.originalValue = &original.items[index];
    };
    // Names that kept their place first: a name may stand in the file twice.
    for (std::size_t i = 0; i < std::min(members.size(), used.size()); ++i) {
        if (original.names[i].text == members[i].name) take(members[i], i);
    }
    for (Member& member : members) {
        for (std::size_t k = 0; k < used.size() && member.originalValue == nullptr; ++k) {
            if (!used[k] && original.names[k].text == member.name) take(member, k);
        }
    }
    if (members.size() != used.size()) return;
    for (std::size_t i = 0; i < used.size(); ++i) {
        if (members[i].originalValue == nullptr && !used[i]) members[i].originalValue = &original.items[i];
    }
}

bool IsObjectLike(const Array& array)
{
    if (array.type != fake::ElementType::Nested || array.shape.size() != 2 || array.shape[1] != 2)
        return false;
    const std::size_t count = fake::CountOf(array);
    for (std::size_t i = 0; i < count; i += 2) {
        if (!IsText(array.items[i])) return false;
    }
    return true;
}

void Writer::WriteObject(const Array& array, const JsonValue* original)
{
    std::vector<Member> members;
    const std::size_t count = fake::CountOf(array);
    for (std::size_t i = 0; i < count; i += 2) {
        members.push_back({fake::TextOfArray(array.items[i]), &array.items[i + 1]});
    }
    const bool isObject = original != nullptr && original->kind == Kind::Object;
    if (isObject) MatchMembers(members, *original);
    Open('{', '}', !isObject || original->multiline);
    for (const Member& member : members) {
        NextItem();
        out_ += member.originalName != nullptr ? member.originalName->raw : QuotedText(member.name);
        out_ += spaced_ ? ": " : ":";
        Write(*member.value, member.originalValue);
    }
    Close();
}

void Writer::Write(const Array& array, const JsonValue* original)
{
    const bool nested = array.type == fake::ElementType::Nested;
    const bool isList =
        original != nullptr && (original->kind == Kind::Array || original->kind == Kind::Object);
    if (IsText(array))
        WriteTextValue(array, original);
    else if (nested && array.shape.empty())
        Write(array.items[0], original);
    else if (IsObjectLike(array))
        WriteObject(array, original);
    else if (nested && array.shape.size() == 1)
        WriteVector(array, original);
    else if (!nested && array.shape == fake::Shape{0} && !isList)
        out_ += "null";
    else
        WriteAxis(array, 0, 0, original);
}

} // namespace

std::string WriteJson(const Array& array, const Document* original, WriteContext& context)
{
    const JsonSource* source = original != nullptr ? original->json.get() : nullptr;
    Writer writer(source, context);
    writer.Write(array, source != nullptr ? &source->root : nullptr);
    std::string text = writer.Take();
    if (source == nullptr || source->finalNewline) text += writer.Newline();
    return source != nullptr && source->byteOrderMark ? "\xEF\xBB\xBF" + text : text;
}

} // namespace vantrel::workbench
