#!/usr/bin/env bash
# drive_print.sh VIEWER FAX: prints from the viewer as a person does, with real keys and a real mouse on an X server,
# and looks at the PDFs that come of it. With PICTURES set to a folder, pictures of the dialogs are left there.
tools=(pdfinfo pdfimages pdftoppm)
# shellcheck source=tests/desktop/desktop.sh
. "$(dirname "$0")/desktop.sh" "$@"

work=$(mktemp -d)
mkdir "$work/config" "$work/temporary" "$work/out"
export XDG_CONFIG_HOME=$work/config TMPDIR=$work/temporary
export CUPS_SERVER=$work/none # no print service, so that files are all there is
"$1" "$2" &
program=$!
trap 'kill $program 2>/dev/null; rm -rf "$work"' EXIT

print_command() {
  menu f s
  enter '^Stampa$'
}
choose_file() { # path
  xdotool key alt+t Return # with the focus on the button of the format, Return would press that
  enter '^Stampa su file$'
  xdotool key ctrl+a
  xdotool type "$1"
  xdotool key Return
}
expect_pages() { # pdf pages resolution
  poll [ -e "$1" ]
  local pages resolutions
  pages=$(pdfinfo "$1" 2>/dev/null | awk '/^Pages:/ { print $2 }')
  [[ $pages == "$2" ]] || complain "$1: ${pages:-no} pages, not $2"
  resolutions=$(pdfimages -list "$1" 2>/dev/null | awk 'NR > 2 { print $13 }' | sort -u)
  [[ $resolutions == "$3" ]] || complain "$1: $resolutions pixels to the inch, not $3"
  # The text of a fax blackens a few percent of the paper.
  local dark
  dark=$(pdftoppm -f 1 -l 1 -r 50 -gray -scale-to-x 400 -scale-to-y 500 "$1" 2>/dev/null | tail -c 200000 |
    od -An -v -tu1 -w1 | awk '$1 < 160 { ++dark } END { print dark + 0 }')
  ((dark > 500 && dark < 100000)) || complain "$1: $dark of 200000 dots are dark"
}

window=$(await '^Tessarel12$')
[[ -n $window ]] || { echo "no window appeared"; exit 1; }
xdotool windowsize --sync "$window" 1000 800 windowfocus --sync "$window"

# The format dialog opens from the print dialog, and what is chosen there counts.
print_command
picture print
xdotool key alt+f
enter '^Formato di stampa$'
picture format
xdotool key alt+p Return
expect_gone '^Formato di stampa$'
enter '^Stampa$'
choose_file "$work/out/pixels.pdf"
expect_gone '^Stampa$'
expect_pages "$work/out/pixels.pdf" 3 300

# Cancel in the format dialog leaves it, and the window remembers it from job to job.
print_command
xdotool key alt+f
enter '^Formato di stampa$'
xdotool key alt+a Escape
expect_gone '^Formato di stampa$'
enter '^Stampa$'
choose_file "$work/out/again.pdf"
expect_gone '^Stampa$'
expect_pages "$work/out/again.pdf" 3 300

# Cancel in the print dialog, and in the dialog for the file's name, prints nothing.
print_command
xdotool key alt+t Return
enter '^Stampa su file$'
xdotool key Escape
expect_gone '^Stampa su file$'
enter '^Stampa$'
xdotool key Escape
expect_gone '^Stampa$'
[[ $(find "$work/out" "$work/temporary" -type f | wc -l) == 2 ]] || complain "a cancelled job left something"

# Thousands of sheets, stopped by the button of the dialog that stands there meanwhile.
print_command
xdotool key alt+u
xdotool type 9999
choose_file "$work/out/long.pdf"
expect_gone '^Stampa$'
if ! poll other; then
  complain "not one dialog to stop the job: '$(others)'"
else
  abort=$(others)
  picture abort
  [[ ! -e $work/out/long.pdf ]] || complain "the long job was over before it was stopped"
  eval "$(xdotool getwindowgeometry --shell "$abort")"
  xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT * 38 / 52)) click 1
  replaced() { other && [[ $(others) != "$abort" ]]; }
  poll replaced || complain "not one message: '$(others)'"
  answer_box "a stopped job"
fi
[[ $(find "$work/out" "$work/temporary" -type f | wc -l) == 2 ]] ||
  complain "the stopped job left something: $(find "$work/out" "$work/temporary" -type f)"

# The viewer goes on.
print_command
choose_file "$work/out/after.pdf"
expect_gone '^Stampa$'
expect_pages "$work/out/after.pdf" 3 300
menu f u
expect_end "the viewer"
exit $((failures > 0))
