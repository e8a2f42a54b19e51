"""docs/protocol.json is what its own schema says, no name in it leads nowhere, and recorded messages are as it says."""

from __future__ import annotations

import json
import unittest

from jsonschema import Draft202012Validator

from vernoxa.places import CONVERSATIONS, DOCS
from vernoxa.wire import messages, record, schemas
from vernoxa.wire.catalogue import PROTOCOL

SCHEMA = json.loads((DOCS / "protocol.schema.json").read_text(encoding="utf-8"))
MESSAGES = json.loads((DOCS / "messages.schema.json").read_text(encoding="utf-8"))


def lost_names(protocol: dict) -> set[str]:
    """Names that something refers to and that nothing bears."""
    known = {kind: {row["name"] for row in protocol[kind]} for kind in ("messages", "commands", "procedures")}
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
        text = json.dumps(PROTOCOL)
        for before, after in (('"meaning": ', '"meant": '), ('"purpose": "', '"purpose": "电阻'), ('"items": ', '"of": '),
                              ('"kind": "text"', '"kind": "path"'), ('"calls": ["', '"calls": ["ZoomIn", "ZoomIn", "'),
                              ("{", '{"more": 1, ')):
            spoilt = json.loads(text.replace(before, after, 1))
            self.assertFalse(Draft202012Validator(SCHEMA).is_valid(spoilt), after)
        self.assertEqual({"gone"}, lost_names(json.loads(text.replace('"calls": ["', '"calls": ["gone", "', 1))))

    def test_recorded_messages_are_what_their_schemas_say_and_the_requests_that_were_refused_are_not(self):
        Draft202012Validator.check_schema(MESSAGES)
        faulty, seen = [], 0
        for file in sorted(CONVERSATIONS.glob("*.txt")):
            for entry in record.read(file):
                message = messages.read(entry.message)
                if entry.what == record.PLUG_IN:
                    self.assertEqual((schemas.faults_of(message), message.faults), ([], []), file.name)
                elif entry.what == record.COMPANION and schemas.faults_of(message):
                    faulty.append((file.name, message.command))
                seen += bool(entry.message)
        self.assertEqual([("refusals.txt", "NoSuchCommand"), ("refusals.txt", "GenerateBOM")], faulty)
        self.assertGreater(seen, 150)

    def test_a_message_is_told_what_it_misses_and_no_more(self):
        refused = {"Command": "Nothing_EndResult", "ErrInfo": "command error", "Result": "1", "Data": {}}
        for message, missing in (({"Data": {}}, ["Command"]), ({"Command": "GenerateBOM", "Data": {}}, ["ProjectPath"]),
                                 (refused, []), ({"Command": "Nothing"}, ["_EndResult", "ErrInfo", "Result", "Data"])):
            faults = [error.message for error in Draft202012Validator(MESSAGES).iter_errors(message)]
            self.assertEqual(len(missing), len(faults), faults)
            for name, fault in zip(missing, faults):
                self.assertIn(name, fault)


if __name__ == "__main__":
    unittest.main()
