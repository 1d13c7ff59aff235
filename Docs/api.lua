---@meta
-- All that a game's script can call, with kinds and units, for editors that understand the annotations of the Lua
-- language server. Made by script_documents from the tables of functions and from Docs/Script_API.md; do not edit by
-- hand. Docs/Your_Game.md tells how an editor finds it. The Runner never reads it.

---@alias Matrix number[] 16 numbers, row by row
---@alias Target Instance|integer an instance, an object or -1 for none
---@alias Script function|integer a function, a number of script_add, or -1 for none

---An instance, as events get it.
---@class Instance
---@field id integer Read only
---@field object integer Read only
---@field x number Position in the room
---@field y number Position in the room
---@field sprite integer The sprite, -1 for none, and its frame, which wraps around
---@field frame number The sprite, -1 for none, and its frame, which wraps around
---@field angle number Rotation and scale of the sprite
---@field xscale number Rotation and scale of the sprite
---@field yscale number Rotation and scale of the sprite
---@field colour integer What the sprite is multiplied with; white and 1 leave it as it is
---@field alpha number What the sprite is multiplied with; white and 1 leave it as it is
---@field depth number As in `object_add`
---@field visible boolean As in `object_add`
---@field solid boolean As in `object_add`
---@field bbox_left number Read only: the bounding box in the room
---@field bbox_top number Read only: the bounding box in the room
---@field bbox_right number Read only: the bounding box in the room
---@field bbox_bottom number Read only: the bounding box in the room
---@field [string] any

---@class view.fields
---@field visible? boolean Whether the view is drawn
---@field x? number Left and top edge of the rectangle of the room that is seen
---@field y? number Left and top edge of the rectangle of the room that is seen
---@field w? number Size of that rectangle
---@field h? number Size of that rectangle
---@field xport? number Left and top edge of the port: the rectangle of the screen that shows it
---@field yport? number Left and top edge of the port: the rectangle of the screen that shows it
---@field wport? number Size of the port
---@field hport? number Size of the port
---@field hborder? number Dead zone: how far the target stays from the edges before the view follows
---@field vborder? number Dead zone: how far the target stays from the edges before the view follows
---@field hspeed? number Largest step per frame; -1 for no limit
---@field vspeed? number Largest step per frame; -1 for no limit
---@field target? Target An object that exists, or an instance, to follow; -1 for none

---@class Colours
---@field white integer
---@field black integer
---@field grey integer
---@field silver integer
---@field red integer
---@field green integer
---@field blue integer
---@field yellow integer
---@field orange integer
---@field purple integer
---@field cyan integer
---@field brown integer

---A table that a save keeps: numbers, strings, booleans, tables of these
---@type table<string, any>
vars = {}

---A table of colours by name: `white black grey silver red green blue yellow orange purple cyan brown`
---@type Colours
colours = {}

---A small table of the user's choices, kept apart from saves: numbers, strings up to 1000 bytes, `true` and `false` under names, at most 100. In a window it is read from `settings.txt` in the save area when the game starts, and kept there (`--settings FILE`); a load does not change it
---@type table<string, string|number|boolean>
settings = {}

---Makes a camera at 0, 0 whose view has no size yet: give it one with `camera_set_view_size`, or both matrices. It stays until a script destroys it.
---@return integer camera the camera
function camera_create() end

---Makes a camera that shows a rectangle of the room, with its matrices built at once. It stays until a script destroys it.
---@param x number left edge of the view, room units
---@param y number top edge of the view, room units
---@param w number width of the view, room units
---@param h number height of the view, room units
---@param angle? number rotation of the view, degrees
---@param target? Target what the camera follows, -1 for nothing
---@param speed_x? number largest step sideways, room units per update; negative for no limit
---@param speed_y? number largest step up or down, room units per update; negative for no limit
---@param border_x? number dead zone: the target keeps this far from the left and right edge, room units
---@param border_y? number dead zone: the target keeps this far from the top and bottom edge, room units
---@return integer camera the camera
function camera_create_view(x, y, w, h, angle, target, speed_x, speed_y, border_x, border_y) end

---Destroys a camera. A view that showed it shows nothing. Its number goes to a camera that is made later.
---@param camera integer the camera
function camera_destroy(camera) end

---What is drawn after it in this view goes through this camera. It neither runs callbacks nor follows the target, and changes neither the port nor which camera is active. A view whose position, size or angle was set has its matrices built first. The next view starts with its own camera again.
---@param camera integer the camera
function camera_apply(camera) end

---Which camera draws now.
---@return integer camera the camera
function camera_get_active() end

---Which camera draws a room that has no visible view. At first it is one that the Runner makes and fits to the room.
---@return integer camera the camera
function camera_get_default() end

---Chooses the camera that draws a room without a visible view.
---@param camera integer the camera
function camera_set_default(camera) end

---Replaces the matrix that leads from the room to the eye. It stays until something builds the view anew: a step that follows a target, or a position, size or angle that is set.
---@param camera integer the camera
---@param matrix Matrix 16 numbers, row by row
function camera_set_view_mat(camera, matrix) end

---Replaces the matrix that leads from the eye to the picture. A projection with perspective makes the camera one of perspective: later builds keep that.
---@param camera integer the camera
---@param matrix Matrix 16 numbers, row by row
function camera_set_proj_mat(camera, matrix) end

---Gives a callback that runs once a frame in place of the step after the target.
---@param camera integer the camera
---@param script Script what to call, -1 for nothing
function camera_set_update_script(camera, script) end

---Gives a callback that runs before the camera's update, in each frame that it draws.
---@param camera integer the camera
---@param script Script what to call, -1 for nothing
function camera_set_begin_script(camera, script) end

---Gives a callback that runs after the camera's view was drawn.
---@param camera integer the camera
---@param script Script what to call, -1 for nothing
function camera_set_end_script(camera, script) end

---Puts the top left corner of the view's rectangle. The room does not hold it back; following does, with the next step.
---@param camera integer the camera
---@param x number left edge of the view, room units
---@param y number top edge of the view, room units
function camera_set_view_pos(camera, x, y) end

---Sets the size of the view's rectangle, from its top left corner. Half the size is a zoom of 2.
---@param camera integer the camera
---@param w number width of the view, room units
---@param h number height of the view, room units
function camera_set_view_size(camera, w, h) end

