// Each operation on a file of a run fails in turn: as on a full disk, with an error of the device, interrupted, and
// short. The run goes on and leaves what it would have left, or it ends with one line and a status; what was there
// before is then whole.

#include "Runner/Base/Settings.h"
#include "Runner/Save/Save_File.h"
#include "Tests/Faults/Failing_Files.h"
#include "Tests/Faults/Fault_Run.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <map>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Faults;

namespace
{
constexpr int64_t TRIED = 1; // of each kind and error, unless FAULTS says otherwise

using Files = std::map<std::string, std::string>;

class FailingFiles : public FaultTest
{
protected:
    FailingFiles() { Keep(); }

    // The content of all files of the test's directory.
    Files All() const
    {
        Files all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory.Path("")))
            if (entry.is_regular_file())
            {
                const std::string name = entry.path().lexically_relative(directory.Path("")).string();
                all[name] = directory.Read(name);
            }
        return all;
    }

    void Restore(const Files& files) const
    {
        for (const auto& entry : std::filesystem::directory_iterator(directory.Path("")))
            std::filesystem::remove_all(entry.path());
        for (const auto& [name, content] : files)
        {
            std::filesystem::create_directories(std::filesystem::path(directory.Path(name)).parent_path());
            directory.Write(name, content);
        }
    }

    struct Undisturbed
    {
        RunResult result;
        Files before, after; // what it has found and left
    };

    Undisturbed RunUndisturbed(const std::vector<std::string>& arguments, int status) const
    {
        Undisturbed run;
        run.before = All();
        if (!Draws(arguments))
            RunHere(arguments);
        Restore(run.before);
        run.result = Run(arguments, [] {});
        run.after = All();
        EXPECT_EQ(run.result.status, status) << run.result.err;
        return run;
    }

    void Judge(const RunResult& result, const Undisturbed& run, bool isRemoving) const
    {
        const Files &before = run.before, &after = run.after;
        EXPECT_EQ(WrongWith(result, run.result), "");
        for (const auto& [name, content] : All())
        {
            const bool isTemporary = std::filesystem::path(name).extension() == ".part";
            EXPECT_TRUE(!isTemporary || isRemoving) << name << " is left over";
            if (isTemporary || IsWrittenAsItGoes(name))
                continue;
            const auto was = before.find(name);
            if (was == before.end() || was->second != content)
            {
                EXPECT_TRUE(IsWhole(name, content)) << name << " is cut or damaged: " << content.size() << " bytes";
            }
        }
        const Files left = All();
        for (const auto& entry : before)
            EXPECT_EQ(left.count(entry.first), 1u) << entry.first << " is lost";
        if (result.status != run.result.status || result.out != run.result.out)
            return;
        for (const auto& [name, content] : after) // nobody was told of anything
        {
            EXPECT_EQ(left.count(name), 1u) << name << " was not made, and nobody was told";
            if (left.count(name) == 1 && !HasTimes(name))
            {
                EXPECT_TRUE(left.at(name) == content) << name << " is another one, and nobody was told";
            }
        }
    }

    static bool Draws(const std::vector<std::string>& arguments)
    {
        return arguments[0] == "main.lua" &&
               std::find(arguments.begin(), arguments.end(), "--no-draw") == arguments.end();
    }

    static bool HasTimes(const std::string& name) { return name == "profile.txt"; }
    static bool IsWrittenAsItGoes(const std::string& name) { return name == "trace.txt" || name == "run.rec"; }

    // By what the file itself says.
    static bool IsWhole(const std::string& name, const std::string& content)
    {
        const std::vector<uint8_t> bytes(content.begin(), content.end());
        const std::string end = std::filesystem::path(name).extension();
        std::string why;
        Runner::SavedState state;
        Runner::Settings settings;
        if (end == ".sav")
            return Runner::DecodeState(bytes, state, why);
        if (end == ".png")
            return content.size() > 8 && content.compare(content.size() - 8, 4, "IEND") == 0;
        if (end == ".bmp")
            return bytes.size() > 6 && bytes[2] + bytes[3] * 256u + bytes[4] * 65536u == bytes.size();
        if (name == "settings.txt")
            return Runner::ParseSettings(content, settings, why);
        return true;
    }

    struct Error
    {
        int number;
        bool isLasting;
    };

    // Whether the run ended for it.
    bool FailAt(const std::vector<std::string>& arguments, const Undisturbed& run, FileCall call, int64_t n,
                const Error& error) const
    {
        SCOPED_TRACE(std::string(NameOf(call)) + " " + std::to_string(n) + ", error " + std::to_string(error.number) +
                     (error.isLasting ? " from then on" : ""));
        Restore(run.before);
        const RunResult result = Run(arguments, [&] { FailFile(call, n, error.number, error.isLasting); });
        Judge(result, run, call == FileCall::Remove);
        return result.status != run.result.status;
    }

    void FailEach(const std::vector<std::string>& arguments, int status = 0) const
    {
        // Those of the suite come first. A full disk, and one that has been mounted anew to be read only, stay so.
        constexpr Error ERRORS[] = {{ENOSPC, true}, {SHORT, false},  {EIO, false},
                                    {EROFS, true},  {ENOSPC, false}, {EINTR, false}};
        const Error* const end = std::getenv("FAULTS") != nullptr ? std::end(ERRORS) : ERRORS + 2;
        const Undisturbed run = RunUndisturbed(arguments, status);
        for (size_t kind = 0; kind < run.result.calls.size(); ++kind)
        {
            const auto call = static_cast<FileCall>(kind);
            Tally tally;
            for (const Error* error = ERRORS; error != end; ++error)
                for (const int64_t n : Sample(run.result.calls[kind], TRIED))
                    tally.Count(FailAt(arguments, run, call, n, *error));
            tally.Print(NameOf(call));
        }
    }
};

