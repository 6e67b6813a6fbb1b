#!/usr/bin/env bash
# Builds the fuzz targets with clang (libFuzzer, AddressSanitizer, UBSan) and runs each over its
# kept corpus in tests/fuzz/corpus/:
#   report_descriptor   the HID report-descriptor parser (bytes from devices)
#   import_document     the import document's check (files from users)
#   database            opening a database file and sending what it holds (files on disk)
#
#   scripts/fuzz.sh [SECONDS]        SECONDS per target (default 60); new inputs are merged back
#   scripts/fuzz.sh --ci [SECONDS]   a short run per target (default 5); the corpora stay as they are
set -euo pipefail
cd "$(dirname "$0")/.."
ci=0
if [ "${1:-}" = "--ci" ]; then ci=1; shift; fi
seconds=${1:-$([ $ci -eq 1 ] && echo 5 || echo 60)}
if ! command -v clang++ >/dev/null 2>&1 || ! ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a >/dev/null 2>&1; then
    echo "fuzz: needs clang and its libFuzzer runtime (scripts/install-deps.sh --tests installs them)" >&2
    exit 2
fi
flags="-O1 -g -fno-omit-frame-pointer -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined"
cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
    -DQX9_BUILD_TESTS=OFF -DQX9_BUILD_BENCH=OFF -DQX9_BUILD_GUI=OFF -DQX9_BUILD_FUZZ=ON \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
cmake --build build-fuzz -j"$(nproc)" --target report_descriptor_fuzz import_document_fuzz database_fuzz
for target in report_descriptor import_document database; do
    corpus=tests/fuzz/corpus/$target
    work=$(mktemp -d)
    echo "fuzz: $target for ${seconds} s"
    # New inputs go to a scratch corpus; only a minimised set is merged back.
    build-fuzz/bin/${target}_fuzz -max_total_time="$seconds" -max_len=65536 -timeout=10 -rss_limit_mb=2048 \
        -print_final_stats=1 "$work" "$corpus" 2>&1 | grep -E "^(stat::number_of_executed_units|stat::new_units_added|==|SUMMARY)" || true
    status=${PIPESTATUS[0]}
    if [ $ci -eq 0 ]; then
        build-fuzz/bin/${target}_fuzz -merge=1 "$corpus" "$work" >/dev/null 2>&1 || true
    fi
    rm -rf "$work"
    if [ "$status" -ne 0 ]; then
        echo "fuzz: $target found a fault (status $status)" >&2
        exit 1
    fi
done
