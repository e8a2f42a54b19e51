// The nets of a design: the groups of wires of all pages, joined by names and sheets, and matched to the net list.
//
// The net list says which pins are one net, but not where; the pages say where, but not always which pin is which. A pin's
// number that is drawn, a name, a sheet's pin each tell the net of a group, and what is known of some instances of a symbol
// tells the numbers of its pins on all others. What is contradictory or tells nothing is left out and counted.

import { Sets } from "./wiring.js";

const ROUNDS = 6;
const MOST_OF_VOTES = 0.8;
const MOST_OF_A_BUS = 1024;

// `list` is {name: ["U1.3"...]}; `pages` have `wiring` (see wiring.js) and are arranged (see hierarchy.js).
// Gives {nets, places, unjoined}: nets [{name, pins, groups: [{page, group}...]}], the places of pins "U1.3" ->
// [{page, x, y, group}...], and the groups that could not be joined. Each group gets `net`, its name or "",
// and each bus `nets`.
// `pause` is awaited between steps.
export function joinNets(list, pages, pause = () => {}) {
  return new Joining(list, pages).run(pause);
}

// The pin numbers of each part of a net list.
export function numbersIn(list) {
  const numbers = new Map();
  for (const pins of Object.values(list)) {
    for (const pin of pins) {
      const { reference, number } = pinOf(pin);
      if (!numbers.has(reference)) numbers.set(reference, new Set());
      numbers.get(reference).add(number);
    }
  }
  return numbers;
}

// Whether a text on a page is the name of a net, which may bear its sheet's name before its own.
export function isNameOf(text, net) {
  return net === text || net.endsWith(`/${text}`);
}

// "D[0..2]" is D0, D1, D2; "" has no members.
function membersOf(name) {
  const [, before, from, to, after] = /^(.*)\[(\d+)(?:\.\.|:|-)(\d+)\](.*)$/.exec(name) ?? [];
  const [low, high] = [Number(from), Number(to)].sort((one, other) => one - other);
  if (before === undefined || high - low >= MOST_OF_A_BUS) return [];
  return Array.from({ length: high - low + 1 }, (_, at) => `${before}${low + at}${after}`);
}

export function pinOf(text) {
  const dot = text.lastIndexOf(".");
  return dot < 0 ? { reference: text, number: "" } : { reference: text.slice(0, dot), number: text.slice(dot + 1) };
}

class Joining {
  constructor(list, pages) {
    this.list = list;
    this.pages = pages;
    this.netOf = new Map(); // "U1.3" -> net; "" for a pin that two parts of one name have in different nets
    this.netsOf = new Map(); // reference -> nets
    for (const [name, pins] of Object.entries(list)) {
      for (const pin of pins) {
        this.netOf.set(pin, this.netOf.has(pin) ? "" : name);
        const { reference } = pinOf(pin);
        if (!this.netsOf.has(reference)) this.netsOf.set(reference, new Set());
        this.netsOf.get(reference).add(name);
      }
    }
    this.numbers = numbersIn(list);
    this.groups = pages.flatMap((page) => page.wiring.groups.map((group) => Object.assign(group, { page, net: "" })));
  }

  async run(pause) {
    await pause();
    this.classes = this.#classes();
    if (!this.netOf.size) return this.#withoutList();
    for (let round = 0, before = -1; round < ROUNDS && this.#open() !== before; round++) {
      before = this.#open();
      for (const step of [this.#spread, this.#byNames, this.#numberPins]) {
        step.call(this);
        await pause();
      }
    }
    this.#bySignatures();
    this.#numberPins();
    this.#spread();
    await pause();
    return this.#result(Object.entries(this.list));
  }

  #open() {
    return this.groups.reduce((count, group) => count + (group.net ? 0 : 1), 0);
  }

  // Groups that names or sheets make one, over all pages.
  #classes() {
    const sets = new Sets();
    for (const group of this.groups) for (const link of this.#links(group)) sets.join(group, link);
    const classes = new Map();
    for (const group of this.groups) {
      const root = sets.find(group);
      if (!classes.has(root)) classes.set(root, []);
      classes.get(root).push(group);
    }
    return [...classes.values()];
  }

