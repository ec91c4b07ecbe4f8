#include "model/rebuild.h"
#include "unit/hosts/matlab_fixture.h"

namespace vantrel::matlab {
namespace {

class MatlabOperation : public MatlabTest {
protected:
    EditContext* context = &bench.context;
    const HostOperations& operations = bench.host.langEnv.Operations;

    std::string Primitive(std::int32_t command, const Scdr& argument)
    {
        const ScdrPtr result(operations.CallPrimitiveReturningScdr(context, command, &argument, nullptr));
        return result != nullptr ? test::DumpTree(*result) : "none";
    }
    void Plot(const Scdr& tree, std::int32_t command)
    {
        bench.matlab.ClearCalls();
        operations.Graphics(context, &tree, command);
    }
};

TEST_F(MatlabOperation, ComputesEveryPrimitiveHere)
{
    const ScdrPtr numbers = test::Integers(context, {2, 2}, {3, 1, 4, 2});
    const ScdrPtr text = test::Characters(context, u"1 -2");
    EXPECT_EQ(Primitive(ActionConvertToCharacter, *numbers), "Character[2 3]'3 14 2'");
    EXPECT_EQ(Primitive(ActionConvertToNumeric, *text), "Integer[2]1 -2");
    EXPECT_EQ(Primitive(ActionRavel, *numbers), "Integer[4]3 1 4 2");
    EXPECT_EQ(Primitive(ActionFirst, *numbers), "Integer[]3");
    EXPECT_EQ(Primitive(ActionDisclose, *numbers), "Integer[2 2]3 1 4 2");
    EXPECT_EQ(Primitive(ActionEnclose, *numbers), "General[](Integer[2 2]3 1 4 2)");
    EXPECT_EQ(Primitive(ActionEnlist, *numbers), "Integer[4]3 1 4 2");
    EXPECT_EQ(Primitive(ActionReverse, *numbers), "Integer[2 2]1 3 2 4");
    EXPECT_EQ(Primitive(ActionReverseFirstAxis, *numbers), "Integer[2 2]4 2 3 1");
    EXPECT_EQ(Primitive(ActionTranspose, *numbers), "Integer[2 2]3 4 1 2");
    EXPECT_EQ(Primitive(ActionSortAscending, *numbers), "Integer[2]1 2");
    EXPECT_EQ(Primitive(ActionSortDescending, *numbers), "Integer[2]2 1");
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_EQ(Primitive(4619, *numbers), "none");
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
    EXPECT_EQ(Primitive(4629, *numbers), "none");
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
}

TEST_F(MatlabOperation, TransposesByAGivenOrder)
{
    const ScdrPtr numbers = test::Integers(context, {2, 2}, {1, 2, 3, 4});
    const ScdrPtr order = test::Integers(context, {2}, {1, 2});
    const ScdrPtr same(
        operations.CallPrimitiveReturningScdr(context, ActionTranspose, numbers.get(), order.get()));
    ASSERT_NE(same, nullptr);
    EXPECT_EQ(test::DumpTree(*same), "Integer[2 2]1 2 3 4");
}

// --- variables ---

TEST_F(MatlabOperation, NamesAreUndefinedOrVariables)
{
    bench.matlab.SetVariable("x", DoubleValue({1, 1}, {1}));
    mxArray* x = bench.matlab.Make(TextValue(u"x"));
    mxArray* y = bench.matlab.Make(TextValue(u"y"));
    EXPECT_EQ(operations.GetNameClass(context, x, nullptr), 2);
    EXPECT_EQ(operations.GetNameClass(context, y, nullptr), 0);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_EQ(operations.GetValue(context, y), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::ValueError);
    auto* value = static_cast<mxArray*>(operations.GetValue(context, x));
    ASSERT_NE(value, nullptr);
    EXPECT_VALUE(bench.matlab.ValueOf(value), DoubleValue({1, 1}, {1}));
    SetErrorCode(context, VTERROR_CODE::NoError);
    operations.Assign(context, y, value);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_VALUE(*bench.matlab.Variable("y"), DoubleValue({1, 1}, {1}));
    operations.FreeObject(context, value);
    operations.FreeObject(context, nullptr);
    bench.matlab.Destroy(x);
    bench.matlab.Destroy(y);
}

TEST_F(MatlabOperation, ANameThatMatlabDoesNotGiveIsOutOfMemory)
{
    mxArray* name = bench.matlab.Make(TextValue(u"x"));
    bench.matlab.FailCreation(1, true);
    EXPECT_EQ(operations.GetNameClass(context, name, nullptr), 0);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::OutOfMemory);
    SetErrorCode(context, VTERROR_CODE::NoError);
    EXPECT_EQ(operations.GetValue(context, name), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::OutOfMemory);
    SetErrorCode(context, VTERROR_CODE::NoError);
    operations.Assign(context, name, name);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::OutOfMemory);
    bench.matlab.FailCreation(0);
    bench.matlab.Destroy(name);
}

