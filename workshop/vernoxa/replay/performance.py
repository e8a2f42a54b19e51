"""Holds a conversation: the stand-in host with the built plug-in on one side, the companion's words on the other."""

from __future__ import annotations

import asyncio
import pathlib
import time
from typing import Callable, Iterable

from vernoxa.companion.answers import Answers
from vernoxa.companion.server import PORT, NotConnected, PortTaken, require_free
from vernoxa.stage import host
from vernoxa.stage.installation import Installation
from vernoxa.stage.session import LINE_SECONDS, LINK_SECONDS, QUIT, Missing, Session
from vernoxa.wire import messages, paths
from vernoxa.wire.catalogue import REPLY_SUFFIX
from vernoxa.wire.events import RECEIVED, Event
from vernoxa.wire.record import COMPANION, HOST, PLUG_IN, Entry

from . import compare
from .conversation import Conversation, Design, entry_of, is_request, value_of

MESSAGE_SECONDS = 60  # after the first, which waits for the link
PORTS_SECONDS = 20
LONGEST_RUN = 600


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


class Performance(Session):
    """One run. What is said is in `entries` afterwards, below the root of the run's own folder."""

    def __init__(self, module: pathlib.Path, designs: list[Design], answers: Answers):
        super().__init__(Installation(module), answers)
        self._designs = designs
        self.root = self.installation.about["root"]
        self.entries: list[Entry] = []
        self.companion.listeners.append(self._keep)

    def _keep(self, event: Event) -> None:
        entry = entry_of(event)
        if entry:
            self.entries.append(entry)

    async def __aenter__(self) -> Performance:
        try:
            designs = [self._prepared(design) for design in self._designs]
            command = self.command_line(designs)
            # Another run ends by and by.
            await _when_free(lambda: require_free(PORT))
            await _when_free(host.require_free_port)
            await self.begin(command)
        except BaseException:
            await self.__aexit__()
            raise
        return self

    async def __aexit__(self, *_: object) -> None:
        await self.end()
        self.installation.remove()

    def command_line(self, designs: list[tuple[pathlib.Path, str]]) -> list[str]:
        return host.command_line(self.installation, designs, LONGEST_RUN)

    def _prepared(self, design: Design) -> tuple[pathlib.Path, str]:
        folder, name = paths.folder_of(design.name), paths.name_of(design.name)
        return self.installation.add_design(design.schematic, folder.replace("\\", "/"), name)

    @property
    def last_words(self) -> list[str]:
        return self.host_lines[-10:]

    async def user_does(self, words: str, seconds: float = LINE_SECONDS) -> bool:
        self._keep_words(words)
        return await super().user_does(words, seconds)

    def user_quits(self) -> None:
        """How the host ends is looked at when all was said."""
        self._keep_words(QUIT)
        self.installation.command(QUIT)

    def _keep_words(self, words: str) -> None:
        self.entries.append(Entry(self.entries[-1].seconds if self.entries else 0, 0, HOST, words.encode("utf-8")))

    async def hear(self, key: str, count: int, seconds: float) -> bool:
        """Waits for the count-th message of that key; false when it does not come, or the host ends before."""
        def heard(_: Event | None = None) -> bool:
            spoken = [event for event in self.companion.events if event.kind == RECEIVED]
            return sum(compare.key_of(event.message) == key for event in spoken) >= count

        waiting = asyncio.ensure_future(self.companion.wait_for(heard, seconds))
        await self.in_time(waiting, seconds)
        await asyncio.gather(waiting, return_exceptions=True)
        return heard()


async def hold_again(
    module: pathlib.Path, recorded: Conversation, kind: type[Performance] = Performance
) -> tuple[Conversation, list[compare.Difference], list[str]]:
    """The conversation as it is held now, below the root of the recorded one, what differs, and the host's last words.

    The companion's requests are sent when all that the plug-in said before them was said again, or was waited for in
    vain. Where the host was to end, an end that is not tidy is a difference too. Raises NotUsable, PortTaken.
    """
    # The answers are made when the run has its folder, whose name is in them.
    performance = kind(module, recorded.designs, Answers())
    script = recorded.moved_to(performance.root)
    performance.companion.answers = RecordedAnswers(script.entries)
    counts: dict[str, int] = {}
    missing: list[compare.Difference] = []
    async with performance:
        patience = LINK_SECONDS
        for entry in script.entries:
            if entry.what == PLUG_IN:
                key = compare.key_of(messages.read(entry.message))
                counts[key] = counts.get(key, 0) + 1
                came = await performance.hear(key, counts[key], patience)
                patience = MESSAGE_SECONDS if came else 3  # what is missing is told soon enough
            elif entry.what == HOST and _ends_the_host(entry):
                performance.user_quits()
            elif entry.what == HOST:
                try:
                    await performance.user_does(entry.message.decode("utf-8"), LINE_SECONDS)
                except Missing as error:
                    missing.append(compare.Difference(f"missing: {error}", performance.last_words))
            elif is_request(entry):
                try:
                    performance.companion.send_raw(value_of(entry))
                except NotConnected:
                    pass  # what is not answered will be missing
        if any(_ends_the_host(entry) for entry in script.entries):
            try:
                await performance.ended_tidily()
            except Missing as error:
                missing.append(compare.Difference(f"missing: {error}", performance.last_words))
        else:
            await performance.host.ended(1)  # anything else that is said at the end
        now = Conversation(performance.root, recorded.designs, performance.entries).moved_to(recorded.root)
    return now, compare.differences(recorded.entries, now.entries) + missing, performance.last_words


def _ends_the_host(entry: Entry) -> bool:
    if entry.what == HOST:
        return entry.message == QUIT.encode()
    return is_request(entry) and value_of(entry).get("Command") == "CloseOrcad"


async def _when_free(require: Callable[[], None]) -> None:
    """Raises PortTaken when the port stays taken."""
    limit = time.monotonic() + PORTS_SECONDS
    while True:
        try:
            return require()
        except PortTaken:
            if time.monotonic() > limit:
                raise
            await asyncio.sleep(1)