---Limits how far the view may move in one step after its target. 0 holds it still.
---@param camera integer the camera
---@param speed_x number largest step sideways, room units per update; negative for no limit
---@param speed_y number largest step up or down, room units per update; negative for no limit
function camera_set_view_speed(camera, speed_x, speed_y) end

---Sets the dead zone: the target moves freely while it keeps this far from the view's edges. Twice the border as large as the view centres the target.
---@param camera integer the camera
---@param border_x number dead zone: the target keeps this far from the left and right edge, room units
---@param border_y number dead zone: the target keeps this far from the top and bottom edge, room units
function camera_set_view_border(camera, border_x, border_y) end

---Turns the view about its middle. A positive angle turns the picture counter-clockwise on the screen.
---@param camera integer the camera
---@param angle number rotation of the view, degrees
function camera_set_view_angle(camera, angle) end

---Chooses what the camera follows: an instance, or the first instance of an object or its children. One that does not exist is no error; the view stays where it is.
---@param camera integer the camera
---@param target Target what the camera follows, -1 for nothing
function camera_set_view_target(camera, target) end

---The matrix that leads from the room to the eye, built first where that is due.
---@param camera integer the camera
---@return Matrix matrix 16 numbers, row by row
function camera_get_view_mat(camera) end

---The matrix that leads from the eye to the picture, built first where that is due. While a surface is drawn into, it is flipped as that surface needs it: entries 2, 6, 10 and 14 are negated.
---@param camera integer the camera
---@return Matrix matrix 16 numbers, row by row
function camera_get_proj_mat(camera) end

---The callback that runs in place of following.
---@param camera integer the camera
---@return Script script what to call, -1 for nothing
function camera_get_update_script(camera) end

---The callback that runs before the camera's update.
---@param camera integer the camera
---@return Script script what to call, -1 for nothing
function camera_get_begin_script(camera) end

---The callback that runs after the camera's view was drawn.
---@param camera integer the camera
---@return Script script what to call, -1 for nothing
function camera_get_end_script(camera) end

---Left edge of the view's rectangle.
---@param camera integer the camera
---@return number x left edge of the view, room units
function camera_get_view_x(camera) end

---Top edge of the view's rectangle.
---@param camera integer the camera
---@return number y top edge of the view, room units
function camera_get_view_y(camera) end

---Width of the view's rectangle.
---@param camera integer the camera
---@return number w width of the view, room units
function camera_get_view_width(camera) end

---Height of the view's rectangle.
---@param camera integer the camera
---@return number h height of the view, room units
function camera_get_view_height(camera) end

---The limit of a step sideways.
---@param camera integer the camera
---@return number speed_x largest step sideways, room units per update; negative for no limit
function camera_get_view_speed_x(camera) end

---The limit of a step up or down.
---@param camera integer the camera
---@return number speed_y largest step up or down, room units per update; negative for no limit
function camera_get_view_speed_y(camera) end

---The border at the left and the right edge.
---@param camera integer the camera
---@return number border_x dead zone: the target keeps this far from the left and right edge, room units
function camera_get_view_border_x(camera) end

---The border at the top and the bottom edge.
---@param camera integer the camera
---@return number border_y dead zone: the target keeps this far from the top and bottom edge, room units
function camera_get_view_border_y(camera) end

---The angle that was set.
---@param camera integer the camera
---@return number angle rotation of the view, degrees
function camera_get_view_angle(camera) end

---What was set as target, whether it exists or not.
---@param camera integer the camera
---@return integer target what the camera follows, -1 for nothing
function camera_get_view_target(camera) end

---Which camera a view shows, -1 for none.
---@param view integer the view
---@return integer camera the camera
function view_get_camera(view) end

---Whether a view is drawn: 1 or 0.
---@param view integer the view
---@return integer visible whether the view is drawn
function view_get_visible(view) end

---Left edge of the rectangle of the screen that shows the view.
---@param view integer the view
---@return number xport left edge of the view's port, screen units
function view_get_xport(view) end

---Top edge of the rectangle of the screen that shows the view.
---@param view integer the view
---@return number yport top edge of the view's port, screen units
function view_get_yport(view) end

---Width of the rectangle of the screen that shows the view.
---@param view integer the view
---@return number wport width of the view's port, screen units
function view_get_wport(view) end

---Height of the rectangle of the screen that shows the view.
---@param view integer the view
---@return number hport height of the view's port, screen units
function view_get_hport(view) end

---The surface that a view draws into, -1 for the screen.
---@param view integer the view
---@return integer surface what the view draws into, -1 for the screen
function view_get_surface_id(view) end

---Gives a view another camera; -1 for none, and then it shows nothing.
---@param view integer the view
---@param camera integer the camera
function view_set_camera(view, camera) end

---Shows or hides a view.
---@param view integer the view
---@param visible boolean|number whether the view is drawn
function view_set_visible(view, visible) end

---Moves the port sideways.
---@param view integer the view
---@param xport number left edge of the view's port, screen units
function view_set_xport(view, xport) end

---Moves the port up or down.
---@param view integer the view
---@param yport number top edge of the view's port, screen units
function view_set_yport(view, yport) end

---Sets the port's width. What the camera shows is stretched to it.
---@param view integer the view
---@param wport number width of the view's port, screen units
function view_set_wport(view, wport) end

---Sets the port's height. What the camera shows is stretched to it.
---@param view integer the view
---@param hport number height of the view's port, screen units
function view_set_hport(view, hport) end

---Lets a view draw into a surface, over its whole size, instead of on the screen. One that does not exist shows nothing.
---@param view integer the view
---@param surface integer what the view draws into, -1 for the screen
function view_set_surface_id(view, surface) end

---@class object_add.fields
---@field name? string For error messages and `object_get_name`
---@field parent? integer An object; its events and the fields that this table leaves out are inherited
---@field sprite? integer Drawn when there is no draw event; -1 for none
---@field bbox? number[] `{left, top, right, bottom}` around the instance's position
---@field depth? number Larger is further away
---@field visible? boolean Whether it is drawn
---@field solid? boolean For the game's own use
---@field cull? boolean false: draw always, also outside the view. For objects that draw beyond their sprite and bbox
---@field create? fun(self: Instance) Events, called with `self`
---@field step? fun(self: Instance) Events, called with `self`
---@field draw? fun(self: Instance) Events, called with `self`
---@field destroy? fun(self: Instance) Events, called with `self`

---Adds an object. Indices count from 0. Fields below, all optional
---@param fields object_add.fields named fields; an unknown name is refused
---@return integer index
function object_add(fields) end

