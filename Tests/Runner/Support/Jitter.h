#pragma once
// How steadily cameras show what they follow: a target moves along random paths through a game whose eight views follow
// it in eight ways, and where it stands on the screen is computed from the module's matrices in double precision.

#include <cstdint>
#include <string>
#include <vector>

namespace RunnerTest
{
// What a way of following promises.
struct JitterStyle
{
    const char* name;
    bool keepsInPlace;   // the target, where it moves at a constant speed outside of the dead zone
    double deadX, deadY; // half of the dead zone, room units
    double acceleration; // the stated bound of the camera's change of speed in a frame; 0: none is stated
};

// Greatest values over all frames, in pixels of the screen; acceleration in room units a frame.
struct JitterFigures
{
    int64_t keptFrames = 0;   // in which a settled camera must keep the target in place
    double kept = 0.0;        // its change from frame to frame then
    int64_t steadyFrames = 0; // in which target and camera rest or move steadily
    double step = 0.0;        // the change of its step then
    int64_t alternations = 0; // three changes one after the other of changing sign, each larger than the tolerance
    double acceleration = 0.0;
};

enum class JitterBatch
{
    Smooth,
    Snapped, // to whole pixels; the target is drawn at its snapped place
    Plain    // no kit: what most tutorials show
};

const std::vector<JitterStyle>& StylesOf(JitterBatch batch);

struct JitterRun
{
    JitterBatch batch = JitterBatch::Smooth;
    uint64_t firstSeed = 1;
    int paths = 0;
    int frames = 300; // of each path
    int together = 8; // styles that follow each path; fewer take turns, and each follows so many paths fewer
};

// Plays the paths in rooms of three sizes, up to 32,768 units. Answers the figures of each style; empty, and why in one
// line, when the game fails.
std::vector<JitterFigures> MeasureJitter(const JitterRun& run, std::string& why);

// ---- what is allowed ----
constexpr double KEPT_TOLERANCE = 0.01;        // pixels; exactly nothing when snapped
constexpr double STEP_TOLERANCE = 0.01;        // pixels; one when snapped
constexpr double ALTERNATION_TOLERANCE = 0.05; // pixels; none when snapped

// Why the figures break what the style promises, in one line; empty when they keep it.
std::string JitterBroken(JitterBatch batch, const JitterStyle& style, const JitterFigures& figures);
} // namespace RunnerTest
