"""Every design that KiCad's demos bring is read whole: against counts made here from the same files, and against the
nets of the boards that KiCad made of them. Another folder of designs: demos_test.py FOLDER"""

import collections
import pathlib
import sys
import unittest

from schematics import DEMOS, Counted, board_nets, joined, read_all, roots

FOLDER = DEMOS


class DemosTest(unittest.TestCase):
    def test_parts_pins_pages_and_nets(self):
        designs = roots(FOLDER)
        self.assertNotEqual([], designs, f"no designs in {FOLDER}")
        for root, rows in read_all(designs).items():
            with self.subTest(root.relative_to(FOLDER)):
                counted = Counted(root)
                self.assertEqual(rows["page"].total(), counted.pages)
                self.assertEqual(collections.Counter((*row[:2], row[2] == "1", row[3] == "1")
                                                     for row in rows["part"].elements()), counted.units)
                self.assertEqual(collections.Counter(row[:2] for row in rows["pin"].elements()), counted.pins)
                board = root.with_suffix(".kicad_pcb")
                if board.is_file():
                    read, nets = {row[:2]: row[2] for row in rows["pin"]}, board_nets(board)
                    pads = nets.keys() & read.keys()
                    self.assertGreater(len(pads), 0.8 * len(read))
                    self.assertEqual(joined(read, pads), joined(nets, pads))


if __name__ == "__main__":
    if sys.argv[1:]:
        FOLDER = pathlib.Path(sys.argv.pop())
    unittest.main()
