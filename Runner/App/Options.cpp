#include "Runner/App/Options.h"

#include "Runner/App/Camera_Values.h"
#include "Runner/App/New_Game.h"
#include "Runner/Base/Printable.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>

namespace Runner
{
namespace
{
constexpr int FRAMES_LIMIT = 100000000;
constexpr int SCALE_LIMIT = 16;
constexpr int PACE_SECONDS_LIMIT = 3600;
constexpr int MILLIONS_LIMIT = 1000000;
constexpr int MEGABYTES_LIMIT = 2048;
constexpr int MILLIONS_UNLESS_SET = 400; // in a window, and for a stranger's game
constexpr size_t HELP_COLUMN = 28;       // where the meaning of an option starts

// ---- values: each reader answers what is wrong with the text, empty when nothing is ----

std::string SetFlag(bool& flag)
{
    flag = true;
    return "";
}

// A decimal number, whatever zeros stand in front of it.
template <typename Number> std::string ReadWhole(const std::string& text, Number low, Number high, Number& number)
{
    const char* const end = text.data() + text.size();
    Number value = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value < low || value > high)
        return Quoted(text) + " is no whole number from " + std::to_string(low) + " to " + std::to_string(high);
    number = value;
    return "";
}

std::string ReadCount(const std::string& text, int& count) { return ReadWhole(text, 1, FRAMES_LIMIT, count); }

std::string ReadName(const std::string& text, std::string& name)
{
    name = text;
    return text.empty() ? "the name is empty" : "";
}

// "640x480".
std::string ReadSize(const std::string& text, int& width, int& height)
{
    const char* const textEnd = text.data() + text.size();
    const auto [widthEnd, widthError] = std::from_chars(text.data(), textEnd, width);
    const bool hasHeight = widthError == std::errc() && widthEnd != textEnd && *widthEnd == 'x';
    const auto [heightEnd, heightError] = std::from_chars(hasHeight ? widthEnd + 1 : textEnd, textEnd, height);
    const bool isSize = hasHeight && heightError == std::errc() && heightEnd == textEnd;
    if (!isSize)
        return Quoted(text) + " is no size: give WIDTHxHEIGHT, such as 1280x720";
    if (width < 1 || height < 1 || width > PICTURE_SIDE_LIMIT || height > PICTURE_SIDE_LIMIT)
        return Quoted(text) + " is no size: each side must be 1 to " + std::to_string(PICTURE_SIDE_LIMIT);
    return "";
}

// ---- the table ----

using Values = std::vector<std::string>;

struct Option
{
    const char* name;
    const char* values; // a word for each value that follows; empty for a flag
    const char* meaning;
    std::string (*take)(RunOptions& options, const Values& values); // null: ParseOptions answers it itself
};

constexpr Option OPTIONS[] = {
    {"--new", "NAME", "instead of playing: make the folder NAME with a game to start from",
     [](RunOptions& options, const Values& values)
     {
         options.newGame = values[0];
         return WrongGameName(values[0]);
     }},
    {"--frames", "COUNT", "frames to play; 60, or all of a recording, unless given",
     [](RunOptions& options, const Values& values)
     {
         options.isFramesGiven = true;
         return ReadCount(values[0], options.frames);
     }},
    {"--size", "WIDTHxHEIGHT", "size of the pictures, the game's screen unless given",
     [](RunOptions& options, const Values& values)
     { return ReadSize(values[0], options.game.width, options.game.height); }},
    {"--out", "DIRECTORY", "where pictures and saved files go, \"out\" unless given",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.out); }},
    {"--every", "COUNT", "write frame_NNNNN.png every so many frames, from frame 0 on",
     [](RunOptions& options, const Values& values) { return ReadCount(values[0], options.every); }},
    {"--contact-sheet", "NAME", "write twelve frames of the run as one picture of this name, .png or .bmp",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.contactSheet); }},
    {"--screenshot", "NAME",
     "write the last frame under this name, .png or .bmp; without any wish\n"
     "for pictures the last frame becomes last_frame.png",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.screenshot); }},
    {"--inspect", "", "the pictures show the camera inspector over the views and beside them",
     [](RunOptions& options, const Values&) { return SetFlag(options.inspect); }},
    {"--profile", "FILE", "write where the time of the last 300 frames went to this file",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.profile); }},
    {"--window", "", "play in a window, by keyboard, mouse and gamepads, until it is closed",
     [](RunOptions& options, const Values&) { return SetFlag(options.window); }},
    {"--menu", "DIRECTORY", "instead of a game, in a window: choose one of DIRECTORY/NAME/NAME.lua",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.menu); }},
    {"--scale", "COUNT", "pixels of the display for one of the game, as many as fit unless given",
     [](RunOptions& options, const Values& values) { return ReadWhole(values[0], 1, SCALE_LIMIT, options.scale); }},
    {"--fullscreen", "", "fill the display",
     [](RunOptions& options, const Values&) { return SetFlag(options.fullscreen); }},
    {"--unpaced", "", "in a window: play as fast as it can be shown, and say at the end how fast",
     [](RunOptions& options, const Values&) { return SetFlag(options.unpaced); }},
    {"--pace", "SECONDS", "in a window: play so long, and say at the end how evenly frames were shown",
     [](RunOptions& options, const Values& values)
     { return ReadWhole(values[0], 1, PACE_SECONDS_LIMIT, options.paceSeconds); }},
    {"--keys", "NAME=KEY,...", "move the keys that the window keeps for itself; F12 shows them",
     [](RunOptions& options, const Values& values) { return options.keys.Move(values[0]); }},
    {"--instructions", "MILLIONS",
     "end a game whose scripts run more instructions of Lua in one frame;\n"
     "400 in a window and with --confined, about two seconds, else none; 0: none",
     [](RunOptions& options, const Values& values)
     { return ReadWhole(values[0], 0, MILLIONS_LIMIT, options.instructionMillions); }},
    {"--memory", "MEGABYTES", "what scripts may use, 1024 unless given",
     [](RunOptions& options, const Values& values)
     {
         int megabytes = 0;
         std::string wrong = ReadWhole(values[0], 1, MEGABYTES_LIMIT, megabytes);
         options.game.limits.memory = static_cast<size_t>(megabytes) << 20;
         return wrong;
     }},
    {"--confined", "",
     "for a game of a stranger: the process reads the game's folder, writes\n"
     "into --out, and reaches no other file, program or network",
     [](RunOptions& options, const Values&) { return SetFlag(options.confined); }},
    {"--no-draw", "", "play without drawing and without pictures",
     [](RunOptions& options, const Values&)
     {
         options.game.draw = false;
         return std::string();
     }},
    {"--trace", "FILE", "write what each view shows as text to this file",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.game.trace); }},
    {"--save-at", "FRAME FILE", "save the game in the file once so many frames of it have been played",
     [](RunOptions& options, const Values& values)
     {
         const std::string wrong = ReadCount(values[0], options.saveAt.first);
         return wrong.empty() ? ReadName(values[1], options.saveAt.second) : wrong;
     }},
    {"--load", "FILE", "go on from a saved game, with its seed unless --seed is given",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.load); }},
    {"--compare-saves", "A B", "instead of a game: tell how two saved games differ, thumbnails left out",
     [](RunOptions& options, const Values& values)
     {
         const std::string wrong = ReadName(values[0], options.compareSaves.first);
         return wrong.empty() ? ReadName(values[1], options.compareSaves.second) : wrong;
     }},
    {"--record", "FILE", "keep in this file what enters the game: input, saves that it loads",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.record); }},
    {"--replay", "FILE", "play a recording: the same frames again, and nothing is saved",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.replay); }},
    {"--anyway", "", "replay a game that has changed since it was recorded",
     [](RunOptions& options, const Values&) { return SetFlag(options.anyway); }},
    {"--compare", "GAME",
     "play a recording with this game, too: side by side in a window, or six\n"
     "frames of each as comparison.png, or what --contact-sheet names",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.compare); }},
    {"--compare-values", "CAMERA.PROPERTY=NUMBER,...",
     "the same, but the other game has these values of cameras as soon as they\n"
     "are there, such as 0.border_x=200; without --compare it is the same game",
     [](RunOptions& options, const Values& values) { return ReadCameraValues(values[0], options.values); }},
    {"--watch", "", "in a window: start the game anew when its files change, up to the same frame",
     [](RunOptions& options, const Values&) { return SetFlag(options.watch); }},
    {"--input", "FILE", "keys, mouse and gamepads from a text (Docs/Recordings.md)",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.input); }},
    {"--settings", "FILE",
     "where the game's settings are read and kept; in a window\n"
     "settings.txt in the save area unless given, without one nowhere",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.settings); }},
    {"--kit", "DIRECTORY", "the camera kit for games that have none of their own, the Runner's own unless given",
     [](RunOptions& options, const Values& values) { return ReadName(values[0], options.game.kit); }},
    {"--seed", "NUMBER", "of the random numbers, 1 unless given",
     [](RunOptions& options, const Values& values)
     {
         options.isSeedGiven = true;
         return ReadWhole(values[0], uint64_t{0}, std::numeric_limits<uint64_t>::max(), options.game.seed);
     }},
    {"--quiet", "", "no log of the game, no progress; failures are shown all the same",
     [](RunOptions& options, const Values&) { return SetFlag(options.quiet); }},
    {"--check", "", "walk all structures after each frame, and look for leaks at the end",
     [](RunOptions& options, const Values&) { return SetFlag(options.game.check); }},
    {"--strict", "", "warn of variables of instances and vars that are read and were never set",
     [](RunOptions& options, const Values&) { return SetFlag(options.game.strict); }},
    {"--gc-stress", "", "collect wherever a collection may happen",
     [](RunOptions& options, const Values&) { return SetFlag(options.game.gcStress); }},
    {"--version", "", "print the version", nullptr},
    {"--help", "", "print this", nullptr},
    {"--", "", "what follows is the game, even when it starts with a dash", nullptr},
};

