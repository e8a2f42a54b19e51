"""JSON on the bytes of the code page (GBK), parsed and printed the way the plug-in's JSON library does it.

That library knows nothing of double-byte characters: it looks at single bytes. The second byte of a GBK character can be
a backslash, which it escapes when printing and expects escaped when parsing. So the bytes are read one to one as
Latin-1 here, and each string is turned into text only after its escapes are gone.

Some texts of the host go into a message as they are, in UTF-8. A string of a message is taken for UTF-8 when it is
valid UTF-8 throughout and holds a three-byte sequence, which GBK text is by the rarest accident only.
"""

from __future__ import annotations

import codecs
import json
from typing import Callable


class NotJson(ValueError):
    """The message is no JSON; the text says where and why."""


class Utf8(str):
    """A text that is UTF-8 on the wire, where code page text belongs."""


class _Members(list):
    """An object's members in their order, before repeated names are looked for."""


def _euro(error: UnicodeError) -> tuple[str | bytes, int]:
    """Code page 936 holds the euro sign at 0x80, which Python's table of the same code page leaves out."""
    if isinstance(error, UnicodeDecodeError) and error.object[error.start] == 0x80:
        return "\u20ac", error.start + 1
    if isinstance(error, UnicodeEncodeError) and error.object[error.start] == "\u20ac":
        return b"\x80", error.start + 1
    raise error


codecs.register_error("code-page-936", _euro)


def from_code_page(data: bytes) -> str:
    return data.decode("gbk", "code-page-936")


def to_code_page(text: str) -> bytes:
    return text.encode("gbk", "code-page-936")


def text_of(data: bytes) -> str:
    """Raises UnicodeDecodeError for bytes that are neither GBK nor UTF-8."""
    try:
        text = data.decode("utf-8")
        if any("\u0800" <= character <= "\uffff" for character in text):
            return Utf8(text)
    except UnicodeDecodeError:
        pass
    return from_code_page(data)


def text_of_host(data: bytes) -> str:
    """A text that is passed on as the host gave it: UTF-8 wherever it can be."""
    try:
        text = data.decode("utf-8")
        return text if text.isascii() else Utf8(text)
    except UnicodeDecodeError:
        return from_code_page(data)


def bytes_of(text: str) -> bytes:
    """Raises UnicodeEncodeError for text outside the code page."""
    return text.encode("utf-8") if isinstance(text, Utf8) else to_code_page(text)


def parse(message: bytes) -> tuple[object, list[str]]:
    """The value, its strings as text, and what is wrong with it: strings that are no GBK, repeated member names.

    Raises NotJson when it does not parse at all.
    """
    problems: list[str] = []

    def refuse(name: str) -> None:
        raise NotJson(f"{name} is no JSON")

    def settle_text(raw: str) -> str:
        try:
            data = raw.encode("latin-1")
        except UnicodeEncodeError:  # from a \u escape
            data = b"".join(c.encode("latin-1") if c < "\u0100" else to_code_page(c) for c in raw)
        try:
            return text_of(data)
        except UnicodeDecodeError:
            problems.append(f"bytes that are no GBK in {data!r}")
            return data.decode("gbk", "replace")

    def settle(value: object) -> object:
        if isinstance(value, str):
            return settle_text(value)
        if isinstance(value, _Members):
            settled: dict[str, object] = {}
            for name, member in value:
                name = settle_text(name)
                if name in settled:
                    problems.append(f'member "{name}" twice')
                settled[name] = settle(member)
            return settled
        if isinstance(value, list):
            return [settle(item) for item in value]
        return value

    try:
        value = json.loads(message.decode("latin-1"), object_pairs_hook=_Members, parse_constant=refuse)
        return settle(value), problems
    except NotJson:
        raise
    except UnicodeError as error:
        raise NotJson(f"an escape outside the code page: {error}") from error
    except RecursionError as error:
        raise NotJson("nested too deeply") from error
    except ValueError as error:
        raise NotJson(str(error)) from error


def each_text(value: object, change: Callable[[str], str]) -> object:
    """The value with each of its texts changed, member names too."""
    if isinstance(value, str):
        return change(value)
    if isinstance(value, dict):
        return {change(name): each_text(member, change) for name, member in value.items()}
    if isinstance(value, list):
        return [each_text(item, change) for item in value]
    return value


def texts_of(value: object) -> list[str]:
    """All texts in a value in their order, member names too."""
    texts: list[str] = []

    def keep(text: str) -> str:
        texts.append(text)
        return text

    each_text(value, keep)
    return texts


def _scalar(value: object) -> str:
    if isinstance(value, str):
        return json.dumps(bytes_of(value).decode("latin-1"), ensure_ascii=False)
    return json.dumps(value)


def print_plain(value: object) -> bytes:
    """Without any space. Raises UnicodeEncodeError for text outside the code page."""

    def text(item: object) -> str:
        if isinstance(item, dict):
            return "{" + ",".join(f"{_scalar(name)}:{text(member)}" for name, member in item.items()) + "}"
        if isinstance(item, list):
            return "[" + ",".join(text(member) for member in item) + "]"
        return _scalar(item)

    return text(value).encode("latin-1")


def print_formatted(value: object) -> bytes:
    """With tabs and line ends: members on lines of their own, array elements behind one another."""

    def text(item: object, depth: int) -> str:
        if isinstance(item, dict):
            lines = [
                "\t" * (depth + 1) + f"{_scalar(name)}:\t{text(member, depth + 1)}" for name, member in item.items()
            ]
            body = ",\n".join(lines) + "\n" if lines else ""
            return "{\n" + body + "\t" * depth + "}"
        if isinstance(item, list):
            return "[" + ", ".join(text(member, depth + 1) for member in item) + "]"
        return _scalar(item)

    return text(value, 0).encode("latin-1")
