// Arrays, and primitives run on them with the answer as text.
#pragma once

#include "builtin/structural.h"
#include "unit/builtin/arrays.h"

namespace vantrel::test {

class Structural : public Arrays {
protected:
    // "error n" for a refusal. The result is sound and the argument as it was.
    template <typename Primitive, typename... More>
    std::string Run(Primitive primitive, const Scdr& argument, const More&... more)
    {
        const std::string before = DumpTree(argument);
        const ScdrPtr result = primitive(&context, argument, more...);
        EXPECT_EQ(DumpTree(argument), before);
        if (result == nullptr) return "error " + std::to_string(static_cast<std::uint32_t>(TakeError()));
        EXPECT_EQ(TakeError(), VTERROR_CODE::NoError);
        EXPECT_TRUE(IsSoundTree(*result));
        EXPECT_EQ(result->parent, nullptr);
        return DumpTree(*result);
    }
    ScdrPtr Integer(std::int64_t value) { return Integers({}, {value}); }
    ScdrPtr Decimals(const Shape& shape)
    {
        ScdrPtr node = Make(TypeDecimal, shape);
        for (std::int64_t i = 0; i < 16 * node->ElementCount; ++i)
            static_cast<std::uint8_t*>(node->data)[i] = static_cast<std::uint8_t>(i / 16 + 1);
        return node;
    }
    // A node whose type nobody knows, for as long as this lives.
    struct Unknown {
        ScdrPtr node;
        explicit Unknown(ScdrPtr made, std::uint32_t type = 26) : node(std::move(made)) { node->Type = type; }
        ~Unknown() { node->Type = TypeInteger; }
        Unknown(const Unknown&) = delete;
        Unknown& operator=(const Unknown&) = delete;
    };
    std::u16string Message()
    {
        const char16_t* detail = environment.ErrorDetail;
        environment.ErrorDetail = nullptr;
        return detail != nullptr ? detail : u"";
    }
    void NameAxes(Scdr& node, const std::vector<std::u16string>& names)
    {
        for (std::size_t axis = 0; axis < names.size(); ++axis) {
            auto name = AllocateArray<char16_t>(std::ssize(names[axis]) + 1);
            std::copy_n(names[axis].c_str(), names[axis].size() + 1, name.get());
            FreeBytes(node.extra->AxisNames[axis]);
            node.extra->AxisNames[axis] = name.release();
        }
    }
    static std::vector<std::u16string> AxisNamesOf(const Scdr& node)
    {
        return {node.extra->AxisNames, node.extra->AxisNames + node.Rank};
    }
};

} // namespace vantrel::test
