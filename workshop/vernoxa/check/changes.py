"""The small changes that can be made to a C++ source: which there are, and where a file has room for them."""

import dataclasses
import pathlib
import re
from typing import Callable, Iterator

# Comments, preprocessor lines, what only the linter reads, and string literals are matched first, so that no change is
# made inside one.
_TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^\#ifdef[ ]__clang_analyzer__\n.*?^\#(?:else|endif)\b|^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*
                |^[ \t]*(?:static_assert|template|using|namespace|friend)\b[^\n]*)
      |(?P<string>(?:u8)?"(?:[^"\\\n]|\\.)*")
      |(?P<char>'(?:[^'\\\n]|\\.)+')
      |(?P<number>\b(?:0[xX][0-9A-Fa-f']+|[0-9][0-9']*)(?:[uU]?[lL]{0,2})\b(?![.']))
      |(?P<word>\b[A-Za-z_]\w*\b)
      |(?P<operator>\s(?:==|!=|<=|>=|&&|\|\||[-+*<>|&?]|<<|>>|\+=|-=)\s|\+\+|--|!(?=[\w(]))
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

_OPERATORS = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["+"], "&": ["|"], "|": ["&"], "<<": [">>"], ">>": ["<<"],
    "+=": ["-="], "-=": ["+="], "++": ["--"], "--": ["++"], "!": [""],
}
_WORDS = {"true": ["false"], "false": ["true"], "min": ["max"], "max": ["min"],
          "continue": ["break"], "break": ["continue"]}
_STATEMENT = re.compile(r"^(?P<indent>[ \t]+)(?P<text>[A-Za-z_*(][^;{}\n]*(?:\([^;{}]*\)|=[^;{}]*|\+\+|--)[^;{}\n]*;)[ \t]*$",
                        re.MULTILINE)
_CONDITION = re.compile(r"\b(?P<word>if|while) \((?P<test>[^;{}\n]*)\) \{$", re.MULTILINE)
_RETURN = re.compile(r"\breturn (?P<value>[^;{}\n]+);")
# "return {};" would mean the same, or is tried as a word.
_SAME_AS_NOTHING = ("true", "false", "{}", "0", "nullptr", "std::nullopt", "std::string()", "Outcome::silent()", "TCL_OK")
_DECLARATION = re.compile(r"^(?:(?:const |static |constexpr |inline |auto |std::|struct |class |enum |explicit |virtual |using |"
                          r"return\b|throw\b|break\b|continue\b|delete\b|goto\b|case\b|default\b)"
                          r"|[\w:<>,*& ]+ [*&]?\w+(?:\(|\{|;| =))")


@dataclasses.dataclass(frozen=True, order=True)
class Change:
    file: str
    start: int  # bytes
    end: int
    line: int
    before: str
    after: str

    def apply(self, source: bytes) -> bytes:
        return source[:self.start] + self.after.encode() + source[self.end:]

    def __str__(self) -> str:
        return f"{self.file}:{self.line}: {_short(self.before)} -> {_short(self.after) or '(nothing)'}"


def _short(text: str) -> str:
    text = " ".join(text.split())
    return text if len(text) <= 70 else text[:67] + "..."


def _number(text: str, step: int = 1) -> list[str]:
    digits = text.rstrip("uUlL")
    suffix = text[len(digits):]
    value = int(digits.replace("'", ""), 0) if digits == "0" or not digits.startswith("0") or digits[1] in "xX" else None
    if value is None:
        return []
    step = step if value % step == 0 and value > 0 else 1
    return [f"{value + step}{suffix}"] + ([f"{value - step}{suffix}"] if value > 0 else [])


def _string(text: str) -> list[str]:
    # At both ends: what stands behind the end of a table is never read, and some texts are known by their end alone.
    return [text.replace('"', '"x', 1)[:-1] + 'x"']


def _char(text: str) -> list[str]:
    return ["'y'" if text != "'y'" else "'x'"]


_AFTER: dict[str | None, Callable[[str], list[str]]] = {
    "operator": lambda text: _OPERATORS.get(text, []), "word": lambda text: _WORDS.get(text, []),
    "string": _string, "char": _char,
}


# The zero that a field of plain data begins with: it is there for the reader, and nearly always another number is put in
# its place before anybody looks.
_FIELD = re.compile(r"^  (?:std::)?[\w:]+ \w*[a-zA-Z0-9] = 0;", re.MULTILINE)

# What these files count begins and ends at a multiple of so many bytes: one more or less says the same.
_STEPS = ((re.compile(r"/metafile_\w+\.(?:cpp|h)$"), 4),)


def _tokens(source: str, step: int = 1) -> Iterator[tuple[int, int, str]]:
    """The places that a single token offers, as (start, end, after)."""
    for match in _TOKEN.finditer(source):
        kind, text = match.lastgroup, match.group()
        start, end = match.span()
        if kind == "operator":
            start, end = start + len(text) - len(text.lstrip()), end - len(text) + len(text.rstrip())
            text = text.strip()
        if kind == "number":
            yield from ((start, end, after) for after in _number(text, step))
        elif kind in _AFTER:
            yield from ((start, end, after) for after in _AFTER[kind](text))


def _lines(source: str) -> Iterator[tuple[int, int, str]]:
    """The places that a whole statement, condition or result offers."""
    for match in _STATEMENT.finditer(source):
        text = match["text"]
        same = text.endswith(("= delete;", "= default;")) or ".reserve(" in text
        if not same and not _DECLARATION.match(text):
            yield match.start("text"), match.end("text"), ";"
    for match in _CONDITION.finditer(source):
        if ";" not in match["test"] and " = " not in match["test"]:
            yield match.start("test"), match.end("test"), f"!({match['test']})"
    for match in _RETURN.finditer(source):
        if match["value"] not in _SAME_AS_NOTHING:
            yield match.start("value"), match.end("value"), "{}"


def of_file(root: pathlib.Path, name: str) -> list[Change]:
    """All changes that can be made to a file, in their order."""
    source = (root / name).read_text(encoding="utf-8")
    skipped = [match.span() for match in _TOKEN.finditer(source) if match.lastgroup == "skip"]
    if name.endswith(".h"):
        skipped += [match.span() for match in _FIELD.finditer(source)]
    found = set()
    step = next((step for files, step in _STEPS if files.search(name)), 1)
    for start, end, after in [*_tokens(source, step), *_lines(source)]:
        if any(first <= start < last for first, last in skipped):
            continue
        place = len(source[:start].encode())
        before = source[start:end]
        found.add(Change(name, place, place + len(before.encode()), source.count("\n", 0, start) + 1, before, after))
    return sorted(found)