// --- the clipboard ---

TEST_F(MatlabOperation, ArraysTravelOverTheSystemsClipboard)
{
    fake::Clipboard clipboard;
    EXPECT_EQ(operations.ClipboardCanPaste(context), 0);
    EXPECT_EQ(operations.ClipboardToScdr(context, nullptr), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    const ScdrPtr tree = bench.Read(StructValue({1, 1}, {"f"}, {TextValue(u"v")}));
    operations.ScdrToClipboard(context, nullptr, tree.get());
    EXPECT_TRUE(clipboard.Has(ClipboardFormat::Ccdr));
    EXPECT_FALSE(clipboard.Has(ClipboardFormat::AplxArray));
    EXPECT_EQ(operations.ClipboardCanPaste(context), 1);
    const ScdrPtr pasted(operations.ClipboardToScdr(context, nullptr));
    ASSERT_NE(pasted, nullptr);
    EXPECT_VALUE(bench.Write(*pasted), StructValue({1, 1}, {"f"}, {TextValue(u"v")}));
    EXPECT_TRUE(clipboard.Complaints().empty());
}

TEST_F(MatlabOperation, TextIsPastedWithItsNumbersConverted)
{
    fake::Clipboard clipboard;
    clipboard.SetText(u"1\ta\r\n2.5\tb\r\n");
    const ScdrPtr pasted(operations.ClipboardToScdr(context, nullptr));
    ASSERT_NE(pasted, nullptr);
    EXPECT_EQ(Children(*pasted)[0]->Type, TypeInteger);
    EXPECT_EQ(Children(*pasted)[1]->Type, TypeCharacter);
    EXPECT_EQ(Children(*pasted)[2]->Type, TypeReal);
}

// --- plots ---

TEST_F(MatlabOperation, EveryPlotCallsItsFunctionAndBringsTheFigureForward)
{
    const std::pair<std::int32_t, const char*> plots[] = {{4901, "area"}, {4902, "bar"},    {4903, "contour"},
                                                          {4904, "hist"}, {4905, "mesh"},   {4906, "pie"},
                                                          {4907, "plot"}, {4908, "surface"}};
    const ScdrPtr tree = test::Integers(context, {2, 2}, {1, 2, 3, 4});
    for (const auto& [command, function] : plots) {
        Plot(*tree, command);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
        const std::vector<fake::MatlabCall>& calls = bench.matlab.Calls();
        ASSERT_EQ(calls.size(), 4u);
        EXPECT_EQ(calls[0].function, "memory");
        EXPECT_EQ(calls[1].function, function);
        EXPECT_EQ(calls[1].outputs, 0);
        ASSERT_EQ(calls[1].inputs.size(), 1u);
        EXPECT_VALUE(calls[1].inputs[0], DoubleValue({2, 2}, {1, 3, 2, 4}));
        EXPECT_EQ(calls[2].function, "gcf");
        EXPECT_EQ(calls[2].outputs, 1);
        EXPECT_EQ(calls[3].function, "figure");
        ASSERT_EQ(calls[3].inputs.size(), 1u);
        EXPECT_VALUE(calls[3].inputs[0], DoubleValue({1, 1}, {1}));
    }
}

TEST_F(MatlabOperation, PlotsEveryKindOfRealNumbersAsDoubles)
{
    const auto plotted = [this](const Scdr& tree) {
        Plot(tree, 4907);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
        return bench.matlab.Calls().size() > 1 ? bench.matlab.Calls()[1].inputs.at(0) : MatlabValue();
    };
    EXPECT_VALUE(plotted(*test::Booleans(context, {3}, {1, 0, 1})), DoubleValue({1, 3}, {1, 0, 1}));
    EXPECT_VALUE(plotted(*test::Reals(context, {2}, {1, 2})), DoubleValue({1, 2}, {1, 2}));
    EXPECT_VALUE(plotted(*test::Integers(context, {2}, {INT64_MIN, 2})),
                 DoubleValue({1, 2}, {-9223372036854775808.0, 2}));
    EXPECT_VALUE(plotted(*test::Complexes(context, {2}, {1, 0, 2.5, 0})), DoubleValue({1, 2}, {1, 2.5}));
    EXPECT_VALUE(plotted(*test::Reals(context, {0}, {})), DoubleValue({1, 0}, {}));
    EXPECT_VALUE(plotted(*test::Reals(context, {}, {3})), DoubleValue({1, 1}, {3}));
}

TEST_F(MatlabOperation, PlotsThePlaneOnShow)
{
    const ScdrPtr cube = test::Integers(context, {2, 2, 2}, {1, 2, 3, 4, 5, 6, 7, 8});
    cube->extra->CurrentPlane = 1;
    Plot(*cube, 4905);
    ASSERT_EQ(bench.matlab.Calls().size(), 4u);
    EXPECT_VALUE(bench.matlab.Calls()[1].inputs[0], DoubleValue({2, 2}, {5, 7, 6, 8}));
}

TEST_F(MatlabOperation, WhatIsNoRealNumbersIsNotPlotted)
{
    constexpr std::int64_t one = 1;
    std::vector<ScdrPtr> trees;
    trees.push_back(test::Characters(context, u"abc"));
    trees.push_back(test::Nested(context, {1}, test::Items(test::Reals(context, {1}, {1}))));
    trees.push_back(test::Complexes(context, {1}, {1, 2}));
    trees.push_back(AllocateScdr(context, nullptr, TypeDecimal, 1, &one, true));
    // A complex number in another plane than the one on show counts, too.
    trees.push_back(test::Complexes(context, {2, 1, 1}, {1, 0, 1, 2}));
    for (const ScdrPtr& tree : trees) {
        Plot(*tree, 4907);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
        EXPECT_EQ(bench.Detail(), u"");
        EXPECT_TRUE(bench.matlab.Calls().empty());
    }
    Plot(*test::Reals(context, {1}, {1}), 4909);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
}

TEST_F(MatlabOperation, APlotsExceptionBecomesTheMessage)
{
    bench.matlab.SetException("pie", u"Values must be positive é");
    Plot(*test::Reals(context, {1}, {-1}), 4906);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.Detail(), u"Values must be positive é");
    EXPECT_EQ(bench.matlab.Calls().size(), 2u);
    SignalHostError(context, bench.Code());
    EXPECT_STREQ(bench.host.identifier, "quillmoor_vantrel:DomainError");
    EXPECT_STREQ(bench.host.errorText, "Values must be positive \xC3\xA9");
    // The next plot starts afresh.
    Plot(*test::Reals(context, {1}, {1}), 4907);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_EQ(bench.Detail(), u"");
}

