#!/bin/bash
# Says which files are too long to be read, and which share of the code is tests. No kept tool counts by these rules.
set -u -o pipefail

# Code is what the names say, and scripts without an ending.
code() {
  git ls-files -z -- "$@" ':!fuzz/corpus' | while IFS= read -r -d '' file; do
    case ${file##*/} in
      *.h | *.cpp | *.py | *.tcl | *.sh | *.cmake | CMakeLists.txt | *.rc | *.def) ;;
      *.*) continue ;;
      *) head -c 2 "$file" 2>/dev/null | grep -q '^#!' || continue ;;
    esac
    [ ! -f "$file" ] || printf '%s\0' "$file"
  done
}

lines() {
  code "$@" | xargs -0r cat | grep -c '[^[:space:]]'
}

long=$(code | xargs -0r wc -l | awk '$2 != "total" && $1 > 400' | sort -n)
[ -z "$long" ] || printf 'longer than 400 lines, to be split soon:\n%s\n' "$long"
awk -v tests="$(lines tests fuzz report/test)" -v all="$(lines)" 'BEGIN {
  share = all ? 100 * tests / all : 0
  printf "%d of %d lines of code are tests: %.1f %%%s\n", tests, all, share,
    (share < 25 || share > 33.4) ? " (aim: a quarter to a third)" : ""
}'
awk '$1 > 500 { exit 1 }' <<<"$long"
