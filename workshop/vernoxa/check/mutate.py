"""Changes the plug-in's sources one small place at a time, and lists the changes that no native test notices.

A drawn sample of all places is taken; the same seed draws the same one. Each change is built and the native tests are
run against it, in copies of the work tree, so that nothing changes here. A change that does not build counts for nothing.
What the tests let pass is a hole in them, a line that does nothing, or a change that makes no difference.

No kept tool does this: those that Debian has are for other languages, and those for C++ need a compiler of their own.
"""

from __future__ import annotations

import argparse
import concurrent.futures
import dataclasses
import itertools
import os
import pathlib
import queue
import random
import re
import subprocess
import sys
import time
from typing import Iterator

from vernoxa.command import Parser, Refused, run
from vernoxa.places import REPOSITORY as ROOT

from . import changes
from .work_copy import WorkCopy

PRESET = "mutate"
Stage = tuple[tuple[str, ...], ...]  # test programs with their words
PURE, TCL = ("vernoxa_pure_tests",), ("vernoxa_tcl_tests",)
DOCS = ("vernoxa_docs", "--check", "docs/protocol.json")  # what the rows describe
TRUST = (("vernoxa_trust_tests",), ("vernoxa_fuzz_replay", "fuzz/corpus"))  # calls that fail; the fuzzers' corpora
REFUSED = ("ctest", "--test-dir", f"build/{PRESET}", "--stop-on-failure", "-R", "does_not_compile")  # by the compiler
SLOW = 250  # milliseconds: a few tests take longer, and together most of the time
LONGEST_BUILD = 300  # of one change
LONGER = 10  # times as long as with nothing changed: then a test hangs, which is noticed too
SHORTEST_WAIT = 30  # seconds: on a busy machine ten times as long as a moment is soon over
MOST_MEMORY = 4 << 30  # of a test that takes without end, before the machine has none left


@dataclasses.dataclass
class Result:
    change: changes.Change
    kind: str  # "noticed", "survived", "not built", or "hung": noticed because a test did not end


class Copy(WorkCopy):
    """A copy of the work tree in which one change at a time is tried."""

    def __init__(self, folder: pathlib.Path):
        super().__init__(folder)
        self._longest: dict[tuple[str, ...], float] = {}  # of each command, in seconds
        programs = (program for program, *_ in (PURE, TCL, DOCS, *TRUST))
        if not self.build(PRESET, *programs, jobs=os.cpu_count() or 1):
            sys.exit(f"mutate: the unchanged sources do not build in {folder}")
        pure, tcl = (self._slow_tests(program) for program, in (PURE, TCL))
        # Only what one stage lets pass is worth the time of the next one.
        self._stages: tuple[Stage, ...] = (
            ((*PURE, f"--gtest_filter=-{pure}"),),
            ((*TCL, f"--gtest_filter=-{tcl}"), DOCS),
            ((*PURE, f"--gtest_filter={pure}"), (*TCL, f"--gtest_filter={tcl}")),
            TRUST,
            (REFUSED,),
        )
        for command in itertools.chain(*self._stages):
            began = time.monotonic()
            if self._fault((command,)):
                sys.exit("mutate: the tests fail before anything was changed")
            self._longest[command] = max(SHORTEST_WAIT, LONGER * (time.monotonic() - began))

    def _slow_tests(self, program: str) -> str:
        """Their names, with ":" between them."""
        told = self.run([str(self.folder / "build" / PRESET / program)]).stdout
        return ":".join(name for name, took in re.findall(r"^\[       OK \] (\S+) \((\d+) ms\)$", told, re.MULTILINE)
                        if int(took) >= SLOW)

    def _build(self, stage: Stage) -> bool:
        programs = [program for program, *_ in stage if program != REFUSED[0]]
        return not programs or self.build(PRESET, *programs, seconds=LONGEST_BUILD, once=True)

    def _fault(self, stage: Stage) -> str:
        """What its tests find: "noticed", "hung", or nothing."""
        scratch = self.folder / "scratch"
        scratch.mkdir(exist_ok=True)
        environment = {**os.environ, "GTEST_FAIL_FAST": "1", "GTEST_BRIEF": "1", "TMPDIR": str(scratch),
                       "PATH": f"{self.folder / 'build' / PRESET}:{os.environ['PATH']}"}
        try:
            passed = all(self.run(["prlimit", f"--as={MOST_MEMORY}", *command], self._longest.get(command),
                                  environment).returncode == 0 for command in stage)
            return "" if passed else "noticed"
        except subprocess.TimeoutExpired:
            return "hung"

    def attempt(self, change: changes.Change) -> Result:
        with self.changed(change.file, change.apply):
            for stage in self._stages:
                if not self._build(stage):
                    return Result(change, "not built")
                if fault := self._fault(stage):
                    return Result(change, fault)
            return Result(change, "survived")


