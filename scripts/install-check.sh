#!/usr/bin/env bash
# Installs the library into a scratch prefix and builds the consumer program against it twice
# (CMake package, pkg-config); then builds the Debian package, installs it with apt-get, renders
# the showcase with the installed lmtext and removes the package again.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh dpkg-dev file

jobs=$(nproc 2>/dev/null || echo 2)
build=build/install
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
font=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf

rm -rf "$build"
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
  -DLM_BUILD_TESTS=OFF -DLM_BUILD_BENCH=OFF -DLM_BUILD_JAVA=OFF >/dev/null
cmake --build "$build" -j "$jobs"
cmake --install "$build" --prefix "$work/prefix" >/dev/null
libdir=$(dirname "$(find "$work/prefix" -name 'liblmeffect.so' | head -n 1)")

echo "== consumer through find_package =="
cmake -S tests/consumer -B "$work/cmake" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null
LD_LIBRARY_PATH="$libdir" "$work/cmake/consumer" "$font" "$work/cmake.pam"

echo "== consumer through pkg-config =="
PKG_CONFIG_PATH="$libdir/pkgconfig" c++ -std=c++17 tests/consumer/consumer.cpp -o "$work/pc-consumer" \
  $(PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --cflags --libs lmeffect)
LD_LIBRARY_PATH="$libdir" "$work/pc-consumer" "$font" "$work/pc.pam"
cmp "$work/cmake.pam" "$work/pc.pam"

echo "== Debian package =="
(cd "$build" && cpack -G DEB >/dev/null)
deb=$(ls "$build"/lmeffect_*.deb)
dpkg-deb -f "$deb" Package Version Depends
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq "./$deb" >/dev/null
trap '"${sudo_cmd[@]}" apt-get remove -y -qq lmeffect >/dev/null || true; rm -rf "$work"' EXIT
(cd "$work" && /usr/bin/lmtext showcase -o showcase.png && test -s showcase.png)
/usr/bin/lmtext --version
echo "install check passed"
