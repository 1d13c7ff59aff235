-- Kit: what the camera kit can do, one scene for each thing.
--
-- Technique: a game hands its cameras to kit/camera_kit.lua (Docs/Kit.md) and tells it what to follow and how. One
-- object, created last in each room, steps the kit after everything else has moved.
-- Enter and backspace change the scene, M changes how much of shakes, rolls and zooms there is; arrows and space move
-- the orange figure. Left alone, the scenes follow one another.
-- The scenes are in scenes.lua, the rooms in hills.lua and garden.lua, the keys in player.lua.

local kit = include("kit/camera_kit.lua")
local player = include("player.lua")
local scenes = include("scenes.lua")

local LENGTH = 240 -- frames of a scene, when nobody is there
local FIRST_ROOM = room_get() + 1

vars.time = 0 -- frames in this scene

local function scene_now()
    return scenes[room_get() - FIRST_ROOM + 1]
end

local function go(by)
    room_goto(FIRST_ROOM + (room_get() - FIRST_ROOM + by) % #scenes)
end

local function change_motion()
    local amount = kit.motion()
    kit.motion(amount == 1 and 0.5 or amount == 0.5 and 0 or 1)
end

local director = object_add{
    name = "director",
    step = function()
        player.step()
        local scene = scene_now()
        if scene.step then
            scene.step(vars.time)
        end
        kit.step()
        vars.time = vars.time + 1
        if player.pressed("motion") then
            change_motion()
        elseif player.pressed("next") or (player.is_away() and vars.time >= LENGTH) then
            go(1)
        elseif player.pressed("back") then
            go(-1)
        end
    end,
}

local function draw_caption(scene)
    draw_set_colour(colour_rgb(24, 16, 32))
    draw_set_alpha(0.75)
    draw_rectangle(20, 16, 44 + 16 * math.max(#scene.title, #scene.text // 2), 82)
    draw_set_alpha(1)
    draw_set_colour(colour_rgb(255, 214, 110))
    draw_text(32, 24, scene.title, 2)
    draw_set_colour(colours.white)
    draw_text(32, 56, scene.text)
    local amount = math.floor(kit.motion() * 100)
    draw_text(32, 696, "Enter, backspace: scenes    arrows, space: move    M: motion " .. amount .. " %")
end

for _, scene in ipairs(scenes) do
    local place = scene.place
    room_add{
        name = scene.title, width = place.WIDTH, height = place.HEIGHT, background = place.SKY or place.GROUND,
        views = scene.views or { [0] = {} },
        create = function()
            vars.time = 0
            scene.start()
            instance_create(0, 0, director)
        end,
        draw = function()
            place.draw()
            if scene.draw then
                scene.draw()
            end
        end,
        draw_gui = function()
            kit.draw()
            if scene.draw_gui then
                scene.draw_gui(vars.time)
            end
            draw_caption(scene)
        end,
    }
end
