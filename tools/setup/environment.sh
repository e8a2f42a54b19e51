# Sourced by every script that uses what the set-up made: where it lies, and how Windows programs run (code page 936,
# a Wine prefix of the repository's own, nothing of the user's).

# Debian's loader of Wine lies at a fixed address, and how far behind it its heap begins is random. Once in some thousand
# starts the heap lies on the page that Windows keeps at 0x7ffe0000, and the process ends without a word. So addresses
# are not random here, where the system grants that.
if [ -z "${VERNOXA_FIXED_ADDRESSES:-}" ]; then
  export VERNOXA_FIXED_ADDRESSES=yes
  ! setarch --addr-no-randomize true 2>/dev/null || exec setarch --addr-no-randomize "$0" "$@"
fi

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
export VERNOXA_ROOT=$root
export VERNOXA_DEPS=$root/.deps
export VERNOXA_TCLSH=$VERNOXA_DEPS/tcl-windows/bin/tclsh86.exe
# Debian's `wine` is a script that looks for the 32-bit loader first; the 64-bit loader itself starts faster.
export VERNOXA_WINE=/usr/lib/wine/wine64
[ -x "$VERNOXA_WINE" ] || VERNOXA_WINE=wine

export WINEPREFIX=${VERNOXA_PREFIX:-$VERNOXA_DEPS/wine}  # or the one of a suite
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml="  # no offers to install .NET and HTML engines
# Wine takes the Windows code page from the locale. The messages of other programs stay English.
export LOCPATH=$VERNOXA_DEPS/locale
export LANGUAGE=en
{ export LC_ALL=zh_CN.UTF-8; } 2>/dev/null  # this shell itself read LOCPATH before it was set
unset root
