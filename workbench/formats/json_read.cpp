#include <cmath>
#include <cstddef>
#include <iterator>

#include <nlohmann/json.hpp>

#include "workbench/formats/json.h"
#include "workbench/formats/numbers.h"
#include "workbench/formats/utf.h"

namespace vantrel::workbench {
namespace {

using Kind = JsonValue::Kind;

constexpr std::size_t maxDepth = 500;
constexpr std::size_t maxRank = 15;

// Where the reader stands: the library hands over values without their place, and without the text they had.
struct Position {
    const char* begin = nullptr;
    const char* at = nullptr;
    const char* end = nullptr;
    std::size_t line = 1;
};

class TrackingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    TrackingIterator(Position* position, const char* at) : position_(position), at_(at) {}
    reference operator*() const { return *at_; }
    TrackingIterator& operator++()
    {
        if (*at_ == '\n') ++position_->line;
        position_->at = ++at_;
        return *this;
    }
    TrackingIterator operator++(int)
    {
        TrackingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const TrackingIterator& other) const { return at_ == other.at_; }
    bool operator!=(const TrackingIterator& other) const { return at_ != other.at_; }

private:
    Position* position_;
    const char* at_;
};

// Builds the tree from the library's events; keeps the order and the repetition of names, and every text.
class TreeBuilder {
public:
    TreeBuilder(Position& position, JsonValue& root)
        : position_(position), root_(root), tokenEnd_(position.begin)
    {
    }

    bool null() { return Add({}); }
    bool boolean(bool value)
    {
        JsonValue added;
        added.kind = Kind::Boolean;
        added.boolean = value;
        return Add(std::move(added));
    }
    bool number_integer(std::int64_t) { return AddNumber(); }
    bool number_unsigned(std::uint64_t) { return AddNumber(); }
    bool number_float(double, const std::string&) { return AddNumber(); }
    bool string(std::string& value) { return Add(StringValue(value)); }
    bool binary(nlohmann::json::binary_t&) { return false; }
    bool start_array(std::size_t) { return Open(Kind::Array); }
    bool end_array() { return Close(); }
    bool start_object(std::size_t) { return Open(Kind::Object); }
    bool end_object() { return Close(); }
    bool key(std::string& value)
    {
        open_.back().value->names.push_back(StringValue(value));
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception& error)
    {
        std::string reason = error.what();
        const std::size_t prefix = reason.find("] ");
        if (prefix != std::string::npos) reason.erase(0, prefix + 2);
        const bool hasLine = reason.find("at line ") != std::string::npos;
        throw FormatError(hasLine ? reason : "line " + std::to_string(position_.line) + ": " + reason);
    }

    std::size_t inexactNumbers = 0;
    std::string firstInexact;

private:
    struct OpenValue {
        JsonValue* value;
        std::size_t line;
    };

    bool Add(JsonValue value)
    {
        tokenEnd_ = position_.at;
        Place(std::move(value));
        return true;
    }

    JsonValue* Place(JsonValue value)
    {
        if (open_.empty()) {
            root_ = std::move(value);
            return &root_;
        }
        open_.back().value->items.push_back(std::move(value));
        return &open_.back().value->items.back();
    }

    bool AddNumber()
    {
        // The library may have read one character further to see where the number ends.
        const auto isPart = [](char c) {
            return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
        };
        const char* end = position_.at;
        while (end > position_.begin && !isPart(end[-1]))
            --end;
        const char* begin = end;
        while (begin > position_.begin && isPart(begin[-1]))
            --begin;
        JsonValue added;
        added.kind = Kind::Number;
        added.raw.assign(begin, end);
        if (!ParsePlainNumber(added.raw, added.number)) {
            throw FormatError("line " + std::to_string(position_.line) + ": the number " + added.raw +
                              " is too big");
        }
        if (!HoldsAllDigits(added.raw, added.number) && inexactNumbers++ == 0) {
            firstInexact = added.raw + " in line " + std::to_string(position_.line);
        }
        return Add(std::move(added));
    }

    JsonValue StringValue(const std::string& value)
    {
        const char* begin = tokenEnd_;
        while (*begin != '"')
            ++begin;
        JsonValue made;
        made.kind = Kind::String;
        made.raw.assign(begin, position_.at);
        made.text = Utf16FromUtf8(value);
        tokenEnd_ = position_.at;
        return made;
    }

    bool Open(Kind kind)
    {
        if (open_.size() == maxDepth) {
            throw FormatError("line " + std::to_string(position_.line) + ": nested deeper than " +
                              std::to_string(maxDepth) + " levels");
        }
        tokenEnd_ = position_.at;
        JsonValue made;
        made.kind = kind;
        open_.push_back({Place(std::move(made)), position_.line});
        return true;
    }

    bool Close()
    {
        tokenEnd_ = position_.at;
        open_.back().value->multiline = open_.back().line != position_.line;
        open_.pop_back();
        return true;
    }

