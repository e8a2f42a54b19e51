#!/bin/bash
# Fetches the distribution's sources of Tcl and cJSON into .deps/src, with an apt configuration of its own.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/environment.sh"
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")

apt=$VERNOXA_DEPS/apt
rm -rf "$apt" "$VERNOXA_DEPS/src"
mkdir -p "$apt/parts" "$apt/lists/partial" "$apt/cache/archives/partial" "$VERNOXA_DEPS/src"
python3 "$here/source_lists.py" "$apt/parts"

apt_get() {
  apt-get -q -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$apt/parts" -o Dir::State::lists="$apt/lists" \
    -o Dir::Cache="$apt/cache" -o APT::Sandbox::User="$(id -un)" -o Acquire::Languages=none -o Acquire::Retries=3 "$@"
}
cd "$VERNOXA_DEPS/src"
apt_get update
apt_get source --download-only cjson
dpkg-source -q -x cjson_*.dsc cjson
# What the release changes in Tcl is not for Windows: its makers' own source is enough.
apt_get source --tar-only tcl8.6
mkdir tcl
tar -xf tcl8.6_*.orig.tar.* -C tcl --strip-components=1
rm -rf "$apt"
