local ROWS = {
    "........................................",
    "........................................",
    "........................................",
    "........................................",
    "........................................",
    "...........oo...............o...........",
    "..........####.............###..........",
    "........................................",
    "......##...........o...##...............",
    "...........o......###..........##.......",
    "....o.............................o.....",
    "########################..##############",
}

local level = { TILE = 32 }

function level.sign(x, y) -- at a point of the room
    local row = ROWS[y // level.TILE + 1]
    local column = x // level.TILE + 1
    return row and column > 0 and row:sub(column, column) or "."
end

function level.draw()
    draw_set_colour(colours.green)
    for y = 0, room_height() - 1, level.TILE do
        for x = 0, room_width() - 1, level.TILE do
            if level.sign(x, y) == "#" then draw_rectangle(x, y, x + level.TILE, y + level.TILE) end
        end
    end
end

return level
