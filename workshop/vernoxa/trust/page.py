"""Keeps what each part measured, and writes docs/reliability.md from the last run of each."""

from __future__ import annotations

import json
import os
import pathlib
import platform
import subprocess
import threading

from vernoxa.places import BUILD, DOCS, REPOSITORY, WINE

from .findings import Findings
from .kinds import KINDS

KEPT = BUILD / "trust.json"
PAGE = DOCS / "reliability.md"
# What only a real Windows, or an editor that people work with, can show.
UNSEEN = (
    "a drive without a disk that is asked for the editor: it should raise no box",
    "the text on the clipboard read by a program while another keyboard than the system's is chosen",
    "a clipboard that another program holds for less than a fifth of a second at a time",
    "the system's own player of metafiles; under Wine it is Wine's, which checks less",
    "pictures on screens of more than 32 bits a point, and screens whose size the system does not know",
    "the scroll bar of the selection dialog where the user has chosen wider ones",
    "a traffic log on a share that goes away while a line is written",
)
_one_at_a_time = threading.Lock()
Place = dict[str, str]  # what is known of it, by the names in trust.json
WHOLE = "the whole run, once it was built,"


def _said_by(*command: str) -> str:
    done = subprocess.run(command, cwd=REPOSITORY, capture_output=True, text=True, check=False)
    return done.stdout.strip()


def place() -> Place:
    """Where it is measured: the commit, and the kind of machine, not its name."""
    changed = _said_by("git", "status", "--porcelain", "--", ".", f":!{PAGE.relative_to(REPOSITORY)}")
    system = platform.freedesktop_os_release().get("PRETTY_NAME", platform.system())
    return {"commit": _said_by("git", "rev-parse", "--short", "HEAD") + (" with changes" if changed else ""),
            "machine": f"{system}, {platform.machine()}, {os.cpu_count()} cores, {_said_by(WINE[1], '--version')}"}


def write(part: str, findings: Findings, seconds: float, measured_at: Place, parts: list[str]) -> None:
    """Keeps what a part, or the whole run, measured and writes the page again; `parts` has all that there are, in the order
    of the page."""
    with _one_at_a_time:
        results = json.loads(KEPT.read_text(encoding="utf-8")) if KEPT.is_file() else {}
        results[part] = vars(findings) | measured_at | {"seconds": round(seconds)}
        KEPT.write_text(json.dumps(results, indent=1), encoding="utf-8")
        _write_page(results, parts)


def _measured(results: dict[str, dict]) -> list[str]:
    """For each commit and machine, the parts that ran there. Old results have neither machine nor seconds."""
    places: dict[str, list[str]] = {}
    for part, result in results.items():
        name = result["commit"] + (f" ({result['machine']})" if "machine" in result else "")
        places.setdefault(name, []).append(part + (f" {result['seconds']} s" if "seconds" in result else ""))
    return [f"- {name}: {', '.join(parts)}" for name, parts in places.items()]


def _write_page(results: dict[str, dict], parts: list[str]) -> None:
    known = [results[part] for part in parts if part in results]
    lines = ["# Reliability", "", "<!-- for developers -->", "Written by `./dev trust` from its last run.",
             "<!-- end -->", "What stands in the tables was measured, not typed.",
             "A run under Wine is a run under Wine, not on Windows.", "", "| What was tried | How much | Where |",
             "|---|---|---|"]
    lines += [f"| {what} | {how_much} | {where} |" for result in known for what, how_much, where in result["rows"]]
    lines += ["", "| Found | Times |", "|---|---|"]
    lines += [f"| {kind} | {sum(result['counts'][kind] for result in known)} |" for kind in KINDS]
    if failed := [part for result in known for part in result["failed"]]:
        lines += ["", "Parts that failed: " + ", ".join(failed) + "."]
    if missing := [part for part in parts if part not in results]:
        lines += ["", "Not run: " + ", ".join(missing) + "."]
    lines += ["", "What no test here has seen:", ""] + [f"- {what}" for what in UNSEEN]
    lines += ["", pathlib.Path(__file__).with_name("seen.md").read_text("utf-8").rstrip("\n")]
    lines += ["", "## When it was measured", "",
              "At which commit, on which kind of machine, and how long each part took; in a whole run two parts go at a time.",
              ""]
    lines += _measured({part: results[part] for part in [*parts, WHOLE] if part in results})
    PAGE.write_text("\n".join(lines) + "\n", encoding="utf-8")
