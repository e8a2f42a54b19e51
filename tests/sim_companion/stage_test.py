"""The demo's own machinery: what it makes, what it hears, and that it tells when something is missing."""

import asyncio
import contextlib
import io
import pathlib
import socket
import tempfile
import unittest
from unittest import mock

import fake_plug_in

from vernoxa.wire import messages
from vernoxa.command import Refused
from vernoxa.companion.view import View
from vernoxa.stage import host, playing
from vernoxa.stage.installation import Installation
from vernoxa.stage.scene import Scene
from vernoxa.stage.session import Missing


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
        self.scene.complain(caught.exception)
        for line in ("host: hello", "stdout: connect error !", "demo:   hello", "demo: the companion said nothing"):
            self.assertIn(line, self.shown.getvalue().splitlines())

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

    async def test_what_is_piped_in_is_asked_and_the_host_ends_with_it(self):
        async def plug_in() -> None:
            while not self.scene.companion.port:
                await asyncio.sleep(0.01)
            async with fake_plug_in.FakePlugIn(self.scene.companion.port, {"GenerateBOM": fake_plug_in.BOM}) as plug_in:
                plug_in.send(fake_plug_in.opened("Z:\\a.dsn"))
                for _ in range(2):
                    await plug_in.receive()

        script = "until grep -q select $0; do sleep 0.05; done; echo host: selected; echo host: that is done; "
        script += "until grep -q quit $0; do sleep 0.05; done"
        host = ["/bin/sh", "-c", script, str(self.installation.commands)]
        with mock.patch("sys.stdin", io.StringIO("host select R1\nGenerateBOM\nquit\nnever\n")):
            good, _ = await asyncio.gather(playing.play(self.scene, host, ["Z:\\a.dsn"]), plug_in())
        self.assertTrue(good)
        self.assertEqual(self.installation.commands.read_text(), "select R1\nquit\n")
        self.assertRegex(self.shown.getvalue(), "(?s)host: selected\n.*> GenerateBOM.*电阻")

    async def test_the_traffic_log_is_found_in_either_spelling(self):
        for name in ("schLog.txt", "SchLog.txt"):
            log = self.installation.root / "plug-in" / "Script" / "Log" / name
            log.write_bytes("设计\r\n".encode("gbk"))
            self.assertIn("设计", self.installation.traffic())
            log.unlink()


class BeginTest(unittest.TestCase):
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
