// The bill beside the pages: rows as the user wants them, boxes to tick, and what can be taken out of it.

import { billRows, boxTitle, csvOf, tabbedOf, tableOf } from "./bill.js";
import { BILL_FIELDS, billColumns } from "./columns.js";
import { List } from "./list.js";
import { chooseFile, copy, save, say } from "./saving.js";
import { stateOf, text } from "./texts.js";

const element = (id) => document.getElementById(id);

export class BillPanel {
  // `marks` are the ticked boxes, `settings` what the user wants of the table, kept by the caller: {single, group, hidden}.
  constructor(model, marks, settings, { pointAt, choose, changed }) {
    Object.assign(this, { model, marks, settings, changed });
    this.filters = { filter: "", fitted: "" };
    this.list = new List(element("bom"), {
      label: "bom",
      columns: (rows) => billColumns(rows, settings.hidden, this.#boxColumns()),
      rows: () => billRows(model, settings.single),
      classOf: (line) => (line.fitted ? [] : ["absent"]),
      events: {
        pointAt: (line) => pointAt(line && { references: line.references, nets: [] }),
        choose: (line) => choose(line.references),
      },
    });
    this.#listen();
    this.#regroup();
  }

  // In the language that is shown.
  async refresh() {
    const option = (value, words) => Object.assign(document.createElement("option"), { value, textContent: words });
    element("bom-fitted").replaceChildren(
      option("", text("allParts")),
      option("yes", text("fitted")),
      option("no", text("absent")),
      ...this.marks.boxes.map((box) => option(`not ${box.id}`, text("notYet", { box: boxTitle(box) }))),
    );
    element("bom-fitted").value = this.filters.fitted;
    element("bom-rows").value = this.settings.single ? "single" : "";
    element("bom-group").value = this.settings.group;
    this.#showProgress();
    this.#refilter();
    await this.list.refresh();
  }

  // {filter, fitted}, as the address holds them.
  setFilters(filters) {
    Object.assign(this.filters, filters);
    element("bom-filter").value = this.filters.filter;
    element("bom-fitted").value = this.filters.fitted;
    this.#refilter();
  }

  light(references, scroll) {
    const wanted = new Set(references);
    const lines = new Set(
      references.map((reference) => this.model.parts.get(reference)?.line?.id).filter((id) => id !== undefined),
    );
    const ids = !this.settings.single
      ? [...lines]
      : this.model.lines
          .filter((line) => lines.has(line.id))
          .flatMap((line) => line.references.flatMap((one, at) => (wanted.has(one) ? [`${line.id} ${at}`] : [])));
    this.list.light(ids, scroll);
  }

  #listen() {
    const set = (id, event, action) => element(id).addEventListener(event, ({ target }) => action(target.value));
    set("bom-filter", "input", (filter) => this.#filterBy({ filter }));
    set("bom-fitted", "change", (fitted) => this.#filterBy({ fitted }));
    set("bom-rows", "change", (rows) => this.#want({ single: rows === "single" }));
    set("bom-group", "change", (group) => this.#want({ group }));
    element("bom").addEventListener("keydown", (event) => this.#tickWithKey(event));
    element("bom-copy").addEventListener("click", () => this.copy());
    element("bom-csv").addEventListener("click", async () =>
      save(`${this.model.name}.csv`, "text/csv", csvOf(await this.#table())),
    );
    element("bom-settings").addEventListener("click", () => this.#openSettings());
    element("settings-add").addEventListener("click", () => this.#addBoxField({ name: "" }).focus());
    element("settings-close").addEventListener("click", () => element("settings-box").close());
    element("settings-box").addEventListener("close", () => this.#takeSettings());
    element("marks-export").addEventListener("click", () =>
      save(`${this.model.name}.marks.json`, "application/json", `${JSON.stringify(this.marks.exported(), null, 1)}\n`),
    );
    window.addEventListener("storage", ({ key }) => {
      if (key !== this.marks.key) return;
      this.marks.read();
      this.refresh();
    });
    element("marks-import").addEventListener("click", () => this.#import());
  }

  async copy() {
    const table = await this.#table();
    say(copy(tabbedOf(table)) ? text("copied", { rows: table.length - 1 }) : text("notCopied"));
  }

  async #table() {
    return tableOf(await this.list.chosenRows(), this.#fields(), this.marks);
  }

  // All lines, with boxes to tick by hand.
  get printed() {
    return tableOf(billRows(this.model, this.settings.single), this.#fields(), this.marks, { ticked: "☑", open: "☐" });
  }

  #fields() {
    return [
      ...BILL_FIELDS.map(([field, title]) => [field, text(title)]).filter(([field]) => !this.settings.hidden.includes(field)),
      ...this.marks.boxes.map((box) => [`box ${box.id}`, boxTitle(box)]),
    ];
  }

  #filterBy(filters) {
    Object.assign(this.filters, filters);
    this.#refilter();
    this.changed();
  }

  #refilter() {
    const words = this.filters.filter.trim().toLowerCase();
    const { fitted } = this.filters;
    const box = fitted.startsWith("not ") ? fitted.slice(4) : "";
    const says = (line) =>
      [...line.references, line.Value, line.PartNumber, line.PartName, line.PCBFootprint, line.page].some((one) =>
        (one ?? "").toLowerCase().includes(words),
      );
    const isWanted = (line) =>
      (!words || says(line)) &&
      (!fitted || (box ? line.fitted && this.marks.state(box, line.references) !== "all" : line.fitted === (fitted === "yes")));
    this.list.filter(words || fitted ? isWanted : null);
  }

  async #want(settings) {
    Object.assign(this.settings, settings);
    this.settings.keep();
    this.#regroup();
    await this.list.refresh();
    this.#refilter();
  }

  #regroup() {
    const { group } = this.settings;
    this.list.grouping = !group ? undefined : group === "fitted" ? (line) => stateOf(line.fitted) : (line) => line[group] ?? "";
  }

  #boxColumns() {
    return this.marks.boxes.map((box) => ({
      title: boxTitle(box),
      field: `box ${box.id}`,
      always: true,
      hozAlign: "center",
      widthGrow: 0.1,
      say: () => "",
      sorter: (_, __, one, other) =>
        this.marks.state(box.id, one.getData().references).localeCompare(this.marks.state(box.id, other.getData().references)),
      mark: (line, node) => node.append(this.#tick(box, line)),
    }));
  }

  #tick(box, line) {
    const input = Object.assign(document.createElement("input"), { type: "checkbox", tabIndex: -1 });
    const references = line.references.length > 8 ? `${line.references.slice(0, 8).join(", ")}…` : line.references.join(", ");
    input.setAttribute("aria-label", `${boxTitle(box)}: ${references}`);
    input.dataset.box = box.id;
    this.#showTick(input, line);
    input.addEventListener("click", (event) => event.stopPropagation()); // a click on a row selects it alone
    input.addEventListener("change", () => this.#setTick(box.id, line, input.checked));
    return input;
  }

  #showTick(input, line) {
    const state = this.marks.state(input.dataset.box, line.references);
    Object.assign(input, { checked: state === "all", indeterminate: state === "some" });
  }

  // A tick in one of the selected rows is meant for all of them.
  #setTick(box, line, on) {
    const selected = this.list.table.getSelectedData();
    const lines = selected.some((one) => one.id === line.id) ? selected : [line];
    this.marks.set(
      box,
      lines.flatMap((one) => one.references),
      on,
    );
    this.#showTicks();
    if (!this.marks.kept) say(text("notKept"));
  }

  // Those of the lines that are seen: another window may have changed any of them.
  #showTicks() {
    for (const input of element("bom").querySelectorAll("input[data-box]")) {
      const row = this.list.table.getRow(input.closest(".tabulator-row").dataset.id);
      if (row) this.#showTick(input, row.getData());
    }
    this.#showProgress();
  }

  #tickWithKey(event) {
    const box = this.marks.boxes[Number(event.key) - 1];
    const id = event.target.closest(".tabulator-row")?.dataset.id;
    if (!box || id === undefined || event.ctrlKey || event.altKey || event.metaKey) return;
    const line = this.list.table.getRow(id)?.getData();
    if (line) this.#setTick(box.id, line, this.marks.state(box.id, line.references) !== "all");
    event.preventDefault();
    event.stopPropagation();
  }

  #showProgress() {
    const all = [...this.model.parts.values()].filter((part) => part.line && part.fitted).length;
    element("progress").textContent = this.marks.boxes
      .map((box) => `${boxTitle(box)} ${this.marks.count(box.id)}/${all}`)
      .join(" · ");
  }

  async #import() {
    const file = await chooseFile(".json,application/json");
    if (!file) return;
    try {
      say(text("imported", this.marks.imported(await file.text())));
    } catch {
      say(text("notImported", { name: file.name }));
    }
    this.#showBoxFields();
    await this.refresh();
  }

  #openSettings() {
    element("settings-columns").replaceChildren(
      ...BILL_FIELDS.map(([field, title]) => {
        const label = document.createElement("label");
        const input = Object.assign(document.createElement("input"), {
          type: "checkbox",
          checked: !this.settings.hidden.includes(field),
          value: field,
        });
        label.append(input, ` ${text(title)}`);
        return label;
      }),
    );
    this.#showBoxFields();
    element("settings-box").showModal();
  }

  #showBoxFields() {
    element("settings-boxes").replaceChildren();
    for (const box of this.marks.boxes) this.#addBoxField(box);
  }

  #addBoxField(box) {
    const row = document.createElement("li");
    const input = Object.assign(document.createElement("input"), {
      type: "text",
      value: box.id ? boxTitle(box) : "",
      maxLength: 40,
    });
    input.setAttribute("aria-label", text("boxName"));
    if (box.id) input.dataset.box = box.id;
    const remove = Object.assign(document.createElement("button"), { type: "button", textContent: text("remove") });
    remove.addEventListener("click", () => row.remove());
    row.append(input, remove);
    element("settings-boxes").append(row);
    return input;
  }

  // The usual names follow the language as long as they are not changed.
  async #takeSettings() {
    this.settings.hidden = [...element("settings-columns").querySelectorAll("input:not(:checked)")].map((input) => input.value);
    this.settings.keep();
    this.marks.rename(
      [...element("settings-boxes").querySelectorAll("input")]
        .map(({ value, dataset }) => ({ id: dataset.box, name: dataset.box && value.trim() === text(dataset.box) ? "" : value }))
        .filter(({ id, name }) => id || name.trim()),
    );
    await this.refresh();
  }
}
