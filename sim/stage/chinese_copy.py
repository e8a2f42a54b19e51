"""A copy of a design for people who write Chinese: in a folder with a Chinese name, with a Chinese value in it."""

from __future__ import annotations

import pathlib
import re
import shutil

from .installation import NotUsable

_VALUED_PART = re.compile(r'\(reference "[^#"][^"]*"\) \(unit \d+\) \(value "([^"~]+)"\)')


def make(schematic: pathlib.Path, folder: pathlib.Path) -> tuple[pathlib.Path, str]:
    """Copies all sheets beside the schematic into the folder. Gives the copy and the value that is in it now."""
    for sheet in schematic.parent.glob("*.kicad_sch"):
        shutil.copyfile(sheet, folder / sheet.name)
    copy = folder / schematic.name
    text = copy.read_text(encoding="utf-8")
    found = _VALUED_PART.search(text)
    if not found:
        raise NotUsable(f"{schematic} has no part with a value")
    value = f"国产{found[1]}"
    for before, after in (("(value ", ")"), ('(property "Value" ', "")):
        text = text.replace(f'{before}"{found[1]}"{after}', f'{before}"{value}"{after}')
    copy.write_text(text, encoding="utf-8")
    return copy, value
