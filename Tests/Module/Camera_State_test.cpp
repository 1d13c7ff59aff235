// The state stream of one camera and of a matrix: bytes written by hand on one side, fields on the other.
#include "Tests/Module/State_Fixture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
using namespace Recording;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class MatrixState : public StateTest
{
};

class CameraState : public StateTest
{
protected:
    void SetUp() override
    {
        StateTest::SetUp();
        camera = g_CM.CreateCamera();
    }

    // Gives the camera what the record says.
    void Fill(const Saved& saved)
    {
        float element = saved.firstElement;
        for (kvMatrix* matrix : {&camera->m_projMat, &camera->m_viewMat, &camera->m_viewProjMat, &camera->m_invProjMat,
                                 &camera->m_invViewMat, &camera->m_invViewProjMat})
            for (float& entry : matrix->m)
            {
                entry = element;
                element += 0.5f;
            }
        float* const view[] = {&camera->m_viewX,       &camera->m_viewY,       &camera->m_viewWidth,
                               &camera->m_viewHeight,  &camera->m_viewSpeedX,  &camera->m_viewSpeedY,
                               &camera->m_viewBorderX, &camera->m_viewBorderY, &camera->m_viewAngle};
        for (int i = 0; i < 9; ++i)
            *view[i] = saved.view[i];
        camera->m_targetInstance = saved.target;
        camera->m_beginScript = Real(saved.scripts[0]);
        camera->m_endScript = Real(saved.scripts[1]);
        camera->m_updateScript = Real(saved.scripts[2]);
        camera->m_is2D = saved.is2D != 0;
        camera->m_isViewDirty = saved.isDirty != 0;
    }

    int32_t WrittenScript(const RValue& script)
    {
        camera->m_endScript = script;
        const std::vector<uint8_t> bytes = BytesOf(*camera);
        camera->m_endScript = Real(-1);
        int32_t written;
        std::memcpy(&written, bytes.data() + 432, sizeof written); // the tests' machines are little-endian, too
        return written;
    }

    CCamera* camera = nullptr;
};

// ---- a matrix ----

TEST_F(MatrixState, IsSixteenFloatsInMemoryOrder)
{
    kvMatrix matrix;
    Stream expected;
    for (int i = 0; i < 16; ++i)
    {
        matrix.m[i] = static_cast<float>(i) * 1.25f - 3.0f;
        expected.F32(matrix.m[i]);
    }
    Buffer buffer;
    SerializeMatrix(&matrix, &buffer);
    EXPECT_EQ(buffer.bytes, expected.bytes);
    EXPECT_EQ(buffer.bytes.size(), 64u);
}

TEST_F(MatrixState, TravelsAsFloatItems)
{
    kvMatrix matrix = Identity();
    Buffer buffer;
    Listen(Topic_Buffer);
    SerializeMatrix(&matrix, &buffer);
    EXPECT_EQ(Log().size(), 16u);
    EXPECT_THAT(TakeLog(), Each(testing::StartsWith("WriteTyped(F32,")));
    DeSerializeMatrix(&matrix, &buffer);
    EXPECT_EQ(Log().size(), 16u);
    EXPECT_THAT(TakeLog(), Each("ReadTyped(F32)"));
}

TEST_F(MatrixState, IsReadFirstToLast)
{
    Stream stream;
    for (int i = 0; i < 16; ++i)
        stream.F32(static_cast<float>(i));
    stream.S32(99);
    Buffer buffer;
    buffer.bytes = stream.bytes;
    kvMatrix matrix = Identity();
    DeSerializeMatrix(&matrix, &buffer);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(matrix.m[i], static_cast<float>(i));
    EXPECT_EQ(buffer.position, 64u);
}

// The floats are widened and narrowed on their way, which keeps every bit of all but signalling NaNs.
TEST_F(MatrixState, SurvivesBitForBit)
{
    kvMatrix matrix = {};
    const uint32_t words[16] = {0x00000000, 0x80000000, 0x00000001, 0x80000001, 0x007FFFFF, 0x00800000,
                                0x7F7FFFFF, 0xFF7FFFFF, 0x7F800000, 0xFF800000, 0x3F800001, 0x3EAAAAAB,
                                0x7FC00000, 0xFFC00000, 0x7FC12345, 0xFFFFFFFF};
    std::memcpy(matrix.u, words, sizeof words);
    Buffer buffer;
    SerializeMatrix(&matrix, &buffer);
    kvMatrix read = Identity();
    DeSerializeMatrix(&read, &buffer);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(read.u[i], words[i]) << std::hex << words[i];
}

