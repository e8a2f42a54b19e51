"""The demo's own machinery: what it makes, what it hears, and that it tells when something is missing."""

import asyncio
import contextlib
import io
import pathlib
import runpy
import socket
import subprocess
import sys
import tempfile
import unittest
import warnings
from unittest import mock

import fake_plug_in

from vernoxa import own_report
from vernoxa.command import Refused
from vernoxa.companion.desk import Desk
from vernoxa.companion.prompt import Prompt
from vernoxa.companion.view import View
from vernoxa.places import REPOSITORY
from vernoxa.stage import at_work, host
from vernoxa.stage.host_words import WORDS, HostWords, tcl_word
from vernoxa.stage.installation import DESIGN, Installation
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import Missing
from vernoxa.wire import messages, paths


class SceneTest(unittest.IsolatedAsyncioTestCase):
    async def asyncSetUp(self):
        self.shown = self.enterContext(contextlib.redirect_stdout(io.StringIO()))
        self.installation = Installation(pathlib.Path(__file__))
        self.addCleanup(self.installation.remove)
        self.scene = Scene(View(colour=False), self.installation, port=0)
        self.addAsyncCleanup(self.scene.end)

    async def test_a_host_that_ends_or_hangs_is_told_with_its_last_words(self):
        await self.scene.begin(["/bin/sh", "-c", "echo connect error !host: hello; exit 4"])
        with self.assertRaisesRegex(Missing, "opened: not seen before the host ended with 4") as caught:
            await self.scene.hear("opened", "FileStatus", 20)
        with self.assertRaisesRegex(Missing, "select R1: its end was not seen before the host ended with 4"):
            await self.scene.do("selected", "select R1", "R1")
        self.scene.complain(caught.exception)
        for line in ("host: hello", "stdout: connect error !", "demo:   hello", "demo: the companion said nothing"):
            self.assertIn(line, self.shown.getvalue().splitlines())

    async def test_a_design_that_cannot_be_told_is_missed_at_once(self):
        await self.scene.begin(["/bin/sh", "-c", "echo host: a.dsn is not reported: why; sleep 60"])
        with self.assertRaisesRegex(Missing, "a.dsn is open: a.dsn is not reported: why"):
            await self.scene.opened("Z:\\a.dsn")

    async def test_the_report_shows_notes_once_and_names_the_pages_that_are_not_drawn(self):
        reading = own_report.Reading(View(colour=False, shown=["report"]), self.installation, speaker="report")
        for text in ("opened a", "note: a.kicad_sch has b", "note: a.kicad_sch has b"):
            reading._hear("host", text)
        self.assertTrue(reading.whole)
        told = ["page 1: a", "page 2: b c", "page 3: d", "else"]
        drawn = [{"key": "1", "name": "a"}, {"key": "3", "name": "?"}]
        for lacks in (lambda: reading._hear("host", "note: part R1 is left out: why"),
                      lambda: own_report.compare_pages(reading, "a", told, drawn)):
            reading.whole = True
            lacks()
            self.assertFalse(reading.whole)
        self.assertEqual(["a.kicad_sch has b", "part R1 is left out: why", "a: there is no drawing of page 2, b c",
                          "a: page 3, d, is called ? in its drawing"],
                         [line.removeprefix("report: ") for line in self.shown.getvalue().splitlines()])

    async def test_limits_hold_and_failures_are_missing(self):
        await self.scene.begin(["/bin/sleep", "60"])
        with self.assertRaisesRegex(Missing, "within 0.1 s"):
            await self.scene.until("a log", lambda: False, 0.1)
        with self.assertRaisesRegex(Missing, "not connected"):
            await self.scene.ask("pages", "GetActiveProPages")
        refused = messages.read((fake_plug_in.REFUSED % "CreateSVG").encode())
        with mock.patch.object(self.scene.companion, "ask", mock.AsyncMock(return_value=refused)):
            with self.assertRaisesRegex(Missing, "command error"):
                await self.scene.ask("pages", "CreateSVG")
        await self.scene.host.stop()
        self.assertIsNotNone(await self.scene.host.ended(0))

    async def test_a_host_that_told_its_end_ended_tidily_however_wine_ended_the_process(self):
        for told, ending, status in (("end", "kill -9 $$", 0), ("end", "kill -SEGV $$", 0), ("end", "exit 137", 0),
                                     ("end", "exit 5", 5), ("end with 1", "kill -9 $$", -9), ("open", "exit 139", 139)):
            heard: list[str] = []
            one = await host.Host.begin(["/bin/sh", "-c", f"echo host: {told}; {ending}"],
                                        lambda _, words, heard=heard: heard.append(words))
            self.assertEqual(await one.ended(60), status, (told, ending))
            self.assertEqual(["by Wine" in words for words in heard], [False, True][:2 - bool(status)], heard)
            await one.stop()

    async def test_what_is_piped_in_is_asked_and_the_host_ends_with_it(self):
        script = ("until grep -q select $0; do sleep 0.05; done; echo host: selected; echo host: line 1 is done; "
                  "until grep -q quit $0; do sleep 0.05; done")
        await self.scene.begin(["/bin/sh", "-c", script, str(self.installation.commands)])
        async with fake_plug_in.FakePlugIn(self.scene.companion.port, {"GenerateBOM": fake_plug_in.BOM}) as plug_in:
            plug_in.send(fake_plug_in.opened("Z:\\a.dsn"))
            await self.scene.hear("opened", "FileStatus", 20)
            prompt = Prompt(self.scene.companion, self.scene.view, {"host": HostWords(self.scene, self.scene.view, {})})
            with mock.patch("sys.stdin", io.StringIO("host select R1\nGenerateBOM\nquit\nnever\n")):
                working = asyncio.ensure_future(at_work.work(self.scene, Desk(self.scene.view, "companion", prompt)))
                for _ in range(2):
                    await plug_in.receive()
                self.assertTrue(await working)
        self.assertEqual(self.installation.commands.read_text(), "select R1\nquit\n")
        self.assertRegex(self.shown.getvalue(), "(?s)host: selected\n.*> GenerateBOM.*电阻")

    async def test_a_line_that_failed_is_not_forgotten_when_the_host_ends_first(self):
        script = ("until grep -q select $0; do sleep 0.05; done; echo host: line 1 failed; "
                  "until grep -q pause $0; do sleep 0.05; done")
        await self.scene.begin(["/bin/sh", "-c", script, str(self.installation.commands)])
        desk = Desk(self.scene.view, "host", HostWords(self.scene, self.scene.view, {}))
        with mock.patch("sys.stdin", io.StringIO("select R1\npause 600\n")):
            self.assertFalse(await at_work.work(self.scene, desk))

    async def test_what_the_host_opens_is_a_copy_and_its_words_are_known(self):
        words, user_does = HostWords(self.scene, self.scene.view, {}), mock.AsyncMock(return_value=False)
        with mock.patch.object(self.scene, "user_does", user_does):
            for line in (f"openDesign {DESIGN}", "openDesign nowhere/a.kicad_sch", "nothing R1", "select R1\n"):
                self.assertFalse(await words.run(line))
            self.assertTrue(await words.run("help"))
        name = paths.to_windows(self.installation.root / "opened1" / "microphone.dsn")
        self.assertEqual([f"openDesign {DESIGN} {tcl_word(name)}", "nothing R1", "select R1"],
                         [called.args[0] for called in user_does.await_args_list])
        self.assertEqual(1, self.shown.getvalue().count("help lists the words"))
        self.assertIn("a.kicad_sch is not there", self.shown.getvalue())
        script = (REPOSITORY / "sim" / "host" / "commands.tcl").read_text(encoding="utf-8")
        self.assertEqual([], [word for word in WORDS if word != "help" and f"\nproc {word} " not in script])

    async def test_the_traffic_log_is_found_in_either_spelling(self):
        for name in ("schLog.txt", "SchLog.txt"):
            log = self.installation.root / "plug-in" / "Script" / "Log" / name
            log.write_bytes("设计\r\n".encode("gbk"))
            self.assertIn("设计", self.installation.traffic())
            log.unlink()


