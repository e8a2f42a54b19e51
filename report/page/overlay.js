// What lies over a drawing and is as large as it: what catches the pointer and lights up, and the pins of findings.
//
// From below: sheets, parts, the wires of nets, what names nets and leads to other pages, pins of findings.

import { boxOf, svgElement } from "./drawing.js";
import { destinationsOf } from "./hierarchy.js";
import { isNameOf } from "./nets.js";

const PIN_RADIUS = 9; // units of a pin's own, see scalePins
const NEAR = 80; // units of the page within which a part's texts are looked for
const SAID_ON_PAGES = ["Value", "PCBFootprint", "PartNumber", "PartName"];

// The drawing gets `hits`, {reference, fitted, elements, box, node} of each placed part. It must be rendered.
// On paper pins bear the numbers of their findings, on the screen how many there are.
export function addOverlay(drawing, model, onPaper = false) {
  const overlay = svgElement("g", { class: "overlay" });
  drawing.layers = Object.fromEntries(
    ["sheets", "parts", "nets", "names", "pins"].map((name) => {
      const layer = svgElement("g", { class: name });
      overlay.append(layer);
      return [name, layer];
    }),
  );
  drawing.hits = drawing.parts.map((part) => ({
    ...part,
    fitted: model.parts.get(part.reference).fitted,
    elements: [part.element],
    box: boxOf(part.element),
  }));
  const bySize = [...drawing.hits].sort((one, other) => area(other.box) - area(one.box));
  for (const hit of bySize) {
    hit.node = rectangle("hit", hit.box, 3, { "data-reference": hit.reference });
    drawing.layers.parts.append(hit.node);
  }
  gatherTexts(drawing, model);
  for (const hit of drawing.hits.filter(({ fitted }) => !fitted)) {
    for (const element of [hit.node, ...hit.elements]) element.classList.add("absent");
  }
  for (const pin of model.pins.filter((pin) => pin.page === drawing.page.index)) drawing.layers.pins.append(pinOf(pin, onPaper));
  drawing.svg.append(overlay);
}

// Once the wiring is known. The drawing gets `wires`, {net, node} of each group of wires, `names` of what is called after
// a net, and `links` of what leads to other pages, {node, connector or sheet}.
export function addNets(drawing, model) {
  if (drawing.wires || !model.joined) return;
  const page = model.pages[drawing.page.index];
  const { sheets, nets, names } = drawing.layers;
  Object.assign(drawing, { wires: [], names: [], links: [] });
  const name = (net, box) => {
    const node = rectangle("name", box, 1, { "data-net": net });
    drawing.names.push({ net, node });
    names.append(node);
  };
  for (const [number, group] of page.wiring.groups.entries()) {
    const node = svgElement("path", { class: "wire", d: pathOf(group), "data-group": number });
    if (group.net) node.dataset.net = group.net;
    drawing.wires.push({ net: group.net, node });
    nets.append(node);
    if (!group.net) continue;
    for (const text of group.labels) if (isNameOf(text.value, group.net)) name(group.net, text.box);
    for (const connector of group.connectors.filter((one) => one.kind === "power")) name(group.net, around(connector));
  }
  for (const [number, bus] of page.wiring.buses.entries()) {
    const node = svgElement("path", { class: "wire bus", d: pathOf({ lines: bus.lines, pins: [] }), "data-bus": number });
    drawing.wires.push({ bus, node });
    nets.prepend(node);
  }
  const link = (layer, box, target) => {
    const node = rectangle("link", box, 1, { tabindex: 0, role: "link", "data-link": drawing.links.length });
    drawing.links.push({ ...target, node });
    layer.append(node);
  };
  for (const sheet of page.drawn.sheets) link(sheets, sheet, { sheet });
  for (const connector of page.drawn.connectors) {
    if (connector.kind === "power") continue;
    const destinations = destinationsOf(connector, page, model.pages);
    const net = page.wiring.groups.find((group) => group.connectors.includes(connector))?.net ?? "";
    if (destinations.length) link(names, around(connector), { connector, destinations, net });
    else if (net) name(net, around(connector));
  }
}

// A connector with its text.
function around({ box, text }) {
  if (!text) return box;
  const [left, top] = [Math.min(box.x, text.box.x), Math.min(box.y, text.box.y)];
  return {
    x: left,
    y: top,
    width: Math.max(box.x + box.width, text.box.x + text.box.width) - left,
    height: Math.max(box.y + box.height, text.box.y + text.box.height) - top,
  };
}

