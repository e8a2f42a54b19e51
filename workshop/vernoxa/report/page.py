"""The report: one file that opens anywhere, made of the page's bundle and of what was collected of a design.

What was collected is embedded as JSON, each page's drawing by itself: those of a large design are read when they are
needed. In their place stand the parts that they show, [[reference, x, y]...].
"""

from __future__ import annotations

import html
import json
import pathlib
import sys

from vernoxa.command import DONE, Refused, run
from vernoxa.drawings.page_file import placed
from vernoxa.places import BUILD

BUNDLE = BUILD / "report"


class NotBuilt(Refused):
    """The page's bundle is not there."""


def write(target: pathlib.Path, design: dict, bundle: pathlib.Path = BUNDLE) -> None:
    """`design` as collect.collect gives it. Raises NotBuilt, OSError."""
    try:
        styles = (bundle / "report.css").read_text(encoding="utf-8")
        script = (bundle / "report.js").read_text(encoding="utf-8")
        licences = (bundle / "licences.txt").read_text(encoding="utf-8")
        template = (bundle / "template.html").read_text(encoding="utf-8")
    except FileNotFoundError as error:
        raise NotBuilt(f"{error.filename} is not there: ./dev demo makes it") from error
    pages = [page | {"drawing": None, "parts": placed(page["drawing"])} for page in design["pages"]]
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


def main() -> int:
    if len(sys.argv) != 3:
        raise Refused("it takes a design that was collected, and the file of the report: DESIGN.json REPORT.html")
    try:
        design = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    except ValueError as error:
        raise Refused(f"{sys.argv[1]} is not a design that was collected: {error}") from error
    write(pathlib.Path(sys.argv[2]), design)
    return DONE


if __name__ == "__main__":
    run("report", main)
