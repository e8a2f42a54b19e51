#!/usr/bin/python3
"""Plays the editor's side against somebody's companion, and says what holds and what does not.

    check_companion.py HOST:PORT     one that runs
    check_companion.py COMMAND...    one that is started, and is expected on 127.0.0.1:9601

Ends with 1 when something does not hold that must. What the companion asks is answered out of recorded conversations.
"""

from __future__ import annotations

import asyncio
import contextlib
import json
import os
import re
import signal
import sys
from typing import Callable, Iterator

from jsonschema import Draft202012Validator

from vernoxa.places import CONVERSATIONS, DOCS
from vernoxa.wire import frames, json_text, messages, record
from vernoxa.wire.catalogue import PROTOCOL, QUERIES, REPLY_SUFFIX

SCHEMAS = json.loads((DOCS / "messages.schema.json").read_text(encoding="utf-8"))["$defs"]
START_SECONDS = 10
PROMPT_SECONDS = 1
MUST, SHOULD = "must", "should"
# Of all that the companion says.
_ALWAYS = (
    (MUST, "frames", "frames are a length and hexadecimal digits"),
    (SHOULD, "digits", "the digits are lower-case ones"),
    (MUST, "texts", "texts are in the code page"),
    (MUST, "messages", "messages are known and have what they need"),
)


class Recorded:
    """What the plug-in said in the recorded conversations, as bytes."""

    def __init__(self) -> None:
        self.told: dict[tuple[str, str], bytes] = {}  # by name and form
        self.replies: dict[str, bytes] = {}
        for file in sorted((CONVERSATIONS).glob("*.txt")):
            for entry in record.read(file):
                if entry.what != record.PLUG_IN or not entry.message:
                    continue
                message = messages.read(entry.message)
                if message.of_its_own:
                    self.told.setdefault((message.command, message.shape), entry.message)
                elif message.shape == "done":
                    self.replies.setdefault(message.command, entry.message)

    def reply_to(self, command: str) -> bytes:
        refused = {"ErrInfo": "command error", "Result": "1", "Data": {}, "Command": command + REPLY_SUFFIX}
        return self.replies.get(command + REPLY_SUFFIX) or json_text.print_formatted(refused)


class Line:
    """A connection to the companion. Its requests are answered as they come."""

    def __init__(self, check: "Check"):
        self._check = check
        self._came: asyncio.Queue[messages.Message | None] = asyncio.Queue()

    async def __aenter__(self) -> "Line":
        self._reader, self.writer = await asyncio.open_connection(*self._check.address)
        self._reading = asyncio.create_task(self._read())
        return self

    async def __aexit__(self, *_: object) -> None:
        self._reading.cancel()
        self.writer.close()

    async def _read(self) -> None:
        try:
            while frame := await frames.read(self._reader):
                message = self._check.judge(frame)
                if message and not message.command.endswith(REPLY_SUFFIX):
                    self.send(self._check.recorded.reply_to(message.command))
                self._came.put_nowait(message)
        except OSError:
            pass
        self._came.put_nowait(None)

    def send(self, message: bytes) -> None:
        self.writer.write(frames.encode(message))

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


