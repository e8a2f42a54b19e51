"""Makes the reports of designs, which are only read: FILE.kicad_sch... [-o OUT]"""

from __future__ import annotations

import asyncio
import os
import pathlib
import re

from vernoxa.command import DONE, EXITS, NOT_DONE, Parser, Refused, own_file, run
from vernoxa.companion.view import View
from vernoxa.places import BUILD, PLUG_IN
from vernoxa.report import collect, page
from vernoxa.stage import host
from vernoxa.stage.host_words import open_words, tcl_word
from vernoxa.stage.installation import Installation
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import Missing
from vernoxa.wire.messages import shorten

SECONDS = 600  # for everything about one design
BEGINS = "<!DOCTYPE html>"
LACKS = re.compile(" is left out: | has no symbol ")  # notes of the host after which the report is not whole


class Reading(Scene):
    """Shows, of all that the host says, what it says about the design: once, what several designs have."""

    whole = True

    def heard(self, speaker: str, text: str) -> None:
        note = text.removeprefix("note: ")
        if note == text:
            super().heard(speaker, text)
        elif self.host_lines.count(text) == 1:
            if LACKS.search(note):
                self.lacks(note)
            else:
                self.say(note)

    def lacks(self, text: str) -> None:
        self.whole = False
        self.say(text, "bold red")


async def make(scene: Reading, reports: dict[pathlib.Path, pathlib.Path]) -> bool:
    """`reports` by their schematics. True when no fault was seen and nothing left out. Raises Missing, Refused."""
    host.require_free_port()
    known = {}
    for number, (schematic, target) in enumerate(reports.items(), 1):
        try:
            known[scene.installation.add_design(schematic, f"design{number}")] = target
        except Refused as error:
            if len(reports) == 1:
                raise
            scene.lacks(str(error))
    if not known:
        return False
    try:
        await scene.begin(host.command_line(scene.installation, [], SECONDS * (1 + len(known))))
        for design, target in known.items():
            try:
                await make_one(scene, design, target)
            except (Missing, Refused) as error:
                if await scene.host.ended(0) is not None:
                    raise
                scene.lacks(f"no report of {design[0].name}: {error}")
        await scene.quit()
    finally:
        await scene.end()
    return scene.whole and not scene.companion.faults


async def make_one(scene: Reading, design: tuple[pathlib.Path, str], target: pathlib.Path) -> None:
    """Raises Missing, Refused."""
    schematic, name = design
    since = len(scene.host_lines)
    if not await scene.step(f"{schematic.name} is read", scene.user_does(open_words(design), SECONDS), SECONDS):
        raise Missing(scene.host_lines[-1])
    await scene.opened(name, since)
    work = collect.collect(scene.companion, name)
    collected = await scene.step(f"everything about {schematic.name} is collected", work, SECONDS)
    since = len(scene.host_lines)
    await scene.user_does(f"pageNames {tcl_word(name)}")
    compare_pages(scene, schematic.name, scene.host_lines[since:], collected["pages"])
    page.write(target, collected)
    bill = sum(len(lines) for state, lines in collected["bom"].items() if state != "NotPartNumber")
    scene.say(f"{target}: {len(collected['pages'])} pages, {bill} lines of the bill, {collected['pins']} pins, "
              f"{len(collected['nets'])} nets, {len(collected['findings'])} findings")
    await scene.user_does(f"closeDesign {tcl_word(name)}")


def compare_pages(scene: Reading, design: str, told: list[str], pages: list[dict]) -> None:
    """What the host calls its pages, by their numbers, with those that were drawn."""
    drawn = {shown["key"]: shown["name"] for shown in pages}
    for number, name in (found.groups() for line in told if (found := re.fullmatch(r"page (\d+): (.*)", line))):
        if number not in drawn:
            scene.lacks(f"{design}: there is no drawing of page {number}, {shorten(name)}")
        elif drawn[number].split() != name.split():
            scene.say(f"{design}: page {number}, {shorten(name)}, is called {shorten(drawn[number])} in its drawing")


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
