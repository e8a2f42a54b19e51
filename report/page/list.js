// A list beside the pages: a table of rows that light up, lead somewhere, are filtered, grouped, selected and copied.

import {
  FilterModule,
  FormatModule,
  GroupRowsModule,
  InteractionModule,
  ResizeColumnsModule,
  ResizeTableModule,
  SelectRowModule,
  SortModule,
  Tabulator,
  TooltipModule,
} from "tabulator-tables";

import { followPointer } from "./pointer.js";
import { inNaturalOrder } from "./quantities.js";
import { text } from "./texts.js";

Tabulator.registerModule([
  FilterModule,
  FormatModule,
  GroupRowsModule,
  InteractionModule,
  ResizeColumnsModule,
  ResizeTableModule,
  SelectRowModule,
  SortModule,
  TooltipModule,
]);

export class List {
  // `columns(rows)` and `rows()` are asked again when the language or what is wanted changes. `events`: pointAt(row),
  // choose(row). `classOf(row)` gives names of classes. Rows have an `id`.
  constructor(element, { label, columns, rows, events = {}, classOf }) {
    this.element = element;
    this.columns = columns;
    this.rows = rows;
    this.events = events;
    this.classOf = classOf;
    this.label = label;
    this.lit = new Set();
    this.stale = true;
  }

  // A list is made when it is first shown: large ones take their time.
  async show() {
    if (!this.ready) this.#make();
    await this.ready;
    if (this.stale) await this.refresh();
    else this.table.redraw();
  }

  #make() {
    const rows = this.rows();
    this.stale = false;
    this.ready = new Promise((resolve) => {
      this.table = new Tabulator(this.element, {
        data: rows,
        columns: this.columns(rows),
        index: "id",
        layout: "fitColumns",
        height: "100%",
        placeholder: text("empty"),
        columnDefaults: { sorter: inNaturalOrder, resizable: "header" },
        selectableRows: true,
        selectableRowsRangeMode: "click",
        rowFormatter: (row) => this.#format(row),
        groupBy: this.grouping,
        groupHeader: (value) => this.#heading(value),
        groupStartOpen: true,
        groupToggleElement: "header",
      });
      this.table.on("tableBuilt", () => {
        this.#setRoles();
        if (this.wanted) this.table.setFilter(this.wanted);
        resolve();
      });
    });
    this.table.on("renderStarted", () => this.#keepFocus());
    this.table.on("renderComplete", () => this.#giveFocusBack());
    this.table.on("rowClick", (event, row) => {
      if (event.shiftKey || event.ctrlKey || event.metaKey || event.target.closest("input")) return;
      this.events.choose?.(row.getData());
    });
    followPointer(
      this.element,
      ({ target }) => {
        const id = target.closest(".tabulator-row")?.dataset.id;
        return id === undefined ? null : { key: id };
      },
      (thing) => this.events.pointAt?.(thing && this.#row(thing.key)?.getData()),
    );
    this.element.addEventListener("keydown", (event) => this.#key(event));
    this.element.addEventListener("focusin", (event) => this.#focus(event));
  }

  async refresh() {
    this.stale = true;
    if (!this.ready || !this.element.offsetParent) return;
    await this.ready;
    this.stale = false;
    const rows = this.rows();
    const sorters = this.table.getSorters().map(({ field, dir }) => ({ column: field, dir }));
    this.element.setAttribute("aria-label", text(this.label));
    this.table.setGroupBy(this.grouping ?? false);
    this.table.setColumns(this.columns(rows));
    await this.table.replaceData(rows);
    if (sorters.length) this.table.setSort(sorters.filter(({ column }) => this.table.getColumn(column)));
    this.#setRoles();
    this.#markAll();
  }

  // Only rows that `wanted(row)` holds for; null for all.
  filter(wanted) {
    this.wanted = wanted;
    if (!this.ready) return;
    this.ready.then(() => (wanted ? this.table.setFilter(wanted) : this.table.clearFilter()));
  }

  // The rows that are selected, or else all that the filter leaves, in their order.
  async chosenRows() {
    await this.show();
    const selected = new Set(this.table.getSelectedData().map((row) => row.id));
    const rows = this.table.getData("active");
    return selected.size ? rows.filter((row) => selected.has(row.id)) : rows;
  }

  // Marks the rows of these ids; the first of them comes into view when the pointer is elsewhere.
  async light(ids, scroll) {
    this.lit = new Set(ids.map(String));
    if (!this.ready) return;
    await this.ready;
    this.#markAll();
    if (!scroll || !ids.length || !this.element.offsetParent) return;
    // The page shows what was chosen before the list moves.
    const latest = (this.latest = (this.latest ?? 0) + 1);
    await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
    const first = latest === this.latest ? ids.find((id) => this.#row(id)) : undefined;
    if (first !== undefined) {
      await this.table.scrollToRow(first, "center", false).catch(() => {});
      this.#markAll();
    }
  }

  // The first lit row gets the focus, or else the first.
  async focus() {
    await this.show();
    const rows = this.table.getRows("active");
    const row = rows.find((row) => this.lit.has(String(row.getData().id))) ?? rows[0];
    if (row) this.#goTo(row);
  }

  #row(id) {
    return this.table.getRow(id) || undefined;
  }

  // The table is a grid to those who do not see it; its scrolling part is none of its rows.
  #setRoles() {
    this.element.setAttribute("aria-label", text(this.label));
    const holder = this.element.querySelector(".tabulator-tableholder");
    holder?.removeAttribute("tabindex");
    holder?.setAttribute("role", "presentation");
  }

  #heading(value) {
    const node = document.createElement("span");
    node.textContent = value || "–";
    return node;
  }

  #format(row) {
    const element = row.getElement();
    const data = row.getData();
    element.tabIndex = this.tabbed === undefined || this.tabbed === String(data.id) ? 0 : -1;
    if (this.tabbed === undefined) this.tabbed = String(data.id);
    element.dataset.id = data.id;
    for (const name of this.classOf?.(data) ?? []) element.classList.add(name);
    this.#mark(element);
  }

  #mark(element) {
    element.classList.toggle("lit", this.lit.has(element.dataset.id));
  }

