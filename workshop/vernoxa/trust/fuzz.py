"""Runs every fuzzer, a few at a time: fuzz.py [--minutes N] [--inputs N] [--targets NAME...] [--json FILE] [--keep].

Each gets as many inputs as the others. Where there is no time for that, the quicker half gets what is missing. Prints what
each one did. What it learned stays in the build folder and is begun with the next time; --keep takes the smallest set of it
that reaches as much into the corpus."""

from __future__ import annotations

import concurrent.futures
import json
import math
import os
import pathlib
import re
import subprocess
import time
from typing import Any

from vernoxa import command as commands
from vernoxa.command import Parser, Refused
from vernoxa.places import BUILD, REPOSITORY

PROGRAM = BUILD / "fuzz" / "vernoxa_fuzz"
CORPORA = REPOSITORY / "fuzz" / "corpus"
WORK = BUILD / "fuzz" / "work"
LONGEST = 2048
FOR_ALL = 0.4  # of the time; the rest is for the quicker half
# A hang is an input that takes longer than this.
SECONDS_FOR_ONE_INPUT = 10


def fuzzer(target: str, *words: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run([str(PROGRAM), f"--target={target}", f"-max_len={LONGEST}", *words], stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, errors="replace", check=False,
                          env=os.environ | {"UBSAN_OPTIONS": "print_stacktrace=1"})


def run(target: str, inputs: int, seconds: float) -> dict[str, Any]:
    """One target, for so many inputs or so long."""
    learned, findings = WORK / target, WORK / "findings" / target
    for folder in (learned, findings):
        folder.mkdir(parents=True, exist_ok=True)
    known = set(findings.iterdir())
    began = time.monotonic()
    done = fuzzer(target, f"-max_total_time={max(1, round(seconds))}", f"-runs={inputs or -1}",
                  f"-timeout={SECONDS_FOR_ONE_INPUT}", "-rss_limit_mb=2048", "-print_final_stats=1",
                  f"-artifact_prefix={findings}/", str(learned), str(CORPORA / target))
    took = time.monotonic() - began
    found = sorted(str(path) for path in set(findings.iterdir()) - known)
    tried = re.search(r"number_of_executed_units:\s*(\d+)", done.stderr)
    result: dict[str, Any] = {"target": target, "inputs": int(tried[1]) if tried else 0, "seconds": round(took, 1),
                              "findings": found, "ended": done.returncode}
    if done.returncode != 0:
        result["last words"] = done.stderr[-6000:]
    print(f"{target:18} {result['inputs']:10} {rate(result):9.0f}  {len(found)}", flush=True)
    return result


def keep(target: str) -> int:
    """How many inputs of what was learned are in the corpus now."""
    corpus = CORPORA / target
    before = len(list(corpus.iterdir()))
    if (done := fuzzer(target, "-merge=1", str(corpus), str(WORK / target))).returncode != 0:
        raise Refused(f"{target}: what was learned cannot be merged:\n{done.stderr[-3000:]}")
    return len(list(corpus.iterdir())) - before


def rate(result: dict[str, Any]) -> float:
    return result["inputs"] / max(result["seconds"], 0.1)


def share(targets: list[str], jobs: int, inputs: int, seconds: float) -> list[dict[str, Any]]:
    """So many inputs for all targets together, in at most about so much time."""
    began = time.monotonic()
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        each, most = -(-inputs // len(targets)), FOR_ALL * seconds * jobs / len(targets)
        results = list(pool.map(lambda target: run(target, each, most), targets))
        latest = {result["target"]: result for result in results}
        while (missing := inputs - sum(result["inputs"] for result in results)) > 0:
            quick = sorted(latest.values(), key=rate)[len(latest) // 2:]
            together = sum(map(rate, quick))
            most = (began + seconds - time.monotonic()) * jobs / len(quick)
            if together == 0 or most < 1:
                break
            more = list(pool.map(lambda last: run(last["target"], math.ceil(missing * rate(last) / together), most), quick))
            latest |= {result["target"]: result for result in more}
            results += more
    return results


def main() -> int:
    parser = Parser(description=__doc__)
    parser.add_argument("--minutes", type=float, default=5, help="for all targets together (5)")
    parser.add_argument("--inputs", type=int, default=0, help="for all targets together (as many as there is time for)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1, help="targets at a time")
    parser.add_argument("--targets", nargs="+", default=sorted(path.name for path in CORPORA.iterdir()))
    parser.add_argument("--json", type=pathlib.Path, help="write the figures there")
    parser.add_argument("--keep", action="store_true", help="take what was learned into the corpora, and run nothing")
    options = parser.parse_args()
    if options.keep:
        for target in options.targets:
            print(f"{target:18} {keep(target):6} inputs more")
        return 0
    print(f"{'target':18} {'inputs':>10} {'a second':>9}  findings")
    if options.inputs:
        results = share(options.targets, options.jobs, options.inputs, options.minutes * 60)
    else:
        most = options.minutes * 60 * options.jobs / len(options.targets)
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            results = list(pool.map(lambda target: run(target, 0, most), options.targets))
    for result in results:
        if result["ended"] != 0:
            print(result["last words"])
    if options.json:
        options.json.write_text(json.dumps(results, indent=1), encoding="utf-8")
    return 1 if any(result["ended"] != 0 or result["findings"] for result in results) else 0


if __name__ == "__main__":
    commands.run("fuzz", main)