class Check:
    """Judges the companion at an address, and says each rule. An answer may take so many seconds."""

    def __init__(self, address: tuple[str, int], patience: float = 5, say: Callable[[str], None] = print):
        self.address = address
        self.patience = patience
        self._say = say
        self.recorded = Recorded()
        self.failed: list[str] = []  # grades
        self._faults: dict[str, list[str]] = {"frames": [], "digits": [], "texts": [], "messages": []}

    def judge(self, frame: frames.Frame) -> messages.Message | None:
        """What arrived, when it can be read; its faults are kept."""
        for fault in frame.faults:
            self._faults["digits" if fault == "upper-case digits" else "frames"].append(fault)
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
        self._faults["messages"] += problems + self._faults_of(value)
        return messages.Message(frame.message, value, messages.PLAIN)

    @staticmethod
    def _faults_of(value: dict) -> list[str]:
        name = value["Command"]
        asked = {request["name"] for request in PROTOCOL["requests"] if request["side"] == "companion"}
        answered = {message["name"] + REPLY_SUFFIX for message in PROTOCOL["messages"] if message["answer"]}
        if name not in asked | answered:
            return [f"{name} is nothing that a companion says"]
        schema = {"$ref": f"#/$defs/{name}", "$defs": SCHEMAS}
        return [f"{name}: {error.message}" for error in Draft202012Validator(schema).iter_errors(value)]

    def tell(self, grade: str, rule: str, holds: bool, detail: str = "") -> bool:
        reason = f": {detail}" if detail and not holds else ""
        self._say(f"{'holds' if holds else 'FAILS'}  {grade:6}  {rule}{reason}")
        if not holds:
            self.failed.append(grade)
        return holds

    def told(self, name: str, form: str = "") -> bytes:
        return self.recorded.told[name, form]

    async def run(self) -> bool:
        """Whether all holds that must."""
        try:
            await self._probe()
            if await self._conversation():
                for what, message in self._odd_messages():
                    await self._survives(what, message)
                await self._questions()
        except OSError as error:
            self.tell(MUST, "can be reached", False, str(error))
        for grade, kind, rule in _ALWAYS:
            self.tell(grade, rule, not self._faults[kind], "; ".join(dict.fromkeys(self._faults[kind])))
        return MUST not in self.failed

    async def _probe(self) -> None:
        _, writer = await asyncio.open_connection(*self.address)
        writer.close()
        async with Line(self) as line:
            heard = await line.answers(self.told("FileStatus", "opened"))
        self.tell(MUST, "survives a connection that ends without a word", heard is not None)

    async def _conversation(self) -> bool:
        """False when FileStatus is not answered, by which all else is judged."""
        saved = frames.encode(self.told("FileStatus", "saved"))
        async with Line(self) as line:
            answer = await line.answers(self.told("FileStatus", "opened"))
            if not self.tell(MUST, "answers FileStatus", answer is not None, f"nothing within {self.patience} s"):
                return False
            self.tell(SHOULD, 'names a folder in "Path"', bool(answer.data.get("Path")))
            await line.settle()
            line.send(self.told("TryUpdateBom"))
            self.tell(SHOULD, "asks for the bill when TryUpdateBom comes", await line.hears("GenerateBOM") is not None)
            closed = await line.answers(self.told("FileStatus", "closed"))
            self.tell(MUST, "answers FileStatus of a design that was closed", closed is not None)
        async with Line(self) as line:
            for piece in (saved[:7], saved[7:]):
                line.writer.write(piece)
                await line.writer.drain()
                await asyncio.sleep(0.2)
            heard = await line.hears("FileStatus" + REPLY_SUFFIX)
            self.tell(MUST, "reads a frame that comes in two pieces", heard is not None)
        async with Line(self) as line:
            line.writer.write(2 * saved)
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
    for _ in range(START_SECONDS * 10):
        try:
            (await asyncio.open_connection(*address))[1].close()
            return True
        except OSError:
            await asyncio.sleep(0.1)
    return False


async def start_and_run(command: list[str], check: Check) -> bool:
    """Whether all holds that must of a companion that is started for this."""
    process = await asyncio.create_subprocess_exec(*command, start_new_session=True)
    try:
        if await reachable(check.address):
            return await check.run()
        return check.tell(MUST, "listens", False, f"nobody on {check.address} after {START_SECONDS} s")
    finally:
        with contextlib.suppress(ProcessLookupError):  # it may just have ended
            os.killpg(process.pid, signal.SIGKILL)
        await process.wait()


def main(words: list[str]) -> int:
    sys.stdout.reconfigure(line_buffering=True)  # type: ignore[union-attr]
    if not words:
        print(__doc__)
        return 2
    place = re.fullmatch(r"([\w.-]+):(\d+)", words[0])
    if place and len(words) == 1:
        return 0 if asyncio.run(Check((place[1], int(place[2]))).run()) else 1
    here = Check((PROTOCOL["link"]["address"], PROTOCOL["link"]["companionPort"]))
    return 0 if asyncio.run(start_and_run(words, here)) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
