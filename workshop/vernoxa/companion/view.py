"""The conversation for people: a line for each message, and tables where a table is easier to look at than JSON.

On a terminal in colour; elsewhere as plain lines, each beginning with who speaks ("companion:").
"""

from __future__ import annotations

import collections
import sys
from typing import Container, Iterable, TextIO

from rich.box import ASCII, SIMPLE_HEAD
from rich.console import Console
from rich.markup import escape
from rich.table import Table
from rich.text import Text

from vernoxa.command import end_without_reader
from vernoxa.wire.catalogue import BOM_LINE, COMMANDS, REPLY_SUFFIX
from vernoxa.wire.events import CLOSED, FAULT, NOTE, OPENED, PROBED, RECEIVED, SENT, Event
from vernoxa.wire.messages import Message

from .answers import Answers
from .typed import members_text

PLAIN_WIDTH = 140
ROWS_SHOWN = 12
LONGEST_VALUE = 90

_SPEAKERS = {"companion": "bold cyan", "host": "bold magenta", "demo": "bold yellow", "play": "bold yellow"}
_STYLES = {FAULT: "bold red", NOTE: "yellow", OPENED: "green", CLOSED: "green", PROBED: "dim"}
_EVENT_TEXTS = {
    OPENED: "connected",
    CLOSED: "closed",
    PROBED: "probed: connected and closed at once",
}
BOM_STATES = {"Stick": "fitted", "NotStick": "not fitted", "NotPartNumber": "no part number"}


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
        plain = [f"{speaker}: {part}".rstrip() for part in str(text).splitlines() or [""]]
        if self.colour and self._takes(speaker, plain):
            body = text if isinstance(text, Text) else Text(text, style)
            start = (f"{speaker:>9} ", _SPEAKERS.get(speaker, "dim"))
            self._console.print(Text.assemble(start, body), soft_wrap=True)
        elif not self.colour:
            self._print(speaker, plain)

    def table(self, speaker: str, table: Table) -> None:
        with self._console.capture() as capture:
            self._console.print(table)
        plain = [f"{speaker}: {part}".rstrip() for part in capture.get().splitlines()]
        if not self.colour:
            self._print(speaker, plain)
        elif self._takes(speaker, plain):
            self._console.print(table)

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

    def new_table(self, title: str, *columns: str) -> Table:
        table = Table(
            title=escape(title),
            title_justify="left",
            caption_justify="left",
            caption_style="dim" if self.colour else "none",
            title_style="bold" if self.colour else "none",
            box=SIMPLE_HEAD if self.colour else ASCII,
            header_style="bold cyan" if self.colour else "none",
        )
        for column in columns:
            table.add_column(column, overflow="fold")
        return table


def add_rows(table: Table, rows: Iterable[Iterable[object]], most: int | None = ROWS_SHOWN, rest: str = "") -> None:
    """`rest` says how to see what is left out."""
    shown = [[escape(str(cell)) for cell in row] for row in rows]
    for row in shown[:most]:
        table.add_row(*row, style="dim" if "not fitted" in row else "")
    if most is not None and len(shown) > most:
        table.caption = escape(f"{len(shown) - most} more{rest}")


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
        for table in tables_of(self._view, message, self._answers):
            self._view.table("companion", table)


def shorten(text: str) -> str:
    text = " ".join(text.split())
    return text if len(text) <= LONGEST_VALUE else text[: LONGEST_VALUE - 3] + "..."


def array(value: object) -> list:
    """What arrives may be anything; what is no array has nothing to show."""
    return value if isinstance(value, list) else []


def summary(value: object) -> str:
    if isinstance(value, list):
        if len(value) <= 4 and all(isinstance(item, str) for item in value):
            return "[" + ", ".join(value) + "]"
        return f"[{len(value)}]"
    if isinstance(value, dict):
        return "{" + ", ".join(value) + "}"
    return str(value)


def tables_of(view: View, message: Message, answers: Answers) -> list[Table]:
    """The tables that belong below a message's line; none for one that is not as it should be."""
    data = message.data
    if message.faults:
        return []
    if message.command in ("GenerateBOM_EndResult", "AddToBom", "RemoveFromBom"):
        return [bom_table(view, data, message.command)]
    if message.command == "GetActiveProPages_EndResult" and message.succeeded:
        return [pages_table(view, data["Open"])]
    if message.command == "GetPartPropertyList_EndResult" and message.succeeded:
        table = view.new_table("part properties", "Name")
        add_rows(table, ([str(name)] for name in array(data.get("PropertyList"))))
        return [table]
    if message.command == "DsnCheck_EndResult":
        return [findings_table(view, str(data.get("id", "")), answers)]
    if message.shape == "report":
        table = view.new_table("properties", "Name", "Value")
        add_rows(table, data["item"])
        return [table]
    if message.shape == "upload":
        table = view.new_table("parts of the module", "Id", "Ref", "Package")
        add_rows(table, ([part.get(name, "") for name in ("Id", "Ref", "Package")] for part in data["Part"]))
        return [table]
    return []


def bom_rows(lists: dict) -> list[list[str]]:
    """Parts without a part number are in a list of their own, and in that of their state too: they are there once.

    Those not fitted come first, since the rest may not be shown to the end.
    """
    rows: dict[str, list[str]] = {}
    for name in ("NotStick", "Stick", "NotPartNumber"):
        for line in lists.get(name, []):
            rows.setdefault(str(line["PartRef"]), [BOM_STATES[name], *(str(line[key]) for key in BOM_LINE)])
    return list(rows.values())


def bom_table(view: View, lists: dict, title: str, whole: bool = False) -> Table:
    counts = ", ".join(f"{len(lists[name])} {state}" for name, state in BOM_STATES.items() if name in lists)
    table = view.new_table(f"{title.removesuffix(REPLY_SUFFIX)}: {counts}", "State", *BOM_LINE)
    how = ": bom --all shows them, bom --csv FILE saves all"
    add_rows(table, bom_rows(lists), None if whole else ROWS_SHOWN, how)
    return table


def pages_table(view: View, projects: list[dict]) -> Table:
    table = view.new_table("open projects", "Project", "Pages", "Names")
    for project in projects:
        pages = [str(page) for page in array(project["Pages"])]
        add_rows(table, [[str(project["ProjectPath"]), str(len(pages)), ", ".join(pages)]])
    return table


def findings_table(view: View, check: str, answers: Answers, whole: bool = False) -> Table:
    found = answers.findings.get(check, [])
    table = view.new_table(f"check {check}: {len(found)} findings", "Value", "Comment", "Page", "At")
    add_rows(
        table,
        ([finding.get(name, "") for name in ("ActualValue", "Comment", "PageName", "PagePos")] for finding in found),
        None if whole else ROWS_SHOWN,
        ": checks --all shows them",
    )
    return table


def designs_table(view: View, answers: Answers) -> Table:
    table = view.new_table("open designs", "Design", "Pins", "Process", "Editor")
    add_rows(table, ([d.path, d.pins, d.process, d.editor] for d in answers.designs.values()))
    return table


def commands_table(view: View) -> Table:
    table = view.new_table("commands", "Command", "What for", "Members")
    add_rows(table, ([c.name, c.purpose, members_text(c)] for c in COMMANDS), None)
    return table
