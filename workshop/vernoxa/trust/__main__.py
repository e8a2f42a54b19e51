"""Runs everything that shows that the editor survives, and writes docs/reliability.md from what it measured.

trust [PART...] [--prove] [--fuzz-minutes N] [--fuzz-inputs N] [--processes N]. Each part keeps what it measured; the page is
made of the last run of each. CTest, which runs the tests, would say which part failed, but not how much each part tried."""

from __future__ import annotations

import argparse
import collections
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
from typing import Callable

from vernoxa import command as commands
from vernoxa.command import Parser
from vernoxa.places import BUILD, REPOSITORY, SETUP, TCLSH, WINE
from vernoxa.wire import paths

from . import fuzz_coverage
from .kinds import KINDS, kind_of
from .prove import prove

SCRIPTS = REPOSITORY / "tools" / "trust"
WINDOWS_TCL = [WINE[0], str(SETUP / "by_its_own_ending"), WINE[1], str(TCLSH),
               paths.to_windows(REPOSITORY / "tests" / "support" / "on_windows.tcl")]
LOADS_IN_ONE_PROCESS = 50
SETTLING = 30000  # milliseconds, in which each link thread passes its poll
SECONDS_FOR_ANYTHING = 3600
KEPT = BUILD / "trust.json"
HEAP_PASSES = 100
SOAK_CALLS = 10000
LONG_PACKETS = 1_000_000
LONG_EXPORTS = 10_000
METAFILES = 5000
# What only a real Windows, or an editor that people work with, can show.
UNSEEN = (
    "a drive without a disk that is asked for the editor: it should raise no box",
    "the text on the clipboard read by a program while another keyboard than the system's is chosen",
    "a clipboard that another program holds for less than a fifth of a second at a time",
    "the system's own player of metafiles; under Wine it is Wine's, which checks less",
    "pictures on screens of more than 32 bits a point, and screens whose size the system does not know",
    "the scroll bar of the selection dialog where the user has chosen wider ones",
    "a traffic log on a share that goes away while a line is written",
)


class Findings:
    """Counts over all parts; `failed` names the parts that did not pass."""

    def __init__(self) -> None:
        self.rows: list[tuple[str, str, str]] = []
        self.counts = dict.fromkeys(KINDS, 0)
        self.failed: list[str] = []

    def row(self, what: str, how_much: str, where: str) -> None:
        self.rows.append((what, how_much, where))
        print(f"  {what}: {how_much} ({where})", flush=True)

    def fall_short(self, part: str, why: str) -> None:
        """Nothing was found, but less was tried than was wanted."""
        self.failed.append(f"{part} ({why})")
        print(f"FELL SHORT: {part}: {why}", flush=True)

    def fail(self, part: str, output: str, hung: bool = False) -> None:
        kind = "hangs" if hung else kind_of(output)
        self.counts[kind] += 1
        self.failed.append(part)
        print(output[-4000:], f"FAILED: {part}", sep="\n", flush=True)


def run(findings: Findings, part: str, command: list[str], **extra: str) -> str | None:
    """The output of a command that ended well, else None."""
    print(f"{part} ...", flush=True)
    try:
        done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, errors="replace", timeout=SECONDS_FOR_ANYTHING, cwd=REPOSITORY,
                              env=os.environ | extra, check=False)
    except subprocess.TimeoutExpired as error:
        findings.fail(part, str(error.stdout), hung=True)
        return None
    if done.returncode != 0:
        findings.fail(part, done.stdout)
        return None
    return done.stdout


