"""Runs every fuzzer in turn: fuzz.py [--minutes N] [--targets NAME...] [--json FILE]. Prints what each one did."""

from __future__ import annotations

import json
import os
import pathlib
import re
import subprocess
import time

from vernoxa import command as commands
from vernoxa.command import Parser
from vernoxa.places import BUILD, REPOSITORY

PROGRAM = BUILD / "fuzz" / "vernoxa_fuzz"
CORPORA = REPOSITORY / "fuzz" / "corpus"
WORK = BUILD / "fuzz" / "work"
# A hang is an input that takes longer than this.
SECONDS_FOR_ONE_INPUT = 10


def run(target: str, seconds: float) -> dict:
    """One target for so long. What it learns stays in the build folder and is begun with the next time."""
    learned, findings = WORK / target, WORK / "findings" / target
    for folder in (learned, findings):
        folder.mkdir(parents=True, exist_ok=True)
    known = set(findings.iterdir())
    command = [str(PROGRAM), f"--target={target}", f"-max_total_time={max(1, round(seconds))}", "-max_len=2048",
               f"-timeout={SECONDS_FOR_ONE_INPUT}", "-rss_limit_mb=2048", "-print_final_stats=1",
               f"-artifact_prefix={findings}/", str(learned), str(CORPORA / target)]
    began = time.monotonic()
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace",
                          env=os.environ | {"UBSAN_OPTIONS": "print_stacktrace=1"}, check=False)
    took = time.monotonic() - began
    found = sorted(str(path) for path in set(findings.iterdir()) - known)
    inputs = re.search(r"number_of_executed_units:\s*(\d+)", done.stderr)
    result = {"target": target, "inputs": int(inputs[1]) if inputs else 0, "seconds": round(took, 1),
              "findings": found, "ended": done.returncode}
    if done.returncode != 0:
        result["last words"] = done.stderr[-6000:]
    return result


def main() -> int:
    parser = Parser(description=__doc__)
    parser.add_argument("--minutes", type=float, default=5, help="for all targets together")
    parser.add_argument("--targets", nargs="+", default=sorted(path.name for path in CORPORA.iterdir()))
    parser.add_argument("--json", type=pathlib.Path, help="write the figures there")
    options = parser.parse_args()
    results = []
    print(f"{'target':18} {'inputs':>10} {'a second':>9}  findings")
    for target in options.targets:
        result = run(target, options.minutes * 60 / len(options.targets))
        results.append(result)
        rate = result["inputs"] / max(result["seconds"], 0.1)
        print(f"{target:18} {result['inputs']:10} {rate:9.0f}  {len(result['findings'])}", flush=True)
        if result["ended"] != 0:
            print(result["last words"])
    if options.json:
        options.json.write_text(json.dumps(results, indent=1), encoding="utf-8")
    return 1 if any(result["ended"] != 0 or result["findings"] for result in results) else 0


if __name__ == "__main__":
    commands.run("fuzz", main)
