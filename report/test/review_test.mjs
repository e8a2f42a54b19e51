// The report as a reviewer works with it: nets over pages, ways between pages, the bill, what is kept and taken elsewhere.

import assert from "node:assert/strict";
import { join } from "node:path";
import { test } from "node:test";

import {
  becomes,
  folder,
  inView,
  lit,
  litNets,
  litRows,
  open,
  rowOf,
  rowsOf,
  scaleOf,
  shown,
  textOf,
  write,
} from "./browser.mjs";
import { linked } from "./design.mjs";
import { kind } from "./launch.mjs";

// Only Chromium's driver tells of downloads; and what no browser does in its own way needs but one.
const inOne = { skip: kind === "firefox" };
const hashOf = (page) => page.evaluate(() => decodeURIComponent(location.hash.replaceAll("+", " ")));
const at = (page, selector, x, y) =>
  page.$eval(
    selector,
    (node, [x, y]) => {
      const place = new DOMPoint(x, y).matrixTransform(node.ownerSVGElement.getScreenCTM());
      return [place.x, place.y];
    },
    [x, y],
  );
const clickAt = async (page, x, y) => page.mouse.click(...(await at(page, "#frame .overlay", x, y)));
const download = async (page, button) => {
  const [file] = await Promise.all([page.waitForEvent("download"), page.click(button)]);
  const path = join(folder, file.suggestedFilename());
  await file.saveAs(path);
  return path;
};
const choose = async (page, button, path) => {
  const [chooser] = await Promise.all([page.waitForEvent("filechooser"), page.click(button)]);
  await chooser.setFiles(path);
};
const ticks = (page) => page.textContent("#progress");

test("a click on a wire, a pin or a label selects the net on every page", async () => {
  const { page, close } = await open(linked());
  await clickAt(page, 160, 100);
  assert.deepEqual(await litNets(page), ["N1"]);
  assert.deepEqual(await page.$$eval("#pages .count", (nodes) => nodes.map((node) => node.textContent)), ["1", "1", ""]);
  await page.click("#panels [data-panel=nets]");
  assert.deepEqual(await litRows(page, "nets"), ["N1|2|main, Left|IN|A.2, L.1"]);
  await page.locator("#nets .tabulator-row", { hasText: "SHARED" }).click();
  assert.deepEqual([await shown(page), await litNets(page)], ["Left", ["SHARED"]]);
  assert.ok(await inView(page, ".wire.lit"));
  await page.locator("#nets .tabulator-row", { hasText: "SHARED" }).click();
  assert.equal(await shown(page), "Right", "once more goes to the next page");
  await page.keyboard.press("0");
  await page.mouse.move(...(await at(page, "#frame .overlay", 124, 100)));
  assert.match(await page.textContent("#pointed"), /^R\.2 · net SHARED: 2 pins on 2 pages/);
  await page.click("#panels [data-panel=details]");
  await becomes(async () => (await rowsOf(page, "details")).join(), /Page\|Left,Page\|Right,L\.2\|Left,R\.2\|Right/);
  await page.locator("#details .tabulator-row", { hasText: "L.2" }).click();
  assert.equal(await shown(page), "Left");
  await close();
});

test("sheets, ports and off-page connectors lead on, and back and forward go the same way", async () => {
  const { page, close } = await open(linked());
  const link = (name) => page.locator(`.link[aria-label^="${name}: on to"]`);
  await link("Left").click({ position: { x: 30, y: 10 } });
  assert.equal(await shown(page), "Left");
  await link("SHARED").click();
  assert.deepEqual([await shown(page), await litNets(page)], ["Right", ["SHARED"]]);
  await link("IN").focus();
  await page.keyboard.press("Enter");
  assert.deepEqual([await shown(page), await litNets(page)], ["main", ["N2"]]);
  assert.ok(await page.locator(".flash").count());
  for (const [button, wanted] of [
    ["back", "Right"],
    ["back", "Left"],
    ["back", "main"],
    ["forward", "Left"],
  ]) {
    await page.click(`#${button}`);
    await becomes(() => shown(page), new RegExp(`^${wanted}$`));
  }
  await page.click("#where button");
  assert.equal(await shown(page), "main");
  assert.equal(await page.locator("#pages [aria-level='2']").count(), 2);
  await close();
});

