"""What differs between a recorded conversation and the same one held again, in words for people.

Only what the plug-in sent is compared. What must differ from run to run is ignored: process ids, GUIDs and times. A
plain diff of the two files would show these, and the moments at which the link thread came to report.
"""

from __future__ import annotations

import collections
import dataclasses
import difflib
import json
import re
from typing import Iterable, Iterator

from vernoxa.wire import messages
from vernoxa.wire.record import PLUG_IN, Entry

MOST_LINES = 12
LONGEST_VALUE = 100

# The members whose values belong to a run, and what may stand anywhere in a text.
_OF_THE_RUN = {"Pid": "<process id>"}
_GUID = re.compile(r"\{?[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}\}?|\b[0-9A-Fa-f]{32}\b")
_TIME = re.compile(r"\b\d{4}[-/]\d{1,2}[-/]\d{1,2}([ T]\d{1,2}:\d{1,2}:\d{1,2}([:.]\d+)?)?\b")


@dataclasses.dataclass
class Difference:
    """One message that is not what it was, or another end; `lines` say in what, one line each."""

    title: str
    lines: list[str]

    def __str__(self) -> str:
        return "\n".join([self.title, *(f"  {line}" for line in self.lines)])


@dataclasses.dataclass
class _Said:
    """A message of the plug-in with what it is recognised by."""

    seconds: float
    message: messages.Message
    key: str
    at_its_own_time: bool  # the plug-in's thread looks every ten seconds, whatever else is said


def differences(recorded: Iterable[Entry], now: Iterable[Entry]) -> list[Difference]:
    before, after = _said(recorded), _said(now)
    found = list(_timed(*([said for said in side if said.at_its_own_time] for side in (before, after))))
    found += _ordered(*([said for said in side if not said.at_its_own_time] for side in (before, after)))
    return [difference for _, difference in sorted(found, key=lambda pair: pair[0])]


def key_of(message: messages.Message) -> str:
    """What a message is recognised by: its name, and for file states which state of which file."""
    if not message.command:
        return message.form if message.form == messages.EMPTY else "unreadable message"
    if message.command != "FileStatus":
        return message.command
    return f"FileStatus {message.data.get('Status')} {message.data.get('FileName')}"


def _said(entries: Iterable[Entry]) -> list[_Said]:
    spoken = [(entry.seconds, messages.read(entry.message)) for entry in entries if entry.what == PLUG_IN]
    return [
        _Said(seconds, message, key_of(message), message.command == "FileStatus") for seconds, message in spoken
    ]


def _timed(before: list[_Said], after: list[_Said]) -> Iterator[tuple[float, Difference]]:
    """How often the thread could report within the conversation is a matter of time, so a repetition is no difference."""
    left = collections.defaultdict(list)
    for said in after:
        left[said.key].append(said)
    known = {said.key for said in before}
    for said in before:
        if not left[said.key]:
            yield said.seconds, _missing(said)
        else:
            yield from _changed(said, left[said.key].pop(0))
    for said in after:
        if said.key not in known:
            yield said.seconds, _extra(said)


def _ordered(before: list[_Said], after: list[_Said]) -> Iterator[tuple[float, Difference]]:
    matcher = difflib.SequenceMatcher(None, [said.key for said in before], [said.key for said in after], autojunk=False)
    for what, first, end, first_now, end_now in matcher.get_opcodes():
        if what == "equal":
            for old, new in zip(before[first:end], after[first_now:end_now]):
                yield from _changed(old, new)
            continue
        for old in before[first:end]:
            yield old.seconds, _missing(old)
        for new in after[first_now:end_now]:
            yield new.seconds, _extra(new)


def _missing(said: _Said) -> Difference:
    return Difference(f"{said.key}, recorded at {said.seconds:.3f} s, did not come", [])


def _extra(said: _Said) -> Difference:
    text = " ".join(said.message.raw.decode("gbk", "replace").split())
    return Difference(f"{said.key} came at {said.seconds:.3f} s and is not in the record", [_short(text)])


def _changed(old: _Said, new: _Said) -> Iterator[tuple[float, Difference]]:
    lines = list(_message_changes(old.message, new.message))
    if lines:
        hidden = len(lines) - MOST_LINES
        if hidden > 0:
            lines[MOST_LINES:] = [f"and {hidden} more"]
        yield old.seconds, Difference(f"{old.key}, recorded at {old.seconds:.3f} s, is different", lines)


def _message_changes(old: messages.Message, new: messages.Message) -> Iterator[str]:
    if old.raw == new.raw:
        return
    if old.form != new.form:
        yield f"printed {new.form}, recorded {old.form}"
    if not old.members or not new.members:
        if _without_the_run(old.raw.decode("gbk", "replace")) != _without_the_run(new.raw.decode("gbk", "replace")):
            yield f"recorded {_short(repr(old.raw))}, now {_short(repr(new.raw))}"
        return
    changes = list(_changes(_without_the_run(old.members), _without_the_run(new.members), ""))
    yield from changes
    if not changes and old.form == new.form == messages.OTHER:
        yield "the same members, but other bytes"


def _without_the_run(value: object, name: str = "") -> object:
    if isinstance(value, str):
        return _OF_THE_RUN.get(name) or _TIME.sub("<time>", _GUID.sub("<GUID>", value))
    if isinstance(value, dict):
        return {member: _without_the_run(item, member) for member, item in value.items()}
    if isinstance(value, list):
        return [_without_the_run(item) for item in value]
    return value


def _changes(old: object, new: object, where: str) -> Iterator[str]:
    if isinstance(old, dict) and isinstance(new, dict):
        for name in [*old, *(name for name in new if name not in old)]:
            place = f"{where}.{name}" if where else name
            if name not in new:
                yield f"{place} is gone: it was {_short(_json(old[name]))}"
            elif name not in old:
                yield f"{place} is new: {_short(_json(new[name]))}"
            else:
                yield from _changes(old[name], new[name], place)
        if list(old) != list(new) and set(old) == set(new):
            yield f"{where or 'the message'}: members in the order {', '.join(new)}, recorded {', '.join(old)}"
    elif isinstance(old, list) and isinstance(new, list) and len(old) != len(new):
        yield from _list_changes(old, new, where)
    elif isinstance(old, list) and isinstance(new, list):
        for index, (before, after) in enumerate(zip(old, new)):
            yield from _changes(before, after, f"{where}[{index}]")
    elif old != new or type(old) is not type(new):
        yield f"{where}: recorded {_short(_json(old))}, now {_short(_json(new))}"


def _list_changes(old: list, new: list, where: str) -> Iterator[str]:
    matcher = difflib.SequenceMatcher(None, [_json(item) for item in old], [_json(item) for item in new], autojunk=False)
    for what, first, end, first_now, end_now in matcher.get_opcodes():
        if what != "equal":
            for index in range(first, end):
                yield f"{where}[{index}] is gone: it was {_short(_json(old[index]))}"
            for index in range(first_now, end_now):
                yield f"{where}[{index}] is new: {_short(_json(new[index]))}"


def _json(value: object) -> str:
    return json.dumps(value, ensure_ascii=False)


def _short(text: str) -> str:
    return text if len(text) <= LONGEST_VALUE else text[:LONGEST_VALUE] + "..."
