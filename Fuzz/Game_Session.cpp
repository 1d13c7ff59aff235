#include "Fuzz/Game_Session.h"

#include "Runner/Api/Api.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Files.h"
#include "Runner/Host/Memory.h"
#include "Runner/Save/Capture.h"
#include "Runner/Save/Fit.h"
#include "Runner/Save/Restore.h"
#include "Runner/Save/Save_File.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Fuzz
{
namespace
{
constexpr int FRAMES_BEFORE = 2;                  // of a session's game, before its first input
constexpr int64_t INSTRUCTIONS_A_FRAME = 2000000; // of Lua
constexpr size_t SCRIPT_MEMORY = size_t{64} << 20;

std::string TextOf(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// A game finds its files beside it.
std::string PutInPlace(const std::string& name, const std::string& prologue)
{
    const std::string games = SOURCE_DIR "/Fuzz/Games/";
    WriteWorkFile("tiles.png", TextOf(games + "tiles.png"));
    return WriteWorkFile(name, (prologue.empty() ? "" : TextOf(games + prologue)) + TextOf(games + name));
}

class Folder
{
public:
    Folder() : m_path((std::filesystem::temp_directory_path() / "camera_fuzz_XXXXXX").string())
    {
        Require(mkdtemp(m_path.data()) != nullptr, "there is no folder for temporary files");
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};
} // namespace

const std::string& WorkFolder()
{
    static const Folder folder;
    return folder.Path();
}

std::string WriteWorkFile(const std::string& name, const std::string& text)
{
    const std::string path = WorkFolder() + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

void SilenceConsole()
{
    static FILE* const nowhere = std::fopen("/dev/null", "w");
    Runner::SetConsoleOutput(nowhere);
    Runner::SetConsoleQuiet(true);
}

Runner::GameOptions CheckedOptions(const std::string& file)
{
    Runner::GameOptions options;
    options.file = file;
    options.draw = false;
    options.check = true;
    options.limits.instructions = INSTRUCTIONS_A_FRAME;
    options.limits.memory = SCRIPT_MEMORY;
    return options;
}

void RequireWhole(const Runner::Game& game)
{
    const std::string& failure = game.Failure();
    if (failure.find("check of the ") != std::string::npos)
        Report(failure);
    Require(failure.find_first_of("\r\n") == std::string::npos, "a failure is not told in one line");
}

void RequireNothingLeft(size_t blocksBefore)
{
    std::string why;
    if (!Runner::CheckMemory(why))
        Report(why);
    Require(Runner::CurrentMemoryUse().blocks == blocksBefore, "a game has left a block behind");
    Require(Runner::Collector::GetStats().live == 0, "a game has left an object behind");
}

GameSession::GameSession(const std::string& name, const std::string& prologue, Runner::Journal* journal)
    : m_options(CheckedOptions(PutInPlace(name, prologue)))
{
    m_options.journal = journal;
    SilenceConsole();
    Runner::SetSaveArea(WorkFolder() + "/saves");
    Start();
}

GameSession::~GameSession() = default;

void GameSession::Start()
{
    m_game.reset();
    m_game = std::make_unique<Runner::Game>(m_options, Runner::OpenApi);
    std::string missing, why;
    if (!m_game->Load())
        Report(m_game->Failure());
    Play(FRAMES_BEFORE);
    if (!Runner::CaptureGame(*m_game, m_first, missing, why) || !m_game->Failure().empty())
        Report(why + m_game->Failure());
}

void GameSession::Play(int frames)
{
    for (int i = 0; i < frames && !m_game->HasEnded() && m_game->Frame(); ++i)
    {
    }
    RequireWhole(*m_game);
}

void GameSession::GoBack()
{
    Runner::SavedState state;
    std::string why;
    if (!m_game->Failure().empty() || m_game->HasEnded())
        return Start();
    if (!Runner::DecodeState(m_first, state, why) || !Runner::FitToGame(*m_game, state, "first", why))
        Report("the game does not go on with its own state: " + why);
    m_game->afterFrame.reset();
    if (!Runner::RestoreGame(*m_game, state))
        Start();
}
} // namespace Fuzz
