"""Makes the zip that is unpacked beside the editor. The same inputs give the same bytes."""

from __future__ import annotations

import hashlib
import pathlib
import re
import subprocess
import tempfile
import time
import zipfile

from vernoxa.command import Refused
from vernoxa.places import REPOSITORY

from .finish import CHECKSUMS

# Never the name that the plug-in reads: unpacking must not overwrite the settings of an installation.
SAMPLE = "Config/App.sample.txt"
# What a user is to see first in a list of the zip.
FIRST = "README.txt"


class NotMade(Refused):
    """The text says why."""


def make(module: pathlib.Path, target: pathlib.Path) -> None:
    """`module` is the plug-in in the folder of its build. Raises NotMade, OSError."""
    seconds = subprocess.run(["git", "-C", REPOSITORY, "log", "-1", "--format=%ct"], capture_output=True, text=True).stdout
    date = time.gmtime(int(seconds or 315532800))[:6]
    with tempfile.TemporaryDirectory() as folder:
        command = ["cmake", "--install", str(module.parent), "--prefix", folder]
        made = subprocess.run(command, capture_output=True, text=True)
        if made.returncode:
            raise NotMade(made.stdout + made.stderr)
        names = sorted((path.relative_to(folder).as_posix() for path in pathlib.Path(folder).rglob("*") if path.is_file()),
                       key=lambda name: (name != FIRST, name))
        target.parent.mkdir(parents=True, exist_ok=True)
        with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as files:
            for name in names:
                files.writestr(zipfile.ZipInfo(name, date), (pathlib.Path(folder) / name).read_bytes(), zipfile.ZIP_DEFLATED, 9)


def version() -> str:
    """Where everything takes it from."""
    found = re.search(r"^project\(Vernoxa VERSION (\S+)", (REPOSITORY / "CMakeLists.txt").read_text("utf-8"), re.MULTILINE)
    return found[1] if found else ""


def faults_of(package: pathlib.Path) -> list[str]:
    """What in a zip is not as its checksums say."""
    with zipfile.ZipFile(package) as files:
        names = {name for name in files.namelist() if not name.endswith("/")} - {CHECKSUMS}
        faults = []
        for line in files.read(CHECKSUMS).decode().splitlines():
            digest, _, name = line.partition("  ")
            if name not in names:
                faults.append(f"{name} is missing")
            elif hashlib.sha256(files.read(name)).hexdigest() != digest:
                faults.append(f"{name} is not what it was")
            names.discard(name)
        return faults + [f"{name} has no checksum" for name in sorted(names)]
