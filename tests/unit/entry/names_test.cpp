#include "entry/names.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrel {
namespace {

constexpr char16_t Letters[] = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_∆⍙";

LangEnv MakeEnvironment(std::int32_t longestName = 255)
{
    LangEnv environment{};
    environment.DialectKind = Dialect::Dyalog;
    environment.ValidNameCharacters = Letters;
    environment.LeadingForbiddenCharacters = u"0123456789";
    environment.LongestName = longestName;
    return environment;
}

bool IsValid(const std::u16string& name, const LangEnv& environment = MakeEnvironment())
{
    return IsUnicodeValidName(name.c_str(), environment) == 1;
}

std::u16string TitleOf(Dialect dialect, const char16_t* callersTitle = nullptr)
{
    LangEnv environment = MakeEnvironment();
    environment.DialectKind = dialect;
    environment.Title = callersTitle;
    EditContext context;
    context.langEnv = &environment;
    context.accountNumber = 1001;
    char16_t title[TitleSize];
    GetArrayTitle(&context, title);
    return title;
}

std::u16string VariableTitleOf(Dialect dialect, std::u16string_view name)
{
    LangEnv environment = MakeEnvironment();
    environment.DialectKind = dialect;
    EditContext context;
    context.langEnv = &environment;
    context.accountNumber = -42;
    char16_t title[TitleSize];
    MakeVariableTitle(&context, name.data(), static_cast<std::int64_t>(name.size()), title);
    return title;
}

TEST(Names, SurroundingBlanksAreIgnored)
{
    EXPECT_TRUE(IsValid(u"abc"));
    EXPECT_TRUE(IsValid(u"  abc  "));
    EXPECT_FALSE(IsValid(u"a bc"));
}

TEST(Names, EmptyAndBlankTextsAreNoNames)
{
    EXPECT_FALSE(IsValid(u""));
    EXPECT_FALSE(IsValid(u"   "));
}

TEST(Names, StopAndTraceControlsAreRefusedOnlyWithAName)
{
    EXPECT_FALSE(IsValid(u"S∆abc"));
    EXPECT_FALSE(IsValid(u"T∆x"));
    EXPECT_FALSE(IsValid(u"  T∆x "));
    EXPECT_TRUE(IsValid(u"S∆"));
    EXPECT_TRUE(IsValid(u"X∆abc"));
}

TEST(Names, LengthLimitIsTheHosts)
{
    EXPECT_TRUE(IsValid(std::u16string(63, u'a'), MakeEnvironment(63)));
    EXPECT_FALSE(IsValid(std::u16string(64, u'a'), MakeEnvironment(63)));
    EXPECT_TRUE(IsValid(u" " + std::u16string(63, u'a') + u" ", MakeEnvironment(63)));
}

TEST(Names, CharactersAreJudgedByTheHostsSets)
{
    EXPECT_FALSE(IsValid(u"1abc"));
    EXPECT_TRUE(IsValid(u"a1"));
    EXPECT_FALSE(IsValid(u"a-b"));
    EXPECT_TRUE(IsValid(u"⍙x"));
}

TEST(Names, ATextWithoutTerminatorIsReadToItsLength)
{
    const LangEnv environment = MakeEnvironment();
    EXPECT_EQ(IsValidName(u"abc+", 3, environment), 1);
    EXPECT_EQ(IsValidName(u"abc+", 4, environment), 0);
}

TEST(Titles, ByValueNameTheDialect)
{
    EXPECT_EQ(TitleOf(Dialect::Apl2), u"Vantrel for APL2® - 1001 ");
    EXPECT_EQ(TitleOf(Dialect::Aplx), u"Vantrel for APLX");
    EXPECT_EQ(TitleOf(Dialect::Dyalog), u"Vantrel for Dyalog");
    EXPECT_EQ(TitleOf(Dialect::Matlab), u"Vantrel for MATLAB®");
}

TEST(Titles, TheCallersOwnTitleStandsAsItIs)
{
    EXPECT_EQ(TitleOf(Dialect::Dyalog, u"My ⍴ %s"), u"My ⍴ %s");
}

TEST(Titles, ALongTitleIsCutAtTheBuffersEnd)
{
    const std::u16string title(400, u'x');
    EXPECT_EQ(TitleOf(Dialect::Dyalog, title.c_str()), std::u16string(TitleSize - 1, u'x'));
}

TEST(Titles, ByNameQuoteTheVariable)
{
    EXPECT_EQ(VariableTitleOf(Dialect::Apl2, u"abc"), u"Variable Editor for APL2® - -42 - abc");
    EXPECT_EQ(VariableTitleOf(Dialect::Aplx, u"abc"), u"Variable Editor for APLX - abc");
    EXPECT_EQ(VariableTitleOf(Dialect::Dyalog, u"abc"), u"Variable Editor for Dyalog - abc");
    EXPECT_EQ(VariableTitleOf(Dialect::Matlab, u"abc"), u"Variable Editor for MATLAB® - abc");
}

TEST(Dialects, HaveNamesForRegistryKeys)
{
    EXPECT_EQ(std::u16string(DialectName(Dialect::Apl2)), u"APL2");
    EXPECT_EQ(std::u16string(DialectName(Dialect::Aplx)), u"APLX");
    EXPECT_EQ(std::u16string(DialectName(Dialect::Dyalog)), u"Dyalog");
    EXPECT_EQ(std::u16string(DialectName(Dialect::Matlab)), u"MATLAB");
}

} // namespace
} // namespace vantrel
