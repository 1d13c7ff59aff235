// Objects and instances: identifiers, order, flags, boxes, and the grid that finds what a view touches.

#include "Runner/World/World.h"

#include "Tests/Runner/Support/Game_Support.h"

#include <cmath>

namespace
{
using Runner::Instance;
using Runner::ObjectTraits;
using Runner::ObjectType;
using Runner::RoomArea;
using Runner::World;
using RunnerTest::GameTest;

constexpr RoomArea EVERYWHERE = {-INFINITY, -INFINITY, INFINITY, INFINITY};

ObjectTraits WithBox(float left, float top, float right, float bottom)
{
    ObjectTraits traits;
    traits.hasBox = true;
    traits.box = {left, top, right, bottom};
    return traits;
}

std::vector<int> IdsOf(const ObjectType& type)
{
    std::vector<int> ids;
    for (auto* node = type.m_Instances_Recursive.m_first; node != nullptr; node = node->m_next)
        ids.push_back(node->m_obj->m_id);
    return ids;
}

std::vector<int> Seen(World& world, const RoomArea& area)
{
    std::vector<Instance*> found;
    world.FindForDrawing({area}, found);
    std::vector<int> ids;
    for (const Instance* instance : found)
        ids.push_back(instance->m_id);
    return ids;
}

class WorldTest : public ::testing::Test
{
protected:
    ~WorldTest() override
    {
        std::string why;
        EXPECT_TRUE(world.Check(why)) << why;
    }

