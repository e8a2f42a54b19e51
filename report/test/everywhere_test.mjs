// The report on every screen, by keys alone, on paper, and to those who do not see it.

import assert from "node:assert/strict";
import { join } from "node:path";
import { test } from "node:test";

import { becomes, lit, litNets, open, shown, textOf } from "./browser.mjs";
import { linked, small } from "./design.mjs";
import { modules } from "./launch.mjs";

const axe = textOf(join(modules, "axe-core/axe.min.js"));
const PANELS = ["bom", "nets", "findings", "details"];

// The whole page takes a second or two, so parts of it are looked at alone where only they have changed.
async function faults(page, where = "body", runOnly = ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"]) {
  const { violations } = await page.evaluate(
    ([where, runOnly]) => window.axe.run(where, { runOnly, resultTypes: ["violations"] }),
    [where, runOnly],
  );
  return violations.map(
    ({ id, nodes }) =>
      `${id}: ${nodes
        .map((node) => node.html.slice(0, 120))
        .slice(0, 3)
        .join(" ")}`,
  );
}

test("the guidelines' judge finds nothing, dark and light, in every list and box, on a narrow screen", async () => {
  const dark = { type: "rule", values: ["color-contrast"] }; // all that is other in the dark, where boxes have the colours of lists
  for (const [colorScheme, rules] of [
    ["light", undefined],
    ["dark", dark],
  ]) {
    const { page, close } = await open(linked(), { colorScheme });
    await page.evaluate(axe);
    await page.locator(".wire[data-net=N1]").click({ force: true });
    assert.deepEqual(await faults(page, "body", rules), [], colorScheme);
    for (const panel of PANELS.slice(1)) {
      await page.click(`#panels [data-panel=${panel}]`);
      if (panel === "nets") await page.locator("#nets .tabulator-row").first().click();
      assert.deepEqual(await faults(page, `.panel[data-panel=${panel}]`, rules), [], `${colorScheme} ${panel}`);
    }
    if (rules) {
      await close();
      continue;
    }
    await page.click("#panels [data-panel=bom]");
    for (const [button, box] of [
      ["help", "help-box"],
      ["print", "print-box"],
      ["bom-settings", "settings-box"],
    ]) {
      await page.click(`#${button}`);
      assert.deepEqual(await faults(page, `#${box}`), [], box);
      await page.keyboard.press("Escape");
    }
    await page.fill("#search", "r1");
    assert.deepEqual(await faults(page, ".search"), [], "search");
    await close();
  }
  const { page, close } = await open(linked(), { viewport: { width: 390, height: 800 }, hasTouch: true, isMobile: true });
  await page.evaluate(axe);
  assert.deepEqual(
    await faults(page, "body", {
      type: "rule",
      values: ["target-size", "region", "scrollable-region-focusable", "meta-viewport"],
    }),
    [],
  );
  await close();
});

test("in Chinese nothing is left in English, and no text is missing", async () => {
  const { page, close } = await open(linked(), { locale: "zh-CN" });
  const designs =
    /^[A-Z]?\d*$|R\d+|LM358|Left|Right|main|SHARED|IN|N\d|放大器|Rev|a note|Datasheet|Value|CSV|English|bold|nowhere|\.dsn/;
  const english = async () =>
    page.evaluate(() =>
      [...document.querySelectorAll("body *:not(script):not(style):not(pre)")]
        .filter((node) => node.children.length === 0)
        .flatMap((node) => [node.textContent, node.title, node.getAttribute("aria-label"), node.placeholder])
        .filter((words) => /[A-Za-z]{3}/.test(words ?? "")),
    );
  for (const panel of PANELS) {
    await page.click(`#panels [data-panel=${panel}]`);
    assert.deepEqual(
      (await english()).filter((words) => !designs.test(words) && !/^(Page Up|Ctrl|Tab|Enter|Alt|Esc|方向|空格)/.test(words)),
      [],
      panel,
    );
  }
  const { CHINESE, ENGLISH } = await import("../page/words.js");
  assert.deepEqual(Object.keys(CHINESE).sort(), Object.keys(ENGLISH).sort());
  await close();
});

