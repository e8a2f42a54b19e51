"""A proxy that breaks what it carries at one place, in one way.

Kept tools that break connections (Linux's netem) do so by chance or for a whole network, not at one byte of one message.
"""

from __future__ import annotations

import asyncio
import contextlib
import dataclasses

ADDRESS = "127.0.0.1"
HOLD_SECONDS = 150
HTTP = b"HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"


@dataclasses.dataclass
class Fault:
    """What happens before byte `position` of one direction, once: "answers" go to the plug-in's side, "requests" come
    from it. `kind` is one of the methods of _Stream."""

    kind: str
    direction: str
    position: int


class _Stream:
    """One direction of a connection."""

    def __init__(self, proxy: Proxy, reader: asyncio.StreamReader, writer: asyncio.StreamWriter, faulty: bool):
        self._proxy, self._reader, self._writer, self._faulty = proxy, reader, writer, faulty
        self._carried = 0

    async def carry(self) -> None:
        """Until the end of the stream, or a fault that ends it."""
        while chunk := await self._reader.read(4096):
            fault = self._proxy.fault
            if self._faulty and fault and self._carried + len(chunk) > fault.position:
                before, after = chunk[: fault.position - self._carried], chunk[fault.position - self._carried :]
                await self._write(before)
                self._proxy.fault = None
                self._proxy.injected.set()
                if not await getattr(self, "_" + fault.kind)(after):
                    return
            else:
                await self._write(chunk)
            self._carried += len(chunk)

    async def _write(self, chunk: bytes) -> None:
        self._writer.write(chunk)
        await self._writer.drain()

    async def _delay(self, rest: bytes) -> bool:
        await asyncio.sleep(3)
        await self._write(rest)
        return True

    async def _hold(self, rest: bytes) -> bool:
        await asyncio.sleep(HOLD_SECONDS)
        await self._write(rest)
        return True

    async def _bytewise(self, rest: bytes) -> bool:
        for byte in rest:
            await self._write(bytes([byte]))
            await asyncio.sleep(0.003)
        return True

    async def _repeat(self, rest: bytes) -> bool:
        await self._write(rest + rest)
        return True

    async def _corrupt(self, rest: bytes) -> bool:
        await self._write(b"z" + rest[1:])
        return True

    async def _cut(self, rest: bytes) -> bool:
        self._writer.transport.abort()
        return False

    async def _halfClose(self, rest: bytes) -> bool:
        self._writer.write_eof()
        await self._reader.read()
        return False

    async def _stopReading(self, rest: bytes) -> bool:
        await asyncio.sleep(15)
        return False


class Proxy:
    """Listens on `port` for the plug-in's side and carries everything to `target`; without one it is a stranger that
    speaks HTTP. The fault strikes the first connection that gets so far."""

    def __init__(self, port: int, target: int | None, fault: Fault | None = None):
        self.port, self.target, self.fault = port, target, fault
        self.injected = asyncio.Event()
        self._server: asyncio.Server | None = None
        self._writers: set[asyncio.StreamWriter] = set()

    async def start(self) -> None:
        self._server = await asyncio.start_server(self._serve, ADDRESS, self.port)

    async def stop(self) -> None:
        if self._server:
            self._server.close()
        for writer in list(self._writers):
            writer.transport.abort()

    async def _serve(self, reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        self._writers.add(writer)
        with contextlib.suppress(ConnectionError):
            if self.target is None:
                await self._speak_nonsense(reader, writer)
            else:
                await self._carry(reader, writer)
        writer.close()
        self._writers.discard(writer)

    async def _speak_nonsense(self, reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        if await reader.read(4096):
            self.injected.set()
            writer.write(HTTP)
            await writer.drain()

    async def _carry(self, reader: asyncio.StreamReader, writer: asyncio.StreamWriter) -> None:
        try:
            far_reader, far_writer = await asyncio.open_connection(ADDRESS, self.target)
        except OSError:
            return
        direction = self.fault.direction if self.fault else ""
        streams = [
            asyncio.create_task(_Stream(self, reader, far_writer, direction == "requests").carry()),
            asyncio.create_task(_Stream(self, far_reader, writer, direction == "answers").carry()),
        ]
        await asyncio.wait(streams, return_when=asyncio.FIRST_COMPLETED)
        for stream in streams:
            stream.cancel()
        await asyncio.gather(*streams, return_exceptions=True)
        far_writer.close()
