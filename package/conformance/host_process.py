"""Somebody's host scripts in a process of their own, with the plug-in played to them, and what they were told and said."""

from __future__ import annotations

import asyncio
import contextlib
import dataclasses
import errno
import os
import pathlib
import random
import signal
import socket
import sys
import time
from typing import Callable

from vernoxa.wire import frames, json_text
from vernoxa.wire.catalogue import PROTOCOL

from grading import HERE, Recorded

PLAYER = HERE / "plug_in.tcl"
ADDRESS = PROTOCOL["link"]["address"]
LOAD_SECONDS = 30
LONGEST_LINE = 1 << 26
_given: set[int] = set()


def unused_port() -> int:
    """One that nobody listens on. None is given twice: whoever got it before may be about to listen. Nor one of those that a
    system takes for whoever connects: they begin at 32,768 on Linux (ip_local_port_range), at 49,152 on Windows."""
    while True:
        port = random.randrange(20000, 32768)
        try:
            with socket.create_server((ADDRESS, port)):
                if port not in _given:  # asked while it is held, so that no other thread has the same in hand
                    _given.add(port)
                    return port
        except OSError as error:
            if error.errno not in (errno.EADDRINUSE, errno.EACCES):  # Windows refuses some for itself
                raise


@dataclasses.dataclass
class Result:
    """What a script came to; `items` when its text is a Tcl list."""

    failed: bool
    text: str
    items: list[str] | None


class Log:
    """The plug-in's traffic log, for `packet.py log`; scripts and calls are its steps."""

    def __init__(self, file: pathlib.Path):
        file.parent.mkdir(parents=True, exist_ok=True)
        self._stream = open(file, "wb")

    def close(self) -> None:
        self._stream.close()

    def line(self, text: str | bytes) -> None:
        now = time.localtime()
        start = f"[Time]:{now.tm_year}-{now.tm_mon}-{now.tm_mday} {now.tm_hour}:{now.tm_min}:{now.tm_sec}:0."
        self._stream.write(start.encode() + (text if isinstance(text, bytes) else text.encode("gbk", "replace")) + b"\r\n")
        self._stream.flush()

    def called(self, name: str, arguments: list[str], answer: str) -> None:
        if not name.startswith("packetParser"):
            return self.line(f"called: {name} {' '.join(arguments)}")
        self.line("=" * 20 + "decodePacket")
        self.line(frames.decode("".join(arguments[:1]).encode())[0])
        if answer:
            self.line(b"return data:" + bytes.fromhex(answer))
            self.line(answer)


def _answers(library: str) -> dict[str, str]:
    """What the plug-in's commands answer: where that is a message, a recorded one."""
    recorded = Recorded()
    answers = {}
    for command in PROTOCOL["commands"]:
        name, kind = command["name"], command["answer"]["kind"]
        made = [recorded.told[row["name"], row["form"]] for row in PROTOCOL["messages"] if name in row["sentBy"]]
        packet = (made or [recorded.replies["CheckOpenState_EndResult"]])[0].hex()
        answers[name] = {"nothing": "", "plain": "1", "packetText": packet}[kind]
    opened = {"Data": {"ProjectPath": "", "CloseFile": ""}, "Command": "GetNewOpenPath_EndResult", "Result": "0"}
    packet = json_text.print_plain(opened).hex()
    return answers | {"packetParserForPthread": packet, "getOlbPath": library, "getNewOlbPath": library}


class Stuck(RuntimeError):
    """The host did not come back; the text says from what."""


class Host:
    """The scripts of somebody's host in a process of their own. The protocol's ports stand for others there."""

    def __init__(self, log: Log, patience: float, library: str):
        self.answers = _answers(library)
        self.calls: list[list[str]] = []  # of the plug-in's commands
        self.problems: list[str] = []  # errors in the background
        self.read: Result | None = None
        self._log = log
        self._patience = patience
        self._results: list[Result] = []
        self._news = asyncio.Event()
        self._process: asyncio.subprocess.Process | None = None
        self._writer: asyncio.StreamWriter | None = None

    async def start(self, words: list[str], start_up: list[str], ports: dict[int, int]) -> list[Result]:
        """What each script of the start-up came to, as far as they were evaluated. Raises Stuck."""
        self._server = await asyncio.start_server(self._listen, ADDRESS, 0, limit=LONGEST_LINE)
        command = ["tclsh8.6", str(PLAYER)]
        self._process = await asyncio.create_subprocess_exec(
            *command, str(self._server.sockets[0].getsockname()[1]), *words, stdin=asyncio.subprocess.DEVNULL,
            stdout=sys.stderr, start_new_session=True)
        await self._until(lambda: self._writer is not None, LOAD_SECONDS)
        for line in (start_up, [word for pair in self.answers.items() for word in pair],
                     [str(port) for pair in ports.items() for port in pair]):
            self._say(line)
        await self._until(lambda: self.read or len(self._results) == len(start_up), LOAD_SECONDS)
        results, self._results = self._results, []
        return results

    async def stop(self) -> None:
        self._server.close()
        if self._process:
            with contextlib.suppress(ProcessLookupError):  # it may just have ended
                os.killpg(self._process.pid, signal.SIGKILL)
            await self._process.wait()
        if self._writer:
            self._writer.close()

    def _say(self, words: list[str]) -> None:
        assert self._writer  # since the start
        self._writer.write(" ".join(word.encode().hex() for word in words).encode() + b"\n")

    async def _listen(self, reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        self._writer = writer
        self._news.set()
        with contextlib.suppress(ConnectionError):  # it was ended in the middle of something
            await self._hear(reader)

    async def _hear(self, reader: asyncio.StreamReader) -> None:
        while (line := await reader.readline()).endswith(b"\n"):  # half a line is the end
            kind, *words = line.decode().rstrip("\n").split(" ")
            words = [bytes.fromhex(word).decode() for word in words]
            if kind == "called":
                self.calls.append(words)
                self._log.called(words[0], words[1:], self.answers[words[0]])
            elif kind == "failed":
                self.problems.append(words[0])
            elif kind == "read":
                self.read = Result(words[0] != "0", words[1], None)
            elif kind == "result":
                self._results.append(Result(words[0] != "0", words[1], words[3:] if words[2] == "1" else None))
            self._news.set()

    async def _until(self, happened: Callable[[], object], seconds: float = 0) -> None:
        async def look() -> None:
            while not happened():
                self._news.clear()
                await self._news.wait()

        try:
            await asyncio.wait_for(look(), seconds or self._patience)
        except asyncio.TimeoutError as error:
            raise Stuck("being loaded") from error

    async def evaluate(self, script: str) -> Result:
        """Raises Stuck."""
        self._say([script])
        try:
            await self._until(lambda: self._results)
        except Stuck:
            raise Stuck(script[:90]) from None
        result = self._results.pop(0)
        self._log.line(f"{script}: {'error: ' if result.failed else ''}{result.text}")
        return result

    async def called(self, *call: str, times: int = 1) -> bool:
        try:
            await self._until(lambda: self.calls.count(list(call)) >= times)
            return True
        except Stuck:
            return False
