#include "model/variables.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/rebuild.h"
#include "unit/support/test_context.h"

namespace vantrel {
namespace {

// A host with one variable. Host objects are texts of the host's own; what it is told is written down.
struct Host {
    std::int32_t nameClass = 2;
    std::int32_t coupling = 0;
    bool hasValue = true;
    VTERROR_CODE assignError = VTERROR_CODE::NoError;
    bool nameIsNumber = false;
    std::u16string name = u"abc";
    std::u16string value = u"value";
    std::u16string converted = u"converted";
    std::vector<std::string> told;
};

Host* g_host = nullptr;

Scdr* ObjectToScdr(EditContext* context, HostObject object)
{
    const auto& text = *static_cast<const std::u16string*>(object);
    if (g_host->nameIsNumber) {
        const std::int64_t one = 1;
        return AllocateScdr(context, nullptr, TypeInteger, 1, &one, true).release();
    }
    return ScdrFromUnicode(context, text.data(), static_cast<std::int64_t>(text.size())).release();
}

class Variables : public testing::Test {
protected:
    Variables()
    {
        g_host = &host;
        HostOperations& operations = context.langEnv.Operations;
        operations.ObjectToScdr = ObjectToScdr;
        operations.GetNameClass = [](EditContext*, HostObject, char16_t*) { return g_host->nameClass; };
        operations.GetCoupling = [](EditContext*, HostObject) { return g_host->coupling; };
        operations.GetValue = [](EditContext*, HostObject) -> HostObject {
            return g_host->hasValue ? &g_host->value : nullptr;
        };
        operations.ScdrToObject = [](EditContext*, const Scdr*) -> HostObject { return &g_host->converted; };
        operations.UnicodeToObject = [](EditContext*, const char16_t*, std::int64_t) -> HostObject {
            return &g_host->name;
        };
        operations.Assign = [](EditContext* edit, HostObject, HostObject) {
            g_host->told.emplace_back("assign");
            if (g_host->assignError != VTERROR_CODE::NoError) SetErrorCode(edit, g_host->assignError);
        };
        operations.FreeObject = [](EditContext*, HostObject object) {
            g_host->told.emplace_back(object == &g_host->name ? "free name" : "free value");
        };
        context.langEnv.ValidNameCharacters = u"abc0";
        context.langEnv.LeadingForbiddenCharacters = u"0";
        context.langEnv.LongestName = 5;
    }

    ScdrPtr SavableTree() { return ScdrFromUnicode(context, u"x", 1); }
    ScdrPtr TreeBeyondTheLimits()
    {
        context.langEnv.HighestRank = 0;
        return SavableTree();
    }

    Host host;
    test::TestContext context;
    char16_t title[TitleSize] = u"untouched";
};

TEST_F(Variables, ANameObjectIsJudgedByItsText)
{
    EXPECT_EQ(IsObjectValidName(context, &host.name), 1);
    host.name = u"0a";
    EXPECT_EQ(IsObjectValidName(context, &host.name), 0);
    host.name = u"  ab ";
    EXPECT_EQ(IsObjectValidName(context, &host.name), 1);
}

TEST_F(Variables, ANameThatIsNoTextIsInvalid)
{
    host.nameIsNumber = true;
    EXPECT_EQ(IsObjectValidName(context, &host.name), 0);
}

TEST_F(Variables, AVariableGivesItsValueAndTheTitle)
{
    EXPECT_EQ(GetVariableValue(context, &host.name, title), &host.value);
    EXPECT_EQ(std::u16string(title), u"Variable Editor for Dyalog - abc");
}

TEST_F(Variables, AnUndefinedNameIsAValueError)
{
    host.nameClass = 0;
    EXPECT_EQ(GetVariableValue(context, &host.name, title), nullptr);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::ValueError);
}

TEST_F(Variables, FunctionsAndCoupledNamesAreDomainErrors)
{
    host.nameClass = 3;
    EXPECT_EQ(GetVariableValue(context, &host.name, title), nullptr);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::DomainError);

    host.nameClass = 2;
    host.coupling = 1;
    EXPECT_EQ(GetVariableValue(context, &host.name, title), nullptr);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::DomainError);
}

TEST_F(Variables, WithoutAValueTheTitleStaysAsItWas)
{
    host.hasValue = false;
    EXPECT_EQ(GetVariableValue(context, &host.name, title), nullptr);
    EXPECT_EQ(std::u16string(title), u"untouched");
}

TEST_F(Variables, AnErrorThatIsSetAlreadyGivesNothing)
{
    SetErrorCode(context, VTERROR_CODE::NonceError);
    EXPECT_EQ(GetVariableValue(context, &host.name, title), nullptr);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::NonceError);
}

TEST_F(Variables, SavingAssignsAndReleases)
{
    EXPECT_EQ(SaveVariable(context, &host.name, *SavableTree()), 0);
    EXPECT_EQ(host.told, (std::vector<std::string>{"assign", "free value"}));
}

TEST_F(Variables, SavingByTextMakesAndReleasesTheName)
{
    EXPECT_EQ(SaveVariableName(context, *SavableTree(), u"abc"), 0);
    EXPECT_EQ(host.told, (std::vector<std::string>{"assign", "free value", "free name"}));
}

TEST_F(Variables, AnAssignmentThatFailsIsReported)
{
    host.assignError = VTERROR_CODE::WsFull;
    EXPECT_EQ(SaveVariable(context, &host.name, *SavableTree()), 1);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::WsFull);
    EXPECT_EQ(SaveVariableName(context, *SavableTree(), u"abc"), 1);
}

TEST_F(Variables, AFailureIsKeptForTheHostUntilSomethingIsSaved)
{
    host.assignError = VTERROR_CODE::WsFull;
    EXPECT_EQ(SaveVariable(context, &host.name, *SavableTree()), 1);
    EXPECT_EQ(context.context.failure, VTERROR_CODE::WsFull);
    (void)context.TakeError();
    host.assignError = VTERROR_CODE::NoError;
    EXPECT_EQ(SaveVariableName(context, *SavableTree(), u"abc"), 0);
    EXPECT_EQ(context.context.failure, VTERROR_CODE::NoError);
    EXPECT_EQ(SaveVariable(context, &host.name, *TreeBeyondTheLimits()), 1);
    EXPECT_EQ(context.context.failure, VTERROR_CODE::NoError); // what was saved is the answer
}

TEST_F(Variables, AnArrayBeyondTheHostsLimitsIsNotAssigned)
{
    const ScdrPtr tree = TreeBeyondTheLimits();
    EXPECT_EQ(SaveVariable(context, &host.name, *tree), 1);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::DomainError);
    EXPECT_EQ(SaveVariableName(context, *tree, u"abc"), 1);
    EXPECT_TRUE(host.told.empty());
    EXPECT_EQ(context.context.failure, VTERROR_CODE::DomainError);
}

} // namespace
} // namespace vantrel
