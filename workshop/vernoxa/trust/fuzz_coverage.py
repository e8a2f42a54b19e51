"""How much of each room the inputs of the fuzzers reach, the kept ones and what was learned: lines, by a build that
counts."""

from __future__ import annotations

import collections
import json
import os
import pathlib
import re
import subprocess

from vernoxa.places import BUILD, REPOSITORY

from .fuzz import CORPORA, WORK

COUNTING = BUILD / "coverage"
PROGRAM = COUNTING / "vernoxa_fuzz_replay"
MOST_AT_ONCE = 2000  # files on one command line
# What reads what comes from outside.
WATCHED = ("text", "wire", "dispatch", "modules", "drawing", "bom", "checks")
LEAST = 90.0  # per cent of the lines


def _replay(profiles: pathlib.Path) -> None:
    environment = os.environ | {"LLVM_PROFILE_FILE": str(profiles / "%m-%p.profraw")}
    subprocess.run([PROGRAM, CORPORA], env=environment, check=True, capture_output=True)
    for target in (path.name for path in CORPORA.iterdir()):
        learned = sorted((WORK / target).iterdir()) if (WORK / target).is_dir() else []
        for first in range(0, len(learned), MOST_AT_ONCE):
            subprocess.run([PROGRAM, target, *learned[first:first + MOST_AT_ONCE]], env=environment, check=True)


def _in_project(name: str) -> str:
    return name.rpartition("/./")[2]  # the compiler was told to leave the folder's own path out


def _run_by_the_compiler(functions: list[dict]) -> collections.Counter[str]:
    """How many lines of each file are those of functions that only the compiler has run: no input could reach them."""
    times: collections.Counter[tuple[str, int, int]] = collections.Counter()
    for function in functions:
        first, _, last = function["regions"][0][:3]
        times[_in_project(function["filenames"][0]), first, last] += function["count"]
    lines: collections.Counter[str] = collections.Counter()
    for (path, first, last), count in times.items():
        if path.startswith("src/") and count == 0:
            begins = (REPOSITORY / path).read_text("utf-8").splitlines()[first - 1]
            lines[path] += last - first + 1 if re.search(r"\b(constexpr|consteval)\b", begins) else 0
    return lines


def lines_by_room(profiles: pathlib.Path) -> dict[str, tuple[int, int]]:
    """Lines that were reached, and all that an input could reach, of each room of src."""
    profiles.mkdir(parents=True, exist_ok=True)
    _replay(profiles)
    together = profiles / "together.profdata"
    subprocess.run(["llvm-profdata", "merge", "-sparse", "-o", together, *profiles.glob("*.profraw")], check=True)
    said = subprocess.run(["llvm-cov", "export", f"-instr-profile={together}", PROGRAM], check=True, capture_output=True,
                          text=True).stdout
    counted = json.loads(said)["data"][0]
    compiled = _run_by_the_compiler(counted["functions"])
    rooms: dict[str, list[int]] = collections.defaultdict(lambda: [0, 0])
    for file in counted["files"]:
        path = _in_project(file["filename"])
        if path.startswith("src/"):
            lines = file["summary"]["lines"]
            rooms[path.split("/")[1]][0] += lines["covered"]
            rooms[path.split("/")[1]][1] += lines["count"] - compiled[path]
    return {room: (reached, count) for room, (reached, count) in sorted(rooms.items())}
