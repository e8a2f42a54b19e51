"""The page files that an export leaves: what is on each page, and the pictures of them."""

from __future__ import annotations

import dataclasses
import json
import pathlib
import shutil
import subprocess
import sys

_VIEW = pathlib.Path(__file__).resolve().parents[2] / "tools" / "drawing-view" / "drawing_view.py"


@dataclasses.dataclass
class Page:
    name: str
    parts: list[str]
    texts: list[str]
    undefined: list[str]  # symbols that are used and not there


def read(folder: pathlib.Path) -> dict[str, Page]:
    """The pages of all files in a folder, by name. Raises OSError or ValueError for files that are none."""
    pages = {}
    for file in sorted(folder.glob("*.json")):
        page = _page(json.loads(file.read_text(encoding="utf-8")))
        pages[page.name] = page
    return pages


def _page(document: dict) -> Page:
    defined, uses, texts = set(), [], []
    name = ""
    for element in document["children"]:
        if element["name"] == "defs":
            defined |= {symbol["attr"]["id"] for symbol in element["children"]}
            continue
        name = element["attr"]["id"]
        uses += [child["attr"] for child in element["children"] if child["name"] == "use"]
        texts += [child["value"] for child in element["children"] if child["name"] == "text"]
    undefined = sorted({use["xlink:href"].removeprefix("#") for use in uses} - defined)
    return Page(name, [use["id"] for use in uses if use.get("id")], texts, undefined)


class NotShown(RuntimeError):
    """There is no web page with the pictures; the text says why."""


def show(folder: pathlib.Path, out: pathlib.Path) -> pathlib.Path:
    """Keeps the page files in `out` and gives the web page with the pictures of all of them. Raises NotShown."""
    shutil.rmtree(out, ignore_errors=True)
    shutil.copytree(folder, out / "pages")
    command = [sys.executable, str(_VIEW), str(folder), "-o", str(out)]
    ended = subprocess.run(command, capture_output=True, encoding="utf-8", errors="replace")
    page = out / "index.html"
    if ended.returncode != 0 or not page.is_file():
        raise NotShown(ended.stderr[-400:] or f"{page} was not made")
    return page
