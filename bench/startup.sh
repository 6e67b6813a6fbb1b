#!/usr/bin/env bash
# Start-up of the window with --virtual under Xvfb: time from exec to the first paint, and the
# resident memory 300 ms after it (the keyboard connected, its page shown), beside a bare Qt
# Widgets window measured in the same run (they alternate). Three windows: on a new database, on
# a large one (10 profiles, 50 per-key colour sets, 15 macros of 30 events) and on the large one
# in Chinese. Medians of N runs each (default 21).
#   bench/startup.sh [N]
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-21}
probe=build/bin/qx9_startup_probe
qx9ctl=build/bin/qx9ctl
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The large configuration, written as qx9ctl export writes it.
large_configuration() {
    local sep="" i p s k m e keys
    echo '{"format": "halvorn-qx9-configuration", "version": 1, "profiles": ['
    for p in $(seq 10); do printf '%s{"id": %d, "name": "Profile %d"}' "$sep" "$p" "$p"; sep=", "; done
    echo '], "configurationValues": ['
    sep="" i=1
    for kv in keyboardLayout=0 language=1033 gamemode=0 disable_alttab=0 disable_altf4=0 disable_win=0 \
              keyboard_layout=0 customlight_run=0 cur_customlightmode=0 fnlayer=0 sleeplight=0 fnfunction=0 tab_view=1; do
        printf '%s{"id": %d, "profile": 1, "key": "%s", "value": "%s"}' "$sep" "$i" "${kv%%=*}" "${kv#*=}"
        sep=", " i=$((i + 1))
    done
    echo '], "keyAssignments": [], "lighting": [], "userLights": ['
    sep=""
    for s in $(seq 50); do
        printf '%s{"id": %d, "profile": %d, "name": "Set %d", "speed": 15, "brightness": 15}' "$sep" "$s" $(((s - 1) / 5 + 1)) "$s"
        sep=", "
    done
    echo '], "userLightColours": ['
    sep="" i=1 keys="$(seq 4 49) $(seq 51 56) $(seq 58 69)"
    for s in $(seq 50); do
        for k in $keys; do
            printf '%s{"id": %d, "set": %d, "key": %d, "colour": "%02X%02X%02X"}' "$sep" "$i" "$s" "$k" $((k * 3)) $((s * 5)) 128
            sep=", " i=$((i + 1))
        done
    done
    echo '], "macros": ['
    sep=""
    for m in $(seq 15); do
        printf '%s{"id": %d, "name": "Macro %d", "playTimes": 1, "delayType": 0, "delayTime": 0}' "$sep" "$m" "$m"
        sep=", "
    done
    echo '], "macroEvents": ['
    sep="" i=1
    for m in $(seq 15); do
        for e in $(seq 0 9); do
            k=$((4 + e))
            printf '%s{"id": %d, "macro": %d, "type": 2, "index": %d, "value": %d, "text": "%s"}' "$sep" "$i" "$m" $((e * 3)) "$k" "$(printf "\\x$(printf %x $((65 + e)))")"
            printf ', {"id": %d, "macro": %d, "type": 3, "index": %d, "value": %d, "text": "%s"}' $((i + 1)) "$m" $((e * 3 + 1)) "$k" "$(printf "\\x$(printf %x $((65 + e)))")"
            printf ', {"id": %d, "macro": %d, "type": 1, "index": %d, "value": 30, "text": "30"}' $((i + 2)) "$m" $((e * 3 + 2))
            sep=", " i=$((i + 3))
        done
    done
    echo ']}'
}
large_configuration > "$work/large.json"
mkdir -p "$work/large"
"$qx9ctl" --db "$work/large/large.sqlite3" --device virtual import "$work/large.json" > /dev/null
mkdir -p "$work/chinese"
cp "$work/large/large.sqlite3" "$work/chinese/chinese.sqlite3"
"$qx9ctl" --db "$work/chinese/chinese.sqlite3" settings language zh-CN > /dev/null

xvfb-run -a -s "-screen 0 1600x1000x24" bash -c '
  probe=$1; work=$2; runs=$3
  mkdir -p "$work/new"
  for i in $(seq "$runs"); do
    for kind in new bare large chinese; do
      args=(--virtual --no-monitor --db "$work/$kind/$kind.sqlite3")
      [ "$kind" = bare ] && args=(--bare)
      start=$(date +%s%N)
      out=$("$probe" "${args[@]}" 2>/dev/null | grep -E "first_paint|rss")
      paint=$(echo "$out" | sed -n "s/first_paint_realtime_ns=//p")
      rss=$(echo "$out" | sed -n "s/rss_kb=//p")
      echo "$(( (paint - start) / 1000000 )) $rss" >> "$work/$kind.runs"
    done
  done' _ "$probe" "$work" "$runs"
median() { sort -n -k"$2",2"$2" "$1" | awk -v k="$2" '{ v[NR] = $k } END { print v[int((NR + 1) / 2)] }'; }
bare_ms=$(median "$work/bare.runs" 1)
bare_kb=$(median "$work/bare.runs" 2)
awk -v a="$bare_ms" -v k="$bare_kb" -v n="$runs" 'BEGIN {
  printf "bare Qt window:    first paint %d ms, resident memory %.1f MB (medians of %d)\n", a, k / 1024, n }'
for kind in new large chinese; do
    ms=$(median "$work/$kind.runs" 1)
    kb=$(median "$work/$kind.runs" 2)
    awk -v k="$kind" -v a="$ms" -v b="$bare_ms" -v ka="$kb" -v kb="$bare_kb" 'BEGIN {
      label = k == "new" ? "new database" : k == "large" ? "large database" : "large, in Chinese"
      printf "%-18s first paint %d ms: %.2fx the bare window; resident memory %.1f MB: +%.1f MB\n",
             label ":", a, a / (b > 0 ? b : 1), ka / 1024, (ka - kb) / 1024 }'
done
