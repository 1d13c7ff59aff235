#include "Fuzz/Program_Writer.h"

#include "Runner/Api/Api.h"
#include "Runner/Api/Argument_Meanings.h"
#include "Runner/Lua/Bridge.h"

namespace Fuzz
{
namespace
{
constexpr int STATEMENTS_MOST = 80; // of a program
constexpr int DEPTH_MOST = 4;

// What a program starts with: v holds what calls have answered, by the name of what it is.
constexpr char PROLOGUE[] = R"(local v = { camera = 1, instance = 100000, surface = 0, map = 0, sprite = 0, script = 0 }
local function try(name, kind, f, ...)
    local good, result = pcall(f, ...)
    if good and kind and result ~= nil and result ~= -1 then v[kind] = result end
    return result
end
v.sprite = sprite_add_sheet("tiles.png", 16, 16)
)";

// What a function's answer is used for, by the function's name.
struct Maker
{
    const char* function;
    const char* kind;
};
constexpr Maker MAKERS[] = {
    {"camera_create", "camera"},     {"camera_create_view", "camera"}, {"view_get_camera", "camera"},
    {"instance_create", "instance"}, {"instance_get", "instance"},     {"surface_create", "surface"},
    {"script_add", "script"},        {"tilemap_add", "map"},           {"sprite_add", "sprite"},
    {"sprite_add_sheet", "sprite"},
};

// Fields of the functions that take a table. Any function gets any of them: a wrong one is refused, which is a path,
// too.
constexpr const char* FIELDS[] = {
    "name",       "parent",     "sprite",      "bbox",    "depth",   "visible", "solid",  "cull",    "width",
    "height",     "views",      "columns",     "rows",    "data",    "keys",    "mouse",  "buttons", "axes",
    "instances",  "create",     "step",        "draw",    "destroy", "load",    "target", "objects", "draw_gui",
    "background", "tile_width", "tile_height", "x",       "y",       "w",       "h",      "xport",   "yport",
    "wport",      "hport",      "hborder",     "vborder", "hspeed",  "vspeed",
};

constexpr const char* TEXTS[] = {"\"space\"",     "\"left\"",     "\"left_x\"", "\"a\"",           "\"jump\"",
                                 "\"tiles.png\"", "\"slot.sav\"", "\"png\"",    "\"field\"",       "\"\"",
                                 "\"../x\"",      "\"a\\0b\"",    "\"\\xFF\"",  "(\"x\"):rep(300)"};

constexpr const char* NUMBERS[] = {
    "0",    "1",    "-1",   "0.5",  "-0.0",     "2",      "7",        "8",    "16",         "90",
    "640",  "1e3",  "1e9",  "1e39", "-1e39",    "1e308",  "1e-40",    "0/0",  "1/0",        "-1/0",
    "2^31", "2^53", "2^63", "-7.5", "16777217", "100000", "100001.0", "8192", "2147483647", "math.mininteger"};

constexpr const char* INSTANCE_FIELDS_OF_SELF[] = {"x",      "y",     "sprite",  "frame", "angle",
                                                   "xscale", "depth", "visible", "age"};

std::string Quoted(const char* name) { return '"' + std::string(name) + '"'; }

std::vector<Runner::Signature> ListOfFunctions()
{
    std::vector<Runner::Signature> functions = Runner::ApiSignatures();
    for (Runner::Signature& builtin : Runner::BuiltinSignatures())
        functions.push_back(std::move(builtin));
    return functions;
}

const std::vector<Runner::Signature>& AllFunctions()
{
    static const std::vector<Runner::Signature> functions = ListOfFunctions();
    return functions;
}

const char* KindMadeBy(const std::string& function)
{
    for (const Maker& maker : MAKERS)
        if (function == maker.function)
            return maker.kind;
    return nullptr;
}

const char* KindOfArgument(const std::string& name)
{
    for (const Runner::ArgumentMeaning& meaning : Runner::ARGUMENT_MEANINGS)
        if (name == meaning.name)
            return meaning.kind;
    return "a number";
}
} // namespace

ProgramWriter::ProgramWriter(Choices& choices) : m_choices(choices), m_functions(AllFunctions()) {}

std::string ProgramWriter::Write()
{
    m_text = PROLOGUE;
    for (size_t i = 1 + m_choices.Below(2); i > 0; --i)
        Object();
    for (size_t i = 1 + m_choices.Below(2); i > 0; --i)
        Room();
    return m_text;
}

// ---- the game's parts ----

void ProgramWriter::Object()
{
    Line("object_add{ " + std::string(m_choices.OneIn(2) ? "sprite = v.sprite," : "bbox = {-4, -4, 4, 4},"));
    for (const char* event : {"create", "step", "draw", "destroy"})
        if (m_choices.OneIn(2))
            Event(event, "self");
    Line("}");
}

void ProgramWriter::Room()
{
    Line("room_add{ width = 640, height = 480, instances = { {0, 10, 20}, {0, 300, 200} },");
    Views();
    for (const char* event : {"create", "step", "draw", "draw_gui", "load"})
        if (m_choices.OneIn(2))
            Event(event, "");
    Line("}");
}

void ProgramWriter::Views()
{
    Line("views = { [0] = { w = 320, h = 240, hborder = 40, target = 0 },");
    for (const char* view : {"1", "7"})
    {
        const size_t width = m_choices.Below(400), xport = m_choices.Below(300);
        if (m_choices.OneIn(3))
            Line("[" + std::string(view) + "] = { w = " + std::to_string(1 + width) +
                 ", h = 100, xport = " + std::to_string(xport) + " },");
    }
    Line("},");
}

