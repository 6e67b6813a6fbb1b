#!/usr/bin/env bash
# Start-up of the window with --virtual under Xvfb: time from exec to the first paint, and the
# resident memory just after it. Medians of N runs (default 11).
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
    start=$(date +%s%N)
    out=$("$probe" --virtual --no-monitor --db "$db/startup.sqlite3" 2>/dev/null | grep -E "first_paint|rss")
    paint=$(echo "$out" | sed -n "s/first_paint_realtime_ns=//p")
    rss=$(echo "$out" | sed -n "s/rss_kb=//p")
    echo "$(( (paint - start) / 1000000 )) $rss"
  done' _ "$probe" "$db" "$runs" > "$db/runs"
sort -n -k1,1 "$db/runs" | awk '{ ms[NR] = $1 } END {
  printf "start-up to first paint: median %d ms (min %d, max %d) over %d runs\n", ms[int((NR + 1) / 2)], ms[1], ms[NR], NR }'
sort -n -k2,2 "$db/runs" | awk '{ kb[NR] = $2 } END {
  printf "resident memory after start: median %.1f MB (min %.1f, max %.1f)\n", kb[int((NR + 1) / 2)] / 1024, kb[1] / 1024, kb[NR] / 1024 }'
