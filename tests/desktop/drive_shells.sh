#!/usr/bin/env bash
# drive_shells.sh MDI_SHELL SDI_SHELL FAX: uses both document shells as a person does, with real keys and a real mouse
# on an X server. What came of it is read from window titles, from exported files and from the scale that is saved.
tools=()
# shellcheck source=tests/desktop/desktop.sh
. "$(dirname "$0")/desktop.sh" "$@"

work=$(mktemp -d)
trap 'kill $program 2>/dev/null; rm -rf "$work"' EXIT
start() { # program files...
  XDG_CONFIG_HOME=$(mktemp -d -p "$work")
  export XDG_CONFIG_HOME
  "$@" &
  program=$!
  window=$(await '^Tessarel12')
  [[ -n $window ]] || { echo "no window of $1"; exit 1; }
  xdotool windowsize --sync "$window" 1000 780 windowfocus --sync "$window"
}
open_file() { # path; in the dialog of the open command
  xdotool windowfocus "$window" key ctrl+a
  enter '^Apri'
  xdotool type "$1"
  xdotool key Return
  expect_gone '^Apri'
}
for name in uno due tre; do cp "$3" "$work/$name.tif"; done
echo "no picture at all" >"$work/text.tif"

# Many documents

start "$1" "$work/uno.tif" "$work/due.tif" "$work/tre.tif"
picture mdi_cascaded
xdotool key ctrl+Up
expect_scale "Ctrl and Up zoom in" 200 200
xdotool key ctrl+Down ctrl+Down
expect_scale "and Down out" 50 50
menu n o # one above the other
xdotool mousemove 527 32 click 1 # the thumbnails
xdotool key ctrl+Next
xdotool mousemove 471 32 click 1 # to the right
xdotool mousemove 391 32 click 1 # as wide as the window
picture mdi_tiled
expect_scale "the page is as wide as the window" 20 90
wide=$(scale)
xdotool windowsize --sync "$window" 800 700
menu n o
expect_scale "and stays so in a narrow one" 5 $((wide - 1))
picture mdi_narrow
xdotool windowsize --sync "$window" 1000 780

xdotool windowfocus "$window" key ctrl+e
enter '^Salva'
xdotool type "$work/esportato.tif"
xdotool key Return
expect_gone '^Salva'
answer_box "a file exported"
cmp -s "$work/tre.tif" "$work/esportato.tif" || complain "the export isn't the file"

open_file "$work/text.tif"
answer_box "a file refused"
xdotool windowfocus --sync "$window" key ctrl+F6 ctrl+Next ctrl+F4 ctrl+F4 ctrl+F4
picture mdi_empty
open_file "$work/uno.tif"
picture mdi_again
menu f u
expect_end "the shell for many documents"

# One document

start "$2" "$work/uno.tif"
[[ -n $(await 'uno.tif') ]] || complain "the title doesn't name the file"
picture sdi
xdotool key ctrl+Up
expect_scale "the single shell zooms" 200 200
open_file "$work/due.tif"
[[ -n $(await 'due.tif') ]] || complain "the second file isn't open"
open_file "$work/text.tif"
answer_box "a file refused"
open_file "$work/tre.tif"
[[ -n $(await 'tre.tif') ]] || complain "no file is open after a refused one"
menu f u
expect_end "the shell for one document"
exit $((failures > 0))
