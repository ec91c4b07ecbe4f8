#include "entry/trace.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "entry/trace_lines.h"

namespace vantrel {
namespace {

std::vector<std::size_t> MessageLengths(std::u16string text)
{
    std::vector<std::size_t> lengths;
    std::u16string_view rest(text);
    while (!rest.empty()) {
        const DebugChunk chunk = NextDebugChunk(rest);
        lengths.push_back(static_cast<std::size_t>(chunk.length));
        rest.remove_prefix(static_cast<std::size_t>(chunk.advance));
    }
    return lengths;
}

TEST(TraceScope, NamesTheInnermostRoutineAndPutsTheOuterBack)
{
    TraceScope outer("outer.cpp", "Outer");
    {
        TraceScope inner("inner.cpp", "Inner");
        EXPECT_STREQ(g_traceContext.file, "inner.cpp");
        EXPECT_STREQ(g_traceContext.routine, "Inner");
    }
    EXPECT_STREQ(g_traceContext.file, "outer.cpp");
    EXPECT_STREQ(g_traceContext.routine, "Outer");
}

TEST(TraceScope, IsRestoredByAnException)
{
    TraceScope outer("outer.cpp", "Outer");
    try {
        TraceScope inner("inner.cpp", "Inner");
        throw 1;
    } catch (int) {
    }
    EXPECT_STREQ(g_traceContext.routine, "Outer");
}

TEST(DebugChunks, ALongLineIsCutAtTheLimit)
{
    EXPECT_EQ(MessageLengths(std::u16string(300000, u'x')),
              (std::vector<std::size_t>{128000, 128000, 44000}));
}

TEST(DebugChunks, EachLineIsAMessageWithoutItsEnd)
{
    EXPECT_EQ(MessageLengths(u"a\r\nb"), (std::vector<std::size_t>{1, 1}));
    EXPECT_EQ(MessageLengths(u"a\r\n"), (std::vector<std::size_t>{1}));
    EXPECT_EQ(MessageLengths(u"\r\nab"), (std::vector<std::size_t>{0, 2}));
}

TEST(DebugChunks, ALineBeyondTheLimitLosesTwoCharactersAfterTheCut)
{
    const std::u16string text = std::u16string(128010, u'x') + u"\r\n";
    EXPECT_EQ(MessageLengths(text), (std::vector<std::size_t>{128000, 8}));
}

TEST(FileNameOf, StripsFoldersOfBothKinds)
{
    EXPECT_STREQ(FileNameOf("a/b\\c.cpp"), "c.cpp");
    EXPECT_STREQ(FileNameOf("c.cpp"), "c.cpp");
    EXPECT_STREQ(FileNameOf(""), "");
}

} // namespace
} // namespace vantrel
