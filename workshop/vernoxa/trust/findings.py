"""What the parts of the trust run find, and how they run what they run."""

from __future__ import annotations

import os
import subprocess

from vernoxa.places import REPOSITORY

from .kinds import KINDS, kind_of

SECONDS_FOR_ANYTHING = 3600


class Findings:
    """Counts over all parts; `failed` names the parts that did not pass."""

    def __init__(self) -> None:
        self.rows: list[tuple[str, str, str]] = []
        self.counts = dict.fromkeys(KINDS, 0)
        self.failed: list[str] = []

    def row(self, what: str, how_much: str, where: str) -> None:
        self.rows.append((what, how_much, where))
        print(f"  {what}: {how_much} ({where})", flush=True)

    def fall_short(self, part: str, why: str) -> None:
        """Nothing was found, but less was tried than was wanted."""
        self.failed.append(f"{part} ({why})")
        print(f"FELL SHORT: {part}: {why}", flush=True)

    def fail(self, part: str, output: str, hung: bool = False) -> None:
        kind = "hangs" if hung else kind_of(output)
        self.counts[kind] += 1
        self.failed.append(part)
        print(output[-4000:], f"FAILED: {part}", sep="\n", flush=True)


def run(findings: Findings, part: str, command: list[str], **extra: str) -> str | None:
    """The output of a command that ended well, else None."""
    print(f"{part} ...", flush=True)
    try:
        done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, errors="replace", timeout=SECONDS_FOR_ANYTHING, cwd=REPOSITORY,
                              env=os.environ | extra, check=False)
    except subprocess.TimeoutExpired as error:
        findings.fail(part, str(error.stdout), hung=True)
        return None
    if done.returncode != 0:
        findings.fail(part, done.stdout)
        return None
    return done.stdout
