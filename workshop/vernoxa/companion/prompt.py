"""What people type: `GenerateBOM`, `SetToNotStick R1,R2`, `JumpToPartRef PartRef=U1`, or an envelope as JSON."""

from __future__ import annotations

import asyncio
import json
import threading
from typing import Awaitable, Callable, Iterator, Mapping, TextIO

from prompt_toolkit import PromptSession
from prompt_toolkit.completion import CompleteEvent, Completer, Completion, get_common_complete_suffix
from prompt_toolkit.document import Document
from prompt_toolkit.key_binding import KeyBindings, KeyPressEvent
from prompt_toolkit.patch_stdout import patch_stdout

from vernoxa.command import Refused
from vernoxa.wire.catalogue import ANY, COMMANDS, NUMBER, PATH, REFERENCES, TEXTS, Command, Member, find
from vernoxa.wire.frames import MessageTooLong

from . import view as views
from .answers import Answers
from .server import Companion, NotConnected
from .view import View

LOCAL = {
    "help": "this list, or what a command takes: help GenerateBOM",
    "designs": "the open designs",
    "bom": "the last bill of materials",
    "checks": "all findings of the design checks",
    "faults": "how many faults were seen",
    "wait": "let N seconds pass",
    "quit": "end",
}


class BadCommand(Refused):
    """What was typed is no command; the text says why."""


def parse(text: str, answers: Answers) -> tuple[str, dict]:
    """A command's name and its "Data", members that were not typed filled in from the table and the open design.

    Raises BadCommand.
    """
    if text.lstrip().startswith("{"):
        return _parse_json(text)
    name, *words = _words(text)
    command = find(name)
    if command is None:
        raise BadCommand(f"no command {name}; try: help")
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
            raise BadCommand(f"{name} needs {member.name}")
    return name, data | typed


def _typed(command: Command, words: list[str]) -> dict[str, str]:
    members = {member.name for member in command.members}
    takes_any = any(member.kind == ANY for member in command.members)
    # A word without a name goes to the next needed member; the design is hardly ever meant.
    unnamed = iter([member.name for member in command.members if member.needed and member.kind != PATH])
    typed: dict[str, str] = {}
    for word in words:
        name, equals, value = word.partition("=")
        if not (equals and (name in members or takes_any)):
            name, value = next(unnamed, ""), word
        if not name:
            raise BadCommand(f"{command.name} takes {views.members_text(command) or 'nothing'}, not {word}")
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
        raise BadCommand(f"no JSON: {error}") from error
    data = value.get("Data", {})
    if not isinstance(value.get("Command"), str) or not isinstance(data, dict):
        raise BadCommand('an envelope has a text "Command" and an object "Data"')
    return value["Command"], data


def _words(text: str) -> list[str]:
    """Words parted by blanks; double quotes keep blanks together; a backslash is a backslash, for the sake of paths."""
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


class CommandCompleter(Completer):
    def __init__(self, answers: Answers, more: Mapping[str, str] = LOCAL):
        self._answers = answers
        self._more = more  # words that are no commands of the plug-in, and what they are for

    def get_completions(self, document: Document, complete_event: CompleteEvent) -> Iterator[Completion]:
        before = document.text_before_cursor
        first, blank, _ = before.lstrip().partition(" ")
        word = document.get_word_before_cursor(WORD=True)
        if not blank or first == "help":
            yield from self._first(word, with_local=not blank)
            return
        command = find(first)
        if command is None:
            return
        name, equals, start = word.partition("=")
        if equals:
            kinds = {member.name: member.kind for member in command.members}
            for value in self._values(kinds.get(name, "")):
                done, comma, piece = start.rpartition(",")
                if value.lower().startswith(piece.lower()):
                    yield Completion(value, start_position=-len(piece))
            return
        for member in command.members:
            if member.kind != ANY and member.name.lower().startswith(word.lower()) and member.name + "=" not in before:
                yield Completion(member.name + "=", -len(word), display_meta=member.default or member.kind)

    def _first(self, word: str, with_local: bool) -> Iterator[Completion]:
        rows = [(command.name, command.purpose) for command in COMMANDS] + (list(self._more.items()) if with_local else [])
        for name, purpose in rows:
            if name.lower().startswith(word.lower()):
                yield Completion(name, -len(word), display_meta=purpose)

    def _values(self, kind: str) -> list[str]:
        if kind == PATH:
            return [design.path for design in self._answers.designs.values()]
        return self._answers.current.references if self._answers.current else []


