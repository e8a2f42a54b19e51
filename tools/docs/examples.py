#!/usr/bin/python3
"""Prints examples into docs/for-companion-authors.md and docs/for-script-authors.md, between their marks.

Messages come out of the recorded conversations in tests/conversations, calls and their answers out of a run of calls.tcl
in the stand-in host (kept in calls.txt, so that only --run needs the plug-in), as do messages that no conversation has.

    examples.py            writes the pages
    examples.py --check    exit 1 when a page differs from what would be written
    examples.py --run      runs the calls anew first
"""

from __future__ import annotations

import asyncio
import json
import pathlib
import re
import sys

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(REPOSITORY / "sim"), str(REPOSITORY / "tools" / "replay")]
sys.dont_write_bytecode = True

from companion import messages, record  # noqa: E402
from companion.catalogue import COMMANDS, QUERIES, REPLY_SUFFIX, TOLD  # noqa: E402

DOCS = REPOSITORY / "docs"
CALLS = pathlib.Path(__file__).with_name("calls.txt")
MOST_ITEMS = 2
LONGEST_RESULT = 110
PACKET = r"\b7b(?:[0-9a-f]{2})*7d\b"


# --- messages ------------------------------------------------------------------------------------------------------


Said = tuple[str, bytes]  # the side that sent it, and the message


def conversations() -> list[Said]:
    files = sorted((REPOSITORY / "tests" / "conversations").glob("*.txt"))
    return [(entry.what, entry.message) for file in files for entry in record.read(file) if entry.message]


def said_in_calls() -> list[Said]:
    sides = {"call": record.COMPANION, "sent": record.PLUG_IN, "asks": record.PLUG_IN, "result": record.PLUG_IN}
    return [(sides[kind], bytes.fromhex(packet)) for kind, text in call_lines() if kind in sides
            for packet in re.findall(PACKET, text)]


class Recorded:
    """The first example of every message, out of the first source that has one; of replies one that succeeded before one
    that failed."""

    def __init__(self, *sources: list[Said]):
        self._sources: list[dict[tuple[str, str], list[messages.Message]]] = []
        for source in sources:
            found: dict[tuple[str, str], list[messages.Message]] = {}
            for who, raw in source:
                message = messages.read(raw)
                found.setdefault((who, message.command), []).append(message)
            self._sources.append(found)

    def block(self, who: str, name: str, shape: str = "") -> str:
        choices = ([message for message in found.get((who, name), []) if shape in ("", message.shape)]
                   for found in self._sources)
        known = next(filter(None, choices), None)
        if known is None:
            return ""
        best = max(known, key=lambda message: (message.succeeded, -len(message.faults)))
        return "```json\n" + json.dumps(_short(best.members), ensure_ascii=False, indent=2) + "\n```\n"


def _short(value: object) -> object:
    if isinstance(value, dict):
        return {name: _short(member) for name, member in value.items()}
    if isinstance(value, list):
        kept = [_short(item) for item in value[:MOST_ITEMS]]
        return kept + [f"... {len(value) - MOST_ITEMS} more"] * (len(value) > MOST_ITEMS)
    return value


def asked_page(recorded: Recorded) -> str:
    text = ""
    for command in COMMANDS:
        text += f"### {command.name}\n\n{_sentence(command.purpose)}\n\n"
        request = recorded.block(record.COMPANION, command.name)
        reply = recorded.block(record.PLUG_IN, command.name + REPLY_SUFFIX)
        text += request or "Not in the recorded conversations.\n"
        if request and reply:
            text += f"\nanswered with\n\n{reply}"
        elif not command.answered:
            text += "\nNot answered.\n" if not command.follows else f"\nNot answered; `{command.follows}` messages follow.\n"
        text += "\n"
    return text


def told_page(recorded: Recorded) -> str:
    text = ""
    for told in TOLD:
        text += f"### {told.name}\n\n{_sentence(told.purpose)}\n\n"
        blocks = [recorded.block(record.PLUG_IN, told.name, shape.name) for shape in told.shapes]
        text += "\n".join(filter(None, dict.fromkeys(blocks))) or "Not in the recorded conversations.\n"
        if told.name in QUERIES:
            text += "\nComes on a connection of its own, which is closed after the answer.\n"
        text += "\n"
    return text


def _sentence(words: str) -> str:
    return words[0].upper() + words[1:] + "."


# --- calls ---------------------------------------------------------------------------------------------------------