  // Every row that has a place on the page: those that the table takes for visible are fewer while it is being laid out.
  // One of them is where the Tab key arrives.
  #markAll() {
    const rows = [...this.element.querySelectorAll(".tabulator-row:not(.tabulator-group)")];
    for (const element of rows) this.#mark(element);
    if (rows.length && !rows.some((element) => element.tabIndex === 0)) rows[0].tabIndex = 0;
  }

  // A row far outside what is shown has no place on the page yet.
  #goTo(row) {
    const focus = () => row.getElement().focus();
    if (row.getElement().isConnected) focus();
    else
      this.table
        .scrollToRow(row, "center", false)
        .catch(() => {})
        .then(focus);
  }

  // A table that is laid out again takes its rows off the page and the focus with them: the keyboard would lose its place.
  #keepFocus() {
    const element = document.activeElement;
    this.focused = this.element.contains(element) ? element.closest(".tabulator-row")?.dataset.id : undefined;
  }

  #giveFocusBack() {
    this.#markAll();
    if (this.focused === undefined || document.activeElement !== document.body) return;
    this.#row(this.focused)?.getElement().focus({ preventScroll: true });
  }

  #rowOf(event) {
    const id = event.target.closest(".tabulator-row")?.dataset.id;
    return id === undefined ? null : this.#row(id);
  }

  #focus(event) {
    const row = this.#rowOf(event);
    if (!row) return;
    for (const other of this.element.querySelectorAll(".tabulator-row[tabindex='0']")) other.tabIndex = -1;
    row.getElement().tabIndex = 0;
    this.tabbed = row.getElement().dataset.id;
    this.events.pointAt?.(row.getData());
  }

  #key(event) {
    const row = this.#rowOf(event);
    if (!row || event.ctrlKey || event.metaKey || event.altKey) return;
    const onRow = event.target.classList.contains("tabulator-row");
    const next = { ArrowDown: () => row.getNextRow(), ArrowUp: () => row.getPrevRow() }[event.key]?.();
    if (next) {
      if (event.shiftKey) for (const one of [row, next]) one.select();
      this.#goTo(next);
    } else if (event.key === "Enter" && onRow) this.events.choose?.(row.getData());
    else if (event.key === " " && onRow) row.toggleSelect();
    else if (!event.key.startsWith("Arrow")) return;
    event.preventDefault();
    event.stopPropagation();
  }
}
