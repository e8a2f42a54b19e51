"""What the companion has collected, as a text for people: findings of the checks, package reports, shared modules."""

from __future__ import annotations

import unicodedata
from typing import Iterable, Sequence

from .answers import Answers

CHECKS = {
    "1001": "reference designators",
    "1002": "illegal characters",
    "1003": "unconnected pins",
    "1004": "netlist",
}
LONGEST_RULE = 100
REPORTS = {
    "GetDsnAllPackageInfo_EndResult": "properties of the design's parts",
    "GetOlbAllPackageInfo_EndResult": "properties of the library's parts",
    "GetOlbObjectPackageInfo_EndResult": "properties of a library part",
}


def text_of(answers: Answers) -> str:
    """UTF-8 text, a section for each kind of thing that was collected."""
    sections = [_checks(answers), _packages(answers), _modules(answers)]
    return "\n".join(section for section in sections if section)


def _checks(answers: Answers) -> str:
    text = ""
    for check, findings in sorted(answers.findings.items()):
        rows = [
            [str(finding.get(name, "")) for name in ("Comment", "ActualValue", "Sch", "PageName", "PagePos")]
            for finding in findings
        ]
        text += _section(
            f"Check {check}, {CHECKS.get(check, '?')}: {len(rows)} findings",
            ("Finding", "Value", "Schematic", "Page", "At"),
            rows,
        )
    return text


def _packages(answers: Answers) -> str:
    return "".join(
        _section(f"Report: {REPORTS.get(command, command)}", ("Property", "Value"), items)
        for command, items in answers.reports.items()
    )


def _modules(answers: Answers) -> str:
    text = ""
    for identifier, data in answers.uploads.items():
        title = f"Module {identifier}: {data['sumPins']} pins, nets {', '.join(data['Wire']) or 'none'}"
        rows = [[part.get(name, "") for name in ("Ref", "Package")] for part in data["Part"]]
        text += _section(title, ("Part", "Package"), rows)
    return text


def _section(title: str, columns: Sequence[str], rows: Iterable[Sequence[str]]) -> str:
    table = [list(columns), *([" ".join(str(cell).split()) for cell in row] for row in rows)]
    widths = [max(_width(row[at]) for row in table) for at in range(len(columns))]
    lines = ["  ".join(_padded(cell, width) for cell, width in zip(row, widths)).rstrip() for row in table]
    lines.insert(1, "  ".join("-" * width for width in widths))
    return "\n".join([title, "=" * min(_width(title), LONGEST_RULE), *lines, "", ""])


def _width(text: str) -> int:
    """Columns on a screen: Chinese characters take two."""
    return sum(2 if unicodedata.east_asian_width(character) in "WF" else 1 for character in text)


def _padded(text: str, width: int) -> str:
    return text + " " * (width - _width(text))
