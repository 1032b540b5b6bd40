#!/usr/bin/env bash
# drive_accessibility.sh VIEWER FAX: the application as a screen reader finds it, seen from another process.
tools=(dbus-run-session)
# shellcheck source=tests/desktop/desktop.sh
. "$(dirname "$0")/desktop.sh" "$@"
/usr/bin/python3 -c 'import gi; gi.require_version("Atspi", "2.0")' 2>/dev/null || { echo "gir1.2-atspi-2.0 is missing"; exit 77; }

XDG_CONFIG_HOME=$(mktemp -d)
trap 'rm -rf "$XDG_CONFIG_HOME"' EXIT
export XDG_CONFIG_HOME LC_ALL=C QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 NO_AT_BRIDGE=0
dbus-run-session -- /usr/bin/python3 -W ignore "$(dirname "$0")/accessibility.py" "$@"
