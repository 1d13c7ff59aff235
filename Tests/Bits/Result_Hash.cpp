// One hash for each subject of the module: what its arithmetic gives over wide sweeps, bit by bit.
//
//   result_hash                  prints the hashes, a line each
//   result_hash FILE             compares them with the lines of a file; exit status 1 when any differs
//   result_hash --keep FOLDER    prints them, and leaves the images and saved cameras in the folder, which must exist
//
// Two builds that print the same lines compute the same, whatever their compiler, optimisation or processor. golden.txt
// holds what an unoptimised build prints. What a NaN looks like differs between processors: every NaN counts as one.

#include "Tests/Support/Recording_Host.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace
{
std::string s_report;
std::string s_folder; // where images and saved cameras are left; empty when nobody asked for them

[[noreturn]] void Fail(const std::string& text)
{
    fprintf(stderr, "error: %s\n", text.c_str());
    exit(2);
}

class Hash
{
public:
    void Word(uint32_t word)
    {
        for (int shift = 0; shift < 32; shift += 8)
            Byte(static_cast<uint8_t>(word >> shift));
    }
    void Byte(uint8_t byte) { m_state = (m_state ^ byte) * 0x100000001B3u; }
    void Float(float number)
    {
        uint32_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        Word(number == number ? bits : 0x7FC00000u);
    }
    void Matrix(const kvMatrix& matrix)
    {
        for (float entry : matrix.m)
            Float(entry);
    }
    void Bytes(const uint8_t* bytes, size_t count)
    {
        for (size_t i = 0; i < count; ++i)
            Byte(bytes[i]);
    }
    void Report(const char* subject) const
    {
        char line[64];
        std::snprintf(line, sizeof line, "%s %016llx\n", subject, static_cast<unsigned long long>(m_state));
        s_report += line;
    }

private:
    uint64_t m_state = 0xCBF29CE484222325u;
};

class Random
{
public:
    uint32_t Word()
    {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<uint32_t>(m_state >> 32);
    }
    // Exact multiples of 1/1024 in [low, low + 4096 * span).
    float Number(float low, float span) { return low + static_cast<float>(Word() >> 10) / 1024.0f * span; }
    float AnyBits()
    {
        const uint32_t bits = Word();
        float number;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

private:
    uint64_t m_state = 1;
};

void HashFrame(Hash& hash, const kvVector3& v)
{
    hash.Float(v.x);
    hash.Float(v.y);
    hash.Float(v.z);
}

void HashCamera(Hash& hash, const CCamera& camera)
{
    for (const kvMatrix* matrix : {&camera.m_projMat, &camera.m_viewMat, &camera.m_viewProjMat, &camera.m_invProjMat,
                                   &camera.m_invViewMat, &camera.m_invViewProjMat})
        hash.Matrix(*matrix);
    hash.Byte(camera.m_is2D);
    HashFrame(hash, camera.GetCamPos());
    HashFrame(hash, camera.GetCamDir());
    HashFrame(hash, camera.GetCamUp());
    HashFrame(hash, camera.GetCamRight());
}

void HashArea(Hash& hash)
{
    for (float number : {g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA})
        hash.Float(number);
}

void Place(CCamera& camera, float x, float y, float width, float height, float degrees)
{
    camera.SetViewX(x);
    camera.SetViewY(y);
    camera.SetViewWidth(width);
    camera.SetViewHeight(height);
    camera.SetViewAngle(degrees);
    camera.SetViewDirty();
}

// Every size at every place, turned through the circle and beyond; flat or with perspective.
void SweepViews(CCamera& camera, bool flat, Hash& built, Hash& area)
{
    constexpr float sizes[][2] = {{640, 480}, {1920, 1080}, {1, 1}, {0.125f, 3000}, {33.3f, 17.7f}, {0, 0}, {-5, 9}};
    constexpr float places[][2] = {{0, 0}, {-1000.25f, 77.5f}, {12345.678f, 0.001f}, {1e7f, -1e-7f}};
    for (const auto& size : sizes)
        for (const auto& place : places)
            for (int step = -768; step <= 768; ++step)
            {
                Place(camera, place[0], place[1], size[0], size[1], static_cast<float>(step) * 0.5859375f);
                if (flat)
                    camera.Build2DView(place[0], place[1]);
                else
                    camera.Build3DView(place[0], place[1]);
                camera.ApplyMatrices();
                HashCamera(built, camera);
                HashArea(area);
            }
}

void Views(bool flat, const char* builtName, const char* areaName)
{
    Hash built, area;
    SweepViews(*g_CM.CreateCamera(), flat, built, area);
    built.Report(builtName);
    area.Report(areaName);
}

// A statement for each number: the order in which arguments are evaluated is the compiler's choice.
void PlaceAtRandom(CCamera& camera, Random& random)
{
    camera.SetViewX(random.Number(0.0f, 1.0f));
    camera.SetViewY(random.Number(0.0f, 0.5f));
    camera.SetViewWidth(random.Number(1.0f, 0.25f));
    camera.SetViewHeight(random.Number(1.0f, 0.25f));
    camera.SetViewAngle(random.Number(-360.0f, 0.25f));
    camera.SetViewBorderX(random.Number(0.0f, 0.125f));
    camera.SetViewBorderY(random.Number(0.0f, 0.125f));
    camera.SetViewSpeedX(random.Number(-2.0f, 1.0f / 256));
    camera.SetViewSpeedY(random.Number(-2.0f, 1.0f / 256));
    camera.SetViewDirty();
}

void Following()
{
    Hash hash;
    Random random;
    Run_Room = Recording::NewRoom(4000, 2000);
    CInstance* const target = Recording::NewInstance(INSTANCE_ID_FIRST, 0, 0);
    CCamera& camera = *g_CM.CreateCamera();
    camera.SetTargetInstance(INSTANCE_ID_FIRST);
    for (int step = 0; step < 4000; ++step)
    {
        if (step % 100 == 0)
            PlaceAtRandom(camera, random);
        target->x += random.Number(-16, 1.0f / 128);
        target->y += random.Number(-16, 1.0f / 128);
        camera.CameraUpdate();
        hash.Float(camera.GetViewX());
        hash.Float(camera.GetViewY());
        HashCamera(hash, camera);
    }
    Run_Room = nullptr;
    hash.Report("following");
}

void InvertAndHash(Hash& hash, kvMatrix matrix)
{
    hash.Byte(matrix.Invert());
    hash.Matrix(matrix);
}

// Any bits at all, then ordinary numbers, then the affine matrices that views are.
void Inverses()
{
    Hash any, ordinary, affine;
    Random random;
    for (int n = 0; n < 20000; ++n)
    {
        kvMatrix matrix;
        for (float& entry : matrix.m)
            entry = random.AnyBits();
        InvertAndHash(any, matrix);
        for (float& entry : matrix.m)
            entry = random.Number(-8, 1.0f / 256);
        InvertAndHash(ordinary, matrix);
        matrix._14 = matrix._24 = matrix._34 = 0.0f;
        matrix._44 = 1.0f;
        InvertAndHash(affine, matrix);
    }
    any.Report("inverses-of-any-bits");
    ordinary.Report("inverses");
    affine.Report("inverses-affine");
}

void Colours()
{
    Hash hash;
    Random random;
    for (int n = 0; n < 20000; ++n)
    {
        const unsigned first = random.Word(), second = random.Word();
        hash.Word(GR_Color_Merge(first, second, static_cast<float>(n) / 16384.0f));
        hash.Word(GR_Color_Merge(first, second, random.AnyBits()));
        hash.Word(ConvertAlpha(random.AnyBits()));
        hash.Word(GR_RGBA_To_D3DColor(static_cast<int>(first >> 8), -200, 300, second));
    }
    hash.Report("colours");
}

void Keep(const std::string& name, const uint8_t* bytes, size_t count)
{
    if (s_folder.empty())
        return;
    std::ofstream file(s_folder + "/" + name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    if (!file.flush())
        Fail("cannot write " + name + " in " + s_folder);
}

constexpr int WIDTH = 33;
constexpr int HEIGHT = 17;

std::vector<uint8_t> RandomPixels()
{
    Random random;
    std::vector<uint8_t> pixels(WIDTH * HEIGHT * 4);
    for (uint8_t& byte : pixels)
        byte = static_cast<uint8_t>(random.Word() >> 24);
    return pixels;
}

void Bitmap()
{
    Hash hash;
    std::vector<uint8_t> pixels = RandomPixels();
    for (int distance : {1, 3, 4})
    {
        int size = 0;
        uint8_t* const image = static_cast<uint8_t*>(CreateBMP(pixels.data(), WIDTH, HEIGHT, &size, distance));
        hash.Bytes(image, static_cast<size_t>(size));
        Keep("bitmap_" + std::to_string(distance) + ".bmp", image, static_cast<size_t>(size));
        MemoryManager::Free(image);
    }
    hash.Report("bitmap");
}

// Without a hash, as the bytes also depend on the version of zlib. Builds with the same one make the same file.
void Picture()
{
    char name[] = "picture.png";
    std::vector<uint8_t> pixels = RandomPixels();
    if (WritePNG32(name, pixels.data(), WIDTH, HEIGHT) != 1)
        Fail("the PNG was not written");
    std::ifstream file(Recording::SaveArea() + "/" + name, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    Keep(name, reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

// The cameras that the subjects before have left, with a few more, saved; then loaded and saved again.
void Stream()
{
    for (int n = 0; n < 12; ++n)
    {
        CCamera& camera = *g_CM.CreateCamera();
        const float number = static_cast<float>(n);
        Place(camera, number * 33.3f, number * -7.7f, 320.0f + number, 240.0f, number * 29.9f);
        camera.Build2DView(number, 1.0f / (number + 1.0f));
    }
    g_CM.DestroyCamera(4);
    for (const char* subject : {"stream", "stream-again"})
    {
        Recording::Buffer buffer;
        g_CM.Serialize(&buffer);
        Hash hash;
        hash.Bytes(buffer.bytes.data(), buffer.bytes.size());
        hash.Report(subject);
        Keep(subject + std::string(".state"), buffer.bytes.data(), buffer.bytes.size());
        g_CM.DeSerialize(&buffer);
    }
}
void RunSubjects()
{
    Views(true, "flat-views", "flat-areas");
    Views(false, "deep-views", "deep-areas");
    Following();
    Inverses();
    Colours();
    Bitmap();
    if (!s_folder.empty())
        Picture();
    g_CM.DestroyCamera(0); // the sweeps ended with views without size: their NaNs stay out of the stream
    g_CM.DestroyCamera(1);
    Stream();
}

int Compare(const char* path)
{
    std::ifstream file(path);
    const std::string golden((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (golden == s_report)
        return 0;
    printf("these results differ from %s:\n%s", path, s_report.c_str());
    return 1;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::string(argv[1]) == "--keep")
        s_folder = argv[2];
    Recording::Reset();
    Recording::Listen(0);
    RunSubjects();
    if (argc == 2)
        return Compare(argv[1]);
    fputs(s_report.c_str(), stdout);
    return 0;
}
