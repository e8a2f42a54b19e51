#!/bin/bash
# Tests the report page in real browsers: all of it in one, a review also in the other.
set -u
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
failed=0
node --test report/test/everywhere_test.mjs report/test/review_test.mjs &
node --test report/test/{nets,page,logs}_test.mjs || failed=1
# Debian 12 without its security updates has a Firefox that its driver no longer knows how to talk to.
firefox=$(VERNOXA_REPORT_BROWSER=firefox node --test report/test/review_test.mjs 2>&1) || {
  if [[ $firefox == *"Protocol error ("*"): unknown command"* ]]; then
    firefox="not tried in $(firefox-esr --version): it is too old for its driver"
  else
    failed=1
  fi
}
echo "$firefox"
wait $! || failed=1
exit $failed
