-- Checks of what a game hands to the kit. A wrong argument is one line at the game's own file and line:
-- which function, which field, what is wanted, what came.
--
--   checks.public(name, f) -> function     f, whose refusals become errors at the line that called it
--   checks.refuse(field, wanted, value)    ends the call: "kit.camera: zoom is a number above 0, got the string "big""
--   checks.fields(given, spec, prefix)     each field of the table by the check that spec has under its name
--   checks.know_scripts(is_script)         which numbers checks.script accepts
--   checks.number, checks.whole ...        makers of such checks: check(field, value) -> the value to store
--
-- Checks copy tables, so that what a game does to its own table later changes nothing, and a saved table is a tree.

local checks = {}

local function shown(value)
    if type(value) == "string" then
        return 'the string "' .. value:sub(1, 40) .. '"'
    elseif type(value) == "number" or type(value) == "boolean" or value == nil then
        return tostring(value)
    end
    return "a " .. type(value)
end

function checks.refuse(field, wanted, value)
    error({ refused = field .. " is " .. wanted .. ", got " .. shown(value) }, 0)
end

-- For a refusal that is not about one value.
function checks.fail(text)
    error({ refused = text }, 0)
end

local function finish(name, ok, ...)
    if ok then
        return ...
    end
    local problem = ...
    if type(problem) == "table" and problem.refused then
        error(name .. ": " .. problem.refused, 2) -- a tail call: 2 is the caller of what is public
    end
    error(problem, 0)
end

function checks.public(name, f)
    return function(...)
        return finish(name, pcall(f, ...))
    end
end

function checks.is_number(value)
    return type(value) == "number" and value - value == 0 -- neither infinite nor NaN
end

-- low, high: inclusive; above: what the number must exceed. All optional.
function checks.number(wanted, low, high, above)
    return function(field, value)
        if not checks.is_number(value) or (low and value < low) or (high and value > high)
            or (above and value <= above) then
            checks.refuse(field, wanted, value)
        end
        return value
    end
end

checks.any_number = checks.number("a number")
checks.positive = checks.number("a number above 0", nil, nil, 0)
checks.not_negative = checks.number("a number, 0 or more", 0)

function checks.whole(wanted, low, high)
    local number = checks.number(wanted, low, high)
    return function(field, value)
        if math.tointeger(number(field, value)) == nil then
            checks.refuse(field, wanted, value)
        end
        return math.tointeger(value)
    end
end

checks.frames = checks.whole("a whole number of frames, 0 or more", 0)

local is_script -- the host's, whether a script has that number; nil: any whole number may be one
function checks.know_scripts(known)
    is_script = known
end

-- A number that no script has would only be found out when it is to run, far from where it was written.
local script_number = checks.whole("a number from script_add", 0)
function checks.script(field, value)
    local number = script_number(field, value)
    if is_script and not is_script(number) then
        checks.refuse(field, "a number from script_add", value)
    end
    return number
end

function checks.boolean(field, value)
    if type(value) ~= "boolean" then
        checks.refuse(field, "true or false", value)
    end
    return value
end

function checks.text(field, value)
    if type(value) ~= "string" or value == "" then
        checks.refuse(field, "a name", value)
    end
    return value
end

-- One of the names in a list.
function checks.one_of(names)
    local wanted = '"' .. table.concat(names, '", "') .. '"'
    return function(field, value)
        for _, name in ipairs(names) do
            if value == name then
                return value
            end
        end
        checks.refuse(field, #names > 1 and "one of " .. wanted or wanted, value)
    end
end

-- The value false, or what another check accepts.
function checks.or_false(check)
    return function(field, value)
        return value ~= false and check(field, value)
    end
end

function checks.fields(given, spec, prefix)
    local taken = {}
    for name, value in pairs(given) do
        local field = prefix .. tostring(name)
        if spec[name] == nil then
            local names = {}
            for known in pairs(spec) do
                names[#names + 1] = tostring(known)
            end
            table.sort(names)
            checks.fail("there is no field " .. field .. "; the fields are " .. table.concat(names, ", "))
        end
        taken[name] = spec[name](field, value)
    end
    return taken
end

-- A table with these fields. needed: a list of the names that must be there.
function checks.table_of(spec, wanted, needed)
    return function(field, value)
        if type(value) ~= "table" then
            checks.refuse(field, wanted, value)
        end
        for _, name in ipairs(needed or {}) do
            if value[name] == nil then
                checks.refuse(field .. "." .. name, "needed", nil)
            end
        end
        return checks.fields(value, spec, field .. ".")
    end
end

-- A list whose entries are accepted by a check. least: how many there must be.
function checks.list_of(check, wanted, least)
    return function(field, value)
        if type(value) ~= "table" or #value < (least or 0) then
            checks.refuse(field, wanted, value)
        end
        local list = {}
        for index, entry in ipairs(value) do
            list[index] = check(field .. "[" .. index .. "]", entry)
        end
        return list
    end
end

-- A point {x, y}, or {x = , y = }.
function checks.point(field, value)
    local x = type(value) == "table" and (value.x or value[1])
    local y = type(value) == "table" and (value.y or value[2])
    if not checks.is_number(x) or not checks.is_number(y) then
        checks.refuse(field, "a point {x, y}", value)
    end
    return { x = x, y = y }
end

-- Four sides: one number for all, {across, down}, or a table of left, right, top and bottom (what is left out is 0).
function checks.sides(check)
    return function(field, value)
        if type(value) == "number" then
            check(field, value)
            return { left = value, right = value, top = value, bottom = value }
        elseif type(value) ~= "table" then
            checks.refuse(field, "a number, {across, down} or a table of left, right, top and bottom", value)
        elseif value[1] ~= nil then
            local across, down = check(field .. "[1]", value[1]), check(field .. "[2]", value[2])
            return { left = across, right = across, top = down, bottom = down }
        end
        local sides = checks.fields(value, { left = check, right = check, top = check, bottom = check }, field .. ".")
        for _, side in ipairs{ "left", "right", "top", "bottom" } do
            sides[side] = sides[side] or 0
        end
        return sides
    end
end

return checks
