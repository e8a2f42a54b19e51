"""package/conformance names what a companion or a host does wrong: the samples and the stand-in pass, planted faults do not."""

from __future__ import annotations

import asyncio
import concurrent.futures
import pathlib
import re
import sys
import tempfile
import unittest
from typing import Awaitable, Callable

import check_companion
import check_host
import host_process
from vernoxa.places import DESIGNS, REPOSITORY

SAMPLES = REPOSITORY / "package" / "samples"
COMPANION, HOST = ((SAMPLES / name).read_text(encoding="utf-8") for name in ("companion.py", "host.tcl"))
BILL = "CAP-100N;100nF;C1;CAP;0603;2\nNULL;电阻 10k;R1,R2;RES;0603;2\n-RES-1K;1k;R3;RES;0603;2\n"
HOLDS_NOTHING_BACK = 20  # seconds
PATIENCE = 3  # seconds; more than an answer takes on a machine that has much else to do
AT_ONCE = 8

# What is changed in the sample companion, and the rule that must fail then. Ten that do not hide each other:
TEN_FAULTS = (
    ('{"Path": design.replace', '{"Folder": design.replace', "names a folder in"),
    ('.hex().encode("ascii")', '.hex().upper().encode("ascii")', "the digits are lower-case ones"),
    ('text.encode(CODE_PAGE, "replace")', 'text.encode("utf-8")', "texts are in the code page"),
    ("except ValueError:", "except KeyError:", "goes on after a finding that is not JSON"),
    ("\", lambda data: None)", "\")", "goes on after a name that it does not"),
    (' if self.asked else ""', "", "goes on after a reply to what it did not ask"),
    ("def take_GetSelfId(", "def take_SelfId(", "answers GetSelfId on a connection of its own"),
    ("def take_GetMarketResPath(", "def take_MarketResPath(", "answers GetMarketResPath on a connection of its own"),
    ('{"ProjectPath": design.replace("\\\\", "/")}', "{}", "GenerateBOM: 'ProjectPath' is a"),
    ("def take_TryUpdateBom(", "def take_Update(", "asks for the bill when TryUpdateBom comes"),
)
MORE_FAULTS = (
    ('self.send("FileStatus_EndResult"', 'str("FileStatus_EndResult"', "answers FileStatus:"),
    ('.hex().encode("ascii")', '.hex().replace("a", "g").encode("ascii")', "frames are a length and hexadecimal digits"),
    ('packet = self.rfile.read(', 'packet = self.rfile.read1(', "reads a frame that comes in two pieces"),
    ("socketserver.ThreadingTCPServer", "socketserver.TCPServer", "answers GetMarketResPath on a connection of its own"),
    ('self.send("GenerateBOM"', 'self.send("GenerateBom"', "messages are known and have what they need: GenerateBom is"),
    ('design.replace("\\\\", "/")})', "design})", "paths in requests have / between folders"),
    ("ensure_ascii=False", "ensure_ascii=True", r"as an escape, which becomes UTF-8: \u00"),
    ('struct.pack("<I"', 'struct.pack(">I"', "; it is little-endian"),
    ("            self.read()\n", "            self.read()\n        __import__('os')._exit(0)\n", "FAILS  must"),
)
OTHERS = "has the other procedures"  # the sample of a host offers what bills need and no more
# The same for that sample.
HOST_FAULTS = (
    ('set companion ""', "error broken", "is read without an error"),
    ("proc init {} {}", "", "::capGenerateBOMUtil::init works when the plug-in is loaded"),
    ("-myaddr 127.0.0.1 ", "", "listens on 127.0.0.1 alone"),
    ("packetParserForPthread}}}", "packetParser}}}", "hands a packet to packetParserForPthread"),
    ("append ::received", "set ::received", "hands one in two pieces to packetParser"),
    ("while {[binary", "if {[binary", "hands two at once to packetParser"),
    ("sendFrame $channel $reply", "", "sends back what packetParser answers: 0 of 4 came"),
    ("sendFrame $channel $reply", "if {[incr ::answered] != 4} {sendFrame $channel $reply}", "answers: 3 of 4 came"),
    ('if {$reply ne ""}', "if 1", "sends nothing when packetParser answers nothing"),
    ("return -1", "return 0", "creatClient answers something else than 0 while nobody listens"),
    ('if {$::companion eq ""} {\n        if', "if 1 {\n        if", "creatClient keeps the connection that is there"),
    ("$renew && ", "0 && ", "creatClient 1 makes a new connection"),
    ("binary format i ", "binary format I ", "it is little-endian"),
    ('error "no companion"', "return 0", "sendPacketGlobalHandle ends in an error without a connection"),
    ("        serverLinkBreak\n", "", "calls serverLinkBreak when the connection ends"),
    ("        serverLinkBreak\n", "        serverLinkBreak now\n", "gives commands the arguments that they take"),
    ("        serverLinkBreak\n", "        serverLinkBreak\n        error broken\n", "has no error in the background: broken"),
    ("proc InitPath", "proc InitPaths", "InitPath works as the plug-in calls it"),
    ("vwait forever", "after 500 {set later 1}; vwait later; error oops", "is read without an error: oops"),
    ("vwait forever", "while 1 {}", "comes back from everything that it is asked"),
    ("return 17.4", "vwait never", "comes back from everything that it is asked: not from GetProductVersion within"),
    ("        incr count", "        append count x", "getDsnPinCount works as the plug-in calls it"),
    ("set ::bill [linesOf", "set ::bill [linesOf x", "generateBOMForPath works as the plug-in calls it"),
    ("return [lsearch -all -inline -not $::bill -*]", "return {R1;10k}", "getStickList works as the plug-in calls it"),
)
# A fault, and all the rules that it breaks.
BREAKS = (
    (MORE_FAULTS[0], {"answers FileStatus"}),
    (("sendFrame $channel $reply", "if {[incr ::answered] < 8} {sendFrame $channel $reply}", ""),
     {"sends back what packetParser answers", OTHERS}),
    (("return $paths", "return {}", ""), {OTHERS}),
    (("set ::bill [linesOf", "error [linesOf", ""), {"generateBOMForPath works as the plug-in calls it", OTHERS}),
)
# No fault: the sample as it is on a machine that has much else to do.
ANSWERS_IN_PIECES = ("puts -nonewline $channel [binary format i [string length $text]]$text", """after 200
    puts -nonewline $channel [binary format i [string length $text]]
    flush $channel
    after 200
    puts -nonewline $channel $text""", "")