TEST_F(MatlabOperation, AFigureThatDoesNotComeForwardIsAnError)
{
    bench.matlab.SetException("gcf", u"no figure");
    Plot(*test::Reals(context, {1}, {1}), 4907);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.matlab.Calls().back().function, "gcf");
    bench.matlab.SetException("gcf", u"");
    bench.matlab.SetException("figure", u"no window");
    Plot(*test::Reals(context, {1}, {1}), 4907);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.matlab.Calls().back().function, "figure");
    EXPECT_EQ(bench.Detail(), u"");
}

TEST_F(MatlabOperation, APlotsCallbackMayCallTheEditor)
{
    fake::MexResult inside;
    bench.matlab.onPlot = [&] { inside = bench.matlab.Call(CallEntry, 1, {TextValue(u"inner")}); };
    Plot(*test::Reals(context, {1}, {1}), 4907);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_TRUE(inside.unchanged);
    EXPECT_EQ(bench.matlab.Calls().back().function, "figure");
    EXPECT_EQ(MatlabPlatform::unregistered, 0);
}

TEST_F(MatlabOperation, APlotNeedsMemory)
{
    bench.matlab.options.memoryBytes = 8 + 128 - 1;
    Plot(*test::Reals(context, {1}, {1}), 4907);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::WsFull);
    bench.matlab.options.memoryBytes = 8 + 128;
    Plot(*test::Reals(context, {1}, {1}), 4907);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
}

TEST_F(MatlabOperation, OutOfMemoryDuringAPlotLeavesNothingBehind)
{
    bench.matlab.SetException("plot", u"a message that is long enough to need memory of its own");
    const ScdrPtr cube = test::Integers(context, {2, 3, 3}, std::vector<std::int64_t>(18, 7));
    const int faults = test::SweepAllocationFaults([&] {
        ClearHostMessage(bench.host);
        operations.Graphics(context, cube.get(), 4907);
        EXPECT_TRUE(bench.Code() == VTERROR_CODE::DomainError || bench.Code() == VTERROR_CODE::OutOfMemory);
        EXPECT_EQ(bench.matlab.LiveArrays(), 0u);
        ClearHostMessage(bench.host);
    });
    EXPECT_GT(faults, 4);
}

} // namespace
} // namespace vantrel::matlab
