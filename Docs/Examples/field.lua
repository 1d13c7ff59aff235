-- The scene of all examples: a field of 960 x 540 units with a house, trees, a pond, a duck and a walker. By herself the
-- walker goes round the house. Arrow keys lead her, and so does the mouse or a finger, held where she is to go.
screen_set_size(640, 360)

local WIDTH, HEIGHT = 960, 540
local TREES = { {90, 110}, {200, 420}, {330, 80}, {620, 470}, {860, 400}, {880, 90} }

local field = {}

local function along(from, to) -- one step of the way
    return math.max(-3, math.min(to - from, 3))
end

local function wish(self) -- where the player wants her to go from where she stands
    local x = (key_down("right") and 3 or 0) - (key_down("left") and 3 or 0)
    local y = (key_down("down") and 3 or 0) - (key_down("up") and 3 or 0)
    local view = mouse_down("left") and view_at(mouse_x(), mouse_y()) or -1
    local goal_x, goal_y
    if view >= 0 then goal_x, goal_y = mouse_room(view) end
    if goal_x then return along(self.x, goal_x), along(self.y, goal_y) end
    return x, y
end

field.walker = object_add{
    name = "walker", bbox = {-9, -26, 9, 2},
    create = function(self) self.is_led = false end,
    step = function(self)
        local x, y = wish(self)
        self.is_led = self.is_led or x ~= 0 or y ~= 0
        if self.is_led then
            self.x, self.y = math.max(0, math.min(self.x + x, WIDTH)), math.max(0, math.min(self.y + y, HEIGHT))
        else
            local turn = frame_number() / 60
            self.x, self.y = 480 + 330 * math.cos(turn), 280 + 190 * math.sin(turn)
        end
    end,
    draw = function(self)
        draw_set_colour(colour_rgb(40, 50, 90)) draw_rectangle(self.x - 6, self.y - 16, self.x + 6, self.y)
        draw_set_colour(colours.orange) draw_circle(self.x, self.y - 19, 7)
    end,
}

field.duck = object_add{
    name = "duck", bbox = {-10, -10, 10, 10},
    step = function(self) self.x = 700 + 36 * math.sin(frame_number() / 25) end,
    draw = function(self)
        draw_set_colour(colours.yellow) draw_circle(self.x, self.y, 8) draw_circle(self.x + 7, self.y - 7, 4)
    end,
}

local function draw_house()
    draw_set_colour(colour_rgb(200, 170, 130)) draw_rectangle(430, 240, 530, 310)
    draw_set_colour(colour_rgb(150, 60, 50)) draw_triangle(415, 240, 545, 240, 480, 190)
    draw_set_colour(colour_rgb(90, 60, 40)) draw_rectangle(470, 275, 492, 310)
end

local function draw_field()
    for x = 0, WIDTH - 60, 60 do
        for y = 0, HEIGHT - 60, 60 do
            draw_set_colour((x + y) % 120 == 0 and colour_rgb(104, 150, 92) or colour_rgb(96, 140, 86))
            draw_rectangle(x, y, x + 60, y + 60)
        end
    end
    draw_set_colour(colours.white) -- the edge
    draw_line(0, 0, WIDTH, 0, 8) draw_line(0, HEIGHT, WIDTH, HEIGHT, 8)
    draw_line(0, 0, 0, HEIGHT, 8) draw_line(WIDTH, 0, WIDTH, HEIGHT, 8)
    draw_set_colour(colour_rgb(90, 140, 190)) draw_circle(700, 150, 70)
    draw_house()
    for _, tree in ipairs(TREES) do
        draw_set_colour(colour_rgb(90, 64, 44)) draw_rectangle(tree[1] - 4, tree[2], tree[1] + 4, tree[2] + 22)
        draw_set_colour(colour_rgb(50, 104, 62)) draw_circle(tree[1], tree[2] - 8, 20)
    end
end

-- Views to choose from: one that follows the walker, one that rests on the house, and the whole field in a corner.
field.following = { w = 320, h = 180, hborder = 110, vborder = 60, target = field.walker }
field.resting = { x = 320, y = 180, w = 320, h = 180 }
field.corner = { w = WIDTH, h = HEIGHT, xport = 440, yport = 12, wport = 188, hport = 106 }

-- Whether the view that is drawn now is the one in the corner.
function field.is_corner() return camera_get_active() == view_get_camera(1) end

-- Makes the room of an example. Fields: those of room_add, and text(), what stands at the bottom of the screen.
function field.show(scene)
    room_add{
        name = "field", width = WIDTH, height = HEIGHT, background = colour_rgb(40, 52, 66),
        instances = { {field.walker, 810, 280}, {field.duck, 700, 150} },
        views = scene.views or { [0] = field.following },
        create = scene.create, step = scene.step,
        draw = function()
            draw_field()
            if scene.draw then scene.draw() end
        end,
        draw_gui = function()
            if scene.draw_gui then scene.draw_gui() end
            draw_set_colour(colours.black) draw_set_alpha(0.6) draw_rectangle(0, 328, 640, 360)
            draw_set_colour(colours.white) draw_set_alpha(1) draw_text(12, 332, scene.text(), 2)
        end,
    }
end

return field
