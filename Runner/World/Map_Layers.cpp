// Layers of a map, groups dissolved into a list.
#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Cells.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"
#include "Runner/World/Map_Loading.h"

#include <algorithm>
#include <climits>

namespace Runner
{
namespace
{
struct KindName
{
    std::string_view element;
    MapLayerKind kind;
};

constexpr KindName KINDS[] = {{"layer", MapLayerKind::Tiles},
                              {"objectgroup", MapLayerKind::Objects},
                              {"imagelayer", MapLayerKind::Picture},
                              {"group", MapLayerKind::Group}};

uint8_t Product(uint8_t a, uint8_t b) { return static_cast<uint8_t>((unsigned{a} * b + 127) / 255); }

MapLook Within(const MapLook& group, const MapLook& own)
{
    MapLook look;
    look.visible = group.visible && own.visible;
    look.opacity = group.opacity * own.opacity;
    look.tint = {Product(group.tint.red, own.tint.red), Product(group.tint.green, own.tint.green),
                 Product(group.tint.blue, own.tint.blue), Product(group.tint.alpha, own.tint.alpha)};
    look.offsetX = group.offsetX + own.offsetX;
    look.offsetY = group.offsetY + own.offsetY;
    look.parallaxX = group.parallaxX * own.parallaxX;
    look.parallaxY = group.parallaxY * own.parallaxY;
    return look;
}

MapLook ReadLook(const MapNode& node)
{
    MapLook look;
    look.visible = node.Truth("visible", true);
    look.opacity = node.Number("opacity", 1.0);
    if (look.opacity < 0.0 || look.opacity > 1.0)
        throw MapFault("its opacity must be 0 to 1: set it in the editor");
    look.tint = node.Colour("tintcolor").value_or(MapColour());
    look.offsetX = node.Number("offsetx", 0.0);
    look.offsetY = node.Number("offsety", 0.0);
    look.parallaxX = node.Number("parallaxx", 1.0);
    look.parallaxY = node.Number("parallaxy", 1.0);
    return look;
}

// A rectangle of the grid.
struct Cells
{
    int left, top, columns, rows;

    int64_t Count() const { return int64_t{columns} * rows; }
};

Cells CellsOf(const MapNode& node)
{
    constexpr int SIDE = MapLimits::SIDE;
    return {node.Whole("x", 0, -SIDE, SIDE), node.Whole("y", 0, -SIDE, SIDE), node.Whole("width", 0, 0, SIDE),
            node.Whole("height", 0, 0, SIDE)};
}

std::string_view DataOf(const MapNode& node)
{
    const MapAttribute* data = node.Find("data");
    return data == nullptr ? std::string_view() : data->text;
}

// The cells of a layer or of a chunk; their encoding stands in the layer.
std::vector<MapCell> Decoded(MapNode& node, const MapNode& layer)
{
    const Cells area = CellsOf(node);
    const size_t count = static_cast<size_t>(area.Count());
    if (node.listsCells && node.cells.size() != count)
        WrongCellCount(std::to_string(node.cells.size()), count);
    if (node.listsCells)
        return std::move(node.cells);
    std::vector<MapCell> cells;
    DecodeMapCells(DataOf(node), layer.Text("encoding", "csv"), layer.Text("compression"), count, cells);
    return cells;
}

// Writes the cells of a chunk into those of the layer around it.
void CopyChunk(const std::vector<MapCell>& from, const Cells& chunk, MapLayer& layer)
{
    for (int row = 0; row < chunk.rows; ++row)
    {
        const auto source = from.begin() + std::ptrdiff_t{row} * chunk.columns;
        const std::ptrdiff_t target =
            std::ptrdiff_t{chunk.top - layer.top + row} * layer.columns + (chunk.left - layer.left);
        std::copy(source, source + chunk.columns, layer.cells.begin() + target);
    }
}

// Which numbers are tiles. Layers use few tilesets, one after the other: the last one is remembered.
class KnownTiles
{
public:
    explicit KnownTiles(const MapModel& map) : m_map(map) {}

    bool Has(MapCell number)
    {
        if (number - m_first < m_count)
            return true;
        const MapTileset* tileset = m_map.TilesetOf(number);
        if (tileset == nullptr)
            return false;
        m_first = tileset->firstNumber;
        m_count = tileset->IsCollection() ? 0 : static_cast<MapCell>(tileset->tileCount);
        return true;
    }

private:
    const MapModel& m_map;
    MapCell m_first = 0, m_count = 0;
};

class LayerReader
{
public:
    LayerReader(MapLoading& loading, MapNode& root) : m_loading(loading), m_map(loading.map), m_known(loading.map)
    {
        ReadIn(root, -1);
        CheckIds();
    }

private:
    void ReadIn(MapNode& group, int parent)
    {
        for (MapNode& child : group.children)
        {
            const auto isKind = [&](const KindName& kind) { return kind.element == child.name; };
            const auto found = std::find_if(std::begin(KINDS), std::end(KINDS), isKind);
            if (found == std::end(KINDS))
                continue;
            WithinPlace([&] { return "layer '" + Printable(child.Text("name")) + "'"; },
                        [&] { ReadLayer(child, found->kind, parent); });
            if (found->kind == MapLayerKind::Group)
                ReadIn(child, static_cast<int>(m_map.layers.size()) - 1);
        }
    }

