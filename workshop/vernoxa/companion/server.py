"""The server on 127.0.0.1:9601: connections, the conversation on them, requests and their replies."""

from __future__ import annotations

import asyncio
import collections
import contextlib
import dataclasses
import re
import socket
import subprocess
import time
from typing import Callable

from vernoxa.command import Refused
from vernoxa.wire import frames, json_text, messages, paths, schemas
from vernoxa.wire.catalogue import QUERIES, REPLY_SUFFIX, find
from vernoxa.wire.events import CLOSED, FAULT, NOTE, OPENED, PROBED, RECEIVED, SENT, Event

from .answers import Answers

ADDRESS = "127.0.0.1"
PORT = 9601
REPLY_SECONDS = 30.0
PROBE_SECONDS = 0.2


class NotConnected(RuntimeError):
    """The host side has no connection to the companion."""


class Failed(RuntimeError):
    """The plug-in answered that it could not; the text says what and why."""


class PortTaken(Refused):
    """Another program listens on the port; the text names it."""


def require_free(port: int) -> None:
    """Raises PortTaken."""
    with socket.socket() as probe:
        probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        try:
            probe.bind((ADDRESS, port))
        except OSError as error:
            raise PortTaken(f"port {port} is taken by {_holder(port)}") from error


def _holder(port: int) -> str:
    """The program that listens on it, as far as the system tells."""
    with contextlib.suppress(OSError):
        said = subprocess.run(["ss", "-Hltnp", f"sport = :{port}"], capture_output=True, text=True, check=False).stdout
        if found := re.search(r'users:\(\("([^"]+)",pid=(\d+)', said):
            return f"{found[1]} (process {found[2]})"
    return "another program"


@dataclasses.dataclass
class _Connection:
    number: int
    writer: asyncio.StreamWriter
    stays: bool = False  # no probe
    asks: bool = False  # a query connection
    frames: int = 0


@dataclasses.dataclass
class _Asked:
    request: messages.Message
    reply: asyncio.Future
    connection: int


