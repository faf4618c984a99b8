#!/usr/bin/env bash
# Builds from scratch and runs every test: first a plain build, then one with AddressSanitizer
# and UndefinedBehaviorSanitizer (skip the second with LM_SKIP_SANITIZE=1).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh

jobs=$(nproc 2>/dev/null || echo 2)

run_suite() {
  local dir=$1; shift
  rm -rf "$dir"
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
  (cd "$dir" && ctest --output-on-failure -j "$jobs")
}

echo "== plain build =="
run_suite build/test
if [ "${LM_SKIP_SANITIZE:-0}" != "1" ]; then
  echo "== AddressSanitizer + UndefinedBehaviorSanitizer build =="
  ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    run_suite build/sanitize -DLM_SANITIZE=ON -DLM_BUILD_BENCH=OFF
fi
