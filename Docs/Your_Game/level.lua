local level = { TILE = 32 }

function level.sign(x, y) -- at a point of the room
    return map_tile_get("ground", x // level.TILE, y // level.TILE) > 0 and "#" or "."
end

return level
