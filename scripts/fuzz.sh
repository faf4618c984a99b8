#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (ASan + UBSan) and runs each for the given number of
# seconds (default 20), starting from the small corpora in tests/fuzz/corpus. A crash stops the
# script with its reproducer left in build/fuzz/crashes/<target>.
# Usage: scripts/fuzz.sh [seconds]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-20}
bash scripts/deps.sh clang
dir=build/fuzz
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
    -DLM_FUZZ=ON -DLM_BUILD_TESTS=OFF -DLM_BUILD_BENCH=OFF -DLM_BUILD_TOOLS=OFF -DLM_BUILD_JAVA=OFF >/dev/null
cmake --build "$dir" -j 2 --target fuzz_FontBytes fuzz_EffectRecords fuzz_TextLines fuzz_Scene
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export LMEFFECT_LOG=N
for target in FontBytes EffectRecords TextLines Scene; do
    # The tree's corpus is only read; what the run finds goes to a scratch copy.
    work="$dir/corpus/$target"
    mkdir -p "$work" "$dir/crashes/$target"
    cp -n tests/fuzz/corpus/"$target"/* "$work"/ 2>/dev/null || true
    extra=()
    if [ "$target" = FontBytes ]; then
        cp -n /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf "$work"/ 2>/dev/null || true
        extra=(-max_len=1000000)
    fi
    echo "== $target: ${seconds}s =="
    "$dir/tests/fuzz/fuzz_$target" "$work" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=30 \
        -artifact_prefix="$dir/crashes/$target/" -print_final_stats=1 "${extra[@]}" 2>&1 | tail -n 12
done
