"""What the package consists of, as a CycloneDX document, sbom.cdx.json.

Tools that write such lists look into a package manager's folders or into source trees; here are libraries that were linked
into a DLL, and programs that a set-up built.
"""

from __future__ import annotations

import hashlib
import json
import pathlib
import re
import subprocess

from vernoxa.places import REPOSITORY

NAME = "sbom.cdx.json"
_SOURCES = REPOSITORY / ".deps" / "src"


def _defined(header: pathlib.Path, *names: str) -> str:
    text = header.read_text("latin-1")
    found = (re.search(rf'^#\s*define\s+{name}\s+"?([\w.-]+)', text, re.MULTILINE) for name in names)
    return ".".join(each[1] for each in found if each)


def _of_package(name: str) -> str:
    return subprocess.run(["dpkg-query", "-W", "-f", "${Version}", name], capture_output=True, text=True, check=True).stdout


def document(folder: pathlib.Path, version: str) -> str:
    """`folder` holds the package; the document names its programs by their digests."""
    cjson = ("CJSON_VERSION_MAJOR", "CJSON_VERSION_MINOR", "CJSON_VERSION_PATCH")
    inside = [("cJSON", _defined(_SOURCES / "cjson" / "cJSON.h", *cjson), {"license": {"id": "MIT"}}),
              ("Tcl", _defined(_SOURCES / "tcl" / "generic" / "tcl.h", "TCL_PATCH_LEVEL"), {"license": {"id": "TCL"}}),
              ("zlib", _defined(_SOURCES / "tcl" / "compat" / "zlib" / "zlib.h", "ZLIB_VERSION"), {"license": {"id": "Zlib"}}),
              ("GCC run-time library", _of_package("gcc-mingw-w64-base"),
               {"expression": "GPL-3.0-or-later WITH GCC-exception-3.1"}),
              ("mingw-w64 and winpthreads", _of_package("mingw-w64-x86-64-dev"),
               {"license": {"name": "several permissive ones: licences/mingw-w64 and winpthreads.txt"}})]
    libraries = [{"type": "library", "bom-ref": name, "name": name, "version": number, "licenses": [licence]}
                 for name, number, licence in inside]
    programs = [{"type": "file", "bom-ref": name, "name": name,
                 "hashes": [{"alg": "SHA-256", "content": hashlib.sha256((folder / name).read_bytes()).hexdigest()}]}
                for name in sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*")
                                   if path.suffix in (".dll", ".exe"))]
    linked = {"bin/Vernoxa64.dll": ["GCC run-time library", "Tcl", "cJSON", "mingw-w64 and winpthreads"],
              "check/helper.dll": ["GCC run-time library", "Tcl", "mingw-w64 and winpthreads"]}
    own_tcl = {program["name"]: ["Tcl"] for program in programs if "/tcl/" in str(program["name"])}
    own_tcl["check/tcl/bin/zlib1.dll"] = ["zlib"]
    depends = [{"ref": name, "dependsOn": on} for name, on in sorted((linked | own_tcl).items())]
    root = {"type": "library", "bom-ref": "Vernoxa", "name": "Vernoxa", "version": version,
            "licenses": [{"license": {"id": "MIT"}}]}
    whole = {"bomFormat": "CycloneDX", "specVersion": "1.5", "version": 1, "metadata": {"component": root},
             "components": libraries + programs,
             "dependencies": [{"ref": "Vernoxa", "dependsOn": [str(program["name"]) for program in programs]}, *depends]}
    return json.dumps(whole, indent=1) + "\n"
