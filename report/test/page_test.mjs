// What the page shows and how it is moved about, in a real browser.

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";

import { becomes, inView, lit, litNets, litRows, open, rowOf, scaleOf, shown, textOf } from "./browser.mjs";
import { hostile, huge, large, long, small } from "./design.mjs";
import { modules } from "./launch.mjs";

const overPart = async (page, reference) => page.hover(`.hit[data-reference="${reference}"]`);
const isCut = (nodes) => nodes.filter((node) => node.scrollWidth > node.clientWidth).map((node) => node.textContent);

test("pointing at a line lights its parts, pointing at a part its line", async () => {
  const { page, close } = await open(small());
  assert.match(await page.textContent("#summary"), /2 pages · 5 parts, 1 not fitted · 2 nets · 3 findings/);
  await rowOf(page, "R1, R10").hover();
  assert.deepEqual(await lit(page), ["R1", "R10"]);
  await rowOf(page, "R3").hover();
  assert.deepEqual(await lit(page), []);
  assert.deepEqual(await page.$$eval("#pages .count", (nodes) => nodes.map((node) => node.textContent)), ["", "1"]);
  await overPart(page, "R10");
  assert.deepEqual(await lit(page), ["R10"]);
  assert.match((await litRows(page, "bom")).join(), /^2\|R1, R10\|10k/);
  await page.mouse.move(700, 5);
  assert.deepEqual([await lit(page), await litRows(page, "bom")], [[], []]);
  await close();
});

test("a click goes to the part, and what is chosen stays lit", async () => {
  const { page, close } = await open(small());
  await rowOf(page, "电阻").click();
  assert.equal(await shown(page), "第二页");
  await page.mouse.move(700, 5);
  assert.deepEqual(await lit(page), ["R20", "R20"]);
  assert.ok(await inView(page, ".hit.lit"));
  await page.keyboard.press("Escape");
  assert.deepEqual(await lit(page), []);
  await page.keyboard.press("0");
  await page.click('.hit[data-reference="R3"]');
  await page.mouse.move(700, 5);
  assert.deepEqual(await lit(page), ["R3"]);
  await close();
});

test("what is not fitted is dimmed with its texts, and can be hidden", async () => {
  const { page, close } = await open(small());
  await page.keyboard.press("PageDown");
  const dimmed = await page.$$eval("#frame .absent:is(use, text)", (nodes) => nodes.map((node) => node.textContent));
  assert.deepEqual(dimmed, ["", "R3", "10k", "0603", "5%"]);
  const visible = () =>
    page.$$eval("#frame .absent", (nodes) => nodes.filter((node) => getComputedStyle(node).display !== "none").length);
  assert.equal(await visible(), 6);
  await page.check("#hide");
  assert.equal(await visible(), 0);
  await rowOf(page, "not fitted, hidden").waitFor();
  await page.fill("#search", "r3");
  assert.match(await page.textContent("#hits"), /R310k · not fitted, hidden/);
  await page.keyboard.press("Enter");
  assert.equal(await visible(), 6, "what was searched for is shown as long as it is lit");
  await page.keyboard.press("Escape");
  await page.keyboard.press("Escape");
  assert.equal(await visible(), 0);
  await page.keyboard.press("h");
  assert.equal(await visible(), 6);
  await close();
});

test("what moves under a pointer at rest takes no light", async () => {
  const { page, close } = await open(long());
  for (const place of ["#bom .tabulator-row:nth-child(9)", '.hit[data-reference="R10"]']) {
    await page.keyboard.press("Escape");
    await page.keyboard.press("0");
    await page.hover(place);
    for (const [typed, reference] of [
      ["r2", "R2"],
      ["c60", "C60"],
      ["r1", "R1"],
    ]) {
      await page.fill("#search", typed);
      await page.keyboard.press("Enter");
      await page.waitForTimeout(200);
      assert.deepEqual(await lit(page), reference === "C60" ? [] : [reference]);
      assert.equal((await litRows(page, "bom")).length, 1);
      assert.ok((await litRows(page, "bom"))[0].includes(reference), reference);
    }
  }
  await close();
});

