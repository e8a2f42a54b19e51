"""What people type becomes a command: `GenerateBOM`, `SetToNotStick R1,R2`, `JumpToPartRef PartRef=U1`, or JSON."""

from __future__ import annotations

import json

from vernoxa.command import Refused
from vernoxa.wire.catalogue import ANY, NUMBER, PATH, REFERENCES, TEXTS, Command, Member, find

from .answers import Answers


class BadCommand(Refused):
    """What was typed is no command; the text says why."""


def parse(text: str, answers: Answers) -> tuple[str, dict]:
    """A command's name and its "Data", members that were not typed filled in from the table and the open design.

    Raises BadCommand.
    """
    if text.lstrip().startswith("{"):
        return _parse_json(text)
    name, *words = words_of(text)
    command = find(name)
    if command is None:
        raise BadCommand(f"no command {name}; help lists them")
    typed = _typed(command, words)
    data = {}
    for member in command.members:
        if member.kind == ANY:
            continue
        value = typed.pop(member.name, None)
        if value is None:
            value = answers.current.path if member.kind == PATH and answers.current else member.default
        if value is not None:
            data[member.name] = _value(member, value)
        elif member.needed:
            raise BadCommand(f"{name} needs {member.name}; help {name} says more")
    return name, data | typed


def unnamed_members(command: Command) -> list[Member]:
    """Those to which words without a name go, in their order; the design is hardly ever meant."""
    return [member for member in command.members if member.needed and member.kind != PATH]


def members_text(command: Command) -> str:
    return " ".join(member.name if member.needed else f"[{member.name}]" for member in command.members)


def _typed(command: Command, words: list[str]) -> dict[str, str]:
    members = {member.name for member in command.members}
    takes_any = any(member.kind == ANY for member in command.members)
    unnamed = iter([member.name for member in unnamed_members(command)])
    typed: dict[str, str] = {}
    for word in words:
        name, equals, value = word.partition("=")
        misspelt = equals and name.isidentifier() and name not in members and not takes_any
        if not (equals and (name in members or takes_any)):
            name, value = "" if misspelt else next(unnamed, ""), word
        if not name:
            raise BadCommand(f"{command.name} takes {members_text(command) or 'nothing'}, not {word}")
        typed[name] = value
    return typed


def _value(member: Member, text: str) -> object:
    if member.kind == NUMBER:
        try:
            return int(text)
        except ValueError as error:
            raise BadCommand(f"{member.name} is a number, not {text}") from error
    pieces = [piece for piece in text.replace(",", " ").split() if piece]
    if member.kind == REFERENCES:
        return [{"PartRef": piece} for piece in pieces]
    return pieces if member.kind == TEXTS else text


def _parse_json(text: str) -> tuple[str, dict]:
    try:
        value = json.loads(text)
    except ValueError as error:
        raise BadCommand(f"it is not valid JSON: {error}") from error
    data = value.get("Data", {})
    if not isinstance(value.get("Command"), str) or not isinstance(data, dict):
        raise BadCommand('an envelope has a text "Command" and an object "Data"')
    return value["Command"], data


def words_of(text: str) -> list[str]:
    """Words parted by spaces; double quotes keep spaces together; a backslash is a backslash, for the sake of paths."""
    words, word, quoted, begun = [], "", False, False
    for character in text.strip():
        if character == '"':
            quoted, begun = not quoted, True
        elif character.isspace() and not quoted:
            if begun:
                words.append(word)
            word, begun = "", False
        else:
            word, begun = word + character, True
    if quoted:
        raise BadCommand("a double quote is not closed")
    return words + [word] if begun else words
