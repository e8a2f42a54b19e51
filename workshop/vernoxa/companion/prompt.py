"""The companion's words at a prompt: what it asks the plug-in, and what it knows itself."""

from __future__ import annotations

import asyncio
import contextlib
import csv
import pathlib
from typing import Iterator, Mapping

from vernoxa.wire.catalogue import ANY, BOM_LINE, COMMANDS, PATH, REFERENCES, REPLY_SUFFIX, Command, Member, find
from vernoxa.wire.frames import MessageTooLong

from . import tables
from .answers import Answers
from .server import REPLY_SECONDS, Companion, NotConnected
from .typed import BadCommand, parse, unnamed_members, words_of
from .view import View
from .words import Words, fitting, waiting

FOLLOW_SECONDS = 5  # a host with nothing to say sends nothing
SILENCE = 0.3

LOCAL = {
    "help": "all commands, or what one takes: help GenerateBOM",
    "designs": "the open designs",
    "bom": "the last bill of materials, its first lines; bom --all shows all, bom --csv FILE saves all",
    "checks": "what the design checks found, its first lines; checks --all shows all",
    "faults": "how many faults were seen",
    "wait": "let N seconds pass",
    "quit": "end",
}


class Prompt:
    """`more` are further words, each with what takes the rest of its line."""

    def __init__(self, companion: Companion, view: View, more: Mapping[str, Words] | None = None):
        self._companion = companion
        self._answers = companion.answers
        self._view = view
        self._more = more or {}

    async def run(self, line: str) -> bool:
        word, _, rest = line.strip().partition(" ")
        if not word or word.startswith("#"):
            return True
        if word in self._more:
            return await self._more[word].run(rest)
        try:
            if word in LOCAL:
                return await self._local(word, words_of(rest))
            return await self._ask(line)
        except (BadCommand, NotConnected, TimeoutError, MessageTooLong) as error:
            return self._say(str(error))
        except OSError as error:
            return self._say(f"{error.filename}: {error.strerror}")
        except UnicodeEncodeError as error:
            return self._say(f"outside the code page: {error.object[error.start:error.end]}")

    async def _ask(self, line: str) -> bool:
        name, data = parse(line, self._answers)
        since = len(self._companion.events)
        with waiting(self._view, "companion", f"for the answer to {name}", REPLY_SECONDS):
            reply = await self._companion.ask(name, data)
            if reply is None and (command := find(name)) and command.follows:
                await self._hear_out(command, since)
        return reply is None or reply.succeeded

    async def _hear_out(self, command: Command, since: int) -> None:
        """Until what follows instead of an answer has come, if the host has anything to say."""
        with contextlib.suppress(TimeoutError):
            await self._companion.wait_for(lambda event: event.is_message(command.follows) or
                                           event.is_message(command.name + REPLY_SUFFIX), FOLLOW_SECONDS, since)
            heard = -1
            while heard != (heard := len(self._companion.events)):
                await asyncio.sleep(SILENCE)

    async def _local(self, word: str, words: list[str]) -> bool:
        answers, view = self._answers, self._view
        if word == "quit":
            raise EOFError
        if word == "wait":
            try:
                await asyncio.sleep(float(words[0]))
            except (IndexError, ValueError):
                return self._say("wait takes a number of seconds")
        elif word == "help":
            return await self._help(words)
        elif word == "designs":
            view.table("companion", tables.designs(answers))
        elif word == "bom":
            return self._bom(words)
        elif word == "checks" and words in ([], ["--all"]):
            if not answers.findings:
                return self._say("nothing was checked yet: DsnCheck checks the design")
            for check in sorted(answers.findings):
                view.table("companion", tables.findings(check, answers), whole=bool(words))
        elif word == "faults":
            view.line("companion", f"{self._companion.faults} faults")
        else:
            return self._say(f"{word}: {LOCAL[word]}")
        return True

    def _bom(self, words: list[str]) -> bool:
        bom = self._answers.current.bom if self._answers.current else {}
        if not bom:
            return self._say("there is no bill of materials yet: GenerateBOM makes one")
        if words in ([], ["--all"]):
            self._view.table("companion", tables.bom(bom, "BOM"), whole=bool(words))
            return True
        if len(words) != 2 or words[0] != "--csv":
            return self._say(f"bom: {LOCAL['bom']}")
        rows = tables.bom_rows(bom)
        with open(pathlib.Path(words[1]).expanduser(), "x", encoding="utf-8", newline="") as file:
            csv.writer(file).writerows([("State", *BOM_LINE), *rows])
        self._view.line("companion", f"{len(rows)} lines: {words[1]}")
        return True

    async def _help(self, words: list[str]) -> bool:
        if not words:
            self._view.table("companion", tables.commands(), whole=True)
            for name, purpose in LOCAL.items():
                self._view.line("companion", f"{name}: {purpose}")
            for name in self._more:
                self._view.line("companion", f"{name}: more words, which help {name} lists")
            return True
        if words[0] in self._more:
            return await self._more[words[0]].run("help")
        if words[0] in LOCAL:
            self._view.line("companion", f"{words[0]}: {LOCAL[words[0]]}")
            return True
        command = find(words[0])
        if command is None:
            return self._say(f"no command {words[0]}; help lists them")
        self._view.line("companion", f"{command.name}: {command.purpose}")
        for member in command.members:
            need = "needed" if member.needed and member.default is None and member.kind != PATH else "optional"
            default = f', "{member.default}" when not given' if member.default is not None else ""
            self._view.line("companion", f"  {member.name} ({member.kind}, {need}{default})")
        return True

    def _say(self, text: str) -> bool:
        self._view.line("companion", text, "red")
        return False

    def complete(self, line: str) -> Iterator[tuple[str, str]]:
        word, space, rest = line.partition(" ")
        commands = [(command.name, command.purpose) for command in COMMANDS]
        more = [(name, f"help {name} lists its words") for name in self._more]
        if not space or (word == "help" and " " not in rest):
            yield from fitting(line, [*commands, *LOCAL.items(), *more])
        elif word in self._more:
            yield from self._more[word].complete(rest)
        elif word in ("bom", "checks"):
            yield from fitting(rest, [("--all", "every line"), *[("--csv", "save every line")] * (word == "bom")])
        elif command := find(word):
            yield from fitting(line, self._of_command(command, rest))

    def _of_command(self, command: Command, rest: str) -> list[tuple[str, str]]:
        """What can stand at the end of a command's line: a value of the member that is named or next, or a member."""
        *before, piece = rest.split(" ")
        name, equals, _ = piece.partition("=")
        members = {member.name: member for member in command.members if member.kind != ANY}
        if equals:
            return [(value, name) for value in values_of(members[name], self._answers)] if name in members else []
        named = {word.partition("=")[0] for word in before if "=" in word}
        next_ones = unnamed_members(command)[len([word for word in before if word and "=" not in word]):]
        values = [(value, next_ones[0].name) for value in values_of(next_ones[0], self._answers)] if next_ones else []
        return values + [(f"{name}=", member.default or member.kind) for name, member in members.items()
                         if name not in named]


def values_of(member: Member, answers: Answers) -> list[str]:
    """The known values of a member."""
    if member.kind == PATH:
        return [design.path for design in answers.designs.values()]
    if not answers.current:
        return []
    if member.kind == REFERENCES or member.name in ("PartRef", "Stick"):
        return answers.current.references
    return answers.current.pages if member.name in ("Page", "PageName") else []