---The name that `object_add` was given
---@param object integer an object's index, as object_add gave it
---@return string string
function object_get_name(object) end

---Runs the create event at once. Identifiers count from 100000 and are never reused
---@param x number to the right
---@param y number downwards
---@param object integer an object's index, as object_add gave it
---@return integer id
function instance_create(x, y, object) end

---Runs the destroy event at once; the instance is skipped from now on and removed at the end of the step
---@param instance Instance|integer an instance's self or its identifier
function instance_destroy(instance) end

---Takes an instance out of the game (no step, no drawing, not followed), and back
---@param instance Instance|integer an instance's self or its identifier
function instance_deactivate(instance) end

---Takes an instance out of the game (no step, no drawing, not followed), and back
---@param instance Instance|integer an instance's self or its identifier
function instance_activate(instance) end

---Whether the instance exists; of an object, whether any instance of it or its children does. Destroyed and deactivated instances do not count
---@param instance Instance|integer an instance's self or its identifier
---@return boolean boolean
function instance_exists(instance) end

---The n-th instance (from 0) of an object and its children, in the order of creation; -1 when there is none
---@param object integer an object's index, as object_add gave it
---@param n integer a count, from 0
---@return integer id
function instance_find(object, n) end

---How many instances an object and its children have
---@param object integer an object's index, as object_add gave it
---@return number number
function instance_count(object) end

---The instance's `self`; nil when it does not exist
---@param instance Instance|integer an instance's self or its identifier
---@return Instance? self
function instance_get(instance) end

---@class room_add.fields
---@field name? string
---@field width? number 1 to 1,000,000
---@field height? number 1 to 1,000,000
---@field background? integer A colour
---@field views? table<integer, view.fields> `{ [0] = {...}, [1] = {...} }`, numbers 0 to 7
---@field instances? any[][] `{ {object, x, y}, ... }`
---@field create? fun() Called without arguments; `draw` comes under the instances
---@field step? fun() Called without arguments; `draw` comes under the instances
---@field draw? fun() Called without arguments; `draw` comes under the instances
---@field draw_gui? fun() Called without arguments; `draw` comes under the instances
---@field load? fun() Called without arguments after a saved game that plays in this room was loaded. Gives cameras their callbacks again

---Adds a room. Fields below
---@param fields room_add.fields named fields; an unknown name is refused
---@return integer index
function room_add(fields) end

---Changes to the room at the end of the step
---@param room integer a room's index, as room_add gave it
function room_goto(room) end

---The running room; -1 before the first
---@return integer index
function room_get() end

---Size of the running room
---@return number number
function room_width() end

---Size of the running room
---@return number number
function room_height() end

---The game's screen, in which ports and `draw_gui` are measured. 1280 x 720 unless set. In the main file, before `room_add`
---@param w integer width, pixels
---@param h integer height, pixels
function screen_set_size(w, h) end

---Size of the game's screen. `runner --size` scales the picture, not these
---@return number number
function screen_width() end

---Size of the game's screen. `runner --size` scales the picture, not these
---@return number number
function screen_height() end

---A number under which a callback can be given to a camera. By the name a save of another version of the game finds it again
---@param callback function what is called
---@param script_name? string by which a saved game finds the script in another version of the game
---@return integer index
function script_add(callback, script_name) end

---Runs another Lua file, named relative to the game's, once; later calls give the first result. `kit/camera_kit.lua` and its parts are also found in the Runner's own folder, `runner --kit DIRECTORY`
---@overload fun(file: "kit/camera_kit.lua"): Kit
---@param file string a file's name, relative to the game's file
---@return any result
function include(file) end

---In a callback: the camera whose callback it is; else -1
---@return integer camera
function camera_current() end

---Seeded: a number in [0, 1), in [low, high), a whole number in 0 to n (0 or more). `math.random` draws from the same numbers
---@return number number
function random() end

---Seeded: a number in [0, 1), in [low, high), a whole number in 0 to n (0 or more). `math.random` draws from the same numbers
---@param low number the least that can come
---@param high number what comes no more
---@return number number
function random_range(low, high) end

---Seeded: a number in [0, 1), in [low, high), a whole number in 0 to n (0 or more). `math.random` draws from the same numbers
---@param n integer a count, from 0
---@return number number
function irandom(n) end

---Starts the random numbers anew
---@param seed integer where the random numbers start
function random_set_seed(seed) end

---Frames played before this one
---@return number number
function frame_number() end

---A line on the console (`log`: a string or a number); nothing with `--quiet`
---@param text string|number shown as it is; \n starts a line
function log(text) end

---Runs the host's and Lua's collectors, whole
function collect() end

---What has been drawn so far, as a picture in the save area, in the format of its name: `.png` or `.bmp`; a name without an extension gets the format asked for (`"png"` or `"bmp"`), or else PNG. False when it could not be written, and with `--no-draw`: the console says why, and an older picture of that name is as it was
---@param name string a file's name in the save area
---@param format? string "png" or "bmp"
---@return boolean boolean
function screenshot(name, format) end

---Ends the game after this frame
function game_end() end

---Runs a script by its number from `script_add`, without arguments
---@param script integer a script's number, as script_add gave it
function script_call(script) end

---Whether `script_add` has given that number
---@param script integer a script's number, as script_add gave it
---@return boolean boolean
function script_exists(script) end

---0 to 255 each
---@param red number 0 to 255
---@param green number 0 to 255
---@param blue number 0 to 255
---@return integer colour
function colour_rgb(red, green, blue) end

---Alpha is 0 to 1. The depth is the z of what is drawn flat, for 3D scenes
---@param colour integer red, green and blue in one number, red in the lowest byte
function draw_set_colour(colour) end

---Alpha is 0 to 1. The depth is the z of what is drawn flat, for 3D scenes
---@param alpha number 0 is invisible, 1 covers
function draw_set_alpha(alpha) end

---Alpha is 0 to 1. The depth is the z of what is drawn flat, for 3D scenes
---@param z number away from the eye
function draw_set_depth(z) end

---While on, the nearer thing covers the farther one, whichever was drawn first
---@param on boolean whether it is on
function draw_set_depth_test(on) end

---Fills the port or surface being drawn
---@param colour integer red, green and blue in one number, red in the lowest byte
---@param alpha? number 0 is invisible, 1 covers
function draw_clear(colour, alpha) end

