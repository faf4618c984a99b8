#!/usr/bin/env bash
# Installs what is missing, builds the library and lmtext, and renders showcase.png at the
# repository root: one image with every effect this build has.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$root/build/showcase"

bash "$root/scripts/deps.sh"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DLM_BUILD_TESTS=OFF -DLM_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" --target lmtext -j"$(nproc 2>/dev/null || echo 2)"

"$build/tools/lmtext" showcase -o "$root/showcase.png" >/dev/null
echo "Showcase written to $root/showcase.png"
echo "Render your own text with: $build/tools/lmtext render --help"
