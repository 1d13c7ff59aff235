// What the documents show is played.
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
class Documents : public RunnerTest::GameTest, public testing::WithParamInterface<const char*>
{
protected:
    // The first Lua block of a document; empty when it has none.
    static std::string FirstGame(const std::string& document)
    {
        std::ifstream file(std::string(SOURCE_DIR) + "/" + document);
        std::stringstream whole;
        whole << file.rdbuf();
        const std::string text = whole.str();
        const std::string open = "```lua\n";
        const size_t begin = text.find(open);
        const size_t end = begin == std::string::npos ? begin : text.find("```", begin + open.size());
        return end == std::string::npos ? "" : text.substr(begin + open.size(), end - begin - open.size());
    }
};

TEST_P(Documents, TheFirstGameShownCanBePlayed)
{
    const std::string shown = FirstGame(GetParam());
    ASSERT_NE(shown, "");
    EXPECT_EQ(Play(shown, 300), "");
}

INSTANTIATE_TEST_SUITE_P(Of, Documents, testing::Values("README.md", "Docs/Script_API.md"));
} // namespace
