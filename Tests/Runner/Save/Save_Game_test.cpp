// What a saved game keeps, piece by piece. Each check runs in the game that was saved and in a fresh one.

#include "Tests/Runner/Save/Save_Support.h"

#include "Files/Graphics/Graphics_Support.h"

namespace
{
using RunnerTest::SaveTest;

// A room whose step runs `mess` in frame 1 (after the save) to spoil everything, and whose load event runs `check`.
// before: runs in the room's create event.
std::string Game(const std::string& before, const std::string& mess, const std::string& check)
{
    return "probe = object_add{ name = 'probe', step = function() end }\n"
           "room_add{ width = 500, height = 400, views = { [0] = { w = 100, h = 50 }, [2] = { visible = false } },\n"
           "create = function()\n" +
           before + "\nend,\nstep = function() if frame_number() == 1 then\n" + mess +
           "\nend end,\nload = function()\n" + check + "\nlog('checked') end }";
}

class SavedPiece : public SaveTest
{
protected:
    // Saves after a frame, spoils, loads and checks; then loads and checks in a fresh game.
    void Expect(const std::string& before, const std::string& mess, const std::string& check)
    {
        ASSERT_EQ(Play(Game(before, mess, check), 1), "");
        ASSERT_EQ(Save(), "");
        ASSERT_EQ(PlayOn(1), "");
        ASSERT_EQ(Load(), "");
        EXPECT_EQ(PlayOn(2), "");
        ASSERT_EQ(LoadAfresh(), "");
        EXPECT_EQ(PlayOn(2), "");
        EXPECT_EQ(Log(), "checked\nchecked\n");
    }
};

TEST_F(SavedPiece, NumbersStringsAndFlagsOfVars)
{
    Expect("vars.whole, vars.real, vars.text, vars.yes, vars.no = 7, 0.1, 'a\\0b', true, false "
           "vars[3], vars[2.5], vars[true], vars[math.mininteger], vars[''] = 'three', 'half', 'flag', -1, 'empty'",
           "for key in pairs(vars) do vars[key] = nil end vars.other = 1",
           "assert(math.type(vars.whole) == 'integer' and vars.whole == 7) assert(vars.real == 0.1) "
           "assert(vars.text == 'a\\0b') assert(vars.yes == true and vars.no == false) assert(vars[3] == 'three') "
           "assert(vars[2.5] == 'half' and vars[true] == 'flag' and vars[math.mininteger] == -1) "
           "assert(vars[''] == 'empty' and vars.other == nil)");
}

TEST_F(SavedPiece, ExtremeNumbers)
{
    Expect("vars.n = { math.huge, -math.huge, -0.0, 5e-324, 0/0, math.maxinteger, 2^53 }", "vars.n = nil",
           "local n = vars.n assert(#n == 7 and n[1] == math.huge and n[2] == -math.huge and 1 / n[3] == -math.huge) "
           "assert(n[4] == 5e-324 and n[5] ~= n[5] and n[6] == math.maxinteger and n[7] == 2^53)");
}

TEST_F(SavedPiece, SharedTablesStaySharedAndCyclesStayCycles)
{
    Expect("local shared = { 1 } vars.a, vars.b = { shared }, { shared } vars.me = vars shared.up = vars.a "
           "local p = instance_get(instance_create(0, 0, probe)) p.mine = shared vars.id = p.id",
           "vars.a[1] = nil",
           "local shared = vars.a[1] assert(shared == vars.b[1] and shared[1] == 1 and vars.me == vars) "
           "assert(shared.up == vars.a) assert(instance_get(vars.id).mine == shared)");
}

TEST_F(SavedPiece, TheTableVarsItselfStaysTheSame)
{
    ASSERT_EQ(Play("local kept = vars vars.n = 1 room_add{ step = function() vars.n = vars.n + 1 end,\n"
                   "load = function() assert(kept == vars and kept.n == 2) log('checked') end }"),
              "");
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(PlayOn(5), "");
    ASSERT_EQ(Load(), "");
    EXPECT_EQ(Log(), "checked\n");
}

TEST_F(SavedPiece, DeepTablesNeedNoDeepStack)
{
    Expect("local t = vars for i = 1, 100000 do t.next = {} t = t.next end t.last = true", "vars.next = nil",
           "local t, n = vars, 0 while t.next do t, n = t.next, n + 1 end assert(n == 100000 and t.last)");
}

TEST_F(SavedPiece, FunctionsAndOddKeysAreLeftOut)
{
    Expect("vars.f = function() end vars.t = { 1, print, 3 } vars[{}] = 1 vars.co = coroutine.create(print)", "",
           "assert(vars.f == nil and vars.co == nil and vars.t[1] == 1 and vars.t[2] == nil and vars.t[3] == 3) "
           "for key in pairs(vars) do assert(key == 't') end");
}

TEST_F(SavedPiece, SelvesAreKeptWhileTheirInstanceExists)
{
    Expect("vars.here = instance_get(instance_create(5, 6, probe)) vars.gone = instance_get(instance_create(0, 0, "
           "probe)) instance_destroy(vars.gone) vars.here.friend = vars.here",
           "instance_destroy(vars.here)",
           "assert(vars.gone == nil and vars.here.x == 5 and vars.here.y == 6 and vars.here.friend == vars.here) "
           "assert(instance_get(vars.here.id) == vars.here)");
}

TEST_F(SavedPiece, EveryFieldOfAnInstance)
{
    std::filesystem::copy_file(std::string(GAMES_DIR) + "/canyon/tiles.png", directory.Path("tiles.png"));
    Expect("for i = 0, 3 do sprite_add('tiles.png') end "
           "local p = instance_get(instance_create(1.5, 2.5, probe)) vars.id = p.id "
           "p.sprite, p.frame, p.angle, p.xscale, p.yscale = 3, 4.5, 30, -2, 0.25 "
           "p.colour, p.alpha, p.depth, p.visible, p.solid = 0x123456, 0.5, -7, false, true p.name = 'it'",
           "local p = instance_get(vars.id) p.x = 0 p.sprite = -1 p.name = nil p.solid = false",
           "local p = instance_get(vars.id) assert(p.object == probe and p.x == 1.5 and p.y == 2.5 and p.sprite == 3) "
           "assert(p.frame == 4.5 and p.angle == 30 and p.xscale == -2 and p.yscale == 0.25) "
           "assert(p.colour == 0x123456 and p.alpha == 0.5 and p.depth == -7) "
           "assert(p.visible == false and p.solid == true and p.name == 'it')");
}

TEST_F(SavedPiece, IdentifiersGoOnWhereTheyWere)
{
    Expect("for i = 1, 6 do instance_create(0, 0, probe) end instance_destroy(100001) instance_destroy(100005)",
           "instance_create(0, 0, probe)",
           "assert(instance_count(probe) == 4 and instance_find(probe, 1) == 100002) "
           "assert(instance_create(0, 0, probe) == 100006)");
}

TEST_F(SavedPiece, DeactivatedInstancesStaySo)
{
    Expect("vars.id = instance_create(0, 0, probe) instance_deactivate(vars.id)", "instance_activate(vars.id)",
           "assert(instance_count(probe) == 0 and instance_get(vars.id)) instance_activate(vars.id) "
           "assert(instance_count(probe) == 1)");
}

TEST_F(SavedPiece, RandomNumbersAndFramesGoOn)
{
    Expect("random_set_seed(5) vars.first = random() vars.second = random() random_set_seed(5) random()",
           "random_set_seed(77)", "assert(random() == vars.second and frame_number() == 1)");
}

TEST_F(SavedPiece, ViewsAsTheyWere)
{
    Expect("view_set_xport(0, 3) view_set_yport(0, 4) view_set_wport(0, 5) view_set_hport(0, 6) "
           "view_set_visible(2, true) view_set_visible(0, false) view_set_camera(5, 0)",
           "view_set_xport(0, 0) view_set_visible(2, false) view_set_camera(5, -1) view_set_camera(0, -1)",
           "assert(view_get_xport(0) == 3 and view_get_yport(0) == 4 and view_get_wport(0) == 5) "
           "assert(view_get_hport(0) == 6 and view_get_visible(2) == 1 and view_get_visible(0) == 0) "
           "assert(view_get_camera(5) == 0 and view_get_camera(0) == 1 and view_get_camera(7) == -1)");
}

TEST_F(SavedPiece, CamerasAsTheyWereAndNoOthers)
{
    Expect("vars.c = camera_create_view(1, 2, 3, 4, 45) local hole = camera_create() vars.d = camera_create() "
           "camera_destroy(hole) camera_set_update_script(vars.c, script_add(function() end))",
           "camera_destroy(vars.c) vars.e = camera_create() camera_create() camera_create()",
           "assert(camera_get_view_x(vars.c) == 1 and camera_get_view_height(vars.c) == 4) "
           "assert(camera_get_view_angle(vars.c) == 45) assert(camera_get_update_script(vars.c) >= 0) "
           "assert(camera_get_view_x(vars.d) == 0 and camera_get_view_x(vars.d + 1) == -1) "
           "assert(camera_create() == vars.d - 1 and camera_create() == vars.d + 1)");
}

TEST_F(SavedPiece, CallbacksThatAreFunctionsAreLeftOut)
{
    Expect("camera_set_begin_script(view_get_camera(0), function() end)", "",
           "assert(camera_get_begin_script(view_get_camera(0)) == -1)");
}

TEST_F(SavedPiece, SurfacesExistAgainWithTheirNumbersAndSizes)
{
    Expect("for i = 1, 4 do vars[i] = surface_create(10 * i, 7) end surface_free(vars[2]) view_set_surface_id(0, 3)",
           "surface_free(vars[4]) surface_create(1, 1) surface_create(2, 2)",
           "assert(surface_exists(vars[1]) and not surface_exists(vars[2]) and surface_exists(vars[4])) "
           "assert(view_get_surface_id(0) == 3 and not surface_exists(4)) assert(surface_create(1, 1) == vars[2])");
}

TEST_F(SavedPiece, ARoomThatWasAskedForInTheDrawingIsEnteredAfterwards)
{
    ASSERT_EQ(Play("room_add{ draw_gui = function() if frame_number() == 1 then room_goto(1) end end }\n"
                   "room_add{ create = function() log('second') end }",
                   2),
              "");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Log(), "");
    ASSERT_EQ(LoadAfresh(), "");
    ASSERT_EQ(PlayOn(1), "");
    EXPECT_EQ(Log(), "second\n");
}

