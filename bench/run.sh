#!/bin/bash
# Measures everything, each against the same work done another way, with what ./dev bench has built.
set -eu
cd "$(dirname "${BASH_SOURCE[0]}")/.."

for bench in door export module; do
  echo "natively: $bench"
  "build/bench/vernoxa_${bench}_bench"
done
for bench in door export; do
  echo "the plug-in under Wine: $bench"
  tools/setup/wine-suite tools/setup/wine-run .deps/tcl-windows/bin/tclsh86.exe "bench/${bench}_bench.tcl" \
    build/windows/Vernoxa64.dll
done
tools/setup/wine-suite tools/setup/wine-run build/windows/vernoxa_system_bench.exe
echo "the report page"
node bench/report_bench.mjs
