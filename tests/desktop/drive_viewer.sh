#!/usr/bin/env bash
# drive_viewer.sh VIEWER FAX: uses the viewer as a person does, with real keys and a real mouse on an X server. What
# came of it is read from the window titles of its dialogs and from the scale that it saves for its user.
tools=()
# shellcheck source=tests/desktop/desktop.sh
. "$(dirname "$0")/desktop.sh" "$@"

XDG_CONFIG_HOME=$(mktemp -d)
export XDG_CONFIG_HOME
"$1" "$2" &
program=$!
trap 'kill $program 2>/dev/null; rm -rf "$XDG_CONFIG_HOME"' EXIT

window=$(await '^Tessarel12$')
[[ -n $window ]] || { echo "no window appeared"; exit 1; }
xdotool windowsize --sync "$window" 1000 800 windowfocus --sync "$window"

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
enter 'Zoom personalizzato'
xdotool type 5000
press Return # the refusal comes
press Return # and goes
enter 'Zoom personalizzato'
xdotool type 55
xdotool key Return
expect_gone 'Zoom personalizzato'
expect_scale "a scale is typed" 55 55
xdotool windowfocus --sync "$window" mousemove 280 32 click 1
xdotool key End BackSpace BackSpace BackSpace
xdotool type 80
xdotool key Return
expect_scale "a scale is typed into the toolbar" 80 80

menu p v
enter 'Vai a...'
xdotool type 3
xdotool key Return
expect_gone 'Vai a...'
xdotool windowfocus "$window" mousemove 500 400 click 3
poll other || complain "no menu at a right click"
xdotool key Up Return # the last item
enter 'Proprietà'
xdotool key Return
expect_gone 'Proprietà'

menu v n # the thumbnails
xdotool mousemove 70 100 click 1

expect_idle

menu f u
expect_end "the viewer"
exit $((failures > 0))