function pathOf({ lines, pins }) {
  return (
    [
      ...lines.map(({ x1, y1, x2, y2 }) => `M${x1} ${y1}L${x2} ${y2}`),
      ...pins.map(({ x, y, bodyX, bodyY }) => `M${x} ${y}L${bodyX} ${bodyY}`),
    ].join("") || "M0 0"
  );
}

function rectangle(name, { x, y, width, height }, room, attributes) {
  return svgElement("rect", {
    class: name,
    x: x - room,
    y: y - room,
    width: width + 2 * room,
    height: height + 2 * room,
    rx: room,
    ...attributes,
  });
}

// Pins keep their size while the page changes its own.
export function scalePins(drawing, scale) {
  for (const pin of drawing.svg.querySelectorAll(".pin")) {
    pin.setAttribute("transform", `translate(${pin.dataset.x} ${pin.dataset.y}) scale(${scale})`);
  }
}

// The texts of what is not fitted, which are dimmed with it: those in it, and those near it that say what it is or were
// drawn right after it.
function gatherTexts(drawing, model) {
  const absent = drawing.hits.filter((hit) => !hit.fitted);
  if (!absent.length) return;
  for (const { value, element, follows } of drawing.texts) {
    const box = boxOf(element);
    const middle = { x: box.x + box.width / 2, y: box.y + box.height / 2 };
    if (absent.every((hit) => distanceTo(hit.box, middle) >= NEAR)) continue;
    const says = (hit) =>
      isReferenceOf(value, hit.reference) ||
      SAID_ON_PAGES.some((member) => model.parts.get(hit.reference).line?.[member] === value);
    const near = drawing.hits
      .map((hit) => ({ hit, after: hit.element === follows, distance: distanceTo(hit.box, middle) }))
      .filter(({ hit, after, distance }) => distance === 0 || (distance < NEAR && (after || says(hit))))
      .sort(
        (one, other) =>
          other.after - one.after ||
          isReferenceOf(value, other.hit.reference) - isReferenceOf(value, one.hit.reference) ||
          one.distance - other.distance,
      );
    near[0]?.hit.elements.push(element);
  }
}

// Its tip is at the place; how many findings it tells stands in it, "!" for one. Its title and label are the viewer's.
function pinOf({ id, x, y, findings }, onPaper) {
  const checks = new Set(findings.map((finding) => finding.check));
  const pin = svgElement("g", {
    class: `pin ${checks.size === 1 ? `check${[...checks][0]}` : "checks"}`,
    "data-pin": id,
    "data-x": x,
    "data-y": y,
    tabindex: 0,
    role: "button",
  });
  const [side, top, middle] = [PIN_RADIUS * 0.7, PIN_RADIUS * -1.4, PIN_RADIUS * -1.9];
  const count = svgElement("text", {
    y: middle,
    "text-anchor": "middle",
    "dominant-baseline": "central",
    "font-size": findings.length > 99 ? 8 : 10,
    "aria-hidden": "true",
  });
  const numbers = findings.map((finding) => finding.number).join(", ");
  count.textContent = findings.length > 1 ? findings.length : onPaper ? numbers : "!";
  pin.append(
    svgElement("title"),
    svgElement("path", { d: `M 0 0 L ${-side} ${top} A ${PIN_RADIUS} ${PIN_RADIUS} 0 1 1 ${side} ${top} Z` }),
    count,
  );
  if (onPaper && findings.length > 1) {
    const beside = svgElement("text", {
      class: "numbers",
      x: PIN_RADIUS * 1.3,
      y: middle,
      "dominant-baseline": "central",
      "font-size": 10,
    });
    beside.textContent = numbers;
    pin.append(beside);
  }
  return pin;
}

// Units of one part bear a letter after its reference.
function isReferenceOf(value, reference) {
  return value === reference || (value.startsWith(reference) && /^[A-Z]$/.test(value.slice(reference.length)));
}

function area(box) {
  return box.width * box.height;
}

function distanceTo(box, point) {
  const across = Math.max(box.x - point.x, 0, point.x - box.x - box.width);
  const down = Math.max(box.y - point.y, 0, point.y - box.y - box.height);
  return Math.hypot(across, down);
}
