"""Received messages: their envelope, their members, and everything in which they differ from what they should be."""

from __future__ import annotations

import dataclasses
import re

from . import json_text
from .catalogue import FINDING_WORDS, LEFT_OUT, Shape, is_told, shapes_of

PLAIN, FORMATTED, OTHER, EMPTY = "plain", "formatted", "other", "empty"
LONGEST_VALUE = 90  # for people

# Their texts are not converted.
_AS_THE_HOST_GAVE = ("GenerateBOM_EndResult", "Cancel_EndResult")


@dataclasses.dataclass
class Message:
    """`members` is the parsed envelope, empty when there is none. `form` says how it was printed.

    `faults` are deviations; `notes` are oddities that the plug-in is known and allowed to send.
    """

    raw: bytes
    members: dict
    form: str
    shape: str = ""
    of_its_own: bool = False  # sent without being asked, whatever its name
    faults: list[str] = dataclasses.field(default_factory=list)
    notes: list[str] = dataclasses.field(default_factory=list)

    @property
    def command(self) -> str:
        command = self.members.get("Command")
        return command if isinstance(command, str) else ""

    @property
    def data(self) -> dict:
        data = self.members.get("Data")
        return data if isinstance(data, dict) else {}

    @property
    def succeeded(self) -> bool:
        return self.members.get("Result") == "0"

    @property
    def error(self) -> str:
        """The failure text, wherever the command puts it."""
        return str(self.members.get("ErrInfo") or self.data.get("ErrInfo") or "")


def form_of(message: bytes, value: object) -> str:
    """How these bytes print this value: PLAIN, FORMATTED, or OTHER when neither printer gives them."""
    if not message:
        return EMPTY
    try:
        if message == json_text.print_plain(value):
            return PLAIN
        if message == json_text.print_formatted(value):
            return FORMATTED
    except UnicodeEncodeError:
        pass
    return OTHER


def read(raw: bytes) -> Message:
    """Reads and judges a message that the plug-in sent."""
    if not raw:
        return Message(raw, {}, EMPTY)
    glued = _read_glued(raw)
    if glued:
        message = glued
    else:
        try:
            value, problems = json_text.parse(raw)
        except json_text.NotJson as error:
            return Message(raw, {}, OTHER, faults=[f"no JSON: {error}"])
        if not isinstance(value, dict):
            return Message(raw, {}, OTHER, faults=["no JSON object"])
        if value.get("Command") in _AS_THE_HOST_GAVE and not problems:
            value = json_text.each_text(value, lambda text: json_text.text_of_host(json_text.bytes_of(text)))
            assert isinstance(value, dict)
        message = Message(raw, value, form_of(raw, value), faults=problems)
    if not message.command:
        message.faults.append('no "Command", or one that is no text')
        return message
    _judge(message, glued is not None)
    _judge_encoding(message)
    return message


def _judge(message: Message, glued: bool) -> None:
    shapes = shapes_of(message.command)
    if not shapes:
        message.faults.append("a message that the plug-in does not have")
        return
    if message.command in LEFT_OUT and "item" in message.data and not glued:
        message.faults.append("not made of the fixed pieces of a report")
    judged = [(_deviations(message, shape), shape) for shape in shapes]
    faults, shape = min(judged, key=lambda pair: len(pair[0]))
    message.shape = shape.name
    message.of_its_own = is_told(message.command, shape)
    message.faults += faults


def _deviations(message: Message, shape: Shape) -> list[str]:
    faults = _order(message.members, shape.top, "the message")
    data = message.members.get("Data", {})
    if not isinstance(data, dict):
        return faults + ['"Data" is no object']
    faults += _order(data, shape.data, '"Data"')
    if shape.result is not None and message.members.get("Result") != shape.result:
        faults.append(f'"Result" is {message.members.get("Result")!r}, not "{shape.result}"')
    for name, values in shape.values.items():
        value = data.get(name, message.members.get(name))
        if value not in values:
            faults.append(f'"{name}" is {value!r}, not ' + " or ".join(f'"{text}"' for text in values))
    for name, members in shape.items.items():
        array = data.get(name)
        if not isinstance(array, list):
            faults.append(f'"{name}" is no array')
            continue
        for index, item in enumerate(array):
            faults += _order(item, members, f'"{name}"[{index}]')
    faults += _not_texts(data, '"Data"')
    wanted = FORMATTED if shape.formatted else PLAIN
    if message.form != wanted:
        faults.append(f"printed {message.form}, not {wanted}")
    return faults


def _order(members: object, expected: tuple[str, ...], where: str) -> list[str]:
    if not isinstance(members, dict):
        return [f"{where} is no object"]
    present = [name.rstrip("?") for name in expected if not name.endswith("?") or name.rstrip("?") in members]
    if list(members) == present:
        return []
    return [f"members of {where}: {', '.join(members) or 'none'}; expected: {', '.join(present) or 'none'}"]


def _not_texts(value: object, where: str) -> list[str]:
    if isinstance(value, dict):
        return [fault for name, member in value.items() for fault in _not_texts(member, f'{where}."{name}"')]
    if isinstance(value, list):
        return [fault for index, item in enumerate(value) for fault in _not_texts(item, f"{where}[{index}]")]
    return [] if isinstance(value, str) else [f"{where} is no text"]


