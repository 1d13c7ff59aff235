-- What the scripts of Tests/Kit say they expect. The first wrong value ends the script with one line at its place.

local expect = {}

local count = 0

local function shown(value)
    return type(value) == "number" and string.format("%.17g", value) or tostring(value)
end

-- The same value: numbers bit for bit.
function expect.equal(what, got, wanted)
    count = count + 1
    if got ~= wanted then
        error(what .. ": got " .. shown(got) .. ", wanted " .. shown(wanted), 2)
    end
end

function expect.near(what, got, wanted, tolerance)
    count = count + 1
    if not (math.abs(got - wanted) <= tolerance) then
        error(what .. ": got " .. shown(got) .. ", wanted " .. shown(wanted) .. " to " .. shown(tolerance), 2)
    end
end

function expect.is(what, holds)
    count = count + 1
    if not holds then
        error(what .. ": this does not hold", 2)
    end
end

-- x, y, zoom and angle, bit for bit.
function expect.pose(what, got, wanted)
    count = count + 1
    for _, name in ipairs{ "x", "y", "zoom", "angle" } do
        if got[name] ~= wanted[name] then
            error(what .. ", " .. name .. ": got " .. shown(got[name]) .. ", wanted " .. shown(wanted[name]), 2)
        end
    end
end

-- The refusal that a part of the kit raises for its caller to report.
function expect.refusal(what, f, wanted)
    count = count + 1
    local ok, problem = pcall(f)
    local text = ok and "no error" or type(problem) == "table" and problem.refused or tostring(problem)
    if text ~= wanted then
        error(what .. ": got " .. text .. ", wanted " .. wanted, 2)
    end
end

-- The end of a script: the test that runs it looks for this line.
function expect.done()
    log("expected: " .. count)
    game_end()
end

return expect
