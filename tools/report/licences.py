"""The licences of the libraries in a bundle: licences.py METAFILE, esbuild's list of what went into it."""

import json
import pathlib
import re
import sys

_PACKAGE = re.compile(r".*/node_modules/(?:@[^/]+/)?[^/]+")


def licences_of(metafile: pathlib.Path) -> str:
    """Name, version and licence text of each package. Raises SystemExit for one without a licence."""
    inputs = json.loads(metafile.read_text(encoding="utf-8"))["inputs"]
    packages = sorted({pathlib.Path(found[0]) for found in map(_PACKAGE.match, inputs) if found})
    return "\n\n".join(map(_licence, packages)) + "\n"


def _licence(package: pathlib.Path) -> str:
    said = json.loads((package / "package.json").read_text(encoding="utf-8"))
    files = sorted(package.glob("LICEN[CS]E*"))
    if not files:
        sys.exit(f"{said['name']} has no licence file")
    text = "\n".join(file.read_text(encoding="utf-8").strip() for file in files)
    return f"{said['name']} {said['version']} ({said['license']})\n\n{text}\n"


if __name__ == "__main__":
    print(licences_of(pathlib.Path(sys.argv[1])), end="")
