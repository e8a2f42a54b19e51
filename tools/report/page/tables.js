// The lists beside the pages: bill of materials, findings, properties.

import {
  FormatModule, InteractionModule, ResizeColumnsModule, ResizeTableModule, SortModule, Tabulator, TooltipModule,
} from "tabulator-tables";

import { inNaturalOrder } from "./model.js";
import { comment, text } from "./texts.js";

Tabulator.registerModule([FormatModule, InteractionModule, ResizeColumnsModule, ResizeTableModule, SortModule, TooltipModule]);

const natural = (one, other) => inNaturalOrder(String(one ?? ""), String(other ?? ""));

export class List {
  // `columns()` and `rows()` are asked again when the language changes. `events`: pointAt(row), choose(row).
  constructor(element, { columns, rows, events, classOf, height = "100%" }) {
    this.element = element;
    this.columns = columns;
    this.rows = rows;
    this.lit = new Set();
    this.ready = new Promise((resolve) => {
      this.table = new Tabulator(element, {
        data: rows(), columns: columns(), index: "id", layout: "fitColumns", height, placeholder: text("empty"),
        columnDefaults: { sorter: natural, resizable: true, minWidth: 40 },
        rowFormatter: (row) => this.#format(row, classOf),
      });
      this.table.on("tableBuilt", resolve);
    });
    this.table.on("rowMouseEnter", (_, row) => events?.pointAt?.(row.getData()));
    this.table.on("rowMouseLeave", () => events?.pointAt?.(null));
    this.table.on("rowClick", (_, row) => events?.choose?.(row.getData()));
    element.addEventListener("keydown", (event) => this.#key(event, events));
    element.addEventListener("focusin", (event) => this.#focus(event, events));
  }

  async refresh() {
    await this.ready;
    this.table.setColumns(this.columns());
    await this.table.replaceData(this.rows());
  }

  // Marks the rows of these ids; the first of them comes into view when the pointer is elsewhere.
  async light(ids, scroll) {
    await this.ready;
    this.lit = new Set(ids);
    for (const row of this.table.getRows("visible")) this.#mark(row);
    const first = ids.find((id) => this.table.getRow(id));
    if (scroll && first !== undefined && this.element.offsetParent) {
      await this.table.scrollToRow(first, "center", false).catch(() => {});
    }
    for (const row of this.table.getRows("visible")) this.#mark(row);
  }

  redraw() {
    this.ready.then(() => this.table.redraw(true));
  }

  #format(row, classOf) {
    const element = row.getElement();
    element.tabIndex = 0;
    element.dataset.id = row.getData().id;
    for (const name of classOf?.(row.getData()) ?? []) element.classList.add(name);
    this.#mark(row);
  }

  #mark(row) {
    row.getElement().classList.toggle("lit", this.lit.has(row.getData().id));
  }

  // A row far outside what is shown has no place on the page yet.
  #goTo(row) {
    if (row.getElement().isConnected) row.getElement().focus();
    else this.table.scrollToRow(row, "center", false).catch(() => {}).then(() => row.getElement().focus());
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

// A column in which no line says anything is left out.
export function bomColumns(lines) {
  const columns = [
    { title: text("quantity"), field: "quantity", width: 64, hozAlign: "right" },
    { title: text("references"), field: "references", widthGrow: 2, sorter: (one, other) => natural(one[0], other[0]),
      formatter: (cell) => escaped(cell.getValue().join(", ")), tooltip: (_, cell) => cell.getValue().join(", ") },
    { title: text("value"), field: "Value", widthGrow: 1.2 },
    { title: text("partNumber"), field: "PartNumber", widthGrow: 1.2, formatter: (cell) =>
      cell.getValue() ? escaped(cell.getValue()) : `<i>${text("unnumbered")}</i>` },
    { title: text("partName"), field: "PartName" },
    { title: text("footprint"), field: "PCBFootprint", widthGrow: 1.4, tooltip: true },
    { title: text("pins"), field: "PinNumber", width: 68, hozAlign: "right" },
    { title: text("state"), field: "fitted", width: 84, formatter: (cell) => text(cell.getValue() ? "fitted" : "absent") },
  ];
  return columns.filter(({ field }) => lines.some((line) => line[field] !== "")).map(plainUnlessSaid);
}

export function findingColumns() {
  return [
    { title: text("check"), field: "check", width: 122, formatter: (cell) =>
      `<span class="dot check${escaped(cell.getValue())}"></span>${escaped(text(`check${cell.getValue()}`))}` },
    { title: text("value"), field: "value" },
    { title: text("comment"), field: "comment", widthGrow: 2, formatter: (cell) => escaped(comment(cell.getValue())) },
    { title: text("page"), field: "pageName" },
  ].map(plainUnlessSaid);
}

export function propertyColumns() {
  return [
    { title: text("name"), field: "name" },
    { title: text("value"), field: "value", widthGrow: 2, tooltip: true },
  ].map(plainUnlessSaid);
}

// The library takes values for HTML unless it is told otherwise; a tooltip shows a node that holds the text.
function plainUnlessSaid(column) {
  const words = typeof column.tooltip === "function" ? column.tooltip : (_, cell) => cell.getValue();
  const tooltip = column.tooltip ? (event, cell) => document.createTextNode(words(event, cell)) : false;
  return { formatter: "plaintext", ...column, tooltip };
}

// Formatters that give marks of their own have to neutralise what they show.
function escaped(value) {
  const node = document.createElement("span");
  node.textContent = value;
  return node.innerHTML;
}
