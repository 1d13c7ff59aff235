#include "Runner/Save/Counterparts.h"

#include "Runner/Base/Printable.h"
#include "Runner/Game/Game.h"
#include "Runner/Save/Camera_Stream.h"
#include "Runner/Save/Changed_Map.h"
#include "Runner/Save/Name_Matches.h"
#include "Runner/Save/Tile_Counterparts.h"

#include <algorithm>
#include <map>
#include <set>

namespace Runner
{
namespace
{
// The name that a script gave; empty for the one that an object gets without.
std::string GivenName(const std::string& name, const char* kind, int index)
{
    return name == kind + std::to_string(index) ? "" : name;
}

const std::string& RoomName(const Game& game, int room)
{
    static const std::string none;
    const RoomSpec* const spec = game.rooms.Find(room);
    return spec == nullptr ? none : spec->name;
}

class Adaptation
{
public:
    Adaptation(const Game& game, SavedState& state, std::vector<std::string>& left)
        : m_game(game), m_state(state), m_left(left), m_here(NamesOf(game)),
          m_isSameVersion(m_here.version == state.names.version),
          m_objects(state.names.objects, m_here.objects, m_isSameVersion),
          m_sprites(state.names.sprites, m_here.sprites, m_isSameVersion),
          m_scripts(state.names.scripts, m_here.scripts, m_isSameVersion)
    {
    }

    bool Run(std::string& why)
    {
        if (!FindRooms(why))
            return false;
        FindInstances();
        FindViews();
        FindCameras();
        FindTileMaps(*m_game.CurrentPainter(), m_sprites, m_state, m_left);
        FindMapCells(m_game, m_state, m_left);
        return true;
    }

private:
    // ---- rooms ----

    // The room of that name; of several the one of the same number. NO_ROOM when there is none, or none can be told.
    int FindRoom(const std::string& name, int number) const
    {
        int found = NO_ROOM, count = 0;
        for (int room = 0; room < m_game.rooms.Count(); ++room)
            if (RoomName(m_game, room) == name)
            {
                found = room;
                ++count;
            }
        return count > 1 ? (RoomName(m_game, number) == name ? number : NO_ROOM) : found;
    }

    bool FindRooms(std::string& why)
    {
        SavedGame& game = m_state.game;
        game.room = FindRoom(m_state.names.room, game.room);
        if (game.room == NO_ROOM)
            why = "it was made in room " + Quoted(m_state.names.room) +
                  ", and the game has no such room now; on_load can set data.room";
        if (game.nextRoom == NO_ROOM)
            return why.empty();
        game.nextRoom = FindRoom(m_state.names.nextRoom, game.nextRoom);
        if (game.nextRoom == NO_ROOM)
            m_left.push_back("the change to room " + Quoted(m_state.names.nextRoom) +
                             ": the game has no such room now");
        return why.empty();
    }

    // ---- instances ----

    void FindInstances()
    {
        std::map<int32_t, int> missing; // object -> instances
        std::vector<SavedInstance>& instances = m_state.world.instances;
        const auto isMissing = [&](SavedInstance& instance)
        {
            const int object = m_objects.Find(instance.object);
            missing[instance.object] += object < 0 ? 1 : 0;
            instance.object = object;
            if (object < 0)
                m_lost.insert(instance.id);
            return object < 0;
        };
        instances.erase(std::remove_if(instances.begin(), instances.end(), isMissing), instances.end());
        for (const auto& [object, count] : missing)
            if (count > 0)
                m_left.push_back(std::to_string(count) + (count == 1 ? " instance of " : " instances of ") +
                                 ObjectText(object));
        for (SavedInstance& instance : instances)
            FindSprite(instance);
    }

    std::string ObjectText(int32_t object) const
    {
        const std::string& name = m_objects.OldName(object);
        if (!name.empty())
            return "object " + Quoted(name) + ": the game has no such object now";
        return "object " + std::to_string(object) + ": it was given no name, so it cannot be found again";
    }

    // An instance without its sprite shows that of its object.
    void FindSprite(SavedInstance& instance)
    {
        const int32_t old = instance.fields.sprite;
        if (old == NO_SPRITE)
            return;
        instance.fields.sprite = m_sprites.Find(old);
        if (instance.fields.sprite != NO_SPRITE)
            return;
        instance.fields.sprite = m_game.world.FindObject(instance.object)->traits.sprite;
        if (m_lostSprites.insert(old).second)
            m_left.push_back("sprite " + std::to_string(old) + ", which instances showed: those of their objects show");
    }

    // ---- views ----

    bool HasView(size_t view) const { return m_game.rooms.Find(m_state.game.room)->views[view].has_value(); }
    bool HadView(size_t view) const { return (m_state.names.views >> view & 1) != 0; }

    void FindViews()
    {
        const bool isOtherScreen =
            m_state.game.screenWidth != m_game.ScreenWidth() || m_state.game.screenHeight != m_game.ScreenHeight();
        m_state.views.resize(ROOM_VIEWS);
        for (size_t view = 0; view < ROOM_VIEWS; ++view)
        {
            SavedView& saved = m_state.views[view];
            const bool isUsed = saved.camera != NO_CAMERA || saved.fields.visible;
            saved.isNew = HasView(view) && !HadView(view) && !isUsed;
            if (HadView(view) && !HasView(view))
                LeaveViewOut(view, isUsed);
            else if (saved.camera != NO_CAMERA)
                m_shown.insert(saved.camera);
            if (isOtherScreen && HasView(view))
                TakePort(saved.fields, *m_game.rooms.Find(m_state.game.room)->views[view]);
        }
        if (isOtherScreen)
            m_left.push_back("the views' ports: the game's screen has another size now");
        m_state.game.screenWidth = m_game.ScreenWidth();
        m_state.game.screenHeight = m_game.ScreenHeight();
    }

