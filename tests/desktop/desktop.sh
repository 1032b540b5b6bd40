# shellcheck shell=bash disable=SC2154,SC2034
# For the drive_ scripts: a virtual screen, and what they all ask of it. Sourced with the script's own arguments; begins
# the script again on an X server of its own, or ends it with 77 where the tools are missing. Nothing sleeps to let
# something happen: what is to happen is awaited.
set -uo pipefail
for tool in xdotool "${tools[@]}"; do
  command -v "$tool" >/dev/null || { echo "$tool is missing"; exit 77; }
done
if [[ -z ${ON_VIRTUAL_SCREEN:-} ]]; then
  ON_VIRTUAL_SCREEN=1 exec "$(dirname "$0")/../../tools/with_screen" x11 "$0" "$@"
fi
failures=0

complain() { echo "$1"; failures=$((failures + 1)); }
# Asks until it is so, for ten seconds at most.
poll() { for _ in $(seq 300); do "$@" && return; sleep 0.03; done; return 1; }
find_window() { xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -1; }
exists() { [[ -n $(find_window "$1") ]]; }
gone() { ! exists "$1"; }
# Waits for a window with this title and gives its number.
await() { poll exists "$1" && find_window "$1"; }
expect_gone() { poll gone "$1" || complain "'$1' stays"; } # title
focused() { [[ $(xdotool getwindowfocus 2>/dev/null) == "$1" ]]; }
# Waits for a dialog and gives it the keys: no window manager does it.
enter() { # title
  dialog=$(await "$1")
  [[ -n $dialog ]] || { complain "no dialog '$1'"; return; }
  xdotool windowfocus "$dialog"
  poll focused "$dialog" || complain "'$1' has no focus"
}
# The windows of the program of $window, pop-ups among them, and those beside $window.
windows() { xdotool search --onlyvisible --pid "$program" 2>/dev/null; }
others() { windows | grep -vx "$window"; }
other() { [[ $(others | wc -l) == 1 ]]; }
box() { other && focused "$(others)"; } # a list of completions, about to go, has no focus
alone() { [[ -z $(others) ]]; }
differ() { [[ $(windows) != "$1" ]]; }
# Presses a key that opens or closes windows, and waits for that.
press() {
  local before
  before=$(windows)
  xdotool key "$1"
  poll differ "$before" || complain "$1 opens and closes nothing"
}
answer_box() { # what it tells; the box is the only one beside the window
  poll box || { complain "no box of $1"; return; }
  picture "${1// /_}"
  xdotool key Return
  poll alone || complain "the box of $1 stays"
}
# With PICTURES set to a folder, the screen is left there as it is now.
picture() { # name
  [[ -z ${PICTURES:-} ]] || import -window root "$PICTURES/$1.png"
}
# The scale in percent, as saved a second after the last change; 0 if none is.
scale() {
  local line
  line=$(grep -h '\\Scale=' "$XDG_CONFIG_HOME"/*/registry 2>/dev/null)
  line=${line##*=}
  echo "${line:-0}"
}
scale_within() { local now; now=$(scale); ((now >= $1 && now <= $2)); }
expect_scale() { poll scale_within "$2" "$3" || complain "$1: the scale is $(scale) %, not $2 to $3"; } # what lowest highest
# Chooses from the menus of the program's window, which is $window.
menu() { # keys, the first one with Alt
  xdotool windowfocus --sync "$window"
  press "alt+$1"
  shift
  for key in "$@"; do press "$key"; done
}
ticks() { awk '{print $14 + $15}' "/proc/$program/stat"; }
# In a second 1 of 100 ticks is 1 percent.
idle_second() { local before; before=$(ticks); sleep 1; (($(ticks) - before <= 1)); }
expect_idle() { for _ in 1 2 3 4; do idle_second && return; done; complain "idle, but no second passes without work"; }
ended() { ! kill -0 "$program" 2>/dev/null; }
# What a program left is told by its status.
expect_end() { # what
  poll ended || { complain "$1 didn't end"; kill -9 "$program"; }
  wait "$program" || complain "$1 ended with $?"
}
