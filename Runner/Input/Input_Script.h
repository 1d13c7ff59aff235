#pragma once
// Input from a text file: a run without a window that is played all the same. One event a line, in the order of their
// frames, which count from 0; what follows a # is a comment.
//
//   FRAME key NAME down|up|tap              tap: pressed and released within the frame
//   FRAME mouse X Y                         in units of the game's screen
//   FRAME button NAME down|up|tap           of the mouse
//   FRAME wheel X Y                         notches
//   FRAME text WORDS                        up to the end of the line
//   FRAME pad NUMBER on|off
//   FRAME pad NUMBER button NAME down|up|tap
//   FRAME pad NUMBER axis NAME VALUE        -1 to 1

#include "Runner/Input/Input_Source.h"

#include <string>
#include <vector>

namespace Runner
{
class InputScript : public InputSource
{
public:
    // Reads the whole text. False, and why in one line: name and line of the file, what is wrong, what is right.
    bool Read(const std::string& text, const std::string& name, std::string& why);

    bool Next(InputFrame& frame) override; // never ends: after the last event everything stays as it is

private:
    struct Event
    {
        int frame = 0;
        std::vector<std::string> words;
        std::string rest; // of the line, behind the second word
    };

    static bool Apply(const Event& event, InputFrame& frame, std::string& why);

    std::vector<Event> m_events;
    size_t m_done = 0; // events
    int m_next = 0;    // frame
    InputFrame m_now;
};
} // namespace Runner
