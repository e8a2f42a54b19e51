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
import json
import pathlib
import re

from companion import frames, json_text, paths
from companion.server import ADDRESS, RECEIVED, Companion

HOST_PORT = 9610
ANSWER_SECONDS = 30
CHECK_SECONDS = 60
CHECKS = ("1001", "1002", "1003", "1004")
SEPARATOR = "@!@"

# How the plug-in writes what a file name cannot hold.
_ESCAPES = {
    "[;fanxiegan;]": "\\", "[;xiegan;]": "/", "[;maohao;]": ":", "[;xinghao;]": "*", "[;wenhao;]": "?",
    "[;yinhao;]": '"', "[;xiaoyuhao;]": "<", "[;dayuhao;]": ">", "[;shugan;]": "|",
}
_ESCAPE = re.compile("|".join(map(re.escape, _ESCAPES)))


class NotCollected(RuntimeError):
    """The text says what was refused or did not come."""


def plain(text: str) -> str:
    """A name without the plug-in's escapes."""
    return _ESCAPE.sub(lambda found: _ESCAPES[found[0]], text)


async def collect(companion: Companion, path: str) -> dict:
    """Asks the editor for everything about an open design. Raises NotCollected, server.NotConnected, TimeoutError.

    Bill and drawings have to be there; a check or a package report that does not come is left out.
    """
    bom = await _ask(companion, "GenerateBOM", ProjectPath=path)
    drawings = await _ask(companion, "CreateSVG", ProjectPath=path)
    design = companion.answers.designs.get(path.lower())
    return {
        "path": path,
        "pins": design.pins if design else "",
        "bom": bom,
        "properties": await _properties(companion, path),
        "nets": await _nets(path),
        "pages": pages_in(_local(drawings["SVGPath"])),
    } | await _check(companion, path)


async def _ask(companion: Companion, command: str, **data: str) -> dict:
    reply = await companion.ask(command, data, ANSWER_SECONDS)
    if not reply.succeeded:
        raise NotCollected(f"{command} was refused: {reply.error or 'no reason given'}")
    return reply.data


async def _properties(companion: Companion, path: str) -> list[list[str]]:
    try:
        return (await _ask(companion, "GetDsnAllPackageInfo", ProjectPath=path))["item"]
    except (TimeoutError, NotCollected):
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
    said = [event.message for event in companion.events[since:] if event.kind == RECEIVED and event.message]
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
        value, _ = json_text.parse(frame.message)
        file = _local(value["Data"]["netlistsFile"])
        return nets_in(file.read_text(encoding="utf-8"))
    except (OSError, ValueError, KeyError, AttributeError, asyncio.TimeoutError):
        return {}  # the report goes without
    finally:
        writer.close()


def nets_in(text: str) -> dict[str, list[str]]:
    """One net a line: its name, a tab, its pins as reference.number with blanks between."""
    pairs = [line.partition("\t") for line in text.splitlines() if line.strip()]
    return {name: pins.split() for name, _, pins in pairs}


def pages_in(folder: pathlib.Path) -> list[dict]:
    """The page files of an export, in the order of their keys. Raises NotCollected."""
    pages = []
    for file in folder.glob("*.json"):
        pieces = plain(file.name.removesuffix(".json")).split(SEPARATOR)
        if len(pieces) != 3:
            continue
        try:
            drawing = json.loads(file.read_text(encoding="utf-8"))
        except ValueError as error:
            raise NotCollected(f"{file.name} cannot be read: {error}") from error
        pages.append(dict(zip(("schematic", "name", "key"), pieces), drawing=drawing))
    if not pages:
        raise NotCollected(f"no page files in {folder}")
    return sorted(pages, key=lambda page: [(int(piece or 0), text) for text, piece in
                                           re.findall(r"(\D*)(\d*)", page["key"])] + [(0, page["name"])])


def _local(windows_path: str) -> pathlib.Path:
    local = paths.to_local(windows_path)
    if local is None:
        raise NotCollected(f"{windows_path} is not on this machine")
    return local
