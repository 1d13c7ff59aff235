-- Split: one to four players share the screen, and join and leave while it runs.
--
-- Technique: views are laid out anew whenever the number of players changes. Each player has a view, a port and a camera
-- that follows the own ship; one player has the whole screen, two a half each, three and four a quarter each.
--
-- Join with Enter (keys W A S D), with the right Ctrl (arrow keys), or with Start on a gamepad; the same again leaves.
-- Until somebody joins, two boats sail by themselves.

local WIDTH, HEIGHT = screen_width(), screen_height()
local LAKE = 2400 -- the room's side
local GAP = 4     -- pixels between ports
local MOST = 4    -- players
local SHORE = 80  -- where boats turn back

local COLOURS = { colour_rgb(255, 104, 104), colour_rgb(96, 184, 255), colour_rgb(112, 232, 160),
                  colour_rgb(255, 214, 110) }

-- ---- who plays ----

local function add_steering(name, join, left, right, up, down)
    action_add{ name = name .. " join", keys = join.keys, buttons = join.buttons }
    action_add{ name = name .. " left", keys = left.keys, buttons = left.buttons, axes = left.axes }
    action_add{ name = name .. " right", keys = right.keys, buttons = right.buttons, axes = right.axes }
    action_add{ name = name .. " up", keys = up.keys, buttons = up.buttons, axes = up.axes }
    action_add{ name = name .. " down", keys = down.keys, buttons = down.buttons, axes = down.axes }
end

add_steering("wasd", { keys = {"enter"} }, { keys = {"@a"} }, { keys = {"@d"} }, { keys = {"@w"} }, { keys = {"@s"} })
add_steering("arrows", { keys = {"right_ctrl"} }, { keys = {"left"} }, { keys = {"right"} }, { keys = {"up"} },
             { keys = {"down"} })
add_steering("pad", { buttons = {"start"} }, { buttons = {"dpad_left"}, axes = {"left_x-"} },
             { buttons = {"dpad_right"}, axes = {"left_x+"} }, { buttons = {"dpad_up"}, axes = {"left_y-"} },
             { buttons = {"dpad_down"}, axes = {"left_y+"} })

