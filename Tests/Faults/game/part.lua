function part_of(number)
    local parts = {}
    for i = 1, 8 do
        parts[i] = ("%d:%d"):format(number, i)
    end
    return table.concat(parts, ",")
end
