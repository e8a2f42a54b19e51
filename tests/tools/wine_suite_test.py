"""What a suite of Wine began and made goes with it, however it ends."""

import os
import pathlib
import signal
import subprocess
import tempfile
import time
import unittest

from vernoxa.places import SETUP

SECONDS = 60  # on a machine that does much else

CASES = (
    # how the suite is ended
    ("by itself", lambda suite: None),
    ("asked, with all that it runs", lambda suite: os.killpg(suite.pid, signal.SIGTERM)),
    ("killed, with all that it runs", lambda suite: os.killpg(suite.pid, signal.SIGKILL)),
    ("killed alone", lambda suite: suite.kill()),
)


def until(seen) -> bool:
    limit = time.monotonic() + SECONDS
    while not seen() and time.monotonic() < limit:
        time.sleep(0.05)
    return seen()


class WineSuiteTest(unittest.TestCase):
    def test_nothing_is_left(self):
        for name, end in CASES:
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                suite = subprocess.Popen([SETUP / "wine-suite", "cat"], stdin=subprocess.PIPE, start_new_session=True,
                                         env={**os.environ, "TMPDIR": folder})
                self.assertTrue(until(lambda: list(pathlib.Path(folder).glob("*/started"))))
                end(suite)
                suite.stdin.close()
                suite.wait(SECONDS)
                until(lambda: not os.listdir(folder))
                self.assertEqual([], os.listdir(folder))


if __name__ == "__main__":
    unittest.main()
