// Tilesets of a map: in the map's own file or in others, of one picture or of many.
#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"
#include "Runner/World/Map_Loading.h"
#include "Runner/World/Map_Path.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr const char* ALIGNMENTS[] = {"topleft", "top",        "topright", "left",       "center",
                                      "right",   "bottomleft", "bottom",   "bottomright"};

MapAlignment ReadAlignment(const MapNode& node)
{
    const std::string name = node.Text("objectalignment", "unspecified");
    if (name == "unspecified")
        return MapAlignment::BottomLeft;
    const auto found = std::find(std::begin(ALIGNMENTS), std::end(ALIGNMENTS), name);
    if (found == std::end(ALIGNMENTS))
        throw MapFault("its objectalignment \"" + Printable(name) + "\" is unknown: choose one in the editor");
    return static_cast<MapAlignment>(found - std::begin(ALIGNMENTS));
}

std::vector<MapFrame> ReadAnimation(const MapNode& node)
{
    std::vector<MapFrame> frames;
    bool lasts = false;
    for (const MapNode& child : node.children)
    {
        if (child.name != "frame")
            continue;
        const int tile = child.Whole("tileid", 0, 0, MapLimits::TILES - 1);
        frames.push_back({tile, child.Whole("duration", 0, 0, 1000000000)});
        lasts = lasts || frames.back().milliseconds > 0;
    }
    if (!frames.empty() && !lasts)
        throw MapFault("no frame of its animation lasts: give them durations");
    return frames;
}

// A part of the picture, all of it unless the file says otherwise.
void ReadPart(const MapNode& node, MapTile& tile)
{
    tile.x = node.Whole("x", 0, 0, tile.picture.width - 1);
    tile.y = node.Whole("y", 0, 0, tile.picture.height - 1);
    tile.width = node.Whole("width", tile.picture.width - tile.x, 1, tile.picture.width - tile.x);
    tile.height = node.Whole("height", tile.picture.height - tile.y, 1, tile.picture.height - tile.y);
}

MapTile ReadTile(MapLoading& loading, const MapNode& node, const MapTileset& tileset, const std::string& file)
{
    MapTile tile;
    tile.id = node.Whole("id", -1, 0, MapLimits::TILES - 1);
    if (tile.id < 0)
        throw MapFault("it has no id: save it again from the editor");
    tile.className = ReadMapClass(node);
    tile.animation = ReadAnimation(node);
    tile.properties = ReadMapProperties(node, file);
    if (const MapNode* group = node.Child("objectgroup"))
        tile.objects = ReadMapShapes(*group, file);
    if (!tileset.IsCollection())
        return tile;
    tile.picture = ReadMapPicture(loading, node, file);
    if (tile.picture.path.empty())
        throw MapFault("it has no picture: give it one, or remove it");
    ReadPart(node, tile);
    return tile;
}

bool Earlier(const MapTile& a, const MapTile& b) { return a.id < b.id; }

void ReadTiles(MapLoading& loading, const MapNode& node, const std::string& file, MapTileset& tileset)
{
    if (node.Child("tiles") != nullptr)
        throw MapFault("its tiles have a form that editors before 1.2 wrote: save it again from a newer one");
    for (const MapNode& child : node.children)
        if (child.name == "tile")
            WithinPlace([&] { return "tile " + child.Text("id", "without id"); },
                        [&] { tileset.tiles.push_back(ReadTile(loading, child, tileset, file)); });
    std::sort(tileset.tiles.begin(), tileset.tiles.end(), Earlier);
    const auto same = [](const MapTile& a, const MapTile& b) { return a.id == b.id; };
    const auto twin = std::adjacent_find(tileset.tiles.begin(), tileset.tiles.end(), same);
    if (twin != tileset.tiles.end())
        throw MapFault("tile " + std::to_string(twin->id) + " stands there twice: remove one");
}

// How many tiles fit beside each other, after the margin and with a spacing between them. As the editor counts them,
// which asks for no margin at the other end.
int TilesAlong(int side, int tile, int margin, int spacing)
{
    return static_cast<int>(std::max<int64_t>((int64_t{side} - margin + spacing) / (int64_t{tile} + spacing), 0));
}

// The picture counts, not what the file says of it: it may have grown since the map was saved.
void CountTiles(MapTileset& tileset)
{
    if (tileset.IsCollection())
    {
        tileset.tileCount = static_cast<int>(tileset.tiles.size());
        return;
    }
    const MapPicture& picture = tileset.picture;
    tileset.columns = TilesAlong(picture.width, tileset.tileWidth, tileset.margin, tileset.spacing);
    const int rows = TilesAlong(picture.height, tileset.tileHeight, tileset.margin, tileset.spacing);
    const int64_t count = int64_t{tileset.columns} * rows;
    if (count == 0 || count > MapLimits::TILES)
        throw MapFault("its picture of " + std::to_string(picture.width) + " x " + std::to_string(picture.height) +
                       " has " + std::to_string(count) + " tiles of its size: at least 1 and at most " +
                       std::to_string(MapLimits::TILES) + " are possible");
    tileset.tileCount = static_cast<int>(count);
}

void CheckIds(const MapTileset& tileset)
{
    for (const MapTile& tile : tileset.tiles)
    {
        const auto exists = [&](const MapFrame& frame) { return tileset.HasTile(frame.tile); };
        if (!tileset.HasTile(tile.id))
            throw MapFault("tile " + std::to_string(tile.id) + " lies beyond the picture's " +
                           std::to_string(tileset.tileCount) + ": remove it, or give it another picture");
        if (!std::all_of(tile.animation.begin(), tile.animation.end(), exists))
            throw MapFault("the animation of tile " + std::to_string(tile.id) +
                           " shows a tile that does not exist: remove that frame");
    }
}

