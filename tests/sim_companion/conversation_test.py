"""Whole conversations over real sockets, on ports of their own."""

import asyncio
import contextlib
import io
import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

from fake_plug_in import BOM, MARKED, REFUSED, FakePlugIn, frame, opened

from vernoxa.wire import json_text, messages
from vernoxa.companion.answers import Answers
from vernoxa.companion.words import until_interrupted
from vernoxa.companion.prompt import Prompt
from vernoxa.companion.server import Companion, NotConnected
from vernoxa.companion.typed import BadCommand, parse
from vernoxa.companion.view import ConversationView, View
from vernoxa.stage.host_words import HostWords
from vernoxa.wire.catalogue import BOM_LINE
from vernoxa.wire.events import FAULT, PROBED

DESIGN = "Z:\\项目\\设计.dsn"


class ConversationTest(unittest.IsolatedAsyncioTestCase):
    async def asyncSetUp(self):
        self.answers = Answers()
        self.companion = Companion(self.answers, port=0)
        self.view = View(colour=False)
        self.companion.listeners.append(ConversationView(self.view, self.answers))
        self.shown = self.enterContext(contextlib.redirect_stdout(io.StringIO()))
        await self.companion.start()
        self.addAsyncCleanup(self.companion.stop)

    def plug_in(self, **replies: str) -> FakePlugIn:
        return FakePlugIn(self.companion.port, replies)

    async def received(self, command: str) -> None:
        await self.companion.wait_for(lambda event: event.is_message(command), 5)

    async def test_an_opened_design_is_answered_with_its_folder_and_marks_move_the_lines_of_its_bom(self):
        async with self.plug_in(GenerateBOM=BOM, SetToNotStick=MARKED) as plug_in:
            plug_in.send(opened(DESIGN, "512"))
            answer = json.loads((await plug_in.receive()).decode("gbk"))
            self.assertEqual(answer["Data"], {"Path": "Z:\\项目"})
            plug_in.send("")  # the acknowledgement of an answer
            prompt = Prompt(self.companion, self.view)
            marks = {"item": [{"PartRef": "R1"}, {"PartRef": "R2"}]}
            for line, more in (("GenerateBOM", {}), ("SetToNotStick R1,R2", marks)):
                done, message = await asyncio.gather(prompt.run(line), plug_in.receive())
                sent = {"ProjectPath": DESIGN.replace("\\", "/")} | more
                self.assertEqual((True, sent), (done, json.loads(message.decode("gbk"))["Data"]))
            self.assertEqual(self.answers.current.references, ["R1"])
            plug_in.send('{"Command":"TryUpdateBom"}')
            self.assertIn(b"GenerateBOM", await plug_in.receive())
            marked = {"Data": {"NotStick": json.loads(BOM)["Data"]["Stick"]}, "Command": "RemoveFromBom", "Result": "0"}
            plug_in.send(json_text.print_plain(marked))
            await self.received("RemoveFromBom")
            self.assertEqual([0, 1], [len(self.answers.current.bom[name]) for name in ("Stick", "NotStick")])
            closed = '{"Command":"FileStatus","Result":"0","Data":{"Status":"Close","FileName":"z:\\\\项目\\\\设计.DSN"}}'
            plug_in.send(closed)
            self.assertEqual(json.loads(await plug_in.receive())["Data"], {"Path": ""})
        self.assertIsNone(self.answers.current)
        self.assertEqual(self.companion.faults, 0)
        for text in ("PinCount=512", "| fitted |", "电阻", "(empty acknowledgement)"):
            self.assertIn(text, self.shown.getvalue())
        self.assertTrue(all(line.startswith("companion:") for line in self.shown.getvalue().splitlines()))

    async def test_failures_and_silence(self):
        with self.assertRaises(NotConnected):
            await self.companion.ask("GetActiveProPages", {})
        async with self.plug_in(RenameRef=REFUSED % "RenameRef", Unheard=REFUSED % "Unheard") as plug_in:
            plug_in.send('{"Command":"TryUpdateBom"}')
            await self.received("TryUpdateBom")
            for name in ("RenameRef", "Unheard"):
                reply, _ = await asyncio.gather(self.companion.ask(name, {}), plug_in.receive())
                self.assertEqual((reply.succeeded, reply.error), (False, "command error"))
            with self.assertRaises(TimeoutError):
                await self.companion.ask("ClearCurrentDesign", {}, seconds=0.05)
            self.assertIsNone(await self.companion.ask("CloseOrcad", {}))
            waiting = asyncio.create_task(self.companion.ask("GenerateBOM", {}))
            await asyncio.sleep(0)
        with self.assertRaises(NotConnected):
            await waiting
        self.assertEqual(self.companion.faults, 0)

    async def test_probes_and_queries_do_not_take_the_conversation(self):
        async with self.plug_in() as host:
            await asyncio.sleep(0.3)  # silent so far, but no probe
            async with self.plug_in():
                pass
            for request, answer in (
                ('{"Command":"GetSelfId","Data":{},"Result":"0"}', {"UserId": "1001"}),
                ('{"Command":"GetMarketResPath","Data":{"ResId":"9"},"Result":"0"}', {"ResId": "9", "DatPath": ""}),
            ):
                async with self.plug_in() as query:
                    query.send(request)
                    self.assertEqual(json.loads(await query.receive())["Data"], answer)
                    with self.assertRaises(TimeoutError):
                        await self.companion.ask("ClearCurrentDesign", {}, seconds=0.05)
                    self.assertIn(b"ClearCurrentDesign", await host.receive())
        await self.companion.wait_for(lambda event: event.kind == PROBED, 5)
        self.assertEqual(self.companion.faults, 0)

    async def test_faults_are_counted_and_the_conversation_goes_on(self):
        for name, data, alive in (
            ("upper case", b"\x04\0\0\0" + b"7B7D", True),
            ("no GBK", frame(b"\xff\xff"), True),
            ("wrong types", frame('{"Command":"GenerateBOM_EndResult","Data":[]}'), True),
            ("unasked", frame(MARKED), True),
            ("no frames", b"GET / HTTP/1.1\r\n\r\n", False),
        ):
            before, since = self.companion.faults, len(self.companion.events)
            async with self.plug_in() as plug_in:
                with self.subTest(name):
                    plug_in.send_raw(data)
                    await self.companion.wait_for(lambda event: event.kind == FAULT, 5, since)
                    self.assertGreater(self.companion.faults, before)
                    if alive:
                        plug_in.send(opened("a.dsn"))
                        self.assertIn(b"FileStatus_EndResult", await plug_in.receive())
                    else:
                        self.assertTrue(await plug_in.closed())
        self.assertIn("fault:", self.shown.getvalue())