    Position& position_;
    JsonValue& root_;
    const char* tokenEnd_;
    // The innermost value's items do not grow while it is a parent of what is open, so the pointers stay good.
    std::vector<OpenValue> open_;
};

// --- rectangular arrays ---

// The shape of an array of arrays whose leaves are all of one kind; false for anything else.
bool FindShape(const JsonValue& value, Kind leaf, std::size_t depth, fake::Shape& shape, bool first)
{
    if (value.kind == leaf) return depth == shape.size();
    if (value.kind != Kind::Array || value.items.empty()) return false;
    const auto length = static_cast<std::int64_t>(value.items.size());
    if (first && depth == shape.size()) shape.push_back(length);
    if (depth >= shape.size() || shape[depth] != length || depth >= maxRank) return false;
    for (std::size_t i = 0; i < value.items.size(); ++i) {
        if (!FindShape(value.items[i], leaf, depth + 1, shape, first && i == 0)) return false;
    }
    return true;
}

void CollectLeaves(const JsonValue& value, std::vector<const JsonValue*>& leaves)
{
    if (value.kind != Kind::Array) {
        leaves.push_back(&value);
        return;
    }
    for (const JsonValue& item : value.items)
        CollectLeaves(item, leaves);
}

fake::Array RectangularArray(const JsonValue& value, Kind leaf, const fake::Shape& shape)
{
    std::vector<const JsonValue*> leaves;
    CollectLeaves(value, leaves);
    if (leaf == Kind::Boolean) {
        std::vector<int> bits;
        for (const JsonValue* item : leaves)
            bits.push_back(item->boolean);
        return fake::BooleanArray(shape, bits);
    }
    std::vector<double> numbers;
    for (const JsonValue* item : leaves)
        numbers.push_back(item->number);
    return fake::NumericArray(shape, numbers);
}

fake::Array ArrayOfList(const JsonValue& value)
{
    if (value.items.empty()) return fake::EmptyNestedArray({0}, fake::EmptyVector());
    for (const Kind leaf : {Kind::Number, Kind::Boolean}) {
        fake::Shape shape;
        if (FindShape(value, leaf, 0, shape, true)) return RectangularArray(value, leaf, shape);
    }
    std::vector<fake::Array> items;
    for (const JsonValue& item : value.items)
        items.push_back(ArrayOfJson(item));
    const auto count = static_cast<std::int64_t>(items.size());
    return fake::NestedArray({count}, std::move(items));
}

fake::Array ArrayOfObject(const JsonValue& value)
{
    if (value.items.empty()) return fake::EmptyNestedArray({0, 2}, fake::Text(u""));
    std::vector<fake::Array> items;
    for (std::size_t i = 0; i < value.items.size(); ++i) {
        items.push_back(fake::Text(value.names[i].text));
        items.push_back(ArrayOfJson(value.items[i]));
    }
    const auto rows = static_cast<std::int64_t>(value.items.size());
    return fake::NestedArray({rows, 2}, std::move(items));
}

// --- the file's layout ---

std::string FindIndent(const std::string& bytes)
{
    const std::size_t open = bytes.find_first_of("[{");
    if (open == std::string::npos) return {};
    const std::size_t newline = bytes.find('\n', open);
    if (newline == std::string::npos) return {};
    const std::size_t content = bytes.find_first_not_of(" \t", newline + 1);
    return content == std::string::npos ? std::string() : bytes.substr(newline + 1, content - newline - 1);
}

} // namespace

fake::Array ArrayOfJson(const JsonValue& value)
{
    switch (value.kind) {
    case Kind::Null: return fake::EmptyVector();
    case Kind::Boolean: return fake::BooleanArray({}, {value.boolean});
    case Kind::Number: return fake::Number(value.number);
    case Kind::String: return fake::Text(value.text);
    case Kind::Array: return ArrayOfList(value);
    case Kind::Object: return ArrayOfObject(value);
    }
    return fake::EmptyVector();
}

Document ReadJson(std::string bytes)
{
    Document document;
    document.format = Format::Json;
    document.bytes = std::move(bytes);
    const std::string& text = document.bytes;
    auto source = std::make_shared<JsonSource>();
    Position position{text.data(), text.data(), text.data() + text.size()};
    TreeBuilder builder(position, source->root);
    nlohmann::json::sax_parse(TrackingIterator(&position, position.begin),
                              TrackingIterator(&position, position.end), &builder);
    source->byteOrderMark = text.starts_with("\xEF\xBB\xBF");
    source->finalNewline = text.ends_with('\n');
    source->crlf = text.find("\r\n") != std::string::npos;
    source->indent = FindIndent(text);
    source->spaced = text.find("\": ") != std::string::npos || text.find("\":") == std::string::npos;
    if (builder.inexactNumbers > 0) {
        document.notes.push_back(std::to_string(builder.inexactNumbers) +
                                 (builder.inexactNumbers == 1 ? " number has" : " numbers have") +
                                 " more digits than the array can hold (first: " + builder.firstInexact +
                                 "); what is not edited is written back with every digit");
    }
    document.array = ArrayOfJson(source->root);
    document.json = std::move(source);
    return document;
}

} // namespace vantrel::workbench
