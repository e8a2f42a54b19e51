// What is shown, as the part of the address after "#": it can be sent to somebody, and back and forward go through it.

const NUMBERS = /^-?\d+(\.\d+)?(,-?\d+(\.\d+)?){2}$/;

// `state` is {page, panel, parts, nets, finding, filter, fitted, check, on, language, view}; what is empty is left out.
export function addressOf(state, model) {
  const said = new URLSearchParams();
  const say = (name, value) => value !== "" && value !== undefined && value !== null && said.append(name, value);
  say("page", pageName(model.pages[state.page], model));
  if (state.panel !== "bom") say("panel", state.panel);
  for (const part of state.parts) say("part", part);
  for (const net of state.nets) say("net", net);
  for (const name of ["finding", "filter", "fitted", "check", "on", "language"]) say(name, state[name]);
  if (state.view) say("at", [state.view.x.toFixed(1), state.view.y.toFixed(1), state.view.scale.toFixed(3)].join());
  return `#${said}`;
}

// The state that an address names; what does not fit the design is left out.
export function stateIn(hash, model) {
  const said = new URLSearchParams(hash.replace(/^#/, ""));
  const wanted = said.get("page");
  const at = said.get("at") ?? "";
  const [x, y, scale] = at.split(",").map(Number);
  const text = (name) => said.get(name) ?? "";
  return {
    page: Math.max(
      0,
      model.pages.findIndex((page) => pageName(page, model) === wanted),
    ),
    panel: text("panel") || "bom",
    parts: said.getAll("part").filter((part) => model.parts.has(part)),
    nets: said.getAll("net").filter((net) => model.netByName.has(net)),
    finding: model.findings[Number(said.get("finding") || NaN)] ? text("finding") : "",
    filter: text("filter"),
    fitted: text("fitted"),
    check: text("check"),
    on: text("on"),
    language: ["en", "zh"].includes(text("language")) ? text("language") : "",
    view: NUMBERS.test(at) && scale > 0 ? { x, y, scale } : null,
  };
}

// Its name, or with its schematic where another page has that name too.
function pageName(page, model) {
  names.get(model) ?? names.set(model, countNames(model));
  return names.get(model).get(page.name) > 1 ? `${page.schematic}: ${page.name}` : page.name;
}

function countNames({ pages }) {
  const counts = new Map();
  for (const { name } of pages) counts.set(name, (counts.get(name) ?? 0) + 1);
  return counts;
}

const names = new WeakMap();
