"""What the package's own checks run with: a Tcl for Windows, the helper, and what they know of the protocol."""

from __future__ import annotations

import json
import pathlib
from typing import Iterator

from vernoxa.places import REPOSITORY

TCL = REPOSITORY / ".deps" / "tcl-windows"
# A shell needs these of Tcl's library; the rest is for other lands and other programs.
LIBRARY = ("init.tcl", "auto.tcl", "package.tcl", "tm.tcl", "word.tcl", "tclIndex", "encoding/*.enc")


def files(helper: pathlib.Path) -> Iterator[tuple[str, bytes]]:
    """Each file's place in the package, and its bytes."""
    yield "check/helper.dll", helper.read_bytes()
    yield "check/tables.tcl", tables().encode()
    for path in (*TCL.glob("bin/*.exe"), *TCL.glob("bin/*.dll"), *TCL.glob("lib/reg1.3/*.tcl"), *TCL.glob("lib/reg1.3/*.dll"),
                 *(path for pattern in LIBRARY for path in TCL.glob(f"lib/tcl8.6/{pattern}"))):
        yield f"check/tcl/{path.relative_to(TCL).as_posix()}", path.read_bytes()


def tables() -> str:
    """Names of docs/protocol.json as Tcl lists."""
    protocol = json.loads((REPOSITORY / "docs" / "protocol.json").read_text(encoding="utf-8"))
    requests = [row["name"] for row in protocol["requests"] if row["side"] == "companion"]
    at_loading = [row["name"] for row in protocol["procedures"] if row["calledBy"]["load"]]
    lists = {"commands": [row["name"] for row in protocol["commands"]],
             "procedures": [row["name"] for row in protocol["procedures"]],
             "proceduresAtLoading": at_loading, "companionRequests": requests}
    return 'set version "1.0"\n' + "".join(f"set {name} {{{' '.join(names)}}}\n" for name, names in lists.items())
