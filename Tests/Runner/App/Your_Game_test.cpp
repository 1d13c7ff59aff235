// Docs/Your_Game.md followed literally: its files are built up step by step, and played after each of them.

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Room/Room.h"
#include "Runner/Input/Input_Script.h"

#include "Tests/Runner/App/Command_Line_Fixture.h"
#include "Tests/Runner/Support/Documents.h"

#include <map>

namespace
{
using RunnerTest::CommandLine;

constexpr char KIT[] = SOURCE_DIR "/kit";

// ---- the files of the game ----

// What a piece is known by: its first line of code up to its value, arguments or fields.
std::string KeyOf(const std::string& piece)
{
    size_t begin = 0;
    while (piece.compare(begin, 2, "--") == 0)
        begin = piece.find('\n', begin) + 1;
    const std::string line = piece.substr(begin, piece.find('\n', begin) - begin);
    const std::string key = line.substr(0, line.find_first_of("=({"));
    return key.substr(0, key.find_last_not_of(' ') + 1);
}

// Pieces stand between empty lines, and each begins at the left margin.
std::vector<std::string> PiecesOf(const std::string& text)
{
    std::vector<std::string> pieces;
    std::istringstream lines(text);
    bool isNew = true;
    for (std::string line; std::getline(lines, line);)
    {
        const bool begins = isNew && !line.empty() && line[0] != ' ';
        if (begins)
            pieces.emplace_back();
        isNew = line.empty();
        if (!isNew && !pieces.empty())
            pieces.back() += line + "\n";
    }
    return pieces;
}

using File = std::vector<std::string>; // of pieces

File::iterator Find(File& file, const std::string& key)
{
    return std::find_if(file.begin(), file.end(), [&](const std::string& piece) { return KeyOf(piece) == key; });
}

// Takes out the pieces of a list with ", " between. Where the first of them stood; the end for none.
std::ptrdiff_t TakeOut(File& file, const std::string& keys)
{
    std::ptrdiff_t place = -1;
    std::istringstream list(keys);
    for (std::string key; std::getline(list >> std::ws, key, ',');)
    {
        const auto found = Find(file, key);
        EXPECT_NE(found, file.end()) << "there is no " << key;
        if (found == file.end())
            continue;
        const std::ptrdiff_t index = found - file.begin();
        if (place < 0)
            place = index;
        else if (index < place)
            --place; // what stands behind moves up
        file.erase(found);
    }
    return place;
}

// Puts the pieces of a block into a file, as the page tells its readers. instead: the pieces that go for it.
void PutInto(File& file, const std::string& block, const std::string& instead)
{
    const std::ptrdiff_t taken = TakeOut(file, instead);
    const std::ptrdiff_t last = static_cast<std::ptrdiff_t>(file.size()) - 1;
    std::ptrdiff_t place = taken >= 0 ? taken : std::max<std::ptrdiff_t>(last, 0);
    const std::vector<std::string> pieces = PiecesOf(block);
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece)
    {
        const auto found = Find(file, KeyOf(*piece));
        if (found == file.end())
        {
            file.insert(file.begin() + place, *piece);
            continue;
        }
        *found = *piece;
        place = found - file.begin();
    }
}

std::string Joined(const File& pieces)
{
    std::string text;
    for (const std::string& piece : pieces)
        text += (text.empty() ? "" : "\n") + piece;
    return text;
}

// ---- what each step leads to, worked out by hand ----

struct Scene
{
    int step;
    const char* input;
    int frames;
    int hero; // its place among the instances
    float x, y;
    float left; // edge of the first view
    int coins;  // -1: there are none yet
};

constexpr int FIRST_SMOOTH_STEP = 9; // the kit's camera goes to its place ever more slowly
constexpr char RIGHT[] = "0 key right down\n";

constexpr char APART[] = "0 key right down\n200 key right up\n";

// Ground lies at y = 352. A hero walks 3 units a frame and comes down in 10 frames: 1 + 2 + ... + 9, and the rest.
constexpr Scene SCENES[] = {
    {1, RIGHT, 30, 0, 190, 300, 0, -1},
    {1, RIGHT, 200, 0, 700, 300, 260, -1}, // 700 + 200 - 640
    {2, RIGHT, 30, 0, 190, 300, 0, -1},
    {3, "", 60, 0, 100, 352, 0, -1},
    {3, RIGHT, 30, 0, 190, 352, 0, -1},
    {4, "60 key up tap\n", 74, 0, 100, 247, 0, -1}, // 352 - 105, after 14 frames
    {4, "60 key up tap\n", 120, 0, 100, 352, 0, -1},
    {5, RIGHT, 60, 0, 280, 352, 60, -1}, // 280 + 100 - 320
    {5, RIGHT, 60, 1, 140, 352, 60, -1},
    {5, "0 key d down\n", 30, 1, 230, 352, 0, -1},
    {6, RIGHT, 60, 0, 280, 352, 80, -1}, // 280 + 120 - 320
    {7, RIGHT, 60, 0, 280, 352, 80, 1},  // the coin at 144, 336
    {7, "", 60, 0, 100, 352, 0, 1},      // the second hero stands beside it
    {9, "", 120, 0, 100, 352, 0, 1},
    {9, APART, 500, 0, 700, 352, 80, 1}, // 560 apart and 60 around: 680 shown, the middle is 420
    {10, "", 60, 0, 100, 352, 0, 1},
    {10, APART, 500, 0, 700, 352, 80, 1},
    {11, "0 key right down\n40 key f2 tap\n60 key right up\n80 key f3 tap\n", 81, 0, 223, 352, 0, 1},
};

