#include "Runner/Save/Sections.h"

#include <type_traits>

namespace Runner
{
namespace
{
// ---- the fields of each record, listed once for writing and reading ----

template <typename Io, typename T>
using FieldsOf = std::conditional_t<std::is_same_v<Io, ByteWriter>, const T, T>; // const when writing

template <typename Io, typename... Fields> void All(Io& io, Fields&... fields) { (io(fields), ...); }

template <typename T> void Transfer(ByteWriter& io, const std::vector<T>& list);
template <typename T> void Transfer(ByteReader& io, std::vector<T>& list);

template <typename Io> void Transfer(Io& io, FieldsOf<Io, int32_t>& number) { io(number); }
template <typename Io> void Transfer(Io& io, FieldsOf<Io, std::string>& text) { io(text); }

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedGame>& game)
{
    All(io, game.identity.name, game.identity.files, game.identity.seed, game.identity.usesSeed);
    All(io, game.screenWidth, game.screenHeight);
    All(io, game.frame, game.room, game.nextRoom);
    All(io, game.randomPosition, game.randomIncrement);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedView>& view)
{
    io(view.camera);
    for (const auto& field : VIEW_FIELDS)
        std::visit([&](auto member) { io(view.fields.*member); }, field);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedInstance>& instance)
{
    All(io, instance.id, instance.object, instance.isDestroyed, instance.isDeactivated);
    All(io, instance.x, instance.y);
    for (const InstanceField& field : INSTANCE_FIELDS)
        std::visit([&](auto member) { io(instance.fields.*member); }, field.member);
    io(instance.variables);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedCameraFlags>& camera)
{
    All(io, camera.id, camera.isClone, camera.isPersistent, camera.isOfRoom);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedSurface>& surface)
{
    All(io, surface.number, surface.width, surface.height);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedTileMap>& map)
{
    All(io, map.number, map.sprite, map.columns, map.rows, map.tileWidth, map.tileHeight);
    Transfer(io, map.tiles);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedWorld>& world)
{
    io(world.nextId);
    Transfer(io, world.instances);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedCameras>& cameras)
{
    All(io, cameras.defaultCamera, cameras.ownDefaultCamera, cameras.activeCamera, cameras.highPoint);
    Transfer(io, cameras.flags);
    io(cameras.stream);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedCameraName>& camera) { All(io, camera.id, camera.name); }

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedNames>& names)
{
    All(io, names.version, names.autosaves, names.room, names.nextRoom, names.views);
    Transfer(io, names.objects);
    Transfer(io, names.sprites);
    Transfer(io, names.scripts);
    Transfer(io, names.cameras);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedMapCell>& cell)
{
    All(io, cell.column, cell.row, cell.tileset, cell.tile);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedMapLayer>& layer)
{
    All(io, layer.number, layer.name);
    Transfer(io, layer.cells);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedMap>& map)
{
    Transfer(io, map.tilesets);
    Transfer(io, map.layers);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedShownLayer>& layer)
{
    All(io, layer.number, layer.name, layer.visible);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedThumbnail>& thumbnail)
{
    All(io, thumbnail.width, thumbnail.height, thumbnail.rgb);
}

// ---- values: the kind, then its content ----

void Content(ByteWriter& io, const TableNumber& table) { io(table.number); }
void Content(ByteReader& io, TableNumber& table) { io(table.number); }
void Content(ByteWriter& io, const InstanceNumber& instance) { io(instance.id); }
void Content(ByteReader& io, InstanceNumber& instance) { io(instance.id); }
template <typename Io, typename T> void Content(Io& io, T& plain) { io(plain); }

template <typename... Kinds> void Transfer(ByteWriter& io, const std::variant<Kinds...>& value)
{
    io(static_cast<uint32_t>(value.index()));
    std::visit([&io](const auto& content) { Content(io, content); }, value);
}

template <typename Kind, typename Value> bool ReadKind(ByteReader& io, Value& value)
{
    Content(io, value.template emplace<Kind>());
    return true;
}

template <typename... Kinds> void Transfer(ByteReader& io, std::variant<Kinds...>& value)
{
    uint32_t kind = 0;
    io(kind);
    uint32_t candidate = 0;
    const bool known = ((kind == candidate++ && ReadKind<Kinds>(io, value)) || ...);
    if (!known)
        io.Fail();
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedEntry>& entry)
{
    Transfer(io, entry.key);
    Transfer(io, entry.value);
}

template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedTable>& table) { Transfer(io, table.entries); }
template <typename Io> void Transfer(Io& io, FieldsOf<Io, SavedValues>& values) { Transfer(io, values.tables); }

// ---- lists ----

template <typename T> void Transfer(ByteWriter& io, const std::vector<T>& list)
{
    io.Count(list.size());
    for (const T& item : list)
        Transfer(io, item);
}

// The list grows item by item: the count may be false, and must not allocate more than the file holds.
template <typename T> void Transfer(ByteReader& io, std::vector<T>& list)
{
    const size_t count = io.Count();
    for (size_t i = 0; i < count && !io.Failed(); ++i)
    {
        list.emplace_back();
        Transfer(io, list.back());
    }
}

// ---- sections ----

template <auto part>
constexpr Section MakeSection(const char (&tag)[5], uint32_t since = 1, bool (*isThere)(const SavedState&) = nullptr)
{
    return {{tag[0], tag[1], tag[2], tag[3], '\0'},
            since,
            isThere,
            [](ByteWriter& io, const SavedState& state) { Transfer(io, state.*part); },
            [](ByteReader& io, SavedState& state) { Transfer(io, state.*part); }};
}

bool HasMapCells(const SavedState& state) { return !state.map.layers.empty(); }
bool HasShownLayers(const SavedState& state) { return !state.shownLayers.empty(); }
bool HasThumbnail(const SavedState& state) { return !state.thumbnail.rgb.empty(); }
} // namespace

const Section SECTIONS[SECTION_COUNT] = {
    MakeSection<&SavedState::game>("GAME"),
    MakeSection<&SavedState::views>("VIEW"),
    MakeSection<&SavedState::world>("INST"),
    MakeSection<&SavedState::cameras>("CAMS"),
    MakeSection<&SavedState::surfaces>("SURF"),
    MakeSection<&SavedState::tileMaps>("TILE"),
    MakeSection<&SavedState::values>("VARS"),
    MakeSection<&SavedState::names>("NAME", 2),
    MakeSection<&SavedState::map>("MAPC", 2, HasMapCells),
    MakeSection<&SavedState::shownLayers>("MAPL", 2, HasShownLayers),
    MakeSection<&SavedState::thumbnail>(THUMBNAIL_TAG, 2, HasThumbnail),
};
} // namespace Runner
