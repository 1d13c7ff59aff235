-- What lies over the picture: fades, letterboxes and flashes, drawn in screen coordinates.
--
--   screen.draw(state, host, x, y, width, height)   of the effects of this state, over a rectangle of the screen
--
-- The order is fixed: a letterbox lies over a flash, a fade over everything.

local effects = include("kit/effects.lua")

local screen = {}

local function draw_flash(state, host, x, y, width, height)
    for _, effect in ipairs(state.list) do
        if effect.kind == "flash" and not effect.waiting then
            host.rectangle(x, y, x + width, y + height, effect.colour, effect.value)
        end
    end
end

local function draw_bars(state, host, x, y, width, height)
    local part, effect = effects.value(state, "letterbox")
    if part > 0 then
        local bar = math.floor(math.min(part, 0.5) * height + 0.5)
        host.rectangle(x, y, x + width, y + bar, effect.colour, 1)
        host.rectangle(x, y + height - bar, x + width, y + height, effect.colour, 1)
    end
end

local function draw_fade(state, host, x, y, width, height)
    local alpha, effect = effects.value(state, "fade")
    if alpha > 0 then
        host.rectangle(x, y, x + width, y + height, effect.colour, math.min(alpha, 1))
    end
end

function screen.draw(state, host, x, y, width, height)
    draw_flash(state, host, x, y, width, height)
    draw_bars(state, host, x, y, width, height)
    draw_fade(state, host, x, y, width, height)
end

return screen