def run_calls() -> None:
    """Needs the built plug-in."""
    import performance
    from companion import paths
    from companion.answers import Answers
    from conversation import ROOT, Design

    class Calls(performance.Performance):
        def command_line(self, designs):
            script = self.installation.root / "calls.tcl"
            self.out = self.installation.root / "calls.txt"
            calls = (REPOSITORY / "tools" / "docs" / "calls.tcl").read_text(encoding="utf-8")
            script.write_text(f"namespace eval ::calls {{variable file {{{paths.to_windows(self.out)}}}}}\n" + calls, "utf-8")
            return super().command_line(designs) + ["-commands", paths.to_windows(script)]

    async def run() -> None:
        designs = [Design.parse("ecc83/ecc83-pp.kicad_sch as design\\ecc83-pp.dsn")]
        async with Calls(REPOSITORY / "build" / "windows" / "Vernoxa64.dll", designs, Answers()) as calls:
            await calls.ended(60)
            root = calls.root
            lines = calls.out.read_text(encoding="utf-8")
            for entry in calls.entries:
                if entry.what == record.PLUG_IN and messages.read(entry.message).command in QUERIES:
                    lines += f"asks {entry.message.hex()}\n"
            # Packets carry the root in their digits.
            for before, after in ((root, ROOT), (root.replace("\\", "/"), ROOT.replace("\\", "/")),
                                  (root.replace("\\", "\\\\"), ROOT.replace("\\", "\\\\"))):
                lines = lines.replace(before, after)
                lines = lines.replace(before.encode().hex(), after.encode().hex())
            CALLS.write_text(lines, encoding="utf-8", newline="\n")

    asyncio.run(run())


def call_lines() -> list[tuple[str, str]]:
    """What each line is (call, sent, result, asks, uncalled), and its text."""
    lines = []
    for line in CALLS.read_text(encoding="utf-8").splitlines():
        kind, _, text = line.partition(" ")
        lines.append((kind, re.sub(r"\\(.)", lambda found: {"n": "\n", "r": ""}.get(found[1], found[1]), text)))
    return lines


def calls_page() -> str:
    """Every command in the order of its table, with its call out of the run."""
    examples: dict[str, list[str]] = {}
    reasons: dict[str, str] = {}
    call, sent = "", []
    for kind, text in call_lines():
        if kind == "call":
            call, sent = text, []
        elif kind == "sent":
            sent.append(text)
        elif kind == "uncalled":
            command, _, reason = text.partition(" ")
            reasons[command] = reason
        elif kind == "result":
            examples.setdefault(call.split()[0], []).append(_example(call, text, sent))
    text = ""
    for command, usage, role in re.findall(r"^\| \d+ \| `(\w+)([^`]*)` \| (.*?) \|", (DOCS / "commands.md").read_text(), re.M):
        text += f"### {command}\n\n`{command}{usage}`: {role}\n\n"
        if command in examples:
            text += "```\n" + "\n".join(examples[command]) + "\n```\n\n"
        else:
            text += f"No example: it {reasons[command]}.\n\n"
    return text


def _example(call: str, result: str, sent: list[str]) -> str:
    lines = [call]
    lines += [f"  with {_message(packet)}" for packet in re.findall(PACKET, call)]
    lines += [f"  sends {_message(packet)}" for packet in sent]
    if result:
        lines.append(f"  answers {_cut(result)}")
        if re.fullmatch(r"(7b([0-9a-f]{2})*)", result):
            lines.append(f"  which is {_message(result)}")
    elif not sent:
        lines.append("  answers nothing")
    return "\n".join(lines)


def _message(packet: str) -> str:
    message = messages.read(bytes.fromhex(packet))
    return json.dumps(message.members, ensure_ascii=False)


def _cut(text: str) -> str:
    return text if len(text) <= LONGEST_RESULT else text[:LONGEST_RESULT] + "..."


# --- pages ---------------------------------------------------------------------------------------------------------


def printed(page: pathlib.Path, blocks: dict[str, str]) -> str:
    text = page.read_text(encoding="utf-8")
    for name, block in blocks.items():
        marks = re.compile(rf"(<!-- begin {name} -->\n).*?(<!-- end {name} -->)", re.DOTALL)
        text, count = marks.subn(lambda found: f"{found[1]}\n{block.rstrip()}\n\n{found[2]}", text)
        if count != 1:
            sys.exit(f"{page} has no place for {name}")
    return text


def main() -> int:
    if "--run" in sys.argv:
        run_calls()
    recorded = Recorded(conversations(), said_in_calls())
    pages = {
        DOCS / "for-companion-authors.md": {"asked": asked_page(recorded), "told": told_page(recorded)},
        DOCS / "for-script-authors.md": {"calls": calls_page()},
    }
    stale = 0
    for page, blocks in pages.items():
        text = printed(page, blocks)
        if text == page.read_text(encoding="utf-8"):
            continue
        stale += 1
        if "--check" in sys.argv:
            print(f"{page.relative_to(REPOSITORY)} is stale: run ./dev docs")
        else:
            page.write_text(text, encoding="utf-8", newline="\n")
    return 1 if stale and "--check" in sys.argv else 0


if __name__ == "__main__":
    sys.exit(main())
