#!/usr/bin/env bash
# Builds the foundation and text suites with ThreadSanitizer alone and runs them: the threaded
# stress test and every text test (the other suites never share state between threads).
# Usage: scripts/tsan.sh [gtest filter]
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
dir=build/tsan
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLM_SANITIZE=thread \
    -DLM_BUILD_BENCH=OFF -DLM_BUILD_TOOLS=OFF -DLM_BUILD_JAVA=OFF >/dev/null
cmake --build "$dir" -j 2 --target test_foundation test_text
export TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1 suppressions=$PWD/tests/tsan.supp"
for suite in test_foundation test_text; do
    "$dir/tests/$suite" --gtest_filter="${1:-*}"
done
