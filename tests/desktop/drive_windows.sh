#!/usr/bin/env bash
# drive_windows.sh VIEWER PEER FAX: on whatever desktop there is, at each scale and with a large font, every kind of window
# is opened by real keys and a real mouse. What shows and what is cut off is told by the probe inside the viewer, and
# nothing may be said on standard error. With PICTURES set to a folder, the screen is left there after each step.
set -uo pipefail
work=$(mktemp -d)
trap 'kill $program $peer 2>/dev/null; rm -rf "$work"' EXIT
export PROBE=$work/probe CUPS_SERVER=$work/none
cp "$3" "$work/uno.tif"
cp "$3" "$work/due.tif"
program='' peer='' failures=0 row=0

complain() { echo "$QT_SCALE_FACTOR, $QT_FONT_DPI: $1"; failures=$((failures + 1)); }
poll() { for _ in $(seq 500); do "$@" && return; sleep 0.02; done; return 1; }
# A pattern among the lines of the probe; with ! in front it must have gone.
seen() { if [[ $1 == !* ]]; then ! seen "${1#!}"; else grep -Eq "$1" "$PROBE" 2>/dev/null; fi; }
expect() { # pattern what
  poll seen "$1" || { complain "$2: no '$1' in"; cat "$PROBE"; }
  row=$((row + 1))
  [[ -z ${PICTURES:-} ]] || import -window root "$PICTURES/$QT_QPA_PLATFORM-$QT_SCALE_FACTOR-$QT_FONT_DPI-$row.png"
  while IFS= read -r fault; do complain "$2: $fault"; done < <(grep '^fault' "$PROBE")
}
ended() { ! kill -0 "$1" 2>/dev/null; }

page='^window uno.tif - Tessarel active' # what comes next needs the keys here again
steps=(
  'ctrl+Next|^named uno.tif, Pagina 2 of 3 Zoom 1:100'
  'ctrl+Up|^named uno.tif, Pagina 2 of 3 Zoom 1:200'
  'alt+v|^menu' 'Escape|!^menu' "Escape|$page"
  'alt+z|^menu' 'p|^window Zoom personalizzato active' "Escape|$page"
  'alt+p|^menu' 'v|^window Vai a\.\.\. active' "Escape|$page"
  'alt+p|^menu' 'r|^window Propriet. active' "Escape|$page"
  'ctrl+s|^window Stampa active' 'alt+f|^window Formato di stampa active' 'Escape|^window Stampa active' "Escape|$page"
  'ctrl+e|^window Esporta pagine active' "Escape|$page"
  'ctrl+a|^window Apri.* active' "Escape|$page"
  'alt+a|^menu' 'n|^window Tessarel active' "Return|$page"
)
walk() {
  for step in "${steps[@]}"; do
    xdotool key "${step%%|*}"
    expect "${step#*|}" "${step%%|*}"
  done
  # The window's middle is on the screen's wherever the desktop puts it. Weston, which goes by distances, has to lose
  # those that it has missed in the corner first.
  for _ in 1 2 3 4 5; do
    xdotool mousemove 0 0 sleep 0.05 mousemove 550 450 sleep 0.05 click 3
    for _ in $(seq 20); do seen '^menu' && break 2; sleep 0.02; done
  done
  expect '^menu' "right click"
  xdotool key Escape
  expect "$page" "Escape"
}
leave() {
  expect '^window .* - Tessarel active' "before the end"
  xdotool key alt+f
  expect '^menu' "the last menu"
  xdotool key u
  poll ended "$program" || { complain "it doesn't end"; kill -9 "$program"; }
  wait "$program" || complain "it ended with $?"
  [[ ! -s $work/err ]] || complain "standard error: $(cat "$work/err")"
}
copy() {
  xdotool key ctrl+c
  local told
  told=$(timeout 20 "$peer_program" paste 2>>"$work/err")
  [[ $told == '1728x2156 204 dpi' ]] || complain "another program reads '$told' from the clipboard"
}
# On Wayland alone. Where the desktop puts the source, nobody knows; its middle covers the screen's. The viewer is larger, so that one of the
# places is its own.
drag() {
  "$peer_program" drag "$work/due.tif" 2>>"$work/err" &
  peer=$!
  sleep 0.5 # until it is in front; a press that comes too early moves nothing, and the next one does
  for _ in 1 2 3; do
    for place in '900 150' '900 600' '300 150' '300 650' '550 150' '550 720' '150 400' '950 400'; do
      # shellcheck disable=SC2086
      xdotool mousemove 549 449 mousemove 550 450 mousedown 1 mousemove 560 460 mousemove 580 470 mousemove $place mousemove_relative 2 2
      sleep 0.15 # a source may be let go before its target has answered; then nothing is dropped
      xdotool mousemove_relative 1 1 mouseup 1
      for _ in $(seq 20); do seen '^window due.tif' && break 3; sleep 0.02; done
    done
  done
  kill "$peer"
  expect '^window due.tif - Tessarel active' "drop"
}

peer_program=$2
for look in '1 96' '1.5 96' '2 96' '1 144'; do
  export QT_SCALE_FACTOR=${look% *} QT_FONT_DPI=${look#* } XDG_CONFIG_HOME=$work/config-$row
  rm -f "$PROBE"
  "$1" "$work/uno.tif" 2>"$work/err" &
  program=$!
  expect '^window uno.tif - Tessarel active' "start"
  expect '^named uno.tif, Pagina 1 of 3' "start"
  walk
  if [[ $look == '1 96' ]]; then copy; fi
  if [[ $look == '1 96' && $QT_QPA_PLATFORM == wayland ]]; then drag; fi
  leave
done
exit $((failures > 0))
