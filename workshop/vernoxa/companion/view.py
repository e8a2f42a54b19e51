"""The conversation for people: a line for each message, and tables where a table is easier to look at than JSON.

On a terminal in colour; elsewhere as plain lines, each beginning with who speaks ("companion:").
"""

from __future__ import annotations

import collections
import sys
from typing import Container, TextIO

import rich.table
from rich.box import ASCII, SIMPLE_HEAD
from rich.console import Console
from rich.markup import escape
from rich.text import Text

from vernoxa.command import end_without_reader
from vernoxa.wire.catalogue import REPLY_SUFFIX
from vernoxa.wire.events import CLOSED, FAULT, NOTE, OPENED, PROBED, RECEIVED, SENT, Event
from vernoxa.wire.messages import Message, shorten, summary

from . import tables
from .answers import Answers

PLAIN_WIDTH = 140

_SPEAKERS = {"companion": "bold cyan", "host": "bold magenta", "demo": "bold yellow", "play": "bold yellow"}
_STYLES = {FAULT: "bold red", NOTE: "yellow", OPENED: "green", CLOSED: "green", PROBED: "dim"}
_EVENT_TEXTS = {
    OPENED: "connected",
    CLOSED: "closed",
    PROBED: "probed: connected and closed at once",
}


class View:
    """Several speakers can share one view, so that their lines come in the order in which they happened.

    Only lines of the speakers in `shown` are shown, all without it; `log` gets every line.
    """

    def __init__(self, colour: bool | None = None, shown: Container[str] | None = None, log: TextIO | None = None):
        self.colour = sys.stdout.isatty() if colour is None else colour
        self._shown = shown
        self._log = log
        self.last_lines: dict[str, collections.deque[str]] = collections.defaultdict(lambda: collections.deque(maxlen=12))
        if self.colour:
            self._console = Console(force_terminal=True, highlight=False)
        else:
            self._console = Console(force_terminal=False, color_system=None, highlight=False, width=PLAIN_WIDTH)

    def line(self, speaker: str, text: str | Text, style: str = "") -> None:
        self.last_lines[speaker].append(str(text))
        plain = _spoken(speaker, str(text))
        if self.colour and self._takes(speaker, plain):
            body = text if isinstance(text, Text) else Text(text, style)
            start = (f"{speaker:>9} ", _SPEAKERS.get(speaker, "dim"))
            self._console.print(Text.assemble(start, body), soft_wrap=True)
        elif not self.colour:
            self._print(speaker, plain)

    def table(self, speaker: str, table: tables.Table, whole: bool = False) -> None:
        """Its first rows, or the whole of it."""
        shown = rich.table.Table(
            box=SIMPLE_HEAD if self.colour else ASCII, header_style="bold cyan" if self.colour else "none"
        )
        for column in table.columns:
            shown.add_column(column, overflow="fold")
        rows = table.rows if whole else table.rows[: tables.ROWS_SHOWN]
        for row in rows:
            shown.add_row(*map(escape, row), style="dim" if tables.NOT_FITTED in row else "")
        pieces = [Text(table.title, "bold"), shown]
        if len(rows) < len(table.rows):
            pieces.append(Text(f"{len(table.rows) - len(rows)} more: {table.rest}".rstrip(": "), "dim"))
        with self._console.capture() as capture:
            self._console.print(*pieces, sep="\n")
        plain = _spoken(speaker, capture.get())
        if not self.colour:
            self._print(speaker, plain)
        elif self._takes(speaker, plain):
            self._console.print(*pieces, sep="\n")

    def _takes(self, speaker: str, plain: list[str]) -> bool:
        """Keeps lines in the log; whether they are shown."""
        if self._log:
            self._log.write("".join(f"{part}\n" for part in plain))
            self._log.flush()
        return self._shown is None or speaker in self._shown

    def _print(self, speaker: str, plain: list[str]) -> None:
        if not self._takes(speaker, plain):
            return
        try:
            print("\n".join(plain), flush=True)
        except BrokenPipeError:
            end_without_reader()


def _spoken(speaker: str, text: str) -> list[str]:
    return [f"{speaker}: {part}".removeprefix(": ").rstrip() for part in text.splitlines() or [""]]


class ConversationView:
    """A listener that shows the events of the companion's server."""

    def __init__(self, view: View, answers: Answers):
        self._view = view
        self._answers = answers

    def __call__(self, event: Event) -> None:
        start = f"{event.seconds:8.3f} #{event.connection} "
        if event.kind == RECEIVED:
            self._message(start + "<- ", event.message, "green")
        elif event.kind == SENT:
            self._message(start + "-> ", event.message, "blue")
        elif event.kind in (FAULT, NOTE):
            self._view.line("companion", f"{start}{event.kind}: {event.text}", _STYLES[event.kind])
        else:
            self._view.line("companion", start + _EVENT_TEXTS[event.kind], _STYLES[event.kind])

    def _message(self, start: str, message: Message, style: str) -> None:
        text = Text.assemble((start, "dim"))
        if not message.raw:
            text.append("(empty acknowledgement)", "dim")
        elif not message.members:
            text.append(shorten(repr(message.raw)), "red")
        else:
            text.append(message.command or "?", f"bold {style}")
            result = message.members.get("Result")
            if message.command.endswith(REPLY_SUFFIX) and result is not None:
                good = str(result) == "0"
                text.append(" done" if good else f" failed ({result})", "green" if good else "bold red")
            for name, value in [*message.data.items(), ("ErrInfo", message.members.get("ErrInfo"))]:
                if value not in (None, ""):
                    text.append(f"  {name}=", "dim")
                    text.append(shorten(summary(value)))
        self._view.line("companion", text)
        if table := tables.of_message(message, self._answers):
            self._view.table("companion", table)
