#include "dyalog_fixture.h"

#include "hosts/fake_primitives.h"
#include "model/rebuild.h"

namespace vantrel {
namespace {

using namespace fake::ElementType;

class DyalogOperations : public DyalogTest {
protected:
    ScdrPtr Call(std::int32_t command, const Scdr& argument)
    {
        return ScdrPtr(CallPrimitiveReturningScdr(&bench.context, command, &argument, nullptr));
    }
    [[nodiscard]] std::int64_t InterpreterCalls() const
    {
        return bench.interpreter.Calls(fake::Service::CallPrimitive);
    }
};

FOR_BOTH_EDITIONS(DyalogOperations);

TEST_P(DyalogOperations, ReadsTheTwoSystemVariables)
{
    bench.interpreter.SetIndexOrigin(0);
    bench.interpreter.SetPrintPrecision(17);
    EXPECT_EQ(GetIntSysVar(&bench.context, u"⎕IO", 5), 0);
    EXPECT_EQ(GetIntSysVar(&bench.context, u"⎕PP", 5), 17);
    EXPECT_EQ(GetIntSysVar(&bench.context, u"⎕AI", 1001), 1001);
    EXPECT_EQ(GetIntSysVar(&bench.context, u"⎕I", 3), 3);
    EXPECT_EQ(GetIntSysVar(&bench.context, u"⎕IOX", 3), 3);
}

TEST_P(DyalogOperations, PassesTheInterruptOn)
{
    std::uint8_t& capabilities = bench.host.langEnv.Capabilities;
    capabilities = 0x96;
    EXPECT_EQ(CheckForInterrupt(&bench.context), 0);
    EXPECT_EQ(capabilities, 0x96);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    bench.interpreter.SetInterrupt(true);
    EXPECT_EQ(CheckForInterrupt(&bench.context), 1);
    EXPECT_EQ(capabilities, 0x97);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::Interrupt);
}

TEST_P(DyalogOperations, AsksForTheHelpFolderOnce)
{
    bench.interpreter.SetSetting(u"DyalogHelpDir", u"C:\\Aide\\é");
    EXPECT_EQ(std::u16string(GetLibraryPath(&bench.context)), u"C:\\Aide\\é");
    bench.interpreter.SetSetting(u"DyalogHelpDir", u"elsewhere");
    EXPECT_EQ(std::u16string(GetLibraryPath(&bench.context)), u"C:\\Aide\\é");
    EXPECT_EQ(bench.interpreter.Calls(fake::Service::ReadSetting), 1);
}

TEST_P(DyalogOperations, TakesAHelpFolderThatFillsTheBuffer)
{
    const std::u16string longest(260, u'x');
    bench.interpreter.SetSetting(u"DyalogHelpDir", longest);
    EXPECT_EQ(std::u16string(GetLibraryPath(&bench.context)), longest);
    bench.host.libraryPathKnown = false;
    std::fill(std::begin(bench.host.libraryPath), std::end(bench.host.libraryPath), u'\0');
    bench.interpreter.SetSetting(u"DyalogHelpDir", u"");
    EXPECT_EQ(std::u16string(GetLibraryPath(&bench.context)), u"");
}

TEST_P(DyalogOperations, DoesNotKnowVariables)
{
    const HostOperations& operations = bench.host.langEnv.Operations;
    const auto expectNonce = [&](bool empty) {
        EXPECT_TRUE(empty);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::NonceError);
        bench.host.langEnv.ErrorCode = VTERROR_CODE::NoError;
    };
    operations.Assign(&bench.context, nullptr, nullptr);
    expectNonce(true);
    expectNonce(operations.GetCoupling(&bench.context, nullptr) == 0);
    expectNonce(operations.GetNameClass(&bench.context, nullptr, nullptr) == 0);
    expectNonce(operations.GetValue(&bench.context, nullptr) == nullptr);
    EXPECT_EQ(operations.Graphics, nullptr);
}

TEST_P(DyalogOperations, IgnoresTheFreeingOfNothing)
{
    FreeObject(&bench.context, nullptr);
    EXPECT_EQ(bench.interpreter.Calls(fake::Service::UnregisterLocalp), 0);
}

