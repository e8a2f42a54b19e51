"""A recorded conversation beside this file, held again with the built plug-in: replay_test.py PLUG-IN.

Each takes as long as the link thread's pauses, so this holds one; `./dev replay` without a name holds them all.
"""

import asyncio
import dataclasses
import pathlib
import sys
import unittest

from vernoxa.places import CONVERSATIONS
from vernoxa.replay import compare, performance
from vernoxa.replay.conversation import Conversation

MODULE = pathlib.Path(sys.argv.pop())


class ReplayTest(unittest.TestCase):
    maxDiff = None

    def test_nothing_differs(self):
        recorded = Conversation.read(CONVERSATIONS / "chinese_hierarchy.txt")
        now, last_words = asyncio.run(performance.hold_again(MODULE, recorded))
        self.assertEqual([], [str(found) for found in compare.differences(recorded.entries, now.entries)],
                         last_words)

        # The same run against a record with another reply in it.
        changed = [dataclasses.replace(entry, message=entry.message.replace(b'"PinCount":"', b'"PinCount":"1'))
                   if entry.message.count(b'"PinCount"') == 1 else entry for entry in recorded.entries]
        self.assertNotEqual(recorded.entries, changed)
        found = compare.differences(changed, now.entries)
        self.assertRegex(str(found[0]), r"(?s)^FileStatus Open .* is different.*Data\.PinCount: recorded ")


if __name__ == "__main__":
    unittest.main()