def _complete(event: KeyPressEvent) -> None:
    """Tab. The menu is made in the background while one types, and a Tab that comes before it is there is passed over by
    prompt_toolkit; here it completes what is certain."""
    buffer = event.current_buffer
    if buffer.complete_state:
        buffer.complete_next()
        return
    found = list(buffer.completer.get_completions(buffer.document, CompleteEvent(completion_requested=True)))
    if len(found) == 1:
        buffer.apply_completion(found[0])
    elif suffix := get_common_complete_suffix(buffer.document, found):
        buffer.insert_text(suffix)


class Desk:
    """Carries out what was typed or stands in a script.

    `words` are further words that can be typed, each with what it is for and what takes the rest of the line; that one
    gives false when it could not be done.
    """

    def __init__(self, companion: Companion, view: View,
                 words: Mapping[str, tuple[str, Callable[[str], Awaitable[bool]]]] = {}):
        self._companion = companion
        self._view = view
        self._words = {name: take for name, (_, take) in words.items()}
        self._purposes = {**LOCAL, **{name: purpose for name, (purpose, _) in words.items()}}

    async def run(self, text: str) -> bool:
        """False when it could not be done or was answered with a failure. Raises EOFError for quit."""
        words = text.split()
        if not words or words[0].startswith("#"):
            return True
        if words[0] in LOCAL:
            return await self._local(words)
        if words[0] in self._words:
            return await self._words[words[0]](text.strip()[len(words[0]):].strip())
        try:
            name, data = parse(text, self._companion.answers)
            reply = await self._companion.ask(name, data)
        except (BadCommand, NotConnected, TimeoutError, MessageTooLong) as error:
            return self._say(str(error))
        except UnicodeEncodeError as error:
            return self._say(f"outside the code page: {error.object[error.start:error.end]}")
        return reply is None or reply.succeeded

    async def work(self, stream: TextIO) -> bool:
        """Until quit or the end: prompts when people look on, else carries out the stream's lines, each shown first.

        False when a line of the stream could not be done; who types sees that, and goes on.
        """
        if self._view.colour and stream.isatty():
            await self.prompt()
            return True
        good = True
        lines = _lines(stream)
        while line := await lines.get():
            self._view.line("companion", f"> {line.rstrip()}")
            try:
                good = await self.run(line) and good
            except EOFError:
                break
        return good

    async def prompt(self) -> None:
        keys = KeyBindings()
        keys.add("tab")(_complete)
        completer = CommandCompleter(self._companion.answers, self._purposes)
        session: PromptSession = PromptSession(completer=completer, key_bindings=keys)
        with patch_stdout(raw=True):
            while True:
                try:
                    await self.run(await session.prompt_async("companion> "))
                except KeyboardInterrupt:
                    continue
                except EOFError:
                    return

    async def _local(self, words: list[str]) -> bool:
        answers, view = self._companion.answers, self._view
        if words[0] == "quit":
            raise EOFError
        if words[0] == "wait":
            try:
                await asyncio.sleep(float(words[1]))
            except (IndexError, ValueError):
                return self._say("wait takes a number of seconds")
        elif words[0] == "help":
            return self._help(words[1:])
        elif words[0] == "designs":
            view.table("companion", views.designs_table(view, answers))
        elif words[0] == "bom" and answers.current:
            view.table("companion", views.bom_table(view, answers.current.bom, "BOM"))
        elif words[0] == "checks":
            for check in sorted(answers.findings):
                view.table("companion", views.findings_table(view, check, answers))
        elif words[0] == "faults":
            view.line("companion", f"{self._companion.faults} faults")
        return True

    def _help(self, words: list[str]) -> bool:
        if not words:
            self._view.table("companion", views.commands_table(self._view))
            for name, purpose in self._purposes.items():
                self._view.line("companion", f"{name}: {purpose}")
            return True
        command = find(words[0])
        if command is None:
            return self._say(f"no command {words[0]}")
        self._view.line("companion", f"{command.name}: {command.purpose}")
        for member in command.members:
            need = "needed" if member.needed and member.default is None and member.kind != PATH else "optional"
            default = f', "{member.default}" when not given' if member.default is not None else ""
            self._view.line("companion", f"  {member.name} ({member.kind}, {need}{default})")
        return True

    def _say(self, text: str) -> bool:
        self._view.line("companion", text, "red")
        return False


def _lines(stream: TextIO) -> asyncio.Queue[str]:
    """The lines of a stream as they come, an empty one at its end. Nothing waits for the thread that reads them."""
    loop = asyncio.get_running_loop()
    lines: asyncio.Queue[str] = asyncio.Queue()

    def read() -> None:
        for line in stream:
            loop.call_soon_threadsafe(lines.put_nowait, line)
        loop.call_soon_threadsafe(lines.put_nowait, "")

    threading.Thread(target=read, daemon=True).start()
    return lines