test("columns are readable, scroll sideways when they must, and show what they cut", async () => {
  const width = 2000;
  const { page, close } = await open(long(), { viewport: { width, height: 800 } });
  const heads = "#bom .tabulator-col-title";
  const values = "#bom .tabulator-cell:not([tabulator-field=PCBFootprint])";
  const scrolls = () => page.$eval("#bom .tabulator-tableholder", (node) => node.scrollWidth > node.clientWidth);
  const share = async () => (await page.locator(".lists").boundingBox()).width / width;
  for (const list of ["bom", "findings"]) {
    await page.keyboard.press(list[0]);
    assert.deepEqual(await page.$$eval(`#${list} .tabulator-col-title`, isCut), []);
  }
  await page.keyboard.press("b");
  assert.deepEqual([await page.$$eval(values, isCut), await scrolls()], [[], false]);
  const divider = await page.locator("#divider").boundingBox();
  await page.mouse.move(divider.x + 3, 400);
  await page.mouse.down();
  await page.mouse.move(width * 0.75, 400);
  await page.mouse.up();
  assert.ok(Math.abs((await share()) - 0.25) < 0.01);
  await page.focus("#divider");
  for (let step = 0; step < 3; step++) await page.keyboard.press("ArrowLeft");
  assert.ok(Math.abs((await share()) - 0.31) < 0.01);
  await page.waitForTimeout(200);
  assert.deepEqual([await page.$$eval(heads, isCut), await page.$$eval(values, isCut), await scrolls()], [[], [], true]);
  await page.locator("#bom [tabulator-field=PCBFootprint]", { hasText: "Resistor" }).first().hover();
  assert.match(await page.textContent(".tabulator-tooltip"), /^Resistor_THT:R_Axial.*_Horizontal$/);
  await close();
});

test("findings are pinned, listed, and lead to each other", async () => {
  const { page, close } = await open(small());
  assert.equal(await page.locator("#frame .pin").count(), 1);
  const pin = await page.locator("#frame .pin").boundingBox();
  const part = await page.locator('.hit[data-reference="R2"]').boundingBox();
  assert.ok(Math.abs(pin.x + pin.width / 2 - part.x - part.width / 2) < 3, "the pin stands on its part");
  assert.equal(await page.textContent("#frame .pin title"), "1: R2.1, pin not connected");
  await page.focus("#frame .pin");
  await page.keyboard.press("Enter");
  assert.match((await litRows(page, "findings")).join(), /1\|Pins\|R2\.1\|pin not connected\|main/);
  await page.keyboard.press("b");
  await page.click("#frame .pin");
  assert.equal((await litRows(page, "findings")).length, 1);
  await page.locator("#findings .tabulator-row", { hasText: "has no footprint" }).click();
  assert.equal(await shown(page), "第二页");
  assert.ok(await inView(page, ".pin.chosen"));
  await page.locator("#findings .tabulator-row", { hasText: "R10 reference used twice" }).click();
  assert.equal(await shown(page), "第二页", "a finding that is on no page leads nowhere");
  await close();
});

test("search finds parts, pins, values, nets, findings, pages and texts", async () => {
  const { page, close } = await open(small());
  const cases = [
    ["r10", "part", "R10", "main", ["R10"]],
    ["4.7u", "value", "4.7uF", "main", ["R2"]],
    ["clk", "net", "CLK", "main", [], ["CLK"]],
    ["reset", "net", "/sub/RESET", "第二页", [], ["/sub/RESET"]],
    ["r10.2", "pin", "R10.2", "main", [], ["CLK"]],
    ["not conn", "finding", "1: R2.1", "main", ["R2"]],
    ["第二", "page", "第二页", "第二页", []],
    ["filter", "text", "Filter stage", "main", []],
    ["电阻", "value", "电阻", "第二页", ["R20", "R20"]],
    ["a-1", "value", "A-1", "main", ["R1", "R10"]],
  ];
  for (const [typed, kind, label, name, references, nets = []] of cases) {
    await page.fill("#search", typed);
    await page.focus("#search");
    const first = page.locator("#hits li").first();
    assert.equal((await first.locator(".kind").textContent()).toLowerCase(), kind, typed);
    assert.equal(await first.locator(".label").textContent(), label, typed);
    await page.keyboard.press("Enter");
    assert.ok((await shown(page)).startsWith(name), typed);
    assert.deepEqual([await lit(page), await litNets(page)], [references, nets], typed);
    if (kind === "text") assert.ok(await inView(page, ".flash"));
  }
  await page.fill("#search", "R1");
  assert.deepEqual(await page.$$eval("#hits .label", (nodes) => nodes.map((node) => node.textContent)), ["R1", "3: R1", "R10"]);
  await page.fill("#search", "nowhere");
  assert.equal(await page.textContent("#hits"), "Nothing found");
  await page.keyboard.press("Escape");
  assert.ok(await page.isHidden("#hits"));
  await close();
});