class BeginTest(unittest.TestCase):
    def test_commands_refuse_in_one_sentence(self):
        for words, said in (
            (["play", "nowhere.kicad_sch", "--dll", __file__], "nowhere.kicad_sch is not there"),
            (["host", f"{DESIGN.parent}/none.kicad_sch", "--dll", __file__], "there are: channel.kicad_sch, filter"),
            (["demo", "--nothing"], "unrecognized arguments: --nothing; ./dev demo --help lists"),
            (["own_report", __file__, "--dll", __file__], "not a KiCad schematic"),
            (["own_report", str(DESIGN), "-o", str(DESIGN), "--dll", __file__], "something else: give another name"),
            (["own_report", str(DESIGN), "-o", "nowhere/a.html", "--dll", __file__], "there is no folder nowhere"),
            (["companion", "--record", str(DESIGN)], "something else: give another name"),
            (["companion", "--port", "99999"], "a port is a number up to 65535, not 99999"),
            (["replay", __file__], 'no "conversation 1"'),
            (["report.page", __file__, "out.html"], "not a design that was collected"),
        ):
            with self.subTest(words), mock.patch("sys.argv", words), warnings.catch_warnings(action="ignore"):
                with contextlib.redirect_stderr(io.StringIO()) as shown, self.assertRaises(SystemExit) as ended:
                    runpy.run_module(f"vernoxa.{words[0]}", run_name="__main__", alter_sys=False)
                self.assertEqual((2, 1), (ended.exception.code, shown.getvalue().count("\n")), shown.getvalue())
                self.assertIn(said, shown.getvalue())

    def test_a_closed_pipe_ends_without_a_traceback(self):
        listing = [sys.executable, "-m", "vernoxa.check.mutate", "--list", "--count", "5000", "src/bom"]
        ended = subprocess.run(["bash", "-c", '"$@" | head -n 1', "pipe", *listing], capture_output=True, timeout=60)
        self.assertEqual(b"", ended.stderr)
        self.assertIn(b"possible changes", ended.stdout)

    def test_what_cannot_begin_says_so(self):
        with self.assertRaisesRegex(Refused, "is not there"):
            Installation(pathlib.Path("/nowhere/Vernoxa64.dll"))
        with tempfile.TemporaryDirectory(prefix="x" * 80) as folder, mock.patch("tempfile.tempdir", folder):
            with self.assertRaisesRegex(Refused, "too long"):
                Installation(pathlib.Path(__file__))
            self.assertEqual(list(pathlib.Path(folder).iterdir()), [])
        with socket.create_server(("127.0.0.1", 0)) as other:
            with mock.patch.object(host, "HOST_PORT", other.getsockname()[1]):
                with self.assertRaisesRegex(Refused, "is taken"):
                    host.require_free_port()


if __name__ == "__main__":
    unittest.main()