class Companion:
    """Listeners are called with every event, in order, on the event loop."""

    def __init__(self, answers: Answers, address: str = ADDRESS, port: int = PORT):
        self.answers = answers
        self.address = address
        self.port = port
        self.events: list[Event] = []
        self.faults = 0
        self.listeners: list[Callable[[Event], None]] = []
        self._started = time.monotonic()
        self._server: asyncio.Server | None = None
        self._connections: list[_Connection] = []
        self._serving: set[asyncio.Future[None]] = set()
        self._numbers = 0
        self._asked: dict[str, collections.deque] = collections.defaultdict(collections.deque)
        self._waiting: list[tuple[Callable[[Event], bool], asyncio.Future]] = []

    async def start(self) -> None:
        require_free(self.port)
        self._server = await asyncio.start_server(self._serve, self.address, self.port)
        self.port = self._server.sockets[0].getsockname()[1]

    async def stop(self) -> None:
        if self._server:
            self._server.close()
        for connection in list(self._connections):
            connection.writer.close()
        if self._serving:
            await asyncio.wait(self._serving, timeout=2)

    async def ask(self, name: str, data: dict, seconds: float = REPLY_SECONDS) -> messages.Message | None:
        """Sends a command to the editor and gives its reply; None for a command that has none.

        Raises NotConnected, TimeoutError, UnicodeEncodeError (a text outside the code page), frames.MessageTooLong.
        """
        command = find(name)
        if isinstance(path := data.get("ProjectPath"), str):
            data = data | {"ProjectPath": paths.for_request(path)}
        asked = self._send_request({"Command": name, "Data": data, "Result": "0"})
        if command and not command.answered:
            return None  # it stays noted, since it can still be refused
        try:
            return await asyncio.wait_for(asked.reply, seconds)
        except asyncio.TimeoutError as error:
            self._asked[name].remove(asked)
            raise TimeoutError(f"no answer to {name} within {seconds:g} s") from error

    async def data_of(self, name: str, data: dict, seconds: float = REPLY_SECONDS) -> dict:
        """The "Data" of a successful reply; an empty one for a command that has none. Raises Failed, and as `ask`."""
        reply = await self.ask(name, data, seconds)
        if reply and not reply.succeeded:
            raise Failed(f'{name} was answered with failure, "{reply.error}"')
        return reply.data if reply else {}

    def send_raw(self, value: dict) -> None:
        """Sends an envelope as it is, without waiting for anything."""
        self._send_request(value)

    async def wait_for(self, wanted: Callable[[Event], bool], seconds: float, since: int = 0) -> Event:
        """The first event, from number `since` on, that is wanted. Raises TimeoutError."""
        for event in self.events[since:]:
            if wanted(event):
                return event
        future = asyncio.get_running_loop().create_future()
        self._waiting.append((wanted, future))
        try:
            return await asyncio.wait_for(future, seconds)
        except asyncio.TimeoutError as error:
            raise TimeoutError from error
        finally:
            self._waiting = [waiting for waiting in self._waiting if waiting[1] is not future]

    def _host(self) -> _Connection | None:
        """The connection that carries the conversation: the newest that has spoken, else the newest that stayed open."""
        able = [connection for connection in self._connections if connection.stays and not connection.asks]
        return max(able, key=lambda connection: (connection.frames > 0, connection.number)) if able else None

    def _send_request(self, value: dict) -> _Asked:
        host = self._host()
        if host is None:
            raise NotConnected("the editor is not connected")
        asked = _Asked(self._send(host, value), asyncio.get_running_loop().create_future(), host.number)
        self._asked[str(value.get("Command", ""))].append(asked)
        return asked

    def _lose(self, connection: int) -> None:
        """What was asked on a connection that is gone is not answered any more."""
        for asked in [asked for line in self._asked.values() for asked in line if asked.connection == connection]:
            if not asked.reply.done():
                asked.reply.set_exception(NotConnected("the editor closed its connection"))
                asked.reply.exception()  # nobody may be waiting
        for name, line in self._asked.items():
            self._asked[name] = collections.deque(asked for asked in line if asked.connection != connection)

    def _send(self, connection: _Connection, value: dict) -> messages.Message:
        raw = json_text.print_plain(value)
        frame = frames.encode(raw)
        connection.writer.write(frame)
        message = messages.Message(raw, value, messages.PLAIN)
        self._tell(SENT, connection, message)
        if message.command.endswith(REPLY_SUFFIX):  # of a request the reply tells whether it was to be right
            self._blame(connection, message, schemas.faults_of(message))
        return message

    async def _serve(self, reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        serving = asyncio.get_running_loop().create_future()
        self._serving.add(serving)
        self._numbers += 1
        connection = _Connection(self._numbers, writer)
        self._connections.append(connection)
        try:
            # A probe closes without a word, so a connection is told once it speaks or stays.
            first = asyncio.ensure_future(frames.read(reader))
            await asyncio.wait({first}, timeout=PROBE_SECONDS)
            if not first.done() or (first.exception() is None and first.result() is not None):
                connection.stays = True
                self._tell(OPENED, connection)
            frame = await first
            while frame is not None:
                self._receive(connection, frame)
                if not frame.usable:
                    break
                await writer.drain()
                frame = await frames.read(reader)
        except ConnectionError as error:
            if connection.stays:
                self._tell(NOTE, connection, text=f"the editor's end is gone, as when it ends ({error.strerror or error})")
        finally:
            self._connections.remove(connection)
            writer.close()
            self._lose(connection.number)
            self._tell(CLOSED if connection.stays else PROBED, connection)
            self._serving.discard(serving)
            serving.set_result(None)

    def _receive(self, connection: _Connection, frame: frames.Frame) -> None:
        message = messages.read(frame.message)
        message.faults[:0] = frame.faults
        if len(frame.message) > frames.LARGEST_MESSAGE:
            message.notes.append(f"{len(frame.message)} bytes: a receiver that counts 16 bits cannot read this whole")
        connection.frames += 1
        connection.asks = connection.asks or message.command in QUERIES
        if connection.asks and connection.frames > 1:
            message.faults.append("a second request on a query connection")
        asked = self._match(message)
        message.faults += schemas.faults_of(message) if message.members and not message.faults else []
        # The books are brought up to date before anyone looks into them.
        answers = self.answers.take(message, asked.request.data if asked else None)
        self._tell(RECEIVED, connection, message)
        self._blame(connection, message, message.faults)
        for note in message.notes:
            self._tell(NOTE, connection, message, note)
        if asked and not asked.reply.done():
            asked.reply.set_result(message)
        for answer in answers:
            try:
                if answer["Command"].endswith(REPLY_SUFFIX):
                    self._send(connection, answer)
                else:
                    self._send_request(answer)
            except (NotConnected, UnicodeEncodeError, frames.MessageTooLong) as error:
                self._tell(NOTE, connection, message, f"{answer['Command']} could not be sent: {error}")

    def _match(self, message: messages.Message) -> _Asked | None:
        """The request that a reply belongs to."""
        name = message.command.removesuffix(REPLY_SUFFIX)
        if name == message.command or (message.of_its_own and message.shape != "report"):
            return None
        if self._asked[name]:
            asked = self._asked[name].popleft()
            wrong = schemas.faults_of(asked.request)
            if (message.shape == "refused") != bool(wrong):
                message.faults.append(f"{message.shape}, though the request {wrong[0] if wrong else 'is right'}")
            return asked
        if not message.of_its_own:
            message.faults.append("a reply that nobody asked for")
        return None

    def _blame(self, connection: _Connection, message: messages.Message, faults: list[str]) -> None:
        self.faults += len(faults)
        for fault in faults:
            self._tell(FAULT, connection, message, fault)

    def _tell(self, kind: str, connection: _Connection, message: messages.Message | None = None, text: str = "") -> None:
        message = message or messages.read(b"")
        event = Event(time.monotonic() - self._started, kind, connection.number, message, text)
        self.events.append(event)
        for listener in self.listeners:
            listener(event)
        for wanted, future in self._waiting:
            if not future.done() and wanted(event):
                future.set_result(event)
