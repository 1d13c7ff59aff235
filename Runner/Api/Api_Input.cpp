#include "Runner/Api/Api_Functions.h"
#include "Runner/Base/Printable.h"
#include "Runner/Game/Game.h"
#include "Runner/Input/Input_Names.h"

namespace Runner
{
namespace
{
using PartQuestion = bool (Input::*)(const Binding&, int) const;
using ActionQuestion = bool (Input::*)(const Action&, int) const;

// ---- names: each reader answers NO_NAME, or the part ----

constexpr char POSITION_MARK = '@'; // before the name of a key that is meant by its place

Binding KeyPart(const std::string& name)
{
    const bool isPlace = name.size() > 1 && name[0] == POSITION_MARK;
    return {isPlace ? InputPart::KeyPosition : InputPart::KeyName, FindKey(isPlace ? name.substr(1) : name)};
}

Binding MousePart(const std::string& name) { return {InputPart::MouseButton, FindMouseButton(name)}; }

Binding ButtonPart(const std::string& name) { return {InputPart::PadButton, FindPadButton(name)}; }

// "left_x+": the half of an axis to the right or downwards.
Binding AxisPart(const std::string& name)
{
    const char sign = name.empty() ? ' ' : name.back();
    const int axis = FindPadAxis(name.substr(0, name.size() - (name.empty() ? 0 : 1)));
    return {InputPart::PadAxis, sign == '+' || sign == '-' ? axis : NO_NAME, sign == '-' ? -1.0f : 1.0f};
}

// What a list of names in action_add, or an argument, can hold.
struct PartKind
{
    const char* field;
    const char* wanted;
    Binding (*read)(const std::string& name);
};

constexpr PartKind KEYS = {"keys", "is the name of a key, such as \"space\" or, by its place, \"@w\"", KeyPart};
constexpr PartKind MOUSE = {"mouse", "is a mouse button: \"left\", \"middle\", \"right\", \"side1\", \"side2\"",
                            MousePart};
constexpr PartKind BUTTONS = {"buttons", "is a gamepad's button, such as \"a\", \"start\" or \"dpad_left\"",
                              ButtonPart};
constexpr PartKind AXES = {"axes", "is half of a gamepad's axis, such as \"left_x+\" or \"right_trigger+\"", AxisPart};

Binding PartArgument(const Arguments& call, int i, const PartKind& kind)
{
    const Binding part = kind.read(call.Text(i));
    if (part.number == NO_NAME)
        call.FailArgument(i, std::string(kind.wanted) + ", got " + DescribeAt(call.L, i));
    return part;
}

int PadArgument(const Arguments& call, int i)
{
    const int pad = call.Whole(i);
    if (pad < 0 || pad >= PAD_COUNT)
        call.FailArgument(i, "is a gamepad, 0 to " + std::to_string(PAD_COUNT - 1) + ", got " + DescribeAt(call.L, i));
    return pad;
}

// ---- keyboard and text ----

template <PartQuestion question> int AskKey(Arguments& call)
{
    return call.Return((call.game.input.*question)(PartArgument(call, 1, KEYS), ANY_PAD));
}

int TextTyped(Arguments& call) { return call.Return(call.game.input.Frame().text); }

// ---- mouse ----

const MouseFrame& Mouse(const Arguments& call) { return call.game.input.Frame().mouse; }

int MouseX(Arguments& call) { return call.Return(static_cast<double>(Mouse(call).x)); }
int MouseY(Arguments& call) { return call.Return(static_cast<double>(Mouse(call).y)); }
int MouseWheelX(Arguments& call) { return call.Return(Mouse(call).wheelX); }
int MouseWheelY(Arguments& call) { return call.Return(Mouse(call).wheelY); }

template <PartQuestion question> int AskMouse(Arguments& call)
{
    return call.Return((call.game.input.*question)(PartArgument(call, 1, MOUSE), ANY_PAD));
}

// ---- gamepads ----

int PadConnected(Arguments& call)
{
    return call.Return(call.game.input.Frame().pads[static_cast<size_t>(PadArgument(call, 1))].connected);
}

template <PartQuestion question> int AskPad(Arguments& call)
{
    const int pad = PadArgument(call, 1);
    return call.Return((call.game.input.*question)(PartArgument(call, 2, BUTTONS), pad));
}

int PadAxis(Arguments& call)
{
    const int pad = PadArgument(call, 1);
    const int axis = FindPadAxis(call.Text(2));
    if (axis == NO_NAME)
        call.FailArgument(2,
                          "is a gamepad's axis, such as \"left_x\" or \"right_trigger\", got " + DescribeAt(call.L, 2));
    return call.Return(static_cast<double>(call.game.input.Axis(pad, axis)));
}

int PadSetDeadZone(Arguments& call)
{
    constexpr float MOST = 0.95f;
    const float part = call.Float(1);
    if (part < 0.0f || part > MOST)
        call.FailArgument(1, "is 0 to 0.95, got " + DescribeAt(call.L, 1));
    call.game.input.SetDeadZone(part);
    return 0;
}

// ---- actions ----

void ReadBindings(const Arguments& call, Fields& fields, const PartKind& kind, Action& action)
{
    if (!fields.PushTable(kind.field))
        return;
    const auto count = static_cast<lua_Integer>(lua_rawlen(call.L, -1));
    for (lua_Integer i = 1; i <= count; ++i)
    {
        const std::string where = std::string(kind.field) + "[" + std::to_string(i) + "]";
        lua_rawgeti(call.L, -1, i);
        const std::string name = PopEntry(fields, call.L, where, TextAt);
        const Binding part = kind.read(name);
        if (part.number == NO_NAME)
            fields.Fail(where, std::string(kind.wanted) + ", got the string \"" + Printable(name) + "\"");
        action.bindings.push_back(part);
    }
    lua_pop(call.L, 1);
}

int ActionAdd(Arguments& call)
{
    call.Table(1);
    Fields fields(call, 1);
    Action action;
    action.name = fields.Text("name", "");
    if (action.name.empty())
        fields.Fail("name", "is missing: an action needs one");
    for (const PartKind& kind : {KEYS, MOUSE, BUTTONS, AXES})
        ReadBindings(call, fields, kind, action);
    fields.Finish();
    if (!call.game.input.actions.Add(action))
        call.Fail("there are " + std::to_string(Actions::LIMIT) + " actions already");
    return 0;
}

// What is asked of an action: both arguments are read before the action is looked up.
struct ActionCall
{
    const Action& action;
    int pad;
};

ActionCall ReadActionCall(const Arguments& call)
{
    const std::string name = call.Text(1);
    const int pad = call.Has(2) ? PadArgument(call, 2) : ANY_PAD;
    const Action* const action = call.game.input.actions.Find(name);
    if (action == nullptr)
        call.FailArgument(1, "is an action that action_add has made, got " + DescribeAt(call.L, 1));
    return {*action, pad};
}

template <ActionQuestion question> int AskAction(Arguments& call)
{
    const ActionCall asked = ReadActionCall(call);
    return call.Return((call.game.input.*question)(asked.action, asked.pad));
}

int ActionValue(Arguments& call)
{
    const ActionCall asked = ReadActionCall(call);
    return call.Return(static_cast<double>(call.game.input.Value(asked.action, asked.pad)));
}

constexpr ApiFunction FUNCTIONS[] = {
    {"key_down", 1, {"key"}, AskKey<&Input::Down>},
    {"key_pressed", 1, {"key"}, AskKey<&Input::Pressed>},
    {"key_released", 1, {"key"}, AskKey<&Input::Released>},
    {"text_typed", 0, {}, TextTyped},
    {"mouse_x", 0, {}, MouseX},
    {"mouse_y", 0, {}, MouseY},
    {"mouse_down", 1, {"mouse_button"}, AskMouse<&Input::Down>},
    {"mouse_pressed", 1, {"mouse_button"}, AskMouse<&Input::Pressed>},
    {"mouse_released", 1, {"mouse_button"}, AskMouse<&Input::Released>},
    {"mouse_wheel", 0, {}, MouseWheelY},
    {"mouse_wheel_x", 0, {}, MouseWheelX},
    {"pad_connected", 1, {"pad"}, PadConnected},
    {"pad_axis", 2, {"pad", "axis"}, PadAxis},
    {"pad_down", 2, {"pad", "button"}, AskPad<&Input::Down>},
    {"pad_pressed", 2, {"pad", "button"}, AskPad<&Input::Pressed>},
    {"pad_released", 2, {"pad", "button"}, AskPad<&Input::Released>},
    {"pad_set_dead_zone", 1, {"part"}, PadSetDeadZone},
    {"action_add", 1, {FIELDS_ARGUMENT}, ActionAdd},
    {"action_down", 1, {"action", "pad"}, AskAction<&Input::Down>},
    {"action_pressed", 1, {"action", "pad"}, AskAction<&Input::Pressed>},
    {"action_released", 1, {"action", "pad"}, AskAction<&Input::Released>},
    {"action_value", 1, {"action", "pad"}, ActionValue},
};
} // namespace

ApiTable InputApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
