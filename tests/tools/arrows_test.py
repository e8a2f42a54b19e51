"""Rooms of the sources name each other in one direction, which a check of the build sees; and so do the workshop's modules
and the rooms in which they lie."""

import ast
import collections
import graphlib
import importlib.util
import pathlib
import re
import subprocess
import tempfile
import unittest

from vernoxa.places import REPOSITORY

PACKAGE = REPOSITORY / "workshop" / "vernoxa"


class ArrowsTest(unittest.TestCase):
    def check(self, file: str, include: str) -> str:
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
                                  "-P", REPOSITORY / "cmake" / "arrows.cmake"], capture_output=True, text=True, check=False)
            self.assertEqual(run.returncode != 0, "names another" in run.stderr)
            return run.stderr

    def test_only_an_arrow_that_runs_up_fails_in_any_spelling(self) -> None:
        up = '#include "upper/c.h"'
        for file, include, said in (
            ("upper/more.h", '#include "lower/a.h"\n#include "base/b.h"', None),
            ("lower/more.cpp", '#include "base/b.h"', None),
            ("base/more.h", "namespace vernoxa::inline base {", None),
            ("base/more.h", "namespace vernoxa {", "namespace vernoxa {"),
            ("base/more.cpp", up, f"base/more.cpp: {up}"),
            ("lower/more.h", f"{up}  // with a reason", "lower/more.h"),
            ("base/rows.inc", up, "base/rows.inc"),
            ("base/inner/file.cpp", up, "base/inner/file.cpp"),
            ("attic/file.h", "", "attic has no entry"),
            *(("base/more.h", spelling, "base/more.h") for spelling in (
                '#include <upper/c.h>', '# include "upper/c.h"', ' \t#\tinclude  "upper/c.h"', '#include"upper/c.h"',
                '#include "../upper/c.h"', '#include "base/../upper/c.h"', '#include "./c.h"')),
        ):
            with self.subTest(include, file=file):
                self.assertRegex(self.check(file, include), re.escape(said) if said else "^$")


def arrows(package: pathlib.Path) -> dict[str, set[str]]:
    """What each module imports of its own package, wherever in it the import stands. The package's name comes first."""
    names = {".".join(path.relative_to(package.parent).with_suffix("").parts): path for path in package.rglob("*.py")}
    found = {}
    for name, path in names.items():
        imported = set()
        for node in ast.walk(ast.parse(path.read_text("utf-8"))):
            base = ""
            if isinstance(node, ast.ImportFrom):
                base = importlib.util.resolve_name("." * node.level + (node.module or ""), name.rpartition(".")[0])
            if isinstance(node, (ast.Import, ast.ImportFrom)):
                imported |= {base, *(f"{base}.{alias.name}".removeprefix(".") for alias in node.names)}
        found[name] = imported & names.keys() - {name}
    return found


def circle(package: pathlib.Path, parts: int | None) -> list[str]:
    """Modules that name each other in a circle, seen by so many parts of their names; empty when none do."""
    graph: dict[str, set[str]] = collections.defaultdict(set)
    for name, imported in arrows(package).items():
        here, *there = (".".join(each.split(".")[:parts]) for each in (name, *imported))
        graph[here] |= {*there} - {here}
    try:
        graphlib.TopologicalSorter(graph).prepare()
    except graphlib.CycleError as error:
        return error.args[1]
    return []


class ImportsTest(unittest.TestCase):
    def test_there_is_no_circle(self) -> None:
        self.assertIn("vernoxa.wire.frames", arrows(PACKAGE)["vernoxa.companion.server"])
        for parts in (2, None):
            self.assertEqual([], circle(PACKAGE, parts))

    def test_a_circle_is_found(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            package = pathlib.Path(folder) / "house"
            for name, text in (("hall/a", "from .b import x"), ("hall/b", "import house.attic.c"), ("attic/c", ""),
                               ("attic/d", "def late():\n    from house.hall import a")):
                (package / name).parent.mkdir(parents=True, exist_ok=True)
                (package / f"{name}.py").write_text(text)
            self.assertEqual([], circle(package, None))
            self.assertEqual({"house.hall", "house.attic"}, set(circle(package, 2)))
            (package / "attic/c.py").write_text("from ..attic import d")
            self.assertEqual(5, len(circle(package, None)))


if __name__ == "__main__":
    unittest.main()
