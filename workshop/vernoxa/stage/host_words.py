"""What people type for the host: words of its user, as sim/host/commands.tcl has them."""

from __future__ import annotations

import pathlib
import re
from typing import Iterator

from vernoxa.command import Refused
from vernoxa.companion.answers import Design
from vernoxa.companion.typed import words_of
from vernoxa.companion.view import View
from vernoxa.companion.words import fitting, waiting

from .session import LINE_SECONDS, HostSession, Missing

WORDS = {
    "openDesign": ("FILE", "open a copy of a KiCad schematic"),
    "saveDesign": ("[NAME]", "save a design: the one in front, or the one of that name"),
    "closeDesign": ("[NAME]", "close it"),
    "showPage": ("PAGE [NAME]", "bring a page to the front"),
    "select": ("REFERENCE...", "select parts"),
    "selectBlock": ("REFERENCE...", "select parts with all that lies about them"),
    "writeLibrary": ("FILE", "write the symbols of the design in front as a library"),
    "libraryParts": ("FILE", "name the parts of a library"),
    "resourcePath": ("ID", "ask the companion where it keeps a shared module"),
    "userId": ("", "ask the companion who is signed in"),
    "action": ("HANDLER", "choose an entry of a menu"),
    "pause": ("SECONDS", "let time pass"),
    "help": ("", "these words"),
    "quit": ("", "end the host"),
}


class HostWords:
    """`designs` are those that are known to be open, for completion."""

    def __init__(self, session: HostSession, view: View, designs: dict[str, Design]):
        self._session = session
        self._view = view
        self._designs = designs
        self._opened = 0

    async def run(self, line: str) -> bool:
        line = line.strip()
        word, _, rest = line.partition(" ")
        if not word:
            return True
        if word == "quit":
            raise EOFError
        if word == "help":
            for name, (takes, purpose) in WORDS.items():
                self._view.line("host", f"{f'{name} {takes}':26} {purpose}".rstrip())
            self._view.line("host", "Any procedure of the host and command of the plug-in can be called as well.")
            return True
        try:
            if word == "openDesign":
                line = self._copied(rest)
            with waiting(self._view, "host", f"for the end of {line}", LINE_SECONDS):
                done = await self._session.user_does(line)
        except Refused as error:
            self._view.line("host", str(error), "red")
            return False
        except Missing as error:
            self._view.line("host", f"missing: {error}", "red")
            return False
        if not done and word not in WORDS:
            self._view.line("host", "help lists the words that it knows", "red")
        return done

    def _copied(self, rest: str) -> str:
        """What is opened has its name in a folder of this run, so nothing is written beside it."""
        words = words_of(rest)
        if len(words) != 1:
            raise Refused("openDesign takes a KiCad schematic")
        self._opened += 1
        design = self._session.installation.add_design(pathlib.Path(words[0]).expanduser(), f"opened{self._opened}")
        return open_words(design)

    def complete(self, line: str) -> Iterator[tuple[str, str]]:
        word, space, rest = line.partition(" ")
        if not space:
            return fitting(line, [(name, purpose) for name, (_, purpose) in WORDS.items()])
        front = next(reversed(self._designs.values()), None)
        names = [(tcl_word(design.path), "design") for design in self._designs.values()]
        known = {"saveDesign": names, "closeDesign": names}
        if front:
            known["select"] = known["selectBlock"] = [(reference, "part") for reference in front.references]
            pages = [(tcl_word(page), "page") for page in front.pages]
            known["showPage"] = names if " " in rest else pages
        return fitting(line, known.get(word, []))


def open_words(design: tuple[pathlib.Path, str]) -> str:
    return f"openDesign {tcl_word(str(design[0]))} {tcl_word(design[1])}"


def tcl_word(text: str) -> str:
    """A text as one word of a Tcl command that stands for itself."""
    return re.sub(r'([\\{}\[\]$"; #])', r"\\\1", text)
