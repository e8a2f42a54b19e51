"""A program under Wine that told its status and was then killed is judged by what it told; every other by its end. A
second segmentation fault at the ends of one build's tests is a failure."""

import pathlib
import subprocess
import tempfile
import unittest

from vernoxa.check.count_tests import ended_by_wine
from vernoxa.places import SETUP

CASES = (
    # what it tells, how it ends, the status, whether the excuse is said
    ("0", "kill -KILL $$", 0, True),
    ("0", "kill -SEGV $$", 0, True),
    ("1", "kill -KILL $$", 1, True),
    ("", "kill -KILL $$", 137, False),
    ("0", "exit 5", 5, False),
    ("0", "kill -ABRT $$", 134, False),
    ("0", "exit 0", 0, False),
)


class EndingTest(unittest.TestCase):
    def test_statuses(self):
        for told, ending, status, excused in CASES:
            with self.subTest(told=told, ending=ending):
                script = f'ulimit -c 0; printf "{told}" >"${{VERNOXA_ENDED#Z:}}"; {ending}'
                run = subprocess.run([SETUP / "by_its_own_ending", "bash", "-c", script], capture_output=True, text=True,
                                     check=False)
                self.assertEqual((status, excused), (run.returncode, "ended with" in run.stdout))

    def test_a_second_segmentation_fault_is_a_failure(self):
        build = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        for signals, failures in (((11, 9, 9, 9), 0), ((11, 11), 1)):
            (build / "results.xml").write_text("".join(f"ended with 0, then by Wine with signal {one}\n" for one in signals))
            ends, found = ended_by_wine(build)
            self.assertEqual((len(signals), failures), (ends, len(found)))


if __name__ == "__main__":
    unittest.main()
