"""The sample companion and the sample host script, joined by the built plug-in: samples_test.py PLUG-IN."""

import os
import pathlib
import signal
import subprocess
import sys
import time
import unittest

from vernoxa.places import REPOSITORY, TCLSH, WINE
from vernoxa.stage.installation import Installation
from vernoxa.wire import paths

MODULE = pathlib.Path(sys.argv.pop())
SAMPLES = REPOSITORY / "package" / "samples"
SECONDS = 90

BILL = "CAP-100U;100µF;C1;CAP;0603;2\nNULL;电阻 10k;R1,R2;RES;0603;2\n-RES-1K;1k;R3;RES;0603;2\n"
TABLE = """\
PartNumber,Value,PartRef,PartName,PCBFootprint,PinNumber,Fitted
CAP-100U,100µF,C1,CAP,0603,2,yes
,电阻 10k,"R1,R2",RES,0603,2,yes
RES-1K,1k,R3,RES,0603,2,no
"""


class SamplesTest(unittest.TestCase):
    def begin(self, *words):
        process = subprocess.Popen([str(word) for word in words], stdin=subprocess.DEVNULL, start_new_session=True)
        self.addCleanup(process.wait)
        self.addCleanup(os.killpg, process.pid, signal.SIGKILL)

    def test_a_bill_becomes_a_table(self):
        installation = Installation(MODULE)
        self.addCleanup(installation.remove)
        bills, tables = (installation.add_design_folder(name) for name in ("bills", "tables"))
        (bills / "放大器.bom").write_text(BILL, encoding="utf-8")
        self.begin(sys.executable, SAMPLES / "companion.py", tables)
        self.begin(*WINE, TCLSH, paths.to_windows(SAMPLES / "host.tcl"), paths.to_windows(installation.module),
                   paths.to_windows(bills))
        table, until = tables / "放大器.csv", time.monotonic() + SECONDS
        while time.monotonic() < until and not (table.exists() and table.read_text(encoding="utf-8").count("\n") == 4):
            time.sleep(0.2)
        self.assertEqual(TABLE, table.read_text(encoding="utf-8"))


if __name__ == "__main__":
    unittest.main()
