-- Who plays a runner: player 0 has the keyboard, the mouse and the first gamepad, players 1 and 2 a gamepad each.
-- A runner that nobody has touched for a while goes on by itself.

local PATIENCE = 300 -- frames
local MOUSE_VIEW, BESIDE, ABOVE = 0, 16, 70 -- how far the pointer must be from the runner's feet to mean a way, or up

action_add{ name = "left", keys = {"left", "@a"} }
action_add{ name = "right", keys = {"right", "@d"} }
action_add{ name = "jump", keys = {"space", "up", "@w"} }
action_add{ name = "pad left", buttons = {"dpad_left"}, axes = {"left_x-"} }
action_add{ name = "pad right", buttons = {"dpad_right"}, axes = {"left_x+"} }
action_add{ name = "pad jump", buttons = {"a", "b"} }

local players = {}

-- What two switches make: -1, 0 or 1.
local function way_of(left, right)
    return (right and 1 or 0) - (left and 1 or 0)
end

local function ask_pad(pad)
    return way_of(action_down("pad left", pad), action_down("pad right", pad)), action_pressed("pad jump", pad)
end

local function ask_keys()
    return way_of(action_down("left"), action_down("right")), action_pressed("jump")
end

-- While the button is held in the explorer's own view, the runner goes where the pointer is.
local function ask_mouse(self)
    if not mouse_down("left") or view_at(mouse_x(), mouse_y()) ~= MOUSE_VIEW then
        return 0, false
    end
    local x, y = mouse_room(MOUSE_VIEW)
    if not x then
        return 0, false
    end
    return way_of(x < self.x - BESIDE, x > self.x + BESIDE), y < self.y - ABOVE
end

local function ask(self)
    local way, jump = ask_pad(self.player)
    if self.player == 0 then
        local key_way, key_jump = ask_keys()
        local mouse_way, mouse_jump = ask_mouse(self)
        way = key_way ~= 0 and key_way or mouse_way ~= 0 and mouse_way or way
        jump = key_jump or mouse_jump or jump
    end
    return way, jump
end

-- Fills the runner's pad. False when nobody plays it.
function players.press_pad(self)
    local way, jump = ask(self)
    if way ~= 0 or jump then
        self.played = PATIENCE
    elseif self.played > 0 then
        self.played = self.played - 1
    end
    if self.played == 0 then
        return false
    end
    self.way = way
    self.jump = jump and self.grounded
    self.facing = way ~= 0 and way or self.facing
    return true
end

return players
