#!/usr/bin/env bash
# build_host.sh BUILD WORK: installs BUILD below WORK, a component at a time, and builds and runs the host against it.
set -euo pipefail
build=$1
work=$2
here=$(cd "$(dirname "$0")" && pwd)
source=$here/host
fail() { echo "FAILED: $*"; exit 1; }
rm -rf "$work/prefix" "$work/moved" "$work/host" "$work/subproject" "$work/first"

# What each component brings, by one file of it; the others' are not there yet.
for row in Runtime:libTessarel12.so.12 Development:tessarel12.h Testing:tessarel12_testing.h Formats:image-helper Viewer:tessarel-viewer.svg; do
  component=${row%%:*} file=${row#*:}
  [[ -z $(find "$work/prefix" -name "$file" 2> /dev/null) ]] || fail "$file came before $component"
  cmake --install "$build" --prefix "$work/prefix" --component "$component" >> "$work/install.log"
  [[ -n $(find "$work/prefix" -name "$file") ]] || fail "$component without $file"
done
mkdir -p "$work/rest"
cmake --install "$build" --prefix "$work/rest" >> "$work/install.log"
diff <(cd "$work/prefix" && find . | sort) <(cd "$work/rest" && find . | sort) || fail "files without a component"
rm -rf "$work/rest"

# An installed tree can be moved.
mv "$work/prefix" "$work/moved"
"$work/moved/bin/tessarel-viewer" --info "$build/sample_fax.tif" > /dev/null
cmake -S "$source" -B "$work/host" -G Ninja -DCMAKE_PREFIX_PATH="$work/moved" > "$work/configure.log"
cmake --build "$work/host"
"$work/host/host" "$build/sample_fax.tif"
"$work/host/host_test"

PKG_CONFIG_PATH=$(dirname "$(find "$work/moved" -name tessarel12.pc)")
export PKG_CONFIG_PATH
read -ra flags <<< "$(pkg-config --cflags --libs tessarel12)"
c++ -std=c++20 -Wall -Wextra -Wpedantic -Woverloaded-virtual -Werror "$source/host.cpp" -o "$work/host-by-pkg-config" \
  "${flags[@]}" "-Wl,-rpath,$(pkg-config --variable=libdir tessarel12)"
"$work/host-by-pkg-config" "$build/sample_fax.tif"
mkdir -p "$work/first"
(cd "$work/first" && "$here/first_window.sh" "$here/../../docs/first_window.md" "$here/first_check.cpp" \
  "$build/sample_fax.tif" first.png "-Wl,-rpath,$(pkg-config --variable=libdir tessarel12)")
awk '/^```cmake/ { inside = 1; next } /^```/ { if (inside) exit } inside' "$here/../../docs/first_window.md" > "$work/first/CMakeLists.txt"
cmake -S "$work/first" -B "$work/first/build" -DCMAKE_PREFIX_PATH="$work/moved" > "$work/first.log"
cmake --build "$work/first/build" >> "$work/first.log"
# An older standard is told in one line.
errors=$(c++ -std=c++17 -fsyntax-only -x c++ -include tessarel12.h "${flags[0]}" /dev/null 2>&1 | grep 'error:' || true)
[[ $errors == *-std=c++20* && $(wc -l <<< "$errors") == 1 ]] || fail "with C++17: $errors"

# As a part of a host's own build: no tests, benchmarks or applications come along.
cmake -S "$here/subproject" -B "$work/subproject" -G Ninja -DTESSAREL_SOURCE="$here/../.." -DCMAKE_BUILD_TYPE=Release \
  > "$work/subproject.log"
alien=$(ninja -C "$work/subproject" -t targets all | grep -E '(test_|bench_|tessarel-viewer)[a-z_]*:' || true)
[[ -z $alien ]] || fail "a host's build has $(head -3 <<< "$alien")"
