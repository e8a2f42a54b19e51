"""Holds a conversation: the stand-in host with the built plug-in on one side, the companion's words on the other."""

from __future__ import annotations

import asyncio
import pathlib
import time
from typing import Awaitable, Callable, Iterable

from companion import messages, paths
from companion.answers import Answers
from companion.catalogue import REPLY_SUFFIX
from companion.prompt import parse
from companion.record import COMPANION, HOST, PLUG_IN, Entry
from companion.server import RECEIVED, Companion, Event, NotConnected, PortTaken
from stage import host
from stage.installation import Installation, NotUsable

import compare
from conversation import Conversation, Design, entry_of, is_request, moved, value_of

# The plug-in's thread pauses ten seconds before each of its steps.
FIRST_MESSAGE_SECONDS = 60
MESSAGE_SECONDS = 30
HOST_SECONDS = 30
PORTS_SECONDS = 20
LONGEST_RUN = 600

_DONE = "that is done"


class RecordedAnswers(Answers):
    """Answers each message as it was answered in the record, the last answer again when there are no more."""

    def __init__(self, entries: Iterable[Entry]):
        super().__init__()
        self._replies: dict[str, list[dict]] = {}
        for entry in entries:
            if entry.what == COMPANION and not is_request(entry):
                value = value_of(entry)
                self._replies.setdefault(value["Command"], []).append(value)

    def take(self, message: messages.Message, asked: dict | None = None) -> list[dict]:
        replies = self._replies.get(message.command + REPLY_SUFFIX, [])
        return [replies.pop(0) if len(replies) > 1 else replies[0]] if replies else []


class Performance:
    """One run. What is said is in `entries` afterwards, below the root of the run's own folder."""

    def __init__(self, module: pathlib.Path, designs: list[Design], answers: Answers):
        self._designs = designs
        self.installation = Installation(module)
        self.root = paths.to_windows(self.installation.root)
        self.last_words: list[str] = []
        self.entries: list[Entry] = []
        self.companion = Companion(answers)
        self.companion.listeners.append(self._keep)
        self._host: host.Host | None = None
        self._done = asyncio.Semaphore(0)

    def _keep(self, event: Event) -> None:
        entry = entry_of(event)
        if entry:
            self.entries.append(entry)

    async def __aenter__(self) -> "Performance":
        try:
            await self._begin()
        except BaseException:
            await self.__aexit__()
            raise
        return self

    async def _begin(self) -> None:
        designs = [self._prepared(design) for design in self._designs]
        await _when_free(host.require_free_port)
        await _when_free(self.companion.start)
        self._host = host.Host(self.command_line(designs), self._hear)
        await self._host.start()

    def command_line(self, designs: list[tuple[pathlib.Path, str]]) -> list[str]:
        return host.command_line(self.installation, designs, LONGEST_RUN)

    def _prepared(self, design: Design) -> tuple[pathlib.Path, str]:
        if not design.schematic.is_file():
            raise NotUsable(f"{design.schematic} is not there")
        name = f"{self.root}\\{design.name}"
        folder = paths.to_local(paths.folder_of(name))
        folder.mkdir(parents=True, exist_ok=True)
        return design.schematic, name

    def _hear(self, speaker: str, text: str) -> None:
        if (speaker, text) == ("host", _DONE):
            self._done.release()
            return
        self.last_words = [*self.last_words[-9:], f"{speaker}: {text}"]

    async def do(self, words: str) -> None:
        """Has the host's user do something, and waits until it is done. Raises TimeoutError."""
        self.entries.append(Entry(self.entries[-1].seconds if self.entries else 0, 0, HOST, words.encode("utf-8")))
        self.installation.command(f"try {{{words}}} finally {{note {{{_DONE}}}}}")
        await asyncio.wait_for(self._done.acquire(), HOST_SECONDS)

    async def __aexit__(self, *_: object) -> None:
        if self._host:
            await self._host.stop()
        await self.companion.stop()
        self.installation.remove()

    async def hear(self, key: str, count: int, seconds: float) -> bool:
        """Waits for the count-th message of that key; false when it does not come, or the host ends before."""
        def heard(_: Event | None = None) -> bool:
            spoken = [event for event in self.companion.events if event.kind == RECEIVED]
            return sum(compare.key_of(event.message) == key for event in spoken) >= count

        waiting = asyncio.ensure_future(self.companion.wait_for(heard, seconds))
        ended = asyncio.ensure_future(self._host.ended(seconds))
        await asyncio.wait({waiting, ended}, return_when=asyncio.FIRST_COMPLETED)
        for task in (waiting, ended):
            task.cancel()
        await asyncio.gather(waiting, ended, return_exceptions=True)
        return heard()

    async def ended(self, seconds: float) -> None:
        await self._host.ended(seconds)


