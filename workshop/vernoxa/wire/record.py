"""Recorded conversations: readable files from which every message can be read back byte for byte.

A file is UTF-8 text of blocks, parted by empty lines. The first block is the title line

    conversation 1

and any lines "name: value" that describe the run. Every other block begins with a header line

    @ SECONDS CONNECTION WHAT [FORM COMMAND]

    SECONDS     since the start, with three decimals
    CONNECTION  the connection's number, counted from 1
    WHAT        opened, closed or probed (a connection that closed without a word), alone in its block;
                "plug-in" for a message that the plug-in sent, "companion" for one that the companion sent,
                "host" for what the host's user did, in the words of `sim/host/commands.tcl` below; its connection is 0
    FORM        how the message stood on the wire:
                plain      the JSON below, printed without spaces
                formatted  the JSON below, printed with tabs and line ends
                bytes      neither; hexadecimal digits, 64 in a line, are the message
                empty      no bytes at all, nothing below
    COMMAND     the message's name, "-" when it has none (for the reader's eye only)

and for a message goes on with its lines: JSON, indented by two spaces, Chinese as it is. Member order is kept. The code
page on the wire is GBK; a text that was UTF-8 there begins with "⟦utf-8⟧", which no text in GBK can hold.
Lines that begin with "#" are remarks (faults found, for example).
"""

from __future__ import annotations

import dataclasses
import json
import pathlib
from typing import Iterable, TextIO

from vernoxa.command import Refused

from . import json_text
from .events import CLOSED, FAULT, NOTE, OPENED, PROBED, RECEIVED, SENT, Event
from .messages import EMPTY, FORMATTED, OTHER, PLAIN, Message, form_of
from .messages import read as read_message

TITLE = "conversation 1"
PLUG_IN, COMPANION, HOST = "plug-in", "companion", "host"
BYTES = "bytes"
ROOT = "Z:\\run"  # the folder of a recorded run, whatever it was called
_UTF8 = "⟦utf-8⟧"
_SIDES = {RECEIVED: PLUG_IN, SENT: COMPANION}


@dataclasses.dataclass
class Entry:
    """One block. `what` is OPENED, CLOSED, PROBED, the side that sent `message`, or HOST with its words as `message`."""

    seconds: float
    connection: int
    what: str
    message: bytes = b""


class BadRecord(Refused):
    """The file is no recorded conversation; the text names the line."""


class Recorder:
    """A listener that writes each event as it comes; the file is whole after every message.

    What lies below the folder `root` of the run is written as lying below ROOT.
    """

    def __init__(self, stream: TextIO, **about: str):
        self._stream = stream
        self._root = about.get("root", ROOT)
        if "root" in about:
            about["root"] = ROOT
        self._write([TITLE, *(f"{name}: {value}" for name, value in about.items())])

    def __call__(self, event: Event) -> None:
        start = f"@ {event.seconds:.3f} {event.connection}"
        if event.kind in _SIDES:
            message = event.message if self._root == ROOT else read_message(moved(event.message.raw, self._root, ROOT))
            form, lines = _body(message)
            self._write([f"{start} {_SIDES[event.kind]} {form} {message.command or '-'}", *lines])
            if form == BYTES:
                self._write(["# text: " + " ".join(message.raw.decode("gbk", "replace").split())])
        elif event.kind in (OPENED, CLOSED, PROBED):
            self._write([f"{start} {event.kind}"])
        elif event.kind == HOST:
            self._write([f"{start} {HOST}", moved(event.text.encode(), self._root, ROOT).decode()])
        elif event.kind in (FAULT, NOTE):
            self._write([f"# {event.kind}: " + " ".join(event.text.split())])

    def _write(self, lines: Iterable[str]) -> None:
        self._stream.write("\n".join(lines) + "\n\n")
        self._stream.flush()


