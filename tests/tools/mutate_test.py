"""The changes that ./dev mutate makes to a source: where there is room for them, and that the bytes are the right ones.
And the faults that ./dev trust --prove plants."""

import pathlib
import tempfile
import unittest

from vernoxa.check import changes
from vernoxa.places import REPOSITORY
from vernoxa.trust.planted import PLANTED

CASES = (
    # source line, what it can become
    ("  if (a == b) {", {"  if (a != b) {", "  if (!(a == b)) {"}),
    ("  return count < 3;", {"  return count <= 3;", "  return count >= 3;", "  return count < 4;", "  return count < 2;",
                             "  return {};"}),
    ("  log.writeLine(text);", {"  ;"}),
    ('  const auto name = "测";  // a == b', {'  const auto name = "x测x";  // a == b'}),
    ("  for (; !done; ++next) {", {"  for (; done; ++next) {", "  for (; !done; --next) {"}),
    ("  std::vector<int> numbers;", set()),
    ("#include <vector>  // 1 + 1", set()),
    ("  // only 1 + 1 words", set()),
    ("  Owned& operator=(const Owned&) = delete;", set()),
    ("#ifdef __clang_analyzer__\nint a = 1;\n#else\nint a = 1;\n#endif",
     {"#ifdef __clang_analyzer__\nint a = 1;\n#else\nint a = 2;\n#endif",
      "#ifdef __clang_analyzer__\nint a = 1;\n#else\nint a = 0;\n#endif"}),
    ("  const char end = '\\n';", {"  const char end = 'y';"}),
    ("  flags |= 0x10U;", {"  flags |= 17U;", "  flags |= 15U;", "  ;"}),
)


class ChangesTest(unittest.TestCase):
    def test_lines(self):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for line, expected in CASES:
                with self.subTest(line=line):
                    source = f"// 器件\n{line}\n"
                    (root / "a.cpp").write_text(source, encoding="utf-8")
                    made = {change.apply(source.encode()).decode() for change in changes.of_file(root, "a.cpp")}
                    self.assertEqual(made, {f"// 器件\n{after}\n" for after in expected})

    def test_planted_faults_have_their_place_and_are_in_no_source(self) -> None:
        for fault in PLANTED:
            source = (REPOSITORY / fault.file).read_text("utf-8")
            self.assertEqual(1, source.count(fault.before), fault.name)
            self.assertTrue(fault.after in fault.before or fault.after not in source, fault.name)


if __name__ == "__main__":
    unittest.main()
