"""People at the companion's prompt, while designs are open in the stand-in host."""

from __future__ import annotations

import asyncio
import re
import sys

from vernoxa.companion.prompt import Desk
from vernoxa.wire import paths

from .scene import LINK_SECONDS, Scene
from .session import Missing

LONGEST_SESSION = 8 * 3600
# The companion shows the same messages; the plug-in's thread asks anew every ten seconds.
SAID_TWICE = re.compile(r"(thread|companion) (asks|gets|is told): ")


async def play(scene: Scene, command: list[str], names: list[str]) -> bool:
    """Starts the host and carries out what is typed, or piped in, until its end; then ends the host.

    `names` are the designs' names as the editor says them. True when everything was done and no fault was seen. Raises
    Missing.
    """
    await scene.begin(command)
    scene.say("the editor's link takes about ten seconds")
    for name in names:
        await scene.hear(f"{paths.name_of(name)} is open", "FileStatus", LINK_SECONDS, Status="Open", FileName=name)
    words = {"host": ("give the host a word of its own: host select R1", scene.user_does)}
    desk = Desk(scene.companion, scene.view, words)
    working = asyncio.ensure_future(desk.work(sys.stdin))
    over = asyncio.ensure_future(scene.host.ended(LONGEST_SESSION))
    try:
        await asyncio.wait({working, over}, return_when=asyncio.FIRST_COMPLETED)
    finally:
        # A host that was asked to close takes the prompt with it; the prompt puts the terminal right before it ends.
        over.cancel()
        working.cancel()
        await asyncio.wait({working, over})
    good = working.cancelled() or working.result()
    await _end(scene)
    scene.say(f"faults seen: {scene.companion.faults}")
    return good and not scene.companion.faults


async def _end(scene: Scene) -> None:
    scene.installation.command("quit")
    status = await scene.host.ended(20)
    if status is None:
        raise Missing("the host's end")
    if status != 0:
        raise Missing(f"a tidy end of the host, which ended with {status}")
    scene.say("the host ended tidily")
