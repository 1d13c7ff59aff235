# shellcheck shell=bash disable=SC2154
# The cases of real_input.sh about time, hot reload, recordings and saves. Sourced, not run.

# The number in the last line of the log.
last_frame() { grep -aoE '[0-9]+' "$log" | tail -1; }

# Pauses, goes two frames back and plays one: the frame before the last one, once more. Then clicks on the bar at a tenth.
going_back() {
    play <<END
$head
function watch_input() print("frame " .. frame_number()) end
END
    hear 'frame 60'
    xdotool key F10
    sleep 0.5
    local last
    last=$(last_frame)
    : >"$log"
    xdotool key F7
    sleep 0.5
    xdotool key F7
    sleep 0.5
    [ ! -s "$log" ] || fail "the way back was told"
    xdotool key F8
    hear "frame $((last - 1))"
    point 64 355
    xdotool click 1
    sleep 0.5
    : >"$log"
    xdotool key F8
    hear 'frame .*'
    [ "$(last_frame)" -ge $((last / 10 - 2)) ] && [ "$(last_frame)" -le $((last / 10 + 2)) ] ||
        fail "a tenth of $last is not $(last_frame)"
}

# While the inspector is open the bar takes the mouse all the same, also where the panel lies behind it.
bar_over_inspector() {
    play <<END
$head
function watch_input()
    print("frame " .. frame_number())
    if mouse_pressed("left") then print("click") end
end
END
    hear 'frame 60'
    xdotool key F10
    sleep 0.3
    xdotool key F1
    sleep 1
    ! grep -q "without the inspector" "$log" || return 0 # a build without Dear ImGui
    local last at
    for at in 576 64; do
        last=$(last_frame)
        point "$at" 355
        xdotool click 1
        sleep 0.7
        : >"$log"
        xdotool key F8 # what came later is forgotten
        hear 'frame .*'
        [ "$(last_frame)" -ge $((last * at / 640 - 2)) ] && [ "$(last_frame)" -le $((last * at / 640 + 2)) ] ||
            fail "$at of 640 of $last is not $(last_frame)"
        not_heard click
    done
}

# A number is typed after a double click. One that is too large for a float changes nothing. The
# Runner's own keys work meanwhile.
typing() {
    play <<END
$head
last = 0
function watch_input()
    local height = camera_get_view_height(view_get_camera(0))
    if height ~= last then print("height " .. height) end
    last = height
    if mouse_pressed("left") then print("click") end
end
END
    xdotool key F1
    sleep 1
    ! grep -q "without the inspector" "$log" || return 0 # a build without Dear ImGui
    local number
    for number in 1e999 45; do
        point $HEIGHT
        xdotool click --repeat 2 --delay 60 1
        sleep 0.5
        xdotool key ctrl+a
        xdotool type --delay 60 "$number"
        xdotool key Return
        sleep 0.5
    done
    hear 'height 45'
    not_heard 'height .*(inf|nan).*'
    point $HEIGHT
    xdotool click --repeat 2 --delay 60 1
    sleep 0.5
    not_heard click
    xdotool key F1
    sleep 0.5
    xdotool click 1
    hear click
}
HEIGHT="430 347" # its field in the panel

# A recording in the window is gone back in as a play is; every frame is the recorded one, and the end tells nothing.
replay_time() {
    {
        echo "$head"
        echo 'room_add{ step = function() if mouse_x() >= 0 then print("frame " .. frame_number(), mouse_x()) end end }'
    } >"$work/game.lua"
    for frame in $(seq 0 299); do echo "$frame mouse $((frame % 100)) 5"; done >"$work/input"
    "$runner" "$work/game.lua" --no-draw --frames 300 --input "$work/input" --record "$work/run.rec" \
        --out "$work/out" >"$work/recorded" || fail "nothing was recorded"
    start --replay "$work/run.rec"
    hear $'frame 30\t30.0' 20
    xdotool key F10
    sleep 0.3
    point 320 355 # the middle of the bar, which has all recorded frames
    xdotool click 1
    sleep 0.7
    : >"$log"
    xdotool key F8
    hear $'frame 1(49|50|51)\t.*'
    point 128 355
    xdotool click 1
    sleep 0.5
    xdotool key F7
    sleep 0.3
    : >"$log"
    xdotool key F8
    hear $'frame (58|59|60)\t(58|59|60)\\.0'
    xdotool key F10
    local status=0
    wait "$player" || status=$?
    player=
    [ "$status" = 0 ] || fail "the status is $status"
    diff <(tail -n 100 "$work/recorded") <(tail -n 100 "$log") >&2 || fail "the replay is another one"
}