TEST_F(SavedPiece, TheLoadEventIsThatOfTheSavedRoom)
{
    ASSERT_EQ(Play("room_add{ step = function() room_goto(1) end, load = function() log('first') end }\n"
                   "room_add{ create = function() log('create') end, load = function() log('second') end }"),
              "");
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(LoadAfresh(), "");
    EXPECT_EQ(Log(), "create\nsecond\n");
    EXPECT_EQ(PlayOn(3), "");
}

TEST_F(SavedPiece, TheSameGameGivesTheSameBytes)
{
    const std::string text = Game("vars.a = {} vars.b = {} for i = 1, 50 do vars.a['k' .. i] = { i } vars.b[i] = 'v' "
                                  "end instance_create(1, 2, probe)",
                                  "", "");
    ASSERT_EQ(Play(text, 1), "");
    ASSERT_EQ(Save(), "");
    const auto first = Bytes();
    ASSERT_EQ(Play(text, 1), "");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Bytes(), first);
    ASSERT_EQ(LoadAfresh(), "");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Bytes(), first);
}

// ---- what only the host sees ----

class SavedHostState : public SaveTest
{
};

TEST_F(SavedHostState, FlagsOfCamerasTheHighPointAndTheActiveCamera)
{
    ASSERT_EQ(Play("room_add{ views = { [0] = {}, [1] = {} } }"), "");
    CCamera* clone = g_CM.CloneCamera(1);
    CCamera* kept = g_CM.CloneCamera(1);
    kept->SetPersistent(true);
    const int cloneId = clone->GetID(), keptId = kept->GetID();
    g_CM.SetActiveCamera(keptId);
    const int highPoint = g_CM.m_InitialLoadHighPoint;
    const int defaultCamera = g_DefaultCameraID;
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(LoadAfresh(), "");
    EXPECT_EQ(g_CM.m_InitialLoadHighPoint, highPoint);
    EXPECT_EQ(g_DefaultCameraID, defaultCamera);
    EXPECT_EQ(game->OwnDefaultCamera(), defaultCamera);
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.GetCamera(keptId));
    EXPECT_TRUE(g_CM.GetCamera(cloneId)->IsCloned());
    EXPECT_FALSE(g_CM.GetCamera(cloneId)->isPersistent());
    EXPECT_TRUE(g_CM.GetCamera(keptId)->isPersistent());
    EXPECT_FALSE(g_CM.GetCamera(1)->IsCloned());
    EXPECT_EQ(game->rooms.OwnCameras(), (std::vector<int>{1, 2}));
    for (int entry = 0; entry <= 2; ++entry)
        EXPECT_EQ(g_CM.m_roomcameras[entry], g_CM.GetCamera(entry));
    EXPECT_EQ(g_CM.Validate(), nullptr);
    game->EndRoom(); // the room's cameras and the clone go, as they would have
    EXPECT_EQ(g_CM.GetCamera(1), nullptr);
    EXPECT_EQ(g_CM.GetCamera(cloneId), nullptr);
    EXPECT_NE(g_CM.GetCamera(keptId), nullptr);
}

