local hero = include("hero.lua")

local function is_taken(self)
    for n = 0, instance_count(hero.object) - 1 do
        local other = instance_get(instance_find(hero.object, n))
        if math.abs(other.x - self.x) < 18 and math.abs(other.y - 12 - self.y) < 22 then return true end
    end
    return false
end

return object_add{
    name = "coin", bbox = {-6, -6, 6, 6},
    step = function(self)
        if is_taken(self) then
            vars.coins = vars.coins + 1
            instance_destroy(self)
        end
    end,
    draw = function(self) draw_set_colour(colours.yellow) draw_circle(self.x, self.y, 6) end,
}
