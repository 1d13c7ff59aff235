// Docs/Built_Ins.md.
#include "Tools/Script_Documents.h"

#include "Runner/Lua/Bridge.h"
#include "Tools/Built_In_Notes.h"

namespace
{
constexpr char HEAD[] = R"(# The 47 built-ins

Made by `script_documents` from the module's table of functions; do not edit by hand. [Cameras.md](Cameras.md) shows in
pictures what they do together, [Script_API.md](Script_API.md) has all other functions.

- Room units: the room's coordinates, x to the right, y downwards. Screen units: those of `draw_gui`. Angles: degrees.
- In the examples, `camera` is a camera as `view_get_camera(0)` gives it, and `player` an object or an instance.
- A camera that does not exist is never an error: getters answer -1 and setters do nothing.
- An error ends the game, unless `pcall` catches it, with one line: the script's file and line, then the text below. An
  argument of another kind is one, too: `camera_set_view_pos: argument 2 (x) is a number, got the string "left"`.
- Under each function stands a game that shows what it does, to be played with `runner Docs/Examples/NAME.lua --window`. All
  of them share the scene of [field.lua](Examples/field.lua).
)";

struct Group
{
    const char* first; // the built-in before which the heading stands
    const char* heading;
};

constexpr Group GROUPS[] = {
    {"camera_create", "Making, choosing, destroying"},
    {"camera_set_view_mat", "Setting a camera"},
    {"camera_get_view_mat", "Asking a camera"},
    {"view_get_camera", "Asking a view"},
    {"view_set_camera", "Setting a view"},
};

bool Is(const char* a, const char* b) { return std::string_view(a) == b; }

bool StartsWith(const char* text, const char* start) { return std::string_view(text).rfind(start, 0) == 0; }

std::string Code(const std::string& text) { return "`" + text + "`"; }

const char* KindWords(eArgument kind)
{
    switch (kind)
    {
    case eArgument_Number: return "a number";
    case eArgument_Flag: return "true or false";
    case eArgument_Camera: return "a camera's number";
    case eArgument_View: return "a number, 0 to 7";
    case eArgument_Instance: return "an object, an instance or -1";
    case eArgument_Surface: return "a surface or -1";
    case eArgument_Matrix: return "a table of 16 numbers";
    case eArgument_Script: return "a function, a number of `script_add`, or -1";
    }
    return "";
}

const ArgumentDefault* DefaultOf(const char* argument)
{
    for (const ArgumentDefault& row : ARGUMENT_DEFAULTS)
        if (Is(row.name, argument))
            return &row;
    return nullptr;
}

// Whether the last arguments are a property, which has a value before the first call.
bool SetsAProperty(const KvSignature& function)
{
    return StartsWith(function.name, "camera_set_view") || StartsWith(function.name, "view_set_") ||
           Is(function.name, "camera_set_proj_mat") ||
           std::string_view(function.name).find("_script") != std::string::npos;
}

std::string DefaultText(const KvSignature& function, int i)
{
    const KvArgument& argument = function.arguments[i];
    if (i >= function.least)
        return std::string("left out: ") + DefaultOf(argument.name)->leftOut;
    if (argument.kind == eArgument_Camera && StartsWith(function.name, "view_set_"))
        return "at first: its own for the views that `room_add` lists, -1 for the others";
    const bool isProperty = SetsAProperty(function) && i > 0;
    return isProperty ? std::string("at first: ") + DefaultOf(argument.name)->atFirst : "must be given";
}

std::string ArgumentTable(const KvSignature& function)
{
    if (function.count == 0)
        return "";
    std::string table = "\n| Argument | Kind | Meaning and unit | Default |\n|---|---|---|---|\n";
    for (int i = 0; i < function.count; ++i)
    {
        const KvArgument& argument = function.arguments[i];
        table += "| " + Code(argument.name) + " | " + KindWords(argument.kind) + " | " + argument.meaning + " | " +
                 DefaultText(function, i) + " |\n";
    }
    return table;
}

std::string ResultText(const KvSignature& function)
{
    const bool isGetter = StartsWith(function.name, "camera_get_") && function.count > 0;
    const std::string missing = isGetter ? "; -1 for a camera that does not exist" : "";
    if (*function.result.name == '\0')
        return StartsWith(function.name, "view_") || Is(function.name, "camera_set_default") ? "nothing" : "-1";
    if (Is(function.result.name, "visible"))
        return "1 or 0: whether the view is drawn";
    if (function.result.kind == eArgument_Camera)
        return std::string("the camera's number") + (StartsWith(function.name, "camera_create") ? "" : "; -1 for none");
    return function.result.meaning + missing;
}

std::string CountError(const KvSignature& function, const Runner::Signature& names)
{
    if (Is(function.name, "camera_get_active") || Is(function.name, "camera_get_default"))
        return "";
    const int got = function.least > 0 ? function.least - 1 : 1;
    const char* text = Is(function.name, "camera_create")        ? "() - doesn't take any arguments "
                       : Is(function.name, "camera_create_view") ? "() - must have at least 4 arguments "
                                                                 : "() - wrong number of arguments ";
    return Code(function.name + std::string(text) + names.Wanted(got));
}

std::string ErrorsOf(const KvSignature& function, const Runner::Signature& names)
{
    std::string errors = CountError(function, names);
    if (StartsWith(function.name, "view_"))
        errors += ", " + Code(function.name + std::string("() - there is no view 8; views are 0 to 7")) + ", " +
                  Code(function.name + std::string("() - no room is running"));
    const eArgument last = function.count > 0 ? function.arguments[function.count - 1].kind : eArgument_Number;
    if (last == eArgument_Matrix) // both setters report in one name
        errors += ", " + Code("camera_set_view_mat() - array invalid (has it been created properly?)") + ", " +
                  Code("camera_set_view_mat() - must be 16 entries in array");
    if (last == eArgument_Script)
        errors += ", " + Code(function.name + std::string(" :: invalid script reference"));
    return errors.empty() ? "none" : errors;
}

// The line that names the example in the repository, and that the manual's site replaces by the game itself.
std::string PlayLine(const char* name)
{
    const std::string file = std::string("Examples/") + name + ".lua";
    return "\nTo play: [" + file + "](" + file + ")\n";
}

std::string Entry(const KvSignature& function, const Runner::Signature& names, const BuiltInNote& note)
{
    std::string entry = "\n### " + std::string(function.name) + "\n\n" + Code(names.Text());
    if (*function.result.name != '\0')
        entry.insert(entry.size() - 1, " -> " + std::string(function.result.name));
    entry += std::string(": ") + note.does + "\n" + ArgumentTable(function) + "\n- Result: " + ResultText(function) +
             ".\n- Errors: " + ErrorsOf(function, names) + ".\n\n```lua\n" + note.example + "\n```\n" +
             PlayLine(function.name);
    return entry;
}
} // namespace

std::string BuiltInsPage()
{
    std::string page = HEAD;
    const std::vector<Runner::Signature> signatures = Runner::BuiltinSignatures();
    for (size_t i = 0; i < signatures.size(); ++i)
    {
        const KvSignature& function = KvArguments::SIGNATURES[i];
        for (const Group& group : GROUPS)
            if (Is(group.first, function.name))
                page += "\n## " + std::string(group.heading) + "\n";
        page += Entry(function, signatures[i], BUILT_IN_NOTES[i]);
    }
    return page;
}
