"""The workshop's modules, and the rooms in which they lie, name each other in one direction."""

import ast
import collections
import graphlib
import importlib.util
import pathlib
import tempfile
import unittest

import vernoxa

PACKAGE = pathlib.Path(vernoxa.__file__).parent


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
