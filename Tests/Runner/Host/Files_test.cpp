#include "Files/IO/Debug_Console.h"
#include "Files/IO/Load_Save.h"
#include "Runner/Base/File_Faults.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Host/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{
using namespace Runner;
namespace fs = std::filesystem;
using testing::HasSubstr;

struct Listener final : CDebugConsole
{
    void Output(const char* text) override { heard += text; }
    std::string heard;
};

// A save area of its own under the system's temporary directory, gone after the test.
class HostFiles : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string name = (fs::temp_directory_path() / "host_files_XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        m_root = name;
        m_area = name + "/area";
        fs::create_directory(m_area);
        SetSaveArea(m_area);
        m_console = dbg_csol;
        dbg_csol = &m_listener;
    }

    void TearDown() override
    {
        for (int kind = 0; kind <= static_cast<int>(FileOperation::MakeDirectory); ++kind)
            FailFileOperation(static_cast<FileOperation>(kind), -1);
        dbg_csol = m_console;
        SetSaveArea(".");
        fs::remove_all(m_root);
    }

    static std::string NameOf(const char* name, int size = 2048)
    {
        std::vector<char> out(static_cast<size_t>(size) + 1, '#');
        LoadSave::_GetSaveFileName(out.data(), size, name);
        EXPECT_EQ(out.back(), '#') << "written past the buffer";
        return out.data();
    }

    void ExpectRefused(const char* name, const char* reason, int size = 2048)
    {
        m_listener.heard.clear();
        EXPECT_EQ(NameOf(name, size), "") << name;
        EXPECT_THAT(m_listener.heard, HasSubstr("refused: "));
        EXPECT_THAT(m_listener.heard, HasSubstr(reason));
        EXPECT_EQ(std::count(m_listener.heard.begin(), m_listener.heard.end(), '\n'), 1) << "one line";
    }

    std::string Contents(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    void Put(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

    // Names in the save area, sorted.
    std::vector<std::string> Listing()
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_area))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    std::string m_root, m_area;
    Listener m_listener;
    CDebugConsole* m_console = nullptr;
};

// ---- names ----

TEST_F(HostFiles, NamesLeadIntoTheSaveArea)
{
    EXPECT_EQ(NameOf("a.png"), m_area + "/a.png");
    EXPECT_EQ(NameOf("dir/sub/a.png"), m_area + "/dir/sub/a.png");
    EXPECT_EQ(NameOf("..a/b..c/..."), m_area + "/..a/b..c/...");
    EXPECT_EQ(NameOf("./a"), m_area + "/./a");
    EXPECT_EQ(NameOf("gr\xC3\xBC\xC3\x9F e.png"), m_area + "/gr\xC3\xBC\xC3\x9F e.png");
    SetSaveArea(m_area + "/");
    EXPECT_EQ(NameOf("a"), m_area + "/a");
    SetSaveArea("");
    EXPECT_EQ(NameOf("a"), "./a");
    EXPECT_EQ(m_listener.heard, "");
}

TEST_F(HostFiles, NamesThatLeadElsewhereAreRefusedWithTheReason)
{
    ExpectRefused("/etc/passwd", "absolute");
    ExpectRefused("..", "\"..\"");
    ExpectRefused("../a", "\"..\"");
    ExpectRefused("a/../../b", "\"..\"");
    ExpectRefused("a/..", "\"..\"");
    ExpectRefused("", "empty");
    ExpectRefused(nullptr, "empty");
    ExpectRefused("a\nb", "control character");
    ExpectRefused("a\x7F", "control character");
    ExpectRefused("dir/", "directory");
    ExpectRefused(".", "directory");
    ExpectRefused("a/.", "directory");
}

TEST_F(HostFiles, LinksInTheSaveAreaAreRefused)
{
    fs::create_directory(m_root + "/outside");
    Put(m_root + "/secret", "secret");
    fs::create_directory_symlink(m_root + "/outside", m_area + "/link");
    fs::create_symlink(m_root + "/secret", m_area + "/file");
    fs::create_symlink(m_root + "/nowhere", m_area + "/dangling");
    ExpectRefused("link/a", "link");
    ExpectRefused("link//a/b", "link");
    ExpectRefused("./link/a", "link");
    ExpectRefused("file", "link");
    ExpectRefused("dangling", "link");
    fs::create_directory(m_area + "/sub");
    fs::create_directory_symlink(m_root, m_area + "/sub/up");
    ExpectRefused("sub/up/a", "link");
    EXPECT_EQ(NameOf("sub/other"), m_area + "/sub/other");
}

