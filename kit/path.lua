-- Paths: a line through points, straight between them or as a Catmull-Rom curve, for cameras that move on rails.
--
--   path.new(points, curve, closed) -> line      points: a list of {x = , y = }, at least two; curve: true or false
--   path.nearest(line, x, y) -> x, y, progress   the point of the line that is nearest to a place
--   path.at(line, progress) -> x, y              the point at a part of the line's length, 0 to 1
--
-- A line is plain data: x, y and the length so far of each of its corners. A curve is cut into straight pieces when it is
-- made, short enough to look round.

local path = {}

local PIECES = 16 -- of a curve between two points

-- A curve through b (t = 0) and c (t = 1); a and d are the points before and after.
local function catmull_rom(a, b, c, d, t)
    return 0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t + (3 * b - a - 3 * c + d) * t * t * t)
end

local function add(line, x, y)
    local count = #line.x
    local length = 0
    if count > 0 then
        local across, down = x - line.x[count], y - line.y[count]
        length = line.length[count] + math.sqrt(across * across + down * down)
    end
    line.x[count + 1], line.y[count + 1], line.length[count + 1] = x, y, length
end

-- The point with a number; before the first and after the last stand the ends again, or the other end's neighbours.
local function point_of(points, number, closed)
    if closed then
        return points[(number - 1) % #points + 1]
    end
    return points[math.max(1, math.min(#points, number))]
end

function path.new(points, curve, closed)
    local line = { x = {}, y = {}, length = {} }
    local pieces = curve and PIECES or 1
    add(line, points[1].x, points[1].y)
    for number = 1, closed and #points or #points - 1 do
        local a, b = point_of(points, number - 1, closed), point_of(points, number, closed)
        local c, d = point_of(points, number + 1, closed), point_of(points, number + 2, closed)
        for piece = 1, pieces do
            local t = piece / pieces
            if curve then
                add(line, catmull_rom(a.x, b.x, c.x, d.x, t), catmull_rom(a.y, b.y, c.y, d.y, t))
            else
                add(line, c.x, c.y)
            end
        end
    end
    return line
end

-- Squared distance of a place from a piece of the line, and the part of the piece where it is nearest.
local function from_piece(line, piece, x, y)
    local from_x, from_y = line.x[piece], line.y[piece]
    local across, down = line.x[piece + 1] - from_x, line.y[piece + 1] - from_y
    local square = across * across + down * down
    local part = 0
    if square > 0 then
        part = math.max(0, math.min(1, ((x - from_x) * across + (y - from_y) * down) / square))
    end
    local off_x, off_y = from_x + part * across - x, from_y + part * down - y
    return off_x * off_x + off_y * off_y, part
end

local function on_piece(line, piece, part)
    return line.x[piece] + part * (line.x[piece + 1] - line.x[piece]),
           line.y[piece] + part * (line.y[piece + 1] - line.y[piece])
end

function path.nearest(line, x, y)
    local best, best_piece, best_part = math.huge, 1, 0
    for piece = 1, #line.x - 1 do
        local square, part = from_piece(line, piece, x, y)
        if square < best then
            best, best_piece, best_part = square, piece, part
        end
    end
    local near_x, near_y = on_piece(line, best_piece, best_part)
    local whole = line.length[#line.length]
    local along = line.length[best_piece] + best_part * (line.length[best_piece + 1] - line.length[best_piece])
    return near_x, near_y, whole > 0 and along / whole or 0
end

function path.at(line, progress)
    local along = math.max(0, math.min(1, progress)) * line.length[#line.length]
    local low, high = 1, #line.length - 1 -- the piece that holds it, by halving
    while low < high do
        local middle = (low + high + 1) // 2
        if line.length[middle] <= along then
            low = middle
        else
            high = middle - 1
        end
    end
    local long = line.length[low + 1] - line.length[low]
    return on_piece(line, low, long > 0 and (along - line.length[low]) / long or 0)
end

return path
