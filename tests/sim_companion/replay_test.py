"""A conversation that is held again also looks at the host's end, where the record has one."""

import pathlib
import unittest
from unittest import mock

from vernoxa.companion.server import Companion
from vernoxa.replay import performance
from vernoxa.replay.conversation import Conversation
from vernoxa.stage import host
from vernoxa.wire import json_text
from vernoxa.wire.record import COMPANION, HOST, Entry

QUITS = Entry(1, 0, HOST, b"quit")
CLOSES = Entry(1, 1, COMPANION, json_text.print_plain({"Command": "CloseOrcad", "Data": {}, "Result": "0"}))
TOLD = "until grep -q quit $0; do sleep 0.05; done; "
UNTIDY = ["missing: a tidy end of the host, which ended with 5\n  bye"]
SELECTS = Entry(1, 0, HOST, b"select R1")
CASES = (
    # what is in the record, what the host does now, what differs
    ([QUITS], TOLD + "exit 0", []),
    ([QUITS], TOLD + "exit 5", UNTIDY),
    ([CLOSES], "exit 0", []),
    ([CLOSES], "exit 5", UNTIDY),
    ([], "exit 5", []),
)


class WithAnotherHost(performance.Performance):
    script = ""

    def __init__(self, *given):
        super().__init__(*given)
        self.companion = Companion(self.answers, port=0)

    def command_line(self, designs):
        return ["/bin/sh", "-c", f"echo host: bye; {self.script}", str(self.installation.commands)]


async def held_again(entries: list[Entry], script: str) -> tuple[list[str], list[bytes]]:
    """What differs, and what was said."""
    any_module = pathlib.Path(__file__)
    with (mock.patch.object(WithAnotherHost, "script", script), mock.patch.object(host, "require_free_port"),
          mock.patch.object(performance, "require_free")):
        now, found, _ = await performance.hold_again(any_module, Conversation("C:\\", [], entries), WithAnotherHost)
    return [str(one) for one in found], [entry.message for entry in now.entries]


class ReplayTest(unittest.IsolatedAsyncioTestCase):
    async def test_the_end_of_the_host(self):
        for entries, script, differences in CASES:
            with self.subTest(entries=entries, script=script):
                found, said = await held_again(entries, script)
                self.assertEqual(differences, found)
                self.assertEqual([QUITS.message] * (QUITS in entries), said)

    async def test_a_line_that_the_host_cannot_end_is_told_and_what_follows_is_looked_at(self):
        for script, seconds, reason in ((TOLD + "exit 5", 0.1, "within 0.1 s"),
                                        ("exit 5", 600, "before the host ended with 5")):
            with self.subTest(reason), mock.patch.object(performance, "LINE_SECONDS", seconds):
                found, _ = await held_again([SELECTS, SELECTS, QUITS], script)
                lost = f"missing: select R1: its end was not seen {reason}"
                self.assertEqual([lost, lost], [one.split("\n")[0] for one in found[:2]])
                self.assertEqual(UNTIDY, found[2:])


if __name__ == "__main__":
    unittest.main()
