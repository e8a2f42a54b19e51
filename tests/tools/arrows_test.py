"""The check of the arrows between rooms, on a small house."""

import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


class ArrowsTest(unittest.TestCase):
    def check(self, **includes: str) -> str:
        """What the check says of a house in which `upper` may name `lower` and `base`, `lower` may name `base`."""
        with tempfile.TemporaryDirectory() as folder:
            for room in ("upper", "lower", "base"):
                (pathlib.Path(folder) / room).mkdir()
                for suffix in (".h", ".cpp"):
                    text = f'#include "{room}/own.h"\n#include <string>\n' + includes.get(room, "") + "int x;\n"
                    (pathlib.Path(folder) / room / ("file" + suffix)).write_text(text)
            run = subprocess.run(["cmake", "-D", f"SOURCES={folder}", "-D", "ARROWS=upper:lower,base;lower:base;base:",
                                  "-P", ROOT / "cmake" / "arrows.cmake"], capture_output=True, text=True, check=False)
            self.assertEqual(run.returncode != 0, "names another" in run.stderr)
            return run.stderr

    def test_only_an_arrow_that_runs_up_fails(self) -> None:
        self.assertEqual(self.check(upper='#include "lower/a.h"\n#include "base/b.h"\n', lower='#include "base/b.h"\n'), "")
        self.assertRegex(self.check(base='#include "upper/c.h"\n'), r'base/file\.(h|cpp): #include "upper/c\.h"')
        self.assertIn("lower/file.cpp", self.check(lower='#include "upper/c.h"  // with a reason\n'))
        self.assertIn("upper/file.h", self.check(upper='#include "elsewhere/c.h"\n'))


if __name__ == "__main__":
    unittest.main()
