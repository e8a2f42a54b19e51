"""Prints the reference pages, and examples into the other pages, between their marks.

What there is comes out of docs/protocol.json; messages out of the recorded conversations in tests/conversations; calls of
commands and of the host's procedures out of a run of calls.tcl and procedures.tcl in the stand-in host (kept in calls.txt
and procedures.txt, so that only --run needs the plug-in). Kept printers of references read code or OpenAPI, not such tables.

    print_pages.py            writes the pages
    print_pages.py --check    exit 1 when a page differs from what would be written
    either also ends with 1 when a message of the tables is in no recorded conversation, or a procedure in no run
    print_pages.py --run      runs the calls again first
"""

from __future__ import annotations

import asyncio
import json
import pathlib
import re
import sys

from vernoxa.command import run
from vernoxa.places import DOCS, PLUG_IN, REPOSITORY
from vernoxa.companion.answers import Answers
from vernoxa.replay import performance
from vernoxa.replay.conversation import Design
from vernoxa.wire import messages, paths, record
from vernoxa.wire.catalogue import ANSWERED, COMMANDS, PROTOCOL, QUERIES, REPLY_SUFFIX, TOLD

from . import pages
from .recorded import Recorded

SCRIPTS = REPOSITORY / "tools" / "docs"
CALLS = SCRIPTS / "calls.txt"
PROCEDURES = SCRIPTS / "procedures.txt"
LONGEST_RESULT = 110


# --- messages ------------------------------------------------------------------------------------------------------


def asked_page(recorded: Recorded) -> str:
    text = ""
    for command in COMMANDS:
        text += f"### {command.name}\n\n{command.purpose}\n\n"
        good = recorded.pair(command.name, ("done", "report"))
        failed = recorded.pair(command.name, ("failed",))
        if good:
            text += f"{good[0]}\nis answered with\n\n{good[1]}"
        elif command.answered:
            recorded.missing.append(f"{command.name} and its answer")
        else:
            text += recorded.block(record.COMPANION, command.name)
            text += f"\nNot answered; `{command.follows}` messages follow.\n" if command.follows else "\nNot answered.\n"
        if failed:
            text += f"\nWhen it fails, for example as\n\n{failed[0]}\nit is answered with\n\n{failed[1]}"
        text += "\n"
    return text


def told_page(recorded: Recorded) -> str:
    text = ""
    for told in TOLD:
        text += f"### {told.name}\n\n"
        text += "\n".join(
            f"{shape.purpose}\n\n{recorded.block(record.PLUG_IN, told.name, shape.name)}" for shape in told.shapes
        )
        if told.name in ANSWERED:
            text += f"\nAnswer it with\n\n{recorded.block(record.COMPANION, told.name + REPLY_SUFFIX)}"
        if told.name in QUERIES:
            text += "\nIt comes on a connection of its own, which is closed after the answer.\n"
        text += "\n"
    return text


def refused_page(recorded: Recorded) -> str:
    request, reply = recorded.pair("GenerateBOM", ("refused",)) or ("", "")
    if not request:
        recorded.missing.append("a request that is refused")
    return f"{request}\nis answered with\n\n{reply}"


# --- calls ---------------------------------------------------------------------------------------------------------


def run_calls() -> None:
    """Needs the built plug-in."""
    class Calls(performance.Performance):
        def command_line(self, designs: list[tuple[pathlib.Path, str]]) -> list[str]:
            words = super().command_line(designs)
            for name, option in (("procedures", "-with"), ("calls", "-commands")):
                script = self.written(name).with_suffix(".tcl")
                file = paths.to_windows(self.written(name))
                code = (SCRIPTS / script.name).read_text(encoding="utf-8")
                script.write_text(f"namespace eval ::{name} {{variable file {{{file}}}}}\n{code}", "utf-8")
                words += [option, paths.to_windows(script)]
            return words

        def written(self, name: str) -> pathlib.Path:
            return self.installation.root / f"{name}.txt"

    async def run() -> None:
        designs = [Design.parse("microphone/power.kicad_sch as design\\power.dsn")]
        calls = Calls(PLUG_IN, designs, Answers())
        async with calls:
            await calls.host.ended(performance.LONGEST_RUN)
            CALLS.write_text(moved(calls.written("calls"), calls.root), encoding="utf-8", newline="\n")
            noted = _best_calls(moved(calls.written("procedures"), calls.root).rstrip("\n").split("\n"))
            PROCEDURES.write_text(noted, encoding="utf-8", newline="\n")

    def moved(file: pathlib.Path, root: str) -> str:
        """Below the root of the records; packets carry it in their digits."""
        lines = file.read_text(encoding="utf-8")
        for slash in ("\\\\\\\\", "\\\\", "\\", "/"):
            before, after = (path.replace("\\", slash) for path in (root, record.ROOT))
            lines = lines.replace(before, after)
            lines = lines.replace(before.encode().hex(), after.encode().hex())
        return lines

    asyncio.run(run())


