"""Lines that people type at a prompt, or that are piped in: carried out one after the other, each waited for."""

from __future__ import annotations

import asyncio
import threading
from typing import TextIO

from .view import View
from .words import Words


class Desk:
    """Where the lines are carried out. `name` stands before the prompt."""

    def __init__(self, view: View, name: str, words: Words):
        self._view = view
        self._name = name
        self._words = words
        self.done = 0  # lines that were piped in
        self.good = True  # what could be done of them

    async def work(self, stream: TextIO) -> bool:
        """Until quit or the end: prompts when people look on, else carries out the stream's lines, each shown first.

        False when a line of the stream could not be done; who types sees that, and goes on.
        """
        if self._view.colour and stream.isatty():
            from .terminal import prompt  # a quarter of all that a command reads at its start, needed here alone
            await prompt(self._name, self._words, self._view)
            return True
        lines = _lines(stream)
        while line := await lines.get():
            self._view.line(self._name, f"> {line.rstrip()}")
            self.done += 1
            try:
                self.good = await self._words.run(line) and self.good
            except EOFError:
                break
        return self.good


def _lines(stream: TextIO) -> asyncio.Queue[str]:
    """The lines of a stream as they come, an empty one at its end. Nothing waits for the thread that reads them."""
    loop = asyncio.get_running_loop()
    lines: asyncio.Queue[str] = asyncio.Queue()

    def read() -> None:
        for line in stream:
            loop.call_soon_threadsafe(lines.put_nowait, line)
        loop.call_soon_threadsafe(lines.put_nowait, "")

    threading.Thread(target=read, daemon=True).start()
    return lines