TEST_F(SavedHostState, ACameraThatTookARoomCamerasNumberIsNotTheRooms)
{
    ASSERT_EQ(Play("room_add{ views = { [0] = {} } }"), "");
    g_CM.DestroyCamera(1);
    ASSERT_EQ(g_CM.CreateCamera()->GetID(), 1);
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(LoadAfresh(), "");
    game->EndRoom();
    EXPECT_NE(g_CM.GetCamera(1), nullptr);
}

TEST_F(SavedHostState, InstancesDestroyedInTheDrawingAreGoneAfterTheNextStep)
{
    ASSERT_EQ(Play("thing = object_add{} room_add{ instances = { {thing, 0, 0}, {thing, 1, 1} },\n"
                   "draw_gui = function() instance_destroy(100000) end }"),
              "");
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(LoadAfresh(), "");
    ASSERT_EQ(game->world.Instances().size(), 2u);
    EXPECT_TRUE(game->world.Find(100000)->IsDestroyed());
    EXPECT_EQ(PlayOn(1), "");
    EXPECT_EQ(game->world.Find(100000), nullptr);
    EXPECT_NE(game->world.Find(100001), nullptr);
}

TEST_F(SavedHostState, TilesThatChangedWhilePlaying)
{
    const std::string pictures = std::string(GAMES_DIR) + "/canyon/tiles.png";
    std::filesystem::copy_file(pictures, directory.Path("tiles.png"));
    const std::string text = "local s = sprite_add_sheet('tiles.png', 16, 16)\n"
                             "map = tilemap_add{ sprite = s, columns = 3, rows = 2, data = {1, 2, 0, 1, 0, 2} }\n"
                             "room_add{ step = function() if frame_number() == 0 then tilemap_set(map, 2, 1, 1)\n"
                             "vars.later = tilemap_add{ sprite = s, columns = 1, rows = 1, data = {2} } end\n"
                             "if frame_number() == 1 then tilemap_set(map, 0, 0, 0)\n"
                             "tilemap_add{ sprite = s, columns = 1, rows = 1 } end end,\n"
                             "load = function() assert(tilemap_get(map, 0, 0) == 1 and tilemap_get(map, 2, 1) == 1)\n"
                             "assert(tilemap_get(map, 2, 0) == 0 and tilemap_get(vars.later, 0, 0) == 2)\n"
                             "log('checked') end }";
    ASSERT_EQ(Play(text), "");
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(PlayOn(1), "");
    ASSERT_EQ(Load(), "");
    EXPECT_EQ(game->CurrentPainter()->TileMapNumbers(), 3); // numbers are never taken back
    Runner::TileMapInfo info;
    EXPECT_FALSE(game->CurrentPainter()->FindTileMap(2, info));
    ASSERT_EQ(LoadAfresh(), "");
    EXPECT_EQ(Log(), "checked\nchecked\n");
}

