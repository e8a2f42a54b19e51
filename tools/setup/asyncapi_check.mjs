#!/usr/bin/env node
// Judges docs/asyncapi.json, or the file that is named, by the field's own reader; anything that it has to say is a fault.
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";

const root = new URL("../../", import.meta.url);
const { Parser } = createRequire(new URL(".deps/asyncapi/", root))("@asyncapi/parser");
const file = process.argv[2] ?? new URL("docs/asyncapi.json", root);
const { document, diagnostics } = await new Parser().parse(readFileSync(file, "utf8"));
for (const { message, path } of diagnostics) {
  console.log(`${path.join(".")}: ${message}`);
}
console.log(`${document?.operations().length ?? "no"} operations, ${document?.messages().length ?? "no"} messages`);
process.exit(document && !diagnostics.length ? 0 : 1);
