"""Gives clang the sources as GCC reads them: literals.py BUILD_DIRECTORY

GCC is told to write plain literals in the code page; clang writes them in UTF-8 and nothing else. So what is Chinese in
them becomes escapes, line for line, in copies that clang reads in the place of the sources (-ivfsoverlay literals.yaml).
"""

from __future__ import annotations

import json
import pathlib
import re
import sys

from vernoxa.command import DONE, run
from vernoxa.places import REPOSITORY as ROOT

_TOKEN = re.compile(
    r'//[^\n]*|/\*.*?\*/|(?<![\w])\'(?:\\.|[^\'\\\n])+\''
    r'|(?P<prefix>\b(?:u8|u|U|L))?(?:(?P<raw>R)"(?P<mark>[^(\s"]*)\((?P<lines>.*?)\)(?P=mark)"|"(?P<text>(?:\\.|[^"\\\n])*)")',
    re.DOTALL,
)


def _escaped(text: str, before: str, after: str) -> str:
    """What is not ASCII in it as escapes, between what ends the literal and what begins it again."""
    pieces = re.split(r"([^\0-\x7f]+)", text)
    for at in range(1, len(pieces), 2):
        pieces[at] = before + "".join(f"\\x{byte:02x}" for byte in pieces[at].encode("gb18030")) + after
    return "".join(pieces)


def _token(found: re.Match[str]) -> str:
    if found["prefix"] or found[0].isascii():
        return found[0]
    if found["raw"]:
        start, end = f'R"{found["mark"]}(', f'){found["mark"]}"'
        return start + _escaped(found["lines"], f'{end} "', f'" {start}') + end
    if found["text"] is None:
        return found[0]  # a remark or a character
    return '"' + _escaped(found["text"], "", '" "') + '"'


def as_gcc_reads(source: str) -> str:
    return _TOKEN.sub(_token, source)


def main() -> int:
    build = pathlib.Path(sys.argv[1]).resolve()
    roots = []
    for path in sorted(path for folder in ("src", "tests", "sim", "fuzz") for path in (ROOT / folder).rglob("*.[hc]*")):
        source = path.read_text(encoding="utf-8") if path.suffix in (".h", ".cpp") else ""
        read = as_gcc_reads(source)
        if read != source:
            copy = build / "literals" / path.relative_to(ROOT)
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_text(read, encoding="utf-8")
            roots.append({"name": str(path), "type": "file", "external-contents": str(copy)})
    overlay = {"version": 0, "use-external-names": False, "roots": roots}
    (build / "literals.yaml").write_text(json.dumps(overlay, indent=1), encoding="utf-8")
    return DONE


if __name__ == "__main__":
    run("literals", main)
