"""Every message of the native rows against its schema: rows_said.py FILE, which those tests wrote, a packet in a line.

A request is refused only when its schema finds a fault in it. The plug-in takes some that are not right all the same.
"""

import pathlib
import re
import sys
import unittest

from vernoxa.wire import messages, schemas

PACKETS = [bytes.fromhex(line) for line in pathlib.Path(sys.argv.pop()).read_text("ascii").splitlines()]


class RowsTest(unittest.TestCase):
    def test_every_message_is_as_its_schema_says(self) -> None:
        right = 0
        for asked, said in zip(PACKETS[::2], PACKETS[1::2]):
            with self.subTest(asked.decode("gbk")):
                request, reply = messages.read(asked), messages.read(said)
                self.assertEqual([], schemas.faults_of(reply) if said else [])
                wrong = schemas.faults_of(request)
                right += not wrong
                self.assertTrue(wrong or not re.search(rb'"command1? error"', said))
        self.assertGreater(right, 90)


if __name__ == "__main__":
    unittest.main()
