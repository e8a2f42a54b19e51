// The lists beside the pages, of which one is shown: bill, nets, findings, details, and changes when there are any.

import { BillPanel } from "./bill_panel.js";
import { changeColumns, detailColumns, findingColumns, netColumns } from "./columns.js";
import { List } from "./list.js";
import { comment, stateOf, text } from "./texts.js";

const element = (id) => document.getElementById(id);

export class Panels {
  constructor(model, marks, settings, changed) {
    this.model = model;
    this.marks = marks;
    this.settings = settings;
    this.changed = changed;
    this.name = "bom";
    this.changes = [];
    this.filters = { nets: "", findings: "", check: "", on: "" };
  }

  // `review` is what the user does here.
  attach(review) {
    this.review = review;
    const { model } = this;
    const point = (place) => (thing) => review.point(place, thing);
    this.bill = new BillPanel(model, this.marks, this.settings, {
      pointAt: point("bom"),
      choose: (references) => review.jumpToParts(references),
      changed: () => this.changed(),
    });
    const pages = (net) => net.pages.map((page) => model.pages[page].name).join(", ");
    this.lists = {
      bom: this.bill.list,
      nets: new List(element("nets"), {
        label: "nets",
        columns: netColumns,
        rows: () =>
          model.nets.map((net) => ({
            id: net.id,
            name: net.name,
            count: net.pins.length,
            pages: pages(net),
            labels: net.labels.join(", "),
            pins: net.pins.join(", "),
          })),
        events: {
          pointAt: (net) => point("nets")(net && { references: [], nets: [net.name] }),
          choose: (net) => review.jumpToNet(net.name),
        },
      }),
      findings: new List(element("findings"), {
        label: "findings",
        columns: findingColumns,
        rows: () => model.findings,
        events: {
          pointAt: (finding) => point("findings")(finding && { references: finding.references, nets: [] }),
          choose: (finding) => review.openFinding(finding),
        },
      }),
      details: new List(element("details"), {
        label: "details",
        columns: detailColumns,
        rows: () => this.#details(),
        events: { choose: ({ goal }) => goal && review.jumpToNet(goal.net, goal) },
      }),
      changes: new List(element("changes"), {
        label: "changes",
        columns: changeColumns,
        rows: () => this.changes,
        events: {
          pointAt: (change) => point("changes")(change && { references: [change.reference], nets: [] }),
          choose: (change) => review.jumpToParts([change.reference]),
        },
      }),
    };
    this.#listen();
  }

