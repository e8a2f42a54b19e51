"""Reports which branches of src/ the tests took, by folder: coverage.py BUILD_DIRECTORY

Branches into exception handling are left out: nearly every call has one, and no test can take them all.
A branch counts once for each place in the source, whichever program took it. The rooms that read what comes from outside
keep to a least share, and what they leave is listed with its reason (branches_left.txt).
"""

from __future__ import annotations

import collections
import json
import pathlib
import re
import subprocess
import sys
from typing import Any, Iterator

from vernoxa.command import run
from vernoxa.places import REPOSITORY as ROOT

WATCHED = ("text", "tcl", "wire", "link", "dispatch", "designs", "views", "bom", "modules", "checks", "drawing")
Counts = dict[str, dict[Any, int]]
LEAST = 95.0  # per cent of the branches


def records(build: pathlib.Path) -> Iterator[dict]:
    """What gcov says of every object of ours whose program ran."""
    objects = [path for path in build.rglob("*.gcda") if "googletest" not in path.parts]
    for start in range(0, len(objects), 50):
        said = subprocess.run(["gcov", "--json-format", "--branch-probabilities", "--stdout",
                               *map(str, objects[start:start + 50])], check=True, capture_output=True, text=True,
                              cwd=build).stdout
        for line in said.splitlines():
            if line.startswith("{"):
                yield json.loads(line)


def reasons() -> list[list[str]]:
    lines = (ROOT / "tools/check/branches_left.txt").read_text(encoding="utf-8").splitlines()
    return [line.split("\t\t") for line in lines if not line.startswith("#")]


def list_left(taken: Counts) -> bool:
    """Prints what the watched rooms leave. False when a branch has no reason."""
    known, complete = reasons(), True
    for name in sorted(taken):
        if name.split("/")[0] not in WATCHED:
            continue
        source = (ROOT / "src" / name).read_text(encoding="utf-8").splitlines()
        left = collections.Counter(place[0] for place, times in taken[name].items() if not times)
        for line, count in sorted(left.items()):
            reason = next((why for pattern, why in known if re.search(pattern, source[line - 1])), None)
            complete = complete and reason is not None
            print(f"  {name}:{line}: {count} left: {reason or 'NO REASON IS GIVEN'}")
    return complete


def main() -> int:
    build = pathlib.Path(sys.argv[1]).resolve()
    taken: Counts = collections.defaultdict(collections.Counter)  # file -> (line, function, branch) -> times
    lines: Counts = collections.defaultdict(collections.Counter)
    for record in records(build):
        for source in record["files"]:
            path = (ROOT / source["file"]).resolve()  # the compiler was told to leave the folder's own path out
            if not path.is_relative_to(ROOT / "src"):
                continue
            name = str(path.relative_to(ROOT / "src"))
            for line in source["lines"]:
                lines[name][line["line_number"]] += line["count"]
                for number, branch in enumerate(line["branches"]):
                    if not branch["throw"]:
                        place = (line["line_number"], line.get("function_name"), number)
                        taken[name][place] += branch["count"]

    rows: dict[str, list[int]] = collections.defaultdict(lambda: [0, 0, 0, 0])
    for name in lines:
        for row in (rows[name.split("/")[0]], rows["all"]):
            row[0] += sum(1 for times in taken[name].values() if times)
            row[1] += len(taken[name])
            row[2] += sum(1 for times in lines[name].values() if times)
            row[3] += len(lines[name])
    if not rows:
        sys.exit("no program has left any counts")
    print(f"{'folder':<12}{'branches':>16}{'':>8}{'lines':>16}")
    for name in sorted(rows, key=lambda folder: (folder == "all", folder)):
        hit, branches, hit_lines, all_lines = rows[name]
        share = f"{100 * hit / branches:.1f} %" if branches else "-"
        line_share = f"{100 * hit_lines / all_lines:.1f} %" if all_lines else "-"
        print(f"{name:<12}{f'{hit} of {branches}':>16}{share:>8}{f'{hit_lines} of {all_lines}':>16}{line_share:>8}")
    complete = list_left(taken)
    low = [name for name in WATCHED if 100 * rows[name][0] < LEAST * rows[name][1]]
    if low:
        print(f"below {LEAST:.0f} %: {', '.join(low)}")
    return 1 if low or not complete else 0


if __name__ == "__main__":
    run("coverage", main)
