"""A copy of the demo's design with mistakes in it, so that the checks have something to find."""

from __future__ import annotations

import pathlib
import shutil

from .installation import NotUsable

# Sheet, what stands in it, and what stands there then.
_MISTAKES = (
    # A pin of a resistor, and of its like on the other page, has lost its wire.
    ("ampli_ht.kicad_sch", "(xy 185.42 95.25) (xy 185.42 97.79)", "(xy 185.42 97.79) (xy 185.42 97.79)"),
    ("complex_hierarchy.kicad_sch", '(reference "C10")', '(reference "C11")'),
    ("complex_hierarchy.kicad_sch", '(value "78L05")', '(value "78L05!")'),
    ("complex_hierarchy.kicad_sch", '"Diode_THT:D_DO-41_SOD81_P12.70mm_Horizontal"', '""'),
)


def make(schematic: pathlib.Path, folder: pathlib.Path) -> pathlib.Path:
    """Copies all sheets beside the schematic into the folder and gives the copy. Raises NotUsable for another design."""
    for sheet in schematic.parent.glob("*.kicad_sch"):
        shutil.copyfile(sheet, folder / sheet.name)
    for name, right, wrong in _MISTAKES:
        sheet = folder / name
        text = sheet.read_text(encoding="utf-8")
        if right not in text:
            raise NotUsable(f"{schematic} is another {schematic.stem} than the one that is known here")
        sheet.write_text(text.replace(right, wrong), encoding="utf-8")
    return folder / schematic.name
