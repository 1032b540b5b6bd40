#!/usr/bin/env bash
# drive_page_window.sh PAGE_WINDOW FAX: walks through a fax with keys on a real X server and reads the window's title, which
# tells page and zoom; then checks that the idle window leaves the processor alone and that Escape ends it.
set -uo pipefail
for tool in xvfb-run xauth xdotool; do
  command -v "$tool" >/dev/null || { echo "$tool is missing"; exit 77; }
done
if [[ ${3:-} != inside ]]; then
  exec xvfb-run -a -s '-screen 0 1100x900x24' "$0" "$1" "$2" inside
fi

unset WAYLAND_DISPLAY
export QT_QPA_PLATFORM=xcb
failures=0
"$1" "$2" &
viewer=$!
trap 'kill $viewer 2>/dev/null' EXIT

title() { xdotool getwindowname "$window" 2>/dev/null; }
# Waits until the title fits the pattern.
expect() { # what pattern
  for _ in $(seq 100); do
    # shellcheck disable=SC2053
    [[ $(title) == $2 ]] && return
    sleep 0.05
  done
  echo "$1: the title is '$(title)', not '$2'"
  failures=$((failures + 1))
}

window=
for _ in $(seq 200); do
  window=$(xdotool search --onlyvisible --name 'sample_fax' 2>/dev/null | tail -1)
  [[ -n $window ]] && break
  sleep 0.05
done
[[ -n $window ]] || { echo "no window appeared"; exit 1; }
expect "opened" 'sample_fax.tif - 1/3 - *%'
xdotool mousemove 400 300 click 1
xdotool windowfocus "$window"
xdotool key Next
expect "page down" '* - 2/3 - *'
xdotool key End Next
expect "no page behind the last" '* - 3/3 - *'
xdotool key 1
expect "actual size" '* - 3/3 - 100%'
xdotool key minus
expect "zoom out" '* - 50%'
xdotool key plus plus
expect "zoom in" '* - 200%'
xdotool key Home b
expect "best fit" '* - 1/3 - 3[0-9]%'

before=$(awk '{print $14 + $15}' "/proc/$viewer/stat")
sleep 2
after=$(awk '{print $14 + $15}' "/proc/$viewer/stat")
# 2 of 200 ticks are 1 percent.
((after - before <= 2)) || { echo "idle, but $((after - before)) ticks in 2 seconds"; failures=$((failures + 1)); }

xdotool key Escape
for _ in $(seq 100); do kill -0 "$viewer" 2>/dev/null || break; sleep 0.05; done
if kill -0 "$viewer" 2>/dev/null; then echo "Escape didn't end it"; exit 1; fi
wait "$viewer" || { echo "exit status $?"; exit 1; }
exit $((failures > 0))
