"""Runs the stand-in companion: on a terminal with a prompt, elsewhere as a log of the conversation, with what is piped in."""

from __future__ import annotations

import argparse
import asyncio
import contextlib
import pathlib
import sys
import time

from vernoxa.command import DONE, EXITS, NOT_DONE, Parser, own_file, run
from vernoxa.wire.events import RECEIVED
from vernoxa.wire.record import TITLE, Recorder

from .answers import Answers
from .desk import Desk
from .prompt import Prompt
from .server import ADDRESS, PORT, Companion
from .view import ConversationView, View
from .words import waiting

OPEN_SECONDS = 90


def _port(text: str) -> int:
    if not text.isdecimal() or int(text) > 65535:
        raise argparse.ArgumentTypeError(f"a port is a number up to 65535, not {text}")
    return int(text)


def arguments() -> argparse.Namespace:
    parser = Parser(
        prog="./dev companion",
        description="A stand-in for the companion program: serves the port that the plug-in connects to.",
        epilog=EXITS,
    )
    parser.add_argument("--port", type=_port, default=PORT)
    parser.add_argument("--record", type=pathlib.Path, metavar="FILE", help="write the conversation to a file")
    parser.add_argument("--modules", type=pathlib.Path, metavar="FOLDER", help="keep uploaded modules there")
    parser.add_argument("--plain", action="store_true", help="neither colour nor prompt")
    return parser.parse_args()


async def serve(options: argparse.Namespace) -> int:
    answers = Answers(modules_folder=options.modules)
    view = View(colour=False if options.plain else None)
    companion = Companion(answers, port=options.port)
    companion.listeners.append(ConversationView(view, answers))
    with contextlib.ExitStack() as stack:
        if options.record:
            stream = stack.enter_context(open(own_file(options.record, TITLE), "w", encoding="utf-8", newline="\n"))
            companion.listeners.append(Recorder(stream, started=time.strftime("%Y-%m-%d %H:%M:%S")))
        await companion.start()
        view.line("companion", f"listening on {ADDRESS}:{companion.port}")
        try:
            good = await _work(companion, view)
        finally:
            await companion.stop()
        view.line("companion", f"{sum(event.kind == RECEIVED for event in companion.events)} messages received, "
                               f"{companion.faults} faults")
    return DONE if good and not companion.faults else NOT_DONE


async def _work(companion: Companion, view: View) -> bool:
    """Lines at the prompt; without a terminal those that are piped in, or else none until it is ended."""
    desk = Desk(view, "companion", _OnceOpen(companion, view))
    good = await desk.work(sys.stdin)
    if not desk.done and not sys.stdin.isatty():
        await asyncio.Event().wait()
    return good


class _OnceOpen(Prompt):
    """Lines that are piped in wait for the first design."""

    async def run(self, line: str) -> bool:
        if not (self._view.colour and sys.stdin.isatty()):
            try:
                with waiting(self._view, "companion", "until a design is open", OPEN_SECONDS):
                    await self._companion.wait_for(lambda event: event.is_message("FileStatus", Status="Open"), OPEN_SECONDS)
            except TimeoutError:
                return self._say(f"no design was opened within {OPEN_SECONDS} s")
        return await super().run(line)


def main() -> int:
    try:
        return asyncio.run(serve(arguments()))
    except KeyboardInterrupt:
        return DONE  # as it is meant to end


if __name__ == "__main__":
    run("companion", main)
