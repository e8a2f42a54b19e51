"""Loads the scripts of somebody's host in a Tcl of their own, plays the plug-in and the companion to them, and says what
holds and what does not.

    check_host.py SCRIPT [ARGUMENT...]

Every procedure is called as the plug-in called it in a recorded run, but with a design, a page and a part of
this host: so let it open a design. What SCRIPT loads as Vernoxa is the plug-in that is played here; a script
that loads none gets it at its end. Ends with 0 when all holds that must, with 1 when something of that does not.
"""

from __future__ import annotations

import asyncio
import pathlib
import re
import sys
import tempfile
from typing import Callable

from vernoxa.command import DONE, REFUSED, Refused, run
from vernoxa.wire import frames
from vernoxa.wire.catalogue import PROTOCOL

from grading import LOGS, MUST, PIECES_SECONDS, RECORDED_CALLS, SHOULD, Grades, say_at_once
from host_process import ADDRESS, Host, Log, Result, Stuck, unused_port

ROWS = {row["name"]: row for row in PROTOCOL["procedures"]}
# They are tried with the connections.
_LINK = ("creatServerForPthread", "creatClient", "sendPacketGlobalHandle", "InitPath")
# They change what the others are asked about, or need what the others make.
_LAST = ("RenameRef", "GetOlbAllPackage", "GetOlbObjectPackage", "ClearCurrentDesign", "Exit")
# What the plug-in's thread asks unasked: without it no design becomes known.
_UNASKED = {"creatClient", "GetNewOpenPath", "FileStatus", "getDsnPinCount"}
_IS_READ = "is read without an error"
_COLLECTS = "generateBOMForPath"
# They answer what that has collected of a design.
_BILLS = {f"::capGenerateBOMUtil::get{kind}List" for kind in ("Stick", "NotStick", "NoPartNumber")}


def _is(pattern: str) -> Callable[[Result], bool]:
    return lambda result: re.fullmatch(pattern, result.text, re.DOTALL) is not None


def _is_bill(result: Result) -> bool:
    return result.items is not None and all(line.count(";") >= 5 for line in result.items)


# Those whose answer is looked at.
_ANSWERS = {
    "GetProductVersion": _is(r"\d+\.\d+.*"),
    "getDsnPinCount": _is(r"-1|\d+"),
    "GetActiveProPages": lambda result: bool(result.items),
    "getAllPropertyName": lambda result: bool(result.items),
    "getGuid": _is("(?!Invalid).+"),
    **dict.fromkeys(_BILLS, _is_bill),
    "convertToSVG": _is(".+"),
    "IsSchematicViewActive": _is("[01]"),
}


def _quoted(path: str) -> str:
    return re.sub(r'(["$\[\]])', r"\\\1", path)


def recorded_calls() -> dict[str, str]:
    """The script of each procedure, as it was evaluated."""
    calls = {}
    for line in RECORDED_CALLS.read_text(encoding="utf-8").splitlines():
        kind, name, text = (line + "  ").split(" ", 2)
        if kind == "called":
            calls[name] = re.sub(r"\\(.)", r"\1", text.strip())
    return {name: calls[name.removeprefix("::")] for name in ROWS}


