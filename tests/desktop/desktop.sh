# shellcheck shell=bash disable=SC2154,SC2034
# For the drive_ scripts: a virtual screen, and what they all ask of it. Sourced with the script's own arguments; begins
# the script again on an X server of its own, or ends it with 77 where the tools are missing.
set -uo pipefail
for tool in xvfb-run xauth xdotool "${tools[@]}"; do
  command -v "$tool" >/dev/null || { echo "$tool is missing"; exit 77; }
done
if [[ -z ${ON_VIRTUAL_SCREEN:-} ]]; then
  ON_VIRTUAL_SCREEN=1 exec xvfb-run -a -s '-screen 0 1100x900x24' "$0" "$@"
fi
unset WAYLAND_DISPLAY
export QT_QPA_PLATFORM=xcb
failures=0

complain() { echo "$1"; failures=$((failures + 1)); }
find_window() { xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -1; }
# Waits for a window with this title and gives its number.
await() {
  local found
  for _ in $(seq 200); do
    found=$(find_window "$1")
    [[ -n $found ]] && { echo "$found"; return; }
    sleep 0.05
  done
}
expect_gone() { # title
  for _ in $(seq 100); do [[ -z $(find_window "$1") ]] && return; sleep 0.05; done
  complain "'$1' stays"
}
# With PICTURES set to a folder, the screen is left there as it is now.
picture() { # name
  [[ -n ${PICTURES:-} ]] && import -window root "$PICTURES/$1.png"
  sleep 0.1
}
# The scale in percent, as saved a second after the last change; 0 if none is.
scale() {
  local line
  line=$(grep -h '\\Scale=' "$XDG_CONFIG_HOME"/*/registry 2>/dev/null)
  line=${line##*=}
  echo "${line:-0}"
}
expect_scale() { # what lowest highest
  local now=0
  for _ in $(seq 60); do
    now=$(scale)
    ((now >= $2 && now <= $3)) && return
    sleep 0.05
  done
  complain "$1: the scale is $now %, not $2 to $3"
}
# Chooses from the menus of the program's window, which is $window.
menu() { # keys, the first one with Alt
  xdotool windowfocus "$window" key "alt+$1"
  shift
  for key in "$@"; do sleep 0.15; xdotool key "$key"; done
  sleep 0.2
}
expect_idle() { # process
  local before after
  before=$(awk '{print $14 + $15}' "/proc/$1/stat")
  sleep 2
  after=$(awk '{print $14 + $15}' "/proc/$1/stat")
  # 2 of 200 ticks are 1 percent.
  ((after - before <= 2)) || complain "idle, but $((after - before)) ticks in 2 seconds"
}
# What a program left is told by its status.
expect_end() { # process what
  for _ in $(seq 100); do kill -0 "$1" 2>/dev/null || break; sleep 0.05; done
  if kill -0 "$1" 2>/dev/null; then complain "$2 didn't end"; kill -9 "$1"; fi
  wait "$1" || complain "$2 ended with $?"
}
