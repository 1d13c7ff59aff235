#!/usr/bin/env bash
# Runs a command on a display of its own, without a window manager: with_display.sh COMMAND...
set -euo pipefail
work=$(mktemp -d)
Xvfb -displayfd 3 -screen 0 1400x900x24 -nolisten tcp -noreset 3>"$work/number" 2>"$work/log" &
server=$!
trap 'kill "$server" 2>/dev/null; wait "$server" 2>/dev/null || true; rm -rf "$work"' EXIT
for _ in $(seq 100); do
    [ -s "$work/number" ] && break
    sleep 0.1
done
[ -s "$work/number" ] || { cat "$work/log" >&2; echo "Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$(tr -d '\n' <"$work/number")"
unset WAYLAND_DISPLAY SDL_VIDEODRIVER
"$@"
