"""tools/conformance names what a companion does wrong: the sample companion passes, each planted fault is found."""

from __future__ import annotations

import asyncio
import pathlib
import socket
import sys
import tempfile
import unittest

import check_companion

from vernoxa.places import REPOSITORY

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


AT_ONCE = 6


async def said(companion: str, patience: float) -> list[str]:
    """What fails. The plug-in's own port belongs to the tests that run beside this one."""
    with socket.create_server(("127.0.0.1", 0)) as server:
        address = server.getsockname()
    assert "9601" in companion
    said: list[str] = []
    with tempfile.TemporaryDirectory() as folder:
        script = pathlib.Path(folder) / "companion.py"
        script.write_text(companion.replace("9601", str(address[1])), encoding="utf-8")
        words = ["/bin/sh", "-c", f"exec {sys.executable} {script} {folder} >/dev/null 2>&1"]
        holds = await check_companion.start_and_run(words, check_companion.Check(address, patience, said.append))
    failed = [line for line in said if not line.startswith("holds")]
    assert holds != any(line.startswith("FAILS  must") for line in failed), failed
    return failed


async def said_of_each(companions: list[str]) -> list[list[str]]:
    turns = asyncio.Semaphore(AT_ONCE)

    async def in_turn(companion: str) -> list[str]:
        async with turns:
            return await said(companion, 2)

    return await asyncio.gather(*map(in_turn, companions))


class Conformance(unittest.TestCase):
    def test_the_sample_passes(self) -> None:
        self.assertEqual([], asyncio.run(said(SAMPLE, 20)))

    def test_planted_faults_are_named(self) -> None:
        for before, _, _ in FAULTS:
            self.assertIn(before, SAMPLE)
        every = asyncio.run(said_of_each([SAMPLE.replace(before, after) for before, after, _ in FAULTS]))
        for (_, _, rule), failed in zip(FAULTS, every):
            with self.subTest(rule):
                self.assertTrue([line for line in failed if rule in line], failed)


if __name__ == "__main__":
    unittest.main()