TEST_F(MatrixState, KeepsASignallingNaNANumberThatIsNone)
{
    kvMatrix matrix = Identity();
    matrix.u[3] = 0x7F812345;
    Buffer buffer;
    SerializeMatrix(&matrix, &buffer);
    kvMatrix read = Identity();
    DeSerializeMatrix(&read, &buffer);
    EXPECT_TRUE(std::isnan(read.m[3]));
}

TEST_F(MatrixState, ReadsZerosPastTheEnd)
{
    Buffer buffer;
    kvMatrix matrix = Identity();
    DeSerializeMatrix(&matrix, &buffer);
    EXPECT_EQ(matrix, kvMatrix{});
    EXPECT_EQ(buffer.reads, 16u);
}

// ---- writing a camera ----

TEST_F(CameraState, RecordHoldsEveryFieldInItsOrder)
{
    m_keepsTheRules = false;
    Saved saved = SavedAs(0x01020304);
    Fill(saved);
    camera->SetID(saved.id);
    const std::vector<uint8_t> bytes = BytesOf(*camera);
    EXPECT_EQ(bytes.size(), RECORD_BYTES);
    EXPECT_EQ(bytes, saved.Bytes());
}

TEST_F(CameraState, RecordOfANewCameraHoldsItsDefaults)
{
    Saved saved = {};
    std::fill(std::begin(saved.view), std::end(saved.view), 0.0f);
    saved.target = -1;
    std::fill(std::begin(saved.scripts), std::end(saved.scripts), -1);
    saved.is2D = 1;
    saved.isDirty = 0;
    std::vector<uint8_t> expected = saved.Bytes();
    for (size_t matrix = 0; matrix < 6; ++matrix)
        for (size_t i = 0; i < 16; ++i)
        {
            const uint8_t one[] = {0x00, 0x00, 0x80, 0x3F};
            const uint8_t zero[] = {0, 0, 0, 0};
            std::memcpy(&expected[4 + 64 * matrix + 4 * i], i % 5 == 0 ? one : zero, 4);
        }
    EXPECT_EQ(BytesOf(*camera), expected);
}

TEST_F(CameraState, RecordIsWrittenAndReadWithTheStatedTypes)
{
    Buffer buffer;
    Listen(Topic_Buffer);
    camera->Serialize(&buffer);
    const Lines written = TakeLog();
    camera->DeSerialize(&buffer);
    const Lines read = TakeLog();
    ASSERT_EQ(written.size(), RECORD_ITEMS);
    ASSERT_EQ(read.size(), RECORD_ITEMS);
    for (size_t item = 0; item < RECORD_ITEMS; ++item)
    {
        const std::string type = item == 0 || item >= 106 ? "S32" : "F32";
        EXPECT_THAT(written[item], testing::StartsWith("WriteTyped(" + type + ",")) << item;
        EXPECT_EQ(read[item], "ReadTyped(" + type + ")") << item;
    }
}

TEST_F(CameraState, WritingChangesNothing)
{
    Fill(SavedAs(0));
    const std::vector<uint8_t> before = BytesOf(*camera);
    EXPECT_EQ(BytesOf(*camera), before);
}

TEST_F(CameraState, WritesTheSharedWordUnderEitherName)
{
    camera->SetCachedFrame(-123456);
    int32_t written;
    std::memcpy(&written, BytesOf(*camera).data() + 424, sizeof written);
    EXPECT_EQ(written, -123456);
}

TEST_F(CameraState, WritesScriptIndicesOfEveryNumericKind)
{
    EXPECT_EQ(WrittenScript(Real(7)), 7);
    EXPECT_EQ(WrittenScript(Real(-1)), -1);
    EXPECT_EQ(WrittenScript(Int32(8)), 8);
    EXPECT_EQ(WrittenScript(Int64(9)), 9);
    EXPECT_EQ(WrittenScript(Bool(true)), 1);
    EXPECT_EQ(WrittenScript(Real(-2)), -2);
}

TEST_F(CameraState, WritesCallablesAsNoScript)
{
    EXPECT_EQ(WrittenScript(OfObject(NewCallable())), -1);
    EXPECT_EQ(WrittenScript(OfObject(nullptr)), -1);
}

TEST_F(CameraState, WritesAnObjectByItsLow24BitsOfKind)
{
    RValue object = OfObject(NewCallable());
    object.kind |= 0xAB000000;
    EXPECT_EQ(WrittenScript(object), -1);
}