# The colour of the pixel at x, y of the window, as RRGGBB.
colour_at() { import -window "$window" -crop "1x1+$1+$2" -depth 8 rgb:- | od -An -tx1 | tr -d ' \n'; }

# Waits until the pixel at x, y has that colour.
see() {
    for _ in $(seq 100); do
        [ "$(colour_at "$1" "$2")" = "$3" ] && return
        sleep 0.05
    done
    fail "the pixel at $1, $2 is $(colour_at "$1" "$2") and not $3"
}

# One recording in two versions, side by side: red and blue until frame 200, both green from there on.
compare() {
    local game='screen_set_size(320, 180) room_add{ width = 320, height = 180, background = colours.NAME,
        draw_gui = function() if frame_number() >= 200 then draw_set_colour(colour_rgb(0, 255, 0))
        draw_rectangle(0, 0, 320, 100) end end }'
    echo "${game/NAME/red}" >"$work/game.lua"
    echo "${game/NAME/blue}" >"$work/other.lua"
    "$runner" "$work/game.lua" --no-draw --frames 300 --record "$work/run.rec" --out "$work/out" >"$log" ||
        fail "nothing was recorded"
    start --replay "$work/run.rec" --compare "$work/other.lua"
    see 160 60 ff0000
    see 484 60 0000ff
    see 160 60 00ff00
    see 484 60 00ff00
    xdotool key F10
    sleep 0.3
    point 64 195 # a tenth of the bar
    xdotool click 1
    see 40 60 ff0000
    see 600 60 0000ff
    xdotool key F10
    see 40 60 00ff00
    sleep 2
    kill -0 "$player" || fail "it did not stand at the end"
    see 600 60 00ff00
    ! pgrep -P "$player" >/dev/null || [ "$(pgrep -c -P "$player")" = 2 ] || fail "there are more processes than two"
    kill -TERM "$player"
    wait "$player" || true
    player=
}

# A changed game plays on from the frame at which the other one was, also after a mistake in between.
watch() {
    local game='room_add{ step = function() print("NAME " .. frame_number()) end }'
    echo "${game/NAME/one}" >"$work/game.lua"
    start --watch
    hear 'one 40' 20
    echo "${game/NAME/two}" >"$work/game.lua"
    hear 'two .*'
    [ "$(grep -m1 two "$log" | grep -oE '[0-9]+')" -ge 40 ] || fail "it started from the beginning"
    echo 'room_add{' >"$work/game.lua"
    sleep 1
    echo "${game/NAME/three}" >"$work/game.lua"
    hear 'three .*'
    [ "$(grep -m1 three "$log" | grep -oE '[0-9]+')" -ge 40 ] || fail "it started from the beginning"
}

