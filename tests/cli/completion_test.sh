#!/bin/bash
# The bash completion of qx9ctl as bash runs it: COMP_WORDS split as readline splits them (at =
# and :), COMPREPLY compared with what each word completes to on a scratch database.
# Usage: completion_test.sh QX9CTL COMPLETION_SCRIPT
set -u
qx9ctl=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir" || exit 1
for command in "profile add" "profile add" "macro add" "userlight add"; do
    "$qx9ctl" --db db.sqlite3 --device virtual $command >/dev/null || exit 1
done
touch backup.json
COMP_WORDBREAKS=$' \t\n"\'><=;|&(:'
source "$2"
failed=0
# check EXPECTED WORD…: the replies (sorted, space-separated) when the last WORD is completed.
check() {
    local expected=$1
    shift
    COMP_WORDS=("$qx9ctl" "$@")
    COMP_CWORD=$#
    _qx9ctl
    local got
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | xargs)
    [[ $got == "$expected" ]] || { echo "qx9ctl $*: [$got], expected [$expected]"; failed=1; }
}
check "1 2 3" --db db.sqlite3 profile select ""
check "1" --db = db.sqlite3 macro events ""
check "1" --db db.sqlite3 userlight show ""
check "1" --db db.sqlite3 key set 1 0 a macro : ""
check "capsLock" key set 1 0 CAPS
check "escape" macro insert 1 key : esc
check "close-backlight" light select clo
check "altf4 alttab win" settings block ""
check "off on" settings block win ""
check "default disable" key set 1 0 a d
check "rename" macro re
check "backup.json" import ba
check "backup.json" export ba
check "db.sqlite3 db.sqlite3-history" --db = d
check "virtual virtual:" --device = vi
check "backup.json" --device virtual : ba
check "--header --help" profile list --he
exit $failed
