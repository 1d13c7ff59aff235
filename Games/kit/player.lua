-- What the player does. Who touches nothing for a while is shown the scenes one after the other, and the figures go
-- their own way.

local PATIENCE = 600 -- frames

action_add{ name = "left", keys = {"left", "@a"}, buttons = {"dpad_left"}, axes = {"left_x-"} }
action_add{ name = "right", keys = {"right", "@d"}, buttons = {"dpad_right"}, axes = {"left_x+"} }
action_add{ name = "up", keys = {"up", "@w"}, buttons = {"dpad_up"}, axes = {"left_y-"} }
action_add{ name = "down", keys = {"down", "@s"}, buttons = {"dpad_down"}, axes = {"left_y+"} }
action_add{ name = "jump", keys = {"space"}, mouse = {"left"}, buttons = {"a"} }
action_add{ name = "next", keys = {"enter", "page_down"}, mouse = {"right"}, buttons = {"right_shoulder"} }
action_add{ name = "back", keys = {"backspace", "page_up"}, buttons = {"left_shoulder"} }
action_add{ name = "motion", keys = {"m"}, buttons = {"y"} }

local ALL = { "left", "right", "up", "down", "jump", "next", "back", "motion" }

vars.alone = PATIENCE -- frames since somebody has touched anything

local player = { pressed = action_pressed }

function player.step()
    vars.alone = vars.alone + 1
    for _, name in ipairs(ALL) do
        if action_down(name) then
            vars.alone = 0
        end
    end
end

function player.is_away()
    return vars.alone >= PATIENCE
end

-- -1 to 1 each.
function player.way()
    return action_value("right") - action_value("left"), action_value("down") - action_value("up")
end

return player
