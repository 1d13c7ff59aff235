// Files that nobody's runner wrote: cut, damaged, made up. They are refused or they load; the game stays whole.

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Base/Random.h"
#include "Runner/Host/Memory.h"
#include "Tests/Runner/Save/Save_Support.h"

namespace
{
using RunnerTest::SaveTest;
using File = std::vector<uint8_t>;

#ifdef NDEBUG
constexpr int MUTATIONS = 100000;
#else // sanitizers and emulated machines are slow
constexpr int MUTATIONS = 3000;
#endif

int Mutations()
{
    const char* number = std::getenv("SAVE_MUTATIONS");
    return number == nullptr ? MUTATIONS : std::atoi(number);
}

// ---- the file's layout, written down here once more ----

constexpr size_t CHECKSUM = 16, TABLE = 24, SECTIONS = 8, CONTENT = TABLE + 16 * SECTIONS;

uint64_t Fnv(const uint8_t* bytes, size_t size)
{
    uint64_t hash = 14695981039346656037u;
    for (size_t i = 0; i < size; ++i)
        hash = (hash ^ bytes[i]) * 1099511628211u;
    return hash;
}

void Put(File& file, size_t place, uint64_t number)
{
    for (size_t i = 0; i < 8; ++i)
        file[place + i] = static_cast<uint8_t>(number >> (8 * i));
}

size_t Length(const File& file, size_t section)
{
    size_t length = 0;
    for (size_t i = 4; i > 0; --i)
        length = length << 8 | file[TABLE + 16 * section + 3 + i];
    return length;
}

void RepairChecksums(File& file)
{
    size_t place = CONTENT;
    for (size_t section = 0; section < SECTIONS; ++section)
    {
        const size_t length = std::min(Length(file, section), file.size() - place);
        Put(file, TABLE + 16 * section + 8, Fnv(file.data() + place, length));
        place += length;
    }
    Put(file, CHECKSUM, Fnv(file.data() + TABLE, file.size() - TABLE));
}

// ---- damage ----

class Mutator
{
public:
    void Damage(File& file, size_t from)
    {
        for (int times = m_random.Range(1, 4); times > 0; --times)
            DamageOnce(file, from);
    }

private:
    size_t Between(size_t first, size_t end)
    {
        return static_cast<size_t>(m_random.Range(static_cast<int>(first), static_cast<int>(end) - 1));
    }

    // In the content each section is damaged as often as any other: that of the cameras is as long as there have ever
    // been cameras in this process, and would take nearly all of the damage after a test with many.
    size_t Place(const File& file, size_t from)
    {
        const size_t section = Between(0, SECTIONS);
        const size_t length = Length(file, section);
        if (from != CONTENT || length == 0)
            return Between(from, file.size());
        size_t place = CONTENT;
        for (size_t before = 0; before < section; ++before)
            place += Length(file, before);
        return Between(std::min(place, file.size() - 1), std::min(place + length, file.size()));
    }

    void DamageOnce(File& file, size_t from)
    {
        static constexpr uint8_t EXTREMES[] = {0x00, 0x01, 0x7F, 0x80, 0xFF, 0xC0};
        const size_t place = Place(file, from);
        switch (m_random.Range(0, 3))
        {
        case 0: file[place] = static_cast<uint8_t>(file[place] ^ (1 << m_random.Range(0, 7))); break;
        case 1: file[place] = static_cast<uint8_t>(m_random.Next32() & 0xFF); break;
        case 2: file[place] = EXTREMES[m_random.Range(0, 5)]; break;
        default: // a word
            for (size_t i = place & ~size_t{3}; i < (place | 3) && i < file.size(); ++i)
                if (i >= from)
                    file[i] = EXTREMES[m_random.Range(0, 5)];
        }
    }

    Runner::Random m_random{4};
};

class HostileSave : public SaveTest
{
protected:
    // Something of everything that a save holds.
    void SetUp() override
    {
        Runner::SetConsoleQuiet(true);
        std::filesystem::copy_file(std::string(GAMES_DIR) + "/canyon/tiles.png", directory.Path("tiles.png"));
        options.file = directory.Write(
            "main.lua",
            "screen_set_size(64, 48)\n"
            "local sheet = sprite_add_sheet('tiles.png', 16, 16)\n"
            "local map = tilemap_add{ sprite = sheet, columns = 2, rows = 2, data = {1, 2, 3, 4} }\n"
            "local script = script_add(function() vars.runs = 1 end)\n"
            "local thing = object_add{ name = 'thing', sprite = sheet, step = function(self) self.x = self.x + 1 end "
            "}\n"
            "local child = object_add{ name = 'child', parent = thing }\n"
            "room_add{ width = 80, height = 60, instances = { {thing, 1, 2}, {child, 3, 4} },\n"
            "  views = { [0] = { w = 32, h = 24, target = thing }, [1] = {} },\n"
            "  create = function() surface_create(4, 4) camera_set_update_script(view_get_camera(1), script)\n"
            "    instance_get(100000).list = { 1, 2, { true } } vars.t = { 'a', 2.5, self = instance_get(100001) } "
            "end,\n"
            "  draw = function() draw_tilemap(map, 0, 0) end }\n"
            "room_add{ instances = { {thing, 1, 2} } }\n");
        Restart();
        ASSERT_EQ(PlayOn(2), "");
        ASSERT_EQ(Save(), "");
        good = Bytes();
        CompareHelpers();
    }

