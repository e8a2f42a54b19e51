// What is known of the design, and the ways from one thing to another. Nothing here touches the page.

const BOM_MEMBERS = ["PartNumber", "Value", "PartName", "PCBFootprint", "PinNumber"];

// "R2" stands before "R10".
export function inNaturalOrder(one, other) {
  return one.localeCompare(other, "en", { numeric: true });
}

// The references of a line; a line can stand for several equal parts.
export function referencesOf(line) {
  return (line.PartRef ?? "").split(/[,\s]+/).filter(Boolean);
}

// A net of a sheet bears the sheet's path before its name.
function nameOnSheet(net) {
  return net.split("/").at(-1);
}

// Every drawing element of a page, its definitions left out.
export function* elementsOf(drawing) {
  for (const child of drawing.children ?? []) {
    if (child.name === "defs") continue;
    yield child;
    yield* elementsOf(child);
  }
}

export class Model {
  // `design` is what is embedded in the page; its form is described in collect.py.
  constructor(design) {
    this.design = design;
    this.pages = design.pages.map((page, index) => ({ ...page, index }));
    this.parts = new Map(); // reference -> {reference, line, fitted, pages: [index...]}
    this.lines = this.#gatherLines(design.bom);
    this.#placeParts();
    this.nets = Object.entries(design.nets ?? {}).map(([name, pins]) => ({
      name,
      pins,
      references: [...new Set(pins.map((pin) => pin.split(".")[0]))].filter((part) => this.parts.has(part)),
    }));
    this.findings = design.findings.map((finding, id) => this.#finding(finding, id));
  }

  // Equal parts in the same state make one line.
  #gatherLines(bom) {
    const unnumbered = new Set((bom.NotPartNumber ?? []).flatMap(referencesOf));
    const lines = new Map();
    for (const [list, fitted] of [["Stick", true], ["NotStick", false]]) {
      for (const source of bom[list] ?? []) {
        const key = JSON.stringify([fitted, ...BOM_MEMBERS.map((member) => source[member])]);
        const line = lines.get(key) ?? { ...source, id: lines.size, fitted, references: [] };
        lines.set(key, line);
        for (const reference of referencesOf(source)) {
          line.references.push(reference);
          this.parts.set(reference, { reference, line, fitted, pages: [] });
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
      page.texts = [];
      for (const element of elementsOf(page.drawing)) {
        if (element.name === "text") page.texts.push(element);
        const reference = element.name === "use" ? element.attr.id : "";
        if (!reference) continue;
        // A part that is left out of bills is on the pages all the same.
        if (!this.parts.has(reference)) this.parts.set(reference, { reference, line: null, fitted: true, pages: [] });
        const pages = this.parts.get(reference).pages;
        if (!pages.includes(page.index)) pages.push(page.index);
      }
    }
  }

  #finding(finding, id) {
    const [x, y] = finding.PagePos.split(" ").map(Number);
    const page = this.pages.find((page) => page.name === finding.PageName && page.schematic === finding.Sch)
      ?? this.pages.find((page) => page.name === finding.PageName);
    // The value begins with the reference in most checks, the comment in the others.
    const named = [...this.parts.keys()].filter((reference) => [finding.ActualValue, finding.Comment].some(
      (text) => text === reference || (text.startsWith(reference) && !/[0-9A-Za-z_]/.test(text[reference.length]))));
    return {
      id, number: id + 1, check: finding.id, value: finding.ActualValue, comment: finding.Comment, page: page?.index ?? -1,
      pageName: finding.PageName, x, y, placed: page !== undefined && Number.isFinite(x) && Number.isFinite(y),
      references: named,
    };
  }

  // What is known of these parts together: [[the name of a text, or a pin, value]...].
  propertiesOf(references) {
    const parts = references.map((reference) => this.parts.get(reference)).filter(Boolean);
    const lines = parts.map((part) => part.line).filter(Boolean);
    const joined = (values) => [...new Set(values)].filter(Boolean).join("; ");
    const pins = this.nets.flatMap((net) => net.pins.filter((pin) => references.includes(pin.split(".")[0])).map((pin) => [pin, net.name]));
    return [
      ["value", joined(lines.map((line) => line.Value))], ["partNumber", joined(lines.map((line) => line.PartNumber))],
      ["partName", joined(lines.map((line) => line.PartName))], ["footprint", joined(lines.map((line) => line.PCBFootprint))],
      ["pins", joined(lines.map((line) => line.PinNumber))],
      ["page", joined(parts.flatMap((part) => part.pages.map((page) => this.pages[page].name)))],
      ...pins.sort(([one], [other]) => inNaturalOrder(one, other)),
    ];
  }

  counts() {
    const parts = [...this.parts.values()];
    return {
      pages: this.pages.length, parts: parts.length, absent: parts.filter((part) => !part.fitted).length,
      findings: this.findings.length,
    };
  }

  // Hits for a text, best first: {kind, label, detail, page, references, text}. `page` is -1 when it is on none.
  search(text, most = 60) {
    const wanted = text.trim().toLowerCase();
    if (!wanted) return [];
    const hits = [];
    const add = (rank, kind, label, detail, page, references, element = null) =>
      hits.push({ rank, kind, label, detail, page, references, element });
    const rank = (label) => {
      const at = label.toLowerCase().indexOf(wanted);
      return at < 0 ? -1 : at > 0 ? 2 : label.length === wanted.length ? 0 : 1;
    };
    for (const part of this.parts.values()) {
      const found = rank(part.reference);
      if (found >= 0) add(found, "part", part.reference, part.line?.Value ?? "", part.pages[0] ?? -1, [part.reference]);
    }
    for (const line of this.lines) {
      const [label, found] = ["Value", "PartNumber", "PartName", "PCBFootprint"]
        .map((member) => [line[member], rank(line[member] ?? "")])
        .find(([, found]) => found >= 0) ?? [];
      if (found === undefined) continue;
      const page = line.references.flatMap((reference) => this.parts.get(reference).pages)[0] ?? -1;
      add(found, "value", label, line.references.join(", "), page, line.references);
    }
    const labels = new Set();
    for (const net of this.nets) {
      const found = Math.min(...[net.name, nameOnSheet(net.name)].map(rank).filter((found) => found >= 0));
      if (found === Infinity) continue;
      const element = this.#label(net.name);
      labels.add(element?.element);
      const page = element?.page ?? this.parts.get(net.references[0])?.pages[0] ?? -1;
      add(found, "net", net.name, net.pins.join(", "), page, net.references, element?.element);
    }
    for (const page of this.pages) {
      for (const element of page.texts) {
        const found = rank(element.value);
        if (found >= 0 && !this.parts.has(element.value) && !labels.has(element)) add(found + 1, "text", element.value, page.name, page.index, [], element);
      }
    }
    hits.sort((one, other) => one.rank - other.rank || inNaturalOrder(one.label, other.label));
    return hits.slice(0, most);
  }

  // Where a net's name is written.
  #label(net) {
    const name = nameOnSheet(net);
    for (const page of this.pages) {
      const element = page.texts.find((text) => text.value === name);
      if (element) return { page: page.index, element };
    }
    return null;
  }
}
