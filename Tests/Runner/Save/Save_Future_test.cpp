// A loaded game goes on as the one that was never stopped: each example game is saved at frames all over its course.
// What its views show afterwards is compared line by line, and what it would save at the end byte by byte, in the same
// process and in a fresh one.

#include "Runner/Base/Random.h"
#include "Tests/Runner/Save/Save_Support.h"

#include <algorithm>
#include <set>

namespace
{
using RunnerTest::SaveTest;
using RunnerTest::StartRunner;

#ifdef NDEBUG
constexpr int SAVES = 20, FRAMES_AFTER = 300, LAST_SAVE = 600;
#else // sanitizers and emulated machines are slow
constexpr int SAVES = 4, FRAMES_AFTER = 40, LAST_SAVE = 160;
#endif

std::vector<std::string> ExampleGames()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(GAMES_DIR))
        if (entry.is_directory())
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<int> SaveFrames()
{
    Runner::Random random(20);
    std::vector<int> frames;
    for (int i = 0; i < SAVES; ++i)
        frames.push_back(random.Range(1, LAST_SAVE));
    std::sort(frames.begin(), frames.end());
    frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
    return frames;
}

class SavedFuture : public SaveTest, public ::testing::WithParamInterface<std::string>
{
protected:
    void SetUp() override
    {
        options.file = std::string(GAMES_DIR) + "/" + GetParam() + "/" + GetParam() + ".lua";
        options.check = false; // of each frame: slow, and other tests do
        options.trace = directory.Path("trace");
        Runner::SetConsoleQuiet(true);
    }

    void TearDown() override { Runner::SetConsoleQuiet(false); }

    void StartGame()
    {
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        ASSERT_TRUE(game->Load()) << game->Failure();
    }

    void SaveNow()
    {
        std::string why;
        ASSERT_TRUE(Runner::SaveGame(*game, SaveOf(game->FrameNumber()), why)) << why;
    }

    // Plays, and saves at each of the frames and as long after it as the loaded game will play.
    void PlayAndSave()
    {
        std::set<int> frames;
        for (const int frame : SaveFrames())
            frames.insert({frame, frame + FRAMES_AFTER});
        StartGame();
        for (const int frame : frames)
        {
            ASSERT_EQ(PlayOn(frame - game->FrameNumber()), "");
            SaveNow();
        }
    }

    // Compares a file with what the uninterrupted game saved in that frame.
    void ExpectSavedState(int frame, const std::string& file)
    {
        const std::vector<uint8_t> expected = Content(SaveOf(frame));
        EXPECT_TRUE(Content(directory.Path(file)) == expected) << "frame " << frame;
        EXPECT_FALSE(expected.empty());
    }

    // All that a file holds, but for the size of the table of cameras: it shows how many there were at most in the
    // life of the process.
    static std::vector<uint8_t> Content(const std::string& path)
    {
        Runner::SavedState state;
        std::vector<uint8_t> content;
        std::string why;
        EXPECT_TRUE(Runner::ReadSavedGame(path, state, why)) << why;
        std::vector<uint8_t>& stream = state.cameras.stream;
        const auto lastUsed = std::find_if(stream.rbegin(), stream.rend(), [](uint8_t byte) { return byte != 0; });
        stream.erase(lastUsed.base(), stream.end());
        std::fill_n(stream.begin(), 4, uint8_t{0});
        EXPECT_TRUE(Runner::EncodeState(state, content, why)) << why;
        return content;
    }

    std::string SaveOf(int frame) const { return directory.Path("save" + std::to_string(frame)); }

    // The lines of a game that is never saved.
    void PlayUninterrupted()
    {
        StartGame();
        ASSERT_EQ(PlayOn(LAST_SAVE + FRAMES_AFTER), "");
        ASSERT_TRUE(game->Finish());
        game.reset();
        std::istringstream trace(directory.Read("trace"));
        for (std::string line; std::getline(trace, line);)
        {
            const auto frame = static_cast<size_t>(std::stoi(line));
            m_lines.resize(std::max(m_lines.size(), frame + 1));
            m_lines[frame] += line + "\n";
        }
    }

    std::string Lines(int from, int count) const
    {
        std::string text;
        for (int frame = from; frame < from + count; ++frame)
            text += m_lines[static_cast<size_t>(frame)];
        return text;
    }

private:
    std::vector<std::string> m_lines; // by frame
};

TEST_P(SavedFuture, IsTheSameInTheSameProcess)
{
    PlayUninterrupted();
    PlayAndSave();
    std::string expected = Lines(0, SaveFrames().back() + FRAMES_AFTER);
    for (const int frame : SaveFrames())
    {
        Runner::SavedState state;
        std::string why;
        ASSERT_TRUE(Runner::ReadSavedGame(SaveOf(frame), state, why)) << why;
        ASSERT_TRUE(Runner::FitToGame(*game, state, SaveOf(frame), why)) << why;
        ASSERT_TRUE(Runner::RestoreGame(*game, state)) << game->Failure();
        ASSERT_EQ(PlayOn(FRAMES_AFTER), "");
        ASSERT_TRUE(Runner::SaveGame(*game, directory.Path("again"), why)) << why;
        ExpectSavedState(frame + FRAMES_AFTER, "again");
        expected += Lines(frame, FRAMES_AFTER);
    }
    ASSERT_TRUE(game->Finish());
    EXPECT_TRUE(directory.Read("trace") == expected);
}

TEST_P(SavedFuture, IsTheSameInAFreshProcess)
{
    PlayUninterrupted();
    PlayAndSave();
    game.reset();
    for (const int frame : SaveFrames())
    {
        ASSERT_EQ(StartRunner(options.file + " --quiet --frames " + std::to_string(FRAMES_AFTER) + " --load " +
                              SaveOf(frame) + " --trace " + directory.Path("fresh") + " --save-at " +
                              std::to_string(frame + FRAMES_AFTER) + " " + directory.Path("again")),
                  0);
        ExpectSavedState(frame + FRAMES_AFTER, "again");
        EXPECT_TRUE(directory.Read("fresh") == Lines(frame, FRAMES_AFTER)) << "saved at frame " << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(Games, SavedFuture, ::testing::ValuesIn(ExampleGames()),
                         [](const auto& test) { return test.param; });
} // namespace