def native(findings: Findings, folder: pathlib.Path) -> None:
    report = folder / "trust.json"
    program = str(BUILD / "native/vernoxa_trust_tests")
    if run(findings, "faults and load", [program, "--gtest_brief=1", f"--gtest_output=json:{report}"],
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
    findings.row("modules of hostile shapes", f"{tests['HugeModules']['megabytes']} MB each", "native, sanitizers")
    findings.row("packets through both doors, in one session", f"{int(tests['PacketsThroughBothDoors']['packets']):,}",
                 "native, sanitizers")
    findings.row("connections", f"{int(tests['ConnectionsOneAfterTheOther']['connections']):,}", "native, sanitizers")
    ends = tests["WhatWasToldInTheEndIsWhatIsOpen"]
    findings.row("simulated hours when both ends misbehave",
                 f"{ends['hours']} ({int(ends['requests']):,} requests, {int(ends['misdeeds']):,} misdeeds); what was told "
                 "in the end is what is open", "native, sanitizers")


def reentrance(findings: Findings, folder: pathlib.Path) -> None:
    report = folder / "reentrance.json"
    program = str(BUILD / "native/vernoxa_tcl_tests")
    if run(findings, "re-entrance", [program, "--gtest_brief=1", "--gtest_filter=ReenteredCommands.*",
                                     f"--gtest_output=json:{report}"], VERNOXA_TRUST="all") is None:
        return
    pairs = next(test["pairs"] for suite in json.loads(report.read_text())["testsuites"] for test in suite["testsuite"]
                 if "pairs" in test)
    findings.row("calls inside an event loop of another call, every one in every one; answers as one after the other",
                 f"{int(pairs):,}", "native, sanitizers")


def races(findings: Findings) -> None:
    output = run(findings, "threads", [str(BUILD / "tsan/vernoxa_pure_tests"), "--gtest_brief=1"])
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
    output = run(findings, "fuzzers", command)
    results = json.loads(report.read_text()) if report.is_file() else []
    if output is not None:
        slowest = min(results, key=lambda result: result["inputs"] / result["seconds"])
        rate = slowest["inputs"] / slowest["seconds"]
        tried: collections.Counter[str] = collections.Counter()
        for result in results:
            tried[result["target"]] += result["inputs"]
        findings.row("new inputs tried by the fuzzers", f"{tried.total():,}",
                     f"{len(tried)} targets, each at least {min(tried.values()):,}; the slowest ({slowest['target']}) "
                     f"{rate:,.0f} a second")
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


def installed(folder: pathlib.Path) -> list[str]:
    """The plug-in in an installation of its own, and what counts beside it: their paths for Windows."""
    plug_in = folder / "p" / "bin"
    plug_in.mkdir(parents=True)
    names = ("Vernoxa64.dll", "counts.dll")
    for name in names:
        shutil.copyfile(BUILD / "windows" / name, plug_in / name)
    return [paths.to_windows(plug_in / name) for name in names]


def loads(findings: Findings, libraries: list[str], processes: int) -> None:
    script = [paths.to_windows(SCRIPTS / "loads.tcl"), *libraries]
    output = run(findings, "loads in one process", [*WINDOWS_TCL, *script, str(LOADS_IN_ONE_PROCESS), str(SETTLING)])
    counts = [tuple(map(int, match)) for match in
              re.findall(r"load (?!0 )\w+ handles (\d+) threads (\d+) kilobytes (\d+)", output or "")]
    if len(counts) == LOADS_IN_ONE_PROCESS + 1:
        handles, threads, kilobytes = ((counts[-1][i] - counts[0][i]) / (LOADS_IN_ONE_PROCESS - 1) for i in range(3))
        findings.row("loads and unloads in one process", f"{LOADS_IN_ONE_PROCESS}; each adds {threads:.2f} threads, "
                     f"{handles:.2f} handles, {kilobytes:,.0f} KB", "DLL under Wine")
        # A load leaves its thread with a megabyte of stack, and two handles.
        if threads != 1 or handles > 2.1 or kilobytes > 1100:
            findings.fail("loads in one process", output or "")
    elif output is not None:
        findings.fail("loads in one process", output)
    began, good = time.monotonic(), 0
    suite = """seq "$1" | xargs -P 2 -I{} bash -c '"$@" 1 | grep -q ^end && echo good' load "${@:2}" """
    output = run(findings, f"loads in {processes} processes",
                 [WINE[0], "bash", "-c", suite, "loads", str(processes), *WINDOWS_TCL[1:], *script])
    good = (output or "").count("good")
    findings.row("loads, each in a process of its own", f"{good} of {processes}, "
                 f"two at a time, {(time.monotonic() - began) / processes:.2f} s each", "DLL under Wine")
    if good != processes:
        findings.fail("loads in processes", output or "")


def heaps(findings: Findings, libraries: list[str]) -> None:
    script = [paths.to_windows(SCRIPTS / "heaps.tcl"), *libraries, paths.to_windows(REPOSITORY)]
    output = run(findings, "heaps", [*WINDOWS_TCL, *script, str(HEAP_PASSES)], WINEDEBUG="-all,warn+heap")
    passes = [(int(number), int(used)) for number, used in re.findall(r"pass (\d+) bytes (\d+)", output or "")]
    if output is not None and len(passes) == HEAP_PASSES:
        growth = passes[-1][1] - passes[9][1]
        findings.row("passes over every row of both tables, each with a look at every heap",
                     f"{len(passes)}; from the tenth to the last {growth:,} bytes more in use",
                     "DLL under Wine, its heap checks on")
        if growth > 4096:
            findings.fail("heaps", output + "something grows")
    elif output is not None:
        findings.fail("heaps", output)


def long(findings: Findings, libraries: list[str]) -> None:
    """Packets, page exports and placements; from the first tenth of each to its end memory and handles are flat."""
    script = [paths.to_windows(SCRIPTS / "soak.tcl"), *libraries, str(LONG_PACKETS), str(LONG_EXPORTS)]
    output = run(findings, "long", [*WINDOWS_TCL, *script])
    told: dict[str, list[tuple[int, ...]]] = {}
    for what, *numbers in re.findall(r"(\w+) \d+ handles (\d+) threads (\d+) kilobytes (\d+) bytes (\d+)", output or ""):
        told.setdefault(what, []).append(tuple(map(int, numbers)))
    flat = True
    for what, times in (("packets", LONG_PACKETS), ("exports", LONG_EXPORTS), ("placements", LONG_EXPORTS)):
        handles, _, kilobytes, used = (last - first for first, last in zip(*told.get(what, [(0,) * 4, (9,) * 4])))
        findings.row(f"{what}, in one process", f"{times:,}; from the first tenth to the end {handles} handles, "
                     f"{kilobytes:,} KB, {used:,} bytes on the heaps more", "DLL under Wine")
        flat = flat and handles <= 2 and kilobytes <= 1024 and used <= 65536
    if output is not None and not (flat and "left \n" in output.replace("\r", "")):
        findings.fail("long", output + "something grows")


def soak(findings: Findings) -> None:
    """Every window, picture, clipboard, registry and search function over and over."""
    program = str(BUILD / "windows/vernoxa_windows_tests.exe")
    output = run(findings, "soak", [*WINE, program, "--gtest_filter=*HoldsNoMoreHandles*"],
                 VERNOXA_SOAK_CALLS=str(SOAK_CALLS))
    if output is not None:
        findings.row("calls of each desktop operation, no handle left", f"{SOAK_CALLS:,}", "DLL's code under Wine")
        if "[  PASSED  ] 0 tests" in output:
            findings.fail("soak", "no test has this name")


def metafiles(findings: Findings) -> None:
    script = REPOSITORY / "tests" / "desktop" / "metafiles_windows_test.tcl"
    output = run(findings, "metafiles", [*WINDOWS_TCL, paths.to_windows(script),
                                         paths.to_windows(BUILD / "windows" / "Vernoxa64.dll"), str(METAFILES)])
    counts = re.search(r"spoilt (\d+) pictures (\d+) refused (\d+) untaken (\d+)", output or "")
    if counts:
        tried, pictures, refused, untaken = map(int, counts.groups())
        findings.row("broken metafiles on the clipboard, no memory or handle left",
                     f"{tried:,}: {pictures:,} whole pictures, {refused:,} refused with a line, {untaken:,} that the "
                     "system did not take", "DLL under Wine")
    elif output is not None:
        findings.fail("metafiles", output)


def rig(findings: Findings, folder: pathlib.Path) -> None:
    report = folder / "rig.json"
    run(findings, "fault rig", [sys.executable, "-m", "vernoxa.trust.rig", "--json", str(report)])
    results = json.loads(report.read_text()) if report.is_file() else []
    good = [result for result in results if not result["problem"]]
    findings.row("faults between editor, plug-in and companion", f"{len(good)} of {len(results)} survived",
                 "DLL under Wine, with the stand-ins")


# What each part runs; the others run what these built, or build for themselves.
BUILDS = {
    "native": ("native", "vernoxa_trust_tests"),
    "reentrance": ("native", "vernoxa_tcl_tests"),
    "races": ("tsan", "vernoxa_pure_tests"),
    "corpora": ("native", "vernoxa_fuzz_replay"),
    "fuzz": ("fuzz", "vernoxa_fuzz"),
    "reached": ("coverage", "vernoxa_fuzz_replay"),
    "rig": ("windows", "Vernoxa64"),
    "metafiles": ("windows", "Vernoxa64", "counts"),
    "soak": ("windows", "vernoxa_windows_tests"),
    **dict.fromkeys(("heaps", "long", "loads"), ("windows", "Vernoxa64", "counts")),
}


def build(preset: str, *targets: str) -> None:
    print(f"building {preset}: {', '.join(targets)}", flush=True)
    if not (BUILD / preset / "build.ninja").exists():
        subprocess.run(["cmake", "--preset", preset], cwd=REPOSITORY, check=True, capture_output=True)
    command = ["cmake", "--build", "--preset", preset, "-j", str(os.cpu_count() or 1), "--target", *targets]
    done = subprocess.run(command, cwd=REPOSITORY, check=False, capture_output=True, text=True)
    if done.returncode != 0:
        raise commands.Refused(f"{preset} does not build:\n{done.stdout[-3000:]}")


def kept_results() -> dict[str, dict]:
    return json.loads(KEPT.read_text(encoding="utf-8")) if KEPT.is_file() else {}


def keep(part: str, findings: Findings) -> None:
    commit = subprocess.run(["git", "rev-parse", "--short", "HEAD"], cwd=REPOSITORY, capture_output=True, text=True,
                            check=False).stdout.strip()
    results = kept_results() | {part: vars(findings) | {"commit": commit}}
    KEPT.write_text(json.dumps(results, indent=1), encoding="utf-8")


def write_page() -> None:
    results = kept_results()
    known = [results[part] for part in PARTS if part in results]
    lines = ["# Reliability", "", "<!-- for developers -->", "Written by `./dev trust` from its last run.",
             "<!-- end -->", "What stands in the tables was measured, not typed.",
             "A run under Wine is a run under Wine, not on Windows.", "", "| What was tried | How much | Where |",
             "|---|---|---|"]
    lines += [f"| {what} | {how_much} | {where} |" for result in known for what, how_much, where in result["rows"]]
    lines += ["", "| Found | Times |", "|---|---|"]
    lines += [f"| {kind} | {sum(result['counts'][kind] for result in known)} |" for kind in KINDS]
    if failed := [part for result in known for part in result["failed"]]:
        lines += ["", "Parts that failed: " + ", ".join(failed) + "."]
    if missing := [part for part in PARTS if part not in results]:
        lines += ["", "Not run: " + ", ".join(missing) + "."]
    lines += ["", "What no test here has seen:", ""] + [f"- {what}" for what in UNSEEN]
    lines += ["", pathlib.Path(__file__).with_name("seen.md").read_text("utf-8").rstrip("\n")]
    commits = dict.fromkeys(result["commit"] for result in known)
    lines += ["", "Measured at " + ", ".join(f"`{commit}`" for commit in commits) + "."]
    (REPOSITORY / "docs" / "reliability.md").write_text("\n".join(lines) + "\n", encoding="utf-8")


def planted(findings: Findings) -> None:
    results = prove()
    lost = [str(result["fault"]) for result in results if not result["found"]]
    told = "; ".join(f"{result['fault']}: {result['part']}, {result['seconds']} s" for result in results if result["found"])
    findings.row("faults planted in a copy of the sources and found by their part",
                 f"{len(results) - len(lost)} of {len(results)}", told)
    for name in lost:
        findings.fail("prove", f"[  FAILED  ] {name} was not found")


# In the order of the page.
PARTS: dict[str, Callable[[Findings, pathlib.Path, argparse.Namespace], None]] = {
    "native": lambda findings, folder, options: native(findings, folder),
    "reentrance": lambda findings, folder, options: reentrance(findings, folder),
    "races": lambda findings, folder, options: races(findings),
    "corpora": lambda findings, folder, options: corpora(findings),
    "fuzz": lambda findings, folder, options: fuzz(findings, folder, options.fuzz_minutes, options.fuzz_inputs),
    "reached": lambda findings, folder, options: reached(findings, folder),
    "rig": lambda findings, folder, options: rig(findings, folder),
    "metafiles": lambda findings, folder, options: metafiles(findings),
    "soak": lambda findings, folder, options: soak(findings),
    "heaps": lambda findings, folder, options: heaps(findings, installed(folder)),
    "long": lambda findings, folder, options: long(findings, installed(folder)),
    "loads": lambda findings, folder, options: loads(findings, installed(folder), options.processes),
    "prove": lambda findings, folder, options: planted(findings),
}


def main() -> int:
    parser = Parser(prog="./dev trust", description=__doc__)
    parser.add_argument("parts", nargs="*", choices=[[], *PARTS], default=[], metavar="PART",
                        help=f"{', '.join(PARTS)} (all)")
    parser.add_argument("--fuzz-minutes", type=float, default=16, help="at most, for all targets together (16)")
    parser.add_argument("--fuzz-inputs", type=int, default=10_000_000, help="for all targets together (10000000)")
    parser.add_argument("--prove", action="store_true", help="try the run itself: every planted fault is found by its part")
    parser.add_argument("--processes", type=int, default=1000, help="loads in a process of their own (1000)")
    options = parser.parse_args()
    failed = []
    if options.prove:
        options.parts = ["prove"]
    for part in options.parts or [part for part in PARTS if part != "prove"]:
        if part in BUILDS:
            build(*BUILDS[part])
        findings = Findings()
        with tempfile.TemporaryDirectory(prefix="vernoxa-") as folder:
            PARTS[part](findings, pathlib.Path(folder), options)
        keep(part, findings)
        failed += findings.failed
        write_page()
    print("all survived" if not failed else f"FAILED: {', '.join(failed)}")
    return 1 if failed else 0


if __name__ == "__main__":
    commands.run("trust", main)
