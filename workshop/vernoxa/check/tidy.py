"""Runs clang-tidy on the sources that changed since they last passed: tidy.py JOBS

A source passed with its own bytes, those of the repository's headers that it includes, and the settings: the digest of
all of them names its stamp. Natively built sources are seen as the native build compiles them, the others as the
Windows build does.

Most of the linter's time goes into the headers of the standard library and of GoogleTest, again for each source. So
sources compiled alike are seen together, as one that includes them all. Where such a batch does not pass, which may be
for two helpers of one name only, each of its sources is seen alone, and that counts. What a batch hides is looked for
elsewhere: names that nobody uses here, a missing header of the standard library by the builds without precompiled ones.

Clang's own run-clang-tidy does neither: it sees every source again, alone.
"""

from __future__ import annotations

import concurrent.futures
import functools
import hashlib
import itertools
import json
import pathlib
import re
import shlex
import subprocess
import sys
from typing import Iterator

from vernoxa.command import run
from vernoxa.places import REPOSITORY as ROOT

STAMPS = ROOT / ".deps/tidy"
DATABASE = ROOT / "build/tidy"
BATCH = 8
HEADERS_AND_SOURCES = r"/(src|sim|tests|bench|fuzz|tools)/([a-z_]+/)?[a-z_]+\.(h|cpp)$"
USING = re.compile(r"^ *using (?:[A-Za-z_]+::)+([A-Za-z_]+);", re.MULTILINE)
INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
# Clang does not know GCC's sanitizer sets.
GCC_ONLY = ("-fsanitize", "-fno-sanitize", "-Wno-maybe-uninitialized")


def commands() -> dict[str, dict]:
    """The compile command of every tracked source, the native build's before the Windows build's."""
    tracked = set(subprocess.run(["git", "ls-files", "*.cpp"], cwd=ROOT, check=True, capture_output=True,
                                 text=True).stdout.splitlines())
    found: dict[str, dict] = {}
    for preset in ("native", "windows"):
        for entry in json.loads((ROOT / "build" / preset / "compile_commands.json").read_text()):
            path = pathlib.Path(entry["file"])
            name = str(path.relative_to(ROOT)) if path.is_relative_to(ROOT) else ""
            if name in tracked and name not in found:
                found[name] = for_clang(entry, preset)
    return found


def for_clang(entry: dict, preset: str) -> dict:
    arguments = [word for word in shlex.split(entry["command"]) if not word.startswith(GCC_ONLY)]
    while "-include" in arguments:  # precompiled headers, of another compiler
        place = arguments.index("-include")
        del arguments[place:place + 2]
    while not arguments[0].endswith("++") and not arguments[0].endswith("++-posix"):
        arguments.pop(0)  # the compiler cache
    if preset == "windows":
        arguments = ["clang++", "--target=x86_64-w64-mingw32", "-nostdinc++", *windows_headers(arguments[0]),
                     *arguments[1:]]
    return {"directory": entry["directory"], "file": entry["file"], "arguments": arguments}


@functools.cache
def windows_headers(compiler: str) -> list[str]:
    """The include paths of the Windows compiler's own C++ library, as arguments."""
    said = subprocess.run([compiler, "-E", "-v", "-x", "c++", "/dev/null"], check=True, capture_output=True,
                          text=True).stderr
    listed = said.split("#include <...> search starts here:")[1].split("End of search list.")[0].split()
    return [word for path in listed if "/c++" in path for word in ("-isystem", path)]


def digest(name: str, settings: bytes) -> str:
    """Of a source, the repository's headers that it reaches, and the settings."""
    total = hashlib.sha256(settings)
    waiting, seen = [ROOT / name], set()
    while waiting:
        path = waiting.pop()
        if path in seen or not path.is_file():
            continue
        seen.add(path)
        content = path.read_bytes()
        total.update(content)
        for include in INCLUDE.findall(content.decode("utf-8", "replace")):
            waiting += [folder / include for folder in (path.parent, ROOT / "src", ROOT / "sim", ROOT / "tests", ROOT)]
    return total.hexdigest()


