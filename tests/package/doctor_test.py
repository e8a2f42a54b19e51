"""doctor.cmd and check-editor.tcl out of the zip, each with faults planted: doctor_test.py PLUG-IN, below a wine-suite."""

import contextlib
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import zipfile
from typing import Iterator

from unchanged import Unchanged
from vernoxa.dist import package
from vernoxa.places import SETUP

MODULE = pathlib.Path(sys.argv.pop())
RUN = str(SETUP / "wine-run")
LOG = "Script/Log/schLog.txt"
START_UP = b"[Time]:2026-1-2 3:4:5:6.start-up script: "


class Installation:
    """The zip, unpacked in a new folder, and what a user has beside it."""

    def __init__(self, zipped: pathlib.Path, folder: pathlib.Path):
        self.folder = folder
        self.temporary: pathlib.Path | None = folder.with_name("temp")
        self.temporary.mkdir(parents=True, exist_ok=True)
        self.port = 0  # that is taken
        with zipfile.ZipFile(zipped) as files:
            files.extractall(folder)
        self.plant({"LanTuZS.exe": b"", "Config/App.txt": b'{"AlgMenuLang":"EN","StartWithCadence":"1"}\n'})
        (folder / "Script" / "Log").mkdir(parents=True)

    def plant(self, changes: dict) -> None:
        """Files by their names, None for one that goes; and attributes."""
        for name, content in changes.items():
            path = self.folder / name
            if hasattr(self, name):
                setattr(self, name, content)
            elif content is None:
                path.unlink()
            else:
                if path.is_dir():
                    path.rmdir()
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(content)

    def ask(self, *words: str, locale: str = "zh_CN") -> tuple[int, str]:
        script = self.folder / "ask.cmd"
        temporary = str(self.temporary).replace("/", "\\")
        script.write_text(f'@set "TEMP=Z:{temporary}"\n@{" ".join(words)}\n', encoding="gbk", newline="\r\n")
        done = subprocess.run([RUN, "cmd", "/c", "ask.cmd"], cwd=self.folder, stdin=subprocess.DEVNULL, capture_output=True,
                              env={**os.environ, "VERNOXA_LOCALE": locale}, check=False)
        script.unlink()
        return done.returncode, done.stdout.decode("gbk", "replace")


# Looks at many installations in one process, which starts slowly: FOLDER TEMPORARY-FOLDER PORT ..., the port taken or 0.
AT_ALL = """
foreach {folder temporary port} $argv {
  set env(TEMP) $temporary
  set taken [expr {$port ? [socket -server list -myaddr 127.0.0.1 $port] : ""}]
  interp create doctor
  interp alias doctor exit {} error done
  interp eval doctor [list set ::env(TEMP) $temporary]
  catch {interp eval doctor [list source -encoding utf-8 $folder/check/doctor.tcl]}
  interp delete doctor
  puts "=== next"
  if {$taken ne ""} {close $taken}
}
exit
"""


def doctor_at_all(places: list[Installation]) -> list[str]:
    script = places[0].folder.with_name("all.tcl")
    script.write_text(AT_ALL)
    words = [word for place in places
             for word in (place.folder, f"Z:{place.temporary}" if place.temporary else "", str(place.port))]
    done = subprocess.run([RUN, places[0].folder / "check/tcl/bin/tclsh86.exe", script, *words],
                          stdin=subprocess.DEVNULL, capture_output=True, check=True)
    return done.stdout.decode("gbk", "replace").split("=== next")


