// The wiring of one page: what touches what makes a group, all of which is one net there.

const GRAIN = 10; // points are compared in tenths of a unit
const BAND = 20; // units of the bands in which lines and texts are looked up
const LABEL_ABOVE = 9; // at most so far is a label from the wire that it names
const LABEL_BELOW = 1;
const NUMBER_NEAR = 7; // at most so far is a pin's number from the middle of its pin

// `page` is what readPage gave. Gives {groups, buses}; a group is
//   {lines, pins, connectors, labels: [text...], links: [name...], buses: [bus...]}
// and a bus {lines, labels, connectors, groups}.
export function wiringOf(page, pinNumbers = () => null) {
  numberPins(page, pinNumbers);
  const wires = new Lines(page.wires);
  const buses = new Lines(page.buses);
  const sets = new Sets();
  const ends = new Map(); // point -> {x, y}
  const note = (x, y) => {
    const key = keyOf(x, y);
    if (!ends.has(key)) ends.set(key, { x, y });
    return key;
  };
  // What ends on a bus enters it: two that enter at one point are not joined there.
  for (const [number, wire] of page.wires.entries()) {
    const inner = [
      [wire.x1, wire.y1],
      [wire.x2, wire.y2],
    ].filter(([x, y]) => !buses.at(x, y).length);
    const keys = inner.map(([x, y]) => note(x, y));
    wire.key = keys[0] ?? -1 - number;
    for (const key of keys) sets.join(key, wire.key);
  }
  for (const pin of page.pins) sets.add(note(pin.x, pin.y));
  for (const { x, y } of page.junctions) if (wires.at(x, y).length) note(x, y);
  for (const connector of page.connectors) {
    connector.at = meetingPoint(connector, wires, buses, ends);
    sets.add(note(...connector.at));
  }
  // An end on a wire is joined to it; wires that only cross are not.
  for (const [key, { x, y }] of ends) for (const wire of wires.at(x, y)) sets.join(key, wire.key);
  return gather(page, { wires, buses, sets });
}

function gather(page, { wires, buses, sets }) {
  const groups = new Map();
  const groupOf = (key) => {
    const root = sets.find(key);
    if (!groups.has(root)) groups.set(root, { lines: [], pins: [], connectors: [], labels: [], buses: [] });
    return groups.get(root);
  };
  const groupAt = (x, y) => groupOf(keyOf(x, y));
  const busGroups = joinBuses(page.buses, buses);
  for (const wire of page.wires) groupOf(wire.key).lines.push(wire);
  for (const pin of page.pins) groupAt(pin.x, pin.y).pins.push(pin);
  for (const connector of page.connectors) {
    const bus = buses.at(...connector.at)[0];
    if (bus) busGroups.get(bus).connectors.push(connector);
    else groupAt(...connector.at).connectors.push(connector);
  }
  for (const text of page.texts) {
    const found = lineBy(text, wires);
    const bus = found ? null : lineBy(text, buses);
    if (found) groupOf(found.key).labels.push(text);
    else if (bus) busGroups.get(bus).labels.push(text);
  }
  for (const wire of page.wires) {
    for (const [x, y] of [
      [wire.x1, wire.y1],
      [wire.x2, wire.y2],
    ]) {
      const line = buses.at(x, y)[0];
      if (!line) continue;
      const [group, bus] = [groupOf(wire.key), busGroups.get(line)];
      if (!bus.groups.includes(group)) bus.groups.push(group);
      if (!group.buses.includes(bus)) group.buses.push(bus);
    }
  }
  return { groups: [...groups.values()], buses: [...new Set(busGroups.values())] };
}

// Buses by their lines.
function joinBuses(lines, index) {
  const sets = new Sets();
  for (const line of lines) {
    sets.join(keyOf(line.x1, line.y1), keyOf(line.x2, line.y2));
    for (const [x, y] of [
      [line.x1, line.y1],
      [line.x2, line.y2],
    ]) {
      for (const other of index.at(x, y)) sets.join(keyOf(x, y), keyOf(other.x1, other.y1));
    }
  }
  const byRoot = new Map();
  const byLine = new Map();
  for (const line of lines) {
    const root = sets.find(keyOf(line.x1, line.y1));
    if (!byRoot.has(root)) byRoot.set(root, { lines: [], labels: [], connectors: [], groups: [] });
    byRoot.get(root).lines.push(line);
    byLine.set(line, byRoot.get(root));
  }
  return byLine;
}

// A connector's own point, or where a wire or pin ends on its outline.
function meetingPoint(connector, wires, buses, ends) {
  const own = [connector.x, connector.y];
  if (ends.has(keyOf(...own)) || wires.at(...own).length || buses.at(...own).length) return own;
  const { x, y, width, height } = connector.box;
  let nearest = null;
  for (const line of [...wires.inBox(connector.box), ...buses.inBox(connector.box)]) {
    for (const [px, py] of [
      [line.x1, line.y1],
      [line.x2, line.y2],
    ]) {
      if (px < x - 1 || px > x + width + 1 || py < y - 1 || py > y + height + 1) continue;
      const distance = Math.hypot(px - own[0], py - own[1]);
      if (!nearest || distance < nearest.distance) nearest = { distance, at: [px, py] };
    }
  }
  return nearest?.at ?? own;
}

