"""What the package's install rules end with (cmake/package.cmake): pages, names of the protocol, line ends, checksums.

    finish.py FOLDER VERSION        the folder is where all else was installed
"""

from __future__ import annotations

import hashlib
import json
import pathlib
import posixpath
import re
import sys

from markdown_it import MarkdownIt

from vernoxa.command import DONE, run
from vernoxa.places import REPOSITORY

from . import sbom

CHECKSUMS = "checksums.txt"
AS_IT_SHIPS = REPOSITORY / "package"
FOR_USERS = ("troubles", "for-script-authors", "commands", "host-procedures", "for-companion-authors", "messages",
             "module-format", "reliability")
# What only the repository's readers need, and what else is called otherwise in the package.
_FOR_DEVELOPERS = [
    (re.compile(r"<!-- for developers -->\n.*?<!-- end -->\n?", re.DOTALL), ""),
    (re.compile(r"\./dev packet"), "python conformance/packet.py"),
    (re.compile(r"\./dev check-(companion|host)"), r"python conformance/check_\1.py"),
    (re.compile(r"build/log/(check-\w+\.txt)"), r"\1"),
    (re.compile(r"workshop/vernoxa/wire"), "conformance/vernoxa/wire"),
    (re.compile(r", or a conversation recorded with `--record`"), ""),
]

_PAGE = """\
<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><meta name="viewport" content="width=device-width">
<title>{title}</title><style>
body {{ font: 16px/1.5 system-ui, sans-serif; max-width: 60rem; margin: 2rem auto; padding: 0 1rem; color: #222; }}
code, pre {{ font: 14px/1.45 ui-monospace, Consolas, monospace; background: #f4f4f2; border-radius: 4px; }}
code {{ padding: 0 .25em; }} pre {{ padding: .8em 1em; overflow-x: auto; }} pre code {{ padding: 0; }}
table {{ border-collapse: collapse; }} th, td {{ border: 1px solid #ccc; padding: .3em .6em; text-align: left; }}
th {{ background: #f4f4f2; }} img {{ max-width: 100%; }} a {{ color: #0645ad; }}
</style></head><body>
{navigation}
{body}
</body></html>
"""


def main() -> int:
    folder, version = pathlib.Path(sys.argv[1]), sys.argv[2]
    for name, page in _documents().items():
        page = page.replace("</body>", f"<p><small>Vernoxa {version}</small></p>\n</body>")
        (folder / "docs" / f"{name}.html").write_text(page, encoding="utf-8", newline="\n")
    (folder / "check" / "tables.tcl").write_text(tables(version), encoding="utf-8", newline="\n")
    readme = folder / "README.txt"
    readme.write_text(readme.read_text(encoding="utf-8").replace("@VERSION@", version), encoding="utf-8", newline="\n")
    for shipped in AS_IT_SHIPS.rglob("*"):
        path = folder / shipped.relative_to(AS_IT_SHIPS)
        if path.is_file():
            path.write_bytes(_as_windows_reads(path))
    (folder / sbom.NAME).write_text(sbom.document(folder, version), encoding="utf-8", newline="\n")
    files = sorted(path for path in folder.rglob("*") if path.is_file())
    sums = [f"{hashlib.sha256(path.read_bytes()).hexdigest()}  {path.relative_to(folder).as_posix()}\n" for path in files]
    (folder / CHECKSUMS).write_text("".join(sums), encoding="utf-8", newline="\n")
    return DONE


def _as_windows_reads(path: pathlib.Path) -> bytes:
    """The system's own shell and editor take lines that end as it ends them, and the plug-in writes its files so."""
    content = path.read_bytes()
    if path.parent.name == "expected":
        return content.removesuffix(b"\n").replace(b"\n", b"\r\n")
    return content.replace(b"\n", b"\r\n") if path.suffix in (".cmd", ".txt") else content


def tables(version: str) -> str:
    """Names of docs/protocol.json as Tcl lists."""
    protocol = json.loads((REPOSITORY / "docs" / "protocol.json").read_text(encoding="utf-8"))
    requests = [row["name"] for row in protocol["requests"] if row["side"] == "companion"]
    at_loading = [row["name"] for row in protocol["procedures"] if row["calledBy"]["load"]]
    lists = {"commands": [row["name"] for row in protocol["commands"]],
             "procedures": [row["name"] for row in protocol["procedures"]],
             "proceduresAtLoading": at_loading, "companionRequests": requests}
    return f'set version "{version}"\n' + "".join(f"set {name} {{{' '.join(names)}}}\n" for name, names in lists.items())


def _documents() -> dict[str, str]:
    """Every page for users as HTML, by its name."""
    sources = {"index": REPOSITORY / "docs" / "installing.md"}
    sources |= {name: REPOSITORY / "docs" / f"{name}.md" for name in FOR_USERS}
    sources |= {name: REPOSITORY / f"{name}.md" for name in ("CHANGELOG", "SECURITY")}
    titles = {name: _title(path.read_text(encoding="utf-8")) for name, path in sources.items()}
    places = {path.relative_to(REPOSITORY).as_posix(): f"{name}.html" for name, path in sources.items()}
    places["package/docs/logs.html"] = "logs.html"
    places |= {f"docs/{path.name}": path.name for path in (REPOSITORY / "docs").glob("*.json")}
    return {name: _html(path, name, titles, places) for name, path in sources.items()}


def _for_users(markdown: str) -> str:
    for pattern, instead in _FOR_DEVELOPERS:
        markdown = pattern.sub(instead, markdown)
    return markdown


def _title(markdown: str) -> str:
    return next((line.lstrip("# ") for line in markdown.splitlines() if line.startswith("# ")), "Vernoxa")


def _html(page: pathlib.Path, name: str, titles: dict[str, str], places: dict[str, str]) -> str:
    """`places` says what a file of the repository is called beside the page."""
    folder = page.parent.relative_to(REPOSITORY).as_posix()

    def heading(found: re.Match[str]) -> str:
        anchor = re.sub(r"[^\w -]", "", re.sub("<.*?>", "", found[2])).lower().replace(" ", "-")
        return f'<{found[1]} id="{anchor}">{found[2]}</{found[1]}>'

    def link(found: re.Match[str]) -> str:
        """What is not in the zip is named, without a link; what is in it is called as it is called there."""
        file, mark, anchor = found[1].partition("#")
        place = places.get(posixpath.normpath(posixpath.join(folder, file))) if file else ""
        if place is None:
            return found[2]
        return f'<a href="{place}{mark}{anchor}">{place if found[2].endswith(".md") else found[2]}</a>'

    body = MarkdownIt("commonmark").enable("table").render(_for_users(page.read_text(encoding="utf-8")))
    body = re.sub(r"<(h\d)>(.*?)</\1>", heading, body)
    body = re.sub(r'<a href="([^"]*)">(.*?)</a>', link, body, flags=re.DOTALL)
    body = re.sub(r'(src=")docs/', r"\1", body)
    links = [f'<a href="{other}.html">{title}</a>' for other, title in titles.items() if other != name]
    navigation = f"<p><small>{' · '.join(links)}</small></p>" if links else ""
    return _PAGE.format(title=titles[name], navigation=navigation, body=body)


if __name__ == "__main__":
    run("finish", main)