const Option* FindOption(const std::string& name)
{
    const auto found = std::find_if(std::begin(OPTIONS), std::end(OPTIONS),
                                    [&name](const Option& option) { return option.name == name; });
    return found == std::end(OPTIONS) ? nullptr : &*found;
}

size_t ValueCount(const Option& option)
{
    const std::string_view words = option.values;
    return words.empty() ? 0 : 1 + static_cast<size_t>(std::count(words.begin(), words.end(), ' '));
}

// ---- the arguments ----

class Parser
{
public:
    Parser(int argc, char** argv, RunOptions& options)
        : m_arguments(argv + std::min(argc, 1), argv + argc), m_options(options)
    {
    }

    ParseResult Parse()
    {
        while (m_next < m_arguments.size() && m_result == ParseResult::Play)
            TakeArgument(m_arguments[m_next++]);
        if (m_result == ParseResult::Play)
            CheckTogether();
        return m_result;
    }

    const std::string& Wrong() const { return m_wrong; }

private:
    void Refuse(const std::string& why)
    {
        m_wrong = why;
        m_result = ParseResult::Wrong;
    }

    void Answer(ParseResult result) { m_result = result; }

    void AnswerAlone(ParseResult result, const std::string& option)
    {
        const bool isAlone = m_given.size() == 1 && !m_hasGame;
        return isAlone ? Answer(result) : Refuse(option + " plays nothing: leave out what else is given");
    }

