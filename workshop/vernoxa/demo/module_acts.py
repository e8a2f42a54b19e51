"""A module's way from one design through the companion into another, and what is the same at its end."""

from __future__ import annotations

import json

from vernoxa.drawings.page_file import Page
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import Missing
from vernoxa.wire import paths

# Placing marks each object with where it came from.
_MARKS = ("NimbMarket", "MarketResID", "MarketUserID")


async def module_travels(scene: Scene, source: str, drawn: Page, target: str, target_page: str, text: str = "") -> str:
    """A page of `source` is shared, its path asked for, placed on a page of `target`, and shared from there again.

    `text` is one that the module must hold. Gives the number under which the companion keeps it.
    """
    page, parts = drawn.name, sorted(set(drawn.parts))
    await scene.do("the companion's user is known", "userId", f"user: {scene.answers.user_id}$")
    await scene.do(f"page {page} is in front", f"showPage {{{page}}} {{{source}}}", "^showing ")
    await scene.do(f"a block about {len(parts)} parts is selected", f"selectBlock {' '.join(parts)}", "^selected ")
    first = await _shared(scene, source, page)
    path = await _path_of(scene, first)
    await scene.do(f"{paths.name_of(target)} is in front", f"showPage {{{target_page}}} {{{target}}}", "^showing ")
    since = len(scene.host_lines)
    await scene.ask(
        f"module {first} is placed",
        "PlaceDSNModule",
        60,
        sumPins="0",
        price="0",
        dsnDatPath=path,
        dsnBmpPath="",
        uploadResId=first,
        uploadUserId=scene.answers.user_id,
        selfModule="1",
    )
    await scene.told("its parts are in the design", r"^placed ([1-9].*)", since, 120)
    left = [file.name for file in paths.to_local(path).parent.iterdir()]
    if left:
        raise Missing(f"an empty folder where the module was, not {', '.join(left)}")

    second = await _shared(scene, target, target_page)
    before, after = (_content(scene, identifier) for identifier in (first, second))
    _compare(before, after)
    if text not in json.dumps(after, ensure_ascii=False):
        raise Missing(f"the text {text} in the module")
    scene.seen(
        f"module {first}, a page of {paths.name_of(source)}, was shared and placed in {paths.name_of(target)}: "
        f"the same {len(before['lib'])} library parts and {len(before['children'])} objects"
    )
    return first


async def part_is_placed(scene: Scene, design: str, page: str, module: str, value: str) -> None:
    """A single part of a kept module, as a catalogue offers it, lands on a page with the catalogue's properties."""
    await scene.do(f"page {page} is in front again", f"showPage {{{page}}} {{{design}}}", "^showing ")
    path = await _path_of(scene, module)
    part = next(part for part in _content(scene, module)["lib"] if part["Type"] == "Part")
    since = len(scene.host_lines)
    await scene.ask(
        f"the part {part['Name']} is placed",
        "PlaceDsnLibPartModule",
        60,
        PartIndex=part["PartIndex"],
        Designator=part["Designator"],
        dsnDatPath=path,
        ViewBoxWidth=100,
        ViewBoxHeight=100,
        packageName="封装0603",
        PartNumber="PN-1",
        PartName=part["Name"],
        prefix="XX",
        value=value,
        cateId="",
        companyId="",
    )
    await scene.told("it is in the design", "^placed (1 parts.*)", since, 60)
    bom = await scene.ask("the BOM with it", "GenerateBOM", ProjectPath=design)
    line: dict = next((line for line in bom["Stick"] if line["PartRef"] == "XX1"), {})
    if (line.get("Value"), line.get("PCBFootprint"), line.get("PartNumber")) != (value, "封装0603", "PN-1"):
        raise Missing(f"the part XX1 with its value, footprint and number in the BOM, not {line}")
    scene.seen(f"a single part of module {module} was placed with the properties of a catalogue")


async def _path_of(scene: Scene, module: str) -> str:
    path = await scene.do(f"module {module} is found", f"resourcePath {module}", rf"^resource {module}: (.+)")
    return path.replace("\\\\", "\\")


async def _shared(scene: Scene, design: str, page: str) -> str:
    """The number under which the companion keeps the module."""
    known = len(scene.answers.uploads)
    await scene.ask(f"the selection on {page} is shared", "SelectModule", 60, ProjectPath=design, Page=page)
    await scene.until("the module has arrived", lambda: len(scene.answers.uploads) > known, 20)
    return list(scene.answers.uploads)[-1]


def _content(scene: Scene, identifier: str) -> dict:
    file = paths.to_local(scene.answers.modules[identifier])
    content = json.loads(file.read_text(encoding="utf-8"))
    for thing in content["children"]:
        for mark in _MARKS:
            thing.get("Property", {}).pop(mark, None)
    return content


def _compare(before: dict, after: dict) -> None:
    if not before["lib"] or not before["children"]:
        raise Missing("library parts and objects in the module")
    difference = first_difference(before, after)
    if difference:
        raise Missing(f"the same module after its way: {difference}")


def first_difference(one: object, other: object, where: str = "") -> str:
    """Where two JSON values differ first, order of members included, and how; "" when they do not."""
    if isinstance(one, dict) and isinstance(other, dict) and list(one) == list(other):
        pairs = [(name, one[name], other[name]) for name in one]
    elif isinstance(one, list) and isinstance(other, list) and len(one) == len(other):
        pairs = [(str(at), *pair) for at, pair in enumerate(zip(one, other))]
    else:
        return "" if json.dumps(one) == json.dumps(other) else f"{where or 'all'} was {one!r:.300} and is {other!r:.300}"
    differences = (first_difference(old, new, f"{where}/{name}") for name, old, new in pairs)
    return next(filter(None, differences), "")
