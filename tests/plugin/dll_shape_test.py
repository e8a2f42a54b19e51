"""What the built DLL shows the outside: dll_shape_test.py Vernoxa64.dll"""

import re
import subprocess
import sys
import unittest

HEADERS = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", sys.argv.pop(1)], check=True, capture_output=True,
                         text=True).stdout
# Parts of Windows 7 and later; the compiler's own libraries must not be among them.
WINDOWS_LIBRARIES = {
    "advapi32.dll", "comctl32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "shell32.dll",
    "user32.dll", "ws2_32.dll",
}


class DllShape(unittest.TestCase):
    def test_exports_the_two_functions_that_tcl_looks_for(self):
        table = HEADERS.split("[Ordinal/Name Pointer] Table")[1].split("\n\n")[0]
        names = re.findall(r"^\s*\[\s*\d+\].*\s(\S+)$", table, re.MULTILINE)  # between them, newer ones tell more
        self.assertEqual(sorted(names), ["Vernoxa_Init", "Vernoxa_Unload"])

    def test_needs_only_what_windows_brings(self):
        needed = {name.lower() for name in re.findall(r"DLL Name: (\S+)", HEADERS)}
        self.assertEqual(needed - WINDOWS_LIBRARIES, set())

    def test_is_64_bit_bears_resources_and_no_build_time(self):
        self.assertIn("pei-x86-64", HEADERS)
        self.assertRegex(HEADERS, r"Entry 2 0*[1-9a-f][0-9a-f]* [0-9a-f]+ Resource Directory")
        self.assertRegex(HEADERS, r"Time/Date\s+(Thu Jan  1 00:00:00 1970|0{8})")


unittest.main(verbosity=0)
