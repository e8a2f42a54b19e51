"""Prints what the field's own tools read, out of docs/protocol.json: a JSON Schema of every message, and AsyncAPI.

No kept tool writes them of tables that are our own; kept ones judge them (tools/setup/asyncapi_check.mjs, jsonschema).

    schemas.py            writes docs/messages.schema.json and docs/asyncapi.json
    schemas.py --check    exit 1 when one differs from what would be written
"""

from __future__ import annotations

import json
import sys

from vernoxa.command import run
from vernoxa.dist.package import version
from vernoxa.places import DOCS
from vernoxa.wire.catalogue import PROTOCOL

LINK = PROTOCOL["link"]
SUFFIX = LINK["replySuffix"]

TEXT: dict = {"type": "string"}
# A fraction is cut off.
NUMBER = {"anyOf": [{"type": "number"}, {"type": "string", "pattern": "^-?[0-9]+$"}]}
TEXT_OR_NUMBER = {"type": ["string", "number"]}
KINDS: dict[str, dict] = {"text": TEXT, "number": NUMBER, "textOrNumber": TEXT_OR_NUMBER}


# Members that are needed when another is there.
_TOGETHER = {"JumpToPartRef": {"PartRef": ["ProjectPath"]}}


# --- schemas -------------------------------------------------------------------------------------------------------


def of_member(member: dict, more: bool = False) -> dict:
    if member["kind"] == "array":
        items = member["items"]
        schema = {"type": "array", "items": of_object(items["members"], more) if "members" in items else dict(TEXT)}
    else:
        schema = {**KINDS[member["kind"]]}
    if "values" in member:
        schema["enum"] = member["values"]
    return {"description": member["meaning"], **schema}


def of_object(members: list[dict], more: bool = False) -> dict:
    """`more`: members that are not listed are ignored, not wrong."""
    schema: dict = {
        "type": "object",
        "properties": {member["name"]: of_member(member, more) for member in members if member["name"] != "*"},
        "required": [member["name"] for member in members if member["needed"] and member["name"] != "*"],
    }
    others = next((of_member(member) for member in members if member["name"] == "*"), more)
    return schema if others is True else {**schema, "additionalProperties": others}


def envelope(command: dict, members: dict, purpose: str) -> dict:
    schema = {"type": "object", "properties": {"Command": command, **members}}
    return {"description": purpose, **schema, "required": ["Command", *members], "additionalProperties": False}


def of_request(request: dict) -> dict:
    data = of_object(request["members"], more=True)
    data |= {"dependentRequired": _TOGETHER[request["name"]]} if request["name"] in _TOGETHER else {}
    schema = {"type": "object", "properties": {"Command": {"const": request["name"]}, "Data": data}}
    return {"description": request["purpose"], **schema, "required": ["Command", *["Data"] * bool(data["required"])]}


def refusal(command: dict, error: dict) -> dict:
    members = {"ErrInfo": error, "Result": {"const": "1"}, "Data": of_object([])}
    return envelope(command, members, "The request lacks something, or its name is not known.")


def of_replies(request: dict) -> list[dict]:
    name, answer = {"const": request["name"] + SUFFIX}, request["answer"]
    refused = refusal(name, {"const": request["refusal"]})
    if answer is None:
        return [refused]
    beside = {"ErrInfo": {"const": ""}} if answer["emptyErrInfo"] else {}
    forms = [envelope(name, {"Data": of_object(answer["data"]), "Result": {"const": "0"}, **beside}, "It was done.")]
    if answer["failure"]:
        why = {"description": answer["failure"]["errInfo"], **TEXT}
        inside = answer["failure"]["errInfoIn"] == "Data"
        data = of_object([]) | ({"properties": {"ErrInfo": why}, "required": ["ErrInfo"]} if inside else {})
        beside = {} if inside else {"ErrInfo": why}
        forms.append(envelope(name, {"Data": data, "Result": {"const": "1"}, **beside}, "It failed."))
    return [*forms, refused]


def of_message(message: dict) -> dict:
    members = {"Data": of_object(message["data"]), "Result": {"const": "0"}, "ErrInfo": {"const": ""}}
    present = {name: schema for name, schema in members.items() if name in message["envelope"]}
    return envelope({"const": message["name"]}, present, message["purpose"])


def of_answer(message: dict) -> dict:
    """The companion's. It may hold more, and its "Result" may be a number."""
    data = of_object(message["answer"], more=True)
    schema = {"properties": {"Command": {"const": message["name"] + SUFFIX}, "Data": data, "Result": TEXT_OR_NUMBER}}
    return {"description": f"The companion's answer to {message['name']}.", "type": "object", **schema,
            "required": ["Command", "Data", "Result"]}


