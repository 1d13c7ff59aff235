// The game's version, its saves, and the names by which they find cameras again.

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Api/Api_Functions.h"
#include "Runner/Base/Hash.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Game.h"
#include "Runner/Save/Save_List.h"
#include "Runner/Save/Save_Request.h"

#include <lua.hpp>

#include <set>

namespace Runner
{
namespace
{
constexpr size_t WORK_OF_A_LISTED_SAVE = 100000; // in instructions of Lua: its file is read
constexpr int VERSION_LAST = 1000000000;
constexpr int SLOTS_LIMIT = 100;
constexpr size_t CAMERA_NAME_LIMIT = 100; // bytes

// ---- the game's version ----

int GameVersion(Arguments& call)
{
    const int version = call.Whole(1);
    if (version < 1 || version > VERSION_LAST)
        call.FailArgument(1, "is 1 to " + std::to_string(VERSION_LAST) + ", got " + DescribeAt(call.L, 1));
    int& declared = call.game.names.version;
    if (call.game.rooms.Running() != nullptr)
        call.Fail("only in the game's file, before its first room starts");
    if (declared != 0 && declared != version)
        call.Fail("the game has declared version " + std::to_string(declared) + " already");
    declared = version;
    return 0;
}

// ---- saving and loading ----

int GameSave(Arguments& call) { return ReturnTold(call, SaveRequest::Of(call.game).AskSave(call.game, call.Text(1))); }

int GameLoad(Arguments& call) { return ReturnTold(call, SaveRequest::Of(call.game).AskLoad(call.game, call.Text(1))); }

int GameAutosave(Arguments& call)
{
    const int slots = call.Whole(1);
    if (slots < 1 || slots > SLOTS_LIMIT)
        call.FailArgument(1, "is 1 to " + std::to_string(SLOTS_LIMIT) + ", got " + DescribeAt(call.L, 1));
    std::string name;
    const Answer answer = SaveRequest::Of(call.game).AskAutosave(call.game, slots, name);
    return answer.done ? call.Return(name) : ReturnTold(call, answer);
}

// ---- the list ----

uint64_t HashOf(const SavedThumbnail& thumbnail)
{
    return HashBytes(thumbnail.rgb.data(), thumbnail.rgb.size()) + static_cast<uint64_t>(thumbnail.width);
}

Picture PictureOf(const SavedThumbnail& thumbnail)
{
    Picture picture{thumbnail.width, thumbnail.height, {}};
    for (size_t i = 0; i + 2 < thumbnail.rgb.size(); i += 3)
        picture.rgba.insert(picture.rgba.end(),
                            {thumbnail.rgb[i], thumbnail.rgb[i + 1], thumbnail.rgb[i + 2], uint8_t{255}});
    return picture;
}

// The sprite of a thumbnail: the same for equal ones, made when it is listed first. -1 when it cannot be made.
int SpriteOf(const Arguments& call, const SavedThumbnail& thumbnail)
{
    const auto [entry, isNew] = call.game.names.thumbnails.emplace(HashOf(thumbnail), NO_SPRITE);
    if (isNew)
    {
        const int sprite = OpenedPainter(call).AddSheet(PictureOf(thumbnail), thumbnail.width, thumbnail.height);
        if (sprite != NO_SPRITE)
            call.game.world.SetSpriteExtent(
                sprite, {static_cast<float>(thumbnail.width), static_cast<float>(thumbnail.height), 0.0f, 0.0f});
        entry->second = sprite;
    }
    return entry->second;
}

// Frees the sprites of thumbnails that the list no longer has.
void FreeOthers(const Arguments& call, const std::vector<ListedSave>& saves)
{
    std::set<uint64_t> listed;
    for (const ListedSave& save : saves)
        listed.insert(HashOf(save.thumbnail));
    auto& sprites = call.game.names.thumbnails;
    for (auto next = sprites.begin(); next != sprites.end();)
    {
        const auto sprite = next++;
        if (listed.count(sprite->first) != 0)
            continue;
        if (sprite->second != NO_SPRITE)
            OpenedPainter(call).FreeSprite(sprite->second);
        sprites.erase(sprite);
    }
}

void SetText(lua_State* L, const char* name, const std::string& text)
{
    lua_pushlstring(L, text.data(), text.size());
    lua_setfield(L, -2, name);
}

void PushSave(const Arguments& call, const ListedSave& save)
{
    lua_State* const L = call.L;
    lua_newtable(L);
    SetText(L, "name", save.name);
    if (!save.why.empty())
        return SetText(L, "why", save.why);
    if (save.version != 0)
    {
        lua_pushinteger(L, save.version);
        lua_setfield(L, -2, "version");
    }
    if (!save.room.empty())
        SetText(L, "room", save.room);
    lua_pushinteger(L, save.frame);
    lua_setfield(L, -2, "frame");
    const int sprite = save.thumbnail.rgb.empty() ? NO_SPRITE : SpriteOf(call, save.thumbnail);
    if (sprite == NO_SPRITE)
        return;
    lua_pushinteger(L, sprite);
    lua_setfield(L, -2, "thumbnail");
}

int GameSaves(Arguments& call)
{
    const std::vector<ListedSave> saves = AskSaves(call.game);
    luai_work(saves.size() * WORK_OF_A_LISTED_SAVE);
    FreeOthers(call, saves);
    lua_newtable(call.L);
    lua_Integer next = 1;
    for (const ListedSave& save : saves)
    {
        PushSave(call, save);
        lua_rawseti(call.L, -2, next++);
    }
    return 1;
}

// ---- names of cameras ----

int CameraSetName(Arguments& call)
{
    const int camera = call.Whole(1);
    const std::string name = call.Text(2);
    if (g_CM.GetCamera(camera) == nullptr)
        call.Fail("there is no camera " + std::to_string(camera));
    if (name.size() > CAMERA_NAME_LIMIT)
        call.FailArgument(2, "has at most " + std::to_string(CAMERA_NAME_LIMIT) + " bytes");
    call.game.names.SetCamera(camera, name);
    return 0;
}

int CameraFind(Arguments& call) { return call.Return(call.game.names.FindCamera(call.Text(1))); }

constexpr ApiFunction FUNCTIONS[] = {
    {"game_version", 1, {"version"}, GameVersion},
    {"game_save", 1, {"name"}, GameSave},
    {"game_load", 1, {"name"}, GameLoad},
    {"game_autosave", 1, {"slots"}, GameAutosave},
    {"game_saves", 0, {}, GameSaves},
    {"camera_set_name", 2, {"camera", "camera_name"}, CameraSetName},
    {"camera_find", 1, {"camera_name"}, CameraFind},
};
} // namespace

ApiTable SaveApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
