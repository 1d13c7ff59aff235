// Saves of other code and of other versions of a game: the four cases, what is found again by name, on_load.

#include "Tests/Runner/Save/Save_Support.h"

#include "Files/Graphics/Graphics_Support.h"

namespace
{
using RunnerTest::SaveTest;

class SaveVersions : public SaveTest
{
protected:
    // Plays a frame of one text, saves, and loads the save in a game of another text of the same file name. Empty when
    // it was loaded, else why not. What the second game printed is in log.
    std::string Cross(const std::string& then, const std::string& now)
    {
        EXPECT_EQ(Play(then), "");
        EXPECT_EQ(Save(), "");
        return LoadIn(now);
    }

    std::string LoadIn(const std::string& text)
    {
        EXPECT_EQ(Play(text, 0), "");
        const size_t before = Log().size();
        const std::string why = Load();
        log = Log().substr(before);
        return why;
    }

    std::string Line(const std::string& text) const { return SavePath() + ": " + text + "\n"; }
    std::string Refusal(const std::string& text) const { return "cannot load " + SavePath() + ": " + text; }

    std::string log;
};

const std::string ROOM = "room_add{ name = 'cave', views = { [0] = {} } } vars.n = 1 ";
constexpr const char* DECLARE = "the game's files have changed since it was made: declare game_version(n), so that "
                                "saves outlive that";

// ---- the four cases ----

TEST_F(SaveVersions, WithoutAVersionASaveOfOtherCodeIsRefused)
{
    EXPECT_EQ(Cross(ROOM, ROOM + "-- a comment"), Refusal(DECLARE));
    EXPECT_EQ(LoadIn("vars.n = 5 " + ROOM), Refusal(DECLARE));
    EXPECT_EQ(LoadIn(ROOM), "");
    EXPECT_EQ(log, "");
}

TEST_F(SaveVersions, OfTheSameVersionASaveOfOtherCodeLoadsWithOneLine)
{
    EXPECT_EQ(Cross("game_version(3) " + ROOM, "game_version(3) " + ROOM + "vars.n = 9 -- a comment"), "");
    EXPECT_EQ(log, Line("the game's code has changed since it was made"));
    EXPECT_EQ(PlayOn(2), "");
    EXPECT_EQ(game->FrameNumber(), 3);
}

TEST_F(SaveVersions, AnOnLoadThatDoesNotComeBackIsEndedByTheLimit)
{
    options.limits.instructions = 2000000;
    const std::string endless = "function on_load() while true do pcall(string.rep, 'x', 100000) end end ";
    const std::string why = Cross("game_version(1) " + ROOM, "game_version(2) " + endless + ROOM);
    EXPECT_NE(why.find("on_load failed: main.lua:1: the script did not come back"), std::string::npos) << why;
}

TEST_F(SaveVersions, OfAnotherVersionASaveLoadsThroughOnLoad)
{
    EXPECT_EQ(Cross("game_version(3) " + ROOM,
                    "game_version(4) function on_load(from, data) assert(from == 3) data.vars.m = data.vars.n + 1 end\n"
                    "room_add{ name = 'cave', load = function() log(vars.n .. ' ' .. vars.m) end }"),
              "");
    EXPECT_EQ(log, Line("it was made by version 3 and goes on in version 4") +
                       Line("left out: view 0: the room has no such view now") + "1 2\n");
}

TEST_F(SaveVersions, OfAnotherVersionASaveWithoutOnLoadIsRefused)
{
    EXPECT_EQ(Cross("game_version(3) " + ROOM, "game_version(4) " + ROOM),
              Refusal("it was made by version 3, and this is version 4: give the game on_load(from_version, data), "
                      "which turns it into this one's"));
    EXPECT_EQ(LoadIn("game_version(2) on_load = 7 " + ROOM),
              Refusal("it was made by version 3, and this is version 2: give the game on_load(from_version, data), "
                      "which turns it into this one's"));
}

TEST_F(SaveVersions, AGameThatDeclaredNoVersionIsVersionZero)
{
    EXPECT_EQ(Cross(ROOM, "game_version(1) function on_load(from) assert(from == 0) end " + ROOM), "");
    EXPECT_EQ(log, Line("it was made by a version of the game that declares none and goes on in version 1"));
}

TEST_F(SaveVersions, ASaveOfTwentyVersionsAgoGoesOnAndMayBeSavedAgain)
{
    const auto text = [](int version)
    {
        return "game_version(" + std::to_string(version) +
               ") function on_load(from, data)\n"
               "for v = from + 1, " +
               std::to_string(version) +
               " do data.vars.path = data.vars.path .. ' ' .. v data.vars['v' .. v] = { v } end end\n"
               "local hero = object_add{ name = 'hero', step = function(self) self.x = self.x + 1 end }\n"
               "room_add{ name = 'cave', instances = { {hero, 10, 0} }, create = function() vars.path = '1' end,\n"
               "load = function() log(vars.path) end }";
    };
    EXPECT_EQ(Cross(text(1), text(21)), "");
    EXPECT_EQ(log, Line("it was made by version 1 and goes on in version 21") +
                       "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21\n");
    EXPECT_EQ(PlayOn(3), "");
    EXPECT_EQ(game->world.Find(100000)->x, 14.0f); // 10, one step before the save and three after it
    EXPECT_EQ(Save(), "");
    EXPECT_EQ(LoadIn(text(21)), "");
    EXPECT_EQ(log, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21\n");
}

// ---- found by name ----

// Two objects come before the old ones, one is gone, and one was given no name.
TEST_F(SaveVersions, InstancesAreMatchedByTheNameOfTheirObject)
{
    EXPECT_EQ(Cross("game_version(1) local a = object_add{ name = 'bat' } local b = object_add{ name = 'hero' }\n"
                    "local c = object_add{} local d = object_add{ name = 'rock' }\n"
                    "room_add{ instances = { {a, 1, 0}, {b, 2, 0}, {a, 3, 0}, {c, 4, 0}, {d, 5, 0} },\n"
                    "create = function() vars.bat, vars.hero = instance_get(100000), instance_get(100001)\n"
                    "vars.hero.life = 7 end }",
                    "game_version(2) function on_load() end object_add{ name = 'new' } object_add{ name = 'rock' }\n"
                    "hero = object_add{ name = 'hero' } room_add{ load = function()\n"
                    "assert(vars.bat == nil and vars.hero.id == 100001 and vars.hero.object == hero)\n"
                    "assert(vars.hero.x == 2 and vars.hero.life == 7 and instance_get(100004).object == 1)\n"
                    "assert(instance_create(0, 0, hero) == 100005) log('checked') end }"),
              "");
    EXPECT_EQ(log, Line("it was made by version 1 and goes on in version 2") +
                       Line("left out: 2 instances of object \"bat\": the game has no such object now") +
                       Line("left out: 1 instance of object 2: it was given no name, so it cannot be found again") +
                       "checked\n");
    EXPECT_EQ(PlayOn(2), "");
}

// The view's camera and the named one are kept, with their numbers; the target is an object that has moved, the script
// has another number now.
TEST_F(SaveVersions, CamerasAreMatchedByViewAndByName)
{
    EXPECT_EQ(
        Cross("game_version(1) script_add(print, 'first') S = script_add(function() end, 'lead')\n"
              "O = object_add{ name = 'hero' } room_add{ views = { [0] = { w = 30, h = 20, target = O } },\n"
              "create = function() vars.v, vars.m = view_get_camera(0), camera_create_view(7, 8, 9, 10)\n"
              "vars.o = camera_create_view(1, 1, 1, 1) camera_set_name(vars.m, 'map')\n"
              "camera_set_end_script(vars.m, S) camera_set_begin_script(vars.m, script_add(print))\n"
              "camera_set_view_pos(vars.v, 5, 6) end }",
              "game_version(2) function on_load() end object_add{ name = 'new' } O = object_add{ name = 'hero' }\n"
              "S = script_add(function() end, 'lead') room_add{ views = { [0] = {}, [3] = { x = 44 } }, load = "
              "function()\n"
              "assert(view_get_camera(0) == vars.v and camera_get_view_x(vars.v) == 5)\n"
              "assert(camera_get_view_target(vars.v) == O and camera_find('map') == vars.m)\n"
              "assert(camera_get_view_height(vars.m) == 10 and camera_get_end_script(vars.m) == S)\n"
              "assert(camera_get_begin_script(vars.m) == -1 and camera_find('other') == -1)\n"
              "assert(view_get_camera(3) == vars.o and camera_get_view_x(vars.o) == 44) log('checked') end }"),
        "");
    EXPECT_EQ(log, Line("it was made by version 1 and goes on in version 2") +
                       Line("left out: a callback of camera 2: script 2 was given no name in script_add") +
                       Line("left out: camera 3: no view showed it and camera_set_name gave it no name") + "checked\n");
    EXPECT_EQ(PlayOn(2), "");
    EXPECT_EQ(g_CM.Validate(), nullptr);
}

TEST_F(SaveVersions, InTheSameVersionWhatHasNoNameKeepsItsNumber)
{
    const std::string text = "game_version(1) S = script_add(function() end) O = object_add{}\n"
                             "room_add{ instances = { {O, 3, 4} }, create = function() vars.c = camera_create()\n"
                             "camera_set_end_script(vars.c, S) end,\n"
                             "load = function() assert(camera_get_end_script(vars.c) == S) log('checked') end }";
    EXPECT_EQ(Cross(text, text + "-- more"), "");
    EXPECT_EQ(log, Line("the game's code has changed since it was made") + "checked\n");
    EXPECT_EQ(game->world.Find(100000)->x, 3.0f);
}

TEST_F(SaveVersions, ViewsThatAreGoneAreLeftOutAndNewOnesStart)
{
    EXPECT_EQ(Cross("game_version(1) room_add{ views = { [1] = { w = 10, h = 10 } } }",
                    "game_version(1) room_add{ views = { [0] = { w = 20, h = 20 } }, load = function()\n"
                    "assert(camera_get_view_width(view_get_camera(0)) == 20 and view_get_camera(1) == -1)\n"
                    "assert(view_get_visible(0) == 1 and view_get_visible(1) == 0) log('checked') end }"),
              "");
    EXPECT_EQ(log, Line("the game's code has changed since it was made") +
                       Line("left out: view 1: the room has no such view now") + "checked\n");
    EXPECT_EQ(PlayOn(2), "");
}

TEST_F(SaveVersions, ARoomIsFoundByNameAndOneThatIsGoneIsRefused)
{
    const std::string then = "game_version(1) room_add{ name = 'a' } room_add{ name = 'b' } room_goto(1)";
    EXPECT_EQ(Cross(then, "game_version(1) room_add{ name = 'b', load = function() log('in b') end } "
                          "room_add{ name = 'a' }"),
              "");
    EXPECT_EQ(log, Line("the game's code has changed since it was made") + "in b\n");
    EXPECT_EQ(LoadIn("game_version(1) room_add{ name = 'c' }"),
              Refusal("it was made in room \"b\", and the game has no such room now; on_load can set data.room"));
    EXPECT_EQ(LoadIn("game_version(2) function on_load(_, data) assert(data.room == 'b') data.room = 'c' end\n"
                     "room_add{} room_add{ name = 'c', load = function() log('in c') end }"),
              "");
}

// Sprites have moved: the tiles and the instance follow their file; the second map has no counterpart.
TEST_F(SaveVersions, SpritesAndTileMapsAreMatchedByTheirFile)
{
    for (const char* name : {"a.png", "b.png"})
        std::filesystem::copy_file(std::string(GAMES_DIR) + "/canyon/tiles.png", directory.Path(name));
    EXPECT_EQ(
        Cross("game_version(1) A = sprite_add_sheet('a.png', 16, 16) B = sprite_add_sheet('b.png', 16, 16)\n"
              "M = tilemap_add{ sprite = A, columns = 2, rows = 1, data = {0, 0} }\n"
              "N = tilemap_add{ sprite = B, columns = 2, rows = 1, data = {0, 0} }\n"
              "O = object_add{ name = 'o' } room_add{ instances = { {O, 0, 0} }, create = function()\n"
              "instance_get(100000).sprite = A tilemap_set(M, 1, 0, 2) tilemap_set(N, 1, 0, 3) end }",
              "game_version(2) function on_load() end C = sprite_add('b.png') A = sprite_add_sheet('a.png', 16, 16)\n"
              "M = tilemap_add{ sprite = C, columns = 5, rows = 1, data = {0, 0, 0, 0, 1} }\n"
              "N = tilemap_add{ sprite = A, columns = 2, rows = 1, data = {0, 0} }\n"
              "O = object_add{ name = 'o' } room_add{ load = function()\n"
              "assert(instance_get(100000).sprite == A and tilemap_get(N, 1, 0) == 2)\n"
              "assert(tilemap_get(M, 4, 0) == 1) log('checked') end }"),
        "");
    EXPECT_EQ(log, Line("it was made by version 1 and goes on in version 2") +
                       Line("left out: tile map 1: the game has none of its sprite and size now") + "checked\n");
}

// ---- on_load ----

TEST_F(SaveVersions, OnLoadTurnsVarsAndInstancesIntoNewOnes)
{
    EXPECT_EQ(
        Cross(
            "game_version(1) local o = object_add{ name = 'bat' } room_add{ instances = { {o, 1, 2}, {o, 3, 4} },\n"
            "create = function() local a, b = instance_get(100000), instance_get(100001)\n"
            "a.hp, a.friend, b.friend, vars.list, a.depth = 5, b, a, { a, b }, 9 vars.list.up = vars end }",
            "game_version(2) function on_load(from, data)\n"
            "local a, b = data.instances[1], data.instances[2]\n"
            "assert(data.frame == 1 and data.vars.list[1] == a and a.friend == b and data.vars.list.up == data.vars)\n"
            "assert(a.id == 100000 and a.object == 'bat' and a.x == 1 and a.depth == 9 and a.hp == 5)\n"
            "a.life, a.hp, a.object, a.x, a.alpha = { a.hp }, nil, 'owl', 50, 0.5\n"
            "data.instances[2] = nil data.vars = { list = data.vars.list } end\n"
            "owl = object_add{ name = 'owl' } room_add{ load = function() local a = instance_get(100000)\n"
            "assert(a.object == owl and a.x == 50 and a.y == 2 and a.alpha == 0.5 and a.life[1] == 5)\n"
            "assert(a.hp == nil and a.friend == nil and a.depth == 9 and vars.list[1] == a)\n"
            "assert(vars.list[2] == nil and instance_get(100001) == nil)\n"
            "for name in pairs(a) do assert(name == 'life') end log('checked') end }"),
        "");
    EXPECT_EQ(log, Line("it was made by version 1 and goes on in version 2") + "checked\n");
}

TEST_F(SaveVersions, AnErrorInOnLoadRefusesTheSaveAndTheGameGoesOn)
{
    const std::string then = "game_version(1) O = object_add{ name = 'o' } room_add{ instances = { {O, 0, 0} } }";
    const std::pair<const char*, const char*> cases[] = {
        {"error('no')", "main.lua:1: no"},
        {"error({})", "main.lua:1: an error without a message (a table value)"},
        {"data.vars = 3", "on_load left no table in data.vars"},
        {"data.vars = data.instances[1]", "on_load put an instance in the place of data.vars"},
        {"data.instances[2] = {}", "on_load put something in data.instances that is no instance of the save"},
        {"data.instances[1].x = 0/0", "on_load left no finite number in instance 100000's x"},
        {"data.instances[1].object = 7", "on_load left no name of an object in instance 100000's object"},
        {"data.instances[1].sprite = 0", "on_load cannot set instance 100000's sprite: the room's load event can"},
        {"data.room = nil", "on_load left no name of a room in data.room"}};
    EXPECT_EQ(Play(then), "");
    EXPECT_EQ(Save(), "");
    for (const auto& [body, why] : cases)
    {
        EXPECT_EQ(LoadIn("game_version(2) function on_load(from, data) " + std::string(body) + " end room_add{}"),
                  Refusal("on_load failed: " + std::string(why)));
        EXPECT_EQ(PlayOn(2), "");
        EXPECT_EQ(game->FrameNumber(), 2);
    }
}

TEST_F(SaveVersions, AnErrorInOnLoadIsToldWithTheFunctionsThatRan)
{
    EXPECT_EQ(Play("game_version(1) room_add{ name = 'cave' }"), "");
    EXPECT_EQ(Save(), "");
    EXPECT_EQ(LoadIn("game_version(2) local function turn(vars) return vars.hero.hp end\n"
                     "function on_load(from, data) local lives = 3 data.vars.hp = turn(data.vars) end room_add{}"),
              Refusal("on_load failed: main.lua:1: attempt to index a nil value (field 'hero')"));
    EXPECT_EQ(log, "main.lua:1: attempt to index a nil value (field 'hero')\n"
                   "    on_load\n"
                   "    room room0, frame 0\n"
                   "    main.lua:1: in turn\n"
                   "        vars = {}\n"
                   "    main.lua:2: in a function of line 2\n"
                   "        from = 1\n"
                   "        data = {frame = 1, instances = {...}, room = \"cave\", vars = {...}}\n"
                   "        lives = 3\n");
}

// ---- game_version, names ----

TEST_F(SaveVersions, WrongCallsAreRefused)
{
    const std::pair<const char*, const char*> cases[] = {
        {"game_version(0)", "main.lua:1: game_version: argument 1 (version) is 1 to 1000000000, got the number 0"},
        {"game_version(1) game_version(2)", "main.lua:1: game_version() - the game has declared version 1 already"},
        {"room_add{ step = function() game_version(1) end }",
         "main.lua:1: game_version() - only in the game's file, before its first room starts"},
        {"camera_set_name(77, 'a')", "main.lua:1: camera_set_name() - there is no camera 77"},
        {"game_autosave(0)", "main.lua:1: game_autosave: argument 1 (slots) is 1 to 100, got the number 0"}};
    for (const auto& [text, why] : cases)
        EXPECT_EQ(Play(text), why);
}

TEST_F(SaveVersions, NamesOfCamerasAreUniqueAndGoWithTheirCamera)
{
    EXPECT_EQ(Run("local a, b = camera_create(), camera_create() camera_set_name(a, 'x') camera_set_name(b, 'x')\n"
                  "assert(camera_find('x') == b) camera_set_name(b, 'y') assert(camera_find('x') == -1)\n"
                  "camera_destroy(b) assert(camera_find('y') == -1) assert(camera_create() == b)\n"
                  "assert(camera_find('y') == -1) camera_set_name(a, 'z') camera_set_name(a, '')\n"
                  "assert(camera_find('z') == -1 and camera_find('') == -1)"),
              "");
}

// ---- rooms of one name, targets that are gone ----

// After its one frame the game is in the second of two rooms called twin.
constexpr char TO_A_TWIN[] = "room_add{ name = 'cave', step = function() room_goto(2) end } room_add{ name = 'twin' } "
                             "room_add{ name = 'twin' }";
constexpr char TAKES_ALL[] = "game_version(2) function on_load() end ";

TEST_F(SaveVersions, OfTwoRoomsOfANameThatOfTheSameNumberIsMeant)
{
    EXPECT_EQ(Cross("game_version(1) " + std::string(TO_A_TWIN), TAKES_ALL + std::string(TO_A_TWIN)), "");
    EXPECT_EQ(PlayOn(1), "");
    EXPECT_EQ(game->rooms.Running()->index, 2);
}

TEST_F(SaveVersions, OfTwoRoomsOfANameWithOtherNumbersNoneIsMeant)
{
    EXPECT_EQ(Cross("game_version(1) " + std::string(TO_A_TWIN),
                    TAKES_ALL + std::string("room_add{ name = 'cave' } room_add{ name = 'twin' } "
                                            "room_add{ name = 'other' } room_add{ name = 'twin' }")),
              Refusal("it was made in room \"twin\", and the game has no such room now; on_load can set data.room"));
}

TEST_F(SaveVersions, ATargetThatIsGoneIsToldAndNotFollowed)
{
    for (const char* target : {"foe", "100000"})
    {
        const std::string then =
            "local hero = object_add{ name = 'hero' } local foe = object_add{ name = 'foe' }\n"
            "room_add{ name = 'cave', instances = { {foe, 1, 1}, {hero, 2, 2} }, views = { [0] = {} },\n"
            "create = function() camera_set_view_target(view_get_camera(0), " +
            std::string(target) + ") end }";
        EXPECT_EQ(Cross("game_version(1) " + then,
                        TAKES_ALL + std::string("local hero = object_add{ name = 'hero' } "
                                                "room_add{ name = 'cave', views = { [0] = {} } }")),
                  "");
        EXPECT_NE(log.find("left out: the target of camera 1\n"), std::string::npos) << target << ": " << log;
        EXPECT_EQ(g_CM.GetCamera(1)->GetTargetInstance(), -1) << target;
    }
}

TEST_F(SaveVersions, AScreenOfAnotherHeightMovesThePorts)
{
    EXPECT_EQ(Cross("screen_set_size(64, 48) game_version(1) " + ROOM,
                    "screen_set_size(64, 50) " + std::string(TAKES_ALL) + ROOM),
              "");
    EXPECT_NE(log.find("left out: the views' ports: the game's screen has another size now\n"), std::string::npos)
        << log;
}
} // namespace
