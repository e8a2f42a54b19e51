"""The tools for packet texts and traffic logs: what they make readable, and what they mark as a fault."""

import json
import subprocess
import sys
import tempfile
import unittest

from fake_plug_in import FINDING, opened

import packet
import traffic
from vernoxa.wire import json_text

OPEN = opened("C:\\设计\\a.dsn").decode("gbk")
CHINESE_BILL = ('{"Data":{"Stick":[{"PartNumber":"","Value":"电阻 10k","PartRef":"R1","PartName":"RES","PCBFootprint":"0603",'
                '"PinNumber":"2"}]},"Command":"AddToBom","Result":"0"}')
ASKED = '{"Command":"CheckOpenState","Data":{"ProjectPath":"a.dsn"},"Result":"0"}'
ANSWERED = '{"Data":{"State":"Open"},"Command":"CheckOpenState_EndResult","Result":"0"}'


def log(*lines: str) -> bytes:
    return "".join(f"[Time]:2024-3-5 9:7:2:45.{line}\n" for line in lines).replace("\n", "\r\n").encode("gbk")


def header(name: str, length: int) -> list[str]:
    return [f"{name}[{index}]:{byte if byte < 0x80 else byte | 0xFFFFFF00:x}"
            for index, byte in enumerate(length.to_bytes(4, "little"))]


def sent(text: str, length: int | None = None, between: tuple[str, ...] = ()) -> list[str]:
    digits = text.encode("gbk").hex()
    length = len(digits) if length is None else length
    return [text, *header("acBuf", length), f"Length:{length}", digits, *between, "=" * 26 + "send over"]


def received(text: str, length: int | None = None, over: bool = True) -> list[str]:
    length = 2 * len(text.encode("gbk")) if length is None else length
    lines = [*header("revData", length), f"len:{length}"]
    return lines + [text, "=" * 26 + "recv over"] if over else lines


def taken(text: str) -> list[str]:
    return ["=" * 20 + "decodePacket", text]


def returned(text: str, digits: str | None = None) -> list[str]:
    return ["return data:" + text, digits or text.encode("gbk").hex()]


def run_packet(*words: str) -> tuple[int, str, str]:
    done = subprocess.run([sys.executable, packet.__file__, *words], capture_output=True, text=True, timeout=60)
    return done.returncode, done.stdout.strip(), done.stderr.strip()


class TrafficTest(unittest.TestCase):
    def test_conversations_are_read_and_faults_are_marked(self):
        cases = [
            ("a design is opened", ["5962", *returned(OPEN), "Tcl_SetResult"], ["step", "out FileStatus", "step"], []),
            ("asked and answered", taken(ASKED) + returned(ANSWERED),
             ["in CheckOpenState", "out CheckOpenState_EndResult"], []),
            ("not answered", taken(ASKED), ["in CheckOpenState"], ["no answer"]),
            ("needs no answer", taken('{"Command":"CloseOrcad","Data":{}}'), ["in CloseOrcad"], []),
            ("unknown", taken('{"Command":"What"}'), ["in What"], ["does not have", "not known, and no answer"]),
            ("no packet text", ["=" * 20 + "decodePacket", *taken(ASKED), *returned(ANSWERED)],
             ["in", "in CheckOpenState", "out CheckOpenState_EndResult"], ["could not be decoded"]),
            ("another packet text", returned(OPEN, b"{}".hex()), ["out FileStatus"], ["another message: {}"]),
            ("the log's code page, the packet's UTF-8", returned(CHINESE_BILL, CHINESE_BILL.encode().hex()),
             ["out AddToBom"], []),
            ("members in another order", returned('{"Command":"TryUpdateBom","Data":{}}'), ["out TryUpdateBom"],
             ["members of the message"]),
            ("a report of its thread with line ends", sent(json_text.print_formatted(json.loads(OPEN)).decode("gbk")),
             ["sent FileStatus"], []),
            ("the thread's packet seen at the door", sent(OPEN) + taken(OPEN), ["sent FileStatus", "in FileStatus"], []),
            ("a piece is lost", sent(OPEN, between=("errno:10054",)), ["sent FileStatus"], ["errno 10054"]),
            ("a wrong length", sent(OPEN, length=70000), ["sent FileStatus"], ["cannot read this whole"]),
            ("received", received(ANSWERED), ["received CheckOpenState_EndResult"], []),
            ("received in part", received(ANSWERED, length=300), ["received CheckOpenState_EndResult"],
             ["announced were 300"]),
            ("broken off", received("", length=300, over=False), ["received"], ["before it is received"]),
            ("two threads", [*sent(OPEN)[:3], "5962", *sent(OPEN)[3:]], ["sent FileStatus", "step"], []),
        ]
        for name, lines, expected, faults in cases:
            with self.subTest(name):
                items = traffic.read(log(*lines))
                self.assertEqual(expected, [f"{item.way} {item.message.command}".strip() for item in items])
                found = [fault for item in items for fault in item.faults]
                self.assertEqual(len(faults), len(found), found)
                for text, fault in zip(faults, found):
                    self.assertIn(text, fault)
        self.assertEqual("09:07:02.045", items[0].time)

    def test_texts_that_are_not_in_the_code_page_are_noted(self):
        line = log("return data:" + FINDING.replace("含", "V属性包含") % "%").replace(b"%", "100μF".encode())
        with tempfile.NamedTemporaryFile() as file:
            file.write(line)
            file.flush()
            _, shown, _ = run_packet("log", file.name)
        self.assertIn("ActualValue=100μF  Comment=V属性包含非法字符", shown)
        self.assertIn("note: 1 text in UTF-8, as the host gave them: 100μF", shown)

    def test_what_is_no_log_is_no_fault_of_the_reader(self):
        for text in (b"", b"\r\n", b"loose\r\n" + log("1111"), bytes(range(256)), log("acBuf[0]:1", "errno:3", "len:x")):
            traffic.read(text)


class PacketTest(unittest.TestCase):
    def test_packet_text_and_message_become_each_other(self):
        status, encoded, _ = run_packet("encode", "--frame", '{"Command":"JumpToPartRef","Data":{"PartRef":"电阻"}}')
        self.assertEqual((0, "6a000000"), (status, encoded[:8]))
        self.assertIn("b5e7d7e8", encoded)
        for text in (encoded, encoded[8:]):
            status, message, fault = run_packet("decode", text)
            self.assertEqual((0, ""), (status, fault))
            self.assertIn('"PartRef": "电阻"', message)
        status, _, fault = run_packet("decode", encoded[8:] + "zz")
        self.assertEqual(1, status)
        self.assertIn("no hexadecimal digit", fault)
        for words in (("encode", '{"a":"😀"}'), ("encode", "{"), ("log", __file__)):
            self.assertEqual((2, ""), run_packet(*words)[:2])


if __name__ == "__main__":
    unittest.main()
