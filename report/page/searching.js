// What a typed text finds: exact before the beginning before the inside, and of equal rank parts before nets before texts.

import { isNameOf } from "./nets.js";
import { inNaturalOrder } from "./quantities.js";

const KINDS = ["part", "pin", "net", "value", "page", "finding", "text"];
const MOST_OF_A_KIND = 20;
const MOST_NAMED = 12; // of what belongs to a hit
const LINE_MEMBERS = ["Value", "PartNumber", "PartName", "PCBFootprint"];
const NOTHING = { detail: "", page: -1, references: [], nets: [] };

// `words(finding)` is the text of a finding in the language that is shown.
export class Index {
  constructor(model, words) {
    this.model = model;
    this.words = words;
  }

  // {hits, more}: hits are {kind, label, detail, page, references, nets, pin, finding, element}, `page` being -1 for what is
  // on none; `more` says how many were left out.
  search(text) {
    const wanted = text.trim().toLowerCase();
    if (!wanted) return { hits: [], more: 0 };
    const found = [];
    for (const entry of this.#entries()) {
      const rank = best(entry.texts, wanted);
      if (rank >= 0) found.push({ rank, entry });
    }
    // Pins only by their beginnings: every number would find hundreds.
    if (wanted.includes(".")) {
      for (const { net, pins } of this.#pins()) {
        for (const [at, pin] of pins.entries())
          if (pin.startsWith(wanted))
            found.push({ rank: pin === wanted ? 0 : 1, entry: { kind: "pin", label: net.pins[at], net } });
      }
    }
    const kept = [];
    for (const kind of KINDS) {
      const hits = found.filter(({ entry }) => entry.kind === kind).sort(byRank);
      kept.push(...hits.slice(0, MOST_OF_A_KIND));
    }
    kept.sort(
      (one, other) =>
        one.rank - other.rank || KINDS.indexOf(one.entry.kind) - KINDS.indexOf(other.entry.kind) || byRank(one, other),
    );
    return { hits: kept.map(({ entry }) => this.#hit(entry)), more: found.length - kept.length };
  }

  #hit({ kind, label, part, net, line, page, finding, free }) {
    const hit = { kind, label, ...NOTHING };
    if (part) return { ...hit, detail: part.line?.Value ?? "", page: part.pages[0] ?? -1, references: [part.reference] };
    if (kind === "pin")
      return { ...hit, detail: net.name, page: this.model.placeOf(label, net.name)?.page ?? -1, nets: [net.name], pin: label };
    if (net) return { ...hit, detail: named(net.pins), page: net.pages[0] ?? -1, nets: [net.name] };
    if (line) {
      const page = line.references.flatMap((reference) => this.model.parts.get(reference).pages)[0] ?? -1;
      return { ...hit, detail: named(line.references), page, references: line.references };
    }
    if (page) return { ...hit, page: page.index };
    if (finding)
      return {
        ...hit,
        detail: `${this.words(finding)} · ${finding.pageName}`,
        page: finding.page,
        references: finding.references,
        finding,
      };
    return {
      ...hit,
      detail: this.model.pages[free.page].name + (free.count > 1 ? ` (${free.count})` : ""),
      page: free.page,
      element: free.element,
    };
  }

  // Made once for each language, and again when the pages are joined.
  #entries() {
    const state = `${this.model.joined} ${this.model.findings[0] && this.words(this.model.findings[0])}`;
    if (this.made === state) return this.all;
    const { model } = this;
    const entry = (kind, label, texts, of) => ({ kind, label, texts: texts.map((text) => text.toLowerCase()), ...of });
    this.made = state;
    this.all = [
      ...[...model.parts.values()].map((part) => entry("part", part.reference, [part.reference], { part })),
      ...model.nets.map((net) => entry("net", net.name, [...pathIn(net.name), ...net.labels], { net })),
      ...model.lines.flatMap((line) =>
        LINE_MEMBERS.filter((member) => line[member]).map((member) => entry("value", line[member], [line[member]], { line })),
      ),
      ...model.pages.map((page) => entry("page", page.name, pathIn(page.name), { page })),
      ...model.findings.map((finding) =>
        entry("finding", `${finding.number}: ${finding.value}`, [finding.value, finding.comment, this.words(finding)], {
          finding,
        }),
      ),
      ...this.#freeTexts().map((free) => entry("text", free.value, [free.value], { free })),
    ];
    return this.all;
  }

  #pins() {
    if (this.pinsOf !== this.model.nets) {
      this.pinsOf = this.model.nets;
      this.pinTexts = this.model.nets.map((net) => ({ net, pins: net.pins.map((pin) => pin.toLowerCase()) }));
    }
    return this.pinTexts;
  }

  // Texts that say what other hits say already are noise: a part's own, pins' numbers, names of nets and of sheets.
  #freeTexts() {
    const texts = [];
    for (const page of this.model.joined ? this.model.pages : []) {
      const named = new Set(page.drawn.connectors.map((connector) => connector.text));
      for (const group of page.wiring.groups)
        for (const text of group.labels) if (isNameOf(text.value, group.net)) named.add(text);
      const sheets = new Set(page.drawn.sheets.map((sheet) => sheet.name));
      const seen = new Map();
      for (const text of page.drawn.texts) {
        if (text.isNumber || text.owner || named.has(text) || sheets.has(text.value)) continue;
        if (!text.value.trim() || this.model.parts.has(text.value)) continue;
        const before = seen.get(text.value);
        if (before) before.count += 1;
        else seen.set(text.value, { page: page.index, value: text.value, element: text.element, count: 1 });
      }
      texts.push(...seen.values());
    }
    return texts;
  }
}

// A name with its path, and without.
function pathIn(name) {
  return name.includes("/") ? [name, name.split("/").at(-1)] : [name];
}

function named(names) {
  return names.slice(0, MOST_NAMED).join(", ") + (names.length > MOST_NAMED ? " …" : "");
}

function byRank(one, other) {
  return one.rank - other.rank || inNaturalOrder(one.entry.label, other.entry.label);
}

function best(texts, wanted) {
  let found = -1;
  for (const text of texts) {
    const rank = rankOf(text, wanted);
    if (rank >= 0 && (found < 0 || rank < found)) found = rank;
  }
  return found;
}

// 0 exact, 1 at the beginning, 2 where a word begins, 3 inside one, -1 nowhere.
function rankOf(text, wanted) {
  const at = text.indexOf(wanted);
  if (at < 0) return -1;
  if (at === 0) return text.length === wanted.length ? 0 : 1;
  return /[\p{L}\p{N}]/u.test(text[at - 1]) ? 3 : 2;
}
