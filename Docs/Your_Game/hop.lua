-- hop: arrow keys move the hero
screen_set_size(640, 360)

local hero = include("hero.lua")

local level = include("level.lua")

local kit = include("kit/camera_kit.lua")

local director = object_add{ name = "director", step = function() kit.step() end }

local function watch_heroes()
    kit.camera{
        view = 0, follow = { instance_find(hero.object, 0), instance_find(hero.object, 1) },
        style = "platformer", dead_zone = false, group = { margin = 60, min_zoom = 0.5, max_zoom = 1 },
    }
    instance_create(0, 0, director) -- made last, so it steps after the heroes have moved
end

local coin = include("coin.lua")

local function draw_screen()
    draw_set_colour(colours.white)
    draw_text(16, 16, "coins " .. vars.coins .. " of 7", 2)
end

game_version(1)

local function save_or_load()
    if key_pressed("f2") then game_save("hop.sav") end
    if key_pressed("f3") then game_load("hop.sav") end
end

room_from_map("field.tmx", {
    name = "field", background = colour_rgb(40, 60, 100),
    views = { [0] = { w = 640, h = 360 } },
    create = function() vars.coins = 0 watch_heroes() end,
    step = save_or_load,
    draw_gui = draw_screen,
})