class YourGame : public CommandLine
{
protected:
    void SetUp() override
    {
        m_before = std::filesystem::current_path();
        std::filesystem::current_path(directory.Path("."));
    }

    void TearDown() override { std::filesystem::current_path(m_before); }

    // Follows the page from the top to its end.
    void Follow()
    {
        std::istringstream lines(RunnerTest::Document("Your_Game.md"));
        std::string named;
        for (std::string line; std::getline(lines, line);)
        {
            if (line.rfind("## ", 0) == 0)
                CloseStep(std::atoi(line.c_str() + 3));
            else if (line.rfind("```", 0) == 0)
                TakeBlock(line.substr(3), BlockOf(lines), named);
            else
                Remember(line, named);
        }
        CloseStep(0);
    }

private:
    static std::string BlockOf(std::istringstream& lines)
    {
        std::string block;
        for (std::string line; std::getline(lines, line) && line != "```";)
            block += line + "\n";
        return block;
    }

    // The last file that the text has named in backticks.
    static void Remember(const std::string& line, std::string& named)
    {
        std::istringstream spans(line);
        int number = 0;
        for (std::string span; std::getline(spans, span, '`'); ++number)
            if (number % 2 == 1 && span.find_first_of(" /") == std::string::npos && span.find('.') != std::string::npos)
                named = span;
    }

    void TakeBlock(const std::string& head, const std::string& block, const std::string& named)
    {
        std::istringstream words(head);
        std::string kind, name, instead;
        words >> kind >> name >> instead >> instead; // "lua hop.lua instead of room_add, local coin"
        std::getline(words >> std::ws, instead);
        if (kind == "sh")
            return RunLines(block);
        EXPECT_TRUE(name.empty() || named == std::filesystem::path(name).filename()) << "the text speaks of " << named;
        if (kind == "text")
        {
            directory.Write(name, block);
            if (name.rfind("hop/", 0) == 0)
                files[name.substr(4)] = {block};
        }
        else if (kind == "lua")
            TakeLua(name, block, instead);
    }

    void TakeLua(const std::string& name, const std::string& block, const std::string& instead)
    {
        File& file = files[name];
        if (files.size() == 1 && file.empty()) // the first step shows what the runner has made
        {
            EXPECT_EQ(directory.Read("hop/" + name), block);
        }
        PutInto(file, block, instead);
        directory.Write("hop/" + name, Joined(file));
    }

    void RunLines(const std::string& block)
    {
        std::istringstream lines(block);
        for (std::string line; std::getline(lines, line);)
        {
            std::istringstream words(line);
            std::string program, word;
            std::vector<std::string> arguments;
            for (words >> program; words >> word;)
                arguments.push_back(word);
            if (program == "cp")
            {
                std::filesystem::copy_file(std::string(SOURCE_DIR) + "/" + arguments.at(0), arguments.at(1));
                continue;
            }
            if (program == "cmp")
            {
                EXPECT_EQ(directory.Read(arguments.at(0)), directory.Read(arguments.at(1)));
                EXPECT_NE(directory.Read(arguments.at(0)), "");
                continue;
            }
            ASSERT_EQ(program, "runner") << line;
            if (std::find(arguments.begin(), arguments.end(), "--window") != arguments.end())
            {
                arguments.back() = "--no-draw";
                arguments.insert(arguments.end(), {"--frames", "5", "--check"});
            }
            if (arguments.at(0) != "--new")
                arguments.insert(arguments.end(), {"--kit", KIT});
            EXPECT_EQ(Run(arguments), 0) << line << ": " << err;
        }
    }

    // The step before is told to its end: the game is played.
    void CloseStep(int next)
    {
        if (m_step > 0)
        {
            EXPECT_EQ(Run({"hop/hop.lua", "--kit", KIT, "--frames", "90", "--no-draw", "--check", "--quiet"}), 0)
                << "step " << m_step << ": " << err;
            for (const Scene& scene : SCENES)
                if (scene.step == m_step)
                    PlayScene(scene);
            ++closed;
        }
        m_step = next;
    }

