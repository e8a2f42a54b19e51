// The search field with its list of hits: typed, chosen with the arrow keys or the pointer, gone to with Enter.

import { text } from "./texts.js";

export class Search {
  // `goTo(hit)` and `leave()`, which goes on to the lists, are what the user does; `remark(hit)` is said beside a hit.
  constructor(field, list, index, { goTo, leave, remark }) {
    Object.assign(this, { field, list, index, goTo, leave, remark });
    this.hits = [];
    this.at = 0;
    field.addEventListener("input", () => this.show());
    field.addEventListener("focus", () => this.show());
    field.addEventListener("blur", () => setTimeout(() => this.#hide(), 150));
    field.addEventListener("keydown", (event) => this.#key(event));
    list.addEventListener("pointerdown", (event) => {
      event.preventDefault(); // the field keeps the focus
      const item = event.target.closest("[role=option]");
      if (item) this.#choose(Number(item.dataset.at));
    });
  }

  show() {
    const wanted = this.field.value;
    const { hits, more } = this.index.search(wanted);
    this.hits = hits;
    this.at = 0;
    this.list.hidden = !wanted.trim() || document.activeElement !== this.field;
    const notes = hits.length ? (more ? [this.#note(text("moreHits", { count: more }))] : []) : [this.#note(text("nothing"))];
    this.list.replaceChildren(...hits.map((hit, at) => this.#item(hit, at)), ...notes);
    this.#mark();
  }

  #hide() {
    this.list.hidden = true;
    this.#mark();
  }

  #item(hit, at) {
    const item = document.createElement("li");
    item.role = "option";
    item.dataset.at = at;
    item.id = `hit-${at}`;
    for (const [name, words] of [
      ["kind", text(hit.kind)],
      ["label", hit.label],
      ["detail", [hit.detail, this.remark(hit)].filter(Boolean).join(" · ")],
    ]) {
      const part = document.createElement("span");
      part.className = name;
      part.textContent = words;
      item.append(part);
    }
    return item;
  }

  // It cannot be chosen, but is heard.
  #note(words) {
    const item = document.createElement("li");
    item.role = "option";
    item.ariaDisabled = "true";
    item.className = "nothing";
    item.textContent = words;
    return item;
  }

  #mark() {
    for (const item of this.list.children) item.setAttribute("aria-selected", Number(item.dataset.at) === this.at);
    this.field.setAttribute("aria-expanded", !this.list.hidden);
    if (this.hits.length && !this.list.hidden) this.field.setAttribute("aria-activedescendant", `hit-${this.at}`);
    else this.field.removeAttribute("aria-activedescendant");
    this.list.querySelector("[aria-selected=true]")?.scrollIntoView({ block: "nearest" });
  }

  #choose(at) {
    const hit = this.hits[at];
    if (!hit) return;
    this.at = at;
    this.#hide();
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
      this.#hide();
      this.field.blur();
    } else {
      return;
    }
    event.preventDefault();
  }
}
