"""Messages held against docs/messages.schema.json."""

from __future__ import annotations

import functools
import json

from jsonschema import Draft202012Validator

from vernoxa.places import DOCS

from . import record
from .messages import Message

KNOWN = json.loads((DOCS / "messages.schema.json").read_text(encoding="utf-8"))["$defs"]


@functools.cache
def _validator(name: str) -> Draft202012Validator:
    return Draft202012Validator({"$ref": f"#/$defs/{name}", "$defs": KNOWN})


def faults_of(message: Message) -> list[str]:
    """By its name alone, which nobody may know: then it can only be refused. What is not JSON has no schema."""
    value = record.json_of(message)[1]
    name = message.command if message.command in KNOWN else "refusal"
    return [] if value is None else [error.message[:200] for error in _validator(name).iter_errors(value)]
