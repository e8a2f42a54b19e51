"""How every command ends: what it cannot do is said in one sentence, and nothing ends in a traceback that need not."""

from __future__ import annotations

import argparse
import os
import pathlib
import signal
import sys
from typing import Callable, NoReturn

DONE, NOT_DONE, REFUSED = 0, 1, 2
EXITS = "exit: 0 all well, 1 something was missing or wrong, 2 it could not begin"
_INTERRUPTED = 130


class Refused(RuntimeError):
    """It cannot be done; the text says why, and what could be done instead."""


class Parser(argparse.ArgumentParser):
    """What it cannot take it refuses in one sentence."""

    def error(self, message: str) -> NoReturn:
        self.exit(REFUSED, f"{self.prog}: {message}; {self.prog} --help lists what it takes\n")


def own_file(path: pathlib.Path, begins: str) -> pathlib.Path:
    """A file that may be written: a new one, or one that began so when it was written before. Raises Refused."""
    if not path.absolute().parent.is_dir():
        raise Refused(f"there is no folder {path.parent}")
    if path.is_file():
        with open(path, "rb") as file:
            if file.read(len(begins)) not in (b"", begins.encode()):
                raise Refused(f"{path} is there and something else: give another name")
    return path


def end_without_reader() -> None:
    """Whoever read the output has had enough: what is still to be said goes nowhere, and the work ends as by Ctrl-C."""
    os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
    os.kill(os.getpid(), signal.SIGINT)


def run(name: str, main: Callable[[], int]) -> NoReturn:
    """Carries out a command and ends with its status."""
    try:
        # Whoever is told to end tidies up first, as by Ctrl-C.
        for wish in {signal.SIGINT, signal.SIGTERM, getattr(signal, "SIGHUP", signal.SIGTERM)}:
            if signal.getsignal(wish) is signal.SIG_DFL:
                signal.signal(wish, signal.default_int_handler)
        status = main()
        sys.stdout.flush()
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        status = NOT_DONE
    except FileNotFoundError as error:
        print(f"{name}: {error.filename or error} is not there", file=sys.stderr)
        status = REFUSED
    except (Refused, OSError) as error:
        print(f"{name}: {error}", file=sys.stderr)
        status = REFUSED
    except KeyboardInterrupt:
        status = _INTERRUPTED
    sys.exit(status)
