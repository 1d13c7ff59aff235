#!/usr/bin/env bash
# Plays games in a window and presses real keys and buttons: real_input.sh RUNNER CASE. Needs a display and xdotool.
set -euo pipefail
runner=$1
work=$(mktemp -d)
log=$work/log
player=
# shellcheck disable=SC2317
clean_up() {
    [ -z "$player" ] || kill "$player" 2>/dev/null || true
    rm -rf "$work"
}
trap clean_up EXIT

fail() {
    echo "FAILED: $*" >&2
    echo "---- what the game said:" >&2
    cat "$log" "$work/err" >&2 || true
    exit 1
}

# Waits until the game has said this; a regular expression for a whole line. SECONDS as a second argument.
hear() {
    for _ in $(seq $((${2:-10} * 20))); do
        grep -qxE -- "$1" "$log" && return
        sleep 0.05
    done
    fail "not heard: $1"
}

# Ends the run, which has been recorded, and plays it again without a window.
replay() {
    kill -TERM "$player"
    wait "$player" || true
    player=
    "$runner" "$work/game.lua" --no-draw --replay "$work/run.rec" >"$work/replayed" || fail "the replay failed"
    diff "$log" "$work/replayed" >&2 || fail "the replay is another one"
}

# Waits until the runner has shown this error.
hear_error() {
    for _ in $(seq 200); do
        grep -qF -- "$1" "$work/err" && return
        sleep 0.1
    done
    fail "no error: $1"
}

not_heard() { ! grep -qxE -- "$1" "$log" || fail "heard: $1"; }