    void TakeArgument(const std::string& argument)
    {
        const bool isOption = !m_onlyGame && argument.size() > 1 && argument[0] == '-';
        if (!isOption)
            TakeGame(argument);
        else if (argument == "--")
            m_onlyGame = true;
        else if (argument == "-h" || argument == "--help")
            m_result = ParseResult::Help;
        else if (argument == "--version")
            m_result = ParseResult::Version;
        else
            TakeOption(argument);
    }

    void TakeGame(const std::string& name)
    {
        if (m_hasGame)
            return Refuse(Quoted(name) + " is one game too many: " + Quoted(m_options.game.file) + " is played");
        m_hasGame = true;
        Use("GAME", ReadName(name, m_options.game.file));
    }

    // "--name" with its values behind it, or "--name=value".
    void TakeOption(const std::string& argument)
    {
        const size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const Option* const option = FindOption(name);
        if (option == nullptr || option->take == nullptr)
            return Refuse(Printable(name) + ": there is no such option");
        if (std::find(m_given.begin(), m_given.end(), option) != m_given.end())
            return Refuse(name + " is given twice");
        m_given.push_back(option);
        Values values;
        if (equals != std::string::npos)
            values.push_back(argument.substr(equals + 1));
        if (values.size() > ValueCount(*option))
            return Refuse(name + " takes no value");
        while (values.size() < ValueCount(*option) && HasValue())
            values.push_back(m_arguments[m_next++]);
        if (values.size() < ValueCount(*option))
            return Refuse(name + ": a value is missing: " + name + " " + option->values);
        Use(name, option->take(m_options, values));
    }

