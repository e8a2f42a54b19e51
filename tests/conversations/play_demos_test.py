"""Every design that KiCad's demos bring, with the built plug-in: its report has a page for each sheet, every part and
every pin, and the folder is as it was. play_demos_test.py [FOLDER] PLUG-IN"""

import asyncio
import collections
import hashlib
import pathlib
import sys
import unittest

from schematics import DEMOS, Counted, roots

from vernoxa.companion.answers import references_of
from vernoxa.companion.view import View
from vernoxa.drawings.page_file import placed
from vernoxa.report import collect
from vernoxa.stage import host
from vernoxa.stage.installation import Installation
from vernoxa.stage.scene import Scene
from vernoxa.wire import paths

MODULE = pathlib.Path(sys.argv.pop())
FOLDER = pathlib.Path(sys.argv.pop()) if sys.argv[1:] else DEMOS
SECONDS = 240  # for an answer, on a machine that has much else to do


def sums(folder: pathlib.Path) -> dict[pathlib.Path, str]:
    return {path: hashlib.sha256(path.read_bytes()).hexdigest() for path in folder.rglob("*") if path.is_file()}


async def play(designs: list[pathlib.Path]) -> tuple[list[tuple[str, dict, list[dict]]], int]:
    """Of each design its pins, bill and drawn pages, all in one session; and the faults that were seen."""
    with Installation(MODULE) as installation:
        scene = Scene(View(colour=False), installation)
        known = [installation.add_design(design, f"design{number}") for number, design in enumerate(designs, 1)]
        try:
            await scene.begin(host.command_line(installation, known, 1000))
            played = []
            for _, name in known:
                opened = await scene.hear(name, "FileStatus", SECONDS, Status="Open", FileName=name)
                bom = await scene.ask("bill", "GenerateBOM", SECONDS, ProjectPath=name)
                drawn = await scene.ask("drawings", "CreateSVG", SECONDS, ProjectPath=name)
                pages = collect.pages_in(paths.to_local(drawn["SVGPath"]))
                played.append((opened.message.data["PinCount"], bom, pages))
            return played, scene.companion.faults
        finally:
            await scene.end()


class PlayDemosTest(unittest.TestCase):
    def test_every_page_part_and_pin_is_there(self):
        designs = roots(FOLDER)
        self.assertNotEqual([], designs, f"no designs in {FOLDER}")
        before = sums(FOLDER)
        played, faults = asyncio.run(play(designs))
        self.assertEqual(0, faults)
        self.assertEqual(before, sums(FOLDER))
        for design, (pin_count, bom, pages) in zip(designs, played):
            with self.subTest(design.relative_to(FOLDER)):
                counted = Counted(design)
                pins = collections.Counter(reference for reference, _ in counted.pins)
                self.assertEqual((str(len(counted.pins)), counted.pages), (pin_count, len(pages)))
                for kind, wanted in (("Stick", True), ("NotStick", False)):
                    lines = {each: int(line["PinNumber"]) for line in bom[kind] for each in references_of(line)}
                    self.assertEqual({reference: pins[reference] for reference, _, in_bom, fitted in counted.units
                                      if in_bom and fitted == wanted}, lines)
                self.assertEqual({reference for reference, *_ in counted.units},
                                 {reference for page in pages for reference, *_ in placed(page["drawing"])})


if __name__ == "__main__":
    unittest.main(buffer=True)