TEST_F(CameraState, ConvertsOtherKindsAsTheHostDoes)
{
    RValue text = NewString("12");
    for (const RValue& script : {text, g_undefined, Real(3.7), Real(1e300), Real(std::nan(""))})
        EXPECT_EQ(WrittenScript(script), KvGetInt32(&script, 0)) << Describe(script);
    FREE_RValue__Pre(&text);
}

TEST_F(CameraState, AsksTheHostOnlyForScriptsThatAreNoObjects)
{
    camera->m_endScript = OfObject(NewCallable());
    class Silent : public Buffer
    {
        int WriteTyped(eBuffer_Type, RValue&) override { return 0; }
    } buffer;
    Listen(Topic_Conversions);
    camera->Serialize(&buffer);
    EXPECT_THAT(TakeLog(), ElementsAre("KvGetInt32(0)", "KvGetInt32(0)"));
    camera->m_endScript = Real(-1);
}

TEST_F(CameraState, BooleansAreOneOrZero)
{
    for (bool flag : {false, true})
    {
        camera->m_is2D = flag;
        camera->m_isViewDirty = !flag;
        const std::vector<uint8_t> bytes = BytesOf(*camera);
        EXPECT_THAT(std::vector<uint8_t>(bytes.begin() + 440, bytes.end()), ElementsAre(flag, 0, 0, 0, !flag, 0, 0, 0));
    }
}

// ---- reading a camera ----

TEST_F(CameraState, ReadingRestoresEveryField)
{
    const Saved saved = SavedAs(0);
    ReadRecord(*camera, saved);
    float element = saved.firstElement;
    for (const kvMatrix& matrix : {camera->m_projMat, camera->m_viewMat, camera->m_viewProjMat, camera->m_invProjMat,
                                   camera->m_invViewMat, camera->m_invViewProjMat})
        for (float entry : matrix.m)
        {
            EXPECT_EQ(entry, element);
            element += 0.5f;
        }
    EXPECT_EQ(camera->GetID(), 0);
    EXPECT_EQ(camera->m_viewX, -1.5f);
    EXPECT_EQ(camera->m_viewY, 2.5f);
    EXPECT_EQ(camera->m_viewWidth, 640.25f);
    EXPECT_EQ(camera->m_viewHeight, 480.75f);
    EXPECT_EQ(camera->m_viewSpeedX, -3.0f);
    EXPECT_EQ(camera->m_viewSpeedY, 4.0f);
    EXPECT_EQ(camera->m_viewBorderX, 32.5f);
    EXPECT_EQ(camera->m_viewBorderY, 33.5f);
    EXPECT_EQ(camera->m_viewAngle, 271.0f);
    EXPECT_EQ(camera->m_targetInstance, 100017);
    EXPECT_EQ(Describe(camera->m_beginScript), "real 7");
    EXPECT_EQ(Describe(camera->m_endScript), "real 8");
    EXPECT_EQ(Describe(camera->m_updateScript), "real 9");
    EXPECT_FALSE(camera->m_is2D);
    EXPECT_TRUE(camera->m_isViewDirty);
}

TEST_F(CameraState, ReadingTakesTheSavedIdentifier)
{
    m_keepsTheRules = false;
    ReadRecord(*camera, SavedAs(1234));
    EXPECT_EQ(camera->GetID(), 1234);
}

