#pragma once

#include "Runner/Base/Area.h"
#include "Runner/Draw/Device.h"
#include "Runner/Draw/Sheet.h"

#include <array>
#include <memory>

namespace Runner
{
// Where a tile is drawn: room units from the top left corner of its cell.
struct TileRect
{
    float left = 0.0f, top = 0.0f, right = 0.0f, bottom = 0.0f;
};

// How a tile is drawn: a frame of a sprite. A tile turned by the diagonal has width and height exchanged.
struct TileLook
{
    int sprite = -1; // -1: nothing is drawn
    int frame = 0;
    TileRect upright, turned;
};

struct TileStep
{
    uint32_t tile = 0; // the number whose look is shown
    int64_t until = 0; // milliseconds since the animation's start
};

// The tiles of a map by number. Number 0 is no tile.
struct TileLooks
{
    std::vector<TileLook> looks;
    std::vector<int> animationOf; // by number: an index into animations, -1 for none
    std::vector<std::vector<TileStep>> animations;

    struct Moment
    {
        uint32_t tile;       // the number whose look is shown
        int64_t from, until; // and for how long, milliseconds
    };
    Moment At(uint32_t number, int64_t milliseconds) const;
    bool IsAnimated(uint32_t number) const { return animationOf[number] >= 0; }
};

// A cell: the number of a tile and how it is turned. The diagonal exchanges columns with rows, before the others.
constexpr uint32_t TILE_MIRRORED = 0x80000000u, TILE_FLIPPED = 0x40000000u, TILE_DIAGONAL = 0x20000000u;
constexpr uint32_t TILE_NUMBER = 0x0FFFFFFFu;

// The texture coordinates of a frame's corners as a cell's flags turn it: top left, top right, bottom right, bottom
// left of where it is drawn.
struct TexturePoint
{
    float u, v;
};
std::array<TexturePoint, 4> TurnedCorners(const TextureArea& area, uint32_t cell);

// In which order the cells of a layer are drawn, where their tiles overlap: rows first.
struct TileOrder
{
    bool leftwards = false, upwards = false;
};

// The cells of a map's layer, in chunks with meshes: only visible chunks are drawn, only those that changed or that an
// animation has changed are built again. Where no tile reaches out of its cell a chunk is a square; otherwise it is a
// part of one row, so that drawing chunk by chunk keeps the order of the cells. Neighbouring tiles share their corners
// bit for bit as long as sizes are whole numbers.
class LayerGrid
{
public:
    static constexpr int SQUARE = 32; // tiles to a side of a chunk
    static constexpr int STRIP = SQUARE * SQUARE / 8;
    static constexpr int QUADS_KEPT = 1 << 18; // beyond these, the meshes of chunks that were not seen are dropped
    static_assert(SQUARE * SQUARE <= MESH_QUADS_LIMIT && STRIP <= MESH_QUADS_LIMIT, "a run of tiles is one mesh");

    // The tiles of a chunk that are frames of one sprite and follow each other.
    struct Run
    {
        int sprite = -1;
        unsigned mesh = 0; // the device's
        int quads = 0;
    };
    struct Chunk
    {
        std::vector<Run> runs;
        bool built = false;
        bool seen = false;           // since meshes were last dropped
        int64_t from = 0, until = 0; // milliseconds for which it is right
    };
    struct Size
    {
        int columns, rows;
        float tileWidth, tileHeight; // room units
    };

    // Row by row; every number is below looks->looks.size().
    LayerGrid(std::shared_ptr<const TileLooks> looks, const Size& size, const TileOrder& order,
              std::vector<uint32_t> cells);

    const TileLooks& Looks() const { return *m_looks; }
    int Columns() const { return m_size.columns; }
    int Rows() const { return m_size.rows; }
    bool Contains(int column, int row) const;
    uint32_t Get(int column, int row) const { return m_cells[Index(column, row)]; }
    void Set(int column, int row, uint32_t cell);

