"""A whole conversation: the companion, and the host with the plug-in between its beginning and its end."""

from __future__ import annotations

import asyncio
import re
from typing import Any

from vernoxa.companion.answers import Answers
from vernoxa.companion.server import PORT, Companion

from .host import Host
from .installation import Installation

# What the host says when it has come to the end of a line of its user.
_END = re.compile(r"line (\d+) (?:is done|(failed))")
# The link thread pauses ten seconds after each step: to reach the host, to reach the companion, before it looks. A
# machine that does much else may take many times as long; a host that ends is noticed at once.
LINK_SECONDS = 180
LINE_SECONDS = 60  # of the host's user
END_SECONDS = 60
QUIT = "quit"  # of the words of its user the one that nothing comes after


class Missing(RuntimeError):
    """Something expected was not seen; the text says what."""


class HostSession:
    """The host with its user. `host_lines` are all that it printed."""

    def __init__(self, installation: Installation):
        self.installation = installation
        self.host_lines: list[str] = []
        self._host: Host | None = None
        self._lines: list[asyncio.Future[bool]] = []  # of its user

    @property
    def host(self) -> Host:
        if not self._host:
            raise Missing("the host, which has not begun")
        return self._host

    async def begin(self, command: list[str]) -> None:
        self._host = await Host.begin(command, self._hear)

    async def end(self) -> None:
        if self._host:
            await self._host.stop()

    def _hear(self, speaker: str, text: str) -> None:
        end = _END.fullmatch(text) if speaker == "host" else None
        if end:
            line = self._lines[int(end[1]) - 1]
            if not line.done():
                line.set_result(not end[2])
            return
        self.host_lines.append(text)
        self.heard(speaker, text)

    def heard(self, speaker: str, text: str) -> None:
        """Each line of the host as it comes; for who shows them."""

    async def in_time(self, work: asyncio.Future[Any], seconds: float) -> str:
        """Waits for it. Empty when it is done; else it is cancelled, and this says why: too late, or the host ended."""
        over = asyncio.ensure_future(self.host.ended(seconds))
        try:
            await asyncio.wait({work, over}, return_when=asyncio.FIRST_COMPLETED, timeout=seconds)
            if work.done():
                return ""
            status = over.result() if over.done() else None
            return f"not seen within {seconds:g} s" if status is None else f"not seen before the host ended with {status}"
        finally:
            work.cancel()
            over.cancel()

    async def user_does(self, words: str, seconds: float = LINE_SECONDS) -> bool:
        """The host's user does something, in the words of `sim/host/commands.tcl`; false when the host could not.

        Raises Missing when the host has not come to its end by then, at once when it ended itself.
        """
        line: asyncio.Future[bool] = asyncio.get_running_loop().create_future()
        self._lines.append(line)
        self.installation.command(words)
        if reason := await self.in_time(line, seconds):
            raise Missing(f"{words}: its end was {reason}")
        return line.result()

    async def quit(self) -> None:
        """The user ends the host. Raises Missing when it does not end as it should."""
        self.installation.command(QUIT)
        await self.ended_tidily()

    async def ended_tidily(self) -> None:
        """Raises Missing."""
        status = await self.host.ended(END_SECONDS)
        if status is None:
            raise Missing("the host's end")
        if status != 0:
            raise Missing(f"a tidy end of the host, which ended with {status}")


class Session(HostSession):
    """The same with the companion."""

    def __init__(self, installation: Installation, answers: Answers, port: int = PORT):
        super().__init__(installation)
        self.answers = answers
        self.companion = Companion(answers, port=port)

    async def begin(self, command: list[str]) -> None:
        """Raises PortTaken."""
        await self.companion.start()
        await super().begin(command)

    async def end(self) -> None:
        await super().end()
        await self.companion.stop()
