#include "Runner/App/Options.h"

#include "Runner/Base/Printable.h"

#include <CLI/CLI.hpp>

#include <charconv>

namespace Runner
{
namespace
{
constexpr int FRAMES_LIMIT = 100000000;

// "640x480". Empty when it is good, else what is wrong, as CLI11's checks have it.
std::string ReadSize(const std::string& text, int& width, int& height)
{
    const char* const textEnd = text.data() + text.size();
    const auto [widthEnd, widthError] = std::from_chars(text.data(), textEnd, width);
    const bool hasHeight = widthError == std::errc() && widthEnd != textEnd && *widthEnd == 'x';
    const auto [heightEnd, heightError] = std::from_chars(hasHeight ? widthEnd + 1 : textEnd, textEnd, height);
    const bool isSize = hasHeight && heightError == std::errc() && heightEnd == textEnd;
    if (!isSize)
        return "\"" + Printable(text) + "\" is no size: give WIDTHxHEIGHT, such as 1280x720";
    if (width < 1 || height < 1 || width > PICTURE_SIDE_LIMIT || height > PICTURE_SIDE_LIMIT)
        return "\"" + Printable(text) + "\" is no size: each side must be 1 to " + std::to_string(PICTURE_SIDE_LIMIT);
    return "";
}

void Describe(CLI::App& app, RunOptions& options, std::string& size, bool& noDraw)
{
    app.add_option("GAME", options.game.file, "the game's Lua file")->required();
    app.add_option("--frames", options.frames, "frames to play, 60 unless given")->check(CLI::Range(1, FRAMES_LIMIT));
    app.add_option("--size", size, "size of the pictures, WIDTHxHEIGHT; the game's screen unless given");
    app.add_option("--out", options.out, "directory for pictures and saved files, \"out\" unless given");
    app.add_option("--every", options.every, "write a picture every so many frames, 1 unless given")
        ->check(CLI::Range(1, FRAMES_LIMIT));
    app.add_option("--contact-sheet", options.contactSheet, "show twelve frames of the run in this picture in --out");
    app.add_option("--trace", options.game.trace, "write what each view shows as text to this file");
    app.add_option("--seed", options.game.seed, "of the random numbers, 1 unless given");
    app.add_option("--screenshot", options.screenshot,
                   "write the last frame's picture under this name, .png or .bmp, into the directory");
    app.add_option("--save-at", options.saveAt, "save the game in the file once so many frames of it have been played")
        ->type_name("FRAME FILE")
        ->check(CLI::Range(1, FRAMES_LIMIT).application_index(0));
    app.add_option("--load", options.load, "go on from a saved game, with its seed unless --seed is given");
    app.add_flag("--quiet", options.quiet, "no log, no progress");
    app.add_flag("--no-draw", noDraw, "play without drawing and without pictures")->excludes("--screenshot");
    app.add_flag("--check", options.game.check, "walk all structures after each frame, and look for leaks at the end");
    app.add_flag("--gc-stress", options.game.gcStress, "collect wherever a collection may happen");
}

// The parser's messages may have several lines.
std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }
} // namespace

ParseResult ParseOptions(int argc, char** argv, RunOptions& options, FILE* out, FILE* err)
{
    CLI::App app("Plays a Lua game and draws its rooms through the cameras of their views.", "runner");
    std::string size;
    bool noDraw = false;
    Describe(app, options, size, noDraw);
    std::string wrong;
    try
    {
        app.parse(argc, argv);
        wrong = app.count("--size") == 0 ? "" : ReadSize(size, options.game.width, options.game.height);
        options.game.draw = !noDraw;
        options.isSeedGiven = app.count("--seed") > 0;
        if (wrong.empty())
            return ParseResult::Play;
        wrong = "--size: " + wrong;
    }
    catch (const CLI::CallForHelp&)
    {
        std::fputs(app.help().c_str(), out);
        return ParseResult::Done;
    }
    catch (const CLI::ParseError& error)
    {
        wrong = FirstLine(error.what());
    }
    std::fprintf(err, "runner: %s (runner --help tells more)\n", wrong.c_str());
    return ParseResult::Wrong;
}
} // namespace Runner
