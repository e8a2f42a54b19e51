"""Runs the stand-in companion: on a terminal with a prompt, elsewhere as a log of the conversation."""

from __future__ import annotations

import argparse
import asyncio
import contextlib
import pathlib
import sys
import time

from vernoxa.command import DONE, EXITS, NOT_DONE, Parser, run
from vernoxa.wire.events import RECEIVED
from vernoxa.wire.record import Recorder

from .answers import Answers
from .desk import Desk
from .prompt import Prompt
from .server import ADDRESS, PORT, Companion
from .view import ConversationView, View


def arguments() -> argparse.Namespace:
    parser = Parser(
        prog="./dev companion",
        description="A stand-in for the companion program: serves the port that the plug-in connects to.",
        epilog=EXITS,
    )
    parser.add_argument("--port", type=int, default=PORT)
    parser.add_argument("--send", action="append", default=[], metavar="COMMAND", help="send once a design is open")
    parser.add_argument("--script", type=pathlib.Path, metavar="FILE", help="the same for the lines of a file (-: of the input)")
    parser.add_argument("--wait", type=float, default=90, metavar="SECONDS", help="for a design, before --send (90)")
    parser.add_argument("--seconds", type=float, help="end after so long")
    parser.add_argument("--record", type=pathlib.Path, metavar="FILE", help="write the conversation to a file")
    parser.add_argument("--modules", type=pathlib.Path, metavar="FOLDER", help="keep uploaded modules there")
    parser.add_argument("--user", default="1001", metavar="ID", help="the signed-in user (1001)")
    parser.add_argument("--plain", action="store_true", help="neither colour nor prompt")
    return parser.parse_args()


async def serve(options: argparse.Namespace) -> int:
    answers = Answers(options.user, options.modules)
    view = View(colour=False if options.plain else None)
    companion = Companion(answers, port=options.port)
    companion.listeners.append(ConversationView(view, answers))
    with contextlib.ExitStack() as stack:
        if options.record:
            stream = stack.enter_context(open(options.record, "w", encoding="utf-8", newline="\n"))
            companion.listeners.append(Recorder(stream, started=time.strftime("%Y-%m-%d %H:%M:%S")))
        await companion.start()
        view.line("companion", f"listening on {ADDRESS}:{companion.port}")
        try:
            good = await asyncio.wait_for(_work(options, companion, view), options.seconds)
        except asyncio.TimeoutError:
            good = not (options.send or options.script)
        finally:
            await companion.stop()
        view.line("companion", f"{sum(event.kind == RECEIVED for event in companion.events)} messages received, "
                               f"{companion.faults} faults")
    return DONE if good and not companion.faults else NOT_DONE


async def _work(options: argparse.Namespace, companion: Companion, view: View) -> bool:
    prompt = Prompt(companion, view)
    lines = list(options.send)
    if options.script:
        text = sys.stdin.read() if str(options.script) == "-" else options.script.read_text(encoding="utf-8")
        lines += text.splitlines()
    if lines:
        try:
            await companion.wait_for(lambda event: event.is_message("FileStatus", Status="Open"), options.wait)
        except TimeoutError:
            view.line("companion", f"no design was opened within {options.wait:g} s")
            return False
        with contextlib.suppress(EOFError):
            return all([await prompt.run(line) for line in lines])
        return True
    if view.colour and sys.stdin.isatty():
        await Desk(view, "companion", prompt).work(sys.stdin)
    else:
        await asyncio.Event().wait()
    return True


def main() -> int:
    try:
        return asyncio.run(serve(arguments()))
    except KeyboardInterrupt:
        return DONE  # as it is meant to end


if __name__ == "__main__":
    run("companion", main)
