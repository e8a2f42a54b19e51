"""What can be typed, and what it is waited for meanwhile."""

from __future__ import annotations

import asyncio
import contextlib
import signal
from typing import Coroutine, Iterator, Protocol, TypeVar

from .view import View

T = TypeVar("T")
PATIENCE = 2.0  # seconds without a word


class Words(Protocol):
    """What can be typed."""

    async def run(self, line: str) -> bool:
        """False when it could not be done, which was said. Raises EOFError for the end."""

    def complete(self, line: str) -> Iterator[tuple[str, str]]:
        """What the last word of a line can become, and what that is for."""


@contextlib.contextmanager
def waiting(view: View, speaker: str, what: str, seconds: float) -> Iterator[None]:
    """Says what is waited for ("for ..." or "until ..."), when it takes longer than a moment."""
    text = f"waiting {what}, {seconds:g} s at most"
    saying = asyncio.get_running_loop().call_later(PATIENCE, lambda: view.line(speaker, text, "dim"))
    try:
        yield
    finally:
        saying.cancel()


async def until_interrupted(work: Coroutine[None, None, T]) -> T | None:
    """Ctrl-C ends this wait and nothing else: None then."""
    loop = asyncio.get_running_loop()
    task = asyncio.ensure_future(work)
    loop.add_signal_handler(signal.SIGINT, task.cancel)
    try:
        await asyncio.wait({task})
    except asyncio.CancelledError:
        task.cancel()
        raise
    finally:
        loop.remove_signal_handler(signal.SIGINT)
    return None if task.cancelled() else task.result()


def fitting(line: str, rows: Iterator[tuple[str, str]] | list[tuple[str, str]]) -> Iterator[tuple[str, str]]:
    """Those rows that begin as the last word of the line does, or as its value or the last of its values."""
    piece = line.rpartition(" ")[2].rpartition("=")[2].rpartition(",")[2].lower()
    return ((text, purpose) for text, purpose in rows if text.lower().startswith(piece))