// ---- asking from a script ----

class AskedSave : public SaveTest
{
};

TEST_F(AskedSave, HappensAtTheEndOfTheFrame)
{
    ASSERT_EQ(Play("room_add{ step = function()\n"
                   "if frame_number() == 2 then assert(game_save('a/slot.sav')) vars.n = 1 end\n"
                   "if frame_number() == 4 and not vars.back then assert(game_load('a/slot.sav')) vars.n = 2 end end,\n"
                   "load = function() log(frame_number() .. ' ' .. vars.n) vars.back = true end }",
                   5),
              "");
    EXPECT_EQ(Log(), "3 1\n");
    EXPECT_EQ(game->FrameNumber(), 3);
    EXPECT_EQ(PlayOn(4), "");
    EXPECT_EQ(game->FrameNumber(), 7);
}

TEST_F(AskedSave, OneRequestAFrame)
{
    EXPECT_EQ(Run("assert(game_save('a')) assert(not game_save('b')) assert(not game_load('a'))"), "");
    EXPECT_EQ(Log(), "game_save() - another save or load was asked for in this frame already\n"
                     "game_load() - another save or load was asked for in this frame already\n");
    EXPECT_TRUE(std::filesystem::exists(directory.Path("save/a")));
    EXPECT_FALSE(std::filesystem::exists(directory.Path("save/b")));
}

TEST_F(AskedSave, ANameOutsideTheSaveAreaIsRefused)
{
    EXPECT_EQ(Run("assert(not game_save('../x')) assert(not game_load('/etc/passwd')) assert(not game_save(''))"), "");
    EXPECT_FALSE(std::filesystem::exists(directory.Path("x")));
    const std::string log = Log();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 3) << log;
}

