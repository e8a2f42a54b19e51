"""Makes the zip for the users and tries it: its checksums, and a conversation with the plug-in that is in it."""

from __future__ import annotations

import asyncio
import pathlib

from vernoxa.command import DONE, NOT_DONE, Parser, run
from vernoxa.places import BUILD, CONVERSATIONS, PLUG_IN
from vernoxa.replay.conversation import Conversation

from . import package, trial

CONVERSATION = CONVERSATIONS / "marking_parts.txt"


def main() -> int:
    parser = Parser(prog="./dev dist", description=__doc__)
    parser.add_argument("--dll", type=pathlib.Path, default=PLUG_IN)
    parser.add_argument("--zip", type=pathlib.Path, default=BUILD / "dist" / f"Vernoxa-{package.version()}.zip")
    parser.add_argument("--untried", action="store_true", help="do not load the plug-in out of the zip")
    options = parser.parse_args()
    package.make(options.dll, options.zip)
    faults = package.faults_of(options.zip)
    if not options.untried and not faults:
        found, last_words = asyncio.run(trial.differences(options.zip, Conversation.read(CONVERSATION)))
        faults = [str(difference) for difference in found]
        faults += ["the host's last words:", *last_words] if found else []
    for fault in faults:
        print(fault)
    if not faults:
        tried = "" if options.untried else "; loaded from it, the plug-in held a recorded conversation without a difference"
        print(f"{options.zip}: {options.zip.stat().st_size} bytes{tried}")
    return NOT_DONE if faults else DONE


if __name__ == "__main__":
    run("dist", main)
