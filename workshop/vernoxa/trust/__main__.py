"""Runs everything that shows that the editor survives, and writes docs/reliability.md from what it measured.

trust [PART...] [--prove] [--fuzz-minutes N] [--fuzz-inputs N] [--processes N]. What needs Wine runs beside what does not.
Each part keeps what it measured; the page is made of the last run of each. CTest, which runs the tests, would say which part
failed, but not how much each part tried."""

from __future__ import annotations

import argparse
import concurrent.futures
import os
import pathlib
import subprocess
import tempfile
import time
import traceback
from typing import Callable

from vernoxa.command import Parser, Refused, run
from vernoxa.places import BUILD, REPOSITORY

from . import natively, page, under_wine
from .findings import Findings, stop
from .prove import prove

# What each part runs: a preset and its targets. "prove" builds for itself. The parts of "windows" run beside the others.
BUILDS: dict[str, tuple[str, ...]] = {
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
        raise Refused(f"{preset} does not build:\n{done.stdout[-3000:]}")


def planted(findings: Findings) -> None:
    results = prove()
    lost = [str(result["fault"]) for result in results if not result["found"]]
    told = "; ".join(f"{result['fault']}: {result['part']}, {result['seconds']} s" for result in results if result["found"])
    findings.row("faults planted in a copy of the sources and found by their part",
                 f"{len(results) - len(lost)} of {len(results)}", told)
    for name in lost:
        findings.fall_short("prove", f"{name} was not found")


# In the order of the page.
PARTS: dict[str, Callable[[Findings, pathlib.Path, argparse.Namespace], None]] = {
    "native": lambda findings, folder, options: natively.native(findings, folder),
    "reentrance": lambda findings, folder, options: natively.reentrance(findings, folder),
    "races": lambda findings, folder, options: natively.races(findings),
    "corpora": lambda findings, folder, options: natively.corpora(findings),
    "fuzz": lambda findings, folder, options: natively.fuzz(findings, folder, options.fuzz_minutes, options.fuzz_inputs),
    "reached": lambda findings, folder, options: natively.reached(findings, folder),
    "rig": lambda findings, folder, options: under_wine.rig(findings, folder),
    "metafiles": lambda findings, folder, options: under_wine.metafiles(findings),
    "soak": lambda findings, folder, options: under_wine.soak(findings),
    "heaps": lambda findings, folder, options: under_wine.heaps(findings, folder),
    "long": lambda findings, folder, options: under_wine.long(findings, folder),
    "loads": lambda findings, folder, options: under_wine.loads(findings, folder, options.processes),
    "prove": lambda findings, folder, options: planted(findings),
}


def one_after_the_other(parts: list[str], options: argparse.Namespace, place: page.Place) -> list[str]:
    """The parts that failed."""
    failed = []
    for part in parts:
        findings, began = Findings(), time.monotonic()
        with tempfile.TemporaryDirectory(prefix="vernoxa-") as folder:
            try:
                PARTS[part](findings, pathlib.Path(folder), options)
            except Exception as error:  # the parts after it are still worth their time
                print(error if isinstance(error, Refused) else traceback.format_exc(), flush=True)
                findings.fall_short(part, "it could not go on")
        page.write(part, findings, time.monotonic() - began, place, list(PARTS))
        failed += findings.failed
    return failed


def main() -> int:
    parser = Parser(prog="./dev trust", description=__doc__)
    parser.add_argument("parts", nargs="*", choices=[[], *PARTS], default=[], metavar="PART",
                        help=f"{', '.join(PARTS)} (all but prove)")
    parser.add_argument("--fuzz-minutes", type=float, default=25, help="at most, for all targets together (25)")
    parser.add_argument("--fuzz-inputs", type=int, default=10_000_000, help="for all targets together (10000000)")
    parser.add_argument("--prove", action="store_true", help="try the run itself: every planted fault is found by its part")
    parser.add_argument("--processes", type=int, default=20,
                        help=f"in each of which the plug-in is loaded {under_wine.LOADS_IN_ONE_PROCESS} times (20)")
    options = parser.parse_args()
    wanted = ["prove"] if options.prove else options.parts or [part for part in PARTS if part != "prove"]
    place = page.place()  # before anything is built: the sources may change while the parts run
    targets: dict[str, list[str]] = {}  # of each preset
    for preset, *names in (BUILDS[part] for part in wanted if part in BUILDS):
        targets[preset] = targets.get(preset, []) + names
    for preset, names in targets.items():
        build(preset, *dict.fromkeys(names))
    began = time.monotonic()
    wine = [part for part in wanted if part in BUILDS and BUILDS[part][0] == "windows"]
    with concurrent.futures.ThreadPoolExecutor(1) as pool:
        beside = pool.submit(one_after_the_other, wine, options, place)  # it mostly waits
        try:
            failed = one_after_the_other([part for part in wanted if part not in wine], options, place) + beside.result()
        except BaseException:  # Ctrl-C: neither side goes on
            stop()
            raise
    if not options.parts and not options.prove:
        page.write(page.WHOLE, Findings(), time.monotonic() - began, place, list(PARTS))
    print("all survived" if not failed else f"FAILED: {', '.join(failed)}")
    return 1 if failed else 0


if __name__ == "__main__":
    run("trust", main)
