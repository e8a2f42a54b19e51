// The page of the package that shows a log and drawings, docs/logs.html of the zip.

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";

import { start } from "./launch.mjs";

const folder = new URL("../../package/", import.meta.url);
const drawing = readFileSync(new URL("check/expected/top@!@main@!@1.json", folder), "utf8");

const line = (text) => `[Time]:2026-1-2 3:4:5:6.${text}\r\n`;
const asked = (message) => line("=".repeat(20) + "decodePacket") + line(message);
const log = [
  line("GetACP 936"),
  asked('{"Command":"RenameRef","Data":{"Type":1}}'),
  line('return data:{"Data":{},"Command":"RenameRef_EndResult","Result":"0"}'), line("7b7d"),
  asked('{\n\t"Command":\t"GetPartPropertyList"\n}'),
  line('return data:{"Data":{},"Command":"GetPartPropertyList_EndResult","Result":"1","ErrInfo":"no path"}'),
  asked('{"Command":"SetNewGuid","Data":{}}'),
  line("=".repeat(20) + "decodePacket"), line("=".repeat(20) + "decodePacket"), line("{}<img src=x onerror=document.title=1>"),
  line('return data:{"Command":"DsnCheck_Result","Data":{"Sch":"top","PageName":"main","PagePos":"3 4","Comment":"R1@@"}}'),
  line("start-up script: invalid command name \"creatServerForPthread\""),
].join("");
const gbk = Buffer.from(log.replace("@@", "\xce\xbb\xba\xc5\xd6\xd8\xc3\xfb"), "latin1");
const hostile = JSON.stringify({ width: "9", height: "9", children: [
  { name: "script", value: "document.title=1" }, { name: "g", attr: { onload: "document.title=1", id: "x" } },
  { name: "use", attr: { "xlink:href": "data:x" } }, { name: "text", value: "<b>" } ] });

test("a log and drawings become a conversation, faults, findings and pictures", async () => {
  const browser = await start();
  const page = await browser.newPage();
  await page.goto(new URL("docs/logs.html", folder).href);
  const file = (name, content) => ({ name, mimeType: "text/plain", buffer: Buffer.from(content) });
  await page.setInputFiles("#files", [file("schLog.txt", gbk), file("top@!@main@!@1.json", drawing),
    file("bad@!@page@!@1.json", hostile), file("broken@!@page@!@1.json", "{")]);
  await page.waitForFunction(() => document.querySelectorAll("#shown figure").length === 2);
  const rows = (looks) => page.$$eval(`#shown tr${looks}`, (nodes) => nodes.map((node) => node.textContent));
  const faults = (await rows(".fault")).join("\n");
  for (const words of ["GetPartPropertyList_EndResult no path", "SetNewGuid no answer", "a packet that could not be read",
    "not valid JSON", "start-up script: invalid command name"]) {
    assert.ok(faults.includes(words), `${words} in ${faults}`);
  }
  assert.ok((await rows("")).includes("top / main3 4R1位号重名"));
  assert.equal(await page.title(), "Vernoxa: logs and drawings");
  assert.match(await page.textContent("#shown p.fault"), /broken/);
  const used = await page.$$eval("figure:has(ellipse) use", (nodes) => nodes.every((use) => (
    use.href.baseVal.endsWith("VCC") || document.querySelector(use.href.baseVal))));
  assert.ok(used);
  assert.deepEqual(await page.$$eval("figure script, [onload]", (nodes) => nodes.length), 0);
  await browser.close();
});
