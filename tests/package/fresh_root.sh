#!/usr/bin/env bash
# fresh_root.sh PACKAGES FAX WORK: installs the packages with apt into a fresh Debian root below WORK, as a user and a
# host's developer do, uses them, removes them, and looks for what is left. Runs as root; the base system is kept in WORK.
set -euo pipefail
# The helper asks /proc where it is; mounts end with this process.
if [[ -z ${MOUNTS_OF_ITS_OWN:-} ]]; then MOUNTS_OF_ITS_OWN=1 exec unshare --mount "$0" "$@"; fi
packages=$(realpath "$1")
fax=$(realpath "$2")
here=$(cd "$(dirname "$0")" && pwd)
source=$(cd "$here/../.." && pwd)
mkdir -p "$3"
work=$(realpath "$3")
root=$work/root
base=$work/base.tar

step() { echo "== $*"; }
fail() { echo "FAILED: $*"; exit 1; }
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
  QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME=/try/config XDG_RUNTIME_DIR=/try/run HOME=/try/home "$@"; }
apt_inside() { inside apt-get -y -qq -o Dpkg::Use-Pty=0 "$@" > "$work/apt.log" 2>&1 || { tail -20 "$work/apt.log"; fail "apt-get $*"; }; }

sources=/etc/apt/sources.list.d/debian.sources
[[ -e $sources ]] || sources=/etc/apt/sources.list
if [[ ! -e $base ]]; then
  step "a base system"
  mmdebstrap --variant=apt --mode=root "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$base" "$sources" \
    > "$work/base.log" 2>&1 || { rm -f "$base"; tail -5 "$work/base.log"; fail "no base system"; }
fi
rm -rf "$root"
mkdir "$root"
tar -xf "$base" -C "$root"
mount -t proc proc "$root/proc"
mkdir -p "$root"/try/{run,home,packages}
chmod 700 "$root/try/run"
cp "$packages"/*.deb "$root/try/packages"
cp "$fax" "$root/try/fax.tif"
# the way to the archive is this machine's
cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
apt-config dump | grep '^Acquire::' > "$root/etc/apt/apt.conf.d/99-this-machine" || true
inside apt-get update -qq

listing() { (cd "$root" && find . -xdev -not -path './try*' -not -path './var/lib/apt/*' -not -path './var/cache/*' \
  -not -path './var/log/*' -not -path './var/lib/dpkg/*' -not -path './proc/*' -not -path './tmp/*' | sort); }
all=$(cd "$root/try/packages" && printf '/try/packages/%s\n' *.deb | grep -v dbgsym)
ours=$(for deb in "$packages"/*.deb; do dpkg-deb -f "$deb" Package; done | grep -v dbgsym)

step "a user: installs the viewer, opens a fax"
# shellcheck disable=SC2086
apt_inside install $(grep -vE -- '-(dev|testing)_' <<< "$all")
inside tessarel-viewer --version
[[ $(inside tessarel-viewer --info /try/fax.tif | grep -c '^page ') == 3 ]] || fail "the fax has three pages"
inside tessarel-viewer --screenshot /try/viewer.png --zoom width /try/fax.tif
file "$root/try/viewer.png" | grep -q 'PNG image' || fail "no picture of the window"
inside tessarel-viewer --export /try/fax.pdf /try/fax.tif
[[ $(inside tessarel-viewer --info /try/fax.pdf | grep -c '^page ') == 3 ]] || fail "the helper reads no PDF"
for desktop in "$root"/usr/share/applications/*.desktop; do desktop-file-validate "$desktop"; done
appstreamcli validate --no-net "$root"/usr/share/metainfo/*.xml > "$work/appstream.log" || { cat "$work/appstream.log"; fail "metainfo"; }
for size in 16 32 48 64 128 256; do
  file "$root/usr/share/icons/hicolor/${size}x$size/apps/tessarel-viewer.png" | grep -q "$size x $size" || fail "icon $size"
done

step "a developer: builds hosts from the packages"
# shellcheck disable=SC2086
apt_inside install --no-install-recommends $all g++ cmake ninja-build pkg-config
cp -r "$here/host" "$root/try/host"
inside cmake -S /try/host -B /try/host/build -G Ninja -DCMAKE_BUILD_TYPE=Release > "$work/host.log"
inside cmake --build /try/host/build >> "$work/host.log" || { tail -20 "$work/host.log"; fail "the host"; }
inside /try/host/build/host /try/fax.tif
inside /try/host/build/host_test
inside cmake -S /usr/share/doc/libtessarel12-dev/examples -B /try/examples -G Ninja > "$work/examples.log"
inside cmake --build /try/examples >> "$work/examples.log" || { tail -20 "$work/examples.log"; fail "the examples"; }
inside /try/examples/image_info /try/fax.tif
cp "$source/docs/first_window.md" "$here"/first_{window.sh,check.cpp} "$root/try"
inside sh -ec 'cd /try && ./first_window.sh first_window.md first_check.cpp fax.tif first.png'
file "$root/try/first.png" | grep -q 'PNG image' || fail "the first window"

step "removes them"
# Once taken out, put in and taken out: what was left would show the second time.
# shellcheck disable=SC2086
apt_inside purge $ours
listing > "$work/before"
# shellcheck disable=SC2086
apt_inside install --no-install-recommends $all
inside tessarel-viewer --info /try/fax.pdf > /dev/null
# shellcheck disable=SC2086
apt_inside purge $ours
listing > "$work/after"
diff "$work/before" "$work/after" || fail "something is left"
if grep -i tessarel "$work/after"; then fail "something is left"; fi
umount "$root/proc"
rm -rf "$root"
echo "the packages install, work and go"
