// The manager's stream: which slots are written, what a load keeps, frees, adds and refuses.
#include "Tests/Module/State_Fixture.h"

#include <functional>

namespace
{
using namespace Recording;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int FREE = -2; // what Slots() says of an empty slot

class ManagerState : public StateTest
{
};

std::vector<uint8_t> Joined(const std::vector<std::vector<uint8_t>>& parts)
{
    std::vector<uint8_t> whole;
    for (const std::vector<uint8_t>& part : parts)
        whole.insert(whole.end(), part.begin(), part.end());
    return whole;
}

std::vector<uint8_t> Word(int32_t number) { return Stream().S32(number).bytes; }

// ---- writing ----

TEST_F(ManagerState, AnEmptyTableIsItsSizeAndItsFlags) { EXPECT_EQ(ManagerBytes(), Joined({Word(1), Word(0)})); }

TEST_F(ManagerState, EachSlotIsAFlagAndTheCameraBehindIt)
{
    CreateCameras(3);
    g_CM.DestroyCamera(1);
    g_CM.GetCamera(2)->SetViewX(5);
    g_CM.m_cameraListSize = 3; // the fourth slot is empty
    const std::vector<uint8_t> bytes = ManagerBytes();
    EXPECT_EQ(bytes,
              Joined({Word(3), Word(1), BytesOf(*g_CM.GetCamera(0)), Word(0), Word(1), BytesOf(*g_CM.GetCamera(2))}));
    EXPECT_EQ(bytes.size(), 912u);
    g_CM.m_cameraListSize = 4;
}

TEST_F(ManagerState, ATableOfNoSlotsIsOneZero)
{
    for (int32_t size : {0, -5})
    {
        g_CM.m_cameraListSize = size;
        EXPECT_EQ(ManagerBytes(), Word(size));
    }
    g_CM.m_cameraListSize = 1;
}

TEST_F(ManagerState, WritingChangesNothing)
{
    CreateCameras(3);
    g_CM.SetActiveCamera(1);
    RunRoom({0, 2});
    g_CM.StartRoom();
    const std::vector<int> slots = Slots();
    const std::vector<int> list = RoomList();
    const int32_t last = g_CM.m_lastCamPos;
    ManagerBytes();
    EXPECT_EQ(Slots(), slots);
    EXPECT_EQ(RoomList(), list);
    EXPECT_EQ(g_CM.m_lastCamPos, last);
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.GetCamera(1));
    EXPECT_NE(g_CM.m_pScriptInstance, nullptr);
    g_CM.EndRoom();
}

TEST_F(ManagerState, WritingTakesAnIdentifierThatIsNotTheSlot)
{
    m_keepsTheRules = false;
    CreateCameras(2);
    g_CM.GetCamera(1)->SetID(50);
    const std::vector<uint8_t> bytes = ManagerBytes();
    EXPECT_EQ(std::vector<uint8_t>(bytes.end() - RECORD_BYTES, bytes.end() - RECORD_BYTES + 4), Word(50));
}

// A host's buffer that does something when the nth item passes.
class Meddler : public Buffer
{
public:
    Meddler(size_t nth, std::function<void()> action) : m_countdown(nth), m_action(std::move(action)) {}
    int WriteTyped(eBuffer_Type type, RValue& value) override
    {
        Pass();
        return Buffer::WriteTyped(type, value);
    }
    int ReadTyped(eBuffer_Type type, RValue& value) override
    {
        Pass();
        return Buffer::ReadTyped(type, value);
    }

private:
    void Pass()
    {
        if (--m_countdown == 0)
            m_action();
    }
    size_t m_countdown;
    std::function<void()> m_action;
};

TEST_F(ManagerState, WritingAsksForTheTableSizeAfterEverySlot)
{
    CreateCameras(4);
    Meddler buffer(2, [] { g_CM.m_cameraListSize = 2; });
    g_CM.Serialize(&buffer);
    g_CM.m_cameraListSize = 4;
    EXPECT_EQ(buffer.bytes.size(), 4 + 2 * (4 + RECORD_BYTES));
}

