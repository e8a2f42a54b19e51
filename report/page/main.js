// Puts the page together: what the user does in one place shows in the others.

import { addressOf, stateIn } from "./address.js";
import { changesBetween } from "./difference.js";
import { addDivider } from "./divider.js";
import { modelIn, modelOf } from "./embedded.js";
import { addIcons } from "./icons.js";
import { Marks } from "./marks.js";
import { Panels } from "./panels.js";
import { print } from "./printing.js";
import { Review } from "./review.js";
import { chooseFile, say } from "./saving.js";
import { Search } from "./search.js";
import { Index } from "./searching.js";
import { readSettings } from "./settings.js";
import { chooseLanguage, comment, currentLanguage, fillTexts, stateOf, text } from "./texts.js";
import { Tree } from "./tree.js";
import { Viewer } from "./viewer.js";

const PAN_PIXELS = 80;
const ZOOM_FACTOR = 1.3;
const SLICE = 12; // milliseconds of work between two chances for the user

const element = (id) => document.getElementById(id);
const model = modelIn(document);
const { settings, storage } = readSettings();
const marks = new Marks(model, storage);

let restoring = true; // while the page follows the address, it does not write it

const panels = new Panels(model, marks, settings, () => review.busy || changed(false));
const review = new Review({ model, panels, changed: () => changed(true) });
panels.attach(review);
const viewer = new Viewer(element("frame"), model, {
  pointAt: (thing) => {
    tell(thing);
    review.point("page", thing);
  },
  choose: (thing) => {
    tell(thing);
    review.choose(thing);
  },
  openPin: (pin) => review.openPin(pin),
  follow: (link) => review.follow(link),
  moved: () => changed(false),
});
const tree = new Tree(element("pages"), model, (page) => {
  review.showPage(page);
  if (matchMedia("(max-width: 900px)").matches) showTree(false);
});
review.attach({ viewer, tree });

const search = new Search(element("search"), element("hits"), new Index(model, (finding) => comment(finding.comment)), {
  goTo: (hit) => review.goToHit(hit),
  leave: () => panels.focus(panels.name),
  remark: ({ references }) => {
    const absent = references.length > 0 && references.every((reference) => !model.parts.get(reference).fitted);
    return absent ? stateOf(false) : "";
  },
});

// What is under the pointer, in words.
function tell(thing) {
  const { pin, nets = [], references = [], alone } = thing ?? {};
  const part = model.parts.get(references[0]);
  const words = nets.map((name) =>
    text("netIs", {
      name,
      pins: model.netByName.get(name)?.pins.length ?? 0,
      pages: model.netByName.get(name)?.pages.length ?? 0,
    }),
  );
  if (pin) words.unshift(pin.number ? `${pin.reference}.${pin.number}` : pin.reference);
  if (pin && !nets.length) words.push(text("inNoNet"));
  else if (part) words.push([part.reference, part.line?.Value, stateOf(part.fitted)].filter(Boolean).join(" · "));
  if (thing?.link) words.unshift(thing.link.node.getAttribute("aria-label"));
  if (alone && !nets.length) words.push(text("wireAlone"));
  element("pointed").textContent = words.slice(0, 3).join(" · ");
}

// --- the address ---

function changed(step) {
  showWhere();
  if (restoring) return;
  const hash = addressOf(
    {
      page: review.page,
      panel: panels.name,
      parts: review.chosen.references,
      nets: review.chosen.nets,
      finding: review.finding,
      language: settings.language,
      view: viewer.view,
      ...panels.state,
    },
    model,
  );
  if (hash === location.hash) return;
  if (step) history.pushState(null, "", hash);
  else history.replaceState(null, "", hash);
}

async function restore() {
  restoring = true;
  const state = stateIn(location.hash, model);
  if (state.language && state.language !== currentLanguage()) await speak(state.language);
  review.showPage(state.page);
  panels.setState(state, state.panel);
  const shown = panels.show(state.panel);
  review.choose({ references: state.parts, nets: state.nets, finding: state.finding });
  if (state.finding) panels.lightFindings([Number(state.finding)]);
  viewer.view = state.view;
  restoring = !model.joined; // until then a net in the address may not be known yet
  await shown;
}

// --- what is shown ---

function showWhere() {
  const page = model.pages[review.page];
  const trail = [];
  for (let at = page; at; at = model.pages[at.parent]) trail.unshift(at);
  element("where").replaceChildren(
    ...trail.flatMap((one, depth) => {
      const words = one.parent < 0 ? one.name : one.name.split("/").at(-1);
      if (one === page) return [Object.assign(document.createElement("strong"), { textContent: words })];
      const link = Object.assign(document.createElement("button"), { type: "button", textContent: words });
      link.addEventListener("click", () => review.showPage(one.index));
      return [link, "›"];
    }),
  );
}

function showTree(show = document.body.classList.contains("no-tree")) {
  document.body.classList.toggle("no-tree", !show);
  element("tree-toggle").setAttribute("aria-expanded", show);
}

function hideAbsent(hide) {
  element("hide").checked = hide;
  document.body.classList.toggle("hide-absent", hide);
  search.show();
  panels.refresh();
}

