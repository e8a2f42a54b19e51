"""Runs the stand-in host with the plug-in, for a companion of your own, and takes the host's words at a prompt."""

from __future__ import annotations

import pathlib

from vernoxa.companion.answers import Design
from vernoxa.companion.desk import Desk
from vernoxa.companion.server import PORT
from vernoxa.companion.view import View
from vernoxa.stage import at_work, host
from vernoxa.stage.host_words import HostWords
from vernoxa.stage.installation import DESIGN, Installation
from vernoxa.stage.session import HostSession, Missing


class ShownHost(HostSession):
    def __init__(self, installation: Installation, view: View):
        super().__init__(installation)
        self._view = view

    def heard(self, speaker: str, text: str) -> None:
        self._view.line(speaker, text)


async def wait_for_a_companion(view: View, installation: Installation, designs: list[pathlib.Path], trace: bool) -> bool:
    host.require_free_port()
    known = [installation.add_design(schematic, f"design{number}") for number, schematic in enumerate(designs, 1)]
    session = ShownHost(installation, view)
    try:
        view.line("host", f"looks for your companion on port {PORT} every ten seconds; help lists what its user can do")
        await session.begin(host.command_line(installation, known, at_work.LONGEST_SESSION) + ["-trace"] * trace)
        open_now = {name: Design(name) for _, name in known}
        good = await at_work.work(session, Desk(view, "host", HostWords(session, view, open_now)))
        if not good:
            view.line("host", at_work.NOT_ALL, "bold red")
        return good
    except Missing as error:
        view.line("host", f"missing: {error}", "bold red")
        return False
    finally:
        await session.end()


def main() -> None:
    parser = at_work.parser("host", "Designs are opened in the stand-in host with the plug-in. A companion of your own that "
                            f"listens on port {PORT} is told of them and can ask.")
    options = parser.parse_args()
    at_work.begin(
        options,
        lambda view, installation: wait_for_a_companion(view, installation, options.designs or [DESIGN], options.trace),
        "host",
    )


if __name__ == "__main__":
    main()
