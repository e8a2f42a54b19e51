"""The pictures that are made of page files."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

SVG = "{http://www.w3.org/2000/svg}"
HREF = "{http://www.w3.org/1999/xlink}href"


def element(tag, value=None, **attributes):
    made = {"name": tag, "attr": {name.replace("_", ":"): text for name, text in attributes.items()}}
    return made if value is None else made | {"value": value}


def use(symbol, x, **attributes):
    return element("use", transform=f"translate({x} 0)", xlink_href=symbol, **attributes)


def document(name, elements, symbols=None):
    children = [{"name": "g", "attr": {"id": name}, "children": elements}]
    if symbols:
        groups = [{"name": "g", "attr": {"id": symbol}, "children": parts} for symbol, parts in symbols.items()]
        children.insert(0, {"name": "defs", "children": groups})
    return {"id": "SCH_View", "height": "200", "width": "300", "children": children}


class DrawingView(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def draw(self, **files):
        for name, content in files.items():
            text = content if isinstance(content, str) else json.dumps(content)
            (self.folder / f"{name}.json").write_text(text, encoding="utf-8")
        out = self.folder / "out"
        command = [sys.executable, "-m", "vernoxa.drawings", self.folder, "-o", out]
        self.run = subprocess.run(command, capture_output=True, text=True)
        self.pictures = {file.stem: ElementTree.parse(file).getroot() for file in out.glob("*.svg")}
        self.html = (out / "index.html").read_text(encoding="utf-8")

    def test_positions_counts_and_texts(self):
        symbols = {"a b\"<": [element("line", x1="0", y1="0", x2="5", y2="0")], "unused": []}
        self.draw(P=document("页", [
            use("#a b\"<", 10, id="R1"), use("#a b\"<", 20), element("circle", cx="1", cy="2", r="3"),
            element("text", "<电阻> & \x01", transform="translate(1,2) rotate(0)"),
        ], symbols))
        self.assertEqual(self.run.returncode, 0, self.run.stderr)
        picture = self.pictures["P"]
        self.assertEqual(picture.get("viewBox"), "0 0 300 200")
        uses = picture.findall(f"{SVG}use")
        self.assertEqual([(each.get("transform"), each.get("data-id")) for each in uses],
                         [("translate(10 0)", "R1"), ("translate(20 0)", None)])
        target = uses[0].get(HREF).removeprefix("#")
        defined = {each.get("id"): len(each) for each in picture.find(f"{SVG}defs")}
        self.assertEqual(defined[target], 1)
        self.assertEqual([each.text for each in picture.findall(f"{SVG}text")], ["<电阻> & \ufffd"])
        self.assertEqual(picture.find(f"{SVG}circle").get("cy"), "2")

    def test_an_undefined_symbol_is_a_marked_box_and_counted(self):
        self.draw(P=document("P", [use("#GONE", 10), use("#GONE", 20), use("", 30)]))
        boxes = [group for group in self.pictures["P"].findall(f"{SVG}g") if group.find(f"{SVG}rect") is not None]
        self.assertEqual([box.get("transform") for box in boxes], ["translate(10 0)", "translate(20 0)"])
        self.assertIn("2 undefined: GONE", self.run.stdout)
        self.assertIn('data-undefined="2"', self.html)

    def test_only_what_drawings_are_made_of_is_drawn(self):
        self.draw(P=document("</template><script>x</script>", [
            element("script", "x"), element("line", onload="x", x1="1"), element("text", "</text><script>x</script>"),
        ]))
        self.assertEqual(len(self.pictures["P"].findall(f".//{SVG}script")), 0)
        self.assertEqual(self.pictures["P"].find(f"{SVG}line").attrib, {"x1": "1"})
        self.assertEqual(self.html.count("<script>"), 1)

    def test_all_pages_are_in_one_offline_page(self):
        symbols = {"S": []}
        self.draw(**{"A[;xiegan;]B@!@P@!@1": document("P", [use("#S", 1)], symbols),
                     "A@!@P@!@2": document("P", [use("#S", 1)], symbols), "broken": "{", "other": "[]"})
        self.assertEqual(self.run.returncode, 1)
        self.assertIn("broken.json", self.run.stderr)
        self.assertIn("other.json", self.run.stderr)
        self.assertIn('data-title="A/B / P"', self.html)
        self.assertEqual(self.html.count("<template "), 2)
        self.assertEqual(self.html.count('xlink:href="#page0-symbol0"'), 1)
        self.assertEqual(self.html.count('xlink:href="#page1-symbol0"'), 1)
        self.assertNotIn("src=\"http", self.html)


if __name__ == "__main__":
    unittest.main()
