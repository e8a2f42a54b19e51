// What a page file says of a schematic, read from its drawing elements alone: wires, pins, connectors, sheets, texts.
// Lengths are units of the page, y runs down. Nothing here touches the page that is shown.

// A pin is drawn from its body outwards, so long by its shape's name.
const PIN_SHAPE = /^#PackagePin(Long|Short)/;
const PIN_LENGTH = { Long: 30, Short: 10 };
const BUS_WIDTH = "5";
const NAME_NEAR = 12; // units from a connector to a text that can be its name
const OWN_NEAR = 60; // and from a part to those that are its own
const CJK = /[\u2e80-\uffff]/;

// Every drawing element of a page, its definitions left out.
export function* elementsOf(drawing) {
  for (const child of drawing.children ?? []) {
    if (child.name === "defs") continue;
    yield child;
    yield* elementsOf(child);
  }
}

const TRANSFORM =
  /translate\(\s*([-\d.]+)(?:[\s,]+([-\d.]+))?\s*\)(?:\s*rotate\(\s*([-\d.]+)[^)]*\))?(?:\s*scale\(\s*([-\d.]+)(?:[\s,]+([-\d.]+))?\s*\))?/;
// Quarter turns must not leave crumbs: points are compared.
const COSINES = { 0: 1, 90: 0, 180: -1, 270: 0 };

// "translate(1 2) rotate(-90) scale(1,-1)" as {a, b, c, d, x, y}, of which (a, b) is where a step across leads, (c, d) one
// down, and (x, y) the origin.
export function matrixOf(transform) {
  const [, x = 0, y = 0, turn = 0, across = 1, down = across] = TRANSFORM.exec(transform ?? "") ?? [];
  const angle = ((Number(turn) % 360) + 360) % 360;
  const cos = COSINES[angle] ?? Math.cos((angle * Math.PI) / 180);
  const sin = COSINES[(angle + 270) % 360] ?? Math.sin((angle * Math.PI) / 180);
  return { a: cos * across, b: sin * across, c: -sin * down, d: cos * down, x: Number(x), y: Number(y) };
}

// The same as a function from a symbol's point to the page's.
export function placing(transform) {
  const { a, b, c, d, x: left, y: top } = matrixOf(transform);
  return (x, y) => [left + a * x + c * y, top + b * x + d * y];
}

// The page's objects: `bounds` is the height and width of its paper.
//   wires       {x1, y1, x2, y2, element}; buses the same
//   junctions   {x, y}
//   pins        {reference, symbol, index, x, y, bodyX, bodyY}: where the wire meets it, and where its body is
//   connectors  {kind: "power" | "port" | "offpage", name, x, y, box, element, text, symbol, near}: `symbol` and `near` are
//               what a supply symbol without a text of its own may be called, by its library or by a text beside it
//   sheets      {x, y, width, height, name, element}: a box and the text that was drawn right after it
//   texts       {value, box, upright, owner, element}: `owner` is the use of a part that it was drawn after, and near to
export function readPage(drawing) {
  const found = { wires: [], buses: [], junctions: [], pins: [], connectors: [], sheets: [], texts: [] };
  const symbols = new Map();
  for (const child of drawing.children ?? []) {
    if (child.name !== "defs") continue;
    for (const group of child.children ?? []) {
      const id = group.attr?.id;
      if (id && !id.startsWith("PackagePin")) symbols.set(id, readSymbol(group));
    }
  }
  let owner = null; // the last part, {element, box}
  let titled = null; // what waits for the text that names it
  for (const element of elementsOf(drawing)) {
    const attr = element.attr ?? {};
    if (element.name === "text") {
      const text = { value: element.value ?? "", ...textBox(element), element };
      text.owner = owner && distanceOf(text.box, owner.box) < OWN_NEAR ? owner.element : null;
      found.texts.push(text);
      if (titled && !titled.name) Object.assign(titled, { name: text.value.trim(), text });
      titled = null;
      continue;
    }
    titled = null;
    if (element.name === "use") {
      const placed = readUse(element, symbols, found);
      owner = element.attr?.id ? { element, box: placed.box } : null;
      titled = owner ? null : placed;
    } else {
      owner = null;
      if (element.name === "line") readLine(attr, element, found);
      else if (element.name === "circle") found.junctions.push({ x: Number(attr.cx), y: Number(attr.cy) });
      else if (element.name === "rect") {
        titled = { ...numbersOf(attr, ["x", "y", "width", "height"]), name: "", element };
        found.sheets.push(titled);
      }
    }
  }
  found.sheets = found.sheets.filter((sheet) => sheet.name);
  for (const connector of found.connectors) if (!connector.name) nameByNearness(connector, found.texts);
  return found;
}

// Where connectors and their texts are not drawn one after the other. A supply symbol can also be one that says its name by
// its shape, beside the text of another.
function nameByNearness(connector, texts) {
  const nearest = texts
    .filter((text) => !text.owner && distanceOf(text.box, connector.box) < NAME_NEAR)
    .sort((one, other) => distanceOf(one.box, connector.box) - distanceOf(other.box, connector.box))[0];
  if (!nearest) return;
  if (connector.kind === "power") connector.near = nearest.value.trim();
  else Object.assign(connector, { name: nearest.value.trim(), text: nearest });
}

