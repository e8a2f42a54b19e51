"""Lets a test that takes long pass at once where it passed before with the same files, Wine and system."""

import hashlib
import pathlib
import re
import subprocess
import sys
import zipfile

from vernoxa.dist import package
from vernoxa.places import SETUP


class Unchanged:
    """What of a package a test looks at, by a pattern of names in it, and the test itself."""

    def __init__(self, zipped: pathlib.Path, names: str, module: pathlib.Path):
        test = pathlib.Path(sys.argv[0])
        with zipfile.ZipFile(zipped) as files:
            lines = files.read(package.CHECKSUMS).decode().splitlines()
        used = [line for line in lines if re.search(f"  ({names})", line)]
        wine = subprocess.run([SETUP / "wine-run", "--version"], capture_output=True, text=True, check=True).stdout
        system = pathlib.Path("/etc/os-release").read_text("utf-8")
        self._key = hashlib.sha256("\n".join([*used, test.read_text("utf-8"), wine, system]).encode()).hexdigest()
        self._stamp = module.with_name(f"{test.stem}-passed.txt")

    def __bool__(self) -> bool:
        return self._stamp.is_file() and self._stamp.read_text() == self._key

    def passed(self) -> None:
        self._stamp.write_text(self._key)
