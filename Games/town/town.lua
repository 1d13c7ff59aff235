-- Town: a walk through a town that was drawn in a map editor.
--
-- Technique: the room is a map. town.tmx says how large it is, what its layers show, who lives there, which views look at
-- it and whom they follow, and where the camera comes closer (rectangles of class "zone"). Scripts read its cells to
-- know what is solid, and change them: flowers are picked.
--
-- Walk with W A S D, the arrows, a gamepad's stick, or to where the mouse is held. Left alone, Ada strolls by herself.

local PATIENCE = 180 -- frames without a wish, after which she strolls
local SPEED = 1.6

action_add{ name = "left", keys = {"left", "@a"}, buttons = {"dpad_left"}, axes = {"left_x-"} }
action_add{ name = "right", keys = {"right", "@d"}, buttons = {"dpad_right"}, axes = {"left_x+"} }
action_add{ name = "up", keys = {"up", "@w"}, buttons = {"dpad_up"}, axes = {"left_y-"} }
action_add{ name = "down", keys = {"down", "@s"}, buttons = {"dpad_down"}, axes = {"left_y+"} }

local people = sprite_add_sheet("people.png", 12, 18, 6, 16)
local town, info, tile, zones -- the room, and what its map says
local ways = {}               -- points by the number of the map's object

-- ---- what the map says ----

local says = {} -- properties of tiles, by number
local function properties_at(layer, x, y)
    local number = map_tile_get(layer, math.floor(x / tile), math.floor(y / tile))
    if number > 0 and not says[number] then
        says[number] = map_tile_info(number).properties
    end
    return says[number] or {}
end

local function is_solid(x, y)
    if x < 4 or y < 8 or x > info.width - 4 or y > info.height - 2 then
        return true
    end
    return properties_at("walls", x, y).solid == true or properties_at("ground", x, y).solid == true
end

-- ---- walking ----

-- A body is as wide as its feet. Along a wall it goes on in the direction that is free.
local function walk(self, dx, dy)
    if not is_solid(self.x + dx + (dx > 0 and 4 or -4), self.y) then
        self.x = self.x + dx
    end
    if not is_solid(self.x - 4, self.y + dy) and not is_solid(self.x + 4, self.y + dy) then
        self.y = self.y + dy
    end
    if dx ~= 0 or dy ~= 0 then
        self.pace = (self.pace + 0.12) % 4
        self.away = dy < -0.5 and math.abs(dy) >= math.abs(dx)
    end
    self.frame = self.look * 8 + (self.away and 4 or 0) + math.floor(self.pace)
    self.depth = -self.y / info.height -- who stands further down covers who stands behind
end

-- One step along the way that the map gives this person.
local function stroll(self, speed)
    local way = ways[self.way]
    local goal = way[self.stop]
    local dx, dy = goal.x - self.x, goal.y - self.y
    local length = math.sqrt(dx * dx + dy * dy)
    if length <= speed then
        self.stop = self.stop % #way + 1
        return
    end
    local x, y = self.x, self.y
    walk(self, dx / length * speed, dy / length * speed)
    if self.x == x and self.y == y then -- something stands in the way
        self.stop = self.stop % #way + 1
    end
end

local function start_walking(self)
    self.sprite = people
    self.stop, self.pace, self.away = 1, 0, false
    walk(self, 0, 0)
end

object_add{
    name = "villager", bbox = {-6, -16, 6, 2},
    create = start_walking,
    step = function(self)
        stroll(self, 0.6)
    end,
}

-- ---- Ada ----

local function wish(self)
    local x = action_value("right") - action_value("left")
    local y = action_value("down") - action_value("up")
    local mx, my = mouse_room(0)
    if x == 0 and y == 0 and mouse_down("left") and mx then
        x, y = mx - self.x, my - self.y
    end
    local length = math.sqrt(x * x + y * y)
    if length > 1 then
        return x / length, y / length
    end
    return x, y
