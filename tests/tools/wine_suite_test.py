"""What a suite of Wine began and made goes with it, however it ends."""

import contextlib
import os
import pathlib
import signal
import subprocess
import tempfile
import time
import unittest
from typing import Iterator

from vernoxa.places import SETUP

SECONDS = 180  # on a machine that does much else
SCREENS = pathlib.Path("/tmp/.X11-unix")

CASES = (
    # how the suite is ended
    ("by itself", lambda suite: None),
    ("asked, with all that it runs", lambda suite: os.killpg(suite.pid, signal.SIGTERM)),
    ("killed, with all that it runs", lambda suite: os.killpg(suite.pid, signal.SIGKILL)),
    ("killed alone", lambda suite: suite.kill()),
)


def those_of(folder: str) -> list[int]:
    """The processes that have it in their environment, as all of a suite have its prefix."""
    found = []
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            if folder.encode() in (process / "environ").read_bytes():
                found.append(int(process.name))
    return found


def until(seen) -> bool:
    limit = time.monotonic() + SECONDS
    while not seen() and time.monotonic() < limit:
        time.sleep(0.05)
    return seen()


@contextlib.contextmanager
def suite_in(folder: str) -> Iterator[subprocess.Popen]:
    suite = subprocess.Popen([SETUP / "wine-suite", "cat"], stdin=subprocess.PIPE, start_new_session=True,
                             env={**os.environ, "TMPDIR": folder})
    try:
        yield suite
    finally:
        if suite.poll() is None:
            os.killpg(suite.pid, signal.SIGKILL)
        suite.wait()


class WineSuiteTest(unittest.TestCase):
    def test_nothing_is_left(self):
        for name, end in CASES:
            with self.subTest(name), tempfile.TemporaryDirectory() as folder, suite_in(folder) as suite:
                self.assertTrue(until(lambda: list(pathlib.Path(folder).glob("*/started"))))
                number = next(pathlib.Path(folder).glob("*/screen")).read_text().strip()
                screen = SCREENS / f"X{number}"
                self.assertTrue(screen.exists())
                end(suite)
                suite.stdin.close()
                suite.wait(SECONDS)
                until(lambda: not (os.listdir(folder) or those_of(folder) or screen.exists()))
                self.assertEqual(([], [], False), (os.listdir(folder), those_of(folder), screen.exists()))


if __name__ == "__main__":
    unittest.main()
