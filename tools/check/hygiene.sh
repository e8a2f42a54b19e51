#!/bin/bash
# The repository's own rules, which no formatter or linter knows. Prints what breaks them and fails.
set -u -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

failed=0
refuse() {
  if [ -n "$2" ]; then
    printf 'hygiene: %s:\n%s\n' "$1" "$2"
    failed=1
  fi
}

tracked() {
  git ls-files -z -- "$@" ':!fuzz/corpus' | while IFS= read -r -d '' file; do
    [ -f "$file" ] && printf '%s\0' "$file"
  done
}

# What must not stand here, nor in a message of a commit, does not stand here either: a pattern a line, kept beside a clone.
words=$(git rev-parse --git-common-dir)/info/words
if [ -s "$words" ]; then
  refuse "a word that must not stand here" "$(tracked | xargs -0r grep -nIEf "$words")"
  refuse "a word that must not stand in the message of a commit" "$(git log --format='%h %s%n%b' | grep -Ef "$words")"
else
  echo "hygiene: without a list of words in $words none are looked for"
fi
refuse "a path of one machine" "$(tracked | xargs -0r grep -nIE '/hom[e]/')"
hosts='https?:/{2}'
known_hosts="$hosts(json-schema\.org|opensource\.org|www\.w3\.org|www\.unicode\.org|www\.rfc-editor\.org)"
refuse "names a host" "$(tracked | xargs -0r grep -nIE "$hosts" | grep -vE "$known_hosts")"
refuse "white space" "$(git -c core.whitespace=-blank-at-eof diff --check "$(git hash-object -t tree /dev/null)" -- . ':!fuzz/corpus')"
refuse "no newline at the end of the file" "$(tracked | xargs -0r grep -lI '' | while IFS= read -r file; do
  [ -n "$(tail -c 1 "$file")" ] && echo "$file"
done)"

# Code is what the names say, and scripts without an ending.
code() {
  tracked "$@" | while IFS= read -r -d '' file; do
    case $file in
      *.h | *.cpp | *.py | *.tcl | *.sh | *.cmake | */CMakeLists.txt | CMakeLists.txt | *.rc | *.def) printf '%s\0' "$file" ;;
      *.*) [[ $(basename "$file") != *.* ]] && printf '%s\0' "$file" ;;
      *) head -c 2 "$file" | grep -q '^#!' && printf '%s\0' "$file" ;;
    esac
  done
}
lines=$(code | xargs -0r wc -l | awk '$2 != "total"')
long=$(awk '$1 > 400 && $1 <= 500' <<<"$lines")
[ -z "$long" ] || printf 'hygiene: longer than 400 lines, to be split soon:\n%s\n' "$long"
refuse "longer than 500 lines" "$(awk '$1 > 500' <<<"$lines")"

nonBlank() {
  code "$@" | xargs -0r cat | grep -c '[^[:space:]]'
}
all=$(nonBlank)
tests=$(nonBlank tests fuzz report/test)
awk -v tests="$tests" -v all="$all" 'BEGIN {
  share = all ? 100 * tests / all : 0
  printf "hygiene: %d of %d lines of code are tests: %.1f %%%s\n", tests, all, share,
    (share < 25 || share > 33.4) ? " (aim: a quarter to a third)" : ""
}'
exit $failed