  #listen() {
    for (const tab of element("panels").children) tab.addEventListener("click", () => this.show(tab.dataset.panel));
    element("panels").addEventListener("keydown", (event) => {
      const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
      if (!step) return;
      const tabs = [...element("panels").children].filter((tab) => !tab.hidden);
      const next = tabs[(tabs.findIndex((tab) => tab.dataset.panel === this.name) + step + tabs.length) % tabs.length];
      this.show(next.dataset.panel);
      next.focus();
      event.preventDefault();
      event.stopPropagation();
    });
    const set = (id, event, name) =>
      element(id).addEventListener(event, ({ target }) => {
        this.filters[name] = target.value;
        this.#refilter();
        this.changed();
      });
    set("nets-filter", "input", "nets");
    set("findings-filter", "input", "findings");
    set("findings-check", "change", "check");
    set("findings-page", "change", "on");
  }

  show(name) {
    this.name = Object.hasOwn(this.lists, name) && !(name === "changes" && !this.changes.length) ? name : "bom";
    for (const tab of element("panels").children) {
      tab.setAttribute("aria-selected", tab.dataset.panel === this.name);
      tab.tabIndex = tab.dataset.panel === this.name ? 0 : -1;
    }
    for (const panel of document.querySelectorAll(".panel")) panel.hidden = panel.dataset.panel !== this.name;
    if (this.name === "details") this.#showDetails();
    const shown = this.lists[this.name].show();
    this.changed();
    return shown;
  }

  focus(name) {
    this.show(name);
    return this.lists[name].focus();
  }

  // In the language that is shown, and with what has become known.
  async refresh() {
    const counts = this.model.counts();
    for (const [name, count] of [
      ["bom", counts.listed],
      ["nets", counts.nets],
      ["findings", counts.findings],
      ["changes", this.changes.length],
    ]) {
      element("panels").querySelector(`[data-panel=${name}] .total`).textContent = count;
    }
    element("panels").querySelector("[data-panel=changes]").hidden = !this.changes.length;
    this.#fillFindingFilters();
    this.#showUnjoined();
    this.#showDetails();
    for (const list of Object.values(this.lists)) list.stale = true;
    await Promise.all([
      this.bill.refresh(),
      ...["nets", "findings", "details", "changes"].map((name) => this.lists[name].refresh()),
    ]);
    this.#refilter();
  }

  light(thing, scroll) {
    this.bill.light(thing.references, scroll);
    this.lists.nets.light(
      thing.nets.map((net) => this.model.netByName.get(net)?.id).filter((id) => id !== undefined),
      scroll,
    );
    if (this.name === "details") this.#showDetailsSoon();
  }

  // Opens the list at these; a filter that would hide one of them is taken off.
  showFindings(ids) {
    if (!ids.every((id) => this.#isWanted(this.model.findings[id])))
      this.setState({ filter: "", check: "", on: "" }, "findings");
    this.show("findings");
  }

  lightFindings(ids) {
    this.lists.findings.light(ids, true);
  }

  // What the address holds of the list that is shown.
  get state() {
    const { filter, fitted } = this.bill.filters;
    const { nets, findings, check, on } = this.filters;
    return {
      bom: { filter, fitted },
      nets: { filter: nets },
      findings: { filter: findings, check, on },
      details: {},
      changes: {},
    }[this.name];
  }

  setState({ filter, fitted, check, on }, name) {
    if (name === "bom") this.bill.setFilters({ filter, fitted });
    if (name === "nets" || name === "findings") this.filters[name] = filter;
    if (name === "findings") Object.assign(this.filters, { check, on });
    for (const [id, value] of [
      ["nets-filter", this.filters.nets],
      ["findings-filter", this.filters.findings],
      ["findings-check", this.filters.check],
      ["findings-page", this.filters.on],
    ])
      element(id).value = value;
    this.#refilter();
  }

  #refilter() {
    const { nets, findings, check, on } = this.filters;
    this.lists.nets.filter(nets.trim() ? (net) => has([net.name, net.pins, net.labels, net.pages], nets) : null);
    this.lists.findings.filter(check || on || findings.trim() ? (finding) => this.#isWanted(finding) : null);
  }

  #isWanted(finding) {
    const { findings, check, on } = this.filters;
    return (
      (!check || finding.check === check) &&
      (!on || String(finding.page) === on) &&
      (!findings.trim() || has([finding.value, comment(finding.comment), finding.pageName], findings))
    );
  }

  // Each choice with how many findings it has; all of them together are all findings.
  #fillFindingFilters() {
    const fill = (id, all, choices) => {
      const option = (value, words, count) =>
        Object.assign(document.createElement("option"), { value, textContent: `${words} (${count})` });
      element(id).replaceChildren(option("", all, this.model.findings.length), ...choices.map((choice) => option(...choice)));
    };
    const count = (wanted) => this.model.findings.filter(wanted).length;
    const checks = [...new Set(this.model.findings.map((one) => one.check))].sort();
    fill(
      "findings-check",
      text("allChecks"),
      checks.map((check) => [check, text(`check${check}`), count((one) => one.check === check)]),
    );
    const pages = [...new Set(this.model.findings.map((one) => one.page))].sort((one, other) => one - other);
    fill(
      "findings-page",
      text("allPages"),
      pages.map((page) => [page, this.model.pages[page]?.name ?? text("notPlaced"), count((one) => one.page === page)]),
    );
    element("findings-check").value = this.filters.check;
    element("findings-page").value = this.filters.on;
  }

  #showUnjoined() {
    const { joined, unjoined, hasList } = this.model;
    const where = [...new Set(unjoined.map((group) => group.page.name))];
    element("nets-note").textContent = !joined
      ? text("joining")
      : [
          hasList ? "" : text("withoutList"),
          unjoined.length
            ? text("unjoined", { count: unjoined.length, pages: where.slice(0, 6).join(", ") + (where.length > 6 ? "…" : "") })
            : "",
        ]
          .filter(Boolean)
          .join(" ");
  }

  #details() {
    const { references, nets } = this.review.lit;
    const found = nets.length
      ? nets.flatMap((name) => this.model.propertiesOfNet(this.model.netByName.get(name)))
      : references.length
        ? this.#ofParts(references)
        : this.model.design.properties;
    const isText = references.length || nets.length;
    return found.map(([name, value, goal], id) => ({
      id,
      name: isText ? text(name) : name,
      value: [value]
        .flat()
        .map((one) => (one.text ? text(one.text) : one))
        .join(" · "),
      goal,
    }));
  }

  #ofParts(references) {
    const known = references.filter((reference) => this.model.parts.has(reference));
    const states = new Set(known.map((reference) => stateOf(this.model.parts.get(reference).fitted)));
    return [["state", [...states].join("; ")], ...this.model.propertiesOf(known)];
  }

  // After the page has shown what they are of: those of a large net take their time.
  #showDetailsSoon() {
    cancelAnimationFrame(this.soon);
    this.soon = requestAnimationFrame(() => setTimeout(() => this.#showDetails()));
  }

  // Those of the lit net or parts; without any, what the package report says of the whole design.
  #showDetails() {
    const { references, nets } = this.review.lit;
    const whose = nets.length ? nets : [...new Set(references)];
    element("whose").textContent = whose.length
      ? text(nets.length ? "detailsOfNet" : "detailsOf", { parts: whose.slice(0, 30).join(", ") })
      : text("allProperties");
    this.lists.details.refresh();
  }
}

function has(texts, words) {
  return texts.some((one) => String(one).toLowerCase().includes(words.trim().toLowerCase()));
}
