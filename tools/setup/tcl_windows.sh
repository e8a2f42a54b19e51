#!/bin/bash
# Builds Tcl for Windows from .deps/src/tcl into .deps/tcl-windows.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/environment.sh"

# At its end Tcl waits until the thread of its sockets says that it ends, and not until it has ended. A process that ends
# beside an ending thread dies of a segmentation fault now and then in Wine 8; so Tcl waits for the thread here.
sockets=$VERNOXA_DEPS/src/tcl/win/tclWinSock.c
said='WaitForSingleObject(tsdPtr->readyEvent, INFINITE);'
ended='WaitForSingleObject(tsdPtr->socketThread, INFINITE);'
grep -qF "$ended" "$sockets" || sed -i "/^\t    $said\$/a\\\t    $ended" "$sockets"
[ "$(grep -cF "$ended" "$sockets")" = 1 ] || {
  echo "$sockets waits for its thread in another way than is known here" >&2
  exit 1
}

# Tcl 8.6.16 reads the name of its own folder, which is UTF-8 on Windows, as text in the code page. Where that name has
# Chinese letters it finds no encodings. Tcl 8.6.13 takes the name as it is, and so does every release here.
values=$VERNOXA_DEPS/src/tcl/generic/tclUtil.c
read_wrongly='Tcl_ExternalToUtfDString(NULL, pgvPtr->value, pgvPtr->numBytes, &newValue);'
as_it_is='Tcl_DStringInit(\&newValue); Tcl_DStringAppend(\&newValue, pgvPtr->value, pgvPtr->numBytes);'
sed -i "s/$read_wrongly/$as_it_is/" "$values"

build=$VERNOXA_DEPS/build/tcl-windows
rm -rf "$build" "$VERNOXA_DEPS/tcl-windows"
mkdir -p "$build"
cd "$build"
# It is shipped with the package: no path of this machine goes into it, and no time. A linker sorts what is imported by the
# paths of the libraries, so that of zlib is a relative one.
"$VERNOXA_DEPS/src/tcl/win/configure" --host=x86_64-w64-mingw32 --enable-64bit=amd64 --prefix=/tcl \
  CC="ccache x86_64-w64-mingw32-gcc-posix -Wl,--no-insert-timestamp" CFLAGS="-O2 -ffile-prefix-map=$VERNOXA_DEPS=."
make -j2 binaries libraries ZLIB_DIR_NATIVE=../../src/tcl/compat/zlib
make install-binaries install-libraries INSTALL_ROOT="$build/installed"
mv "$build/installed/tcl" "$VERNOXA_DEPS/tcl-windows"
rm -rf "$build"
