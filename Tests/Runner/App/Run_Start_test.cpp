// What a run starts from: recordings that are played again, whole, cut, of another game, or with damage.

#include "Runner/Save/Replay.h"
#include "Tests/Runner/App/Command_Line_Fixture.h"

#include <gmock/gmock.h>

namespace
{
using namespace Runner;
using testing::HasSubstr;

constexpr char COUNTING[] = "room_add{ step = function() print(frame_number()) end }";

class StartedRun : public RunnerTest::CommandLine
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(Play(COUNTING, {"--no-draw", "--frames", "70", "--record", record}), 0) << err;
        std::string left, why;
        ASSERT_TRUE(ReadRecording(record, recording, left, why)) << why;
    }

    // Plays the text along the recording.
    int Replay(const std::string& text, std::vector<std::string> more = {})
    {
        more.insert(more.end(), {"--no-draw", "--replay", record});
        return Play(text, more);
    }

    // The recording as a file once more; isWhole: with its second block and its end.
    void Write(bool isWhole)
    {
        std::vector<uint8_t> file = EncodeRecordingHead(recording.head);
        const auto add = [&file](const std::vector<uint8_t>& bytes)
        { file.insert(file.end(), bytes.begin(), bytes.end()); };
        add(EncodeRecordingBlock(recording.Blocks()[0]));
        if (isWhole)
        {
            add(EncodeRecordingBlock(recording.Blocks()[1]));
            add(EncodeRecordingEnd(70));
        }
        directory.Write("run.rec", {file.begin(), file.end()});
    }

    const std::string record = directory.Path("run.rec");
    Recording recording;
};

TEST_F(StartedRun, FewerFramesThanARecordingHasMayBePlayed)
{
    ASSERT_EQ(Replay(COUNTING, {"--frames", "3"}), 0) << err;
    EXPECT_EQ(out, "0\n1\n2\n");
    ASSERT_EQ(Replay(COUNTING, {"--frames", "700"}), 0) << err;
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 70) << "and no more than it has";
}

TEST_F(StartedRun, SettingsThatMakeNoSenseAreDamage)
{
    recording.head.settings = "settings 1\nnonsense\n";
    Write(true);
    EXPECT_EQ(Replay(COUNTING), 1);
    RunnerTest::ExpectOneLine(err);
    EXPECT_THAT(err, HasSubstr("cannot replay " + record + ": its settings are damaged: "));
}

// The first block has 60 frames.
TEST_F(StartedRun, OfACutRecordingTheWholeSecondsArePlayedAndOneLineTellsAll)
{
    Write(false);
    ASSERT_EQ(Replay(COUNTING), 0) << err;
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 60);
    EXPECT_EQ(err, "runner: replay " + record + ": it ends early; its first 60 frames are played\n");
    const std::string changed = std::string(COUNTING) + " -- a comment";
    EXPECT_EQ(Replay(changed), 1);
    EXPECT_THAT(err, HasSubstr("the game has changed since it was made: see main.lua; --anyway goes on\n"));
    ASSERT_EQ(Replay(changed, {"--anyway"}), 0) << err;
    EXPECT_EQ(err, "runner: replay " + record +
                       ": it ends early; its first 60 frames are played: the game has changed since it was made: see "
                       "main.lua\n");
}

TEST_F(StartedRun, AGameThatReadsMoreFilesThanItDidHasChanged)
{
    directory.Write("more.lua", "");
    EXPECT_EQ(Replay("include('more.lua') " + std::string(COUNTING)), 1);
    EXPECT_THAT(err, HasSubstr("the game has changed since it was made: see main.lua"));
    recording.head.files.clear();
    Write(true);
    EXPECT_EQ(Replay(COUNTING), 1);
    EXPECT_THAT(err, HasSubstr("see main.lua")) << "a file that the recording does not know";
    recording.head.files = {{"main.lua", 1}, {"gone.lua", 2}};
    Write(true);
    EXPECT_EQ(Replay(COUNTING), 1);
    EXPECT_THAT(err, HasSubstr("see main.lua"));
}

// ---- what a replay answers ----

TEST(ReplayAnswers, AreThoseOfTheRunningFrameInTheirOrder)
{
    Recording recording;
    recording.head.answers = {{Question::Load, {true, "", {1}}}};
    recording.Add({InputFrame(), {{Question::Screenshot, {true, "", {}}}, {Question::Load, {true, "", {2}}}}, {}}, 0);
    Runner::Replay replay(recording);
    const auto ask = [&replay](Question question) { return replay.Ask(question, nullptr); };
    EXPECT_EQ(ask(Question::Load).content, std::vector<uint8_t>{1});
    InputFrame seen;
    ASSERT_TRUE(replay.Next(seen));
    EXPECT_TRUE(ask(Question::Screenshot).done);
    EXPECT_EQ(ask(Question::Load).content, std::vector<uint8_t>{2});
    EXPECT_EQ(replay.AskedElseAt(), 0);
    EXPECT_EQ(ask(Question::Load).why, "the recording holds no answer to this");
    EXPECT_EQ(replay.AskedElseAt(), 1);
    EXPECT_EQ(replay.PartedAt(), 1);
    EXPECT_FALSE(replay.Next(seen)) << "there is one frame";
}

TEST(ReplayAnswers, AnotherQuestionThanTheRecordedOneHasNone)
{
    Recording recording;
    recording.head.answers = {{Question::Load, {true, "", {1}}}};
    recording.Add({InputFrame(), {}, {}}, 0);
    Runner::Replay replay(recording);
    EXPECT_FALSE(replay.Ask(Question::Screenshot, nullptr).done);
    EXPECT_EQ(replay.AskedElseAt(), 1) << "before the first frame counts as in it";
    EXPECT_TRUE(replay.Ask(Question::Load, nullptr).done) << "it waits for its question";
}
} // namespace
