// The search field with its list of hits: typed, chosen with the arrow keys or the pointer, gone to with Enter.

import { text } from "./texts.js";

export class Search {
  // `goTo(hit)` and `leave()`, which goes on to the lists, are what the user does; `remark(hit)` is said beside a hit.
  constructor(field, list, model, { goTo, leave, remark }) {
    this.field = field;
    this.list = list;
    this.model = model;
    this.goTo = goTo;
    this.leave = leave;
    this.remark = remark;
    this.hits = [];
    this.at = 0;
    field.addEventListener("input", () => this.show());
    field.addEventListener("focus", () => this.show());
    field.addEventListener("blur", () => setTimeout(() => (list.hidden = true), 150));
    field.addEventListener("keydown", (event) => this.#key(event));
    list.addEventListener("pointerdown", (event) => {
      event.preventDefault(); // the field keeps the focus
      const item = event.target.closest("[role=option]");
      if (item) this.#choose(Number(item.dataset.at));
    });
  }

  show() {
    const wanted = this.field.value;
    this.hits = this.model.search(wanted);
    this.at = 0;
    this.list.hidden = !wanted.trim() || document.activeElement !== this.field;
    this.list.replaceChildren(...(this.hits.length ? this.hits.map((hit, at) => this.#item(hit, at)) : [this.#nothing()]));
    this.#mark();
  }

  #item(hit, at) {
    const item = document.createElement("li");
    item.role = "option";
    item.dataset.at = at;
    item.id = `hit-${at}`;
    for (const [name, words] of [["kind", text(hit.kind)], ["label", hit.label], ["detail", [hit.detail, this.remark(hit)].filter(Boolean).join(" · ")]]) {
      const part = document.createElement("span");
      part.className = name;
      part.textContent = words;
      item.append(part);
    }
    return item;
  }

  #nothing() {
    const item = document.createElement("li");
    item.className = "nothing";
    item.textContent = text("nothing");
    return item;
  }

  #mark() {
    for (const item of this.list.children) item.setAttribute("aria-selected", Number(item.dataset.at) === this.at);
    this.field.setAttribute("aria-expanded", !this.list.hidden);
    this.field.setAttribute("aria-activedescendant", this.hits.length ? `hit-${this.at}` : "");
    this.list.querySelector("[aria-selected=true]")?.scrollIntoView({ block: "nearest" });
  }

  #choose(at) {
    const hit = this.hits[at];
    if (!hit) return;
    this.at = at;
    this.list.hidden = true;
    this.#mark();
    this.goTo(hit);
  }

  #key(event) {
    const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (step && this.hits.length) {
      this.at = this.list.hidden ? this.at : (this.at + step + this.hits.length) % this.hits.length;
      this.list.hidden = false;
      this.#mark();
    } else if (event.key === "Enter") {
      this.#choose(this.at);
      if (event.ctrlKey || event.metaKey) this.leave();
    } else if (event.key === "Escape") {
      this.field.value = "";
      this.list.hidden = true;
      this.field.blur();
    } else {
      return;
    }
    event.preventDefault();
  }
}
