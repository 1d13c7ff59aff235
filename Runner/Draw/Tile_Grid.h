#pragma once

#include "Runner/Base/Area.h"
#include "Runner/Draw/Device.h"
#include "Runner/Draw/Sheet.h"

namespace Runner
{
// False only when all corners of the area lie beyond the same side of the clip volume.
bool AreaMayBeVisible(const RoomArea& area, const kvMatrix& toClip);

// The cells of a tile map, in square chunks with a mesh each: only visible chunks are drawn, only changed ones are
// built again. One formula computes a corner from its column and row alone, so neighbouring tiles share their corners
// bit for bit, across chunks too, and no gap can open between them.
class TileGrid
{
public:
    static constexpr int CHUNK = 32; // tiles to a side
    static constexpr int64_t TILES_LIMIT = 1 << 24;
    static_assert(CHUNK * CHUNK <= MESH_QUADS_LIMIT, "a chunk is one mesh");

    struct Chunk
    {
        unsigned mesh = 0; // the device's; 0 until it is first drawn
        int quads = 0;     // in the mesh
        bool changed = true;
    };

    TileGrid(int sprite, int columns, int rows, float tileWidth, float tileHeight);

    int Sprite() const { return m_sprite; }
    int Columns() const { return m_columns; }
    int Rows() const { return m_rows; }
    float TileWidth() const { return m_tileWidth; }
    float TileHeight() const { return m_tileHeight; }
    bool Contains(int column, int row) const;
    int Get(int column, int row) const { return m_frames[Index(column, row)]; } // -1 when empty
    void Set(int column, int row, int frame);

    int ChunkColumns() const { return (m_columns + CHUNK - 1) / CHUNK; }
    int ChunkRows() const { return (m_rows + CHUNK - 1) / CHUNK; }
    Chunk& ChunkAt(int chunkColumn, int chunkRow);
    std::vector<Chunk>& Chunks() { return m_chunks; }

    // Four white vertices for each tile that is not empty.
    void BuildVertices(int chunkColumn, int chunkRow, const Sheet& sheet, std::vector<Vertex>& out) const;

    bool MayBeVisible(int chunkColumn, int chunkRow, const kvMatrix& toClip) const;

private:
    size_t Index(int column, int row) const
    {
        return static_cast<size_t>(row) * static_cast<size_t>(m_columns) + static_cast<size_t>(column);
    }
    float X(int column) const { return static_cast<float>(column) * m_tileWidth; }
    float Y(int row) const { return static_cast<float>(row) * m_tileHeight; }
    void AddTile(int column, int row, const TextureArea& area, std::vector<Vertex>& out) const;

    int m_sprite;
    int m_columns, m_rows;
    float m_tileWidth, m_tileHeight; // room units
    std::vector<int32_t> m_frames;
    std::vector<Chunk> m_chunks;
};
} // namespace Runner
