"""Paths as the editor names them (Windows form) and as this machine opens them."""

from __future__ import annotations

import ntpath
import os
import pathlib

from vernoxa.command import Refused


class NotHere(Refused):
    """A file is not on this machine."""


# Wine shows the whole file system as this drive.
_ROOT_DRIVE = "z:"


def folder_of(windows_path: str) -> str:
    """The folder of a file; "" when the path has none."""
    return ntpath.dirname(windows_path)


def name_of(windows_path: str) -> str:
    return ntpath.basename(windows_path)


def for_request(windows_path: str) -> str:
    """As every script of a host understands it in a request: some double backslashes, others leave them to Tcl."""
    return windows_path.replace("\\", "/")


def key_of(path: str) -> str:
    """Equal for all spellings of one path."""
    return path.replace("/", "\\").lower()


def to_windows(path: str | os.PathLike) -> str:
    path = os.path.abspath(path)
    return path if os.name == "nt" else _ROOT_DRIVE.upper() + path.replace("/", "\\")


def to_local(windows_path: str) -> pathlib.Path:
    """Raises NotHere when the path lies on a drive that this machine does not have."""
    if os.name == "nt":
        return pathlib.Path(windows_path)
    drive, rest = ntpath.splitdrive(windows_path)
    if drive.lower() != _ROOT_DRIVE:
        raise NotHere(f"{windows_path} is not on this machine")
    return pathlib.Path(rest.replace("\\", "/"))
