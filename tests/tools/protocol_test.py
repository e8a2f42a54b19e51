"""docs/protocol.json is what its own schema says, and no name in it leads nowhere."""

from __future__ import annotations

import copy
import json
import pathlib
import unittest

from jsonschema import Draft202012Validator

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs"
PROTOCOL = json.loads((DOCS / "protocol.json").read_text(encoding="utf-8"))
SCHEMA = json.loads((DOCS / "protocol.schema.json").read_text(encoding="utf-8"))


def lost_names(protocol: dict) -> set[str]:
    """Names that something refers to and that nothing bears."""
    known = {kind: {row["name"] for row in protocol[kind]} for kind in ("requests", "messages", "commands", "procedures")}
    lost = set()
    for row in protocol["requests"] + protocol["commands"]:
        lost |= set(row["calls"]) - known["procedures"]
    for request in protocol["requests"]:
        lost |= {request["endpoint"]} - known["commands"]
        lost |= {request["followedBy"]} - {None} - known["messages"]
    for message in protocol["messages"]:
        lost |= set(message["sentBy"]) - known["commands"]
    return lost


class Protocol(unittest.TestCase):
    def test_is_what_its_schema_says(self):
        Draft202012Validator.check_schema(SCHEMA)
        self.assertEqual([error.message for error in Draft202012Validator(SCHEMA).iter_errors(PROTOCOL)], [])
        self.assertEqual(lost_names(PROTOCOL), set())

    def test_faults_are_found(self):
        def spoilt(change) -> dict:
            protocol = copy.deepcopy(PROTOCOL)
            change(protocol)
            return protocol

        request = next(index for index, row in enumerate(PROTOCOL["requests"]) if row["name"] == "EnterBomViewMode")
        faults = {
            "a member without a meaning": lambda p: p["requests"][request]["members"][0].pop("meaning"),
            "an empty sentence": lambda p: p["requests"][request].update(purpose=""),
            "a sentence that is not ASCII": lambda p: p["procedures"][0].update(purpose="电阻."),
            "an array of nobody knows what": lambda p: p["requests"][request]["members"][1].pop("items"),
            "items of what is no array": lambda p: p["requests"][request]["members"][0].update(items={"kind": "text"}),
            "a kind that is none": lambda p: p["requests"][request]["members"][0].update(kind="path"),
            "a procedure called twice": lambda p: p["requests"][request].update(calls=["ZoomIn", "ZoomIn"]),
            "something more": lambda p: p.update(more=1),
        }
        for what, change in faults.items():
            self.assertFalse(Draft202012Validator(SCHEMA).is_valid(spoilt(change)), what)
        self.assertEqual(lost_names(spoilt(lambda p: p["requests"][request].update(calls=["gone"]))), {"gone"})


if __name__ == "__main__":
    unittest.main()