    void LeaveViewOut(size_t view, bool isUsed)
    {
        SavedView& saved = m_state.views[view];
        if (saved.camera != NO_CAMERA)
            m_viewless.insert(saved.camera);
        if (isUsed)
            m_left.push_back("view " + std::to_string(view) + ": the room has no such view now");
        saved = SavedView();
    }

    static void TakePort(ViewFields& fields, const KvRoomView& view)
    {
        fields.xport = view.xport;
        fields.yport = view.yport;
        fields.wport = view.wport;
        fields.hport = view.hport;
    }

    // ---- cameras ----

    void FindCameras()
    {
        CameraRecords records;
        ReadCameraStream(m_state.cameras.stream, records); // checked when the file was read
        for (const SavedCameraName& camera : m_state.names.cameras)
            m_named[camera.id] = camera.name;
        for (auto next = records.cameras.begin(); next != records.cameras.end();)
        {
            const auto camera = next++;
            if (IsKept(camera->first))
                FindCallbacks(camera->first, camera->second);
            else
                records.cameras.erase(camera);
        }
        m_state.cameras.stream = WriteCameraStream(records);
        Forget(records);
    }

    bool IsKept(int32_t camera)
    {
        const bool isKnown = camera == m_state.cameras.ownDefaultCamera || camera == m_state.cameras.defaultCamera ||
                             m_shown.count(camera) != 0 || m_named.count(camera) != 0;
        const bool isKept = isKnown || (m_isSameVersion && m_viewless.count(camera) == 0);
        if (!isKept && m_viewless.count(camera) == 0)
            m_left.push_back("camera " + std::to_string(camera) +
                             ": no view showed it and camera_set_name gave it no name");
        return isKept;
    }

    void FindCallbacks(int32_t camera, CameraRecord& record)
    {
        uint32_t& target = record[CameraItem(offsetof(CCamera, m_targetInstance))];
        const auto followed = static_cast<int32_t>(target);
        target = static_cast<uint32_t>(TargetOf(camera, followed));
        for (const size_t offset :
             {offsetof(CCamera, m_beginScript), offsetof(CCamera, m_updateScript), offsetof(CCamera, m_endScript)})
        {
            uint32_t& item = record[CameraItem(offset)];
            item = static_cast<uint32_t>(ScriptOf(camera, static_cast<int32_t>(item)));
        }
    }

    // An instance or an object; negative numbers are no target.
    int32_t TargetOf(int32_t camera, int32_t target)
    {
        const bool isLost =
            target >= INSTANCE_ID_FIRST ? m_lost.count(target) != 0 : target >= 0 && m_objects.Find(target) < 0;
        if (isLost)
            m_left.push_back("the target of camera " + std::to_string(camera));
        return isLost ? -1 : target >= 0 && target < INSTANCE_ID_FIRST ? m_objects.Find(target) : target;
    }

    int32_t ScriptOf(int32_t camera, int32_t script)
    {
        if (script < 0)
            return script;
        const int found = m_scripts.Find(script);
        if (found < 0)
            m_left.push_back("a callback of camera " + std::to_string(camera) + ": script " + std::to_string(script) +
                             (m_scripts.OldName(script).empty()
                                  ? " was given no name in script_add"
                                  : ", " + Quoted(m_scripts.OldName(script)) + ", is not added now"));
        return found;
    }

    // Drops what else is saved about cameras that are left out.
    void Forget(const CameraRecords& records)
    {
        const auto isGone = [&records](int32_t camera) { return records.cameras.count(camera) == 0; };
        SavedCameras& cameras = m_state.cameras;
        cameras.flags.erase(std::remove_if(cameras.flags.begin(), cameras.flags.end(),
                                           [&](const SavedCameraFlags& flags) { return isGone(flags.id); }),
                            cameras.flags.end());
        for (int32_t* number : {&cameras.defaultCamera, &cameras.ownDefaultCamera, &cameras.activeCamera})
            *number = isGone(*number) ? NO_CAMERA : *number;
    }

    const Game& m_game;
    SavedState& m_state;
    std::vector<std::string>& m_left;
    const SavedNames m_here;
    const bool m_isSameVersion;
    const NameMatches m_objects, m_sprites, m_scripts;
    std::set<int32_t> m_lost;        // instances that are left out
    std::set<int32_t> m_lostSprites; // that have been told
    std::set<int32_t> m_shown;       // cameras of views that the room has
    std::set<int32_t> m_viewless;    // cameras of views that the room no longer has
    std::map<int32_t, std::string> m_named;
};
} // namespace

SavedNames NamesOf(const Game& game)
{
    SavedNames names;
    names.version = game.names.version;
    names.autosaves = game.names.autosaves;
    const RunningRoom& room = *game.rooms.Running();
    names.room = room.spec.name;
    names.nextRoom = RoomName(game, game.NextRoom());
    for (size_t view = 0; view < ROOM_VIEWS; ++view)
        names.views |= room.spec.views[view].has_value() ? 1u << view : 0u;
    for (int object = 0; object < game.world.ObjectCount(); ++object)
        names.objects.push_back(GivenName(game.world.FindObject(object)->name, "object", object));
    names.sprites = game.names.Sprites();
    names.scripts = game.scripts.numbered.Names();
    for (const auto& [camera, name] : game.names.Cameras())
        names.cameras.push_back({camera, name});
    return names;
}

bool FindCounterparts(const Game& game, SavedState& state, std::vector<std::string>& left, std::string& why)
{
    return Adaptation(game, state, left).Run(why);
}
} // namespace Runner
