"""What went wrong, by the words that the sanitizers, the fuzzers and the tests have for it."""

import re

# The first that fits counts.
KINDS = {
    "unintended evaluations": r"FINDING: (?:evaluated|a variable was read|.* ran |a joined value|a value|other procedures than)",
    "leaks": r"LeakSanitizer|stay behind|something grows",
    "races": r"ThreadSanitizer",
    "hangs": r"libFuzzer: timeout|does not answer|TimeoutError",
    "crashes": r"AddressSanitizer|runtime error:|deadly signal|the editor (?:has )?ended|a heap is damaged|terminate called",
    "wrong answers": r"\[  FAILED  \]|FINDING:",
}


def kind_of(output: str, otherwise: str = "crashes") -> str:
    return next((kind for kind, words in KINDS.items() if re.search(words, output)), otherwise)