// ---- loading: what was there ----

TEST_F(ManagerState, LoadingDestroysTheCameraInSlotZero)
{
    CreateCameras(1);
    EXPECT_EQ(Load(StreamOf({})), 4u);
    EXPECT_THAT(Slots(), ElementsAre(FREE));
}

TEST_F(ManagerState, LoadingKeepsTheCamerasInOtherSlots)
{
    CreateCameras(4);
    CCamera* kept = g_CM.GetCamera(2);
    kept->SetViewX(5);
    kept->SetCloned(true);
    Load(StreamOf({}));
    EXPECT_THAT(Slots(), ElementsAre(FREE, 1, 2, 3));
    EXPECT_EQ(g_CM.GetCamera(2), kept);
    EXPECT_EQ(kept->GetViewX(), 5.0f);
    EXPECT_TRUE(kept->IsCloned());
}

TEST_F(ManagerState, LoadingKeepsACameraInSlotZeroThatHasNoIdentifier)
{
    m_keepsTheRules = false;
    CreateCameras(2);
    CCamera* nameless = g_CM.GetCamera(0);
    nameless->SetID(-1);
    Load(StreamOf({}));
    EXPECT_THAT(Slots(), ElementsAre(-1, 1));
    EXPECT_EQ(g_CM.m_cameras[0], nameless);
}

TEST_F(ManagerState, LoadingDestroysACameraInSlotZeroOfAnyOtherIdentifier)
{
    for (int id : {1, -2, 900})
    {
        CreateCameras(1);
        g_CM.m_cameras[0]->SetID(id);
        Load(StreamOf({}));
        EXPECT_THAT(Slots(), ElementsAre(FREE)) << id;
    }
}

TEST_F(ManagerState, TheLargestCountIsThatOfATableTwiceAsLargeAsTheLastIdentifierNeeds)
{
    EXPECT_EQ(CAMERA_ID_LAST_LOADED, 16777215);
    EXPECT_EQ(CAMERA_SLOTS_LAST_LOADED, 33554432);
}

TEST_F(ManagerState, LoadingLeavesAnEmptySlotZeroAndTheActiveCamera)
{
    CreateCameras(2);
    g_CM.DestroyCamera(0);
    g_CM.SetActiveCamera(1);
    Load(StreamOf({}));
    EXPECT_THAT(Slots(), ElementsAre(FREE, 1));
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.GetCamera(1));
}

TEST_F(ManagerState, LoadingDestroysAsDestroyCameraDoes)
{
    CreateCameras(2);
    RValue callable = OfObject(NewCallable());
    g_CM.GetCamera(0)->SetEndScript(&callable);
    g_CM.SetActiveCamera(0);
    const Camera_GCProxy* proxy = g_CM.GetCamera(0)->pGCProxy;
    RunRoom({0, 1});
    g_CM.BuildRoomCameraList();
    EXPECT_TRUE(IsRoot(proxy));
    Load(StreamOf({}));
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
    EXPECT_FALSE(IsRoot(proxy));
    EXPECT_EQ(proxy->pCamObj, nullptr);
    EXPECT_EQ(RoomList()[1], -1);
    EXPECT_EQ(RoomList()[2], 1);
}

// The camera in slot 0 is looked for by its number. Where the cached slot holds that number, too, its camera goes
// first.
TEST_F(ManagerState, LoadingLooksForTheFirstCameraByItsIdentifier)
{
    CreateCameras(4);
    g_CM.m_cameras[0]->SetID(2);
    g_CM.m_lastCamPos = 2;
    Load(StreamOf({}));
    EXPECT_THAT(Slots(), ElementsAre(FREE, 1, FREE, 3));
}

