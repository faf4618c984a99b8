#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the renderer need, when missing; other
# scripts name the extra packages they need as arguments (name:arm64 for arm64 ones).
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  libharfbuzz-dev libfreetype-dev libicu-dev libfontconfig-dev libpng-dev
  libgtest-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev libhwy-dev
  fonts-dejavu-core fonts-droid-fallback
  openjdk-17-jdk-headless junit4 libhamcrest-java
  "$@"
)

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
  case " ${missing[*]}" in
  *:arm64*) "${sudo_cmd[@]}" dpkg --add-architecture arm64 ;;
  esac
  "${sudo_cmd[@]}" apt-get update -qq
  "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
