#pragma once
// Games as text, played inside the test. Every game is walked after each frame (--check).

#include "Runner/Api/Api.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <unistd.h>

namespace RunnerTest
{
// A directory of this test's own, removed with its content.
class TestDirectory
{
public:
    TestDirectory()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "runner_test_XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~TestDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TestDirectory(const TestDirectory&) = delete;
    TestDirectory& operator=(const TestDirectory&) = delete;

    std::string Path(const std::string& name) const { return m_path + "/" + name; }

    std::string Write(const std::string& name, const std::string& text) const
    {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }

    std::string Read(const std::string& name) const
    {
        std::ifstream file(Path(name), std::ios::binary);
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }

private:
    std::string m_path;
};

// What is printed into a stream.
class CapturedFile
{
public:
    CapturedFile() : m_file(std::tmpfile()) {}
    ~CapturedFile() { std::fclose(m_file); }
    CapturedFile(const CapturedFile&) = delete;
    CapturedFile& operator=(const CapturedFile&) = delete;

    FILE* Get() const { return m_file; }

    std::string Text() const
    {
        std::string text;
        std::rewind(m_file);
        for (int c = std::fgetc(m_file); c != EOF; c = std::fgetc(m_file))
            text += static_cast<char>(c);
        std::fseek(m_file, 0, SEEK_END);
        return text;
    }

private:
    FILE* m_file;
};

class GameTest : public ::testing::Test
{
protected:
    GameTest()
    {
        options.draw = false;
        options.check = true;
        Runner::SetConsoleOutput(m_log.Get());
        Runner::SetSaveArea(directory.Path("save"));
    }

    ~GameTest() override
    {
        game.reset();
        Runner::SetConsoleOutput(nullptr);
    }

    // Loads the text as main.lua and plays frames. Answers the failure, empty for none.
    std::string Play(const std::string& text, int frames = 1)
    {
        game.reset();
        options.file = directory.Write("main.lua", text);
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        return game->Load() ? PlayOn(frames) : game->Failure();
    }

    std::string PlayOn(int frames)
    {
        for (int i = 0; i < frames && !game->HasEnded(); ++i)
            if (!game->Frame())
                break;
        return game->Failure();
    }

    // Statements that run once in a room, as its create event.
    std::string Run(const std::string& statements, int frames = 1)
    {
        return Play("room_add{ create = function()\n" + statements + "\nend }", frames);
    }

    // What the game printed so far.
    std::string Log() const { return m_log.Text(); }

    TestDirectory directory;
    Runner::GameOptions options;
    std::unique_ptr<Runner::Game> game;

private:
    CapturedFile m_log;
};
} // namespace RunnerTest