TEST_P(DyalogOperations, KeepsTheLastResultWhereThereIsNoSlot)
{
    const ScdrPtr first = MakeText(bench, u"first");
    const ScdrPtr second = MakeText(bench, u"second");
    EXPECT_EQ(SetResult(&bench.context, first.get()), 0);
    EXPECT_EQ(SetResult(&bench.context, second.get()), 0);
    auto* pending = static_cast<fake::Localp*>(bench.context.result);
    ASSERT_NE(pending, nullptr);
    EXPECT_EQ(fake::TextOfArray(bench.interpreter.ValueOf(pending)), u"second");
    EXPECT_EQ(bench.interpreter.TheBooks().LiveBlocks(), 1u);
    FreeObject(&bench.context, pending);
}

TEST_P(DyalogOperations, ReplacesTheArrayInTheSlot)
{
    DyalogBlock* slot = nullptr;
    auto** root = reinterpret_cast<fake::Block**>(&slot);
    bench.interpreter.TheBooks().AddRoot(root);
    bench.host.resultSlot = &slot;
    EXPECT_EQ(SetResult(&bench.context, MakeText(bench, u"first").get()), 0);
    EXPECT_EQ(SetResult(&bench.context, MakeText(bench, u"second").get()), 0);
    ASSERT_NE(slot, nullptr);
    EXPECT_EQ(slot->referenceCount, 1);
    EXPECT_EQ(bench.context.result, nullptr);
    EXPECT_EQ(fake::TextOfArray(bench.interpreter.TheBooks().Value(*root)), u"second");
    bench.interpreter.CheckBooks();
    ServiceOf(bench.host, dyalog::ReleaseArray)(&slot);
    bench.interpreter.TheBooks().RemoveRoot(root);
}

TEST_P(DyalogOperations, LeavesTheSlotAloneWhenAResultCannotBeBuilt)
{
    DyalogBlock* slot = nullptr;
    bench.host.resultSlot = &slot;
    bench.interpreter.FailAllocation(1, fake::ErrorNumber::WsFull);
    EXPECT_EQ(SetResult(&bench.context, MakeText(bench, u"text").get()), 1);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::WsFull);
    EXPECT_EQ(slot, nullptr);
    EXPECT_FALSE(bench.host.resultStored);
}