  #links({ page, connectors, labels }) {
    const links = labels.filter((text) => this.#isName(text, page)).map((text) => `label ${page.index} ${text.value}`);
    for (const connector of connectors) {
      const { kind, name, sheet } = connector;
      if (kind === "power") links.push(`power ${this.#nameOf(connector)}`);
      else if (sheet) links.push(...sheet.pages.map((child) => `port ${child} ${name}`));
      else links.push(kind === "port" ? `port ${page.index} ${name}` : `offpage ${name}`, `label ${page.index} ${name}`);
    }
    return links;
  }

  #isName({ value, owner }, page) {
    return this.netOf.size ? this.#named(value, page) !== "" : !owner && !/\s/.test(value);
  }

  #nameOf({ name, symbol, near }) {
    return name || [symbol, near].find((one) => one && Object.hasOwn(this.list, one)) || symbol || "";
  }

  // The net that a text on a page names: one of the sheet before one of all sheets.
  #named(text, page) {
    return (
      [`${page.name}/${text}`, `/${page.name}/${text}`, `/${text}`, text].find((name) => Object.hasOwn(this.list, name)) ?? ""
    );
  }

  // The net of a group tells that of its pins; the nets of some groups of a class tell those of the others.
  #spread() {
    for (const group of this.groups) if (!group.net) group.net = this.#byPins(group);
    for (const groups of this.classes) {
      const nets = new Set(groups.map((group) => group.net).filter(Boolean));
      if (nets.size === 1) for (const group of groups) if (!group.net) group.net = [...nets][0];
    }
  }

  #byPins(group) {
    const nets = new Set(group.pins.filter((pin) => pin.number).map((pin) => this.netOf.get(`${pin.reference}.${pin.number}`)));
    for (const nothing of [undefined, ""]) nets.delete(nothing);
    return nets.size === 1 ? [...nets][0] : "";
  }

  // Where a class is contradictory, each of its groups is what it is called itself.
  #byNames() {
    for (const group of this.groups) {
      if (group.net) continue;
      const names = [
        ...group.connectors.filter((one) => !one.sheet).map((one) => this.#nameOf(one)),
        ...group.labels.map((text) => text.value),
      ];
      group.net = names.map((name) => this.#named(name, group.page)).find((net) => net && this.#fits(group, net)) ?? "";
    }
  }

  #fits(group, net) {
    return group.pins.every((pin) => !this.netsOf.has(pin.reference) || this.netsOf.get(pin.reference).has(net));
  }

  // A pin without a number gets the one that the same pin of the same symbol has elsewhere, in the nets that are known, or
  // the only one that its part has left.
  #numberPins() {
    const votes = new Map(); // symbol and pin -> number -> votes
    const open = [];
    const left = new Map(); // reference -> how many of its pins have no number
    const used = new Map(); // pin -> which of its symbol it is; a part that is there twice has it twice
    for (const group of this.groups) {
      for (const pin of group.pins) {
        if (pin.number) {
          used.set(`${pin.reference}.${pin.number}`, symbolPin(pin));
          continue;
        }
        open.push({ pin, group });
        left.set(pin.reference, (left.get(pin.reference) ?? 0) + 1);
        const possible = group.net
          ? [...(this.numbers.get(pin.reference) ?? [])].filter((number) => this.#isIn(group.net, pin.reference, number))
          : [];
        if (possible.length !== 1) continue;
        const key = symbolPin(pin);
        if (!votes.has(key)) votes.set(key, new Map());
        votes.get(key).set(possible[0], (votes.get(key).get(possible[0]) ?? 0) + 1);
      }
    }
    for (const { pin, group } of open) {
      const mine = votes.get(symbolPin(pin));
      const free = [...(this.numbers.get(pin.reference) ?? [])].filter((number) => !used.has(`${pin.reference}.${number}`));
      const number = (mine && mostOf(mine)) || (left.get(pin.reference) === 1 && free.length === 1 ? free[0] : "");
      const name = `${pin.reference}.${number}`;
      if (
        !number ||
        (used.has(name) && used.get(name) !== symbolPin(pin)) ||
        (group.net && !this.#isIn(group.net, pin.reference, number))
      )
        continue;
      pin.number = number;
      used.set(name, symbolPin(pin));
    }
  }

  #isIn(net, reference, number) {
    const known = this.netOf.get(`${reference}.${number}`);
    return known === net || (known === "" && this.list[net].includes(`${reference}.${number}`));
  }

  // The only net in which all parts of a group have a pin.
  #bySignatures() {
    for (const group of this.groups) {
      if (group.net || group.pins.length < 2) continue;
      const sets = group.pins.map((pin) => this.netsOf.get(pin.reference) ?? new Set());
      const common = [...sets[0]].filter((net) => sets.every((set) => set.has(net)));
      if (common.length === 1) [group.net] = common;
    }
  }

  // Names come from the drawing when there is no list.
  #withoutList() {
    const nets = [];
    const taken = new Set();
    for (const groups of this.classes) {
      const pins = [
        ...new Set(
          groups.flatMap((group) => group.pins.map((pin) => (pin.number ? `${pin.reference}.${pin.number}` : pin.reference))),
        ),
      ];
      const named = groups
        .flatMap(({ page, connectors, labels }) => [
          ...connectors.filter((one) => one.kind === "power" || one.kind === "offpage").map((one) => [0, this.#nameOf(one)]),
          ...labels.filter((text) => this.#isName(text, page)).map((text) => [1, onSheet(page, text.value)]),
          ...connectors.filter((one) => one.kind === "port" && !one.sheet).map((one) => [2, onSheet(page, one.name)]),
        ])
        .filter(([, name]) => name)
        .sort(([one, name], [other, otherName]) => one - other || name.length - otherName.length);
      if (pins.length < 2 && !named.length) continue;
      let name = named[0]?.[1] ?? `#${nets.length + 1}`;
      while (taken.has(name)) name += "'";
      taken.add(name);
      for (const group of groups) group.net = name;
      nets.push([name, pins]);
    }
    return this.#result(nets);
  }

  #result(entries) {
    const nets = new Map(entries.map(([name, pins]) => [name, { name, pins, groups: [] }]));
    const places = new Map();
    const unjoined = [];
    for (const group of this.groups) {
      if (group.net) nets.get(group.net).groups.push(group);
      else if (isWiring(group)) unjoined.push(group);
      for (const pin of group.pins) {
        const name = pin.number ? `${pin.reference}.${pin.number}` : pin.reference;
        if (!places.has(name)) places.set(name, []);
        places.get(name).push({ page: group.page.index, x: pin.x, y: pin.y, group });
      }
    }
    for (const page of this.pages) {
      for (const bus of page.wiring.buses) {
        const names = [...bus.labels.map((text) => text.value), ...bus.connectors.map((one) => one.name)].flatMap(membersOf);
        const known = [...bus.groups.map((group) => group.net), ...names.map((name) => this.#named(name, page))];
        bus.nets = [...new Set(known)].filter((name) => nets.has(name));
      }
    }
    return { nets: [...nets.values()], places, unjoined };
  }
}

function symbolPin({ index, symbol }) {
  return `${index} ${symbol}`;
}

function onSheet(page, name) {
  return page.parent < 0 ? name : `${page.name}/${name}`;
}

// What joins things, other than a pin left open or a line that is only drawn.
function isWiring({ lines, pins, connectors }) {
  return pins.length + connectors.length > 1 || (lines.length > 0 && connectors.length > 0);
}

function mostOf(votes) {
  const all = [...votes.values()].reduce((sum, count) => sum + count, 0);
  const [number, count] = [...votes].sort(([, one], [, other]) => other - one)[0];
  return count >= all * MOST_OF_VOTES ? number : "";
}
