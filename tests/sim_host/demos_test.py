"""Every design that KiCad's demos bring is read whole: against counts made here from the same files, and against the
nets of the boards that KiCad made of them. Another folder of designs: demos_test.py FOLDER"""

import collections
import pathlib
import re
import subprocess
import sys
import unittest

HERE = pathlib.Path(__file__).resolve().parent
FOLDER = pathlib.Path("/usr/share/kicad/demos")
TOKEN = re.compile(r'"((?:[^"\\]|\\.)*)"|([()])|([^\s()"]+)')


def parse(path: pathlib.Path) -> list:
    """An S-expression as nested lists of strings."""
    stack = [[]]
    for string, bracket, word in TOKEN.findall(path.read_text("utf-8")):
        if bracket == "(":
            stack.append([])
        elif bracket == ")":
            stack[-2].append(stack.pop())
        else:
            stack[-1].append(word or string)
    return stack[0][0]


def inside(node: list, name: str) -> list[list]:
    return [item for item in node if isinstance(item, list) and item[0] == name]


def word(node: list, name: str, default: str = "") -> str:
    found = inside(node, name)
    return found[0][1] if found and len(found[0]) > 1 else default


def field(node: list, name: str) -> str:
    return next((item[2] for item in inside(node, "property") if item[1] == name), "")


class Counted:
    """What a design holds, counted without looking at what joins its pins."""

    def __init__(self, root: pathlib.Path):
        self.pages = 0
        self.units: collections.Counter[tuple] = collections.Counter()  # reference, unit, in the bill, fitted
        self.pins: collections.Counter[tuple] = collections.Counter()  # reference, number
        self._files: dict[pathlib.Path, list] = {}
        top = self._file(root)
        self._uuid = "/" + word(top, "uuid")
        self._called = {item[1]: (word(item, "reference"), word(item, "unit")) for table in inside(top, "symbol_instances")
                        for item in inside(table, "path")}
        self._page(root, "", True, True)

    def _file(self, path: pathlib.Path) -> list:
        if path not in self._files:
            self._files[path] = parse(path)
        return self._files[path]

    def _name(self, symbol: list, path: str) -> tuple[str, str]:
        for entry in (entry for item in inside(symbol, "instances") for project in inside(item, "project")
                      for entry in inside(project, "path")):
            if entry[1] == self._uuid + path:
                return word(entry, "reference"), word(entry, "unit")
        return self._called.get(f"{path}/{word(symbol, 'uuid')}", (field(symbol, "Reference"), word(symbol, "unit", "1")))

    def _page(self, path: pathlib.Path, place: str, in_bom: bool, fitted: bool) -> None:
        self.pages += 1
        sheet = self._file(path)
        library = {symbol[1]: symbol for symbol in inside(inside(sheet, "lib_symbols")[0], "symbol")} \
            if inside(sheet, "lib_symbols") else {}
        for symbol in inside(sheet, "symbol"):
            reference, unit = self._name(symbol, place)
            drawn = library[word(symbol, "lib_name") or word(symbol, "lib_id")]
            if reference.startswith("#") or inside(drawn, "power"):
                continue
            self.units[reference, unit, in_bom and word(symbol, "in_bom", "yes") == "yes",
                       fitted and word(symbol, "dnp", "no") == "no"] += 1
            for body in inside(drawn, "symbol"):
                of_unit, style = body[1].split("_")[-2:]
                if of_unit in ("0", unit) and style in ("0", word(symbol, "convert", "1")):
                    self.pins.update((reference, word(pin, "number").replace("~", "")) for pin in inside(body, "pin"))
        for child in inside(sheet, "sheet"):
            file = next(item[2] for item in inside(child, "property") if item[2].endswith(".kicad_sch"))
            self._page((path.parent / file).resolve(), f"{place}/{word(child, 'uuid')}",
                       in_bom and word(child, "in_bom", "yes") == "yes", fitted and word(child, "dnp", "no") == "no")


class Read:
    """The same as the stand-in host reads it."""

    def __init__(self):
        self.pages = 0
        self.units: collections.Counter[tuple] = collections.Counter()
        self.pins: collections.Counter[tuple] = collections.Counter()
        self.nets: dict[tuple, str] = {}

    def take(self, kind: str, *fields: str) -> None:
        if kind == "page":
            self.pages += 1
        elif kind == "part":
            reference, unit, _, _, in_bom, fitted, _ = fields
            self.units[reference, unit, in_bom == "1", fitted == "1"] += 1
        elif kind == "pin":
            reference, number, _, net = fields
            self.pins[reference, number] += 1
            self.nets[reference, number] = net


def read_all(roots: list[pathlib.Path]) -> dict[pathlib.Path, Read]:
    text = subprocess.run(["tclsh8.6", HERE / "print_designs.tcl", *roots], check=True, capture_output=True, text=True).stdout
    designs: dict[pathlib.Path, Read] = {}
    for line in text.splitlines():
        kind, *fields = line.split("\t")
        if kind == "design":
            design = designs[pathlib.Path(fields[0])] = Read()
        else:
            design.take(kind, *fields)
    return designs


def board_nets(board: pathlib.Path) -> dict[tuple, str]:
    """The net of each pad."""
    nets, reference, pad = {}, "", None
    tokens = re.compile(r'\((footprint) |(?:"Reference"|\(fp_text reference) "([^"]*)"|\(pad "([^"]*)"'
                        r'|\(net \d+ "((?:[^"\\]|\\.)*)"\)')
    for found in tokens.finditer(board.read_text("utf-8")):
        footprint, named, number, net = found.groups()
        if footprint:
            reference = pad = None
        elif named is not None:
            reference = named
        elif number is not None:
            pad = number
        elif pad is not None:
            nets[reference, pad] = net
            pad = None
    return nets


def joined(nets: dict[tuple, str], pins: set[tuple]) -> set[frozenset]:
    """The sets of two pins or more that a net joins."""
    members = collections.defaultdict(set)
    for pin in pins:
        members[nets[pin]].add(pin)
    return {frozenset(net) for name, net in members.items() if name and len(net) > 1}


class DemosTest(unittest.TestCase):
    def test_parts_pins_pages_and_nets(self):
        roots = sorted(path.with_suffix(".kicad_sch") for path in FOLDER.rglob("*.kicad_pro")
                       if path.with_suffix(".kicad_sch").is_file())
        if not roots:
            self.skipTest(f"no designs in {FOLDER}")
        for root, read in read_all(roots).items():
            with self.subTest(root.relative_to(FOLDER)):
                counted = Counted(root)
                self.assertEqual(read.pages, counted.pages)
                self.assertEqual(read.units, counted.units)
                self.assertEqual(read.pins, counted.pins)
                board = root.with_suffix(".kicad_pcb")
                if board.is_file():
                    nets = board_nets(board)
                    pads = nets.keys() & read.nets.keys()
                    self.assertGreater(len(pads), 0.8 * len(read.nets))
                    self.assertEqual(joined(read.nets, pads), joined(nets, pads))


if __name__ == "__main__":
    if sys.argv[1:]:
        FOLDER = pathlib.Path(sys.argv.pop())
    unittest.main()
