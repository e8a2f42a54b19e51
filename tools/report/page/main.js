// Puts the page together: what the user does in one place shows in the others.

import { addDivider } from "./divider.js";
import { Model } from "./model.js";
import { print } from "./printing.js";
import { Search } from "./search.js";
import { bomColumns, findingColumns, List, propertyColumns } from "./tables.js";
import { chooseLanguage, currentLanguage, fillTexts, stateOf, text } from "./texts.js";
import { Viewer } from "./viewer.js";

const PAN_PIXELS = 80;
const ZOOM_FACTOR = 1.3;

const element = (id) => document.getElementById(id);
const model = new Model(JSON.parse(element("design").textContent));

let chosen = []; // references that stay lit
let lit = [];    // references that are lit
let shownPanel = "bom";
let pointing = ""; // where the pointer was last seen on something: its leaving one place may be told after its arrival in another

function point(place, references) {
  if (references) pointing = place;
  if (pointing === place) light(references ?? chosen, place === "page");
}

const viewer = new Viewer(element("frame"), model, {
  pointAt: (references) => point("page", references.length ? references : null),
  choose: (references) => choose(references),
  openFinding: (finding) => openFinding(finding),
});

const lists = {
  bom: new List(element("bom"), {
    columns: bomColumns, rows: () => model.lines,
    classOf: (line) => (line.fitted ? [] : ["absent"]),
    events: {
      pointAt: (line) => point("bom", line?.references),
      choose: (line) => jumpToParts(line.references),
    },
  }),
  findings: new List(element("findings"), {
    columns: findingColumns, rows: () => model.findings,
    events: { pointAt: (finding) => point("findings", finding?.references), choose: openFinding },
  }),
  properties: new List(element("properties"), {
    columns: propertyColumns,
    rows: () => (lit.length ? propertiesOfLit() : model.design.properties).map(([name, value], id) => ({ id, name, value })),
  }),
};

const search = new Search(element("search"), element("hits"), model, {
  goTo: (hit) => {
    if (hit.page >= 0) showPage(hit.page);
    chosen = hit.references;
    light(chosen, true);
    if (hit.element) viewer.lookAtElement(hit.element);
    else if (hit.references.length) viewer.lookAtParts(hit.references);
  },
  leave: () => lists[shownPanel].focus(),
  remark: ({ references }) => {
    const absent = references.length > 0 && references.every((reference) => !model.parts.get(reference).fitted);
    return absent ? stateOf(false) : "";
  },
});

// Lights parts everywhere but in the list where the pointer is.
function light(references, fromPage) {
  lit = references;
  viewer.light(references);
  if (shownPanel === "properties") showProperties();
  const lines = new Set(references.map((reference) => model.parts.get(reference)?.line?.id).filter((id) => id !== undefined));
  lists.bom.light([...lines], fromPage);
  for (const tab of element("pages").children) {
    const count = [...new Set(lit)].filter((reference) => model.parts.get(reference)?.pages.includes(Number(tab.dataset.page))).length;
    tab.querySelector(".count").textContent = count || "";
  }
}

function choose(references) {
  chosen = references;
  viewer.markFinding(null);
  light(chosen, true);
}

// Shows the parts where most of them are, the present page when any is there; once more goes to the next page.
function jumpToParts(references) {
  const pages = [...new Set(references.flatMap((reference) => model.parts.get(reference)?.pages ?? []))].sort((a, b) => a - b);
  if (!pages.length) return choose(references);
  const again = references.join() === chosen.join();
  const at = pages.indexOf(viewer.current.page.index);
  showPage(at < 0 ? pages[0] : pages[again ? (at + 1) % pages.length : at]);
  choose(references);
  viewer.lookAtParts(references);
}

function openFinding(finding) {
  showPanel("findings");
  chosen = finding.references;
  if (finding.placed) {
    showPage(finding.page);
    viewer.lookAtFinding(finding);
  }
  light(chosen, false);
  viewer.markFinding(finding);
  lists.findings.light([finding.id], true);
}

function showPage(index) {
  viewer.show(index);
  for (const tab of element("pages").children) tab.setAttribute("aria-selected", Number(tab.dataset.page) === index);
}

function showPanel(name) {
  shownPanel = name;
  for (const tab of element("panels").children) tab.setAttribute("aria-selected", tab.dataset.panel === name);
  for (const [panel, list] of Object.entries(lists)) {
    element(panel).parentElement.hidden = panel !== name;
    if (panel === name) list.redraw();
  }
  if (name === "properties") showProperties();
}

