#!/usr/bin/env bash
# drive_viewer.sh VIEWER FAX: uses the viewer as a person does, with real keys and a real mouse on an X server. What
# came of it is read from the window titles of its dialogs and from the scale that it saves for its user.
tools=()
# shellcheck source=tests/desktop/desktop.sh
. "$(dirname "$0")/desktop.sh" "$@"

XDG_CONFIG_HOME=$(mktemp -d)
export XDG_CONFIG_HOME
"$1" "$2" &
viewer=$!
trap 'kill $viewer 2>/dev/null; rm -rf "$XDG_CONFIG_HOME"' EXIT

expect_dialog() { # title
  [[ -n $(await "$1") ]] || complain "no dialog '$1'"
  sleep 0.2
}

window=$(await '^Tessarel12$')
[[ -n $window ]] || { echo "no window appeared"; exit 1; }
xdotool windowsize --sync "$window" 1000 800 windowfocus "$window"
sleep 0.3

xdotool mousemove 500 400 keydown ctrl click 4 keyup ctrl
expect_scale "Ctrl and the wheel zoom in" 200 200
xdotool keydown ctrl click 5 click 5 keyup ctrl
expect_scale "and out" 50 50
menu v m i # zoom in at a click
xdotool mousemove 500 400 click 1
expect_scale "a click zooms in" 100 100
xdotool keydown shift click 1 keyup shift
expect_scale "with Shift it zooms out" 50 50
menu z s # zoom to a selection
xdotool mousemove 200 300 mousedown 1 mousemove 300 350 mousemove 400 400 mouseup 1
expect_scale "a selection of 200 by 100 fills the window" 230 260
menu z p
expect_dialog 'Zoom personalizzato'
xdotool type 5000
xdotool key Return
sleep 0.4
xdotool key Return # the refusal
sleep 0.3
xdotool windowfocus "$(await 'Zoom personalizzato')" # no window manager does it
xdotool type 55
xdotool key Return
expect_gone 'Zoom personalizzato'
expect_scale "a scale is typed" 55 55
xdotool windowfocus --sync "$window" mousemove 280 32 click 1
sleep 0.2
xdotool key End BackSpace BackSpace BackSpace
xdotool type 80
xdotool key Return
expect_scale "a scale is typed into the toolbar" 80 80

menu p v
expect_dialog 'Vai a...'
xdotool type 3
xdotool key Return
expect_gone 'Vai a...'
xdotool windowfocus "$window" mousemove 500 400 click 3
sleep 0.3
xdotool key Up Return # the last item
expect_dialog 'Proprietà'
xdotool key Return
expect_gone 'Proprietà'

menu v n # the thumbnails
xdotool mousemove 70 100 click 1
sleep 1.2

expect_idle "$viewer"

menu f u
expect_end "$viewer" "the viewer"
exit $((failures > 0))
