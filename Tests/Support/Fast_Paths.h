#pragma once
// The module's fast ways against their plain definitions, bit for bit (payloads of NaN aside). Each check answers
// whether both agree. The tests, the fuzz target and the proof over hundreds of millions (Tools/Fast_Path_Proof.cpp)
// share them.

#include "Platform/Strict_Float.h"

#include "Files/Graphics/Matrix_Adjugate.h"
#include "Files/Graphics/Pixel_Pack.h"
#include "Files/Graphics/Trigonometry.h"
#include "Tests/Support/Awkward_Numbers.h"
#include "Tests/Support/Recording_Host.h"

#include <array>
#include <memory>

namespace Recording
{
inline bool SameButForNaNs(const kvMatrix& a, const kvMatrix& b)
{
    for (int i = 0; i < 16; ++i)
        if (!SameButForNaN(a.m[i], b.m[i]))
            return false;
    return true;
}

// ---- the inverse ----

// A singular matrix must stay as it is, to the bit.
inline bool InvertsByDefinition(const kvMatrix& input)
{
    kvMatrix expected = input, actual = input;
    const bool regular = CameraModule::InvertByDefinition(expected.m, expected.m);
    if (actual.Invert() != regular)
        return false;
    return regular ? SameButForNaNs(actual, expected) : std::memcmp(&actual, &input, sizeof actual) == 0;
}

// What a camera stores after its matrices were set: each inverse, or the matrix itself where there is none.
inline bool StoresInversesByDefinition(const CCamera& camera)
{
    const kvMatrix* const pairs[3][2] = {{&camera.m_viewMat, &camera.m_invViewMat},
                                         {&camera.m_projMat, &camera.m_invProjMat},
                                         {&camera.m_viewProjMat, &camera.m_invViewProjMat}};
    for (const auto& [matrix, inverse] : pairs)
    {
        kvMatrix expected = *matrix;
        CameraModule::InvertByDefinition(expected.m, expected.m);
        if (!SameButForNaNs(*inverse, expected))
            return false;
    }
    return true;
}

// ---- the visible area ----

using Area = std::array<float, 5>; // x, y, width, height, angle

// The stated measurement once more, in float and in the stated order.
inline float MapOne(const kvMatrix& m, float x, float y, int column)
{
    return x * m.m[column] + y * m.m[4 + column] + 0.0f * m.m[8 + column] + m.m[12 + column];
}

inline void MeasureSide(const kvMatrix& m, float x, float y, float (&vector)[3])
{
    const float oppositeX = 0.0f - x, oppositeY = 0.0f - y; // no minus zero
    for (int column = 0; column < 3; ++column)
        vector[column] = MapOne(m, x, y, column) - MapOne(m, oppositeX, oppositeY, column);
}

inline float LengthOf(const float (&v)[3])
{
    const float square = v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
    return square > 0.0f ? sqrtf(square) : 0.0f;
}

inline Area MeasureInStatedOrder(const kvMatrix& clipToRoom, const kvMatrix& viewToRoom)
{
    constexpr float FULL_TURN = 6.2831855f;
    float across[3], down[3];
    MeasureSide(clipToRoom, 1.0f, 0.0f, across);
    MeasureSide(clipToRoom, 0.0f, 1.0f, down);
    const float width = LengthOf(across), height = LengthOf(down);
    float cosine = down[1] / height;
    if (cosine <= -1.0f)
        cosine = -1.0f;
    else if (cosine >= 1.0f)
        cosine = 1.0f;
    float angle = GR_Acos(cosine);
    if (down[0] / height < 0.0f)
        angle = FULL_TURN - angle;
    return {viewToRoom._41 - width * 0.5f, viewToRoom._42 - height * 0.5f, width, height, angle / FULL_TURN * 360.0f};
}

inline Area PublishedArea() { return {g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA}; }

// Of a parallel camera that is clean, whatever matrices it holds.
inline bool PublishesTheStatedArea(CCamera& camera)
{
    camera.ApplyMatrices();
    const Area expected = MeasureInStatedOrder(camera.m_invViewProjMat, camera.m_invViewMat), actual = PublishedArea();
    for (size_t i = 0; i < expected.size(); ++i)
        if (!SameButForNaN(actual[i], expected[i]))
            return false;
    return true;
}

// ---- pixels ----

// A picture at the very end of a heap block, for the sanitizer, and offset bytes from its start.
class HeapPicture
{
public:
    // word: answers any 32 bits.
    template <typename Word>
    HeapPicture(const Word& word, int width, int height, int bytesPerPixel, size_t offset = 0)
        : m_width(width), m_height(height), m_bytesPerPixel(bytesPerPixel), m_offset(offset)
    {
        const size_t size = offset + static_cast<size_t>(width * height * bytesPerPixel);
        m_block.reset(new uint8_t[size]);
        for (size_t i = 0; i < size; ++i)
            m_block[i] = static_cast<uint8_t>(word());
    }

