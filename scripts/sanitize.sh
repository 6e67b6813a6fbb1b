#!/usr/bin/env bash
# The test suites again under the sanitizers: all of them built with AddressSanitizer and UBSan,
# and the ones whose code runs on more than one thread with ThreadSanitizer. The kernel tests
# (a virtual machine) and the package check run only in the normal build. Run after scripts/install-deps.sh --tests.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
common=(-G Ninja -DCMAKE_BUILD_TYPE=Debug -DQX9_BUILD_BENCH=OFF)

# Unoptimised: the largest build of the run compiles about a third faster, and the suites take seconds.
asan="-O0 -g -fno-omit-frame-pointer -fsanitize=address,undefined -fno-sanitize-recover=undefined"
cmake -S . -B build-asan "${common[@]}" -DCMAKE_CXX_FLAGS="$asan" \
    -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
cmake --build build-asan -j"$jobs"
# Qt and fontconfig keep some memory for the life of the process on purpose: not our leaks.
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1"
(cd build-asan && QT_QPA_PLATFORM=offscreen ctest -j"$jobs" -E 'Kernel|Uhid|UdevRule|DebianPackage' --output-on-failure --timeout 600)

tsan="-O1 -g -fno-omit-frame-pointer -fsanitize=thread"
cmake -S . -B build-tsan "${common[@]}" -DQX9_BUILD_GUI=OFF -DCMAKE_CXX_FLAGS="$tsan" \
    -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=thread" >/dev/null
cmake --build build-tsan -j"$jobs" --target session_tests sender_tests hid_tests virtual_tests capture_tests
for suite in session_tests sender_tests hid_tests virtual_tests capture_tests; do
    TSAN_OPTIONS="halt_on_error=1" build-tsan/bin/$suite --gtest_brief=1
done
