#!/usr/bin/env bash
# Builds the Debian packages of a build tree with cpack and checks them as a distribution would:
# the files of each package and their dependencies (the command-line package pulls no Qt), the
# maintainer scripts, lintian, the hardening of every program, the desktop file, the metainfo and
# the manual pages under their validators, the packages built twice giving the same bytes, a
# program built from a copy of the source in another folder giving the same bytes, and the
# udev rule running the probe the package installs.
#   check_package.sh BUILD-DIR
set -uo pipefail
for tool in cpack dpkg-deb desktop-file-validate appstreamcli lintian hardening-check mandoc; do
    command -v $tool >/dev/null || { echo "SKIPPED: no $tool (scripts/install-deps.sh --tests installs it)"; exit 77; }
done
build=$(cd "$1" && pwd) source=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d) status=0
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*"; status=1; }
pack() {  # pack FOLDER: the packages of the build tree, in FOLDER
    cpack --config "$build/CPackConfig.cmake" -B "$1" >"$1.log" 2>&1 || { cat "$1.log"; exit 1; }
}
pack "$work/a"
cli=$(ls "$work"/a/qx9ctl_*.deb) window=$(ls "$work"/a/qx9config_*.deb) || { cat "$work/a.log"; exit 1; }
for deb in "$cli" "$window"; do
    echo "$(basename "$deb"): $(du -k "$deb" | cut -f1) KiB; Depends: $(dpkg-deb -f "$deb" Depends)"
    dpkg-deb -x "$deb" "$work/root"
done
dpkg-deb -e "$cli" "$work/control"
usr=$work/root/usr share=$work/root/usr/share
has() {  # has PACKAGE FILE…: the package installs each file under /usr
    local deb=$1 listed
    shift
    listed=$(dpkg-deb -c "$deb" | awk '{print $6}')
    for f in "$@"; do grep -qx "./usr/$f" <<<"$listed" || fail "$(basename "$deb") has no /usr/$f"; done
}
has "$cli" bin/qx9ctl lib/udev/qx9-hidraw-probe lib/udev/rules.d/70-halvorn-qx9.rules share/man/man1/qx9ctl.1.gz \
    share/bash-completion/completions/qx9ctl share/doc/qx9ctl/copyright share/doc/qx9ctl/changelog.gz
has "$window" bin/halvorn-qx9 share/man/man1/halvorn-qx9.1.gz share/applications/org.qx9config.qx9.desktop \
    share/metainfo/org.qx9config.qx9.metainfo.xml share/doc/qx9config/copyright share/doc/qx9config/changelog.gz \
    share/icons/hicolor/scalable/apps/org.qx9config.qx9.svg \
    share/icons/hicolor/{16x16,24x24,32x32,48x48,64x64,128x128,256x256}/apps/org.qx9config.qx9.png
depends_cli=$(dpkg-deb -f "$cli" Depends) depends_window=$(dpkg-deb -f "$window" Depends)
[[ $depends_cli =~ libc6.*libsqlite3 ]] || fail "qx9ctl's Depends lack its libraries: $depends_cli"
[[ $depends_cli != *qt6* ]] || fail "qx9ctl depends on Qt: $depends_cli"
[[ $depends_window == "qx9ctl (= $(dpkg-deb -f "$window" Version))"*libqt6widgets6* ]] ||
    fail "qx9config does not depend on qx9ctl of its version and on Qt: $depends_window"
grep -q 'udevadm trigger' "$work/control/postinst" && grep -q 'udevadm control --reload' "$work/control/postrm" ||
    fail "the maintainer scripts do not reload udev"

# lintian, as strict as it goes; what it may still say is in the packages' overrides, with the reason.
lintian -EvIL +pedantic --tag-display-limit 0 "$cli" "$window" >"$work/lintian" 2>&1 || { cat "$work/lintian"; fail "lintian"; }
grep -E '^[EWIPX]: ' "$work/lintian" && fail "lintian has findings (above)"
# Control-flow marks cannot be had on this distribution: its C runtime objects carry none, so no
# program linked with them can (a program of one line built with -fcf-protection has none either).
hardening-check --nocfprotection "$usr/bin/qx9ctl" "$usr/bin/halvorn-qx9" "$usr/lib/udev/qx9-hidraw-probe" >"$work/hardening" ||
    { cat "$work/hardening"; fail "hardening-check"; }
desktop-file-validate "$share/applications/org.qx9config.qx9.desktop" || fail "desktop-file-validate"
appstreamcli validate --pedantic --no-net "$share/metainfo/org.qx9config.qx9.metainfo.xml" || fail "appstreamcli validate"
for page in "$share"/man/man1/*.1.gz; do
    lint=$(zcat "$page" | mandoc -T lint -W style 2>&1)
    [ -z "$lint" ] || fail "mandoc: $(basename "$page"): $lint"
    grep -q '^\.TH [^ ]* 1 "[0-9]\{4\}-[0-9][0-9]-[0-9][0-9]"' <(zcat "$page") || fail "$(basename "$page") has no date"
done

# The same build tree gives the same packages (file dates are the changelog's), and the same source
# in another folder gives the same program (no path or date of the build in it).
sleep 1
pack "$work/b"
for deb in "$work"/a/*.deb; do
    cmp -s "$deb" "$work/b/$(basename "$deb")" || fail "$(basename "$deb") differs when packed again"
done
mkdir "$work/elsewhere"
(cd "$source" && tar -cf - CMakeLists.txt LICENSE cmake data src) | tar -xf - -C "$work/elsewhere"
type=$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' "$build/CMakeCache.txt")
if cmake -S "$work/elsewhere" -B "$work/elsewhere/out" -G Ninja -DCMAKE_BUILD_TYPE="$type" -DQX9_BUILD_GUI=OFF \
        -DQX9_BUILD_TESTS=OFF -DQX9_BUILD_BENCH=OFF >"$work/elsewhere.log" 2>&1 &&
    cmake --build "$work/elsewhere/out" --target qx9-hidraw-probe >>"$work/elsewhere.log" 2>&1; then
    "$source/cmake/strip-package.sh" -o "$work/probe" "$work/elsewhere/out/bin/qx9-hidraw-probe"
    cmp -s "$work/probe" "$usr/lib/udev/qx9-hidraw-probe" || fail "the probe built in another folder differs"
else
    cat "$work/elsewhere.log"
    fail "the probe does not build from a copy of the source"
fi

probe=$(sed -n 's/.*PROGRAM=="\([^ ]*\) .*/\1/p' "$usr/lib/udev/rules.d/70-halvorn-qx9.rules")
[ "$probe" = /usr/lib/udev/qx9-hidraw-probe ] || fail "the rule runs \"$probe\", not the probe the package installs"
"$usr/bin/qx9ctl" --version | grep -qx "qx9ctl [0-9.]*" || fail "the installed qx9ctl does not run"
exit $status
