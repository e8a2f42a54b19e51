// The lists beside the pages: bill of materials, findings, properties.

import {
  FormatModule, InteractionModule, ResizeColumnsModule, ResizeTableModule, SortModule, Tabulator, TooltipModule,
} from "tabulator-tables";

import { inNaturalOrder } from "./model.js";
import { followPointer } from "./pointer.js";
import { comment, stateOf, text } from "./texts.js";

Tabulator.registerModule([FormatModule, InteractionModule, ResizeColumnsModule, ResizeTableModule, SortModule, TooltipModule]);

const [PADDING, ARROW, DOT] = [14, 10, 15]; // pixels
const ruler = document.createElement("canvas").getContext("2d");
const natural = (one, other) => inNaturalOrder(String(one ?? ""), String(other ?? ""));

export class List {
  // `columns(rows)` and `rows()` are asked again when the language changes. `events`: pointAt(row), choose(row).
  constructor(element, { columns, rows, events, classOf, height = "100%" }) {
    this.element = element;
    this.columns = columns;
    this.rows = rows;
    this.lit = new Set();
    this.ready = new Promise((resolve) => {
      this.table = new Tabulator(element, {
        data: rows(), columns: columns(rows()), index: "id", layout: "fitColumns", height, placeholder: text("empty"),
        columnDefaults: { sorter: natural, resizable: true },
        rowFormatter: (row) => this.#format(row, classOf),
      });
      this.table.on("tableBuilt", resolve);
    });
    this.table.on("renderStarted", () => this.#keepFocus());
    this.table.on("renderComplete", () => this.#giveFocusBack());
    followPointer(element, (target) => target.closest(".tabulator-row")?.dataset.id, (id) => {
      events?.pointAt?.(id === null ? null : this.table.getRow(id).getData());
    });
    this.table.on("rowClick", (_, row) => events?.choose?.(row.getData()));
    element.addEventListener("keydown", (event) => this.#key(event, events));
    element.addEventListener("focusin", (event) => this.#focus(event, events));
  }

  async refresh() {
    await this.ready;
    const rows = this.rows();
    this.table.setColumns(this.columns(rows));
    await this.table.replaceData(rows);
  }

  // Marks the rows of these ids; the first of them comes into view when the pointer is elsewhere.
  async light(ids, scroll) {
    await this.ready;
    this.lit = new Set(ids.map(String));
    this.#markAll();
    const first = ids.find((id) => this.table.getRow(id));
    if (scroll && first !== undefined && this.element.offsetParent) {
      await this.table.scrollToRow(first, "center", false).catch(() => {});
    }
    this.#markAll();
  }

  redraw() {
    this.ready.then(() => this.table.redraw(true));
  }

  // The first lit row gets the focus, or else the first.
  async focus() {
    await this.ready;
    const rows = this.table.getRows("active");
    const row = rows.find((row) => this.lit.has(String(row.getData().id))) ?? rows[0];
    if (row) this.#goTo(row);
  }

  #format(row, classOf) {
    const element = row.getElement();
    element.tabIndex = 0;
    element.dataset.id = row.getData().id;
    for (const name of classOf?.(row.getData()) ?? []) element.classList.add(name);
    this.#mark(element);
  }

  #mark(element) {
    element.classList.toggle("lit", this.lit.has(element.dataset.id));
  }

  // Every row that has a place on the page: those that the table takes for visible are fewer while it is being laid out.
  #markAll() {
    for (const element of this.element.querySelectorAll(".tabulator-row")) this.#mark(element);
  }

  // A row far outside what is shown has no place on the page yet.
  #goTo(row) {
    if (row.getElement().isConnected) row.getElement().focus();
    else this.table.scrollToRow(row, "center", false).catch(() => {}).then(() => row.getElement().focus());
  }

