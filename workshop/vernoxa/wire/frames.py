"""Frames: a 4-byte little-endian length, then that many hexadecimal digits, two lowercase ones per message byte."""

from __future__ import annotations

import asyncio
import dataclasses
import re

HEADER_BYTES = 4
# The plug-in's own sockets read the low 16 bits of a length alone, so no message to it may be longer than this.
LARGEST_MESSAGE = 0xFFFF // 2
# Far above any message; a longer length means that the other side does not speak in frames.
LARGEST_BELIEVED = 64 * 1024 * 1024

_LOWERCASE_HEXADECIMAL = re.compile(rb"[0-9a-f]*")


@dataclasses.dataclass
class Frame:
    """A received message as bytes, what was wrong with its frame, and whether more can follow on the connection."""

    message: bytes
    faults: list[str]
    usable: bool = True


class MessageTooLong(ValueError):
    """The other side could not read the message whole."""


def encode(message: bytes) -> bytes:
    if len(message) > LARGEST_MESSAGE:
        raise MessageTooLong(f"a message of {len(message)} bytes: at most {LARGEST_MESSAGE} can be read")
    payload = message.hex().encode("ascii")
    return len(payload).to_bytes(HEADER_BYTES, "little") + payload


def decode(payload: bytes) -> tuple[bytes, list[str]]:
    """The message in a payload as far as it can be read, and the faults of its digits."""
    faults = []
    if len(payload) % 2:
        faults.append(f"an odd number of digits ({len(payload)})")
        payload = payload[:-1]
    if not _LOWERCASE_HEXADECIMAL.fullmatch(payload):
        if _LOWERCASE_HEXADECIMAL.fullmatch(payload.lower()):
            faults.append("upper-case digits")
        else:
            bad = next(i for i, byte in enumerate(payload) if byte not in b"0123456789abcdefABCDEF")
            faults.append(f"no hexadecimal digit at {bad}: {payload[bad:bad + 1]!r}")
            payload = payload[: bad - bad % 2]
    return bytes.fromhex(payload.decode("ascii")), faults


async def read(reader: asyncio.StreamReader) -> Frame | None:
    """The next frame; None when the other side closed between two frames."""
    try:
        header = await reader.readexactly(HEADER_BYTES)
    except asyncio.IncompleteReadError as error:
        if not error.partial:
            return None
        return Frame(b"", [f"closed after {len(error.partial)} bytes of a header"], usable=False)
    length = int.from_bytes(header, "little")
    if length > LARGEST_BELIEVED:
        reversed_order = int.from_bytes(header, "big") <= LARGEST_BELIEVED
        said = "it is little-endian" if reversed_order else "no frames are spoken here"
        return Frame(b"", [f"the length came as {header.hex(' ')}; {said}"], usable=False)
    try:
        payload = await reader.readexactly(length)
    except asyncio.IncompleteReadError as error:
        message, faults = decode(error.partial)
        faults.insert(0, f"closed after {len(error.partial)} of {length} digits")
        return Frame(message, faults, usable=False)
    message, faults = decode(payload)
    return Frame(message, faults)