def _body(message: Message) -> tuple[str, list[str]]:
    if not message.raw:
        return EMPTY, []
    form, value = json_of(message)
    if form in (PLAIN, FORMATTED):
        return form, json.dumps(_marked(value), ensure_ascii=False, indent=2).split("\n")
    digits = message.raw.hex()
    return BYTES, [digits[at : at + 64] for at in range(0, len(digits), 64)]


def json_of(message: Message) -> tuple[str, object]:
    """The JSON that gives the message's bytes back, and the form in which it does; any other form when none does."""
    form = form_of(message.raw, message.members)
    if form in (PLAIN, FORMATTED):
        return form, message.members
    try:
        value, problems = json_text.parse(message.raw)
    except json_text.NotJson:
        return form, None
    return (OTHER if problems else form_of(message.raw, value)), value


def moved(message: bytes, old: str, new: str) -> bytes:
    """Both roots are ASCII, which stands in a message of any form as it is, but for its doubled backslashes."""
    for before, after in ((old.replace("\\", "\\\\"), new.replace("\\", "\\\\")),
                          (old, new), (old.replace("\\", "/"), new.replace("\\", "/"))):
        message = message.replace(before.encode("ascii"), after.encode("ascii"))
    return message


def _marked(value: object) -> object:
    return json_text.each_text(value, lambda text: _UTF8 + text if isinstance(text, json_text.Utf8) else text)


def _unmarked(value: object) -> object:
    return json_text.each_text(
        value, lambda text: json_text.Utf8(text.removeprefix(_UTF8)) if text.startswith(_UTF8) else text
    )


def read_about(path: pathlib.Path) -> dict[str, str]:
    """What the title block says of the run. Raises BadRecord."""
    about: dict[str, str] = {}
    with open(path, encoding="utf-8", newline="\n") as stream:
        if stream.readline().rstrip("\n") != TITLE:
            raise BadRecord(f'line 1: no "{TITLE}"')
        for line in iter(lambda: stream.readline().rstrip("\n"), ""):
            name, _, value = line.partition(": ")
            about[name] = value
    return about


def read(path: pathlib.Path) -> list[Entry]:
    """Raises BadRecord."""
    entries: list[Entry] = []
    with open(path, encoding="utf-8", newline="\n") as stream:
        if stream.readline().rstrip("\n") != TITLE:
            raise BadRecord(f'line 1: no "{TITLE}"')
        header: tuple[int, str] | None = None
        body: list[str] = []
        described = False  # the first block is over
        for number, line in enumerate(stream, 2):
            line = line.rstrip("\n")
            if not line:
                if header:
                    entries.append(_entry(*header, body))
                header, body, described = None, [], True
            elif header:
                body.append(line)
            elif line.startswith("@ "):
                header = (number, line)
            elif described and not line.startswith("#"):
                raise BadRecord(f"line {number}: neither a header nor a remark")
        if header:
            entries.append(_entry(*header, body))
    return entries


def _entry(number: int, header: str, body: list[str]) -> Entry:
    try:
        _, seconds, connection, what, *rest = header.split(" ")
        entry = Entry(float(seconds), int(connection), what)
        if what in (OPENED, CLOSED, PROBED) and not rest and not body:
            return entry
        if what == HOST and not rest and len(body) == 1:
            entry.message = body[0].encode("utf-8")
            return entry
        if what in _SIDES.values() and len(rest) == 2:
            entry.message = _message(rest[0], "\n".join(body))
            return entry
    except (ValueError, UnicodeError) as error:
        raise BadRecord(f"line {number}: {error}") from error
    raise BadRecord(f"line {number}: no header of a block")


def _message(form: str, body: str) -> bytes:
    if form == EMPTY and not body:
        return b""
    if form == BYTES:
        return bytes.fromhex(body)
    printers = {PLAIN: json_text.print_plain, FORMATTED: json_text.print_formatted}
    if form not in printers:
        raise ValueError(f'no form "{form}"')
    return printers[form](_unmarked(json.loads(body)))
