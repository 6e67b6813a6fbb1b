#!/usr/bin/env bash
# Builds the report-descriptor fuzz target with clang (libFuzzer, AddressSanitizer, UBSan) and
# runs it for the given number of seconds (default 60), keeping new inputs in the corpus.
#   scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
if ! command -v clang++ >/dev/null 2>&1 || ! ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a >/dev/null 2>&1; then
    if [ "$(id -u)" -eq 0 ]; then
        DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends clang libclang-rt-dev >/dev/null 2>&1 ||
        DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends clang libclang-rt-14-dev >/dev/null
    else
        echo "fuzz: needs clang and its libFuzzer runtime (apt-get install clang libclang-rt-14-dev)" >&2
        exit 2
    fi
fi
out=build-fuzz
mkdir -p "$out"
clang++ -std=c++20 -O1 -g -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
    -Isrc tests/fuzz/report_descriptor_fuzz.cpp src/hid/report_descriptor.cpp \
    -o "$out/report_descriptor_fuzz"
corpus=tests/fuzz/corpus/report_descriptor
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# New inputs go to a scratch corpus; only a minimised set is merged back.
"$out/report_descriptor_fuzz" -max_total_time="$seconds" -max_len=4096 -timeout=5 \
    -print_final_stats=1 "$work" "$corpus"
"$out/report_descriptor_fuzz" -merge=1 "$corpus" "$work" >/dev/null 2>&1 || true
