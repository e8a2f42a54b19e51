"""Plays the editor's side against somebody's companion, and says what holds and what does not.

    check_companion.py HOST:PORT     one that runs
    check_companion.py COMMAND...    one that is started, and is expected on 127.0.0.1:9601

What the companion asks is answered out of recorded conversations. Ends with 0 when all holds that must, with 1 when
something of that does not, and with 2 when COMMAND cannot be started or somebody listens already.
"""

from __future__ import annotations

import asyncio
import contextlib
import os
import pathlib
import re
import signal
import sys
import time
from typing import Callable, Iterator

from vernoxa.command import DONE, NOT_DONE, REFUSED, Refused, run
from vernoxa.wire import frames, json_text, messages, record, schemas
from vernoxa.wire.catalogue import PROTOCOL, QUERIES, REPLY_SUFFIX
from vernoxa.wire.events import CLOSED, OPENED, RECEIVED, SENT, Event

from grading import LOGS, MUST, PIECES_SECONDS, SHOULD, Grades, Recorded, say_at_once

START_SECONDS = 10
PROMPT_SECONDS = 1
LOG = LOGS / "check-companion.txt"
_ESCAPE = re.compile(rb"\\(?:u([0-9a-fA-F]{4})|.)", re.DOTALL)
# Of all that the companion says.
_ALWAYS = (
    (MUST, "frames", "frames are a length and hexadecimal digits"),
    (SHOULD, "digits", "the digits are lower-case ones"),
    (MUST, "texts", "texts are in the code page"),
    (MUST, "messages", "messages are known and have what they need"),
    (SHOULD, "paths", "paths in requests have / between folders"),
)


class Line:
    """A connection to the companion. Its requests are answered as they come."""

    def __init__(self, check: "Check"):
        self._check = check
        self._came: asyncio.Queue[messages.Message | None] = asyncio.Queue()

    async def __aenter__(self) -> "Line":
        self._reader, self.writer = await asyncio.open_connection(*self._check.address)
        self._number = self._check.record(OPENED)
        self._reading = asyncio.create_task(self._read())
        return self

    async def __aexit__(self, *_: object) -> None:
        self._reading.cancel()
        self.writer.close()
        self._check.record(CLOSED, self._number)

    async def _read(self) -> None:
        try:
            while frame := await frames.read(self._reader):
                self._check.record(SENT, self._number, frame.message)
                message = self._check.judge(frame)
                if message and not message.command.endswith(REPLY_SUFFIX):
                    self.send(self._check.recorded.reply_to(message.command))
                self._came.put_nowait(message)
                if not frame.usable:
                    break
        except OSError:
            pass
        self._came.put_nowait(None)

    def send(self, message: bytes, times: int = 1) -> None:
        """All at once."""
        for _ in range(times):
            self._check.record(RECEIVED, self._number, message)
        self.writer.write(times * frames.encode(message))

    async def send_in_pieces(self, message: bytes) -> None:
        self._check.record(RECEIVED, self._number, message)
        frame = frames.encode(message)
        self.writer.write(frame[:7])
        await self.writer.drain()
        await asyncio.sleep(PIECES_SECONDS)
        self.writer.write(frame[7:])
        await self.writer.drain()

    async def hears(self, command: str, seconds: float = 0) -> messages.Message | None:
        """The next message of that name; None when it does not come in time or the connection ends."""
        async def look() -> messages.Message | None:
            while (message := await self._came.get()) is not None:
                if message.command == command:
                    return message
            self._came.put_nowait(None)
            return None

        try:
            return await asyncio.wait_for(look(), seconds or self._check.patience)
        except asyncio.TimeoutError:
            return None

    async def settle(self) -> None:
        """A moment, after which what was said until then is forgotten."""
        await self.hears("nothing that is said", PROMPT_SECONDS / 2)

    async def answers(self, message: bytes) -> messages.Message | None:
        self.send(message)
        return await self.hears(messages.read(message).command + REPLY_SUFFIX)


