// Every operation on a file fails in turn while a state or a picture is written.

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Base/File_Faults.h"
#include "Runner/Base/Random.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Draw/Screenshot.h"
#include "Runner/Host/Memory.h"
#include "Tests/Runner/Save/Save_Support.h"

#include <algorithm>
#include <csignal>
#include <functional>
#include <new>

#include <sys/wait.h>
#include <unistd.h>

namespace
{
using Runner::FileOperation;
using RunnerTest::SaveTest;

constexpr FileOperation OPERATIONS[] = {FileOperation::Open, FileOperation::Write,  FileOperation::ShortWrite,
                                        FileOperation::Sync, FileOperation::Rename, FileOperation::Close};

size_t OpenFiles()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(files), end(files)));
}

class SaveFaults : public SaveTest
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(Play("room_add{ views = { [0] = {} }, step = function() vars.n = frame_number() end }"), "");
        std::filesystem::create_directory(directory.Path("save"));
    }

    void TearDown() override
    {
        for (const FileOperation operation : OPERATIONS)
            Runner::FailFileOperation(operation, -1);
    }

    // write must answer false with a reason whenever the n-th operation of the kind fails, for each n until it is never
    // reached; the file keeps its old content until then, and nothing stays behind. Answers how many n failed.
    int FailEach(FileOperation operation, const std::string& name, const std::function<bool(std::string&)>& write)
    {
        for (int n = 0;; ++n)
        {
            directory.Write("save/" + name, "old");
            const size_t files = OpenFiles(), blocks = Runner::CurrentMemoryUse().blocks;
            std::string why;
            Runner::FailFileOperation(operation, n);
            const bool written = write(why);
            Runner::FailFileOperation(operation, -1);
            EXPECT_EQ(OpenFiles(), files);
            EXPECT_EQ(Runner::CurrentMemoryUse().blocks, blocks);
            EXPECT_EQ(FilesInArea(), 1);
            if (written)
            {
                EXPECT_NE(directory.Read("save/" + name), "old");
                return n;
            }
            EXPECT_EQ(directory.Read("save/" + name), "old") << "fault " << n;
            EXPECT_NE(why, "");
            EXPECT_EQ(why.find('\n'), std::string::npos);
        }
    }

    // Until it is killed. The number of turns is for a parent that is gone.
    [[noreturn]] void SaveInTurns(const std::vector<uint8_t>& first, const std::vector<uint8_t>& second) const
    {
        std::string why;
        for (int turn = 0; turn < 100000; ++turn)
            for (const std::vector<uint8_t>* save : {&first, &second})
                Runner::WriteFileAtomically(SavePath(), save->data(), save->size(), why);
        _exit(0);
    }

    long FilesInArea() const
    {
        const std::filesystem::directory_iterator files(directory.Path("save"));
        return static_cast<long>(std::distance(begin(files), end(files)));
    }

    static Runner::Picture SomePicture()
    {
        Runner::Picture picture{64, 48, std::vector<uint8_t>(64 * 48 * 4)};
        for (size_t i = 0; i < picture.rgba.size(); ++i)
            picture.rgba[i] = static_cast<uint8_t>((i * 2654435761u) >> 24);
        return picture;
    }
};

TEST_F(SaveFaults, WhileAStateIsWritten)
{
    const auto write = [this](std::string& why) { return Runner::SaveGame(*game, directory.Path("save/state"), why); };
    for (const FileOperation operation : OPERATIONS)
        EXPECT_EQ(FailEach(operation, "state", write), 1) << static_cast<int>(operation);
}

TEST_F(SaveFaults, WhileABmpIsWritten)
{
    const auto write = [](std::string& why) { return Runner::WriteScreenshot(SomePicture(), "shot", "bmp", why); };
    for (const FileOperation operation : OPERATIONS)
        EXPECT_EQ(FailEach(operation, "shot", write), 1) << static_cast<int>(operation);
}

// A PNG is written in many pieces, and opened once more to be synced.
TEST_F(SaveFaults, WhileAPngIsWritten)
{
    const auto write = [](std::string& why) { return Runner::WriteScreenshot(SomePicture(), "shot", "png", why); };
    for (const FileOperation operation : {FileOperation::Open, FileOperation::Close})
        EXPECT_EQ(FailEach(operation, "shot", write), 2);
    for (const FileOperation operation : {FileOperation::Sync, FileOperation::Rename})
        EXPECT_EQ(FailEach(operation, "shot", write), 1);
    for (const FileOperation operation : {FileOperation::Write, FileOperation::ShortWrite})
        EXPECT_GT(FailEach(operation, "shot", write), 5);
}