class PromptTest(unittest.TestCase):
    def setUp(self):
        self.answers = Answers()
        self.answers.take(messages.read(opened(DESIGN)))
        self.answers.current.bom = {"Stick": [{"PartRef": "R1,R2"}]}
        self.answers.current.pages = ["页 1"]

    def test_what_is_typed_becomes_data(self):
        for text, data in (
            ("GetActiveProPages", {}),
            ("GenerateBOM", {"ProjectPath": DESIGN}),
            ('GenerateBOM PartNumberKey="Part No" ProjectPath="C:\\a b\\"',
             {"ProjectPath": "C:\\a b\\", "PartNumberKey": "Part No"}),
            ("RenameRef 2", {"Type": 2}),
            ("JumpToPartRef R1", {"ProjectPath": DESIGN, "PartRef": "R1"}),
            ("EnterBomViewMode R1,R2", {"ProjectPath": DESIGN, "Stick": ["R1", "R2"]}),
            ("AutoDealwithDsn id=7 step=1", {"ProjectPath": DESIGN, "id": "7", "step": "1"}),
            ('{"Command":"Any","Data":{"x":1}}', {"x": 1}),
        ):
            with self.subTest(text):
                self.assertEqual(parse(text, self.answers)[1], data)

    def test_what_is_no_command_is_refused(self):
        for text in ("Nothing", "RenameRef x", "JumpToPartRef", "JumpToPartRef Page=x", "GetActiveProPages 1",
                     'GenerateBOM "', "{", '{"Data":{}}'):
            with self.subTest(text), self.assertRaises(BadCommand):
                parse(text, self.answers)

    def test_completion(self):
        host = HostWords(mock.Mock(), mock.Mock(), self.answers.designs)
        prompt = Prompt(Companion(self.answers), View(colour=False), {"host": host})
        for text, expected in (
            ("setto", ["SetToNotStick", "SetToStick"]),
            ("help gen", ["GenerateBOM"]),
            ("GenerateBOM p", ["ProjectPath=", "PartNumberKey=", "PartNameKey="]),
            ("SetToStick item=R1,", ["R1", "R2"]),
            ("GenerateBOM ProjectPath=z", [DESIGN]),
            ("JumpToPartRef r", ["R1", "R2"]),
            ("JumpToPartRef R1 ", ["ProjectPath=", "PartRef="]),
            ("help ho", ["host"]),
            ("bom --", ["--all", "--csv"]),
            ("host sho", ["showPage"]),
            ("host select R1 ", ["R1", "R2"]),
            ("host showPage ", ["页\\ 1"]),
            ("host closeDesign ", ["Z:\\\\项目\\\\设计.dsn"]),
            ("Nothing ", []),
        ):
            with self.subTest(text):
                self.assertEqual([found for found, _ in prompt.complete(text)], expected)

    def test_a_bill_is_shown_in_part_or_whole_and_saved_with_every_part_once_even_of_one_reference(self):
        lines = [dict.fromkeys(BOM_LINE, "") | {"PartRef": name} for name in ("R?", "R?", *(f"R{n}" for n in range(39)))]
        self.answers.current.bom = {"Stick": lines[:40], "NotPartNumber": lines[1:]}
        file = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())) / "bill.csv"
        prompt = Prompt(Companion(self.answers), View(colour=False))
        for text, done, shown in (("bom", True, "29 more: bom --all shows them"), ("bom --all", True, "| R37 "),
                                  (f"bom --csv {file}", True, "41 lines"), (f"bom --csv {file}", False, "File exists"),
                                  ("bom --some", False, "bom --csv FILE saves all"), ("checks x", False, "checks --all")):
            with self.subTest(text), contextlib.redirect_stdout(io.StringIO()) as said:
                self.assertEqual(done, asyncio.run(prompt.run(text)))
                self.assertIn(shown, said.getvalue())
        _, *saved = file.read_text(encoding="utf-8").splitlines()
        self.assertEqual(["fitted"] * 40 + ["no part number"], [line.partition(",")[0] for line in saved])


