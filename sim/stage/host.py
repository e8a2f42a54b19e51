"""The stand-in host as a process: a Windows Tcl under Wine that runs `sim/host/host.tcl`."""

from __future__ import annotations

import asyncio
import contextlib
import os
import pathlib
import re
import signal
import socket
from typing import Callable, Sequence

from companion import paths
from companion.server import ADDRESS

from .installation import Installation, NotUsable

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
HOST_PORT = 9610
# Wine's desktop outlives the host for a moment, and says this when its screen goes.
_SCREEN_GONE = re.compile(r"X connection to \S+ broken")
_TOOLS = REPOSITORY / "tools" / "setup"
_TCLSH = REPOSITORY / ".deps" / "tcl-windows" / "bin" / "tclsh86.exe"


def command_line(installation: Installation, designs: Sequence[tuple[pathlib.Path, str]], seconds: int) -> list[str]:
    """`designs` are schematics of this machine with the paths by which the editor names them."""
    if not _TCLSH.is_file():
        raise NotUsable("the Windows Tcl is not there: ./dev setup makes it")
    command = [str(_TOOLS / "wine-suite"), str(_TOOLS / "wine-run"), str(_TCLSH)]
    command += [paths.to_windows(REPOSITORY / "sim" / "host" / "host.tcl")]
    command += ["-dll", paths.to_windows(installation.module)]
    for schematic, name in designs:
        command += ["-design", paths.to_windows(schematic), "-as", name]
    # Under Wine the host hears nothing on its standard input.
    return command + ["-state", paths.to_windows(installation.host_state), "-seconds", str(seconds),
        "-follow", paths.to_windows(installation.commands)]


def require_free_port() -> None:
    """The port is shared by everything on this machine, Wine or not. Raises NotUsable."""
    with socket.socket() as probe:
        probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        try:
            probe.bind((ADDRESS, HOST_PORT))
        except OSError as error:
            raise NotUsable(f"port {HOST_PORT} is taken: another host is running") from error


class Host:
    """`hear` gets each line that is printed: "host" and its words, "stdout" and what is printed beside them."""

    def __init__(self, command: Sequence[str], hear: Callable[[str, str], None]):
        self._command = command
        self._hear = hear
        self._process: asyncio.subprocess.Process | None = None
        self._listening: asyncio.Task | None = None
        self._pipe: asyncio.ReadTransport | None = None

    async def start(self) -> None:
        # A pipe of our own, to be closed when we like: Wine's server keeps its end open for a while longer.
        ours, theirs = os.pipe()
        reader = asyncio.StreamReader(limit=16 * 1024 * 1024)
        self._pipe, _ = await asyncio.get_running_loop().connect_read_pipe(
            lambda: asyncio.StreamReaderProtocol(reader), os.fdopen(ours, "rb")
        )
        try:
            self._process = await asyncio.create_subprocess_exec(
                *self._command,
                stdin=asyncio.subprocess.DEVNULL,
                stdout=theirs,
                stderr=theirs,
                start_new_session=True,  # so that all of it can be ended, and nothing else
            )
        finally:
            os.close(theirs)
        self._listening = asyncio.create_task(self._listen(reader))

    async def _listen(self, reader: asyncio.StreamReader) -> None:
        async for line in reader:
            # The plug-in's words for the standard output have no line end.
            loose, mark, spoken = line.decode("utf-8", "replace").rstrip().partition("host: ")
            if loose and not _SCREEN_GONE.match(loose):
                self._hear("stdout", loose)
            if mark:
                self._hear("host", spoken)

    async def ended(self, seconds: float) -> int | None:
        """The exit status; None when it still runs after so long."""
        with contextlib.suppress(asyncio.TimeoutError):
            await asyncio.wait_for(self._process.wait(), seconds)
            # What it printed last.
            await asyncio.wait({self._listening}, timeout=1)
        return self._process.returncode

    async def stop(self) -> None:
        """Ends what is left of it."""
        if self._process is None:
            return
        if self._process.returncode is None:
            for end in (signal.SIGTERM, signal.SIGKILL):
                with contextlib.suppress(ProcessLookupError):
                    os.killpg(self._process.pid, end)
                if await self.ended(3) is not None:
                    break
        self._listening.cancel()
        self._pipe.close()
