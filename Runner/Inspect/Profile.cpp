#include "Runner/Inspect/Profile.h"

#include <algorithm>
#include <cstdio>

namespace Runner
{
namespace
{
constexpr double PER_MILLISECOND = 1e-6; // nanoseconds
constexpr size_t DEAREST = 5;
constexpr const char* PART_NAMES[FRAME_PARTS] = {"step events", "cameras and callbacks", "draw events", "painting",
                                                 "collector"};

size_t IndexOf(FramePart part) { return static_cast<size_t>(part); }

using EventTimes = std::map<std::pair<std::string, std::string>, std::pair<int64_t, int>>;

EventTimes SumOf(const std::vector<ProfileFrame>& frames)
{
    EventTimes sum;
    for (const ProfileFrame& frame : frames)
        for (const auto& [name, cost] : frame.events)
        {
            sum[name].first += cost.first;
            sum[name].second += cost.second;
        }
    return sum;
}

std::vector<DearEvent> DearestOf(const EventTimes& times, double frames)
{
    std::vector<DearEvent> events;
    for (const auto& [name, cost] : times)
        events.push_back({name.first, name.second, static_cast<double>(cost.first) * PER_MILLISECOND / frames,
                          static_cast<double>(cost.second) / frames});
    std::stable_sort(events.begin(), events.end(),
                     [](const DearEvent& a, const DearEvent& b) { return a.milliseconds > b.milliseconds; });
    events.resize(std::min(events.size(), DEAREST));
    return events;
}

void AddLine(const char* name, double milliseconds, const char* more, std::string& text)
{
    char line[160];
    std::snprintf(line, sizeof line, "%-40.60s %9.3f ms%s\n", name, milliseconds, more);
    text += line;
}
} // namespace

const char* NameOf(FramePart part) { return PART_NAMES[IndexOf(part)]; }

int64_t Profile::SteadyClock()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

void Profile::FrameBegins(const Game& /*game*/)
{
    m_now = ProfileFrame();
    m_open.clear();
    m_frameStart = m_clock();
}

void Profile::FrameEnded(const Game& /*game*/)
{
    m_now.whole = m_clock() - m_frameStart;
    if (m_frames.size() < PROFILE_FRAMES)
        m_frames.push_back(std::move(m_now));
    else
        m_frames[m_next] = std::move(m_now);
    m_next = (m_next + 1) % PROFILE_FRAMES;
    m_now = ProfileFrame();
}

void Profile::PartBegins(FramePart part) { m_partStart[IndexOf(part)] = m_clock(); }

void Profile::PartEnded(FramePart part) { m_now.parts[IndexOf(part)] += m_clock() - m_partStart[IndexOf(part)]; }

void Profile::EventBegins(const std::string& owner, const char* event) { m_open.push_back({owner, event, m_clock()}); }

void Profile::EventEnded()
{
    if (m_open.empty())
        return;
    const OpenEvent& open = m_open.back();
    std::pair<int64_t, int>& cost = m_now.events[{open.owner, open.event}];
    cost.first += m_clock() - open.start;
    ++cost.second;
    m_open.pop_back();
}

ProfileContent Profile::Content() const
{
    ProfileContent content;
    content.frames = m_frames.size();
    if (m_frames.empty())
        return content;
    const auto frames = static_cast<double>(m_frames.size());
    for (const ProfileFrame& frame : m_frames)
    {
        const double whole = static_cast<double>(frame.whole) * PER_MILLISECOND;
        content.whole += whole / frames;
        content.longest = std::max(content.longest, whole);
        for (size_t part = 0; part < FRAME_PARTS; ++part)
            content.parts[part] += static_cast<double>(frame.parts[part]) * PER_MILLISECOND / frames;
    }
    content.rest = content.whole;
    for (const double part : content.parts)
        content.rest -= part;
    content.dearest = DearestOf(SumOf(m_frames), frames);
    return content;
}

std::string Profile::Text() const
{
    const ProfileContent content = Content();
    std::string text = "the last " + std::to_string(content.frames) + " frames, milliseconds a frame\n";
    AddLine("a frame", content.whole, "", text);
    AddLine("the longest frame", content.longest, "", text);
    for (int part = 0; part < FRAME_PARTS; ++part)
        AddLine(NameOf(static_cast<FramePart>(part)), content.parts[static_cast<size_t>(part)], "", text);
    AddLine("the rest", content.rest, "", text);
    text += "the dearest events, which their parts contain\n";
    for (const DearEvent& event : content.dearest)
    {
        char calls[48];
        std::snprintf(calls, sizeof calls, "  %.1f calls", event.calls);
        AddLine((event.owner + ": " + event.event).c_str(), event.milliseconds, calls, text);
    }
    return text;
}

// ---- several ----

void Watchers::FrameBegins(const Game& game)
{
    for (FrameObserver* each : m_all)
        each->FrameBegins(game);
}

void Watchers::FrameEnded(const Game& game)
{
    for (FrameObserver* each : m_all)
        each->FrameEnded(game);
}

void Watchers::UpdateBegins(const CCamera& camera)
{
    for (FrameObserver* each : m_all)
        each->UpdateBegins(camera);
}

void Watchers::UpdateEnded(const CCamera& camera)
{
    for (FrameObserver* each : m_all)
        each->UpdateEnded(camera);
}

void Watchers::ViewIsDrawn(const Game& game, const DrawnView& view)
{
    for (FrameObserver* each : m_all)
        each->ViewIsDrawn(game, view);
}

void Watchers::PartBegins(FramePart part)
{
    for (FrameObserver* each : m_all)
        each->PartBegins(part);
}

void Watchers::PartEnded(FramePart part)
{
    for (FrameObserver* each : m_all)
        each->PartEnded(part);
}

bool Watchers::WantsEvents() const
{
    return std::any_of(m_all.begin(), m_all.end(), [](const FrameObserver* each) { return each->WantsEvents(); });
}

void Watchers::EventBegins(const std::string& owner, const char* event)
{
    for (FrameObserver* each : m_all)
        each->EventBegins(owner, event);
}

void Watchers::EventEnded()
{
    for (FrameObserver* each : m_all)
        each->EventEnded();
}
} // namespace Runner
