#include "frame/status.h"

#include <algorithm>
#include <limits>

#include "entry/trace.h"
#include "tools/decimal.h"

namespace vantrel {
namespace {

constexpr std::int32_t LabelCount = 6;
constexpr const char16_t* SymbolLabels[LabelCount] = {u"Type:", u" ≡:", u" ×/⍴:", u" ⍴⍴:", u" ⍴:", u" ⊃:"};
constexpr const char16_t* WordLabels[LabelCount] = {u"Type:",  u" Depth:", u" Nelm:",
                                                    u" Rank:", u" Shape:", u" Index:"};

enum LabelIndex : std::int32_t { LabelType, LabelDepth, LabelCountOf, LabelRank, LabelShape, LabelPickIndex };

Text NumberText(std::int64_t number)
{
    Text text;
    AppendDecimal(text, number);
    return text;
}

class PartsWriter {
public:
    PartsWriter(StatusParts& parts, Dialect dialect) noexcept
        : parts_(parts), labels_(dialect == Dialect::Matlab ? WordLabels : SymbolLabels)
    {
    }
    void Add(LabelIndex label, Text value)
    {
        parts_.texts[next_++] = labels_[label];
        parts_.texts[next_++] = std::move(value);
    }
    void AddPlain(const char16_t* text) { parts_.texts[next_++] = text; }
    [[nodiscard]] std::int32_t Next() const noexcept { return static_cast<std::int32_t>(next_); }

private:
    StatusParts& parts_;
    const char16_t* const* labels_;
    std::size_t next_ = 0;
};

// The bar's labels begin with a blank, which keeps them apart from the part before.
std::u16string_view WithoutBlanks(std::u16string_view label) noexcept
{
    return label.substr(std::min(label.find_first_not_of(u' '), label.size()));
}

// Lines of a label and what it stands for.
class LinesWriter {
public:
    void Add(std::u16string_view label, std::u16string_view value)
    {
        if (!text_.empty()) text_ += u"\r\n";
        text_ += label;
        if (!label.empty()) text_ += u' ';
        text_ += value;
    }
    [[nodiscard]] Text Take() { return std::move(text_); }

private:
    Text text_;
};

// Without a shape one part more than there are texts: the bar's last part runs to its end, and a value must not.
std::int32_t CountParts(const ScdrAttributes& attributes) noexcept
{
    const bool hasPlane = attributes.plane != nullptr;
    std::int32_t count = MostStatusParts;
    if (!hasPlane) --count;
    if (attributes.shape == nullptr) count = 11;
    if (attributes.pickIndex == nullptr) count -= hasPlane ? 3 : 2;
    return count;
}

} // namespace

Text ShapeText(const Scdr& node)
{
    Text text;
    for (std::int32_t axis = 0; axis < node.Rank; ++axis) {
        if (axis > 0) text += u' ';
        AppendDecimal(text, node.Shape[axis]);
    }
    return text;
}

Text PlaneText(const Scdr& node, std::int64_t indexOrigin)
{
    const std::int32_t leading = std::max(node.Rank - 2, 0);
    // From the last leading axis to the first, since the last one runs fastest.
    Vector<std::int64_t> indices(static_cast<std::size_t>(leading));
    std::int64_t rest = CurrentPlane(node);
    for (std::int32_t axis = leading; axis-- > 0;) {
        const std::int64_t length = std::max<std::int64_t>(node.Shape[axis], 1);
        indices[static_cast<std::size_t>(axis)] = rest % length;
        rest /= length;
    }
    Text text(1, u'[');
    for (std::int32_t axis = 0; axis < leading; ++axis) {
        if (node.Shape[axis] != 0) AppendDecimal(text, indices[static_cast<std::size_t>(axis)] + indexOrigin);
        text += u';';
    }
    text += u";]";
    return text;
}

StatusParts MakeStatusParts(Dialect dialect, const ScdrAttributes& attributes)
{
    TraceScope trace("status.cpp", "MakeStatusParts");
    StatusParts parts;
    PartsWriter writer(parts, dialect);
    writer.Add(LabelType, TypeName(dialect, attributes.type));
    writer.Add(LabelDepth, NumberText(attributes.depth));
    writer.Add(LabelCountOf, NumberText(attributes.count));
    writer.Add(LabelRank, NumberText(attributes.rank));
    if (attributes.shape != nullptr) writer.Add(LabelShape, attributes.shape);
    parts.pickIndexPart = writer.Next() + 1;
    if (attributes.pickIndex != nullptr) {
        writer.Add(LabelPickIndex, attributes.pickIndex);
        if (attributes.plane != nullptr) writer.AddPlain(attributes.plane);
    }
    parts.count = CountParts(attributes);
    return parts;
}

Text InformationText(Dialect dialect, const ScdrAttributes& attributes, const Scdr& node)
{
    TraceScope trace("status.cpp", "InformationText");
    const StatusParts parts = MakeStatusParts(dialect, attributes);
    LinesWriter writer;
    for (std::size_t part = 0; part < static_cast<std::size_t>(parts.pickIndexPart); part += 2) {
        const std::u16string_view label = WithoutBlanks(parts.texts[part]);
        if (!label.empty()) writer.Add(label, parts.texts[part + 1]);
    }
    if (attributes.plane != nullptr) writer.Add(u"", attributes.plane);
    for (std::int32_t axis = 0; node.Rank >= 3 && axis < node.Rank; ++axis)
        writer.Add(Text(node.extra->AxisNames[axis]) + u":", NumberText(node.Shape[axis]));
    return writer.Take();
}

void StatusEdges(std::span<const std::int32_t> textWidths, const StatusBorders& borders,
                 std::int32_t* edges) noexcept
{
    constexpr std::int64_t Most = std::numeric_limits<std::int32_t>::max();
    std::int64_t edge = 0;
    for (const std::int32_t width : textWidths) {
        edge += std::int64_t{width} + borders.between + 2 * std::int64_t{borders.horizontal};
        *edges++ = static_cast<std::int32_t>(std::min(edge, Most));
    }
}

} // namespace vantrel
