"""Writes a copy of the machine's package sources that asks for source packages: source_lists.py TARGET_DIRECTORY

The machine's own lists stay as they are. Both of their formats are read (see sources.list(5)), and only archives with the
distribution's own component are taken, of the release by its code name or by what it is called while it is supported.
add-apt-repository would write into the machine's own lists.
"""

import glob
import pathlib
import re
import sys


def code_name():
    fields = dict(line.split("=", 1) for line in pathlib.Path("/etc/os-release").read_text().splitlines() if "=" in line)
    return fields["VERSION_CODENAME"].strip('"')


def is_ours(suite, components, release):
    return suite.split("-")[0].split("/")[0] in (release, "stable", "oldstable") and "main" in components.split()


def one_line_entries(text, release):
    """`deb [options] URI suite component...`, each made a deb-src line."""
    for line in text.splitlines():
        match = re.match(r"\s*deb(?:-src)?\s+(?:\[[^\]]*\]\s+)?(\S+)\s+(\S+)([^#]*)", line)
        if match and is_ours(match[2], match[3], release) and not match[1].startswith("cdrom:"):
            yield re.sub(r"^\s*deb(-src)?", "deb-src", line)


def stanzas(text, release):
    """deb822 stanzas, each with its types made deb-src."""
    without_comments = "\n".join(line for line in text.splitlines() if not line.startswith("#"))
    for stanza in re.split(r"\n\s*\n", without_comments):
        suites, components = (re.search(rf"^{name}:\s*(\S.*)", stanza, re.MULTILINE | re.IGNORECASE)
                              for name in ("Suites", "Components"))
        if suites and components and is_ours(suites[1].split()[0], components[1], release):
            yield re.sub(r"^Types:.*$", "Types: deb-src", stanza.strip(), flags=re.MULTILINE | re.IGNORECASE)


def main():
    target = pathlib.Path(sys.argv[1])
    release = code_name()
    lines, blocks = set(), set()
    for name in ["/etc/apt/sources.list", *sorted(glob.glob("/etc/apt/sources.list.d/*.list"))]:
        if pathlib.Path(name).is_file():
            lines.update(one_line_entries(pathlib.Path(name).read_text(), release))
    for name in sorted(glob.glob("/etc/apt/sources.list.d/*.sources")):
        blocks.update(stanzas(pathlib.Path(name).read_text(), release))
    if not lines and not blocks:
        sys.exit(f"no package source of {release} found in /etc/apt")
    (target / "machine.list").write_text("".join(line + "\n" for line in sorted(lines)))
    (target / "machine.sources").write_text("\n\n".join(sorted(blocks)) + "\n")


main()
