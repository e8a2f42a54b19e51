"""The check of the arrows between rooms, on a small house."""

import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


class ArrowsTest(unittest.TestCase):
    def check(self, file: str = "base/file.cpp", include: str = "") -> str:
        """What the check says of a house in which `upper` may name `lower` and `base`, `lower` may name `base`."""
        with tempfile.TemporaryDirectory() as folder:
            for room in ("upper", "lower", "base"):
                (pathlib.Path(folder) / room).mkdir()
                for suffix in (".h", ".cpp"):
                    text = f'#include "{room}/own.h"\n#include <string>\n#include <sys/types.h>\nint x;\n'
                    (pathlib.Path(folder) / room / ("file" + suffix)).write_text(text)
            added = pathlib.Path(folder) / file
            added.parent.mkdir(exist_ok=True)
            added.write_text(include + "\nint x;\n")
            run = subprocess.run(["cmake", "-D", f"SOURCES={folder}", "-D", "ARROWS=upper:lower,base;lower:base;base:",
                                  "-P", ROOT / "cmake" / "arrows.cmake"], capture_output=True, text=True, check=False)
            self.assertEqual(run.returncode != 0, "names another" in run.stderr)
            return run.stderr

    def test_only_an_arrow_that_runs_up_fails(self) -> None:
        self.assertEqual(self.check("upper/more.h", '#include "lower/a.h"\n#include "base/b.h"'), "")
        self.assertEqual(self.check("lower/more.cpp", '#include "base/b.h"'), "")
        self.assertIn('base/more.cpp: #include "upper/c.h"', self.check("base/more.cpp", '#include "upper/c.h"'))
        self.assertIn("lower/more.h", self.check("lower/more.h", '#include "upper/c.h"  // with a reason'))

    def test_no_spelling_passes(self) -> None:
        for include in ('#include <upper/c.h>', '# include "upper/c.h"', ' \t#\tinclude  "upper/c.h"',
                        '#include"upper/c.h"', '#include "../upper/c.h"', '#include "base/../upper/c.h"',
                        '#include "./c.h"'):
            self.assertIn("base/more.h", self.check("base/more.h", include), include)
        for file in ("base/rows.inc", "base/inner/file.cpp"):
            self.assertIn(file, self.check(file, '#include "upper/c.h"'))
        self.assertIn("namespace vernoxa {", self.check("base/more.h", "namespace vernoxa {"))
        self.assertEqual(self.check("base/more.h", "namespace vernoxa::inline base {"), "")
        self.assertIn("attic has no entry", self.check("attic/file.h"))


if __name__ == "__main__":
    unittest.main()
