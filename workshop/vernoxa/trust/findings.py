"""What the parts of the trust run find, and how they run what they run."""

from __future__ import annotations

import contextlib
import os
import signal
import subprocess
import threading

from vernoxa.places import REPOSITORY

from .kinds import KINDS, kind_of

SECONDS_FOR_ANYTHING = 3600
_guard = threading.Lock()
_running: list[subprocess.Popen[str]] = []
_stopped = threading.Event()


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


def stop() -> None:
    """Ends what runs, in other threads too; nothing can be run after it."""
    with _guard:
        _stopped.set()
        for program in _running:
            _end(program, signal.SIGTERM)


def _end(program: subprocess.Popen[str], how: signal.Signals) -> None:
    """With all that it started."""
    with contextlib.suppress(ProcessLookupError):  # it may just have ended
        if program.poll() is None:
            os.killpg(program.pid, how)


def run(findings: Findings, part: str, command: list[str], **extra: str) -> str | None:
    """The output of a command that ended well, else None. Raises KeyboardInterrupt after stop()."""
    print(f"{part} ...", flush=True)
    with _guard:
        if _stopped.is_set():
            raise KeyboardInterrupt
        # In a group of its own Ctrl-C does not reach it: that would count as a crash.
        program = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   text=True, errors="replace", cwd=REPOSITORY, env=os.environ | extra,
                                   start_new_session=True)
        _running.append(program)
    try:
        output, _ = program.communicate(timeout=SECONDS_FOR_ANYTHING)
    except subprocess.TimeoutExpired as error:
        _end(program, signal.SIGKILL)
        findings.fail(part, (error.stdout or b"").decode(errors="replace"), hung=True)
        return None
    finally:
        _end(program, signal.SIGTERM)
        with _guard:
            _running.remove(program)
    if _stopped.is_set():
        raise KeyboardInterrupt
    if program.returncode != 0:
        findings.fail(part, output)
        return None
    return output
