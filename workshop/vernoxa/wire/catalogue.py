"""What the companion can ask and what the plug-in tells, out of docs/protocol.json, which the plug-in's tables print.

Completion, help, the values filled in at the prompt and the checks of what arrives all come from here.
"""

from __future__ import annotations

import dataclasses
import json
from typing import Any

from vernoxa.places import DOCS

PROTOCOL = json.loads((DOCS / "protocol.json").read_text(encoding="utf-8"))

REPLY_SUFFIX = PROTOCOL["link"]["replySuffix"]

# Kinds of members: how a value is written at the prompt and sent.
TEXT, PATH, NUMBER, TEXTS, REFERENCES, ANY = "text", "path", "number", "texts", "references", "any"

# What the prompt fills in when nothing is typed.
_USUAL = {
    ("SetPlacePortType", "Type"): 0,
    ("SetPlaceOffpageType", "Type"): 0,
    ("RenameRef", "Type"): 0,
    ("JumpToDsn", "PagePos"): "0 0",
    ("JumpToDsn", "Sch"): "SCHEMATIC1",
    ("SelectModule", "priceK"): "1",
    ("SelectModule", "pinPrice"): "0.1",
    ("PlaceDsnLibPartModule", "PartIndex"): "0",
    ("PlaceDsnLibPartModule", "Designator"): "U?",
    ("PlaceDsnLibPartModule", "ViewBoxWidth"): 100,
    ("PlaceDsnLibPartModule", "ViewBoxHeight"): 100,
    ("PlaceDSNModule", "sumPins"): "0",
    ("PlaceDSNModule", "price"): "0",
    ("EnterBomViewMode", "Stick"): "",
}
# What the prompt insists on, though the plug-in does without it.
_WANTED = (
    ("PlaceDsnLibPartModule", "dsnDatPath"),
    ("PlaceDSNModule", "dsnDatPath"),
    ("JumpToPartRef", "ProjectPath"),
    ("JumpToPartRef", "PartRef"),
)


@dataclasses.dataclass(frozen=True)
class Shape:
    """One form that a message may take. Member names stand in their order; a trailing "?" marks one that may be absent.

    `items` gives the members of the objects in arrays of "Data", `values` all that a member may be.
    """

    top: tuple[str, ...]
    data: tuple[str, ...] = ()
    result: str | None = None
    formatted: bool = False
    items: dict[str, tuple[str, ...]] = dataclasses.field(default_factory=dict)
    values: dict[str, list[str]] = dataclasses.field(default_factory=dict)
    name: str = ""
    purpose: str = ""


@dataclasses.dataclass(frozen=True)
class Member:
    name: str
    kind: str = TEXT
    default: str | None = None
    needed: bool = True


@dataclasses.dataclass(frozen=True)
class Command:
    name: str
    purpose: str
    members: tuple[Member, ...] = ()
    replies: tuple[Shape, ...] = ()
    # A report that the host side sends in messages of its own comes instead of a reply.
    follows: str = ""

    @property
    def answered(self) -> bool:
        return bool(self.replies) or self.follows.endswith(REPLY_SUFFIX)


@dataclasses.dataclass(frozen=True)
class Told:
    name: str
    shapes: tuple[Shape, ...]


def _names(members: list[dict]) -> tuple[str, ...]:
    return tuple(member["name"] + "?" * (not member["needed"]) for member in members)


def _shape(top: tuple[str, ...], data: list[dict], **more: Any) -> Shape:
    items = {}
    for member in data:
        names = _names(member.get("items", {}).get("members", []))
        if names and names != ("*",):
            items[member["name"]] = names
    values = {member["name"]: member["values"] for member in data if "values" in member} | more.pop("fixed", {})
    return Shape(top, _names(data), "0" if "Result" in top else None, items=items, values=values, **more)


_FAILED = Shape(("Data", "Command", "Result", "ErrInfo"), (), "1", name="failed")
_FAILED_INSIDE = Shape(("Data", "Command", "Result"), ("ErrInfo",), "1", name="failed")
# What every request that could not be carried out is answered with.
REFUSED = Shape(("ErrInfo", "Result", "Data", "Command"), (), "1", formatted=True, name="refused")


