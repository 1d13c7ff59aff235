#include "Runner/Save/Describe_State.h"

#include "Runner/Base/Printable.h"
#include "Runner/Save/Camera_Stream.h"

#include <cstdio>
#include <cstring>
#include <map>

namespace Runner
{
namespace
{
// ---- values ----

std::string Text(bool flag) { return flag ? "true" : "false"; }
std::string Text(int32_t number) { return std::to_string(number); }
std::string Text(uint32_t number) { return std::to_string(number); }
std::string Text(int64_t number) { return std::to_string(number); }
std::string Text(uint64_t number) { return std::to_string(number); }
std::string Text(const std::string& text) { return Quoted(text); }

std::string Text(double number)
{
    char text[40];
    std::snprintf(text, sizeof(text), "%.17g", number);
    return text;
}

std::string Text(float number)
{
    char text[40];
    std::snprintf(text, sizeof(text), "%.9g", static_cast<double>(number));
    return text;
}

std::string Text(InstanceNumber instance) { return "instance " + std::to_string(instance.id); }
std::string Text(TableNumber table) { return "table " + std::to_string(table.number); }

template <typename... Kinds> std::string Text(const std::variant<Kinds...>& value)
{
    return std::visit([](const auto& content) { return Text(content); }, value);
}

class Describer
{
public:
    explicit Describer(const SavedState& state) : m_state(state) {}

    Description Run()
    {
        DescribeGame();
        DescribeViews();
        for (const SavedInstance& instance : m_state.world.instances)
            DescribeInstance(instance);
        Add("next instance", m_state.world.nextId);
        DescribeCameras();
        for (const SavedSurface& surface : m_state.surfaces)
            Add("surface " + std::to_string(surface.number), Text(surface.width) + "x" + Text(surface.height));
        for (const SavedTileMap& map : m_state.tileMaps)
            DescribeTileMap(map);
        for (const SavedMapLayer& layer : m_state.map.layers)
            DescribeMapLayer(layer);
        for (const SavedShownLayer& layer : m_state.shownLayers)
            Add("map layer " + std::to_string(layer.number) + " visible", layer.visible);
        DescribeNames();
        DescribeTables();
        return std::move(m_lines);
    }

private:
    template <typename Value> void Add(const std::string& name, const Value& value)
    {
        m_lines.emplace_back(name, Text(value));
    }
    void Add(const std::string& name, const std::string& value) { m_lines.emplace_back(name, value); }

    void DescribeGame()
    {
        const SavedGame& game = m_state.game;
        Add("game", Text(game.identity.name));
        Add("fingerprint", game.identity.files);
        Add("seed", game.identity.seed);
        Add("the main file has drawn random numbers", game.identity.usesSeed);
        Add("screen", Text(game.screenWidth) + "x" + Text(game.screenHeight));
        Add("frame", game.frame);
        Add("room", game.room);
        Add("next room", game.nextRoom);
        Add("random numbers", Text(game.randomPosition) + " " + Text(game.randomIncrement));
    }

    void DescribeViews()
    {
        constexpr const char* NAMES[] = {"visible", "xport", "yport", "wport", "hport", "surface"};
        static_assert(std::size(NAMES) == std::size(VIEW_FIELDS));
        for (size_t view = 0; view < m_state.views.size(); ++view)
        {
            const SavedView& saved = m_state.views[view];
            const std::string name = "view " + std::to_string(view) + " ";
            Add(name + "camera", saved.camera);
            for (size_t i = 0; i < std::size(VIEW_FIELDS); ++i)
                std::visit([&](auto member) { Add(name + NAMES[i], saved.fields.*member); }, VIEW_FIELDS[i]);
        }
    }

    void DescribeInstance(const SavedInstance& instance)
    {
        const std::string name = "instance " + std::to_string(instance.id) + " ";
        Add(name + "object", instance.object);
        Add(name + "destroyed", instance.isDestroyed);
        Add(name + "deactivated", instance.isDeactivated);
        Add(name + "x", instance.x);
        Add(name + "y", instance.y);
        for (const InstanceField& field : INSTANCE_FIELDS)
            std::visit([&](auto member) { Add(name + field.name, instance.fields.*member); }, field.member);
        if (instance.variables != 0)
            m_tableNames[instance.variables - 1] = "instance " + std::to_string(instance.id);
    }