    World world;
    ObjectType& parent = *world.AddObject("parent", nullptr, ObjectTraits());
    ObjectType& child = *world.AddObject("child", &parent, ObjectTraits());
    ObjectType& other = *world.AddObject("other", nullptr, ObjectTraits());
};

TEST_F(WorldTest, IdentifiersCountFromAHundredThousand)
{
    EXPECT_EQ(world.Create(child, 0, 0).m_id, 100000);
    EXPECT_EQ(world.Create(other, 0, 0).m_id, 100001);
}

TEST_F(WorldTest, IdentifiersAreNotUsedAgain)
{
    world.Destroy(world.Create(child, 0, 0));
    world.RemoveDestroyed(nullptr);
    EXPECT_EQ(world.Create(child, 0, 0).m_id, 100001);
}

TEST_F(WorldTest, AParentsListHoldsItsChildrensInstancesInTheOrderOfCreation)
{
    world.Create(child, 0, 0);
    world.Create(parent, 0, 0);
    world.Create(other, 0, 0);
    world.Create(child, 0, 0);
    EXPECT_EQ(IdsOf(parent), (std::vector<int>{100000, 100001, 100003}));
    EXPECT_EQ(IdsOf(child), (std::vector<int>{100000, 100003}));
    EXPECT_EQ(IdsOf(other), (std::vector<int>{100002}));
}

TEST_F(WorldTest, ADestroyedInstanceStaysInItsListsUntilItIsRemoved)
{
    Instance& first = world.Create(child, 0, 0);
    world.Create(child, 0, 0);
    world.Destroy(first);
    world.Destroy(first);
    EXPECT_EQ(IdsOf(parent).size(), 2u);
    EXPECT_EQ(world.CountLive(parent), 1);
    std::vector<int> released;
    world.RemoveDestroyed([&](Instance& instance) { released.push_back(instance.m_id); });
    EXPECT_EQ(released, (std::vector<int>{100000}));
    EXPECT_EQ(IdsOf(parent), (std::vector<int>{100001}));
    EXPECT_EQ(world.Find(100000), nullptr);
}

TEST_F(WorldTest, ListsGoOnAfterTheirLastInstanceWasRemoved)
{
    world.Create(child, 0, 0);
    world.Destroy(world.Create(child, 0, 0));
    world.RemoveDestroyed(nullptr);
    world.Create(child, 0, 0);
    EXPECT_EQ(IdsOf(parent), (std::vector<int>{100000, 100002}));
}

TEST_F(WorldTest, TheHostsMapsLookIntoTheWorld)
{
    const Instance& made = world.Create(child, 3, 4);
    EXPECT_EQ(CInstance::ms_ID2Instance.Find(100000), &made);
    EXPECT_EQ(CInstance::ms_ID2Instance.Find(100001), nullptr);
    ASSERT_NE(g_ObjectHash, nullptr);
    EXPECT_EQ(g_ObjectHash->Find(1), &child);
    EXPECT_EQ(g_ObjectHash->Find(3), nullptr);
    EXPECT_EQ(g_ObjectHash->Find(-1), nullptr);
}

TEST(WorldMaps, AreEmptyWithoutAWorld)
{
    EXPECT_EQ(g_ObjectHash, nullptr);
    EXPECT_EQ(CInstance::ms_ID2Instance.Find(100000), nullptr);
}

TEST_F(WorldTest, FindLiveSkipsDestroyedAndDeactivatedInstances)
{
    world.Destroy(world.Create(child, 0, 0));
    world.Create(child, 0, 0).m_flags |= eInstanceFlag_Deactivated;
    const Instance& third = world.Create(parent, 0, 0);
    EXPECT_EQ(world.FindLive(parent, 0), &third);
    EXPECT_EQ(world.FindLive(parent, 1), nullptr);
    EXPECT_EQ(world.FindLive(parent, -1), nullptr);
}

// ---- boxes ----

TEST_F(WorldTest, ABoxIsScaledThenTurnedCounterClockwiseThenMoved)
{
    ObjectType& boxed = *world.AddObject("boxed", nullptr, WithBox(0, 0, 10, 2));
    Instance& instance = world.Create(boxed, 100, 50);
    instance.scaleX = 2.0f;
    instance.angle = 90.0f; // to the right becomes up: x 0..20 becomes y 0..-20, y 0..2 becomes x 0..2
    instance.Compute_BoundingBox(true);
    EXPECT_NEAR(instance.box.left, 100.0f, 1e-4f);
    EXPECT_NEAR(instance.box.right, 102.0f, 1e-4f);
    EXPECT_NEAR(instance.box.top, 30.0f, 1e-4f);
    EXPECT_NEAR(instance.box.bottom, 50.0f, 1e-4f);
}

TEST_F(WorldTest, ComputingTheBoxClearsItsFlagAndMovingSetsIt)
{
    Instance& instance = world.Create(child, 0, 0);
    EXPECT_NE(instance.m_flags & eInstanceFlag_bbox_dirty, 0u);
    instance.Compute_BoundingBox(false);
    EXPECT_EQ(instance.m_flags & eInstanceFlag_bbox_dirty, 0u);
    world.Touch(instance);
    EXPECT_NE(instance.m_flags & eInstanceFlag_bbox_dirty, 0u);
}

TEST_F(WorldTest, WithoutABoxOfItsOwnAnInstanceHasItsSprites)
{
    ObjectTraits traits;
    traits.sprite = 2;
    world.SetSpriteExtent(2, {16.0f, 8.0f, 4.0f, 0.0f});
    Instance& instance = world.Create(*world.AddObject("sprited", nullptr, traits), 10, 10);
    instance.Compute_BoundingBox(true);
    EXPECT_EQ(instance.box.left, 6.0f);
    EXPECT_EQ(instance.box.right, 22.0f);
    EXPECT_EQ(instance.box.top, 10.0f);
    EXPECT_EQ(instance.box.bottom, 18.0f);
}

// ---- what a view touches ----

TEST_F(WorldTest, LargerDepthIsDrawnFirstThenTheOrderOfCreation)
{
    world.Create(child, 0, 0);
    world.Create(child, 0, 0).depth = 5.0f;
    world.Create(child, 0, 0);
    world.Create(child, 0, 0).depth = -5.0f;
    EXPECT_EQ(Seen(world, EVERYWHERE), (std::vector<int>{100001, 100000, 100002, 100003}));
}

TEST_F(WorldTest, HiddenDestroyedAndDeactivatedInstancesAreNotDrawn)
{
    world.Create(child, 0, 0).visible = false;
    world.Destroy(world.Create(child, 0, 0));
    world.Create(child, 0, 0).m_flags |= eInstanceFlag_Deactivated;
    EXPECT_TRUE(Seen(world, EVERYWHERE).empty());
}

TEST_F(WorldTest, AnInstanceWithoutASizeIsSeenFromEverywhere)
{
    world.Create(child, 5000, 5000);
    EXPECT_EQ(Seen(world, {0, 0, 10, 10}).size(), 1u);
}

TEST_F(WorldTest, AnInstanceIsFoundWhereItMovedTo)
{
    world.SetRoomSize(4000, 4000);
    Instance& instance = world.Create(*world.AddObject("boxed", nullptr, WithBox(0, 0, 10, 10)), 100, 100);
    EXPECT_EQ(Seen(world, {0, 0, 200, 200}).size(), 1u);
    instance.x = 3000;
    world.Touch(instance);
    EXPECT_TRUE(Seen(world, {0, 0, 200, 200}).empty());
    EXPECT_EQ(Seen(world, {2900, 0, 3005, 200}).size(), 1u);
}

// The grid against looking at every instance, over sizes, places outside of the room, and moves.
TEST_F(WorldTest, TheGridFindsWhatLookingAtEveryInstanceFinds)
{
    world.SetRoomSize(3000, 2000);
    uint32_t state = 12345;
    const auto next = [&state](int low, int high)
    {
        state = state * 1664525u + 1013904223u;
        return static_cast<float>(low + static_cast<int>((state >> 8) % static_cast<uint32_t>(high - low)));
    };
    std::vector<ObjectType*> kinds;
    for (const float size : {0.0f, 3.0f, 130.0f, 700.0f, 2500.0f})
        kinds.push_back(world.AddObject("kind", nullptr, WithBox(-size, -size / 2, size, size)));
    for (int i = 0; i < 400; ++i)
        world.Create(*kinds[static_cast<size_t>(i) % kinds.size()], next(-2000, 5000), next(-2000, 4000));
    for (int round = 0; round < 200; ++round)
    {
        Instance& moved = *world.Instances()[static_cast<size_t>(next(0, 400))];
        moved.x = next(-2000, 5000);
        moved.angle = next(0, 360);
        world.Touch(moved);
        const float left = next(-2500, 4000), top = next(-2500, 3000);
        const RoomArea area = {left, top, left + next(1, 1500), top + next(1, 1500)};
        const std::vector<int> found = Seen(world, area);
        std::vector<int> expected;
        for (const auto& instance : world.Instances())
            if (instance->drawArea.Touches(area))
                expected.push_back(instance->m_id);
        ASSERT_EQ(found, expected) << "round " << round;
    }
}

// ---- through scripts ----

class WorldScripts : public GameTest
{
};

TEST_F(WorldScripts, ChildrenInheritEventsAndTraitsTheyLeaveOut)
{
    EXPECT_EQ(Play("local p = object_add{ depth = 7, create = function(self) print('p create', self.depth) end,\n"
                   "  step = function() print('p step') end }\n"
                   "local c = object_add{ parent = p, step = function() print('c step') end }\n"
                   "room_add{ instances = { {c, 0, 0} } }"),
              "");
    EXPECT_EQ(Log(), "p create\t7.0\nc step\n");
}

TEST_F(WorldScripts, AnInstanceCreatedInAStepStepsFromTheNextFrameOn)
{
    EXPECT_EQ(Play("local o o = object_add{ step = function(self) print(self.id)\n"
                   "  if self.id == 100000 and frame_number() == 0 then instance_create(0, 0, o) end end }\n"
                   "room_add{ instances = { {o, 0, 0} } }",
                   2),
              "");
    EXPECT_EQ(Log(), "100000\n100000\n100001\n");
}

TEST_F(WorldScripts, ADestroyedInstanceTakesNoFurtherPartInTheStep)
{
    EXPECT_EQ(Play("local o = object_add{ destroy = function(self) print('destroy', self.id) end,\n"
                   "  step = function(self) print('step', self.id)\n"
                   "    if self.id == 100000 then instance_destroy(100001) instance_destroy(100001)\n"
                   "      assert(not instance_exists(100001) and instance_get(100001) == nil) end end }\n"
                   "room_add{ instances = { {o, 0, 0}, {o, 0, 0}, {o, 0, 0} } }"),
              "");
    EXPECT_EQ(Log(), "step\t100000\ndestroy\t100001\nstep\t100002\n");
}

TEST_F(WorldScripts, DeactivatedInstancesRestUntilTheyAreActivated)
{
    EXPECT_EQ(Play("local o = object_add{ step = function(self) print(frame_number()) end }\n"
                   "room_add{ instances = { {o, 0, 0} }, step = function() local f = frame_number()\n"
                   "  if f == 1 then instance_deactivate(100000) assert(instance_count(o) == 0) end\n"
                   "  if f == 3 then instance_activate(100000) assert(instance_find(o, 0) == 100000) end end }",
                   4),
              "");
    EXPECT_EQ(Log(), "0\n3\n");
}

TEST_F(WorldScripts, SelfKeepsVariablesAndIsTheSameValueEachTime)
{
    EXPECT_EQ(Play("local o = object_add{ create = function(self) self.hp = 3 self.name = 'x' KEPT = self end,\n"
                   "  step = function(self) assert(self == KEPT and instance_get(self.id) == self)\n"
                   "    assert(self.hp == 3 and self.nothing == nil and tostring(self) == 'instance 100000')\n"
                   "    local names = '' for k in pairs(self) do names = names .. k .. ' ' end\n"
                   "    assert(names == 'hp name ') end }\n"
                   "room_add{ instances = { {o, 0, 0} } }"),
              "");
}

TEST_F(WorldScripts, FieldsOfTheHostAreReadAndWritten)
{
    EXPECT_EQ(Play("local o = object_add{ bbox = {-1, -2, 3, 4}, create = function(self)\n"
                   "  for _, f in ipairs{'x','y','frame','angle','xscale','yscale','alpha','depth'} do\n"
                   "    self[f] = 2.5 assert(self[f] == 2.5, f) end\n"
                   "  self.angle = 0 self.xscale = 1 self.yscale = 1\n"
                   "  self.visible = false assert(self.visible == false)\n"
                   "  self.colour = colours.red assert(self.colour == 255)\n"
                   "  self.sprite = -1 assert(self.sprite == -1 and self.object == 0)\n"
                   "  assert(self.bbox_left == 1.5 and self.bbox_top == 0.5)\n"
                   "  assert(self.bbox_right == 5.5 and self.bbox_bottom == 6.5) end }\n"
                   "room_add{ instances = { {o, 0, 0} } }"),
              "");
}

struct SelfMistake
{
    const char* statement;
    const char* complaint;
};

class SelfMistakes : public GameTest, public ::testing::WithParamInterface<SelfMistake>
{
};

TEST_P(SelfMistakes, AreClearErrors)
{
    const std::string text = "local o = object_add{ create = function(self)\n" + std::string(GetParam().statement) +
                             " end }\nroom_add{ instances = { {o, 0, 0} } }";
    EXPECT_EQ(Play(text), std::string("main.lua:2: ") + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SelfMistakes,
    ::testing::Values(SelfMistake{"self.x = 'a'", "\"x\" of an instance is a number, got the string \"a\""},
                      SelfMistake{"self.x = 0/0", "\"x\" of an instance is a finite number, got the number nan"},
                      SelfMistake{"self.id = 5", "\"id\" of an instance cannot be set"},
                      SelfMistake{"self.visible = {}", "\"visible\" of an instance is true or false, got a table"},
                      SelfMistake{"self[1] = 5", "a variable of an instance must have a name, got a number"},
                      SelfMistake{"instance_create(0, 0, 9)", "instance_create() - there is no object 9"},
                      SelfMistake{"instance_create(0, 0)",
                                  "instance_create() - wrong number of arguments (3 wanted: x, y, object; got 2)"}));

TEST_F(WorldScripts, TheFieldsOfAnInstanceThatIsGoneAreRefused)
{
    EXPECT_EQ(
        Play("local o = object_add{ create = function(self) KEPT = self self.hp = 3 instance_destroy(self) end }\n"
             "room_add{ instances = { {o, 0, 0} }, step = function() if frame_number() == 1 then\n"
             "assert(KEPT.id == 100000 and KEPT.hp == 3)\n"
             "KEPT.x = 1 end end }",
             3),
        "main.lua:4: instance 100000 no longer exists, its x cannot be used");
}

TEST_F(WorldScripts, EndlessCreationIsAnErrorAndNoCrash)
{
    const std::string failure = Play("local o o = object_add{ create = function() instance_create(0, 0, o) end }\n"
                                     "room_add{ instances = { {o, 0, 0} } }");
    EXPECT_NE(failure.find("main.lua:1: "), std::string::npos) << failure;
    EXPECT_NE(failure.find("overflow"), std::string::npos) << failure;
}

TEST_F(WorldScripts, AMillionUnitsOfInstancesAreDrawnByWhatTheViewTouches)
{
    EXPECT_EQ(Play("local drawn = 0\n"
                   "local o = object_add{ bbox = {0, 0, 10, 10}, draw = function() drawn = drawn + 1 end }\n"
                   "room_add{ width = 20000, height = 1000, views = { [0] = { w = 100, h = 100 } },\n"
                   "  create = function() for i = 0, 1999 do instance_create(i * 10, 0, o) end end,\n"
                   "  draw_gui = function() print(drawn) end }"),
              "");
    const int drawn = std::stoi(Log());
    EXPECT_GE(drawn, 10);
    EXPECT_LE(drawn, 12); // the view's edges, and a margin
}

// ---- the walk over all structures ----

// Lists that are damaged on purpose, and mended again.
TEST_F(WorldTest, ADamagedListIsFound)
{
    world.Create(child, 0, 0);
    world.Create(child, 0, 0);
    world.Create(other, 0, 0);
    auto* const first = child.m_Instances_Recursive.m_first;
    const auto fault = [this]
    {
        std::string why;
        EXPECT_FALSE(world.Check(why));
        return why;
    };
    std::swap(first->m_obj, first->m_next->m_obj);
    EXPECT_EQ(fault(), "W2: the list of child does not follow the world's instances");
    std::swap(first->m_obj, first->m_next->m_obj);
    auto* const second = std::exchange(first->m_next, nullptr);
    EXPECT_EQ(fault(), "W2: the list of child does not follow the world's instances");
    first->m_next = second;
    second->m_next = other.m_Instances_Recursive.m_first;
    EXPECT_EQ(fault(), "W2: the list of child is too long");
    second->m_next = nullptr;
}

// The one that follows is out of order where the second has a number beyond its own.
TEST_F(WorldTest, AnIdentifierThatIsNotItsOwnIsFound)
{
    world.Create(child, 0, 0);
    world.Create(child, 0, 0);
    world.Create(other, 0, 0);
    CInstance* const instance = child.m_Instances_Recursive.m_first->m_next->m_obj;
    for (const auto& [wrong, told] : {std::pair(100000, "W4: instance 100000 is not found by its identifier"),
                                      std::pair(100101, "W1: instance 100002 is out of order")})
    {
        std::string why;
        instance->m_id = wrong;
        EXPECT_FALSE(world.Check(why)) << wrong;
        EXPECT_EQ(why, told);
    }
    instance->m_id = 100001;
}
} // namespace
