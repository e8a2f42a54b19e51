#!/bin/bash
# Installs the browser in which the report page is tested, and its Latin font; the Chinese one is there already.
set -eu

packages=(chromium fonts-noto-core)
missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
[ "$(id -u)" = 0 ] || as_root=(sudo)
"${as_root[@]}" apt-get -q update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=600 \
  install --no-install-recommends "${missing[@]}"
