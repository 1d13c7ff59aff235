#pragma once
// Named actions, each with several bindings: "jump" is the space bar, the button A, or the left mouse button.

#include <string>
#include <string_view>
#include <vector>

namespace Runner
{
enum class InputPart
{
    KeyName,     // number: a key
    KeyPosition, // number: a key
    MouseButton,
    PadButton,
    PadAxis,
};

struct Binding
{
    InputPart part = InputPart::KeyName;
    int number = 0; // of the part, as Input_Names.h counts
    float sign = 1; // of an axis: the half that counts
};

struct Action
{
    std::string name;
    std::vector<Binding> bindings;
};

// A game's actions; a handful, so that they are searched from the first on.
class Actions
{
public:
    static constexpr size_t LIMIT = 256;

    // Takes the place of an action of the same name. False: there are LIMIT others already.
    bool Add(const Action& action);
    const Action* Find(std::string_view name) const; // null when there is none
    const std::vector<Action>& All() const { return m_actions; }

private:
    std::vector<Action> m_actions;
};
} // namespace Runner
