#!/usr/bin/env bash
# Builds the Debian package of a build tree with cpack and checks what a machine gets from it: the
# files, dependencies computed from the programs, the maintainer scripts, the desktop file and the
# metainfo as the desktop's validators read them, and, installed into a scratch root, a udev rule
# that runs the probe the package installs.
#   check_package.sh BUILD-DIR
set -uo pipefail
for tool in cpack dpkg-deb desktop-file-validate appstreamcli; do
    command -v $tool >/dev/null || { echo "SKIPPED: no $tool (scripts/install-deps.sh installs it)"; exit 77; }
done
work=$(mktemp -d) status=0
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*"; status=1; }
cpack --config "$1/CPackConfig.cmake" -B "$work" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
deb=$(ls "$work"/*.deb) || { cat "$work/log"; exit 1; }
echo "$(basename "$deb"): $(du -k "$deb" | cut -f1) KiB; Depends: $(dpkg-deb -f "$deb" Depends)"
dpkg-deb -x "$deb" "$work/root"
dpkg-deb -e "$deb" "$work/control"
share=$work/root/usr/share
for f in bin/halvorn-qx9 bin/qx9ctl lib/udev/qx9-hidraw-probe share/man/man1/halvorn-qx9.1.gz share/man/man1/qx9ctl.1.gz \
    share/bash-completion/completions/qx9ctl share/icons/hicolor/scalable/apps/org.qx9config.Qx9.svg \
    share/icons/hicolor/{16x16,24x24,32x32,48x48,64x64,128x128,256x256}/apps/org.qx9config.Qx9.png; do
    [ -s "$work/root/usr/$f" ] || fail "the package has no /usr/$f"
done
[[ $(dpkg-deb -f "$deb" Depends) =~ libc6.*libqt6widgets6|libqt6widgets6.*libc6 ]] || fail "Depends lacks the programs' libraries"
grep -q 'udevadm trigger' "$work/control/postinst" && grep -q 'udevadm control --reload' "$work/control/postrm" ||
    fail "the maintainer scripts do not reload udev"
desktop-file-validate "$share/applications/org.qx9config.Qx9.desktop" || fail "desktop-file-validate"
appstreamcli validate --no-net "$share/metainfo/org.qx9config.Qx9.metainfo.xml" || fail "appstreamcli validate"
probe=$(sed -n 's/.*PROGRAM=="\([^ ]*\) .*/\1/p' "$work/root/usr/lib/udev/rules.d/70-halvorn-qx9.rules")
[ "$probe" = /usr/lib/udev/qx9-hidraw-probe ] || fail "the rule runs \"$probe\", not the probe the package installs"
"$work/root/usr/bin/qx9ctl" --version | grep -qx "qx9ctl [0-9.]*" || fail "the installed qx9ctl does not run"
exit $status
