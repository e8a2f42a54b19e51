"""The report: one file that opens anywhere, made of the page's bundle and of what was collected of a design."""

from __future__ import annotations

import html
import json
import pathlib

HERE = pathlib.Path(__file__).resolve().parent
REPOSITORY = HERE.parents[1]
BUNDLE = REPOSITORY / "build" / "report"


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
    pieces = {
        # Nothing in them may end the element that holds them.
        "/* styles */": styles.replace("</", "<\\/"),
        "/* licences */": html.escape(licences),
        "/* design */": json.dumps(design, ensure_ascii=False, separators=(",", ":")).replace("<", "\\u003c"),
        "/* script */": script.replace("</script", "<\\/script"),
    }
    page = []
    rest = template
    for mark, text in pieces.items():
        before, _, rest = rest.partition(mark)
        page += [before, text]
    target.write_text("".join([*page, rest]), encoding="utf-8", newline="\n")
