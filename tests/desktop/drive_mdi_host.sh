#!/usr/bin/env bash
# drive_mdi_host.sh MDI_HOST FAX: uses two viewers docked in a host's window as a person does, with real keys and a real
# mouse on an X server.
tools=()
# shellcheck source=tests/desktop/desktop.sh
. "$(dirname "$0")/desktop.sh" "$@"

work=$(mktemp -d)
export XDG_CONFIG_HOME=$work/config
mkdir "$XDG_CONFIG_HOME"
cp "$2" "$work/uno.tif"
cp "$2" "$work/due.tif"
"$1" "$work/uno.tif" "$work/due.tif" &
program=$!
trap 'kill $program 2>/dev/null; rm -rf "$work"' EXIT

window=$(await '^Tessarel12')
[[ -n $window ]] || { echo "no window appeared"; exit 1; }
xdotool windowsize --sync "$window" 1000 780 windowfocus --sync "$window"
picture host_two
menu z i
expect_scale "the viewer in front zooms" 200 200
xdotool key ctrl+F6
menu z o
expect_scale "then the other one, by a scale of its own" 50 50
menu p v
enter '^Vai a'
xdotool type 3
xdotool key Return
expect_gone '^Vai a'
picture host_page
xdotool windowfocus "$window" key ctrl+F4
menu z i
expect_scale "the one that stays has the menu" 300 300
xdotool windowfocus "$window" key ctrl+F4
picture host_empty
menu f u
expect_end "the host"
exit $((failures > 0))
