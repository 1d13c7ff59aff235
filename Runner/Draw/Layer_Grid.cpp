#include "Platform/Strict_Float.h"

#include "Runner/Draw/Layer_Grid.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Runner
{
// ---- animations ----

TileLooks::Moment TileLooks::At(uint32_t number, int64_t milliseconds) const
{
    constexpr int64_t ALWAYS = INT64_MAX;
    if (!IsAnimated(number))
        return {number, 0, ALWAYS};
    const std::vector<TileStep>& steps = animations[static_cast<size_t>(animationOf[number])];
    const int64_t length = steps.back().until;
    if (length <= 0)
        return {steps.front().tile, 0, ALWAYS};
    const int64_t start = milliseconds - milliseconds % length, within = milliseconds % length;
    const auto shown =
        std::find_if(steps.begin(), steps.end(), [within](const TileStep& step) { return within < step.until; });
    const int64_t from = shown == steps.begin() ? 0 : (shown - 1)->until;
    return {shown->tile, start + from, start + shown->until};
}

// ---- turned tiles ----

std::array<TexturePoint, 4> TurnedCorners(const TextureArea& area, uint32_t cell)
{
    constexpr float CORNERS[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    std::array<TexturePoint, 4> turned = {};
    for (size_t i = 0; i < turned.size(); i++)
    {
        float across = CORNERS[i][0], down = CORNERS[i][1];
        if ((cell & TILE_MIRRORED) != 0)
            across = 1.0f - across;
        if ((cell & TILE_FLIPPED) != 0)
            down = 1.0f - down;
        if ((cell & TILE_DIAGONAL) != 0)
            std::swap(across, down);
        turned[i] = {across > 0.0f ? area.right : area.left, down > 0.0f ? area.bottom : area.top};
    }
    return turned;
}

// ---- cells ----

LayerGrid::LayerGrid(std::shared_ptr<const TileLooks> looks, const Size& size, const TileOrder& order,
                     std::vector<uint32_t> cells)
    : m_looks(std::move(looks)), m_size(size), m_order(order), m_cells(std::move(cells))
{
    ReachOfAll();
    ChooseChunks();
}

bool LayerGrid::Contains(int column, int row) const
{
    return column >= 0 && column < m_size.columns && row >= 0 && row < m_size.rows;
}

// The first tile that reaches out of its cell changes the chunks' shape.
void LayerGrid::Set(int column, int row, uint32_t cell)
{
    uint32_t& now = m_cells[Index(column, row)];
    if (now == cell)
        return;
    now = cell;
    ChunkAt(column / m_chunkWidth, row / m_chunkHeight).built = false;
    if (ReachOf(cell) && m_chunkHeight == SQUARE)
        ChooseChunks();
}

bool LayerGrid::Reach(const TileRect& rect)
{
    const TileRect before = m_reach;
    m_reach.left = std::max(m_reach.left, -rect.left);
    m_reach.top = std::max(m_reach.top, -rect.top);
    m_reach.right = std::max(m_reach.right, rect.right - m_size.tileWidth);
    m_reach.bottom = std::max(m_reach.bottom, rect.bottom - m_size.tileHeight);
    return m_reach.left > before.left || m_reach.top > before.top || m_reach.right > before.right ||
           m_reach.bottom > before.bottom;
}

// Takes the tile's reach into the layer's; whether that has grown.
bool LayerGrid::ReachOf(uint32_t cell)
{
    const uint32_t number = cell & TILE_NUMBER;
    const auto reach = [this, cell](uint32_t shown)
    {
        const TileLook& look = m_looks->looks[shown];
        return look.sprite >= 0 && Reach((cell & TILE_DIAGONAL) != 0 ? look.turned : look.upright);
    };
    bool hasGrown = reach(number);
    if (m_looks->IsAnimated(number))
        for (const TileStep& step : m_looks->animations[static_cast<size_t>(m_looks->animationOf[number])])
            hasGrown = reach(step.tile) || hasGrown;
    return hasGrown;
}

void LayerGrid::ReachOfAll()
{
    std::vector<bool> known(m_looks->looks.size() * 2);
    for (const uint32_t cell : m_cells)
    {
        const size_t kind = size_t{cell & TILE_NUMBER} * 2 + ((cell & TILE_DIAGONAL) != 0 ? 1 : 0);
        if (known[kind])
            continue;
        known[kind] = true;
        ReachOf(cell);
    }
}

void LayerGrid::ChooseChunks()
{
    const bool staysInside =
        m_reach.left <= 0.0f && m_reach.top <= 0.0f && m_reach.right <= 0.0f && m_reach.bottom <= 0.0f;
    for (Chunk& chunk : m_chunks)
        Orphan(chunk);
    m_chunkWidth = staysInside ? SQUARE : STRIP;
    m_chunkHeight = staysInside ? SQUARE : 1;
    m_chunks.clear();
    m_chunks.resize(static_cast<size_t>(ChunkColumns()) * static_cast<size_t>(ChunkRows()));
}

// ---- chunks ----

LayerGrid::Chunk& LayerGrid::ChunkAt(int chunkColumn, int chunkRow)
{
    return m_chunks[static_cast<size_t>(chunkRow) * static_cast<size_t>(ChunkColumns()) +
                    static_cast<size_t>(chunkColumn)];
}

int LayerGrid::QuadsOf(const Chunk& chunk)
{
    int quads = 0;
    for (const Run& run : chunk.runs)
        quads += run.quads;
    return quads;
}

void LayerGrid::Orphan(Chunk& chunk)
{
    for (const Run& run : chunk.runs)
        m_orphans.push_back(run.mesh);
    Hold(-QuadsOf(chunk));
    chunk = Chunk();
}

void LayerGrid::ForgetMeshes()
{
    m_orphans.clear();
    m_heldQuads = 0;
    for (Chunk& chunk : m_chunks)
        chunk = Chunk();
}

void LayerGrid::DropUnseen()
{
    for (Chunk& chunk : m_chunks)
    {
        if (!chunk.seen)
            Orphan(chunk);
        chunk.seen = false;
    }
}

std::vector<unsigned> LayerGrid::TakeOrphans() { return std::exchange(m_orphans, {}); }

RoomArea LayerGrid::AreaOf(int chunkColumn, int chunkRow) const
{
    const int left = chunkColumn * m_chunkWidth, right = std::min(left + m_chunkWidth, m_size.columns);
    const int top = chunkRow * m_chunkHeight, bottom = std::min(top + m_chunkHeight, m_size.rows);
    return {static_cast<float>(left) * m_size.tileWidth - m_reach.left,
            static_cast<float>(top) * m_size.tileHeight - m_reach.top,
            static_cast<float>(right) * m_size.tileWidth + m_reach.right,
            static_cast<float>(bottom) * m_size.tileHeight + m_reach.bottom};
}

namespace
{
struct Ends
{
    int first, last;
};

// The chunks of `size` units whose range, widened by what their tiles reach out, meets low..high.
Ends ChunksBetween(float low, float high, float size, float reachBefore, float reachAfter, int count)
{
    const auto chunk = [size, count](float place)
    { return static_cast<int>(std::clamp(std::floor(place / size), -1.0f, static_cast<float>(count))); };
    return {std::max(chunk(low - reachAfter), 0), std::min(chunk(high + reachBefore), count - 1)};
}
} // namespace

LayerGrid::ChunkRange LayerGrid::Reached(const RoomArea& bounds) const
{
    const float width = static_cast<float>(m_chunkWidth) * m_size.tileWidth;
    const float height = static_cast<float>(m_chunkHeight) * m_size.tileHeight;
    const Ends across = ChunksBetween(bounds.left, bounds.right, width, m_reach.left, m_reach.right, ChunkColumns());
    const Ends down = ChunksBetween(bounds.top, bounds.bottom, height, m_reach.top, m_reach.bottom, ChunkRows());
    return {across.first, down.first, across.last, down.last};
}

// ---- building ----

void LayerGrid::StartBuilding(Chunk& chunk, std::vector<BuiltRun>& out)
{
    out.clear();
    chunk.from = INT64_MIN;
    chunk.until = INT64_MAX;
}

// What the cell shows now; null for nothing. Narrows the time for which the chunk is right.
const TileLook* LayerGrid::LookAt(uint32_t cell, int64_t milliseconds, Chunk& chunk) const
{
    uint32_t number = cell & TILE_NUMBER;
    if (m_looks->IsAnimated(number))
    {
        const TileLooks::Moment moment = m_looks->At(number, milliseconds);
        chunk.from = std::max(chunk.from, moment.from);
        chunk.until = std::min(chunk.until, moment.until);
        number = moment.tile;
    }
    const TileLook& look = m_looks->looks[number];
    return look.sprite >= 0 ? &look : nullptr;
}

// Where no tile overlaps another, tiles of one sprite need not follow each other.
std::vector<Vertex>& LayerGrid::RunFor(int sprite, std::vector<BuiltRun>& out) const
{
    if (!out.empty() && out.back().sprite == sprite)
        return out.back().vertices;
    if (m_chunkHeight > 1)
        for (BuiltRun& run : out)
            if (run.sprite == sprite)
                return run.vertices;
    out.push_back({sprite, {}});
    return out.back().vertices;
}

void LayerGrid::AddTile(int column, int row, uint32_t cell, const TileLook& look, const TextureArea& area,
                        std::vector<Vertex>& out) const
{
    const TileRect& rect = (cell & TILE_DIAGONAL) != 0 ? look.turned : look.upright;
    const float x = static_cast<float>(column) * m_size.tileWidth, y = static_cast<float>(row) * m_size.tileHeight;
    const float left = x + rect.left, right = x + rect.right, top = y + rect.top, bottom = y + rect.bottom;
    const std::array<TexturePoint, 4> corners = TurnedCorners(area, cell);
    out.push_back({left, top, 0.0f, corners[0].u, corners[0].v, {255, 255, 255, 255}});
    out.push_back({right, top, 0.0f, corners[1].u, corners[1].v, {255, 255, 255, 255}});
    out.push_back({right, bottom, 0.0f, corners[2].u, corners[2].v, {255, 255, 255, 255}});
    out.push_back({left, bottom, 0.0f, corners[3].u, corners[3].v, {255, 255, 255, 255}});
}
} // namespace Runner
