#include "tools/win/library_path.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <string>

#include "tools/win/wide.h"

namespace vantrel::test {
namespace {

// Linked into the tests, the routine belongs to their program, whose path Windows knows by another road.
TEST(LibraryPath, IsTheFolderOfTheModuleThatHoldsTheRoutine)
{
    wchar_t program[MAX_PATH] = {};
    ASSERT_NE(GetModuleFileNameW(nullptr, program, MAX_PATH), 0U);
    const std::wstring path = program;
    const std::wstring folder = AsWide(BuiltinGetLibraryPath());
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(path.substr(0, path.rfind(L'\\')), folder);
}

TEST(LibraryPath, IsKept)
{
    EXPECT_EQ(BuiltinGetLibraryPath(), BuiltinGetLibraryPath());
}

} // namespace
} // namespace vantrel::test
