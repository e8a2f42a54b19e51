"""What is collected: modules kept and handed out, findings and reports as a text, drawings as they are read."""

import io
import json
import pathlib
import tempfile
import unittest

from vernoxa.companion import tables
from vernoxa.wire import messages, paths
from vernoxa.companion.answers import Answers
from vernoxa.companion.view import View
from vernoxa.drawings import page_file
from vernoxa.demo.module_acts import first_difference

UPLOAD = {
    "dsnBmpPath": "", "dsnDatPath": "", "Part": [{"Id": "1", "Ref": "R1"}, {"Id": "2", "Ref": "电阻", "Package": "0603"}],
    "Wire": ["GND", "VCC"], "Keys": [], "sumPins": "4", "selfPins": "4", "copyPrice": "0",
}  # fmt: skip


def message(command: str, shape: str = "", **data: object) -> messages.Message:
    return messages.Message(b"x", {"Command": command, "Data": data, "Result": "0"}, messages.PLAIN, shape=shape)


class CollectedTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def test_a_module_is_kept_and_each_placement_gets_a_copy_of_its_own(self):
        answers = Answers(modules_folder=self.folder / "modules")
        written = self.folder / "ModuleLib.json"
        written.write_text("{}", encoding="utf-8")
        answers.take(message("SelectModule_EndResult", "upload", **UPLOAD | {"dsnDatPath": paths.to_windows(written)}))
        written.unlink()

        def answer(identifier: str) -> tuple[int, str]:
            (reply,) = answers.take(message("GetMarketResPath", ResId=identifier))
            return reply["Result"], reply["Data"]["DatPath"]

        for _ in range(2):  # placing deletes the file
            result, path = answer("1")
            self.assertEqual((0, "{}"), (result, paths.to_local(path).read_text(encoding="utf-8")))
            paths.to_local(path).unlink()
        self.assertNotEqual(answer("1"), answer("1"))
        self.assertEqual(answer("../1"), (1, ""))

    def test_the_report_names_everything_and_keeps_its_columns_in_line(self):
        answers = Answers()
        finding = {"ActualValue": 'R"1', "PagePos": "1 2", "PageName": "页\n1", "Sch": "S"}
        for check, comment in (
            ("1001", "of a run before"), ("1001", ""), ("1001", "R1位号重名"), ("1001", ""), ("1002", "of a run before"),
            ("1002", ""), ("1002", ""), ("1003", "引脚未连接"), ("1003", "x"),
        ):  # fmt: skip
            data = {"id": check} | ({"Comment": comment, **finding} if comment else {})
            answers.take(message("DsnCheck_Result" if comment else "DsnCheck_EndResult", **data))
        answers.take(message("GetDsnAllPackageInfo_EndResult", "report", item=[["Value", "10k"], ["Datasheet", ""]]))
        answers.take(message("SelectModule_EndResult", "upload", **UPLOAD))
        text = io.StringIO()
        view = View(colour=False, shown=(), log=text)
        for table in tables.collected(answers):
            view.table("", table, whole=True)
        for line in (
            "check 1001, reference designators: 1 findings",
            "check 1002, illegal characters: 0 findings",
            "| R1位号重名 | R\"1         | S   | 页 1     | 1 2     |",
            "| 引脚未连接 | R\"1         | S   | 页 1     | 1 2     |",
            "| x          | R\"1         | S   | 页 1     | 1 2     |",
            "properties of the design's parts",
            "module 1: 4 pins, nets GND, VCC",
            "| 电阻 | 0603    |",
        ):
            self.assertIn(line, text.getvalue().splitlines())
        self.assertEqual(tables.collected(Answers()), [])

    def test_drawings_tell_their_parts_texts_and_symbols_that_are_missing(self):
        def used(name: str, **attributes: str) -> dict:
            return {"name": "use", "attr": {**attributes, "xlink:href": f"#{name}"}}

        def group(name: str, *children: dict) -> dict:
            return {"name": "g", "attr": {"id": name}, "children": children}

        text = {"name": "text", "value": "国产", "attr": {}}
        page = group("页/1", used("R", id="R1"), used("lost", id="R2"), used("R"), text)
        for name, children in (("a", [{"name": "defs", "children": [group("R")]}, page]), ("b", [group("2")])):
            (self.folder / f"{name}.json").write_text(json.dumps({"id": "SCH_View", "children": children}))
        second, first = page_file.read_all(self.folder)
        self.assertEqual((first.name, first.parts, first.texts, first.undefined), ("页/1", ["R1", "R2"], ["国产"], ["lost"]))
        self.assertEqual((second.name, second.parts), ("2", []))
        (self.folder / "c.json").write_text("[", encoding="utf-8")
        with self.assertRaises(ValueError):
            page_file.read_all(self.folder)

    def test_differences_are_found_where_they_are(self):
        for one, other, difference in (
            ({"a": [1, {"b": 2}]}, {"a": [1, {"b": 2}]}, ""),
            ({"a": [1, {"b": 2}]}, {"a": [1, {"b": 3}]}, "/a/1/b was 2 and is 3"),
            ({"a": 1, "b": 2}, {"b": 2, "a": 1}, "all was {'a': 1, 'b': 2} and is {'b': 2, 'a': 1}"),
            ({"a": [1]}, {"a": [1, 2]}, "/a was [1] and is [1, 2]"),
            ([{}], [{"x": 1}], "/0 was {} and is {'x': 1}"),
        ):
            self.assertEqual(first_difference(one, other), difference)


if __name__ == "__main__":
    unittest.main()