TEST_F(HostFiles, TheSaveAreaItselfMayBeALink)
{
    fs::create_directory_symlink(m_area, m_root + "/named");
    SetSaveArea(m_root + "/named");
    EXPECT_EQ(NameOf("a"), m_root + "/named/a");
}

TEST_F(HostFiles, ANameMustFitWithItsEnd)
{
    const int fitting = static_cast<int>(m_area.size()) + 1 + 5 + 1;
    EXPECT_EQ(NameOf("12345", fitting), m_area + "/12345");
    ExpectRefused("123456", "too long", fitting);
    ExpectRefused("1", "too long", 1);
    char untouched = '#';
    LoadSave::_GetSaveFileName(&untouched, 0, "a");
    LoadSave::_GetSaveFileName(&untouched, -1, "a");
    LoadSave::_GetSaveFileName(nullptr, 10, "a");
    EXPECT_EQ(untouched, '#');
}

// ---- directories ----

TEST_F(HostFiles, ParentsOfAFileAreMade)
{
    EnsureDirectoryIsCreated((m_area + "/a/b/c.png").c_str());
    EXPECT_TRUE(fs::is_directory(m_area + "/a/b"));
    EXPECT_FALSE(fs::exists(m_area + "/a/b/c.png"));
    EnsureDirectoryIsCreated((m_area + "/a/b/c.png").c_str()); // again is no harm
    EnsureDirectoryIsCreated("name");
    EnsureDirectoryIsCreated("/name");
    EnsureDirectoryIsCreated("");
    EnsureDirectoryIsCreated(nullptr);
    EXPECT_EQ(m_listener.heard, "");
}

TEST_F(HostFiles, TheSaveAreaIsMadeWhenItIsNeeded)
{
    SetSaveArea(m_root + "/new/area");
    EXPECT_FALSE(fs::exists(m_root + "/new"));
    EnsureDirectoryIsCreated(NameOf("a/b").c_str());
    EXPECT_TRUE(fs::is_directory(m_root + "/new/area/a"));
}

TEST_F(HostFiles, NoDirectoryIsMadeThroughALink)
{
    fs::create_directory(m_root + "/outside");
    fs::create_directory_symlink(m_root + "/outside", m_area + "/link");
    EnsureDirectoryIsCreated((m_area + "/link/made/a").c_str());
    EnsureDirectoryIsCreated((m_area + "/x/../../made/a").c_str());
    EXPECT_TRUE(fs::is_empty(m_root + "/outside"));
    EXPECT_FALSE(fs::exists(m_root + "/made"));
    EXPECT_EQ(std::count(m_listener.heard.begin(), m_listener.heard.end(), '\n'), 2);
}

TEST_F(HostFiles, AFileInTheWayIsTold)
{
    Put(m_area + "/file", "text");
    EnsureDirectoryIsCreated((m_area + "/file/a").c_str());
    EXPECT_THAT(m_listener.heard, HasSubstr("cannot be made"));
}

TEST_F(HostFiles, PreparingTheSaveAreaMakesItOrSaysWhyNot)
{
    std::string why;
    SetSaveArea(m_root + "/p/q");
    EXPECT_TRUE(PrepareSaveArea(why)) << why;
    EXPECT_TRUE(fs::is_directory(m_root + "/p/q"));
    Put(m_root + "/file", "");
    SetSaveArea(m_root + "/file");
    EXPECT_FALSE(PrepareSaveArea(why));
    EXPECT_EQ(why, "cannot make the directory " + m_root + "/file: Not a directory");
}

TEST_F(HostFiles, ADirectoryThatCannotBeMadeIsToldWithTheReasonOfTheSystem)
{
    std::string why;
    SetSaveArea(m_root + "/p");
    FailFileOperation(FileOperation::MakeDirectory, 0); // as a full disk does
    EXPECT_FALSE(PrepareSaveArea(why));
    EXPECT_EQ(why, "cannot make the directory " + m_root + "/p: No space left on device");
}

