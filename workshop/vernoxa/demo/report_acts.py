"""Drawings, checks and reports: what the companion asks for and gets in files and messages of their own."""

from __future__ import annotations

import pathlib

from vernoxa.companion import tables
from vernoxa.companion.view import View
from vernoxa.drawings import page_file
from vernoxa.report import collect, page as report_page
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import Missing
from vernoxa.wire import paths


async def pages_are_drawn(scene: Scene, name: str, text: str = "") -> dict[str, page_file.Page]:
    """All pages of a design as files. `text` is one that must be on a page."""
    title = paths.name_of(name)
    data = await scene.ask(f"the pages of {title} are drawn", "CreateSVG", 120, ProjectPath=name)
    folder = paths.to_local(data["SVGPath"])
    try:
        pages = {page.name: page for page in page_file.read_all(folder)}
    except (OSError, ValueError) as error:
        raise Missing(f"page files in {folder}: {error!r}") from error
    known = await scene.ask("the pages that there are", "GetActiveProPages")
    wanted = next(project["Pages"] for project in known["Open"] if project["ProjectPath"] == name)
    if sorted(pages) != sorted(wanted):
        raise Missing(f"the pages {', '.join(wanted)}, not {', '.join(pages) or 'none'}")
    undefined = [symbol for page in pages.values() for symbol in page.undefined]
    if undefined:
        raise Missing(f"the symbols {', '.join(undefined)}")
    drawn = {part for page in pages.values() for part in page.parts}
    lost = set(scene.answers.designs[paths.key_of(name)].references) - drawn
    if lost:
        raise Missing(f"the parts {', '.join(sorted(lost))} on the pages")
    if text and not any(text in page.texts for page in pages.values()):
        raise Missing(f"the text {text} on a page")
    scene.seen(f"{title}: {len(pages)} pages were drawn with {len(drawn)} parts, every one of the bill")
    return pages


async def design_is_checked(scene: Scene, name: str) -> None:
    """All four checks run and end; what they found is in the companion's books."""
    await scene.ask(f"{paths.name_of(name)} is checked", "DsnCheck", 60, ProjectPath=name)
    for check, title in tables.CHECKS.items():
        # The report page has had it carried out before.
        await scene.hear(f"check {check}, {title}, is over", "DsnCheck_EndResult", 60, count=2, id=check)
    # The placed module has brought references that were there already.
    if not any("位号重名" in finding["Comment"] for finding in scene.answers.findings.get("1001", [])):
        raise Missing("a finding that a reference is there twice")
    scene.seen(f"{paths.name_of(name)} was checked: {sum(map(len, scene.answers.findings.values()))} findings")


async def packages_are_reported(scene: Scene, name: str, library: pathlib.Path) -> None:
    """The properties of a design, of a library that is made of it, and of one part of that."""
    # Nothing doubles the backslashes of this row, so the host would read them as escapes.
    windows_library = paths.to_windows(library).replace("\\", "/")
    await scene.do("a library is made", f"writeLibrary {{{windows_library}}}", "^wrote the library")
    part = await scene.do("it has parts", f"libraryParts {{{windows_library}}}", r"^library parts: (\S+)")
    for what, command, members in (
        ("design", "GetDsnAllPackageInfo", {"ProjectPath": name}),
        ("library", "GetOlbAllPackageInfo", {"ProjectPath": windows_library}),
        (f"library part {part}", "GetOlbObjectPackageInfo", {"ProjectPath": windows_library, "ObjName": part}),
    ):
        data = await scene.ask(f"the properties of the {what}", command, 30, **members)
        if "Value" not in [property_name for property_name, _ in data["item"]]:
            raise Missing(f'"Value" among the properties of the {what}')
    scene.seen(f"the properties of {paths.name_of(name)}, of a library made of it and of {part} in that were reported")


def report_is_written(scene: Scene, out: pathlib.Path) -> None:
    with open(out, "w", encoding="utf-8") as stream:
        view = View(colour=False, shown=(), log=stream)
        for table in tables.collected(scene.answers):
            view.table("", table, whole=True)
    scene.seen(f"findings, reports and modules as a text: {out}")


async def report_page_is_made(scene: Scene, name: str, out: pathlib.Path) -> None:
    """Everything about a design in one page for a browser; left out where its libraries are not installed."""
    try:
        design = await scene.step(
            f"everything about {paths.name_of(name)} is collected", collect.collect(scene.companion, name), 240
        )
        report_page.write(out, design)
    except report_page.NotBuilt as error:
        scene.say(f"no report: {error}")
        return
    scene.seen(f"the report of {paths.name_of(name)}: {out}")
