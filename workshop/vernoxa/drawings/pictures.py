"""Pages as SVG files, and one web page with all of them."""

from __future__ import annotations

import html
import pathlib

from . import svg
from .page_file import Page

_VIEWER = pathlib.Path(__file__).with_name("viewer.html")


def write(pages: dict[str, Page], out: pathlib.Path) -> list[tuple[Page, dict[str, int]]]:
    """`pages` by the names of their pictures. Gives each page with how often it uses symbols that nobody defined."""
    out.mkdir(parents=True, exist_ok=True)
    drawn, templates = [], []
    for number, (name, page) in enumerate(pages.items()):
        (out / f"{name}.svg").write_text(svg.Picture(page).text, encoding="utf-8")
        picture = svg.Picture(page, f"page{number}-")
        title = html.escape(f"{page.schematic} / {page.name}")
        undefined = sum(picture.undefined.values())
        templates.append(f'<template data-title="{title}" data-undefined="{undefined}">{picture.text}</template>')
        drawn.append((page, picture.undefined))
    viewer = _VIEWER.read_text(encoding="utf-8").replace("<!-- pages -->", "\n".join(templates))
    (out / "index.html").write_text(viewer, encoding="utf-8")
    return drawn