---`outline` true draws the border alone, here and below
---@param x1 number first corner or end, to the right
---@param y1 number first corner or end, downwards
---@param x2 number second corner or end, to the right
---@param y2 number second corner or end, downwards
---@param outline? boolean true draws the border alone
function draw_rectangle(x1, y1, x2, y2, outline) end

---The width is 1 unless given
---@param x1 number first corner or end, to the right
---@param y1 number first corner or end, downwards
---@param x2 number second corner or end, to the right
---@param y2 number second corner or end, downwards
---@param width? number of a line, or of the near plane
function draw_line(x1, y1, x2, y2, width) end

---@param x number to the right
---@param y number downwards
---@param radius number from the middle to the edge
---@param outline? boolean true draws the border alone
function draw_circle(x, y, radius, outline) end

---@param x1 number first corner or end, to the right
---@param y1 number first corner or end, downwards
---@param x2 number second corner or end, to the right
---@param y2 number second corner or end, downwards
---@param x3 number third corner, to the right
---@param y3 number third corner, downwards
---@param outline? boolean true draws the border alone
function draw_triangle(x1, y1, x2, y2, x3, y3, outline) end

---A string or a number. Top left corner; 8 x 12 units a character; `\n` starts a line
---@param x number to the right
---@param y number downwards
---@param text string|number shown as it is; \n starts a line
---@param scale? number 1 is the size as it is
function draw_text(x, y, text, scale) end

---A PNG relative to the game's file, with frames side by side. The origin is the point of a frame that is put at x, y
---@param file string a file's name, relative to the game's file
---@param frames? integer pictures side by side in the file
---@param origin_x? number the point of a frame that is put at x, pixels from its left edge
---@param origin_y? number the point of a frame that is put at y, pixels from its top edge
---@return integer sprite
function sprite_add(file, frames, origin_x, origin_y) end

---A PNG with frames in rows, counted row by row
---@param file string a file's name, relative to the game's file
---@param frame_width integer pixels
---@param frame_height integer pixels
---@param origin_x? number the point of a frame that is put at x, pixels from its left edge
---@param origin_y? number the point of a frame that is put at y, pixels from its top edge
---@return integer sprite
function sprite_add_sheet(file, frame_width, frame_height, origin_x, origin_y) end

---Size of one frame, and how many there are
---@param sprite integer a sprite, as sprite_add gave it; -1 for a plain colour in space
---@return number number
function sprite_width(sprite) end

---Size of one frame, and how many there are
---@param sprite integer a sprite, as sprite_add gave it; -1 for a plain colour in space
---@return number number
function sprite_height(sprite) end

---Size of one frame, and how many there are
---@param sprite integer a sprite, as sprite_add gave it; -1 for a plain colour in space
---@return number number
function sprite_frames(sprite) end

---@param sprite integer a sprite, as sprite_add gave it; -1 for a plain colour in space
---@param frame number a picture of the sprite, from 0; wraps around
---@param x number to the right
---@param y number downwards
function draw_sprite(sprite, frame, x, y) end

---@param sprite integer a sprite, as sprite_add gave it; -1 for a plain colour in space
---@param frame number a picture of the sprite, from 0; wraps around
---@param x number to the right
---@param y number downwards
---@param xscale? number 1 is the width as it is, -1 its mirror image
---@param yscale? number 1 is the height as it is, -1 its mirror image
---@param angle? number counter-clockwise on the screen, degrees
---@param colour? integer red, green and blue in one number, red in the lowest byte
---@param alpha? number 0 is invisible, 1 covers
function draw_sprite_ext(sprite, frame, x, y, xscale, yscale, angle, colour, alpha) end

---Many at once: `draw_sprite` for each entry of the lists, the quickest way to draw thousands. A wrong entry is refused, and nothing is drawn
---@param sprite integer a sprite, as sprite_add gave it; -1 for a plain colour in space
---@param frame_list number[] for each sprite its picture, from 0; wraps around
---@param x_list number[] for each sprite its x; as many as in frame_list
---@param y_list number[] for each sprite its y; as many as in frame_list
function draw_sprites(sprite, frame_list, x_list, y_list) end

---Pictures to draw into, transparent at first; at most 8192 each way
---@param w integer width, pixels
---@param h integer height, pixels
---@return integer surface
function surface_create(w, h) end

---Pictures to draw into, transparent at first; at most 8192 each way
---@param surface integer a surface, as surface_create gave it
function surface_free(surface) end

---Pictures to draw into, transparent at first; at most 8192 each way
---@param surface integer a surface, as surface_create gave it
---@return boolean boolean
function surface_exists(surface) end

---Draws into a surface, one unit a pixel, and back. While drawing only
---@param surface integer a surface, as surface_create gave it
function surface_set_target(surface) end

---Draws into a surface, one unit a pixel, and back. While drawing only
function surface_reset_target() end

---@param surface integer a surface, as surface_create gave it
---@param x number to the right
---@param y number downwards
---@param xscale? number 1 is the width as it is, -1 its mirror image
---@param yscale? number 1 is the height as it is, -1 its mirror image
---@param angle? number counter-clockwise on the screen, degrees
---@param colour? integer red, green and blue in one number, red in the lowest byte
---@param alpha? number 0 is invisible, 1 covers
function draw_surface(surface, x, y, xscale, yscale, angle, colour, alpha) end

---@class tilemap_add.fields
---@field sprite? integer
---@field columns? integer
---@field rows? integer
---@field tile_width? number
---@field tile_height? number
---@field data? integer[]

