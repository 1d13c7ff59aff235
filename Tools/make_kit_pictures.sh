#!/usr/bin/env bash
# Makes the pictures of the camera kit's documents from their examples: plays each Lua block of Docs/Kit*.md, and puts the
# frames that the comment below it names side by side into the picture that the line after names.
#
#   Tools/make_kit_pictures.sh [RUNNER]   build/release's Runner unless given
source "$(dirname "$0")/steps.sh"

need imagemagick python3
runner=${1:-build/release/Runner/runner}
[ $# -gt 0 ] || { need $BUILD_PACKAGES; build release; }
work=build/kit_pictures
rm -rf $work
mkdir -p $work

# One folder for each example: game.lua, and the names of its frames and picture.
python3 - $work Docs/Kit*.md <<'PYTHON'
import pathlib, re, sys
work = pathlib.Path(sys.argv[1])
EXAMPLE = re.compile(r"```lua\n(.*?)```\n(?:\n<!-- frames ([\d ]+)(?:scale (\d) )?-->\n!\[[^\]]*\]\(Pictures/(\w+)\.png\))?", re.S)
for document in sys.argv[2:]:
    for game, frames, scale, picture in EXAMPLE.findall(pathlib.Path(document).read_text()):
        if picture:
            folder = work / picture
            folder.mkdir()
            (folder / "game.lua").write_text(game)
            (folder / "frames").write_text(frames + "\n")
            (folder / "scale").write_text((scale or "1") + "00%\n")
PYTHON

for folder in "$work"/*/; do
    picture=$(basename "$folder")
    read -ra frames <"$folder/frames"
    last=${frames[-1]}
    quietly "$folder/log" "$runner" "$folder/game.lua" --frames $((last + 1)) --every 1 --quiet --out "$folder/out"
    files=()
    for frame in "${frames[@]}"; do
        files+=("$folder/out/frame_$(printf %05d "$frame").png")
    done
    convert "${files[@]}" -filter point -resize "$(cat "$folder/scale")" -bordercolor white -border 3x3 +append -shave 3x3 -dither None -colors 64 -strip \
        "PNG8:Docs/Pictures/$picture.png"
done
du -b Docs/Pictures/kit*.png