test("everything is done with keys as well", async () => {
  const { page, close } = await open(small());
  const whole = await scaleOf(page);
  await page.keyboard.press("+");
  await page.waitForTimeout(200);
  assert.ok((await scaleOf(page)) > whole * 1.2);
  const left = async () => (await page.locator("#frame > svg").boundingBox()).x;
  const from = await left();
  await page.keyboard.press("ArrowRight");
  assert.ok(Math.abs((await left()) - from + 80) < 1);
  await page.keyboard.press("0");
  await page.waitForTimeout(200);
  assert.ok(Math.abs((await scaleOf(page)) - whole) < 0.01);
  await page.keyboard.press("PageUp");
  assert.ok((await shown(page)).startsWith("第二页"));
  await page.keyboard.press("f");
  assert.ok(await page.isVisible("#findings"));
  await page.keyboard.press("b");
  await page.locator("#bom .tabulator-row").first().focus();
  for (const key of ["ArrowDown", "ArrowDown", "ArrowUp", "ArrowDown", "ArrowDown"]) await page.keyboard.press(key);
  const activeRow = () => page.evaluate(() => document.activeElement.closest(".tabulator-row")?.textContent ?? "");
  await becomes(activeRow, /R3/);
  await page.setViewportSize({ width: 1100, height: 700 });
  await page.waitForTimeout(300);
  assert.match(await activeRow(), /R3/); // the table was laid out again
  await becomes(async () => (await litRows(page, "bom")).join(), /^1\|R3\|/);
  await page.keyboard.press("Enter");
  assert.deepEqual(await lit(page), ["R3"]);
  await page.keyboard.press("/");
  await page.keyboard.type("r2");
  await page.keyboard.press("ArrowDown");
  await page.keyboard.press("Control+Enter");
  assert.match(await page.evaluate(() => document.activeElement.textContent), /R20/);
  assert.deepEqual(await lit(page), ["R20", "R20"]);
  await close();
});

test("properties are the lit part's, or said to be the design's", async () => {
  const { page, close } = await open(small());
  await page.keyboard.press("d");
  const shownRows = () =>
    page.$$eval("#details .tabulator-row", (rows) =>
      rows.map((row) => [...row.querySelectorAll(".tabulator-cell")].map((cell) => cell.textContent).join(" ")),
    );
  const whose = () => page.textContent("#whose");
  assert.match(await whose(), /^Every property name of the design/);
  assert.match((await shownRows()).join(), /Datasheet <b>bold<\/b>/);
  await page.click('.hit[data-reference="R10"]');
  await page.waitForFunction(() => document.querySelector("#details").textContent.includes("R10.2"));
  assert.equal(await whose(), "Of R10:");
  assert.deepEqual(await shownRows(), [
    "State fitted",
    "Value 10k",
    "Part number A-1",
    "Part R",
    "Footprint 0603",
    "Pins 2",
    "Page main",
    "R10.2 CLK",
  ]);
  await close();
});

test("both languages, the reader's own first", async () => {
  const { page, close } = await open(small(), { locale: "zh-CN" });
  assert.match(await page.textContent("#summary"), /2 页 · 5 个器件，1 个不贴 · 2 个网络 · 3 个问题/);
  await page.click("[data-panel=findings]");
  assert.match(await page.textContent("#findings"), /R3器件无封装/);
  await page.click("#language");
  await page.waitForFunction(() => document.querySelector("#findings").textContent.includes("R3 has no footprint"));
  await page.click("[data-panel=bom]");
  await page.locator(".tabulator-col-title", { hasText: "Sourced" }).waitFor();
  assert.equal(await page.getAttribute("html", "lang"), "en");
  await page.click("#help");
  assert.match(await page.textContent("#help-box"), /hide or show what is not fitted/);
  for (const library of ["d3-drag", "d3-selection", "d3-zoom", "lucide", "tabulator-tables"]) {
    const licence = readFileSync(join(modules, library, "LICENSE"), "utf-8").trim();
    assert.ok((await page.textContent("#licences")).includes(licence), library);
  }
  await close();
});

test("a print has every page, both lists, and what is not fitted as on the screen", async () => {
  const { page, close } = await open(small());
  const pdf = await page.pdf({ format: "A4", landscape: true });
  assert.equal(String(pdf).match(/\/Type\s*\/Page\b/g).length, 4);
  await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
  assert.equal(await page.locator("#printed svg").count(), 2);
  assert.match(await page.textContent("#printed"), /not fitted: R3.*R1, R10.*☐.*2NetlistR3R3 has no footprint/s);
  assert.deepEqual(await page.$$eval("#printed .pin text", (nodes) => nodes.map((node) => node.textContent)), ["1", "2"]);
  await page.emulateMedia({ media: "print" });
  const dimmed = () =>
    page.$$eval("#printed .absent", (nodes) =>
      nodes
        .map((node) => getComputedStyle(node))
        .map((style) => (style.display === "none" ? "hidden" : style.strokeDasharray === "none" ? style.opacity : "dashed")),
    );
  assert.deepEqual((await dimmed()).sort(), [...Array(5).fill("0.3"), "dashed"]);
  await page.keyboard.press("h");
  assert.deepEqual(await dimmed(), Array(6).fill("hidden"));
  await close();
});

