"""How every command ends: what it cannot do is said in one sentence, and nothing ends in a traceback that need not."""

from __future__ import annotations

import argparse
import os
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


def end_without_reader() -> None:
    """Whoever read the output has had enough: what is still to be said goes nowhere, and the work ends as by Ctrl-C."""
    os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
    os.kill(os.getpid(), signal.SIGINT)


def run(name: str, main: Callable[[], int]) -> NoReturn:
    """Carries out a command and ends with its status."""
    try:
        if signal.getsignal(signal.SIGINT) is signal.SIG_DFL:
            signal.signal(signal.SIGINT, signal.default_int_handler)
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
