-- Orbit: a village in space, seen in three ways at once.
--
-- Technique: cameras with a perspective.
--   view 0  a camera that flies around the village: in every frame its update script computes both matrices itself
--   view 1  a flat camera over the whole of the same room: a map
--   view 2  a camera that was given some perspective once. From then on, each time its rectangle changes or its target
--           moves it, it builds its matrices in space: it hangs straight over the middle of its rectangle, as far away
--           as the rectangle is wide. Such a picture has its upper edge at the larger y, so this view draws into a
--           surface, which draw_gui puts on the screen upside down.
-- Arrow keys, a gamepad's stick or a drag with the mouse lead the flight, the wheel goes nearer; left alone, it goes on
-- by itself.
-- What stands in the village is in village.lua and models.lua, the computing in space.lua.

local space = include("space.lua")
local village = include("village.lua")

local ORBIT_VIEW, MAP_VIEW, CART_VIEW = 0, 1, 2
local WIDTH, HEIGHT = 844, 720              -- of the large port
local SIDE, SIDE_WIDTH, SIDE_HEIGHT = 848, 432, 358 -- of the two others
local CART_TOP = 362
local MIDDLE = village.SIZE / 2

-- ---- the sky ----

local SKY_PARTS, SKY_RADIUS, SKY_HEIGHT = 16, 2300, 1250
local sky = sprite_add("sky.png", SKY_PARTS)
local PART_C, PART_S = space.turn(0.19891237) -- a sixteenth of the full turn

-- A ring around the village with a panorama on it.
local function draw_sky()
    draw_set_colour(colours.white)
    local c, s = 1, 0
    for part = 0, SKY_PARTS - 1 do
        local next_c, next_s = space.add_turn(c, s, PART_C, PART_S)
        local x1, y1 = MIDDLE + c * SKY_RADIUS, MIDDLE + s * SKY_RADIUS
        local x2, y2 = MIDDLE + next_c * SKY_RADIUS, MIDDLE + next_s * SKY_RADIUS
        draw_quad3d(sky, part, x1, y1, -SKY_HEIGHT, x2, y2, -SKY_HEIGHT, x2, y2, 0, x1, y1, 0)
        c, s = next_c, next_s
    end
end

-- ---- the flight ----

local LENS_HEIGHT = 0.93 -- what is seen at the distance of 1: about 50 degrees from top to bottom
local NEAR, FAR = 10, 6000
local RADIUS, LOW, HIGH, SWING = 640, 130, 340, 300 -- SWING: frames from low to high
local STEP_C, STEP_S = space.turn(0.004)

-- The flight is kept in `vars`, so a saved game flies on from where it was.
vars.flight_c, vars.flight_s = 0.6, 0.8

action_add{ name = "left", keys = {"left", "@a"}, buttons = {"dpad_left"}, axes = {"left_x-"} }
action_add{ name = "right", keys = {"right", "@d"}, buttons = {"dpad_right"}, axes = {"left_x+"} }
action_add{ name = "up", keys = {"up", "@w"}, buttons = {"dpad_up"}, axes = {"left_y-"} }
action_add{ name = "down", keys = {"down", "@s"}, buttons = {"dpad_down"}, axes = {"left_y+"} }

-- What the player adds: height and nearness stay, where the mouse was is what a drag starts from.
vars.lift, vars.reach = 0, 1
local mouse_was_x, mouse_was_y = 0, 0

local LED_TURN, LED_LIFT, DRAG_TURN, DRAG_LIFT = 0.012, 6, 0.0015, 2

-- Turns the flight and lifts it, as the player wants.
local function lead()
    local turn = (action_value("right") - action_value("left")) * LED_TURN
    local lift = (action_value("up") - action_value("down")) * LED_LIFT
    if mouse_down("left") and not mouse_pressed("left") then
        turn = turn - (mouse_x() - mouse_was_x) * DRAG_TURN
        lift = lift + (mouse_y() - mouse_was_y) * DRAG_LIFT
    end
    mouse_was_x, mouse_was_y = mouse_x(), mouse_y()
    if turn ~= 0 then
        vars.flight_c, vars.flight_s = space.add_turn(vars.flight_c, vars.flight_s, space.turn(turn))
    end
    vars.lift = math.max(-100, math.min(500, vars.lift + lift))
    vars.reach = math.max(0.5, math.min(2, vars.reach * (1 - 0.1 * mouse_wheel())))
end

local function eye_height()
    local t = math.abs(frame_number() % (2 * SWING) - SWING) / SWING
    return LOW + (HIGH - LOW) * t * t * (3 - 2 * t)
end

local function fly()
    vars.flight_c, vars.flight_s = space.add_turn(vars.flight_c, vars.flight_s, STEP_C, STEP_S)
    lead()
    local radius = RADIUS * vars.reach
    local eye = { MIDDLE + vars.flight_c * radius, MIDDLE + vars.flight_s * radius,
                  -math.max(30, eye_height() + vars.lift) }
    local at = { MIDDLE, MIDDLE, -75 }
    local camera = camera_current()
    camera_set_view_mat(camera, space.look_at(eye, at, { 0, 0, 1 }))
    camera_set_proj_mat(camera, space.perspective(LENS_HEIGHT * WIDTH / HEIGHT, LENS_HEIGHT, NEAR, FAR))
end
local fly_script = script_add(fly)

-- ---- the room ----

local function draw_label(x, y, text)
    draw_set_colour(colour_rgb(20, 24, 40))
    draw_set_alpha(0.65)
    draw_rectangle(x, y, x + 8 * #text + 12, y + 18)
    draw_set_alpha(1)
    draw_set_colour(colours.white)
    draw_text(x + 6, y + 3, text)
end

room_add{
    name = "village", width = village.SIZE, height = village.SIZE, background = colour_rgb(74, 148, 208),
    views = {
        [ORBIT_VIEW] = { wport = WIDTH, hport = HEIGHT },
        [MAP_VIEW] = { x = -106, w = 1236, h = 1024, xport = SIDE, wport = SIDE_WIDTH, hport = SIDE_HEIGHT },
        [CART_VIEW] = { w = SIDE_WIDTH, h = SIDE_HEIGHT, hborder = SIDE_WIDTH, vborder = SIDE_HEIGHT,
                        target = village.cart },
    },
    create = function()
        village.build()
        camera_set_update_script(view_get_camera(ORBIT_VIEW), fly_script)
        camera_set_proj_mat(view_get_camera(CART_VIEW), space.perspective(1, 1, 1, 2))
    end,
    step = function()
        if not surface_exists(view_get_surface_id(CART_VIEW)) then
            view_set_surface_id(CART_VIEW, surface_create(SIDE_WIDTH, SIDE_HEIGHT))
        end
    end,
    draw = function()
        village.draw_ground()
        if camera_get_active() == view_get_camera(ORBIT_VIEW) then
            draw_sky()
        end
    end,
    draw_gui = function()
        draw_surface(view_get_surface_id(CART_VIEW), SIDE, CART_TOP + SIDE_HEIGHT, 1, -1)
        draw_label(8, 8, "matrices set by a script in every frame")
        draw_label(SIDE + 8, 8, "flat camera")
        draw_label(SIDE + 8, CART_TOP + 8, "camera in space, follows the cart")
    end,
}
