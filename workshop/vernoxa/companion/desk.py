"""Lines that people type at a prompt, or that are piped in: carried out one after the other, each waited for."""

from __future__ import annotations

import asyncio
import contextlib
import signal
import threading
from typing import Coroutine, Iterator, Protocol, TextIO, TypeVar

from prompt_toolkit import PromptSession
from prompt_toolkit.completion import CompleteEvent, Completer, Completion, get_common_complete_suffix
from prompt_toolkit.document import Document
from prompt_toolkit.key_binding import KeyBindings, KeyPressEvent
from prompt_toolkit.patch_stdout import patch_stdout

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


class Desk:
    """Where the lines are carried out. `name` stands before the prompt."""

    def __init__(self, view: View, name: str, words: Words):
        self._view = view
        self._name = name
        self._words = words
        self.done = 0  # lines that were piped in

    async def work(self, stream: TextIO) -> bool:
        """Until quit or the end: prompts when people look on, else carries out the stream's lines, each shown first.

        False when a line of the stream could not be done; who types sees that, and goes on.
        """
        if self._view.colour and stream.isatty():
            await self._prompt()
            return True
        good = True
        lines = _lines(stream)
        while line := await lines.get():
            self._view.line(self._name, f"> {line.rstrip()}")
            self.done += 1
            try:
                good = await self._words.run(line) and good
            except EOFError:
                break
        return good

    async def _prompt(self) -> None:
        keys = KeyBindings()
        keys.add("tab")(_complete)
        session: PromptSession = PromptSession(completer=_Completer(self._words), key_bindings=keys)
        with patch_stdout(raw=True):
            while True:
                try:
                    line = await session.prompt_async(f"{self._name}> ")
                    if await until_interrupted(self._words.run(line)) is None:
                        self._view.line(self._name, "no longer waited for")
                except KeyboardInterrupt:
                    continue
                except EOFError:
                    return


class _Completer(Completer):
    def __init__(self, words: Words):
        self._words = words

    def get_completions(self, document: Document, complete_event: CompleteEvent) -> Iterator[Completion]:
        line = document.text_before_cursor.lstrip()
        piece = line.rpartition(" ")[2].rpartition("=")[2].rpartition(",")[2]
        for text, purpose in self._words.complete(line):
            yield Completion(text, -len(piece), display_meta=purpose)


def _complete(event: KeyPressEvent) -> None:
    """Tab. The menu is made in the background while one types, and a Tab that comes before it is there is passed over by
    prompt_toolkit; here it completes what is certain."""
    buffer = event.current_buffer
    if buffer.complete_state:
        buffer.complete_next()
        return
    found = list(buffer.completer.get_completions(buffer.document, CompleteEvent(completion_requested=True)))
    if len(found) == 1:
        buffer.apply_completion(found[0])
    elif suffix := get_common_complete_suffix(buffer.document, found):
        buffer.insert_text(suffix)


def fitting(line: str, rows: Iterator[tuple[str, str]] | list[tuple[str, str]]) -> Iterator[tuple[str, str]]:
    """Those rows that begin as the last word of the line does, or as its value or the last of its values."""
    piece = line.rpartition(" ")[2].rpartition("=")[2].rpartition(",")[2].lower()
    return ((text, purpose) for text, purpose in rows if text.lower().startswith(piece))


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
