"""Where things lie in the repository."""

import pathlib

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
DOCS = REPOSITORY / "docs"
BUILD = REPOSITORY / "build"
SETUP = REPOSITORY / "tools" / "setup"
CONVERSATIONS = REPOSITORY / "tests" / "conversations"
DESIGNS = REPOSITORY / "sim" / "designs"
PLUG_IN = BUILD / "windows" / "Vernoxa64.dll"
TCLSH = REPOSITORY / ".deps" / "tcl-windows" / "bin" / "tclsh86.exe"
# Runs a Windows program, with one server and one screen for all that it starts.
WINE = [str(SETUP / "wine-suite"), str(SETUP / "wine-run")]
