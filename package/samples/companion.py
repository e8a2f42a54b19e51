#!/usr/bin/python3
"""A companion to begin with: keeps the bill of materials of every design that is open in the editor as a CSV file.

    companion.py FOLDER

Nothing but Python is needed. How the two ends talk is told in docs/for-companion-authors.md.
"""

import contextlib
import csv
import json
import pathlib
import socketserver
import struct
import sys

CODE_PAGE = "mbcs" if sys.platform == "win32" else "gbk"
COLUMNS = ("PartNumber", "Value", "PartRef", "PartName", "PCBFootprint", "PinNumber")


def each_text(value, change):
    if isinstance(value, str):
        return change(value)
    if isinstance(value, list):
        return [each_text(item, change) for item in value]
    return {name: each_text(item, change) for name, item in value.items()} if isinstance(value, dict) else value


def text_of_bill(characters):
    """JSON is read byte for byte; then a text of a bill is UTF-8 wherever it can be."""
    data = characters.encode("latin-1")
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return data.decode(CODE_PAGE, "replace")


def text_of(characters):
    """Elsewhere two bytes of UTF-8 may be a character of the code page; three are UTF-8 for certain."""
    text = text_of_bill(characters)
    return text if max(text, default="") >= "\u0800" else characters.encode("latin-1").decode(CODE_PAGE, "replace")


def message_of(packet):
    message = json.loads(bytes.fromhex(packet.decode("ascii")).decode("latin-1"))
    return each_text(message, text_of_bill if message.get("Command") == "GenerateBOM_EndResult" else text_of)


def packet_of(message):
    characters = each_text(message, lambda text: text.encode(CODE_PAGE, "replace").decode("latin-1"))
    return json.dumps(characters, ensure_ascii=False).encode("latin-1").hex().encode("ascii")


class Connection(socketserver.StreamRequestHandler):
    """The host's scripts keep one open. The plug-in makes others, to see who listens or to ask one thing."""

    def handle(self):
        with contextlib.suppress(ConnectionError):
            self.read()

    def read(self):
        self.designs = set()  # those that are open
        self.asked = []  # those whose bills are still to come, in their order
        while len(header := self.rfile.read(4)) == 4:
            packet = self.rfile.read(struct.unpack("<I", header)[0])
            try:
                message = message_of(packet)
            except ValueError:  # findings and reports hold texts of the editor that may break them
                continue
            getattr(self, f"take_{message.get('Command')}", lambda data: None)(message.get("Data", {}))

    def send(self, command, data, result="0"):
        packet = packet_of({"Command": command, "Data": data, "Result": result})
        self.wfile.write(struct.pack("<I", len(packet)) + packet)

    def take_FileStatus(self, data):
        design = data["FileName"]
        self.send("FileStatus_EndResult", {"Path": design.replace("/", "\\").rpartition("\\")[0]})
        if data["Status"] == "Close":
            self.designs.discard(design)
        else:
            self.ask_for_bill(design)

    def take_TryUpdateBom(self, data):
        for design in sorted(self.designs):
            self.ask_for_bill(design)

    def ask_for_bill(self, design):
        self.designs.add(design)
        self.asked.append(design)
        self.send("GenerateBOM", {"ProjectPath": design.replace("\\", "/")})  # which every script understands

    def take_GenerateBOM_EndResult(self, data):
        name = pathlib.PureWindowsPath(self.asked.pop(0)).stem if self.asked else ""
        if not name or "Stick" not in data:  # nobody asked, or it was refused
            return
        with open(self.server.folder / f"{name}.csv", "w", encoding="utf-8", newline="") as file:
            table = csv.writer(file)
            table.writerow((*COLUMNS, "Fitted"))
            for parts, fitted in ((data["Stick"], "yes"), (data["NotStick"], "no")):
                table.writerows((*(part[column] for column in COLUMNS), fitted) for part in parts)
        print(f"{name}: {len(data['Stick'])} fitted, {len(data['NotStick'])} not", flush=True)

    def take_GetSelfId(self, data):
        self.send("GetSelfId_EndResult", {"UserId": "1"})

    def take_GetMarketResPath(self, data):
        self.send("GetMarketResPath_EndResult", {"ResId": data["ResId"], "DatPath": ""}, "1")


class Companion(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True


if __name__ == "__main__":
    folder, = sys.argv[1:] or sys.exit("companion.py FOLDER")
    Companion.folder = pathlib.Path(folder)
    Companion(("127.0.0.1", 9601), Connection).serve_forever()