class Check(Grades):
    """Judges the companion at an address. An answer may take so many seconds. The conversation is recorded in `log`."""

    def __init__(self, address: tuple[str, int], log: pathlib.Path, patience: float = 5,
                 say: Callable[[str], None] = say_at_once):
        super().__init__(say)
        self.address = address
        self.place = f"{address[0]}:{address[1]}"
        self.patience = patience
        self.recorded = Recorded()
        self._log = log
        self._began = time.monotonic()
        self._connections = 0
        self._faults: dict[str, list[str]] = {kind: [] for _, kind, _ in _ALWAYS}
        self._heard = False

    def record(self, kind: str, connection: int = 0, message: bytes = b"") -> int:
        """Gives the number of the connection, a new one for none."""
        self._connections += not connection
        connection = connection or self._connections
        self._recorder(Event(time.monotonic() - self._began, kind, connection, messages.read(message)))
        return connection

    def judge(self, frame: frames.Frame) -> messages.Message | None:
        """What arrived, when it can be read; its faults are kept."""
        self._heard = True
        for fault in frame.faults:
            self._faults["digits" if fault == "upper-case digits" else "frames"].append(fault)
        if not frame.usable:
            return None
        try:
            value, problems = json_text.parse(frame.message)
        except json_text.NotJson as error:
            self._faults["messages"].append(f"not JSON: {error}")
            return None
        if not isinstance(value, dict) or not isinstance(value.get("Command"), str):
            self._faults["messages"].append('no object with a text "Command"')
            return None
        utf8 = [text for text in json_text.texts_of(value) if isinstance(text, json_text.Utf8)]
        self._faults["texts"] += [f"in UTF-8: {text}" for text in utf8]
        escapes = [digits.decode() for digits in _ESCAPE.findall(frame.message) if digits and int(digits, 16) >= 0x80]
        self._faults["texts"] += [f"as an escape, which becomes UTF-8: \\u{digits}" for digits in escapes]
        message = messages.Message(frame.message, value, messages.PLAIN)
        self._faults["messages"] += problems + self._faults_of(message)
        path = message.data.get("ProjectPath")
        if isinstance(path, str) and "\\" in path:
            self._faults["paths"].append(f"{message.command}: {path}")
        return message

    @staticmethod
    def _faults_of(message: messages.Message) -> list[str]:
        name = message.command
        asked = {request["name"] for request in PROTOCOL["requests"] if request["side"] == "companion"}
        answered = {message["name"] + REPLY_SUFFIX for message in PROTOCOL["messages"] if message["answer"]}
        if name not in asked | answered:
            return [f"{name} is nothing that a companion says"]
        return [f"{name}: {fault}" for fault in schemas.faults_of(message)]

    def told(self, name: str, form: str = "") -> bytes:
        return self.recorded.told[name, form]

    async def run(self) -> int:
        """The exit status."""
        self._log.parent.mkdir(parents=True, exist_ok=True)
        with open(self._log, "w", encoding="utf-8", newline="\n") as stream:
            self._recorder = record.Recorder(stream)
            await self._try()
        return self.end(self._log)

    async def _try(self) -> None:
        try:
            if await self._conversation():
                await self._probe()
                for what, message in self._odd_messages():
                    await self._survives(what, message)
                await self._questions()
        except OSError as error:
            self.tell(MUST, "can be reached", False, f"{self.place}: {os.strerror(error.errno or 0)}")
        for grade, kind, rule in _ALWAYS:
            if self._heard:
                self.tell(grade, rule, not self._faults[kind], "; ".join(dict.fromkeys(self._faults[kind])))
            else:
                self.untried(f'"{rule}"', "nothing was heard")

    def _silence(self) -> str:
        return f"nothing within {self.patience} s"

    async def _probe(self) -> None:
        _, writer = await asyncio.open_connection(*self.address)
        writer.close()
        async with Line(self) as line:
            heard = await line.answers(self.told("FileStatus", "opened"))
        self.tell(MUST, "survives a connection that ends without a word", heard is not None, self._silence())

    async def _conversation(self) -> bool:
        """False when FileStatus is not answered, by which all else is judged."""
        saved = self.told("FileStatus", "saved")
        async with Line(self) as line:
            answer = await line.answers(self.told("FileStatus", "opened"))
            self.tell(MUST, "answers FileStatus", answer is not None, self._silence())
            if not answer:
                self.untried("what follows", "by its answers to FileStatus it is judged")
                return False
            self.tell(SHOULD, 'names a folder in "Path"', bool(answer.data.get("Path")))
            await line.settle()
            line.send(self.told("TryUpdateBom"))
            self.tell(SHOULD, "asks for the bill when TryUpdateBom comes", await line.hears("GenerateBOM") is not None)
            closed = await line.answers(self.told("FileStatus", "closed"))
            self.tell(MUST, "answers FileStatus of a design that was closed", closed is not None)
        async with Line(self) as line:
            await line.send_in_pieces(saved)
            heard = await line.hears("FileStatus" + REPLY_SUFFIX)
            self.tell(MUST, "reads a frame that comes in two pieces", heard is not None)
        async with Line(self) as line:
            line.send(saved, times=2)
            pair = [await line.hears("FileStatus" + REPLY_SUFFIX) for _ in range(2)]
            self.tell(MUST, "reads two frames that come at once", None not in pair)
        return True

    def _odd_messages(self) -> Iterator[tuple[str, bytes]]:
        yield "a finding that is not JSON for a quote in it", self.told("DsnCheck_Result").replace(b"t\":\"", b't":""')
        yield "a name that it does not know", b'{"Command":"SomethingNew","Data":{},"Result":"0"}'
        yield "a reply to what it did not ask", self.recorded.reply_to("GenerateBOM")
        yield "a refusal", self.recorded.reply_to("NoSuchRequest")
        yield "an empty frame", b""
        for (name, form), message in self.recorded.told.items():
            if name not in ("FileStatus", "TryUpdateBom", *QUERIES):
                yield f"{name} {form}".strip(), message

    async def _survives(self, what: str, message: bytes) -> None:
        async with Line(self) as line:
            line.send(message)
            heard = await line.answers(self.told("FileStatus", "saved"))
        self.tell(MUST, f"goes on after {what}", heard is not None)

    async def _questions(self) -> None:
        loop = asyncio.get_running_loop()
        async with Line(self) as conversation:
            for name in QUERIES:
                began = loop.time()
                async with Line(self) as line:
                    heard = await line.answers(self.told(name))
                self.tell(MUST, f"answers {name} on a connection of its own", heard is not None)
                self.tell(SHOULD, f"answers {name} within {PROMPT_SECONDS} s, since the editor waits",
                          loop.time() - began < PROMPT_SECONDS)
            heard = await conversation.answers(self.told("FileStatus", "opened"))
            self.tell(MUST, "keeps the conversation while a question is asked beside it", heard is not None)


