-- hop: arrow keys move the hero
screen_set_size(640, 360)

local hero = include("hero.lua")

local level = include("level.lua")

local function watch_heroes()
    for view = 0, 1 do
        camera_set_view_target(view_get_camera(view), instance_find(hero.object, view))
    end
end

local function half(xport)
    return { w = 320, h = 360, xport = xport, wport = 320, hborder = 120, vborder = 100, hspeed = 5, vspeed = 5 }
end

local coin = include("coin.lua")

local function place_coins()
    vars.coins = 0
    for y = 0, room_height() - 1, level.TILE do
        for x = 0, room_width() - 1, level.TILE do
            if level.sign(x, y) == "o" then instance_create(x + 16, y + 16, coin) end
        end
    end
end

local function draw_screen()
    draw_set_colour(colours.black)
    draw_rectangle(318, 0, 322, 360)
    draw_set_colour(colours.white)
    draw_text(16, 16, "coins " .. vars.coins .. " of 7", 2)
end

local function save_or_load()
    if key_pressed("f2") then game_save("hop.sav") end
    if key_pressed("f3") then game_load("hop.sav") end
end

room_add{
    name = "field", width = 1280, height = 384, background = colour_rgb(40, 60, 100), draw = level.draw,
    views = { [0] = half(0), [1] = half(320) },
    instances = { {hero.object, 100, 300}, {hero.object, 140, 300} },
    create = function() place_coins() watch_heroes() end,
    step = save_or_load,
    draw_gui = draw_screen,
}
