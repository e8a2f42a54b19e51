"""The plug-in's traffic log as the conversation that it tells of.

The log is text in the code page with CR LF line ends. A line begins with "[Time]:2024-3-5 9:7:2:45." (milliseconds
after the last colon, nothing padded); a message that was printed with line ends goes on in lines without a time.
Messages take four ways, each with marks of its own around them:

    in      "====================decodePacket", message         the host's Tcl hands a packet to the plug-in
    out     "return data:" message, packet text                 the plug-in hands a packet to the host's Tcl
    sent    message, "acBuf[0]:" ... "acBuf[3]:", "Length:",    the plug-in's own socket; "errno:" for each piece lost
            packet text, "==========================send over"
    received    "revData[0]:" ... "revData[3]:", "len:", message, "==========================recv over"

Everything else is a step of the program. Lines of two threads may come between each other.
"""

from __future__ import annotations

import collections
import dataclasses
import pathlib
import re

from vernoxa.wire import frames, json_text, messages, record
from vernoxa.wire.catalogue import ANSWERED, REPLY_SUFFIX, THREAD_REQUESTS, find

IN, OUT, SENT, RECEIVED, STEP = "in", "out", "sent", "received", "step"

# What the companion answers.
_ANSWERS = tuple(name + REPLY_SUFFIX for name in ANSWERED)

_START = re.compile(rb"\[Time\]:(\d+-\d+-\d+ \d+:\d+:\d+:\d+)\.")
_HEADER = re.compile(rb"(acBuf|revData)\[([0-3])\]:([0-9a-f]{1,8})")
_NUMBER = re.compile(rb"(Length|len|errno):(-?\d+)")
_DIGITS = re.compile(rb"[0-9a-f]*")
_DECODE, _SEND_OVER, _RECEIVE_OVER = (b"=" * 20 + b"decodePacket", b"=" * 26 + b"send over", b"=" * 26 + b"recv over")
_RETURN = b"return data:"
_TEXT = re.compile(rb'[^";]*[\x80-\xff][^";]*')
_BRACE = b"7b"  # every message begins with one, no step does


@dataclasses.dataclass
class Item:
    """One message, or one step (its text in `message`), with what is wrong with it."""

    time: str
    way: str
    message: messages.Message
    faults: list[str] = dataclasses.field(default_factory=list)
    repeats: bool = False  # the same message, seen once more where the host hands it on


@dataclasses.dataclass
class _Line:
    time: str
    text: bytes


@dataclasses.dataclass
class _Frame:
    """A message on the plug-in's own socket, as far as its lines have come."""

    item: Item
    header: dict[int, int] = dataclasses.field(default_factory=dict)
    length: int | None = None
    text: bytes | None = None

    @property
    def announced(self) -> int | None:
        return sum(value << 8 * index for index, value in self.header.items()) if len(self.header) == 4 else None


def read(log: bytes) -> list[Item]:
    return _Reader(_lines(log)).items()


def of_record(file: pathlib.Path) -> list[Item]:
    """A recorded conversation in the same form. Raises record.BadRecord."""
    ways = {record.PLUG_IN: OUT, record.COMPANION: IN}
    said = [entry for entry in record.read(file) if entry.what in ways]
    items = [Item(f"{entry.seconds:8.3f}", ways[entry.what], read_message(entry.message)) for entry in said]
    for item in items:
        item.faults += item.message.faults
    _judge_conversation(items)
    return items


def _lines(log: bytes) -> list[_Line]:
    lines: list[_Line] = []
    for text in log.replace(b"\r\n", b"\n").removesuffix(b"\n").split(b"\n"):
        start = _START.match(text)
        if start:
            lines.append(_Line(_clock(start[1].decode("ascii")), text[start.end():]))
        elif lines:
            lines[-1].text += b"\n" + text
        elif text:
            lines.append(_Line("", text))
    return lines


def _clock(time: str) -> str:
    """09:07:02.045, as people write it; the day is the same for a run, nearly always."""
    hour, minute, second, milliseconds = time.split(" ")[1].split(":")
    return f"{hour:0>2}:{minute:0>2}:{second:0>2}.{milliseconds:0>3}"


