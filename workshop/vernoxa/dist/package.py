"""Makes the zip that is unpacked beside the editor. The same inputs give the same bytes."""

from __future__ import annotations

import hashlib
import pathlib
import posixpath
import re
import subprocess
import time
import zipfile
from typing import Iterator

from markdown_it import MarkdownIt

from vernoxa.command import Refused
from vernoxa.places import CONVERSATIONS, REPOSITORY

from . import own_tcl

CHECKSUMS = "checksums.txt"
AS_IT_SHIPS = REPOSITORY / "package"

# Never the name that the plug-in reads: unpacking must not overwrite the settings of an installation.
SAMPLE = "Config/App.sample.txt"

# What is in the package of others, and where the set-up and the distribution keep the words under which it may.
LICENCES = {
    "Vernoxa": REPOSITORY / "LICENSE",
    "cJSON": REPOSITORY / ".deps" / "src" / "cjson" / "LICENSE",
    "Tcl": REPOSITORY / ".deps" / "src" / "tcl" / "license.terms",
    "zlib": REPOSITORY / ".deps" / "src" / "tcl" / "compat" / "zlib" / "README",
    "GCC run-time library": pathlib.Path("/usr/share/doc/gcc-mingw-w64-base/copyright"),
    "mingw-w64 and winpthreads": pathlib.Path("/usr/share/doc/mingw-w64-x86-64-dev/copyright"),
}

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


class NotMade(Refused):
    """The text says why."""


def make(module: pathlib.Path, target: pathlib.Path) -> None:
    """Raises NotMade, OSError."""
    files = {"bin/Vernoxa64.dll": module.read_bytes()} | _documents()
    files |= {path.relative_to(AS_IT_SHIPS).as_posix(): _as_windows_reads(path) for path in AS_IT_SHIPS.rglob("*")
              if path.is_file() and not {"__pycache__", "helper"} & set(path.parts)}
    files |= own_tcl.files(module.with_name("helper.dll"))
    files |= {f"conformance/{place}": path.read_bytes() for path, place in _behind_conformance()}
    for name, path in LICENCES.items():
        if not path.is_file():
            raise NotMade(f"the licence of {name} is not there: {path}")
        files[f"licences/{name}.txt"] = path.read_bytes()
    sums = [f"{hashlib.sha256(content).hexdigest()}  {name}\n" for name, content in sorted(files.items())]
    files[CHECKSUMS] = "".join(sums).encode()
    target.parent.mkdir(parents=True, exist_ok=True)
    made = _commit_time()
    with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as package:
        for name, content in sorted(files.items()):
            entry = zipfile.ZipInfo(name, made)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = 0o100644 << 16
            package.writestr(entry, content)


def _as_windows_reads(path: pathlib.Path) -> bytes:
    """The system's own shell and editor take lines that end as it ends them, and the plug-in writes its files so."""
    content = path.read_bytes()
    if path.parent.name == "expected":
        return content.removesuffix(b"\n").replace(b"\n", b"\r\n")
    return content.replace(b"\n", b"\r\n") if path.suffix in (".cmd", ".txt") else content


def _behind_conformance() -> Iterator[tuple[pathlib.Path, str]]:
    """What its programs need beside them, and where it lies there."""
    workshop = REPOSITORY / "workshop"
    for path in (*(workshop / "vernoxa" / name for name in ("__init__.py", "command.py", "places.py")),
                 *(workshop / "vernoxa" / "wire").glob("*.py")):
        yield path, path.relative_to(workshop).as_posix()
    for path in CONVERSATIONS.glob("*.txt"):
        yield path, f"recorded/conversations/{path.name}"
    yield REPOSITORY / "tools" / "docs" / "procedures.txt", "recorded/procedures.txt"


def faults_of(package: pathlib.Path) -> list[str]:
    """What in a zip is not as its checksums say."""
    with zipfile.ZipFile(package) as files:
        names = set(files.namelist()) - {CHECKSUMS}
        faults = []
        for line in files.read(CHECKSUMS).decode().splitlines():
            digest, _, name = line.partition("  ")
            if name not in names:
                faults.append(f"{name} is missing")
            elif hashlib.sha256(files.read(name)).hexdigest() != digest:
                faults.append(f"{name} is not what it was")
            names.discard(name)
        return faults + [f"{name} has no checksum" for name in sorted(names)]


def _commit_time() -> tuple[int, int, int, int, int, int]:
    """Of the last commit, in UTC; a zip holds even seconds and nothing before 1980."""
    done = subprocess.run(["git", "-C", REPOSITORY, "log", "-1", "--format=%ct"], capture_output=True, text=True)
    seconds = int(done.stdout.strip() or 0) if done.returncode == 0 else 0
    moment = time.gmtime(max(seconds, 315_532_800))
    return moment.tm_year, moment.tm_mon, moment.tm_mday, moment.tm_hour, moment.tm_min, moment.tm_sec // 2 * 2


def _documents() -> dict[str, bytes]:
    sources = {"index": REPOSITORY / "docs" / "installing.md"}
    sources |= {path.stem: path for path in sorted((REPOSITORY / "docs").glob("*.md")) if path != sources["index"]}
    sources |= {name: REPOSITORY / f"{name}.md" for name in ("SECURITY", "README")}
    titles = {name: _title(path.read_text(encoding="utf-8")) for name, path in sources.items()}
    places = {path.relative_to(REPOSITORY).as_posix(): f"{name}.html" for name, path in sources.items()}
    places |= {f"docs/{path.name}": path.name for path in (REPOSITORY / "docs").glob("*.json")}
    pages = {f"docs/{name}.html": _html(path, name, titles, places).encode() for name, path in sources.items()}
    pictures = {f"docs/pictures/{path.name}": path.read_bytes()
                for path in sorted((REPOSITORY / "docs" / "pictures").glob("*.png"))}
    descriptions = {f"docs/{path.name}": path.read_bytes() for path in sorted((REPOSITORY / "docs").glob("*.json"))}
    return pages | pictures | descriptions


def _title(markdown: str) -> str:
    return next((line.lstrip("# ") for line in markdown.splitlines() if line.startswith("# ")), "Vernoxa")


def _html(page: pathlib.Path, name: str, titles: dict[str, str], places: dict[str, str]) -> str:
    """`places` says what a file of the repository is called beside the page."""
    folder = page.parent.relative_to(REPOSITORY).as_posix()

    def heading(found: re.Match[str]) -> str:
        anchor = re.sub(r"[^\w -]", "", re.sub("<.*?>", "", found[2])).lower().replace(" ", "-")
        return f'<{found[1]} id="{anchor}">{found[2]}</{found[1]}>'

    def link(found: re.Match[str]) -> str:
        """What is not in the zip is named, without a link."""
        file, mark, anchor = found[1].partition("#")
        place = places.get(posixpath.normpath(posixpath.join(folder, file))) if file else ""
        return found[2] if place is None else f'<a href="{place}{mark}{anchor}">{found[2]}</a>'

    body = MarkdownIt("commonmark").enable("table").render(page.read_text(encoding="utf-8"))
    body = re.sub(r"<(h\d)>(.*?)</\1>", heading, body)
    body = re.sub(r'<a href="([^"]*)">(.*?)</a>', link, body, flags=re.DOTALL)
    body = re.sub(r'(src=")docs/', r"\1", body)
    links = [f'<a href="{other}.html">{title}</a>' for other, title in titles.items() if other != name]
    navigation = f"<p><small>{' · '.join(links)}</small></p>" if links else ""
    return _PAGE.format(title=titles[name], navigation=navigation, body=body)
