"""The zip for the users, made from the built plug-in: dist_test.py PLUG-IN."""

import asyncio
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import zipfile

from vernoxa.dist import package, trial
from vernoxa.places import CONVERSATIONS
from vernoxa.replay.conversation import Conversation

MODULE = pathlib.Path(sys.argv.pop())


class DistTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.zip = self.folder / "one.zip"
        package.make(MODULE, self.zip)

    def test_the_same_inputs_give_the_same_bytes(self):
        package.make(MODULE, self.folder / "more" / "two.zip")
        self.assertEqual(self.zip.read_bytes(), (self.folder / "more" / "two.zip").read_bytes())
        self.assertEqual([], package.faults_of(self.zip))
        with zipfile.ZipFile(self.zip) as files:
            self.assertLessEqual({"bin/Vernoxa64.dll", "pkgIndex.tcl", "Config/App.sample.txt", "docs/commands.html",
                                  "licences/cJSON.txt", "samples/Companion.cs", "conformance/plug_in.tcl"}, set(files.namelist()))
            self.assertNotIn("Config/App.txt", files.namelist())  # an installation's own settings
            self.assertEqual("README.txt", files.namelist()[0])
            index = files.read("docs/index.html").decode()
            for name in files.namelist():
                if name.startswith("licences/") and name.endswith(".txt"):
                    self.assertIn(f"<code>{name.removeprefix('licences/')}</code>", index)
            commands = files.read("docs/commands.html").decode()
        self.assertIn("<td><code>ReadOpenPath path</code></td>", commands)
        self.assertIn('href="index.html"', commands)

    def test_every_link_leads_somewhere(self):
        with zipfile.ZipFile(self.zip) as files:
            names = set(files.namelist())
            pages = {name: files.read(name).decode() for name in names if name.endswith(".html")}
        lost = set()
        for name, page in pages.items():
            for link in re.findall(r'(?:href|src)="([^"]*)"', page):
                file, _, anchor = link.partition("#")
                target = f"docs/{file}" if file else name
                if target not in names or (anchor and f'id="{anchor}"' not in pages[target]):
                    lost.add((name, link))
        self.assertEqual(set(), lost)
        self.assertIn('id="what-two-answers-have-to-contain"', pages["docs/for-companion-authors.html"])
        self.assertIn('href="protocol.json"', pages["docs/for-companion-authors.html"])

    def test_it_speaks_to_users_and_knows_its_version(self):
        with zipfile.ZipFile(self.zip) as files:
            texts = {name: files.read(name).decode() for name in files.namelist()
                     if name.endswith((".html", ".cmd", ".txt", ".tcl")) and not name.startswith(("licences/", "check/tcl/"))}
            module = files.read("bin/Vernoxa64.dll")
        words = ("./dev", "cmake", "workshop/", "<!-- for", "@VERSION@", ".md<")
        named = {(name, word) for name, text in texts.items() for word in words if word in text}
        self.assertEqual(set(), named)
        self.assertIn(f"Vernoxa {package.version()}:", texts["README.txt"])
        self.assertIn(f"<small>Vernoxa {package.version()}</small>", texts["docs/index.html"])
        self.assertIn(f'set version "{package.version()}"', texts["check/tables.tcl"])
        self.assertIn(f"<h2 id=\"{package.version().replace('.', '')}\">{package.version()}</h2>", texts["docs/CHANGELOG.html"])
        self.assertIn(f"ProductVersion\0{package.version()}\0", module.decode("utf-16-le", "ignore")[-10_000:])

    def test_what_tries_companions_needs_nothing_else(self):
        with zipfile.ZipFile(self.zip) as files:
            files.extractall(self.folder)
        sample = [sys.executable, self.folder / "samples" / "companion.py", self.folder]
        for program, words in (("check_companion", sample), ("packet", ["log", "check-companion.txt"])):
            command = [sys.executable, self.folder / "conformance" / f"{program}.py", *words]
            done = subprocess.run(command, cwd=self.folder, env={**os.environ, "PYTHONPATH": ""}, capture_output=True, text=True)
            self.assertIn(" do not; the conversation: check-companion.txt" if words is sample else "FileStatus", done.stdout)
            self.assertEqual("", done.stderr)

    def test_what_was_changed_on_the_way_is_found(self):
        changed = self.folder / "changed.zip"
        with zipfile.ZipFile(self.zip) as files, zipfile.ZipFile(changed, "w") as copy:
            for name in files.namelist():
                if name != "licences/cJSON.txt":
                    copy.writestr(name, files.read(name) + (b"\n" if name == "pkgIndex.tcl" else b""))
            copy.writestr("bin/other.dll", b"")
        self.assertEqual(["licences/cJSON.txt is missing", "pkgIndex.tcl is not what it was",
                          "bin/other.dll has no checksum"], package.faults_of(changed))

    def test_the_plug_in_in_it_holds_a_conversation(self):
        recorded = Conversation.read(CONVERSATIONS / "marking_parts.txt")
        found, last_words = asyncio.run(trial.differences(self.zip, recorded))
        self.assertEqual([], [str(difference) for difference in found], last_words)


if __name__ == "__main__":
    unittest.main()
