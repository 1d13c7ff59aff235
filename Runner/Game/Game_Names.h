#pragma once
// What a game has given names, so that a saved game finds it again in another version of the game.

#include "Files/Graphics/Camera_Handle.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Runner
{
class GameNames
{
public:
    void SetCamera(int camera, const std::string& name); // takes the name from another camera; empty: takes it away
    int FindCamera(const std::string& name) const;       // the camera's number, -1 when none that exists has it
    std::vector<std::pair<int, std::string>> Cameras() const; // those that exist, ascending by number

    void NoteSprite(int sprite, const std::string& file);
    // The file of a sprite and how many sprites of that file came before: FILE#0. Empty for one that is of no file.
    const std::vector<std::string>& Sprites() const { return m_sprites; }

    std::map<uint64_t, int> thumbnails; // sprites made for lists of saves, by a hash of their pixels
    int version = 0;                    // of the game; 0 while it declares none
    int autosaves = 0;                  // made so far

private:
    std::vector<std::pair<CCameraHandle, std::string>> m_cameras;
    std::vector<std::string> m_sprites; // by number
};
} // namespace Runner
