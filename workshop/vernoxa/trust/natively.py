"""The parts of the trust run that need no Windows: under the sanitizers, and by the fuzzers."""

from __future__ import annotations

import collections
import json
import pathlib
import re
import sys

from vernoxa.places import BUILD

from . import fuzz_coverage
from .findings import Findings, run
from .fuzz import rate

# What the tests record when they try everything, and not a sample.
WANTED = {"packets": 1_000_000, "connections": 100_000, "hours": 168, "megabytes": 100, "faults": 20_000, "pairs": 9_000}
# The tests of calls inside other calls, also of a load inside one.
REENTRANCE = "--gtest_filter=ReenteredCommands.*:StartUpTest.LoadInside*"


def wholly(findings: Findings, part: str, tried: dict[str, int]) -> None:
    for what, count in tried.items():
        if count < WANTED[what]:
            findings.fall_short(part, f"{WANTED[what]:,} {what} were wanted, not {count:,}")


def native(findings: Findings, folder: pathlib.Path) -> None:
    report = folder / "trust.json"
    program = str(BUILD / "native/vernoxa_trust_tests")
    if run(findings, "native", [program, "--gtest_brief=1", f"--gtest_output=json:{report}"],
           VERNOXA_TRUST="all") is None:
        return
    tests = {test["name"]: test for suite in json.loads(report.read_text())["testsuites"] for test in suite["testsuite"]}
    streams = ("TheHostsAnswersBreakAtEveryByte", "EverySocketCallFailsOnce",
               "TheHostHangsAtEveryByteUntilTheClientIsRetired")
    calls = [name for name, test in tests.items() if "faults" in test and name not in streams]
    findings.row("calls that failed once (memory, files, sockets, clocks, host procedures)",
                 f"{sum(int(tests[name]['faults']) for name in calls):,}", "native, sanitizers")
    findings.row("faults in a conversation, at every byte", f"{sum(int(tests[name]['faults']) for name in streams):,}",
                 "native, sanitizers")
    findings.row("conversations on a full or read-only disk, or with a log folder that comes and goes",
                 tests["EveryKeptConversationEndsAsOnAGoodOne"]["conversations"], "native, sanitizers")
    modules = tests["HugeModules"]
    findings.row("modules of hostile shapes", f"{modules['modules']}, {modules['megabytes']} MB each", "native, sanitizers")
    findings.row("packets through both doors, in one session", f"{int(tests['PacketsThroughBothDoors']['packets']):,}",
                 "native, sanitizers")
    findings.row("connections", f"{int(tests['ConnectionsOneAfterTheOther']['connections']):,}", "native, sanitizers")
    ends = tests["WhatWasToldInTheEndIsWhatIsOpen"]
    findings.row("simulated hours when both ends misbehave",
                 f"{ends['hours']} ({int(ends['requests']):,} requests, {int(ends['misdeeds']):,} misdeeds); what was told "
                 "in the end is what is open", "native, sanitizers")
    tried = {what: max(int(test.get(what, 0)) for test in tests.values()) for what in WANTED if what not in ("faults", "pairs")}
    wholly(findings, "native", tried | {"faults": sum(int(test.get("faults", 0)) for test in tests.values())})


def reentrance(findings: Findings, folder: pathlib.Path) -> None:
    report = folder / "reentrance.json"
    program = str(BUILD / "native/vernoxa_tcl_tests")
    if run(findings, "reentrance", [program, "--gtest_brief=1", REENTRANCE, f"--gtest_output=json:{report}"],
           VERNOXA_TRUST="all") is None:
        return
    pairs = next(test["pairs"] for suite in json.loads(report.read_text())["testsuites"] for test in suite["testsuite"]
                 if "pairs" in test)
    findings.row("calls inside an event loop of another call, every one in every one; answers as one after the other",
                 f"{int(pairs):,}", "native, sanitizers")
    wholly(findings, "reentrance", {"pairs": int(pairs)})


def races(findings: Findings) -> None:
    output = run(findings, "races", [str(BUILD / "tsan/vernoxa_pure_tests"), "--gtest_brief=1"])
    if output is not None:
        findings.row("tests of the link and its threads under the thread sanitizer",
                     re.findall(r"(\d+) tests from", output)[0], "native")


def corpora(findings: Findings) -> None:
    output = run(findings, "corpora", [str(BUILD / "native/vernoxa_fuzz_replay"), "fuzz/corpus"])
    if output is not None:
        total = sum(int(count) for count in re.findall(r"(\d+) inputs", output))
        findings.row("inputs replayed from the corpora and variations", f"{total:,}", "native, sanitizers")


def fuzz(findings: Findings, folder: pathlib.Path, minutes: float, inputs: int) -> None:
    report = folder / "fuzz.json"
    command = [sys.executable, "-m", "vernoxa.trust.fuzz", "--minutes", str(minutes), "--inputs", str(inputs),
               "--json", str(report)]
    output = run(findings, "fuzz", command)
    results = json.loads(report.read_text()) if report.is_file() else []
    if output is not None:
        slowest = min(results, key=rate)
        tried: collections.Counter[str] = collections.Counter()
        for result in results:
            tried[result["target"]] += result["inputs"]
        findings.row("inputs tried by the fuzzers, first those that are kept", f"{tried.total():,}",
                     f"{len(tried)} targets, each at least {min(tried.values()):,}; the slowest ({slowest['target']}) "
                     f"{rate(slowest):,.0f} a second")
        if tried.total() < inputs:
            findings.fall_short("fuzz", f"{inputs:,} inputs were wanted")


def reached(findings: Findings, folder: pathlib.Path) -> None:
    rooms = fuzz_coverage.lines_by_room(folder / "profiles")
    shares = {room: 100 * lines / count for room, (lines, count) in rooms.items()}
    findings.row("lines that the fuzzers' inputs reach, in the rooms that read what comes from outside",
                 ", ".join(f"{room} {shares[room]:.0f} %" for room in fuzz_coverage.WATCHED),
                 f"wanted: {fuzz_coverage.LEAST:.0f} % each; a build that counts")
    for room in fuzz_coverage.WATCHED:
        if shares[room] < fuzz_coverage.LEAST:
            findings.fall_short("reached", f"{room} {shares[room]:.1f} %")