# What is planted, and the words that name it.
FAULTS: list[tuple[dict, str]] = [
    ({"bin/Vernoxa64.dll": None}, r"bin\\Vernoxa64.dll is not there"),
    ({"LanTuZS.exe": None}, r"companion, LanTuZS.exe, is not in this folder"),
    ({"LanTuZS.exe": None, "../LanTuZS.exe": b""}, r"unpacked one folder too deep"),
    ({"bin/Vernoxa64.dll": MODULE.read_bytes() + b"!"}, r"bin\\Vernoxa64.dll is not the one of this package"),
    ({"bin/Vernoxa64.dll": b"MZ"}, r"it names no version; the package's is \d"),
    ({"pkgIndex.tcl": None}, r"One file is missing or not that of the package: pkgIndex.tcl"),
    ({"pkgIndex.tcl": None, "README.txt": None}, r"2 files are missing .*: README.txt, pkgIndex.tcl"),
    ({"check/helper.dll": None}, r"check\\helper.dll is missing, or Windows does not load it"),
    ({"check/result.tcl": None}, r"check\\result.tcl is missing or damaged"),
    ({"Config/App.txt": b'{\n"P":"C:\\Users","StartWithCadence":"1"}'}, r"App.txt is not valid JSON \(line 2\)"),
    ({"Config/App.txt": '{"StartWithCadence":"1"}'.encode("utf-16")}, r"is saved as UTF-16"),
    ({"Config/App.txt": None, "Config/App.txt/x": b""}, r"App.txt cannot be read: it is a folder"),
    ({"Config/App.txt": b'{"startwithcadence":"1"}'}, r'knows "StartWithCadence"'),
    ({"Config/App.txt": b'{"StartWithCadence":1}'}, r'"StartWithCadence" in .* is 1;'),
    ({"Config/App.txt": b'{"AlgMenuLang":"FR"}'}, r'"AlgMenuLang" in .* is "FR"; .* "EN" and "CN"'),
    ({"port": 9601}, r"Port 9601 is taken by .*; it should be the companion's"),
    ({"port": 9610}, r"Port 9610 is taken by .*; it should be the editor's"),
    ({LOG: START_UP + b'invalid command name "creatServerForPthread"\r\n'}, r'no procedure "creatServerForPthread"'),
    ({LOG: START_UP + b"couldn't open socket: address already in use\r\n"}, r"port 9610 was taken"),
    ({"bin/catchLog/log.txt": b"[Time]:2026-1-2 3:4:5:6.Fun111\r\n"}, r"ended unexpectedly \(Fun111\)"),
    ({LOG + "/x": b""}, r"schLog.txt cannot be written \("),
    ({"Script/Log": b""}, r"Script\\Log is a file where a folder should be"),
    ({"temporary": None}, r"variable TEMP, .* is not set"),
    ({"temporary": "/nowhere"}, r"TEMP names, is not there or no folder: Z:/nowhere"),
    ({"../temp/Vernoxa check/editor.txt": b"Tcl is 8.6\tfailed\tit is 8.5\t0\n"}, r"In the editor, Tcl is 8.6: it is 8.5"),
]

# The check on a machine that makes no short names, where the companion and then the host end.
ENDED = {
    "ended.tcl": b"""
rename file namesOf
proc file args {
  if {"-shortname" in $args} {error "no short name"}
  tailcall namesOf {*}$args
}
source -encoding utf-8 check/check.tcl
""",
    "check/drawing.tcl": b"""
set steps {}
trial "first" {set companionRuns 1}
trial "second" {
  rename tell tellOn
  proc tell args {tellOn {*}$args; if {[lindex $args 0] eq "end"} {exit 3}}
}
trial "third" {}
""",
    "check/desktop.tcl": b"",
}


@contextlib.contextmanager
def held(module: pathlib.Path, program: pathlib.Path) -> Iterator[None]:
    """An editor that has the DLL of the one folder loaded; it is the Tcl of the other installation."""
    script = program.with_name("hold.tcl")
    script.write_text("proc unknown args {}\nload [lindex $argv 0] Vernoxa\nputs held\nflush stdout\n"
                      "after 60000 exit\nvwait forever\n")
    command = [RUN, str(program / "check/tcl/bin/tclsh86.exe"), str(script), f"Z:{module}/Vernoxa64.dll"]
    with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE) as editor:
        while b"held" not in editor.stdout.readline():
            pass
        yield
        editor.kill()


class DoctorTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        cls.place = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        package.make(MODULE, cls.place / "package.zip")
        cls.unchanged = Unchanged(cls.place / "package.zip", "bin/|check[/-]|doctor", MODULE)
        if cls.unchanged:
            raise unittest.SkipTest("it passed with the same files")

    def installation(self, name: str) -> Installation:
        return Installation(self.place / "package.zip", self.place / name / "试 x")

    def test_it_finds_nothing_where_all_is_well(self) -> None:
        place = Installation(self.place / "package.zip", self.place / "well" / "50%finished !x")
        place.plant({"Config/App.txt": b'\xef\xbb\xbf{"StartWithCadence":"1", "Recent":["D:/a",{"x":[]}], "W":{},'
                                       b'"startwithcadence":0} x'})
        status, said = place.ask("cmd", "/v:on", "/c", "doctor.cmd", "/quiet")
        self.assertEqual((0, []), (status, re.findall("^  ! .*", said, re.MULTILINE)), said)

    def test_it_names_each_fault_and_no_other(self) -> None:
        places = [self.installation(f"a user's fault {number}") for number in range(len(FAULTS))]
        for place, (changes, _) in zip(places, FAULTS):
            place.plant(changes)
        for (_, words), said in zip(FAULTS, doctor_at_all(places)):
            with self.subTest(words):
                found = re.findall("^  ! .*", said, re.MULTILINE)
                self.assertEqual(1, len(found), said)
                self.assertRegex(found[0], words)
                self.assertIn("1 found.", said)

    def test_a_newer_version_keeps_what_is_the_users_and_removal_leaves_nothing_else(self) -> None:
        place, other = self.installation("upgrade"), self.installation("other")
        mine = {"Config/App.txt": b'{"AlgMenuLang":"CN"}', "LanTuZS.exe": b"companion", "Script/Log/old.txt": b"",
                "Cache/Nets.txt": b"nets"}
        place.plant(mine | {"bin/Vernoxa64.dll": MODULE.read_bytes() + b"!", "docs/index.html": b"old"})
        with zipfile.ZipFile(self.place / "package.zip") as files:
            # A DLL that is loaded cannot be replaced.
            files.extractall(place.folder, [name for name in files.namelist() if name != "bin/Vernoxa64.dll"])
            with held(place.folder / "bin", other.folder):
                said = place.ask("doctor.cmd", "/quiet")[1]
                self.assertRegex(said, r"  ! bin\\Vernoxa64.dll is not the one of this package: it says that it is version")
                self.assertRegex(said, r"tclsh86.exe \(process \d+\) has this plug-in loaded; end it")
                self.assertRegex(other.ask("doctor.cmd", "/quiet")[1], r"has loaded another plug-in: .*upgrade")
            files.extractall(place.folder)
        self.assertEqual(mine, {name: (place.folder / name).read_bytes() for name in mine})
        status, said = place.ask("doctor.cmd", "/quiet")
        self.assertEqual(0, status, said)
        listed = [line[66:] for line in (place.folder / package.CHECKSUMS).read_text("utf-8").splitlines()]
        for name in [*listed, package.CHECKSUMS]:
            (place.folder / name).unlink()
        left = {path.relative_to(place.folder).as_posix() for path in place.folder.rglob("*") if path.is_file()}
        self.assertEqual({*mine, "Script/Log/schLog.txt"}, left)

    def test_it_names_what_depends_on_the_machine(self) -> None:
        _, said = self.installation("machine").ask("doctor.cmd", "/quiet", locale="en_US")
        self.assertIn("code page is 1252, not 936", said)
        self.assertEqual(2, said.count("  ! "), said)  # and the folder's Chinese name
        deep = Installation(self.place / "package.zip", self.place / "deep" / ("d" * 90))
        self.assertIn("bytes long; the plug-in reads 99", deep.ask("doctor.cmd", "/quiet")[1])

    def test_the_check_says_where_it_works_and_what_ended_when(self) -> None:
        place = self.installation("ended")
        place.temporary = place.folder
        place.plant(ENDED)
        status, said = place.ask("check\\tcl\\bin\\tclsh86.exe", "ended.tcl")
        self.assertEqual(1, status, said)
        self.assertRegex(said, r"It works in C:\\\S+\\vx\d+, not below TEMP: .*ended\\试 x is too long or not plain")
        table = (place.folder / "Vernoxa check" / "result.txt").read_text("utf-8")
        self.assertRegex(table, r"the companion goes on\tfailed\tthe process of the companion ended while \"first\" was tried")
        self.assertRegex(table, r"the next step\tfailed\tthe process of host and plug-in ended after \"second\": .* 3")
        place.plant({"check/loads.tcl": None})
        status, said = place.ask("check.cmd", "/quiet")
        self.assertIn("This cannot begin: check\\loads.tcl is missing.", said)
        self.assertNotEqual(0, status)

    def test_the_editors_script_changes_nothing_and_names_what_is_missing(self) -> None:
        place = self.installation("editor")
        place.plant({"editor.tcl": rb"""
proc called args {lappend ::called $args}
namespace eval ::capGenerateBOMUtil {}
source [file join [pwd] check tables.tcl]
foreach name [concat $procedures exitOpration MouseClick ShowMainForm checkSocketConnect] {
  if {$name ni {ZoomIn InitPath}} {proc $name args "called $name"}
}
load [file join [pwd] bin Vernoxa64.dll] Vernoxa
set file [set version [set commands mine]]
set called [set before {}]
set before [concat [info globals] [info commands] [namespace children ::]]
source check-editor.tcl
puts "called: $called"
puts "kept: $file $version $commands"
puts "new: [lmap name [concat [info globals] [info commands] [namespace children ::]] {
  if {$name in $before} continue
  set name
}]"
exit
"""})
        status, said = place.ask("check\\tcl\\bin\\tclsh86.exe", "editor.tcl")
        self.assertEqual(0, status, said)
        self.assertIn("failed: missing: InitPath, ZoomIn", said)
        self.assertEqual(1, said.count("failed"), said)
        self.assertIn("called: GetProductVersion", said)
        self.assertIn("kept: mine mine mine", said)
        self.assertRegex(said, r"new: (auto_\w+|tcl::\w+)?\s")
        self.assertIn("In the editor, procedures that the plug-in calls later", place.ask("doctor.cmd", "/quiet")[1])
        with zipfile.ZipFile(place.temporary / "Vernoxa check" / "editor.zip") as files:
            self.assertEqual({"editor.html", "editor.txt"}, set(files.namelist()))


if __name__ == "__main__":
    if unittest.main(exit=False).result.wasSuccessful():
        DoctorTest.unchanged.passed()
    else:
        sys.exit(1)