async def hold_again(
    module: pathlib.Path, recorded: Conversation, kind: type[Performance] = Performance
) -> tuple[Conversation, list[str]]:
    """The conversation as it is held now, below the root of the recorded one, and the host's last words.

    The companion's requests are sent when all that the plug-in said before them was said again, or was waited for in
    vain. Raises NotUsable, PortTaken.
    """
    # The answers are made when the run has its folder, whose name is in them.
    performance = kind(module, recorded.designs, Answers())
    script = recorded.moved_to(performance.root)
    performance.companion.answers = RecordedAnswers(script.entries)
    counts: dict[str, int] = {}
    async with performance:
        patience = FIRST_MESSAGE_SECONDS
        for entry in script.entries:
            if entry.what == PLUG_IN:
                key = compare.key_of(messages.read(entry.message))
                counts[key] = counts.get(key, 0) + 1
                came = await performance.hear(key, counts[key], patience)
                patience = MESSAGE_SECONDS if came else 3  # what is missing is told soon enough
            elif entry.what == HOST:
                await performance.do(entry.message.decode("utf-8"))
            elif is_request(entry):
                try:
                    performance.companion.send_raw(value_of(entry))
                except NotConnected:
                    pass  # what is not answered will be missing
        await performance.ended(1)  # anything else that is said at the end
        now = Conversation(performance.root, recorded.designs, performance.entries)
    return now.moved_to(recorded.root), performance.last_words


async def hold(module: pathlib.Path, designs: list[Design], commands: list[str], root: str) -> Conversation:
    """A new conversation: the commands, as they are typed at the companion's prompt, are sent one after the other.

    `wait N` lets N seconds pass, `host WORDS` has the host's user do something. Raises NotUsable, PortTaken,
    prompt.BadCommand, NotConnected, TimeoutError.
    """
    performance = Performance(module, designs, Answers())
    async with performance:
        companion = performance.companion
        for design in designs:
            name = f"{performance.root}\\{design.name}"
            if not await performance.hear(f"FileStatus Open {name}", 1, FIRST_MESSAGE_SECONDS):
                raise TimeoutError("\n  ".join([f"{name} was not opened. The host's last words:", *performance.last_words]))
        for text in commands:
            if text.startswith("wait "):
                await asyncio.sleep(float(text.removeprefix("wait ")))
                continue
            text = moved(text.encode("utf-8"), root, performance.root).decode("utf-8")
            if text.startswith("host "):
                await performance.do(text.removeprefix("host "))
                continue
            name, data = parse(text, companion.answers)
            try:
                await companion.ask(name, data)
            except NotConnected:
                break  # the host closes while it is asked to end
        await performance.ended(20 if commands and commands[-1] == "CloseOrcad" else 1)
        conversation = Conversation(performance.root, designs, performance.entries)
    return conversation.moved_to(root)


async def _when_free(action: Callable[[], Awaitable[None] | None]) -> None:
    """The ports are shared by everything on the machine; another run ends by and by."""
    limit = time.monotonic() + PORTS_SECONDS
    while True:
        try:
            result = action()
            if result is not None:
                await result
            return
        except (NotUsable, PortTaken):
            if time.monotonic() > limit:
                raise
            await asyncio.sleep(1)
