"""docs/protocol.json is what its own schema says, no name in it leads nowhere, and recorded messages are as it says."""

from __future__ import annotations

import copy
import json
import unittest

from jsonschema import Draft202012Validator

from vernoxa.places import CONVERSATIONS, DOCS
from vernoxa.wire import messages, record, schemas
from vernoxa.wire.catalogue import PROTOCOL, REPLY_SUFFIX

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

    def test_recorded_messages_are_what_their_schemas_say(self):
        Draft202012Validator.check_schema(MESSAGES)
        seen = 0
        for file in sorted((CONVERSATIONS).glob("*.txt")):
            said = [(entry.what, messages.read(entry.message)) for entry in record.read(file) if entry.message
                    and entry.what in (record.COMPANION, record.PLUG_IN)]
            refused = [message.command for _, message in said if message.shape == "refused"]
            for who, message in said:
                if who == record.COMPANION and message.command + REPLY_SUFFIX in refused:
                    continue  # tried below
                self.assertEqual(schemas.faults_of(message), [], file.name)
                seen += 1
        self.assertGreater(seen, 150)

    def test_a_message_is_told_what_it_misses_and_no_more(self):
        refused = {"Command": "Nothing_EndResult", "ErrInfo": "command error", "Result": "1", "Data": {}}
        for message, missing in (({"Data": {}}, ["Command"]), ({"Command": "GenerateBOM", "Data": {}}, ["ProjectPath"]),
                                 (refused, []), ({"Command": "Nothing"}, ["_EndResult", "ErrInfo", "Result", "Data"])):
            faults = [error.message for error in Draft202012Validator(MESSAGES).iter_errors(message)]
            self.assertEqual(len(missing), len(faults), faults)
            for name, fault in zip(missing, faults):
                self.assertIn(name, fault)

    def test_asyncapi_refers_to_nothing_that_is_not_there(self):
        document = json.loads((DOCS / "asyncapi.json").read_text(encoding="utf-8"))
        for reference in references_in(document):
            place = document
            for name in reference.removeprefix("#/").split("/"):
                self.assertIn(name, place, reference)
                place = place[name]

    def test_what_is_refused_has_faults(self):
        said = record.read(CONVERSATIONS / "refusals.txt")
        asked = [messages.read(entry.message) for entry in said if entry.what == record.COMPANION]
        faulty = [message.command for message in asked if schemas.faults_of(message)]
        self.assertEqual(faulty, ["NoSuchCommand", "GenerateBOM"])


def references_in(value: object) -> list[str]:
    if isinstance(value, list):
        return [reference for item in value for reference in references_in(item)]
    if not isinstance(value, dict):
        return []
    return [value["$ref"]] if "$ref" in value else references_in(list(value.values()))


if __name__ == "__main__":
    unittest.main()
