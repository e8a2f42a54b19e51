"""Loads the plug-in out of the unpacked zip, as a package, and holds one recorded conversation with it."""

from __future__ import annotations

import pathlib
import shutil
import tempfile
import zipfile

from vernoxa.replay import compare, performance
from vernoxa.replay.conversation import Conversation
from vernoxa.wire import paths

from .package import SAMPLE


class PackagedPerformance(performance.Performance):
    """The run's installation is what the zip holds; the host finds the plug-in by its package name alone."""

    package: pathlib.Path

    def command_line(self, designs: list[tuple[pathlib.Path, str]]) -> list[str]:
        folder = self.installation.module.parents[1]
        self.installation.module.unlink()
        with zipfile.ZipFile(self.package) as files:
            files.extractall(folder)
        shutil.copyfile(folder / SAMPLE, folder / "Config" / "App.txt")
        script = self.installation.root / "load.tcl"
        script.write_text(
            f"lappend auto_path {{{paths.to_windows(folder)}}}\n"
            "host::log \"package Vernoxa [package require Vernoxa]\"\n",
            encoding="utf-8",
        )
        words = super().command_line(designs)
        at = words.index("-dll")
        return [*words[:at], "-with", paths.to_windows(script), *words[at + 2:]]


async def differences(package: pathlib.Path, recorded: Conversation) -> tuple[list[compare.Difference], list[str]]:
    """What the packaged plug-in says differently, and the host's last words."""
    trial = type("Trial", (PackagedPerformance,), {"package": package})
    with tempfile.TemporaryDirectory() as folder, zipfile.ZipFile(package) as files:
        module = pathlib.Path(files.extract("bin/Vernoxa64.dll", folder))
        _, found, last_words = await performance.hold_again(module, recorded, trial)
    return found, last_words
