#include "Runner/App/Game_Start.h"

#include "Runner/App/Settings_Keeper.h"
#include "Runner/Save/Save_File.h"

namespace Runner
{
// The numbers that the main file draws must be those of then, so the seed comes from the saved game.
bool PrepareStart(const RunOptions& options, GameStart& start, std::string& why)
{
    start.options = options.game;
    start.isLoading = !options.load.empty();
    if (start.isLoading && !ReadSavedGame(options.load, start.saved, why))
        return false;
    if (start.isLoading && !options.isSeedGiven)
        start.options.seed = start.saved.game.identity.seed;
    return ReadSettings(options.settings, start.options.settings, why);
}
} // namespace Runner
