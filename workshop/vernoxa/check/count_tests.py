"""Adds up what the tests of some builds said, and names those that failed: count_tests.py BUILD_DIRECTORY...

CTest's own report counts programs; a GoogleTest program's report, where there is one, counts its tests. A program that
failed without a failed test in its report (it crashed, it ran out of time) counts as one failure more. CTest itself does
not look into the reports of programs.
"""

import json
import os
import pathlib
import sys
import xml.etree.ElementTree as ElementTree
from typing import Iterator

from vernoxa.command import run
from vernoxa.places import SETUP

LAST_LINES = 12
ENDED_BY_WINE = ", then by Wine with signal "  # tools/setup/by_its_own_ending
MOST_SEGMENTATION_FAULTS = 1  # Wine brings one in a thousand ends, a fault one wherever it is reached


def failures(build: pathlib.Path, name: str, said: str) -> Iterator[tuple[str, str, str]]:
    """Of a program that failed: each failed test with what it said and the command that runs it alone."""
    folder = os.path.relpath(build)
    report = build / "results" / f"{name}.json"
    wine = f"{os.path.relpath(SETUP)}/wine-suite " * (build.name == "windows")
    suites = json.loads(report.read_text())["testsuites"] if report.exists() else []
    tests = [(f"{suite['name']}.{test['name']}", test["failures"]) for suite in suites for test in suite["testsuite"]
             if "failures" in test]
    for test, found in tests:
        runner = f"{wine}{os.path.relpath(SETUP)}/wine-run {folder}/{name}.exe" if wine else f"{folder}/{name}"
        yield test, "\n".join(each["failure"] for each in found), f"{runner} --gtest_filter={test}"
    if not tests:
        yield name, said, f"{wine}ctest --preset {build.name} -R '^{name}$'"


def count(build: pathlib.Path) -> tuple[int, list[tuple[str, str, str]]]:
    """How many passed, and the failures."""
    passed, failed = 0, []
    for case in ElementTree.parse(build / "results.xml").getroot().iter("testcase"):
        name = case.get("name", "")
        report = build / "results" / f"{name}.json"
        if case.get("status") != "run":
            failed += list(failures(build, name, case.findtext("system-out") or ""))
        if report.exists():
            said = json.loads(report.read_text())
            passed += said["tests"] - said["disabled"] - said["failures"] - said["errors"]
        else:
            passed += case.get("status") == "run"
    return passed, failed


def ended_by_wine(build: pathlib.Path) -> tuple[int, list[tuple[str, str, str]]]:
    """How many programs Wine ended, and a failure if that was not Wine."""
    said = (build / "results.xml").read_text("utf-8", "replace")
    faults = said.count(f"{ENDED_BY_WINE}11")
    failure = (f"{build.name}: its ends", f"{faults} programs died of a segmentation fault after they told their status",
               "./dev test")
    return said.count(ENDED_BY_WINE), [failure] * (faults > MOST_SEGMENTATION_FAULTS)


def main() -> int:
    passed, failed = 0, []
    for build in map(pathlib.Path, sys.argv[1:]):
        there = (build / "results.xml").exists()
        more, found = count(build) if there else (0, [(build.name, "not built, or CTest itself failed", "./dev test")])
        passed += more
        ends, faults = ended_by_wine(build) if there else (0, [])
        found += faults
        failed += found
        print(f"  {build.name}: {more} passed, {len(found)} failed" + f", {ends} killed by Wine at their end" * bool(ends))
    for name, said, command in failed:
        last = said.strip().splitlines()[-LAST_LINES:]
        print("\n  ".join([f"FAILED {name}", *last]) + f"\n  alone: {command}")
    print(f"{passed} passed, {len(failed)} failed")
    return bool(failed) or passed == 0


if __name__ == "__main__":
    run("count_tests", main)
