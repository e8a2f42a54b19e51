// Opens reports in a real browser, without a network, and reads what they show.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";

import { start } from "./launch.mjs";

const root = fileURLToPath(new URL("../../", import.meta.url));
let browser;
export let folder;

before(async () => {
  folder = mkdtempSync(join(tmpdir(), "vernoxa-report-"));
  browser = await start();
});

after(async () => {
  await browser?.close();
  rmSync(folder, { recursive: true, force: true });
});

// Writes the report of a design and gives its path.
export function write(design, name = "report") {
  const file = join(folder, "design.json");
  writeFileSync(file, JSON.stringify(design));
  const report = join(folder, `${name}.html`);
  execFileSync("/usr/bin/python3", ["-m", "vernoxa.report.page", file, report], {
    env: { ...process.env, PYTHONPATH: join(root, "workshop") },
  });
  return report;
}

// Opens the report of a design. What the page complains about and what it asks a network for end up in `wrong`.
export async function open(design, { hash = "", name, ...options } = {}) {
  const report = write(design, name);
  const context = await browser.newContext({
    offline: true,
    viewport: { width: 1400, height: 800 },
    locale: "en-US",
    ...options,
  });
  const page = await context.newPage();
  const wrong = [];
  page.on("console", (message) => ["error", "warning"].includes(message.type()) && wrong.push(message.text()));
  page.on("pageerror", (error) => wrong.push(String(error.stack)));
  page.on("request", (request) => request.url().startsWith("http") && wrong.push(request.url()));
  await page.goto(pathToFileURL(report).href + hash);
  await page.waitForSelector("body[data-joined]");
  const close = async () => {
    assert.deepEqual(wrong, []);
    await context.close();
  };
  return { page, close, report };
}

export const lit = (page) => page.$$eval(".hit.lit", (nodes) => nodes.map((node) => node.dataset.reference));
export const litNets = async (page) => [
  ...new Set(await page.$$eval(".wire.lit[data-net]", (nodes) => nodes.map((node) => node.dataset.net))),
];
export const rowsOf = (page, list, which = "") =>
  page.$$eval(`#${list} .tabulator-row${which}:not(.tabulator-group)`, (rows) =>
    rows.map((row) =>
      [...row.querySelectorAll(".tabulator-cell:not([tabulator-field^='box '])")].map((cell) => cell.textContent).join("|"),
    ),
  );
export const litRows = (page, list) => rowsOf(page, list, ".lit");
export const shown = (page) => page.textContent("#pages [aria-selected=true] .name");
export const scaleOf = (page) =>
  page.$eval("#frame > svg", (svg) => svg.getBoundingClientRect().width / svg.viewBox.baseVal.width);
export const rowOf = (page, words) => page.locator("#bom .tabulator-row", { hasText: words });
export const inView = (page, selector) =>
  page.$eval(selector, (node) => {
    const [box, frame] = [node.getBoundingClientRect(), document.getElementById("frame").getBoundingClientRect()];
    return box.left >= frame.left && box.right <= frame.right && box.top >= frame.top && box.bottom <= frame.bottom;
  });

// What follows a little later: tables follow keys, the address follows movements.
export async function becomes(read, pattern) {
  let now = await read();
  for (let tries = 0; tries < 100 && !pattern.test(now); tries += 1) {
    await new Promise((resolve) => setTimeout(resolve, 20));
    now = await read();
  }
  assert.match(String(now), pattern);
}

export const textOf = (file) => readFileSync(file, "utf-8");
