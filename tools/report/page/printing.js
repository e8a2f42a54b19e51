// What goes on paper: each page on a sheet of its own that lies as the page does, and the lists as tables, in the language
// and with the parts that are shown.

import { Drawing } from "./drawing.js";
import { addOverlay, scalePins } from "./overlay.js";
import { comment, stateOf, text } from "./texts.js";

const PINS_TO_WIDTH = 1 / 1200; // of a pin's scale to its page's width

// `what` is {pages: [index...], bill, findings}.
export function print(room, model, what) {
  const drawings = (what.pages ?? []).map((index) => new Drawing(model.pages[index]));
  room.replaceChildren(
    ...drawings.map((drawing) => sheet(drawing, model)),
    ...(what.bill ? [bill(model)] : []),
    ...(what.findings ? findings(model) : []),
  );
  room.classList.add("measured");
  for (const drawing of drawings) {
    addOverlay(drawing, model, true);
    scalePins(drawing, drawing.size.width * PINS_TO_WIDTH);
  }
  room.classList.remove("measured");
}

function sheet({ page, svg, size }, model) {
  const node = document.createElement("section");
  node.className = size.width >= size.height ? "across" : "upright";
  svg.removeAttribute("width");
  svg.removeAttribute("height");
  const absent = [...model.parts.values()].filter((part) => !part.fitted && part.pages.includes(page.index));
  node.append(heading(page.name), svg);
  if (absent.length) {
    const note = document.createElement("span");
    note.textContent = `${stateOf(false)}: ${absent.map((part) => part.reference).join(", ")}`;
    node.firstChild.append(note);
  }
  return node;
}

function bill(model) {
  return table(
    "bom",
    ["quantity", "references", "value", "state", "partNumber", "partName", "footprint"],
    model.lines.map((line) => [
      line.quantity,
      line.references.join(", "),
      line.Value,
      stateOf(line.fitted),
      line.PartNumber,
      line.PartName,
      line.PCBFootprint,
    ]),
  );
}

function findings(model) {
  if (!model.findings.length) return [];
  return [
    table(
      "findings",
      ["number", "check", "value", "comment", "page"],
      model.findings.map((finding) => [
        finding.number,
        text(`check${finding.check}`),
        finding.value,
        comment(finding.comment),
        finding.pageName,
      ]),
    ),
  ];
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
  node.className = "across";
  node.append(heading(text(title)), table);
  return node;
}

function heading(words) {
  const node = document.createElement("h2");
  node.textContent = words;
  return node;
}