class Check(Grades):
    """Judges the scripts of a host."""

    def __init__(self, log: pathlib.Path, patience: float = 5, say: Callable[[str], None] = say_at_once):
        super().__init__(say)
        self._file = log
        self._patience = patience
        self._folder = tempfile.TemporaryDirectory()
        self._library = pathlib.Path(self._folder.name) / "parts.olb"
        self._library.touch()
        self._log = Log(log)
        self._host = Host(self._log, patience, self._library.as_posix())
        self._calls = recorded_calls()
        self._connections: list[tuple[asyncio.StreamReader, asyncio.StreamWriter]] = []  # to the companion
        self._known: dict[str, str] = {}
        self._missing: dict[str, list[str]] = {}  # procedures, and who calls them
        self._worked: set[str] = set()  # procedures
        self._frame_faults: list[str] = []

    async def run(self, words: list[str]) -> int:
        """The exit status."""
        self._companion_port, self._host_port = unused_port(), unused_port()
        try:
            if await self._load(words):
                await self._thread()
                await self._companion()
                await self._procedures()
                if not self._reading_failed():
                    self.tell(MUST, _IS_READ, True)
        except Stuck as error:
            self.tell(MUST, "comes back from everything that it is asked", False,
                      f"not from {error} within {self._patience} s")
            self._reading_failed()
        finally:
            await self._host.stop()
            for _, writer in self._connections:
                writer.close()
            self._log.close()
            self._folder.cleanup()
        return self.end(self._file)

    async def _load(self, words: list[str]) -> bool:
        at_load = [name for name, row in ROWS.items() if row["calledBy"]["load"] and name != "GetProductVersion"]
        ports = {PROTOCOL["link"]["companionPort"]: self._companion_port, PROTOCOL["link"]["hostPort"]: self._host_port}
        results = await self._host.start(words, [self._calls[name] for name in at_load], ports)
        if self._reading_failed():
            return False
        for name, result in zip(at_load, results):
            self.tell(MUST, f"{name} works when the plug-in is loaded", not result.failed, result.text)
        return True

    def _reading_failed(self) -> bool:
        """Which may also come when the script goes on after it has loaded the plug-in."""
        read = self._host.read
        return read is not None and read.failed and not self.tell(MUST, _IS_READ, False, read.text)

    # --- the connections -------------------------------------------------------------------------------------------

    async def _thread(self) -> None:
        try:
            reader, writer = await asyncio.open_connection(ADDRESS, self._host_port)
        except OSError as error:
            self.tell(MUST, f"listens on {ADDRESS}, port {PROTOCOL['link']['hostPort']}", False, str(error))
            return
        try:
            (await asyncio.open_connection("127.0.0.2", self._host_port))[1].close()
            self.tell(SHOULD, f"listens on {ADDRESS} alone", False, "other machines can reach it")
        except OSError:
            self.tell(SHOULD, f"listens on {ADDRESS} alone", True)
        await self._takes_frames(reader, writer, "packetParserForPthread", b'{"Command":"GetNewOpenPath","Data":{}}')
        writer.close()

    async def _takes_frames(self, reader: asyncio.StreamReader, writer: asyncio.StreamWriter, command: str,
                            message: bytes) -> bool:
        frame, times = frames.encode(message), 0
        for what, pieces, more in (("a packet", [frame], 1), ("one in two pieces", [frame[:7], frame[7:]], 1),
                                   ("two at once", [2 * frame], 2)):
            for piece in pieces:
                writer.write(piece)
                await writer.drain()
                await asyncio.sleep(PIECES_SECONDS * (piece is not pieces[-1]))
            times += more
            taken = await self._host.called(command, message.hex(), times=times)
            if not self.tell(MUST, f"hands {what} to {command}", taken):
                return False
        came = 0  # all of them are waited for: who writes to a connection that was closed has an error in the background
        while came < times and await self._hears(reader, self._host.answers[command]):
            came += 1
        told = "; ".join([f"{came} of {times} came", *self._frame_faults])
        return self.tell(MUST, f"sends back what {command} answers", came == times, told)

    async def _hears(self, reader: asyncio.StreamReader, packet: str) -> bool:
        """Whether that comes; an empty frame before it is none that anybody waits for."""
        async def look() -> bool:
            while frame := await frames.read(reader):
                self._frame_faults = frame.faults
                if not frame.message:
                    return False
                if frame.message.hex() == packet:
                    return True
            return False

        try:
            return await asyncio.wait_for(look(), self._patience)
        except (asyncio.TimeoutError, OSError):
            return False

    async def _connects(self, script: str, connections: int) -> bool:
        return (await self._host.evaluate(script)).text == "0" and await self._connected(connections)

    async def _connected(self, connections: int) -> bool:
        for _ in range(10):
            if len(self._connections) == connections:
                return True
            await asyncio.sleep(0.05)
        return False

    async def _companion(self) -> None:
        silent = await self._host.evaluate("creatClient 1")
        self.tell(MUST, "creatClient answers something else than 0 while nobody listens", silent.text != "0")
        send = self._calls["sendPacketGlobalHandle"]
        unsent = await self._host.evaluate(send)
        self.tell(MUST, "sendPacketGlobalHandle ends in an error without a connection", unsent.failed, unsent.text)

        server = await asyncio.start_server(lambda *ends: self._connections.append((ends[0], ends[1])), ADDRESS,
                                            self._companion_port)
        if not self.tell(MUST, "creatClient connects to the companion", await self._connects("creatClient 1", 1)):
            return
        reader, writer = self._connections[0]
        self.tell(MUST, "creatClient keeps the connection that is there", await self._connects("creatClient 0", 1))
        sends_back = await self._takes_frames(reader, writer, "packetParser", b'{"Command":"CheckOpenState","Data":{}}')
        sent = await self._host.evaluate(send)
        heard = not sent.failed and await self._hears(reader, send.split('"')[1])
        self.tell(MUST, "sendPacketGlobalHandle sends a packet", heard, "; ".join(self._frame_faults) or sent.text)
        if sends_back:
            for message in (b'{"Command":"FileStatus_EndResult","Data":{"Path":""}}',
                            b'{"Command":"CheckOpenState","Data":{}}'):
                writer.write(frames.encode(message))
            heard = await self._hears(reader, self._host.answers["packetParser"])
            self.tell(SHOULD, "sends nothing when packetParser answers nothing", heard)
        else:
            self.untried("what is sent when packetParser answers nothing", "not all that it answers is sent")
        self.tell(SHOULD, "creatClient 1 makes a new connection while there is one", await self._connects("creatClient 1", 2))
        told, made = self._host.calls.count(["serverLinkBreak"]), len(self._connections)
        self._connections[-1][1].close()
        self.tell(MUST, "calls serverLinkBreak when the connection ends",
                  await self._host.called("serverLinkBreak", times=told + 1))
        self.tell(MUST, "connects again after that", await self._connects("creatClient 1", made + 1))
        server.close()

    # --- the procedures --------------------------------------------------------------------------------------------

    async def _procedures(self) -> None:
        paths = await self._host.evaluate("InitPath")
        self.tell(MUST, "InitPath works as the plug-in calls it", not paths.failed, paths.text)
        open_designs = [path for path in paths.text.split(";") if path.lower().endswith(".dsn")]
        if paths.failed or not open_designs:
            self.untried("what needs a design", "none is open")
        else:
            self._known["a design"] = open_designs[0]
        page = await self._host.evaluate("lindex [GetActiveProPages] 0 1")
        if not page.failed and page.text:
            self._known["a page"] = page.text
        names = [name for name in ROWS if name not in (*_LINK, *_LAST)
                 and (name == "GetProductVersion" or not ROWS[name]["calledBy"]["load"])]
        design = self._known.get("a design", "")
        for name in (*names, *_LAST):
            await self._procedure(name)
            # Before anything is placed, which changes the bill.
            if name.endswith("::getStickList") and "\\" in design and "generateBOMForPath" not in self._missing:
                await self._spellings(design)
        if self._missing:
            callers = dict.fromkeys(caller for each in self._missing.values() for caller in each)
            self.tell(SHOULD, "has the other procedures", False,
                      f"not offered: {', '.join(self._missing)}; so {', '.join(callers)} fail")
        if "\\" in design:
            spelt = await self._host.evaluate(f'getDsnPinCount "{design}"'.replace("\\", "/"))
            self.tell(SHOULD, "a design is known by / as well", re.fullmatch(r"\d+", spelt.text) is not None, spelt.text)
        faults = {f"{call[0]} with {len(call) - 1}" for call in self._host.calls if not self._is_right(call)}
        self.tell(SHOULD, "gives commands the arguments that they take", not faults, ", ".join(sorted(faults)))
        self.tell(MUST, "has no error in the background", not self._host.problems, "; ".join(self._host.problems))

    async def _spellings(self, design: str) -> None:
        """Companions write one and the same path in three ways, and what they write goes through Tcl's escapes."""
        bills = []
        script = self._of_this_host(self._calls["generateBOMForPath"]) or ""
        quoted = _quoted(design)
        for separator in ("/", r"\\", "\\"):
            await self._host.evaluate(script.replace(quoted, quoted.replace("\\", separator)))
            bills.append((await self._host.evaluate("::capGenerateBOMUtil::getStickList")).text)
        self.tell(SHOULD, r"getStickList is the same after generateBOMForPath with /, \\ and \ in the path",
                  len(set(bills)) == 1, "; ".join(bill[:40] or "nothing" for bill in bills))

    @staticmethod
    def _is_right(call: list[str]) -> bool:
        row = next(row for row in PROTOCOL["commands"] if row["name"] == call[0])
        needed = sum(not argument["optional"] for argument in row["arguments"])
        given = len(call) - 1
        return needed <= given <= len(row["arguments"]) or (given == 0 and row["withoutArguments"] is not None)

    async def _procedure(self, name: str) -> None:
        row = ROWS[name]
        callers = [caller for side in ("companion", "linkThread", "commands") for caller in row["calledBy"][side]]
        if not (await self._host.evaluate(f"info commands ::{name.removeprefix('::')}")).text:
            unasked = row["calledBy"]["load"] or _UNASKED.intersection(row["calledBy"]["linkThread"])
            if unasked:
                self.tell(MUST, f"has {name}", False, f"{' and '.join(callers)} call it")
            else:
                self._missing[name] = callers
            return
        if "a design" not in self._known and name != "GetProductVersion":
            return
        script = self._of_this_host(self._calls[name])
        if script is None or (name in _BILLS and _COLLECTS not in self._worked):
            self.untried(name, "what it is asked about is not known here")
            return
        before = len(self._host.calls)
        result = await self._host.evaluate(script)
        fits = _ANSWERS.get(name)
        right = not result.failed and (fits is None or fits(result))
        if right:
            self._worked.add(name)
        came = f"{script[:90]} {'ends in the error' if result.failed else 'answers'} {result.text[:90] or 'nothing'}"
        due = f". It has to answer: {row['answer']}" if fits else ""
        self.tell(MUST, f"{name} works as the plug-in calls it", right, came + due)
        if name == "::capGenerateBOMUtil::getStickList" and result.items:
            self._known["a part"] = re.split("[;, ]", ";".join(result.items[0].split(";")[2:]))[0]
        follows = {request["followedBy"] for request in PROTOCOL["requests"] if name in request["calls"]} - {None}
        reports = {sender for message in PROTOCOL["messages"] if message["name"] in follows for sender in message["sentBy"]}
        if reports and right:
            self.tell(SHOULD, f"{name} reports by {' and '.join(sorted(reports))}",
                      reports <= {call[0] for call in self._host.calls[before:]})

    def _of_this_host(self, script: str) -> str | None:
        """The recorded script with what this host has in the place of what that one had; None when it has none."""
        design, page, part = (self._known.get(what) for what in ("a design", "a page", "a part"))
        quoted = _quoted(design or "")
        for pattern, value in ((r"Z:/run/design/[\w/]+\.olb", self._library.as_posix()),
                               (r'(?<=")Z:[^"]*Nets.txt', self._library.with_name("Nets.txt").as_posix()),
                               (r"Z:\\\\run\\\\design\\\\power.dsn", design and quoted.replace("\\", "\\\\")),
                               (r"Z:\\run\\design\\power.dsn", design and quoted), ('"power"', page and f'"{page}"'),
                               (r"\bR6\b", part)):
            if re.search(pattern, script):
                if value is None:
                    return None
                script = re.sub(pattern, value.replace("\\", r"\\"), script)
        return script


def main() -> int:
    if not sys.argv[1:] or sys.argv[1] in ("-h", "--help"):
        print(__doc__)
        return DONE if sys.argv[1:] else REFUSED
    if not pathlib.Path(sys.argv[1]).is_file():
        raise Refused(f"{sys.argv[1]} is not there")
    return asyncio.run(Check(LOGS / "check-host.txt").run(sys.argv[1:]))


if __name__ == "__main__":
    run("check-host", main)
