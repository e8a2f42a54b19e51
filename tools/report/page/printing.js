// What goes on paper: every page on a sheet of its own, then the lists, in the language that is shown.

import { Drawing } from "./drawing.js";
import { comment, text } from "./texts.js";

export function printable(model) {
  return [...model.pages.map((page) => sheet(page)), bill(model), findings(model)].filter(Boolean);
}

function sheet(page) {
  const node = document.createElement("section");
  const drawing = new Drawing(page);
  drawing.svg.removeAttribute("width");
  drawing.svg.removeAttribute("height");
  node.append(heading(page.name), drawing.svg);
  return node;
}

function bill(model) {
  return table("bom", ["quantity", "references", "value", "partNumber", "partName", "footprint", "state"],
    model.lines.map((line) => [line.quantity, line.references.join(", "), line.Value, line.PartNumber, line.PartName,
      line.PCBFootprint, text(line.fitted ? "fitted" : "absent")]));
}

function findings(model) {
  if (!model.findings.length) return null;
  return table("findings", ["check", "value", "comment", "page"], model.findings.map((finding) => [
    text(`check${finding.check}`), finding.value, comment(finding.comment), finding.pageName]));
}

function table(title, columns, rows) {
  const node = document.createElement("section");
  const table = document.createElement("table");
  const head = table.createTHead().insertRow();
  for (const column of columns) {
    const cell = document.createElement("th");
    cell.textContent = text(column);
    head.append(cell);
  }
  const body = table.createTBody();
  for (const values of rows) {
    const row = body.insertRow();
    for (const value of values) row.insertCell().textContent = value;
  }
  node.append(heading(text(title)), table);
  return node;
}

function heading(words) {
  const node = document.createElement("h2");
  node.textContent = words;
  return node;
}
