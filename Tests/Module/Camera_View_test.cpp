// The flat and the deep build, and the choice between them.

#include "Platform/Strict_Float.h"

#include "Files/Graphics/Trigonometry.h"
#include "Tests/Support/Compare.h"
#include "Tests/Support/Numbers.h"

#include <cmath>
#include <limits>

using namespace Recording;

namespace
{
constexpr float RADIANS = 0.017453292f;

struct Rectangle
{
    float x, y, width, height;
};

std::string Text(const Rectangle& r, float angle)
{
    return Describe(r.x) + "," + Describe(r.y) + " " + Describe(r.width) + "x" + Describe(r.height) + " at " +
           Describe(angle);
}

// Every combination of a place, a size and an angle that a game could have.
std::vector<std::pair<Rectangle, float>> Sweep()
{
    std::vector<std::pair<Rectangle, float>> all;
    for (float x : {0.0f, 37.25f, -4000.0f, 20000.3f})
        for (float y : {0.0f, -11.5f, 9000.7f})
            for (float width : {1.0f, 319.5f, 640.0f, 8192.0f})
                for (float ratio : {0.5f, 0.75f, 2.0f})
                    for (float angle : {0.0f, 1.0f, 45.0f, 90.0f, -90.0f, 180.0f, 271.5f, 359.9f, -720.25f})
                        all.push_back({{x, y, width, width * ratio}, angle});
    return all;
}

kvMatrix Deep()
{
    kvMatrix matrix = Identity();
    matrix._34 = 1.0f;
    return matrix;
}

double D(float number) { return static_cast<double>(number); }

// What makes up a view's entries: axes of length 1, whose error is that of the angle in radians, and the eye along
// them.
Reference::Matrix ViewSize(const Rectangle& r, float angle, double distance)
{
    const double axes = 1.0 + std::fabs(D(angle * RADIANS));
    const double reach = (std::fabs(D(r.x)) + std::fabs(D(r.y)) + D(r.width) + D(r.height)) * axes;
    Reference::Matrix size = {};
    for (int column = 0; column < 3; ++column)
    {
        for (int row = 0; row < 3; ++row)
            size.m[row][column] = axes;
        size.m[3][column] = column == 2 ? distance : reach;
    }
    return size;
}
} // namespace

class CameraView : public ModuleTest
{
protected:
    void Shape(float x, float y, float width, float height, float angle = 0.0f)
    {
        camera.m_viewX = x;
        camera.m_viewY = y;
        camera.m_viewWidth = width;
        camera.m_viewHeight = height;
        camera.m_viewAngle = angle;
        TakeLog();
    }

    // The two calls to the builders, without the products.
    Lines Builders()
    {
        Lines calls;
        for (const std::string& line : TakeLog())
            if (line != "Multiply()")
                calls.push_back(line);
        return calls;
    }

    bool BuiltFlat() { return Builders().at(1).rfind("OrthoLH", 0) == 0; }

    void ExpectDerivedMatrices(const std::string& what)
    {
        ExpectProduct(camera.m_viewProjMat, camera.m_viewMat, camera.m_projMat, what + ", product");
        ExpectInverse(camera.m_invViewMat, camera.m_viewMat, what + ", inverse view");
        ExpectInverse(camera.m_invProjMat, camera.m_projMat, what + ", inverse projection");
        ExpectInverse(camera.m_invViewProjMat, camera.m_viewProjMat, what + ", inverse product");
    }

    CCamera camera;
};

// ---- the host's builders, called as stated ----

TEST_F(CameraView, TheFlatBuildLooksFromAfarAtTheCentreAndProjectsInParallel)
{
    Shape(0, 0, 640, 480);
    camera.Build2DView(320, 240);
    EXPECT_EQ(Builders(), (Lines{"LookAtLH(320,240,-16000;320,240,0;-0,1,0)", "OrthoLH(640,480,0,32000)"}));
    EXPECT_TRUE(camera.Is2D());
}

TEST_F(CameraView, TheDeepBuildLooksFromOneWidthAwayWithANegativeHeight)
{
    Shape(0, 0, 640, 480);
    camera.Build3DView(320, 240);
    EXPECT_EQ(Builders(), (Lines{"LookAtLH(320,240,-640;320,240,0;-0,1,0)", "PerspectiveLH(1,-0.75,1,32000)"}));
    EXPECT_FALSE(camera.Is2D());
}

TEST_F(CameraView, TheBuildsTakeTheCentreThatTheyAreGivenUnchanged)
{
    Shape(5, 6, 640, 480);
    camera.Build2DView(-1.5f, 1e6f);
    EXPECT_EQ(Builders().at(0), "LookAtLH(-1.5,1000000,-16000;-1.5,1000000,0;-0,1,0)");
    camera.Build3DView(-1.5f, 1e6f);
    EXPECT_EQ(Builders().at(0), "LookAtLH(-1.5,1000000,-640;-1.5,1000000,0;-0,1,0)");
}

