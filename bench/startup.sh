#!/usr/bin/env bash
# Start-up of the window with --virtual under Xvfb: time from exec to the first paint, and the
# resident memory just after it, beside a bare Qt Widgets window measured in the same run (the
# two alternate). Medians of N runs each (default 11).
#   bench/startup.sh [N]
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-11}
probe=build/bin/qx9_startup_probe
db=$(mktemp -d)
trap 'rm -rf "$db"' EXIT
xvfb-run -a -s "-screen 0 1600x1000x24" bash -c '
  probe=$1; db=$2; runs=$3
  for i in $(seq "$runs"); do
    for kind in app bare; do
      args=(--virtual --no-monitor --db "$db/startup.sqlite3")
      [ "$kind" = bare ] && args=(--bare)
      start=$(date +%s%N)
      out=$("$probe" "${args[@]}" 2>/dev/null | grep -E "first_paint|rss")
      paint=$(echo "$out" | sed -n "s/first_paint_realtime_ns=//p")
      rss=$(echo "$out" | sed -n "s/rss_kb=//p")
      echo "$(( (paint - start) / 1000000 )) $rss" >> "$db/$kind"
    done
  done' _ "$probe" "$db" "$runs"
median() { sort -n -k"$2",2"$2" "$1" | awk -v k="$2" '{ v[NR] = $k } END { print v[int((NR + 1) / 2)] }'; }
app_ms=$(median "$db/app" 1); bare_ms=$(median "$db/bare" 1)
app_kb=$(median "$db/app" 2); bare_kb=$(median "$db/bare" 2)
awk -v a="$app_ms" -v b="$bare_ms" -v n="$runs" 'BEGIN {
  printf "first paint: window %d ms, bare Qt window %d ms (medians of %d): %.2fx\n", a, b, n, a / (b > 0 ? b : 1) }'
awk -v a="$app_kb" -v b="$bare_kb" 'BEGIN {
  printf "resident memory: window %.1f MB, bare Qt window %.1f MB: +%.1f MB\n", a / 1024, b / 1024, (a - b) / 1024 }'
