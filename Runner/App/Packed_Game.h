#pragma once
// Games in zip archives, played as they are.

#include "Runner/Base/Packed_Files.h"

#include <memory>
#include <string>

namespace Runner
{
// The archive that a path names, or that it leads into as if it were a folder ("hop.zip/hop.lua"); empty when there is
// no such file. An archive's name ends with ".zip".
std::string ArchiveIn(const std::string& path);

// The file that starts a game of these files: "main.lua", else the one with the name that its folder has
// ("hop/hop.lua"), else the only Lua file there is. Where all files stand in one folder, they are looked for there.
// Empty, and why in one line, when there is none.
std::string MainFileOf(const FileContents& files, std::string& why);

// A game whose files are in memory for as long as this object lives.
class PackedGame
{
public:
    // game: a path as the user gives it. One of an archive, or in it, is changed into that of its main file, or kept if
    // it names a file; any other is left as it is. False, and why in one line, when the archive cannot be played.
    bool Open(std::string& game, std::string& why);

    const std::string& Archive() const { return m_archive; } // empty: the game is no archive

private:
    std::string m_archive;
    std::unique_ptr<PackedFolder> m_folder;
};
} // namespace Runner