TEST_P(DyalogOperations, RefusesAnUnknownPrimitive)
{
    const ScdrPtr text = MakeText(bench, u"1");
    for (const std::int32_t command : {0, 4606, 4619, 4629}) {
        bench.host.langEnv.ErrorCode = VTERROR_CODE::ValueError;
        EXPECT_EQ(Call(command, *text), nullptr);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
    }
    EXPECT_EQ(CallPrimitiveReturningScdr(&bench.context, ActionRavel, nullptr, nullptr), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
}

TEST_P(DyalogOperations, ComputesStructureHere)
{
    struct Row {
        std::int32_t command;
        std::vector<std::int64_t> items;
    };
    const Row rows[] = {{ActionRavel, {40, 30, 20, 10}},
                        {ActionReverse, {30, 40, 10, 20}},
                        {ActionReverseFirstAxis, {20, 10, 40, 30}},
                        {ActionTranspose, {40, 20, 30, 10}},
                        {ActionEnlist, {40, 30, 20, 10}},
                        {ActionDisclose, {40, 30, 20, 10}},
                        {ActionFirst, {40}},
                        {ActionSortAscending, {2, 1}},
                        {ActionSortDescending, {1, 2}}};
    const ScdrPtr argument = bench.Read(fake::NumericArray({2, 2}, {40, 30, 20, 10}));
    bench.context.indexOrigin = 1;
    for (const Row& row : rows) {
        const ScdrPtr result = Call(row.command, *argument);
        ASSERT_NE(result, nullptr) << row.command;
        EXPECT_EQ(ItemsOf<std::int64_t>(*result), row.items) << row.command;
    }
    const ScdrPtr enclosed = Call(ActionEnclose, *argument);
    ASSERT_NE(enclosed, nullptr);
    EXPECT_EQ(enclosed->Type, TypeNested);
    EXPECT_EQ(InterpreterCalls(), 0);
}

TEST_P(DyalogOperations, TransposesByAnOrderOfAxes)
{
    const ScdrPtr argument = bench.Read(fake::NumericArray({2, 2}, {40, 30, 20, 10}));
    const ScdrPtr order = MakeVector<std::int64_t>(bench, TypeInteger, {1, 2});
    bench.context.indexOrigin = 1;
    const ScdrPtr same(
        CallPrimitiveReturningScdr(&bench.context, ActionTranspose, argument.get(), order.get()));
    ASSERT_NE(same, nullptr);
    EXPECT_EQ(ItemsOf<std::int64_t>(*same), (std::vector<std::int64_t>{40, 30, 20, 10}));
    const ScdrPtr diagonal = MakeVector<std::int64_t>(bench, TypeInteger, {1, 1});
    EXPECT_EQ(CallPrimitiveReturningScdr(&bench.context, ActionTranspose, argument.get(), diagonal.get()),
              nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    EXPECT_EQ(InterpreterCalls(), 0);
}

TEST_P(DyalogOperations, AsksTheInterpreterForWhatItDeclines)
{
    const ScdrPtr mixed = bench.Read(
        fake::NestedArray({2}, {fake::DecimalArray({1}, {"1.5"}), fake::NumericArray({2}, {1, 2})}));
    bench.interpreter.SetTrace(true);
    bench.interpreter.ForceStatus(fake::Service::CallPrimitive, 5);
    EXPECT_EQ(Call(ActionDisclose, *mixed), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::LengthError);
    const std::vector<std::string>& trace = bench.interpreter.Trace();
    EXPECT_NE(std::find(trace.begin(), trace.end(), "CallPrimitive 51"), trace.end());
}

TEST_P(DyalogOperations, ForgetsAnEarlierErrorFirst)
{
    CheckDyalogCallbackResult(&bench.context, 4);
    const ScdrPtr argument = bench.Read(fake::Number(3));
    EXPECT_NE(Call(ActionRavel, *argument), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_EQ(bench.Detail(), u"");
}

TEST_P(DyalogOperations, FormatsSimpleArraysHere)
{
    const ScdrPtr numbers = bench.Read(fake::NumericArray({3}, {1, 22, 3}));
    const ScdrPtr text = Call(ActionConvertToCharacter, *numbers);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(TextIn(*text), u"1 22 3");
    EXPECT_EQ(InterpreterCalls(), 0);
}

TEST_P(DyalogOperations, LeavesNestedAndDecimalArraysToTheInterpretersFormat)
{
    const ScdrPtr nested = bench.Read(fake::NestedArray({1}, {fake::NumericArray({2}, {1, 2})}));
    bench.interpreter.ForceStatus(fake::Service::CallPrimitive, 16);
    EXPECT_EQ(Call(ActionConvertToCharacter, *nested), nullptr);
    const ScdrPtr decimal = bench.Read(fake::DecimalArray({1}, {"1.5"}));
    EXPECT_EQ(Call(ActionConvertToCharacter, *decimal), nullptr);
    EXPECT_EQ(InterpreterCalls(), 2);
}

TEST_P(DyalogOperations, DisclosesHere)
{
    const ScdrPtr rows =
        bench.Read(fake::NestedArray({2}, {fake::NumericArray({2}, {1, 2}), fake::NumericArray({1}, {3})}));
    const ScdrPtr matrix = Call(ActionDisclose, *rows);
    ASSERT_NE(matrix, nullptr);
    EXPECT_EQ(matrix->Rank, 2);
    EXPECT_EQ(InterpreterCalls(), 0);
}

TEST_P(DyalogOperations, ConvertsTextToNumbers)
{
    const ScdrPtr numbers = Call(ActionConvertToNumeric, *MakeText(bench, u"1 2.5 ¯3"));
    ASSERT_NE(numbers, nullptr);
    EXPECT_EQ(ItemsOf<double>(*numbers), (std::vector<double>{1, 2.5, -3}));
    EXPECT_EQ(numbers->parent, nullptr);
    EXPECT_EQ(numbers->SimplestType, static_cast<std::int32_t>(TypeReal));
}

TEST_P(DyalogOperations, RefusesTextThatIsPartlyNoNumber)
{
    EXPECT_EQ(Call(ActionConvertToNumeric, *MakeText(bench, u"1 x 3")), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.Detail(), bench.interpreter.Message(11));
}

// What the interpreter's convert-to-numeric answers, one after another.
fake::Array g_answer;
fake::Interpreter* g_answering = nullptr;
std::int64_t AnswerFixed(std::int64_t, std::int64_t, std::int64_t, fake::Localp*, std::int64_t,
                         fake::Localp* result, std::uint8_t)
{
    g_answering->TheBooks().Hold(result, g_answering->TheBooks().NewBlocks(g_answer));
    return 0;
}

class DyalogValidity : public DyalogOperations {
protected:
    DyalogValidity()
    {
        std::copy_n(bench.host.table, 6, table_);
        std::copy_n(reinterpret_cast<const std::int64_t*>(table_[3]), 9, language_);
        language_[1] = reinterpret_cast<std::int64_t>(&AnswerFixed);
        table_[3] = reinterpret_cast<std::int64_t>(language_);
        bench.host.table = table_;
        g_answering = &bench.interpreter;
    }
    ScdrPtr ConvertWith(const fake::Array& validity)
    {
        return ConvertAnswering(fake::NestedArray({2}, {validity, fake::NumericArray({2}, {7, 8})}));
    }
    ScdrPtr ConvertAnswering(const fake::Array& answer)
    {
        g_answer = answer;
        return Call(ActionConvertToNumeric, *MakeText(bench, u"7 8"));
    }
    void ExpectValid(const fake::Array& validity)
    {
        const ScdrPtr numbers = ConvertWith(validity);
        ASSERT_NE(numbers, nullptr) << fake::Dump(validity);
        EXPECT_EQ(ItemsOf<std::int64_t>(*numbers), (std::vector<std::int64_t>{7, 8}));
        EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    }
    void ExpectInvalid(const fake::Array& validity)
    {
        EXPECT_EQ(ConvertWith(validity), nullptr) << fake::Dump(validity);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
        EXPECT_EQ(bench.Detail(), bench.interpreter.Message(11));
    }

private:
    std::int64_t table_[6];
    std::int64_t language_[9];
};

FOR_BOTH_EDITIONS(DyalogValidity);

TEST_P(DyalogValidity, TakesAnEmptyVector)
{
    ExpectValid(fake::BooleanArray({0}, {}));
    ExpectValid(fake::CharacterArray(CharacterType(), {0}, U""));
}

TEST_P(DyalogValidity, TakesNumbersWithoutAZero)
{
    ExpectValid(fake::BooleanArray({2}, {1, 1}));
    ExpectValid(fake::BooleanArray({}, {1}));
    ExpectValid(fake::IntegerArray(Int8, {2}, {1, -2}));
    ExpectValid(fake::FloatArray({2}, {0.5, 1}));
}

TEST_P(DyalogValidity, RefusesAZeroAnywhere)
{
    std::vector<int> bits(20, 1);
    bits.back() = 0;
    ExpectInvalid(fake::BooleanArray({20}, bits));
    ExpectInvalid(fake::IntegerArray(Int16, {3}, {1, 0, 1}));
    ExpectInvalid(fake::FloatArray({2}, {1, 0}));
}

TEST_P(DyalogValidity, RefusesCharacters)
{
    ExpectInvalid(fake::CharacterArray(CharacterType(), {2}, U"11"));
}

TEST_P(DyalogValidity, RefusesAnAnswerOfAnotherForm)
{
    const fake::Array one = fake::Number(1);
    for (const fake::Array& answer :
         {one, fake::NumericArray({2}, {1, 2}), fake::NestedArray({3}, {one, one, one}),
          fake::EmptyNestedArray({0}, one)}) {
        EXPECT_EQ(ConvertAnswering(answer), nullptr);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
    }
}

TEST_P(DyalogOperations, SurvivesEveryAllocationFailureOfAPrimitive)
{
    const ScdrPtr text = MakeText(bench, u"1 2 3");
    const std::int64_t live = LiveAllocations();
    for (std::int64_t nth = 1;; ++nth) {
        ArmAllocationFault(nth, false);
        ScdrPtr numbers = Call(ActionConvertToNumeric, *text);
        const std::int64_t fired = DisarmAllocationFault();
        EXPECT_EQ(numbers == nullptr, fired > 0) << nth;
        EXPECT_EQ(bench.Code(), fired > 0 ? VTERROR_CODE::OutOfMemory : VTERROR_CODE::NoError);
        numbers.reset();
        EXPECT_EQ(LiveAllocations(), live);
        bench.ExpectBalancedBooks();
        if (fired == 0) break;
    }
    bench.interpreter.FailAllocation(1);
    EXPECT_EQ(Call(ActionConvertToNumeric, *text), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::WsFull);
}

} // namespace
} // namespace vantrel