TEST_F(ManagerState, LoadingRunsOneClearingPassForEachSlotThatWasThere)
{
    CreateCameras(1);
    g_CM.m_cameraListSize = 0; // no pass at all
    Load(StreamOf({}));
    g_CM.m_cameraListSize = 1;
    EXPECT_THAT(Slots(), ElementsAre(0));
}

// ---- loading: what comes ----

TEST_F(ManagerState, ACountBelowOneReadsNothingMore)
{
    for (int32_t count : {0, -1, INT32_MIN})
    {
        const Saved saved = SavedAs(0);
        EXPECT_EQ(Load(Joined({Word(count), Word(1), saved.Bytes()})), 4u) << count;
        EXPECT_THAT(Slots(), ElementsAre(FREE)) << count;
    }
}

TEST_F(ManagerState, ASavedTableOfNoSlotsComesBackAsNothing)
{
    CreateCameras(2);
    g_CM.DestroyCamera(0);
    g_CM.m_cameraListSize = 0;
    const std::vector<uint8_t> bytes = ManagerBytes();
    g_CM.m_cameraListSize = 2;
    EXPECT_EQ(bytes, Word(0));
    EXPECT_EQ(Load(bytes), 4u);
    EXPECT_THAT(Slots(), ElementsAre(FREE, 1));
}

TEST_F(ManagerState, LoadingAddsEachSavedCameraUnderItsIdentifier)
{
    CreateCameras(4);
    for (int id : {1, 2, 3})
        g_CM.DestroyCamera(id);
    const Saved first = SavedAs(0);
    Saved second = SavedAs(2);
    second.view[0] = 77.0f;
    EXPECT_EQ(Load(StreamOf({&first, nullptr, &second})), 912u);
    EXPECT_THAT(Slots(), ElementsAre(0, FREE, 2, FREE));
    EXPECT_EQ(BytesOf(*g_CM.GetCamera(0)), first.Bytes());
    EXPECT_EQ(BytesOf(*g_CM.GetCamera(2)), second.Bytes());
}

TEST_F(ManagerState, TheSavedPositionPlaysNoPart)
{
    const Saved third = SavedAs(3);
    const Saved first = SavedAs(0);
    Load(StreamOf({&third, &first}));
    EXPECT_NE(g_CM.GetCamera(0), nullptr);
    EXPECT_NE(g_CM.GetCamera(3), nullptr);
    EXPECT_EQ(g_CM.GetCamera(1), nullptr);
}

TEST_F(ManagerState, AFlagThatTheHostFindsTrueIsFollowedByARecord)
{
    const Saved saved = SavedAs(0);
    EXPECT_EQ(Load(Joined({Word(2), Word(0), Word(7), saved.Bytes()})), 12 + RECORD_BYTES);
    EXPECT_NE(g_CM.GetCamera(0), nullptr);
}

TEST_F(ManagerState, LoadedCamerasAreNoClonesNotPersistentAndHaveNoProxy)
{
    CreateCameras(2);
    RValue callable = OfObject(NewCallable());
    g_CM.GetCamera(1)->SetBeginScript(&callable);
    g_CM.GetCamera(1)->SetCloned(true);
    g_CM.GetCamera(1)->SetPersistent(true);
    Load(ManagerBytes());
    const CCamera* loaded = g_CM.GetCamera(1);
    EXPECT_FALSE(loaded->IsCloned());
    EXPECT_FALSE(loaded->isPersistent());
    EXPECT_EQ(loaded->pGCProxy, nullptr);
    EXPECT_EQ(Describe(loaded->m_beginScript), "real -1");
}

TEST_F(ManagerState, ALoadedCameraReplacesTheOccupantOfItsSlot)
{
    CreateCameras(4);
    g_CM.SetActiveCamera(2);
    const Saved saved = SavedAs(2);
    Load(StreamOf({&saved}));
    EXPECT_THAT(Slots(), ElementsAre(FREE, 1, 2, 3));
    EXPECT_EQ(BytesOf(*g_CM.GetCamera(2)), saved.Bytes());
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
}

