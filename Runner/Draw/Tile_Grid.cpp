#include "Platform/Strict_Float.h"

#include "Runner/Draw/Tile_Grid.h"

#include <algorithm>

namespace Runner
{
namespace
{
// The outcode of a point: a bit for each side of the clip volume that it lies beyond. NaN lies beyond none.
unsigned Outcode(const kvMatrix& m, float x, float y)
{
    const float w = x * m._14 + y * m._24 + m._44;
    const float clipX = x * m._11 + y * m._21 + m._41;
    const float clipY = x * m._12 + y * m._22 + m._42;
    const float clipZ = x * m._13 + y * m._23 + m._43;
    const bool beyond[] = {clipX<-w, clipX> w, clipY<-w, clipY> w, clipZ<0.0f, clipZ> w};
    unsigned sides = 0;
    for (const bool side : beyond)
        sides = sides << 1 | (side ? 1u : 0u);
    return sides;
}
} // namespace

bool AreaMayBeVisible(const RoomArea& area, const kvMatrix& toClip)
{
    return (Outcode(toClip, area.left, area.top) & Outcode(toClip, area.right, area.top) &
            Outcode(toClip, area.right, area.bottom) & Outcode(toClip, area.left, area.bottom)) == 0;
}

TileGrid::TileGrid(int sprite, int columns, int rows, float tileWidth, float tileHeight)
    : m_sprite(sprite), m_columns(columns), m_rows(rows), m_tileWidth(tileWidth), m_tileHeight(tileHeight),
      m_frames(static_cast<size_t>(columns) * static_cast<size_t>(rows), -1),
      m_chunks(static_cast<size_t>(ChunkColumns()) * static_cast<size_t>(ChunkRows()))
{
}

bool TileGrid::Contains(int column, int row) const
{
    return column >= 0 && column < m_columns && row >= 0 && row < m_rows;
}

void TileGrid::Set(int column, int row, int frame)
{
    int32_t& cell = m_frames[Index(column, row)];
    if (cell == frame)
        return;
    cell = frame;
    ChunkAt(column / CHUNK, row / CHUNK).changed = true;
}

TileGrid::Chunk& TileGrid::ChunkAt(int chunkColumn, int chunkRow)
{
    return m_chunks[static_cast<size_t>(chunkRow) * static_cast<size_t>(ChunkColumns()) +
                    static_cast<size_t>(chunkColumn)];
}

void TileGrid::BuildVertices(int chunkColumn, int chunkRow, const Sheet& sheet, std::vector<Vertex>& out) const
{
    out.clear();
    const int endColumn = std::min((chunkColumn + 1) * CHUNK, m_columns);
    const int endRow = std::min((chunkRow + 1) * CHUNK, m_rows);
    for (int row = chunkRow * CHUNK; row < endRow; row++)
    {
        for (int column = chunkColumn * CHUNK; column < endColumn; column++)
        {
            const int frame = Get(column, row);
            if (frame >= 0)
                AddTile(column, row, sheet.Area(frame), out);
        }
    }
}

void TileGrid::AddTile(int column, int row, const TextureArea& area, std::vector<Vertex>& out) const
{
    const float left = X(column), right = X(column + 1), top = Y(row), bottom = Y(row + 1);
    out.push_back({left, top, 0.0f, area.left, area.top, {255, 255, 255, 255}});
    out.push_back({right, top, 0.0f, area.right, area.top, {255, 255, 255, 255}});
    out.push_back({right, bottom, 0.0f, area.right, area.bottom, {255, 255, 255, 255}});
    out.push_back({left, bottom, 0.0f, area.left, area.bottom, {255, 255, 255, 255}});
}

bool TileGrid::MayBeVisible(int chunkColumn, int chunkRow, const kvMatrix& toClip) const
{
    const float left = X(chunkColumn * CHUNK), right = X(std::min((chunkColumn + 1) * CHUNK, m_columns));
    const float top = Y(chunkRow * CHUNK), bottom = Y(std::min((chunkRow + 1) * CHUNK, m_rows));
    return AreaMayBeVisible({left, top, right, bottom}, toClip);
}
} // namespace Runner
