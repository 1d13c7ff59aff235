-- A small game that takes memory in every way: cameras and their table, callbacks and their slots, matrices, texts,
-- arrays, rooms. It goes on when a request is refused, as a careful game would.

local function try(action, ...)
    local good, result = pcall(action, ...)
    return good and result or -1
end

local function closure(id)
    return function() return { id, "text", { id } } end
end

local function equip(id)
    try(camera_set_begin_script, id, closure(id))
    try(camera_set_update_script, id, function() try(camera_set_view_pos, id, frame_number(), "12") end)
    try(camera_set_end_script, id, function() try(camera_destroy, id) end)
end

local function exchange_matrices(from, to)
    local view, projection = try(camera_get_view_mat, from), try(camera_get_proj_mat, from)
    if type(view) == "table" and type(projection) == "table" then
        try(camera_set_view_mat, to, view)
        try(camera_set_proj_mat, to, projection)
    end
end

local marker = object_add{ bbox = { 0, 0, 8, 8 }, step = function(self) self.x = self.x + 1 end }
local first, second

local function create()
    local cameras = {}
    for i = 1, 12 do
        cameras[i] = i % 2 == 0 and try(camera_create) or try(camera_create_view, i, 0, 64, 64)
        equip(cameras[i])
    end
    for i = 2, 12 do
        exchange_matrices(cameras[i - 1], cameras[i])
    end
    try(view_set_camera, 0, cameras[5])
    for i = 1, 12, 3 do
        try(camera_destroy, cameras[i])
    end
    try(camera_set_view_target, cameras[3], "none")
end

local function step()
    if frame_number() == 2 then
        collect()
        room_goto(second)
    elseif frame_number() == 4 then
        room_goto(first)
    end
    equip(try(view_get_camera, 1))
end

local views = { [0] = { target = marker, hborder = 20 }, [1] = { x = 10 } }
local instances = { { marker, 1, 1 }, { marker, 2, 2 } }
first = room_add{ width = 400, height = 300, views = views, instances = instances, create = create, step = step }
second = room_add{ width = 100, height = 90, create = create, step = step }