local DEVICES = { { name = "wasd" }, { name = "arrows" } }
for pad = 0, 7 do
    DEVICES[#DEVICES + 1] = { name = "pad", pad = pad }
end

-- The mouse steers for whoever is alone: the boat sails to the pointer while the button is held.
local function steer_by_mouse(boat)
    local x, y = mouse_room(0)
    if vars.count ~= 1 or not mouse_down("left") or not x then
        return 0, 0
    end
    local dx, dy = x - boat.x, y - boat.y
    local length = math.max(40, math.sqrt(dx * dx + dy * dy))
    return dx / length, dy / length
end

local function steer(boat)
    local from = DEVICES[boat.device]
    local function value(what)
        return action_value(from.name .. " " .. what, from.pad)
    end
    local x, y = value("right") - value("left"), value("down") - value("up")
    if x == 0 and y == 0 then
        return steer_by_mouse(boat)
    end
    return x, y
end

-- ---- boats ----

local ripple = object_add{
    name = "ripple", bbox = {-30, -30, 30, 30}, depth = 10,
    create = function(self) self.age = 0 end,
    step = function(self)
        self.age = self.age + 1
        if self.age > 50 then
            instance_destroy(self.id)
        end
    end,
    draw = function(self)
        draw_set_colour(colour_rgb(150, 200, 226))
        draw_set_alpha(0.5 * (1 - self.age / 50))
        draw_circle(self.x, self.y, 6 + self.age / 3, true)
        draw_set_alpha(1)
    end,
}

-- A boat that nobody steers sails in a wide circle.
local function drift(boat)
    local dx, dy = boat.x - boat.home_x, boat.y - boat.home_y
    local length = math.max(1, math.sqrt(dx * dx + dy * dy))
    local out = (260 - length) / 260
    return (dx * out - dy) / length, (dy * out + dx) / length
end

local function keep_in(value)
    return math.max(SHORE, math.min(LAKE - SHORE, value))
end

local boat = object_add{
    name = "boat", bbox = {-26, -26, 26, 26}, depth = -10,
    create = function(self)
        self.vx, self.vy, self.number, self.device = 0, 0, 1, 0 -- device 0: nobody
        self.home_x, self.home_y = self.x - 120, self.y - 60
    end,
    step = function(self)
        local x, y = 0, 0
        if self.device == 0 then
            x, y = drift(self)
        else
            x, y = steer(self)
        end
        self.vx = (self.vx + x * 0.35) * 0.95
        self.vy = (self.vy + y * 0.35) * 0.95
        self.x = keep_in(self.x + self.vx)
        self.y = keep_in(self.y + self.vy)
        if (frame_number() + self.number * 3) % 12 == 0 then
            instance_create(self.x, self.y, ripple)
        end
    end,
    draw = function(self)
        local speed = math.sqrt(self.vx * self.vx + self.vy * self.vy)
        local x, y = 1, 0
        if speed > 0.01 then
            x, y = self.vx / speed, self.vy / speed
        end
        draw_set_colour(colour_rgb(96, 62, 44))
        draw_triangle(self.x + x * 28, self.y + y * 28, self.x - x * 16 - y * 14, self.y - y * 16 + x * 14,
                      self.x - x * 16 + y * 14, self.y - y * 16 - x * 14)
        draw_set_colour(COLOURS[self.number])
        draw_triangle(self.x + x * 16, self.y + y * 16, self.x - x * 10 - y * 7, self.y - y * 10 + x * 7,
                      self.x - x * 10 + y * 7, self.y - y * 10 - x * 7)
    end,
}

-- ---- the screen ----

-- Left, top, width and height of the port of each of so many players.
local function ports(count)
    local half_width, half_height = (WIDTH - GAP) // 2, (HEIGHT - GAP) // 2
    local right, low = half_width + GAP, half_height + GAP
    if count <= 1 then
        return { { 0, 0, WIDTH, HEIGHT } }
    elseif count == 2 then
        return { { 0, 0, half_width, HEIGHT }, { right, 0, half_width, HEIGHT } }
    end
    return { { 0, 0, half_width, half_height }, { right, 0, half_width, half_height },
             { 0, low, half_width, half_height }, { right, low, half_width, half_height } }
end

-- A view whose rectangle is as large as its port, around its boat.
local function show_boat(view, sailor, port)
    local camera = view_get_camera(view)
    local x, y, width, height = port[1], port[2], port[3], port[4]
    view_set_xport(view, x)
    view_set_yport(view, y)
    view_set_wport(view, width)
    view_set_hport(view, height)
    camera_set_view_size(camera, width, height)
    camera_set_view_border(camera, width * 0.4, height * 0.4)
    camera_set_view_target(camera, sailor.id)
    camera_set_view_pos(camera, math.max(0, math.min(LAKE - width, sailor.x - width / 2)),
                        math.max(0, math.min(LAKE - height, sailor.y - height / 2)))
end

local function sailors()
    local found = {}
    for n = 0, instance_count(boat) - 1 do
        found[#found + 1] = instance_get(instance_find(boat, n))
    end
    return found
end

local function lay_out()
    local all = sailors()
    local places = ports(#all)
    for view = 0, MOST - 1 do
        view_set_visible(view, all[view + 1] ~= nil)
        if all[view + 1] then
            show_boat(view, all[view + 1], places[view + 1])
        end
    end
    vars.count = #all
end

-- ---- joining and leaving ----

vars.count = 0

local function free_number(all)
    for number = 1, MOST do
        local taken = false
        for _, sailor in ipairs(all) do
            taken = taken or sailor.number == number
        end
        if not taken then
            return number
        end
    end
    return nil
end

local function launch(device)
    local number = free_number(sailors())
    if number then
        local at = { { 800, 800 }, { 1600, 800 }, { 800, 1600 }, { 1600, 1600 } }
        local sailor = instance_get(instance_create(at[number][1], at[number][2], boat))
        sailor.number, sailor.device = number, device
    end
end

local function remove(which)
    for _, sailor in ipairs(sailors()) do
        if which(sailor) then
            instance_destroy(sailor.id)
        end
    end
end

local function is_drifting(sailor)
    return sailor.device == 0
end

local function join_or_leave(device)
    local function is_own(sailor)
        return sailor.device == device
    end
    remove(is_drifting)
    local before = instance_count(boat)
    remove(is_own)
    if instance_count(boat) == before then
        launch(device)
    end
end

local function is_lost(sailor)
    local from = DEVICES[sailor.device]
    return from and from.pad and not pad_connected(from.pad)
end

-- Two boats sail by themselves where nobody plays.
local function fill_up()
    if instance_count(boat) == 0 then
        launch(0)
        launch(0)
    end
end

local function follow_players()
    remove(is_lost)
    for number, from in ipairs(DEVICES) do
        if action_pressed(from.name .. " join", from.pad) then
            join_or_leave(number)
        end
    end
    fill_up()
end

-- ---- the room ----

local ISLANDS = { { 1200, 1200, 150 }, { 560, 1240, 70 }, { 1180, 620, 90 }, { 1830, 1180, 60 }, { 1240, 1820, 80 },
                  { 300, 420, 60 }, { 2080, 380, 80 }, { 380, 2040, 90 }, { 2060, 2020, 70 } }

local function draw_island(x, y, radius)
    draw_set_colour(colour_rgb(88, 158, 190))
    draw_circle(x, y, radius + 18)
    draw_set_colour(colour_rgb(224, 204, 140))
    draw_circle(x, y, radius)
    draw_set_colour(colour_rgb(86, 150, 78))
    draw_circle(x - 4, y - 6, radius * 0.7)
    draw_set_colour(colour_rgb(60, 118, 66))
    draw_circle(x + radius * 0.15, y - radius * 0.2, radius * 0.3)
end

local function draw_water()
    draw_set_colour(colour_rgb(34, 96, 142))
    draw_rectangle(0, 0, LAKE, LAKE)
    draw_set_colour(colour_rgb(58, 124, 168))
    for row = 0, 23 do
        for column = 0, 11 do
            local x, y = column * 200 + (row % 2) * 100 + 20, row * 100 + 40
            draw_line(x, y, x + 44, y, 3)
        end
    end
    draw_set_colour(colour_rgb(216, 196, 130))
    draw_rectangle(0, 0, LAKE, 40)
    draw_rectangle(0, LAKE - 40, LAKE, LAKE)
    draw_rectangle(0, 0, 40, LAKE)
    draw_rectangle(LAKE - 40, 0, LAKE, LAKE)
    for _, island in ipairs(ISLANDS) do
        draw_island(island[1], island[2], island[3])
    end
end

local function label(x, y, text, colour)
    draw_set_colour(colour_rgb(16, 28, 40))
    draw_set_alpha(0.7)
    draw_rectangle(x, y, x + 16 + 8 * #text, y + 20)
    draw_set_alpha(1)
    draw_set_colour(colour)
    draw_text(x + 8, y + 4, text)
end

local views = {}
for view = 0, MOST - 1 do
    views[view] = { visible = false }
end

room_add{
    name = "lake", width = LAKE, height = LAKE, views = views,
    create = function()
        fill_up()
        lay_out()
    end,
    step = function()
        local before = {}
        for _, sailor in ipairs(sailors()) do
            before[#before + 1] = sailor.id
        end
        follow_players()
        local after = sailors()
        local changed = #after ~= #before
        for i, sailor in ipairs(after) do
            changed = changed or sailor.id ~= before[i]
        end
        if changed then
            lay_out()
        end
    end,
    draw = draw_water,
    draw_gui = function()
        for i, port in ipairs(ports(vars.count)) do
            local sailor = sailors()[i]
            if sailor then
                local name = sailor.device == 0 and "BOAT " or "PLAYER "
                label(port[1] + 8, port[2] + 8, name .. sailor.number, COLOURS[sailor.number])
            end
        end
        label(8, HEIGHT - 28, "Join and leave: Enter (W A S D), right Ctrl (arrows), Start on a gamepad", colours.white)
    end,
}
