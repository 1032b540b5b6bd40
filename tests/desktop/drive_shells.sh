#!/usr/bin/env bash
# drive_shells.sh MDI_SHELL SDI_SHELL FAX: uses both document shells as a person does, with real keys and a real mouse
# on an X server. What came of it is read from window titles, from exported files and from the scale that is saved.
tools=()
# shellcheck source=tests/desktop/desktop.sh
. "$(dirname "$0")/desktop.sh" "$@"

work=$(mktemp -d)
trap 'kill $shell 2>/dev/null; rm -rf "$work"' EXIT
keys() { for key in "$@"; do xdotool key "$key"; sleep 0.25; done; }
start() { # program files...
  XDG_CONFIG_HOME=$(mktemp -d -p "$work")
  export XDG_CONFIG_HOME
  "$@" &
  shell=$!
  window=$(await '^Tessarel12')
  [[ -n $window ]] || { echo "no window of $1"; exit 1; }
  xdotool windowsize --sync "$window" 1000 780 windowfocus "$window"
  sleep 0.5
}
open_file() { # path; in the dialog of the open command
  xdotool windowfocus "$window" key ctrl+a
  local dialog
  dialog=$(await '^Apri')
  [[ -n $dialog ]] || { complain "no open dialog"; return; }
  xdotool windowfocus "$dialog" type "$1"
  keys Return
}
for name in uno due tre; do cp "$3" "$work/$name.tif"; done
echo "no picture at all" >"$work/text.tif"

# Many documents

start "$1" "$work/uno.tif" "$work/due.tif" "$work/tre.tif"
picture mdi_cascaded
keys ctrl+Up
expect_scale "Ctrl and Up zoom in" 200 200
keys ctrl+Down ctrl+Down
expect_scale "and Down out" 50 50
keys alt+n o # one above the other
xdotool mousemove 527 32 click 1 # the thumbnails
sleep 0.3
keys ctrl+Next
xdotool mousemove 471 32 click 1 # to the right
sleep 0.3
xdotool mousemove 391 32 click 1 # as wide as the window
picture mdi_tiled
expect_scale "the page is as wide as the window" 20 90
wide=$(scale)
xdotool windowsize --sync "$window" 800 700
keys alt+n o
expect_scale "and stays so in a narrow one" 5 $((wide - 1))
picture mdi_narrow
xdotool windowsize --sync "$window" 1000 780

xdotool windowfocus "$window" key ctrl+e
dialog=$(await '^Salva')
if [[ -n $dialog ]]; then
  xdotool windowfocus "$dialog" type "$work/esportato.tif"
  keys Return
  sleep 0.5
  picture mdi_exported
  keys Return # what tells of it
  cmp -s "$work/tre.tif" "$work/esportato.tif" || complain "the export isn't the file"
else
  complain "no export dialog"
fi

open_file "$work/text.tif"
sleep 0.4
picture mdi_refused
keys Return
xdotool windowfocus "$window"
keys ctrl+F6 ctrl+Next ctrl+F4 ctrl+F4 ctrl+F4
picture mdi_empty
open_file "$work/uno.tif"
sleep 0.4
picture mdi_again
keys alt+f u
expect_end "$shell" "the shell for many documents"

# One document

start "$2" "$work/uno.tif"
[[ -n $(await 'uno.tif') ]] || complain "the title doesn't name the file"
picture sdi
keys ctrl+Up
expect_scale "the single shell zooms" 200 200
open_file "$work/due.tif"
[[ -n $(await 'due.tif') ]] || complain "the second file isn't open"
open_file "$work/text.tif"
sleep 0.4
keys Return
picture sdi_refused
open_file "$work/tre.tif"
[[ -n $(await 'tre.tif') ]] || complain "no file is open after a refused one"
keys alt+f u
expect_end "$shell" "the shell for one document"
exit $((failures > 0))
