"""The conversation for people: a line for each message, and tables where a table is easier to look at than JSON.

On a terminal in colour; elsewhere as plain lines, each beginning with who speaks ("companion:").
"""

from __future__ import annotations

import collections
import sys
from typing import Iterable

from rich.box import ASCII, SIMPLE_HEAD
from rich.console import Console
from rich.markup import escape
from rich.table import Table
from rich.text import Text

from vernoxa.wire.catalogue import BOM_LINE, COMMANDS, REPLY_SUFFIX, Command
from vernoxa.wire.events import CLOSED, FAULT, NOTE, OPENED, PROBED, RECEIVED, SENT, Event
from vernoxa.wire.messages import Message

from .answers import Answers

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
    """Several speakers can share one view, so that their lines come in the order in which they happened."""

    def __init__(self, colour: bool | None = None):
        self.colour = sys.stdout.isatty() if colour is None else colour
        self.last_lines: dict[str, collections.deque[str]] = collections.defaultdict(lambda: collections.deque(maxlen=12))
        if self.colour:
            self._console = Console(force_terminal=True, highlight=False)
        else:
            self._console = Console(force_terminal=False, color_system=None, highlight=False, width=PLAIN_WIDTH)

    def line(self, speaker: str, text: str | Text, style: str = "") -> None:
        self.last_lines[speaker].append(str(text))
        if self.colour:
            body = text if isinstance(text, Text) else Text(text, style)
            start = (f"{speaker:>9} ", _SPEAKERS.get(speaker, "dim"))
            self._console.print(Text.assemble(start, body), soft_wrap=True)
        else:
            for part in str(text).splitlines() or [""]:
                print(f"{speaker}: {part}".rstrip(), flush=True)

    def table(self, speaker: str, table: Table) -> None:
        if self.colour:
            self._console.print(table)
            return
        with self._console.capture() as capture:
            self._console.print(table)
        for part in capture.get().splitlines():
            print(f"{speaker}: {part}".rstrip(), flush=True)

    def new_table(self, title: str, *columns: str) -> Table:
        table = Table(
            title=escape(title),
            title_justify="left",
            title_style="bold" if self.colour else "none",
            box=SIMPLE_HEAD if self.colour else ASCII,
            header_style="bold cyan" if self.colour else "none",
        )
        for column in columns:
            table.add_column(column, overflow="fold")
        return table


def add_rows(table: Table, rows: Iterable[Iterable[object]], most: int = ROWS_SHOWN) -> None:
    shown = [[escape(str(cell)) for cell in row] for row in rows]
    for row in shown[:most]:
        table.add_row(*row, style="dim" if "not fitted" in row else "")
    if len(shown) > most:
        table.add_row(f"... {len(shown) - most} more")


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


def bom_table(view: View, lists: dict, title: str) -> Table:
    """Parts without a part number are in a list of their own, and in that of their state too: they are shown once."""
    table = view.new_table(title.removesuffix(REPLY_SUFFIX), "State", *BOM_LINE)
    rows: dict[str, list[str]] = {}
    for name, state in BOM_STATES.items():
        for line in lists.get(name, []):
            rows.setdefault(str(line["PartRef"]), [state, *(str(line[key]) for key in BOM_LINE)])
    # Those not fitted come first, since the rest may not be shown to the end.
    add_rows(table, [row for fitted in (False, True) for row in rows.values()
                     if fitted != (row[0] == BOM_STATES["NotStick"])])
    counts = ", ".join(f"{len(lists[name])} {state}" for name, state in BOM_STATES.items() if name in lists)
    table.title = escape(f"{table.title}: {counts}")
    return table


def pages_table(view: View, projects: list[dict]) -> Table:
    table = view.new_table("open projects", "Project", "Pages", "Names")
    for project in projects:
        pages = [str(page) for page in array(project["Pages"])]
        add_rows(table, [[str(project["ProjectPath"]), str(len(pages)), ", ".join(pages)]])
    return table


def findings_table(view: View, check: str, answers: Answers) -> Table:
    found = answers.findings.get(check, [])
    table = view.new_table(f"check {check}: {len(found)} findings", "Value", "Comment", "Page", "At")
    add_rows(
        table,
        ([finding.get(name, "") for name in ("ActualValue", "Comment", "PageName", "PagePos")] for finding in found),
    )
    return table


def designs_table(view: View, answers: Answers) -> Table:
    table = view.new_table("open designs", "Design", "Pins", "Process", "Editor")
    add_rows(table, ([d.path, d.pins, d.process, d.editor] for d in answers.designs.values()))
    return table


def commands_table(view: View) -> Table:
    table = view.new_table("commands", "Command", "What for", "Members")
    add_rows(table, ([c.name, c.purpose, members_text(c)] for c in COMMANDS), len(COMMANDS))
    return table


def members_text(command: Command) -> str:
    return " ".join(member.name if member.needed else f"[{member.name}]" for member in command.members)
