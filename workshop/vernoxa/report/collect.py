"""What the companion can learn of an open design, gathered for the report.

The result, which is embedded in the report as JSON:

    path, pins            the design as the editor names it, and its number of pins (text)
    bom                   {"Stick": [LINE...], "NotStick": [...], "NotPartNumber": [...]}, lines as in the BOM message
    checks, findings      the ids of the checks that were carried out; findings as in their messages, page names plain
    properties            [[name, value]...] of the package report
    nets                  {name: ["U1.3"...]}; empty when the host did not write them
    pages                 [{"schematic", "name", "key", "drawing"}...], `drawing` being the content of the page file
"""

from __future__ import annotations

import asyncio
import contextlib
import pathlib

from vernoxa.command import Refused
from vernoxa.companion.tables import CHECKS
from vernoxa.companion.server import ADDRESS, Companion, Failed
from vernoxa.drawings import page_file
from vernoxa.drawings.page_file import plain
from vernoxa.wire import frames, json_text, messages, paths
from vernoxa.wire.catalogue import PROTOCOL
from vernoxa.wire.events import RECEIVED

HOST_PORT = PROTOCOL["link"]["hostPort"]
# Far above what a large design takes where nothing else runs.
ANSWER_SECONDS = 300
CHECK_SECONDS = 300


class NotCollected(Refused):
    """The text says what was refused or did not come."""


async def collect(companion: Companion, path: str) -> dict:
    """Asks the editor for everything about an open design. Raises NotCollected, server.NotConnected,
    server.Failed, TimeoutError.

    Bill and drawings have to be there; a check or a package report that does not come is left out.
    """
    bom = await companion.data_of("GenerateBOM", {"ProjectPath": path}, ANSWER_SECONDS)
    drawings = await companion.data_of("CreateSVG", {"ProjectPath": path}, ANSWER_SECONDS)
    design = companion.answers.designs.get(paths.key_of(path))
    return {
        "path": path,
        "pins": design.pins if design else "",
        "bom": bom,
        "properties": await _properties(companion, path),
        "nets": await _nets(path),
        "pages": pages_in(paths.to_local(drawings["SVGPath"])),
    } | await _check(companion, path)


async def _properties(companion: Companion, path: str) -> list[list[str]]:
    try:
        return (await companion.data_of("GetDsnAllPackageInfo", {"ProjectPath": path}))["item"]
    except (TimeoutError, Failed):
        return []


async def _check(companion: Companion, path: str) -> dict:
    """All checks; each ends with a message of its own."""
    since = len(companion.events)
    await companion.ask("DsnCheck", {"ProjectPath": path})
    done = []
    limit = asyncio.get_running_loop().time() + CHECK_SECONDS
    for check in CHECKS:
        left = max(0.0, limit - asyncio.get_running_loop().time())
        with contextlib.suppress(TimeoutError):
            await companion.wait_for(lambda event: event.is_message("DsnCheck_EndResult", id=check), left, since)
            done.append(check)
    said = [event.message for event in companion.events[since:] if event.kind == RECEIVED]
    found = [message.data for message in said if message.command == "DsnCheck_Result"]
    return {"checks": done, "findings": [finding | {"PageName": plain(finding["PageName"])} for finding in found]}


async def _nets(path: str, port: int = HOST_PORT) -> dict[str, list[str]]:
    """The host's server for the plug-in's thread takes one more request: it writes the nets into a file."""
    request = {"Command": "GetNetsList", "Data": {"ProjectPath": path}}
    try:
        reader, writer = await asyncio.open_connection(ADDRESS, port)
    except OSError:
        return {}
    try:
        writer.write(frames.encode(json_text.print_plain(request)))
        frame = await asyncio.wait_for(frames.read(reader), 30)
        answer = messages.read(frame.message if frame else b"")
        return nets_in(paths.to_local(str(answer.data["netlistsFile"])).read_text(encoding="utf-8"))
    except (OSError, ValueError, KeyError, paths.NotHere, asyncio.TimeoutError):
        return {}  # the report goes without
    finally:
        writer.close()


def nets_in(text: str) -> dict[str, list[str]]:
    """One net a line: its name, a tab, its pins as reference.number with spaces between."""
    pairs = [line.partition("\t") for line in text.splitlines() if line.strip()]
    return {name: pins.split() for name, _, pins in pairs}


def pages_in(folder: pathlib.Path) -> list[dict]:
    """The page files of an export, in the order of their keys. Raises NotCollected."""
    try:
        pages = page_file.read_all(folder)
    except (OSError, ValueError) as error:
        raise NotCollected(f"a page cannot be read: {error}") from error
    if not pages:
        raise NotCollected(f"no page files in {folder}")
    return [{"schematic": page.schematic, "name": page.name, "key": page.key, "drawing": page.document} for page in pages]