TEST_F(SaveFaults, ReadingNeedsTheFileOpened)
{
    ASSERT_EQ(Save(), "");
    Runner::FailFileOperation(FileOperation::Open, 0);
    EXPECT_EQ(Load(), "cannot open " + SavePath() + ": No space left on device");
    EXPECT_EQ(Load(), "");
}

TEST_F(SaveFaults, AGameGoesOnAfterASaveThatFailed)
{
    Runner::FailFileOperation(FileOperation::Rename, 0);
    EXPECT_EQ(Run("assert(game_save('slot'))", 3), "");
    EXPECT_EQ(Log(), "cannot put in place " + directory.Path("save/slot") + ": No space left on device\n");
    EXPECT_EQ(game->FrameNumber(), 3);
}

// A process saves over and over, one state and then the other, and is killed at some moment.
TEST_F(SaveFaults, AKillAtAnyMomentLeavesTheOldSaveOrTheNewOne)
{
    const char* const wish = std::getenv("SAVE_KILLS");
    const int kills = wish != nullptr ? std::atoi(wish) : 50;
    ASSERT_EQ(Save(), "");
    const std::vector<uint8_t> first = Bytes();
    ASSERT_EQ(PlayOn(3), "");
    ASSERT_EQ(Save(), "");
    const std::vector<uint8_t> second = Bytes();
    ASSERT_NE(first, second);
    Runner::Random random(6);
    int firsts = 0, seconds = 0;
    // On a busy machine a process may be killed before it has saved anything: more of them are tried then.
    for (int i = 0; i < kills || ((firsts == 0 || seconds == 0) && i < 40 * kills); ++i)
    {
        const pid_t child = fork();
        if (child == 0)
            SaveInTurns(first, second);
        ASSERT_GT(child, 0);
        usleep(static_cast<useconds_t>(random.Range(0, 3000)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::vector<uint8_t> left = Bytes();
        ASSERT_TRUE(left == first || left == second) << left.size() << " bytes after kill " << i;
        ++(left == first ? firsts : seconds);
    }
    EXPECT_GT(firsts, 0); // some came in between
    EXPECT_GT(seconds, 0);
    EXPECT_EQ(Save(), ""); // whatever the last one left beside it
    EXPECT_FALSE(std::filesystem::exists(SavePath() + ".part"));
    EXPECT_EQ(LoadAfresh(), "");
}

TEST_F(SaveFaults, ASaveAreaThatIsGoneIsMadeAgainOrTold)
{
    ASSERT_EQ(Play("room_add{ step = function() if frame_number() > 0 then log(tostring(game_save('a/b'))) end end }"),
              "");
    std::filesystem::remove_all(directory.Path("save"));
    ASSERT_EQ(PlayOn(1), "");
    EXPECT_TRUE(std::filesystem::exists(directory.Path("save/a/b")));
    std::filesystem::remove_all(directory.Path("save"));
    directory.Write("save", "a file in its place");
    ASSERT_EQ(PlayOn(2), "");
    EXPECT_EQ(game->FrameNumber(), 4);
    EXPECT_EQ(Log().find("true\n"), 0u);
    EXPECT_NE(Log().find("save/a"), std::string::npos) << Log();
    EXPECT_EQ(directory.Read("save"), "a file in its place");
}

// ---- memory ----

int Cameras()
{
    return static_cast<int>(std::count_if(g_CM.m_cameras, g_CM.m_cameras + g_CM.m_cameraListSize,
                                          [](const CCamera* camera) { return camera != nullptr; }));
}

// The module would go on without a camera that it is refused the memory for.
TEST_F(SaveFaults, EachRefusedAllocationWhileSavingOrLoadingLosesNoCamera)
{
    ASSERT_EQ(Save(), "");
    const int cameras = Cameras();
    int ended = 0;
    for (int n = 0; n < 60; ++n)
    {
        bool isLoaded = true;
        Runner::FailAllocationAfter(n);
        try
        {
            Save();
            Load();
        }
        catch (const std::bad_alloc&)
        {
            isLoaded = false;
        }
        Runner::FailAllocationAfter(-1);
        EXPECT_EQ(g_CM.Validate(), nullptr);
        ended += isLoaded ? 0 : 1;
        if (!isLoaded)
        {
            ASSERT_EQ(LoadAfresh(), "");
        }
        EXPECT_EQ(Cameras(), cameras) << "request " << n;
        EXPECT_EQ(PlayOn(1), "");
    }
    EXPECT_GT(ended, 1);
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Load(), "");
}
} // namespace
