#pragma once
// The files that a game consists of: where they are found, and what of them makes the game this one.

#include "Runner/Base/Hash.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Runner
{
// A file that a game has read.
struct GameFile
{
    std::string name;      // relative to the main file's directory, or "kit/..." of the camera kit
    uint64_t hash = 0;     // of its content; 0 when it could not be read
    std::string path = {}; // where it was read; not known of a file that a recording tells of
};

// Names are relative to the main file's directory. A name in "kit/" that is not there is one of the kit's folder.
class ScriptFiles
{
public:
    // kit: a folder without a slash at its end; empty for none. Answers the main file's name in its directory.
    std::string Open(const std::string& mainFile, const std::string& kit);

    // Throws ScriptError for a name outside of the game's directory.
    std::string PathOf(const std::string& name) const;

    // Where an included file stands. includer: the name of the file that includes it; what came from the kit's folder
    // finds the kit's other parts there, too, so that two versions are never mixed. Throws as PathOf does.
    std::string FindScript(const std::string& name, const std::string& includer) const;

    // Reads a script, and notes it. Throws ScriptError when it cannot be read.
    std::vector<uint8_t> ReadScript(const std::string& name, const std::string& path);
    bool Note(const std::string& name); // a file that is no script, such as a picture; false: it could not be read
    // Notes a file that counts as code, such as a map: a change of it is a change of the game. name: as PathOf takes
    // it.
    void NoteCode(const std::string& name, const std::vector<uint8_t>& content);
    void NoteMissing(const std::string& name); // a file that could not be read: it is watched

    const std::vector<GameFile>& Read() const { return m_read; } // all files read so far, in their order

    // A hash of the names and texts of all scripts read so far. Files of a kit count with its version instead of their
    // text, so that an update of the kit spoils no saved game.
    uint64_t Fingerprint() const { return m_fingerprint.Value(); }

private:
    void AddToFingerprint(const std::string& name, const std::string& path, const std::vector<uint8_t>& text);

    std::string m_directory;                    // of the main file, ends with a slash; empty: the working directory
    std::string m_kit;                          // ends with a slash; empty: none
    std::map<std::string, std::string> m_paths; // of the scripts read, by name
    std::vector<GameFile> m_read;
    Hash m_fingerprint;
};
} // namespace Runner