def _best_calls(lines: list[str]) -> str:
    """The first call of each procedure that was answered and can be shown, out of the lines of procedures.tcl."""
    open_calls: dict[str, list[list[str]]] = {}
    calls: dict[str, list[list[str]]] = {}
    for line in lines:
        kind, _, name = line.partition(" ")
        name = name.split(" ", 1)[0]
        if kind == "called":
            open_calls.setdefault(name, []).append([line])
            calls.setdefault(name, []).append(open_calls[name][-1])
        else:
            open_calls[name].pop().append(line)
    kept = []
    for procedure in PROTOCOL["procedures"]:
        found = calls.get(procedure["name"].removeprefix("::"), [])
        # The host calls some of them itself, with variables.
        found.sort(key=lambda call: (not call[-1].startswith("answered"), "$" in call[0]))
        kept += found[0] if found else []
    return "".join(f"{line.rstrip()}\n" for line in kept)


def procedures_page() -> str:
    """Every procedure of the host, with its call out of the run."""
    seen: dict[str, str] = {}
    for line in PROCEDURES.read_text(encoding="utf-8").splitlines():
        kind, name, text = (line.rstrip() + "  ").split(" ", 2)
        text = _unescaped(text.strip())
        if kind == "called":
            seen[name] = _cut(text)
        else:
            seen[name] += f"\n  {'answers' if kind == 'answered' else 'ends in the error'} {_cut(text) or 'nothing'}"
    text = ""
    for procedure in PROTOCOL["procedures"]:
        text += f"### {procedure['name']}\n\n{procedure['purpose']}\n{pages.arguments_table(procedure['arguments'])}"
        text += f"\nAnswer: {procedure['answer']}\n\nCalled by {_callers(procedure['calledBy'])}.\n\n"
        example = seen.get(procedure["name"].removeprefix("::"))
        if not example:
            sys.exit(f"{procedure['name']} is in no example: call it in tools/docs/calls.tcl, then ./dev docs --run")
        text += f"```\n{example}\n```\n\n"
    return text


def _callers(callers: dict) -> str:
    names = [f"`{name}`" for side in ("companion", "linkThread", "commands") for name in callers[side]]
    return ", ".join(["loading the plug-in"] * callers["load"] + names)


def _unescaped(text: str) -> str:
    return re.sub(r"\\(.)", lambda found: {"n": "\n", "r": ""}.get(found[1], found[1]), text)


def calls_page() -> str:
    """Every command in the order of its table, with its call out of the run."""
    examples: dict[str, list[str]] = {}
    reasons: dict[str, str] = {}
    call = ""
    sent: list[str] = []
    for line in CALLS.read_text(encoding="utf-8").splitlines():
        kind, _, text = line.partition(" ")
        text = _unescaped(text)
        if kind == "call":
            call, sent = text, []
        elif kind == "sent":
            sent.append(text)
        elif kind == "uncalled":
            command, _, reason = text.partition(" ")
            reasons[command] = reason
        else:
            examples.setdefault(call.split()[0], []).append(_example(call, text, sent))
    text = ""
    for row in PROTOCOL["commands"]:
        command = row["name"]
        text += f"### {command}\n\n`{' '.join((command, row['usage'])).strip()}`: {row['purpose']}\n\n"
        if command in examples:
            text += "```\n" + "\n".join(examples[command]) + "\n```\n\n"
        else:
            text += f"No example: it {reasons[command]}.\n\n"
    return text


def _example(call: str, result: str, sent: list[str]) -> str:
    lines = [call]
    lines += [f"  with {_message(packet)}" for packet in re.findall(r"\b(7b(?:[0-9a-f]{2})*7d)\b", call)]
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
    return json.dumps(record.json_of(message)[1] or message.members, ensure_ascii=False)


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
    recorded = Recorded()
    texts = {
        DOCS / "messages.md": pages.message_page(recorded),
        DOCS / "commands.md": pages.command_page(),
        DOCS / "for-companion-authors.md": printed(
            DOCS / "for-companion-authors.md",
            {"refused": refused_page(recorded), "asked": asked_page(recorded), "told": told_page(recorded)},
        ),
        DOCS / "for-script-authors.md": printed(DOCS / "for-script-authors.md", {"calls": calls_page()}),
        DOCS / "host-procedures.md": printed(DOCS / "host-procedures.md", {"procedures": procedures_page()}),
    }
    if recorded.missing:
        sys.exit(f"not in tests/conversations: {', '.join(recorded.missing)}; record them: ./dev play --record")
    stale = [page for page, text in texts.items() if text != page.read_text(encoding="utf-8")]
    for page in stale:
        if "--check" in sys.argv:
            print(f"{page.relative_to(REPOSITORY)} is stale: run ./dev docs")
        else:
            page.write_text(texts[page], encoding="utf-8", newline="\n")
    return 1 if stale and "--check" in sys.argv else 0


if __name__ == "__main__":
    run("docs", main)
