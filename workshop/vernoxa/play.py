"""Opens designs in the stand-in host, and takes the companion's commands at a prompt."""

from __future__ import annotations

import argparse
import asyncio
import pathlib
import signal

from vernoxa.command import DONE, EXITS, NOT_DONE, run
from vernoxa.companion.view import View
from vernoxa.places import PLUG_IN
from vernoxa.stage import host, playing
from vernoxa.stage.installation import DESIGN, Installation
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import Missing


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(
        prog="play",
        description="Designs are opened in the stand-in host; what is typed at the prompt is asked of the plug-in. All "
        "that is written meanwhile lies in a folder that is removed at the end.",
        epilog=EXITS,
    )
    parser.add_argument("designs", nargs="*", type=pathlib.Path, metavar="DESIGN", help="a KiCad schematic")
    parser.add_argument("--dll", type=pathlib.Path, default=PLUG_IN, help="the plug-in")
    parser.add_argument("--record", metavar="FILE", help="write the conversation to a file")
    parser.add_argument("--trace", action="store_true",
                        help="show every call of a host procedure, and each message as it sees it")
    parser.add_argument("--plain", action="store_true", help="neither colour nor prompt")
    return parser.parse_args()


async def play(options: argparse.Namespace, view: View, installation: Installation) -> int:
    task = asyncio.current_task()
    assert task
    for wish in (signal.SIGTERM, signal.SIGHUP):
        asyncio.get_running_loop().add_signal_handler(wish, task.cancel)
    host.require_free_port()
    designs = []
    for number, schematic in enumerate(options.designs or [DESIGN], 1):
        # What the plug-in writes goes beside the design's name, so the name never lies where the schematic does.
        designs.append(installation.add_design(schematic, f"design{number}"))
    scene = Scene(view, installation, options.record, speaker="play")
    scene.hidden = None if options.trace else playing.SAID_TWICE
    command = host.command_line(installation, designs, playing.LONGEST_SESSION) + ["-trace"] * options.trace
    try:
        return DONE if await playing.play(scene, command, [name for _, name in designs]) else NOT_DONE
    except Missing as error:
        scene.complain(error)
        return NOT_DONE
    finally:
        await scene.end()


def main() -> int:
    options = arguments()
    with Installation(options.dll) as installation:
        try:
            return asyncio.run(play(options, View(colour=False if options.plain else None), installation))
        except asyncio.CancelledError:
            return NOT_DONE


if __name__ == "__main__":
    run("play", main)