TEST_F(FailingFiles, WhileAGameIsPlayedSavedAndRecorded) { FailEach(PLAYING); }

TEST_F(FailingFiles, WhileARecordingIsReplayed) { FailEach(REPLAYING); }

TEST_F(FailingFiles, WhileASavedGameGoesOn) { FailEach(LOADING); }

TEST_F(FailingFiles, WhileSavesAreCompared) { FailEach(COMPARING_SAVES, 1); }

// As a file system that is mounted to be read only, and as another user's folder. Root may write into every folder, so
// it gives its rights away.
TEST_F(FailingFiles, ASaveAreaThatMayOnlyBeReadIsToldAndStaysAsItIs)
{
    const std::vector<std::string> play = {"main.lua", "--frames", "9",     "--no-draw",
                                           "--check",  "--quiet",  "--out", "out"};
    const auto asAnother = []
    {
        constexpr uid_t NOBODY = 65534;
        if (geteuid() == 0 && (setuid(NOBODY) != 0 || prctl(PR_SET_DUMPABLE, 1) != 0)) // its own /proc stays readable
            std::abort();
    };
    ASSERT_EQ(RunHere(play), 0);
    const Files before = All();
    std::filesystem::permissions(directory.Path(""), std::filesystem::perms(0755));
    std::filesystem::permissions("out", std::filesystem::perms(0555));
    const RunResult played = Run(play, asAnother);
    EXPECT_EQ(played.status, 0) << played.err;
    EXPECT_NE(played.out.find("cannot make out/slot.sav: Permission denied\n"), std::string::npos) << played.out;
    EXPECT_NE(played.out.find("cannot make out/autosave_1.sav: Permission denied\n"), std::string::npos);
#ifndef RUNNER_WITHOUT_DRAWING
    const RunResult drawn = Run({"main.lua", "--frames", "1", "--out", "out"}, asAnother);
    EXPECT_EQ(drawn.status, 1);
    EXPECT_EQ(drawn.err, "runner: cannot write into the directory out: Permission denied\n");
#endif
    std::filesystem::permissions("out", std::filesystem::perms(0755));
    EXPECT_EQ(All(), before);
}

// The user's limit on the sizes of files, which the system enforces by a signal: what is written beyond is refused.
TEST_F(FailingFiles, BeyondTheLimitOnSizes)
{
    const Undisturbed run = RunUndisturbed(PLAYING, 0);
    int ended = 0;
    for (const rlim_t bytes : {600, 900, 1200, 1500, 2000})
    {
        SCOPED_TRACE(bytes);
        Restore(run.before);
        const RunResult result = Run(PLAYING,
                                     [bytes]
                                     {
                                         const rlimit limit = {bytes, bytes};
                                         setrlimit(RLIMIT_FSIZE, &limit);
                                     });
        Judge(result, run, false);
        ended += result.status != 0 ? 1 : 0;
    }
    EXPECT_GT(ended, 0);
}

// What was recorded before the disk was full is played again.
TEST_F(FailingFiles, ARecordingOnADiskThatFillsKeepsItsBeginning)
{
    directory.Write("plain.lua", "room_add{ views = { [0] = {} } }");
    const std::vector<std::string> record = {"plain.lua", "--frames", "300", "--no-draw", "--record", "run.rec"};
    const RunResult undisturbed = Run(record, [] {});
    ASSERT_EQ(undisturbed.status, 0) << undisturbed.err;
    const int64_t flushes = undisturbed.calls[static_cast<size_t>(FileCall::Flush)];
    ASSERT_GT(flushes, 4);
    for (int64_t n = 1; n < flushes; ++n)
    {
        const RunResult result = Run(record, [n] { FailFile(FileCall::Flush, n, ENOSPC, true); });
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "runner: cannot write run.rec: No space left on device; the recording stops there\n");
        const RunResult replayed = Run({"plain.lua", "--no-draw", "--replay", "run.rec"}, [] {});
        EXPECT_EQ(replayed.status, 0);
        const std::string left = "its first " + std::to_string(60 * n) + " frames are played\n";
        const bool isWhole = n == flushes - 1; // only the operation has failed: the end has arrived
        EXPECT_TRUE(isWhole ? replayed.err.empty() : replayed.err.find(left) != std::string::npos) << replayed.err;
    }
}

TEST_F(FailingFiles, WhileANewGameIsMade) { FailEach({"--new", "hero"}); }

#ifndef RUNNER_WITHOUT_DRAWING
TEST_F(FailingFiles, WhilePicturesAreWritten)
{
    FailEach({"main.lua", "--frames", "6", "--quiet", "--out", "out", "--contact-sheet", "sheet.bmp", "--screenshot",
              "last.png"});
}
#endif
} // namespace
