-- Things to build a village from. Heights count upwards from the ground; pictures on walls stand upright.

local walls = sprite_add("walls.png", 10)

local models = { walls = walls }

-- Frames of walls.png.
models.WINDOW, models.DOOR, models.BRICK, models.STONE, models.RED_TILES = 0, 1, 2, 3, 4
models.SLATE, models.LEAVES, models.BARK, models.PLANKS, models.SAIL = 5, 6, 7, 8, 9

local PIECE = 48 -- about how wide a picture shows on a wall

-- ---- what stands still is computed once ----

-- The model that is being made, a list: of a shade its colour, of a piece the arguments of its quad. Slopes, walls, roofs
-- and spires are put into it; they are drawn when the model is.
local making

-- Makes a model of what `build` puts together, to be drawn in each view of each frame.
function models.new(build)
    making = {}
    build()
    local model = making
    making = nil
    return model
end

function models.draw(model)
    for _, part in ipairs(model) do
        if #part == 1 then
            draw_set_colour(part[1])
        else
            draw_quad3d(walls, table.unpack(part))
        end
    end
end

local function shade(light)
    making[#making + 1] = { colour_rgb(light, light, light) }
end

-- A surface between two edges, left to right as seen from outside, with the picture repeated along it; the piece in the
-- middle shows another one if `middle` is given. Each edge: x, y, height of its left end, then of its right end.
function models.slope(frame, top, bottom, middle)
    local dx, dy, dz = bottom[4] - bottom[1], bottom[5] - bottom[2], bottom[6] - bottom[3]
    local pieces = math.max(1, math.floor(math.sqrt(dx * dx + dy * dy + dz * dz) / PIECE + 0.5))
    local function at(edge, part)
        return edge[1] + (edge[4] - edge[1]) * part, edge[2] + (edge[5] - edge[2]) * part,
               -(edge[3] + (edge[6] - edge[3]) * part)
    end
    for piece = 0, pieces - 1 do
        local from, to = piece / pieces, (piece + 1) / pieces
        local x1, y1, z1 = at(top, from)
        local x2, y2, z2 = at(top, to)
        local x3, y3, z3 = at(bottom, to)
        local x4, y4, z4 = at(bottom, from)
        local picture = piece == pieces // 2 and middle or frame
        making[#making + 1] = { picture, x1, y1, z1, x2, y2, z2, x3, y3, z3, x4, y4, z4 }
    end
end

-- An upright wall. From its left to its right end as seen from outside.
local function wall(frame, x1, y1, x2, y2, foot, height, middle)
    models.slope(frame, { x1, y1, foot + height, x2, y2, foot + height }, { x1, y1, foot, x2, y2, foot }, middle)
end

-- Four walls. The front is the one towards larger y; its middle piece may have another picture: a door.
function models.walls_around(frame, door, left, top, right, bottom, foot, height)
    shade(255)
    wall(frame, left, bottom, right, bottom, foot, height, door)
    shade(225)
    wall(frame, right, bottom, right, top, foot, height)
    shade(200)
    wall(frame, left, top, left, bottom, foot, height)
    shade(175)
    wall(frame, right, top, left, top, foot, height)
end

-- A roof with its ridge along x, and the gables under it.
function models.gable_roof(tiles, gable, left, top, right, bottom, foot, height)
    local middle, ridge, over = (top + bottom) / 2, foot + height, 8
    local eaves = foot - height * over / (middle - top)
    shade(235)
    models.slope(gable, { right, middle, ridge, right, middle, ridge }, { right, bottom, foot, right, top, foot })
    shade(205)
    models.slope(gable, { left, middle, ridge, left, middle, ridge }, { left, top, foot, left, bottom, foot })
    shade(255)
    models.slope(tiles, { left - over, middle, ridge, right + over, middle, ridge },
                 { left - over, bottom + over, eaves, right + over, bottom + over, eaves })
    shade(190)
    models.slope(tiles, { right + over, middle, ridge, left - over, middle, ridge },
                 { right + over, top - over, eaves, left - over, top - over, eaves })
end

-- Four slopes that meet in a point.
function models.spire(tiles, left, top, right, bottom, foot, height)
    local x, y, z = (left + right) / 2, (top + bottom) / 2, foot + height
    local tip = { x, y, z, x, y, z }
    shade(255)
    models.slope(tiles, tip, { left, bottom, foot, right, bottom, foot })
    shade(220)
    models.slope(tiles, tip, { right, bottom, foot, right, top, foot })
    shade(195)
    models.slope(tiles, tip, { left, top, foot, left, bottom, foot })
    shade(170)
    models.slope(tiles, tip, { right, top, foot, left, top, foot })
end

-- Draws a block with the same picture on all sides, at once: it may move.
function models.block(frame, left, top, right, bottom, foot, height)
    draw_set_colour(colours.white)
    draw_box(walls, frame, left, top, -(foot + height), right, bottom, -foot)
end

return models
