"""tools/conformance names what a companion does wrong: the sample companion passes, each planted fault is found."""

from __future__ import annotations

import asyncio
import contextlib
import io
import pathlib
import socket
import sys
import tempfile
import unittest

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "tools" / "conformance"))

import check_companion

SAMPLE = (REPOSITORY / "samples" / "companion.py").read_text(encoding="utf-8")

# What is changed in the sample, and a rule that must fail then.
FAULTS = (
    ('self.send("FileStatus_EndResult"', 'str("FileStatus_EndResult"', "answers FileStatus:"),
    ('{"Path": design.replace', '{"Folder": design.replace', "messages are known and have what they need"),
    ('.hex().encode("ascii")', '.hex().upper().encode("ascii")', "the digits are lower-case ones"),
    ('.hex().encode("ascii")', '.hex().replace("a", "g").encode("ascii")', "frames are a length and hexadecimal digits"),
    ('text.encode("gbk", "replace")', 'text.encode("utf-8")', "texts are in the code page"),
    ('packet = self.rfile.read(', 'packet = self.rfile.read1(', "reads a frame that comes in two pieces"),
    ("except ValueError:", "except KeyError:", "goes on after a finding that is not JSON"),
    ("take_{message.get('Command')}\", None)", "take_{message.get('Command')}\")", "goes on after a name that it does not"),
    ("if not self.asked:", "if False:", "goes on after a reply to what it did not ask"),
    ("def take_GetSelfId(", "def take_SelfId(", "answers GetSelfId on a connection of its own"),
    ("socketserver.ThreadingTCPServer", "socketserver.TCPServer", "answers GetMarketResPath on a connection of its own"),
    ('self.send("GenerateBOM", {"ProjectPath": design})', 'self.send("GenerateBOM", {})', "messages are known"),
    ('self.send("GenerateBOM"', 'self.send("GenerateBom"', "messages are known and have what they need: GenerateBom is"),
    ("def take_TryUpdateBom(", "def take_Update(", "asks for the bill when TryUpdateBom comes"),
    ("            self.read()\n", "            self.read()\n        __import__('os')._exit(0)\n", "FAILS  must"),
)


class Conformance(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        # The plug-in's own port belongs to the tests that run beside this one.
        with socket.create_server(("127.0.0.1", 0)) as server:
            cls.port = server.getsockname()[1]
        check_companion.PROTOCOL["link"]["companionPort"] = cls.port

    def setUp(self) -> None:
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def said(self, companion: str) -> tuple[int, list[str]]:
        """The status, and what fails."""
        script = self.folder / "companion.py"
        self.assertIn("9601", companion)
        script.write_text(companion.replace("9601", str(self.port)), encoding="utf-8")
        with contextlib.redirect_stdout(io.StringIO()) as output:
            words = ["/bin/sh", "-c", f"exec {sys.executable} {script} {self.folder} >/dev/null 2>&1"]
            status = asyncio.run(check_companion.main(words))
        return status, [line for line in output.getvalue().splitlines() if not line.startswith("holds")]

    def test_the_sample_passes(self) -> None:
        check_companion.ANSWER_SECONDS = 20
        self.assertEqual((0, []), self.said(SAMPLE))

    def test_planted_faults_are_named(self) -> None:
        check_companion.ANSWER_SECONDS = 1
        for before, after, rule in FAULTS:
            with self.subTest(rule):
                self.assertIn(before, SAMPLE)
                status, failed = self.said(SAMPLE.replace(before, after))
                named = [line for line in failed if rule in line]
                self.assertTrue(named, failed)
                self.assertEqual(any(line.startswith("FAILS  must") for line in failed), status == 1)


if __name__ == "__main__":
    unittest.main()
