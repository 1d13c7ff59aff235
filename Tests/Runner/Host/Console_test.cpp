#include "Files/IO/Debug_Console.h"
#include "Runner/Host/Console.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace
{
using namespace Runner;

TEST(HostConsole, WritesTextsAsTheyStand)
{
    ASSERT_NE(dbg_csol, nullptr);
    char* text = nullptr;
    size_t size = 0;
    FILE* out = open_memstream(&text, &size);
    SetConsoleOutput(out);
    dbg_csol->Output("one %s\n");
    dbg_csol->Output(nullptr);
    dbg_csol->Output("two");
    SetConsoleOutput(nullptr);
    std::fclose(out);
    EXPECT_EQ(std::string(text, size), "one %s\ntwo");
    std::free(text);
}

TEST(HostConsole, QuietSilencesTheLogAndNothingElse)
{
    char* text = nullptr;
    size_t size = 0;
    FILE* out = open_memstream(&text, &size);
    SetConsoleOutput(out);
    PrintLog("heard\n");
    SetConsoleQuiet(true);
    PrintLog("unheard\n");
    PrintLine("a failure");
    dbg_csol->Output("another\n");
    SetConsoleQuiet(false);
    PrintLog(std::string("with\0zero", 9));
    SetConsoleOutput(nullptr);
    std::fclose(out);
    EXPECT_EQ(std::string(text, size), std::string("heard\na failure\nanother\nwith\0zero", 33));
    std::free(text);
}

TEST(HostConsole, RemembersTheReasonOfTheFirstFault)
{
    FILE* const full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    std::string why;
    SetConsoleOutput(full);
    EXPECT_TRUE(ConsoleIsGood(why));
    dbg_csol->Output("text");
    EXPECT_FALSE(ConsoleIsGood(why));
    EXPECT_EQ(why, "cannot print: No space left on device");
    SetConsoleOutput(nullptr);
    EXPECT_TRUE(ConsoleIsGood(why));
    std::fclose(full);
}

TEST(HostConsole, IsTheStandardErrorOutputAtFirst)
{
    testing::internal::CaptureStderr();
    dbg_csol->Output("to standard error");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "to standard error");
}
} // namespace