async def reachable(address: tuple[str, int]) -> bool:
    try:
        (await asyncio.open_connection(*address))[1].close()
        return True
    except OSError:
        return False


async def start_and_run(command: list[str], check: Check) -> int:
    """The exit status for a companion that is started for this. Raises Refused."""
    if await reachable(check.address):
        raise Refused(f"somebody listens on {check.place} already; end it first")
    try:
        process = await asyncio.create_subprocess_exec(*command, start_new_session=True)
    except OSError as error:
        raise Refused(f"cannot start: {error.strerror}: {command[0]}") from error
    try:
        for _ in range(START_SECONDS * 10):
            if await reachable(check.address):
                return await check.run()
            if process.returncode is not None:
                check.tell(MUST, "listens", False, f"the command ended with status {process.returncode} before it listened")
                return NOT_DONE
            await asyncio.sleep(0.1)
        check.tell(MUST, "listens", False, f"nobody on {check.place} after {START_SECONDS} s")
        return NOT_DONE
    finally:
        with contextlib.suppress(ProcessLookupError):  # it may just have ended
            os.killpg(process.pid, signal.SIGKILL)
        await process.wait()


def main() -> int:
    words = sys.argv[1:]
    if not words or words[0] in ("-h", "--help"):
        print(__doc__)
        return DONE if words else REFUSED
    place = re.fullmatch(r"([\w.-]+):(\d+)", words[0])
    if place and len(words) == 1:
        return asyncio.run(Check((place[1], int(place[2])), LOG).run())
    here = PROTOCOL["link"]["address"], PROTOCOL["link"]["companionPort"]
    return asyncio.run(start_and_run(words, Check(here, LOG)))


if __name__ == "__main__":
    run("check-companion", main)
