#pragma once
// A game that is watched while it plays inside the test.

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Inspect/Panel_Content.h"
#include "Tests/Runner/Support/Game_Support.h"

namespace RunnerTest
{
// A room of 860 x 200 whose one view of 320 x 180 follows the player with borders of 80 and 40 and speeds of 6.
constexpr const char* FOLLOWING_GAME = R"(
player = object_add{ name = "player", bbox = {-8, -8, 8, 8} }
room_add{ name = "field", width = 860, height = 200,
    views = { [0] = { x = 530, y = 0, w = 320, h = 180, wport = 640, hport = 360,
                      hborder = 80, vborder = 40, hspeed = 6, vspeed = 6, target = player } },
    instances = { {player, 812.4, 90} } }
)";

class InspectTest : public GameTest
{
protected:
    // Plays the text with the notes attached.
    std::string Watch(const std::string& text, int frames = 1)
    {
        game.reset();
        options.file = directory.Write("main.lua", text);
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        game->observer = &notes;
        return game->Load() ? PlayOn(frames) : game->Failure();
    }

    Runner::PanelContent Panel(int selected = -1) const { return Runner::DescribePanel(*game, notes, selected); }

    // The row of the selected camera; its value is "no such row" when there is none.
    Runner::PanelRow Row(const std::string& section, const std::string& name, int selected = -1) const
    {
        for (const Runner::PanelSection& each : Panel(selected).sections)
            for (const Runner::PanelRow& row : each.rows)
                if (each.title == section && row.name == name)
                    return row;
        return {name, "no such row", "", "", "", "", nullptr};
    }

    Runner::FrameNotes notes;
};
} // namespace RunnerTest
