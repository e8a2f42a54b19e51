"""The report: one file that opens anywhere, made of the page's bundle and of what was collected of a design.

What was collected is embedded as JSON, each page's drawing by itself: those of a large design are read when they are
needed. In their place stand the parts that they show, [[reference, x, y]...].
"""

from __future__ import annotations

import html
import json
import pathlib
import re

HERE = pathlib.Path(__file__).resolve().parent
REPOSITORY = HERE.parents[1]
BUNDLE = REPOSITORY / "build" / "report"
_PLACE = re.compile(r"translate\(\s*(-?[\d.]+)[\s,]+(-?[\d.]+)")


class NotBuilt(RuntimeError):
    """The page's bundle is not there."""


def write(target: pathlib.Path, design: dict, bundle: pathlib.Path = BUNDLE) -> None:
    """`design` as collect.collect gives it. Raises NotBuilt, OSError."""
    try:
        styles = (bundle / "report.css").read_text(encoding="utf-8")
        script = (bundle / "report.js").read_text(encoding="utf-8")
        licences = (bundle / "licences.txt").read_text(encoding="utf-8")
    except FileNotFoundError as error:
        raise NotBuilt(f"{error.filename} is not there: ./dev demo makes it") from error
    template = (HERE / "page" / "template.html").read_text(encoding="utf-8")
    pages = [page | {"drawing": None, "parts": parts_of(page["drawing"])} for page in design["pages"]]
    drawings = [f'<script type="application/json" data-drawing>{_json(page["drawing"])}</script>' for page in design["pages"]]
    pieces = {
        # Nothing in them may end the element that holds them.
        "/* styles */": styles.replace("</", "<\\/"),
        "/* licences */": html.escape(licences),
        "/* design */": _json(design | {"pages": pages}),
        "<!-- drawings -->": "\n".join(drawings),
        "/* script */": script.replace("</script", "<\\/script"),
    }
    page = []
    rest = template
    for mark, text in pieces.items():
        before, _, rest = rest.partition(mark)
        page += [before, text]
    target.write_text("".join([*page, rest]), encoding="utf-8", newline="\n")


def _json(value: object) -> str:
    return json.dumps(value, ensure_ascii=False, separators=(",", ":")).replace("<", "\\u003c")


def parts_of(drawing: dict) -> list[list]:
    """The parts that a page places, with where they are; 0, 0 for what cannot be read."""
    found = []
    for element in drawing.get("children") or []:
        if element.get("name") == "defs":
            continue
        attributes = element.get("attr") or {}
        if element.get("name") == "use" and attributes.get("id"):
            place = _PLACE.search(attributes.get("transform") or "")
            try:
                found.append([attributes["id"], *(float(number) for number in place.groups())] if place else [attributes["id"], 0, 0])
            except ValueError:
                found.append([attributes["id"], 0, 0])
        found += parts_of(element)
    return found