end

local function pick_flowers(self)
    if properties_at("ground", self.x, self.y).pick then
        map_tile_set("ground", math.floor(self.x / tile), math.floor(self.y / tile), 1)
        vars.flowers = vars.flowers + 1
    end
end

-- The way's stop that is nearest to where she was left.
local function resume(self)
    local nearest, least = 1, math.huge
    for i, stop in ipairs(ways[self.way]) do
        local distance = (stop.x - self.x) ^ 2 + (stop.y - self.y) ^ 2
        if distance < least then
            nearest, least = i, distance
        end
    end
    self.stop = nearest
end

local walker = object_add{
    name = "walker", bbox = {-6, -16, 6, 2},
    create = function(self)
        start_walking(self)
        self.idle = PATIENCE
    end,
    step = function(self)
        local x, y = wish(self)
        if x ~= 0 or y ~= 0 then
            self.idle = 0
            walk(self, x * SPEED, y * SPEED)
        else
            self.idle = self.idle + 1
            if self.idle == PATIENCE then
                resume(self)
            elseif self.idle > PATIENCE then
                stroll(self, 1.2)
            end
        end
        pick_flowers(self)
    end,
}

-- ---- notices, which stand in the map as tiles ----

local notice = object_add{ name = "notice", sprite = sprite_add_sheet("notice.png", 16, 16) }

local function nearest_notice(x, y)
    for i = 0, instance_count(notice) - 1 do
        local sign = instance_get(instance_find(notice, i))
        if math.abs(sign.x + 8 - x) < 30 and math.abs(sign.y + 12 - y) < 26 then
            return sign.text
        end
    end
end

-- ---- the camera comes closer in zones ----

local WIDTH, HEIGHT = 640, 360

local function zoom_at(x, y)
    for _, zone in ipairs(zones) do
        if x >= zone.left and x < zone.right and y >= zone.top and y < zone.bottom then
            return zone.zoom
        end
    end
    return 1
end

local function step_camera()
    local ada = instance_get(instance_find(walker, 0))
    local goal = zoom_at(ada.x, ada.y)
    vars.zoom = vars.zoom + (goal - vars.zoom) * 0.04
    local camera = view_get_camera(0)
    local w, h = WIDTH / vars.zoom, HEIGHT / vars.zoom
    local x = camera_get_view_x(camera) + (camera_get_view_width(camera) - w) / 2
    local y = camera_get_view_y(camera) + (camera_get_view_height(camera) - h) / 2
    camera_set_view_pos(camera, x, y)
    camera_set_view_size(camera, w, h)
    camera_set_view_border(camera, w * 0.4, h * 0.4)
end

-- ---- the room ----

local function draw_panel(x, y, w, h)
    draw_set_colour(colour_rgb(20, 24, 36))
    draw_set_alpha(0.7)
    draw_rectangle(x, y, x + w, y + h, false)
    draw_set_alpha(1)
    draw_set_colour(colours.white)
end

local function draw_signs()
    local ada = instance_get(instance_find(walker, 0))
    local text = nearest_notice(ada.x, ada.y)
    draw_panel(20, 20, 230, 36)
    draw_text(32, 28, "flowers " .. vars.flowers, 1.5)
    draw_set_colour(colours.white)
    draw_rectangle(1003, 19, 1261, 165, true)
    if text then
        draw_panel(400, 640, 480, 50)
        draw_text(424, 653, text, 2)
    end
end

town = room_from_map("town.tmx", {
    name = "town",
    create = function()
        vars.flowers, vars.zoom = 0, 1
    end,
    step = step_camera,
    draw_gui = draw_signs,
})
info, zones = map_info(town), map_zones(town)
tile = info.tile_width
for _, layer in ipairs(info.layers) do
    for _, object in ipairs(layer.objects) do
        if object.class == "way" then
            ways[object.id] = object.points
        end
    end
end