    void TearDown() override
    {
        game.reset();
        Runner::SetConsoleQuiet(false);
    }

    void Restart()
    {
        game.reset();
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        ASSERT_TRUE(game->Load()) << game->Failure();
    }

    // The layout above is that of the file.
    void CompareHelpers()
    {
        File file = good;
        Put(file, CHECKSUM, 0);
        RepairChecksums(file);
        ASSERT_EQ(file, good);
    }

    // True when the file was loaded. A game that a script's error has ended starts anew.
    bool Try(const File& file)
    {
        Runner::SavedState state;
        std::string why;
        const bool fits = Runner::DecodeState(file, state, why) && Runner::FitToGame(*game, state, "file", why);
        EXPECT_EQ(fits, why.empty());
        if (!fits)
            return false;
        Runner::RestoreGame(*game, state);
        PlayOn(2);
        EXPECT_EQ(g_CM.Validate(), nullptr);
        if (!game->Failure().empty())
        {
            EXPECT_EQ(game->Failure().find("check of"), std::string::npos) << game->Failure();
            Restart();
        }
        return true;
    }

    File good;
};

TEST_F(HostileSave, TheUndamagedFileLoads) { EXPECT_TRUE(Try(good)); }

TEST_F(HostileSave, EveryTruncationIsRefused)
{
    for (size_t size = 0; size < good.size(); ++size)
        ASSERT_FALSE(Try(File(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
}

TEST_F(HostileSave, EveryTruncationWithGoodChecksumsIsRefused)
{
    for (size_t size = CONTENT; size < good.size(); ++size)
    {
        File file(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
        RepairChecksums(file);
        ASSERT_FALSE(Try(file)) << size;
    }
}

TEST_F(HostileSave, EveryChangedByteIsRefused)
{
    File file = good;
    for (size_t place = 0; place < file.size(); ++place)
    {
        for (const int change : {0x01, 0x80, 0xFF})
        {
            file[place] = static_cast<uint8_t>(good[place] ^ change);
            ASSERT_FALSE(Try(file)) << place;
        }
        file[place] = good[place];
    }
}

TEST_F(HostileSave, AddedBytesAreRefused)
{
    File file = good;
    file.push_back(0);
    EXPECT_FALSE(Try(file));
    RepairChecksums(file);
    EXPECT_FALSE(Try(file));
}

TEST_F(HostileSave, RandomDamageIsRefused)
{
    Mutator mutator;
    for (int i = 0; i < Mutations(); ++i)
    {
        File file = good;
        mutator.Damage(file, 0);
        ASSERT_EQ(Try(file), file == good);
    }
}

TEST_F(HostileSave, RandomDamageWithGoodChecksumsBreaksNothing)
{
    const size_t blocks = Runner::CurrentMemoryUse().blocks;
    Mutator mutator;
    int loaded = 0;
    for (int i = 0; i < Mutations(); ++i)
    {
        File file = good;
        mutator.Damage(file, CONTENT);
        RepairChecksums(file);
        loaded += Try(file) ? 1 : 0;
    }
    EXPECT_GT(loaded, Mutations() / 20) << "too few got through to mean anything";
    EXPECT_LT(loaded, Mutations());
    ASSERT_TRUE(Try(good));
    Restart();
    EXPECT_LE(Runner::CurrentMemoryUse().blocks, blocks + 8);
}

// What on_load gets and what is found again by name is as hostile as the file.
TEST_F(HostileSave, RandomDamageOfASaveOfAnotherVersionBreaksNothing)
{
    directory.Write("main.lua", "game_version(2) function on_load(from, data) data.vars.count = #data.instances\n"
                                "for _, it in ipairs(data.instances) do it.was, it.x = it.object, it.x + 1 end end\n" +
                                    directory.Read("main.lua"));
    Restart();
    ASSERT_TRUE(Try(good));
    Mutator mutator;
    int loaded = 0;
    for (int i = 0; i < Mutations() / 4; ++i)
    {
        File file = good;
        mutator.Damage(file, CONTENT);
        RepairChecksums(file);
        loaded += Try(file) ? 1 : 0;
    }
    EXPECT_GT(loaded, Mutations() / 80) << "too few got through to mean anything";
}
} // namespace
