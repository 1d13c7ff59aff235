local level = include("level.lua")

local hero = {}

function hero.is_blocked(x, y) -- whether ground is where the hero would stand: 16 wide, 24 high
    return level.sign(x - 7, y - 1) == "#" or level.sign(x + 7, y - 1) == "#"
        or level.sign(x - 7, y - 23) == "#" or level.sign(x + 7, y - 23) == "#"
end

function hero.move(self, dx, dy) -- false: something is in the way
    for _ = 1, math.max(math.abs(dx), math.abs(dy)) do
        local x = self.x + (dx > 0 and 1 or dx < 0 and -1 or 0)
        local y = self.y + (dy > 0 and 1 or dy < 0 and -1 or 0)
        if hero.is_blocked(x, y) then return false end
        self.x, self.y = math.max(8, math.min(x, room_width() - 8)), y
    end
    return true
end

local kit = include("kit/camera_kit.lua")

function hero.land(self)
    if self.speed == 10 then kit.camera(0):shake{ x = 0, y = 4, frames = 15 } end
    self.speed = 0
end

function hero.step(self)
    local right, left = action_down("right" .. self.number), action_down("left" .. self.number)
    hero.move(self, (right and 3 or 0) - (left and 3 or 0), 0)
    local is_standing = hero.is_blocked(self.x, self.y + 1)
    if action_pressed("jump" .. self.number) and is_standing then self.speed = -15 end
    self.speed = math.min(self.speed + 1, 10)
    if not hero.move(self, 0, self.speed) then hero.land(self) end
end

function hero.draw(self)
    draw_set_colour(hero.COLOURS[self.number])
    draw_rectangle(self.x - 8, self.y - 24, self.x + 8, self.y)
end

function hero.return_when_lost(self)
    if self.y > room_height() + 100 then self.x, self.y, self.speed = 100, 300, 0 end
end

hero.object = object_add{
    name = "hero", bbox = {-8, -24, 8, 0},
    create = function(self) self.speed, self.number = 0, instance_count(self.object) end,
    step = function(self) hero.step(self) hero.return_when_lost(self) end,
    draw = function(self) hero.draw(self) end,
}

hero.COLOURS = { colours.orange, colours.cyan }

for number, keys in ipairs{ {"left", "right", "up"}, {"a", "d", "w"} } do
    action_add{ name = "left" .. number, keys = {keys[1]} }
    action_add{ name = "right" .. number, keys = {keys[2]} }
    action_add{ name = "jump" .. number, keys = {keys[3]} }
end

return hero
