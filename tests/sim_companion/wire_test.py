"""What travels and is kept: frames, JSON in the code page, the judgement of messages, recorded conversations."""

import asyncio
import io
import pathlib
import tempfile
import unittest

from fake_plug_in import BOM, FINDING, MARKED, REFUSED, frame, in_code_page, opened

from vernoxa.wire import frames, json_text, messages, record
from vernoxa.wire.events import CLOSED, FAULT, OPENED, PROBED, RECEIVED, SENT, Event


class FramesTest(unittest.IsolatedAsyncioTestCase):
    async def read(self, data: bytes) -> frames.Frame | None:
        reader = asyncio.StreamReader()
        reader.feed_data(data)
        reader.feed_eof()
        return await frames.read(reader)

    async def test_good_and_bad_digits(self):
        for payload, message, fault in (
            (b"", b"", None),
            (b"7b7d", b"{}", None),
            (b"d6D0", b"\xd6\xd0", "upper-case"),
            (b"7b7", b"{", "odd number"),
            (b"7b7g41", b"{", "no hexadecimal digit at 3"),
            (b"7b 7d ", b"{", "no hexadecimal digit at 2"),
        ):
            with self.subTest(payload):
                read = await self.read(len(payload).to_bytes(4, "little") + payload)
                self.assertEqual(read.message, message)
                self.assertEqual([fault in text for text in read.faults], [True] if fault else [])

    async def test_every_cut_is_noticed_and_other_protocols_and_long_messages_are(self):
        whole = frame("{中}")
        self.assertIsNone(await self.read(b""))
        self.assertEqual((await self.read(whole)).faults, [])
        for bad in (b"GET / HTTP/1.1\r\n\r\n", *(whole[:cut] for cut in range(1, len(whole)))):
            with self.subTest(bad):
                read = await self.read(bad)
                self.assertEqual((True, False), (bool(read.faults), read.usable))
        self.assertEqual(frames.encode("{中}".encode("gbk")), frame("{中}"))
        self.assertEqual(len(frames.encode(b"x" * 32767)), 4 + 65534)
        with self.assertRaises(frames.MessageTooLong):
            frames.encode(b"x" * 32768)


class JsonTextTest(unittest.TestCase):
    def test_prints_as_the_library_does_and_reads_back(self):
        for value, plain, formatted in (
            ({}, b"{}", b"{\n}"),
            ({"D": {}, "C": "x"}, b'{"D":{},"C":"x"}', b'{\n\t"D":\t{\n\t},\n\t"C":\t"x"\n}'),
            ({"L": [{"a": "1"}, "b"]}, b'{"L":[{"a":"1"},"b"]}', b'{\n\t"L":\t[{\n\t\t\t"a":\t"1"\n\t\t}, "b"]\n}'),
            ("贴\t\x01/€", b'"\xcc\xf9\\t\\u0001/\x80"', b'"\xcc\xf9\\t\\u0001/\x80"'),
            ("誠\\n", b'"\xd5\\\\\\\\n"', b'"\xd5\\\\\\\\n"'),  # the second byte of the character is a backslash
        ):
            with self.subTest(value):
                self.assertEqual(json_text.print_plain(value), plain)
                self.assertEqual(json_text.print_formatted(value), formatted)
                self.assertEqual(json_text.parse(plain), (value, []))
                self.assertEqual(json_text.parse(formatted), (value, []))

    def test_refuses_and_tells(self):
        for text in (b"", b"{", b"{'a':1}", b'{"a":NaN}', b'{"a":1,}', b'"\x01"', b"[" * 100000, b'"\\u4e2d\\ud800"'):
            with self.subTest(text[:20]), self.assertRaises(json_text.NotJson):
                json_text.parse(text)
        for text, problem in ((b'{"a":"\xd6"}', "no GBK"), (b'{"a":"","a":""}', "twice")):
            self.assertIn(problem, json_text.parse(text)[1][0])


REPORT = '{"Command":"%s_EndResult","Result":"0","Data":{"item":[{%s}]}}'
QUERY = '{"Command":"GetMarketResPath","Data":{"ResId":"7"},"Result":"0"}'


