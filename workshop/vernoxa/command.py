"""How every command ends: what it cannot do is said in one sentence, and nothing ends in a traceback that need not."""

from __future__ import annotations

import os
import sys
from typing import Callable, NoReturn

DONE, NOT_DONE, REFUSED = 0, 1, 2
EXITS = "exit: 0 all well, 1 something was missing or wrong, 2 it could not begin"
_INTERRUPTED = 130


class Refused(RuntimeError):
    """It cannot be done; the text says why, and what could be done instead."""


def run(name: str, main: Callable[[], int]) -> NoReturn:
    """Carries out a command and ends with its status."""
    try:
        status = main()
        sys.stdout.flush()
    except (Refused, OSError) as error:
        if isinstance(error, BrokenPipeError):
            # Whoever read has had enough. What is still to be written goes nowhere.
            os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
            status = NOT_DONE
        else:
            print(f"{name}: {error}", file=sys.stderr)
            status = REFUSED
    except KeyboardInterrupt:
        status = _INTERRUPTED
    sys.exit(status)
