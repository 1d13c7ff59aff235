#include "Runner/Save/Save_Request.h"

#include "Files/IO/Load_Save.h"
#include "Runner/Base/Whole_File.h"
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

Answer SaveRequest::PrepareSave(const std::string& name)
{
    Answer answer;
    const std::string path = IsFree(answer.why) ? SavePath(name) : "";
    answer.done = !path.empty();
    if (answer.done)
        EnsureDirectoryIsCreated(path.c_str());
    m_savePath = path.empty() ? m_savePath : path;
    return answer;
}

Answer SaveRequest::AskSave(const Game& game, const std::string& name)
{
    return game.Ask(Question::Save, [&] { return PrepareSave(name); });
}

Answer SaveRequest::ReadSave(const std::string& name) const
{
    Answer answer;
    const std::string path = IsFree(answer.why) ? SavePath(name) : "";
    answer.done = !path.empty() && ReadWholeFile(path, answer.content, answer.why);
    return answer;
}

Answer SaveRequest::AskAutosave(Game& game, int slots, std::string& name)
{
    int& made = game.names.autosaves;
    name = "autosave_" + std::to_string(made % slots + 1) + ".sav";
    Answer answer = AskSave(game, name);
    if (answer.done)
        made = (made < COUNTERS_END ? made : made % slots) + 1; // the slots go on in turn
    return answer;
}

Answer SaveRequest::AskLoad(Game& game, const std::string& name)
{
    Answer answer = game.Ask(Question::Load, [&] { return ReadSave(name); });
    const std::string path = SaveArea() + "/" + name;
    auto state = std::make_unique<SavedState>();
    answer.done = answer.done && ReadSavedGame(path, answer.content, *state, answer.why) &&
                  FitToGame(game, *state, path, answer.why);
    if (answer.done)
        m_load = std::move(state);
    return answer;
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
