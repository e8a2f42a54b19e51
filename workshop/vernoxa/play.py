"""Opens designs in the stand-in host, and takes the companion's commands at a prompt."""

from __future__ import annotations

import pathlib
import re

from vernoxa.companion.desk import Desk
from vernoxa.companion.prompt import Prompt
from vernoxa.companion.view import View
from vernoxa.companion.words import until_interrupted
from vernoxa.stage import at_work, host
from vernoxa.stage.host_words import HostWords
from vernoxa.stage.installation import DESIGN, Installation
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import Missing
from vernoxa.wire import paths

# The companion shows the same messages; the plug-in's thread asks again every ten seconds.
SAID_TWICE = re.compile(r"(thread|companion) (asks|gets|is told): |action .* -> |menu |BOM lists|serving|.*connected")


async def opened(scene: Scene, names: list[str]) -> bool:
    for name in names:
        event = await scene.opened(name)
        scene.say(f"{paths.name_of(name)} is open, {event.message.data['PinCount']} pins; help lists what can be asked")
    await scene.ask("the pages", "GetActiveProPages")
    return True


async def play(view: View, installation: Installation, designs: list[pathlib.Path], record: pathlib.Path | None,
               trace: bool) -> bool:
    host.require_free_port()
    known = [installation.add_design(schematic, f"design{number}") for number, schematic in enumerate(designs, 1)]
    scene = Scene(view, installation, record, speaker="play")
    scene.hidden = None if trace else SAID_TWICE
    try:
        await scene.begin(host.command_line(installation, known, at_work.LONGEST_SESSION) + ["-trace"] * trace)
        scene.say("the host begins; the plug-in's link to it takes about ten seconds")
        await until_interrupted(opened(scene, [name for _, name in known]))
        words = HostWords(scene, view, scene.answers.designs)
        good = await at_work.work(scene, Desk(view, "companion", Prompt(scene.companion, view, {"host": words})))
        scene.say(f"the host ended tidily; faults seen: {scene.companion.faults}")
        if not good:
            scene.say(at_work.NOT_ALL, "bold red")
        return good and not scene.companion.faults
    except Missing as error:
        scene.complain(error)
        return False
    finally:
        await scene.end()


def main() -> None:
    parser = at_work.parser("play", "Designs are opened in the stand-in host; what is typed at the prompt is asked of the "
                            "plug-in. All that is written meanwhile lies in a folder that is removed at the end.")
    parser.add_argument("--record", type=pathlib.Path, metavar="FILE", help="keep the conversation: ./dev replay FILE")
    options = parser.parse_args()
    at_work.begin(
        options,
        lambda view, installation: play(view, installation, options.designs or [DESIGN], options.record, options.trace),
        "play",
    )


if __name__ == "__main__":
    main()
