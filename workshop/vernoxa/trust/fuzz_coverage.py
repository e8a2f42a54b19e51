"""How much of each room the inputs of the fuzzers reach, the kept ones and what was learned: lines, by a build that
counts."""

from __future__ import annotations

import collections
import json
import os
import pathlib
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


def lines_by_room(profiles: pathlib.Path) -> dict[str, tuple[int, int]]:
    """Lines that were reached, and all, of each room of src."""
    profiles.mkdir(parents=True, exist_ok=True)
    _replay(profiles)
    together = profiles / "together.profdata"
    subprocess.run(["llvm-profdata", "merge", "-sparse", "-o", together, *profiles.glob("*.profraw")], check=True)
    said = subprocess.run(["llvm-cov", "export", "-summary-only", f"-instr-profile={together}", PROGRAM], check=True,
                          capture_output=True, text=True).stdout
    rooms: dict[str, list[int]] = collections.defaultdict(lambda: [0, 0])
    for file in json.loads(said)["data"][0]["files"]:
        path = file["filename"].removeprefix(str(REPOSITORY)).lstrip("./")
        if path.startswith("src/"):
            lines = file["summary"]["lines"]
            rooms[path.split("/")[1]][0] += lines["covered"]
            rooms[path.split("/")[1]][1] += lines["count"]
    return {room: (reached, count) for room, (reached, count) in sorted(rooms.items())}
