"""A recorded conversation with what is needed to hold it again: the designs that were open and the folder of the run.

The title block of such a record has the lines

    root: FOLDER                        every path of the run lies below it, in Windows form
    design N: SCHEMATIC as NAME         a KiCad schematic (below sim/designs, or a whole path) and its path below the
                                        root, in the order in which the designs were opened
"""

from __future__ import annotations

import dataclasses
import pathlib
import re

from vernoxa.command import Refused
from vernoxa.places import DESIGNS
from vernoxa.wire import json_text, messages, record
from vernoxa.wire.catalogue import REPLY_SUFFIX
from vernoxa.wire.events import CLOSED, OPENED, PROBED, RECEIVED, SENT, Event
from vernoxa.wire.record import COMPANION, HOST, Entry, moved

_DESIGN = re.compile(r"(?P<schematic>.+?) as (?P<name>.+)")
_KINDS = {record.PLUG_IN: RECEIVED, record.COMPANION: SENT, OPENED: OPENED, CLOSED: CLOSED, PROBED: PROBED,
          HOST: HOST}


class NotReplayable(Refused):
    """The record cannot be held again; the text says why."""


@dataclasses.dataclass(frozen=True)
class Design:
    """`name` is its path below the root, in Windows form."""

    schematic: pathlib.Path
    name: str

    @staticmethod
    def parse(text: str) -> "Design":
        """Raises NotReplayable."""
        found = _DESIGN.fullmatch(text)
        if not found:
            raise NotReplayable(f'no design: "{text}"')
        return Design(DESIGNS / found["schematic"], found["name"])

    def __str__(self) -> str:
        path = self.schematic.relative_to(DESIGNS) if self.schematic.is_relative_to(DESIGNS) else self.schematic
        return f"{path} as {self.name}"


@dataclasses.dataclass
class Conversation:
    root: str
    designs: list[Design]
    entries: list[Entry]

    @staticmethod
    def read(path: pathlib.Path) -> "Conversation":
        """Raises record.BadRecord and NotReplayable."""
        about = record.read_about(path)
        designs = [Design.parse(text) for name, text in about.items() if name.startswith("design ")]
        if "root" not in about or not designs:
            raise NotReplayable(f"{path} does not say which designs were open: record it with ./dev play --record")
        return Conversation(about["root"], designs, record.read(path))

    def write(self, path: pathlib.Path) -> None:
        about = {"root": self.root} | {f"design {number}": str(design) for number, design in enumerate(self.designs, 1)}
        with open(path, "w", encoding="utf-8", newline="\n") as stream:
            write = record.Recorder(stream, **about)
            for entry in self.entries:
                words = entry.message.decode("utf-8") if entry.what == HOST else ""
                message = messages.read(b"" if words else entry.message)
                write(Event(entry.seconds, _KINDS[entry.what], entry.connection, message, words))

    def moved_to(self, root: str) -> "Conversation":
        """The same below another folder."""
        return Conversation(root, self.designs, [
            dataclasses.replace(entry, message=moved(entry.message, self.root, root)) for entry in self.entries
        ])


def entry_of(event: Event) -> Entry | None:
    """None for what is no part of a record."""
    for what, kind in _KINDS.items():
        if event.kind == kind:
            return Entry(event.seconds, event.connection, what, event.message.raw)
    return None


def is_request(entry: Entry) -> bool:
    return entry.what == COMPANION and not value_of(entry).get("Command", "").endswith(REPLY_SUFFIX)


def value_of(entry: Entry) -> dict:
    """The envelope in a message that the companion sent. Raises NotReplayable."""
    try:
        value, _ = json_text.parse(entry.message)
    except json_text.NotJson as error:
        raise NotReplayable(f"the companion's message at {entry.seconds:.3f} s is no JSON: {error}") from error
    if not isinstance(value, dict):
        raise NotReplayable(f"the companion's message at {entry.seconds:.3f} s is no object")
    return value