  // A table that is laid out anew takes its rows off the page and the focus with them: the keyboard would lose its place.
  #keepFocus() {
    const element = document.activeElement;
    this.focused = this.element.contains(element) ? element.closest(".tabulator-row")?.dataset.id : undefined;
  }

  #giveFocusBack() {
    if (this.focused === undefined || document.activeElement !== document.body) return;
    const row = this.table.getRow(this.focused);
    if (row) row.getElement().focus({ preventScroll: true });
  }

  #rowOf(event) {
    const element = event.target.closest(".tabulator-row");
    return element ? this.table.getRow(element.dataset.id) : null;
  }

  #focus(event, events) {
    const row = this.#rowOf(event);
    if (row) events?.pointAt?.(row.getData());
  }

  #key(event, events) {
    const row = this.#rowOf(event);
    if (!row) return;
    const next = { ArrowDown: () => row.getNextRow(), ArrowUp: () => row.getPrevRow() }[event.key]?.();
    if (next) this.#goTo(next);
    else if (event.key === "Enter") events?.choose?.(row.getData());
    else if (!event.key.startsWith("Arrow")) return;
    event.preventDefault();
    event.stopPropagation();
  }
}

// Columns are asked for with `say`, the text of a row's cell, and with `most`, the widest that they have to be for it, in
// pixels. A column in which no row says anything is left out.
export function bomColumns(lines) {
  return columns(lines, [
    { title: text("quantity"), field: "quantity", hozAlign: "right", widthGrow: 0.1 },
    { title: text("references"), field: "references", widthGrow: 2, most: 130, say: (line) => line.references.join(", "),
      sorter: (one, other) => natural(one[0], other[0]) },
    { title: text("value"), field: "Value", most: 120 },
    { title: text("state"), field: "fitted", widthGrow: 0.1, say: (line) => stateOf(line.fitted) },
    { title: text("partNumber"), field: "PartNumber", most: 120,
      mark: (line, words) => words || `<i>${escaped(text("unnumbered"))}</i>` },
    { title: text("partName"), field: "PartName", most: 120 },
    { title: text("pins"), field: "PinNumber", hozAlign: "right", widthGrow: 0.1 },
    { title: text("footprint"), field: "PCBFootprint", widthGrow: 3, most: 130 },
  ]);
}

export function findingColumns(findings) {
  return columns(findings, [
    { title: text("number"), field: "number", hozAlign: "right", widthGrow: 0.1 },
    { title: text("check"), field: "check", widthGrow: 0.1, say: (finding) => text(`check${finding.check}`),
      mark: (finding, words) => `<span class="dot check${escaped(finding.check)}"></span>${words}` },
    { title: text("value"), field: "value", most: 120 },
    { title: text("comment"), field: "comment", widthGrow: 2, most: 200, say: (finding) => comment(finding.comment) },
    { title: text("page"), field: "pageName", most: 130 },
  ]);
}

export function propertyColumns(properties) {
  return columns(properties, [
    { title: text("name"), field: "name", most: 160 },
    { title: text("value"), field: "value", widthGrow: 3, most: 300 },
  ]);
}

// As wide as heads and texts want it, wider where there is room; where there is none, the list scrolls sideways.
function columns(rows, wanted) {
  const written = wanted.map(({ say, ...column }) => ({ ...column, say: say ?? ((row) => String(row[column.field] ?? "")) }));
  return written.filter(({ say }) => !rows.length || rows.some(say)).map(({ say, mark, most = 400, ...column }) => {
    const longest = Math.max(0, ...rows.map((row) => widthOf(say(row), "")));
    const head = widthOf(column.title, "bold") + ARROW;
    return {
      ...column,
      minWidth: Math.ceil(Math.max(head, Math.min(most, longest + (mark ? DOT : 0)))) + PADDING,
      formatter: (cell) => {
        const words = escaped(say(cell.getData()));
        return mark ? mark(cell.getData(), words) : words;
      },
      tooltip: (event) => wholeText(event.target),
    };
  });
}

// What a cell cuts off; "" when it shows all of it, or was filled anew since the pointer came.
function wholeText(target) {
  const element = target.closest(".tabulator-cell");
  if (element.scrollWidth <= element.clientWidth) return "";
  const node = document.createElement("div");
  node.textContent = element.textContent;
  return node;
}

function widthOf(words, weight) {
  ruler.font = `${weight} 12.5px ${getComputedStyle(document.body).fontFamily}`;
  return ruler.measureText(words).width;
}

// Formatters that give marks of their own have to neutralise what they show.
function escaped(value) {
  const node = document.createElement("span");
  node.textContent = value;
  return node.innerHTML;
}