void ProgramWriter::Event(const char* name, const char* parameter)
{
    Line(std::string(name) + " = function(" + parameter + ")");
    Body(1 + static_cast<int>(m_choices.Below(6)));
    Line("end,");
}

// ---- statements ----

void ProgramWriter::Body(int statements)
{
    ++m_depth;
    for (int i = 0; i < statements && m_statements < STATEMENTS_MOST; ++i)
        Statement();
    --m_depth;
}

void ProgramWriter::Statement()
{
    ++m_statements;
    const size_t kind = m_choices.Below(24);
    if (kind == 0 && m_depth < DEPTH_MOST)
        Loop();
    else if (kind == 1 && m_depth < DEPTH_MOST)
        Coroutine();
    else if (kind <= 3)
        Store();
    else
        Call();
}

void ProgramWriter::Call()
{
    const Runner::Signature& function = m_functions[m_choices.Below(m_functions.size())];
    const size_t named = function.arguments.size();
    const size_t least = static_cast<size_t>(function.least);
    const size_t count = m_choices.OneIn(16) ? m_choices.Below(20) : least + m_choices.Below(named - least + 1);
    const char* kind = KindMadeBy(function.name);
    std::string arguments;
    for (size_t i = 0; i < count; ++i)
        arguments += ", " + Expression(i < named ? function.arguments[i] : "");
    if (m_choices.OneIn(40)) // an error ends the game
        return Line(std::string(function.name) + "(" + (arguments.empty() ? "" : arguments.substr(2)) + ")");
    Line("try(" + Quoted(function.name) + ", " + (kind == nullptr ? "nil" : Quoted(kind)) + ", " + function.name +
         arguments + ")");
}

void ProgramWriter::Loop()
{
    Line("for i = 1, " + std::to_string(1 + m_choices.Below(4)) + " do");
    Body(2);
    Line("end");
}

void ProgramWriter::Coroutine()
{
    Line("try(\"\", nil, coroutine.wrap(function()");
    Body(2);
    Line("coroutine.yield()");
    Line("end))");
}

void ProgramWriter::Store()
{
    const std::string value = Wild();
    if (m_choices.OneIn(2))
        return Line("vars." + std::string(m_choices.Of(INSTANCE_FIELDS_OF_SELF)) + " = " + value);
    Line("try(\"\", nil, function() instance_get(v.instance)." + std::string(m_choices.Of(INSTANCE_FIELDS_OF_SELF)) +
         " = " + value + " end)");
}

// ---- expressions ----

std::string ProgramWriter::Expression(const char* argument)
{
    const std::string name = argument;
    if (m_choices.OneIn(12))
        return Wild();
    if (name == "script" || name == "function")
        return m_choices.OneIn(5) ? "-1" : m_choices.OneIn(4) ? "v.script" : Function();
    for (const char* kind : {"camera", "instance", "surface", "map", "sprite"})
        if (name == kind)
            return m_choices.OneIn(5) ? Whole() : "v." + name;
    if (name == "target" || name == "object" || name == "room" || name == "view")
        return std::to_string(m_choices.Below(4));
    return OfKind(KindOfArgument(name));
}

std::string ProgramWriter::OfKind(const std::string& kind)
{
    if (kind == "a string" || kind == "a string or a whole number" || kind == "a string or a number")
        return m_choices.Of(TEXTS);
    if (kind == "a table of 16 numbers")
        return Matrix();
    if (kind == "a table")
        return Table();
    if (kind == "true or false")
        return m_choices.OneIn(2) ? "true" : "false";
    return kind == "a whole number" ? Whole() : Number();
}

std::string ProgramWriter::Wild()
{
    switch (m_choices.Below(9))
    {
    case 0: return "nil";
    case 1: return m_choices.Of(TEXTS);
    case 2: return "{}";
    case 3: return "true";
    case 4: return "print";
    case 5: return "setmetatable({}, { __index = function() error(\"asked\") end })";
    case 6: return Table();
    case 7: return "coroutine.create(function() end)";
    default: return Number();
    }
}

std::string ProgramWriter::Number()
{
    return m_choices.OneIn(2) ? m_choices.Of(NUMBERS) : std::to_string(m_choices.Bits<int16_t>());
}

std::string ProgramWriter::Whole()
{
    return m_choices.OneIn(8) ? m_choices.Of(NUMBERS) : std::to_string(static_cast<int>(m_choices.Below(20)) - 2);
}

std::string ProgramWriter::Function()
{
    if (m_depth >= DEPTH_MOST)
        return "function() return " + Number() + " end";
    std::string outer;
    outer.swap(m_text);
    Body(1 + static_cast<int>(m_choices.Below(3)));
    outer.swap(m_text);
    return "function()\n" + outer + "end";
}

std::string ProgramWriter::Matrix()
{
    if (m_choices.OneIn(2))
        return "matrix_ortho(" + Number() + ", 240, 0, 1000)";
    std::string entries;
    const size_t count = m_choices.OneIn(6) ? m_choices.Below(20) : 16;
    for (size_t i = 0; i < count; ++i)
        entries += Number() + ",";
    return "{" + entries + "}";
}

std::string ProgramWriter::Table()
{
    if (m_depth >= DEPTH_MOST)
        return "{}";
    ++m_depth;
    std::string fields;
    for (size_t i = m_choices.Below(5); i > 0; --i)
    {
        const char* field = m_choices.Of(FIELDS);
        fields += std::string(field) + " = " +
                  (m_choices.OneIn(6)   ? Wild()
                   : m_choices.OneIn(3) ? Function()
                                        : Number()) +
                  ", ";
    }
    --m_depth;
    return "{ " + fields + "}";
}
} // namespace Fuzz
