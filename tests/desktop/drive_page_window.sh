#!/usr/bin/env bash
# drive_page_window.sh PAGE_WINDOW FAX: walks through a fax with keys on a real X server and reads the window's title, which
# tells page and zoom; then checks that the idle window leaves the processor alone and that Escape ends it.
tools=()
# shellcheck source=tests/desktop/desktop.sh
. "$(dirname "$0")/desktop.sh" "$@"

"$1" "$2" &
program=$!
trap 'kill $program 2>/dev/null' EXIT

title() { xdotool getwindowname "$window" 2>/dev/null; }
# shellcheck disable=SC2053
titled() { [[ $(title) == $1 ]]; }
expect() { poll titled "$2" || complain "$1: the title is '$(title)', not '$2'"; } # what pattern

window=$(await 'sample_fax')
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

expect_idle

xdotool key Escape
expect_end "the window"
exit $((failures > 0))
