#include "Files/IO/Debug_Console.h"
#include "Runner/Host/Console.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

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

TEST(HostConsole, ATerminalGetsNoCommandsOfAGame)
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    FILE* out = std::fopen(ptsname(terminal), "w");
    ASSERT_NE(out, nullptr);
    SetConsoleOutput(out);
    PrintLog("a\x1b[2Jb\tc\x7f\xC2\x9B\xC3\xA4\r\n");
    SetConsoleOutput(nullptr);
    char shown[64] = {};
    const ssize_t size = read(terminal, shown, sizeof shown - 1);
    std::fclose(out);
    close(terminal);
    ASSERT_GT(size, 0);
    EXPECT_EQ(std::string(shown), "a?[2Jb\tc???\xC3\xA4?\r\n"); // the terminal itself ends a line with both
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
