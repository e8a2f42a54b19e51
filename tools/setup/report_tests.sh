#!/bin/bash
# Tests the report page in real browsers: all of it in one, a review also in the other.
set -u
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
failed=0
node --test report/test/everywhere_test.mjs report/test/review_test.mjs &
node --test report/test/{nets,page,logs}_test.mjs || failed=1
VERNOXA_REPORT_BROWSER=firefox node --test report/test/review_test.mjs || failed=1
wait $! || failed=1
exit $failed