function distanceOf(one, other) {
  return Math.hypot(
    Math.max(one.x - other.x - other.width, 0, other.x - one.x - one.width),
    Math.max(one.y - other.y - other.height, 0, other.y - one.y - one.height),
  );
}

function numbersOf(attr, names) {
  return Object.fromEntries(names.map((name) => [name, Number(attr[name])]));
}

// Only wires, buses and drawn lines are line elements of a page; those that meet nothing turn out to be drawn lines.
function readLine(attr, element, found) {
  const line = { ...numbersOf(attr, ["x1", "y1", "x2", "y2"]), element };
  if (Object.values(line).some(Number.isNaN)) return;
  const width = /stroke-width:\s*([\d.]+)/.exec(attr.style ?? "")?.[1];
  (width === BUS_WIDTH ? found.buses : found.wires).push(line);
}

// Gives a connector, or the box of a part.
function readUse(element, symbols, found) {
  const attr = element.attr ?? {};
  const name = (attr["xlink:href"] ?? "").replace(/^#/, "");
  const symbol = symbols.get(name);
  const place = placing(attr.transform);
  const box = placedBox(symbol?.box, place);
  if (attr.id) {
    for (const [index, pin] of (symbol?.pins ?? []).entries()) {
      const [x, y] = place(pin.x, pin.y);
      const [bodyX, bodyY] = place(pin.bodyX, pin.bodyY);
      found.pins.push({ reference: attr.id, symbol: name, index, x, y, bodyX, bodyY });
    }
    return { box };
  }
  if (/title/i.test(name)) return null;
  const [x, y] = place(0, 0);
  const kind = /off-?page/i.test(name) ? "offpage" : /^port/i.test(name) ? "port" : "power";
  const connector = { kind, name: "", x, y, box, element };
  // A supply symbol without a text is called what its library calls it.
  connector.symbol = name.split(":").at(-1);
  found.connectors.push(connector);
  return connector;
}

function readSymbol(group) {
  const pins = [];
  const xs = [0];
  const ys = [0];
  let pin = null;
  for (const child of group.children ?? []) {
    const attr = child.attr ?? {};
    if (child.name === "use") {
      const place = placing(attr.transform);
      const [bodyX, bodyY] = place(0, 0);
      const [x, y] = place(PIN_LENGTH[PIN_SHAPE.exec(attr["xlink:href"] ?? "")?.[1]] ?? 0, 0);
      pin = { x, y, bodyX, bodyY };
      pins.push(pin);
      xs.push(x, bodyX);
      ys.push(y, bodyY);
      continue;
    }
    if (child.name === "line") {
      const { x1, y1, x2, y2 } = numbersOf(attr, ["x1", "y1", "x2", "y2"]);
      // The rest of a pin whose length no shape has.
      if (pin && near(x1, pin.x) && near(y1, pin.y)) Object.assign(pin, { x: x2, y: y2 });
      xs.push(x1, x2);
      ys.push(y1, y2);
    } else if (child.name === "rect") {
      const { x, y, width, height } = numbersOf(attr, ["x", "y", "width", "height"]);
      xs.push(x, x + width);
      ys.push(y, y + height);
    } else {
      const flat = ((attr.points ?? attr.d ?? "").match(/-?[\d.]+/g) ?? []).map(Number);
      if (child.name === "polyline") flat.forEach((value, at) => (at % 2 ? ys : xs).push(value));
    }
    pin = null;
  }
  const box = { left: Math.min(...xs), right: Math.max(...xs), top: Math.min(...ys), bottom: Math.max(...ys) };
  return { pins, box };
}

function near(one, other) {
  return Math.abs(one - other) < 0.2;
}

function placedBox(box, place) {
  const { left, right, top, bottom } = box ?? { left: 0, right: 0, top: 0, bottom: 0 };
  const [[x1, y1], [x2, y2]] = [place(left, top), place(right, bottom)];
  return { x: Math.min(x1, x2), y: Math.min(y1, y2), width: Math.abs(x2 - x1), height: Math.abs(y2 - y1) };
}

// A text hangs from its point, along its line. How wide it is depends on a font that is not known here, so it is guessed.
function textBox(element) {
  const attr = element.attr ?? {};
  const size = Number(/font-size:\s*([\d.]+)/.exec(attr.style ?? "")?.[1] ?? 9);
  const place = placing(attr.transform);
  const value = element.value ?? "";
  const width = [...value].reduce((sum, character) => sum + size * (CJK.test(character) ? 1 : 0.58), 0);
  const [[x1, y1], [x2, y2]] = [place(0, 0), place(width, size)];
  const box = { x: Math.min(x1, x2), y: Math.min(y1, y2), width: Math.abs(x2 - x1), height: Math.abs(y2 - y1) };
  const [ax, ay] = place(1, 0);
  return { box, upright: Math.abs(ay - y1) > Math.abs(ax - x1), clockwise: ay > y1 };
}