TEST_F(CameraView, TheUpVectorIsTheSineAndCosineOfTheNegatedAngle)
{
    for (float angle : {0.0f, 90.0f, -90.0f, 33.3f, 180.0f, 1000.0f, -0.0f})
    {
        Shape(0, 0, 2, 2, angle);
        const float a = -(angle * RADIANS);
        const std::string up = Describe(GR_Sin(a)) + "," + Describe(GR_Cos(a)) + ",0)";
        camera.Build2DView(0, 0);
        EXPECT_EQ(Builders().at(0), "LookAtLH(0,0,-16000;0,0,0;" + up);
        camera.Build3DView(0, 0);
        EXPECT_EQ(Builders().at(0), "LookAtLH(0,0,-2;0,0,0;" + up);
    }
}

TEST_F(CameraView, NinetyDegreesPutUpAtMinusX)
{
    Shape(0, 0, 2, 2, 90);
    camera.Build2DView(0, 0);
    EXPECT_FLOAT_EQ(camera.m_viewMat._12, -1.0f);
    EXPECT_NEAR(D(camera.m_viewMat._22), 0.0, 1e-7);
}

TEST_F(CameraView, ABuildUsesTheAngleAndSizesButNotThePositionFields)
{
    Shape(1e9f, -1e9f, 640, 480);
    camera.Build2DView(10, 20);
    EXPECT_EQ(Builders(), (Lines{"LookAtLH(10,20,-16000;10,20,0;-0,1,0)", "OrthoLH(640,480,0,32000)"}));
}

TEST_F(CameraView, ABuildLeavesItsInputsAlone)
{
    Shape(1, 2, 640, 480, 30);
    camera.m_targetInstance = 9;
    camera.Build2DView(3, 4);
    camera.Build3DView(5, 6);
    EXPECT_EQ(camera.m_viewX, 1.0f);
    EXPECT_EQ(camera.m_viewY, 2.0f);
    EXPECT_EQ(camera.m_viewWidth, 640.0f);
    EXPECT_EQ(camera.m_viewHeight, 480.0f);
    EXPECT_EQ(camera.m_viewAngle, 30.0f);
    EXPECT_EQ(camera.m_targetInstance, 9);
}

TEST_F(CameraView, EveryBuildEndsClean)
{
    Shape(0, 0, 640, 480);
    camera.m_isViewDirty = true;
    camera.Build2DView(0, 0);
    EXPECT_FALSE(camera.IsViewDirty());
    camera.m_isViewDirty = true;
    camera.Build3DView(0, 0);
    EXPECT_FALSE(camera.IsViewDirty());
    camera.m_isViewDirty = true;
    camera.BuildView();
    EXPECT_FALSE(camera.IsViewDirty());
}

TEST_F(CameraView, AFlatBuildMakesATiltedOrDeepCameraFlat)
{
    Shape(0, 0, 640, 480);
    camera.Build3DView(0, 0);
    camera.m_viewMat._13 = 0.5f;
    camera.Build2DView(0, 0);
    EXPECT_TRUE(camera.Is2D());
    EXPECT_TRUE(camera.IsOrthoProj());
}

// ---- which build ----

TEST_F(CameraView, BuildViewLooksAtTheCentreOfTheRectangle)
{
    Shape(10, 20, 101, 51);
    camera.BuildView();
    EXPECT_EQ(Builders().at(0), "LookAtLH(60.5,45.5,-16000;60.5,45.5,0;-0,1,0)");
}

TEST_F(CameraView, TheCentreIsComputedInSinglePrecision)
{
    Shape(16777216.0f, -16777216.0f, 3.0f, 3.0f); // half a unit is lost beside a number of this size
    camera.BuildView();
    EXPECT_EQ(Builders().at(0), "LookAtLH(16777218,-16777214,-16000;16777218,-16777214,0;-0,1,0)");
}

TEST_F(CameraView, TheCurrentProjectionPicksTheBuild)
{
    Shape(0, 0, 640, 480);
    for (float parallel : {0.0f, -0.0f})
    {
        camera.m_projMat = Identity();
        camera.m_projMat._34 = parallel;
        camera.BuildView();
        EXPECT_TRUE(BuiltFlat()) << parallel;
    }
    for (float perspective : {1.0f, -1.0f, 1e-45f, NOT_A_NUMBER})
    {
        camera.m_projMat = Identity();
        camera.m_projMat._34 = perspective;
        camera.BuildView();
        EXPECT_FALSE(BuiltFlat()) << perspective;
    }
}