    void ReadLayer(MapNode& node, MapLayerKind kind, int parent)
    {
        if (m_map.layers.size() >= MapLimits::LAYERS)
            throw MapFault("the map has more than " + std::to_string(MapLimits::LAYERS) + " layers: join some");
        MapLayer layer;
        layer.kind = kind;
        layer.id = node.Whole("id", 0, 0, INT_MAX);
        layer.name = node.Text("name");
        layer.className = node.Text("class");
        layer.parent = parent;
        layer.own = ReadLook(node);
        layer.resolved = parent < 0 ? layer.own : Within(m_map.layers[static_cast<size_t>(parent)].resolved, layer.own);
        layer.properties = ReadMapProperties(node, m_map.path);
        switch (kind)
        {
        case MapLayerKind::Tiles: ReadTiles(node, layer); break;
        case MapLayerKind::Objects: ReadObjects(node, layer); break;
        case MapLayerKind::Picture: ReadPicture(node, layer); break;
        case MapLayerKind::Group: break;
        }
        m_map.layers.push_back(std::move(layer));
    }

    void ReadObjects(const MapNode& node, MapLayer& layer)
    {
        layer.drawnByY = node.Text("draworder", "topdown") != "index";
        layer.objectColour = node.Colour("color").value_or(layer.objectColour);
        layer.objects = ReadMapObjects(m_loading, node, m_map.path);
        for (const MapObject& object : layer.objects)
            if (object.id != 0)
                m_ids.push_back(object.id);
    }

    void ReadPicture(const MapNode& node, MapLayer& layer)
    {
        layer.picture = ReadMapPicture(m_loading, node, m_map.path);
        layer.repeatX = node.Truth("repeatx", false);
        layer.repeatY = node.Truth("repeaty", false);
    }

    void ReadTiles(MapNode& node, MapLayer& layer)
    {
        if (node.Child("chunk") != nullptr)
            ReadChunks(node, layer);
        else if (!m_map.infinite)
        {
            SetArea(CellsOf(node), layer);
            layer.cells = Decoded(node, node);
        }
        CheckCells(layer);
    }

    void ReadChunks(MapNode& node, MapLayer& layer)
    {
        int64_t left = INT_MAX, top = INT_MAX, right = INT_MIN, bottom = INT_MIN, count = 0;
        for (const MapNode& child : node.children)
            if (child.name == "chunk")
            {
                const Cells chunk = CellsOf(child);
                left = std::min<int64_t>(left, chunk.left);
                top = std::min<int64_t>(top, chunk.top);
                right = std::max<int64_t>(right, chunk.left + chunk.columns);
                bottom = std::max<int64_t>(bottom, chunk.top + chunk.rows);
                count += chunk.Count();
            }
        const auto side = [](int64_t from, int64_t to) { return static_cast<int>(to - from); };
        SetArea({static_cast<int>(left), static_cast<int>(top), side(left, right), side(top, bottom)}, layer);
        if (count > int64_t{layer.columns} * layer.rows)
            throw MapFault("its chunks overlap: save the map again from the editor");
        layer.cells.assign(static_cast<size_t>(layer.columns) * static_cast<size_t>(layer.rows), 0);
        for (MapNode& child : node.children)
            if (child.name == "chunk")
                CopyChunk(Decoded(child, node), CellsOf(child), layer);
    }

    void SetArea(const Cells& cells, MapLayer& layer)
    {
        m_cells += cells.Count();
        if (cells.Count() > MapLimits::LAYER_CELLS || m_cells > MapLimits::ALL_CELLS)
            throw MapFault("it covers " + std::to_string(cells.columns) + " x " + std::to_string(cells.rows) +
                           " tiles: a layer may have " + std::to_string(MapLimits::LAYER_CELLS) + ", all layers " +
                           std::to_string(MapLimits::ALL_CELLS) + ", so split the map");
        layer.left = cells.left;
        layer.top = cells.top;
        layer.columns = cells.columns;
        layer.rows = cells.rows;
    }

    void CheckCells(MapLayer& layer)
    {
        for (MapCell& cell : layer.cells)
        {
            cell &= ~MAP_CELL_HEXAGONAL;
            const MapCell number = cell & MAP_CELL_NUMBER;
            if (number != 0 && !m_known.Has(number))
                RefuseCell(layer, static_cast<int>(&cell - layer.cells.data()), number);
        }
    }

    [[noreturn]] static void RefuseCell(const MapLayer& layer, int index, MapCell number)
    {
        throw MapFault("the cell at column " + std::to_string(layer.left + index % layer.columns) + ", row " +
                       std::to_string(layer.top + index / layer.columns) + " has tile number " +
                       std::to_string(number) + ", which no tileset has: erase it, or bring the tileset back");
    }

    void CheckIds()
    {
        std::sort(m_ids.begin(), m_ids.end());
        const auto twin = std::adjacent_find(m_ids.begin(), m_ids.end());
        if (twin != m_ids.end())
            throw MapFault("two objects have the id " + std::to_string(*twin) + ": give one of them another");
    }

    MapLoading& m_loading;
    MapModel& m_map;
    KnownTiles m_known;
    int64_t m_cells = 0;
    std::vector<int> m_ids;
};
} // namespace

void ReadMapLayers(MapLoading& loading, MapNode& root) { LayerReader(loading, root); }
} // namespace Runner
