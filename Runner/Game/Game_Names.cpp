#include "Runner/Game/Game_Names.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/World/Running_Room.h"

#include <algorithm>

namespace Runner
{
void GameNames::SetCamera(int camera, const std::string& name)
{
    const auto isReplaced = [camera, &name](const auto& entry)
    {
        const CCamera* const named = entry.first.Get();
        return named == nullptr || named->GetID() == camera || entry.second == name;
    };
    m_cameras.erase(std::remove_if(m_cameras.begin(), m_cameras.end(), isReplaced), m_cameras.end());
    const CCamera* const named = g_CM.GetCamera(camera);
    if (named != nullptr && !name.empty())
        m_cameras.emplace_back(CCameraHandle(named), name);
}

int GameNames::FindCamera(const std::string& name) const
{
    for (const auto& [handle, given] : m_cameras)
        if (const CCamera* const camera = given == name ? handle.Get() : nullptr)
            return camera->GetID();
    return NO_CAMERA;
}

std::vector<std::pair<int, std::string>> GameNames::Cameras() const
{
    std::vector<std::pair<int, std::string>> cameras;
    for (const auto& [handle, name] : m_cameras)
        if (const CCamera* const camera = handle.Get())
            cameras.emplace_back(camera->GetID(), name);
    std::sort(cameras.begin(), cameras.end());
    return cameras;
}

void GameNames::NoteSprite(int sprite, const std::string& file)
{
    const auto number = static_cast<size_t>(sprite);
    if (m_sprites.size() <= number)
        m_sprites.resize(number + 1);
    const std::string start = file + "#";
    const auto isOfFile = [&start](const std::string& name) { return name.rfind(start, 0) == 0; };
    m_sprites[number] = start + std::to_string(std::count_if(m_sprites.begin(), m_sprites.end(), isOfFile));
}
} // namespace Runner
