"""Reports which branches of src/ the tests took, by folder: coverage.py BUILD_DIRECTORY

A branch is a condition of the source that came out true, or false: what the compiler adds for clean-up is none. It counts
once for each place, whichever program took it. The rooms that read what comes from outside keep to a least share, and what
they leave has its reason where it stands.

gcovr, which Debian has, reads GCC's counts alone. There a quarter of the branches of text and wire, those of exceptions
left out, stand on lines without a condition: they are clean-up, which no test takes and nobody could excuse.
"""

from __future__ import annotations

import collections
import json
import pathlib
import re
import subprocess
import sys

from vernoxa.command import run
from vernoxa.places import REPOSITORY as ROOT

WATCHED = ("text", "tcl", "wire", "link", "dispatch", "designs", "views", "bom", "modules", "checks", "drawing")
PROGRAMS = ("vernoxa_pure_tests", "vernoxa_tcl_tests", "vernoxa_trust_tests", "vernoxa_fuzz_replay", "vernoxa_docs")
LEAST = 95.0  # per cent of the branches
Branches = dict[tuple[int, ...], int]  # place and outcome -> times
_REASON = re.compile(r"// Never (true|false)(?: or (true|false))?: (.+)")


def counted(build: pathlib.Path) -> dict:
    """What the programs did, by file."""
    profiles = [str(path) for path in (build / "profiles").glob("*.profraw")]
    together = build / "profiles" / "together.profdata"
    subprocess.run(["llvm-profdata", "merge", "-sparse", "-o", together, *profiles], check=True)
    objects = [word for name in PROGRAMS for word in ("-object", str(build / name))]
    said = subprocess.run(["llvm-cov", "export", f"-instr-profile={together}", "-skip-expansions", *objects[1:]],
                          check=True, capture_output=True, text=True).stdout
    return json.loads(said)["data"][0]


def branches_of(file: dict) -> Branches:
    """A template has a branch for each of its types: any that takes it counts."""
    branches: Branches = collections.Counter()
    for *place, true, false, _, _, _ in file["branches"]:
        for outcome, times in ((1, true), (0, false)):
            branches[(*place, outcome)] += times
    return branches


def reasons(source: list[str]) -> dict[tuple[int, bool], str]:
    """Why outcomes of lines may be left: "Never true: ..." in the line itself or the one above it."""
    known = {}
    for number, line in enumerate(source, 1):
        if found := _REASON.search(line):
            for outcome in filter(None, (found[1], found[2])):
                known[number + line.lstrip().startswith("//"), outcome == "true"] = found[3]
    return known


def list_left(taken: dict[str, Branches]) -> bool:
    """Prints what the watched rooms leave. False when a branch has no reason, or a reason no branch."""
    complete = True
    for name in sorted(name for name in taken if name.split("/")[0] in WATCHED):
        source = (ROOT / "src" / name).read_text(encoding="utf-8").splitlines()
        known = reasons(source)
        unused = dict(known)
        for (line, column, _, end, outcome), times in sorted(taken[name].items()):
            if times:
                continue
            reason = known.get((line, bool(outcome)))
            unused.pop((line, bool(outcome)), None)
            complete = complete and reason is not None
            print(f"  {name}:{line}: never {'true' if outcome else 'false'}: {source[line - 1][column - 1:end - 1]}: "
                  f"{reason or 'NO REASON IS GIVEN'}")
        for (line, _), reason in unused.items():
            print(f"  {name}:{line}: taken, or gone, but a reason is given: {reason}")
        complete = complete and not unused
    return complete


def main() -> int:
    build = pathlib.Path(sys.argv[1]).resolve()
    taken: dict[str, Branches] = {}
    rows: dict[str, list[int]] = collections.defaultdict(lambda: [0, 0, 0, 0])
    for file in counted(build)["files"]:
        path = file["filename"].rpartition("/./")[2]  # the compiler was told to leave the folder's own path out
        if not path.startswith("src/"):
            continue
        name = path.removeprefix("src/")
        taken[name] = branches_of(file)
        lines = file["summary"]["lines"]
        for row in (rows[name.split("/")[0]], rows["all"]):
            row[0] += sum(1 for times in taken[name].values() if times)
            row[1] += len(taken[name])
            row[2] += lines["covered"]
            row[3] += lines["count"]
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
