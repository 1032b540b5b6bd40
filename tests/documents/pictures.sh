#!/usr/bin/env bash
# pictures.sh MAKER FAX FOLDER: makes the documents' pictures; each that a document shows is among them, as large as the
# one beside the documents, which is made so (fonts may differ).
set -euo pipefail
cd "$(dirname "$0")/../.."
rm -rf "$3"
mkdir -p "$3"
XDG_CONFIG_HOME=$3/config "$1" "$2" "$3"
size_of() { od -An -t x1 -j16 -N8 "$1"; }
bad=0 seen=0
while IFS= read -r picture; do
  seen=$((seen + 1))
  [[ -e $3/$picture && $(size_of "$3/$picture") == $(size_of "docs/$picture") ]] || { echo "docs/$picture is old or made by hand"; bad=1; }
done < <(grep -hoE '!\[[^]]*\]\([^)]*\)' README.md docs/*.md | sed 's/.*(\(docs\/\)\?//; s/)//' | sort -u)
[[ $seen != 0 && $bad == 0 ]]
