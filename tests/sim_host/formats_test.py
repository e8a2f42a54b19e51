"""One design in the formats of KiCad 6, 7, 8 and 9 gives the same pages, parts, bill, pins and nets."""

import collections
import pathlib
import re
import tempfile
import unittest

from schematics import inside, parse, read_all, sheet_file, word

ROOT = pathlib.Path(__file__).resolve().parents[2] / "sim" / "designs" / "microphone" / "microphone.kicad_sch"
VERSIONS = {7: "20230121", 8: "20231120", 9: "20250114"}


class Rewriter:
    """Rewrites a design of KiCad 6 in the way of a later version; what differs between the versions stands here."""

    def __init__(self, root: pathlib.Path, target: int):
        self._target = target
        self._project = f'"{root.stem}"'
        top = parse(root.read_text("utf-8"))
        self._root = "/" + word(top, "uuid")
        self._called = {entry[1].strip('"'): entry for entry in inside(inside(top, "symbol_instances")[0], "path")}
        self._pages = {entry[1].strip('"'): word(entry, "page")
                       for entry in inside(inside(top, "sheet_instances")[0], "path")}
        self.files: dict[str, str] = {}
        for name, paths in self._places(root, "").items():
            top = parse((root.parent / name).read_text("utf-8"))
            self.files[name] = to_text(self._file(top, name == root.name, paths))

    def _places(self, file: pathlib.Path, path: str) -> dict[str, list[str]]:
        """The paths at which each file is used, below the root."""
        places = {file.name: [path]}
        for sheet in inside(parse(file.read_text("utf-8")), "sheet"):
            below = self._places(file.parent / sheet_file(sheet), f"{path}/{word(sheet, 'uuid')}")
            for name, paths in below.items():
                places.setdefault(name, []).extend(paths)
        return places

    def _file(self, top: list, is_root: bool, paths: list[str]) -> list:
        items = []
        for item in top[1:]:
            kind = item[0]
            if kind == "version":
                item = ["version", VERSIONS[self._target]]
            elif kind == "symbol":
                item = self._symbol(item, paths)
            elif kind == "sheet":
                item = self._sheet(item, paths)
            elif kind == "symbol_instances" or (kind == "sheet_instances" and not is_root):
                continue
            elif kind == "sheet_instances":
                item = [kind, ["path", '"/"', ["page", '"1"']]]
            items.append(self._everywhere(item))
        if self._target >= 8:
            items.insert(2, ["generator_version", f'"{self._target}.0"'])
        if self._target >= 9:
            items.append(["embedded_fonts", "no"])
        return ["kicad_sch", *items]

    def _instances(self, entries: list[list]) -> list:
        return ["instances", ["project", self._project, *entries]]

    def _symbol(self, symbol: list, paths: list[str]) -> list:
        """References move to the symbol, value and footprint are one for all, and a mark takes the field's place."""
        keys = [f"{path}/{word(symbol, 'uuid')}" for path in paths]
        called = [self._called[key] for key in keys]
        entries = [["path", f'"{self._root}{path}"', *inside(entry, "reference"), *inside(entry, "unit")]
                   for path, entry in zip(paths, called)]
        fitted = True
        items = []
        for item in symbol:
            if item[0] == "property":
                if item[1] == '"DNP"':
                    fitted = False
                    continue
                for name in ("value", "footprint"):
                    if item[1] == f'"{name.title()}"' and word(called[0], name):
                        item = [*item[:2], f'"{word(called[0], name)}"', *item[3:]]
            items.append(item)
        after = next(place for place, item in enumerate(items) if item[0] == "uuid")
        items.insert(after, ["dnp", "no" if fitted else "yes"])
        if self._target >= 8:
            items.insert(after, ["exclude_from_sim", "no"])
        return items + [self._instances(entries)]

    def _sheet(self, sheet: list, paths: list[str]) -> list:
        names = iter(['"Sheetname"', '"Sheetfile"'])
        items = [[item[0], next(names, item[1]), *item[2:]] if item[0] == "property" else item for item in sheet]
        if self._target >= 9:
            items[3:3] = [["exclude_from_sim", "no"], ["in_bom", "yes"], ["on_board", "yes"], ["dnp", "no"]]
        uuid = word(sheet, "uuid")
        pages = [["path", f'"{self._root}{path}"', ["page", f'"{self._pages[f"{path}/{uuid}"]}"']] for path in paths]
        return items + [self._instances(pages)]

    def _everywhere(self, node: list) -> list:
        """Numbers of fields go; later words in quotes, and `hide` in lists of its own."""
        kind = node[0]
        node = [self._everywhere(item) if isinstance(item, list) else item for item in node
                if not (kind == "property" and item[0] == "id")]
        if self._target >= 8:
            if kind in ("uuid", "generator"):
                node = [kind, '"' + node[1].strip('"') + '"']
            if kind == "fields_autoplaced":
                node = [kind, "yes"]
        if self._target >= 9 or (self._target == 8 and kind == "effects"):
            node = [["hide", "yes"] if item == "hide" and place else item for place, item in enumerate(node)]
        return node


def to_text(node: object) -> str:
    return "(" + " ".join(map(to_text, node)) + ")" if isinstance(node, list) else node


class FormatsTest(unittest.TestCase):
    maxDiff = None

    def test_each_version_reads_alike(self):
        # In KiCad 6's way the root says the values, whatever the symbols hold.
        stale = {path.name: re.sub('"Value" "[^"]*"', '"Value" "stale"', path.read_text("utf-8"))
                 for path in ROOT.parent.glob("*.kicad_sch")}
        designs = {6: stale, **{version: Rewriter(ROOT, version).files for version in VERSIONS}}
        folders = [pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())) for _ in designs]
        for folder, files in zip(folders, designs.values()):
            for name, text in files.items():
                (folder / name).write_text(text, "utf-8")
        said, *others = read_all([ROOT, *(folder / ROOT.name for folder in folders)]).values()
        self.assertNotIn("note", said)
        # The mark that took its place has no name and no text.
        said["field"] = collections.Counter({row: count for row, count in said["field"].items() if row[1] != "DNP"})
        self.assertGreater(said["pin"].total(), 100)
        self.assertGreater(said["field"].total(), 500)
        for version, other in zip(designs, others):
            with self.subTest(f"KiCad {version}"):
                if version == 6:
                    self.assertNotIn("stale", str(other))
                else:
                    self.assertEqual(said, other)


if __name__ == "__main__":
    unittest.main()
