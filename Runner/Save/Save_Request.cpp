#include "Runner/Save/Save_Request.h"

#include "Files/IO/Load_Save.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Files.h"
#include "Runner/Save/Capture.h"
#include "Runner/Save/Fit.h"
#include "Runner/Save/Restore.h"
#include "Runner/Save/Save_File.h"

namespace Runner
{
SaveRequest& SaveRequest::Of(Game& game)
{
    if (game.afterFrame == nullptr)
        game.afterFrame = std::make_unique<SaveRequest>();
    return static_cast<SaveRequest&>(*game.afterFrame); // nothing else waits for a frame's end
}

bool SaveRequest::IsFree(std::string& why) const
{
    const bool isFree = m_savePath.empty() && m_load == nullptr;
    if (!isFree)
        why = "another save or load was asked for in this frame already";
    return isFree;
}

bool SaveRequest::AskSave(const std::string& name, std::string& why)
{
    const std::string path = IsFree(why) ? SavePath(name) : "";
    if (path.empty())
        return false;
    EnsureDirectoryIsCreated(path.c_str());
    m_savePath = path;
    return true;
}

bool SaveRequest::AskLoad(const Game& game, const std::string& name, std::string& why)
{
    const std::string path = IsFree(why) ? SavePath(name) : "";
    auto state = std::make_unique<SavedState>();
    if (path.empty() || !ReadSavedGame(path, *state, why) || !FitsGame(game, *state, path, why))
        return false;
    m_load = std::move(state);
    return true;
}

void SaveRequest::Perform(Game& game)
{
    std::string path, why;
    path.swap(m_savePath);
    const std::unique_ptr<SavedState> state = std::move(m_load);
    if (!path.empty() && !SaveGame(game, path, why))
        PrintLine(why);
    if (state != nullptr)
        RestoreGame(game, *state);
}
} // namespace Runner
