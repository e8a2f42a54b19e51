"""Adds up what the tests of some builds said: count_tests.py BUILD_DIRECTORY...

CTest's own report counts programs; a GoogleTest program's report, where there is one, counts its tests. A program that
failed without a failed test in its report (it crashed, it ran out of time) counts as one failure more. CTest itself does
not look into the reports of programs.
"""

import json
import pathlib
import sys
import xml.etree.ElementTree

from vernoxa.command import run


def count(build: pathlib.Path) -> tuple[int, int]:
    passed = failed = 0
    for case in xml.etree.ElementTree.parse(build / "results.xml").getroot().iter("testcase"):
        succeeded = case.get("status") == "run"
        report = build / "results" / f"{case.get('name')}.json"
        if not report.exists():
            passed += succeeded
            failed += not succeeded
            continue
        said = json.loads(report.read_text())
        failures = said["failures"] + said["errors"]
        passed += said["tests"] - said["disabled"] - failures
        failed += failures or (0 if succeeded else 1)
    return passed, failed


def main() -> int:
    passed = failed = 0
    for build in map(pathlib.Path, sys.argv[1:]):
        if (build / "results.xml").exists():
            more_passed, more_failed = count(build)
        else:
            more_passed, more_failed = 0, 1  # not built, or CTest itself failed
        passed += more_passed
        failed += more_failed
        print(f"  {build.name}: {more_passed} passed, {more_failed} failed")
    print(f"{passed} passed, {failed} failed")
    return failed > 0 or passed == 0


if __name__ == "__main__":
    run("count_tests", main)
