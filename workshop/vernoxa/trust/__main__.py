"""Runs everything that shows that the editor survives, and writes docs/reliability.md from what it measured.

trust.py [PART...] [--fuzz-minutes N] [--processes N]. Each part keeps what it measured; the page is made of the last run
of each."""

from __future__ import annotations

import argparse
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
from vernoxa.places import BUILD, REPOSITORY, TCLSH, WINE
from vernoxa.wire import paths

SCRIPTS = REPOSITORY / "tools" / "trust"
WINDOWS_TCL = [*WINE, str(TCLSH)]
LOADS_IN_ONE_PROCESS = 50
SETTLING = 30000  # milliseconds, in which each link thread passes its poll
SECONDS_FOR_ANYTHING = 3600
KEPT = BUILD / "trust.json"
HEAP_PASSES = 100
SOAK_CALLS = 10000
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
# What went wrong, by the words that the sanitizers, the fuzzers and the tests have for it; the first that fits counts.
KINDS = {
    "unintended evaluations": r"FINDING: (?:evaluated|a variable was read|.* ran )",
    "leaks": r"LeakSanitizer|stay behind|something grows",
    "races": r"ThreadSanitizer",
    "hangs": r"libFuzzer: timeout|does not answer|TimeoutError",
    "crashes": r"AddressSanitizer|runtime error:|deadly signal|the editor (?:has )?ended|a heap is damaged",
    "wrong answers": r"\[  FAILED  \]|FINDING:",
}


class Findings:
    """Counts over all parts; `failed` names the parts that did not pass."""

    def __init__(self) -> None:
        self.rows: list[tuple[str, str, str]] = []
        self.counts = dict.fromkeys(KINDS, 0)
        self.failed: list[str] = []

    def row(self, what: str, how_much: str, where: str) -> None:
        self.rows.append((what, how_much, where))
        print(f"  {what}: {how_much} ({where})", flush=True)

    def fail(self, part: str, output: str, hung: bool = False) -> None:
        kind = "hangs" if hung else next((kind for kind, words in KINDS.items() if re.search(words, output)), "crashes")
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
               "TheHostHangsAtEveryByteUntilTheClientIsRetired", "TheCompanionStopsAtEveryByteOfAQuery")
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
    thread = tests["LinkThreadForSimulatedHours"]
    findings.row("simulated hours of the link thread", f"{thread['hours']} ({int(thread['requests']):,} requests)",
                 "native, sanitizers")


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


def fuzz(findings: Findings, folder: pathlib.Path, minutes: float) -> None:
    report = folder / "fuzz.json"
    command = [sys.executable, "-m", "vernoxa.trust.fuzz", "--minutes", str(minutes), "--json", str(report)]
    output = run(findings, "fuzzers", command)
    results = json.loads(report.read_text()) if report.is_file() else []
    if output is not None:
        slowest = min(results, key=lambda result: result["inputs"] / result["seconds"])
        rate = slowest["inputs"] / slowest["seconds"]
        findings.row("new inputs tried by the fuzzers", f"{sum(result['inputs'] for result in results):,}",
                     f"{len(results)} targets, the slowest ({slowest['target']}) {rate:,.0f} a second")


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
    rows = REPOSITORY / "tests" / "commands" / "rows.tcl"
    script = [paths.to_windows(SCRIPTS / "heaps.tcl"), *libraries]
    output = run(findings, "heaps", [*WINDOWS_TCL, *script, paths.to_windows(rows), str(HEAP_PASSES)], WINEDEBUG="warn+heap")
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


# In the order of the page.
PARTS: dict[str, Callable[[Findings, pathlib.Path, argparse.Namespace], None]] = {
    "native": lambda findings, folder, options: native(findings, folder),
    "races": lambda findings, folder, options: races(findings),
    "corpora": lambda findings, folder, options: corpora(findings),
    "fuzz": lambda findings, folder, options: fuzz(findings, folder, options.fuzz_minutes),
    "rig": lambda findings, folder, options: rig(findings, folder),
    "metafiles": lambda findings, folder, options: metafiles(findings),
    "soak": lambda findings, folder, options: soak(findings),
    "heaps": lambda findings, folder, options: heaps(findings, installed(folder)),
    "loads": lambda findings, folder, options: loads(findings, installed(folder), options.processes),
}


def main() -> int:
    parser = Parser(description=__doc__)
    parser.add_argument("parts", nargs="*", choices=[[], *PARTS], default=[], metavar="PART",
                        help=f"{', '.join(PARTS)} (all)")
    parser.add_argument("--fuzz-minutes", type=float, default=6, help="for all targets together (6)")
    parser.add_argument("--processes", type=int, default=1000, help="loads in a process of their own (1000)")
    options = parser.parse_args()
    failed = []
    for part in options.parts or PARTS:
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
