// Each request for memory of a run is refused in turn. The run may go on without what it did not get, or end with one
// line and a status. A signal, silence, a report of a sanitizer, a block or an open file left behind is a failure.

#include "Runner/Base/Settings.h"
#include "Runner/Save/Saved_State.h"
#include "Tests/Faults/Fault_Run.h"
#include "Tests/Faults/Refused_Memory.h"

#include <new>

using namespace Faults;

namespace
{
constexpr int64_t TRIED = 12; // of each scenario, unless FAULTS says otherwise

class RefusedMemory : public FaultTest
{
protected:
    RefusedMemory() { Keep(); }

    // status: of the undisturbed run.
    void RefuseEach(const std::vector<std::string>& arguments, Refusal refusal, int status) const
    {
        const RunResult undisturbed = Run(arguments, [] {});
        ASSERT_EQ(undisturbed.status, status) << undisturbed.err;
        ASSERT_GT(undisturbed.requests, 10);
        Tally tally;
        for (const int64_t n : Sample(undisturbed.requests, TRIED))
        {
            const RunResult result = Run(arguments, [n, refusal] { RefuseMemory(n, refusal); });
            EXPECT_EQ(WrongWith(result, undisturbed), "") << "request " << n;
            tally.Count(result.status != status);
        }
        tally.Print(refusal == Refusal::Once ? "one refused" : "all from one on");
    }

    void RefuseEach(const std::vector<std::string>& arguments, int status = 0) const
    {
        RunHere(arguments);
        RefuseEach(arguments, Refusal::Once, status);
        RefuseEach(arguments, Refusal::FromThen, status);
    }
};

TEST_F(RefusedMemory, WhileAGameIsPlayedSavedAndRecorded) { RefuseEach(PLAYING); }

TEST_F(RefusedMemory, WhileARecordingIsReplayed) { RefuseEach(REPLAYING); }

TEST_F(RefusedMemory, WhileASavedGameGoesOn) { RefuseEach(LOADING); }

TEST_F(RefusedMemory, WhileSavesAreCompared) { RefuseEach(COMPARING_SAVES, 1); }

TEST_F(RefusedMemory, WhileAScriptFails)
{
    directory.Write("fails.lua", R"(
        local function deep(n) if n == 0 then error({ n }) end return deep(n - 1) + 1 end
        room_add{ step = function() if frame_number() == 2 then deep(5) end end })");
    RefuseEach({"fails.lua", "--no-draw", "--quiet", "--out", "out"}, 1);
}

TEST_F(RefusedMemory, WhileACallbackFails)
{
    directory.Write("fails.lua", R"(
        room_add{ views = { [0] = {} }, create = function()
            camera_set_begin_script(view_get_camera(0), function() camera_set_view_pos(0, "left", {}) end)
        end })");
    RefuseEach({"fails.lua", "--no-draw", "--quiet", "--out", "out"}, 1);
}

TEST_F(RefusedMemory, WhileOptionsAreRead)
{
    const std::string longName(100, 'n'); // no text of this length fits into a string's own bytes
    RefuseEach({longName, "--out", longName, "--save-at", "3", longName, "--seed", "7", "--size", "640x480", "--frames",
                longName},
               2);
    RefuseEach({"--" + longName}, 2);
    RefuseEach({"--help"});
}

TEST_F(RefusedMemory, WhileANewGameIsMade)
{
    const RunResult made = Run({"--new", "hero"}, [] {});
    EXPECT_EQ(made.status, 0);
    for (const int64_t n : Sample(made.requests, made.requests))
    {
        std::filesystem::remove_all(directory.Path("hero"));
        const RunResult result = Run({"--new", "hero"}, [n] { RefuseMemory(n); });
        EXPECT_EQ(WrongWith(result, made), "") << "request " << n;
        const bool isThere = std::filesystem::exists(directory.Path("hero")); // it may be made, and the line not
        EXPECT_TRUE(isThere || result.status != 0) << "request " << n;
        EXPECT_EQ(isThere, std::filesystem::exists(directory.Path("hero/hero.lua"))) << "request " << n;
    }
}

template <typename Value> void RefuseACopy()
{
    const Value text = Runner::HeldText(100, 't'); // no text of this length fits into a string's own bytes
    RefuseMemory(0);
    EXPECT_THROW({ const Value copy(text); }, std::bad_alloc);
    Value target = true;
    RefuseMemory(0);
    EXPECT_THROW(target = text, std::bad_alloc);
    RefuseMemory(-1);
    EXPECT_EQ(std::get<Runner::HeldText>(text), std::string(100, 't'));
    target = text;
    EXPECT_EQ(std::get<Runner::HeldText>(target), std::string(100, 't'));
}

TEST(RefusedText, OfASettingOrASavedValueDestroysNothingThatWasNotCopied)
{
    RefuseACopy<Runner::Setting>();
    RefuseACopy<Runner::SavedKey>();
    RefuseACopy<Runner::SavedValue>();
}

#ifndef RUNNER_WITHOUT_DRAWING
TEST_F(RefusedMemory, WhileAGameIsDrawn)
{
    RefuseEach({"main.lua", "--frames", "6", "--check", "--quiet", "--out", "out", "--contact-sheet", "sheet.png",
                "--inspect"},
               Refusal::Once, 0);
}
#endif
} // namespace
