#include "Runner/Input/Input_Script.h"

#include "Runner/Base/Printable.h"
#include "Runner/Input/Input_Names.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace Runner
{
namespace
{
using Words = std::vector<std::string>;

constexpr float AXIS_MOST = 32767.0f;

template <typename Set> void Clear(Switches<Set>& switches) { switches.pressed = switches.released = Set(); }

void Press(std::bitset<KEY_COUNT>& set, int number, bool on) { set.set(static_cast<size_t>(number), on); }

void Press(uint32_t& set, int number, bool on)
{
    const uint32_t bit = uint32_t{1} << static_cast<unsigned>(number);
    set = on ? set | bit : set & ~bit;
}

// how: "down", "up" or "tap".
template <typename Set> bool Switch(Switches<Set>& switches, int number, const std::string& how)
{
    if (number == NO_NAME || (how != "down" && how != "up" && how != "tap"))
        return false;
    Press(switches.held, number, how == "down");
    if (how != "up")
        Press(switches.pressed, number, true);
    if (how != "down")
        Press(switches.released, number, true);
    return true;
}

bool ReadWhole(const std::string& text, int low, int high, int& number)
{
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end && number >= low && number <= high;
}

bool ReadNumber(const std::string& text, float low, float high, float& number)
{
    char* stop = nullptr;
    number = std::strtof(text.c_str(), &stop);
    return !text.empty() && *stop == '\0' && number >= low && number <= high;
}

// ---- each kind of event: false when its words do not fit; words start behind the kind ----

bool TakeKey(const Words& words, InputFrame& frame)
{
    const int key = words.size() == 2 ? FindKey(words[0]) : NO_NAME;
    return key != NO_NAME && Switch(frame.positions, key, words[1]) && Switch(frame.names, key, words[1]);
}

bool TakeMouse(const Words& words, InputFrame& frame)
{
    return words.size() == 2 && ReadNumber(words[0], -POINTER_FAR, POINTER_FAR, frame.mouse.x) &&
           ReadNumber(words[1], -POINTER_FAR, POINTER_FAR, frame.mouse.y);
}

bool TakeButton(const Words& words, InputFrame& frame)
{
    return words.size() == 2 && Switch(frame.mouse.buttons, FindMouseButton(words[0]), words[1]);
}

bool TakeWheel(const Words& words, InputFrame& frame)
{
    return words.size() == 2 && ReadWhole(words[0], -1000, 1000, frame.mouse.wheelX) &&
           ReadWhole(words[1], -1000, 1000, frame.mouse.wheelY);
}

bool TakeAxis(const Words& words, PadFrame& pad)
{
    const int axis = FindPadAxis(words[2]);
    float way = 0.0f;
    if (axis == NO_NAME || !ReadNumber(words[3], -1.0f, 1.0f, way))
        return false;
    pad.axes[static_cast<size_t>(axis)] = static_cast<int16_t>(std::floor(way * AXIS_MOST + 0.5f));
    return true;
}

bool TakePad(const Words& words, InputFrame& frame)
{
    int number = 0;
    if (words.size() < 2 || !ReadWhole(words[0], 0, PAD_COUNT - 1, number))
        return false;
    PadFrame& pad = frame.pads[static_cast<size_t>(number)];
    const bool isOn = words[1] == "on";
    if (words.size() == 2 && (isOn || words[1] == "off"))
    {
        pad = PadFrame();
        pad.connected = isOn;
        return true;
    }
    if (words.size() != 4 || !pad.connected)
        return false;
    return words[1] == "button" ? Switch(pad.buttons, FindPadButton(words[2]), words[3])
                                : words[1] == "axis" && TakeAxis(words, pad);
}

struct Kind
{
    const char* name;
    bool (*take)(const Words& words, InputFrame& frame);
    const char* shape;
};

constexpr Kind KINDS[] = {
    {"key", TakeKey, "key NAME down|up|tap, with a key's name as scripts have it"},
    {"mouse", TakeMouse, "mouse X Y"},
    {"button", TakeButton, "button left|middle|right|side1|side2 down|up|tap"},
    {"wheel", TakeWheel, "wheel X Y, in whole notches"},
    {"pad", TakePad,
     "pad NUMBER on|off, or of one that is on: pad NUMBER button NAME down|up|tap, pad NUMBER axis NAME "
     "VALUE"},
};

// What lasts for one frame only is gone in the next.
void ClearMoments(InputFrame& frame)
{
    Clear(frame.positions);
    Clear(frame.names);
    Clear(frame.mouse.buttons);
    frame.mouse.wheelX = frame.mouse.wheelY = 0;
    for (PadFrame& pad : frame.pads)
        Clear(pad.buttons);
    frame.text.clear();
}

Words WordsOf(const std::string& line)
{
    std::istringstream text(line.substr(0, line.find('#')));
    Words words;
    for (std::string word; text >> word;)
        words.push_back(word);
    return words;
}
} // namespace

bool InputScript::Apply(const Event& event, InputFrame& frame, std::string& why)
{
    if (event.words[1] == "text")
    {
        frame.text = event.rest.substr(0, TEXT_BYTES_LIMIT);
        return true;
    }
    for (const Kind& kind : KINDS)
    {
        if (event.words[1] != kind.name)
            continue;
        if (kind.take({event.words.begin() + 2, event.words.end()}, frame))
            return true;
        why = std::string("write FRAME ") + kind.shape;
        return false;
    }
    why = "\"" + Printable(event.words[1]) + "\" is none of key, mouse, button, wheel, pad, text";
    return false;
}

bool InputScript::Read(const std::string& text, const std::string& name, std::string& why)
{
    std::istringstream lines(text);
    InputFrame tried;
    int number = 0;
    for (std::string line; std::getline(lines, line);)
    {
        ++number;
        Event event;
        event.words = WordsOf(line);
        if (event.words.empty())
            continue;
        const int first = m_events.empty() ? 0 : m_events.back().frame;
        if (event.words.size() < 2 || !ReadWhole(event.words[0], first, INT32_MAX, event.frame))
            why = "a line is FRAME EVENT, and no frame is smaller than the one before";
        const size_t kind = why.empty() ? line.find("text ") : std::string::npos;
        event.rest = kind == std::string::npos ? "" : line.substr(kind + 5);
        if (!why.empty() || !Apply(event, tried, why))
        {
            why.insert(0, PrintableName(name) + ":" + std::to_string(number) + ": ");
            return false;
        }
        m_events.push_back(std::move(event));
    }
    return true;
}

bool InputScript::Next(InputFrame& frame)
{
    ClearMoments(m_now);
    std::string ignored; // Read has tried them all
    for (; m_done < m_events.size() && m_events[m_done].frame == m_next; ++m_done)
        Apply(m_events[m_done], m_now, ignored);
    ++m_next;
    frame = m_now;
    return true;
}
} // namespace Runner
