"""Plays the whole scene: a design is opened in the stand-in host, and the companion learns of it."""

from __future__ import annotations

import argparse
import asyncio
import os
import pathlib

from vernoxa.command import DONE, EXITS, NOT_DONE, Parser, run
from vernoxa.companion.view import View
from vernoxa.places import BUILD, PLUG_IN
from vernoxa.stage import host
from vernoxa.stage.installation import DESIGN, DESIGN_VALUE, Installation
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import Missing

from . import acts, module_acts, report_acts

# The host ends by itself should everything else fail.
LONGEST_RUN = 600


def arguments() -> argparse.Namespace:
    parser = Parser(
        prog="./dev demo",
        description="A design is opened in the stand-in host, and everything that the plug-in does is done once.",
        epilog=EXITS,
    )
    parser.add_argument("--design", type=pathlib.Path, default=DESIGN, help="a KiCad schematic")
    parser.add_argument("--dll", type=pathlib.Path, default=PLUG_IN, help="the plug-in")
    parser.add_argument("--out", type=pathlib.Path, default=pathlib.Path(os.path.relpath(BUILD / "demo")),
                        help="where report and log are left")
    parser.add_argument("--record", type=pathlib.Path, metavar="FILE", help="write the conversation to a file")
    parser.add_argument("--verbose", action="store_true", help="show all that host and companion say")
    parser.add_argument("--plain", action="store_true", help="no colour")
    return parser.parse_args()


async def play(options: argparse.Namespace, view: View, installation: Installation) -> int:
    host.require_free_port()
    # The editor knows the schematic under two names, one of them in Chinese: two designs for everybody else.
    designs = [installation.add_design(options.design, "design"), installation.add_design(options.design, "设计", "放大器.dsn")]
    (_, name), (_, chinese_name) = designs
    value = DESIGN_VALUE if options.design == DESIGN else ""
    scene = Scene(view, installation, options.record)
    try:
        await scene.begin(host.command_line(installation, designs, LONGEST_RUN))
        await acts.design_becomes_known(scene, name)
        await acts.design_becomes_known(scene, chinese_name)
        await acts.parts_are_marked(scene, name)
        await acts.parts_are_marked(scene, chinese_name, value)
        await report_acts.pages_are_drawn(scene, name)
        pages = await report_acts.pages_are_drawn(scene, chinese_name, value)
        # Before modules are placed, which lie over what was drawn there.
        await report_acts.report_page_is_made(scene, name, options.out / "report.html")
        page = next(page for page in pages.values() if page.parts and (not value or value in page.texts))
        most = max(pages.values(), key=lambda page: len(page.parts))
        await module_acts.module_travels(scene, chinese_name, page, name, most.name, value)
        module = await module_acts.module_travels(scene, name, most, chinese_name, page.name)
        await module_acts.part_is_placed(scene, name, most.name, module, f"{value}!")
        await report_acts.design_is_checked(scene, name)
        await report_acts.packages_are_reported(scene, name, installation.root / "parts.olb")
        report_acts.report_is_written(scene, options.out / "report.txt")
        # All else is done while the plug-in's thread pauses, before it looks for the companion again.
        await acts.companion_restarts(scene, [name, chinese_name])
        await acts.editor_closes(scene, name)
    except Missing as error:
        scene.complain(error)
        return NOT_DONE
    finally:
        await scene.end()
    scene.summarise()
    return NOT_DONE if scene.companion.faults else DONE


def main() -> int:
    options = arguments()
    options.out.mkdir(parents=True, exist_ok=True)
    log = options.out / "log.txt"
    with Installation(options.dll) as installation, open(log, "w", encoding="utf-8") as stream:
        view = View(False if options.plain else None, None if options.verbose else ["demo"], stream)
        view.line("demo", f"all that is said: {log}")
        return asyncio.run(play(options, view, installation))


if __name__ == "__main__":
    run("demo", main)
