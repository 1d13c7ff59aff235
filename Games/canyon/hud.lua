-- The signs on the screen: a label in each port, and the map with what each view shows of the room.

local runners = include("runners.lua")

local PANEL = { left = 642, top = 456, right = 1280, bottom = 720 }
local MAP = { left = 681, top = 460, width = 560, height = 240 }
local MAP_VIEW = 3

local PLAYERS = {
    { runner = runners.explorer, name = "EXPLORER", colour = colour_rgb(96, 184, 255), view = 0,
      label = "no speed limit, border 240 x 170", x = 8, y = 8 },
    { runner = runners.bandit, name = "BANDIT", colour = colour_rgb(255, 104, 104), view = 1,
      label = "at most 3 units a frame, border 300 x 200", x = 650, y = 8 },
    { runner = runners.robot, name = "ROBOT", colour = colour_rgb(112, 232, 160), view = 2,
      label = "chased, 45 degrees a second", x = 8, y = 464 },
}

local function draw_label(player)
    local text = player.name .. "  " .. player.label
    draw_set_colour(colour_rgb(24, 16, 32))
    draw_set_alpha(0.7)
    draw_rectangle(player.x, player.y, player.x + 20 + 8 * #text, player.y + 18)
    draw_set_alpha(1)
    draw_set_colour(player.colour)
    draw_rectangle(player.x, player.y, player.x + 4, player.y + 18)
    draw_text(player.x + 12, player.y + 3, player.name)
    draw_set_colour(colours.white)
    draw_text(player.x + 12 + 8 * (#player.name + 2), player.y + 3, player.label)
end

-- ---- the map ----

local function on_map(x, y)
    return MAP.left + x * MAP.width / room_width(), MAP.top + y * MAP.height / room_height()
end

-- The corners of what a camera shows, in the room. Its view matrix holds the directions that are right and up on the
-- screen, so a turned view needs no angles here.
local function corners_of(camera)
    local width, height = camera_get_view_width(camera), camera_get_view_height(camera)
    local x = camera_get_view_x(camera) + width / 2
    local y = camera_get_view_y(camera) + height / 2
    local matrix = camera_get_view_mat(camera)
    local right_x, right_y = matrix[1] * width / 2, matrix[5] * width / 2
    local down_x, down_y = matrix[2] * height / 2, matrix[6] * height / 2
    return {
        { x - right_x - down_x, y - right_y - down_y }, { x + right_x - down_x, y + right_y - down_y },
        { x + right_x + down_x, y + right_y + down_y }, { x - right_x + down_x, y - right_y + down_y },
    }
end

local function draw_view_frame(player)
    local corners = corners_of(view_get_camera(player.view))
    local from_x, from_y = on_map(corners[4][1], corners[4][2])
    draw_set_colour(player.colour)
    for _, corner in ipairs(corners) do
        local x, y = on_map(corner[1], corner[2])
        draw_line(from_x, from_y, x, y, 2)
        from_x, from_y = x, y
    end
end

local function draw_runner_dot(player)
    local runner = instance_get(instance_find(player.runner, 0))
    local x, y = on_map(runner.x, runner.y - 20)
    draw_set_colour(colours.white)
    draw_circle(x, y, 5)
    draw_set_colour(player.colour)
    draw_circle(x, y, 3.5)
end

local function draw_map()
    draw_set_colour(colour_rgb(36, 26, 46))
    draw_rectangle(PANEL.left, PANEL.top, PANEL.right, PANEL.bottom)
    draw_set_colour(colour_rgb(230, 196, 140))
    draw_rectangle(MAP.left - 2, MAP.top - 2, MAP.left + MAP.width + 2, MAP.top + MAP.height + 2)
    draw_surface(view_get_surface_id(MAP_VIEW), MAP.left, MAP.top)
    for _, player in ipairs(PLAYERS) do
        draw_view_frame(player)
    end
    for _, player in ipairs(PLAYERS) do
        draw_runner_dot(player)
    end
end

-- How many crystals each has found, under the map.
local function draw_scores()
    for place, player in ipairs(PLAYERS) do
        local text = player.name .. " " .. math.tointeger(instance_get(instance_find(player.runner, 0)).crystals)
        draw_set_colour(player.colour)
        draw_text(MAP.left + (place - 1) * 200, MAP.top + MAP.height + 6, text)
    end
end

return function()
    for _, player in ipairs(PLAYERS) do
        draw_label(player)
    end
    draw_map()
    draw_scores()
end
