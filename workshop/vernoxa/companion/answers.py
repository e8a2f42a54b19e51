"""What the companion knows of the editor's designs, and what it answers to each message."""

from __future__ import annotations

import contextlib
import dataclasses
import pathlib
import shutil

from vernoxa.wire import paths
from vernoxa.wire.catalogue import QUERIES
from vernoxa.wire.messages import Message


@dataclasses.dataclass
class Design:
    path: str
    pins: str = ""
    process: str = ""
    editor: str = ""
    pages: list[str] = dataclasses.field(default_factory=list)
    bom: dict[str, list[dict]] = dataclasses.field(default_factory=dict)

    @property
    def references(self) -> list[str]:
        """All part references of the last BOM."""
        return sorted({ref for lines in self.bom.values() for line in lines for ref in references_of(line)})


def references_of(line: dict) -> list[str]:
    """The references of a BOM line; a line can stand for several equal parts."""
    return [ref for ref in str(line.get("PartRef", "")).replace(",", " ").split() if ref]


def _file_here(windows_path: str) -> pathlib.Path | None:
    with contextlib.suppress(paths.NotHere):
        local = paths.to_local(windows_path)
        return local if local.is_file() else None
    return None


class Answers:
    """Takes each message of the plug-in once, in order, and gives the messages that are sent back.

    `modules_folder` is where uploaded modules are kept; without one they stay where the plug-in wrote them.
    """

    def __init__(self, user_id: str = "1001", modules_folder: pathlib.Path | None = None):
        self.user_id = user_id
        self.modules_folder = modules_folder
        self.designs: dict[str, Design] = {}
        self.findings: dict[str, list[dict]] = {}  # of the last run of each check
        self._over: set[str] = set()  # checks whose next message belongs to a new run
        self.reports: dict[str, list[list[str]]] = {}
        self.modules: dict[str, str] = {}
        self.uploads: dict[str, dict] = {}
        self._downloads = 0

    @property
    def current(self) -> Design | None:
        """The design that was opened or saved last and is still open."""
        return next(reversed(self.designs.values()), None)

    def take(self, message: Message, asked: dict | None = None) -> list[dict]:
        """`asked` is the "Data" of the request that this message replies to, when it is a reply."""
        handler = getattr(self, "_" + message.command, None)
        # Only what is right is believed; but whoever waits for an answer gets one.
        if handler is None or (message.faults and message.command not in ("FileStatus", *QUERIES)):
            return []
        return handler(message, asked or {}) or []

    # One method for each message that means something here, named after it.

    def _FileStatus(self, message: Message, _: dict) -> list[dict]:
        data = message.data
        path = str(data.get("FileName", ""))
        key = paths.key_of(path)
        if data.get("Status") == "Close":
            self.designs.pop(key, None)
        else:
            design = self.designs.pop(key, None) or Design(path)
            design.pins = str(data.get("PinCount", design.pins)) or design.pins
            design.process = str(data.get("Pid", ""))
            design.editor = str(data.get("AllegroPath", ""))
            self.designs[key] = design
        # The plug-in keeps its cache below this path, so it has to be that of a design that is open.
        folder = paths.folder_of(self.current.path) if self.current else ""
        return [{"Command": "FileStatus_EndResult", "Data": {"Path": folder}, "Result": "0"}]

    def _TryUpdateBom(self, message: Message, _: dict) -> list[dict]:
        if not self.current:
            return []
        return [{"Command": "GenerateBOM", "Data": {"ProjectPath": paths.for_request(self.current.path)}, "Result": "0"}]

    def _GenerateBOM_EndResult(self, message: Message, asked: dict) -> None:
        design = self.designs.get(paths.key_of(str(asked.get("ProjectPath", ""))))
        if design and message.succeeded:
            design.bom = {name: list(lines) for name, lines in message.data.items() if isinstance(lines, list)}

    def _GetActiveProPages_EndResult(self, message: Message, _: dict) -> None:
        for project in message.data.get("Open", []):
            if design := self.designs.get(paths.key_of(project["ProjectPath"])):
                design.pages = project["Pages"]

    def _AddToBom(self, message: Message, _: dict) -> None:
        self._move(message.data["Stick"], "Stick")

    def _RemoveFromBom(self, message: Message, _: dict) -> None:
        self._move(message.data["NotStick"], "NotStick")

    def _move(self, lines: list[dict], to: str) -> None:
        if not self.current:
            return
        moved = {ref for line in lines for ref in references_of(line)}
        bom = self.current.bom
        for name, kept in bom.items():
            bom[name] = [line for line in kept if not moved.intersection(references_of(line))]
        bom.setdefault(to, []).extend(lines)

    def _DsnCheck_Result(self, message: Message, _: dict) -> None:
        self._findings_of_run(message.data["id"]).append(message.data)

    def _DsnCheck_EndResult(self, message: Message, _: dict) -> None:
        check = message.data["id"]
        self._findings_of_run(check)
        self._over.add(check)

    def _findings_of_run(self, check: str) -> list[dict]:
        if check in self._over:
            self._over.remove(check)
            self.findings[check] = []
        return self.findings.setdefault(check, [])

    def _report(self, message: Message, _: dict) -> None:
        if message.shape == "report":
            self.reports[message.command] = message.data["item"]

    _GetDsnAllPackageInfo_EndResult = _GetOlbAllPackageInfo_EndResult = _GetOlbObjectPackageInfo_EndResult = _report

    def _SelectModule_EndResult(self, message: Message, _: dict) -> None:
        if message.shape != "upload":
            return
        identifier = str(len(self.modules) + 1)
        self.modules[identifier] = self._keep(identifier, message.data["dsnDatPath"])
        self.uploads[identifier] = message.data

    def _keep(self, identifier: str, windows_path: str) -> str:
        local = _file_here(windows_path)
        if self.modules_folder is None or local is None:
            return windows_path
        kept = self.modules_folder / identifier / local.name
        kept.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(local, kept)
        return paths.to_windows(kept)

    def _download(self, identifier: str) -> str:
        """A copy for this one placement, since placing a module deletes its file; "" for a module that is not there."""
        kept = self.modules.get(identifier, "")
        local = _file_here(kept)
        if self.modules_folder is None or local is None:
            return kept
        self._downloads += 1
        copy = self.modules_folder / "downloads" / f"{identifier}-{self._downloads}" / local.name
        copy.parent.mkdir(parents=True)
        shutil.copyfile(local, copy)
        return paths.to_windows(copy)

    def _GetSelfId(self, message: Message, _: dict) -> list[dict]:
        return [{"Command": "GetSelfId_EndResult", "Data": {"UserId": self.user_id}, "Result": 0}]

    def _GetMarketResPath(self, message: Message, _: dict) -> list[dict]:
        identifier = str(message.data.get("ResId", ""))
        path = self._download(identifier)
        data = {"ResId": identifier, "DatPath": path or ""}
        return [{"Command": "GetMarketResPath_EndResult", "Data": data, "Result": 0 if path else 1}]
