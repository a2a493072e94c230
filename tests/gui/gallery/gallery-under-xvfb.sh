#!/usr/bin/env bash
# Smoke test of the toolkit in a real X window: runs the widget gallery
# under Xvfb, waits for its window, clicks and types in it with xdotool,
# takes a screenshot with ImageMagick and closes it with Escape. Fails when
# the window does not appear, the program dies while it is used, the
# screenshot is blank, or the program does not end with status 0.
#
#   gallery-under-xvfb.sh GALLERY-PROGRAM SCREENSHOT.png [GALLERY-OPTION]
set -euo pipefail

gallery=$1
screenshot=$2
option=${3:-}
for tool in xvfb-run xdotool import convert; do
    command -v "$tool" > /dev/null || { echo "gallery-under-xvfb: '$tool' is needed" >&2; exit 1; }
done

export GALLERY="$gallery" SCREENSHOT="$screenshot" OPTION="$option"
# The tests run with SDL's off-screen driver; this one needs X.
export SDL_VIDEODRIVER=x11
# SDL's software renderer: the GL drivers of a virtual X server are slow to
# load and keep allocations that the sanitizer build would report.
export SDL_RENDER_DRIVER=software
# In the sanitizer build, leak checks of this process would only report the
# X server's GL libraries, which SDL loads and unloads (unnamed modules by
# then); the program's own allocations are leak-checked by the gallery test
# of the off-screen suite.
export ASAN_OPTIONS="${ASAN_OPTIONS:+$ASAN_OPTIONS:}detect_leaks=0"
xvfb-run -a -s "-screen 0 1280x1000x24" bash -euo pipefail -c '
    "$GALLERY" ${OPTION:+"$OPTION"} > "$SCREENSHOT.log" 2>&1 &
    pid=$!
    window=$(timeout 30 xdotool search --sync --onlyvisible --classname gui_gallery | head -n 1)
    [ -n "$window" ] || { echo "no gallery window" >&2; kill $pid; exit 1; }
    xdotool windowfocus --sync "$window" || true
    # Wander over the widgets: hover, click, type, scroll.
    for point in "60 60" "200 120" "120 220" "300 300" "420 160" "600 400" "240 480"; do
        set -- $point
        xdotool mousemove --window "$window" "$1" "$2" click 1
        sleep 0.1
    done
    xdotool type --delay 20 "Hello"
    xdotool key Tab Tab space
    xdotool mousemove --window "$window" 700 500 click 5 click 5 click 4
    sleep 0.5
    kill -0 $pid || { echo "the gallery died while it was used" >&2; cat "$SCREENSHOT.log" >&2; exit 1; }
    import -window root "$SCREENSHOT"
    # The first Escape may close a pop-up that the clicks opened.
    xdotool key Escape
    sleep 0.3
    kill -0 $pid 2> /dev/null && xdotool key Escape
    for _ in $(seq 50); do kill -0 $pid 2> /dev/null || break; sleep 0.1; done
    if kill -0 $pid 2> /dev/null; then echo "Escape did not close the gallery" >&2; kill $pid; exit 1; fi
    wait $pid
'
# A screenshot of one colour means nothing was drawn.
deviation=$(convert "$screenshot" -format "%[fx:standard_deviation]" info:)
awk -v d="$deviation" 'BEGIN { exit !(d > 0.02) }' || { echo "blank screenshot ($deviation)" >&2; exit 1; }
echo "screenshot: $screenshot"
