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
    SetConsoleQuiet(true);
    dbg_csol->Output("unheard");
    SetConsoleQuiet(false);
    dbg_csol->Output("two");
    SetConsoleOutput(nullptr);
    std::fclose(out);
    EXPECT_EQ(std::string(text, size), "one %s\ntwo");
    std::free(text);
}

TEST(HostConsole, IsTheStandardErrorOutputAtFirst)
{
    testing::internal::CaptureStderr();
    dbg_csol->Output("to standard error");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "to standard error");
}
} // namespace
