// What Docs/Built_Ins.md and Docs/api.lua say of functions, held against what the functions do.
#include "Tests/Runner/Support/Documents.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <map>
#include <set>

namespace
{
using RunnerTest::Document;

class ScriptDocuments : public RunnerTest::GameTest
{
protected:
    // A room of two views and a player, in which the statements are played as the draw event of its first frame.
    std::string PlayInRoom(const std::string& statements)
    {
        return Play("player = object_add{ name = 'player' } room_add{ instances = { {player, 10, 20} },\n"
                    "views = { [0] = { target = player }, [1] = {} }, draw = function()\n"
                    "camera = view_get_camera(0)\n" +
                    statements + "\nend }");
    }
};

// A part of a text between two marks; from: where to look, and where to look on.
std::string Between(const std::string& text, const std::string& open, const std::string& close, size_t& from)
{
    const size_t begin = text.find(open, from);
    const size_t end = begin == std::string::npos ? begin : text.find(close, begin + open.size());
    from = end == std::string::npos ? text.size() : end;
    return end == std::string::npos ? "" : text.substr(begin + open.size(), end - begin - open.size());
}

struct Entry
{
    std::string name, text, example;
};

std::vector<Entry> Entries(const std::string& page)
{
    std::vector<Entry> entries;
    for (size_t at = page.find("\n### "); at != std::string::npos;)
    {
        const size_t next = page.find("\n### ", at + 1);
        const std::string text = page.substr(at + 5, next - at - 5);
        size_t from = 0;
        entries.push_back({text.substr(0, text.find('\n')), text, Between(text, "```lua\n", "```", from)});
        at = next;
    }
    return entries;
}

TEST_F(ScriptDocuments, EveryExampleOfTheBuiltInsPageRunsAndCallsItsFunction)
{
    const std::vector<Entry> entries = Entries(Document("Built_Ins.md"));
    EXPECT_EQ(entries.size(), 47u);
    for (const Entry& entry : entries)
    {
        EXPECT_NE(entry.example.find(entry.name + "("), std::string::npos) << entry.text;
        EXPECT_EQ(PlayInRoom(entry.example), "") << entry.name;
        EXPECT_EQ(PlayOn(2), "") << entry.name << ", in later frames";
    }
}

// The text of a failure, without the place.
std::string Text(const std::string& failure) { return failure.substr(failure.find(' ') + 1); }

TEST_F(ScriptDocuments, ErrorsOfTheBuiltInsPageComeAsShown)
{
    const std::map<std::string, const char*> least = {{"camera_create_view", "1, 2, 3"}, {"camera_create", "1"}};
    for (const Entry& entry : Entries(Document("Built_Ins.md")))
    {
        const bool hasNone = entry.text.find("- Errors: none.") != std::string::npos;
        const auto found = least.find(entry.name);
        const bool isSetter = entry.text.find(" (2 wanted") != std::string::npos;
        const bool isPair = entry.text.find(" (3 wanted") != std::string::npos;
        const char* const arguments = found != least.end() ? found->second : isPair ? "0, 1" : isSetter ? "0" : "";
        const std::string failure = PlayInRoom(entry.name + "(" + (hasNone ? "1, 2, 3" : arguments) + ")");
        const bool isShown = entry.text.find("`" + Text(failure) + "`") != std::string::npos;
        EXPECT_TRUE(hasNone ? failure.empty() : isShown) << failure << "\n" << entry.text;
    }
}

// The texts that name neither a wrong count nor a wrong kind.
TEST_F(ScriptDocuments, OtherErrorsOfTheBuiltInsPageComeAsShown)
{
    int seen = 0;
    for (const Entry& entry : Entries(Document("Built_Ins.md")))
    {
        const auto expect = [&](const std::string& shown, const std::string& failure)
        {
            EXPECT_NE(entry.text.find("`" + shown), std::string::npos) << entry.text;
            EXPECT_EQ(Text(failure).rfind(shown, 0), 0u) << failure;
            ++seen;
        };
        const std::string more = entry.name.rfind("view_set", 0) == 0 ? ", 1)" : ")";
        if (entry.name.rfind("view_", 0) == 0)
        {
            expect(entry.name + "() - there is no view 8; views are 0 to 7", PlayInRoom(entry.name + "(8" + more));
            expect(entry.name + "() - no room is running", Play(entry.name + "(0" + more));
        }
        if (entry.name.find("_mat") != std::string::npos && entry.name.find("_set_") != std::string::npos)
        {
            expect("camera_set_view_mat() - array invalid (has it been created properly?)",
                   PlayInRoom(entry.name + "(camera, 0)"));
            expect("camera_set_view_mat() - must be 16 entries in array", PlayInRoom(entry.name + "(camera, {1})"));
        }
        if (entry.name.find("_script") != std::string::npos && entry.name.find("_set_") != std::string::npos)
            expect(entry.name + " :: invalid script reference", PlayInRoom(entry.name + "(camera, 'x')"));
    }
    EXPECT_EQ(seen, 14 * 2 + 2 * 2 + 3);
}

TEST_F(ScriptDocuments, DefaultsOfTheBuiltInsPageAreThoseOfNewCamerasAndViews)
{
    EXPECT_EQ(
        Play("screen_set_size(640, 360) room_add{ views = { [0] = {} }, draw = function()\n"
             "local function is(camera, size, speed, height)\n"
             "  for name, value in pairs{ view_x = 0, view_y = 0, view_width = size, view_height = height,\n"
             "      view_speed_x = speed, view_speed_y = speed, view_border_x = 0, view_border_y = 0, view_angle = 0,\n"
             "      view_target = -1, begin_script = -1, end_script = -1, update_script = -1 } do\n"
             "    local got = _G['camera_get_' .. name](camera)\n"
             "    assert(got == value, name .. ' is ' .. got .. ', not ' .. value)\n"
             "  end\n"
             "end\n"
             "is(view_get_camera(0), 640, -1, 360) is(camera_create_view(0, 0, 7, 5), 7, -1, 5)\n"
             "is(camera_create(), 0, 0, 0)\n"
             "local m = camera_get_view_mat(camera_create()) assert(m[1] == 1 and m[11] == 1 and m[15] == 0)\n"
             "assert(camera_get_proj_mat(view_get_camera(0))[1] == matrix_ortho(640, 360, 0, 32000)[1])\n"
             "for view = 0, 1 do\n"
             "  local listed = view == 0\n"
             "  assert(view_get_visible(view) == (listed and 1 or 0) and (view_get_camera(view) == -1) == not listed)\n"
             "  assert(view_get_xport(view) == 0 and view_get_yport(view) == 0 and view_get_surface_id(view) == -1)\n"
             "  assert(view_get_wport(view) == (listed and 640 or 0) and view_get_hport(view) == (listed and 360 or "
             "0))\n"
             "end end }"),
        "");
}

TEST_F(ScriptDocuments, ResultsOfTheBuiltInsPageAreWhatCallsAnswer)
{
    for (const Entry& entry : Entries(Document("Built_Ins.md")))
    {
        size_t from = 0;
        const std::string result = Between(entry.text, "- Result: ", ".\n", from);
        const bool isCall = entry.example.rfind("local ", 0) != 0;
        ASSERT_EQ(isCall, result == "-1" || result == "nothing") << entry.text;
        const std::string call =
            isCall ? "(" + entry.example + ") == " + (result == "-1" ? "-1" : "nil") : entry.name + "(999) == -1";
        if (isCall || result.find("-1 for a camera that does not exist") != std::string::npos)
        {
            EXPECT_EQ(PlayInRoom("assert(" + call + ")"), "") << entry.name;
        }
    }
}

// ---- annotations ----

TEST_F(ScriptDocuments, AnnotationsAreLuaAndNameEveryFunctionOfTheSandboxButLuasOwn)
{
    const std::string annotations = Document("api.lua");
    EXPECT_EQ(Play("assert(load([==[" + annotations + "]==])) room_add{}"), "");
    size_t from = 0;
    std::istringstream own(Between(Document("Script_API.md"), "Lua's own: `", "`,", from));
    std::set<std::string> known = {"print"};
    for (std::string name; own >> name;)
        known.insert(name);
    ASSERT_EQ(Run("for name, v in pairs(_G) do if type(v) == 'function' then print(name) end end"), "");
    std::istringstream names(Log());
    int functions = 0;
    for (std::string name; std::getline(names, name);)
        if (known.count(name) == 0)
        {
            EXPECT_NE(annotations.find("\nfunction " + name + "("), std::string::npos) << name;
            ++functions;
        }
    EXPECT_GE(functions, 47 + 97);
}

TEST_F(ScriptDocuments, AnnotationsNameEveryFunctionOfTheKit)
{
    options.kit = std::string(SOURCE_DIR) + "/kit";
    const std::string annotations = Document("api.lua");
    ASSERT_EQ(Run("local kit = include('kit/camera_kit.lua')\n"
                  "for name, v in pairs(kit) do if type(v) == 'function' then print('Kit.' .. name) end end\n"
                  "for name in pairs(getmetatable(kit.camera{ camera = camera_create_view(0, 0, 9, 9) }).__index) do\n"
                  "print('KitCamera:' .. name) end"),
              "");
    std::istringstream names(Log());
    int functions = 0;
    for (std::string name; std::getline(names, name); ++functions)
        if (name != "KitCamera:state") // the kit's own way to its data
        {
            EXPECT_NE(annotations.find("\nfunction " + name + "("), std::string::npos) << name;
        }
    EXPECT_GE(functions, 40);
}

// The kinds behind ---@return, as conditions on v.
std::string Condition(const std::string& type)
{
    const std::map<std::string, std::string> conditions = {
        {"number", "type(v) == 'number'"},
        {"integer", "type(v) == 'number' and v == v // 1"},
        {"boolean", "type(v) == 'boolean'"},
        {"string", "type(v) == 'string'"},
        {"Matrix", "type(v) == 'table' and #v == 16"},
        {"Script", "v == -1"},
        {"Instance?", "v.id == 100000"},
        {"table[]", "type(v) == 'table'"},
        {"number?", "v == nil or type(v) == 'number'"},
    };
    const auto found = conditions.find(type);
    return found == conditions.end() ? "true" : found->second;
}

TEST_F(ScriptDocuments, AnnotatedResultsAreWhatCallsAnswer)
{
    const std::map<std::string, const char*> calls = {
        {"object_get_name", "player"},
        {"instance_create", "1, 2, player"},
        {"instance_exists", "player"},
        {"instance_find", "player, 0"},
        {"instance_count", "player"},
        {"instance_get", "100000"},
        {"view_to_room", "0, 1, 2"},
        {"room_to_view", "0, 1, 2"},
        {"mouse_room", "0"},
        {"view_at", "1, 2"},
        {"key_down", "'a'"},
        {"key_pressed", "'a'"},
        {"mouse_down", "'left'"},
        {"pad_connected", "0"},
        {"pad_axis", "0, 'left_x'"},
        {"pad_down", "0, 'a'"},
        {"random_range", "1, 2"},
        {"irandom", "3"},
        {"surface_create", "4, 4"},
        {"surface_exists", "0"},
        {"game_save", "'../no'"},
        {"matrix_multiply", "matrix_identity(), matrix_identity()"},
        {"matrix_ortho", "4, 4, 0, 9"},
        {"colour_rgb", "1, 2, 3"},
        {"screenshot", "'a.png'"},
        {"script_add", "print"},
    };
    const std::string annotations = Document("api.lua");
    int checked = 0;
    std::istringstream lines(annotations);
    std::vector<std::string> types;
    int arguments = 0;
    for (std::string line; std::getline(lines, line);)
    {
        arguments += line.rfind("---@param ", 0) == 0 ? 1 : 0;
        if (line.rfind("---@return ", 0) == 0)
            types.push_back(line.substr(11, line.find(' ', 11) - 11));
        if (line.rfind("function ", 0) != 0)
            continue;
        const std::string name = line.substr(9, line.find('(') - 9);
        const auto call = calls.find(name);
        const bool takesView = name.rfind("view_get_", 0) == 0 || name.rfind("camera_get_", 0) == 0;
        const std::string given = call != calls.end() ? call->second : takesView && arguments == 1 ? "0" : "";
        const bool isOfKit = name.rfind("Kit", 0) == 0;
        const bool isKnown = call != calls.end() || (arguments == 0 && !isOfKit) || takesView;
        if (!types.empty() && isKnown)
        {
            std::string statements = "local results = table.pack(" + name + "(" + given + "))\n";
            for (size_t i = 0; i < types.size(); ++i)
                statements += "do local v = results[" + std::to_string(i + 1) + "]\nassert(" + Condition(types[i]) +
                              ", 'result " + std::to_string(i + 1) + "') end\n";
            EXPECT_EQ(PlayInRoom(statements), "") << name << "\n" << statements;
            ++checked;
        }
        types.clear();
        arguments = 0;
    }
    EXPECT_GE(checked, 60);
}
} // namespace