TEST_F(HostFiles, ATryToWriteLeavesNothingBehind)
{
    std::string why;
    EXPECT_TRUE(PrepareSaveFile("a/b.png", why)) << why;
    EXPECT_TRUE(fs::is_empty(m_area + "/a"));
    EXPECT_FALSE(PrepareSaveFile("../b.png", why));
    EXPECT_EQ(why, "\"../b.png\": the name leads out of the save area through \"..\"");
    EXPECT_EQ(m_listener.heard, "");
}

// ---- open files ----

TEST_F(HostFiles, WhatIsWrittenStandsInTheFile)
{
    const std::string path = NameOf("a.bin");
    _KvFILE* file = LoadSave::fopen(path.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(LoadSave::fwrite("abcdef", 2, 3, file), 3u);
    EXPECT_EQ(LoadSave::fwrite("x", 0, 5, file), 0u);
    EXPECT_EQ(LoadSave::fclose(file), 0);
    EXPECT_FALSE(LastWriteFailed());
    EXPECT_EQ(Contents(path), "abcdef");
}

TEST_F(HostFiles, WhatCannotBeOpenedIsNull)
{
    EXPECT_EQ(LoadSave::fopen("", "wb"), nullptr);
    EXPECT_EQ(LoadSave::fopen(nullptr, "wb"), nullptr);
    EXPECT_EQ(LoadSave::fopen((m_area + "/none/a").c_str(), "wb"), nullptr);
    EXPECT_TRUE(LastWriteFailed());
    EXPECT_EQ(LoadSave::fclose(nullptr), EOF);
}

TEST_F(HostFiles, EveryFaultOfAnOpenFileIsRemembered)
{
    const std::string path = NameOf("a.bin");
    FailFileOperation(FileOperation::Open, 0);
    EXPECT_EQ(LoadSave::fopen(path.c_str(), "wb"), nullptr);
    EXPECT_TRUE(LastWriteFailed());

    const std::pair<FileOperation, unsigned> faults[] = {
        {FileOperation::Write, 0}, {FileOperation::ShortWrite, 3}, {FileOperation::Close, 6}};
    for (const auto& [fault, expected] : faults)
    {
        _KvFILE* file = LoadSave::fopen(path.c_str(), "wb");
        ASSERT_NE(file, nullptr);
        EXPECT_FALSE(LastWriteFailed()) << "an opened file starts anew";
        FailFileOperation(fault, 0);
        EXPECT_EQ(LoadSave::fwrite("abcdef", 1, 6, file), expected);
        LoadSave::fclose(file);
        EXPECT_TRUE(LastWriteFailed());
        EXPECT_EQ(Contents(path), std::string("abcdef").substr(0, expected));
    }
}

TEST_F(HostFiles, AFullDiskIsRemembered)
{
    _KvFILE* file = LoadSave::fopen("/dev/full", "wb");
    if (file == nullptr)
        GTEST_SKIP() << "no such device here";
    LoadSave::fwrite("abc", 1, 3, file);
    EXPECT_NE(LoadSave::fclose(file), 0); // the library writes when it closes
    EXPECT_TRUE(LastWriteFailed());
}

// ---- whole files ----

TEST_F(HostFiles, AWholeFileComesBack)
{
    std::string why;
    std::vector<uint8_t> bytes;
    const std::string text("a\0b\xFF", 4);
    const std::string path = m_area + "/save";
    EXPECT_TRUE(WriteFileAtomically(path, text.data(), text.size(), why)) << why;
    EXPECT_TRUE(ReadWholeFile(path, bytes, why)) << why;
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), text);
    EXPECT_TRUE(WriteFileAtomically(path, nullptr, 0, why)) << why;
    EXPECT_TRUE(ReadWholeFile(path, bytes, why)) << why;
    EXPECT_TRUE(bytes.empty());
    EXPECT_THAT(Listing(), testing::ElementsAre("save"));
}