function propertiesOfLit() {
  const states = new Set(lit.map((reference) => stateOf(model.parts.get(reference).fitted)));
  return [["state", [...states].join("; ")], ...model.propertiesOf(lit)].map(([name, value]) => [text(name), value]);
}

// Those of the lit parts; without any, what the package report says of the whole design.
function showProperties() {
  const parts = [...new Set(lit)];
  element("whose").textContent = parts.length ? text("propertiesOf", { parts: parts.join(", ") }) : text("allProperties");
  lists.properties.refresh();
}

function hideAbsent(hide) {
  element("hide").checked = hide;
  document.body.classList.toggle("hide-absent", hide);
  search.show();
  lists.bom.refresh();
}

function fillPages() {
  element("pages").replaceChildren(...model.pages.map((page) => {
    const tab = document.createElement("button");
    tab.type = "button";
    tab.role = "tab";
    tab.dataset.page = page.index;
    const pins = model.findings.filter((finding) => finding.page === page.index).length;
    tab.append(page.name, mark("findings-count", pins || ""), mark("count", ""));
    tab.addEventListener("click", () => showPage(page.index));
    return tab;
  }));
}

function mark(name, value) {
  const node = document.createElement("span");
  node.className = name;
  node.textContent = value;
  return node;
}

async function speak(language) {
  chooseLanguage(language);
  fillTexts();
  element("summary").textContent = text("summary", model.counts());
  element("keys").replaceChildren(...text("keys").map(([keys, what]) => {
    const row = document.createElement("tr");
    for (const words of [keys, what]) row.insertCell().textContent = words;
    return row;
  }));
  viewer.labelPins();
  search.show();
  showProperties();
  await Promise.all(Object.values(lists).map((list) => list.refresh()));
}

const keys = {
  "/": () => element("search").focus(),
  "+": () => viewer.zoomBy(ZOOM_FACTOR), "=": () => viewer.zoomBy(ZOOM_FACTOR), "-": () => viewer.zoomBy(1 / ZOOM_FACTOR),
  0: () => viewer.fit(),
  ArrowLeft: () => viewer.panBy(PAN_PIXELS, 0), ArrowRight: () => viewer.panBy(-PAN_PIXELS, 0),
  ArrowUp: () => viewer.panBy(0, PAN_PIXELS), ArrowDown: () => viewer.panBy(0, -PAN_PIXELS),
  PageUp: () => turnPage(-1), PageDown: () => turnPage(1),
  n: () => hideAbsent(!element("hide").checked), l: () => speak(currentLanguage() === "zh" ? "en" : "zh"),
  b: () => enterPanel("bom"), f: () => enterPanel("findings"), p: () => enterPanel("properties"),
  Escape: () => choose([]),
};

function enterPanel(name) {
  showPanel(name);
  lists[name].focus();
}

function turnPage(by) {
  const count = model.pages.length;
  showPage((viewer.current.page.index + by + count) % count);
}

document.addEventListener("keydown", (event) => {
  if (event.target.matches("input[type=search], dialog *") || event.ctrlKey || event.metaKey || event.altKey) return;
  const action = keys[event.key.length === 1 ? event.key.toLowerCase() : event.key];
  if (!action) return;
  event.preventDefault();
  action();
});

const clicks = {
  fit: () => viewer.fit(), nearer: () => viewer.zoomBy(ZOOM_FACTOR), farther: () => viewer.zoomBy(1 / ZOOM_FACTOR),
  language: keys.l, print: () => window.print(), help: () => element("help-box").showModal(),
  "help-close": () => element("help-box").close(),
};
for (const [id, action] of Object.entries(clicks)) element(id).addEventListener("click", action);
element("hide").addEventListener("change", (event) => hideAbsent(event.target.checked));
for (const tab of element("panels").children) tab.addEventListener("click", () => showPanel(tab.dataset.panel));
window.addEventListener("beforeprint", () => print(element("printed"), model));
window.addEventListener("afterprint", () => element("printed").replaceChildren());

document.title = model.design.path.split(/[\\/]/).at(-1);
element("title").textContent = document.title;
element("title").title = model.design.path;
addDivider(element("divider"), document.querySelector("main"));
fillPages();
showPage(0);
showPanel("bom");
speak(navigator.language.startsWith("zh") ? "zh" : "en").then(() => {
  document.body.dataset.ready = "yes";
});
