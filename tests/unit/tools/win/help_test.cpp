#include "tools/win/help.h"

#include <gtest/gtest.h>

#include "tools/win/library_path.h"
#include "tools/win/wide.h"

namespace vantrel::test {
namespace {

struct Host {
    Host() { context.langEnv = &environment; }
    LangEnv environment{};
    EditContext context;
};

std::wstring BesideTheLibrary(const wchar_t* file)
{
    return std::wstring(AsWide(BuiltinGetLibraryPath())) + L"\\" + file;
}

TEST(HelpPath, LiesInTheFolderThatTheHostNames)
{
    Host host;
    host.environment.Operations.GetLibraryPath = [](EditContext*) -> const char16_t* { return u"C:\\Aide"; };
    EXPECT_EQ(HelpPath(&host.context), L"C:\\Aide\\vantrel.chm");
    host.environment.HelpFile = u"vantrelm.chm";
    host.environment.Operations.GetLibraryPath = [](EditContext*) -> const char16_t* { return u"C:\\"; };
    EXPECT_EQ(HelpPath(&host.context), L"C:\\vantrelm.chm");
}

TEST(HelpPath, LiesBesideTheLibraryWhereTheHostNamesNone)
{
    Host host;
    EXPECT_EQ(HelpPath(&host.context), BesideTheLibrary(L"vantrel.chm"));
    host.environment.Operations.GetLibraryPath = [](EditContext*) -> const char16_t* { return u""; };
    EXPECT_EQ(HelpPath(&host.context), BesideTheLibrary(L"vantrel.chm"));
}

} // namespace
} // namespace vantrel::test