# After a reload the panel lists what was changed by hand, makes it again, and copies it as Lua.
changes_after_reload() {
    play --watch <<END
$head
last = 0
function watch_input()
    local x = camera_get_view_x(view_get_camera(0))
    if frame_number() % 10 == 0 then print("x " .. math.floor(x + 0.5)) end
    if text_typed() ~= "" then print("typed " .. text_typed()) end
end
END
    xdotool key F1
    sleep 0.7
    ! grep -q "without the inspector" "$log" || return 0 # a build without Dear ImGui
    point 100 200
    xdotool mousedown 1
    sleep 0.3
    point 80 200
    hear 'x 10'
    xdotool mouseup 1
    sed -i 's/^last = 0/last = 77/' "$work/game.lua"
    sleep 1
    : >"$log"
    hear 'x 0'
    sleep 1
    : >"$log"
    point $APPLY_AGAIN
    sleep 0.3
    xdotool click 1
    hear 'x 10'
    sed -i 's/^last = 77/last = 78/' "$work/game.lua"
    sleep 1
    : >"$log"
    hear 'x 0'
    sleep 1
    point $COPY
    sleep 0.3
    xdotool click 1
    sleep 0.5
    xdotool key F1
    sleep 0.5
    xdotool key ctrl+v
    hear 'typed camera_set_view_pos\([0-9]+, 10(\.0000[0-9]*)?, 0\)'
}
APPLY_AGAIN="403 217" COPY="310 217" # where the buttons stand in the panel

# The error page shows what went wrong over the last good picture: red, and not the blue of the event that failed.
picture_behind_errors() {
    echo "$head"' room_add{ draw_gui = function()
        draw_set_colour(frame_number() < 20 and colours.red or colours.blue)
        draw_rectangle(0, 0, 640, 360)
        if frame_number() == 20 then error("here") end end }' >"$work/game.lua"
    start --watch
    see 600 300 4d0000
    sed -i 's/error("here")/error(/' "$work/game.lua" # another mistake, of which there is no picture at all
    sleep 1
    see 600 300 4d0000
    sed -i 's/error(/print("mended")/' "$work/game.lua"
    see 600 300 0000ff
}

# R starts a failed game again and leaves the recording of the failed run as it is.
recording_of_a_failure() {
    echo "$head"' room_add{ step = function() if frame_number() == 90 then error("here") end end }' >"$work/game.lua"
    start --record "$work/run.rec"
    hear_error 'here'
    sleep 0.5
    xdotool key r
    hear_error "is recorded in $work/run.2.rec"
    sleep 1
    kill -TERM "$player"
    wait "$player" || true
    player=
    "$runner" "$work/game.lua" --no-draw --replay "$work/run.rec" >"$work/replayed" 2>"$work/err" && fail "it does not fail"
    hear_error 'here'
    "$runner" "$work/game.lua" --no-draw --replay "$work/run.2.rec" >"$work/replayed" 2>"$work/err" ||
        fail "there is no second recording"
}

# A window that is closed, and a process that is killed, in the middle of a save leave the save before or the new one.
closed_in_a_save() {
    echo "$head"' vars.texts = {} for i = 1, 20000 do vars.texts[i] = "text number " .. i end
        room_add{ step = function() vars.frame = frame_number() game_save("it.sav")
            if frame_number() == 3 then print("saving") end end }' >"$work/game.lua"
    local way
    for way in "xdotool windowkill" "xdotool windowclose" "kill -TERM" "kill -KILL"; do
        start
        hear saving 20
        sleep "0.$((RANDOM % 10))"
        case $way in
        kill*) $way "$player" ;;
        *) $way "$window" ;;
        esac
        wait "$player" 2>/dev/null || true
        player=
        "$runner" "$work/game.lua" --no-draw --frames 2 --load "$work/out/it.sav" --out "$work/other" >"$work/loaded" \
            2>"$work/err" || fail "after '$way' the save is no good"
        [ "$(find "$work/out" -type f | wc -l)" -le 3 ] || fail "after '$way' there is more than the save and settings"
    done
}

# What somebody played in the window is the same without one.
recording() {
    play --record "$work/run.rec" <<END
$head
function watch_input()
    if key_pressed("a") then print("a " .. frame_number()) end
    if mouse_pressed("left") then print("at " .. frame_number() .. " " .. mouse_x() .. " " .. mouse_y()) end
end
END
    xdotool key a
    hear 'a .*'
    point 100 50
    xdotool click 1
    hear 'at .* 100.5 50.5'
    replay
}
