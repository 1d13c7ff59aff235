#pragma once
// Who watches a game play: the inspector and the profile. An observer is told what happens and changes nothing; a game
// with one plays exactly as a game without.

#include "Runner/Draw/Port.h"

#include <string>
#include <vector>

class CCamera;

namespace Runner
{
class Instance;
class Game;

// What a frame's time goes to. Events and callbacks run inside of their part.
enum class FramePart
{
    Step,      // the room's and the instances' step events, and a change of the room
    Cameras,   // callbacks, following, matrices
    Draw,      // draw events and the culling before them
    Painting,  // from the batch to the driver, at the end of the frame
    Collector, // the host's and, by its own steps, the scripts'
};
constexpr int FRAME_PARTS = 5;

// A view that is being drawn: its camera has been applied.
struct DrawnView
{
    int view;                            // NO_VIEW for the default camera
    int camera;                          // identifier
    int surface;                         // drawn into, SCREEN_SURFACE for the screen
    Port port;                           // on the picture's screen, or all of the surface
    const std::vector<Instance*>& drawn; // in the order of drawing
};

class FrameObserver
{
public:
    virtual ~FrameObserver() = default;

    virtual void FrameBegins(const Game& /*game*/) {}
    virtual void FrameEnded(const Game& /*game*/) {} // whole, or cut short by a failure

    // Around CCamera::CameraUpdate. The camera may be gone after it: the second is then left out.
    virtual void UpdateBegins(const CCamera& /*camera*/) {}
    virtual void UpdateEnded(const CCamera& /*camera*/) {}

    // Once the view's instances are found, before the first is drawn.
    virtual void ViewIsDrawn(const Game& /*game*/, const DrawnView& /*view*/) {}

    // Around a part, which may come several times a frame; and around an event or callback, which may be nested in a
    // part and in each other. owner: "object player", "room cave", "camera 3"; event: "step".
    virtual void PartBegins(FramePart /*part*/) {}
    virtual void PartEnded(FramePart /*part*/) {}
    virtual bool WantsEvents() const { return false; } // false: the two below are not called
    virtual void EventBegins(const std::string& /*owner*/, const char* /*event*/) {}
    virtual void EventEnded() {}
};

// Tells the observer of a part from its construction to its destruction. observer: may be null.
class PartScope
{
public:
    PartScope(FrameObserver* observer, FramePart part) : m_observer(observer), m_part(part)
    {
        if (m_observer != nullptr)
            m_observer->PartBegins(m_part);
    }
    ~PartScope()
    {
        if (m_observer != nullptr)
            m_observer->PartEnded(m_part);
    }
    PartScope(const PartScope&) = delete;
    PartScope& operator=(const PartScope&) = delete;

private:
    FrameObserver* const m_observer;
    const FramePart m_part;
};

// Tells the observer of an event or callback from its construction to its destruction.
class EventScope
{
public:
    EventScope(FrameObserver* observer, const char* kind, const std::string& name, const char* event)
        : m_observer(observer != nullptr && observer->WantsEvents() ? observer : nullptr)
    {
        if (m_observer != nullptr)
            m_observer->EventBegins(std::string(kind) + " " + name, event);
    }
    ~EventScope()
    {
        if (m_observer != nullptr)
            m_observer->EventEnded();
    }
    EventScope(const EventScope&) = delete;
    EventScope& operator=(const EventScope&) = delete;

private:
    FrameObserver* const m_observer;
};
} // namespace Runner