def schemas() -> dict[str, dict]:
    """By the name of the message. A name that both sides use has the forms of both."""
    forms: dict[str, list[dict]] = {}
    for request in PROTOCOL["requests"]:
        forms.setdefault(request["name"], []).append(of_request(request))
        forms.setdefault(request["name"] + SUFFIX, []).extend(of_replies(request))
    for message in PROTOCOL["messages"]:
        forms.setdefault(message["name"], []).append(of_message(message))
        if message["answer"]:
            answer = of_answer(message)
            known = forms.setdefault(message["name"] + SUFFIX, [])
            known += [answer] * (answer not in known)
    return {name: each[0] if len(each) == 1 else {"anyOf": each} for name, each in sorted(forms.items())}


def _under_its_name(known: list[str]) -> list[dict]:
    """By the name of a message one form is asked for, so that a validator says what that misses and no more."""
    chosen = [{"if": {"properties": {"Command": {"const": name}}, "required": ["Command"]},
               "then": {"$ref": f"#/$defs/{name}"}} for name in known]
    return [*chosen, {"if": {"properties": {"Command": {"enum": known}}}, "else": {"$ref": "#/$defs/refusal"}}]


def message_schema() -> dict:
    refusals = sorted({request["refusal"] for request in PROTOCOL["requests"]})
    # A request that nobody knows is refused under its own name.
    known = schemas()
    refused = {"refusal": refusal({"type": "string", "pattern": f"{SUFFIX}$"}, {"enum": refusals})}
    return {
        "$schema": "https://json-schema.org/draft/2020-12/schema",
        "title": "Every message between the plug-in, its host's scripts and its companion",
        "description": "Printed from protocol.json, which also says in what order members stand. A message is in the "
                       "code page: bring it into UTF-8 first. A name may have several forms: validate against "
                       "#/$defs/NAME to be told what is missing in each.",
        "type": "object",
        "required": ["Command"],
        "allOf": _under_its_name([*known]),
        "$defs": known | refused,
    }


# --- AsyncAPI ------------------------------------------------------------------------------------------------------


def of_channel(server: str, names: list[str], description: str) -> dict:
    messages = {name: {"$ref": f"#/components/messages/{name}"} for name in sorted(set(names))}
    return {"servers": [{"$ref": f"#/servers/{server}"}], "description": description, "messages": messages}


def operation(action: str, channel: str, name: str, summary: str, reply: bool = True) -> dict:
    def refers(message: str) -> list[dict]:
        return [{"$ref": f"#/channels/{channel}/messages/{message}"}]

    there = {"$ref": f"#/channels/{channel}"}
    made = {"action": action, "channel": there, "summary": summary, "messages": refers(name)}
    return made | ({"reply": {"channel": there, "messages": refers(name + SUFFIX)}} if reply else {})


def asyncapi() -> dict:
    """As the plug-in sees it: it receives requests, and sends what it tells."""
    operations: dict[str, dict] = {}
    names: dict[str, list[str]] = {"conversation": [], "question": [], "link": []}
    for request in PROTOCOL["requests"]:
        channel = "conversation" if request["side"] == "companion" else "link"
        names[channel] += [request["name"], request["name"] + SUFFIX]
        operations[f"{channel}-{request['name']}"] = operation("receive", channel, request["name"], request["purpose"])
    for message in PROTOCOL["messages"]:
        channel = "question" if message["connection"] == "own" else "conversation"
        answered = message["answer"] is not None
        names[channel] += [message["name"], *[message["name"] + SUFFIX] * answered]
        told = operation("send", channel, message["name"], message["purpose"], answered)
        operations.setdefault(f"{channel}-tell-{message['name']}", told)
    named = schemas()
    frame = f"{LINK['message']} On the wire: {LINK['frame']} {LINK['packetText']}"
    return {
        "asyncapi": "3.1.0",
        "info": {"title": "Vernoxa", "version": version(), "description": frame},
        "defaultContentType": "application/json",
        "servers": {
            "companion": {"host": f"{LINK['address']}:{LINK['companionPort']}", "protocol": "tcp",
                          "description": "Served by the companion; plug-in and host scripts connect to it."},
            "host": {"host": f"{LINK['address']}:{LINK['hostPort']}", "protocol": "tcp",
                     "description": "Served by the host's scripts; the plug-in's own thread connects to it."},
        },
        "channels": {
            "conversation": of_channel("companion", names["conversation"], "The connection of the host's scripts, "
                                       "which stays open. Both sides may speak at any time."),
            "question": of_channel("companion", names["question"], "A connection for one question and its answer."),
            "link": of_channel("host", names["link"], "What the plug-in's own thread asks through the host's scripts."),
        },
        "operations": operations,
        "components": {
            "messages": {name: {"name": name, "payload": {"$ref": f"#/components/schemas/{name}"}} for name in named},
            "schemas": named,
        },
    }


def main() -> int:
    stale = 0
    for name, document in (("messages.schema.json", message_schema()), ("asyncapi.json", asyncapi())):
        file, text = DOCS / name, json.dumps(document, indent=2) + "\n"
        if "--check" not in sys.argv:
            file.write_text(text, encoding="utf-8", newline="\n")
        elif not file.is_file() or file.read_text(encoding="utf-8") != text:
            print(f"docs/{name} is stale: run ./dev docs")
            stale = 1
    return stale


if __name__ == "__main__":
    run("schemas", main)
