#include "Platform/Strict_Float.h"

#include "Runner/Draw/Painter_Parts.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
TileGrid* Painter::Parts::NeedTileMap(int map)
{
    TileGrid* grid = tileMaps.Find(map);
    if (grid == nullptr)
        Fail("there is no tile map " + std::to_string(map));
    return grid;
}

int Painter::CreateTileMap(int sprite, int columns, int rows, float tileWidth, float tileHeight)
{
    Parts& parts = *m_parts;
    if (parts.NeedSprite(sprite) == nullptr)
        return -1;
    const bool fits = columns > 0 && rows > 0 && static_cast<int64_t>(columns) * rows <= TileGrid::TILES_LIMIT;
    if (!fits || !std::isfinite(tileWidth) || !std::isfinite(tileHeight))
    {
        parts.Fail("a tile map cannot have " + SizeText(columns, rows) +
                   " tiles of this size: it needs at least one "
                   "and at most " +
                   std::to_string(TileGrid::TILES_LIMIT));
        return -1;
    }
    return parts.tileMaps.Add(TileGrid(sprite, columns, rows, tileWidth, tileHeight));
}

bool Painter::FindTileMap(int map, TileMapInfo& info) const
{
    const TileGrid* grid = m_parts->tileMaps.Find(map);
    if (grid != nullptr)
        info = {grid->Sprite(), grid->Columns(), grid->Rows(), grid->TileWidth(), grid->TileHeight()};
    return grid != nullptr;
}

int Painter::TileMapNumbers() const { return static_cast<int>(m_parts->tileMaps.All().size()); }

bool Painter::FreeTileMap(int map)
{
    Parts& parts = *m_parts;
    TileGrid* grid = parts.NeedTileMap(map);
    if (grid == nullptr)
        return false;
    for (const TileGrid::Chunk& chunk : grid->Chunks())
    {
        if (chunk.mesh != 0)
            parts.device->DeleteMesh(chunk.mesh);
    }
    parts.tileMaps.Remove(map);
    return true;
}

bool Painter::SetTile(int map, int column, int row, int frame)
{
    Parts& parts = *m_parts;
    TileGrid* grid = parts.NeedTileMap(map);
    if (grid == nullptr)
        return false;
    if (!grid->Contains(column, row))
        return parts.Fail("tile map " + std::to_string(map) + " has no cell " + std::to_string(column) + ", " +
                          std::to_string(row));
    if (frame < -1 || frame >= FindSprite(grid->Sprite())->frames)
        return parts.Fail("sprite " + std::to_string(grid->Sprite()) + " has no frame " + std::to_string(frame) +
                          " for a tile");
    grid->Set(column, row, frame);
    return true;
}

int Painter::GetTile(int map, int column, int row) const
{
    const TileGrid* grid = m_parts->tileMaps.Find(map);
    return grid != nullptr && grid->Contains(column, row) ? grid->Get(column, row) : -1;
}

void Painter::Parts::DrawChunk(TileGrid& grid, int chunkColumn, int chunkRow, const SpriteEntry& sprite,
                               const DrawState& drawing)
{
    TileGrid::Chunk& chunk = grid.ChunkAt(chunkColumn, chunkRow);
    if (chunk.changed)
    {
        if (chunk.mesh == 0)
            chunk.mesh = device->CreateMesh();
        grid.BuildVertices(chunkColumn, chunkRow, sprite.sheet, chunkVertices);
        device->SetMesh(chunk.mesh, chunkVertices);
        chunk.quads = static_cast<int>(chunkVertices.size() / 4);
        chunk.changed = false;
    }
    if (chunk.quads == 0)
        return;
    device->DrawMesh(drawing, chunk.mesh, chunk.quads);
    batch.Count(chunk.quads * 4);
}

bool Painter::Parts::PrepareMeshes(unsigned texture, float x, float y, DrawState& out)
{
    const DrawState* current = Prepare(texture);
    if (current == nullptr || !std::isfinite(x) || !std::isfinite(y))
        return false;
    batch.Flush();
    out = *current;
    kvMatrix translation = IdentityMatrix();
    translation._41 = x;
    translation._42 = y;
    translation._43 = state.depth;
    kvMatrix::Multiply(out.toClip, translation, out.toClip);
    const Ink ink = CurrentInk();
    std::transform(std::begin(ink.bytes), std::end(ink.bytes), out.tint, ChannelToFloat);
    return true;
}

void Painter::TileMap(int map, float x, float y)
{
    Parts& parts = *m_parts;
    TileGrid* grid = parts.NeedTileMap(map);
    if (grid == nullptr)
        return;
    const SpriteEntry& sprite = parts.sprites.Get(grid->Sprite());
    DrawState drawing;
    if (!parts.PrepareMeshes(sprite.texture, x, y, drawing))
        return;
    for (int row = 0; row < grid->ChunkRows(); row++)
    {
        for (int column = 0; column < grid->ChunkColumns(); column++)
        {
            if (grid->MayBeVisible(column, row, drawing.toClip))
                parts.DrawChunk(*grid, column, row, sprite, drawing);
        }
    }
}
} // namespace Runner
