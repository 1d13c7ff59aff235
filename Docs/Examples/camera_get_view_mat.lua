-- Entries 13 and 14 of the view's matrix say where the eye stands, as long as the view is not turned.
local field = include("field.lua")

field.show{
    text = function()
        local eye = camera_get_view_mat(view_get_camera(0))
        return string.format("the eye is at %.1f, %.1f", -eye[13], -eye[14])
    end,
}