class MessagesTest(unittest.TestCase):
    def test_what_is_no_json_or_in_utf_8_because_the_plug_in_glues_texts_is_read_and_noted(self):
        dsn, olb = "GetDsnAllPackageInfo", "GetOlbObjectPackageInfo"
        mixed = in_code_page(FINDING.replace("含", "%属性包含")).replace(b"%s", "100μF".encode()).replace(b"%", "容值".encode())
        for text, notes, value in (
            ("", 0, {}),
            (REFUSED % "Unheard", 0, {}),
            (REPORT % (dsn, ""), 0, {"item": []}),
            (REPORT % (dsn, '"Value":"1","Value":"2"'), 0, [["Value", "1"], ["Value", "2"]]),
            (FINDING % 'a"b\\', 1, 'a"b\\'),
            (REPORT % (dsn, '"A":"C:\\\\a","B":"誠",'), 1, [["A", "C:\\a"], ["B", "誠"]]),
            (REPORT % (olb, '"A":"C:\\lib"'), 1, [["A", "C:\\lib"]]),
            (BOM.encode(), 1, "电阻"),
            (BOM.replace("10k", "100μF").encode(), 1, "100μF"),  # in the code page it would be 100碌F
            (in_code_page(FINDING).replace(b"%s", "国产".encode()), 1, "国产"),
            (mixed, 1, "100μF"),
            (mixed, 1, "容值属性包含非法字符"),
            (opened("%").replace(b"%", "中".encode()), 1, "中"),  # too short for the plug-in's test
        ):
            with self.subTest(value):
                message = messages.read(in_code_page(text))
                self.assertEqual(([], notes), (message.faults, len(message.notes)))
                self.assertIn(repr(value), repr(message.data))

    def test_every_deviation_is_told(self):
        for text, fault in (
            ("zz", "no JSON"),
            ("[]", "no JSON object"),
            ('{"Command":7}', 'no "Command"'),
            ('{"Command":"Hello"}', "does not have"),
            (opened("a.dsn").replace(b'"Pid":"8",', b""), 'members of "Data"'),
            (opened("a.dsn").replace(b'"8"', b"8"), "no text"),
            (opened("a.dsn").replace(b",", b", "), "printed other"),
            (opened("a.dsn").replace(b'"Result":"0"', b'"Result":"1"'), '"Result" is'),
            (opened("%").replace(b"%", b"\xff\xff"), "no GBK"),
            (opened("%").replace(b"%", "设计.dsn".encode()), "in UTF-8"),
            (BOM.replace('"Value":"10k",', ""), '"Stick"[0]'),
            (BOM.replace('"NotStick":[],', ""), 'members of "Data"'),
            (MARKED.replace('"ErrInfo":""', '"ErrInfo":"x"'), '"ErrInfo" is'),
            ((REFUSED % "GenerateBOM").replace("\t", ""), "printed other"),
            (QUERY.replace('"Data"', '"data"'), "members of the message"),
            (REPORT % ("GetDsnAllPackageInfo", '"ID":"7"'), "left out"),
        ):
            with self.subTest(text):
                faults = messages.read(in_code_page(text)).faults
                self.assertTrue(any(fault in told for told in faults), faults)


class RecordTest(unittest.TestCase):
    def test_every_message_is_read_back_as_it_was(self):
        texts = (opened("Z:\\誠\\设计.dsn"), REFUSED % "x", "", "zz" * 50, '{"a": "空"}', FINDING)
        raws = [*map(in_code_page, texts), b'{"a":"\xff"}', b'{"a":1,"a":1}', BOM.encode()]
        entries = [record.Entry(0.25, 1, OPENED), record.Entry(0.5, 2, PROBED)]
        entries += [record.Entry(1.5, 1, ("plug-in", "companion")[i % 2], raw) for i, raw in enumerate(raws)]
        entries += [record.Entry(1.5, 0, record.HOST, "select R1 电阻".encode()), record.Entry(2.0, 1, CLOSED)]
        kinds = {"plug-in": RECEIVED, "companion": SENT}
        stream = io.StringIO()
        recorder = record.Recorder(stream, design="设计.dsn")
        for entry in entries:
            message = messages.read(entry.message if entry.what in kinds else b"")
            words = entry.message.decode() if entry.what == record.HOST else ""
            recorder(Event(entry.seconds, kinds.get(entry.what, entry.what), entry.connection, message, words))
            recorder(Event(entry.seconds, FAULT, entry.connection, message, "a fault\n\n@ told"))
        for readable in ('"FileName": "Z:\\\\誠\\\\设计.dsn"', '# text: {"a": "空"}'):
            self.assertIn(readable, stream.getvalue())
        self.assertEqual(self.read(stream.getvalue()), entries)

    def test_broken_files_are_refused(self):
        title = record.TITLE + "\n\n"
        for text in ("", "hello\n", title + "@ 1\n\n", title + "@ x 1 opened\n\n", title + "stray\n\n",
                     title + "@ 1 1 plug-in plain X\n{\n\n", title + "@ 1 1 plug-in other X\n{}\n\n", title + "@ 1 0 host\n\n"):
            with self.subTest(text), self.assertRaises(record.BadRecord):
                self.read(text)

    def read(self, text: str) -> list[record.Entry]:
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, "conversation.txt")
            path.write_text(text, encoding="utf-8", newline="\n")
            return record.read(path)


if __name__ == "__main__":
    unittest.main()
