#!/bin/bash
# Builds Tcl for Windows from .deps/src/tcl into .deps/tcl-windows.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/environment.sh"

build=$VERNOXA_DEPS/build/tcl-windows
rm -rf "$build" "$VERNOXA_DEPS/tcl-windows"
mkdir -p "$build"
cd "$build"
"$VERNOXA_DEPS/src/tcl/win/configure" --host=x86_64-w64-mingw32 --enable-64bit=amd64 \
  --prefix="$VERNOXA_DEPS/tcl-windows" CC="ccache x86_64-w64-mingw32-gcc-posix"
make -j2 binaries libraries
make install-binaries install-libraries
rm -rf "$build"
