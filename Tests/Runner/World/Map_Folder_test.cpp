// The files of a map in a folder: nothing outside of it is read.
#include "Runner/World/Map_Folder.h"

#include "Runner/World/Map_Reader.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <filesystem>

namespace
{
using namespace Runner;
using RunnerTest::TestDirectory;
namespace fs = std::filesystem;

struct Answer
{
    bool read;
    std::string text; // of the file, or why not
};

Answer Ask(MapFolder& folder, const std::string& path, size_t limit = 100)
{
    std::vector<uint8_t> bytes;
    std::string why;
    const bool read = folder.Read(path, limit, bytes, why);
    return {read, read ? std::string(bytes.begin(), bytes.end()) : why};
}

class MapFolderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        fs::create_directories(m_directory.Path("game/maps"));
        fs::create_directories(m_directory.Path("game-2"));
        m_directory.Write("game/maps/a.tmx", "inside");
        m_directory.Write("secret", "outside");
        m_directory.Write("game-2/b.tmx", "outside");
    }

    TestDirectory m_directory;
    MapFolder m_folder{m_directory.Path("game")};
};

TEST_F(MapFolderTest, ReadsFilesBelowIt)
{
    EXPECT_EQ(Ask(m_folder, "maps/a.tmx").text, "inside");
    EXPECT_EQ(Ask(m_folder, "maps/b.tmx").text,
              "there is no such file: put it there, or mend the name where it is used");
    EXPECT_EQ(Ask(m_folder, "maps").text, "this is no file");
    EXPECT_TRUE(Ask(m_folder, "maps/a.tmx", 6).read);
    EXPECT_EQ(Ask(m_folder, "maps/a.tmx", 5).text, "the file is too large");
}

TEST_F(MapFolderTest, LinksAreFollowedInsideAndNotOutside)
{
    fs::create_symlink("a.tmx", m_directory.Path("game/maps/same.tmx"));
    fs::create_symlink("../../secret", m_directory.Path("game/maps/file.tmx"));
    fs::create_directory_symlink(m_directory.Path("game-2"), m_directory.Path("game/other"));
    fs::create_symlink("round.tmx", m_directory.Path("game/round.tmx"));
    const std::string refused = "this is a link out of the game's folder: put the file itself into it";
    EXPECT_EQ(Ask(m_folder, "maps/same.tmx").text, "inside");
    EXPECT_EQ(Ask(m_folder, "maps/file.tmx").text, refused);
    EXPECT_EQ(Ask(m_folder, "other/b.tmx").text, refused);
    EXPECT_FALSE(Ask(m_folder, "round.tmx").read);
}

TEST_F(MapFolderTest, AFolderWhoseNameBeginsAlikeIsOutside)
{
    fs::create_directory_symlink(m_directory.Path("game-2"), m_directory.Path("game/maps/more"));
    EXPECT_FALSE(Ask(m_folder, "maps/more/b.tmx").read);
}

TEST_F(MapFolderTest, TheFolderItselfMayBeALink)
{
    fs::create_directory_symlink("game", m_directory.Path("link"));
    MapFolder folder(m_directory.Path("link"));
    EXPECT_EQ(Ask(folder, "maps/a.tmx").text, "inside");
}

TEST_F(MapFolderTest, AMapThatIsTooLargeIsRefusedUnread)
{
    fs::resize_file(m_directory.Path("game/maps/a.tmx"), (uintmax_t{64} << 20) + 1); // a hole: it takes no room
    MapModel map;
    std::string error;
    EXPECT_FALSE(ReadMap("maps/a.tmx", m_folder, map, error));
    EXPECT_EQ(error, "maps/a.tmx: the file is too large");
}
} // namespace
