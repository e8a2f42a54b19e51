"""The zip for the users, made from the built plug-in: dist_test.py PLUG-IN."""

import asyncio
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

from vernoxa.dist import package, trial
from vernoxa.places import CONVERSATIONS, TCLSH, WINE
from vernoxa.replay.conversation import Conversation
from vernoxa.stage.installation import Installation
from vernoxa.stage.session import LINK_SECONDS
from vernoxa.wire import paths

MODULE = pathlib.Path(sys.argv.pop())
BILL = "CAP-100U;100µF;C1;CAP;0603;2\nNULL;电阻 10k;R1,R2;RES;0603;2\n-RES-1K;1k;R3;RES;0603;2\n"
TABLE = """\
PartNumber,Value,PartRef,PartName,PCBFootprint,PinNumber,Fitted
CAP-100U,100µF,C1,CAP,0603,2,yes
,电阻 10k,"R1,R2",RES,0603,2,yes
RES-1K,1k,R3,RES,0603,2,no
"""


class DistTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.zip = cls.folder / "one.zip"
        package.make(MODULE, cls.zip)
        with zipfile.ZipFile(cls.zip) as files:
            cls.files = {name: files.read(name) for name in files.namelist()}
        cls.texts = {name: content.decode() for name, content in cls.files.items()
                     if name.endswith((".html", ".cmd", ".txt", ".tcl")) and not name.startswith(("licences/", "check/tcl/"))}

    def test_the_same_inputs_give_the_same_bytes(self):
        package.make(MODULE, self.folder / "more" / "two.zip")
        self.assertEqual(self.zip.read_bytes(), (self.folder / "more" / "two.zip").read_bytes())
        self.assertEqual([], package.faults_of(self.zip))
        self.assertLessEqual({"bin/Vernoxa64.dll", "pkgIndex.tcl", "Config/App.sample.txt", "docs/commands.html",
                              "licences/cJSON.txt", "samples/Companion.cs", "conformance/plug_in.tcl"}, set(self.files))
        self.assertNotIn("Config/App.txt", self.files)  # an installation's own settings
        self.assertEqual("README.txt", next(iter(self.files)))

    def test_every_link_leads_somewhere(self):
        pages = {name: page for name, page in self.texts.items() if name.endswith(".html")}
        lost = set()
        for name, page in pages.items():
            for link in re.findall(r'(?:href|src)="([^"]*)"', page):
                file, _, anchor = link.partition("#")
                target = f"docs/{file}" if file else name
                if target not in self.files or (anchor and f'id="{anchor}"' not in pages[target]):
                    lost.add((name, link))
        self.assertEqual(set(), lost)

    def test_it_speaks_to_users_and_knows_its_version(self):
        words, version = ("./dev", "cmake", "workshop/", "<!-- for", "@VERSION@", ".md<"), package.version()
        self.assertEqual([], [(name, word) for name, text in self.texts.items() for word in words if word in text])
        licences = [name.removeprefix("licences/") for name in self.files if re.fullmatch(r"licences/.*\.txt", name)]
        for file, text in (
            ("README.txt", f"Vernoxa {version}:"),
            ("check/tables.tcl", f'set version "{version}"'),
            ("docs/CHANGELOG.html", f"<h2 id=\"{version.replace('.', '')}\">{version}</h2>"),
            ("docs/commands.html", "<td><code>ReadOpenPath path</code></td>"),
            ("docs/for-companion-authors.html", 'id="what-two-answers-have-to-contain"'),
            ("docs/for-companion-authors.html", 'href="protocol.json"'),
            ("docs/index.html", f"<small>Vernoxa {version}</small>"),
            *(("docs/index.html", f"<code>{licence}</code>") for licence in licences),
        ):
            self.assertIn(text, self.texts[file])
        self.assertIn(f"ProductVersion\0{version}\0", self.files["bin/Vernoxa64.dll"].decode("utf-16-le", "ignore")[-10_000:])

    def test_what_tries_companions_needs_nothing_else(self):
        with zipfile.ZipFile(self.zip) as files:
            files.extractall(self.folder)
        sample = [sys.executable, self.folder / "samples" / "companion.py", self.folder]
        for program, words in (("check_companion", sample), ("packet", ["log", "check-companion.txt"])):
            command = [sys.executable, self.folder / "conformance" / f"{program}.py", *words]
            done = subprocess.run(command, cwd=self.folder, env={**os.environ, "PYTHONPATH": ""}, capture_output=True, text=True)
            self.assertIn(" do not; the conversation: check-companion.txt" if words is sample else "FileStatus", done.stdout)
            self.assertEqual("", done.stderr)

    def begin(self, *words):
        process = subprocess.Popen([str(word) for word in words], stdin=subprocess.DEVNULL, start_new_session=True)
        self.addCleanup(process.wait)
        self.addCleanup(os.killpg, process.pid, signal.SIGKILL)
        return process

    def test_its_samples_of_companion_and_host_make_a_table_of_a_bill(self):
        installation = self.enterContext(Installation(MODULE))
        bills, tables, samples = (installation.add_design_folder(name) for name in ("bills", "tables", "samples"))
        (bills / "放大器.bom").write_text(BILL, encoding="utf-8")
        for name in ("companion.py", "host.tcl"):
            (samples / name).write_bytes(self.files[f"samples/{name}"])
        companion = self.begin(sys.executable, samples / "companion.py", tables)
        host = self.begin(*WINE, TCLSH, *map(paths.to_windows, (samples / "host.tcl", installation.module, bills)))
        table, until = tables / "放大器.csv", time.monotonic() + LINK_SECONDS
        while time.monotonic() < until and not (table.exists() and table.read_text(encoding="utf-8").count("\n") == 4):
            time.sleep(0.2)
        told = f"traffic: {installation.traffic()[-3000:]}"
        self.assertEqual((None, None), (companion.poll(), host.poll()), f"one of them ended; {told}")
        self.assertTrue(table.exists(), f"no table, though both still run; there is {os.listdir(tables)}; {told}")
        self.assertEqual(TABLE, table.read_text(encoding="utf-8"))

    def test_what_was_changed_on_the_way_is_found(self):
        changed = self.folder / "changed.zip"
        with zipfile.ZipFile(changed, "w") as copy:
            for name in self.files.keys() - {"licences/cJSON.txt"}:
                copy.writestr(name, self.files[name] + (b"\n" if name == "pkgIndex.tcl" else b""))
            copy.writestr("bin/other.dll", b"")
        self.assertEqual(["licences/cJSON.txt is missing", "pkgIndex.tcl is not what it was",
                          "bin/other.dll has no checksum"], package.faults_of(changed))

    def test_the_plug_in_in_it_holds_a_conversation(self):
        recorded = Conversation.read(CONVERSATIONS / "chinese_hierarchy.txt")
        found, last_words = asyncio.run(trial.differences(self.zip, recorded))
        self.assertEqual([], [str(difference) for difference in found], last_words)


if __name__ == "__main__":
    unittest.main()