class _Reader:
    def __init__(self, lines: list[_Line]):
        self._lines = lines
        self._items: list[Item] = []
        self._decoding: _Line | None = None     # a packet whose message has not come yet
        self._returned: Item | None = None      # a message whose packet text has not come yet
        self._sending: _Frame | None = None
        self._receiving: _Frame | None = None

    def items(self) -> list[Item]:
        for number, line in enumerate(self._lines):
            following = self._lines[number + 1].text if number + 1 < len(self._lines) else b""
            self._take(line, following)
        self._end_sending("the log ends before it is sent")
        self._end_receiving("the log ends before it is received")
        _judge_conversation(self._items)
        return self._items

    def _take(self, line: _Line, following: bytes) -> None:
        header, number = _HEADER.fullmatch(line.text), _NUMBER.fullmatch(line.text)
        if line.text == _DECODE:
            self._close_decoding()
            self._decoding = line
        elif line.text.startswith(_RETURN):
            self._returned = self._add(line, OUT, line.text.removeprefix(_RETURN))
        elif header:
            self._take_header(line, header[1] == b"acBuf", int(header[2]), int(header[3], 16) & 0xFF)
        elif number:
            self._take_number(number[1], int(number[2]))
        elif line.text == _SEND_OVER:
            self._end_sending("")
        elif line.text == _RECEIVE_OVER:
            self._end_receiving("")
        elif self._is_packet_text(line.text):
            pass
        elif following.startswith(b"acBuf[0]:"):
            self._end_sending("never finished")
            self._sending = _Frame(self._add(line, SENT, line.text))
        elif self._decoding:
            self._decoding = None
            self._add(line, IN, line.text)
        elif self._receiving and self._receiving.length is not None and self._receiving.text is None:
            self._receiving.text = line.text
            self._receiving.item.message = read_message(line.text)
        else:
            self._add(line, STEP, line.text)

    def _add(self, line: _Line, way: str, text: bytes) -> Item:
        item = Item(line.time, way, read_message(text))
        if way == SENT:  # its requests are printed with line ends, whatever their message
            _only_unreadable(item.message)
        if way != STEP:
            item.faults += item.message.faults
        self._items.append(item)
        return item

    def _close_decoding(self) -> None:
        if self._decoding:
            item = self._add(self._decoding, IN, b"")
            item.faults.append("no packet text: it could not be decoded")
        self._decoding = None

    def _is_packet_text(self, text: bytes) -> bool:
        """A line of digits belongs to the message that was logged before it, and has to be that message."""
        if not text or not _DIGITS.fullmatch(text):
            return False
        waiting = [item for item in (self._returned, self._sending and self._sending.item) if item]
        said = _as_logged(frames.decode(text)[0])
        for item in waiting:
            if item.message.raw == said or (len(waiting) == 1 and text.startswith(_BRACE)):
                if item.message.raw != said:
                    item.faults.append("the packet text is another message: " + _shown(text))
                if item is self._returned:
                    self._returned = None
                elif self._sending:
                    self._sending.text = text
                return True
        return False

    def _take_header(self, line: _Line, sending: bool, index: int, value: int) -> None:
        if not sending and index == 0:
            self._end_receiving("broken off: the other side closed the connection")
            self._receiving = _Frame(self._add(line, RECEIVED, b""))
        frame = self._sending if sending else self._receiving
        if frame:
            frame.header[index] = value

    def _take_number(self, name: bytes, value: int) -> None:
        if name == b"errno" and self._sending:
            self._sending.item.faults.append(f"a piece could not be sent (errno {value})")
        frame = {b"Length": self._sending, b"len": self._receiving}.get(name)
        if frame:
            frame.length = value

    def _end_sending(self, broken: str) -> None:
        frame, self._sending = self._sending, None
        if frame:
            frame.item.faults += [broken] if broken else _frame_faults(frame, len(frame.text or b""))

    def _end_receiving(self, broken: str) -> None:
        frame, self._receiving = self._receiving, None
        if frame:
            frame.item.faults += [broken] if broken else _frame_faults(frame, 2 * len(frame.text or b""))


def _frame_faults(frame: _Frame, digits: int) -> list[str]:
    faults = []
    if frame.announced is not None and frame.announced != frame.length:
        faults.append(f"the header says {frame.announced}, the log {frame.length}")
    if frame.length is not None and frame.length > 0xFFFF:
        faults.append(f"{frame.length} digits: a receiver that counts 16 bits cannot read this whole")
    elif frame.length is not None and frame.length != digits:
        faults.append(f"{digits} digits, announced were {frame.length}")
    return faults


def _as_logged(message: bytes) -> bytes:
    """The log is in the code page: each text of UTF-8 with a three-byte sequence is brought there, a packet text is not."""
    return _TEXT.sub(lambda text: json_text.to_code_page(_utf8_of(text[0])) or text[0], message)


def _utf8_of(text: bytes) -> str:
    """Empty when it is left as it is."""
    try:
        return found if isinstance(found := json_text.text_of(text), json_text.Utf8) else ""
    except UnicodeDecodeError:
        return ""


def read_message(raw: bytes) -> messages.Message:
    """What the plug-in says is judged in whole; of the others' words only whether they can be read."""
    message = messages.read(raw)
    name = message.command.removesuffix(REPLY_SUFFIX)
    of_others = find(message.command) or message.command in _ANSWERS or name in THREAD_REQUESTS
    if of_others:
        _only_unreadable(message)
    return message


def _only_unreadable(message: messages.Message) -> None:
    message.faults = [fault for fault in message.faults if fault.startswith(("no JSON", 'no "Command"'))]


def _judge_conversation(items: list[Item]) -> None:
    """Marks what is handed on twice, requests without an answer, and answers without a request."""
    recent: collections.deque[Item] = collections.deque(maxlen=16)
    asked: dict[str, list[Item]] = collections.defaultdict(list)
    for item in items:
        if item.way == STEP:
            continue
        if any(other.message.raw == item.message.raw and {other.way, item.way} in ({SENT, IN}, {OUT, RECEIVED})
               and not other.repeats for other in recent):
            item.repeats, item.faults = True, []
            continue
        recent.append(item)
        name = item.message.command
        if item.way == IN and name and not name.endswith(REPLY_SUFFIX):
            asked[name].append(item)
        elif item.way == OUT and asked.get(name.removesuffix(REPLY_SUFFIX)) and name.endswith(REPLY_SUFFIX):
            asked[name.removesuffix(REPLY_SUFFIX)].pop(0)
    for name, items_left in asked.items():
        command = find(name)
        for item in items_left:
            if command is None or command.answered:
                item.faults.append("no answer" if command or name in THREAD_REQUESTS else "not known, and no answer")


def _shown(text: bytes) -> str:
    raw, _ = frames.decode(text)
    return " ".join(raw.decode("gbk", "replace").split())[:80]
