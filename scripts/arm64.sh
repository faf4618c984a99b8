#!/usr/bin/env bash
# Cross-builds for arm64 and runs the whole test suite, golden images included, under qemu-user:
# the bytes must equal those of the x86-64 build. Installs the cross compiler, qemu and the arm64
# libraries (Debian multiarch) when missing.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh

packages=(g++-aarch64-linux-gnu qemu-user-static
  libharfbuzz-dev:arm64 libfreetype-dev:arm64 libicu-dev:arm64 libfontconfig-dev:arm64
  libpng-dev:arm64 libgtest-dev:arm64 libhwy-dev:arm64)
missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo_cmd=()
  if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
  export DEBIAN_FRONTEND=noninteractive
  "${sudo_cmd[@]}" dpkg --add-architecture arm64
  "${sudo_cmd[@]}" apt-get update -qq
  "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

jobs=$(nproc 2>/dev/null || echo 2)
dir=build/arm64
rm -rf "$dir"
cmake -S . -B "$dir" -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLM_BUILD_BENCH=OFF -DLM_BUILD_JAVA=OFF >/dev/null
cmake --build "$dir" -j "$jobs"
(cd "$dir" && ctest --output-on-failure -j "$jobs")
