"""Page files of a drawing export: one page each, JSON in UTF-8, named SCHEMATIC@!@PAGE@!@KEY.json."""

from __future__ import annotations

import dataclasses
import itertools
import json
import pathlib
import re
from typing import Any, Iterator

# What stands in names of files for characters that Windows forbids there.
_MARKERS = {
    "[;fanxiegan;]": "\\", "[;xiegan;]": "/", "[;maohao;]": ":", "[;xinghao;]": "*", "[;wenhao;]": "?",
    "[;yinhao;]": '"', "[;xiaoyuhao;]": "<", "[;dayuhao;]": ">", "[;shugan;]": "|",
}
_MARKER = re.compile("|".join(map(re.escape, _MARKERS)))
_PLACE = re.compile(r"translate\(\s*(-?[\d.]+)[\s,]+(-?[\d.]+)")


@dataclasses.dataclass
class Page:
    schematic: str
    name: str
    key: str
    width: float
    height: float
    symbols: dict[str, list[dict]]  # name to elements
    elements: list[dict]
    document: dict  # all of it, as it is in the file

    @property
    def parts(self) -> list[str]:
        return [reference for reference, *_ in placed(self.document)]

    @property
    def texts(self) -> list[str]:
        return [element["value"] for element in self.elements if element["name"] == "text"]

    @property
    def undefined(self) -> list[str]:
        """Symbols that are used and not there."""
        used = {element["attr"]["xlink:href"].removeprefix("#") for element in self.elements if element["name"] == "use"}
        return sorted(used - self.symbols.keys() - {""})  # a pin without a length uses ""


def plain(text: str) -> str:
    """A name without the markers."""
    return _MARKER.sub(lambda found: _MARKERS[found[0]], text)


def read(path: pathlib.Path) -> Page:
    """Raises OSError, or ValueError for a file that is no page."""
    try:
        document = json.loads(path.read_text(encoding="utf-8"))
        *definitions, group = document["children"]
        symbols: dict[str, list[dict]] = {}
        for symbol in (symbol for definition in definitions for symbol in definition["children"]):
            symbols.setdefault(symbol["attr"]["id"], symbol["children"])
        for element in itertools.chain(group["children"], *symbols.values()):
            element["name"], element["attr"].keys()  # every element has both
        schematic, _, rest = plain(path.name.removesuffix(".json")).partition("@!@")
        return Page(schematic, group["attr"]["id"], rest.rpartition("@!@")[2], _length(document.get("width")),
                    _length(document.get("height")), symbols, group["children"], document)
    except (ValueError, KeyError, TypeError, AttributeError) as error:
        raise ValueError(f"{path.name} is not a page: {error!r}") from error


def read_all(folder: pathlib.Path) -> list[Page]:
    """In the order of their keys. Raises OSError, ValueError."""
    return sorted(map(read, folder.glob("*.json")), key=lambda page: (_natural(page.key), page.name))


def placed(document: dict[str, Any]) -> list[tuple[str, float, float]]:
    """The parts that a page shows, with where they are; 0, 0 for what cannot be read."""
    return [(element["attr"]["id"], *_place(element["attr"].get("transform"))) for element in _drawn(document)
            if element.get("name") == "use" and (element.get("attr") or {}).get("id")]


def _drawn(element: dict[str, Any]) -> Iterator[dict[str, Any]]:
    for child in element.get("children") or []:
        if child.get("name") != "defs":
            yield child
            yield from _drawn(child)


def _place(transform: str | None) -> tuple[float, float]:
    found = _PLACE.search(transform or "")
    try:
        return (float(found[1]), float(found[2])) if found else (0, 0)
    except ValueError:
        return 0, 0


def _natural(text: str) -> list[tuple[int, str]]:
    return [(int(number or 0), letters) for letters, number in re.findall(r"(\D*)(\d*)", text)]


def _length(text: str | None) -> float:
    """A page without a usable size is shown on a square."""
    try:
        length = float(text or "")
    except ValueError:
        return 1000.0
    return length if 0 < length < 1e9 else 1000.0
