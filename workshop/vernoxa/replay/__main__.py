"""Holds a recorded conversation again, against the built plug-in, and shows what differs."""

from __future__ import annotations

import argparse
import asyncio
import pathlib

from vernoxa.command import DONE, EXITS, NOT_DONE, Parser, own_file, run
from vernoxa.places import PLUG_IN, REPOSITORY
from vernoxa.wire.record import TITLE

from . import performance
from .conversation import Conversation


def arguments() -> argparse.Namespace:
    parser = Parser(
        prog="./dev replay",
        description="Holds recorded conversations again and shows what the plug-in says differently, and an end of the host "
        "that is not tidy. Times, process ids and GUIDs are ignored.",
        epilog=EXITS,
    )
    parser.add_argument("files", nargs="*", type=pathlib.Path, metavar="FILE", help="a recorded conversation (those of the "
                        "tests)", default=sorted((REPOSITORY / "tests" / "conversations").glob("*.txt")))
    parser.add_argument("--dll", type=pathlib.Path, default=PLUG_IN, help="the plug-in")
    parser.add_argument("--keep", type=pathlib.Path, metavar="FILE", help="write the conversation held now to a file")
    parser.add_argument("--update", action="store_true", help="replace the record by the conversation held now")
    return parser.parse_args()


def replay(path: pathlib.Path, options: argparse.Namespace) -> bool:
    recorded = Conversation.read(path)
    now, found, last_words = asyncio.run(performance.hold_again(options.dll, recorded))
    for target in filter(None, (options.keep, path if options.update else None)):
        now.write(own_file(target, TITLE))
    for difference in found:
        print(difference)
    said = sum(entry.what == "plug-in" for entry in recorded.entries)
    print(f"{path}: {said} messages of the plug-in, {len(found) or 'no'} difference{'s' * (len(found) != 1)}")
    if not any(entry.what == "plug-in" for entry in now.entries):
        print("The plug-in said nothing. The last words of the host:", *last_words, sep="\n  ")
    return not found


def main() -> int:
    options = arguments()
    return DONE if all([replay(path, options) for path in options.files]) else NOT_DONE


if __name__ == "__main__":
    run("replay", main)
