"""What the companion shows as tables: what a message holds, and what was collected of all of them."""

from __future__ import annotations

import dataclasses
from typing import Iterable, Sequence

from vernoxa.wire.catalogue import BOM_LINE, COMMANDS, REPLY_SUFFIX
from vernoxa.wire.messages import Message

from .answers import Answers
from .typed import members_text

ROWS_SHOWN = 12
NOT_FITTED = "not fitted"
BOM_STATES = {"Stick": "fitted", "NotStick": NOT_FITTED, "NotPartNumber": "no part number"}
CHECKS = {"1001": "reference designators", "1002": "illegal characters", "1003": "unconnected pins", "1004": "netlist"}
REPORTS = {
    "GetDsnAllPackageInfo_EndResult": "properties of the design's parts",
    "GetOlbAllPackageInfo_EndResult": "properties of the library's parts",
    "GetOlbObjectPackageInfo_EndResult": "properties of a library part",
}


@dataclasses.dataclass
class Table:
    """`rest` says how to see the rows that are left out when it is shown."""

    title: str
    columns: Sequence[str]
    rows: list[list[str]]
    rest: str = ""


def table(title: str, columns: Sequence[str], rows: Iterable[Iterable[object]], rest: str = "") -> Table:
    return Table(title, columns, [[" ".join(str(cell).split()) for cell in row] for row in rows], rest)


def of_members(title: str, columns: Sequence[str], items: object, rest: str = "") -> Table:
    """Objects of an array; what arrives may be anything, and what is no array has nothing to show."""
    found = items if isinstance(items, list) else []
    return table(title, columns, ([item.get(name, "") for name in columns] for item in found), rest)


def of_message(message: Message, answers: Answers) -> Table | None:
    """What belongs below a message's line; nothing for one that is not as it should be."""
    data, command = message.data, message.command
    if message.faults:
        return None
    if command in ("GenerateBOM_EndResult", "AddToBom", "RemoveFromBom"):
        return bom(data, command.removesuffix(REPLY_SUFFIX))
    if command == "GetActiveProPages_EndResult" and message.succeeded:
        return table("open projects", ("Project", "Pages", "Names"), (
            (project["ProjectPath"], len(project["Pages"]), ", ".join(map(str, project["Pages"])))
            for project in data["Open"] if isinstance(project["Pages"], list)
        ))
    if command == "GetPartPropertyList_EndResult" and message.succeeded:
        names = data.get("PropertyList")
        return table("part properties", ("Name",), ([name] for name in names) if isinstance(names, list) else ())
    if command == "DsnCheck_EndResult":
        return findings(str(data.get("id", "")), answers)
    if message.shape == "report":
        return table(REPORTS[command], ("Property", "Value"), data["item"])
    if message.shape == "upload":
        return of_members("parts of the module", ("Id", "Ref", "Package"), data["Part"])
    return None


def bom_rows(lists: dict) -> list[list[str]]:
    """Parts without a part number are in a list of their own, and in that of their state too: they are there once.

    Parts that have one reference, or none yet, are all there. Those not fitted come first, since the rest may not be
    shown to the end.
    """
    fitting = [(name, line) for name in ("NotStick", "Stick") for line in lists.get(name, [])]
    known = {str(line["PartRef"]) for _, line in fitting}
    fitting += [("NotPartNumber", line) for line in lists.get("NotPartNumber", []) if str(line["PartRef"]) not in known]
    return [[BOM_STATES[name], *(str(line[key]) for key in BOM_LINE)] for name, line in fitting]


def bom(lists: dict, title: str) -> Table:
    counts = ", ".join(f"{len(lists[name])} {state}" for name, state in BOM_STATES.items() if name in lists)
    rest = "bom --all shows them, bom --csv FILE saves all"
    return table(f"{title}: {counts}", ("State", *BOM_LINE), bom_rows(lists), rest)


def findings(check: str, answers: Answers) -> Table:
    found = answers.findings.get(check, [])
    columns = ("Comment", "ActualValue", "Sch", "PageName", "PagePos")
    return of_members(f"check {check}, {CHECKS.get(check, '?')}: {len(found)} findings", columns, found,
                      "checks --all shows them")


def designs(answers: Answers) -> Table:
    known = answers.designs.values()
    return table("open designs", ("Design", "Pins", "Process", "Editor"), ((d.path, d.pins, d.process, d.editor) for d in known))


def commands() -> Table:
    rows = ((command.name, command.purpose, members_text(command)) for command in COMMANDS)
    return table("commands", ("Command", "What for", "Members"), rows)


def collected(answers: Answers) -> list[Table]:
    """Findings of the checks, package reports, shared modules."""
    modules = (
        of_members(f"module {identifier}: {data['sumPins']} pins, nets {', '.join(data['Wire']) or 'none'}",
                   ("Ref", "Package"), data["Part"]) for identifier, data in answers.uploads.items()
    )
    reports = (table(REPORTS[command], ("Property", "Value"), items) for command, items in answers.reports.items())
    return [*(findings(check, answers) for check in sorted(answers.findings)), *reports, *modules]
