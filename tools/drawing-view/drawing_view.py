#!/usr/bin/env python3
"""Makes pictures of exported pages: drawing_view.py FOLDER -o OUT

Each page file of FOLDER becomes an SVG file in OUT, and all of them one web page, OUT/index.html, that needs nothing
else. A symbol that a page uses and nobody defined is a marked box, and is counted. Files that are no pages are named,
and make the exit status 1.
"""

import argparse
import html
import pathlib
import sys

import page_file
import svg

_VIEWER = pathlib.Path(__file__).with_name("viewer.html")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path, metavar="FOLDER")
    parser.add_argument("-o", dest="out", type=pathlib.Path, required=True, metavar="OUT")
    arguments = parser.parse_args()

    arguments.out.mkdir(parents=True, exist_ok=True)
    pages, bad = [], 0
    for file in sorted(arguments.folder.glob("*.json")):
        try:
            pages.append(_draw(page_file.read(file), len(pages), arguments.out))
        except (OSError, ValueError, KeyError, TypeError, AttributeError) as error:
            print(f"{file.name}: {error}", file=sys.stderr)
            bad += 1
    viewer = _VIEWER.read_text(encoding="utf-8").replace("<!-- pages -->", "\n".join(pages))
    (arguments.out / "index.html").write_text(viewer, encoding="utf-8")
    if not pages:
        print(f"no pages in {arguments.folder}", file=sys.stderr)
    return 1 if bad or not pages else 0


def _draw(page: page_file.Page, number: int, out: pathlib.Path) -> str:
    """Writes the page's SVG file and gives its part of the web page."""
    (out / f"{page.file.stem}.svg").write_text(svg.Picture(page).text, encoding="utf-8")
    picture = svg.Picture(page, f"page{number}-")
    undefined = sum(picture.undefined.values())
    names = ", ".join(sorted(picture.undefined))
    print(f"{page.schematic} / {page.name}: {len(page.elements)} elements"
          + (f", {undefined} undefined: {names}" if undefined else ""))
    title = html.escape(f"{page.schematic} / {page.name}")
    return f'<template data-title="{title}" data-undefined="{undefined}">{picture.text}</template>'


if __name__ == "__main__":
    sys.exit(main())
