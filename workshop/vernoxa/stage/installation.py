"""A folder as the plug-in is installed in, made for one run, and the designs' folders beside it."""

from __future__ import annotations

import json
import pathlib
import shutil
import tempfile

from vernoxa.command import Refused
from vernoxa.places import DESIGNS
from vernoxa.wire import paths

# The design that is shown when no other is named. DESIGN_VALUE is the Chinese value of a part in it.
DESIGN = DESIGNS / "microphone" / "microphone.kicad_sch"
DESIGN_VALUE = "国产78L05"
# The plug-in asks for the path of its own module and takes so many bytes of it in the code page.
LONGEST_MODULE_PATH = 99


class Installation:
    """`root` holds everything that a run writes; it is removed by `remove`."""

    def __init__(self, module: pathlib.Path):
        if not module.is_file():
            raise Refused(f"{module} is not there: ./dev build makes it")
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="vernoxa-"))
        plug_in = self.root / "plug-in"
        for folder in ("bin", "Config", "Script/Log", "Cache"):
            (plug_in / folder).mkdir(parents=True)
        self.module = plug_in / "bin" / "Vernoxa64.dll"
        if len(paths.to_windows(self.module).encode("gbk", "replace")) > LONGEST_MODULE_PATH:
            self.remove()
            raise Refused(f"the path of {self.module} is too long for the plug-in; set TMPDIR to a shorter folder")
        shutil.copyfile(module, self.module)
        configuration = {"AlgMenuLang": "CN", "StartWithCadence": "0"}
        (plug_in / "Config" / "App.txt").write_text(json.dumps(configuration), encoding="ascii")
        # What a new symbol library starts as, in the way of the stand-in host.
        resources = plug_in / "Config" / "Resource"
        resources.mkdir()
        (resources / "Empty.olb").write_text("# a library of the stand-in host\n", encoding="ascii")
        # The traffic log is kept only where this folder exists. The names differ in case; Wine finds either.
        self._log_folder = plug_in / "Script" / "Log"
        self.host_state = self.root / "host"
        self.host_state.mkdir()
        self.commands = self.root / "commands.txt"
        self.commands.touch()
        # What a record of the run says of it: below which folder it was, and the designs.
        self.about = {"root": paths.to_windows(self.root)}

    def __enter__(self) -> Installation:
        return self

    def __exit__(self, *_: object) -> None:
        self.remove()

    def add_design_folder(self, name: str) -> pathlib.Path:
        folder = self.root / name
        folder.mkdir(parents=True, exist_ok=True)
        return folder

    def add_design(self, schematic: pathlib.Path, folder: str, name: str = "") -> tuple[pathlib.Path, str]:
        """A schematic with the path by which the editor names it, in a folder of this run."""
        if not schematic.is_file():
            there = sorted(path.name for path in schematic.parent.glob("*.kicad_sch"))
            raise Refused(f"{schematic} is not there" + f"; there are: {', '.join(there)}" * bool(there))
        with open(schematic, "rb") as opened:
            if b"(kicad_sch" not in opened.read(200):
                raise Refused(f"{schematic} is not a KiCad schematic")
        schematic = schematic.resolve()
        file = self.add_design_folder(folder) / (name or schematic.with_suffix(".dsn").name)
        shown = schematic.relative_to(DESIGNS) if schematic.is_relative_to(DESIGNS) else schematic
        self.about[f"design {len(self.about)}"] = f"{shown} as {folder}\\{file.name}"
        return schematic, paths.to_windows(file)

    def command(self, line: str) -> None:
        """Has the host do something, as its user would; what it answers is among its lines."""
        with open(self.commands, "a", encoding="utf-8", newline="\n") as file:
            file.write(line + "\n")

    def traffic(self) -> str:
        """The plug-in's traffic log so far."""
        logs = [path for path in self._log_folder.iterdir() if path.name.lower() == "schlog.txt"]
        return "".join(path.read_bytes().decode("gbk", "replace") for path in logs)

    def remove(self) -> None:
        shutil.rmtree(self.root, ignore_errors=True)
