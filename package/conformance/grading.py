"""What both checks share: rules that hold or fail, each with its grade, and what the plug-in said when it was recorded."""

from __future__ import annotations

import os
import pathlib
from typing import Callable

from vernoxa.command import DONE, NOT_DONE
from vernoxa.places import BUILD, CONVERSATIONS, REPOSITORY
from vernoxa.wire import json_text, messages, record
from vernoxa.wire.catalogue import REPLY_SUFFIX

HERE = pathlib.Path(__file__).resolve().parent
# The package brings a copy of what was recorded.
_COPY = HERE / "recorded"
_SHIPPED = _COPY.is_dir()
RECORDED_CALLS = _COPY / "procedures.txt" if _SHIPPED else REPOSITORY / "tools" / "docs" / "procedures.txt"
LOGS = pathlib.Path.cwd() if _SHIPPED else BUILD / "log"
MUST, SHOULD = "must", "should"
# Between two pieces of a frame: longer than a reader waits for the processor on a machine that has much else to do, or it
# has both at once, and a fault is not seen.
PIECES_SECONDS = 2


def say_at_once(line: str) -> None:
    print(line, flush=True)


class Grades:
    """Says each rule. `failed` holds the grades of those that do not hold."""

    def __init__(self, say: Callable[[str], None]):
        self._say = say
        self.failed: list[str] = []

    def tell(self, grade: str, rule: str, holds: bool, detail: str = "") -> bool:
        reason = f": {detail}" if detail and not holds else ""
        self._say(f"{'holds' if holds else 'FAILS'}  {grade:6}  {rule}{reason}")
        if not holds:
            self.failed.append(grade)
        return holds

    def untried(self, what: str, reason: str) -> None:
        self._say(f"-----          {what} is not tried: {reason}")

    def end(self, log: pathlib.Path) -> int:
        self._say(f"{self.failed.count(MUST)} that must hold and {self.failed.count(SHOULD)} that should do not; "
                  f"the conversation: {os.path.relpath(log)}")
        return NOT_DONE if MUST in self.failed else DONE


class Recorded:
    """What the plug-in said in the recorded conversations, as bytes."""

    def __init__(self) -> None:
        self.told: dict[tuple[str, str], bytes] = {}  # by name and form
        self.replies: dict[str, bytes] = {}
        for file in sorted((_COPY / "conversations" if _SHIPPED else CONVERSATIONS).glob("*.txt")):
            for entry in record.read(file):
                if entry.what != record.PLUG_IN or not entry.message:
                    continue
                message = messages.read(entry.message)
                if message.of_its_own:
                    self.told.setdefault((message.command, message.shape), entry.message)
                elif message.shape == "done":
                    self.replies.setdefault(message.command, entry.message)

    def reply_to(self, command: str) -> bytes:
        refused = {"ErrInfo": "command error", "Result": "1", "Data": {}, "Command": command + REPLY_SUFFIX}
        return self.replies.get(command + REPLY_SUFFIX) or json_text.print_formatted(refused)
