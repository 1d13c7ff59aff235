#include "Tests/Module/Matrix_Builtin_Fixture.h"
#include "Tests/Support/Numbers.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace
{
using namespace Recording;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double INF = std::numeric_limits<double>::infinity();

struct Setter
{
    const char* name;
    TFunction handler;
    bool isProjection;
};

void PrintTo(const Setter& setter, std::ostream* out) { *out << setter.name; }

class MatrixSetter : public MatrixBuiltinTest, public testing::WithParamInterface<Setter>
{
protected:
    std::string Set(const RValue& array) { return Answer(GetParam().handler, {Real(1), array}); }
    kvMatrix Stored() const { return GetParam().isProjection ? camera->GetProjMat() : camera->GetViewMat(); }

    void ExpectRefused(const RValue& array, const char* message)
    {
        Errors().clear();
        EXPECT_EQ(Set(array), "real -1");
        EXPECT_THAT(Errors(), ElementsAre(message));
        EXPECT_EQ(camera->GetViewMat(), Identity());
        EXPECT_EQ(camera->GetProjMat(), Identity());
    }
};

const char* const NOT_AN_ARRAY = "camera_set_view_mat() - array invalid (has it been created properly?)";
const char* const NOT_SIXTEEN = "camera_set_view_mat() - must be 16 entries in array";

TEST_P(MatrixSetter, StoresTheNumbersInStorageOrder)
{
    Owned array(OfArray(NewArray(Numbers())));
    EXPECT_EQ(Set(array), "real -1");
    EXPECT_EQ(Stored(), MatrixOf(Numbers()));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(MatrixSetter, StoresThroughTheCamerasSetter)
{
    std::vector<double> halves = Widened(Identity());
    halves[0] = 0.5;
    halves[11] = 1; // _34: no parallel projection, and as a view no change of the 2D answer
    Owned array(OfArray(NewArray(halves)));
    Set(array);
    const bool isProjection = GetParam().isProjection;
    EXPECT_EQ(camera->GetViewProjMat(), MatrixOf(halves));
    EXPECT_EQ((isProjection ? camera->GetInvProjMat() : camera->GetInvViewMat())._11, 2.0f);
    EXPECT_EQ(camera->GetInvViewProjMat()._11, 2.0f);
    EXPECT_EQ(camera->Is2D(), !isProjection);
}

TEST_P(MatrixSetter, NeitherKeepsNorReleasesTheArray)
{
    Owned array(OfArray(NewArray(Numbers())));
    Set(array);
    EXPECT_EQ(ReferenceCount(array.pRefArray), 1);
}

TEST_P(MatrixSetter, ReadsTheElementsInOrderAsFloats)
{
    Owned array(OfArray(NewArray(Numbers())));
    Lines expected = {"KvGetInt32(0)"};
    for (int i = 0; i < 16; ++i)
        expected.push_back("KvGetFloat(" + std::to_string(i) + ")");
    EXPECT_EQ(LogOf(GetParam().handler, {Real(1), array}, Topic_Conversions), expected);
}

TEST_P(MatrixSetter, ConvertsElementsOfEveryKind)
{
    std::vector<RValue> elements(16, Int32(3));
    elements[1] = Bool(true);
    elements[2] = Int64(-7);
    elements[3] = NewString("5");
    elements[4] = g_undefined;
    Owned array(OfArray(NewArray(elements)));
    EXPECT_EQ(Set(array), "real -1");
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(Stored().m[0], 3.0f);
    EXPECT_EQ(Stored().m[1], 1.0f);
    EXPECT_EQ(Stored().m[2], -7.0f);
    EXPECT_EQ(Stored().m[15], 3.0f);
}

TEST_P(MatrixSetter, TakesNumbersThatAreNotFinite)
{
    std::vector<double> odd = Widened(Identity());
    odd[0] = INF;
    odd[5] = NOT_A_NUMBER_64;
    odd[12] = 1e300; // beyond a float
    Owned array(OfArray(NewArray(odd)));
    EXPECT_EQ(Set(array), "real -1");
    EXPECT_EQ(Stored()._11, std::numeric_limits<float>::infinity());
}

TEST_P(MatrixSetter, DoesNotLookAtTheKindOfTheArgument)
{
    Owned array(OfArray(NewArray(Numbers())));
    RValue disguised = array;
    disguised.kind = VALUE_PTR;
    EXPECT_EQ(Set(disguised), "real -1");
    EXPECT_EQ(Stored(), MatrixOf(Numbers()));
}

TEST_P(MatrixSetter, RefusesARealZero) { ExpectRefused(Real(0), NOT_AN_ARRAY); }

TEST_P(MatrixSetter, RefusesAnArrayValueWithoutAnArray) { ExpectRefused(OfArray(nullptr), NOT_AN_ARRAY); }

TEST_P(MatrixSetter, RefusesWordsThatCannotBeARecord)
{
    RValue undefined = g_undefined;
    for (int64_t word : {int64_t{1}, int64_t{4088}, int64_t{4095}, int64_t{0x12345671}})
        ExpectRefused(Int64(word), NOT_AN_ARRAY);
    ExpectRefused(undefined, NOT_AN_ARRAY);
}

#if UINTPTR_MAX > 0xFFFFFFFFu
// As a number's low word is 0 on a 32-bit target, and its high word not looked at.
TEST_P(MatrixSetter, RefusesNumbers)
{
    for (double number : {1.0, -1.0, 0.1, 1e300, -1e-300, NOT_A_NUMBER_64})
        ExpectRefused(Real(number), NOT_AN_ARRAY);
    ExpectRefused(Int64(int64_t{1} << 48), NOT_AN_ARRAY); // the least address that is not in user space
}
#endif

TEST_P(MatrixSetter, RefusesEveryLengthButSixteen)
{
    for (size_t length : {0u, 1u, 15u, 17u, 32u})
    {
        Owned array(OfArray(NewArray(std::vector<double>(length, 1.0))));
        ExpectRefused(array, NOT_SIXTEEN);
    }
}

TEST_P(MatrixSetter, ReadsNothingOfAnArrayThatItRefuses)
{
    Owned array(OfArray(NewArray(std::vector<double>(15, 1.0))));
    EXPECT_THAT(LogOf(GetParam().handler, {Real(1), array}, Topic_Conversions), ElementsAre("KvGetInt32(0)"));
}

TEST_P(MatrixSetter, ARefusalLeavesADirtyViewDirty)
{
    camera->SetViewDirty();
    ExpectRefused(Real(0), NOT_AN_ARRAY);
    Owned array(OfArray(NewArray(std::vector<double>(15, 1.0))));
    ExpectRefused(array, NOT_SIXTEEN);
    EXPECT_TRUE(camera->IsViewDirty());
}

TEST_P(MatrixSetter, BuildsADirtyViewBeforeItStores)
{
    camera->m_viewWidth = 640;
    camera->m_viewHeight = 480;
    camera->SetViewDirty();
    Owned array(OfArray(NewArray(Numbers())));
    const Lines log = LogOf(GetParam().handler, {Real(1), array}, Topic_Matrices | Topic_Conversions);
    EXPECT_EQ(Stored(), MatrixOf(Numbers()));
    EXPECT_FALSE(camera->IsViewDirty());
    // The elements are read first, then the view is built, and the new matrix's product comes last.
    const auto at = [&](const std::string& line) { return std::find(log.begin(), log.end(), line) - log.begin(); };
    EXPECT_LT(at("KvGetFloat(15)"), at("LookAtLH(320,240,-16000;320,240,0;-0,1,0)"));
    EXPECT_LT(at("LookAtLH(320,240,-16000;320,240,0;-0,1,0)"), static_cast<ptrdiff_t>(log.size()) - 1);
    EXPECT_THAT(log.back(), testing::StartsWith("Multiply("));
}

TEST_P(MatrixSetter, ADirtyViewKeepsTheOtherMatrixItHasBuilt)
{
    camera->m_viewWidth = 640;
    camera->m_viewHeight = 480;
    camera->SetViewDirty();
    Owned array(OfArray(NewArray(Numbers())));
    Set(array);
    if (!GetParam().isProjection)
        EXPECT_FLOAT_EQ(camera->GetProjMat()._11, 2.0f / 640.0f);
    else
        EXPECT_FLOAT_EQ(camera->GetViewMat()._41, -320.0f);
}

TEST_P(MatrixSetter, DoesNotDirtyTheView)
{
    Owned array(OfArray(NewArray(Numbers())));
    Set(array);
    EXPECT_FALSE(camera->IsViewDirty());
}

TEST_P(MatrixSetter, OfAnUnknownCameraDoesNotLookAtTheArray)
{
    Owned array(OfArray(NewArray(std::vector<double>(15, 1.0))));
    for (const RValue& second : {static_cast<RValue>(array), Real(0)})
        EXPECT_EQ(Answer(GetParam().handler, {Real(UNKNOWN_CAMERA), second}), "real -1");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(MatrixSetter, WithAWrongCountReportsItself)
{
    Owned array(OfArray(NewArray(Numbers())));
    EXPECT_EQ(Answer(GetParam().handler, {Real(1)}), "real -1");
    EXPECT_EQ(Answer(GetParam().handler, {Real(1), array, Real(0)}), "real -1");
    const std::string message = "camera_set_" + std::string(GetParam().name) + "_mat() - wrong number of arguments";
    EXPECT_THAT(Errors(), ElementsAre(message, message));
    EXPECT_EQ(Stored(), Identity());
}

TEST_P(MatrixSetter, TakesBackWhatItsGetterReturned)
{
    camera->m_viewX = -12;
    camera->m_viewWidth = 640;
    camera->m_viewHeight = 480;
    camera->m_viewAngle = 33;
    camera->BuildView();
    const kvMatrix before = Stored();
    const bool isProjection = GetParam().isProjection;
    Owned array(Call(isProjection ? F_CameraGetProjMat : F_CameraGetViewMat, {Real(1)}));
    camera->SetViewMat(Identity());
    camera->SetProjMat(Identity());
    Set(array);
    EXPECT_EQ(Stored(), before);
}

INSTANTIATE_TEST_SUITE_P(Setters, MatrixSetter,
                         testing::Values(Setter{"view", F_CameraSetViewMat, false},
                                         Setter{"proj", F_CameraSetProjMat, true}),
                         [](const testing::TestParamInfo<Setter>& row) { return row.param.name; });
} // namespace