test("the address holds what is shown, and a reload keeps it with the language", async () => {
  const { page, close, report } = await open(linked());
  await page.click("#language");
  await page.fill("#search", "shared");
  await page.keyboard.press("Enter");
  await page.click("#panels [data-panel=findings]");
  await page.selectOption("#findings-check", "1003");
  await page.keyboard.press("+");
  await becomes(() => hashOf(page), /^#page=Left&panel=findings&net=SHARED&check=1003&language=zh&at=/);
  await becomes(async () => (Number((await hashOf(page)).split(",").at(-1)) - (await scaleOf(page))).toFixed(2), /^-?0\.00$/);
  const view = await page.$eval("#frame > svg", (svg) => svg.getBoundingClientRect().toJSON());
  const state = async () => [
    await shown(page),
    await litNets(page),
    await rowsOf(page, "findings"),
    await page.getAttribute("html", "lang"),
  ];
  const before = await state();
  assert.deepEqual(before, ["Left", ["SHARED"], ["1|引脚|A.1|引脚未连接|main"], "zh-CN"]);
  await page.reload();
  await page.waitForSelector("body[data-joined]");
  assert.deepEqual(await state(), before);
  const after = await page.$eval("#frame > svg", (svg) => svg.getBoundingClientRect().toJSON());
  for (const side of ["x", "y", "width"]) assert.ok(Math.abs(view[side] - after[side]) < 2, JSON.stringify([view, after]));
  await page.goto(`${page.url().split("#")[0]}#page=none&net=none&part=none&finding=99&at=x&panel=none&language=xx`);
  await page.reload();
  await page.waitForSelector("body[data-joined]");
  assert.deepEqual([await shown(page), await litNets(page), report.length > 0], ["main", [], true]);
  await close();
});

test("ten parts are ticked, kept over a reload, and taken elsewhere as a file", inOne, async () => {
  const { page, close } = await open(linked());
  await rowOf(page, "N-0").click();
  await rowOf(page, "N-9").click({ modifiers: ["Shift"] });
  await rowOf(page, "N-4").locator("[data-box=placed]").click();
  assert.equal(await ticks(page), "Sourced 0/13 · Placed 10/13");
  await rowOf(page, "LM358").focus();
  await page.keyboard.press("1");
  await page.waitForTimeout(300); // a browser hands on what it keeps a moment later
  await page.reload();
  await page.waitForSelector("body[data-joined]");
  assert.equal(await ticks(page), "Sourced 1/13 · Placed 10/13");
  // Another window of the report ticks something meanwhile.
  const other = await page.context().newPage();
  await other.goto(page.url());
  await other.waitForSelector("body[data-joined]");
  await rowOf(other, "N-10").locator("[data-box=placed]").click();
  await rowOf(page, "LM358").locator("[data-box=placed]").click();
  assert.equal(await ticks(page), "Sourced 1/13 · Placed 12/13");
  for (const part of ["N-10", "LM358"]) await rowOf(page, part).locator("[data-box=placed]").click();
  await other.close();
  await page.selectOption("#bom-fitted", { label: "Not yet Placed" });
  assert.deepEqual(
    (await rowsOf(page, "bom")).map((row) => row.split("|")[1]),
    ["R11", "A", "B"],
  );
  await page.click("#bom-settings");
  await page.locator("#settings-boxes input").first().fill("Bought");
  await page.click("#settings-add");
  await page.keyboard.type("Checked");
  const file = await download(page, "#marks-export");
  await page.click("#settings-close");
  await page.locator("#bom .tabulator-col-title", { hasText: "Checked" }).waitFor();
  assert.equal(await ticks(page), "Bought 1/13 · Placed 10/13 · Checked 0/13");
  const kept = JSON.parse(textOf(file));
  assert.deepEqual([kept.design, kept.revision, Object.keys(kept.ticks.placed).length], ["放大器.dsn", "2", 10]);
  await close();

  // Elsewhere, where R3 has become another part.
  const changed = linked();
  changed.bom.Stick[2].Value = "471";
  const second = await open(changed);
  await second.page.click("#bom-settings");
  await choose(second.page, "#marks-import", file);
  await becomes(() => second.page.textContent("#said"), /10 ticks taken; 1 belong to parts that are not the same here/);
  await second.page.click("#settings-close");
  assert.equal(await ticks(second.page), "Sourced 1/13 · Placed 9/13");
  await second.page.click("#bom-settings");
  for (const [name, text] of [
    ["no.json", "no JSON"],
    ["other.json", '{"boxes":[1],"ticks":{}}'],
  ]) {
    await choose(second.page, "#marks-import", { name, mimeType: "application/json", buffer: Buffer.from(text) });
    await becomes(() => second.page.textContent("#said"), new RegExp(`${name} holds no ticks`));
  }
  await second.close();
});

test("the bill is sorted by quantity, grouped, filtered, and taken out as CSV and by the clipboard", inOne, async () => {
  const { page, close } = await open(linked());
  const values = async () => (await rowsOf(page, "bom")).map((row) => row.split("|")[2]);
  await page.locator("#bom .tabulator-col-title", { hasText: "Value" }).click();
  assert.deepEqual((await values()).slice(0, 7), ["0R1", "330", "470", "1k", "2k2", "4k7", "4.75k"]);
  await page.selectOption("#bom-fitted", "no");
  assert.deepEqual(await values(), ["4.75k"]);
  await page.selectOption("#bom-fitted", "");
  await page.selectOption("#bom-group", "fitted");
  assert.equal(await page.locator("#bom .tabulator-group").count(), 2);
  await page.selectOption("#bom-group", "");
  await page.selectOption("#bom-rows", "single");
  await page.fill("#bom-filter", "u");
  assert.deepEqual(await rowsOf(page, "bom"), ["1|B|=1+1|fitted|U|R|2|0603", "1|A|LM358|fitted|U|R|2|0603"]);
  const file = await download(page, "#bom-csv");
  assert.equal(
    textOf(file),
    "\ufeffQty,References,Value,State,Part number,Part,Pins,Footprint,Sourced,Placed\r\n" +
      "1,B,'=1+1,fitted,U,R,2,0603,,\r\n1,A,LM358,fitted,U,R,2,0603,,\r\n",
  );
  await page.click("#bom-settings");
  await page.uncheck("#settings-columns [value=PinNumber]");
  await page.click("#settings-close");
  await page.locator("#bom .tabulator-row").first().click();
  await page.evaluate(() => {
    DataTransfer.prototype.setData = new Proxy(DataTransfer.prototype.setData, {
      apply: (set, to, [type, text]) => {
        window.copied = text;
        window.copies = (window.copies ?? 0) + 1;
        return set.call(to, type, text);
      },
    });
  });
  await page.locator("#bom .tabulator-row").first().press("Control+c");
  await becomes(
    () => page.evaluate(() => window.copied),
    /^Qty\tReferences\tValue\tState\tPart number\tPart\tFootprint\tSourced\tPlaced\n1\tB\t'=1\+1\tfitted\tU\tR\t0603\t\t$/,
  );
  await page.click("#bom-copy");
  await becomes(() => page.evaluate(() => window.copies), /^2$/);
  assert.match(await page.textContent("#said"), /^1 line copied$/);
  await close();
});

test("two reports are compared part by part", inOne, async () => {
  const before = linked();
  before.bom.Stick.splice(4, 1);
  before.bom.Stick.splice(1, 1); // R2 is drawn and in no bill
  before.bom.Stick[0].Value = "12k";
  before.bom.Stick.push({ ...before.bom.NotStick[0] }, { ...before.bom.Stick[0], PartRef: "R99" });
  before.bom.NotStick = [];
  before.pages[0].drawing.children[1].children = before.pages[0].drawing.children[1].children.filter(
    (one) => one.attr.id !== "R5",
  );
  const old = write(before, "before");
  const { page, close } = await open(linked());
  await choose(page, "#compare", { name: "x.html", mimeType: "text/html", buffer: Buffer.from("<p>no report") });
  await becomes(() => page.textContent("#said"), /x\.html is no report/);
  await choose(page, "#compare", old);
  await page.locator("#changes .tabulator-row").first().waitFor();
  assert.deepEqual(await rowsOf(page, "changes"), [
    "changed|R1|Value|12k|10k",
    "added|R2|Value||4k7",
    "added|R5|Value||2k2",
    "now not fitted|R12|State|fitted|not fitted",
    "removed|R99|Value|12k|",
  ]);
  await page.locator("#changes .tabulator-row", { hasText: "R5" }).click();
  assert.deepEqual(await lit(page), ["R5"]);
  await choose(page, "#compare", write(linked(), "same"));
  await becomes(() => page.textContent("#panels [aria-selected=true]"), /^BOM/);
  await close();
});

test("findings: one pin a part, opened into the list; the same numbers everywhere", inOne, async () => {
  const { page, close } = await open(linked());
  assert.match(await page.textContent("#summary"), /4 findings/);
  assert.equal(await page.textContent("#panels [data-panel=findings] .total"), "4");
  assert.deepEqual(await page.$$eval("#pages .findings-count", (nodes) => nodes.map((node) => node.textContent)), ["2", "1", ""]);
  assert.deepEqual(await page.$$eval("#frame .pin text", (nodes) => nodes.map((node) => node.textContent)), ["2"]);
  await page.click("#frame .pin");
  await becomes(async () => (await litRows(page, "findings")).length, /^2$/);
  assert.deepEqual(await page.$$eval("#findings-page option", (nodes) => nodes.map((node) => node.textContent)), [
    "All pages (4)",
    "not on a page (1)",
    "main (2)",
    "Left (1)",
  ]);
  await page.selectOption("#findings-page", { label: "Left (1)" });
  assert.equal((await rowsOf(page, "findings")).length, 1);
  await page.selectOption("#findings-page", "");
  await page.selectOption("#findings-check", { label: "Netlist (1)" });
  assert.deepEqual(await rowsOf(page, "findings"), ["2|Netlist|A|A has no footprint|main"]);
  await page.selectOption("#findings-page", { label: "Left (1)" });
  await page.click("#frame .pin");
  await becomes(async () => (await litRows(page, "findings")).length, /^2$/);
  await close();
});