    // The chunks that may show in the region, in the order of drawing.
    struct ChunkRange
    {
        int left = 0, top = 0, right = -1, bottom = -1; // chunk columns and rows, both ends included
    };
    ChunkRange Reached(const RoomArea& bounds) const;
    RoomArea AreaOf(int chunkColumn, int chunkRow) const; // which its tiles can cover
    const TileOrder& Order() const { return m_order; }
    Chunk& ChunkAt(int chunkColumn, int chunkRow);
    std::vector<Chunk>& Chunks() { return m_chunks; }
    static int QuadsOf(const Chunk& chunk);
    void Hold(int quads) { m_heldQuads += quads; } // as meshes come and go
    int HeldQuads() const { return m_heldQuads; }
    void ForgetMeshes();                 // they are gone with their device
    void DropUnseen();                   // meshes of chunks that were not seen since the last call become orphans
    std::vector<unsigned> TakeOrphans(); // meshes that no chunk has any more, for the caller to delete

    // What a chunk's meshes hold, four white vertices a tile. sheetOf(sprite): the sheet of its frames.
    struct BuiltRun
    {
        int sprite = -1;
        std::vector<Vertex> vertices;
    };
    template <typename SheetOf>
    void Build(int chunkColumn, int chunkRow, int64_t milliseconds, const SheetOf& sheetOf, std::vector<BuiltRun>& out)
    {
        Chunk& chunk = ChunkAt(chunkColumn, chunkRow);
        StartBuilding(chunk, out);
        EachCell(chunkColumn, chunkRow,
                 [&](int column, int row)
                 {
                     const uint32_t cell = Get(column, row);
                     const TileLook* look = LookAt(cell, milliseconds, chunk);
                     if (look != nullptr)
                         AddTile(column, row, cell, *look, sheetOf(look->sprite).Area(look->frame),
                                 RunFor(look->sprite, out));
                 });
    }

private:
    size_t Index(int column, int row) const
    {
        return static_cast<size_t>(row) * static_cast<size_t>(m_size.columns) + static_cast<size_t>(column);
    }
    int ChunkColumns() const { return (m_size.columns + m_chunkWidth - 1) / m_chunkWidth; }
    int ChunkRows() const { return (m_size.rows + m_chunkHeight - 1) / m_chunkHeight; }
    bool Reach(const TileRect& rect);
    bool ReachOf(uint32_t cell);
    void ReachOfAll();
    void ChooseChunks();
    template <typename Visit> void EachCell(int chunkColumn, int chunkRow, const Visit& visit) const;
    static void StartBuilding(Chunk& chunk, std::vector<BuiltRun>& out);
    void Orphan(Chunk& chunk);
    const TileLook* LookAt(uint32_t cell, int64_t milliseconds, Chunk& chunk) const;
    std::vector<Vertex>& RunFor(int sprite, std::vector<BuiltRun>& out) const;
    void AddTile(int column, int row, uint32_t cell, const TileLook& look, const TextureArea& area,
                 std::vector<Vertex>& out) const;

    std::shared_ptr<const TileLooks> m_looks;
    Size m_size;
    TileOrder m_order;
    std::vector<uint32_t> m_cells;
    TileRect m_reach; // the farthest that a tile reaches out of its cell, to each side: 0 or more
    int m_chunkWidth = SQUARE, m_chunkHeight = SQUARE; // tiles
    std::vector<Chunk> m_chunks;
    std::vector<unsigned> m_orphans;
    int m_heldQuads = 0; // in all meshes
};

template <typename Visit> void LayerGrid::EachCell(int chunkColumn, int chunkRow, const Visit& visit) const
{
    const int left = chunkColumn * m_chunkWidth, top = chunkRow * m_chunkHeight;
    const int width = left + m_chunkWidth < m_size.columns ? m_chunkWidth : m_size.columns - left;
    const int height = top + m_chunkHeight < m_size.rows ? m_chunkHeight : m_size.rows - top;
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++)
            visit(left + (m_order.leftwards ? width - 1 - x : x), top + (m_order.upwards ? height - 1 - y : y));
}
} // namespace Runner
