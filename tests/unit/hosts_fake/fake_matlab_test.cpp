// The fake MATLAB's own books: what it must complain about, and how its values turn into the other interpreters'.
#include <gtest/gtest.h>

#include "hosts/fake_matlab.h"

namespace vantrel::fake {
namespace {

template <typename Function> Function Api(const char* name)
{
    return reinterpret_cast<Function>(Matlab::Find(name));
}
using CreateCells = mxArray* (*)(std::size_t, const std::size_t*);
using SetCell = void (*)(mxArray*, std::size_t, mxArray*);
using DestroyArray = void (*)(mxArray*);
using GetData = void* (*)(const mxArray*);

bool ComplainsOf(const MexResult& result, const std::string& words)
{
    for (const std::string& complaint : result.complaints) {
        if (complaint.find(words) != std::string::npos) return true;
    }
    return false;
}

TEST(FakeMatlab, ComplainsOfArraysThatAreLeftOver)
{
    Matlab matlab;
    const auto leak = [](int, mxArray**, int, const mxArray**) { Matlab::Current().Make(TextValue(u"x")); };
    EXPECT_TRUE(ComplainsOf(matlab.Call(leak, 1, {}), "never destroyed"));
}

TEST(FakeMatlab, ComplainsOfArraysDestroyedTwiceOrGivenAway)
{
    Matlab matlab;
    const auto twice = [](int, mxArray**, int, const mxArray** prhs) {
        mxArray* array = Matlab::Current().Make(TextValue(u"x"));
        Api<DestroyArray>("mxDestroyArray")(array);
        Api<DestroyArray>("mxDestroyArray")(array);
        Api<DestroyArray>("mxDestroyArray")(const_cast<mxArray*>(prhs[0]));
    };
    const MexResult result = matlab.Call(twice, 1, {TextValue(u"a")});
    EXPECT_TRUE(ComplainsOf(result, "does not exist"));
    EXPECT_TRUE(ComplainsOf(result, "belongs to somebody else"));

    const auto shared = [](int, mxArray**, int, const mxArray**) {
        constexpr std::size_t lengths[] = {1, 2};
        mxArray* cells = Api<CreateCells>("mxCreateCellArray")(2, lengths);
        mxArray* text = Matlab::Current().Make(TextValue(u"x"));
        Api<SetCell>("mxSetCell")(cells, 0, text);
        Api<SetCell>("mxSetCell")(cells, 1, text);
        Api<SetCell>("mxSetCell")(cells, 2, nullptr);
        Api<DestroyArray>("mxDestroyArray")(cells);
    };
    const MexResult given = matlab.Call(shared, 1, {});
    EXPECT_TRUE(ComplainsOf(given, "gives away"));
    EXPECT_TRUE(ComplainsOf(given, "no such item"));
    EXPECT_EQ(given.complaints.size(), 2u);
}

TEST(FakeMatlab, ComplainsOfItemsWrittenBehindTheEnd)
{
    Matlab matlab;
    const auto overrun = [](int, mxArray**, int, const mxArray**) {
        mxArray* array = Matlab::Current().Make(DoubleValue({1, 1}, {1}));
        static_cast<double*>(Api<GetData>("mxGetData")(array))[1] = 2;
        Matlab::Current().Destroy(array);
    };
    EXPECT_TRUE(ComplainsOf(matlab.Call(overrun, 1, {}), "behind the end"));
}

TEST(FakeMatlab, ComplainsOfAChangedArgument)
{
    Matlab matlab;
    const auto change = [](int, mxArray**, int, const mxArray** prhs) {
        *static_cast<double*>(Api<GetData>("mxGetData")(prhs[0])) = 2;
    };
    EXPECT_TRUE(ComplainsOf(matlab.Call(change, 1, {DoubleValue({1, 1}, {1})}), "an argument was changed"));
}

TEST(FakeMatlab, NumbersComeBackWhateverTheirOrder)
{
    const Array cube = NumericArray({2, 3, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12.5});
    const MatlabValue value = MatlabFromArray(cube);
    EXPECT_EQ(ItemsOf<double>(value), (std::vector<double>{1, 7, 3, 9, 5, 11, 2, 8, 4, 10, 6, 12.5}));
    EXPECT_TRUE(SameValues(ArrayFromMatlab(value), cube));
    const Array nested =
        NestedArray({2, 2}, {Text(u"a"), Number(1), ComplexArray({1}, {{1, 2}}), EmptyVector()});
    EXPECT_TRUE(SameValues(ArrayFromMatlab(MatlabFromArray(nested), &nested), nested));
}

TEST(FakeMatlab, SaysWhatMatlabCannotHold)
{
    std::string reason;
    EXPECT_TRUE(MatlabCanHold(NestedArray({1}, {CharacterArray(ElementType::Char32, {1}, U"x")}), &reason));
    EXPECT_FALSE(MatlabCanHold(NestedArray({1}, {DecimalArray({1}, {"1"})}), &reason));
    EXPECT_EQ(reason, "MATLAB has no decimal numbers");
    EXPECT_FALSE(MatlabCanHold(CharacterArray(ElementType::Char32, {1}, U"\U0001F600"), &reason));
    EXPECT_EQ(reason, "MATLAB has no characters beyond U+FFFF");
}

} // namespace
} // namespace vantrel::fake
