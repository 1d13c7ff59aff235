// The module's fast ways - inverse, area, packing of pixels, look-up, saved record - against their definitions, bit for
// bit (Tests/Support/Fast_Paths.h).
//
// Input: which of them, how to make numbers of bytes, then the numbers.

#include "Fuzz/Module_Session.h"

#include "Tests/Support/Fast_Paths.h"

namespace
{
using namespace Recording;
using Fuzz::Choices;

// Half of all entries are chosen against short cuts, the others are the input's own bits.
float Entry(Choices& choices)
{
    static const float AWKWARD[] = {
        0.0f,        -0.0f,     1.0f,        -1.0f,      1e-20f,         1e-42f,       -1e-45f,
        0.5f,        2.0f,      -FLAT_LIMIT, FLAT_LIMIT, 1e20f,          3e38f,        1.0f / 3.0f,
        INFINITY,    -INFINITY, 320.0f,      -16000.0f,  1.1754944e-38f, -2.0f / 3.0f, 1099511758848.0f,
        NOT_A_NUMBER};
    const uint8_t flavour = choices.Byte();
    if (flavour < 64)
        return choices.Bits<float>();
    if (flavour < 128)
        return std::ldexp(flavour % 2 == 0 ? 1.0f : -1.0f, static_cast<int>(choices.Byte()) - 140);
    if (flavour < 160)
        return static_cast<float>(choices.Bits<int16_t>()) / 16.0f;
    return AWKWARD[flavour % (sizeof AWKWARD / sizeof AWKWARD[0])];
}

float Zero(Choices& choices) { return choices.OneIn(2) ? -0.0f : 0.0f; }

kvMatrix Matrix(Choices& choices)
{
    kvMatrix matrix;
    for (float& entry : matrix.m)
        entry = Entry(choices);
    const size_t shape = choices.Below(5); // any, affine, flat, upright, almost flat
    if (shape >= 1)
        for (const int entry : {3, 7, 11})
            matrix.m[entry] = Zero(choices);
    if (shape >= 1)
        matrix._44 = 1.0f;
    if (shape >= 2)
        for (const int entry : FLAT_ZEROS)
            matrix.m[entry] = Zero(choices);
    if (shape == 3)
        matrix._12 = matrix._21 = Zero(choices);
    if (shape == 4)
        matrix.m[choices.Below(16)] = Entry(choices);
    return matrix;
}

void CheckMatrices(Choices& choices)
{
    for (int i = 0; i < 8 && !choices.IsUsedUp(); ++i)
        Fuzz::Require(InvertsByDefinition(Matrix(choices)), "an inverse is not the definition's");
}

void CheckCamera(Choices& choices)
{
    CCamera camera;
    camera.SetViewMat(Matrix(choices));
    Fuzz::Require(StoresInversesByDefinition(camera), "an inverse after a view matrix is not the definition's");
    kvMatrix projection = Matrix(choices);
    projection._34 = Zero(choices); // parallel
    camera.SetProjMat(projection);
    Fuzz::Require(StoresInversesByDefinition(camera), "an inverse after a projection is not the definition's");
    Fuzz::Require(PublishesTheStatedArea(camera), "an area is not the definition's");
    camera.m_invViewProjMat = Matrix(choices);
    camera.m_invViewMat = Matrix(choices);
    Fuzz::Require(PublishesTheStatedArea(camera), "an area of any inverses is not the definition's");
}

void CheckBuild(Choices& choices)
{
    CCamera camera;
    camera.m_viewX = Entry(choices);
    camera.m_viewY = Entry(choices);
    camera.m_viewWidth = Entry(choices);
    camera.m_viewHeight = Entry(choices);
    camera.m_viewAngle = Entry(choices);
    camera.BuildView();
    Fuzz::Require(StoresInversesByDefinition(camera), "an inverse after a build is not the definition's");
    Fuzz::Require(PublishesTheStatedArea(camera), "an area after a build is not the definition's");
}

void CheckPixels(Choices& choices)
{
    static constexpr int DISTANCES[] = {4, 3, 5, 8};
    const int distance = choices.Of(DISTANCES), width = 1 + static_cast<int>(choices.Below(200));
    const int height = 1 + static_cast<int>(choices.Below(3));
    const size_t offset = choices.Below(16);
    const HeapPicture picture([&choices] { return choices.Byte(); }, width, height, distance, offset);
    Fuzz::Require(PacksThreeBytesOfEachPixel(picture), "a picture is not packed as it should be");
}

void CheckLookUps(Choices& choices)
{
    Run_Room = NewRoom(640, 480);
    for (CViewGM* view : Run_Room->r_view)
        view->cameraID = static_cast<int>(choices.Below(16)) - 1;
    for (size_t i = choices.Below(20); i > 0; --i)
        g_CM.CreateCamera();
    g_CM.StartRoom();
    while (!choices.IsUsedUp())
    {
        const int id = static_cast<int>(choices.Below(32)) - 2;
        CCamera* const camera = g_CM.GetCamera(id);
        switch (choices.Below(6))
        {
        case 0: g_CM.DestroyCamera(id); break;
        case 1: g_CM.CreateCamera(); break;
        case 2:
            if (camera != nullptr) // two may bear one number from now on
                camera->SetID(static_cast<int>(choices.Below(32)) - 1);
            break;
        case 3: g_CM.BuildRoomCameraList(); break;
        case 4: g_CM.m_lastCamPos = static_cast<int>(choices.Below(64)) - 16; break;
        default: break;
        }
        Fuzz::Require(FindsByDefinition(static_cast<int>(choices.Below(40)) - 3), "a look-up is not the definition's");
    }
    g_CM.EndRoom();
}

void CheckState(Choices& choices)
{
    const auto number = [&choices]
    {
        const float entry = Entry(choices);
        return entry == entry ? entry : 0.0f;
    };
    CCamera camera;
    camera.m_ID = choices.Bits<int>();
    for (kvMatrix* matrix : {&camera.m_projMat, &camera.m_viewMat, &camera.m_viewProjMat, &camera.m_invProjMat,
                             &camera.m_invViewMat, &camera.m_invViewProjMat})
        matrix->m[choices.Below(16)] = number();
    camera.m_viewX = number();
    camera.m_viewAngle = number();
    camera.m_targetInstance = choices.Bits<int>();
    camera.m_updateScript = Real(choices.Bits<int32_t>());
    camera.m_is2D = choices.OneIn(2);
    camera.m_isViewDirty = choices.OneIn(2);
    Fuzz::Require(SavesByDefinition(camera), "a saved record is not the definition's");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static constexpr void (*CHECKS[])(Choices&) = {CheckMatrices, CheckCamera,  CheckBuild,
                                                   CheckPixels,   CheckLookUps, CheckState};
    const Fuzz::SlowInputWatch watch(data, size);
    const Fuzz::ModuleSession session;
    Choices choices(data, size);
    choices.Of(CHECKS)(choices);
    return 0;
}