    void DescribeCameras()
    {
        const SavedCameras& cameras = m_state.cameras;
        Add("default camera", Text(cameras.defaultCamera) + ", the runner's own " + Text(cameras.ownDefaultCamera));
        Add("active camera", cameras.activeCamera);
        Add("high point of the cameras", cameras.highPoint);
        for (const SavedCameraFlags& camera : cameras.flags)
        {
            const std::string name = "camera " + std::to_string(camera.id) + " ";
            Add(name + "clone", camera.isClone);
            Add(name + "persistent", camera.isPersistent);
            Add(name + "of the room", camera.isOfRoom);
        }
        CameraRecords records;
        ReadCameraStream(cameras.stream, records);
        Add("camera slots", records.slots);
        for (const auto& [slot, record] : records.cameras)
            DescribeRecord("camera " + std::to_string(slot) + " ", record);
    }

    void DescribeRecord(const std::string& camera, const CameraRecord& record)
    {
        size_t next = 0;
        for (const CameraStateField& field : CAMERA_STATE)
            for (int i = 0; i < field.count; ++i)
            {
                const uint32_t item = record[next++];
                float number = 0.0f;
                std::memcpy(&number, &item, sizeof(number));
                const std::string index = field.count > 1 ? "[" + std::to_string(i) + "]" : "";
                Add(camera + field.name + index,
                    field.type == eState_F32 ? Text(number) : Text(static_cast<int32_t>(item)));
            }
    }

    void DescribeTileMap(const SavedTileMap& map)
    {
        const std::string name = "tile map " + std::to_string(map.number) + " ";
        Add(name + "sprite", map.sprite);
        Add(name + "size", Text(map.columns) + "x" + Text(map.rows));
        Add(name + "tile", Text(map.tileWidth) + "x" + Text(map.tileHeight));
        for (size_t i = 0; i < map.tiles.size() && map.columns > 0; ++i)
        {
            const auto columns = static_cast<size_t>(map.columns);
            Add(name + "column " + std::to_string(i % columns) + " row " + std::to_string(i / columns), map.tiles[i]);
        }
    }

    void DescribeMapLayer(const SavedMapLayer& layer)
    {
        for (const SavedMapCell& cell : layer.cells)
            Add("map layer " + std::to_string(layer.number) + " column " + std::to_string(cell.column) + " row " +
                    std::to_string(cell.row),
                cell.tileset < 0 ? "empty" : "tileset " + Text(cell.tileset) + " tile " + Text(cell.tile));
    }

    void DescribeNames()
    {
        const SavedNames& names = m_state.names;
        Add("version of the game", names.version);
        Add("automatic saves", names.autosaves);
        Add("name of the room", Text(names.room));
        Add("name of the next room", Text(names.nextRoom));
        Add("views of the room", names.views);
        AddList("object", names.objects);
        AddList("sprite", names.sprites);
        AddList("script", names.scripts);
        for (const SavedCameraName& camera : names.cameras)
            Add("name of camera " + std::to_string(camera.id), Text(camera.name));
    }

    void AddList(const std::string& kind, const std::vector<std::string>& names)
    {
        for (size_t i = 0; i < names.size(); ++i)
            Add("name of " + kind + " " + std::to_string(i), Text(names[i]));
    }

    // A table is called by the first entry that holds it. Those of an entry come later than the entry's own.
    void DescribeTables()
    {
        m_tableNames[0] = "vars";
        const std::vector<SavedTable>& tables = m_state.values.tables;
        for (uint32_t number = 0; number < tables.size(); ++number)
        {
            const std::string name = TableName(number);
            for (const SavedEntry& entry : tables[number].entries)
            {
                const auto* key = std::get_if<HeldText>(&entry.key);
                const std::string path = name + (key == nullptr ? "[" + Text(entry.key) + "]" : "." + Printable(*key));
                if (const auto* table = std::get_if<TableNumber>(&entry.value))
                    m_tableNames.emplace(table->number, path);
                Add(path, Text(entry.value));
            }
        }
    }

    // Deep nesting makes long paths: their start is left out.
    std::string TableName(uint32_t number) const
    {
        constexpr size_t LONGEST = 80;
        const auto found = m_tableNames.find(number);
        const std::string name = found == m_tableNames.end() ? "table " + std::to_string(number) : found->second;
        return name.size() <= LONGEST ? name : "table " + std::to_string(number);
    }

    const SavedState& m_state;
    Description m_lines;
    std::map<uint32_t, std::string> m_tableNames;
};
} // namespace

Description Describe(const SavedState& state) { return Describer(state).Run(); }
} // namespace Runner
