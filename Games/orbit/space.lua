-- Matrices and turning, with nothing but + - * / and the square root, so that every machine gets the same numbers.
--
-- In a room x goes to the right, y down (towards the reader of a map), z away from a flat camera. So up in the air is
-- the negative z. Matrices have 16 numbers, row by row; points stand on their left as rows.

local space = {}

local function minus(a, b)
    return { a[1] - b[1], a[2] - b[2], a[3] - b[3] }
end

local function dot(a, b)
    return a[1] * b[1] + a[2] * b[2] + a[3] * b[3]
end

local function cross(a, b)
    return { a[2] * b[3] - a[3] * b[2], a[3] * b[1] - a[1] * b[3], a[1] * b[2] - a[2] * b[1] }
end

local function unit(a)
    local length = math.sqrt(dot(a, a))
    return { a[1] / length, a[2] / length, a[3] / length }
end

-- A view from `eye` towards `at`. `down` is the direction that is down in the picture: as in the room, y grows
-- downwards there.
function space.look_at(eye, at, down)
    local forward = unit(minus(at, eye))
    local right = unit(cross(down, forward))
    local low = cross(forward, right)
    return {
        right[1], low[1], forward[1], 0,
        right[2], low[2], forward[2], 0,
        right[3], low[3], forward[3], 0,
        -dot(right, eye), -dot(low, eye), -dot(forward, eye), 1,
    }
end

-- width, height: what is seen at the distance of 1. Nothing nearer than `near` or farther than `far` shows.
function space.perspective(width, height, near, far)
    return {
        2 / width, 0, 0, 0,
        0, 2 / height, 0, 0,
        0, 0, far / (far - near), 1,
        0, 0, near * far / (near - far), 0,
    }
end

-- A turn is a pair: how much of a direction stays, and how much goes over into the direction at its side (the cosine
-- and sine of its angle). Any t gives one, without an angle; a small t turns by about 2 t radians.
function space.turn(t)
    return (1 - t * t) / (1 + t * t), 2 * t / (1 + t * t)
end

-- Two turns after each other. The length is put right each time, so rounding does not add up.
function space.add_turn(c, s, by_c, by_s)
    c, s = c * by_c - s * by_s, s * by_c + c * by_s
    local length = math.sqrt(c * c + s * s)
    return c / length, s / length
end

-- Puts a thing at x, y, turned about the axis that stands on the ground.
function space.place(x, y, c, s)
    return {
        c, s, 0, 0,
        -s, c, 0, 0,
        0, 0, 1, 0,
        x, y, 0, 1,
    }
end

return space