TEST_F(CameraState, ReadingBuildsNothing)
{
    Listen(Topic_Matrices | Topic_Graphics);
    TakeLog();
    ReadRecord(*camera, SavedAs(0));
    EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(CameraState, ReadingTakesMatricesThatDoNotFitEachOther)
{
    Saved saved;
    saved.is2D = 1;
    ReadRecord(*camera, saved); // its projection has a _34: not 2D, but the record says so
    EXPECT_TRUE(camera->Is2D());
    EXPECT_FALSE(camera->IsOrthoProj());
}

TEST_F(CameraState, AFlagThatIsNotOneIsTheHostsToJudge)
{
    Saved saved;
    saved.is2D = 2;
    saved.isDirty = 1 << 24;
    ReadRecord(*camera, saved);
    EXPECT_TRUE(camera->m_is2D);
    EXPECT_TRUE(camera->m_isViewDirty);
}

TEST_F(CameraState, ReadingKeepsWhatTheRecordDoesNotCarry)
{
    RValue callable = OfObject(NewCallable());
    camera->SetBeginScript(&callable);
    const Camera_GCProxy* proxy = camera->pGCProxy;
    camera->SetCloned(true);
    camera->SetPersistent(true);
    ReadRecord(*camera, SavedAs(0));
    EXPECT_EQ(camera->pGCProxy, proxy);
    EXPECT_TRUE(camera->IsCloned());
    EXPECT_TRUE(camera->isPersistent());
    EXPECT_EQ(Describe(camera->m_beginScript), "real 7");
}

TEST_F(CameraState, ReadingReleasesTheStringsThatScriptsHeld)
{
    Owned text(NewString("old"));
    for (RValue* script : {camera->GetBeginScript(), camera->GetEndScript(), camera->GetUpdateScript()})
    {
        *script = text;
        ++text.pRefString->m_refCount;
    }
    ReadRecord(*camera, SavedAs(0));
    EXPECT_EQ(text.pRefString->m_refCount, 1);
    EXPECT_EQ(Describe(camera->m_endScript), "real 8");
}

TEST_F(CameraState, ReadingReleasesEachScriptAfterItsIndexWasRead)
{
    camera->m_beginScript = OfArray(NewArray(std::vector<double>{1}));
    camera->m_updateScript = OfArray(NewArray(std::vector<double>{2}));
    Listen(Topic_Buffer | Topic_Values);
    TakeLog();
    ReadRecord(*camera, SavedAs(0));
    const Lines log = TakeLog();
    const Lines tail(log.begin() + 106, log.end());
    EXPECT_THAT(tail, ElementsAre("ReadTyped(S32)", "ReadTyped(S32)", "Array_DecRef(A1)", "Array_SetOwner(A1)",
                                  "ReadTyped(S32)", "ReadTyped(S32)", "Array_DecRef(A2)", "Array_SetOwner(A2)",
                                  "ReadTyped(S32)", "ReadTyped(S32)"));
}

TEST_F(CameraState, ReadingDropsCallablesWithoutACall)
{
    camera->m_endScript = OfObject(NewCallable());
    Listen(Topic_Values | Topic_Collector);
    TakeLog();
    ReadRecord(*camera, SavedAs(0));
    EXPECT_THAT(TakeLog(), IsEmpty());
    EXPECT_EQ(Describe(camera->m_endScript), "real 8");
}

TEST_F(CameraState, ScriptsComeBackAsReals)
{
    camera->m_beginScript = Int32(3);
    camera->m_endScript = OfObject(NewCallable());
    camera->m_updateScript = Real(7);
    Buffer buffer;
    camera->Serialize(&buffer);
    camera->m_endScript = Real(-1);
    camera->DeSerialize(&buffer);
    EXPECT_EQ(Describe(camera->m_beginScript), "real 3");
    EXPECT_EQ(Describe(camera->m_endScript), "real -1");
    EXPECT_EQ(Describe(camera->m_updateScript), "real 7");
    EXPECT_EQ(camera->m_updateScript.kind, VALUE_REAL);
}

TEST_F(CameraState, IndicesAreNotChecked)
{
    Saved saved;
    saved.scripts[0] = INT32_MAX;
    saved.scripts[1] = INT32_MIN;
    saved.scripts[2] = -2;
    ReadRecord(*camera, saved);
    EXPECT_EQ(camera->m_beginScript.val, 2147483647.0);
    EXPECT_EQ(camera->m_endScript.val, -2147483648.0);
    EXPECT_EQ(camera->m_updateScript.val, -2.0);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraState, OddFloatsSurviveARoundTrip)
{
    camera->m_viewX = -0.0f;
    camera->m_viewY = std::numeric_limits<float>::infinity();
    camera->m_viewWidth = std::numeric_limits<float>::denorm_min();
    camera->m_viewHeight = std::numeric_limits<float>::quiet_NaN();
    camera->m_viewAngle = -std::numeric_limits<float>::max();
    const std::vector<uint8_t> before = BytesOf(*camera);
    Buffer buffer;
    buffer.bytes = before;
    camera->DeSerialize(&buffer);
    EXPECT_TRUE(std::signbit(camera->m_viewX));
    EXPECT_EQ(BytesOf(*camera), before);
}

TEST_F(CameraState, ARecordIsReadWholeHoweverShortTheStream)
{
    Buffer buffer;
    camera->DeSerialize(&buffer);
    EXPECT_EQ(buffer.reads, RECORD_ITEMS);
    EXPECT_EQ(Describe(camera->m_beginScript), "real 0");
}
} // namespace
