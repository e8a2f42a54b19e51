"""What happens in the demo, act by act."""

from __future__ import annotations

from vernoxa.companion.answers import references_of
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import LINK_SECONDS, Missing
from vernoxa.wire import json_text, paths


async def design_becomes_known(scene: Scene, name: str) -> None:
    """A design is opened; the companion learns its name and pins and answers; the plug-in takes the answer in."""
    event = await scene.hear(
        f"{paths.name_of(name)} was opened", "FileStatus", LINK_SECONDS, Status="Open", FileName=name
    )
    pins = event.message.data["PinCount"]
    if not (pins.isdecimal() and int(pins) > 0):
        raise Missing(f'a number of pins, not "{pins}"')
    answer = {"Command": "FileStatus_EndResult", "Data": {"Path": paths.folder_of(name)}, "Result": "0"}
    text = json_text.from_code_page(json_text.print_plain(answer))
    await scene.until(
        "the companion's answer has reached the plug-in: its traffic log holds it",
        lambda: text in scene.installation.traffic(),
        20,
    )
    scene.seen(f"{paths.name_of(name)} was opened, {pins} pins; the companion's answer has reached the plug-in")


async def companion_restarts(scene: Scene, names: list[str]) -> None:
    """The companion ends and begins again: the host's script tells it what is open once it is connected."""
    since = await scene.companion_restarts()
    for name in names:
        title = f"the second companion heard of {paths.name_of(name)}, which comes with the link thread's next step"
        await scene.hear(title, "FileStatus", LINK_SECONDS, since=since, Status="Open", FileName=name)
    scene.seen(f"the companion ended and began again, and heard of {' and '.join(map(paths.name_of, names))}")


async def parts_are_marked(scene: Scene, name: str, value: str = "") -> None:
    """Pages, BOM, a part marked not fitted and found so in the next BOM, a jump. `value` is one that a part must have."""
    title = paths.name_of(name)
    data = await scene.ask("the open designs and their pages", "GetActiveProPages")
    pages = {project["ProjectPath"]: project["Pages"] for project in data["Open"]}
    if not pages.get(name):
        raise Missing(f"the pages of {title}, among {', '.join(pages) or 'none'}")

    bom = await scene.ask(f"the BOM of {title}", "GenerateBOM", ProjectPath=name)
    fitted = _references(bom["Stick"])
    if not fitted:
        raise Missing("a fitted part in the BOM")
    if value and value not in {line["Value"] for lines in bom.values() for line in lines}:
        raise Missing(f"a part with the value {value}")

    part = next((reference for reference in fitted if reference.startswith("R")), fitted[0])
    await scene.ask(f"{part} is marked not fitted", "SetToNotStick", ProjectPath=name, item=[{"PartRef": part}])
    bom = await scene.ask(f"the next BOM of {title}", "GenerateBOM", ProjectPath=name)
    if part not in _references(bom["NotStick"]) or part in _references(bom["Stick"]):
        raise Missing(f"{part} among the parts that are not fitted")
    parts = len(_references(bom["Stick"] + bom["NotStick"]))
    await scene.ask(f"a jump to {part}", "JumpToPartRef", ProjectPath=name, PartRef=part)
    scene.seen(f"{title}: {len(pages[name])} pages, {parts} parts; {part} was marked not fitted, and jumped to")


async def editor_closes(scene: Scene, name: str) -> None:
    await scene.ask("the editor is asked to close", "CloseOrcad")
    await scene.hear(f"{paths.name_of(name)} was closed", "FileStatus", 20, Status="Close", FileName=name)
    await scene.ended_tidily()
    scene.seen("the editor was asked to close, and ended tidily")


def _references(lines: list[dict]) -> list[str]:
    return [reference for line in lines for reference in references_of(line)]
