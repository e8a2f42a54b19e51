// The columns of the lists: what their cells say, how wide they are, how they are sorted.

import { byQuantity, inNaturalOrder } from "./quantities.js";
import { comment, stateOf, text } from "./texts.js";

const [PADDING, ARROW, DOT, BOX] = [14, 10, 15, 18]; // pixels
const MEASURED = 40; // the longest texts of a column that are measured
const ruler = document.createElement("canvas").getContext("2d");

// Columns are made of: field, title, say(row) for the text of a row's cell, and `most`, the widest that they have to be for
// it, in pixels. A column in which no row says anything is left out.

export function billColumns(lines, hidden, boxes) {
  return columns(
    lines,
    [
      ...boxes,
      { title: text("quantity"), field: "quantity", hozAlign: "right", widthGrow: 0.1 },
      {
        title: text("references"),
        field: "references",
        widthGrow: 2,
        most: 130,
        say: (line) => line.references.join(", "),
        sorter: (one, other) => inNaturalOrder(one[0], other[0]),
      },
      { title: text("value"), field: "Value", most: 120, sorter: byQuantity },
      { title: text("state"), field: "fitted", widthGrow: 0.1, say: (line) => stateOf(line.fitted) },
      {
        title: text("partNumber"),
        field: "PartNumber",
        most: 120,
        mark: (line, node) => {
          if (!node.textContent) node.append(marked("i", text("unnumbered")));
        },
      },
      { title: text("partName"), field: "PartName", most: 120 },
      { title: text("pins"), field: "PinNumber", hozAlign: "right", widthGrow: 0.1 },
      { title: text("footprint"), field: "PCBFootprint", widthGrow: 3, most: 130 },
      { title: text("page"), field: "page", most: 130 },
    ].filter(({ field }) => !hidden.includes(field)),
  );
}

export const BILL_FIELDS = [
  ["quantity", "quantity"],
  ["references", "references"],
  ["Value", "value"],
  ["fitted", "state"],
  ["PartNumber", "partNumber"],
  ["PartName", "partName"],
  ["PinNumber", "pins"],
  ["PCBFootprint", "footprint"],
  ["page", "page"],
];

export function netColumns(nets) {
  return columns(nets, [
    { title: text("netName"), field: "name", widthGrow: 2, most: 200 },
    { title: text("pins"), field: "count", hozAlign: "right", widthGrow: 0.1 },
    { title: text("pages"), field: "pages", widthGrow: 2, most: 200 },
    { title: text("labels"), field: "labels", widthGrow: 1, most: 120 },
    { title: text("pinsOfNet"), field: "pins", widthGrow: 3, most: 160 },
  ]);
}

export function findingColumns(findings) {
  return columns(findings, [
    { title: text("number"), field: "number", hozAlign: "right", widthGrow: 0.1 },
    {
      title: text("check"),
      field: "check",
      widthGrow: 0.1,
      say: (finding) => text(`check${finding.check}`),
      mark: (finding, node) => node.prepend(marked("span", "", `dot check${finding.check}`)),
    },
    { title: text("value"), field: "value", widthGrow: 0.5, most: 120 },
    { title: text("comment"), field: "comment", widthGrow: 3, most: 280, say: (finding) => comment(finding.comment) },
    { title: text("page"), field: "pageName", widthGrow: 0.5, most: 130 },
  ]);
}

export function detailColumns(details) {
  return columns(details, [
    { title: text("name"), field: "name", most: 160 },
    { title: text("value"), field: "value", widthGrow: 3, most: 300 },
  ]);
}

export function changeColumns(changes) {
  const said = (field) => (change) => (change.member === "state" ? text(change[field]) : change[field]);
  return columns(changes, [
    { title: text("change"), field: "change", widthGrow: 0.1, say: ({ change }) => text(change) },
    { title: text("reference"), field: "reference", widthGrow: 0.5 },
    { title: text("field"), field: "member", widthGrow: 0.5, say: ({ member }) => text(member) },
    { title: text("before"), field: "before", widthGrow: 2, most: 200, say: said("before") },
    { title: text("now"), field: "now", widthGrow: 2, most: 200, say: said("now") },
  ]);
}

// As wide as heads and texts want it, wider where there is room; where there is none, the list scrolls sideways.
function columns(rows, wanted) {
  const written = wanted.map(({ say, ...column }) => ({ ...column, say: say ?? ((row) => String(row[column.field] ?? "")) }));
  return written
    .filter(({ say, always }) => always || !rows.length || rows.some(say))
    .map(({ say, mark, most = 400, always, ...column }) => ({
      ...column,
      minWidth:
        Math.ceil(
          Math.max(
            widthOf(column.title, "bold") + ARROW,
            Math.min(most, longestOf(rows, say) + (mark ? DOT : 0) + (always ? BOX : 0)),
          ),
        ) + PADDING,
      formatter: (cell) => {
        const node = marked("span", say(cell.getData()));
        mark?.(cell.getData(), node, cell);
        return node;
      },
      tooltip: (event) => wholeText(event.target),
    }));
}

function marked(name, words, className = "") {
  const node = document.createElement(name);
  node.textContent = words;
  node.className = className;
  return node;
}

// What a cell cuts off; "" when it shows all of it, or was filled again since the pointer came.
function wholeText(target) {
  const element = target.closest(".tabulator-cell");
  if (!element || element.scrollWidth <= element.clientWidth) return "";
  return marked("div", element.textContent);
}

// Only texts nearly as long as the longest can be the widest.
function longestOf(rows, say) {
  const weight = (words) => words.length + (/[\u2e80-\uffff]/.test(words) ? words.length : 0);
  const texts = [...new Set(rows.map(say))];
  const most = texts.reduce((longest, words) => Math.max(longest, weight(words)), 0);
  const long = texts.filter((words) => weight(words) > most * 0.7).slice(0, MEASURED);
  return Math.max(0, ...long.map((words) => widthOf(words, "")));
}

function widthOf(words, weight) {
  family ??= getComputedStyle(document.body).fontFamily;
  ruler.font = `${weight} 12.5px ${family}`;
  return ruler.measureText(words).width;
}

let family;
