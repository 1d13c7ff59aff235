#include "Runner/App/Watching.h"

#include "Runner/Base/Whole_File.h"
#include "Runner/Game/Game.h"

namespace Runner
{
Watching::Watching(const RunOptions& options, Game& game) : m_options(options), m_game(game)
{
    if (options.inspect)
        m_watchers.Add(m_inspector.emplace(game).Observer());
    if (!options.profile.empty())
        m_watchers.Add(m_profile.emplace());
    if (!m_watchers.IsEmpty())
        m_game.observer = &m_watchers;
}

Watching::~Watching() { m_game.observer = nullptr; }

bool Watching::WriteProfile(std::string& why) const
{
    if (!m_profile)
        return true;
    const std::string text = m_profile->Text();
    return WriteFileAtomically(m_options.profile, text.data(), text.size(), why);
}
} // namespace Runner