    // An option is no value: who forgets a value should not lose the option behind it.
    bool HasValue() const { return m_next < m_arguments.size() && m_arguments[m_next].compare(0, 2, "--") != 0; }

    void Use(const std::string& name, const std::string& wrong)
    {
        if (!wrong.empty())
            Refuse(name + ": " + wrong);
    }

    void CheckTogether()
    {
        if (!m_options.newGame.empty())
            return AnswerAlone(ParseResult::NewGame, "--new");
        if (!m_options.compareSaves.first.empty())
            return AnswerAlone(ParseResult::CompareSaves, "--compare-saves");
        if (!m_options.menu.empty() && m_hasGame)
            return Refuse("--menu takes the place of GAME: leave one of them out");
        if (m_options.menu.empty() && !m_hasGame)
            return Refuse("GAME is required");
        FitToWindow();
        if (m_result != ParseResult::Play)
            return;
        if (m_options.inspect && !m_options.game.draw)
            return Refuse("--inspect draws over pictures, and --no-draw makes none: leave one of them out");
        CheckReplay();
        if (m_result == ParseResult::Wrong)
            return;
        const std::pair<const char*, bool> pictures[] = {{"--every", m_options.every > 0},
                                                         {"--screenshot", !m_options.screenshot.empty()},
                                                         {"--contact-sheet", !m_options.contactSheet.empty()}};
        bool any = !m_options.replay.empty();
        for (const auto& [name, isWanted] : pictures)
        {
            any = any || isWanted;
            if (isWanted && !m_options.game.draw)
                return Refuse(std::string(name) + " makes a picture, and --no-draw makes none: leave one of them out");
        }
        if (!any && m_options.game.draw && !m_options.window)
            m_options.screenshot = "last_frame.png";
    }

    // A recording brings with it what the run starts from.
    void CheckReplay()
    {
        const std::pair<const char*, bool> others[] = {{"--load", !m_options.load.empty()},
                                                       {"--seed", m_options.isSeedGiven},
                                                       {"--input", !m_options.input.empty()},
                                                       {"--record", !m_options.record.empty()}};
        for (const auto& [name, isGiven] : others)
            if (isGiven && !m_options.replay.empty())
                return Refuse(std::string(name) + " and --replay: a recording has its own, leave one of them out");
        if (!m_options.menu.empty() && !(m_options.replay + m_options.record + m_options.input).empty())
            return Refuse("--menu chooses games, and a recording or a text of inputs is of one: name the game");
        if (m_options.replay.empty() && (m_options.anyway || m_options.Compares()))
            return Refuse(std::string(m_options.anyway ? "--anyway" : "--compare") + " is for --replay");
        if (m_options.watch && (!m_options.window || !m_options.replay.empty()))
            return Refuse("--watch is for a game that somebody plays: give --window, and no --replay");
        if (m_options.Compares())
            CheckComparison();
    }