def _replies(answer: dict | None) -> tuple[Shape, ...]:
    if answer is None:
        return ()
    top: tuple[str, ...] = ("Data", "Command", "Result")
    fixed = {}
    if answer["emptyErrInfo"]:
        top, fixed = (*top, "ErrInfo"), {"ErrInfo": [""]}
    done = _shape(top, answer["data"], fixed=fixed, name="done")
    if answer["failure"] is None:
        return (done,)
    return done, _FAILED_INSIDE if answer["failure"]["errInfoIn"] == "Data" else _FAILED


def _member(command: str, member: dict) -> Member:
    place = (command, member["name"])
    usual = _USUAL.get(place)
    kind = TEXT
    if member["name"] == "*":
        kind = ANY
    elif member["name"] == "ProjectPath":
        kind = PATH
    elif member["kind"] == "array":
        kind = REFERENCES if member["items"]["kind"] == "object" else TEXTS
    elif member["kind"] == "number" or isinstance(usual, int):
        kind = NUMBER
    return Member(member["name"], kind, None if usual is None else str(usual), member["needed"] or place in _WANTED)


def _command(request: dict) -> Command:
    members = tuple(_member(request["name"], member) for member in request["members"])
    return Command(
        request["name"], request["purpose"], members, _replies(request["answer"]), request["followedBy"] or ""
    )


def _told() -> tuple[Told, ...]:
    shapes: dict[str, list[Shape]] = {}
    for message in PROTOCOL["messages"]:
        shape = _shape(
            tuple(message["envelope"]),
            message["data"],
            formatted=message["printed"] == "formatted",
            fixed={"ErrInfo": [""]} if "ErrInfo" in message["envelope"] else {},
            name=message["form"],
            purpose=message["purpose"],
        )
        shapes.setdefault(message["name"], []).append(shape)
    return tuple(Told(name, tuple(forms)) for name, forms in shapes.items())


COMMANDS = tuple(_command(request) for request in PROTOCOL["requests"] if request["side"] == "companion")
TOLD = _told()
_BY_NAME = {command.name: command for command in COMMANDS}
_TOLD_BY_NAME = {told.name: told for told in TOLD}

# What the plug-in's thread asks the host; the companion never sees these.
THREAD_REQUESTS = tuple(
    request["name"]
    for request in PROTOCOL["requests"]
    if request["side"] == "linkThread" and request["name"] not in _TOLD_BY_NAME
)
# Asked on a connection of their own: one request, one reply.
QUERIES = tuple(message["name"] for message in PROTOCOL["messages"] if message["connection"] == "own")
# What the companion answers.
ANSWERED = tuple(dict.fromkeys(message["name"] for message in PROTOCOL["messages"] if message["answer"]))

# Members of a line of a bill of materials.
BOM_LINE = _TOLD_BY_NAME["AddToBom"].shapes[0].items["Stick"]

# How the comments of the findings end.
FINDING_WORDS = (
    "器件未编号", "位号重名", "属性包含非法字符", "引脚未连接", "器件无封装", "器件存在多个封装", "引脚未编号", "引脚名重复",
    "引脚编号重复", "同一器件Value值不同",
)

# Properties that a report leaves out.
_LEFT_OUT = frozenset(
    ("Name", "Implementation Type", "Implementation", "Implementation Path", "Reference", "Part Reference")
)
_OF_LIBRARIES = _LEFT_OUT | {"Pin Numbers Visible", "Pin Names Visible", "Pin Names Rotate"}
LEFT_OUT = {
    "GetDsnAllPackageInfo_EndResult": _LEFT_OUT | {"ID", "Designator"},
    "GetOlbAllPackageInfo_EndResult": _OF_LIBRARIES,
    "GetOlbObjectPackageInfo_EndResult": _OF_LIBRARIES,
}


def find(name: str) -> Command | None:
    return _BY_NAME.get(name)


def shapes_of(name: str) -> tuple[Shape, ...]:
    """Every form that a message of this name may take; empty for a name that nobody sends."""
    told = _TOLD_BY_NAME.get(name)
    shapes = told.shapes if told else ()
    if name.endswith(REPLY_SUFFIX):
        # A name that no command bears is refused all the same.
        command = find(name[: -len(REPLY_SUFFIX)])
        shapes += (command.replies if command else ()) + (REFUSED,)
    return shapes


def is_told(name: str, shape: Shape) -> bool:
    """Whether the plug-in sends a message of this form without having been asked."""
    told = _TOLD_BY_NAME.get(name)
    return told is not None and any(shape is own for own in told.shapes)
