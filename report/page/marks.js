// The boxes that people tick beside parts, such as "sourced" and "placed": kept in the browser for this design and its
// revision, and carried elsewhere as a file. A tick belongs to a part as it is: when the part of that reference becomes
// another one, it has to be ticked again.

import { elementsOf } from "./drawn.js";

// Their names are texts of the page.
const USUAL = [
  { id: "sourced", name: "" },
  { id: "placed", name: "" },
];
const MOST_BOXES = 12;
const LONGEST_NAME = 40;
const REVISION = /^(?:rev(?:ision)?|版本)\.?(?:\s*[:：]\s*|\s+|$)(.*)$/i;

export class Marks {
  // `storage` is the browser's, or null where there is none; `kept` is false when nothing can be kept.
  constructor(model, storage) {
    this.model = model;
    this.storage = storage;
    this.kept = storage !== null;
    this.revision = revisionOf(model);
    this.key = `report ${model.design.path.toLowerCase()} ${this.revision}`;
    this.boxes = USUAL.map((box) => ({ ...box }));
    this.ticks = new Map(); // box -> reference -> what the part was
    this.read();
  }

  // What is kept, in which another window of this report may have ticked something meanwhile.
  read() {
    try {
      const text = this.storage?.getItem(this.key);
      if (!text) return;
      const value = JSON.parse(text);
      checkForm(value);
      this.boxes = [];
      this.ticks = new Map();
      this.#take(value);
    } catch {
      this.kept = false;
    }
  }

  has(box, reference) {
    return this.ticks.get(box)?.get(reference) === this.#identity(reference);
  }

  // "all", "some" or "none" of these parts.
  state(box, references) {
    const count = references.filter((reference) => this.has(box, reference)).length;
    return count === 0 ? "none" : count === references.length ? "all" : "some";
  }

  count(box) {
    return [...(this.ticks.get(box)?.keys() ?? [])].filter(
      (reference) => this.model.parts.get(reference)?.fitted && this.has(box, reference),
    ).length;
  }

  set(box, references, on) {
    if (this.kept) this.read();
    if (!this.ticks.has(box)) this.ticks.set(box, new Map());
    for (const reference of references) {
      if (on) this.ticks.get(box).set(reference, this.#identity(reference));
      else this.ticks.get(box).delete(reference);
    }
    this.#keep();
  }

  // Names of boxes as they are to be; one without an id is new. Those that are missing are removed with their ticks.
  rename(boxes) {
    this.boxes = boxes
      .slice(0, MOST_BOXES)
      .map(({ id, name }) => ({ id: id ?? this.#newId(), name: name.trim().slice(0, LONGEST_NAME) }))
      .filter(({ id, name }) => name || USUAL.some((usual) => usual.id === id));
    for (const id of this.ticks.keys()) if (!this.boxes.some((box) => box.id === id)) this.ticks.delete(id);
    this.#keep();
  }

  // What goes into a file.
  exported() {
    return {
      what: "ticked parts",
      design: this.model.name,
      revision: this.revision,
      boxes: this.boxes,
      ticks: Object.fromEntries([...this.ticks].map(([box, parts]) => [box, Object.fromEntries(parts)])),
    };
  }

  // Adds what is in a file to what is there. Gives how many ticks fit parts of this design and how many do not; throws what
  // JSON.parse throws, and a TypeError for what was not exported here.
  imported(text) {
    const value = JSON.parse(text);
    checkForm(value);
    if (this.kept) this.read();
    this.#take(value);
    this.#keep();
    const all = Object.entries(value.ticks).flatMap(([box, parts]) => Object.keys(parts).map((reference) => [box, reference]));
    const fitting = all.filter(([box, reference]) => this.has(box, reference)).length;
    return { fitting, others: all.length - fitting };
  }

  #take(value) {
    for (const { id, name } of value.boxes) {
      const known = this.boxes.find((box) => box.id === id);
      if (known) known.name = name.slice(0, LONGEST_NAME);
      else if (this.boxes.length < MOST_BOXES) this.boxes.push({ id, name: name.slice(0, LONGEST_NAME) });
    }
    for (const [box, parts] of Object.entries(value.ticks)) {
      if (!this.boxes.some(({ id }) => id === box)) continue;
      if (!this.ticks.has(box)) this.ticks.set(box, new Map());
      for (const [reference, identity] of Object.entries(parts)) this.ticks.get(box).set(reference, identity);
    }
  }

  #identity(reference) {
    const line = this.model.parts.get(reference)?.line;
    return line ? [line.PartNumber, line.Value, line.PCBFootprint].join("|") : "";
  }

  #newId() {
    let number = 1;
    while (this.boxes.some(({ id }) => id === `box${number}`) || this.ticks.has(`box${number}`)) number++;
    this.ticks.set(`box${number}`, new Map());
    return `box${number}`;
  }

  #keep() {
    try {
      this.storage?.setItem(this.key, JSON.stringify(this.exported()));
      this.kept = this.storage !== null;
    } catch {
      this.kept = false;
    }
  }
}

// Throws a TypeError for what did not come from here.
function checkForm(value) {
  const isText = (one) => typeof one === "string";
  const isObject = (one) => typeof one === "object" && one !== null && !Array.isArray(one);
  if (
    !isObject(value) ||
    !Array.isArray(value.boxes) ||
    !isObject(value.ticks) ||
    !value.boxes.every((box) => isObject(box) && isText(box.id) && isText(box.name)) ||
    !Object.values(value.ticks).every((parts) => isObject(parts) && Object.values(parts).every(isText))
  ) {
    throw new TypeError("not a file of ticked parts");
  }
}

// What title blocks say of it: "Rev: 2", or the text after "Rev".
export function revisionOf(model) {
  for (const page of model.pages.slice(0, 3)) {
    let next = false;
    for (const element of elementsOf(page.drawing)) {
      if (element.name !== "text") continue;
      const value = (element.value ?? "").trim();
      if (next && value) return value;
      const found = REVISION.exec(value);
      if (found?.[1]) return found[1];
      next = Boolean(found);
    }
  }
  return "";
}
