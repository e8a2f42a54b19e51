// The pages as a tree: each under the page that holds its sheet, with a small picture, its findings and what is lit on it.

import { drawThumbnail } from "./thumbnail.js";

const [WIDTH, HEIGHT] = [108, 76]; // pixels of a picture

export class Tree {
  // `show(page)` is what a click does.
  constructor(element, model, show) {
    this.element = element;
    this.model = model;
    this.show = show;
    this.closed = new Set();
    this.items = new Map();
    this.current = 0;
    this.dark = matchMedia("(prefers-color-scheme: dark)");
    this.dark.addEventListener("change", () => this.fill());
    this.watch = new IntersectionObserver(
      (seen) => {
        for (const { isIntersecting, target } of seen) if (isIntersecting) this.#draw(target);
      },
      { root: element, rootMargin: "200px" },
    );
    element.addEventListener("click", ({ target }) => {
      const item = target.closest("[role=treeitem]");
      if (!item) return;
      if (target.closest(".fold")) this.#fold(Number(item.dataset.page));
      else show(Number(item.dataset.page));
    });
    element.addEventListener("keydown", (event) => this.#key(event));
    this.fill();
  }

  // Once more when pages are arranged.
  fill() {
    this.watch.disconnect();
    this.items.clear();
    const items = [];
    const add = (page, level) => {
      items.push(this.#item(page, level));
      if (!this.closed.has(page.index)) for (const child of page.children) add(this.model.pages[child], level + 1);
    };
    for (const page of this.model.pages) if (page.parent < 0) add(page, 1);
    this.element.replaceChildren(...items);
    for (const canvas of this.element.querySelectorAll("canvas")) this.watch.observe(canvas);
    this.mark(this.current);
    this.light(this.counts ?? new Map());
  }

  mark(page) {
    this.current = page;
    for (let at = this.model.pages[page]; at.parent >= 0; at = this.model.pages[at.parent]) {
      if (this.closed.delete(at.parent)) return this.fill();
    }
    for (const [index, item] of this.items) {
      item.setAttribute("aria-selected", index === page);
      item.tabIndex = index === page ? 0 : -1;
    }
    this.items.get(page)?.scrollIntoView({ block: "nearest" });
  }

  // How many lit things each page has.
  light(counts) {
    this.counts = counts;
    for (const [index, item] of this.items) {
      const count = String(counts.get(index) || "");
      if (item.lit !== count) item.querySelector(".count").textContent = item.lit = count;
    }
  }

  #item(page, level) {
    const item = document.createElement("div");
    item.role = "treeitem";
    item.dataset.page = page.index;
    item.setAttribute("aria-level", level);
    item.style.setProperty("--level", level - 1);
    const canvas = document.createElement("canvas");
    Object.assign(canvas, { width: WIDTH * 2, height: HEIGHT * 2, ariaHidden: "true" });
    canvas.dataset.page = page.index;
    const fold = part("span", "fold", "");
    if (page.children.length) {
      item.setAttribute("aria-expanded", !this.closed.has(page.index));
      fold.textContent = this.closed.has(page.index) ? "▸" : "▾";
      fold.ariaHidden = "true";
    }
    const name = part("span", "name", page.parent < 0 ? page.name : page.name.split("/").at(-1));
    name.title = page.name;
    const said = part("span", "said", "");
    said.append(name, part("span", "findings-count", this.model.findingsOn(page.index).length || ""), part("span", "count", ""));
    item.append(fold, canvas, said);
    this.items.set(page.index, item);
    return item;
  }

  #draw(canvas) {
    this.watch.unobserve(canvas);
    drawThumbnail(canvas, this.model.pages[canvas.dataset.page], this.dark.matches);
  }

  #fold(page, close = !this.closed.has(page)) {
    if (!this.model.pages[page].children.length) return;
    if (close) this.closed.add(page);
    else this.closed.delete(page);
    this.fill();
    this.items.get(page).focus();
  }

  #key(event) {
    const item = event.target.closest("[role=treeitem]");
    if (!item) return;
    const page = this.model.pages[item.dataset.page];
    const items = [...this.items.values()];
    const at = items.indexOf(item);
    const go = (to) => to?.focus();
    const actions = {
      ArrowDown: () => go(items[at + 1]),
      ArrowUp: () => go(items[at - 1]),
      Home: () => go(items[0]),
      End: () => go(items.at(-1)),
      ArrowRight: () => (this.closed.has(page.index) ? this.#fold(page.index, false) : go(this.items.get(page.children[0]))),
      ArrowLeft: () =>
        page.children.length && !this.closed.has(page.index) ? this.#fold(page.index, true) : go(this.items.get(page.parent)),
      Enter: () => this.show(page.index),
      " ": () => this.show(page.index),
    };
    if (!actions[event.key]) return;
    actions[event.key]();
    event.preventDefault();
    event.stopPropagation();
  }
}

function part(name, className, words) {
  const node = document.createElement(name);
  node.className = className;
  node.textContent = words;
  return node;
}
