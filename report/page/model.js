// What is known of the design, and the ways from one thing to another. Nothing here touches the page that is shown.

import { elementsOf, matrixOf, readPage } from "./drawn.js";
import { arrangePages } from "./hierarchy.js";
import { isNameOf, joinNets, numbersIn, pinOf } from "./nets.js";
import { inNaturalOrder } from "./quantities.js";
import { wiringOf } from "./wiring.js";

const BOM_MEMBERS = ["PartNumber", "Value", "PartName", "PCBFootprint", "PinNumber"];
const SAME_PIN = 60; // units between findings of one part that are told by one pin
const MOST_PINS = 1000; // of a net that are listed one by one
const LONGEST_REFERENCE = 24;

// The references of a line; a line can stand for several equal parts.
export function referencesOf(line) {
  return (line.PartRef ?? "").split(/[,\s]+/).filter(Boolean);
}

// A page whose drawing is read when it is first needed.
function pageOf({ schematic, name, key, drawing }, index, read) {
  const page = { schematic, name, key, index, children: [], parent: -1, parts: new Set() };
  return Object.defineProperty(page, "drawing", { get: () => (drawing ??= read(index)) });
}

// The parts that a drawing places, [[reference, x, y]...].
function partsIn(drawing) {
  return [...elementsOf(drawing)]
    .filter(({ name, attr }) => name === "use" && attr?.id)
    .map(({ attr }) => [attr.id, matrixOf(attr.transform).x, matrixOf(attr.transform).y]);
}

export class Model {
  // `design` is what is embedded in the page; its form is described in collect.py. `read(index)` gives the drawing of a page
  // that has none in it.
  constructor(design, read) {
    this.design = design;
    this.name = design.path.split(/[\\/]/).at(-1);
    this.pages = design.pages.map((page, index) => pageOf(page, index, read));
    this.parts = new Map(); // reference -> {reference, line, fitted, pages: [index...], places: [{page, x, y}...]}
    this.lines = this.#gatherLines(design.bom);
    this.#placeParts();
    this.findings = design.findings.map((finding, id) => this.#finding(finding, id));
    this.pins = this.#gatherPins();
    this.hasList = Object.keys(design.nets ?? {}).length > 0;
    this.joined = false; // until joinPages has ended there are no nets
    Object.assign(this, { nets: [], netByName: new Map(), pinsOf: new Map(), places: new Map(), unjoined: [] });
  }

  // Reads the wiring of all pages and joins it. `pause` is awaited now and then, so that the page stays quick.
  async joinPages(pause) {
    const list = this.design.nets ?? {};
    const numbers = numbersIn(list);
    for (const page of this.pages) {
      page.drawn = readPage(page.drawing);
      page.wiring = wiringOf(page.drawn, (reference) => numbers.get(reference));
      await pause();
    }
    arrangePages(this.pages);
    await pause();
    const { nets, places, unjoined } = await joinNets(list, this.pages, pause);
    this.places = places;
    this.unjoined = unjoined;
    this.#takeNets(nets);
    this.joined = true;
  }

  #takeNets(nets) {
    this.nets = nets
      .map(({ name, pins, groups }, id) => ({
        id,
        name,
        pins,
        groups,
        references: [...new Set(pins.map((pin) => pinOf(pin).reference))].filter((part) => this.parts.has(part)),
        pages: [...new Set(groups.map((group) => group.page.index))].sort((one, other) => one - other),
        labels: [
          ...new Set(
            groups.flatMap((group) => [
              ...group.labels.map((text) => text.value).filter((text) => isNameOf(text, name)),
              ...group.connectors.map((one) => one.name).filter(Boolean),
            ]),
          ),
        ],
      }))
      .sort((one, other) => inNaturalOrder(one.name, other.name));
    this.netByName = new Map(this.nets.map((net) => [net.name, net]));
    this.pinsOf = new Map(); // reference -> [[pin, net name]...]
    for (const net of this.nets) {
      for (const pin of net.pins) {
        const { reference } = pinOf(pin);
        if (!this.pinsOf.has(reference)) this.pinsOf.set(reference, []);
        this.pinsOf.get(reference).push([pin, net.name]);
      }
    }
  }

  // Where a pin of a net is drawn; undefined when no page shows it.
  placeOf(pin, net) {
    const places = this.places.get(pin) ?? [];
    return places.find((place) => place.group.net === net) ?? places[0];
  }