void ReadContent(MapLoading& loading, const MapNode& node, MapTileset& tileset)
{
    constexpr int SIDE = MapLimits::SIDE;
    tileset.className = node.Text("class");
    tileset.picture = ReadMapPicture(loading, node, tileset.path);
    const int leastSide = tileset.IsCollection() ? 0 : 1;
    tileset.tileWidth = node.Whole("tilewidth", 0, leastSide, SIDE);
    tileset.tileHeight = node.Whole("tileheight", 0, leastSide, SIDE);
    if (!tileset.IsCollection() && (tileset.tileWidth == 0 || tileset.tileHeight == 0))
        throw MapFault("it does not say how large its tiles are: save it again from the editor");
    tileset.spacing = node.Whole("spacing", 0, 0, SIDE);
    tileset.margin = node.Whole("margin", 0, 0, SIDE);
    if (const MapNode* offset = node.Child("tileoffset"))
    {
        tileset.offsetX = offset->Whole("x", 0, -SIDE, SIDE);
        tileset.offsetY = offset->Whole("y", 0, -SIDE, SIDE);
    }
    tileset.objectAlignment = ReadAlignment(node);
    tileset.drawnAtGridSize = node.Text("tilerendersize") == "grid";
    tileset.keepsAspect = node.Text("fillmode") == "preserve-aspect-fit";
    tileset.properties = ReadMapProperties(node, tileset.path);
    ReadTiles(loading, node, tileset.path, tileset);
    CountTiles(tileset);
    CheckIds(tileset);
}

std::string PlaceOf(const MapTileset& tileset) { return "tileset '" + Printable(tileset.name) + "'"; }

// In a file of its own, the file is place enough.
void ReadFileOf(MapLoading& loading, MapTileset& tileset)
{
    const std::unique_ptr<MapDocument> document = loading.Open(tileset.path, "tileset");
    try
    {
        tileset.name = document->Root().Text("name");
        ReadContent(loading, document->Root(), tileset);
    }
    catch (MapFault& fault)
    {
        fault.AddFile(PrintableName(tileset.path));
        throw;
    }
}

// One past the largest number that the tileset has.
int64_t EndOf(const MapTileset& tileset)
{
    const int64_t ids = !tileset.IsCollection() ? tileset.tileCount
                        : tileset.tiles.empty() ? 1
                                                : tileset.tiles.back().id + 1;
    return int64_t{tileset.firstNumber} + ids;
}

void AddTileset(MapLoading& loading, MapTileset tileset)
{
    if (loading.map.tilesets.size() >= MapLimits::TILESETS)
        throw MapFault("the map has more than " + std::to_string(MapLimits::TILESETS) + " tilesets: join some");
    if (EndOf(tileset) > int64_t{MAP_CELL_NUMBER} + 1)
        throw MapFault(PlaceOf(tileset) + ": its numbers go beyond " + std::to_string(MAP_CELL_NUMBER) +
                       ": save the map again from the editor");
    loading.map.tilesets.push_back(std::move(tileset));
}

void ReadTileset(MapLoading& loading, const MapNode& node)
{
    MapTileset tileset;
    tileset.name = node.Text("name");
    const std::string source = node.Text("source");
    const auto place = [&] { return PlaceOf(tileset); };
    WithinPlace(place,
                [&]
                {
                    tileset.firstNumber =
                        static_cast<MapCell>(node.Whole("firstgid", 0, 1, static_cast<int>(MAP_CELL_NUMBER)));
                    if (tileset.firstNumber == 0)
                        throw MapFault("it has no firstgid: save the map again from the editor");
                    tileset.path = source.empty() ? loading.map.path : ResolveMapPath(loading.map.path, source);
                    if (source.empty())
                        ReadContent(loading, node, tileset);
                    else
                        ReadFileOf(loading, tileset);
                });
    AddTileset(loading, std::move(tileset));
}
} // namespace

void ReadMapTilesets(MapLoading& loading, const MapNode& root)
{
    for (const MapNode& child : root.children)
        if (child.name == "tileset")
            ReadTileset(loading, child);
    auto& tilesets = loading.map.tilesets;
    const auto earlier = [](const MapTileset& a, const MapTileset& b) { return a.firstNumber < b.firstNumber; };
    std::sort(tilesets.begin(), tilesets.end(), earlier);
    const auto same = [](const MapTileset& a, const MapTileset& b) { return a.firstNumber == b.firstNumber; };
    const auto twin = std::adjacent_find(tilesets.begin(), tilesets.end(), same);
    if (twin != tilesets.end())
        throw MapFault("two tilesets begin with the number " + std::to_string(twin->firstNumber) +
                       ": save the map again from the editor");
}

MapCell NumberOfTileset(MapLoading& loading, const std::string& path)
{
    int64_t end = 1;
    for (const MapTileset& tileset : loading.map.tilesets)
    {
        if (tileset.path == path && path != loading.map.path)
            return tileset.firstNumber;
        end = std::max(end, EndOf(tileset));
    }
    MapTileset tileset;
    tileset.path = path;
    tileset.firstNumber = static_cast<MapCell>(end);
    ReadFileOf(loading, tileset);
    AddTileset(loading, std::move(tileset));
    return static_cast<MapCell>(end);
}
} // namespace Runner
