"""The stand-in host as a process: a Windows Tcl under Wine that runs `sim/host/host.tcl`."""

from __future__ import annotations

import asyncio
import contextlib
import os
import pathlib
import re
import signal
from typing import Callable, Sequence

from vernoxa.command import Refused
from vernoxa.companion.server import require_free
from vernoxa.places import REPOSITORY, TCLSH, WINE
from vernoxa.wire import paths
from vernoxa.wire.catalogue import PROTOCOL

from .installation import Installation

HOST_PORT = PROTOCOL["link"]["hostPort"]
# Wine's desktop outlives the host for a moment, and says this when its screen goes.
_SCREEN_GONE = re.compile(r"X connection to \S+ broken")
_TIDY_END = "end"
# Of a process that has told its tidy end, where Wine itself ended it or died: tools/setup/by_its_own_ending says how
# that comes. As a process here, and as a shell tells it.
_SIGNALS_OF_WINE = {-signal.SIGKILL, -signal.SIGSEGV, 128 + signal.SIGKILL, 128 + signal.SIGSEGV}


def command_line(installation: Installation, designs: Sequence[tuple[pathlib.Path, str]], seconds: int) -> list[str]:
    """`designs` are schematics of this machine with the paths by which the editor names them."""
    if not TCLSH.is_file():
        raise Refused("the Windows Tcl is not there: ./dev setup makes it")
    command = [*WINE, str(TCLSH), paths.to_windows(REPOSITORY / "sim" / "host" / "host.tcl")]
    command += ["-dll", paths.to_windows(installation.module)]
    for schematic, name in designs:
        command += ["-design", paths.to_windows(schematic), "-as", name]
    # Under Wine the host hears nothing on its standard input.
    return command + ["-state", paths.to_windows(installation.host_state), "-seconds", str(seconds),
                      "-follow", paths.to_windows(installation.commands)]


def require_free_port() -> None:
    """The port is shared by everything on this machine, Wine or not. Raises PortTaken."""
    require_free(HOST_PORT)


class Host:
    """Between its beginning and its end."""

    def __init__(self, process: asyncio.subprocess.Process, pipe: asyncio.ReadTransport, printed: asyncio.StreamReader,
                 hear: Callable[[str, str], None]):
        self._process = process
        self._pipe = pipe
        self._hear = hear
        self._last_words = ""
        self._listening = asyncio.create_task(self._listen(printed))

    @staticmethod
    async def begin(command: Sequence[str], hear: Callable[[str, str], None]) -> Host:
        """`hear` gets each line that is printed: "host" and its words, "stdout" and what is printed beside them."""
        # A pipe of our own, to be closed when we like: Wine's server keeps its end open for a while longer.
        ours, theirs = os.pipe()
        reader = asyncio.StreamReader(limit=16 * 1024 * 1024)
        pipe, _ = await asyncio.get_running_loop().connect_read_pipe(
            lambda: asyncio.StreamReaderProtocol(reader), os.fdopen(ours, "rb")
        )
        try:
            process = await asyncio.create_subprocess_exec(
                *command,
                stdin=asyncio.subprocess.DEVNULL,
                stdout=theirs,
                stderr=theirs,
                start_new_session=True,  # so that all of it can be ended, and nothing else
            )
        finally:
            os.close(theirs)
        return Host(process, pipe, reader, hear)

    async def ended(self, seconds: float) -> int | None:
        """The exit status; None when it still runs after so long."""
        with contextlib.suppress(asyncio.TimeoutError):
            await asyncio.wait_for(self._process.wait(), seconds)
            # What it printed last.
            await asyncio.wait({self._listening}, timeout=1)
        status = self._process.returncode
        if status in _SIGNALS_OF_WINE and self._last_words == _TIDY_END:
            self._hear("stdout", f"ended with 0, then by Wine with signal {abs(status) % 128}")
            return 0
        return status

    async def stop(self) -> None:
        """Ends what is left of it."""
        for end in (signal.SIGTERM, signal.SIGKILL):
            if self._process.returncode is None:
                with contextlib.suppress(ProcessLookupError):
                    os.killpg(self._process.pid, end)
                await self.ended(3)
        self._listening.cancel()
        self._pipe.close()

    async def _listen(self, printed: asyncio.StreamReader) -> None:
        async for line in printed:
            # The plug-in's words for the standard output have no line end.
            loose, mark, spoken = line.decode("utf-8", "replace").rstrip().partition("host: ")
            if loose and not _SCREEN_GONE.match(loose):
                self._hear("stdout", loose)
            if mark:
                self._last_words = spoken
                self._hear("host", spoken)
