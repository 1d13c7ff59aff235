// Layers of maps.
#include "Platform/Strict_Float.h"

#include "Runner/Draw/Painter_Parts.h"

#include <algorithm>
#include <utility>

namespace Runner
{
int Painter::AddMapLayer(LayerGrid grid) { return m_parts->mapLayers.Add(std::move(grid)); }

bool Painter::Parts::MapShows(int sprite) const
{
    const auto shows = [sprite](const auto& layer)
    {
        const std::vector<TileLook>& looks = layer->Looks().looks;
        return std::any_of(looks.begin(), looks.end(),
                           [sprite](const TileLook& look) { return look.sprite == sprite; });
    };
    return std::any_of(mapLayers.All().begin(), mapLayers.All().end(), shows);
}

bool Painter::SetMapCell(int layer, int column, int row, uint32_t cell)
{
    LayerGrid* grid = m_parts->mapLayers.Find(layer);
    if (grid == nullptr || !grid->Contains(column, row) || (cell & TILE_NUMBER) >= grid->Looks().looks.size())
        return false;
    grid->Set(column, row, cell);
    return true;
}

bool Painter::HasMapCell(int layer, int column, int row) const
{
    const LayerGrid* grid = m_parts->mapLayers.Find(layer);
    return grid != nullptr && grid->Contains(column, row);
}

uint32_t Painter::GetMapCell(int layer, int column, int row) const
{
    return HasMapCell(layer, column, row) ? m_parts->mapLayers.Get(layer).Get(column, row) : 0;
}

// Meshes of the chunk's runs are used again, one after the other.
void Painter::Parts::BuildChunk(LayerGrid& grid, int chunkColumn, int chunkRow, int64_t milliseconds)
{
    LayerGrid::Chunk& chunk = grid.ChunkAt(chunkColumn, chunkRow);
    const auto sheetOf = [this](int sprite) -> const Sheet& { return sprites.Get(sprite).sheet; };
    grid.Build(chunkColumn, chunkRow, milliseconds, sheetOf, chunkRuns);
    for (size_t i = chunkRuns.size(); i < chunk.runs.size(); i++)
        device->DeleteMesh(chunk.runs[i].mesh);
    grid.Hold(-LayerGrid::QuadsOf(chunk));
    chunk.runs.resize(chunkRuns.size());
    for (size_t i = 0; i < chunkRuns.size(); i++)
    {
        LayerGrid::Run& run = chunk.runs[i];
        run.mesh = run.mesh == 0 ? device->CreateMesh() : run.mesh;
        run.sprite = chunkRuns[i].sprite;
        run.quads = static_cast<int>(chunkRuns[i].vertices.size() / 4);
        device->SetMesh(run.mesh, chunkRuns[i].vertices);
    }
    chunk.built = true;
    grid.Hold(LayerGrid::QuadsOf(chunk));
}

void Painter::Parts::DrawChunk(LayerGrid& grid, int chunkColumn, int chunkRow, int64_t milliseconds, DrawState& drawing)
{
    LayerGrid::Chunk& chunk = grid.ChunkAt(chunkColumn, chunkRow);
    if (!chunk.built || milliseconds < chunk.from || milliseconds >= chunk.until)
        BuildChunk(grid, chunkColumn, chunkRow, milliseconds);
    chunk.seen = true;
    for (const LayerGrid::Run& run : chunk.runs)
    {
        drawing.texture = sprites.Get(run.sprite).texture;
        device->DrawMesh(drawing, run.mesh, run.quads);
        batch.Count(run.quads * 4);
    }
}

namespace
{
RoomArea Moved(const RoomArea& area, float x, float y)
{
    return {area.left + x, area.top + y, area.right + x, area.bottom + y};
}

// Colour times alpha without rounding to bytes, which layers of both tint and opacity would show.
void ExactTint(unsigned colour, uint8_t alpha, float (&tint)[4])
{
    tint[3] = ChannelToFloat(alpha);
    for (unsigned channel = 0; channel < 3; channel++)
        tint[channel] = ChannelToFloat(static_cast<uint8_t>(colour >> (8 * channel) & 255)) * tint[3];
}

// The n-th of first..last, or of last..first.
int InOrder(int first, int last, bool backwards, int n) { return backwards ? last - n : first + n; }
} // namespace

void Painter::MapLayer(int layer, float x, float y, int64_t milliseconds)
{
    Parts& parts = *m_parts;
    LayerGrid* grid = parts.mapLayers.Find(layer);
    DrawState drawing;
    if (grid == nullptr || !parts.PrepareMeshes(0, x, y, drawing))
        return;
    ExactTint(parts.state.colour, parts.CurrentInk().bytes[3], drawing.tint);
    const LayerGrid::ChunkRange range = grid->Reached(Moved(VisibleRegion().bounds, -x, -y));
    for (int i = 0; i <= range.bottom - range.top; i++)
    {
        const int row = InOrder(range.top, range.bottom, grid->Order().upwards, i);
        for (int j = 0; j <= range.right - range.left; j++)
        {
            const int column = InOrder(range.left, range.right, grid->Order().leftwards, j);
            if (AreaMayBeVisible(grid->AreaOf(column, row), drawing.toClip))
                parts.DrawChunk(*grid, column, row, milliseconds, drawing);
        }
    }
    parts.KeepFewMeshes(*grid);
}

void Painter::TurnedSprite(int sprite, int frame, uint32_t cell, const float (&corners)[4][2])
{
    const SpriteEntry* entry = m_parts->NeedSprite(sprite);
    if (entry == nullptr)
        return;
    const std::array<TexturePoint, 4> turned =
        TurnedCorners(entry->sheet.Area(WrapFrame(frame, entry->info.frames)), cell);
    Corner polygon[4];
    for (size_t i = 0; i < 4; i++)
        polygon[i] = {corners[i][0], corners[i][1], m_parts->state.depth, turned[i].u, turned[i].v};
    m_parts->DrawPolygon(polygon, 4, m_parts->CurrentInk(), entry->texture);
}

// The meshes of a large map that is travelled through would fill the memory.
void Painter::Parts::KeepFewMeshes(LayerGrid& grid)
{
    if (grid.HeldQuads() > LayerGrid::QUADS_KEPT)
        grid.DropUnseen();
    for (const unsigned mesh : grid.TakeOrphans())
        device->DeleteMesh(mesh);
}
} // namespace Runner
