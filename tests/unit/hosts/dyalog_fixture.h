#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/array.h"
#include "hosts/dyalog_host.h"
#include "hosts/fake_dyalog.h"
#include "platform_double.h"

namespace vantrel {

inline fake::InterpreterOptions EditionOptions(bool unicode)
{
    fake::InterpreterOptions options;
    options.unicode = unicode;
    return options;
}

// One interpreter and an adapter that has been introduced to it, as inside an edit.
class DyalogBench {
public:
    explicit DyalogBench(bool unicode) : interpreter(EditionOptions(unicode)), host(TheDyalogHost())
    {
        PlatformDouble::Reset();
        host.platform = &PlatformDouble::Table;
        SetInterpreterTable(host, static_cast<const std::int64_t*>(interpreter.Table()));
        host.unicode = unicode;
        host.resultSlot = nullptr;
        host.resultStored = false;
        host.libraryPathKnown = false;
        PrepareErrorBlock(host);
        BuildAtomicVector(host);
        CreateLangEnv(host, nullptr);
        context.langEnv = &host.langEnv;
        context.host = static_cast<Host*>(&host);
    }

    ~DyalogBench()
    {
        ClearDyalogMessage(host);
        EXPECT_EQ(LiveAllocations(), liveBefore_);
    }

    [[nodiscard]] VTERROR_CODE Code() const { return host.langEnv.ErrorCode; }
    [[nodiscard]] std::u16string Detail() const
    {
        return host.langEnv.ErrorDetail != nullptr ? std::u16string(host.langEnv.ErrorDetail)
                                                   : std::u16string();
    }

    // The tree of an array that the interpreter holds meanwhile.
    ScdrPtr Read(const fake::Array& array)
    {
        fake::Localp* localp = interpreter.MakeLocalp(array);
        ScdrPtr tree = ReadLocalp(localp);
        interpreter.FreeLocalp(localp);
        return tree;
    }
    ScdrPtr ReadLocalp(fake::Localp* localp) { return ScdrPtr(ObjectToScdr(&context, localp)); }

    // What the interpreter then holds; an empty message on failure is not a value, so look at `Code`.
    fake::Array Write(const Scdr& tree)
    {
        auto* localp = static_cast<fake::Localp*>(ScdrToObject(&context, &tree));
        if (localp == nullptr) return {};
        fake::Array array = interpreter.ValueOf(localp);
        FreeObject(&context, localp);
        return array;
    }
    fake::Array RoundTrip(const fake::Array& array)
    {
        const ScdrPtr tree = Read(array);
        EXPECT_NE(tree, nullptr);
        return tree != nullptr ? Write(*tree) : fake::Array{};
    }

    void ExpectBalancedBooks()
    {
        for (const std::string& complaint : interpreter.CheckBooks())
            ADD_FAILURE() << complaint;
        EXPECT_EQ(interpreter.TheBooks().LiveBlocks(), 0u);
        EXPECT_EQ(interpreter.TheBooks().LiveLocalps(), 0u);
    }

private:
    std::int64_t liveBefore_ = LiveAllocations();

public:
    fake::Interpreter interpreter;
    DyalogHost& host;
    EditContext context;
};

class DyalogTest : public testing::TestWithParam<bool> {
protected:
    DyalogTest() : bench(GetParam()) {}
    void TearDown() override { bench.ExpectBalancedBooks(); }
    [[nodiscard]] static bool Unicode() { return GetParam(); }
    [[nodiscard]] static int CharacterType()
    {
        return Unicode() ? fake::ElementType::Char8 : fake::ElementType::AtomicCharacter;
    }

    DyalogBench bench;
};

inline std::string EditionName(const testing::TestParamInfo<bool>& info)
{
    return info.param ? "Unicode" : "Classic";
}
#define FOR_BOTH_EDITIONS(Suite) INSTANTIATE_TEST_SUITE_P(Editions, Suite, testing::Bool(), EditionName)

// A character array as a Classic edition stores it.
inline fake::Array AtomicText(fake::Shape shape, std::u32string_view text)
{
    fake::Array array = fake::CharacterArray(fake::ElementType::Char32, std::move(shape), text);
    char32_t missing = 0;
    EXPECT_TRUE(fake::ToAtomicCharacters(array, &missing));
    return array;
}

template <typename T> std::vector<T> ItemsOf(const Scdr& tree)
{
    const auto* items = static_cast<const T*>(tree.data);
    const auto count = static_cast<std::size_t>(tree.ElementCount) * (tree.Type == TypeComplex ? 2 : 1);
    return {items, items + count};
}
inline std::u16string TextIn(const Scdr& tree)
{
    return {static_cast<const char16_t*>(tree.data), static_cast<std::size_t>(tree.ElementCount)};
}

using Axes = std::initializer_list<std::int64_t>;

inline ScdrPtr MakeNode(DyalogBench& bench, std::uint32_t type, Axes shape)
{
    return AllocateScdr(&bench.context, nullptr, type, static_cast<std::int32_t>(shape.size()), shape.begin(),
                        true);
}
template <typename T> ScdrPtr MakeVector(DyalogBench& bench, std::uint32_t type, const std::vector<T>& items)
{
    const std::size_t itemWidth = type == TypeComplex ? 2 : 1;
    ScdrPtr node = MakeNode(bench, type, {static_cast<std::int64_t>(items.size() / itemWidth)});
    std::copy(items.begin(), items.end(), static_cast<T*>(WritableData(*node)));
    return node;
}
inline ScdrPtr MakeText(DyalogBench& bench, std::u16string_view text)
{
    return MakeVector<char16_t>(bench, TypeCharacter, {text.begin(), text.end()});
}

} // namespace vantrel
