#pragma once

#include "Runner/Game/Game.h"
#include "Runner/Save/Saved_State.h"

#include <memory>
#include <string>

namespace Runner
{
// The save or load that a script has asked for in this frame: at most one, performed between this frame and the next.
class SaveRequest final : public AfterFrame
{
public:
    static SaveRequest& Of(Game& game); // the game's one, made when it is first asked for

    // Names are those of files in the save area. Not done: the request was not taken, and why tells in one line, or is
    // empty for a name that the save area has refused on the console. The file system is asked through the journal.
    Answer AskSave(const Game& game, const std::string& name);
    Answer AskLoad(Game& game, const std::string& name); // reads and checks the file already

    // Saves in one of so many slots, autosave_1.sav first. The count of such saves, which is saved itself, chooses the
    // slot. name: that of the slot's file.
    Answer AskAutosave(Game& game, int slots, std::string& name);

    // Between two frames. A save that fails is told on the console, and the game goes on.
    void Perform(Game& game) override;

private:
    bool IsFree(std::string& why) const;
    Answer PrepareSave(const std::string& name);
    Answer ReadSave(const std::string& name) const;

    std::string m_savePath;             // empty: no save was asked for
    std::unique_ptr<SavedState> m_load; // null: no load was
};
} // namespace Runner