TEST_F(AskedSave, AMissingOrForeignFileIsRefusedAtOnce)
{
    std::filesystem::create_directory(directory.Path("save"));
    directory.Write("save/text", "not a save");
    EXPECT_EQ(Run("assert(not game_load('none')) assert(not game_load('text'))"), "");
    EXPECT_EQ(Log(), "game_load() - cannot open " + directory.Path("save/none") + ": No such file or directory\n" +
                         "game_load() - cannot load " + directory.Path("save/text") + ": it is no saved game\n");
}

TEST_F(AskedSave, AnErrorInTheLoadEventIsTheGames)
{
    EXPECT_EQ(
        Play("room_add{ step = function() if frame_number() == 0 then game_save('a') else game_load('a') end end,\n"
             "load = function() error('too bad') end }",
             5),
        "main.lua:2: too bad");
}

// ---- refusals ----

class RefusedLoad : public SaveTest
{
protected:
    std::string Reason() { return Load().substr(("cannot load " + SavePath() + ": ").size()); }
};

TEST_F(RefusedLoad, AnotherGame)
{
    ASSERT_EQ(Play("room_add{}"), "");
    ASSERT_EQ(Save(), "");
    game.reset();
    options.file = directory.Write("other.lua", "room_add{} -- other");
    game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
    ASSERT_TRUE(game->Load());
    EXPECT_EQ(Reason(), "it is of another game (main.lua, not other.lua)");
}

TEST_F(RefusedLoad, AChangedGame)
{
    directory.Write("part.lua", "room_add{}");
    ASSERT_EQ(Play("include('part.lua')"), "");
    ASSERT_EQ(Save(), "");
    directory.Write("part.lua", "room_add{ width = 7 }");
    ASSERT_EQ(Play("include('part.lua')"), "");
    EXPECT_EQ(Reason(),
              "the game's files have changed since it was made: declare game_version(n), so that saves outlive that");
}

TEST_F(RefusedLoad, AnotherSeedWhenTheMainFileHasUsedIt)
{
    ASSERT_EQ(Play("local n = random() room_add{}"), "");
    ASSERT_EQ(Save(), "");
    options.seed = 9;
    ASSERT_EQ(Play("local n = random() room_add{}"), "");
    EXPECT_EQ(Reason(), "it was made with --seed 1, this game was started with --seed 9");
}

TEST_F(RefusedLoad, ButNotWhenItHasNot)
{
    const std::string text = "room_add{ step = function() vars.n = random() end }";
    ASSERT_EQ(Play(text), "");
    ASSERT_EQ(Save(), "");
    options.seed = 9;
    ASSERT_EQ(Play(text), "");
    EXPECT_EQ(Load(), "");
}

TEST_F(RefusedLoad, ObjectsAndRoomsThatWereAddedWhilePlaying)
{
    ASSERT_EQ(Play("room_add{ step = function() instance_create(0, 0, object_add{}) end }"), "");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Load(), ""); // it is still there
    game = nullptr;
    game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
    ASSERT_TRUE(game->Load());
    EXPECT_EQ(Reason(), "it names object 0, which the game's main file does not add");
}

TEST_F(RefusedLoad, ANewerVersion)
{
    ASSERT_EQ(Play("room_add{}"), "");
    ASSERT_EQ(Save(), "");
    std::string bytes = directory.Read("state.sav");
    bytes[8] = 3;
    directory.Write("state.sav", bytes);
    EXPECT_EQ(Reason(), "it was made by a newer runner (its version is 3, this one reads 2)");
}

TEST_F(RefusedLoad, ADirectoryAndAnEmptyFile)
{
    ASSERT_EQ(Play("room_add{}"), "");
    directory.Write("state.sav", "");
    EXPECT_EQ(Reason(), "it is no saved game");
    std::filesystem::remove(SavePath());
    std::filesystem::create_directory(SavePath());
    EXPECT_EQ(Load(), "cannot read " + SavePath() + ": not a file");
}

TEST_F(RefusedLoad, ChangesNothing)
{
    ASSERT_EQ(Play("room_add{ views = { [0] = {} }, step = function() vars.n = frame_number() end }", 3), "");
    ASSERT_EQ(Save(), "");
    std::string bytes = directory.Read("state.sav");
    const std::string before = bytes;
    bytes.back() = static_cast<char>(bytes.back() ^ 1);
    directory.Write("state.sav", bytes);
    EXPECT_EQ(Reason(), "it is damaged: its checksum is wrong");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(directory.Read("state.sav"), before);
}
} // namespace
