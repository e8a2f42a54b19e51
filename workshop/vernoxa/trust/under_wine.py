"""The parts of the trust run that try the built plug-in, and its code for Windows, under Wine."""

from __future__ import annotations

import json
import pathlib
import re
import shutil
import sys

from vernoxa.places import BUILD, REPOSITORY, SETUP, TCLSH, WINE
from vernoxa.wire import paths

from .findings import Findings, run

SCRIPTS = REPOSITORY / "tools" / "trust"
WINDOWS_TCL = [WINE[0], str(SETUP / "by_its_own_ending"), WINE[1], str(TCLSH),
               paths.to_windows(REPOSITORY / "tests" / "support" / "on_windows.tcl")]
LOADS_IN_ONE_PROCESS = 50
LOADING_PROCESSES = 4  # at a time: most of their time is settling
SETTLING = 30000  # milliseconds, in which each link thread passes its poll
HEAP_PASSES = 100
SOAK_CALLS = 10000
LONG_PACKETS = 1_000_000
LONG_EXPORTS = 10_000
METAFILES = 5000
MOST_HANDLES = 1000  # what counts them sees no more than 16,383, and then no growth


def installed(folder: pathlib.Path) -> list[str]:
    """The plug-in in an installation of its own, and what counts beside it: their paths for Windows."""
    plug_in = folder / "p" / "bin"
    plug_in.mkdir(parents=True)
    names = ("Vernoxa64.dll", "counts.dll")
    for name in names:
        shutil.copyfile(BUILD / "windows" / name, plug_in / name)
    return [paths.to_windows(plug_in / name) for name in names]


def loads(findings: Findings, folder: pathlib.Path, processes: int) -> None:
    script = [paths.to_windows(SCRIPTS / "loads.tcl"), *installed(folder), str(LOADS_IN_ONE_PROCESS), str(SETTLING)]
    every = (f"seq {processes} | xargs -P {LOADING_PROCESSES} "
             """-I{} bash -c '"${@:2}" >"$1/loads-{}" 2>&1 || { cat "$1/loads-{}"; false; }' load "$@" """)
    if run(findings, "loads", [WINE[0], "bash", "-c", every, "loads", str(folder), *WINDOWS_TCL[1:], *script]) is None:
        return
    added: list[tuple[float, float, float]] = []  # by each load, in each process: threads, handles, kilobytes
    for number in range(1, processes + 1):
        output = (folder / f"loads-{number}").read_text(errors="replace")
        counts = [tuple(map(int, match)) for match in
                  re.findall(r"load (?!0 )\w+ handles (\d+) threads (\d+) kilobytes (\d+)", output)]
        if len(counts) != LOADS_IN_ONE_PROCESS + 1 or "end" not in output.split():
            return findings.fail("loads", output)
        handles, threads, kilobytes = ((counts[-1][i] - counts[0][i]) / (LOADS_IN_ONE_PROCESS - 1) for i in range(3))
        added.append((threads, handles, kilobytes))
        # A load leaves its thread with a megabyte of stack, and two handles.
        if threads != 1 or handles > 2.1 or kilobytes > 1100:
            return findings.fail("loads", output + "something grows")
    most_threads, most_handles, most_kilobytes = map(max, zip(*added))
    return findings.row("loads and unloads", f"{processes * LOADS_IN_ONE_PROCESS:,}, {LOADS_IN_ONE_PROCESS} in each of "
                        f"{processes} processes; each adds at most {most_threads:.2f} threads, "
                        f"{most_handles:.2f} handles, {most_kilobytes:,.0f} KB", "DLL under Wine")


def heaps(findings: Findings, folder: pathlib.Path) -> None:
    script = [paths.to_windows(SCRIPTS / "heaps.tcl"), *installed(folder), paths.to_windows(REPOSITORY)]
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


def long(findings: Findings, folder: pathlib.Path) -> None:
    """Packets, page exports and placements; from the first tenth of each to its end memory and handles are flat."""
    script = [paths.to_windows(SCRIPTS / "soak.tcl"), *installed(folder), str(LONG_PACKETS), str(LONG_EXPORTS)]
    output = run(findings, "long", [*WINDOWS_TCL, *script])
    if output is None:
        return
    told: dict[str, list[tuple[int, ...]]] = {}
    for what, *numbers in re.findall(r"(\w+) (\d+) handles (\d+) threads (\d+) kilobytes (\d+) bytes (\d+)", output):
        told.setdefault(what, []).append(tuple(map(int, numbers)))
    flat = True
    for what, times in (("packets", LONG_PACKETS), ("exports", LONG_EXPORTS), ("placements", LONG_EXPORTS)):
        if [done for done, *_ in told.get(what, [])] != [times // 10, times]:
            return findings.fail("long", output)
        _, handles, _, kilobytes, used = (last - first for first, last in zip(*told[what]))
        findings.row(f"{what}, in one process", f"{told[what][-1][0]:,}; from the first tenth to the end {handles} handles, "
                     f"{kilobytes:,} KB, {used:,} bytes on the heaps more", "DLL under Wine")
        flat = flat and handles <= 2 and kilobytes <= 1024 and used <= 65536
        flat = flat and all(handles < MOST_HANDLES for _, handles, *_ in told[what])
    if not (flat and "left \n" in output.replace("\r", "")):
        findings.fail("long", output + "something grows")


def soak(findings: Findings) -> None:
    """What holds a window, a picture, the clipboard or a key of the registry, over and over."""
    program = str(BUILD / "windows/vernoxa_windows_tests.exe")
    output = run(findings, "soak", [*WINE, program, "--gtest_filter=*HoldsNoMoreHandles*"],
                 VERNOXA_SOAK_CALLS=str(SOAK_CALLS))
    if output is None:
        return
    calls = [int(number) for number in re.findall(r"(\d+) calls", output)]
    if min(calls, default=0) < SOAK_CALLS:
        findings.fall_short("soak", f"{SOAK_CALLS:,} calls of each were wanted")
    else:
        findings.row("calls of each desktop operation, no handle left", f"{min(calls):,}", "DLL's code under Wine")


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
    run(findings, "rig", [sys.executable, "-m", "vernoxa.trust.rig", "--json", str(report)])
    results = json.loads(report.read_text()) if report.is_file() else []
    good = [result for result in results if not result["problem"]]
    findings.row("faults between editor, plug-in and companion", f"{len(good)} of {len(results)} survived",
                 "DLL under Wine, with the stand-ins")
