"""The companion of the check serves the check's own editor alone, and ends without the check."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

from vernoxa.places import REPOSITORY, SETUP

CHECK = REPOSITORY / "package" / "check"
# Tells that a design is open, and prints what comes before the companion answers that, or hangs up.
EDITOR = r"""
source [file join [lindex $argv 0] frames.tcl]
proc take {channel packet} { puts [unhex $packet]; exit }
for {set try 0} {[catch {socket 127.0.0.1 9601} channel]} {incr try} { if {$try > 600} { error $channel }; after 50 }
onFrames $channel take {apply {channel { puts gone; exit }}}
sendFrame $channel [hex "{\"Command\":\"FileStatus\",\"Data\":{\"FileName\":\"[lindex $argv 1]\",\"Status\":\"1\"}}"]
vwait forever
"""


class CompanionTest(unittest.TestCase):
    def setUp(self) -> None:
        if subprocess.run([SETUP / "apart", "true"], capture_output=True, check=False).returncode:
            self.skipTest("this system makes no networks")

    def test_only_the_checks_own_design_is_answered_and_an_old_sign_of_life_ends_it(self) -> None:
        for design, age, said, stays in (
                (r"C:\\T\\vx7\\i\\project\\a.dsn", 0, "FileStatus_EndResult", True),
                (r"D:\\my work\\amp.dsn", 0, "gone", False),
                (r"C:\\vx7\\a.dsn", 0, "gone", False),
                ("", 3600, "", False)):
            with self.subTest(design), tempfile.TemporaryDirectory() as place:
                folder = pathlib.Path(place) / "vx7" / "i"
                folder.mkdir(parents=True)
                for source, name in (("companion.tcl", "AutoLogin"), ("frames.tcl", "frames.tcl"),
                                     ("requests.tcl", "requests.tcl")):
                    shutil.copy(CHECK / source, folder / name)
                shutil.copy(shutil.which("tclsh8.6") or "", folder / "LanTuZS")
                (folder / "alive").touch()
                os.utime(folder / "alive", (time.time() - age,) * 2)
                (folder / "editor.tcl").write_text(EDITOR)
                ask = f'tclsh8.6 editor.tcl . "{design}"; ' if design else ""
                wait = "sleep 1; kill $!" if stays else "wait $!"
                command = f"./LanTuZS AutoLogin & {ask}{wait}"
                run = subprocess.run([SETUP / "apart", "bash", "-c", command], cwd=folder,
                                     env={**os.environ, "TCL_LIBRARY": "/usr/share/tcltk/tcl8.6"}, capture_output=True,
                                     text=True, timeout=120, check=False)
                self.assertIn(said, run.stdout, run.stderr)
                self.assertEqual(run.returncode, 0, run.stderr)


if __name__ == "__main__":
    unittest.main()