test("on narrow screens nothing leaves the screen, and a finger does what the pointer does", async () => {
  for (const [width, height] of [
    [1024, 768],
    [768, 1024],
    [390, 800],
    [844, 390],
  ]) {
    const { page, close } = await open(linked(), { viewport: { width, height }, hasTouch: true, isMobile: true });
    assert.equal(await page.evaluate(() => document.scrollingElement.scrollWidth), width);
    const outside = await page.$$eval("button, input, select, #frame", (nodes) =>
      nodes
        .filter((node) => node.offsetParent && !node.closest(".tabulator"))
        .map((node) => [node.id, node.getBoundingClientRect()])
        .filter(([, box]) => box.left < 0 || box.right > innerWidth || box.bottom > innerHeight)
        .map(([id]) => id),
    );
    assert.deepEqual(outside, [], `${width} points wide`);
    for (const room of ["#frame", "#bom"])
      assert.ok(await page.$eval(room, (node) => node.clientHeight > 150), `${room} on ${width} points`);
    if (!(await page.isVisible("#pages"))) await page.tap("#tree-toggle");
    await page.locator("#pages [role=treeitem]", { hasText: "Right" }).tap();
    assert.equal(await shown(page), "Right");
    const wire = await page.$eval(".wire[data-net=SHARED]", (node) => {
      const place = new DOMPoint(135, 100).matrixTransform(node.getScreenCTM());
      return [place.x, place.y];
    });
    await page.touchscreen.tap(...wire);
    assert.deepEqual(await litNets(page), ["SHARED"]);
    await close();
  }
});

test("dark by the system's wish, on paper always light", async () => {
  const { page, close } = await open(small(), { colorScheme: "dark" });
  const colours = () =>
    page.evaluate(() =>
      ["body", ".paper", "#frame svg > g > line", "#frame text"].map((selector) => {
        const style = getComputedStyle(document.querySelector(selector));
        return selector === "body" ? style.backgroundColor : selector.endsWith("line") ? style.stroke : style.fill;
      }),
    );
  const [ground, paper, wire, words] = (await colours()).map((colour) => colour.match(/\d+/g).map(Number));
  assert.ok(
    Math.max(...ground, ...paper) < 60 && Math.max(...wire) > 120 && Math.min(...words) > 100,
    `${[ground, paper, wire, words]}`,
  );
  await page.emulateMedia({ colorScheme: "light" });
  assert.deepEqual((await colours()).slice(1), ["rgb(255, 255, 255)", "rgb(128, 0, 0)", "rgb(0, 0, 0)"]);
  await page.emulateMedia({ colorScheme: "dark", media: "print" });
  assert.deepEqual((await colours()).slice(1), ["rgb(255, 255, 255)", "rgb(128, 0, 0)", "rgb(0, 0, 0)"]);
  await close();
});

test("each page prints the way it lies, the bill as a table, or one of them alone", async () => {
  const design = linked();
  Object.assign(design.pages[1].drawing, { width: "800", height: "1100" });
  const { page, close } = await open(design);
  const sizes = async () =>
    [...String(await page.pdf({ preferCSSPageSize: true })).matchAll(/\/MediaBox\s*\[0 0 ([\d.]+) ([\d.]+)\]/g)].map(
      ([, width, height]) => (Number(width) > Number(height) ? "across" : "upright"),
    );
  assert.deepEqual(await sizes(), ["across", "upright", "across", "across", "across"]);
  await page.evaluate(() => (window.print = () => (window.printed = document.getElementById("printed").textContent)));
  await page.click("#print");
  await page.click("#print-bill");
  assert.match(await page.evaluate(() => window.printed), / · BOMQtyReferences.*LM358.*4\.75knot fitted/);
  assert.deepEqual(await sizes(), ["across"]);
  await close();
});

test("a whole review by keys alone", async () => {
  const { page, close } = await open(linked());
  const press = async (...keys) => {
    for (const key of keys) await page.keyboard.press(key);
  };
  const focus = () => page.evaluate(() => document.activeElement.closest(".tabulator-row, [role]")?.textContent ?? "");
  await press("t", "ArrowDown", "Enter");
  assert.equal(await shown(page), "Left");
  await press("n");
  await becomes(focus, /N1/);
  await press("ArrowDown", "ArrowDown", "Enter");
  assert.deepEqual([await litNets(page), await shown(page)], [["SHARED"], "Left"]);
  await press("f");
  await becomes(focus, /A\.1/);
  await press("Enter");
  assert.deepEqual([await lit(page), await shown(page)], [["A"], "main"]);
  await press("b");
  await becomes(focus, /LM358/); // it is what is lit
  await press("1", "ArrowUp", "Shift+ArrowUp", "Shift+ArrowUp", "2");
  assert.equal(await page.textContent("#progress"), "Sourced 1/13 · Placed 3/13");
  // Every stop of the Tab key is seen, and it leads round.
  const stops = new Set();
  for (let step = 0; step < 60; step++) {
    await press("Tab");
    const stop = await page.evaluate(() => {
      const { activeElement: node } = document;
      const box = node.getBoundingClientRect();
      return node === document.body
        ? ""
        : `${node.id || node.className.baseVal || node.className || node.role} ${box.width > 0 && box.height > 0}`;
    });
    if (stop) stops.add(stop);
  }
  for (const wanted of ["search", "frame", "pin", "link", "bom-filter", "divider"])
    assert.ok(
      [...stops].some((stop) => stop.startsWith(wanted)),
      wanted,
    );
  assert.deepEqual(
    [...stops].filter((stop) => stop.endsWith("false")),
    [],
  );
  await close();
});
