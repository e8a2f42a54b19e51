"""Packet texts, messages and traffic logs, readable: for whoever has to find out what two programs said."""

from __future__ import annotations

import argparse
import json
import pathlib
import re
import sys

from vernoxa.command import DONE, NOT_DONE, Parser, Refused, run
from vernoxa.wire import frames, json_text, messages, record
from vernoxa.wire.catalogue import REPLY_SUFFIX
from vernoxa.wire.messages import shorten, summary

import traffic

# What terminals take for the looks of a text.
DIM, BOLD, RED, GREEN, YELLOW, BLUE, MAGENTA, CYAN = 2, 1, 31, 32, 33, 34, 35, 36
_WAYS = {
    traffic.IN: ("to the plug-in", BLUE),
    traffic.OUT: ("from the plug-in", GREEN),
    traffic.SENT: ("its thread asks", MAGENTA),
    traffic.RECEIVED: ("its thread gets", CYAN),
    traffic.STEP: ("step", DIM),
}


def arguments() -> argparse.Namespace:
    parser = Parser(prog="packet", description=__doc__)
    commands = parser.add_subparsers(dest="command", required=True)
    decode = commands.add_parser("decode", help="packet text to a readable message")
    decode.add_argument("text", nargs="?", help="packet text, or a frame's bytes as digits; standard input without it")
    encode = commands.add_parser("encode", help="a message as JSON (UTF-8) to packet text")
    encode.add_argument("text", nargs="?", help="the message; standard input without it")
    encode.add_argument("--formatted", action="store_true", help="printed with tabs and line ends")
    encode.add_argument("--frame", action="store_true", help="with the four bytes of the frame's header before it")
    log = commands.add_parser("log", help="a traffic log (schLog.txt) or a recorded conversation, faults marked")
    log.add_argument("file", type=pathlib.Path)
    log.add_argument("--messages", action="store_true", help="each message whole")
    log.add_argument("--steps", action="store_true", help="the program's steps too, and what is seen twice")
    return parser.parse_args()


def decode(text: str) -> int:
    """The message on standard output, what is wrong with it on the error output."""
    digits = re.sub(r"\s+", "", text)
    if re.match(r"[0-9a-f]{4}0000", digits) and int.from_bytes(bytes.fromhex(digits[:8]), "little") == len(digits) - 8:
        digits = digits[8:]  # a frame with its header
    raw, faults = frames.decode(digits.encode("utf-8"))
    message = traffic.read_message(raw)
    print(readable(message))
    for fault in faults + message.faults:
        print(f"fault: {fault}", file=sys.stderr)
    for note in message.notes:
        print(f"note: {note}", file=sys.stderr)
    return NOT_DONE if faults or message.faults else DONE


def readable(message: messages.Message) -> str:
    if message.members:
        return json.dumps(record.json_of(message)[1] or message.members, ensure_ascii=False, indent=2)
    return message.raw.decode("gbk", "replace")


def encode(text: str, formatted: bool, frame: bool) -> int:
    printer = json_text.print_formatted if formatted else json_text.print_plain
    raw = printer(json.loads(text))
    packet = raw.hex()
    print((len(packet).to_bytes(4, "little").hex() if frame else "") + packet)
    return DONE


def show_log(options: argparse.Namespace) -> int:
    text = options.file.read_bytes()
    items = traffic.of_record(options.file) if text.startswith(record.TITLE.encode()) else traffic.read(text)
    if text.strip() and not any(item.time for item in items):
        raise Refused(f"{options.file} is no traffic log: no line of it has a time")
    faults = 0
    for item in items:
        faults += len(item.faults)
        if (item.way == traffic.STEP or item.repeats) and not options.steps:
            continue
        print(line_of(item))
        if options.messages and item.message.members:
            print(readable(item.message))
        for fault in item.faults:
            print(looking(f"  fault: {fault}", BOLD, RED))
        for note in item.message.notes if item.way != traffic.STEP else ():
            print(looking(f"  note: {note}", YELLOW))
    said = [item for item in items if item.way != traffic.STEP and not item.repeats]
    print(f"{len(said)} messages, {sum(failed(item) for item in said)} failures answered, {faults} faults")
    return NOT_DONE if faults else DONE


def looking(text: str, *looks: int) -> str:
    """On a terminal."""
    return f"\x1b[{';'.join(map(str, looks))}m{text}\x1b[0m" if sys.stdout.isatty() else text


def line_of(item: traffic.Item) -> str:
    name, colour = _WAYS[item.way]
    message = item.message
    text = looking(f"{item.time} ", DIM) + looking(f"{name:<17}", colour)
    if not message.members:
        return text + looking(shorten(message.raw.decode("gbk", "replace")) or "(empty)", DIM)
    text += looking(message.command, BOLD, colour)
    if failed(item):
        text += looking(f" failed: {message.error or message.members['Result']}", BOLD, RED)
    return text + "".join(looking(f"  {member}=", DIM) + shorten(summary(value)) for member, value in message.data.items())


def failed(item: traffic.Item) -> bool:
    result = item.message.members.get("Result", "0")
    return item.message.command.endswith(REPLY_SUFFIX) and str(result) != "0"


def main() -> int:
    options = arguments()
    if options.command == "log":
        return show_log(options)
    text = sys.stdin.read() if options.text is None else options.text
    try:
        return decode(text) if options.command == "decode" else encode(text, options.formatted, options.frame)
    except UnicodeEncodeError as error:
        raise Refused(f"outside the code page: {error.object[error.start:error.end]}") from error
    except ValueError as error:
        raise Refused(str(error)) from error


if __name__ == "__main__":
    run("packet", main)
