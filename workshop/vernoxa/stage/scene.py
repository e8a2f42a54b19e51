"""What is seen in a scene: steps with a limit each, a summary at the end, and what was missing when one failed."""

from __future__ import annotations

import asyncio
import pathlib
import re
import time
from typing import Awaitable, Callable, TypeVar

from vernoxa.command import own_file
from vernoxa.companion.answers import Answers
from vernoxa.companion.server import PORT
from vernoxa.companion.view import ConversationView, View
from vernoxa.companion.words import waiting
from vernoxa.wire import paths
from vernoxa.wire.events import FAULT, RECEIVED, SENT, Event
from vernoxa.wire.record import HOST, TITLE, Recorder

from .installation import Installation
from .session import LINE_SECONDS, LINK_SECONDS, QUIT, Missing, Session

T = TypeVar("T")
LONGEST_LINE = 160


class Scene(Session):
    """A session whose steps are said, to people and for a summary."""

    def __init__(self, view: View, installation: Installation, record: pathlib.Path | None = None, port: int = PORT,
                 speaker: str = "demo"):
        super().__init__(installation, Answers(modules_folder=installation.root / "modules"), port)
        self.view = view
        self._speaker = speaker
        self.companion.listeners.append(ConversationView(view, self.answers))
        self.hidden: re.Pattern[str] | None = None  # lines of the host that are not shown
        self._began = time.monotonic()
        self._record = open(own_file(record, TITLE), "w", encoding="utf-8", newline="\n") if record else None
        self._recorder = Recorder(self._record, **installation.about) if self._record else None
        if self._recorder:
            self.companion.listeners.append(self._recorder)

    def heard(self, speaker: str, text: str) -> None:
        if self.hidden and self.hidden.match(text):
            return
        # The companion shows each message whole.
        self.view.line(speaker, text if len(text) <= LONGEST_LINE else text[:LONGEST_LINE] + "...", "dim")

    async def user_does(self, words: str, seconds: float = LINE_SECONDS) -> bool:
        if self._recorder:
            self._recorder(Event(time.monotonic() - self._began, HOST, 0, text=words))
        return await super().user_does(words, seconds)

    async def quit(self) -> None:
        if self._recorder:
            self._recorder(Event(time.monotonic() - self._began, HOST, 0, text=QUIT))
        await super().quit()

    async def companion_restarts(self) -> int:
        """It ends and is there again, and knows of no design. Gives the number of the first event that it sees."""
        await self.companion.stop()
        self.answers.designs.clear()
        await self.companion.start()
        return len(self.companion.events)

    async def end(self) -> None:
        await super().end()
        if self._record:
            self._record.close()

    def say(self, text: str, style: str = "bold") -> None:
        self.view.line(self._speaker, text, style)

    def seen(self, text: str) -> None:
        self.say(f"{time.monotonic() - self._began:5.1f} s  {text}", "bold green")

    async def step(self, what: str, work: Awaitable[T], seconds: float) -> T:
        """Says what is waited for, and when it was seen.

        Raises Missing when it was not seen in time, or when the host ended before.
        """
        working = asyncio.ensure_future(work)
        with waiting(self.view, self._speaker, f"until {what}", seconds):
            reason = await self.in_time(working, seconds)
        if reason:
            raise Missing(f"{what}: {reason}")
        try:
            result = working.result()
        except Missing as error:
            raise Missing(f"{what}: {error}") from error
        except (TimeoutError, RuntimeError) as error:
            raise Missing(f"{what}: {error or 'not seen in time'}") from error
        self.view.line("seen", what, "green")
        return result

    async def hear(
        self, what: str, command: str, seconds: float, count: int = 1, since: int = 0, **data: str
    ) -> Event:
        """The count-th such message of the plug-in, from the beginning or from event `since` on."""

        def wanted(event: Event) -> bool:
            return event.is_message(command, **data)

        async def listen() -> Event:
            first = since
            for _ in range(count):
                event = await self.companion.wait_for(wanted, seconds, first)
                first = self.companion.events.index(event) + 1
            return event

        return await self.step(what, listen(), seconds)

    async def opened(self, name: str, since: int = 0) -> Event:
        """The plug-in's word that the design of that name is open; `since`, the first line of the host that is about it.

        Raises Missing, at once where the host says that it cannot be told.
        """
        told: list[Event] = []

        def look() -> bool:
            told[:] = [event for event in self.companion.events
                       if event.is_message("FileStatus", Status="Open", FileName=name)]
            if refused := next((line for line in self.host_lines[since:] if " is not reported: " in line), ""):
                raise Missing(refused)
            return bool(told)

        await self.until(f"{paths.name_of(name)} is open", look, LINK_SECONDS)
        return told[0]

    async def until(self, what: str, holds: Callable[[], bool], seconds: float) -> None:
        """For what can only be looked at: a file, a log."""

        async def look() -> None:
            while not holds():
                await asyncio.sleep(0.2)

        await self.step(what, look(), seconds)

    async def do(self, what: str, words: str, answer: str, seconds: float = 20) -> str:
        """Gives the host a command and waits for the line with which it answers; `answer` is a pattern of it."""
        since = len(self.host_lines)
        await self.user_does(words, seconds)
        return await self.told(what, answer, since, seconds)

    async def told(self, what: str, pattern: str, since: int, seconds: float = 20) -> str:
        """The first line of the host, from the since-th on, that matches; of a pattern with a group, that group."""
        found: list[re.Match[str]] = []

        def look() -> bool:
            found[:] = filter(None, (re.search(pattern, line) for line in self.host_lines[since:]))
            return bool(found)

        await self.until(what, look, seconds)
        return found[0][found[0].lastindex or 0]

    async def ask(self, what: str, command: str, seconds: float = 20, **data: object) -> dict:
        """The "Data" of a successful reply."""
        return await self.step(what, self.companion.data_of(command, data, seconds), seconds + 1)

    def summarise(self) -> None:
        for fault in (event for event in self.companion.events if event.kind == FAULT):
            self.say(f"fault at {fault.seconds:.1f} s: {fault.text}", "bold red")
        self.say(
            f"{self._count(RECEIVED)} messages from the plug-in, {self._count(SENT)} to it, "
            f"faults seen: {self.companion.faults}, {time.monotonic() - self._began:.0f} s"
        )

    def _count(self, kind: str) -> int:
        return sum(event.kind == kind for event in self.companion.events)

    def complain(self, error: Missing) -> None:
        self.say(f"missing: {error}", "bold red")
        for speaker in ("host", "stdout", "companion"):
            lines = list(self.view.last_lines[speaker])
            self.say(f"the last lines of the {speaker}:" if lines else f"the {speaker} said nothing", "bold red")
            for line in lines:
                self.say(f"  {line}", "")