  // Equal parts in the same state make one line.
  #gatherLines(bom) {
    const unnumbered = new Set((bom.NotPartNumber ?? []).flatMap(referencesOf));
    const lines = new Map();
    for (const [list, fitted] of [
      ["Stick", true],
      ["NotStick", false],
    ]) {
      for (const source of bom[list] ?? []) {
        const key = [fitted, ...BOM_MEMBERS.map((member) => source[member])].join("\n");
        const line = lines.get(key) ?? { ...source, id: lines.size, fitted, references: [] };
        lines.set(key, line);
        for (const reference of referencesOf(source)) {
          line.references.push(reference);
          this.parts.set(reference, { reference, line, fitted, pages: [], places: [] });
        }
      }
    }
    return [...lines.values()].map((line) => {
      line.references.sort(inNaturalOrder);
      line.quantity = line.references.length;
      line.unnumbered = line.references.some((reference) => unnumbered.has(reference));
      return line;
    });
  }

  #placeParts() {
    for (const page of this.pages) {
      for (const [reference, x, y] of this.design.pages[page.index].parts ?? partsIn(page.drawing)) {
        // A part that is left out of bills is on the pages all the same.
        if (!this.parts.has(reference)) this.parts.set(reference, { reference, line: null, fitted: true, pages: [], places: [] });
        const part = this.parts.get(reference);
        page.parts.add(reference);
        if (part.pages.at(-1) !== page.index) part.pages.push(page.index);
        part.places.push({ page: page.index, x, y });
      }
    }
  }

  #finding(finding, id) {
    const [x, y] = (finding.PagePos ?? "").split(" ").map(Number);
    const page =
      this.pages.find((page) => page.name === finding.PageName && page.schematic === finding.Sch) ??
      this.pages.find((page) => page.name === finding.PageName);
    const placed = page !== undefined && Number.isFinite(x) && Number.isFinite(y);
    // The value begins with the reference in most checks, the comment in the others; else the place tells.
    const named = [
      ...new Set([finding.ActualValue, finding.Comment].map((text) => this.#referenceIn(text ?? "")).filter(Boolean)),
    ];
    if (!named.length && placed) {
      const isThere = (place) => place.page === page.index && Math.abs(place.x - x) < 1 && Math.abs(place.y - y) < 1;
      const there = [...page.parts].find((reference) => this.parts.get(reference).places.some(isThere));
      if (there) named.push(there);
    }
    return {
      id,
      number: id + 1,
      check: finding.id,
      value: finding.ActualValue ?? "",
      comment: finding.Comment ?? "",
      page: page?.index ?? -1,
      pageName: finding.PageName ?? "",
      x,
      y,
      placed,
      references: named,
    };
  }

  // The longest reference with which a text begins.
  #referenceIn(text) {
    for (let length = Math.min(text.length, LONGEST_REFERENCE); length > 0; length--) {
      if (length < text.length && /[0-9A-Za-z_]/.test(text[length])) continue;
      if (this.parts.has(text.slice(0, length))) return text.slice(0, length);
    }
    return "";
  }

  // One pin for what is found of a part, or at one place: {id, page, x, y, findings}.
  #gatherPins() {
    const pins = [];
    for (const finding of this.findings.filter((finding) => finding.placed)) {
      const pin = pins.find(
        (pin) =>
          pin.page === finding.page &&
          Math.hypot(pin.x - finding.x, pin.y - finding.y) <
            (pin.findings[0].references[0] === finding.references[0] && finding.references.length ? SAME_PIN : 2),
      );
      if (pin) pin.findings.push(finding);
      else pins.push({ id: pins.length, page: finding.page, x: finding.x, y: finding.y, findings: [finding] });
      finding.pin = pin?.id ?? pins.length - 1;
    }
    return pins;
  }

  // Numbers of the whole design; of findings also by kind and by page.
  counts() {
    const parts = [...this.parts.values()];
    return {
      pages: this.pages.length,
      parts: parts.length,
      absent: parts.filter((part) => !part.fitted).length,
      listed: parts.filter((part) => part.line).length,
      findings: this.findings.length,
      nets: this.joined ? this.nets.length : Object.keys(this.design.nets ?? {}).length,
    };
  }

  findingsOn(page) {
    return this.findings.filter((finding) => finding.page === page);
  }

  // What is known of these parts together: [[the name of a text, or a pin, value, what a click goes to]...].
  propertiesOf(references) {
    const parts = references.map((reference) => this.parts.get(reference)).filter(Boolean);
    const lines = parts.map((part) => part.line).filter(Boolean);
    const joined = (values) => [...new Set(values)].filter(Boolean).join("; ");
    const pins = references.flatMap((reference) => this.pinsOf.get(reference) ?? []);
    return [
      ["value", joined(lines.map((line) => line.Value))],
      ["partNumber", joined(lines.map((line) => line.PartNumber))],
      ["partName", joined(lines.map((line) => line.PartName))],
      ["footprint", joined(lines.map((line) => line.PCBFootprint))],
      ["pins", joined(lines.map((line) => line.PinNumber))],
      ["page", joined(parts.flatMap((part) => part.pages.map((page) => this.pages[page].name)))],
      ...pins.sort(([one], [other]) => inNaturalOrder(one, other)).map(([pin, net]) => [pin, net, { net, pin }]),
    ];
  }

  // The same of a net; a value can be a list whose items are texts, or {text} for the name of one.
  propertiesOfNet(net) {
    const pins = [...net.pins].sort(inNaturalOrder);
    return [
      ["labels", net.labels.join("; ")],
      ["quantityOfPins", String(pins.length)],
      ...net.pages.map((page) => ["page", this.pages[page].name, { net: net.name, page }]),
      ...pins.slice(0, MOST_PINS).map((pin) => {
        const place = this.placeOf(pin, net.name);
        const part = this.parts.get(pinOf(pin).reference);
        const where = place ? this.pages[place.page].name : { text: "notDrawn" };
        return [pin, [part?.line?.Value, where].filter(Boolean), place && { net: net.name, pin, page: place.page }];
      }),
      ...(pins.length > MOST_PINS ? [["…", String(pins.length - MOST_PINS)]] : []),
    ];
  }
}
