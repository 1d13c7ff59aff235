# The step of ./check --all that draws maps with the editor's own renderer and with the Runner, and compares the pictures;
# ./coverage counts what this runs. Sourced after Tools/steps.sh (and Tools/checks.sh, for the step), not run. The editor's
# example maps come with its package; none is kept here.

MAP_PACKAGES="tiled python3"
MAP_COLOUR=c82878 # lies below every map
MAP_WORK=$PWD/build/maps
MAP_BUILD=build/optimised # whose Runner draws

# Scaled and turned tile objects, by the map: how many pixels may show what lies one pixel beside. The renderer steps
# through a scaled picture in fixed point and misses the texel by less than a hundredth there.
declare -A MAP_DISPLACED=([sticker-knight/map/sandbox.tmx]=40)

# The game that shows a map as it is: MAP WIDTH HEIGHT, in the folder of all maps.
write_map_game() {
    cat <<END
screen_set_size($2, $3)
room_from_map("$1", { background = colour_rgb(0x${MAP_COLOUR:0:2}, 0x${MAP_COLOUR:2:2}, 0x${MAP_COLOUR:4:2}),
                      views = { [0] = { w = $2, h = $3 } } })
END
}

# An attribute of the map itself: FILE NAME.
map_attribute() { grep -o '<map [^>]*' "$1" | grep -oP "\\s$2=\"\\K[^\"]*" | head -n 1; }

# Draws a map twice and prints what the comparison says; status 1 when it is not as expected. FOLDER MAP
compare_map() {
    local folder=$1 map=$2 width height said notes log=$MAP_WORK/log.txt
    width=$(($(map_attribute "$folder/$map" width) * $(map_attribute "$folder/$map" tilewidth)))
    height=$(($(map_attribute "$folder/$map" height) * $(map_attribute "$folder/$map" tileheight)))
    write_map_game "$map" "$width" "$height" >"$folder/show_map.lua"
    if ! "$MAP_BUILD/Runner/runner" "$folder/show_map.lua" --frames 1 --quiet --out "$MAP_WORK/out" --screenshot shot.png \
        >"$log" 2>&1; then
        grep -oP '(?<=its orientation is )\w+' "$log" | sed 's/^/refused: its orientation is /' && return
        tail -n 1 "$log"
        return 1
    fi
    notes=$(python3 Tools/prepare_reference_map.py "$folder/$map" "$folder/$map.reference" "$MAP_COLOUR")
    QT_QPA_PLATFORM=offscreen tmxrasterizer --no-smoothing "$folder/$map.reference" "$MAP_WORK/reference.png" >"$log" 2>&1 ||
        { tail -n 1 "$log" && return 1; }
    said=$("$MAP_BUILD/Tools/compare_pictures" "$MAP_WORK/out/shot.png" "$MAP_WORK/reference.png" "$MAP_COLOUR" \
        "${MAP_DISPLACED[$map]:-0}") || { echo "$said" && return 1; }
    echo "$said${notes:+ (reference: $notes)}"
}

# Every map of the package and our own; the table is in $MAP_WORK/table.txt.
compare_maps() {
    local examples=/usr/share/doc/tiled/examples folder=$MAP_WORK/examples map said failed=
    rm -rf "$MAP_WORK"
    mkdir -p "$MAP_WORK/features"
    cp -r "$examples" "$folder"
    find "$folder" -name '*.gz' -exec gunzip {} +
    cp Tests/Maps/*.tmx Games/town/*.png Games/town/*.tsx "$MAP_WORK/features"
    for map in $(cd "$folder" && find . -name '*.tmx' | sed 's|^\./||' | sort) features.tmx; do
        [ "$map" = features.tmx ] && folder=$MAP_WORK/features
        said=$(compare_map "$folder" "$map") || failed="$failed $map"
        printf '%-40s %s\n' "$map" "$said" | tee -a "$MAP_WORK/table.txt"
    done
    [ -z "$failed" ] || fail "not drawn as expected:$failed; the table is in build/maps/table.txt"
    [ "$(wc -l <"$MAP_WORK/table.txt")" -ge 22 ] || fail "the package tiled has fewer than its 21 example maps"
}

check_maps() {
    if ! (need $MAP_PACKAGES); then
        leave_out "maps" "the editor's package cannot be installed, see the lines above"
        return
    fi
    build optimised runner compare_pictures
    step "Comparing maps with the editor's own renderer"
    compare_maps
    passed=$((passed + $(wc -l <"$MAP_WORK/table.txt")))
}
