#!/usr/bin/env bash
# build_host.sh BUILD WORK: installs BUILD below WORK and builds and runs the host against it.
set -euo pipefail
build=$1
work=$2
source=$(cd "$(dirname "$0")/host" && pwd)
rm -rf "$work/prefix" "$work/host"
cmake --install "$build" --prefix "$work/prefix" > "$work/install.log"
cmake -S "$source" -B "$work/host" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" > "$work/configure.log"
cmake --build "$work/host"
"$work/host/host" "$build/sample_fax.tif"
"$work/host/host_test"
PKG_CONFIG_PATH=$(dirname "$(find "$work/prefix" -name tessarel12.pc)")
export PKG_CONFIG_PATH
# shellcheck disable=SC2046
c++ -std=c++20 -Wall -Wextra -Wpedantic -Werror "$source/host.cpp" -o "$work/host-by-pkg-config" \
  $(pkg-config --cflags --libs tessarel12) "-Wl,-rpath,$(pkg-config --variable=libdir tessarel12)"
"$work/host-by-pkg-config" "$build/sample_fax.tif"
