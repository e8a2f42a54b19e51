"""Messages out of the recorded conversations in tests/conversations, for the pages."""

from __future__ import annotations

import json

from vernoxa.places import CONVERSATIONS
from vernoxa.wire import json_text, messages, record
from vernoxa.wire.catalogue import REPLY_SUFFIX

MOST_ITEMS = 2


class Recorded:
    """Examples of every message. What is asked for and not there is kept in `missing`."""

    def __init__(self) -> None:
        self._found: dict[tuple[str, str], list[messages.Message]] = {}
        self._pairs: dict[str, list[tuple[messages.Message, messages.Message]]] = {}
        self.missing: list[str] = []
        open_requests: dict[str, list[messages.Message]] = {}
        files = sorted(CONVERSATIONS.glob("*.txt"))
        for entry in (entry for file in files for entry in record.read(file) if entry.message):
            message = messages.read(entry.message)
            self._found.setdefault((entry.what, message.command), []).append(message)
            name = message.command.removesuffix(REPLY_SUFFIX)
            if entry.what == record.COMPANION:
                open_requests.setdefault(message.command, []).append(message)
            elif open_requests.get(name) and (not message.of_its_own or message.shape == "report"):
                self._pairs.setdefault(name, []).append((open_requests[name].pop(0), message))

    def block(self, who: str, name: str, shape: str = "") -> str:
        """The first one, if possible with texts in UTF-8 too; `shape` is that of a message of the plug-in."""
        fitting = [message for message in self._found.get((who, name), []) if shape in ("", message.shape)]
        for message in sorted(fitting, key=lambda message: not _encodings(record.json_of(message)[1])):
            return block_of(message)
        self.missing.append(f"{name} {shape}".strip())
        return ""

    def pair(self, name: str, shapes: tuple[str, ...]) -> tuple[str, str] | None:
        """The first request that was answered in one of these shapes, and its answer."""
        for request, reply in self._pairs.get(name, []):
            if reply.shape in shapes:
                return block_of(request), block_of(reply)
        return None

    def value(self, who: str, name: str, shape: str, path: tuple[str, ...]) -> object:
        """What a member of "Data" was in the first message that had it and was not empty; None when none was."""
        for message in self._found.get((who, name), []):
            if shape in ("", message.shape):
                value = _first(message.data, path)
                if value not in (None, ""):
                    return value
        return None


def _first(value: object, path: tuple[str, ...]) -> object:
    """The first value at that path that is not empty, arrays looked through from their beginning."""
    if isinstance(value, list):
        return next((found for item in value if (found := _first(item, path)) not in (None, "")), None)
    if not path:
        return value if isinstance(value, (str, int, float)) else None
    return _first(value.get(path[0]), path[1:]) if isinstance(value, dict) else None


def block_of(message: messages.Message) -> str:
    """As it stands on the wire when it was printed with line ends there, else with line ends for its reader."""
    form, value = record.json_of(message)
    if form == messages.FORMATTED:
        return f"```json\n{json_text.from_code_page(message.raw)}\n```\n"
    left_out: list[str] = []
    value = _short(value, "", left_out)
    text = "```json\n" + json.dumps(value, ensure_ascii=False, indent=2) + "\n```\n"
    if left_out:
        text += f"\nShortened here: {', '.join(left_out)}.\n"
    return text + _encodings(value)


def _encodings(value: object) -> str:
    """What is in which encoding, where it is not the code page alone."""
    texts = [text for text in json_text.texts_of(value) if not text.isascii()]
    utf8 = dict.fromkeys(f"`{text}`" for text in texts if isinstance(text, json_text.Utf8))
    gbk = dict.fromkeys(f"`{text}`" for text in texts if not isinstance(text, json_text.Utf8))
    if not utf8:
        return ""
    return f"\nIn UTF-8: {', '.join(utf8)}." + (f" In GBK: {', '.join(gbk)}." if gbk else "") + "\n"


def _short(value: object, name: str, left_out: list[str]) -> object:
    if isinstance(value, dict):
        return {member: _short(item, member, left_out) for member, item in value.items()}
    if isinstance(value, list):
        if len(value) > MOST_ITEMS:
            left_out.append(f"{len(value) - MOST_ITEMS} more in `{name}`")
        return [_short(item, name, left_out) for item in value[:MOST_ITEMS]]
    return value