async function speak(language) {
  chooseLanguage(language);
  fillTexts();
  element("summary").textContent = text("summary", model.counts());
  element("keys").replaceChildren(
    ...text("keys").map(([keys, what]) => {
      const row = document.createElement("tr");
      for (const words of [keys, what]) row.insertCell().textContent = words;
      return row;
    }),
  );
  if (viewer.current) viewer.label();
  search.show();
  await panels.refresh();
}

// The language that was chosen is kept; without a choice it is the reader's own.
function chooseToSpeak(language) {
  settings.language = language;
  settings.keep();
  changed(false);
  return speak(language);
}

async function compare() {
  const file = await chooseFile(".html,.json");
  if (!file) return;
  try {
    panels.changes = changesBetween(modelOf(await file.text()), model);
  } catch {
    return say(text("noReport", { name: file.name }));
  }
  await panels.refresh();
  say(text("compared", { name: file.name, count: panels.changes.length }));
  await panels.show(panels.changes.length ? "changes" : panels.name);
}

function printOut(what) {
  element("print-box").close();
  print(element("printed"), model, what);
  window.print();
}

// --- keys and buttons ---

const keys = {
  "/": () => element("search").focus(),
  "+": () => viewer.zoomBy(ZOOM_FACTOR),
  "=": () => viewer.zoomBy(ZOOM_FACTOR),
  "-": () => viewer.zoomBy(1 / ZOOM_FACTOR),
  0: () => viewer.fit(),
  ArrowLeft: () => viewer.panBy(PAN_PIXELS, 0),
  ArrowRight: () => viewer.panBy(-PAN_PIXELS, 0),
  ArrowUp: () => viewer.panBy(0, PAN_PIXELS),
  ArrowDown: () => viewer.panBy(0, -PAN_PIXELS),
  PageUp: () => turnPage(-1),
  PageDown: () => turnPage(1),
  h: () => hideAbsent(!element("hide").checked),
  l: () => chooseToSpeak(currentLanguage() === "zh" ? "en" : "zh"),
  b: () => panels.focus("bom"),
  n: () => panels.focus("nets"),
  f: () => panels.focus("findings"),
  d: () => panels.focus("details"),
  t: () => {
    showTree(true);
    tree.items.get(review.page).focus();
  },
  Escape: () => review.choose({}),
};

function turnPage(by) {
  const count = model.pages.length;
  review.showPage((review.page + by + count) % count);
}

document.addEventListener("keydown", (event) => {
  if (event.target.matches("input:not([type=checkbox]), select, dialog *") || event.ctrlKey || event.metaKey || event.altKey)
    return;
  const action = keys[event.key.length === 1 ? event.key.toLowerCase() : event.key];
  if (!action) return;
  event.preventDefault();
  action();
});
document.addEventListener("copy", (event) => {
  if (!element("bom").contains(document.activeElement) || String(document.getSelection())) return;
  event.preventDefault();
  panels.bill.copy();
});

const clicks = {
  language: keys.l,
  nearer: keys["+"],
  farther: keys["-"],
  fit: keys[0],
  compare,
  "tree-toggle": () => showTree(),
  back: () => history.back(),
  forward: () => history.forward(),
  print: () => element("print-box").showModal(),
  "print-close": () => element("print-box").close(),
  "print-page": () => printOut({ pages: [review.page] }),
  "print-pages": () => printOut({ pages: model.pages.map((page) => page.index) }),
  "print-bill": () => printOut({ bill: panels.bill.printed }),
  "print-findings": () => printOut({ findings: true }),
  help: () => element("help-box").showModal(),
  "help-close": () => element("help-box").close(),
};
for (const [id, action] of Object.entries(clicks)) element(id).addEventListener("click", action);
element("hide").addEventListener("change", (event) => hideAbsent(event.target.checked));
window.addEventListener("beforeprint", () => {
  if (!element("printed").children.length)
    print(element("printed"), model, { pages: model.pages.map((page) => page.index), bill: panels.bill.printed, findings: true });
});
window.addEventListener("afterprint", () => element("printed").replaceChildren());
window.addEventListener("popstate", restore);

// --- the beginning ---

let until = 0;
async function pause() {
  if (performance.now() < until) return;
  await new Promise((resolve) => setTimeout(resolve));
  until = performance.now() + SLICE;
}

async function begin() {
  document.title = model.name;
  element("title").textContent = model.name;
  element("title").title = model.design.path;
  addIcons();
  addDivider(element("divider"), document.querySelector("main"));
  showTree(!matchMedia("(max-width: 900px)").matches);
  if (!settings.language) settings.language = stateIn(location.hash, model).language;
  await speak(settings.language || (navigator.language.startsWith("zh") ? "zh" : "en"));
  await restore();
  document.body.dataset.ready = "yes";
  performance.mark("ready");
  await model.joinPages(pause);
  tree.fill();
  viewer.addNets();
  await panels.refresh();
  await restore();
  document.body.dataset.joined = "yes";
  performance.mark("joined");
}

begin();
