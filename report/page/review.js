// What the user chose and points at, and how that shows on the page, in the tree and in the lists.

export class Review {
  // `changed()` is called after each step that one goes back from.
  constructor({ model, panels, changed }) {
    this.model = model;
    this.panels = panels;
    this.changed = changed;
    this.chosen = { references: [], nets: [] };
    this.lit = this.chosen;
    this.finding = "";
    this.busy = false;
    this.pointing = ""; // where the pointer was last seen on something: its leaving one place may be told after its arrival in another
  }

  attach({ viewer, tree }) {
    Object.assign(this, { viewer, tree });
  }

  get page() {
    return this.viewer.current.page.index;
  }

  // `thing` is {references, nets} or null.
  point(place, thing) {
    if (thing) this.pointing = place;
    if (this.pointing === place) this.light(thing ?? this.chosen, place === "page");
  }

  light(thing, fromPage) {
    this.lit = thing;
    this.viewer.light(thing);
    this.panels.light(thing, fromPage);
    const counts = new Map();
    const count = (page) => counts.set(page, (counts.get(page) ?? 0) + 1);
    for (const reference of new Set(thing.references)) this.model.parts.get(reference)?.pages.forEach(count);
    for (const net of thing.nets) this.model.netByName.get(net)?.pages.forEach(count);
    this.tree.light(counts);
  }

  choose(thing) {
    this.chosen = { references: thing.references ?? [], nets: thing.nets ?? [] };
    this.finding = thing.finding ?? "";
    this.viewer.markPin(this.model.findings[this.finding]?.pin ?? null);
    this.light(this.chosen, true);
    this.#say();
  }

  showPage(index) {
    if (this.viewer.current && index === this.page) return;
    this.viewer.show(index);
    this.tree.mark(index);
    this.#say();
  }

  // Shows the parts, on the present page when any of them is there, else on their first; once more goes to the next page.
  jumpToParts(references) {
    this.#asOneStep(() => {
      this.#turnTo(this.#pagesOf(references), references.join() === this.chosen.references.join());
      this.choose({ references });
      this.viewer.lookAtParts(references);
    });
  }

  // The same for a net, or for a pin or a page of it. One that is drawn nowhere is shown by its parts.
  jumpToNet(name, { pin, page } = {}) {
    const net = this.model.netByName.get(name);
    if (!net) return;
    const place = pin && this.model.placeOf(pin, name);
    const only = place?.page ?? page;
    this.#asOneStep(() => {
      const pages = only !== undefined ? [only] : net.pages.length ? net.pages : this.#pagesOf(net.references);
      this.#turnTo(pages, only === undefined && this.chosen.nets.join() === name);
      this.choose({ nets: [name], references: net.pages.length ? [] : net.references });
      if (place) this.viewer.lookAtPlace(place);
      else if (net.pages.length) this.viewer.lookAtNet(name);
      else this.viewer.lookAtParts(net.references);
    });
  }

  openFinding(finding) {
    this.#asOneStep(() => {
      this.panels.showFindings([finding.id]);
      if (finding.placed) this.#turnTo([finding.page]);
      this.choose({ references: finding.references, finding: String(finding.id) });
      if (finding.placed) this.viewer.lookAtPlace(finding);
      this.panels.lightFindings([finding.id]);
    });
  }

  // All findings that a pin tells.
  openPin(pin) {
    const ids = pin.findings.map((finding) => finding.id);
    this.#asOneStep(() => {
      this.panels.showFindings(ids);
      this.choose({
        references: [...new Set(pin.findings.flatMap((finding) => finding.references))],
        finding: String(ids[0]),
      });
      this.panels.lightFindings(ids);
    });
  }

  // Goes where a sheet or a connector leads.
  follow({ sheet, destinations, net }) {
    if (sheet) return this.showPage(sheet.pages[0]);
    const [next] = destinations;
    this.#asOneStep(() => {
      this.#turnTo([next.page]);
      if (net) this.choose({ nets: [net] });
      this.viewer.lookAtConnector(next.connector);
    });
  }

  goToHit(hit) {
    if (hit.finding) return this.openFinding(hit.finding);
    if (hit.nets.length) return this.jumpToNet(hit.nets[0], { pin: hit.pin });
    this.#asOneStep(() => {
      this.#turnTo(hit.references.length ? this.#pagesOf(hit.references) : [hit.page]);
      this.choose({ references: hit.references });
      if (hit.element) this.viewer.lookAtElement(hit.element);
      else if (hit.references.length) this.viewer.lookAtParts(hit.references);
    });
  }

  #pagesOf(references) {
    return [...new Set(references.flatMap((reference) => this.model.parts.get(reference)?.pages ?? []))].sort(
      (one, other) => one - other,
    );
  }

  // To the first of the pages, the present one when it is among them, or the one after that when asked for `again`.
  #turnTo(pages, again = false) {
    const at = pages.indexOf(this.page);
    const page = at < 0 ? pages[0] : pages[again ? (at + 1) % pages.length : at];
    if (page >= 0) this.showPage(page);
  }

  // One goes back from what was done together at once.
  #asOneStep(action) {
    this.busy = true;
    try {
      action();
    } finally {
      this.busy = false;
    }
    this.#say();
  }

  #say() {
    if (!this.busy) this.changed();
  }
}
