"""The plug-in's side of a conversation, byte by byte, for tests of the stand-in companion."""

from __future__ import annotations

import asyncio

BOM = (
    '{"Data":{"Stick":[{"PartNumber":"","Value":"10k","PartRef":"R1","PartName":"电阻","PCBFootprint":"0603",'
    '"PinNumber":"2"}],"NotStick":[],"NotPartNumber":[]},"Command":"GenerateBOM_EndResult","Result":"0"}'
)
MARKED = '{"Data":{},"Command":"SetToNotStick_EndResult","Result":"0","ErrInfo":""}'
FINDING = (
    '{"Command":"DsnCheck_Result","Data":{"id":"1002","RequiredValue":"","ActualValue":"%s","Comment":"含非法字符",'
    '"PagePos":"10 20","PageName":"a[;fanxiegan;]b","ViewBox":"","Sch":"S"},"Result":"0","ErrInfo":""}'
)
REFUSED = '{\n\t"ErrInfo":\t"command error",\n\t"Result":\t"1",\n\t"Data":\t{\n\t},\n\t"Command":\t"%s_EndResult"\n}'


def opened(path: str, pins: str = "12") -> bytes:
    """Every byte that is a backslash is escaped, the second one of a double-byte character too."""
    return (
        b'{"Command":"FileStatus","Result":"0","Data":{"Status":"Open","FileName":"%s","Pid":"8",'
        b'"AllegroPath":"","PinCount":"%s"}}'
    ) % (path.encode("gbk").replace(b"\\", b"\\\\"), pins.encode())


def in_code_page(text: str | bytes) -> bytes:
    return text if isinstance(text, bytes) else text.encode("gbk")


def frame(text: str | bytes) -> bytes:
    raw = in_code_page(text)
    return (2 * len(raw)).to_bytes(4, "little") + raw.hex().encode()


class FakePlugIn:
    """One connection. `replies` maps a command of the companion to the text sent back."""

    def __init__(self, port: int, replies: dict[str, str] | None = None):
        self._port = port
        self._replies = replies or {}
        self.received: list[bytes] = []

    async def __aenter__(self) -> "FakePlugIn":
        self._reader, self._writer = await asyncio.open_connection("127.0.0.1", self._port)
        return self

    async def __aexit__(self, *_: object) -> None:
        self._writer.close()
        await asyncio.sleep(0)

    def send(self, text: str | bytes) -> None:
        self._writer.write(frame(text))

    def send_raw(self, data: bytes) -> None:
        self._writer.write(data)

    async def receive(self) -> bytes:
        """The next message; answered at once when there is a reply for it."""
        header = await asyncio.wait_for(self._reader.readexactly(4), 5)
        payload = await asyncio.wait_for(self._reader.readexactly(int.from_bytes(header, "little")), 5)
        message = bytes.fromhex(payload.decode())
        self.received.append(message)
        for command, reply in self._replies.items():
            if b'"Command":"' + command.encode() + b'"' in message:
                self.send(reply)
        return message

    async def closed(self) -> bool:
        return await asyncio.wait_for(self._reader.read(), 5) == b""
