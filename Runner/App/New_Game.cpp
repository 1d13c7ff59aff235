#include "Runner/App/New_Game.h"

#include "Runner/Base/Whole_File.h"

#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace Runner
{
namespace
{
constexpr size_t NAME_LIMIT = 64;
constexpr mode_t FOLDER_MODE = 0777; // less the user's mask
constexpr char SIGNS[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-";
constexpr char NO_STARTS[] = "0123456789_-";

// The first step of Docs/Your_Game.md, where a test compares it. NAME stands for the game's.
constexpr char GAME[] = R"(-- NAME: arrow keys move the hero
screen_set_size(640, 360)

local hero = object_add{
    name = "hero", bbox = {-8, -24, 8, 0},
    step = function(self)
        if key_down("right") then self.x = self.x + 3 end
        if key_down("left") then self.x = self.x - 3 end
    end,
    draw = function(self)
        draw_set_colour(colours.orange)
        draw_rectangle(self.x - 8, self.y - 24, self.x + 8, self.y)
    end,
}

room_add{
    name = "field", width = 1280, height = 384, background = colour_rgb(40, 60, 100),
    views = { [0] = { w = 640, h = 360, hborder = 200, target = hero } },
    instances = { {hero, 100, 300} },
}
)";

// The folder of a game that is being made. It goes again unless the game came into it.
class NewFolder
{
public:
    explicit NewFolder(const std::string& name) : m_name(name), m_isMade(mkdir(name.c_str(), FOLDER_MODE) == 0) {}
    ~NewFolder()
    {
        if (m_isMade)
            rmdir(m_name.c_str()); // without effect once a file is in it
    }
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;

    bool IsMade() const { return m_isMade; }

private:
    const std::string& m_name;
    const bool m_isMade;
};

std::string TextOf(const std::string& name)
{
    std::string text = GAME;
    return text.replace(text.find("NAME"), 4, name);
}
} // namespace

std::string WrongGameName(const std::string& name)
{
    const bool isGood = !name.empty() && name.size() <= NAME_LIMIT &&
                        name.find_first_not_of(SIGNS) == std::string::npos && name.find_first_of(NO_STARTS) != 0;
    return isGood ? "" : "a game's name has letters, digits, - and _, a letter first, and at most 64 of them";
}

bool MakeNewGame(const std::string& name, std::string& told)
{
    const std::string text = TextOf(name), file = name + "/" + name + ".lua";
    const NewFolder folder(name);
    if (!folder.IsMade())
    {
        told = errno == EEXIST ? name + " is there already, and is left as it is: choose another name"
                               : "cannot make the folder " + name + ": " + std::strerror(errno);
        return false;
    }
    if (!WriteFileAtomically(file, text.data(), text.size(), told))
        return false;
    told = "made " + file + "; play it: runner " + file + " --window (Docs/Your_Game.md goes on from here)";
    return true;
}
} // namespace Runner
