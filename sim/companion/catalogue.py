"""The one table of what the companion can ask, and the one of what the plug-in tells.

Completion, help, the values filled in at the prompt and the checks of what arrives all come from here.
"""

from __future__ import annotations

import dataclasses
import pathlib
import re

REPLY_SUFFIX = "_EndResult"

# Kinds of members: how a value is written at the prompt and sent.
TEXT, PATH, NUMBER, TEXTS, REFERENCES, ANY = "text", "path", "number", "texts", "references", "any"

BOM_LINE = ("PartNumber", "Value", "PartRef", "PartName", "PCBFootprint", "PinNumber")



def _purposes() -> dict[str, str]:
    reference = pathlib.Path(__file__).resolve().parents[2] / "docs" / "messages.md"
    section = reference.read_text(encoding="utf-8").partition("## From the companion\n")[2].partition("\n## ")[0]
    return dict(re.findall(r"^\| `(\w+)` \|.*\| (.*) \|$", section, re.MULTILINE))


# What each command of the companion is for, out of the reference that is printed from the plug-in's table.
PURPOSES = _purposes()


@dataclasses.dataclass(frozen=True)
class Shape:
    """One form that a message may take. Member names stand in their order; a trailing "?" marks one that may be absent.

    `data` of None leaves the members of "Data" open. `items` gives the members of the objects in arrays of "Data".
    """

    top: tuple[str, ...]
    data: tuple[str, ...] | None = ()
    result: str | None = None
    formatted: bool = False
    items: dict[str, tuple[str, ...]] = dataclasses.field(default_factory=dict)
    fixed: dict[str, str] = dataclasses.field(default_factory=dict)
    name: str = ""


@dataclasses.dataclass(frozen=True)
class Member:
    name: str
    kind: str = TEXT
    default: str | None = None
    needed: bool = True


@dataclasses.dataclass(frozen=True)
class Command:
    name: str
    members: tuple[Member, ...] = ()
    replies: tuple[Shape, ...] = ()
    # A report that the host side sends in messages of its own comes instead of a reply.
    follows: str = ""

    @property
    def purpose(self) -> str:
        """In the words of the table that the plug-in runs on; "" for a command that it does not have."""
        return PURPOSES.get(self.name, "")

    @property
    def answered(self) -> bool:
        return bool(self.replies) or self.follows.endswith(REPLY_SUFFIX)


@dataclasses.dataclass(frozen=True)
class Told:
    name: str
    purpose: str
    shapes: tuple[Shape, ...] = ()


def _done(*data: str, **more) -> Shape:
    return Shape(("Data", "Command", "Result"), data, "0", name="done", **more)


def _done_with_empty_error(*data: str, **more) -> Shape:
    return Shape(("Data", "Command", "Result", "ErrInfo"), data, "0", fixed={"ErrInfo": ""}, name="done", **more)


FAILED = Shape(("Data", "Command", "Result", "ErrInfo"), (), "1", name="failed")
FAILED_INSIDE = Shape(("Data", "Command", "Result"), ("ErrInfo",), "1", name="failed")
# What every request that could not be carried out is answered with.
REFUSED = Shape(("ErrInfo", "Result", "Data", "Command"), (), "1", formatted=True, name="refused")

_PROJECT = Member("ProjectPath", PATH)
_MARKET = tuple(Member(name, needed=False) for name in ("dsnBmpPath", "uploadResId", "uploadUserId", "selfModule"))