# Plays the text on standard input in a window of 1:1, and waits until its first frame is shown.
play() {
    { cat; echo 'local function report() if frame_number() == 3 then print("ready") end end
room_add{ width = 640, height = 360, step = function() report() watch_input() end,
          views = { [0] = { w = 320, h = 180, wport = 640, hport = 360 } } }'; } >"$work/game.lua"
    start "$@"
    hear ready 20
}

start() {
    : >"$log"
    stdbuf -oL "$runner" "$work/game.lua" --window --scale 1 --out "$work/out" "$@" >>"$log" 2>"$work/err" & # appended: cases empty the log
    player=$!
    for _ in $(seq 200); do
        window=$(xdotool search --onlyvisible --pid "$player" 2>/dev/null | tail -1) && [ -n "$window" ] && break
        kill -0 "$player" 2>/dev/null || fail "it ended"
        sleep 0.05
    done
    [ -n "$window" ] || fail "there is no window"
    xdotool windowfocus --sync "$window"
}

point() { xdotool mousemove --window "$window" "$1" "$2"; }

# The screen that every game here has.
head='screen_set_size(640, 360)'

# ---- cases ----

keys() {
    play <<END
$head
function watch_input()
    for _, key in ipairs{"a", "@a", "space", "left_shift"} do
        if key_pressed(key) then print("pressed " .. key) end
        if key_released(key) then print("released " .. key) end
    end
    if text_typed() ~= "" then print("text " .. text_typed()) end
end
END
    xdotool key a
    hear 'pressed a'
    hear 'released a'
    hear 'pressed @a'
    xdotool keydown shift key space keyup shift
    hear 'pressed left_shift'
    hear 'pressed space'
    xdotool key b
    hear 'text .*b'
}

own_keys() {
    play --keys help=f8 <<END
$head
function watch_input()
    if key_pressed("f8") then print("f8") end
    if key_pressed("f12") then print("f12") end
end
END
    xdotool key F8
    xdotool key F12
    hear f12
    not_heard f8
}

mouse() {
    play <<END
$head
function watch_input()
    local x, y = mouse_room(0)
    if mouse_pressed("left") then print("from", mouse_x(), mouse_y(), math.floor(x + 0.5), math.floor(y + 0.5)) end
    if mouse_released("left") then print("to", mouse_x(), mouse_y(), math.floor(x + 0.5), math.floor(y + 0.5)) end
    if mouse_wheel() ~= 0 then print("wheel", mouse_wheel()) end
    if mouse_down("right") then print("right") end
end
END
    point 100 50
    xdotool mousedown 1
    hear $'from\t100.5\t50.5\t50\t25'
    point 300 200
    xdotool mouseup 1
    hear $'to\t300.5\t200.5\t150\t100'
    xdotool click 4
    hear $'wheel\t1'
    xdotool click 3
    hear right
}

# The view shows 320 x 180 units on 640 x 360 pixels, so a drag of 20 pixels to the left moves it 10 units to the right.
# Moves the view by hand, and replays that. Options of the run.
move_by_hand() {
    play --record "$work/run.rec" "$@" <<END
$head
last = 0
function watch_input()
    local x = camera_get_view_x(view_get_camera(0))
    if x ~= last then print("x " .. x) end
    last = x
    if mouse_pressed("left") then print("click") end
    if key_pressed("f1") then print("f1") end
end
END
    xdotool key F1
    sleep 0.5
    ! grep -q "without the inspector" "$log" || return 0 # a build without Dear ImGui
    point 100 200
    xdotool mousedown 1
    sleep 0.3
    point 90 200
    sleep 0.2
    point 80 200
    hear 'x (10|10\.0000[0-9]*|9\.9999[0-9]*)'
    xdotool mouseup 1
    not_heard click
    not_heard f1
    xdotool key F1
    sleep 0.3
    xdotool click 1
    hear click
    replay
}

inspector() { move_by_hand; }

# Pictures at the end make another kind of run.
inspector_and_picture() { move_by_hand --screenshot end.png; }

sizes() {
    play <<END
$head
function watch_input()
    if mouse_pressed("left") then print("at", mouse_x(), mouse_y(), view_at(mouse_x(), mouse_y())) end
    if frame_number() % 30 == 0 then print("frame " .. frame_number()) end
end
END
    xdotool windowsize --sync "$window" 320 400
    sleep 0.3
    point 160 200 # the middle; the screen is half as large, with bars of 110 above and below
    xdotool click 1
    hear $'at\t321.0\t181.0\t0'
    point 160 50
    xdotool click 1
    hear $'at\t321.0\t-119.0\t-1'
    xdotool windowsize "$window" 1 1
    sleep 0.3
    : >"$log"
    hear 'frame .*'
    xdotool windowsize --sync "$window" 640 360
    : >"$log"
    hear 'frame .*'
}

focus() {
    play <<END
$head
function watch_input()
    if key_released("a") then print("released") end
    if frame_number() % 10 == 0 then print("frame " .. frame_number()) end
end
END
    xdotool keydown a
    sleep 0.3
    xdotool windowfocus "$(xwininfo -root | awk '/Window id/ { print $4 }')"
    sleep 0.5
    : >"$log"
    sleep 0.7
    not_heard 'frame .*'
    xdotool keyup a
    xdotool windowfocus --sync "$window"
    hear 'frame .*'
}

pause() {
    play <<END
$head
function watch_input()
    if key_pressed("b") then print("b") end
    if frame_number() % 10 == 0 then print("frame " .. frame_number()) end
end
END
    xdotool key F10
    sleep 0.3
    : >"$log"
    xdotool key b
    sleep 0.7
    not_heard 'frame .*'
    xdotool key F10
    hear 'frame .*'
    not_heard b
}

failure() {
    echo 'room_add{ step = function() if frame_number() == 5 then local x = nil + 1 end end }' >"$work/game.lua"
    start
    hear_error 'game.lua:1: attempt to perform arithmetic'
    echo 'print("mended") room_add{}' >"$work/game.lua"
    sleep 0.5
    xdotool key r
    hear mended
}

endless() {
    echo 'room_add{ step = function() if frame_number() == 5 then while true do end end end }' >"$work/game.lua"
    start
    hear_error 'game.lua:1: the script did not come back'
    kill -0 "$player" || fail "the window is gone"
}

menu() {
    mkdir -p "$work/games/one" "$work/games/two"
    echo 'print("one") room_add{}' >"$work/games/one/one.lua"
    echo 'print("two") room_add{}' >"$work/games/two/two.lua"
    : >"$log"
    stdbuf -oL "$runner" --menu "$work/games" --out "$work/out" >"$log" 2>"$work/err" &
    player=$!
    window=$(timeout 10 xdotool search --sync --onlyvisible --pid "$player" | tail -1)
    xdotool windowfocus --sync "$window"
    sleep 0.5
    xdotool key Right
    sleep 0.3
    xdotool key Return
    hear two
    not_heard one
}

signal() {
    play <<END
$head
function watch_input() end
END
    kill -TERM "$player"
    local status=0
    wait "$player" || status=$?
    player=
    [ "$status" = 143 ] || fail "the status is $status"
}

# The server of a display of this case's own is killed while the window runs.
display_gone() {
    Xvfb -displayfd 3 -screen 0 800x600x24 -nolisten tcp -noreset 3>"$work/number" 2>/dev/null &
    local server=$! status=0
    for _ in $(seq 100); do
        [ ! -s "$work/number" ] || break
        sleep 0.1
    done
    local DISPLAY
    DISPLAY=:$(tr -d '\n' <"$work/number")
    export DISPLAY
    play --record "$work/run.rec" "$@" <<END
$head
function watch_input() settings.seen = 1 if frame_number() == 90 then print("running") end end
END
    hear running
    kill -KILL "$server"
    wait "$server" 2>/dev/null || true
    for _ in $(seq 200); do
        kill -0 "$player" 2>/dev/null || break
        sleep 0.05
    done
    ! kill -0 "$player" 2>/dev/null || fail "it goes on without a display"
    wait "$player" || status=$?
    player=
    [ "$status" = 1 ] || fail "the status is $status"
    [ "$(cat "$work/err")" = "runner: the display has gone away" ] || fail "another line"
    "$runner" "$work/game.lua" --no-draw --replay "$work/run.rec" >"$work/replayed" 2>"$work/notices" || fail "the replay failed"
    diff "$log" "$work/replayed" >&2 || fail "the replay is another one"
    [ ! -s "$work/notices" ] || fail "the recording is not whole: $(cat "$work/notices")"
    [ $# != 0 ] || grep -q seen "$work/out/settings.txt" || fail "the settings are lost"
}

# Played frame by frame for pictures, too.
display_gone_with_picture() { display_gone --screenshot end.png; }

no_display() {
    echo 'room_add{}' >"$work/game.lua"
    : >"$log"
    local status=0
    env -u DISPLAY "$runner" "$work/game.lua" --window --out "$work/out" >"$log" 2>"$work/err" || status=$?
    [ "$status" = 1 ] || fail "the status is $status"
    [ "$(wc -l <"$work/err")" = 1 ] || fail "more or less than one line"
    grep -q 'without --window' "$work/err" || fail "it does not name the way without a window"
}

. "$(dirname "$0")/real_input_time.sh"

# 180 steps of 1/60 second.
pace() {
    echo 'room_add{}' >"$work/game.lua"
    local start end
    start=$(date +%s%N)
    "$runner" "$work/game.lua" --window --frames 180 --out "$work/out" >"$log" 2>"$work/err"
    end=$(date +%s%N)
    local milliseconds=$(((end - start) / 1000000))
    [ "$milliseconds" -ge 2900 ] || fail "180 steps in $milliseconds ms"
}

# Without a pace every frame is shown, and the rate is told at the end.
unpaced() {
    echo 'room_add{}' >"$work/game.lua"
    : >"$log"
    "$runner" "$work/game.lua" --window --frames 50 --unpaced --out "$work/out" >"$log" 2>"$work/err" || fail "status $?"
    grep -qxE 'runner: 50 frames shown, [0-9]+\.[0-9]+ a second' "$work/err" || fail "no rate"
}

# How evenly frames were shown is told at the end of as many seconds as were asked for.
even_pace() {
    echo 'room_add{}' >"$work/game.lua"
    : >"$log"
    "$runner" "$work/game.lua" --window --pace 2 --out "$work/out" >"$log" 2>"$work/err" || fail "status $?"
    grep -qxE 'runner: [0-9]+ frames, [0-9.]+ ms each; [0-9.]+ % within 2 ms of that, the longest .* at frame [0-9]+' \
        "$work/err" || fail "no pace"
}

"$2"
echo "passed: $2"
