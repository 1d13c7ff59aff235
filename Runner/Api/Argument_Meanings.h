#pragma once
// What the arguments of the Runner's functions are, by name: an argument of one name is the same thing in every
// function. For reference pages and editors; those of the module's built-ins stand in
// Files/Graphics/Function_Arguments.h.
//
// Units: room units to the right and downwards, screen units in draw_gui, pixels in a surface; degrees.

namespace Runner
{
struct ArgumentMeaning
{
    const char* name;
    const char* kind; // as errors say it
    const char* meaning;
};

inline constexpr ArgumentMeaning ARGUMENT_MEANINGS[] = {
    // ---- things, by number ----
    {"object", "a whole number", "an object's index, as object_add gave it"},
    {"instance", "an instance", "an instance's self or its identifier"},
    {"room", "a whole number", "a room's index, as room_add gave it"},
    {"sprite", "a whole number", "a sprite, as sprite_add gave it; -1 for a plain colour in space"},
    {"surface", "a whole number", "a surface, as surface_create gave it"},
    {"map", "a whole number", "a tile map, as tilemap_add gave it"},
    {"view", "a whole number", "a view of the running room, 0 to 7"},
    {"script", "a whole number", "a script's number, as script_add gave it"},
    // ---- input ----
    {"key", "a string", "a key by what is written on it (\"space\"), or by its place on a US keyboard (\"@w\")"},
    {"mouse_button", "a string", "\"left\", \"middle\", \"right\", \"side1\" or \"side2\""},
    {"pad", "a whole number", "a gamepad, 0 to 7"},
    {"axis", "a string", "an axis of a gamepad, such as \"left_x\""},
    {"button", "a string", "a button of a gamepad, such as \"a\""},
    {"action", "a string", "the name of an action, as action_add made it"},
    {"part", "a number", "of a stick's whole way"},
    // ---- values ----
    {"fields", "a table", "named fields; an unknown name is refused"},
    {"function", "a function", "what is called"},
    {"text", "a string or a number", "shown as it is; \\n starts a line"},
    {"file", "a string", "a file's name, relative to the game's file"},
    {"name", "a string", "a file's name in the save area"},
    {"format", "a string", "\"png\" or \"bmp\""},
    {"seed", "a whole number", "where the random numbers start"},
    {"n", "a whole number", "a count, from 0"},
    {"low", "a number", "the least that can come"},
    {"high", "a number", "what comes no more"},
    {"on", "true or false", "whether it is on"},
    {"version", "a whole number", "of the game, 1 or more"},
    {"slots", "a whole number", "files that take turns, 1 to 100"},
    {"camera", "a whole number", "a camera's number"},
    {"camera_name", "a string", "the name of a camera, up to 100 bytes; empty for none"},
    {"script_name", "a string", "by which a saved game finds the script in another version of the game"},
    // ---- colours ----
    {"colour", "a colour (see colour_rgb)", "red, green and blue in one number, red in the lowest byte"},
    {"alpha", "a number", "0 is invisible, 1 covers"},
    {"red", "a number", "0 to 255"},
    {"green", "a number", "0 to 255"},
    {"blue", "a number", "0 to 255"},
    // ---- positions and sizes ----
    {"x", "a number", "to the right"},
    {"y", "a number", "downwards"},
    {"z", "a number", "away from the eye"},
    {"x1", "a number", "first corner or end, to the right"},
    {"y1", "a number", "first corner or end, downwards"},
    {"z1", "a number", "first corner, away from the eye"},
    {"x2", "a number", "second corner or end, to the right"},
    {"y2", "a number", "second corner or end, downwards"},
    {"z2", "a number", "second corner, away from the eye"},
    {"x3", "a number", "third corner, to the right"},
    {"y3", "a number", "third corner, downwards"},
    {"z3", "a number", "third corner, away from the eye"},
    {"x4", "a number", "fourth corner, to the right"},
    {"y4", "a number", "fourth corner, downwards"},
    {"z4", "a number", "fourth corner, away from the eye"},
    {"w", "a whole number", "width, pixels"},
    {"h", "a whole number", "height, pixels"},
    {"radius", "a number", "from the middle to the edge"},
    {"outline", "true or false", "true draws the border alone"},
    {"scale", "a number", "1 is the size as it is"},
    {"xscale", "a number", "1 is the width as it is, -1 its mirror image"},
    {"yscale", "a number", "1 is the height as it is, -1 its mirror image"},
    {"angle", "a number", "counter-clockwise on the screen, degrees"},
    // ---- pictures ----
    {"frames", "a whole number", "pictures side by side in the file"},
    {"frame", "a number", "a picture of the sprite, from 0; wraps around"},
    {"frame_list", "a table of numbers", "for each sprite its picture, from 0; wraps around"},
    {"x_list", "a table of numbers", "for each sprite its x; as many as in frame_list"},
    {"y_list", "a table of numbers", "for each sprite its y; as many as in frame_list"},
    {"frame_width", "a whole number", "pixels"},
    {"frame_height", "a whole number", "pixels"},
    {"origin_x", "a number", "the point of a frame that is put at x, pixels from its left edge"},
    {"origin_y", "a number", "the point of a frame that is put at y, pixels from its top edge"},
    {"column", "a whole number", "of a tile, from 0"},
    {"row", "a whole number", "of a tile, from 0"},
    {"tile", "a whole number", "0 is empty, n is the sprite's frame n - 1"},
    {"map_file", "a string", "a map's file, relative to the game's file"},
    {"layer", "a string or a whole number", "a layer of the running room's map, by its name or by its number, from 1"},
    {"visible", "true or false", "whether the layer is drawn, where the groups around it are"},
    {"map_tile", "a whole number", "a tile by its number in the map, 0 is empty"},
    {"turn", "a whole number", "1 mirrored, 2 upside down, 4 columns exchanged with rows before that; summed"},
    // ---- matrices ----
    {"matrix", "a table of 16 numbers", "row by row"},
    {"a", "a table of 16 numbers", "the matrix that is applied first, row by row"},
    {"b", "a table of 16 numbers", "the matrix that is applied second, row by row"},
    {"angle_x", "a number", "rotation about the x axis, degrees"},
    {"angle_y", "a number", "rotation about the y axis, degrees"},
    {"angle_z", "a number", "rotation about the z axis, degrees"},
    {"scale_x", "a number", "factor along x"},
    {"scale_y", "a number", "factor along y"},
    {"scale_z", "a number", "factor along z"},
    {"from_x", "a number", "where the eye is"},
    {"from_y", "a number", "where the eye is"},
    {"from_z", "a number", "where the eye is"},
    {"to_x", "a number", "the point that the eye looks at"},
    {"to_y", "a number", "the point that the eye looks at"},
    {"to_z", "a number", "the point that the eye looks at"},
    {"down_x", "a number", "the direction that appears as downwards on the screen"},
    {"down_y", "a number", "the direction that appears as downwards on the screen"},
    {"down_z", "a number", "the direction that appears as downwards on the screen"},
    {"width", "a number", "of a line, or of the near plane"},
    {"height", "a number", "of the near plane"},
    {"near", "a number", "distance from the eye to the near plane"},
    {"far", "a number", "distance from the eye to the far plane"},
    {"fov_y", "a number", "vertical angle of view, degrees"},
    {"aspect", "a number", "width divided by height"},
};
} // namespace Runner
