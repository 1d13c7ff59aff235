#pragma once
// What the room of an editor's map draws, and what was changed since the room started: cells, and which layers are
// shown.

#include "Runner/Base/Area.h"
#include "Runner/Draw/Layer_Grid.h"
#include "Runner/Game/Tile_Numbers.h"
#include "Runner/World/Map_Model.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace Runner
{
class Painter;

// A tile that an object of the map shows, and that is no instance.
struct MapSprite
{
    uint32_t cell = 0;        // by the index of TileNumbers
    float corners[4][2] = {}; // top left, top right, bottom right, bottom left of the unturned tile; room units
};

struct MapImage
{
    int sprite = -1;
    float width = 0.0f, height = 0.0f; // room units
    bool repeatX = false, repeatY = false;
};

// A layer of the map as the room draws it.
struct DrawnLayer
{
    int number = 0;     // in the map's layers
    float depth = 0.0f; // among the instances: larger is further away
    float x = 0.0f, y = 0.0f;
    float parallaxX = 1.0f, parallaxY = 1.0f;
    unsigned tint = 0xFFFFFF;
    float alpha = 1.0f;
    bool visible = true;
    int grid = -1;         // the painter's; -1 for a layer without cells
    int left = 0, top = 0; // the grid's first cell in the map
    std::vector<MapSprite> sprites;
    MapImage image;
};

struct ChangedCell
{
    int32_t layer = 0, column = 0, row = 0; // the layer's number in the map; the column and the row in the room
    MapCell cell = 0;                       // with the map's own number
};

struct ShownLayer
{
    int32_t layer = 0; // its number in the map
    bool visible = true;
};

class RoomMap
{
public:
    // The part of the map, in its pixels, that is the room.
    struct Part
    {
        double left = 0.0, top = 0.0;
        int width = 1, height = 1;
    };

    // model: without the cells, which the painter's layers have. The drawn layers come in the map's order.
    RoomMap(MapModel model, TileNumbers numbers, std::shared_ptr<const TileLooks> looks, std::vector<DrawnLayer> layers,
            const Part& room);

    const MapModel& Model() const { return m_model; }
    const Part& Room() const { return m_room; }
    const DrawnLayer* FindLayer(int number) const;     // by its number in the map; null when there is none
    int FindLayerNamed(const std::string& name) const; // its number, the first one's; -1 when there is none

    // ---- cells, by column and row of the room; a layer without cells has none ----
    bool HasCell(const Painter& painter, int layer, int column, int row) const;
    MapCell Cell(const Painter& painter, int layer, int column, int row) const; // 0 when empty or outside
    bool SetCell(Painter& painter, const ChangedCell& change);      // false outside, or for a tile that does not exist
    std::vector<ChangedCell> Changes(const Painter& painter) const; // what differs from the file, by layer, row, column
    void Reset(Painter& painter);                                   // as the file says, the layers, too

    // ---- layers: visible of its own; one is drawn when the groups around it are visible, too ----
    bool IsVisible(int layer) const;               // false when there is none
    bool SetVisible(const ShownLayer& change);     // false when there is none
    std::vector<ShownLayer> ChangedLayers() const; // what differs from the file, by layer

    // ---- drawing, through the painter's current matrices ----
    // Draws the layers from `next` on whose depth is at least that, and counts next up. eye: where the camera stands.
    void Draw(Painter& painter, int64_t milliseconds, float depth, size_t& next) const;

private:
    struct Group // neighbours in the order of drawing, and the area that they cover
    {
        size_t first = 0, end = 0;
        RoomArea area = {};
    };
    struct Place // of a cell in the painter's grid
    {
        int grid = -1, column = 0, row = 0;
    };
    Place PlaceOf(int layer, int column, int row) const;
    void GroupSprites();
    bool IsModelLayer(int layer) const;
    void ShowLayers();
    void DrawLayer(Painter& painter, const DrawnLayer& layer, int64_t milliseconds) const;
    void DrawSprites(Painter& painter, const DrawnLayer& layer, float x, float y, int64_t milliseconds) const;

    MapModel m_model;
    TileNumbers m_numbers;
    std::shared_ptr<const TileLooks> m_looks;
    std::vector<DrawnLayer> m_layers;         // larger depth first
    std::vector<std::vector<Group>> m_groups; // of each of m_layers
    std::vector<bool> m_visible;              // of each layer of the map, by its number, without the groups around
    Part m_room;
    std::map<std::tuple<int, int, int>, MapCell> m_originals; // layer, row, column: what the file says of changed cells
};
} // namespace Runner
