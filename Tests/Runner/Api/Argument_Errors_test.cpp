// What a wrong argument says: the function, the argument's number and name, what it is and what came instead.

#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Function_Arguments.h"
#include "Runner/Api/Api.h"
#include "Runner/Api/Argument_Meanings.h"
#include "Runner/Lua/Bridge.h"

#include <set>

namespace
{
using Runner::Signature;
using RunnerTest::GameTest;

// ---- texts ----

struct Mistake
{
    const char* statement;
    const char* complaint;
};

class ArgumentErrors : public GameTest
{
protected:
    // Runs the statement while something is drawn, so that drawing functions are allowed. A camera 1 exists.
    std::string Complaint(const std::string& statement)
    {
        const std::string failure = Play("room_add{ views = { [0] = {} }, draw = function()\n" + statement + "\nend }");
        const std::string position = "main.lua:2: ";
        EXPECT_EQ(failure.substr(0, position.size()), position) << failure;
        return failure.size() < position.size() ? failure : failure.substr(position.size());
    }
};

class ArgumentErrorTexts : public ArgumentErrors, public ::testing::WithParamInterface<Mistake>
{
};

TEST_P(ArgumentErrorTexts, SayWhatIsWantedAndWhatCame)
{
    EXPECT_EQ(Complaint(GetParam().statement), GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    OfBuiltins, ArgumentErrorTexts,
    ::testing::Values(
        Mistake{"camera_set_view_pos(0, 'left', 2)",
                "camera_set_view_pos: argument 2 (x) is a number, got the string \"left\""},
        Mistake{"camera_set_view_pos(0, 2, nil)", "camera_set_view_pos: argument 3 (y) is a number, got nil"},
        Mistake{"camera_set_view_pos({}, 2, 2)", "camera_set_view_pos: argument 1 (camera) is a number, got a table"},
        Mistake{"camera_set_view_angle(0, print)",
                "camera_set_view_angle: argument 2 (angle) is a number, got a function"},
        Mistake{"camera_set_view_target(0, nil)",
                "camera_set_view_target: argument 2 (target) is an object, an instance or -1, got nil"},
        Mistake{"camera_create_view(0, 0, 5, 5, {})",
                "camera_create_view: argument 5 (angle) is a number, got a table"},
        Mistake{"view_set_visible(0, 'yes')",
                "view_set_visible: argument 2 (visible) is true or false, got the string \"yes\""},
        Mistake{"view_get_camera({})", "view_get_camera: argument 1 (view) is a number, got a table"},
        Mistake{"camera_set_view_pos(0, coroutine.create(print), 0)",
                "camera_set_view_pos: argument 2 (x) is a number, got a coroutine"},
        Mistake{"camera_destroy(0, 1, coroutine.create(print))", "camera_destroy: argument 3 cannot be a coroutine"},
        Mistake{"camera_set_view_pos(0, { coroutine.create(print) }, 0)",
                "camera_set_view_pos: argument 2 (x) is a number, got a table"}));

INSTANTIATE_TEST_SUITE_P(
    OfMatrices, ArgumentErrorTexts,
    ::testing::Values(
        Mistake{"local m = matrix_identity() m[7] = 'seven' camera_set_view_mat(0, m)",
                "camera_set_view_mat: argument 2 (matrix), entry 7 is a number, got the string \"seven\""},
        Mistake{"local m = matrix_identity() m[7] = coroutine.create(print) camera_set_proj_mat(0, m)",
                "camera_set_proj_mat: argument 2 (matrix), entry 7 is a number, got a coroutine"},
        Mistake{"camera_set_view_mat(0, {})",
                "camera_set_view_mat() - must be 16 entries in array (argument 2 (matrix) is a table of 16 numbers, "
                "got a table of 0)"},
        Mistake{"camera_set_proj_mat(0, 5)",
                "camera_set_view_mat() - array invalid (has it been created properly?) (camera_set_proj_mat: "
                "argument 2 (matrix) is a table of 16 numbers, got the number 5)"},
        Mistake{"matrix_multiply({}, 5)", "matrix_multiply: argument 1 (a) is a table of 16 numbers, got a table of 0"},
        Mistake{"local m = matrix_identity() m[7] = {} matrix_set_world(m)",
                "matrix_set_world: argument 1 (matrix), entry 7 is a number, got a table"}));

INSTANTIATE_TEST_SUITE_P(
    OfCallbacks, ArgumentErrorTexts,
    ::testing::Values(Mistake{"camera_set_update_script(0, 'x')",
                              "camera_set_update_script :: invalid script reference (argument 2 (script) is a "
                              "function, a number of script_add or -1, got the string \"x\")"},
                      Mistake{"camera_set_end_script(0, coroutine.create(print))",
                              "camera_set_end_script: argument 2 (script) is a function, a number of script_add or "
                              "-1, got a coroutine"}));

INSTANTIATE_TEST_SUITE_P(
    OfCounts, ArgumentErrorTexts,
    ::testing::Values(
        Mistake{"camera_set_view_pos(0, 1)",
                "camera_set_view_pos() - wrong number of arguments (3 wanted: camera, x, y; got 2)"},
        Mistake{"camera_create(1)", "camera_create() - doesn't take any arguments (none wanted; got 1)"},
        Mistake{"camera_create_view(1, 2, 3)",
                "camera_create_view() - must have at least 4 arguments (4 to 10 wanted: x, y, w, h [, angle, target, "
                "speed_x, speed_y, border_x, border_y]; got 3)"},
        Mistake{"view_set_camera(0)", "view_set_camera() - wrong number of arguments (2 wanted: view, camera; got 1)"},
        Mistake{"camera_set_default()", "camera_set_default() - wrong number of arguments (1 wanted: camera; got 0)"},
        Mistake{"draw_circle(1, 2)",
                "draw_circle() - wrong number of arguments (3 to 4 wanted: x, y, radius [, outline]; got 2)"},
        Mistake{"room_get(1)", "room_get() - wrong number of arguments (none wanted; got 1)"},
        Mistake{"draw_box(table.unpack({}, 1, 300))",
                "draw_box() - wrong number of arguments (8 wanted: sprite, frame, x1, y1, z1, x2, y2, z2; got 300)"}));

INSTANTIATE_TEST_SUITE_P(
    OfTheRunner, ArgumentErrorTexts,
    ::testing::Values(
        Mistake{"draw_circle(1, 'two', 3)", "draw_circle: argument 2 (y) is a number, got the string \"two\""},
        Mistake{"draw_circle(1, 2, 1/0)", "draw_circle: argument 3 (radius) is a finite number, got the number inf"},
        Mistake{"draw_rectangle(1, 2, 3, 4, 'yes')",
                "draw_rectangle: argument 5 (outline) is true or false, got the string \"yes\""},
        Mistake{"draw_set_colour('red')",
                "draw_set_colour: argument 1 (colour) is a colour (see colour_rgb), got the string \"red\""},
        Mistake{"draw_set_colour(-1)",
                "draw_set_colour: argument 1 (colour) is a colour (see colour_rgb), got the number -1"},
        Mistake{"colour_rgb(0, 256, 0)", "colour_rgb: argument 2 (green) is 0 to 255, got the number 256"},
        Mistake{"room_goto(1.5)", "room_goto: argument 1 (room) is a whole number of 32 bits, got the number 1.5"},
        Mistake{"instance_destroy('x')",
                "instance_destroy: argument 1 (instance) is an instance, got the string \"x\""},
        Mistake{"script_add(5)", "script_add: argument 1 (function) is a function, got the number 5"},
        Mistake{"room_add(5)", "room_add: argument 1 (fields) is a table, got the number 5"},
        Mistake{"log(nil)", "log: argument 1 (text) is a string or a number, got nil"},
        Mistake{"screenshot('a', 'gif')", "screenshot: argument 2 (format) is \"bmp\" or \"png\", got the string "
                                          "\"gif\""}));

TEST_F(ArgumentErrors, OfALongStringStayOneShortLine)
{
    const std::string complaint = Complaint("draw_circle(('x\\n'):rep(100000), 2, 3)");
    EXPECT_LT(complaint.size(), 150u);
    EXPECT_EQ(complaint.find('\n'), std::string::npos);
}

TEST_F(ArgumentErrors, OfANestedCallNameTheInnerCall)
{
    EXPECT_EQ(Play("local o = object_add{ create = function() camera_set_view_pos(0, {}, 1) end }\n"
                   "room_add{ create = function() view_set_camera(0, instance_create(0, 0, o)) end }"),
              "main.lua:1: camera_set_view_pos: argument 2 (x) is a number, got a table");
}

TEST_F(ArgumentErrors, AnUnknownCameraIsNoErrorWhateverTheOtherArgumentsAre)
{
    EXPECT_EQ(Run("assert(camera_set_view_pos(77, 'left', {}) == -1)"), "");
}

// ---- every function, every argument ----

struct Case
{
    std::string function;
    std::string argument; // its name
    int number;
    std::string call; // with a coroutine as this argument
    std::string kind;
};

// What stands for the arguments before the one in question, and after it.
std::string GoodValue(const std::string& name)
{
    const std::set<std::string> matrices = {"matrix", "a", "b"},
                                texts = {"text", "file", "map_file", "name", "format", "action"};
    if (matrices.count(name) != 0)
        return "matrix_identity()";
    if (name == "format")
        return "'png'";
    if (texts.count(name) != 0)
        return "'text'";
    const bool isTable = name == "fields" || name == "frame_list" || name == "x_list" || name == "y_list";
    return name == "function" ? "print" : isTable ? "{}" : "0";
}

Case CaseOf(const Signature& signature, size_t argument, const std::string& kind)
{
    std::string call = std::string(signature.name) + "(";
    for (size_t i = 0; i < signature.arguments.size(); ++i)
        call += (i > 0 ? ", " : "") + (i == argument ? "coroutine.create(print)" : GoodValue(signature.arguments[i]));
    return {signature.name, signature.arguments[argument], static_cast<int>(argument) + 1, call + ")", kind};
}

std::string KindOfBuiltin(eArgument kind)
{
    switch (kind)
    {
    case eArgument_Flag: return "true or false";
    case eArgument_Instance: return "an object, an instance or -1";
    case eArgument_Matrix: return "a table of 16 numbers";
    case eArgument_Script: return "a function, a number of script_add or -1";
    default: return "a number";
    }
}

const Runner::ArgumentMeaning* FindMeaning(const std::string& argument)
{
    for (const Runner::ArgumentMeaning& meaning : Runner::ARGUMENT_MEANINGS)
        if (meaning.name == argument)
            return &meaning;
    return nullptr;
}

std::vector<Case> AllCases()
{
    std::vector<Case> cases;
    const std::vector<Signature> builtins = Runner::BuiltinSignatures();
    for (size_t f = 0; f < builtins.size(); ++f)
        for (size_t i = 0; i < builtins[f].arguments.size(); ++i)
            cases.push_back(CaseOf(builtins[f], i, KindOfBuiltin(KvArguments::SIGNATURES[f].arguments[i].kind)));
    for (const Signature& signature : Runner::ApiSignatures())
        for (size_t i = 0; i < signature.arguments.size(); ++i)
        {
            const Runner::ArgumentMeaning* meaning = FindMeaning(signature.arguments[i]);
            cases.push_back(CaseOf(signature, i, meaning == nullptr ? "?" : meaning->kind));
        }
    return cases;
}

TEST_F(ArgumentErrors, OfEveryFunctionNameItAndTheArgument)
{
    const std::vector<Case> cases = AllCases();
    EXPECT_GT(cases.size(), 220u); // 85 of the built-ins
    std::string script;
    for (const Case& one : cases)
        script += "tell(pcall(function() " + one.call + " end))\n";
    ASSERT_EQ(Play("local function tell(ok, text) print(ok and 'accepted' or text:gsub('^%S+ ', '')) end\n"
                   "object_add{}\n"
                   "local done\n"
                   "room_add{ views = { [0] = {} }, draw = function() if done then return end done = true\n" +
                   script + "end }"),
              "");
    std::istringstream lines(Log());
    for (const Case& one : cases)
    {
        std::string line;
        std::getline(lines, line);
        const std::string argument =
            "argument " + std::to_string(one.number) + " (" + one.argument + ") is " + one.kind + ", got a coroutine";
        const bool isToldByTheModule = one.function == "camera_set_view_mat" && one.argument == "matrix";
        const std::string expected = isToldByTheModule ? argument : one.function + ": " + argument;
        EXPECT_NE(line.find(expected), std::string::npos) << one.call << "\n" << line;
    }
}

TEST(ArgumentMeanings, StandOnceForEachNameThatTheRunnersFunctionsUse)
{
    std::set<std::string> used;
    for (const Signature& signature : Runner::ApiSignatures())
        used.insert(signature.arguments.begin(), signature.arguments.end());
    std::set<std::string> told;
    for (const Runner::ArgumentMeaning& meaning : Runner::ARGUMENT_MEANINGS)
        EXPECT_TRUE(told.insert(meaning.name).second) << meaning.name;
    EXPECT_EQ(told, used);
}

TEST(ArgumentMeanings, OfTheBuiltinsAreTold)
{
    for (const KvSignature& signature : KvArguments::SIGNATURES)
        for (int i = 0; i < signature.count; ++i)
            EXPECT_STRNE(signature.arguments[i].meaning, "") << signature.name;
}
} // namespace
