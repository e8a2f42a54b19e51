"""Page files of a drawing export: one page each, JSON in UTF-8."""

import dataclasses
import json
import pathlib

# What stands in file names for characters that Windows forbids there.
_MARKERS = {
    "[;fanxiegan;]": "\\", "[;xiegan;]": "/", "[;maohao;]": ":", "[;xinghao;]": "*", "[;wenhao;]": "?",
    "[;yinhao;]": '"', "[;xiaoyuhao;]": "<", "[;dayuhao;]": ">", "[;shugan;]": "|",
}


@dataclasses.dataclass
class Page:
    file: pathlib.Path
    schematic: str
    name: str
    width: float
    height: float
    symbols: dict[str, list[dict]]  # name to elements
    elements: list[dict]


def read(path: pathlib.Path) -> Page:
    """Raises OSError, or ValueError for a file that is no page."""
    try:
        document = json.loads(path.read_text(encoding="utf-8"))
        *definitions, group = document["children"]
        symbols = {}
        for definition in definitions:
            for symbol in definition["children"]:
                symbols.setdefault(symbol["attr"]["id"], symbol["children"])
        return Page(path, _schematic_of(path), group["attr"]["id"], _length(document["width"]),
                    _length(document["height"]), symbols, group["children"])
    except (KeyError, TypeError, AttributeError) as error:
        raise ValueError(f"not a page: {error!r}") from error


def _schematic_of(path: pathlib.Path) -> str:
    name = path.stem.split("@!@")[0]
    for marker, character in _MARKERS.items():
        name = name.replace(marker, character)
    return name


def _length(text: str) -> float:
    """A page without a usable size is shown on a square."""
    try:
        length = float(text)
    except ValueError:
        return 1000.0
    return length if 0 < length < 1e9 else 1000.0
