"""Recorded and repeated conversations: what counts as a difference, and how it reads."""

import pathlib
import tempfile
import unittest

from vernoxa.replay import compare
from vernoxa.replay.conversation import Conversation, Design, NotReplayable
from vernoxa.replay.performance import RecordedAnswers
from vernoxa.wire import json_text
from vernoxa.wire.record import COMPANION, PLUG_IN, Entry

LINE = {"PartNumber": "", "Value": "10k", "PartRef": "R1", "PartName": "R", "PCBFootprint": "0603", "PinNumber": "2"}


def said(seconds: float, value: dict, what: str = PLUG_IN, printer=json_text.print_plain) -> Entry:
    return Entry(seconds, 1, what, printer(value))


def state(status: str, name: str, pid: str = "8") -> Entry:
    data = {"Status": status, "FileName": name} | ({"Pid": pid} if status != "Close" else {})
    return said(1, {"Command": "FileStatus", "Result": "0", "Data": data})


def reply(name: str, seconds: float = 2, **data: object) -> Entry:
    return said(seconds, {"Data": data, "Command": name + "_EndResult", "Result": "0"})


def bom(*references: str) -> Entry:
    return reply("GenerateBOM", Stick=[LINE | {"PartRef": reference} for reference in references])


class CompareTest(unittest.TestCase):
    def test_what_differs_and_how_it_reads(self):
        guid = "8d1ccb0c-4b3a-4f0e-a2f5-%s"
        cases = [
            ("the same", [bom("R1")], [bom("R1")], []),
            ("a process id", [state("Open", "a.dsn")], [state("Open", "a.dsn", pid="9")], []),
            ("a GUID", [reply("SetNewGuid", Guid=guid % ("0" * 12))], [reply("SetNewGuid", Guid=guid % ("a" * 12))], []),
            ("a GUID that is none", [reply("SetNewGuid", Guid=guid % ("0" * 12))], [reply("SetNewGuid", Guid="")],
             ['Data.Guid: recorded "<GUID>", now ""']),
            ("a time", [reply("X", At="2026-1-2 3:4:5")], [reply("X", At="2026-11-12 13:14:15")], []),
            ("the thread reports once more", [state("Open", "a.dsn")], [state("Open", "a.dsn")] * 2, []),
            ("the thread reports earlier", [bom("R1"), state("Open", "a.dsn")], [state("Open", "a.dsn"), bom("R1")], []),
            ("another file", [state("Open", "a.dsn")], [state("Open", "b.dsn")], ["did not come", "not in the record"]),
            ("a value", [bom("R1", "R2")], [bom("R1", "R3")], ['Data.Stick[1].PartRef: recorded "R2", now "R3"']),
            ("a type", [reply("X", N="1")], [reply("X", N=1)], ['Data.N: recorded "1", now 1']),
            ("a first element", [bom("R1", "R2")], [bom("R0", "R1", "R2")], ["Data.Stick[0] is new"]),
            ("a member", [reply("X", A="1")], [reply("X", B="1")], ["Data.A is gone", "Data.B is new"]),
            ("the order of members", [reply("X", A="1", B="2")], [reply("X", B="2", A="1")], ["order B, A, recorded A, B"]),
            ("the print", [reply("X")], [said(2, {"Data": {}, "Command": "X_EndResult", "Result": "0"},
                                              printer=json_text.print_formatted)], ["printed formatted, recorded plain"]),
            ("no reply", [bom("R1"), reply("X")], [bom("R1")], ["X_EndResult, recorded at 2.000 s, did not come"]),
            ("another order", [reply("A"), reply("B")], [reply("B"), reply("A")], ["B_EndResult", "B_EndResult"]),
            ("no JSON", [Entry(1, 1, PLUG_IN, b"{")], [Entry(1, 1, PLUG_IN, b"[")], ["recorded b'{', now b'['"]),
            ("what the companion says", [said(1, {"Command": "A"}, COMPANION)], [], []),
        ]
        for name, recorded, now, expected in cases:
            with self.subTest(name):
                found = compare.differences(recorded, now)
                told = "\n".join(map(str, found))
                self.assertEqual(len(expected), sum(len(difference.lines) or 1 for difference in found), told)
                for text in expected:
                    self.assertIn(text, told)


class ConversationTest(unittest.TestCase):
    def setUp(self):
        self.file = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())) / "conversation.txt"

    def test_a_conversation_is_written_read_and_moved(self):
        designs = [Design.parse("a b/c.kicad_sch as d\\c.dsn"), Design.parse("c.kicad_sch as 设计\\放大器.dsn")]
        entries = [reply("X", Path="Z:\\run\\设计\\a.dsn", Other="Z:/run/b"),
                   Entry(3, 1, PLUG_IN, b'{"a":"Z:\\\\run\\\\b","a":1}'), Entry(4, 1, "closed")]
        Conversation("Z:\\run", designs, entries).write(self.file)
        self.assertEqual(Conversation("Z:\\run", designs, entries), Conversation.read(self.file))
        moved = Conversation.read(self.file).moved_to("Z:\\tmp\\x")
        self.assertIn("Z:\\\\tmp\\\\x\\\\设计".encode("gbk"), moved.entries[0].message)
        self.assertIn(b"Z:/tmp/x/b", moved.entries[0].message)
        self.assertEqual(entries, moved.moved_to("Z:\\run").entries)

    def test_what_cannot_be_held_again_is_said(self):
        for text in ("conversation 1\n\n", "conversation 1\nroot: Z:\\run\ndesign 1: x\n\n"):
            self.file.write_text(text, encoding="utf-8")
            with self.assertRaises(NotReplayable):
                Conversation.read(self.file)

    def test_answers_come_as_recorded_and_the_last_stays(self):
        answers = [said(1, {"Command": "FileStatus_EndResult", "Data": {"Path": path}}, COMPANION) for path in "ab"]
        answers.append(said(1, {"Command": "GenerateBOM", "Data": {}}, COMPANION))
        recorded = RecordedAnswers(answers)
        opened = compare.messages.read(state("Open", "a.dsn").message)
        paths = [recorded.take(opened)[0]["Data"]["Path"] for _ in range(3)]
        self.assertEqual(["a", "b", "b"], paths)
        self.assertEqual([], recorded.take(compare.messages.read(bom("R1").message)))


if __name__ == "__main__":
    unittest.main()
