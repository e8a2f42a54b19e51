"""Turns a page into SVG."""

from __future__ import annotations

import re
from xml.sax.saxutils import escape, quoteattr

from .page_file import Page

# The elements and attributes that drawings are made of. Anything else in a file is not drawn.
_TAGS = {"line", "circle", "rect", "ellipse", "path", "polyline", "text"}
_ATTRIBUTES = {
    "style", "transform", "dominant-baseline", "x", "y", "x1", "y1", "x2", "y2", "cx", "cy", "r", "rx", "ry", "width",
    "height", "d", "points",
}
_NOT_XML = re.compile("[\x00-\x08\x0b\x0c\x0e-\x1f\ufffe\uffff]")
_MARK = (
    '<rect class="undefined" x="-15" y="-15" width="30" height="30"/>'
    '<path class="undefined" d="M-15-15L15 15M-15 15L15-15"/>'
)
_STYLE = (
    "text{font-family:Arial,'Noto Sans CJK SC','Microsoft YaHei',sans-serif;white-space:pre}"
    ".undefined{fill:none;stroke:#F0F;stroke-width:2;stroke-dasharray:4 2}"
    "text.undefined{fill:#F0F;stroke:none;font-size:9px}"
)


class Picture:
    """The SVG of one page, and how many symbols it uses that nobody defined."""

    def __init__(self, page: Page, prefix: str = "") -> None:
        # Names of symbols may hold anything, and those of two pages meet in one document: numbers are safe.
        self._ids = {name: f"{prefix}symbol{number}" for number, name in enumerate(page.symbols)}
        self.undefined: dict[str, int] = {}
        symbols = "".join(f"<g id={quoteattr(self._ids[name])}>{self._all(elements)}</g>"
                          for name, elements in page.symbols.items())
        size = f"{page.width:g} {page.height:g}"
        self.text = (
            f'<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" viewBox="0 0 {size}">'
            f"<style>{_STYLE}</style><defs>{symbols}</defs>"
            f'<rect class="paper" width="{page.width:g}" height="{page.height:g}" fill="#FFF"/>'
            f"{self._all(page.elements)}</svg>\n"
        )

    def _all(self, elements: list[dict]) -> str:
        return "\n".join(self._one(element) for element in elements)

    def _one(self, element: dict) -> str:
        tag, values = element["name"], element["attr"]
        if tag == "use":
            return self._use(values)
        if tag not in _TAGS:
            return ""
        attributes = "".join(f" {name}={_quoted(value)}" for name, value in values.items() if name in _ATTRIBUTES)
        return f"<{tag}{attributes}>{_clean(element.get('value', ''))}</{tag}>"

    def _use(self, values: dict) -> str:
        name = values["xlink:href"].removeprefix("#")
        place = f" transform={_quoted(values['transform'])} data-symbol={_quoted(name)}"
        if "id" in values:
            place += f" data-id={_quoted(values['id'])}"
        if name in self._ids:
            return f'<use{place} xlink:href="#{self._ids[name]}"/>'
        if not values["xlink:href"]:  # a pin without a length
            return ""
        self.undefined[name] = self.undefined.get(name, 0) + 1
        return f'<g{place}>{_MARK}<text class="undefined" x="-15" y="25">{_clean(name)}</text></g>'


def _clean(text: str) -> str:
    return escape(_NOT_XML.sub("\N{REPLACEMENT CHARACTER}", text))


def _quoted(text: str) -> str:
    return quoteattr(_NOT_XML.sub("\N{REPLACEMENT CHARACTER}", text))