test("texts of a design stay texts", async () => {
  const { page, close } = await open(hostile());
  for (const key of ["f", "d", "n", "b"]) await page.keyboard.press(key);
  await page.locator("#bom .tabulator-row", { hasText: "onerror" }).hover();
  await page.fill("#search", "onerror");
  await page.keyboard.press("Enter");
  await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
  assert.equal(await page.evaluate(() => window.ran), undefined);
  assert.equal(await page.locator("img, iframe, foreignObject, svg script, svg image, [onclick]").count(), 0);
  const boxes = await page.$$eval("#frame g:has(> rect.missing) > text", (nodes) => nodes.map((node) => node.textContent));
  assert.match(boxes.join(), /^[^,]*onerror[^,]*$/, "a symbol that is not there is a marked box");
  await close();
});

test("a design of twenty pages is there at once, its lists hold only what is seen, and a selection is quick", async () => {
  const design = huge(20);
  const { page, close, report } = await open(design);
  assert.ok(textOf(report).length - JSON.stringify(design).length < 1e6, "beside its data the page is at most a megabyte");
  const marks = await page.evaluate(() => performance.getEntriesByType("mark").map(({ startTime }) => startTime));
  for (const panel of ["bom", "nets", "findings"]) {
    await page.click(`#panels [data-panel=${panel}]`);
    const rows = await page.locator(`#${panel} .tabulator-row`).count();
    assert.ok(rows > 10 && rows < 100, `${rows} lines of the list ${panel}`);
  }
  assert.equal(await page.textContent("#nets-note"), "", "every wire belongs to a net");
  const taken = [];
  for (const selector of ['.wire[data-net="GND"]', ".hit", '.wire[data-net="LINK1"]']) {
    taken.push(
      await page.$eval(
        selector,
        (node) =>
          new Promise((resolve) => {
            const from = performance.now();
            node.dispatchEvent(new MouseEvent("click", { bubbles: true }));
            requestAnimationFrame(() => setTimeout(() => resolve(performance.now() - from)));
          }),
      ),
    );
  }
  assert.deepEqual(await litNets(page), ["LINK1"]);
  console.log(
    `2,000 parts: first shown after ${marks[0].toFixed()} ms, nets joined after ${marks[1].toFixed()} ms, selections ${taken.map((one) => one.toFixed()).join(", ")} ms`,
  );
  // Alone on two cores: 500 ms and 10 to 30 ms. The limits leave room for what else a test machine does.
  assert.ok(marks[0] < 20_000 && Math.min(...taken) < 500);
  await close();
});

test("a page of 5,000 objects pans without stutter", async () => {
  const { page, close } = await open(large(5000));
  assert.ok((await page.locator("#frame > svg use").count()) > 1000);
  for (let step = 0; step < 6; step++) await page.keyboard.press("+");
  await page.waitForTimeout(500);
  await page.mouse.move(500, 400);
  const browser = await page.context().newCDPSession(page);
  await browser.send("Performance.enable", { timeDomain: "threadTicks" });
  const processorSeconds = async () => {
    const { metrics } = await browser.send("Performance.getMetrics");
    return metrics.find(({ name }) => name === "TaskDuration").value;
  };
  const before = await processorSeconds();
  await page.mouse.down();
  await page.evaluate(() => {
    window.frames_ = [];
    const note = (time) => {
      window.frames_.push(time);
      window.noting = requestAnimationFrame(note);
    };
    requestAnimationFrame(note);
  });
  for (let step = 1; step <= 50; step++) await page.mouse.move(500 - step * 3, 400 - step * 2);
  await page.mouse.up();
  const frames = await page.evaluate(() => window.frames_);
  const gaps = frames
    .slice(1)
    .map((time, index) => time - frames[index])
    .sort((one, other) => one - other);
  const [half, most] = [0.5, 0.95].map((share) => gaps[Math.floor(gaps.length * share)]);
  const worked = ((await processorSeconds()) - before) * 1000;
  console.log(
    `panning: ${gaps.length} frames, median ${half.toFixed(1)} ms, 95th of 100 ${most.toFixed(1)} ms; ` +
      `the page itself worked ${(worked / gaps.length).toFixed(1)} ms for each`,
  );
  // Alone on two cores a frame comes every 17 ms and the slowest after 33 ms. A busy machine delays them and slows the
  // page: there it was seen to work 7 to 20 ms for a frame.
  assert.ok(gaps.length > 10 && half < 34 && worked / gaps.length < 50);
  await close();
});
