// A painter whose device is lost between two frames draws on with a new one.
#include "Runner/Draw/Device.h"
#include "Runner/Host/Console.h"

#include "Tests/Runner/Draw/Draw_Support.h"
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using namespace Runner;

// Hands everything on to a real device, and says that it is lost when it is told so.
class LosableDevice : public Device
{
public:
    LosableDevice(std::unique_ptr<Device> real, bool& isLost) : m_real(std::move(real)), m_isLost(isLost) {}

    int LargestTexture() const override { return m_real->LargestTexture(); }
    unsigned CreateTexture(int width, int height, const uint8_t* rgba) override
    {
        return m_real->CreateTexture(width, height, rgba);
    }
    void DeleteTexture(unsigned texture) override { m_real->DeleteTexture(texture); }
    unsigned CreateTarget(int width, int height, unsigned& texture) override
    {
        return m_real->CreateTarget(width, height, texture);
    }
    void DeleteTarget(unsigned target) override { m_real->DeleteTarget(target); }
    unsigned CreateMesh() override { return m_real->CreateMesh(); }
    void SetMesh(unsigned mesh, const std::vector<Vertex>& vertices) override { m_real->SetMesh(mesh, vertices); }
    void DeleteMesh(unsigned mesh) override { m_real->DeleteMesh(mesh); }
    void Clear(const DrawState& state, const float (&colour)[4]) override { m_real->Clear(state, colour); }
    void DrawTriangles(const DrawState& state, const std::vector<Vertex>& vertices,
                       const std::vector<uint16_t>& indices) override
    {
        m_real->DrawTriangles(state, vertices, indices);
    }
    void DrawMesh(const DrawState& state, unsigned mesh, int quads) override { m_real->DrawMesh(state, mesh, quads); }
    void BeginScreen() override { m_real->BeginScreen(); }
    void TakeBackScreen() override { m_real->TakeBackScreen(); }
    void Finish() override { m_real->Finish(); }
    void Show(const Showing& showing) override { m_real->Show(showing); }
    void Read(unsigned target, int width, int height, uint8_t* rgba) override
    {
        m_real->Read(target, width, height, rgba);
    }
    bool IsLost() override { return m_isLost; }
    std::string Driver() const override { return m_real->Driver(); }
    std::string TakeError() override { return m_isLost ? "the context is lost" : m_real->TakeError(); }

private:
    std::unique_ptr<Device> m_real;
    bool& m_isLost;
};

class DrawRenewal : public testing::Test
{
protected:
    DrawRenewal()
    {
        SetConsoleOutput(m_log.Get());
        painter =
            Painter::Open(64, 64, true, why,
                          [this](int width, int height, std::string& error) { return Open(width, height, error); });
        EXPECT_NE(painter, nullptr) << why;
    }

    ~DrawRenewal() override
    {
        painter.reset();
        SetConsoleOutput(nullptr);
    }

    std::unique_ptr<Device> Open(int width, int height, std::string& error)
    {
        ++opened;
        isLost = false;
        if (isRefused)
            error = "there is none";
        return isRefused ? nullptr : std::make_unique<LosableDevice>(OpenDevice(width, height, error), isLost);
    }

    std::vector<uint8_t> Draw()
    {
        painter->BeginFrame();
        painter->Clear(0x203040);
        painter->Sprite(sprite, 0, 3.0f, 4.0f);
        painter->TileMap(map, 20.0f, 20.0f);
        painter->Text(2.0f, 48.0f, "Text");
        painter->PushTarget(surface);
        painter->Clear(0xFF00FF);
        painter->PopTarget();
        painter->Surface(surface, 50.0f, 2.0f);
        const std::vector<uint8_t> shown = painter->ReadScreen().rgba;
        painter->EndFrame();
        return shown;
    }

    std::unique_ptr<Painter> painter;
    std::string why;
    bool isLost = false, isRefused = false;
    int opened = 0;
    int sprite = -1, surface = -1, map = -1;

private:
    RunnerTest::CapturedFile m_log;
};

TEST_F(DrawRenewal, EverythingIsUploadedAnew)
{
    sprite = painter->AddSheet(DrawTest::FourCorners(8), 8, 8);
    surface = painter->CreateSurface(8, 8);
    map = painter->CreateTileMap(sprite, 3, 2, 8.0f, 8.0f);
    painter->SetTile(map, 1, 1, 0);
    const std::vector<uint8_t> before = Draw();
    isLost = true;
    Draw();
    EXPECT_EQ(opened, 2);
    EXPECT_EQ(Draw(), before);
    EXPECT_EQ(painter->TakeError(), "") << "what the lost device complained of is forgotten";
    EXPECT_EQ(opened, 2) << "once is enough";
}

TEST_F(DrawRenewal, BetweenTwoFramesTheNextFrameIsWhole)
{
    sprite = painter->AddSheet(DrawTest::FourCorners(8), 8, 8);
    surface = painter->CreateSurface(8, 8);
    map = painter->CreateTileMap(sprite, 3, 2, 8.0f, 8.0f);
    const std::vector<uint8_t> before = Draw();
    painter->RenewDevice();
    EXPECT_EQ(opened, 1) << "it is not lost";
    isLost = true;
    painter->RenewDevice();
    EXPECT_EQ(opened, 2);
    EXPECT_EQ(Draw(), before);
    EXPECT_EQ(opened, 2);
}

TEST_F(DrawRenewal, ASurfaceIsEmptyUntilItIsDrawnAnew)
{
    surface = painter->CreateSurface(8, 8);
    painter->PushTarget(surface);
    painter->Clear(0xFF00FF);
    painter->PopTarget();
    isLost = true;
    painter->EndFrame();
    Picture shown;
    ASSERT_TRUE(painter->ReadSurface(surface, shown));
    EXPECT_EQ(shown.rgba, std::vector<uint8_t>(8 * 8 * 4, 0));
}

TEST_F(DrawRenewal, WithoutANewDeviceTheErrorSaysWhy)
{
    isLost = isRefused = true;
    painter->BeginFrame();
    painter->EndFrame();
    EXPECT_EQ(painter->TakeError(), "there is none");
    painter->BeginFrame();
    painter->Rectangle(0.0f, 0.0f, 8.0f, 8.0f);
    painter->EndFrame();
}
} // namespace
