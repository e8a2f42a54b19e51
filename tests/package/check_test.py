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
USER = "SecretUser"


def begin(folder: pathlib.Path, temporary: pathlib.Path, page: str) -> subprocess.Popen[bytes]:
    """Starts it as a user would, whose folder for temporary files is another one."""
    locale, loads = PAGES[page]
    temporary.mkdir(parents=True)
    script = folder / f"in-{page}.cmd"
    windows = str(temporary).replace("/", "\\")
    script.write_text(f'@set "TEMP=Z:{windows}"\n@call check.cmd /quiet -loads {loads}\n', newline="\r\n")
    return subprocess.Popen([*APART, *WINE, "cmd", "/c", script.name], cwd=folder, stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            env={"PATH": "/usr/bin:/bin", "VERNOXA_LOCALE": locale})


class CheckTest(unittest.TestCase):
    maxDiff = None

    def judge(self, folder: pathlib.Path, page: str, said: str, status: int) -> None:
        self.assertEqual(status, 0, said)
        self.assertIn("All passed.", said)
        results = folder / "Vernoxa check"
        self.assertIn("<h1>Vernoxa: result of the check</h1>", (results / "result.html").read_text("utf-8"))
        with zipfile.ZipFile(results / "result.zip") as files:
            self.assertIsNone(files.testzip())
            found = {name: files.read(name) for name in files.namelist()}
        self.assertEqual({"result.html", "result.txt", "schLog.txt"}, set(found))
        table = found["result.txt"].decode()
        self.assertIn(f"code page: {'utf-8' if page == '65001' else 'cp' + page}\n", table)
        self.assertIn(f"log: {{GetACP {page}}}\n", table)
        self.assertGreater(table.count("\tpassed\t"), 20)
        self.assertEqual(1, table.count("\tnot tried\t"))  # keys
        for name, content in found.items():
            for text in (USER, folder.name):
                self.assertNotIn(text.encode(), content, name)
                self.assertNotIn(text.encode().hex().encode(), content, name)
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
            places = {page: pathlib.Path(place) / page / USER for page in PAGES}
            running = {}
            for page, temporary in places.items():
                running[page] = begin(folder, temporary, page)
                if not APART:
                    running[page].wait()  # the ports are the same
            for page, process in running.items():
                output, _ = process.communicate()
                with self.subTest(page):
                    self.judge(places[page], page, output.decode("ascii", "replace"), process.returncode)
        if self._outcome and self._outcome.success:
            unchanged.passed()


if __name__ == "__main__":
    unittest.main()
