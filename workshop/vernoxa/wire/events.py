"""What happens in a conversation, one event after the other."""

from __future__ import annotations

import dataclasses

from .messages import EMPTY, Message

OPENED, CLOSED, PROBED, RECEIVED, SENT, FAULT, NOTE = "opened", "closed", "probed", "received", "sent", "fault", "note"


@dataclasses.dataclass
class Event:
    """`seconds` counts from the start of the companion; what it receives the plug-in's side has sent."""

    seconds: float
    kind: str
    connection: int
    message: Message = dataclasses.field(default_factory=lambda: Message(b"", {}, EMPTY))
    text: str = ""

    def is_message(self, command: str, **data: str) -> bool:
        return (
            self.kind == RECEIVED
            and self.message.command == command
            and all(self.message.data.get(name) == value for name, value in data.items())
        )
