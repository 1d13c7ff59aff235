// The Runner around the module: the collector with many callbacks, a frame with many instances.

#include "Benchmarks/Bench.h"
#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Api/Api.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Files.h"

#include <cstdio>
#include <memory>
#include <string>

namespace
{
using namespace Bench;

// A game of text, loaded and without a picture: everything runs but the driver.
class TextGame
{
public:
    explicit TextGame(const std::string& text)
    {
        Runner::GameOptions options;
        options.file = Runner::SaveArea() + "/benchmark.lua";
        options.draw = false;
        std::string why;
        Require(Runner::PrepareSaveArea(why) &&
                    Runner::WriteFileAtomically(options.file, text.data(), text.size(), why),
                why);
        m_game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        Require(m_game->Load(), m_game->Failure());
        PlayFrame();
    }

    void PlayFrame() { Require(m_game->Frame(), m_game->Failure()); }

private:
    std::unique_ptr<Runner::Game> m_game;
};

constexpr const char* CALLBACKS = R"(
room_add{ name = "field", width = 1000, height = 1000, create = function()
    for i = 1, 10000 do
        local camera = camera_create()
        camera_set_begin_script(camera, function() return i end)
    end
end }
)";

void Collect(benchmark::State& state)
{
    TextGame game(CALLBACKS);
    for (auto _ : state)
        Runner::Collector::Collect(true);
    state.counters["live"] = Runner::Collector::GetStats().live;
}

// 500 of 100,000 instances lie in what the eight views show.
constexpr const char* CROWD = R"(
local seen = 500
local thing = object_add{ name = "thing", bbox = { -4, -4, 4, 4 }, draw = function() seen = seen + 1 end }
local views = {}
for i = 0, 7 do
    views[i] = { x = i * 400, y = 0, w = 320, h = 180, xport = i % 4 * 320, yport = i // 4 * 360, wport = 320,
                 hport = 360 }
end
room_add{ name = "field", width = 100000, height = 100000, views = views, create = function()
    for i = 0, 499 do instance_create(i % 8 * 400 + 20 + i // 8 % 16 * 15, 20 + i // 128 * 30, thing) end
    for i = 0, 99499 do instance_create(i % 316 * 300 + 500, 1000 + i // 316 * 300, thing) end
end, step = function()
    if seen ~= 500 then error("the views show " .. seen .. " instances") end
    seen = 0
end }
)";

void PlayCrowd(benchmark::State& state)
{
    TextGame game(CROWD);
    for (auto _ : state)
        game.PlayFrame();
}

void Check() {}

void AddRows()
{
    Row("collection with 10,000 callbacks", "ours", Collect);
    Row("frame, 100,000 instances, 8 views", "ours", PlayCrowd);
}
} // namespace

const Bench::Subject Bench::RUNNER = {Check, AddRows};
