// The report of a large design beside that of a small one: how soon it is there, and how quickly it follows.
//
// report_bench.mjs [PAGES...]: each page has a hundred parts with three pins each. Without arguments: 8 and 200 pages.

import { execFileSync } from "node:child_process";
import { mkdtempSync, rmSync, statSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";

import { huge } from "../report/test/design.mjs";
import { start } from "../report/test/launch.mjs";

const RUNS = Number(process.env.RUNS ?? 3);
const root = fileURLToPath(new URL("../", import.meta.url));

// Milliseconds until what an action changed is on the screen; run in the page.
const timed = (selector) =>
  new Promise((resolve) => {
    const node = document.querySelector(selector);
    const box = node.getBoundingClientRect();
    const from = performance.now();
    node.dispatchEvent(
      new MouseEvent("click", { bubbles: true, clientX: box.left + box.width / 2, clientY: box.top + box.height / 2 }),
    );
    requestAnimationFrame(() => setTimeout(() => resolve(performance.now() - from)));
  });

// The times between frames while the page is dragged.
async function panned(page) {
  const frame = await page.locator("#frame").boundingBox();
  for (let step = 0; step < 4; step++) await page.keyboard.press("+");
  await page.waitForTimeout(400);
  await page.mouse.move(frame.x + 300, frame.y + 300);
  await page.mouse.down();
  await page.evaluate(() => {
    window.frames_ = [];
    const note = (time) => window.frames_.push(time) && requestAnimationFrame(note);
    requestAnimationFrame(note);
  });
  for (let step = 1; step <= 120; step++) await page.mouse.move(frame.x + 300 - step, frame.y + 300 - step);
  await page.mouse.up();
  const frames = await page.evaluate(() => window.frames_);
  await page.keyboard.press("0");
  await page.waitForTimeout(200);
  return frames.slice(1).map((time, at) => time - frames[at]);
}

async function measure(browser, report) {
  const figures = {};
  const note = (name, value) => (figures[name] ??= []).push(value);
  for (let run = 0; run < RUNS; run++) {
    const context = await browser.newContext({ offline: true, viewport: { width: 1400, height: 800 }, locale: "en-US" });
    const page = await context.newPage();
    await page.goto(pathToFileURL(report).href, { waitUntil: "commit" });
    await page.waitForSelector("body[data-joined]", { timeout: 120_000 });
    for (const { name, startTime } of await page.evaluate(() =>
      performance.getEntriesByType("mark").map(({ name, startTime }) => ({ name, startTime })),
    )) {
      note(name === "ready" ? "first shown" : "nets joined", startTime);
    }
    const gaps = (await panned(page)).sort((one, other) => one - other);
    note("frame while panning", gaps[Math.floor(gaps.length / 2)]);
    for (const [name, panel, selector] of [
      ["a net selected", "nets", '.wire[data-net="GND"]'],
      ["a part selected", "bom", ".hit"],
      ["a line of another page chosen", "bom", "#bom .tabulator-row:nth-child(9)"],
      ["the next page", "bom", "#pages [data-page='4']"],
    ]) {
      await page.click(`#panels [data-panel=${panel}]`);
      await page.waitForTimeout(300);
      note(name, await page.evaluate(timed, selector));
    }
    await context.close();
  }
  return figures;
}

const folder = mkdtempSync(join(tmpdir(), "vernoxa-report-bench-"));
const browser = await start();
try {
  const columns = [];
  for (const pages of process.argv.length > 2 ? process.argv.slice(2).map(Number) : [8, 200]) {
    const [design, report] = [join(folder, "design.json"), join(folder, "report.html")];
    writeFileSync(design, JSON.stringify(huge(pages)));
    execFileSync("/usr/bin/python3", ["-m", "vernoxa.report.page", design, report], {
      env: { ...process.env, PYTHONPATH: join(root, "workshop") },
    });
    const figures = await measure(browser, report);
    columns.push({
      title: `${pages} pages, ${pages * 100} parts, ${pages * 300} pins, ${(statSync(report).size / 1e6).toFixed(1)} MB`,
      figures,
    });
  }
  console.log(`milliseconds, least and middle of ${RUNS}\n`);
  for (const { title, figures } of columns) {
    console.log(title);
    for (const [name, values] of Object.entries(figures)) {
      const sorted = values.sort((one, other) => one - other);
      console.log(
        `  ${name.padEnd(32)} ${sorted[0].toFixed(1).padStart(8)} ${sorted[Math.floor(sorted.length / 2)].toFixed(1).padStart(8)}`,
      );
    }
  }
} finally {
  await browser.close();
  rmSync(folder, { recursive: true });
}
