"""People at a prompt while designs are open in the stand-in host."""

from __future__ import annotations

import argparse
import asyncio
import pathlib
import signal
import sys
from typing import Awaitable, Callable

from vernoxa.command import DONE, EXITS, NOT_DONE, Parser, run
from vernoxa.companion.desk import Desk
from vernoxa.companion.view import View
from vernoxa.places import PLUG_IN

from .installation import Installation
from .session import HostSession

LONGEST_SESSION = 8 * 3600
NOT_ALL = "not every line was done"
SPEAKERS = ("play", "companion", "host", "stdout")


def parser(name: str, description: str) -> Parser:
    made = Parser(prog=f"./dev {name}", description=description, epilog=EXITS)
    made.add_argument("designs", nargs="*", type=pathlib.Path, metavar="DESIGN", help="a KiCad schematic; only read")
    made.add_argument("--dll", type=pathlib.Path, default=PLUG_IN, help="the plug-in")
    made.add_argument("--trace", action="store_true", help="show every call of a host procedure, and all else it says")
    made.add_argument("--plain", action="store_true", help="neither colour nor prompt")
    return made


def begin(options: argparse.Namespace, work: Callable[[View, Installation], Awaitable[bool]], name: str) -> None:
    """Does the work in an installation of its own, which is removed at the end, and ends with the command's status."""

    async def worked(installation: Installation) -> bool:
        task = asyncio.current_task()
        assert task
        for wish in (signal.SIGTERM, signal.SIGHUP):
            asyncio.get_running_loop().add_signal_handler(wish, task.cancel)
        return await work(View(False if options.plain else None, SPEAKERS), installation)

    def main() -> int:
        with Installation(options.dll) as installation:
            try:
                return DONE if asyncio.run(worked(installation)) else NOT_DONE
            except asyncio.CancelledError:
                return NOT_DONE

    run(name, main)


async def work(session: HostSession, desk: Desk) -> bool:
    """Carries out what is typed, or piped in, until its end or the host's; then ends the host.

    True when everything was done. Raises Missing when the host does not end as it should.
    """
    working = asyncio.ensure_future(desk.work(sys.stdin))
    over = asyncio.ensure_future(session.host.ended(LONGEST_SESSION))
    try:
        await asyncio.wait({working, over}, return_when=asyncio.FIRST_COMPLETED)
    finally:
        # A host that was asked to close takes the prompt with it; the prompt puts the terminal right before it ends.
        over.cancel()
        working.cancel()
        await asyncio.wait({working, over})
    good = desk.good if working.cancelled() else working.result()
    await session.quit()
    return good
