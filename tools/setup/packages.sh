#!/bin/bash
# Installs those of the distribution's packages that are missing for a purpose: packages.sh work|report|coverage|browser
# With --complete behind it, it only answers whether none is missing.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/release.sh"

case $1 in
  work)
    packages=(
      # the cross build
      g++-mingw-w64-x86-64-posix cmake ninja-build make ccache
      # Windows programs, on a screen that nobody sees
      wine wine64 xvfb
      # Chinese, in the windows that Wine draws, in browsers and in pictures
      fonts-wqy-microhei
      # the native build, its tests and its tools
      g++ gcc clang lld clang-format clang-tidy "libclang-rt-$clang_version-dev" googletest libgtest-dev libgmock-dev
      tcl8.6 tcl8.6-dev
      # the stand-ins and the scripts
      python3 python3-jsonschema python3-rich python3-prompt-toolkit python3-markdown-it tcllib kicad-demos
      mypy flake8 pre-commit
      # the set-up itself
      dpkg-dev locales patch xz-utils
      # networks of their own, for tests that use the same ports
      iproute2
    )
    ;;
  report)  # a Node.js from elsewhere brings its own npm
    packages=()
    command -v npm >/dev/null || packages=(nodejs npm)
    ;;
  coverage) packages=(llvm) ;;
  browser) packages=(chromium firefox-esr fonts-noto-core) ;;  # the Chinese font is there already
esac

installed=
[ ${#packages[@]} = 0 ] ||
  installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "${packages[@]}" 2>/dev/null | sed -n 's/ installed$//p')
missing=()
for package in "${packages[@]}"; do
  grep -qxF "$package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0
[ "${2:-}" != --complete ] || exit 1

as_root=()
if [ "$(id -u)" != 0 ]; then
  command -v sudo >/dev/null || {
    echo "These packages are missing, and only root can install them: ${missing[*]}" >&2
    exit 1
  }
  as_root=(sudo)
fi
echo "installing ${missing[*]}"
apt_get() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=600 \
    -o Acquire::Retries=3 -o Dpkg::Use-Pty=0 "$@"
}
apt_get update
apt_get install --no-install-recommends "${missing[@]}" || {
  echo "These packages are missing, and apt-get could not install them (it needs a network): ${missing[*]}" >&2
  exit 1
}
