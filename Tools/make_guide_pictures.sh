#!/usr/bin/env bash
# Makes the pictures of the guide. Docs/Cameras.md: plays each example of the page with the inspector, up to the frames that
# its last lines name, and puts these frames under each other, each with the inspector's reason below it.
# Docs/Your_Game.md: plays the finished game.
source "$(dirname "$0")/steps.sh"

need $BUILD_PACKAGES imagemagick
build release
runner=build/release/Runner/runner
work=build/camera_pictures
rm -rf $work
mkdir -p $work
awk -v work=$work '/^```lua$/ { inBlock = 1; next }
    /^```$/ { inBlock = 0 }
    inBlock && /^-- [a-z_]+\.lua$/ { file = work "/" $2 }
    inBlock { print >file }' Docs/Cameras.md

# The views are 848 pixels wide, and the panel stands beside them. Its reason is a title and up to four lines, or one
# without a target, below the list of the default camera, the view's, the whole room's, and those of the example.
for game in $work/*.lua; do
    name=$(basename "$game" .lua) parts=()
    top=$((71 + 13 * $(grep -c 'camera_create_view(' "$game" || true))) height=67
    if grep -q 'set_view_target(camera, -1)' "$game"; then height=28; fi
    for frame in $(sed -n 's/^-- frame \([0-9]*\):.*/\1/p' "$game"); do
        $runner "$game" --frames $((frame + 1)) --inspect --quiet --out $work --screenshot "$name.png"
        convert "$work/$name.png" -crop 848x318+0+0 +repage \
            \( "$work/$name.png" -crop 848x$height+848+$top +repage \) -append "$work/${name}_$frame.png"
        parts+=("$work/${name}_$frame.png")
    done
    [ ${#parts[@]} = 0 ] && continue
    convert "${parts[@]}" -append -dither None -colors 48 -define png:exclude-chunks=date,time \
        "Docs/Pictures/camera_$name.png"
done

printf '0 key right down\n200 key right up\n' >$work/input.txt
$runner Docs/Your_Game/hop.lua --input $work/input.txt --frames 400 --quiet --out $work --screenshot game.png
convert $work/game.png -dither None -colors 32 -define png:exclude-chunks=date,time Docs/Pictures/your_game.png
du -h Docs/Pictures/camera_*.png Docs/Pictures/your_game.png
