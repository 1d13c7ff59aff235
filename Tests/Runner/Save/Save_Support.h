#pragma once
// Games that are saved and loaded inside the test.

#include "Runner/Save/Capture.h"
#include "Runner/Save/Fit.h"
#include "Runner/Save/Restore.h"
#include "Runner/Save/Save_File.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace RunnerTest
{
// Starts the runner as a process of its own. Its exit status; what it says lands in output.
inline int StartProgram(const std::string& arguments, const std::string& output = "/dev/null")
{
    const std::string command = std::string(RUNNER_PROGRAM) + " " + arguments + " > " + output + " 2>&1";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The same, without drawing.
inline int StartRunner(const std::string& arguments, const std::string& output = "/dev/null")
{
    return StartProgram("--no-draw " + arguments, output);
}

class SaveTest : public GameTest
{
protected:
    std::string SavePath() const { return directory.Path("state.sav"); }

    // Empty when it was saved, else why not.
    std::string Save()
    {
        std::string why;
        return Runner::SaveGame(*game, SavePath(), why) ? "" : why;
    }

    // Empty when it was loaded, else why not.
    std::string Load()
    {
        Runner::SavedState state;
        std::string why;
        if (!Runner::ReadSavedGame(SavePath(), state, why) || !Runner::FitToGame(*game, state, SavePath(), why))
            return why;
        return Runner::RestoreGame(*game, state) ? "" : game->Failure();
    }

    // Starts the same game anew, and loads.
    std::string LoadAfresh()
    {
        game.reset();
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        return game->Load() ? Load() : game->Failure();
    }

    std::vector<uint8_t> Bytes() const
    {
        const std::string text = directory.Read("state.sav");
        return {text.begin(), text.end()};
    }
};
} // namespace RunnerTest
