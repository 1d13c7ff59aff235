#!/usr/bin/env bash
# Makes the README's moving picture: records canyon as a text plays it, replays the recording with the inspector over
# the views, and puts every fifth frame into Docs/Pictures/canyon.gif (12 pictures a second, the speed of the game).
source "$(dirname "$0")/steps.sh"

need $BUILD_PACKAGES imagemagick
build release
runner=build/release/Runner/runner
work=build/readme_picture
rm -rf $work
mkdir -p $work
cat >$work/input.txt <<'EOF'
0 key right down
40 key space tap
95 key space tap
150 key space tap
EOF

step "Recording, and playing it again with the inspector"
$runner Games/canyon/canyon.lua --input $work/input.txt --record $work/canyon.rec --frames 210 --no-draw --quiet --out $work
$runner Games/canyon/canyon.lua --replay $work/canyon.rec --inspect --every 5 --quiet --out $work

# The inspector's panel stands beside the game's screen of 1280 x 720 and is cut off: scaled down, nobody could read it.
step "Docs/Pictures/canyon.gif"
convert $work/frame_*.png -crop 1280x720+0+0 +repage -resize 50% -dither None -colors 48 -delay 8 -loop 0 \
    -layers Optimize Docs/Pictures/canyon.gif
du -h Docs/Pictures/canyon.gif