---Fields: `sprite`, `columns`, `rows`, `tile_width` and `tile_height` (the frame's size unless given), `data`: columns times rows tiles, row by row, 0 is empty, n is the sprite's frame n - 1
---@param fields tilemap_add.fields named fields; an unknown name is refused
---@return integer map
function tilemap_add(fields) end

---Columns and rows count from 0; the tile 0 is empty, or outside the map
---@param map integer a tile map, as tilemap_add gave it
---@param column integer of a tile, from 0
---@param row integer of a tile, from 0
---@param tile integer 0 is empty, n is the sprite's frame n - 1
function tilemap_set(map, column, row, tile) end

---Columns and rows count from 0; the tile 0 is empty, or outside the map
---@param map integer a tile map, as tilemap_add gave it
---@param column integer of a tile, from 0
---@param row integer of a tile, from 0
---@return integer tile
function tilemap_get(map, column, row) end

---Draws the tiles that the view shows
---@param map integer a tile map, as tilemap_add gave it
---@param x number to the right
---@param y number downwards
function draw_tilemap(map, x, y) end

---@return Matrix matrix
function matrix_identity() end

---@param a Matrix the matrix that is applied first, row by row
---@param b Matrix the matrix that is applied second, row by row
---@return Matrix matrix
function matrix_multiply(a, b) end

---Scales, rotates about the z axis, then about x, then about y, and moves last
---@param x number to the right
---@param y number downwards
---@param z number away from the eye
---@param angle_x number rotation about the x axis, degrees
---@param angle_y number rotation about the y axis, degrees
---@param angle_z number rotation about the z axis, degrees
---@param scale_x number factor along x
---@param scale_y number factor along y
---@param scale_z number factor along z
---@return Matrix matrix
function matrix_build(x, y, z, angle_x, angle_y, angle_z, scale_x, scale_y, scale_z) end

---From the room to an eye that looks at a point. `down` is the direction that appears as downwards on the screen: 0, 1, 0 in a room seen from the front
---@param from_x number where the eye is
---@param from_y number where the eye is
---@param from_z number where the eye is
---@param to_x number the point that the eye looks at
---@param to_y number the point that the eye looks at
---@param to_z number the point that the eye looks at
---@param down_x number the direction that appears as downwards on the screen
---@param down_y number the direction that appears as downwards on the screen
---@param down_z number the direction that appears as downwards on the screen
---@return Matrix matrix
function matrix_look_at(from_x, from_y, from_z, to_x, to_y, to_z, down_x, down_y, down_z) end

---Shows a box of this size, without perspective
---@param width number of a line, or of the near plane
---@param height number of the near plane
---@param near number distance from the eye to the near plane
---@param far number distance from the eye to the far plane
---@return Matrix matrix
function matrix_ortho(width, height, near, far) end

---Width and height of what is seen at the distance `near`
---@param width number of a line, or of the near plane
---@param height number of the near plane
---@param near number distance from the eye to the near plane
---@param far number distance from the eye to the far plane
---@return Matrix matrix
function matrix_perspective(width, height, near, far) end

---Vertical angle of view in degrees; width divided by height
---@param fov_y number vertical angle of view, degrees
---@param aspect number width divided by height
---@param near number distance from the eye to the near plane
---@param far number distance from the eye to the far plane
---@return Matrix matrix
function matrix_perspective_fov(fov_y, aspect, near, far) end

---What is drawn from now on goes through the matrix first; without one nothing is moved
---@param matrix Matrix row by row
function matrix_set_world(matrix) end

---What is drawn from now on goes through the matrix first; without one nothing is moved
function matrix_reset_world() end

---Corners: top left, top right, bottom right, bottom left of the picture. Sprite -1: plain colour. Always with depth test
---@param sprite integer a sprite, as sprite_add gave it; -1 for a plain colour in space
---@param frame number a picture of the sprite, from 0; wraps around
---@param x1 number first corner or end, to the right
---@param y1 number first corner or end, downwards
---@param z1 number first corner, away from the eye
---@param x2 number second corner or end, to the right
---@param y2 number second corner or end, downwards
---@param z2 number second corner, away from the eye
---@param x3 number third corner, to the right
---@param y3 number third corner, downwards
---@param z3 number third corner, away from the eye
---@param x4 number fourth corner, to the right
---@param y4 number fourth corner, downwards
---@param z4 number fourth corner, away from the eye
function draw_quad3d(sprite, frame, x1, y1, z1, x2, y2, z2, x3, y3, z3, x4, y4, z4) end

---Six such faces
---@param sprite integer a sprite, as sprite_add gave it; -1 for a plain colour in space
---@param frame number a picture of the sprite, from 0; wraps around
---@param x1 number first corner or end, to the right
---@param y1 number first corner or end, downwards
---@param z1 number first corner, away from the eye
---@param x2 number second corner or end, to the right
---@param y2 number second corner or end, downwards
---@param z2 number second corner, away from the eye
function draw_box(sprite, frame, x1, y1, z1, x2, y2, z2) end

---By what the user's keyboard layout writes on the key: `"a"`, `"space"`, `"left_shift"`; with `@` before it, by place: `"@w"` is the key where a US keyboard has W
---@param key string a key by what is written on it ("space"), or by its place on a US keyboard ("@w")
---@return boolean boolean
function key_down(key) end

---By what the user's keyboard layout writes on the key: `"a"`, `"space"`, `"left_shift"`; with `@` before it, by place: `"@w"` is the key where a US keyboard has W
---@param key string a key by what is written on it ("space"), or by its place on a US keyboard ("@w")
---@return boolean boolean
function key_pressed(key) end

---By what the user's keyboard layout writes on the key: `"a"`, `"space"`, `"left_shift"`; with `@` before it, by place: `"@w"` is the key where a US keyboard has W
---@param key string a key by what is written on it ("space"), or by its place on a US keyboard ("@w")
---@return boolean boolean
function key_released(key) end

---What was typed in this frame, in UTF-8, at most 256 bytes; Ctrl+V types what was copied
---@return string text
function text_typed() end

---On the game's screen, in eighths of a unit; outside of it when the pointer is
---@return number number
function mouse_x() end

---On the game's screen, in eighths of a unit; outside of it when the pointer is
---@return number number
function mouse_y() end

---`left middle right side1 side2`
---@param mouse_button string "left", "middle", "right", "side1" or "side2"
---@return boolean boolean
function mouse_down(mouse_button) end

---`left middle right side1 side2`
---@param mouse_button string "left", "middle", "right", "side1" or "side2"
---@return boolean boolean
function mouse_pressed(mouse_button) end

---`left middle right side1 side2`
---@param mouse_button string "left", "middle", "right", "side1" or "side2"
---@return boolean boolean
function mouse_released(mouse_button) end

---Notches of this frame, away from the user and to the right
---@return number number
function mouse_wheel() end

---Notches of this frame, away from the user and to the right
---@return number number
function mouse_wheel_x() end

---Pads are 0 to 7; a new one gets the lowest free number
---@param pad integer a gamepad, 0 to 7
---@return boolean boolean
function pad_connected(pad) end

----1 to 1, y downwards; triggers 0 to 1: `left_x left_y right_x right_y left_trigger right_trigger`. 0 within the dead zone, and growing from its edge
---@param pad integer a gamepad, 0 to 7
---@param axis string an axis of a gamepad, such as "left_x"
---@return number number
function pad_axis(pad, axis) end

---`a b x y back guide start left_stick right_stick left_shoulder right_shoulder dpad_up dpad_down dpad_left dpad_right misc paddle1 paddle2 paddle3 paddle4 touchpad`
---@param pad integer a gamepad, 0 to 7
---@param button string a button of a gamepad, such as "a"
---@return boolean boolean
function pad_down(pad, button) end

---`a b x y back guide start left_stick right_stick left_shoulder right_shoulder dpad_up dpad_down dpad_left dpad_right misc paddle1 paddle2 paddle3 paddle4 touchpad`
---@param pad integer a gamepad, 0 to 7
---@param button string a button of a gamepad, such as "a"
---@return boolean boolean
function pad_pressed(pad, button) end

---`a b x y back guide start left_stick right_stick left_shoulder right_shoulder dpad_up dpad_down dpad_left dpad_right misc paddle1 paddle2 paddle3 paddle4 touchpad`
---@param pad integer a gamepad, 0 to 7
---@param button string a button of a gamepad, such as "a"
---@return boolean boolean
function pad_released(pad, button) end

---How far a stick must be moved before it counts: 0 to 0.95 of its way, 0.2 unless set
---@param part number of a stick's whole way
function pad_set_dead_zone(part) end

---@class action_add.fields
---@field name? string
---@field keys? string[]
---@field mouse? string[]
---@field buttons? string[]
---@field axes? string[]

---A named action with several bindings; one of the same name is replaced. Fields: `name`, `keys`, `mouse`, `buttons` (lists of names as above), `axes` (halves of axes: `"left_x-"`, `"right_trigger+"`)
---@param fields action_add.fields named fields; an unknown name is refused
function action_add(fields) end

---Whether any binding is down, and since and until when. An axis is down from half of its way on. With a pad, only its buttons and axes count
---@param action string the name of an action, as action_add made it
---@param pad? integer a gamepad, 0 to 7
---@return boolean boolean
function action_down(action, pad) end

---Whether any binding is down, and since and until when. An axis is down from half of its way on. With a pad, only its buttons and axes count
---@param action string the name of an action, as action_add made it
---@param pad? integer a gamepad, 0 to 7
---@return boolean boolean
function action_pressed(action, pad) end

---Whether any binding is down, and since and until when. An axis is down from half of its way on. With a pad, only its buttons and axes count
---@param action string the name of an action, as action_add made it
---@param pad? integer a gamepad, 0 to 7
---@return boolean boolean
function action_released(action, pad) end

---0 to 1: an axis counts by its way, all else whole
---@param action string the name of an action, as action_add made it
---@param pad? integer a gamepad, 0 to 7
---@return number number
function action_value(action, pad) end

---Which point of the plane z (0 unless given) the view shows there. nil where there is none: beside a horizon, behind the eye, beyond the near or far plane, or without a camera that was drawn. A point beside the port has its point beside what is seen
---@param view integer a view of the running room, 0 to 7
---@param x number to the right
---@param y number downwards
---@param z? number away from the eye
---@return number? x
---@return number? y
function view_to_room(view, x, y, z) end

---Where the view shows a point of the room; nil as above
---@param view integer a view of the running room, 0 to 7
---@param x number to the right
---@param y number downwards
---@param z? number away from the eye
---@return number? x
---@return number? y
function room_to_view(view, x, y, z) end

---`view_to_room` of the mouse
---@param view integer a view of the running room, 0 to 7
---@param z? number away from the eye
---@return number? x
---@return number? y
function mouse_room(view, z) end

---The visible view on top at a point of the screen; -1 for none. Views that draw into surfaces do not count
---@param x number to the right
---@param y number downwards
---@return integer view
function view_at(x, y) end

---@class room_from_map.fields
---@field name? string
---@field objects? table<string, integer> Objects of the game by the class in the map. Others are found by the names that `object_add` gave them
---@field background? integer A colour
---@field views? table<integer, view.fields> As in `room_add`; a view that is given here counts before the map's
---@field instances? any[][] More of them, as in `room_add`, after the map's
---@field create? fun() As in `room_add`
---@field load? fun() As in `room_add`
---@field step? fun() As in `room_add`
---@field draw? fun() As in `room_add`
---@field draw_gui? fun() As in `room_add`

---Adds a room that a TMX or TMJ map describes: its size, background, views, layers, instances
---@param map_file string a map's file, relative to the game's file
---@param fields? room_from_map.fields named fields; an unknown name is refused
---@return integer index
function room_from_map(map_file, fields) end

---What the map says, as a new table: `file`, `class`, `width`, `height`, `tile_width`, `tile_height`, `left`, `top` (of the room in the map), `properties`, `layers` in their order
---@param room integer a room's index, as room_add gave it
---@return table? table
function map_info(room) end

---The map's rectangles of class `zone`, as the camera kit takes zones: `name`, `left`, `top`, `right`, `bottom` and their properties
---@param room integer a room's index, as room_add gave it
---@return table[] list
function map_zones(room) end

---A cell of the running room's map; columns and rows count from 0, the tile 0 is empty or outside the layer. A layer is named, or numbered from 1 on
---@param layer any a layer of the running room's map, by its name or by its number, from 1
---@param column integer of a tile, from 0
---@param row integer of a tile, from 0
---@return integer tile
---@return integer turn
function map_tile_get(layer, column, row) end

---Changes a cell until the room starts again. A save keeps the change
---@param layer any a layer of the running room's map, by its name or by its number, from 1
---@param column integer of a tile, from 0
---@param row integer of a tile, from 0
---@param map_tile integer a tile by its number in the map, 0 is empty
---@param turn? integer 1 mirrored, 2 upside down, 4 columns exchanged with rows before that; summed
function map_tile_set(layer, column, row, map_tile, turn) end

---Whether a layer or a group of the running room's map is visible of its own. It is drawn when the groups around it are visible, too
---@param layer any a layer of the running room's map, by its name or by its number, from 1
---@return boolean boolean
function map_layer_get_visible(layer) end

---Shows or hides a layer or a group until the room starts again: a roof, when somebody comes into the house. A save keeps it. Instances that came from the layer stay as they are
---@param layer any a layer of the running room's map, by its name or by its number, from 1
---@param visible boolean whether the layer is drawn, where the groups around it are
function map_layer_set_visible(layer, visible) end

---What the map says of a tile: `tileset`, `id` in it, `class`, `properties`, `objects` (its collision shapes); nil for a number that is no tile
---@param map_tile integer a tile by its number in the map, 0 is empty
---@return table? table
function map_tile_info(map_tile) end

---In the game's file: which version of the game this is, from 1. Saves then outlive changes of its files, and the game's own function `on_load(from_version, data)` turns those of other versions into this one's: [Saves.md](Saves.md)
---@param version integer of the game, 1 or more
function game_version(version) end

---Saves the game in a file of the save area, at the end of the frame. False: not asked for, because the name is refused or another save or load is waiting. When the file cannot be written, the console says why, the old one is as it was, and the game goes on
---@param name string a file's name in the save area
---@return boolean boolean
function game_save(name) end

---Reads and checks the file at once, and goes on from it at the end of the frame. False: refused, the console says why, and nothing has changed. [Saves.md](Saves.md) tells what is kept
---@param name string a file's name in the save area
---@return boolean boolean
function game_load(name) end

---As `game_save`, in `autosave_1.sav` to `autosave_N.sav` in turn; answers the file's name, or false. A count that is saved chooses the file
---@param slots integer files that take turns, 1 to 100
---@return string string
function game_autosave(slots) end

---The saves of this game in the save area: a list of `{ name, version, room, frame, thumbnail }`, by name. The thumbnail is a sprite; [Saves.md](Saves.md) tells more
---@return table? table
function game_saves() end

---A name by which a save of another version of the game finds the camera again; one camera has it. Empty: takes it away
---@param camera integer a camera's number
---@param camera_name string the name of a camera, up to 100 bytes; empty for none
function camera_set_name(camera, camera_name) end

---The camera of that name, -1 when there is none
---@param camera_name string the name of a camera, up to 100 bytes; empty for none
---@return integer camera
function camera_find(camera_name) end

---The camera kit (Docs/Kit.md): local kit = include("kit/camera_kit.lua")
---@class Kit
---@field version integer
---@field easing table
local Kit = {}

---A camera of the kit.
---@class KitCamera
local KitCamera = {}

---@class kit.pixels
---@field grid? string `"art"`: the view moves by whole units of the room, a pixel of the art each. `"screen"`: by whole pixels of the screen, so the art scrolls by parts of its own pixels; each covers whole pixels of the screen all the same, and nothing shimmers
---@field integer_zoom? boolean the zoom is the nearest at which a unit is a whole number of pixels, at least one
---@field scale? number pixels of the screen for a unit at zoom 1: for a view that draws into a surface

---@class kit.shot
---@field follow? any an object (its first instance), an instance, a place `{x = , y = }`, or a list of these; `false` for none
---@field style? string how, see below
---@field offset? any `{x, y}`: the camera looks so far beside what it follows
---@field zoom? number 2: twice as large
---@field angle? number degrees
---@field lead? any look-ahead: the camera goes ahead by so many frames of the target's motion. A number, or a table of `x`, `y` (frames), `limit` (room units; a quarter of the view), `half_life` (15 frames)
---@field dead_zone? any how far the target may go from the middle before the camera moves: room units at zoom 1. A number, `{across, down}`, or a table of `left right top bottom`; `false` for none
---@field soft_zone? any around the dead zone, given alike: in it the camera comes after slowly, with `soft_half_life` (8 frames); at its edge at once
---@field smoothing? string `"spring"`: a critically damped spring; `"exponential"`; `"none"`
---@field half_life? any frames in which half of the way to the goal is gone: a number, or a table of `x`, `y`, `zoom`
---@field acceleration? number how much a smoothed camera's speed changes in a frame at most, room units. Behind a target that keeps a higher speed than 12 units a frame (with a spring of half-life 5; 14 with 6) the bound grows with that speed
---@field group? table of several targets: a table of `margin` (an eighth of the view), `min_zoom` (0.25), `max_zoom` (the camera's zoom)
---@field screen? table of the style `"screen"`: a table of `width`, `height`, `x`, `y` (a corner), `margin` (4: how far the target must be past the edge)
---@field path? table of the style `"path"`: a table of `points`, `curve` (true: a smooth curve through them), `closed`, `progress`
---@field limits? any what may be seen: the room, `false` for no limits, or a table of `left right top bottom`; a side that is left out has none
---@field margin? any how far from the limits the view stays: a number, `{across, down}`, or a table of `left right top bottom`; negative goes beyond them
---@field zones? table[] a list of zones
---@field soft_half_life? number of the soft zone, frames
---@field priority? number the live shot is the one of the highest
---@field on? boolean whether it takes part

---@class kit.fields: kit.shot
---@field view? integer a view, 0 to 7
---@field camera? integer a camera's number, in place of a view
---@field width? number of the view at zoom 1, room units
---@field height? number of the view at zoom 1, room units
---@field pixels? boolean|kit.pixels

---an object (its first instance), an instance, a place `{x = , y = }`, or a list of these; `false` for none
---@param value any
function KitCamera:follow(value) end

---how, see below
---@param value string
function KitCamera:style(value) end

---`{x, y}`: the camera looks so far beside what it follows
---@param value any
function KitCamera:offset(value) end

---2: twice as large
---@param value number
function KitCamera:zoom(value) end

---degrees
---@param value number
function KitCamera:angle(value) end

---look-ahead: the camera goes ahead by so many frames of the target's motion. A number, or a table of `x`, `y` (frames), `limit` (room units; a quarter of the view), `half_life` (15 frames)
---@param value any
function KitCamera:lead(value) end

---how far the target may go from the middle before the camera moves: room units at zoom 1. A number, `{across, down}`, or a table of `left right top bottom`; `false` for none
---@param value any
function KitCamera:dead_zone(value) end

---around the dead zone, given alike: in it the camera comes after slowly, with `soft_half_life` (8 frames); at its edge at once
---@param value any
function KitCamera:soft_zone(value) end

---`"spring"`: a critically damped spring; `"exponential"`; `"none"`
---@param value string
function KitCamera:smoothing(value) end

---frames in which half of the way to the goal is gone: a number, or a table of `x`, `y`, `zoom`
---@param value any
function KitCamera:half_life(value) end

---how much a smoothed camera's speed changes in a frame at most, room units. Behind a target that keeps a higher speed than 12 units a frame (with a spring of half-life 5; 14 with 6) the bound grows with that speed
---@param value number
function KitCamera:acceleration(value) end

---of several targets: a table of `margin` (an eighth of the view), `min_zoom` (0.25), `max_zoom` (the camera's zoom)
---@param value table
function KitCamera:group(value) end

---of the style `"screen"`: a table of `width`, `height`, `x`, `y` (a corner), `margin` (4: how far the target must be past the edge)
---@param value table
function KitCamera:screen(value) end

---of the style `"path"`: a table of `points`, `curve` (true: a smooth curve through them), `closed`, `progress`
---@param value table
function KitCamera:path(value) end

---what may be seen: the room, `false` for no limits, or a table of `left right top bottom`; a side that is left out has none
---@param value any
function KitCamera:limits(value) end

---how far from the limits the view stays: a number, `{across, down}`, or a table of `left right top bottom`; negative goes beyond them
---@param value any
function KitCamera:margin(value) end

---a list of zones
---@param value table[]
function KitCamera:zones(value) end

---@param value number
function KitCamera:width(value) end

---@param value number
function KitCamera:height(value) end

---@param value any
function KitCamera:pixels(value) end

---@param value number
function KitCamera:soft_half_life(value) end

---gives a view (`view = 0`) or a camera (`camera = number`) to the kit. Fields: those of Following and Limits, `pixels` (Pixel art), `width` and `height` (of the view at zoom 1; the view's own unless given)
---@param fields kit.fields|integer
---@return KitCamera camera
function Kit.camera(fields) end

---moves all cameras by one frame. Once a frame, **after everything has moved**: in the step event of an object that is created last
function Kit.step() end

---draws fades, flashes and letterboxes. In the room's `draw_gui`, before what shall lie over them
function Kit.draw() end

---how much motion the player wants
---@param amount? number
---@return number amount
function Kit.motion(amount) end

---changes fields of `kit.camera`, all but `view` and `camera`
---@param fields kit.shot
function KitCamera:set(fields) end

---goes to its goal at once: after a teleport, say
function KitCamera:cut() end

---what is shown: the centre in room units, effects and snapping included
---@return number x
---@return number y
---@return number zoom
---@return number angle
function KitCamera:place() end

---the same without effects and snapping
---@return number x
---@return number y
---@return number zoom
---@return number angle
function KitCamera:base() end

---the camera that it moves now, for the camera functions; -1 for none
---@return integer camera
function KitCamera:number() end

---@class kit.shake.options
---@field strength? number
---@field x? number
---@field y? number
---@field angle? number
---@field speed? number
---@field power? any
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---shakes for a time
---@param fields kit.shake.options
---@return number number
function KitCamera:shake(fields) end

---@class kit.trauma.options
---@field level? number
---@field x? number
---@field y? number
---@field angle? number
---@field speed? number
---@field power? any
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---a hit: hits add up, at most to 1, and wear off; the shake is the level's square. `frames` is how long a whole 1 lasts
---@param fields kit.trauma.options
---@return number number
function KitCamera:trauma(fields) end

---@class kit.kick.options
---@field x? number
---@field y? number
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---jolts in one direction and swings back
---@param fields kit.kick.options
---@return number number
function KitCamera:kick(fields) end

---@class kit.pan_to.options
---@field x? number
---@field y? number
---@field target? Target
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---goes to a point, or to an instance and along with it; *holds*
---@param fields kit.pan_to.options
---@return number number
function KitCamera:pan_to(fields) end

---@class kit.zoom_to.options
---@field zoom? number
---@field point? table
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---zooms, in equal ratios; a point that is given stays where it is on the screen; *holds*
---@param fields kit.zoom_to.options
---@return number number
function KitCamera:zoom_to(fields) end

---@class kit.rotate_to.options
---@field angle? number
---@field way? string
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---turns; `"straight"` may go more than half round; *holds*
---@param fields kit.rotate_to.options
---@return number number
function KitCamera:rotate_to(fields) end

---@class kit.release.options
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---takes all pans, zooms and turns back
---@param fields kit.release.options
---@return number number
function KitCamera:release(fields) end

---@class kit.fade.options
---@field to? number
---@field colour? integer
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---covers the view with a colour: `to` 1, or uncovers it: `to` 0; *holds*
---@param fields kit.fade.options
---@return number number
function KitCamera:fade(fields) end

---@class kit.letterbox.options
---@field to? number
---@field colour? integer
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---bars above and below, as parts of the height; *holds*
---@param fields kit.letterbox.options
---@return number number
function KitCamera:letterbox(fields) end

---@class kit.flash.options
---@field strength? number
---@field colour? integer
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---a colour that fades away
---@param fields kit.flash.options
---@return number number
function KitCamera:flash(fields) end

---@class kit.wait.options
---@field frames? number how long: 40 for a shake, 60 for a trauma of 1, 30 for kick, fade and letterbox, 20 for a flash, else 60
---@field ease? string its curve: `"elastic_out"` for a kick, `"quad_out"` for a flash, `"linear"` for shake, trauma, fade and wait, else `"sine_inout"`
---@field after? integer the number of another effect: it waits until that one has arrived
---@field done? integer a number from `script_add`: runs when it has arrived, but not when it is cancelled

---nothing, for a time: to count in a chain
---@param fields kit.wait.options
---@return number number
function KitCamera:wait(fields) end

---starts each when the one before has arrived; answers the last one's number
---@param list table[]
---@return number number
function KitCamera:chain(list) end

---ends an effect at once, or gliding back; what waits for it ends, too
---@param number integer
---@param frames? number
---@param ease? string
function KitCamera:cancel(number, frames, ease) end

---whether it waits or moves
---@param number integer
---@return boolean boolean
function KitCamera:busy(number) end

---how strong the newest of a kind is: a trauma's level, a fade's alpha; 0 for none
---@param name string
---@return number number
function KitCamera:value(name) end

---adds a shot, or changes it. Fields: those of Following and Limits, `priority` (0), `on` (true)
---@param name string
---@param fields kit.shot
function KitCamera:shot(name, fields) end

---switches a shot on or off
---@param name string
---@param on boolean
function KitCamera:switch(name, on) end

---@param name string
function KitCamera:remove_shot(name) end

---@return string name
---@return boolean blending
function KitCamera:live() end

---plays a cut-scene; `done`: a number from `script_add`, runs at its end
---@param list table[]
---@param done? integer
function KitCamera:scene(list, done) end

---ends the scene now; its `done` runs
function KitCamera:skip() end

---@return boolean boolean
function KitCamera:in_scene() end

---@param value any
function KitCamera:grounded(value) end

---@param value any
function KitCamera:progress(value) end

---@param x number
---@param y number
function KitCamera:snap(x, y) end

---How shots go over into each other.
---@param fields {from?: string, to?: string, frames?: number, ease?: string}
function KitCamera:blend(fields) end
