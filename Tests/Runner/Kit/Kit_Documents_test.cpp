// Every example in the camera kit's documents is played as it stands, and every picture that they name is there.
#include "Tests/Runner/Support/Documents.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <algorithm>
#include <vector>

namespace
{
namespace fs = std::filesystem;

constexpr int FRAMES = 240;
constexpr char OPEN[] = "```lua\n", CLOSE[] = "```", PICTURE[] = "](Pictures/";

struct Example
{
    std::string name; // "Kit_Follow3"
    std::string game;
    std::string after; // the text up to the next example
};

void AddExamples(const fs::path& document, std::vector<Example>& examples)
{
    const std::string text = RunnerTest::ReadText(document.string());
    size_t begin = text.find(OPEN);
    for (int number = 1; begin != std::string::npos; ++number)
    {
        begin += sizeof(OPEN) - 1;
        const size_t end = text.find(CLOSE, begin);
        const size_t next = text.find(OPEN, end);
        examples.push_back({document.stem().string() + std::to_string(number), text.substr(begin, end - begin),
                            text.substr(end, next - end)});
        begin = next;
    }
}

std::vector<Example> Examples()
{
    std::vector<Example> examples;
    for (const auto& entry : fs::directory_iterator(SOURCE_DIR "/Docs"))
        if (entry.path().filename().string().rfind("Kit", 0) == 0 && entry.path().extension() == ".md")
            AddExamples(entry.path(), examples);
    std::sort(examples.begin(), examples.end(), [](const Example& a, const Example& b) { return a.name < b.name; });
    return examples;
}

void PrintTo(const Example& example, std::ostream* out) { *out << example.name; }

class KitDocuments : public RunnerTest::GameTest, public testing::WithParamInterface<Example>
{
};

TEST_P(KitDocuments, TheExampleCanBePlayed)
{
    options.check = false; // of each frame: other tests do
    options.kit = SOURCE_DIR "/kit";
    EXPECT_EQ(Play(GetParam().game, FRAMES), "");
}

TEST_P(KitDocuments, TheExampleHasItsPicture)
{
    const std::string& after = GetParam().after;
    const size_t name = after.find(PICTURE);
    ASSERT_NE(name, std::string::npos) << "no picture is named after it";
    const size_t begin = name + sizeof(PICTURE) - 1;
    const std::string file = after.substr(begin, after.find(')', begin) - begin);
    EXPECT_TRUE(fs::exists(fs::path(SOURCE_DIR "/Docs/Pictures") / file))
        << "Tools/make_kit_pictures.sh makes " << file;
}

INSTANTIATE_TEST_SUITE_P(Of, KitDocuments, testing::ValuesIn(Examples()),
                         [](const auto& test) { return test.param.name; });
} // namespace
