#include "Runner/Save/Save_List.h"

#include "Runner/Base/Folder_Walk.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Files.h"
#include "Runner/Save/Byte_Stream.h"
#include "Runner/Save/Save_File.h"
#include "Runner/Save/Sections.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace Runner
{
namespace
{
constexpr size_t FILES_LIMIT = 10000; // that are looked at

// ---- the answer's bytes ----

template <typename Io, typename Save> void Transfer(Io& io, Save& save)
{
    io(save.name);
    io(save.why);
    io(save.version);
    io(save.room);
    io(save.frame);
    io(save.thumbnail.width);
    io(save.thumbnail.height);
    io(save.thumbnail.rgb);
}

std::vector<uint8_t> Encoded(const std::vector<ListedSave>& saves)
{
    ByteWriter io;
    io.Count(saves.size());
    for (const ListedSave& save : saves)
        Transfer(io, save);
    return io.Bytes();
}

// A recording may hold anything: what makes no sense ends the list.
std::vector<ListedSave> Decoded(const std::vector<uint8_t>& bytes)
{
    ByteReader io(bytes.data(), bytes.size());
    std::vector<ListedSave> saves;
    for (size_t left = io.Count(); left > 0; --left)
    {
        ListedSave save;
        Transfer(io, save);
        if (io.Failed() || !ThumbnailIsConsistent(save.thumbnail))
            return saves;
        saves.push_back(std::move(save));
    }
    return saves;
}

// ---- the save area ----

// What a crash in the middle of a save has left; a whole one is put in place under another name.
bool IsTemporary(const std::string& name)
{
    const std::string end = PART_FILE_END;
    return name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
}

void TellOfArea(const std::string& why)
{
    PrintLine("the saves in " + PrintableName(SaveArea()) + " cannot all be listed: " + why);
}

// An area that is not there holds no saves; one that cannot be read is told, because the list is not whole.
std::vector<std::string> FileNames()
{
    std::vector<std::string> names;
    const int error = ListFilesBelow(SaveArea(), FILES_LIMIT, names);
    if (error != 0 && error != ENOENT)
        TellOfArea(std::strerror(error));
    names.erase(std::remove_if(names.begin(), names.end(), IsTemporary), names.end());
    return names;
}

// False: the file is no save of this game.
bool Read(const Game& game, ListedSave& save)
{
    std::vector<uint8_t> file;
    SavedState state;
    const std::string path = SaveArea() + "/" + save.name;
    std::string unread;
    if (!StartsAsSave(path, unread))
    {
        if (!unread.empty())
            TellOfArea(unread);
        return false;
    }
    if (!ReadWholeFile(path, file, save.why))
        TellOfArea(save.why);
    if (!save.why.empty() || !DecodeState(file, state, save.why))
        return true;
    save.version = state.names.version;
    save.room = state.names.room;
    save.frame = state.game.frame;
    save.thumbnail = std::move(state.thumbnail);
    return state.game.identity.name == game.Identity().name;
}

std::vector<ListedSave> ReadList(const Game& game)
{
    std::vector<ListedSave> saves;
    for (const std::string& name : FileNames())
    {
        ListedSave save;
        save.name = name;
        if (saves.size() < LISTED_SAVES_LIMIT && Read(game, save))
            saves.push_back(std::move(save));
    }
    return saves;
}
} // namespace

std::vector<ListedSave> AskSaves(const Game& game)
{
    const Answer answer = game.Ask(Question::Saves, [&game] { return Answer{true, "", Encoded(ReadList(game))}; });
    return Decoded(answer.content);
}
} // namespace Runner