async def said_of_companion(companion: str, folder: pathlib.Path, patience: float, said: list[str]) -> int:
    """The plug-in's own port belongs to the tests that run beside this one."""
    address = (host_process.ADDRESS, host_process.unused_port())
    assert "9601" in companion
    (folder / "companion.py").write_text(companion.replace("9601", str(address[1])), encoding="utf-8")
    words = ["/bin/sh", "-c", f"exec {sys.executable} {folder}/companion.py {folder} >/dev/null 2>&1"]
    check = check_companion.Check(address, folder / "log.txt", patience, said.append)
    return await check_companion.start_and_run(words, check)


async def said_of_host(host: str, folder: pathlib.Path, patience: float, said: list[str]) -> int:
    (folder / "host.tcl").write_text(host, encoding="utf-8")
    (folder / "放大器.bom").write_text(BILL, encoding="utf-8")
    check = check_host.Check(folder / "log.txt", patience, said.append)
    return await check.run([str(folder / "host.tcl"), "Vernoxa64.dll", str(folder)])


def failed_of(said_of: Callable[..., Awaitable[int]], sample: str, *faults: tuple[str, str, str],
              patience: float = PATIENCE) -> list[str]:
    """What the sample with the faults in it fails."""
    for before, after, _ in faults:
        assert before in sample, before
        sample = sample.replace(before, after)
    said: list[str] = []
    with tempfile.TemporaryDirectory() as folder:
        status = asyncio.run(said_of(sample, pathlib.Path(folder), patience, said))
    failed = [line for line in said if line.startswith("FAILS")]
    assert status == any(line.startswith("FAILS  must") for line in failed), failed
    return failed


class Conformance(unittest.TestCase):
    def test_the_samples_and_the_stand_in_pass(self) -> None:
        self.assertEqual([], failed_of(said_of_companion, COMPANION, patience=HOLDS_NOTHING_BACK))
        for slower in ((), (ANSWERS_IN_PIECES,)):
            failed = failed_of(said_of_host, HOST, *slower, patience=HOLDS_NOTHING_BACK)
            self.assertEqual(1, len(failed), failed)
            self.assertRegex(failed[0],
                             "should  has the other procedures: not offered: .*AutoDeal.*; so .*AutoDealwithDsn.* fail$")
        said: list[str] = []
        with tempfile.TemporaryDirectory() as folder:
            check = check_host.Check(pathlib.Path(folder) / "log.txt", HOLDS_NOTHING_BACK, said.append)
            asyncio.run(check.run([str(REPOSITORY / "sim/host/host.tcl"), "-dll", "Vernoxa64.dll", "-design",
                                   str(DESIGNS / "microphone/microphone.kicad_sch"), "-as", "Z:\\new\\放大器.dsn"]))
        self.assertEqual([], [line for line in said[:-1] if not line.startswith("holds")])
        self.assertGreater(len(said), len(check_host.ROWS))

    def test_planted_faults_are_named(self) -> None:
        tried = [(said_of_companion, COMPANION, *TEN_FAULTS), *((said_of_companion, COMPANION, fault) for fault in MORE_FAULTS),
                 *((said_of_host, HOST, fault) for fault in HOST_FAULTS)]
        with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as turns, self.assertNoLogs("asyncio", "ERROR"):
            for (_, _, *faults), failed in zip(tried, turns.map(lambda each: failed_of(*each), tried)):
                for _, _, rule in faults:
                    with self.subTest(rule):
                        self.assertIn(rule, "\n".join(failed))

    def test_what_is_right_is_not_blamed_for_what_is_wrong(self) -> None:
        def failed_with(fault: tuple[str, str, str], rules: set[str]) -> list[str]:
            said_of, sample = (said_of_host, HOST) if OTHERS in rules else (said_of_companion, COMPANION)
            return failed_of(said_of, sample, fault, patience=HOLDS_NOTHING_BACK)

        with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as turns:
            for (_, rules), failed in zip(BREAKS, turns.map(failed_with, *zip(*BREAKS))):
                with self.subTest(rules):
                    self.assertEqual(rules, set(re.findall(r"^FAILS  \w+ +([^:\n]*)", "\n".join(failed), re.MULTILINE)))


if __name__ == "__main__":
    unittest.main()
