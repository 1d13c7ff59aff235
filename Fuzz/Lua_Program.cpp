// Games written by a grammar of what scripts can call (Program_Writer.h), played with every walker on.
//
// Input: how it is played, then decisions. With FUZZ_SHOW in the environment the game's text is printed.

#include "Fuzz/Game_Session.h"
#include "Fuzz/Program_Writer.h"

#include "Runner/Api/Api.h"
#include "Runner/Host/Files.h"
#include "Runner/Host/Memory.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace
{
using namespace Runner;

constexpr int FRAMES = 4;

struct Outcome
{
    std::string failure;
    uint64_t frameSum = 0;
};

// A game that was loaded or saved in an earlier play would change this one.
void EmptyTheSaveArea()
{
    std::error_code ignored;
    std::filesystem::remove_all(Fuzz::WorkFolder() + "/saves", ignored);
}

InputFrame SomeInput(int frame)
{
    InputFrame input;
    input.mouse.x = static_cast<float>(100 * frame);
    input.mouse.buttons.held = static_cast<uint32_t>(frame);
    input.pads[0].connected = frame % 2 == 0;
    return input;
}

Outcome Play(const std::string& file, bool gcStress)
{
    const size_t blocks = CurrentMemoryUse().blocks;
    GameOptions options = Fuzz::CheckedOptions(file);
    options.gcStress = gcStress;
    Outcome outcome;
    EmptyTheSaveArea();
    {
        Game game(options, OpenApi);
        bool goesOn = game.Load();
        for (int frame = 0; frame < FRAMES && goesOn && !game.HasEnded(); ++frame)
        {
            goesOn = game.Frame(SomeInput(frame));
            outcome.frameSum ^= game.FrameSum() + static_cast<uint64_t>(frame);
        }
        Fuzz::RequireWhole(game);
        outcome.failure = game.Failure();
    }
    Fuzz::RequireNothingLeft(blocks);
    return outcome;
}

// Memory may run out elsewhere when more is collected.
bool IsOfMemory(const std::string& failure) { return failure.find("memory") != std::string::npos; }

void PlayBothWays(const std::string& file)
{
    const Outcome plain = Play(file, false), stressed = Play(file, true);
    if (IsOfMemory(plain.failure) || IsOfMemory(stressed.failure))
        return;
    if (plain.failure != stressed.failure)
        Fuzz::Report("collections have changed a failure: " + plain.failure + " | " + stressed.failure);
    Fuzz::Require(plain.frameSum == stressed.frameSum, "collections have changed what a game does");
}

// What every game needs is in place once.
void Prepare()
{
    Fuzz::SilenceConsole();
    SetSaveArea(Fuzz::WorkFolder() + "/saves");
    std::filesystem::copy_file(SOURCE_DIR "/Fuzz/Games/tiles.png", Fuzz::WorkFolder() + "/tiles.png");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool isPrepared = (Prepare(), true);
    const Fuzz::SlowInputWatch watch(data, size);
    Fuzz::Choices choices(data, size);
    const bool bothWays = isPrepared && choices.OneIn(4), gcStress = choices.OneIn(2);
    const std::string text = Fuzz::ProgramWriter(choices).Write();
    if (std::getenv("FUZZ_SHOW") != nullptr)
        std::fprintf(stderr, "%s", text.c_str());
    const std::string file = Fuzz::WriteWorkFile("program.lua", text);
    if (bothWays)
        PlayBothWays(file);
    else
        Play(file, gcStress);
    return 0;
}
