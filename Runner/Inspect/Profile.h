#pragma once
// Where a game's frames spend their time. The clock's values stay here: nothing of the game can see them.

#include "Runner/Game/Frame_Observer.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Runner
{
constexpr size_t PROFILE_FRAMES = 300; // that are kept, the last ones

// What of a frame, in nanoseconds. An event's time is in its part's as well; of nested events each has its own whole
// time.
struct ProfileFrame
{
    int64_t whole = 0;
    std::array<int64_t, FRAME_PARTS> parts = {};
    std::map<std::pair<std::string, std::string>, std::pair<int64_t, int>> events; // owner, event: time, calls
};

// One event of all instances of an object, over the frames that are kept.
struct DearEvent
{
    std::string owner, event;
    double milliseconds; // a frame, on the average over all frames
    double calls;        // a frame
};

struct ProfileContent
{
    size_t frames = 0;
    double whole = 0.0, longest = 0.0; // milliseconds: a frame's mean, and the longest frame
    std::array<double, FRAME_PARTS> parts = {};
    double rest = 0.0;              // of the mean, in no part
    std::vector<DearEvent> dearest; // at most five, the dearest first
};

const char* NameOf(FramePart part);

class Profile : public FrameObserver
{
public:
    using Clock = int64_t (*)(); // nanoseconds from some start on; never goes back
    static int64_t SteadyClock();

    explicit Profile(Clock clock = SteadyClock) : m_clock(clock) {}

    void FrameBegins(const Game& game) override;
    void FrameEnded(const Game& game) override;
    void PartBegins(FramePart part) override;
    void PartEnded(FramePart part) override;
    bool WantsEvents() const override { return true; }
    void EventBegins(const std::string& owner, const char* event) override;
    void EventEnded() override;

    ProfileContent Content() const; // of the frames that have ended
    std::string Text() const;       // the same as lines

private:
    struct OpenEvent
    {
        std::string owner, event;
        int64_t start;
    };

    const Clock m_clock;
    std::vector<ProfileFrame> m_frames; // a ring buffer once it is full
    size_t m_next = 0;                  // where the next frame goes
    ProfileFrame m_now;
    int64_t m_frameStart = 0;
    std::array<int64_t, FRAME_PARTS> m_partStart = {};
    std::vector<OpenEvent> m_open;
};

// Tells several observers in turn: the inspector and the profile watch the same game.
class Watchers : public FrameObserver
{
public:
    void Add(FrameObserver& observer) { m_all.push_back(&observer); } // kept, not owned
    bool IsEmpty() const { return m_all.empty(); }

    void FrameBegins(const Game& game) override;
    void FrameEnded(const Game& game) override;
    void UpdateBegins(const CCamera& camera) override;
    void UpdateEnded(const CCamera& camera) override;
    void ViewIsDrawn(const Game& game, const DrawnView& view) override;
    void PartBegins(FramePart part) override;
    void PartEnded(FramePart part) override;
    bool WantsEvents() const override;
    void EventBegins(const std::string& owner, const char* event) override;
    void EventEnded() override;

private:
    std::vector<FrameObserver*> m_all;
};
} // namespace Runner