TEST_F(ManagerState, OfTwoSavedUnderOneIdentifierTheLaterStays)
{
    const Saved first = SavedAs(1);
    Saved second = SavedAs(1);
    second.view[2] = 11.0f;
    Load(StreamOf({&first, &second}));
    EXPECT_EQ(BytesOf(*g_CM.GetCamera(1)), second.Bytes());
    EXPECT_EQ(g_CM.Validate(), nullptr);
}

TEST_F(ManagerState, AnIdentifierBeyondTheTableGrowsIt)
{
    CreateCameras(4);
    const Saved five = SavedAs(5);
    Load(StreamOf({&five}));
    EXPECT_EQ(g_CM.m_cameraListSize, 8);
    const Saved hundred = SavedAs(100);
    Load(StreamOf({&hundred}));
    EXPECT_EQ(g_CM.m_cameraListSize, 116);
    EXPECT_EQ(g_CM.Validate(), nullptr);
}

TEST_F(ManagerState, ACameraSavedWithoutIdentifierTakesAFreeSlot)
{
    CreateCameras(4);
    g_CM.DestroyCamera(2);
    g_CM.m_InitialLoadHighPoint = 1;
    const Saved nameless = SavedAs(-1);
    Load(StreamOf({&nameless}));
    EXPECT_THAT(Slots(), ElementsAre(FREE, 1, 2, 3));
    EXPECT_EQ(g_CM.GetCamera(2)->m_viewX, -1.5f);
}

TEST_F(ManagerState, LoadingIgnoresTheHighPointForSavedIdentifiers)
{
    g_CM.m_InitialLoadHighPoint = 3;
    const Saved saved = SavedAs(0);
    Load(StreamOf({&saved}));
    EXPECT_THAT(Slots(), ElementsAre(0));
    EXPECT_EQ(g_CM.m_InitialLoadHighPoint, 3);
}

TEST_F(ManagerState, LoadingDoesNotRebuildTheRoomListForNewCameras)
{
    RunRoom({1});
    g_CM.BuildRoomCameraList();
    const Saved saved = SavedAs(1);
    Load(StreamOf({&saved}));
    EXPECT_EQ(RoomList()[1], -1);
}

TEST_F(ManagerState, LoadingAllocatesEachCameraClearWithItsTag)
{
    Listen(Topic_Memory);
    const Saved saved = SavedAs(0);
    Load(StreamOf({&saved}));
    ASSERT_EQ(Requests().size(), 1u);
    EXPECT_EQ(Requests()[0].file, MODULE_TAG);
    EXPECT_EQ(Requests()[0].line, 2279);
    EXPECT_EQ(Requests()[0].size, sizeof(CCamera));
    EXPECT_TRUE(Requests()[0].clear);
}

TEST_F(ManagerState, LoadingAllocatesBeforeItReadsTheRecord)
{
    Listen(Topic_Memory | Topic_Buffer);
    const Saved saved = SavedAs(0);
    TakeLog();
    Load(StreamOf({nullptr, &saved}));
    const Lines log = TakeLog();
    ASSERT_EQ(log.size(), 3 + 1 + RECORD_ITEMS);
    EXPECT_THAT(log[3], testing::StartsWith("Alloc("));
}

TEST_F(ManagerState, SavedAndLoadedComeOutTheSame)
{
    CreateCameras(5);
    g_CM.DestroyCamera(3);
    for (int id : {0, 1, 2, 4})
    {
        CCamera* camera = g_CM.GetCamera(id);
        camera->m_viewX = static_cast<float>(id) * 10;
        camera->m_viewWidth = 640;
        camera->m_viewHeight = 480;
        camera->m_viewAngle = 30;
        camera->BuildView();
    }
    g_CM.GetCamera(4)->SetViewDirty();
    const std::vector<uint8_t> saved = ManagerBytes();
    StartAgain();
    EXPECT_EQ(Load(saved), saved.size());
    EXPECT_EQ(ManagerBytes(), saved);
    EXPECT_EQ(g_CM.Validate(), nullptr);
}

