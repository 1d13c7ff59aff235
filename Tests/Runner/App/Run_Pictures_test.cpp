// The pictures that a run leaves behind.

#include "Runner/Base/File_Faults.h"
#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
using RunnerTest::ExpectOneLine;

constexpr char STILL_GAME[] = "screen_set_size(32, 16) room_add{}";

class RunPictures : public RunnerTest::CommandLine
{
protected:
    // Width and height: big-endian words after the name of the first chunk.
    std::pair<int, int> SizeOfPng(const std::string& picture) const
    {
        const std::string bytes = directory.Read("out/" + picture);
        const auto at = [&bytes](size_t i) { return static_cast<int>(static_cast<unsigned char>(bytes.at(i))); };
        return std::pair(at(18) << 8 | at(19), at(22) << 8 | at(23));
    }
};

TEST_F(RunPictures, TheLastFrameAloneUnlessToldOtherwise)
{
    EXPECT_EQ(Play(STILL_GAME, {"--frames", "3"}), 0);
    EXPECT_EQ(Pictures(), "last_frame.png ");
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "");
}

TEST_F(RunPictures, EveryKthFrameAndNoOther)
{
    EXPECT_EQ(Play(STILL_GAME, {"--frames", "7", "--every", "3"}), 0);
    EXPECT_EQ(Pictures(), "frame_00000.png frame_00003.png frame_00006.png ");
}

TEST_F(RunPictures, OnlyWhatWasAskedFor)
{
    EXPECT_EQ(Play(STILL_GAME, {"--frames", "3", "--contact-sheet", "sheet.png"}), 0);
    EXPECT_EQ(Pictures(), "sheet.png ");
}

TEST_F(RunPictures, HaveTheGamesSizeOrTheOneAskedFor)
{
    ASSERT_EQ(Play(STILL_GAME, {"--frames", "1"}), 0);
    EXPECT_EQ(SizeOfPng("last_frame.png"), std::pair(32, 16));
    ASSERT_EQ(Play(STILL_GAME, {"--frames", "1", "--size", "300x200"}), 0);
    EXPECT_EQ(SizeOfPng("last_frame.png"), std::pair(300, 200));
}

TEST_F(RunPictures, AScreenshotOfAScriptLandsInTheSaveArea)
{
    EXPECT_EQ(Play("screen_set_size(8, 8) room_add{ draw_gui = function() assert(screenshot('a/shot.png')) end }",
                   {"--frames", "1"}),
              0);
    EXPECT_EQ(directory.Read("out/a/shot.png").substr(1, 3), "PNG");
}

TEST_F(RunPictures, AScreenshotOfAScriptCannotLeaveTheSaveArea)
{
    EXPECT_EQ(Play("room_add{ step = function() assert(not screenshot('../shot.png')) end }",
                   {"--frames", "1", "--quiet", "--size", "8x8"}),
              0);
    EXPECT_FALSE(std::filesystem::exists(directory.Path("shot.png")));
}

TEST_F(RunPictures, TheLastFrameAsAPngOrABmp)
{
    EXPECT_EQ(Play("screen_set_size(8, 4) room_add{}", {"--frames", "3", "--screenshot", "end.bmp"}), 0);
    EXPECT_EQ(Pictures(), "end.bmp ");
    EXPECT_EQ(directory.Read("out/end.bmp").size(), 54u + 3 * 8 * 4);
    EXPECT_EQ(Play("screen_set_size(8, 4) room_add{}", {"--frames", "1", "--screenshot", "end.png"}), 0);
    EXPECT_EQ(directory.Read("out/end.png").substr(1, 3), "PNG");
}

TEST_F(RunPictures, AnErrorAfterSomeFramesLeavesTheirs)
{
    EXPECT_EQ(Play("screen_set_size(8, 8) room_add{ step = function() if frame_number() == 2 then error('x') end end }",
                   {"--frames", "5", "--every", "1"}),
              1);
    EXPECT_EQ(Pictures(), "frame_00000.png frame_00001.png ");
}

TEST_F(RunPictures, OneThatCannotBeWrittenIsAnErrorAndLeavesNothing)
{
    Runner::FailFileOperation(Runner::FileOperation::Write, 0);
    EXPECT_EQ(Play(STILL_GAME, {"--frames", "1"}), 1);
    Runner::FailFileOperation(Runner::FileOperation::Write, -1);
    ExpectOneLine(err);
    EXPECT_EQ(Pictures(), "");
}
} // namespace