COMMANDS: tuple[Command, ...] = (
    Command(
        "GetActiveProPages",
        replies=(_done("ErrInfo", "Open", items={"Open": ("ProjectPath", "Pages")}), FAILED_INSIDE),
    ),
    Command("SetPlacePortType", (Member("Type", NUMBER, "0"),), (_done("ErrInfo"),)),
    Command("SetPlaceOffpageType", (Member("Type", NUMBER, "0"),), (_done("ErrInfo"),)),
    Command("AdjustRefAndValue", replies=(_done(), FAILED)),
    Command("RenameRef", (Member("Type", NUMBER, "0"),), (_done(), FAILED)),
    Command("GetOlbObjectPackageInfo", (_PROJECT, Member("ObjName")), follows="GetOlbObjectPackageInfo_EndResult"),
    Command("GetDsnAllPackageInfo", (_PROJECT,), follows="GetDsnAllPackageInfo_EndResult"),
    Command("GetOlbAllPackageInfo", (_PROJECT,), follows="GetOlbAllPackageInfo_EndResult"),
    Command("DsnCheck", (_PROJECT,), follows="DsnCheck_Result"),
    Command("DsnCheckActiveProj", (_PROJECT,), follows="DsnCheck_Result"),
    Command(
        "JumpToDsn",
        (_PROJECT, Member("PageName"), Member("PagePos", default="0 0"), Member("Sch", default="SCHEMATIC1")),
        (_done(),),
    ),
    Command(
        "AutoDealwithDsn",
        (_PROJECT, Member("id", needed=False), Member("*", ANY, needed=False)),
        (_done("id"),),
    ),
    Command(
        "SelectModule",
        (
            Member("priceK", default="1", needed=False),
            Member("pinPrice", default="0.1", needed=False),
            Member("ProjectPath", PATH, needed=False),
            Member("Page"),
        ),
        (_done(),),
    ),
    Command("ClearCurrentDesign", replies=(_done(),)),
    Command(
        "PlaceDsnLibPartModule",
        (
            Member("PartIndex", default="0"),
            Member("Designator", default="U?", needed=False),
            Member("dsnDatPath"),
            Member("ViewBoxWidth", NUMBER, "100"),
            Member("ViewBoxHeight", NUMBER, "100"),
            *(Member(name, needed=False) for name in ("packageName", "PartNumber")),
            Member("PartName"),
            *(Member(name, needed=False) for name in ("prefix", "value", "cateId", "companyId")),
        ),
        (_done(), FAILED),
    ),
    Command(
        "PlaceDSNModule",
        (Member("sumPins", default="0", needed=False), Member("price", default="0", needed=False), Member("dsnDatPath"))
        + _MARKET,
        (_done(), FAILED),
    ),
    Command(
        "GenerateBOM",
        (_PROJECT, Member("PartNumberKey", needed=False), Member("PartNameKey", needed=False)),
        (
            _done(
                "Stick",
                "NotStick",
                "NotPartNumber",
                items={"Stick": BOM_LINE, "NotStick": BOM_LINE, "NotPartNumber": BOM_LINE},
            ),
        ),
    ),
    Command("JumpToPartRef", (_PROJECT, Member("PartRef")), (_done(), FAILED)),
    Command("CheckOpenState", (_PROJECT,), (_done("State"),)),
    Command("SwitchStickOrNotStick", replies=(_done("ErrInfo"),)),
    Command("SetToNotStick", (_PROJECT, Member("item", REFERENCES)), (_done_with_empty_error(),)),
    Command("SetToStick", (_PROJECT, Member("item", REFERENCES)), (_done_with_empty_error(),)),
    Command("Cancel", (_PROJECT,), (_done("ExitCommand"),)),
    Command("ExitBomViewMode", (_PROJECT,), (_done_with_empty_error(),)),
    Command("EnterBomViewMode", (_PROJECT, Member("Stick", TEXTS, "")), (_done(),)),
    Command(
        "GetPartPropertyList",
        (_PROJECT,),
        (_done_with_empty_error("PartNameProperty", "PartNumberProperty", "PropertyList"), FAILED),
    ),
    Command("SetNewGuid", (_PROJECT,), (_done_with_empty_error("Guid"), FAILED)),
    Command("CreateSVG", (_PROJECT,), (_done_with_empty_error("SVGPath", "PreviewPic"), FAILED)),
    Command("CloseOrcad"),
)

_FILE_STATUS = ("Command", "Result", "Data")
_REQUEST = ("Command", "Data", "Result")
_CHECK = ("Command", "Data", "Result", "ErrInfo")

