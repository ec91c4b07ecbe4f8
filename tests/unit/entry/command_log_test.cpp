#include "entry/command_log.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrel {
namespace {

constexpr std::uint32_t WmCommand = 273;

std::string NameOf(std::int32_t id)
{
    return CommandName(WmCommand, id);
}

TEST(CommandLog, BeginsWithProductVersionAndBuild)
{
    CommandLog log;
    BeginCommandLog(log);
    EXPECT_EQ(log.rfind("Vantrel Command Log\r\nVersion: 1.1.0.92\r\nBuild date: ", 0), 0u);
    EXPECT_NE(log.find(" Time: "), std::string::npos);
    EXPECT_EQ(log.substr(log.size() - 2), "\r\n");
}

TEST(CommandLog, KeepsTheProgramsOwnSpellings)
{
    EXPECT_EQ(NameOf(4201), "Cut array");
    EXPECT_EQ(NameOf(4202), "Copy Array");
    EXPECT_EQ(NameOf(4621), "Array or rows");
    EXPECT_EQ(NameOf(4104), "Save and Close");
    EXPECT_EQ(NameOf(4110), "Exit force");
}

TEST(CommandLog, KnowsTheEndsOfEachRange)
{
    EXPECT_EQ(NameOf(4001), "Popup undo");
    EXPECT_EQ(NameOf(4008), "Popup help");
    EXPECT_EQ(NameOf(4210), "Find previous");
    EXPECT_EQ(NameOf(4316), "Options enable Undo array");
    EXPECT_EQ(NameOf(4504), "Debug");
    EXPECT_EQ(NameOf(4601), "Size to definition");
    EXPECT_EQ(NameOf(4629), "Execute");
    EXPECT_EQ(NameOf(4706), "Insert row below");
    EXPECT_EQ(NameOf(4908), "Graphics surface");
}

TEST(CommandLog, OtherIdsAreUnknown)
{
    for (const std::int32_t id : {0, 4000, 4009, 4620, 4801, 4909, 70000})
        EXPECT_EQ(NameOf(id), "Unknown") << id;
}

TEST(CommandLog, PrivateMessagesOfArraysAreSetArray)
{
    EXPECT_STREQ(CommandName(0x7FC4, 4101), "Set array");
    EXPECT_STREQ(CommandName(0x7FC7, 0), "Set array");
    EXPECT_STREQ(CommandName(0x7FC5, 4101), "Unknown");
}

TEST(CommandLog, ACommandIsOneLine)
{
    CommandLog log;
    EditContext context;
    context.commandLog = &log;
    LogCommand(&context, WmCommand, 4102);
    LogCommand(&context, WmCommand, 4105);
    EXPECT_EQ(log, "Save\r\nExit\r\n");
}

TEST(CommandLog, WithoutAnEditNothingIsLogged)
{
    EditContext context;
    LogCommand(&context, WmCommand, 4102);
    LogCommand(nullptr, WmCommand, 4102);
    EXPECT_EQ(context.commandLog, nullptr);
}

} // namespace
} // namespace vantrel