// The wire over which a text stands, beside which it reads when both run upwards.
function lineBy(text, lines) {
  const { x, y, width, height } = text.box;
  const room = text.upright
    ? { x: x - LABEL_ABOVE, y, width: width + 2 * LABEL_ABOVE, height }
    : { x, y: y - LABEL_BELOW, width, height: height + LABEL_ABOVE + LABEL_BELOW };
  let nearest = null;
  for (const line of lines.inBox(room)) {
    const vertical = line.x1 === line.x2;
    if (vertical !== text.upright || (!vertical && line.y1 !== line.y2)) continue;
    const [from, to] = vertical ? [line.y1, line.y2] : [line.x1, line.x2];
    const [start, end] = vertical ? [y, y + height] : [x, x + width];
    if (Math.min(end, Math.max(from, to)) - Math.max(start, Math.min(from, to)) < 0.5) continue;
    const off = vertical ? (text.clockwise ? x - line.x1 : line.x1 - x - width) : line.y1 - y - height;
    if (off < -LABEL_BELOW || off > LABEL_ABOVE) continue;
    if (!nearest || off < nearest.off) nearest = { off, line };
  }
  return nearest?.line ?? null;
}

// Numbers are texts beside the pins; `pinNumbers(reference)` is the set of those that a part has, when it is known.
function numberPins(page, pinNumbers) {
  const byBand = new Map();
  for (const pin of page.pins) {
    pin.middle = [(pin.x + pin.bodyX) / 2, (pin.y + pin.bodyY) / 2];
    const key = bandOf(Math.floor(pin.middle[1] / BAND), Math.floor(pin.middle[0] / BAND));
    if (!byBand.has(key)) byBand.set(key, []);
    byBand.get(key).push(pin);
  }
  const pinsAround = (x, y) => {
    const found = [];
    for (let row = Math.floor((y - NUMBER_NEAR) / BAND); row <= Math.floor((y + NUMBER_NEAR) / BAND); row++) {
      for (let column = Math.floor((x - NUMBER_NEAR) / BAND); column <= Math.floor((x + NUMBER_NEAR) / BAND); column++) {
        found.push(...(byBand.get(bandOf(row, column)) ?? []));
      }
    }
    return found;
  };
  const references = new Set(page.pins.map((pin) => pin.reference));
  const offers = [];
  for (const text of page.texts) {
    if (text.value.length > 6 || /\s/.test(text.value)) continue;
    const [x, y] = [text.box.x + text.box.width / 2, text.box.y + text.box.height / 2];
    const numbered = /^[A-Z]{0,3}\d+$/.test(text.value) && !references.has(text.value);
    for (const pin of pinsAround(x, y)) {
      const distance = Math.hypot(x - pin.middle[0], y - pin.middle[1]);
      if (distance > NUMBER_NEAR) continue;
      // What looks like a number, but is in no net, may be that of a pin left open.
      if (pinNumbers(pin.reference)?.has(text.value)) offers.push({ distance, pin, text });
      else if (numbered) offers.push({ distance: distance + NUMBER_NEAR, pin, text });
    }
  }
  offers.sort((one, other) => one.distance - other.distance);
  const used = new Set();
  for (const { pin, text } of offers) {
    if (pin.number || used.has(text)) continue;
    pin.number = text.value;
    used.add(text);
    text.isNumber = true;
  }
}

function bandOf(row, column) {
  return row * 65536 + column;
}

function keyOf(x, y) {
  return Math.round(x * GRAIN) * 4194304 + Math.round(y * GRAIN);
}

// Lines by where they are: across, upright, or neither.
class Lines {
  constructor(lines) {
    this.bands = new Map();
    for (const line of lines) {
      const [left, right] = [Math.min(line.x1, line.x2), Math.max(line.x1, line.x2)];
      const [top, bottom] = [Math.min(line.y1, line.y2), Math.max(line.y1, line.y2)];
      if (![left, right, top, bottom].every((value) => Math.abs(value) < 1e5)) continue;
      // A line across is in the bands of its row; any other in those of its rows and columns.
      for (let row = Math.floor(top / BAND); row <= Math.floor(bottom / BAND); row++) {
        for (let column = Math.floor(left / BAND); column <= Math.floor(right / BAND); column++) this.#add(row, column, line);
      }
    }
  }

  #add(row, column, line) {
    const key = bandOf(row, column);
    if (!this.bands.has(key)) this.bands.set(key, []);
    this.bands.get(key).push(line);
  }

  // Those on which a point lies, their ends included.
  at(x, y) {
    return this.inBox({ x: x - 0.1, y: y - 0.1, width: 0.2, height: 0.2 }).filter((line) => {
      const [dx, dy] = [line.x2 - line.x1, line.y2 - line.y1];
      const length = Math.hypot(dx, dy) || 1;
      const along = ((x - line.x1) * dx + (y - line.y1) * dy) / length;
      return along > -0.1 && along < length + 0.1 && Math.abs((x - line.x1) * dy - (y - line.y1) * dx) / length < 0.1;
    });
  }

  // Those that may be in a box: all that have a band in common with it.
  inBox({ x, y, width, height }) {
    const found = new Set();
    for (let row = Math.floor(y / BAND); row <= Math.floor((y + height) / BAND); row++) {
      for (let column = Math.floor(x / BAND); column <= Math.floor((x + width) / BAND); column++) {
        for (const line of this.bands.get(bandOf(row, column)) ?? []) found.add(line);
      }
    }
    return [...found];
  }
}

// Sets that are joined until each is one.
export class Sets {
  #parents = new Map();

  add(one) {
    if (!this.#parents.has(one)) this.#parents.set(one, one);
  }

  find(one) {
    this.add(one);
    let root = one;
    while (this.#parents.get(root) !== root) root = this.#parents.get(root);
    for (let at = one; at !== root;) {
      const next = this.#parents.get(at);
      this.#parents.set(at, root);
      at = next;
    }
    return root;
  }

  join(one, other) {
    this.#parents.set(this.find(one), this.find(other));
  }
}
