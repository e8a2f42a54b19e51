"""Makes the reports of designs, which are only read: FILE.kicad_sch... [-o OUT]"""

from __future__ import annotations

import asyncio
import os
import pathlib

from vernoxa.command import DONE, EXITS, NOT_DONE, Parser, Refused, own_file, run
from vernoxa.companion.view import View
from vernoxa.places import BUILD, PLUG_IN
from vernoxa.report import collect, page
from vernoxa.stage import host
from vernoxa.stage.installation import Installation
from vernoxa.stage.scene import LINK_SECONDS, Scene
from vernoxa.stage.session import Missing

SECONDS = 600  # for everything about one design
BEGINS = "<!DOCTYPE html>"


class Reading(Scene):
    """Shows, of all that the host says, which part of a design it had to leave out."""

    whole = True

    def heard(self, speaker: str, text: str) -> None:
        if " is left out: " in text:
            self.whole = False
            self.say(text, "red")
        else:
            super().heard(speaker, text)


async def make(scene: Reading, reports: dict[pathlib.Path, pathlib.Path]) -> bool:
    """`reports` by their schematics. True when no fault was seen and nothing left out. Raises Missing, Refused."""
    host.require_free_port()
    known = [scene.installation.add_design(schematic, f"design{number}") for number, schematic in enumerate(reports, 1)]
    try:
        await scene.begin(host.command_line(scene.installation, known, SECONDS * (1 + len(known))))
        for (schematic, name), target in zip(known, reports.values()):
            await scene.hear(f"{schematic.name} is open", "FileStatus", LINK_SECONDS, Status="Open", FileName=name)
            work = collect.collect(scene.companion, name)
            design = await scene.step(f"everything about {schematic.name} is collected", work, SECONDS)
            page.write(target, design)
            bill = sum(len(lines) for state, lines in design["bom"].items() if state != "NotPartNumber")
            scene.say(f"{target}: {len(design['pages'])} pages, {bill} lines of the bill, {design['pins']} pins, "
                      f"{len(design['nets'])} nets, {len(design['findings'])} findings")
        await scene.quit()
    finally:
        await scene.end()
    return scene.whole and not scene.companion.faults


def targets(designs: list[pathlib.Path], out: pathlib.Path | None) -> dict[pathlib.Path, pathlib.Path]:
    """One file for one design, else files in one folder. Raises Refused."""
    for design in designs:
        if design.suffix != ".kicad_sch":
            raise Refused(f"{design} is not a KiCad schematic, whose name ends in .kicad_sch")
    if out and len(designs) == 1 and not out.is_dir():
        return {designs[0]: own_file(out, BEGINS)}
    if out and out.is_file():
        raise Refused(f"{out} is a file: several reports need a folder")
    folder = out or pathlib.Path(os.path.relpath(BUILD / "reports"))
    folder.mkdir(parents=True, exist_ok=True)
    made = {design: own_file(folder / f"{design.stem}.html", BEGINS) for design in designs}
    if len(set(made.values())) < len(made):
        raise Refused("two designs have one name: make their reports one after the other, with -o")
    return made


def main() -> int:
    parser = Parser(prog="./dev report", description="Makes a report of each design: one page for any browser. The designs "
                    "are only read, and nothing is opened.", epilog=EXITS)
    parser.add_argument("designs", nargs="+", type=pathlib.Path, metavar="FILE.kicad_sch")
    parser.add_argument("-o", dest="out", type=pathlib.Path, metavar="OUT",
                        help="the report, or the folder of several (build/reports)")
    parser.add_argument("--dll", type=pathlib.Path, default=PLUG_IN, help="the plug-in")
    parser.add_argument("--verbose", action="store_true", help="show all that host and companion say")
    options = parser.parse_args()
    with Installation(options.dll) as installation:
        scene = Reading(View(shown=None if options.verbose else ["report"]), installation, speaker="report")
        try:
            return DONE if asyncio.run(make(scene, targets(options.designs, options.out))) else NOT_DONE
        except Missing as error:
            scene.complain(error)
            return NOT_DONE


if __name__ == "__main__":
    run("report", main)