TOLD: tuple[Told, ...] = (
    Told(
        "FileStatus",
        "a design was opened, saved or closed",
        (
            Shape(
                _FILE_STATUS,
                ("Status", "FileName", "Pid", "AllegroPath", "PinCount"),
                "0",
                fixed={"Status": "Open"},
                name="opened",
            ),
            Shape(_FILE_STATUS, ("Status", "FileName", "Pid", "AllegroPath"), "0", fixed={"Status": "Save"}, name="saved"),
            Shape(_FILE_STATUS, ("Status", "FileName"), "0", fixed={"Status": "Close"}, name="closed"),
        ),
    ),
    Told("TryUpdateBom", "the BOM should be fetched anew", (Shape(("Command",), None),)),
    Told(
        "AddToBom",
        "parts were marked fitted",
        (Shape(("Data", "Command", "Result"), ("Stick",), "0", items={"Stick": BOM_LINE}),),
    ),
    Told(
        "RemoveFromBom",
        "parts were marked not fitted",
        (Shape(("Data", "Command", "Result"), ("NotStick",), "0", items={"NotStick": BOM_LINE}),),
    ),
    Told(
        "DsnCheck_Result",
        "one finding of a design check",
        (
            Shape(
                _CHECK,
                ("id", "RequiredValue", "ActualValue", "Comment", "PagePos", "PageName", "ViewBox", "Sch"),
                "0",
                fixed={"RequiredValue": "", "ViewBox": "", "ErrInfo": ""},
            ),
        ),
    ),
    Told("DsnCheck_EndResult", "a design check is over", (Shape(_CHECK, ("id",), "0", fixed={"ErrInfo": ""}),)),
    Told(
        "SelectModule_EndResult",
        "a module to upload",
        (
            Shape(
                ("Data", "Command", "Result"),
                ("dsnBmpPath", "dsnDatPath", "Part", "Wire", "Keys", "sumPins", "selfPins", "copyPrice"),
                "0",
                formatted=True,
                items={"Part": ("Id", "Ref", "Package?")},
                name="upload",
            ),
        ),
    ),
    *(
        Told(name + REPLY_SUFFIX, "properties for a report", (Shape(_FILE_STATUS, ("item",), "0", name="report"),))
        for name in ("GetDsnAllPackageInfo", "GetOlbAllPackageInfo", "GetOlbObjectPackageInfo")
    ),
    Told("GetSelfId", "asks for the signed-in user", (Shape(_REQUEST, (), "0"),)),
    Told("GetMarketResPath", "asks where a module lies", (Shape(_REQUEST, ("ResId",), "0"),)),
)

# How the comments of the findings end.
FINDING_WORDS = (
    "器件未编号",
    "位号重名",
    "属性包含非法字符",
    "引脚未连接",
    "器件无封装",
    "器件存在多个封装",
    "引脚未编号",
    "引脚名重复",
    "引脚编号重复",
    "同一器件Value值不同",
)

# Properties that a report leaves out.
_LEFT_OUT_OF_LIBRARIES = frozenset(
    (
        "Name",
        "Pin Numbers Visible",
        "Implementation Type",
        "Implementation",
        "Implementation Path",
        "Pin Names Visible",
        "Pin Names Rotate",
        "Part Reference",
        "Reference",
    )
)
LEFT_OUT = {
    "GetDsnAllPackageInfo_EndResult": frozenset(
        (
            "Name",
            "ID",
            "Implementation Type",
            "Implementation",
            "Implementation Path",
            "Reference",
            "Designator",
            "Part Reference",
        )
    ),
    "GetOlbAllPackageInfo_EndResult": _LEFT_OUT_OF_LIBRARIES,
    "GetOlbObjectPackageInfo_EndResult": _LEFT_OUT_OF_LIBRARIES,
}

# Asked on a connection of their own: one request, one reply.
QUERIES = ("GetSelfId", "GetMarketResPath")

_BY_NAME = {command.name: command for command in COMMANDS}
_TOLD_BY_NAME = {told.name: told for told in TOLD}


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
