"""Rooms of the sources name each other in one direction, which a check of the build sees; and so do those of the
workshop."""

import pathlib
import re
import subprocess
import tempfile
import unittest

from vernoxa.places import REPOSITORY

PACKAGE = REPOSITORY / "workshop" / "vernoxa"
ROOMS = ["__init__", "command", "places", "drawings", "wire", "check", "companion", "report", "stage", "demo", "host",
         "own_report", "play", "replay", "trust", "dist", "docs"]


class ArrowsTest(unittest.TestCase):
    def check(self, file: str, text: str) -> str:
        """What the check says of a house in which `upper` may name `lower` and `base`, `lower` may name `base`."""
        with tempfile.TemporaryDirectory() as folder:
            for room in ("upper", "lower", "base"):
                (pathlib.Path(folder) / room).mkdir()
            added = pathlib.Path(folder) / file
            added.parent.mkdir(exist_ok=True)
            added.write_text(text + "\nint x;\n")
            run = subprocess.run(["cmake", "-D", f"SOURCES={folder}", "-D", "ARROWS=upper:lower,base;lower:base;base:",
                                  "-P", REPOSITORY / "cmake" / "arrows.cmake"], capture_output=True, text=True, check=False)
            self.assertEqual(run.returncode != 0, "names another" in run.stderr)
            return run.stderr

    def test_only_an_arrow_that_runs_up_fails_in_any_spelling(self) -> None:
        up = '#include "upper/c.h"'
        for file, text, said in (
            ("upper/more.h", '#include "lower/a.h"\n#include "base/b.h"\n#include <string>\n#include <sys/types.h>', None),
            ("lower/more.cpp", '#include "lower/own.h"\n#include "base/b.h"', None),
            ("base/more.h", "namespace vernoxa::inline base {", None),
            ("base/more.h", "namespace vernoxa {", "namespace vernoxa {"),
            ("base/more.cpp", up, f"base/more.cpp: {up}"),
            ("lower/more.h", f"{up}  // with a reason", "lower/more.h"),
            ("base/rows.inc", up, "base/rows.inc"),
            ("base/inner/file.cpp", up, "base/inner/file.cpp"),
            ("attic/file.h", "", "attic has no entry"),
            *(("base/more.h", spelling, "base/more.h") for spelling in (
                '#include <upper/c.h>', ' \t#\tinclude  "upper/c.h"', '#include"upper/c.h"',
                '#include "../upper/c.h"', '#include "base/../upper/c.h"', '#include "./c.h"')),
        ):
            with self.subTest(text, file=file):
                self.assertRegex(self.check(file, text), re.escape(said) if said else "^$")


class WorkshopTest(unittest.TestCase):
    def test_rooms_of_the_workshop_name_only_those_before_them(self) -> None:
        wrong, seen = [], 0
        for path in PACKAGE.rglob("*.py"):
            room = path.relative_to(PACKAGE).with_suffix("").parts[0]
            text = path.read_text("utf-8")
            for named in re.findall(r"^\s*(?:from|import) (?:vernoxa(?:\.| import )|\.\.)(\w+)", text, re.M):
                seen += 1
                if ROOMS.index(named) > ROOMS.index(room):
                    wrong.append(f"{path.relative_to(PACKAGE)} names {named}")
        self.assertEqual([], wrong)
        self.assertGreater(seen, 100)


if __name__ == "__main__":
    unittest.main()
