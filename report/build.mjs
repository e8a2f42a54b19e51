// Bundles the page of the report with its libraries into build/report: report.js, report.css, the template, and the
// licences of the libraries. They are installed in .deps/report, beside what other tools need.

import { copyFileSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

const here = fileURLToPath(new URL(".", import.meta.url));
const modules = join(here, "../.deps/report/node_modules");
const out = join(here, "../build/report");
const { build } = createRequire(join(modules, "index.js"))("esbuild");

const { metafile } = await build({
  absWorkingDir: here,
  entryPoints: ["page/main.js", "page/report.css"],
  bundle: true,
  minify: true,
  charset: "utf8",
  legalComments: "inline",
  target: ["chrome110", "firefox110", "safari16"],
  nodePaths: [modules],
  outdir: out,
  entryNames: "report",
  logLevel: "warning",
  metafile: true,
});
copyFileSync(join(here, "page/template.html"), join(out, "template.html"));

// Name, version and licence text of each library; one without a licence fails.
const inside = Object.keys(metafile.inputs).map((input) => input.match(/.*\/node_modules\/(?:@[^/]+\/)?[^/]+/)?.[0]);
const licences = [...new Set(inside)].filter(Boolean).sort().map((library) => {
  const folder = join(here, library);
  const { name, version, license } = JSON.parse(readFileSync(join(folder, "package.json"), "utf8"));
  const files = readdirSync(folder).filter((file) => /^LICEN[CS]E/.test(file)).sort();
  if (files.length === 0) throw new Error(`${name} has no licence file`);
  const text = files.map((file) => readFileSync(join(folder, file), "utf8").trim()).join("\n");
  return `${name} ${version} (${license})\n\n${text}\n`;
});
writeFileSync(join(out, "licences.txt"), `${licences.join("\n\n")}\n`);