    void CheckComparison()
    {
        const std::pair<const char*, bool> others[] = {
            {"--every", m_options.every > 0},          {"--screenshot", !m_options.screenshot.empty()},
            {"--inspect", m_options.inspect},          {"--contact-sheet", !m_options.contactSheet.empty()},
            {"--profile", !m_options.profile.empty()}, {"--save-at", m_options.saveAt.first > 0},
            {"--unpaced", m_options.unpaced},          {"--pace", m_options.paceSeconds > 0}};
        for (const auto& [name, isGiven] : others)
            if (isGiven && m_options.window)
                return Refuse(std::string(name) + " is not for a comparison in a window: leave one of them out");
        if (m_options.contactSheet.empty() && !m_options.window)
            m_options.contactSheet = "comparison.png";
    }

    void CheckPace()
    {
        if (m_options.paceSeconds == 0)
            return;
        if (!m_options.window)
            return Refuse("--pace needs --window: nothing else is shown");
        if (m_options.unpaced || m_options.isFramesGiven)
            Refuse(std::string("--pace plays at the pace of a clock, for as long as it says: leave out ") +
                   (m_options.unpaced ? "--unpaced" : "--frames"));
    }

    // A window ends when it is closed, and a script in it must come back.
    void FitToWindow()
    {
        m_options.window = m_options.window || !m_options.menu.empty();
        const bool needsWindow = m_options.fullscreen || m_options.scale > 0;
        if (needsWindow && !m_options.window)
            return Refuse("--scale and --fullscreen need --window");
        if (m_options.unpaced && !m_options.window)
            return Refuse("--unpaced needs --window: nothing else waits");
        if (m_options.window && m_options.confined)
            return Refuse("--confined is for runs without a window: leave one of them out");
        CheckPace();
        if (m_options.window && !m_options.game.draw)
            return Refuse("--window shows pictures, and --no-draw makes none: leave one of them out");
        if (m_options.window && !m_options.isFramesGiven)
            m_options.frames = m_options.paceSeconds > 0 ? m_options.paceSeconds * FRAMES_A_SECOND : FRAMES_LIMIT;
        m_options.isFramesGiven = m_options.isFramesGiven || m_options.paceSeconds > 0;
        if (m_options.instructionMillions < 0)
            m_options.instructionMillions = m_options.window || m_options.confined ? MILLIONS_UNLESS_SET : 0;
        m_options.game.limits.instructions = int64_t{m_options.instructionMillions} * 1000000;
    }

    const std::vector<std::string> m_arguments;
    RunOptions& m_options;
    std::vector<const Option*> m_given;
    size_t m_next = 0;
    bool m_onlyGame = false; // after "--"
    bool m_hasGame = false;
    ParseResult m_result = ParseResult::Play;
    std::string m_wrong;
};

// A line end in the meaning starts a further line in the same column.
void AddHelp(const Option& option, std::string& text)
{
    std::string line = std::string("  ") + option.name + (*option.values == '\0' ? "" : " ") + option.values;
    line.resize(std::max(line.size() + 1, HELP_COLUMN), ' ');
    for (const char* c = option.meaning; *c != '\0'; ++c)
        line += *c == '\n' ? "\n" + std::string(HELP_COLUMN, ' ') : std::string(1, *c);
    text += line + "\n";
}
} // namespace

ParseResult ParseOptions(int argc, char** argv, RunOptions& options, FILE* err)
{
    Parser parser(argc, argv, options);
    const ParseResult result = parser.Parse();
    if (result == ParseResult::Wrong)
        std::fprintf(err, "runner: %s (runner --help tells more)\n", parser.Wrong().c_str());
    return result;
}

std::string HelpText()
{
    std::string text = "Plays a Lua game and draws its rooms through the cameras of their views.\n"
                       "Usage: runner [OPTIONS] GAME\n"
                       "GAME is a Lua file, or a zip archive of a game's folder.\n\n";
    for (const Option& option : OPTIONS)
        AddHelp(option, text);
    return text + "\nCtrl-C and SIGTERM end the run after the frame; what is written at its end is written. A second\n"
                  "one ends it at once. Status: 0 done, 1 the game or a file failed, 2 wrong usage, 130 interrupted,\n"
                  "143 terminated.\n";
}
} // namespace Runner
