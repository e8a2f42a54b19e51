// A page file as SVG. The files are data from elsewhere: only known elements and attributes are taken, only plain style
// values, and texts are texts.

import { inkOf } from "./colours.js";

const SVG = "http://www.w3.org/2000/svg";
const ATTRIBUTES = {
  g: [],
  line: ["x1", "y1", "x2", "y2"],
  circle: ["cx", "cy", "r"],
  ellipse: ["cx", "cy", "rx", "ry"],
  rect: ["x", "y", "width", "height"],
  path: ["d"],
  polyline: ["points"],
  text: ["transform", "dominant-baseline"],
  use: ["transform"],
};
const STYLES = ["stroke", "stroke-width", "fill", "stroke-dasharray", "stroke-linecap", "font-size"];
const PLAIN_VALUE = /^[#\w.,\s-]*$/;

export function svgElement(name, attributes = {}) {
  const element = document.createElementNS(SVG, name);
  for (const [attribute, value] of Object.entries(attributes)) element.setAttribute(attribute, value);
  return element;
}

// Shown pages have ids of their own, since symbols of one name differ between pages.
let drawn = 0;

export class Drawing {
  // `svg` shows the page; `parts` are {reference, element} and `texts` {value, element, follows} in drawing order, the
  // last being the element of the part that a text was drawn right after.
  constructor(page) {
    this.page = page;
    this.parts = [];
    this.texts = [];
    this.nodes = new Map(); // element of the file -> node
    this.#prefix = `d${drawn++}-`;
    const width = Number(page.drawing.width) || 1000;
    const height = Number(page.drawing.height) || 1000;
    this.size = { width, height };
    this.svg = svgElement("svg", { viewBox: `0 0 ${width} ${height}`, width, height, role: "group", "aria-label": page.name });
    this.svg.append(svgElement("rect", { class: "paper", width, height }));
    const children = page.drawing.children ?? [];
    const definitions = children.filter((child) => child.name === "defs");
    this.#defined = new Set(definitions.flatMap((child) => child.children ?? []).map((symbol) => symbol.attr?.id));
    for (const child of children) this.svg.append(this.#node(child, false));
  }

  #prefix;
  #defined;
  #follows = null;
  #symbols = new Map();

  #symbolId(name) {
    if (!this.#symbols.has(name)) this.#symbols.set(name, `${this.#prefix}${this.#symbols.size}`);
    return this.#symbols.get(name);
  }

  #node(source, isSymbol) {
    if (source.name === "defs") {
      const defs = svgElement("defs");
      for (const child of source.children ?? []) defs.append(this.#node(child, true));
      return defs;
    }
    const known = ATTRIBUTES[source.name];
    if (!known) return document.createComment("left out");
    const attr = source.attr ?? {};
    const target = source.name === "use" ? (attr["xlink:href"] ?? "") : "";
    const symbol = target.startsWith("#") ? target.slice(1) : "";
    const missing = symbol !== "" && !this.#defined.has(symbol);
    const node = svgElement(missing ? "g" : source.name);
    for (const name of known) if (attr[name] !== undefined) node.setAttribute(name, attr[name]);
    setStyle(node, attr.style ?? "");
    if (isSymbol && attr.id) node.id = this.#symbolId(attr.id);
    if (source.name === "text") node.textContent = source.value ?? "";
    if (missing) node.append(...boxFor(symbol));
    else if (symbol) node.setAttribute("href", `#${this.#symbolId(symbol)}`);
    if (source.name === "use" && attr.id && !isSymbol) this.parts.push({ reference: attr.id, element: node });
    if (source.name === "text" && !isSymbol)
      this.texts.push({ value: source.value ?? "", element: node, follows: this.#follows });
    else this.#follows = source.name === "use" && attr.id ? node : null;
    this.nodes.set(source, node);
    for (const child of source.children ?? []) node.append(this.#node(child, isSymbol && source.name === "defs"));
    return node;
  }
}

// What stands for a symbol that a page uses and does not hold.
function boxFor(symbol) {
  const look = { class: "missing", fill: "none", stroke: "#f0f", "stroke-width": 2, "stroke-dasharray": "4 2" };
  const name = svgElement("text", { class: "missing", fill: "#f0f", x: -15, y: 25, "font-size": 9 });
  name.textContent = symbol;
  const box = svgElement("rect", { ...look, x: -15, y: -15, width: 30, height: 30 });
  return [box, svgElement("path", { ...look, d: "M-15-15L15 15M-15 15L15-15" }), name];
}

// As attributes, whose numbers need no unit and which style sheets may overrule.
function setStyle(node, style) {
  for (const entry of style.split(";")) {
    const colon = entry.indexOf(":");
    const name = entry.slice(0, colon).trim();
    const value = entry.slice(colon + 1).trim();
    if (colon > 0 && STYLES.includes(name) && PLAIN_VALUE.test(value)) node.setAttribute(name, inkOf(value));
  }
  // SVG fills what says nothing of it.
  if (!node.hasAttribute("fill") && node.hasAttribute("stroke")) node.setAttribute("fill", "none");
  // A text with a stroke of no width still draws a hair of it in some renderers.
  if (node.nodeName === "text") node.removeAttribute("stroke");
}

// The box of a node on its page, its own transform taken into account. The page must be shown.
export function boxOf(node) {
  const box = node.getBBox();
  const matrix = node.transform.baseVal.consolidate()?.matrix;
  if (!matrix) return { x: box.x, y: box.y, width: box.width, height: box.height };
  const corners = [
    [box.x, box.y],
    [box.x + box.width, box.y],
    [box.x, box.y + box.height],
    [box.x + box.width, box.y + box.height],
  ].map(([x, y]) => new DOMPoint(x, y).matrixTransform(matrix));
  const xs = corners.map((corner) => corner.x);
  const ys = corners.map((corner) => corner.y);
  const [x, y] = [Math.min(...xs), Math.min(...ys)];
  return { x, y, width: Math.max(...xs) - x, height: Math.max(...ys) - y };
}