    uint8_t* Bytes() const { return m_block.get() + m_offset; }
    PixelPack::Picture Packed() const { return {Bytes(), m_width, m_height, m_bytesPerPixel}; }

    std::vector<uint8_t> ThreeBytesOfEachPixel() const // bottom row first
    {
        std::vector<uint8_t> bytes;
        for (int y = m_height - 1; y >= 0; --y)
            for (int x = 0; x < m_width; ++x)
                for (int byte = 0; byte < 3; ++byte)
                    bytes.push_back(Bytes()[(y * m_width + x) * m_bytesPerPixel + byte]);
        return bytes;
    }

private:
    int m_width, m_height, m_bytesPerPixel;
    size_t m_offset;
    std::unique_ptr<uint8_t[]> m_block;
};

using Packer = void (*)(uint8_t* out, PixelPack::Picture picture);

inline std::vector<Packer> PackersOf([[maybe_unused]] int bytesPerPixel)
{
    std::vector<Packer> packers = {PixelPack::PackPlain};
#if defined(PIXEL_PACK_SHUFFLES)
    if (bytesPerPixel == PixelPack::SHUFFLED && PixelPack::HasShuffles())
        packers.push_back(PixelPack::PackShuffled);
#endif
    return packers;
}

// Into a block of exactly the size.
inline std::vector<uint8_t> PackedBy(Packer packer, const HeapPicture& picture, size_t size)
{
    const std::unique_ptr<uint8_t[]> out(new uint8_t[size]);
    packer(out.get(), picture.Packed());
    return {out.get(), out.get() + size};
}

inline bool PacksThreeBytesOfEachPixel(const HeapPicture& picture)
{
    const std::vector<uint8_t> expected = picture.ThreeBytesOfEachPixel();
    for (const Packer packer : PackersOf(picture.Packed().bytesPerPixel))
        if (PackedBy(packer, picture, expected.size()) != expected)
            return false;
    return true;
}

// ---- look-up ----

// The stated order: the cached slot, the room's list, the lowest slot that bears the identifier.
inline CCamera* FoundByDefinition(int id)
{
    const CCameraManager& all = g_CM;
    const auto bears = [id](const CCamera* camera) { return camera != nullptr && camera->m_ID == id; };
    if (all.m_lastCamPos >= 0 && all.m_lastCamPos < all.m_cameraListSize && bears(all.m_cameras[all.m_lastCamPos]))
        return all.m_cameras[all.m_lastCamPos];
    for (int entry = 0; entry < ROOM_CAMERAS; ++entry)
        if (bears(all.m_roomcameras[entry]))
            return all.m_roomcameras[entry];
    for (int slot = 0; id != -1 && slot < all.m_cameraListSize; ++slot)
        if (bears(all.m_cameras[slot]))
            return all.m_cameras[slot];
    return nullptr;
}

inline bool FindsByDefinition(int id)
{
    CCamera* const expected = FoundByDefinition(id);
    return g_CM.GetCamera(id) == expected;
}

// ---- state ----

// The record as the stated list of fields, each in 4 bytes, the lowest first.
class PlainRecord
{
public:
    explicit PlainRecord(const CCamera& camera)
    {
        Word(static_cast<uint32_t>(camera.m_ID));
        for (const kvMatrix* matrix : {&camera.m_projMat, &camera.m_viewMat, &camera.m_viewProjMat,
                                       &camera.m_invProjMat, &camera.m_invViewMat, &camera.m_invViewProjMat})
            for (const float entry : matrix->m)
                Float(entry);
        for (const float number :
             {camera.m_viewX, camera.m_viewY, camera.m_viewWidth, camera.m_viewHeight, camera.m_viewSpeedX,
              camera.m_viewSpeedY, camera.m_viewBorderX, camera.m_viewBorderY, camera.m_viewAngle})
            Float(number);
        Word(static_cast<uint32_t>(camera.m_targetInstance));
        for (const RValue* script : {&camera.m_beginScript, &camera.m_endScript, &camera.m_updateScript})
            Word(KvKind(*script) == VALUE_OBJECT ? ~0u : static_cast<uint32_t>(static_cast<int32_t>(script->val)));
        Word(camera.m_is2D ? 1 : 0);
        Word(camera.m_isViewDirty ? 1 : 0);
    }

    std::vector<uint8_t> bytes;

private:
    void Word(uint32_t word)
    {
        for (unsigned shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<uint8_t>(word >> shift));
    }
    void Float(float number)
    {
        uint32_t word;
        std::memcpy(&word, &number, sizeof word);
        Word(word);
    }
};

// Callbacks: callables or script numbers as reals. NaN is left out of it: its payload passes through a double.
inline bool SavesByDefinition(CCamera& camera)
{
    Buffer buffer;
    camera.Serialize(&buffer);
    return buffer.bytes == PlainRecord(camera).bytes;
}
} // namespace Recording
