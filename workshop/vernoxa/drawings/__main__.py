"""Makes pictures of exported pages: FOLDER -o OUT

Each page file of FOLDER becomes an SVG file in OUT, and all of them one web page, OUT/index.html, that needs nothing
else. A symbol that a page uses and nobody defined is a marked box, and is counted. Files that are no pages are named,
and make the exit status 1.
"""

from __future__ import annotations

import argparse
import pathlib
import sys

from vernoxa.command import DONE, NOT_DONE, Parser, run

from . import page_file, pictures


def main() -> int:
    parser = Parser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path, metavar="FOLDER")
    parser.add_argument("-o", dest="out", type=pathlib.Path, required=True, metavar="OUT")
    options = parser.parse_args()
    pages, bad = {}, 0
    for file in sorted(options.folder.glob("*.json")):
        try:
            pages[file.stem] = page_file.read(file)
        except (OSError, ValueError) as error:
            print(error, file=sys.stderr)
            bad += 1
    for page, undefined in pictures.write(pages, options.out):
        marked = f", {sum(undefined.values())} undefined: {', '.join(sorted(undefined))}" if undefined else ""
        print(f"{page.schematic} / {page.name}: {len(page.elements)} elements{marked}")
    if not pages:
        print(f"no pages in {options.folder}", file=sys.stderr)
    return NOT_DONE if bad or not pages else DONE


if __name__ == "__main__":
    run("drawings", main)
