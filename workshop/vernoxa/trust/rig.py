"""Breaks the conversation between the plug-in, the stand-in host and the stand-in companion, on the built DLL under Wine.

fault_rig.py [--only NAME...] [--json FILE]. After each fault the editor still answers the companion and ends tidily."""

from __future__ import annotations

import asyncio
import contextlib
import json
import pathlib
import time

from vernoxa.command import DONE, NOT_DONE, Parser, run
from vernoxa.companion.answers import Answers
from vernoxa.companion.server import PORT, Companion, Failed, NotConnected, PortTaken, require_free
from vernoxa.places import PLUG_IN
from vernoxa.stage import host
from vernoxa.stage.installation import DESIGN, Installation

from .proxy import HOLD_SECONDS, Fault, Proxy

HOST_BEHIND, COMPANION_BEHIND = 19610, 19601
# What may end in an exception, by its name in the crash log.
MAY_FAIL = {"creatClient", "connectToServerForPthread"}

HOST, COMPANION = "host", "companion"
CASES = {
    "split header of an answer": (HOST, Fault("delay", "answers", 2)),
    "late rest of an answer": (HOST, Fault("delay", "answers", 60)),
    "answer byte by byte": (HOST, Fault("bytewise", "answers", 0)),
    "answer cut": (HOST, Fault("cut", "answers", 60)),
    "answer corrupted": (HOST, Fault("corrupt", "answers", 60)),
    "answer repeated": (HOST, Fault("repeat", "answers", 4)),
    "host busy for minutes": (HOST, Fault("hold", "answers", 60)),
    "host half-closed": (HOST, Fault("halfClose", "answers", 60)),
    "request cut": (HOST, Fault("cut", "requests", 90)),  # after the first: else nobody calls the companion
    "message to the companion cut": (COMPANION, Fault("cut", "requests", 100)),
    "companion's answer cut": (COMPANION, Fault("cut", "answers", 30)),
    "companion half-closed": (COMPANION, Fault("halfClose", "answers", 30)),
    "companion stops reading": (COMPANION, Fault("stopReading", "requests", 100)),
    "a stranger on the companion's port": (COMPANION, None),
    "a stranger on the host's port": (HOST, None),
}


async def free_port(port: int) -> None:
    for _ in range(180):
        with contextlib.suppress(PortTaken):
            return require_free(port)
        await asyncio.sleep(1)
    raise TimeoutError(f"port {port} stays taken")


async def answers_again(companion: Companion, seconds: float) -> None:
    """The editor answers the companion, over a new connection when the old one broke."""
    end = time.monotonic() + seconds
    while True:
        try:
            if (await companion.data_of("GetActiveProPages", {}, 5))["Open"]:
                return
        except (NotConnected, Failed, TimeoutError):
            pass
        if time.monotonic() > end:
            raise TimeoutError("the editor does not answer the companion")
        await asyncio.sleep(0.5)


def crash_log(installation: Installation) -> set[str]:
    log = installation.module.parent / "catchLog" / "log.txt"
    lines = log.read_text(encoding="gbk").splitlines() if log.is_file() else []
    return {line.partition(".")[2] for line in lines if line}


async def survive(side: str, fault: Fault | None) -> None:
    for port in (PORT, host.HOST_PORT, HOST_BEHIND, COMPANION_BEHIND):
        await free_port(port)
    installation = Installation(PLUG_IN)
    companion = Companion(Answers(), port=COMPANION_BEHIND)
    stranger = fault is None
    before_host = Proxy(host.HOST_PORT, None if stranger and side == HOST else HOST_BEHIND, fault if side == HOST else None)
    before_companion = Proxy(PORT, None if stranger and side == COMPANION else COMPANION_BEHIND,
                             fault if side == COMPANION else None)
    design = installation.add_design(DESIGN, "design", "design.dsn")
    held = HOLD_SECONDS if fault and fault.kind == "hold" else 0
    command = host.command_line(installation, [design], 150 + held) + ["-serverPort", str(HOST_BEHIND)]
    editor = None
    try:
        await companion.start()
        await before_host.start()
        await before_companion.start()
        editor = await host.Host.begin(command, lambda *_: None)
        broken = before_host if side == HOST else before_companion
        await asyncio.wait_for(broken.injected.wait(), 180)  # a few seconds where nothing else runs
        if stranger and side == HOST:
            # Nobody can reach the editor's scripts; it has to live on, and does not wait for anybody.
            await asyncio.sleep(25)
            if await editor.ended(0.1) is not None:
                raise RuntimeError("the editor has ended")
        else:
            if stranger:
                before_companion.target = COMPANION_BEHIND
            await answers_again(companion, 60)
            await asyncio.sleep(held + 11)  # the link thread's next pass
            await answers_again(companion, 60)
            await companion.ask("CloseOrcad", {})
            if (status := await editor.ended(20)) != 0:
                raise RuntimeError(f"the editor ended with {status}")
        if unexpected := crash_log(installation) - MAY_FAIL:
            raise RuntimeError(f"in the crash log: {', '.join(sorted(unexpected))}")
    finally:
        if editor:
            await editor.stop()
        await before_host.stop()
        await before_companion.stop()
        await companion.stop()
        installation.remove()


def main() -> int:
    parser = Parser(description=__doc__)
    parser.add_argument("--only", nargs="+", default=list(CASES), choices=list(CASES), metavar="NAME")
    parser.add_argument("--json", type=pathlib.Path, help="write the figures there")
    options = parser.parse_args()
    results = []
    for name in options.only:
        began, problem = time.monotonic(), ""
        try:
            asyncio.run(survive(*CASES[name]))
        except (RuntimeError, TimeoutError, OSError) as error:
            problem = str(error) or type(error).__name__
        results.append({"fault": name, "seconds": round(time.monotonic() - began, 1), "problem": problem})
        print(f"{name:38} {results[-1]['seconds']:6.1f} s  {problem or 'survived'}", flush=True)
    if options.json:
        options.json.write_text(json.dumps(results, indent=1), encoding="utf-8")
    return NOT_DONE if any(result["problem"] for result in results) else DONE


if __name__ == "__main__":
    run("rig", main)