def batches(names: list[str], known: dict[str, dict]) -> Iterator[list[str]]:
    """The sources in lists of those that are compiled alike and lie in one folder of the repository's root."""
    def alike(name: str) -> tuple[str, list[str]]:
        arguments = list(known[name]["arguments"])
        output = arguments.index("-o")
        del arguments[output:output + 2]
        arguments.remove(known[name]["file"])
        return pathlib.PurePath(name).parts[0], arguments

    for _, group in itertools.groupby(sorted(names, key=alike), alike):
        together = sorted(group)
        yield from (together[first:first + BATCH] for first in range(0, len(together), BATCH))


def write_batch(number: int, names: list[str], known: dict[str, dict]) -> tuple[pathlib.Path, dict]:
    """The source that includes those of a batch, beside the settings of their folder; gives its compile command."""
    folder = DATABASE / pathlib.PurePath(names[0]).parts[0]
    folder.mkdir(exist_ok=True)
    settings = ROOT / folder.name / ".clang-tidy"
    if settings.is_file():
        (folder / ".clang-tidy").write_bytes(settings.read_bytes())
    path = folder / f"batch_{number}.cpp"
    path.write_text("".join(f'#include "{ROOT / name}"  // NOLINT\n' for name in names))
    first = known[names[0]]
    arguments = [str(path) if word == first["file"] else word for word in first["arguments"]]
    return path, {"directory": first["directory"], "file": str(path), "arguments": arguments + ["-Wno-shadow"]}


def passes(path: pathlib.Path, *options: str) -> tuple[bool, str]:
    """Whether clang-tidy has nothing against a source, and what it has."""
    run = subprocess.run(["clang-tidy", "--quiet", "-p", DATABASE, *options, path], capture_output=True, text=True)
    noise = re.compile(r"^\d+ warnings? |^Suppressed |^Use -header-filter")
    text = "\n".join(line for line in run.stdout.splitlines() if not noise.match(line))
    if run.returncode:
        text += "\n".join(line for line in run.stderr.splitlines() if "error:" in line)
    return run.returncode == 0, text.strip()


def unused_names(name: str) -> str:
    """The names that a source brings in with `using` and does not use, which clang-tidy misses in a batch."""
    text = (ROOT / name).read_text()
    return "\n".join(f"{ROOT / name}: using {used}, which nobody uses" for used in USING.findall(text)
                     if len(re.findall(rf"\b{used}\b", text)) == 1)


def check(names: list[str], path: pathlib.Path) -> list[tuple[str, str]]:
    """What clang-tidy has against each of the sources: a list of names and texts, empty where all pass."""
    found = [(name, text) for name in names if (text := unused_names(name))]
    passed, together = passes(path, f"--header-filter={HEADERS_AND_SOURCES}") if len(names) > 1 else (False, "")
    if passed:
        return found
    alone = [(name, *passes(ROOT / name)) for name in names]
    found += [(name, text) for name, passed, text in alone if not passed]
    if not found and re.search(r" error: .*\[(?!clang-diagnostic)", together):
        found = [(names[0], together)]  # more than two helpers of one name
    return found


def main() -> int:
    STAMPS.mkdir(parents=True, exist_ok=True)
    DATABASE.mkdir(parents=True, exist_ok=True)
    known = commands()
    settings = b"".join(path.read_bytes() for path in
                        (ROOT / ".clang-tidy", ROOT / "tests/.clang-tidy", pathlib.Path(__file__)))
    stamps = {name: STAMPS / digest(name, settings) for name in known}
    changed = [name for name in known if not stamps[name].exists()]
    todo = sorted(batches(changed, known), key=len, reverse=True)
    written = [write_batch(number, names, known) for number, names in enumerate(todo)]
    (DATABASE / "compile_commands.json").write_text(
        json.dumps([*known.values(), *(command for _, command in written)], indent=1))

    failed: dict[str, str] = {}
    with concurrent.futures.ThreadPoolExecutor(int(sys.argv[1])) as pool:
        for names, found in zip(todo, pool.map(check, todo, (path for path, _ in written))):
            failed.update(found)
            for name in names:
                if name not in failed:
                    stamps[name].touch()
            for _, text in found:
                print(text, flush=True)
    print(f"clang-tidy: {len(changed)} of {len(known)} sources checked, {len(failed)} failed")
    return bool(failed)


if __name__ == "__main__":
    run("tidy", main)
