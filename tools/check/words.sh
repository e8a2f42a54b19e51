#!/bin/bash
# What must not stand here, nor in a message of a commit, does not stand here either: a pattern a line, kept beside a clone.
# pre-commit searches for such patterns itself, but has them in its configuration, which stands here.
words=$(git rev-parse --git-common-dir)/info/words
if [ ! -s "$words" ]; then
  echo "without a list of words in $words none are looked for"
  exit 0
fi
git grep -nIEf "$words" -- . ':!fuzz/corpus'
found=$?
git log --format='%h %s%n%b' | grep -Ef "$words"
[ "$found $?" = "1 1" ]  # nothing found, and no error either
