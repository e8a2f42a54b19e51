"""check.cmd out of the zip, in three code pages at once: check_test.py PLUG-IN.

Most of its time are the plug-in's own pauses. It passes at once when it passed before with the same files.
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest
import zipfile

from unchanged import Unchanged
from vernoxa.dist import package
from vernoxa.places import SETUP, WINE

MODULE = pathlib.Path(sys.argv.pop())
APART = [str(SETUP / "apart")]
# Wine's locale for each code page, and how often the plug-in is loaded there.
PAGES = {"936": ("zh_CN", 1000), "1252": ("en_US", 100), "65001": ("hi_IN", 100)}
USER = "Secret 用户"  # a space, and characters that some of the pages lack


# As a user would start it, whose folder for temporary files is another one, and who has a file of the name that the
# plug-in uses.
START = """
lassign $argv ::env(TEMP) loads
close [open C:/Temp/test.emf w]
if {[set failed [catch {exec -ignorestderr cmd /c check.cmd /quiet -loads $loads} said]]} {
  puts $said
}
exit [expr {$failed + ![file exists C:/Temp/test.emf] * 2}]
"""


def begin(folder: pathlib.Path, temporary: pathlib.Path, page: str) -> subprocess.Popen[bytes]:
    locale, loads = PAGES[page]
    temporary.mkdir(parents=True)
    (folder / "start.tcl").write_text(START)
    command = [*APART, *WINE, str(folder / "check/tcl/bin/tclsh86.exe"), "start.tcl", f"Z:{temporary}", str(loads)]
    return subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            env={"PATH": "/usr/bin:/bin", "VERNOXA_LOCALE": locale})


class CheckTest(unittest.TestCase):
    def judge(self, folder: pathlib.Path, page: str, said: str, status: int) -> None:
        results = folder / "Vernoxa check"
        if status:
            self.fail(f"{status}: {said}, {[path.read_text('utf-8') for path in results.glob('result.txt')]}")
        self.assertIn("<h1>Vernoxa: result of the check</h1>", (results / "result.html").read_text("utf-8"))
        with zipfile.ZipFile(results / "result.zip") as files:
            self.assertIsNone(files.testzip())
            found = {name: files.read(name) for name in files.namelist()}
        self.assertEqual({"result.html", "result.txt", "schLog.txt"}, set(found))
        table = found["result.txt"].decode()
        self.assertIn(f"code page: {'utf-8' if page == '65001' else 'cp' + page}\n", table)
        self.assertIn(f"log: {page}\n", table)
        self.assertGreater(table.count("\tpassed\t"), 20)
        self.assertRegex(table, r"\d loads\tpassed\t\t[1-9]\d\d")
        self.assertEqual(1, table.count("\tnot tried\t"))  # keys
        for name, content in found.items():
            for secret in (text.encode(encoding) for text in (USER, folder.name) for encoding in ("utf-8", "gbk")):
                self.assertNotIn(secret, content, name)
                self.assertNotIn(secret.hex().encode(), content, name)
        self.assertEqual([results], list(folder.iterdir()))  # nothing is left

    def test_everything_passes_in_each_code_page(self) -> None:
        with tempfile.TemporaryDirectory() as place:
            folder = pathlib.Path(place) / "试 用"
            package.make(MODULE, folder / "package.zip")
            unchanged = Unchanged(folder / "package.zip", "bin/|check[/.]", MODULE)
            if unchanged:
                self.skipTest("it passed with the same files")
            with zipfile.ZipFile(folder / "package.zip") as files:
                files.extractall(folder)
            if subprocess.run([*APART, "true"], capture_output=True, check=False).returncode:
                APART.clear()
            running = {}
            for page in PAGES:
                running[page] = begin(folder, pathlib.Path(place) / page / USER, page)
                if not APART:
                    running[page].wait()  # the ports are the same
            for page, process in running.items():
                output, _ = process.communicate()
                with self.subTest(page):
                    said = output.decode("ascii", "replace")
                    self.judge(pathlib.Path(place) / page / USER, page, said, process.returncode)
        if self._outcome and self._outcome.success:
            unchanged.passed()


if __name__ == "__main__":
    unittest.main()