TEST_F(HostFiles, AFaultWhileSavingLeavesTheOldFileAndNothingElse)
{
    const std::string path = m_area + "/save";
    for (const bool existed : {true, false})
        for (const FileOperation fault : {FileOperation::Open, FileOperation::Write, FileOperation::ShortWrite,
                                          FileOperation::Sync, FileOperation::Rename, FileOperation::Close})
        {
            fs::remove(path);
            if (existed)
                Put(path, "old");
            std::string why;
            FailFileOperation(fault, 0);
            EXPECT_FALSE(WriteFileAtomically(path, "newer", 5, why)) << static_cast<int>(fault);
            EXPECT_THAT(why, HasSubstr(path + ": No space left on device"));
            EXPECT_EQ(Listing().size(), existed ? 1u : 0u);
            EXPECT_EQ(Contents(path), existed ? "old" : "");
        }
    std::string why;
    EXPECT_TRUE(WriteFileAtomically(path, "newer", 5, why)) << why;
    EXPECT_EQ(Contents(path), "newer");
}

TEST_F(HostFiles, APartLeftByACrashIsReplacedAndNotFollowed)
{
    Put(m_root + "/victim", "victim");
    fs::create_symlink(m_root + "/victim", m_area + "/save.part");
    std::string why;
    EXPECT_TRUE(WriteFileAtomically(m_area + "/save", "new", 3, why)) << why;
    EXPECT_EQ(Contents(m_root + "/victim"), "victim");
    EXPECT_THAT(Listing(), testing::ElementsAre("save"));
}

TEST_F(HostFiles, ADirectoryInTheWayIsRefused)
{
    fs::create_directory(m_area + "/save");
    std::string why;
    EXPECT_FALSE(WriteFileAtomically(m_area + "/save", "new", 3, why));
    EXPECT_THAT(why, HasSubstr("it is no ordinary file"));
    EXPECT_FALSE(WriteFileAtomically(m_area + "/none/save", "new", 3, why));
    EXPECT_THAT(why, HasSubstr("cannot make"));
    EXPECT_THAT(Listing(), testing::ElementsAre("save"));
}

TEST_F(HostFiles, WhatIsNoFileIsNotRead)
{
    std::string why;
    std::vector<uint8_t> bytes = {1, 2, 3};
    EXPECT_FALSE(ReadWholeFile(m_area, bytes, why));
    EXPECT_EQ(why, "cannot read " + m_area + ": not a file");
    EXPECT_TRUE(bytes.empty());
    EXPECT_FALSE(ReadWholeFile("/dev/zero", bytes, why));
    EXPECT_FALSE(ReadWholeFile(m_area + "/none", bytes, why));
    EXPECT_EQ(why, "cannot open " + m_area + "/none: No such file or directory");
    ASSERT_EQ(system(("mkfifo " + m_area + "/pipe").c_str()), 0);
    EXPECT_FALSE(ReadWholeFile(m_area + "/pipe", bytes, why)) << "and does not wait for a writer";
}

TEST_F(HostFiles, AFileTooLargeIsNotRead)
{
    Put(m_area + "/large", "");
    fs::resize_file(m_area + "/large", FILE_SIZE_MAX + 1); // without contents: takes no room
    std::string why;
    std::vector<uint8_t> bytes;
    EXPECT_FALSE(ReadWholeFile(m_area + "/large", bytes, why));
    EXPECT_EQ(why, "cannot read " + m_area + "/large: too large");
}

TEST_F(HostFiles, WhatNobodyNamesOrOpensIsNotWritten)
{
    EXPECT_EQ(LoadSave::fopen("name", nullptr), nullptr);
    EXPECT_EQ(LoadSave::fopen(nullptr, "wb"), nullptr);
    EXPECT_EQ(LoadSave::fwrite("text", 1, 4, nullptr), 0u);
    _KvFILE* const file = LoadSave::fopen((m_area + "/text").c_str(), "wb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(LoadSave::fwrite("text", 0, 4, file), 0u);
    EXPECT_EQ(LoadSave::fwrite("text", 1, 0, file), 0u);
    EXPECT_EQ(LoadSave::fwrite("text", 1, 4, file), 4u);
    EXPECT_EQ(LoadSave::fclose(file), 0);
    _KvFILE* const reading = LoadSave::fopen((m_area + "/text").c_str(), "rb");
    ASSERT_NE(reading, nullptr);
    EXPECT_EQ(LoadSave::fclose(reading), 0);
    EXPECT_EQ(LoadSave::fclose(nullptr), EOF);
    EXPECT_EQ(fs::file_size(m_area + "/text"), 4u);
}
} // namespace
