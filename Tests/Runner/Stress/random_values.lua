-- Values of every kind for the random steps. The game adds functions for more of them as special.

local values = { special = {} }

-- ---- choosing ----

-- Of nothing, a number of -1 and 0: a pick from an empty list gives nil.
local function below(n) return n > 0 and irandom(n - 1) or irandom(1) - 1 end
local function chance(n) return below(n) == 0 end
local function pick(list) return list[1 + below(#list)] end

-- ---- values ----

local NUMBERS = {
    0, -0.0, 1, -1, 2, 0.5, -0.5, 0.49999999, 1.5, 7, 15, 16, 17, 45, 90, 180, 360, -360, 1e-3, 1e-45, 1e-40, 5e-324,
    0 / 0, -(0 / 0), 1 / 0, -1 / 0, 3.4e38, 3.5e38, 1e39, -1e39, 1e308, 16777215, 16777216, 16777217, 99999, 100000,
    100001, 2147483647, 2147483648, -2147483648, -2147483649, 2147483647.5, -2147483648.5, 4294967295, 4294967296,
    4294967297, 9007199254740992, 9007199254740993, 2^62, 2^63, -2^63, 2^64, math.maxinteger, math.mininteger,
}
local TEXTS = {
    "", "0", "1", "-1", "12", "1e3", "0x10", " 5 ", "5 6", "abc", "nan", "inf", "-inf", "1e999", "\0", "1\0002", "\xFF\xFE",
    "ünï", "true", "%s%n%d", ("9"):rep(400), ("x"):rep(5000),
}

local wild -- below

local function number()
    if chance(3) then
        return pick(NUMBERS)
    elseif chance(8) then
        return (random() - 0.5) * 2.0 ^ (below(300) - 150)
    elseif chance(3) then
        return below(2000) - 500
    end
    return (random() - 0.25) * 1000
end

local function list_of(length, element)
    local list = {}
    for i = 1, length do
        list[i] = element()
    end
    return list
end

local function nested(depth)
    local inner = { 1, "two" }
    for _ = 1, depth do
        inner = { inner, depth }
    end
    return inner
end

local function cyclic()
    local list = { 1, 2 }
    list[3] = list
    return list
end

local TABLES = {
    function() return {} end,
    function() return list_of(16, number) end,
    function() return list_of(15 + below(3), number) end,
    function() return list_of(16, wild) end,
    function() return list_of(below(40), wild) end,
    function() return nested(1 + below(3)) end,
    function() return nested(29 + below(5)) end,
    function() return { 1, nil, 3, nil, nil, 6, x = 1 } end,
    function() return setmetatable({}, { __index = function() error("asked") end, __len = function() return 16 end }) end,
    cyclic,
}

local WILD = {
    number, number, number,
    function() return pick(TEXTS) end,
    function() return tostring(number()) end,
    function() return chance(2) end,
    function() return nil end,
    function() return pick(TABLES)() end,
    function() return pick{ collect, random, camera_create, frame_number } end,
    function() return pick(values.special)() end,
    function() return pick(values.special)() end,
}

local depth_of_wild = 0
function wild()
    if depth_of_wild > 2 then
        return number()
    end
    depth_of_wild = depth_of_wild + 1
    local value = pick(WILD)()
    depth_of_wild = depth_of_wild - 1
    return value
end

values.below, values.chance, values.pick, values.number = below, chance, pick, number
values.texts, values.list_of, values.wild = TEXTS, list_of, wild
return values
