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
    for (const child of page.drawing.children ?? []) this.svg.append(this.#node(child, false));
  }

  #prefix;
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
    const node = svgElement(source.name);
    for (const name of known) if (attr[name] !== undefined) node.setAttribute(name, attr[name]);
    setStyle(node, attr.style ?? "");
    if (isSymbol && attr.id) node.id = this.#symbolId(attr.id);
    if (source.name === "text") node.textContent = source.value ?? "";
    if (source.name === "use") {
      const target = attr["xlink:href"] ?? "";
      if (target.startsWith("#")) node.setAttribute("href", `#${this.#symbolId(target.slice(1))}`);
      if (attr.id && !isSymbol) this.parts.push({ reference: attr.id, element: node });
    }
    if (source.name === "text" && !isSymbol)
      this.texts.push({ value: source.value ?? "", element: node, follows: this.#follows });
    else this.#follows = source.name === "use" && attr.id ? node : null;
    this.nodes.set(source, node);
    for (const child of source.children ?? []) node.append(this.#node(child, isSymbol && source.name === "defs"));
    return node;
  }
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