def _looks_like_utf8(data: bytes) -> bool:
    """The plug-in's own test before it converts. It is blind to a text that ends with its only Chinese character."""
    lead = next((at for at, byte in enumerate(data) if 0xE4 <= byte <= 0xE9), len(data))
    return lead + 2 < len(data) - 1 and all(0x80 <= byte <= 0xBF for byte in data[lead + 1 : lead + 3])


def _judge_encoding(message: Message) -> None:
    texts = [text for text in json_text.texts_of(message.members) if isinstance(text, json_text.Utf8)]
    wrong = [text for text in texts if _looks_like_utf8(text.encode("utf-8"))]
    if wrong and message.command not in (*_AS_THE_HOST_GAVE, "DsnCheck_Result"):
        message.faults.append(f"in UTF-8, not in GBK: {wrong[0]}")
    elif texts:
        message.notes.append(f"{len(texts)} text{'s' * (len(texts) != 1)} in UTF-8, as the host gave them: {texts[0]}")


# Findings and reports are glued together from texts, so a quote in a value makes them no JSON, a property can come twice,
# and a property left out at the end leaves its comma. They are read by the fixed pieces between their values.
_FINDING = re.compile(
    r'\{"Command":"DsnCheck_Result","Data":\{"id":"(.*?)","RequiredValue":"","ActualValue":"(.*)","Comment":"(.*)",'
    r'"PagePos":"(.*)","PageName":"(.*)","ViewBox":"","Sch":"(.*)"\},"Result":"0","ErrInfo":""\}',
    re.DOTALL,
)
_REPORT = re.compile(
    r'\{"Command":"(' + "|".join(LEFT_OUT) + r')","Result":"0","Data":\{"item":\[\{(.*)\}\]\}\}', re.DOTALL
)


def _read_glued(raw: bytes) -> Message | None:
    text = raw.decode("latin-1")  # byte for byte: each value has an encoding of its own
    finding = _FINDING.fullmatch(text)
    report = _REPORT.fullmatch(text)
    try:
        if finding:
            return _finding(raw, *(value.encode("latin-1") for value in finding.groups()))
        if report:
            return _report(raw, *report.groups())
    except UnicodeDecodeError:
        pass
    return None


def _finding(
    raw: bytes, check: bytes, actual: bytes, comment: bytes, position: bytes, page: bytes, schematic: bytes
) -> Message:
    """The value comes as the host gave it; page and schematic stay in UTF-8 only when there is Chinese in them."""
    text, given = json_text.text_of, json_text.text_of_host
    data = {"id": text(check), "RequiredValue": "", "ActualValue": given(actual), "Comment": _comment(comment)}
    data |= {"PagePos": text(position), "PageName": text(page), "ViewBox": "", "Sch": text(schematic)}
    members = {"Command": "DsnCheck_Result", "Data": data, "Result": "0", "ErrInfo": ""}
    return _glued(raw, members)


def _comment(data: bytes) -> str:
    """A name of the host, then the plug-in's own words in the code page."""
    words = next((words for words in map(json_text.to_code_page, FINDING_WORDS) if data.endswith(words)), b"")
    name = json_text.text_of_host(data.removesuffix(words))
    return name + json_text.from_code_page(words) if words else name


def _report(raw: bytes, command: str, body: str) -> Message:
    properties, faults = _properties(command, body)
    message = _glued(raw, {"Command": command, "Result": "0", "Data": {"item": properties}})
    message.faults = faults
    return message


def _glued(raw: bytes, members: dict) -> Message:
    message = Message(raw, members, PLAIN)
    try:
        json_text.parse(raw)
    except json_text.NotJson:
        message.notes.append("no JSON, as a message of glued texts may be: read by its fixed pieces")
    return message


def _properties(command: str, body: str) -> tuple[list[list[str]], list[str]]:
    body = body.removesuffix(",")
    if not body:
        return [], []
    properties, faults = [], []
    for piece in body.removeprefix('"').removesuffix('"').split('","'):
        name, colon, value = piece.partition('":"')
        if not colon:
            faults.append(f"no property: {piece!r}")
        name, value = (json_text.text_of(text.encode("latin-1")) for text in (name, value))
        if name in LEFT_OUT[command]:
            faults.append(f'property "{name}" should be left out')
        if command != "GetOlbObjectPackageInfo_EndResult":  # the one report whose backslashes stand single
            name, value = (text.replace("\\\\", "\\") for text in (name, value))
        properties.append([name, value])
    return properties, faults


def shorten(text: str) -> str:
    text = " ".join(text.split())
    return text if len(text) <= LONGEST_VALUE else text[: LONGEST_VALUE - 3] + "..."


def summary(value: object) -> str:
    if isinstance(value, list):
        if len(value) <= 4 and all(isinstance(item, str) for item in value):
            return "[" + ", ".join(value) + "]"
        return f"[{len(value)}]"
    if isinstance(value, dict):
        return "{" + ", ".join(value) + "}"
    return str(value)