// ---- loading: what cannot be taken is freed, and the load goes on ----

class RefusedIdentifier : public StateTest, public testing::WithParamInterface<int32_t>
{
};

TEST_P(RefusedIdentifier, IsFreedAndTheNextCameraLoads)
{
    const Saved refused = SavedAs(GetParam());
    const Saved next = SavedAs(1);
    EXPECT_EQ(Load(StreamOf({&refused, &next})), 12 + 2 * RECORD_BYTES);
    EXPECT_THAT(Slots(), ElementsAre(FREE, 1));
    EXPECT_EQ(LiveBlocks(), 3u); // the table, the room list, one camera
    EXPECT_EQ(g_CM.Validate(), nullptr);
    EXPECT_THAT(Errors(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Identifiers, RefusedIdentifier,
                         testing::Values(-2, -7, INT32_MIN, INT32_MIN + 1, 16777216, 16777217, 1 << 30, INT32_MAX,
                                         INT32_MAX - 15, INT32_MAX - 16));

TEST_F(ManagerState, TheLargestIdentifierIsTaken)
{
    const Saved largest = SavedAs(16777215);
    Load(StreamOf({&largest}));
    EXPECT_NE(g_CM.GetCamera(16777215), nullptr);
    EXPECT_EQ(g_CM.m_cameraListSize, 16777215 + 16);
}

TEST_F(ManagerState, ADamagedIdentifierDoesNotTakeTheSlotOfACameraThatAHostPutThere)
{
    CCamera* const there = LooseCamera();
    g_CM.AddCameraToList(there, 16777216);
    const Saved damaged = SavedAs(16777216);
    Load(StreamOf({&damaged}));
    EXPECT_EQ(g_CM.m_cameras[16777216], there);
    EXPECT_EQ(there->m_viewWidth, 0.0f) << "not the stream's";
    EXPECT_EQ(LiveBlocks(), 3u) << "the loaded camera was freed";
}

TEST_F(ManagerState, ACameraForWhichTheTableCannotGrowIsFreed)
{
    RefuseAbove(4096);
    const Saved far = SavedAs(100000);
    const Saved near = SavedAs(1);
    Load(StreamOf({&far, &near}));
    EXPECT_THAT(Slots(), ElementsAre(FREE, 1));
    EXPECT_EQ(LiveBlocks(), 3u);
    EXPECT_EQ(g_CM.Validate(), nullptr);
}

TEST_F(ManagerState, ANamelessCameraForWhichTheTableCannotGrowIsFreed)
{
    CreateCameras(2);
    g_CM.m_InitialLoadHighPoint = 1; // slot 0, which the load empties, is not handed out
    RefuseRequest(2);
    const Saved nameless = SavedAs(-1);
    const Saved next = SavedAs(0);
    Load(StreamOf({&nameless, &next}));
    EXPECT_THAT(Slots(), ElementsAre(0, 1));
    EXPECT_EQ(LiveBlocks(), 4u);
}

// The record has to be passed over, or the next flag is read from its middle.
TEST_F(ManagerState, ACameraThatCannotBeAllocatedIsPassedOver)
{
    const Saved lost = SavedAs(0);
    const Saved next = SavedAs(1);
    RefuseRequest(1);
    EXPECT_EQ(Load(StreamOf({&lost, &next})), 12 + 2 * RECORD_BYTES);
    ASSERT_NE(g_CM.GetCamera(1), nullptr);
    EXPECT_EQ(BytesOf(*g_CM.GetCamera(1)), next.Bytes());
    EXPECT_EQ(g_CM.GetCamera(0), nullptr);
}
} // namespace
