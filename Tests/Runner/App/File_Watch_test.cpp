#include "Runner/App/File_Watch.h"

#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using Runner::FileWatch;

class FileWatchTest : public ::testing::Test
{
protected:
    FileWatchTest() { watch.Watch({first, second}); }

    // Looks every ten milliseconds. How often a change was told.
    int Changes(int64_t milliseconds)
    {
        int count = 0;
        for (const int64_t end = now + milliseconds; now < end; now += 10)
            count += watch.HasChanged(now) ? 1 : 0;
        return count;
    }

    RunnerTest::TestDirectory directory;
    const std::string first = directory.Write("a.lua", "one");
    const std::string second = directory.Write("b.png", "two");
    FileWatch watch;
    int64_t now = 1000;
};

TEST_F(FileWatchTest, FilesThatRestAreNoChange) { EXPECT_EQ(Changes(5000), 0); }

TEST_F(FileWatchTest, AChangeIsToldOnceItRests)
{
    directory.Write("b.png", "longer");
    EXPECT_EQ(Changes(FileWatch::QUIET_MILLISECONDS), 0);
    EXPECT_EQ(Changes(1000), 1);
    EXPECT_EQ(Changes(1000), 0);
}

TEST_F(FileWatchTest, StepsOfOneWriteAreOneChange)
{
    std::string text;
    int count = 0;
    for (int step = 0; step < 10; ++step)
    {
        directory.Write("a.lua", text += "a line\n");
        count += Changes(100);
    }
    EXPECT_EQ(count, 0);
    EXPECT_EQ(Changes(1000), 1);
}

TEST_F(FileWatchTest, AFileThatVanishesForAMomentIsToldWhenItIsBack)
{
    std::filesystem::remove(first);
    EXPECT_EQ(Changes(1000), 0);
    directory.Write("a.lua", "another");
    EXPECT_EQ(Changes(1000), 1);
}

TEST_F(FileWatchTest, AFileThatStaysAwayIsToldInTheEnd)
{
    std::filesystem::remove(first);
    EXPECT_EQ(Changes(FileWatch::GONE_MILLISECONDS), 0);
    EXPECT_EQ(Changes(1000), 1);
    EXPECT_EQ(Changes(5000), 0);
}

TEST_F(FileWatchTest, AWriteThatIsTakenBackIsNoChange)
{
    std::filesystem::rename(first, first + "~");
    EXPECT_EQ(Changes(500), 0);
    std::filesystem::rename(first + "~", first);
    EXPECT_EQ(Changes(5000), 0);
}
} // namespace
