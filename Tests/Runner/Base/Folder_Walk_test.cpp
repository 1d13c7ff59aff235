#include "Runner/Base/Folder_Walk.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <cerrno>

namespace
{
class FolderWalkTest : public ::testing::Test
{
protected:
    FolderWalkTest()
    {
        std::filesystem::create_directories(directory.Path("top/b/deep"));
        for (const char* name : {"top/z", "top/b/y", "top/b/deep/x", "top/.hidden", "outside"})
            directory.Write(name, "");
    }

    int List(const std::string& folder, size_t entries)
    {
        return Runner::ListFilesBelow(directory.Path(folder), entries, files);
    }

    RunnerTest::TestDirectory directory;
    std::vector<std::string> files;
};

TEST_F(FolderWalkTest, AllFilesAreNamedFromTheFolderOnInOrder)
{
    EXPECT_EQ(List("top", 100), 0);
    EXPECT_EQ(files, (std::vector<std::string>{".hidden", "b/deep/x", "b/y", "z"}));
}

TEST_F(FolderWalkTest, LinksAreLeftOut)
{
    std::filesystem::create_symlink(directory.Path("outside"), directory.Path("top/link"));
    std::filesystem::create_directory_symlink(directory.Path("top"), directory.Path("top/b/round"));
    EXPECT_EQ(List("top", 100), 0);
    EXPECT_EQ(files.size(), 4u);
}

// Six entries: four files and two folders.
TEST_F(FolderWalkTest, OnlySoManyEntriesAreLookedAt)
{
    EXPECT_EQ(List("top", 6), 0);
    EXPECT_EQ(files.size(), 4u);
    files.clear();
    EXPECT_EQ(List("top", 5), 0);
    EXPECT_EQ(files.size(), 3u); // without the deepest, which comes last
    files.clear();
    EXPECT_EQ(List("top", 1), 0);
    EXPECT_LE(files.size(), 1u);
    files.clear();
    EXPECT_EQ(List("top", 0), 0);
    EXPECT_TRUE(files.empty());
}

TEST_F(FolderWalkTest, WhatIsNoFolderIsAnError)
{
    EXPECT_EQ(List("nowhere", 100), ENOENT);
    EXPECT_EQ(List("outside", 100), ENOTDIR);
    EXPECT_TRUE(files.empty());
}
} // namespace
