#include "Platform/Strict_Float.h"

#include "Runner/Game/Room_Map.h"

#include "Files/Graphics/Matrix_Invert.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Host/Graphics.h"
#include "Runner/World/Running_Room.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace Runner
{
RoomMap::RoomMap(MapModel model, TileNumbers numbers, std::shared_ptr<const TileLooks> looks,
                 std::vector<DrawnLayer> layers, const Part& room)
    : m_model(std::move(model)), m_numbers(std::move(numbers)), m_looks(std::move(looks)), m_layers(std::move(layers)),
      m_room(room)
{
    std::stable_sort(m_layers.begin(), m_layers.end(),
                     [](const DrawnLayer& a, const DrawnLayer& b) { return a.depth > b.depth; });
    GroupSprites();
    for (const MapLayer& layer : m_model.layers)
        m_visible.push_back(layer.own.visible);
}

const DrawnLayer* RoomMap::FindLayer(int number) const
{
    const auto found = std::find_if(m_layers.begin(), m_layers.end(),
                                    [number](const DrawnLayer& layer) { return layer.number == number; });
    return found == m_layers.end() ? nullptr : &*found;
}

int RoomMap::FindLayerNamed(const std::string& name) const
{
    const auto& all = m_model.layers;
    const auto found =
        std::find_if(all.begin(), all.end(), [&name](const MapLayer& layer) { return layer.name == name; });
    return found == all.end() ? -1 : static_cast<int>(found - all.begin());
}

// ---- cells ----

RoomMap::Place RoomMap::PlaceOf(int layer, int column, int row) const
{
    const DrawnLayer* drawn = FindLayer(layer);
    const bool isNear = std::abs(int64_t{column}) <= ROOM_SIDE_LIMIT && std::abs(int64_t{row}) <= ROOM_SIDE_LIMIT;
    if (drawn == nullptr || !isNear)
        return {};
    return {drawn->grid, column + static_cast<int>(m_room.left) / m_model.tileWidth - drawn->left,
            row + static_cast<int>(m_room.top) / m_model.tileHeight - drawn->top};
}

bool RoomMap::HasCell(const Painter& painter, int layer, int column, int row) const
{
    const Place place = PlaceOf(layer, column, row);
    return painter.HasMapCell(place.grid, place.column, place.row);
}

MapCell RoomMap::Cell(const Painter& painter, int layer, int column, int row) const
{
    const Place place = PlaceOf(layer, column, row);
    const uint32_t cell = painter.GetMapCell(place.grid, place.column, place.row);
    return m_numbers.NumberOf(cell & TILE_NUMBER) | (cell & ~TILE_NUMBER);
}

bool RoomMap::SetCell(Painter& painter, const ChangedCell& change)
{
    const Place place = PlaceOf(change.layer, change.column, change.row);
    const MapCell before = Cell(painter, change.layer, change.column, change.row);
    const MapCell number = change.cell & MAP_CELL_NUMBER;
    const uint32_t index = m_numbers.IndexOf(number);
    if (index == 0 && number != 0)
        return false;
    const uint32_t cell = index == 0 ? 0 : index | (change.cell & MAP_CELL_FLAGS);
    if (!painter.SetMapCell(place.grid, place.column, place.row, cell))
        return false;
    m_originals.emplace(std::make_tuple(change.layer, change.row, change.column), before); // the first one stays
    return true;
}

std::vector<ChangedCell> RoomMap::Changes(const Painter& painter) const
{
    std::vector<ChangedCell> changes;
    for (const auto& [place, original] : m_originals)
    {
        const auto& [layer, row, column] = place;
        const MapCell cell = Cell(painter, layer, column, row);
        if (cell != original)
            changes.push_back({layer, column, row, cell});
    }
    return changes;
}

void RoomMap::Reset(Painter& painter)
{
    const auto originals = m_originals;
    for (const auto& [place, original] : originals)
        SetCell(painter, {std::get<0>(place), std::get<2>(place), std::get<1>(place), original});
    m_originals.clear();
    for (size_t i = 0; i < m_visible.size(); ++i)
        m_visible[i] = m_model.layers[i].own.visible;
    ShowLayers();
}

// ---- layers ----

bool RoomMap::IsModelLayer(int layer) const { return layer >= 0 && static_cast<size_t>(layer) < m_visible.size(); }

bool RoomMap::IsVisible(int layer) const { return IsModelLayer(layer) && m_visible[static_cast<size_t>(layer)]; }

bool RoomMap::SetVisible(const ShownLayer& change)
{
    if (!IsModelLayer(change.layer))
        return false;
    m_visible[static_cast<size_t>(change.layer)] = change.visible;
    ShowLayers();
    return true;
}

std::vector<ShownLayer> RoomMap::ChangedLayers() const
{
    std::vector<ShownLayer> changes;
    for (size_t i = 0; i < m_visible.size(); ++i)
        if (m_visible[i] != m_model.layers[i].own.visible)
            changes.push_back({static_cast<int32_t>(i), m_visible[i]});
    return changes;
}

// A group comes before its layers in the map's list.
void RoomMap::ShowLayers()
{
    std::vector<bool> shown = m_visible;
    for (size_t i = 0; i < shown.size(); ++i)
        if (m_model.layers[i].parent >= 0)
            shown[i] = shown[i] && shown[static_cast<size_t>(m_model.layers[i].parent)];
    for (DrawnLayer& layer : m_layers)
        layer.visible = shown[static_cast<size_t>(layer.number)];
}

// ---- drawing ----

namespace
{
constexpr size_t SPRITES_IN_GROUP = 64;
constexpr int64_t MOST_COPIES = 1 << 14; // of an image that repeats, in one view

RoomArea AreaOf(const MapSprite& sprite)
{
    RoomArea area = {sprite.corners[0][0], sprite.corners[0][1], sprite.corners[0][0], sprite.corners[0][1]};
    for (const float(&corner)[2] : sprite.corners)
        area = {std::min(area.left, corner[0]), std::min(area.top, corner[1]), std::max(area.right, corner[0]),
                std::max(area.bottom, corner[1])};
    return area;
}

RoomArea Around(const RoomArea& a, const RoomArea& b)
{
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

RoomArea Moved(const RoomArea& area, float x, float y)
{
    return {area.left + x, area.top + y, area.right + x, area.bottom + y};
}

// The eye of the current view, as its matrix has it. The origin for a matrix that has no inverse.
struct Eye
{
    float x = 0.0f, y = 0.0f;
};

Eye CurrentEye()
{
    kvMatrix inverse;
    if (!CameraModule::InvertTo(inverse, CurrentMatrix(eM_View)) || !std::isfinite(inverse._41) ||
        !std::isfinite(inverse._42))
        return {};
    return {inverse._41, inverse._42};
}

// Puts the drawing state of the painter back: the layers of a map are drawn between instances that do not know of it.
class StateKeeper
{
public:
    explicit StateKeeper(Painter& painter)
        : m_painter(painter), m_colour(painter.Colour()), m_alpha(painter.Alpha()), m_depth(painter.Depth())
    {
        painter.SetDepth(0.0f);
    }
    ~StateKeeper()
    {
        m_painter.SetColour(m_colour);
        m_painter.SetAlpha(m_alpha);
        m_painter.SetDepth(m_depth);
    }
    StateKeeper(const StateKeeper&) = delete;
    StateKeeper& operator=(const StateKeeper&) = delete;

private:
    Painter& m_painter;
    unsigned m_colour;
    float m_alpha, m_depth;
};

// The numbers of the copies of an image of that size, one of which starts at `place`, that meet low..high.
struct Copies
{
    int64_t first = 0, last = 0;
    int64_t Count() const { return last - first + 1; }
};

Copies CopiesBetween(float low, float high, float place, float size, bool repeats)
{
    if (!repeats)
        return {0, 0};
    const auto number = [place, size](float at)
    { return static_cast<int64_t>(std::floor(std::clamp((at - place) / size, -1e9f, 1e9f))); };
    return {number(low), number(high)};
}

// room: where it is drawn when the view's area is not known.
void DrawImage(Painter& painter, const MapImage& image, float x, float y, const RoomArea& room)
{
    const RoomArea bounds = VisibleRegion().bounds;
    const RoomArea seen = std::isfinite(bounds.right - bounds.left + bounds.bottom - bounds.top) ? bounds : room;
    const Copies across = CopiesBetween(seen.left, seen.right, x, image.width, image.repeatX);
    const Copies down = CopiesBetween(seen.top, seen.bottom, y, image.height, image.repeatY);
    if (across.Count() > MOST_COPIES || down.Count() > MOST_COPIES || across.Count() * down.Count() > MOST_COPIES)
        return;
    for (int64_t row = down.first; row <= down.last; ++row)
        for (int64_t column = across.first; column <= across.last; ++column)
        {
            const float left = x + static_cast<float>(column) * image.width;
            const float top = y + static_cast<float>(row) * image.height;
            painter.SpriteStretched(image.sprite, 0, left, top, left + image.width, top + image.height);
        }
}
} // namespace

void RoomMap::GroupSprites()
{
    for (const DrawnLayer& layer : m_layers)
    {
        std::vector<Group> groups;
        for (size_t first = 0; first < layer.sprites.size(); first += SPRITES_IN_GROUP)
        {
            Group group = {first, std::min(first + SPRITES_IN_GROUP, layer.sprites.size()),
                           AreaOf(layer.sprites[first])};
            for (size_t i = first + 1; i < group.end; ++i)
                group.area = Around(group.area, AreaOf(layer.sprites[i]));
            groups.push_back(group);
        }
        m_groups.push_back(std::move(groups));
    }
}

void RoomMap::Draw(Painter& painter, int64_t milliseconds, float depth, size_t& next) const
{
    if (next >= m_layers.size() || m_layers[next].depth < depth)
        return;
    const StateKeeper keeper(painter);
    for (; next < m_layers.size() && m_layers[next].depth >= depth; ++next)
        if (m_layers[next].visible)
            DrawLayer(painter, m_layers[next], milliseconds);
}

// A layer with a parallax factor f moves by 1 - f times the way that the eye is away from the map's parallax origin.
void RoomMap::DrawLayer(Painter& painter, const DrawnLayer& layer, int64_t milliseconds) const
{
    const Eye eye = layer.parallaxX != 1.0f || layer.parallaxY != 1.0f ? CurrentEye() : Eye();
    const auto originX = static_cast<float>(m_model.parallaxOriginX - m_room.left);
    const auto originY = static_cast<float>(m_model.parallaxOriginY - m_room.top);
    const float x = layer.x + (layer.parallaxX != 1.0f ? (eye.x - originX) * (1.0f - layer.parallaxX) : 0.0f);
    const float y = layer.y + (layer.parallaxY != 1.0f ? (eye.y - originY) * (1.0f - layer.parallaxY) : 0.0f);
    painter.SetColour(layer.tint);
    painter.SetAlpha(layer.alpha);
    if (layer.grid >= 0)
        painter.MapLayer(layer.grid, x + static_cast<float>(layer.left * m_model.tileWidth),
                         y + static_cast<float>(layer.top * m_model.tileHeight), milliseconds);
    if (layer.image.sprite >= 0)
        DrawImage(painter, layer.image, x, y,
                  {0.0f, 0.0f, static_cast<float>(m_room.width), static_cast<float>(m_room.height)});
    DrawSprites(painter, layer, x, y, milliseconds);
}

void RoomMap::DrawSprites(Painter& painter, const DrawnLayer& layer, float x, float y, int64_t milliseconds) const
{
    const RoomRegion region = VisibleRegion();
    for (const Group& group : m_groups[static_cast<size_t>(&layer - m_layers.data())])
    {
        if (!region.Touches(Moved(group.area, x, y)))
            continue;
        for (size_t i = group.first; i < group.end; ++i)
        {
            const MapSprite& sprite = layer.sprites[i];
            if (!region.Touches(Moved(AreaOf(sprite), x, y)))
                continue;
            const TileLook& look = m_looks->looks[m_looks->At(sprite.cell & TILE_NUMBER, milliseconds).tile];
            if (look.sprite < 0)
                continue;
            float corners[4][2];
            for (int corner = 0; corner < 4; ++corner)
            {
                corners[corner][0] = sprite.corners[corner][0] + x;
                corners[corner][1] = sprite.corners[corner][1] + y;
            }
            painter.TurnedSprite(look.sprite, look.frame, sprite.cell, corners);
        }
    }
}
} // namespace Runner
