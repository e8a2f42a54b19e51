"""A whole conversation: the companion, and the host with the plug-in between its beginning and its end."""

from __future__ import annotations

import asyncio

from vernoxa.companion.answers import Answers
from vernoxa.companion.server import PORT, Companion

from .host import Host
from .installation import Installation

# What the host says when it has come to the end of what its user does.
_ENDS = {"that is done": True, "that failed": False}


class Missing(RuntimeError):
    """Something expected was not seen; the text says what."""


class Session:
    """`host_lines` are all that the host printed."""

    def __init__(self, installation: Installation, answers: Answers, port: int = PORT):
        self.installation = installation
        self.companion = Companion(answers, port=port)
        self.host_lines: list[str] = []
        self._host: Host | None = None
        self._ends: asyncio.Queue[bool] = asyncio.Queue()

    @property
    def host(self) -> Host:
        if not self._host:
            raise Missing("the host, which has not begun")
        return self._host

    async def begin(self, command: list[str]) -> None:
        """Raises PortTaken."""
        await self.companion.start()
        self._host = await Host.begin(command, self._hear)

    async def end(self) -> None:
        if self._host:
            await self._host.stop()
        await self.companion.stop()

    def _hear(self, speaker: str, text: str) -> None:
        if speaker == "host" and text in _ENDS:
            self._ends.put_nowait(_ENDS[text])
            return
        self.host_lines.append(text)
        self.heard(speaker, text)

    def heard(self, speaker: str, text: str) -> None:
        """Each line of the host as it comes; for who shows them."""

    async def user_does(self, words: str, seconds: float = 30) -> bool:
        """The host's user does something, in the words of `sim/host/commands.tcl`; false when the host could not.

        Raises TimeoutError when the host has not come to its end by then.
        """
        self.installation.command(words)
        try:
            return await asyncio.wait_for(self._ends.get(), seconds)
        except asyncio.TimeoutError as error:
            raise TimeoutError(f"the host has not come to the end of that within {seconds:g} s: {words}") from error