    void PlayScene(const Scene& scene)
    {
        SCOPED_TRACE("step " + std::to_string(scene.step) + ", " + std::to_string(scene.frames) + " frames of\n" +
                     scene.input);
        Runner::SetSaveArea(directory.Path("out"));
        Runner::GameOptions options;
        options.file = "hop/hop.lua";
        options.draw = false;
        options.kit = KIT;
        Runner::Game game(options, Runner::OpenApi);
        ASSERT_TRUE(game.Load()) << game.Failure();
        Runner::InputScript input;
        std::string why;
        ASSERT_TRUE(input.Read(scene.input, "input", why)) << why;
        for (int i = 0; i < scene.frames; ++i)
        {
            Runner::InputFrame seen;
            input.Next(seen);
            ASSERT_TRUE(game.Frame(seen)) << game.Failure();
        }
        const Runner::Instance& hero = *game.world.Instances()[static_cast<size_t>(scene.hero)];
        EXPECT_EQ(hero.x, scene.x);
        EXPECT_EQ(hero.y, scene.y);
        const CCamera& camera = *g_CM.GetCamera(Run_Room->r_view[0]->cameraID);
        EXPECT_NEAR(camera.GetViewX(), scene.left, scene.step < FIRST_SMOOTH_STEP ? 0.0f : 0.5f);
        const auto& all = game.world.Instances();
        const auto left =
            std::count_if(all.begin(), all.end(), [](const auto& each) { return each->type.name == "coin"; });
        EXPECT_EQ(left, scene.coins < 0 ? 0 : 7 - scene.coins);
    }

    std::filesystem::path m_before;
    int m_step = 0;

protected:
    std::map<std::string, File> files; // by their names, as far as the page has come
    int closed = 0;                    // steps
};

// The finished game stands beside the page, for readers and for its picture. YOUR_GAME_WRITE=1 writes it anew.
TEST_F(YourGame, EachStepOfThePagePlaysAsItSaysAndTheLastIsTheFinishedGame)
{
    Follow();
    EXPECT_EQ(closed, 12);
    const std::string folder = std::string(SOURCE_DIR) + "/Docs/Your_Game/";
    for (const auto& [name, pieces] : files)
    {
        if (std::getenv("YOUR_GAME_WRITE") != nullptr)
            std::ofstream(folder + name, std::ios::binary) << Joined(pieces);
        EXPECT_EQ(RunnerTest::ReadText(folder + name), Joined(pieces))
            << name << ": play this test with YOUR_GAME_WRITE=1";
    }
    EXPECT_EQ(files.size(), 5u);
}

// ---- --new ----

TEST_F(YourGame, ANewGameCanBePlayedAtOnceAndTellsHow)
{
    ASSERT_EQ(Run({"--new", "my-game_2"}), 0) << err;
    EXPECT_EQ(out, "made my-game_2/my-game_2.lua; play it: runner my-game_2/my-game_2.lua --window (Docs/Your_Game.md "
                   "goes on from here)\n");
    EXPECT_EQ(directory.Read("my-game_2/my-game_2.lua").rfind("-- my-game_2: ", 0), 0u);
    EXPECT_EQ(Run({"my-game_2/my-game_2.lua", "--no-draw", "--check"}), 0) << err;
}

TEST_F(YourGame, ANewGameLeavesWhatIsThereAlone)
{
    directory.Write("file", "precious");
    std::filesystem::create_directory("folder");
    std::filesystem::create_symlink("nowhere", "link");
    for (const std::string name : {"file", "folder", "link"})
    {
        EXPECT_EQ(Run({"--new", name}), 1);
        EXPECT_EQ(err, "runner: " + name + " is there already, and is left as it is: choose another name\n");
    }
    EXPECT_EQ(directory.Read("file"), "precious");
    EXPECT_TRUE(std::filesystem::is_empty("folder"));
    EXPECT_FALSE(std::filesystem::exists("nowhere"));
}

TEST_F(YourGame, ANewGamesNameIsOneThatEverySystemTakes)
{
    const std::string longest(64, 'a');
    EXPECT_EQ(Run({"--new", longest}), 0) << err;
    for (const std::string& name :
         {std::string("a b"), std::string("../a"), std::string("a/b"), std::string("1a"), std::string("-a"),
          std::string("\xC3\xA4"), std::string("a.lua"), longest + "a", std::string(".")})
    {
        EXPECT_EQ(Run({"--new=" + name}), 2) << name;
        EXPECT_EQ(err,
                  "runner: --new: a game's name has letters, digits, - and _, a letter first, and at most 64 of them "
                  "(runner --help tells more)\n");
        EXPECT_FALSE(std::filesystem::exists(name) && name != ".") << name;
    }
    EXPECT_EQ(Run({"--new", "a", "game.lua"}), 2);
    EXPECT_EQ(Run({"--new", "a", "--quiet"}), 2);
    EXPECT_EQ(err, "runner: --new plays nothing: leave out what else is given (runner --help tells more)\n");
}

TEST_F(YourGame, AFolderThatCannotBeMadeIsOneLine)
{
    std::filesystem::create_directory("gone");
    std::filesystem::current_path("gone");
    std::filesystem::remove(directory.Path("gone"));
    EXPECT_EQ(Run({"--new", "a"}), 1);
    EXPECT_EQ(err, "runner: cannot make the folder a: No such file or directory\n");
}
} // namespace
