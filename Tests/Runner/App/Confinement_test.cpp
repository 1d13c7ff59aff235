// A confined run plays as any other, and what it gave up is out of reach.

#include "Runner/App/Confinement.h"
#include "Tests/Runner/App/Command_Line_Fixture.h"

#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/wait.h>

#if defined(__linux__) && (defined(__x86_64__) || defined(__aarch64__))
namespace
{
using RunnerTest::ExpectOneLine;

constexpr int CANNOT_CONFINE = 99;
constexpr int NOT_REFUSED = 98;

// errno of the call as an exit status; NOT_REFUSED where it was done.
template <typename Answer> int ErrorOf(Answer answer)
{
    return answer != static_cast<Answer>(-1) ? NOT_REFUSED : errno;
}

class Confinement : public RunnerTest::CommandLine
{
protected:
    Confinement()
    {
        to.readable = {directory.Path("game")};
        to.writable = {directory.Path("out")};
        std::filesystem::create_directories(directory.Path("game"));
        std::filesystem::create_directories(directory.Path("out"));
        directory.Write("game/a.lua", "text");
        directory.Write("out/old", "text");
        directory.Write("other", "text");
    }

    // What the function answers in a process that was confined before.
    int InConfined(const std::function<int()>& function) const
    {
        const pid_t child = fork();
        if (child == 0)
        {
            std::string why;
            _exit(Runner::ConfineProcess(to, why) ? function() : CANNOT_CONFINE);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    int OpenInConfined(const std::string& path, int flags) const
    {
        return InConfined([&] { return ErrorOf(open(path.c_str(), flags, 0600)); });
    }

    // Where the kernel does not allow it, the other tests have nothing to look at.
    bool IsAllowed() const
    {
        return InConfined([] { return 0; }) == 0;
    }

    Runner::ConfinedTo to;
};

#define SKIP_WHERE_THE_KERNEL_DOES_NOT_ALLOW_IT()                                                                      \
    if (!IsAllowed())                                                                                                  \
    GTEST_SKIP() << "this kernel has no Landlock or no seccomp"

TEST_F(Confinement, OpensWhatItWasGivenAndNothingElse)
{
    SKIP_WHERE_THE_KERNEL_DOES_NOT_ALLOW_IT();
    EXPECT_EQ(OpenInConfined("/etc/passwd", O_RDONLY), EACCES);
    EXPECT_EQ(OpenInConfined("/proc/self/maps", O_RDONLY), EACCES);
    EXPECT_EQ(OpenInConfined(directory.Path("other"), O_RDONLY), EACCES);
    EXPECT_EQ(OpenInConfined(directory.Path("game/../other"), O_RDONLY), EACCES);
    EXPECT_EQ(OpenInConfined(directory.Path("new"), O_WRONLY | O_CREAT), EACCES);
    EXPECT_EQ(OpenInConfined(directory.Path("game/a.lua"), O_RDONLY), NOT_REFUSED);
    EXPECT_EQ(OpenInConfined(directory.Path("out/old"), O_RDWR), NOT_REFUSED);
    EXPECT_EQ(OpenInConfined(directory.Path("out/new"), O_WRONLY | O_CREAT), NOT_REFUSED);
}

TEST_F(Confinement, TheGameCannotBeWrittenNorEmptiedNorRemoved)
{
    SKIP_WHERE_THE_KERNEL_DOES_NOT_ALLOW_IT();
    const std::string game = directory.Path("game/a.lua");
    EXPECT_EQ(OpenInConfined(game, O_WRONLY), EACCES);
    EXPECT_NE(OpenInConfined(game, O_RDONLY | O_TRUNC), NOT_REFUSED);
    EXPECT_EQ(InConfined([&] { return ErrorOf(truncate(game.c_str(), 0)); }), EPERM);
    EXPECT_EQ(InConfined([&] { return ErrorOf(unlink(game.c_str())); }), EACCES);
    EXPECT_NE(InConfined([&] { return ErrorOf(rename(game.c_str(), directory.Path("out/b").c_str())); }), NOT_REFUSED);
    EXPECT_NE(InConfined([&] { return ErrorOf(link(game.c_str(), directory.Path("out/b").c_str())); }), NOT_REFUSED);
    EXPECT_NE(InConfined([&] { return ErrorOf(chmod(game.c_str(), 0777)); }), NOT_REFUSED);
    EXPECT_EQ(directory.Read("game/a.lua"), "text");
}

TEST_F(Confinement, ALinkInTheGameLeadsNowhere)
{
    SKIP_WHERE_THE_KERNEL_DOES_NOT_ALLOW_IT();
    std::filesystem::create_symlink("/etc/passwd", directory.Path("game/link"));
    EXPECT_EQ(OpenInConfined(directory.Path("game/link"), O_RDONLY), EACCES);
}

TEST_F(Confinement, ReachesNoNetwork)
{
    SKIP_WHERE_THE_KERNEL_DOES_NOT_ALLOW_IT();
    for (const int family : {AF_INET, AF_INET6, AF_UNIX, AF_NETLINK})
        EXPECT_EQ(InConfined([&] { return ErrorOf(socket(family, SOCK_STREAM, 0)); }), EPERM) << family;
    int pair[2];
    EXPECT_EQ(InConfined([&] { return ErrorOf(socketpair(AF_UNIX, SOCK_STREAM, 0, pair)); }), EPERM);
}

TEST_F(Confinement, StartsNoProgramAndNoProcess)
{
    SKIP_WHERE_THE_KERNEL_DOES_NOT_ALLOW_IT();
    char name[] = "/bin/true";
    char* const arguments[] = {name, nullptr};
    EXPECT_EQ(InConfined([&] { return ErrorOf(execv(name, arguments)); }), EPERM);
    for (const bool draws : {false, true})
    {
        to.draws = draws;
        EXPECT_NE(InConfined([] { return fork() == 0 ? NOT_REFUSED : errno; }), NOT_REFUSED) << draws;
    }
}

TEST_F(Confinement, TouchesNoOtherProcess)
{
    SKIP_WHERE_THE_KERNEL_DOES_NOT_ALLOW_IT();
    const pid_t parent = getpid();
    EXPECT_EQ(InConfined([&] { return ErrorOf(kill(parent, 0)); }), EPERM);
    EXPECT_EQ(InConfined([&] { return ErrorOf(ptrace(PTRACE_ATTACH, parent, nullptr, nullptr)); }), EPERM);
}

TEST_F(Confinement, WithoutDrawingItMakesNoCodeAndNoThread)
{
    SKIP_WHERE_THE_KERNEL_DOES_NOT_ALLOW_IT();
    const auto makeCode = []
    {
        void* const code = mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return code == MAP_FAILED ? errno : NOT_REFUSED;
    };
    const auto makeThread = []
    {
        pthread_t thread;
        const int error = pthread_create(
            &thread, nullptr, [](void*) -> void* { return nullptr; }, nullptr);
        return error == 0 ? NOT_REFUSED : error;
    };
    EXPECT_EQ(InConfined(makeCode), EPERM);
    EXPECT_NE(InConfined(makeThread), NOT_REFUSED);
    to.draws = true;
    EXPECT_EQ(InConfined(makeCode), NOT_REFUSED);
    EXPECT_EQ(InConfined(makeThread), NOT_REFUSED);
}

// ---- the program ----

// Draws, saves, asks for a picture, and uses the kit.
constexpr char GAME[] = R"(
    include('kit/camera_kit.lua')
    screen_set_size(64, 48)
    local o = object_add{ step = function(self) self.x = self.x + 1 end,
                          draw = function(self) draw_circle(self.x, 20, 5) end }
    room_add{ views = { [0] = { w = 64, h = 48 } }, create = function() instance_create(3, 0, o) end,
              draw_gui = function() if frame_number() == 3 then screenshot('asked.png') end end,
              step = function() if frame_number() == 5 then assert(game_save('kept.sav')) end end })";

class ConfinedProgram : public RunnerTest::CommandLine
{
protected:
    // Plays as a process of its own, since confinement cannot be taken back. LeakSanitizer watches from another
    // process.
    int PlayInProcess(const std::string& folder, const std::string& more)
    {
        std::filesystem::create_directories(directory.Path(folder));
        const std::string at = directory.Path(folder);
        const std::string command =
            "ASAN_OPTIONS=detect_leaks=0 " + std::string(RUNNER_PROGRAM) + " " + directory.Path("game/main.lua") +
            " --out " + at + " --frames 20 --instructions 400 --trace " + at + "/trace.txt --save-at 12 " + at +
            "/at.sav --record " + at + "/run.rec " + more + " > " + directory.Path("told") + " 2>&1";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    void SetUp() override
    {
        std::filesystem::create_directories(directory.Path("game"));
        directory.Write("game/main.lua", GAME);
    }

    void ExpectSameFiles(const std::string& first, const std::string& second)
    {
        size_t files = 0;
        for (const auto& entry : std::filesystem::directory_iterator(directory.Path(first)))
        {
            const std::string name = entry.path().filename().string();
            EXPECT_FALSE(directory.Read(first + "/" + name).empty()) << name;
            EXPECT_EQ(directory.Read(first + "/" + name), directory.Read(second + "/" + name)) << name;
            ++files;
        }
        EXPECT_GE(files, 4u); // trace, two saves, recording
    }

    bool IsAllowed()
    {
        const int status = PlayInProcess("try", "--no-draw --confined");
        const bool cannot = directory.Read("told").find("does not allow it") != std::string::npos;
        EXPECT_EQ(status, cannot ? 1 : 0) << directory.Read("told");
        return !cannot;
    }
};

TEST_F(ConfinedProgram, PlaysTracesSavesAndRecordsAsAnyOther)
{
    if (!IsAllowed())
        GTEST_SKIP();
    ASSERT_EQ(PlayInProcess("free", "--no-draw"), 0) << directory.Read("told");
    ASSERT_EQ(PlayInProcess("confined", "--no-draw --confined"), 0) << directory.Read("told");
    ExpectSameFiles("free", "confined");
}

#ifndef RUNNER_WITHOUT_DRAWING
TEST_F(ConfinedProgram, DrawsTheSamePictures)
{
    if (!IsAllowed())
        GTEST_SKIP();
    const std::string pictures = "--screenshot last.png --every 8";
    ASSERT_EQ(PlayInProcess("free", pictures), 0) << directory.Read("told");
    ASSERT_EQ(PlayInProcess("confined", pictures + " --confined"), 0) << directory.Read("told");
    EXPECT_FALSE(directory.Read("free/last.png").empty());
    EXPECT_FALSE(directory.Read("free/asked.png").empty());
    ExpectSameFiles("free", "confined");
}
#endif

TEST_F(ConfinedProgram, ReplaysAndLoads)
{
    if (!IsAllowed())
        GTEST_SKIP();
    std::filesystem::rename(directory.Path("try/run.rec"), directory.Path("run.rec"));
    std::filesystem::rename(directory.Path("try/at.sav"), directory.Path("at.sav"));
    const auto play = [&](const std::string& more)
    {
        const std::string command = "ASAN_OPTIONS=detect_leaks=0 " + std::string(RUNNER_PROGRAM) + " " +
                                    directory.Path("game/main.lua") + " --no-draw --confined --out " +
                                    directory.Path("out") + " " + more + " > " + directory.Path("told") + " 2>&1";
        return std::system(command.c_str());
    };
    EXPECT_EQ(play("--replay " + directory.Path("run.rec")), 0) << directory.Read("told");
    EXPECT_EQ(play("--frames 3 --load " + directory.Path("at.sav")), 0) << directory.Read("told");
}

TEST_F(ConfinedProgram, ALinkOutOfTheGameIsOneLine)
{
    if (!IsAllowed())
        GTEST_SKIP();
    directory.Write("secret.lua", "print('secret')");
    std::filesystem::create_symlink(directory.Path("secret.lua"), directory.Path("game/part.lua"));
    directory.Write("game/main.lua", "include('part.lua')");
    EXPECT_EQ(PlayInProcess("out", "--no-draw --confined --quiet"), 1);
    const std::string told = directory.Read("told");
    EXPECT_NE(told.find("Permission denied"), std::string::npos) << told;
    EXPECT_EQ(told.find("secret'"), std::string::npos) << told;
}

TEST_F(ConfinedProgram, AnEndlessGameEndsByALimitThatNobodyGave)
{
    if (!IsAllowed())
        GTEST_SKIP();
    directory.Write("game/main.lua", "while true do string.rep('x', 1000000) end");
    EXPECT_EQ(PlayInProcess("out", "--no-draw --confined --quiet"), 1);
    EXPECT_NE(directory.Read("told").find("it has run 400 million instructions"), std::string::npos)
        << directory.Read("told");
}

TEST_F(ConfinedProgram, ARecordingLiftsNoLimit)
{
    if (!IsAllowed())
        GTEST_SKIP();
    directory.Write("game/main.lua",
                    "room_add{ step = function() if frame_number() == 3 and STOP then while true do end end end }");
    ASSERT_EQ(PlayInProcess("out", "--no-draw"), 0) << directory.Read("told");
    std::filesystem::rename(directory.Path("out/run.rec"), directory.Path("run.rec")); // without a limit
    directory.Write(
        "game/main.lua",
        "STOP = true room_add{ step = function() if frame_number() == 3 and STOP then while true do end end end }");
    const std::string command =
        "ASAN_OPTIONS=detect_leaks=0 timeout 60 " + std::string(RUNNER_PROGRAM) + " " +
        directory.Path("game/main.lua") + " --no-draw --confined --instructions 2 --anyway --replay " +
        directory.Path("run.rec") + " --out " + directory.Path("out") + " > " + directory.Path("told") + " 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
    EXPECT_NE(directory.Read("told").find("it has run 2 million"), std::string::npos) << directory.Read("told");
}

// ---- the command line ----

TEST_F(ConfinedProgram, FilesOutsideOfTheSaveAreaAreRefused)
{
    for (const char* option : {"--trace", "--record", "--profile", "--settings"})
    {
        EXPECT_EQ(Play(GAME, {"--no-draw", "--confined", option, directory.Path("x")}), 1) << option;
        ExpectOneLine(err);
        EXPECT_NE(err.find("--confined writes into"), std::string::npos) << err;
        EXPECT_NE(err.find(option), std::string::npos) << err;
    }
    EXPECT_EQ(Play(GAME, {"--no-draw", "--confined", "--trace", directory.Path("out/../x")}), 1);
}

TEST_F(ConfinedProgram, IsForRunsWithoutAWindow)
{
    EXPECT_EQ(Play(GAME, {"--confined", "--window"}), 2);
    ExpectOneLine(err);
    EXPECT_NE(err.find("--confined is for runs without a window"), std::string::npos) << err;
}
} // namespace
#endif
