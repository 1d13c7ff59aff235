// The tiles of an editor's map as sprites.
#include "Platform/Strict_Float.h"

#include "Runner/Api/Map_Tiles.h"

#include "Runner/Draw/Painter.h"
#include "Runner/Draw/Png_Reader.h"
#include "Runner/Game/Game.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int64_t PIXELS_LIMIT = 1 << 26; // of all tiles of a map

// The pictures of one map, read once as long as they follow each other.
class Pictures
{
public:
    explicit Pictures(const Arguments& call) : m_call(call) {}

    const Picture& Read(const MapPicture& wanted)
    {
        if (wanted.path == m_path && wanted.transparent == m_transparent)
            return m_picture;
        std::string why;
        m_path.clear();
        if (!ReadPng(m_call.game.scripts.files.PathOf(wanted.path), m_picture, why))
            m_call.Fail(why);
        if (wanted.transparent.has_value())
            ClearColour(m_picture, wanted.transparent->red, wanted.transparent->green, wanted.transparent->blue);
        m_path = wanted.path;
        m_transparent = wanted.transparent;
        return m_picture;
    }

    int AddSprite(const Picture& picture, const FrameLayout& frames)
    {
        const int64_t rows = (int64_t{frames.count} + frames.columns - 1) / frames.columns;
        m_pixels += int64_t{frames.columns} * frames.width * rows * frames.height; // each below 2^21, the rows, too
        if (m_pixels > PIXELS_LIMIT)
            m_call.Fail("the pictures of the map have more than " + std::to_string(PIXELS_LIMIT) +
                        " pixels in all: leave out tiles that it does not use");
        Painter& painter = OpenedPainter(m_call);
        const int sprite = painter.AddSheet(JoinFrames(picture, frames), frames.width, frames.height);
        const SpriteInfo* info = painter.FindSprite(sprite);
        if (info == nullptr)
            m_call.Fail(painter.TakeError());
        m_call.game.names.NoteSprite(sprite, m_path);
        m_call.game.world.SetSpriteExtent(
            sprite, {static_cast<float>(info->width), static_cast<float>(info->height), 0.0f, 0.0f});
        m_call.game.names.NoteSprite(sprite, m_path);
        return sprite;
    }

private:
    const Arguments& m_call;
    std::string m_path;
    std::optional<MapColour> m_transparent;
    Picture m_picture;
    int64_t m_pixels = 0; // of all sprites so far
};

// Where a picture of that size stands in its cell: at the lower left corner, or scaled into the cell.
TileRect Place(const MapModel& map, const MapTileset& tileset, int width, int height)
{
    const auto cellWidth = static_cast<float>(map.tileWidth), cellHeight = static_cast<float>(map.tileHeight);
    auto w = static_cast<float>(width), h = static_cast<float>(height);
    float left = 0.0f, bottom = cellHeight;
    if (tileset.drawnAtGridSize)
    {
        const float across = cellWidth / w, down = cellHeight / h, both = std::min(across, down);
        w *= tileset.keepsAspect ? both : across;
        h *= tileset.keepsAspect ? both : down;
        left = (cellWidth - w) / 2.0f;
        bottom = cellHeight - (cellHeight - h) / 2.0f;
    }
    left += static_cast<float>(tileset.offsetX);
    bottom += static_cast<float>(tileset.offsetY);
    return {left, bottom - h, left + w, bottom};
}

TileLook LookOf(const MapModel& map, const MapTileset& tileset, int sprite, int frame, int width, int height)
{
    return {sprite, frame, Place(map, tileset, width, height), Place(map, tileset, height, width)};
}

void LoadSheet(Pictures& pictures, const MapModel& map, const MapTileset& tileset, TileLook* looks)
{
    const FrameLayout frames = {tileset.tileWidth, tileset.tileHeight, tileset.margin,
                                tileset.spacing,   tileset.columns,    tileset.tileCount};
    const int sprite = pictures.AddSprite(pictures.Read(tileset.picture), frames);
    for (int tile = 0; tile < tileset.tileCount; ++tile)
        looks[tile] = LookOf(map, tileset, sprite, tile, tileset.tileWidth, tileset.tileHeight);
}

void LoadCollection(Pictures& pictures, const MapModel& map, const MapTileset& tileset, TileLook* looks)
{
    for (const MapTile& tile : tileset.tiles)
    {
        const Picture& whole = pictures.Read(tile.picture);
        const int sprite = pictures.AddSprite(CropPicture(whole, tile.x, tile.y, tile.width, tile.height),
                                              {tile.width, tile.height, 0, 0, 1, 1});
        looks[tile.id] = LookOf(map, tileset, sprite, 0, tile.width, tile.height);
    }
}

void ReadAnimations(const MapTileset& tileset, uint32_t first, TileLooks& tiles)
{
    for (const MapTile& tile : tileset.tiles)
    {
        std::vector<TileStep> steps;
        int64_t until = 0;
        for (const MapFrame& frame : tile.animation)
            steps.push_back({first + static_cast<uint32_t>(frame.tile), until += std::max(frame.milliseconds, 0)});
        if (steps.empty())
            continue;
        tiles.animationOf[first + static_cast<uint32_t>(tile.id)] = static_cast<int>(tiles.animations.size());
        tiles.animations.push_back(std::move(steps));
    }
}
} // namespace

std::shared_ptr<const TileLooks> LoadTiles(const Arguments& call, const MapModel& map, const TileNumbers& numbers)
{
    if (numbers.Count() > MAP_TILES_LIMIT)
        call.Fail("\"" + map.path + "\" has more than " + std::to_string(MAP_TILES_LIMIT) +
                  " tiles in its tilesets: leave out those that it does not use");
    auto tiles = std::make_shared<TileLooks>();
    tiles->looks.resize(numbers.Count());
    tiles->animationOf.resize(numbers.Count(), -1);
    Pictures pictures(call);
    for (size_t i = 0; i < map.tilesets.size(); ++i)
    {
        const MapTileset& tileset = map.tilesets[i];
        if (numbers.TilesOf(i) == 0)
            continue;
        TileLook* looks = &tiles->looks[numbers.FirstIndex(i)];
        (tileset.IsCollection() ? LoadCollection : LoadSheet)(pictures, map, tileset, looks);
        ReadAnimations(tileset, numbers.FirstIndex(i), *tiles);
    }
    return tiles;
}

int LoadMapPicture(const Arguments& call, const MapPicture& picture)
{
    Pictures pictures(call);
    const Picture& read = pictures.Read(picture);
    return pictures.AddSprite(read, {read.width, read.height, 0, 0, 1, 1});
}
} // namespace Runner
