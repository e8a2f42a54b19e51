"""A copy of the work tree, in which sources are changed and built while nothing changes here."""

from __future__ import annotations

import contextlib
import os
import pathlib
import shutil
import signal
import subprocess
from typing import Callable, Iterator, Mapping

from vernoxa.places import REPOSITORY


class WorkCopy:
    def __init__(self, folder: pathlib.Path):
        self.folder = folder
        self._process: subprocess.Popen[str] | None = None
        self._bring_up_to_date()

    def _bring_up_to_date(self) -> None:
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=REPOSITORY,
                                check=True, capture_output=True, text=True).stdout
        names = {name for name in listed.split("\0") if name and (REPOSITORY / name).is_file()}
        for name in names:
            source, target = REPOSITORY / name, self.folder / name
            if not target.exists() or target.read_bytes() != source.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, target)
        for top in ("src", "tests", "sim", "fuzz", "bench", "tools"):
            for old in (self.folder / top).rglob("*"):
                if old.is_file() and str(old.relative_to(self.folder)) not in names:
                    old.unlink()
        if not (self.folder / ".deps").exists():
            (self.folder / ".deps").symlink_to(REPOSITORY / ".deps")

    def run(self, command: list[str], seconds: float | None = None, environment: Mapping[str, str] | None = None,
            ) -> subprocess.CompletedProcess[str]:
        """Its output is one text. Raises subprocess.TimeoutExpired, once it and all that it started have ended: the next
        run may use the same files."""
        with subprocess.Popen(command, cwd=self.folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace", env=environment,
                              start_new_session=True) as process:
            self._process = process
            try:
                output, _ = process.communicate(timeout=seconds)
            except BaseException:
                self.stop()
                raise
        return subprocess.CompletedProcess(command, process.returncode, output)

    def stop(self) -> None:
        """Ends what runs, with all that it started."""
        if self._process and self._process.poll() is None:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(self._process.pid, signal.SIGKILL)

    def build(self, preset: str, *targets: str, jobs: int = 1, seconds: float | None = None, once: bool = False) -> bool:
        """`once`: what is compiled will not be wanted again, so that keeping it would only take time. What the attempt
        before had changed is taken from what was kept."""
        if not (self.folder / "build" / preset / "build.ninja").exists():
            self.run(["cmake", "--preset", preset])
        command = ["cmake", "--build", "--preset", preset, "-j", str(jobs), "--target", *targets]
        try:
            environment = {**os.environ, "CCACHE_READONLY": "1", "CCACHE_DEPEND": "1"} if once else None
            return self.run(command, seconds, environment).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    @contextlib.contextmanager
    def changed(self, name: str, change: Callable[[bytes], bytes]) -> Iterator[None]:
        """One file is another one as long as this lasts."""
        path = self.folder / name
        before = path.read_bytes()
        try:
            path.write_bytes(change(before))
            yield
        finally:
            path.write_bytes(before)
