#!/usr/bin/env bash
# Cross-builds for arm64 and runs the whole test suite, golden images included, under qemu-user:
# the bytes must equal those of the x86-64 build. Installs the cross compiler, qemu and the arm64
# libraries (Debian multiarch) when missing.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh g++-aarch64-linux-gnu qemu-user-static \
  libharfbuzz-dev:arm64 libfreetype-dev:arm64 libicu-dev:arm64 libfontconfig-dev:arm64 \
  libpng-dev:arm64 libgtest-dev:arm64 libhwy-dev:arm64

jobs=$(nproc 2>/dev/null || echo 2)
dir=build/arm64
rm -rf "$dir"
cmake -S . -B "$dir" -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLM_BUILD_BENCH=OFF -DLM_BUILD_JAVA=OFF >/dev/null
cmake --build "$dir" -j "$jobs"
(cd "$dir" && ctest --output-on-failure -j "$jobs")