TEST_F(CameraView, TheFlatFlagDoesNotPickTheBuild)
{
    Shape(0, 0, 640, 480);
    camera.m_is2D = false;
    camera.BuildView();
    EXPECT_TRUE(BuiltFlat());
    camera.m_projMat = Deep();
    camera.m_is2D = true;
    camera.BuildView();
    EXPECT_FALSE(BuiltFlat());
}

TEST_F(CameraView, BuildViewBuildsACleanViewToo)
{
    Shape(0, 0, 640, 480);
    camera.BuildView();
    EXPECT_EQ(Builders().size(), 2u);
}

// ---- against the reference ----

TEST_F(CameraView, FlatBuildsAgreeWithTheReference)
{
    constexpr double roundings = 8.0;
    for (const auto& [r, angle] : Sweep())
    {
        Shape(r.x, r.y, r.width, r.height, angle);
        camera.BuildView();
        const std::string what = Text(r, angle);
        const Reference::Frame expected = Reference::Flat(D(r.x), D(r.y), D(r.width), D(r.height), D(angle));
        ExpectEntries(camera.m_viewMat, expected.view, ViewSize(r, angle, 16000.0), roundings, what);
        ExpectEntries(camera.m_projMat, expected.projection, Reference::Magnitudes(expected.projection), roundings,
                      what);
        ExpectDerivedMatrices(what);
        ASSERT_TRUE(camera.Is2D()) << what;
    }
}

TEST_F(CameraView, DeepBuildsAgreeWithTheReference)
{
    constexpr double roundings = 8.0;
    for (const auto& [r, angle] : Sweep())
    {
        Shape(r.x, r.y, r.width, r.height, angle);
        camera.m_projMat = Deep();
        camera.BuildView();
        const std::string what = Text(r, angle);
        const Reference::Frame expected = Reference::Deep(D(r.x), D(r.y), D(r.width), D(r.height), D(angle));
        ExpectEntries(camera.m_viewMat, expected.view, ViewSize(r, angle, D(r.width)), roundings, what);
        ExpectEntries(camera.m_projMat, expected.projection, Reference::Magnitudes(expected.projection), roundings,
                      what);
        ExpectDerivedMatrices(what);
        ASSERT_FALSE(camera.Is2D()) << what;
    }
}

TEST_F(CameraView, TheRectanglesCornersAreTheCornersOfTheClipSpace)
{
    for (bool deep : {false, true})
    {
        Shape(100, 50, 640, 480);
        camera.m_projMat = deep ? Deep() : Identity();
        camera.BuildView();
        const Reference::Matrix roomToClip = Reference::Widen(camera.m_viewProjMat);
        const Reference::Vector topLeft = Reference::Project(roomToClip, {100, 50, 0});
        const Reference::Vector bottomRight = Reference::Project(roomToClip, {740, 530, 0});
        EXPECT_NEAR(topLeft.x, -1.0, 1e-5);
        EXPECT_NEAR(bottomRight.x, 1.0, 1e-5);
        EXPECT_NEAR(topLeft.y, deep ? 1.0 : -1.0, 1e-5) << "the two builds have opposite vertical sense";
        EXPECT_NEAR(bottomRight.y, deep ? -1.0 : 1.0, 1e-5);
    }
}

TEST_F(CameraView, TheFlatBuildShowsTheRoomsDepthFromNearToFar)
{
    Shape(0, 0, 640, 480);
    camera.BuildView();
    const Reference::Matrix roomToClip = Reference::Widen(camera.m_viewProjMat);
    EXPECT_NEAR(Reference::Project(roomToClip, {0, 0, -16000}).z, 0.0, 1e-6);
    EXPECT_NEAR(Reference::Project(roomToClip, {0, 0, 0}).z, 0.5, 1e-6);
    EXPECT_NEAR(Reference::Project(roomToClip, {0, 0, 16000}).z, 1.0, 1e-6);
}

// ---- degenerate rectangles ----

TEST_F(CameraView, AnEmptyOrBrokenRectangleBuildsWithoutComplaint)
{
    const float odd[] = {0.0f, -0.0f, -640.0f, NOT_A_NUMBER, std::numeric_limits<float>::infinity(), 1e38f, 1e-45f};
    for (float width : odd)
        for (float height : odd)
            for (bool deep : {false, true})
            {
                Shape(width, height, width, height, height);
                camera.m_projMat = deep ? Deep() : Identity();
                camera.m_isViewDirty = true;
                camera.BuildView();
                EXPECT_FALSE(camera.IsViewDirty());
            }
}

TEST_F(CameraView, ANegativeWidthMirrors)
{
    Shape(640, 0, -640, 480);
    camera.BuildView();
    EXPECT_EQ(camera.m_projMat._11, 2.0f / -640.0f);
}
