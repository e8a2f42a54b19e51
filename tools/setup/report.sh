#!/bin/bash
# Installs what the report page and its tests need, and nothing else needs: a browser, fonts, Node.js and the libraries
# that tools/report/package-lock.json names, into .deps/report.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/environment.sh"

packages=(chromium fonts-noto-cjk)
command -v npm >/dev/null || packages+=(nodejs npm)
missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
  as_root=()
  [ "$(id -u)" = 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get -q update
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=600 \
    install --no-install-recommends "${missing[@]}"
fi

mkdir -p "$VERNOXA_DEPS/report"
cp "$VERNOXA_ROOT"/tools/report/package.json "$VERNOXA_ROOT"/tools/report/package-lock.json "$VERNOXA_DEPS/report"
cd "$VERNOXA_DEPS/report"
npm ci --ignore-scripts --no-audit --no-fund --omit-lockfile-registry-resolved
