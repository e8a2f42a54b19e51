"""Tries the trust run itself: plants one fault after the other in a copy of the sources, builds it, and runs the part
that has to find it."""

from __future__ import annotations

import os
import pathlib
import subprocess
import time

from vernoxa.check.work_copy import WorkCopy
from vernoxa.command import Refused
from vernoxa.places import BUILD

from .kinds import kind_of
from .planted import PLANTED, Planted

COPY = BUILD / "prove"
SECONDS_FOR_A_PART = 600


def _plant(fault: Planted, source: bytes) -> bytes:
    before = fault.before.encode()
    if source.count(before) != 1:
        raise Refused(f"{fault.name}: {fault.file} does not have once what is to be changed")
    return source.replace(before, fault.after.encode())


def _run(copy: WorkCopy, fault: Planted) -> tuple[int, str]:
    """How the part ended, and what it said."""
    program = str(copy.folder / "build" / fault.preset / fault.program)
    folder = copy.folder / "scratch"
    folder.mkdir(exist_ok=True)
    environment = os.environ | {"GTEST_FAIL_FAST": "1", "GTEST_BRIEF": "1", "TMPDIR": str(folder)}
    environment |= {"VERNOXA_TRUST": "all"} if fault.everything else {}
    try:
        done = copy.run([program, *fault.words], SECONDS_FOR_A_PART, environment)
        return done.returncode, done.stdout
    except subprocess.TimeoutExpired:
        return 1, "TimeoutError"


def _try(copy: WorkCopy, fault: Planted) -> dict[str, object]:
    with copy.changed(fault.file, lambda source: _plant(fault, source)):
        if not copy.build(fault.preset, fault.program, jobs=os.cpu_count() or 1):
            raise Refused(f"{fault.name}: the changed sources do not build")
        began = time.monotonic()
        status, output = _run(copy, fault)
    seen = kind_of(output, "something else") if status else "nothing"
    return {"fault": fault.name, "part": fault.part, "found": seen == fault.kind, "as": seen,
            "seconds": round(time.monotonic() - began, 1)}


def prove(folder: pathlib.Path = COPY) -> list[dict[str, object]]:
    """What became of each planted fault. The unchanged sources pass first, or nothing would be proved."""
    copy = WorkCopy(folder)
    for preset, program in dict.fromkeys((fault.preset, fault.program) for fault in PLANTED):
        if not copy.build(preset, program, jobs=os.cpu_count() or 1):
            raise Refused(f"the unchanged sources do not build: {preset} {program}")
    for fault in {(fault.program, fault.words): fault for fault in PLANTED}.values():
        status, output = _run(copy, fault)
        if status:
            raise Refused(f"{fault.part} fails before anything is planted:\n{output[-2000:]}")
    results = []
    for fault in PLANTED:
        result = _try(copy, fault)
        results.append(result)
        found = "found as" if result["found"] else f"NOT FOUND as {fault.kind} but as"
        print(f"  {fault.name}: {found} {result['as']} after {result['seconds']} s by {fault.part}", flush=True)
    return results
