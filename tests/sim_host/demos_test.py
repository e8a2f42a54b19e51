"""Every design that KiCad's demos bring is read whole: against counts made here from the same files, and against the
nets of the boards that KiCad made of them. Another folder of designs: demos_test.py FOLDER"""

import pathlib
import sys
import unittest

from schematics import DEMOS, Counted, board_nets, joined, read_all, roots

FOLDER = DEMOS


class DemosTest(unittest.TestCase):
    def test_parts_pins_pages_and_nets(self):
        designs = roots(FOLDER)
        self.assertNotEqual([], designs, f"no designs in {FOLDER}")
        for root, read in read_all(designs).items():
            with self.subTest(root.relative_to(FOLDER)):
                counted = Counted(root)
                self.assertEqual(read.pages, counted.pages)
                self.assertEqual(read.units, counted.units)
                self.assertEqual(read.pins, counted.pins)
                board = root.with_suffix(".kicad_pcb")
                if board.is_file():
                    nets = board_nets(board)
                    pads = nets.keys() & read.nets.keys()
                    self.assertGreater(len(pads), 0.8 * len(read.nets))
                    self.assertEqual(joined(read.nets, pads), joined(nets, pads))


if __name__ == "__main__":
    if sys.argv[1:]:
        FOLDER = pathlib.Path(sys.argv.pop())
    unittest.main()