def sources(wanted: list[str]) -> list[str]:
    """The files of the two rings that are built natively."""
    listed = subprocess.run(["git", "ls-files", "src/*.cpp", "src/*.h"], cwd=ROOT, check=True, capture_output=True,
                            text=True).stdout.split()
    names = [name for name in listed if not re.search(r"_windows\.(cpp|h)$|/resource\.h$", name)]
    return [name for name in names if not wanted or any(name.startswith(start) for start in wanted)]


def arguments() -> argparse.Namespace:
    parser = Parser(prog="./dev mutate", description=(__doc__ or "").split("\n\n", maxsplit=1)[0],
                    epilog="exit: 0 when at least the wanted share of what was built is noticed, else 1")
    parser.add_argument("files", nargs="*", metavar="START", help="only files whose path begins so: src/bom")
    parser.add_argument("--count", type=int, default=300, help="how many changes (300)")
    parser.add_argument("--seed", type=int, default=None, help="which sample (another each time)")
    parser.add_argument("--least", type=float, default=96.0, help="per cent that must be noticed (96)")
    parser.add_argument("--jobs", type=int, default=2, help="how many at a time (2)")
    parser.add_argument("--list", action="store_true", help="only list the changes")
    return parser.parse_args()


def attempt_all(sample: list[changes.Change], jobs: int) -> Iterator[Result]:
    """Tries the changes in as many copies; gives the results in the order in which they come."""
    every = [Copy(ROOT / "build" / PRESET / f"copy{number}") for number in range(jobs)]
    copies: queue.SimpleQueue[Copy] = queue.SimpleQueue()
    for free in every:
        copies.put(free)

    def attempt(change: changes.Change) -> Result:
        copy = copies.get()
        try:
            return copy.attempt(change)
        finally:
            copies.put(copy)

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        try:
            for done in concurrent.futures.as_completed([pool.submit(attempt, change) for change in sample]):
                yield done.result()
        except BaseException:
            pool.shutdown(wait=False, cancel_futures=True)
            for busy in every:
                busy.stop()
            raise


def main() -> int:
    options = arguments()
    seed = random.SystemRandom().randrange(1_000_000) if options.seed is None else options.seed
    every = [change for name in sources(options.files) for change in changes.of_file(ROOT, name)]
    if not every:
        raise Refused(f"no source that is built natively begins with {' or '.join(options.files)}")
    sample = random.Random(seed).sample(every, min(options.count, len(every)))
    print(f"seed {seed}: {len(sample)} of {len(every)} possible changes")
    if options.list:
        print("\n".join(map(str, sample)))
        return 0
    counts = dict.fromkeys(("noticed", "hung", "survived", "not built"), 0)
    for result in attempt_all(sample, options.jobs):
        counts[result.kind] += 1
        if result.kind == "survived":
            print(f"survived: {result.change}", flush=True)
        elif sum(counts.values()) % 20 == 0:
            print(f"  {sum(counts.values())} tried, {counts['survived']} survived", flush=True)
    noticed = counts["noticed"] + counts["hung"]
    built = noticed + counts["survived"]
    share = 100 * noticed / built if built else 0.0
    print(f"seed {seed}: {noticed} of {built} noticed ({share:.1f} %), {counts['hung']} of them by a test that did not end; "
          f"{counts['not built']} did not build")
    return 0 if share >= options.least else 1


if __name__ == "__main__":
    run("mutate", main)
