// What goes on paper: each page on a sheet of its own that lies as the page does, and the lists as tables, in the language
// and with the parts that are shown.

import { Drawing } from "./drawing.js";
import { addOverlay, scalePins } from "./overlay.js";
import { comment, stateOf, text } from "./texts.js";

const PINS_TO_WIDTH = 1 / 1200; // of a pin's scale to its page's width
const SHORT = 20; // letters of a cell that are kept in one line

// `what` is {pages: [index...], bill, findings}, `bill` being the lines of its table.
export function print(room, model, what) {
  const drawings = (what.pages ?? []).map((index) => new Drawing(model.pages[index]));
  room.replaceChildren(
    ...drawings.map((drawing) => sheet(drawing, model)),
    ...(what.bill ? [table(model, "bom", what.bill)] : []),
    ...(what.findings && model.findings.length ? [table(model, "findings", findings(model))] : []),
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
  node.append(heading(model, page.name), svg);
  if (absent.length) {
    const note = document.createElement("span");
    note.textContent = `${stateOf(false)}: ${absent.map((part) => part.reference).join(", ")}`;
    node.firstChild.append(note);
  }
  return node;
}

function findings(model) {
  const rows = model.findings.map(({ number, check, value, comment: said, pageName }) => [
    number,
    text(`check${check}`),
    value,
    comment(said),
    pageName,
  ]);
  return [["number", "check", "value", "comment", "page"].map((name) => text(name)), ...rows];
}

function table(model, title, [heads, ...rows]) {
  const node = document.createElement("section");
  const table = document.createElement("table");
  const head = table.createTHead().insertRow();
  for (const words of heads) {
    const cell = document.createElement("th");
    cell.textContent = words;
    head.append(cell);
  }
  const body = table.createTBody();
  for (const values of rows) {
    const row = body.insertRow();
    for (const value of values) {
      const cell = row.insertCell();
      cell.textContent = value;
      cell.classList.toggle("short", String(value).length <= SHORT);
    }
  }
  node.className = "across";
  node.append(heading(model, text(title)), table);
  return node;
}

// A sheet of paper lies about without the others: each says which design it is of.
function heading(model, words) {
  const node = document.createElement("h2");
  node.textContent = `${model.name} · ${words}`;
  return node;
}
