"""The reference pages, out of docs/protocol.json."""

from __future__ import annotations

from typing import Iterator

from vernoxa.wire import record
from vernoxa.wire.catalogue import PROTOCOL, REPLY_SUFFIX

from .recorded import Recorded

LONGEST_EXAMPLE = 60
_PRINTED = "<!-- for developers -->\nPrinted by `./dev docs` from [protocol.json](protocol.json); do not edit.\n<!-- end -->\n"
_KINDS = {"text": "text", "number": "whole number", "textOrNumber": "text or whole number"}


def _listed(names: list[str]) -> str:
    return ", ".join(f"`{name}`" for name in names)


# --- members -------------------------------------------------------------------------------------------------------


class Examples:
    """Of the members of one message, as it was recorded."""

    def __init__(self, recorded: Recorded, who: str, name: str, shape: str = ""):
        self._of = (recorded, who, name, shape)

    def __call__(self, path: tuple[str, ...]) -> str:
        recorded, who, name, shape = self._of
        value = recorded.value(who, name, shape, path)
        text = "" if value is None else str(value).replace("|", "\\|")
        return "" if not text or len(text) > LONGEST_EXAMPLE or "`" in text else f"`{text}`"


def _rows(members: list[dict], example: Examples, above: tuple[str, ...] = ()) -> Iterator[tuple[str, str, str, str]]:
    for member in members:
        path = (*above, member["name"])
        shown = "[].".join(path)
        items = member.get("items", {})
        kind = _KINDS.get(member["kind"]) or f"array of {items['kind']}s"
        # One value stands in the meaning already.
        values = f" One of {_listed(member['values'])}." if len(member.get("values", [])) > 1 else ""
        name = "any other" if member["name"] == "*" else f"`{shown}`"
        yield name, kind + ", optional" * (not member["needed"]), member["meaning"] + values, example(path)
        yield from _rows(items.get("members", []), example, path)


def _table(title: str, members: list[dict], example: Examples) -> str:
    rows = list(_rows(members, example))
    if not rows:
        return ""
    shown = any(row[3] for row in rows)
    text = f"\n| {title} | Kind | Meaning |" + " Example |" * shown + "\n" + "|---" * (3 + shown) + "|\n"
    return text + "".join("| " + " | ".join(row[: 3 + shown]) + " |\n" for row in rows)


# --- messages ------------------------------------------------------------------------------------------------------


def _answer(request: dict, example: Examples) -> str:
    name, answer = request["name"] + REPLY_SUFFIX, request["answer"]
    if answer is None:
        follows = f"; `{request['followedBy']}` follows" if request["followedBy"] else ""
        return f"\nNot answered{follows}.\n"
    text = _table("Member of the answer", answer["data"], example)
    text += f"\nAnswered with `{name}`" + ', whose "Data" is empty' * (not answer["data"])
    text += ', and an empty "ErrInfo" beside "Result"' * answer["emptyErrInfo"] + ".\n"
    if answer["failure"]:
        place = 'in "Data"' if answer["failure"]["errInfoIn"] == "Data" else 'beside "Result"'
        text += f'When it fails, "ErrInfo" {place} says why. {answer["failure"]["errInfo"]}\n'
    return text


def _requests(side: str, recorded: Recorded) -> str:
    text = ""
    for request in (request for request in PROTOCOL["requests"] if request["side"] == side):
        name = request["name"]
        text += f"\n### {name}\n\n{request['purpose']}\n"
        text += _table('Member of "Data"', request["members"], Examples(recorded, record.COMPANION, name))
        text += _answer(request, Examples(recorded, record.PLUG_IN, name + REPLY_SUFFIX, "done"))
        text += f"\nCalls {_listed(request['calls'])}.\n" if request["calls"] else ""
    return text


def _message(message: dict, recorded: Recorded) -> str:
    name, form = message["name"], message["form"]
    text = f"\n### {name}{', ' * bool(form)}{form}\n\n{message['purpose']}\n"
    text += _table('Member of "Data"', message["data"], Examples(recorded, record.PLUG_IN, name, form))
    answer = Examples(recorded, record.COMPANION, name + REPLY_SUFFIX)
    text += _table("Member of the answer that is read", message["answer"] or [], answer)
    envelope = ", ".join(f'"{member}"' for member in message["envelope"])
    text += f"\nMembers in the order {envelope}" + ", printed with tabs and line ends" * (message["printed"] == "formatted")
    own = "; on a connection of its own" * (message["connection"] == "own")
    return text + f"; made by {_listed(message['sentBy'])}{own}.\n"


def message_page(recorded: Recorded) -> str:
    text = f"""\
# Messages

{_PRINTED}Whole messages as they were sent stand in [the page for authors of
companions](for-companion-authors.md).

A message is a JSON object with "Command" and "Data" in the code page. A member of a request that is not optional is
needed: without it, or with one of another kind, nothing is evaluated and the reply is "command error" ("command1 error"
to the link thread). A whole number may be a JSON number, whose fraction is cut off, or a text of decimal digits. Members
that are not listed are ignored. What an answer holds is there when "Result" is "0".

## What the companion asks

Received through `packetParser`.
"""
    text += _requests("companion", recorded)
    text += "\n## What the link thread asks\n\nReceived through `packetParserForPthread`.\n"
    text += _requests("linkThread", recorded)
    text += """
## What the plug-in says

Sent on the connection of the host's scripts unless it is said otherwise; "Result" is "0" where there is one.
"""
    return text + "".join(_message(message, recorded) for message in PROTOCOL["messages"])


# --- commands ------------------------------------------------------------------------------------------------------


def arguments_table(arguments: list[dict]) -> str:
    if not arguments:
        return ""
    rows = (f"| `{each['name']}`{', optional' * each['optional']} | {each['meaning']} |\n" for each in arguments)
    return "\n| Argument | Meaning |\n|---|---|\n" + "".join(rows)


def command_page() -> str:
    text = f"""\
# Tcl commands of the plug-in

{_PRINTED}In the order of registration.

A missing argument reads as the empty text. A command that ends in an exception gives Tcl the completion code -1 and an
empty result, and leaves its name in the crash log. Calls of most of them stand in [the page for authors of
scripts](for-script-authors.md).

| # | Command and arguments | What it is for |
|---|---|---|
"""
    for position, command in enumerate(PROTOCOL["commands"], 1):
        text += f"| {position} | `{' '.join((command['name'], command['usage'])).strip()}` | {command['purpose']} |\n"
    text += "\n## Arguments and answers\n"
    answers = {"nothing": "Answers nothing.", "plain": "Answers: ", "packetText": "Answers a packet text: "}
    for command in PROTOCOL["commands"]:
        text += f"\n### {command['name']}\n\n{command['purpose']}\n{arguments_table(command['arguments'])}"
        if command["withoutArguments"]:
            text += f"\nWithout arguments: {command['withoutArguments']}\n"
        text += f"\n{answers[command['answer']['kind']]}{command['answer']['meaning']}\n"
        text += f"\nSends {_listed(command['sends'])}.\n" if command["sends"] else ""
        text += f"\nCalls {_listed(command['calls'])}.\n" if command["calls"] else ""
    return text
