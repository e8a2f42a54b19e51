#!/bin/bash
# Makes the Wine prefix .deps/wine, whose Windows runs in code page 936 (Chinese, GBK).
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/environment.sh"

if [ -d "$WINEPREFIX" ]; then
  wineserver -k || true  # of this prefix only; it would write into the folder that goes
fi
rm -rf "$LOCPATH" "$WINEPREFIX"
mkdir -p "$LOCPATH"
LC_ALL=C localedef -i zh_CN -f UTF-8 "$LOCPATH/zh_CN.UTF-8"

env -u DISPLAY "$VERNOXA_WINE" wineboot --init
# Nobody manages the windows of a suite's screen: otherwise each one waits two seconds for a window manager. Nobody sees
# it either: a program that crashes ends with a line, and waits for no click.
"$VERNOXA_WINE" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
"$VERNOXA_WINE" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null

encoding=$("$VERNOXA_WINE" "$VERNOXA_TCLSH" "$VERNOXA_ROOT/tools/setup/code_page.tcl" | tr -d '\r\n')
if [ "$encoding" != cp936 ]; then
  echo "The Wine prefix has the code page $encoding instead of cp936." >&2
  exit 1
fi
echo "Windows code page: 936"
wineserver -w  # it writes the registry when it ends