class InterruptTest(unittest.IsolatedAsyncioTestCase):
    async def test_ctrl_c_ends_a_wait_and_nothing_else(self):
        asyncio.get_running_loop().call_later(0.05, os.kill, os.getpid(), signal.SIGINT)
        self.assertIsNone(await until_interrupted(asyncio.sleep(20)))
        self.assertEqual(7, await until_interrupted(asyncio.sleep(0, 7)))


class CommandLineTest(unittest.IsolatedAsyncioTestCase):
    RUN = [sys.executable, "-m", "vernoxa.companion", "--plain"]

    async def test_a_taken_port_is_refused_in_one_line(self):
        async with await asyncio.start_server(lambda reader, writer: None, "127.0.0.1", 0) as server:
            port = server.sockets[0].getsockname()[1]
            ended = subprocess.run([*self.RUN, "--port", str(port)], capture_output=True, text=True, timeout=120)
        self.assertEqual(ended.returncode, 2)
        self.assertRegex(ended.stderr, rf"^companion: port {port} is taken by [^\n]+\n$")

    async def test_commands_that_are_piped_in_are_sent_once_a_design_is_open(self):
        for reply, status in ((MARKED, 0), (REFUSED % "SetToNotStick", 1)):
            process = await asyncio.create_subprocess_exec(*self.RUN, "--port", "0", stdin=asyncio.subprocess.PIPE,
                                                           stdout=asyncio.subprocess.PIPE)
            process.stdin.write(b"# marks\nSetToNotStick R1\n")
            process.stdin.close()
            port = int((await process.stdout.readline()).split(b":")[-1])
            async with FakePlugIn(port, {"SetToNotStick": reply}) as plug_in:
                plug_in.send(opened(DESIGN))
                await plug_in.receive()
                await plug_in.receive()
                self.assertEqual(await asyncio.wait_for(process.wait(), 60), status)


if __name__ == "__main__":
    sys.exit(unittest.main())
