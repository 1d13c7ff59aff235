#pragma once
// Who watches the game of a run: the inspector and the profile, as far as they were asked for.

#include "Runner/App/Options.h"
#include "Runner/Inspect/Inspector.h"
#include "Runner/Inspect/Profile.h"

#include <optional>

namespace Runner
{
class Watching
{
public:
    // game: is watched from now on, and must live as long.
    Watching(const RunOptions& options, Game& game);
    ~Watching();
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;

    Inspector* PictureInspector() { return m_inspector ? &*m_inspector : nullptr; } // null without --inspect
    bool WriteProfile(std::string& why) const;                                      // true without --profile

private:
    const RunOptions& m_options;
    Game& m_game;
    std::optional<Inspector> m_inspector;
    std::optional<Profile> m_profile;
    Watchers m_watchers;
};
} // namespace Runner
