"""Schematics read without the stand-in host's reader, and what that one reads in them: for tests that compare both."""

import collections
import pathlib
import re
import subprocess

PRINTER = pathlib.Path(__file__).resolve().parents[1] / "sim_host" / "print_designs.tcl"
DEMOS = pathlib.Path("/usr/share/kicad/demos")
TOKEN = re.compile(r'"(?:[^"\\]|\\.)*"|[()]|[^\s()"]+')


def parse(text: str) -> list:
    """An S-expression as nested lists of words; strings keep their quotes."""
    stack = [[]]
    for token in TOKEN.findall(text):
        if token == "(":
            stack.append([])
        elif token == ")":
            stack[-2].append(stack.pop())
        else:
            stack[-1].append(token)
    return stack[0][0]


def inside(node: list, name: str) -> list[list]:
    return [item for item in node if isinstance(item, list) and item[0] == name]


def word(node: list, name: str, default: str = "") -> str:
    found = inside(node, name)
    return found[0][1].strip('"') if found and len(found[0]) > 1 else default


def field(node: list, name: str) -> str:
    return next((item[2].strip('"') for item in inside(node, "property") if item[1] == f'"{name}"'), "")


def sheet_file(sheet: list) -> str:
    """KiCad 6 named the field in its user's language."""
    return next(item[2].strip('"') for item in inside(sheet, "property") if item[2].endswith('.kicad_sch"'))


def roots(folder: pathlib.Path) -> list[pathlib.Path]:
    """The schematics of the projects below a folder."""
    found = (path.with_suffix(".kicad_sch") for path in folder.rglob("*.kicad_pro"))
    return sorted(path for path in found if path.is_file())


class Counted:
    """What a design holds, counted without looking at what joins its pins. Symbols that only name nets do not count."""

    def __init__(self, root: pathlib.Path):
        self.pages = 0
        self.units: collections.Counter[tuple] = collections.Counter()  # reference, unit, in the bill, fitted
        self.pins: collections.Counter[tuple] = collections.Counter()  # reference, number
        self._files: dict[pathlib.Path, list] = {}
        top = self._file(root)
        self._uuid = "/" + word(top, "uuid")
        self._called = {item[1].strip('"'): (word(item, "reference"), word(item, "unit"))
                        for table in inside(top, "symbol_instances") for item in inside(table, "path")}
        self._page(root, "", True, True)

    def _file(self, path: pathlib.Path) -> list:
        if path not in self._files:
            self._files[path] = parse(path.read_text("utf-8"))
        return self._files[path]

    def _name(self, symbol: list, path: str) -> tuple[str, str]:
        for entry in (entry for item in inside(symbol, "instances") for project in inside(item, "project")
                      for entry in inside(project, "path")):
            if entry[1] == f'"{self._uuid}{path}"':
                return word(entry, "reference"), word(entry, "unit")
        fields = field(symbol, "Reference"), word(symbol, "unit", "1")
        return self._called.get(f"{path}/{word(symbol, 'uuid')}", fields)

    def _page(self, path: pathlib.Path, place: str, in_bom: bool, fitted: bool) -> None:
        self.pages += 1
        sheet = self._file(path)
        library = {symbol[1].strip('"'): symbol
                   for held in inside(sheet, "lib_symbols") for symbol in inside(held, "symbol")}
        for symbol in inside(sheet, "symbol"):
            reference, unit = self._name(symbol, place)
            drawn = library[word(symbol, "lib_name") or word(symbol, "lib_id")]
            if reference.startswith("#") or inside(drawn, "power"):
                continue
            mark = word(symbol, "dnp", "no" if field(symbol, "DNP").lower() in ("", "0", "no", "false") else "yes")
            self.units[reference, unit, in_bom and word(symbol, "in_bom", "yes") == "yes",
                       fitted and mark == "no"] += 1
            drawn_style = word(symbol, "body_style", word(symbol, "convert", "1"))
            for body in inside(drawn, "symbol"):
                of_unit, style = body[1].strip('"').split("_")[-2:]
                if of_unit in ("0", unit) and style in ("0", drawn_style):
                    self.pins.update((reference, word(pin, "number").replace("~", "")) for pin in inside(body, "pin"))
        for child in inside(sheet, "sheet"):
            self._page((path.parent / sheet_file(child)).resolve(), f"{place}/{word(child, 'uuid')}",
                       in_bom and word(child, "in_bom", "yes") == "yes", fitted and word(child, "dnp", "no") == "no")


def read_all(designs: list[pathlib.Path]) -> dict[pathlib.Path, dict[str, collections.Counter[tuple]]]:
    """What the stand-in host reads in each, as the rows that print_designs.tcl prints by their kind."""
    run = subprocess.run(["tclsh8.6", PRINTER, *designs], check=True, capture_output=True, text=True)
    read: dict[pathlib.Path, dict] = {}
    for kind, *fields in (line.split("\t") for line in run.stdout.splitlines()):
        if kind == "design":
            rows = read[pathlib.Path(fields[0])] = collections.defaultdict(collections.Counter)
        else:
            rows[kind][tuple(fields)] += 1
    return read


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
