#include "Tests/Module/Matrix_Builtin_Fixture.h"
#include "Tests/Support/Numbers.h"

#include <cmath>
#include <limits>

namespace
{
using namespace Recording;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double INF = std::numeric_limits<double>::infinity();

struct Getter
{
    const char* name;
    TFunction handler;
    bool isProjection;
};

void PrintTo(const Getter& getter, std::ostream* out) { *out << getter.name; }

class MatrixGetter : public MatrixBuiltinTest, public testing::WithParamInterface<Getter>
{
protected:
    void Store(const kvMatrix& matrix)
    {
        if (GetParam().isProjection)
            camera->SetProjMat(matrix);
        else
            camera->SetViewMat(matrix);
    }
    RValue Get() { return Call(GetParam().handler, {Real(1)}); }
};

TEST_P(MatrixGetter, OfANewCameraIsTheIdentity)
{
    EXPECT_EQ(Elements(Get()), Widened(Identity()));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(MatrixGetter, ReturnsTheMatrixInStorageOrder)
{
    Store(MatrixOf(Numbers()));
    EXPECT_EQ(Elements(Get()), Numbers());
}

TEST_P(MatrixGetter, ReturnsAnArrayOfRealsWithoutFlags)
{
    Owned result(Get());
    EXPECT_EQ(result.kind, VALUE_ARRAY);
    ASSERT_EQ(result.pRefArray->m_length, 16);
    EXPECT_EQ(ReferenceCount(result.pRefArray), 1);
    for (int i = 0; i < 16; ++i)
    {
        EXPECT_EQ(result.pRefArray->m_array[i].kind, VALUE_REAL) << i;
        EXPECT_EQ(result.pRefArray->m_array[i].flags, 0u) << i;
    }
}

TEST_P(MatrixGetter, WidensWhateverAnElementIs)
{
    std::vector<double> odd(16, 0.0);
    odd[0] = INF;
    odd[1] = -INF;
    odd[2] = -0.0;
    odd[3] = 1e-45; // the smallest float, somewhat more than this double
    odd[4] = NOT_A_NUMBER_64;
    Store(MatrixOf(odd));
    const std::vector<double> read = Elements(Get());
    EXPECT_EQ(read[0], INF);
    EXPECT_EQ(read[1], -INF);
    EXPECT_TRUE(std::signbit(read[2]));
    EXPECT_EQ(read[3], static_cast<double>(std::numeric_limits<float>::denorm_min()));
    EXPECT_TRUE(std::isnan(read[4]));
}

TEST_P(MatrixGetter, ReturnsACopyThatScriptsMayChange)
{
    Owned result(Get());
    result.pRefArray->m_array[0].val = 5;
    EXPECT_EQ(Elements(Get()), Widened(Identity()));
}

TEST_P(MatrixGetter, MakesANewRecordAndANewVectorEachTime)
{
    Owned first(Get());
    Owned second(Get());
    EXPECT_NE(first.pRefArray, second.pRefArray);
    EXPECT_NE(first.pRefArray->m_array, second.pRefArray->m_array);
}

TEST_P(MatrixGetter, AllocatesTheVectorClearFromTheMemoryManager)
{
    Listen(Topic_Memory);
    Owned result(Get());
    ASSERT_EQ(Requests().size(), 2u); // the record is the host's
    EXPECT_EQ(Requests()[1].file, "Files/Graphics/Graphics_Support");
    EXPECT_EQ(Requests()[1].size, 16 * sizeof(RValue));
    EXPECT_TRUE(Requests()[1].clear);
    EXPECT_FALSE(Requests()[1].grows);
}

TEST_P(MatrixGetter, SurvivesARefusedVector)
{
    const size_t before = LiveBlocks();
    RefuseRequest(2);
    {
        Owned result(Get());
        EXPECT_TRUE(result.kind != VALUE_ARRAY || result.pRefArray->m_length == 0);
    }
    EXPECT_EQ(LiveBlocks(), before);
}

TEST_P(MatrixGetter, SurvivesARefusedRecord)
{
    RefuseRequest(1);
    Owned result(Get());
    EXPECT_TRUE(result.kind != VALUE_ARRAY || result.pRefArray == nullptr);
}

TEST_P(MatrixGetter, BringsADirtyViewUpToDateFirst)
{
    camera->m_viewX = 10;
    camera->m_viewY = 20;
    camera->m_viewWidth = 640;
    camera->m_viewHeight = 480;
    camera->SetViewDirty();
    const Lines log = LogOf(F_CameraGetViewX, {Real(1)}, Topic_Matrices);
    EXPECT_THAT(log, IsEmpty());
    Owned result(Get());
    EXPECT_THAT(TakeLog(),
                testing::IsSupersetOf({"LookAtLH(330,260,-16000;330,260,0;-0,1,0)", "OrthoLH(640,480,0,32000)"}));
    EXPECT_FALSE(camera->IsViewDirty());
    EXPECT_EQ(Elements(Get())[3], 0.0);
}

TEST_P(MatrixGetter, BuildsAPerspectiveViewWhenTheProjectionIsOne)
{
    kvMatrix perspective = Identity();
    perspective._34 = 1;
    camera->SetProjMat(perspective);
    camera->m_viewWidth = 640;
    camera->m_viewHeight = 480;
    camera->SetViewDirty();
    Listen(Topic_Matrices);
    TakeLog();
    Owned result(Get());
    EXPECT_THAT(TakeLog(),
                testing::IsSupersetOf({"LookAtLH(320,240,-640;320,240,0;-0,1,0)", "PerspectiveLH(1,-0.75,1,32000)"}));
    EXPECT_FALSE(camera->IsViewDirty());
}

TEST_P(MatrixGetter, BuildsNothingWhenTheViewIsClean)
{
    camera->m_viewWidth = 640;
    Listen(Topic_Matrices);
    TakeLog();
    Owned result(Get());
    EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_P(MatrixGetter, OfAnUnknownCameraIsMinusOneAndAllocatesNothing)
{
    const int before = RequestCount();
    EXPECT_EQ(Answer(GetParam().handler, {Real(UNKNOWN_CAMERA)}), "real -1");
    EXPECT_EQ(RequestCount(), before);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(MatrixGetter, DoesNotReleaseWhatTheResultHeld)
{
    Owned text(NewString("kept"));
    RValue result = text;
    Call(GetParam().handler, {Real(1)}, result);
    EXPECT_EQ(text.pRefString->m_refCount, 1);
    Owned array(result);
}

INSTANTIATE_TEST_SUITE_P(Getters, MatrixGetter,
                         testing::Values(Getter{"view", F_CameraGetViewMat, false},
                                         Getter{"proj", F_CameraGetProjMat, true}),
                         [](const testing::TestParamInfo<Getter>& row) { return row.param.name; });

// ---- the render target: only the projection turns over ----

class MatrixOnTarget : public MatrixBuiltinTest
{
};

TEST_F(MatrixOnTarget, GetProjMatIntoARenderTargetNegatesTheSecondColumn)
{
    camera->SetProjMat(MatrixOf(Numbers()));
    std::vector<double> flipped = Numbers();
    for (size_t row = 0; row < 4; ++row)
        flipped[4 * row + 1] = -flipped[4 * row + 1];
    for (int target : {0, 3, -2})
    {
        g_RenderTargetActive = target;
        EXPECT_EQ(Elements(Call(F_CameraGetProjMat, {Real(1)})), flipped) << target;
    }
}

TEST_F(MatrixOnTarget, GetProjMatAsksTheHostForTheProduct)
{
    EXPECT_THAT(LogOf(F_CameraGetViewMat, {Real(UNKNOWN_CAMERA)}, Topic_Matrices), IsEmpty());
    Owned onScreen(Call(F_CameraGetProjMat, {Real(1)}));
    EXPECT_THAT(TakeLog(), IsEmpty());
    g_RenderTargetActive = 0;
    Owned onTarget(Call(F_CameraGetProjMat, {Real(1)}));
    EXPECT_THAT(TakeLog(), ElementsAre(testing::StartsWith("Multiply(")));
}

TEST_F(MatrixOnTarget, GetProjMatLeavesTheStoredProjectionAlone)
{
    camera->SetProjMat(MatrixOf(Numbers()));
    g_RenderTargetActive = 0;
    Owned result(Call(F_CameraGetProjMat, {Real(1)}));
    EXPECT_EQ(camera->GetProjMat(), MatrixOf(Numbers()));
}

TEST_F(MatrixOnTarget, GetViewMatIgnoresTheRenderTarget)
{
    camera->SetViewMat(MatrixOf(Numbers()));
    g_RenderTargetActive = 0;
    EXPECT_EQ(Elements(Call(F_CameraGetViewMat, {Real(1)})), Numbers());
}
} // namespace
