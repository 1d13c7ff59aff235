// The games of Docs/Examples, one for each built-in.
#include "Tests/Runner/Support/Game_Support.h"

#include "Runner/Lua/Bridge.h"

#include <vector>

namespace
{
constexpr char FOLDER[] = SOURCE_DIR "/Docs/Examples/";

// Statements before an example, on its first line. Draw calls become lines on the console, but for filled rectangles,
// of which the scene has hundreds.
constexpr char TELLING_WHAT_IS_DRAWN[] =
    "for _, name in ipairs{'draw_text', 'draw_line', 'draw_surface', 'draw_rectangle'} do local draw = _G[name] "
    "_G[name] = function(...) if name ~= 'draw_rectangle' or select('#', ...) == 5 then print(name, ...) end "
    "return draw(...) end end ";

std::string ReadText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const Runner::Signature& signature : Runner::BuiltinSignatures())
        names.emplace_back(signature.name);
    return names;
}

class Examples : public RunnerTest::GameTest, public testing::WithParamInterface<std::string>
{
protected:
    // How the example fails, empty for not at all.
    std::string PlayAfter(const std::string& statements, int frames)
    {
        directory.Write("field.lua", ReadText(std::string(FOLDER) + "field.lua"));
        options.trace = directory.Path("trace.txt");
        const std::string failure = Play(statements + ReadText(FOLDER + GetParam() + ".lua"), frames);
        game.reset(); // closes the trace
        return failure;
    }

    // What is drawn and what each view shows, as text. An example that fails shows its failure.
    std::string ShownAfter(const std::string& statements)
    {
        const size_t before = Log().size();
        const std::string failure = PlayAfter(TELLING_WHAT_IS_DRAWN + statements, 90);
        return failure.empty() ? Log().substr(before) + directory.Read("trace.txt") : failure;
    }
};

TEST_P(Examples, PlaysForTwoSecondsWithoutAWordAndCallsItsFunction)
{
    const std::string telling =
        "local it, is_told = " + GetParam() + " " + GetParam() +
        " = function(...) if not is_told then is_told = true log('called') end return it(...) end ";
    EXPECT_EQ(PlayAfter(telling, 120), "");
    EXPECT_EQ(Log(), "called\n");
}

// camera_apply changes neither draw calls nor the trace, only the picture.
class ExamplesInText : public Examples
{
};

TEST_P(ExamplesInText, ShowsSomethingElseWithoutItsFunction)
{
    options.check = false; // of each frame: the other test does
    const std::string with = ShownAfter(""), without = ShownAfter(GetParam() + " = function() return -1 end ");
    EXPECT_GE(std::count(with.begin(), with.end(), '\n'), 90);
    EXPECT_TRUE(with != without) << "the same draw calls and the same trace";
}

std::vector<std::string> NamesBut(const std::string& leftOut)
{
    std::vector<std::string> names = Names();
    names.erase(std::remove(names.begin(), names.end(), leftOut), names.end());
    return names;
}

const auto NAME_OF = [](const testing::TestParamInfo<std::string>& test) { return test.param; };
INSTANTIATE_TEST_SUITE_P(Of, Examples, testing::ValuesIn(Names()), NAME_OF);
INSTANTIATE_TEST_SUITE_P(Of, ExamplesInText, testing::ValuesIn(NamesBut("camera_apply")), NAME_OF);

// A file that no function names would be played by nobody.
TEST(ExampleFiles, AreThoseOfTheBuiltInsAndTheirScene)
{
    std::vector<std::string> found, wanted = Names();
    wanted.emplace_back("field");
    for (const auto& entry : std::filesystem::directory_iterator(FOLDER))
        found.push_back(entry.path().stem().string());
    std::sort(found.begin(), found.end());
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(found, wanted);
}
} // namespace
