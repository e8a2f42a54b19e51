// What is worked out of the drawn pages and the net list alone: wires, nets over pages, pins, the tree, quantities.

import assert from "node:assert/strict";
import { test } from "node:test";

import { readPage } from "../page/drawn.js";
import { arrangePages, destinationsOf } from "../page/hierarchy.js";
import { joinNets, numbersIn } from "../page/nets.js";
import { byQuantity, inNaturalOrder } from "../page/quantities.js";
import { wiringOf } from "../page/wiring.js";
import { box, bus, connector, junction, linked, page as pageOf, symbolOf, two, wire, words } from "./design.mjs";

async function joined(pages, list) {
  const read = pages.map((page, index) => ({ ...page, index, drawn: readPage(page.drawing) }));
  arrangePages(read);
  const numbers = numbersIn(list);
  for (const page of read) page.wiring = wiringOf(page.drawn, (reference) => numbers.get(reference));
  return { pages: read, ...(await joinNets(list, read)) };
}

// One page, of parts with two pins, 20 units left and right of their place.
const sheet = (...children) =>
  pageOf("top", "main", "1", children.flat(), [symbolOf("two"), symbolOf("GND", []), symbolOf("OffPage-x", [])]);
const pinsOf = (group) =>
  group.pins
    .map((pin) => `${pin.reference}.${pin.index}`)
    .sort()
    .join(" ");
const groupsOf = (page) => {
  const read = readPage(page.drawing);
  return wiringOf(read)
    .groups.map(pinsOf)
    .filter((pins) => pins.includes(" "))
    .sort();
};

test("what touches is one group", () => {
  const [left, right, below] = [two("A", 100, 100), two("B", 200, 100), two("C", 150, 140, "rotate(-90)")];
  const cases = [
    ["a wire between two pins", [left, right, wire(120, 100, 180, 100)], ["A.1 B.0"]],
    ["pins that touch", [left, two("B", 140, 100)], ["A.1 B.0"]],
    ["two wires end to end", [left, right, wire(120, 100, 150, 100), wire(150, 100, 180, 100)], ["A.1 B.0"]],
    ["a pin on the middle of a wire", [left, right, below, wire(120, 100, 180, 100), wire(150, 120, 150, 100)], ["A.1 B.0 C.1"]],
    ["wires that cross", [left, right, below, wire(120, 100, 180, 100), wire(150, 120, 150, 80)], ["A.1 B.0"]],
    [
      "wires that cross with a junction",
      [left, right, below, wire(120, 100, 180, 100), wire(150, 120, 150, 80), junction(150, 100)],
      ["A.1 B.0 C.1"],
    ],
    ["a junction beside wires", [left, right, wire(120, 100, 180, 100), junction(150, 105)], ["A.1 B.0"]],
    [
      "wires that enter a bus at one point",
      [
        left,
        right,
        wire(120, 100, 140, 100),
        wire(140, 100, 150, 110),
        wire(180, 100, 160, 100),
        wire(160, 100, 150, 110),
        bus(150, 80, 150, 150),
      ],
      [],
    ],
    ["a bus is no wire", [left, right, bus(120, 100, 180, 100)], []],
    ["a mirrored part", [left, two("B", 200, 100, "rotate(0)", "-1,1"), wire(120, 100, 180, 100)], ["A.1 B.1"]],
    ["a turned part", [left, two("B", 200, 120, "rotate(-90)"), wire(120, 100, 200, 100)], ["A.1 B.1"]],
    ["a wire without length, numbers that are none", [left, right, wire(120, 100, 120, 100), wire("x", 1, 2, 3)], []],
  ];
  for (const [what, children, expected] of cases) assert.deepEqual(groupsOf(sheet(...children)), expected, what);
});

test("a group is the net that its pins, its name or its neighbours tell", async () => {
  const list = {
    CLK: ["A.1", "B.1"],
    GND: ["A.2", "C.2", "D.2"],
    "/main/LOCAL": ["C.1", "D.1"],
    X1: ["E.7", "F.7"],
    X2: ["E.8", "F.8"],
  };
  const number = (text, x, y) => words(text, x - 2, y - 10);
  const cases = [
    [
      "numbers beside pins",
      [two("A", 100, 100), two("B", 200, 100), wire(120, 100, 180, 100), number("1", 115, 100), number("1", 185, 100)],
      "CLK",
    ],
    [
      "a label on the wire",
      [two("C", 100, 100), two("D", 200, 100), wire(120, 100, 180, 100), words("LOCAL", 125, 90)],
      "/main/LOCAL",
    ],
    ["a label far from it", [two("C", 100, 100), wire(120, 100, 180, 100), words("LOCAL", 125, 70)], ""],
    [
      "a label beside an upright wire",
      [two("C", 100, 100), wire(120, 100, 120, 160), words("LOCAL", 110, 150, -90)],
      "/main/LOCAL",
    ],
    ["a supply symbol", [two("C", 100, 100), wire(120, 100, 180, 100), connector("GND", "GND", 180, 100)], "GND"],
    ["a supply symbol that no pin fits", [two("B", 100, 100), wire(120, 100, 180, 100), connector("GND", "GND", 180, 100)], ""],
    ["the only net that all its parts have", [two("A", 100, 100), two("B", 200, 100), wire(120, 100, 180, 100)], "CLK"],
    ["two nets that all its parts have", [two("E", 100, 100), two("F", 200, 100), wire(120, 100, 180, 100)], ""],
    [
      "pins of two nets",
      [two("A", 100, 100), two("E", 200, 100), wire(120, 100, 180, 100), number("1", 115, 100), number("7", 185, 100)],
      "",
    ],
  ];
  for (const [what, children, expected] of cases) {
    const { pages } = await joined([sheet(...children)], list);
    const group = pages[0].wiring.groups.find((one) => one.lines.length);
    assert.equal(group.net, expected, what);
  }
});

test("what some instances of a symbol tell numbers the pins of the others", async () => {
  // K1 and K2 are numbered by their nets' names, K3 has none: its first pin is 9 as theirs are.
  const list = { IN: ["K1.9", "K2.9"], OUT: ["K1.3", "K2.3"], A: ["K3.9", "Z.1"], B: ["K3.3", "Z.2"] };
  const row = (reference, y, names) => [
    two(reference, 100, y),
    wire(50, y, 80, y),
    wire(120, y, 150, y),
    ...(names.length ? [words(names[0], 52, y - 10), words(names[1], 124, y - 10)] : []),
  ];
  const { places, nets, unjoined } = await joined(
    [sheet(...row("K1", 100, ["IN", "OUT"]), ...row("K2", 200, ["IN", "OUT"]), ...row("K3", 300, []))],
    list,
  );
  assert.deepEqual(
    ["K1.9", "K3.9", "K3.3"].map((pin) => places.get(pin)?.map(({ x, y }) => [x, y])),
    [[[80, 100]], [[80, 300]], [[120, 300]]],
  );
  assert.deepEqual(
    nets.map((net) => [net.name, net.groups.length]),
    [
      ["IN", 2],
      ["OUT", 2],
      ["A", 1],
      ["B", 1],
    ],
  );
  assert.deepEqual(unjoined, []);
});

test("sheets, ports and off-page connectors join pages", async () => {
  const { pages, nets } = linked();
  for (const list of [nets, {}]) {
    const found = await joined(pages, list);
    assert.deepEqual(
      found.pages.map(({ parent, children }) => [parent, children]),
      [
        [-1, [1, 2]],
        [0, []],
        [0, []],
      ],
    );
    const across = found.nets
      .map((net) => [...new Set(net.groups.map((group) => group.page.index))])
      .filter((on) => on.length > 1);
    assert.deepEqual(across.sort(), [
      [0, 1],
      [0, 2],
      [1, 2],
    ]);
    const [main, left] = found.pages;
    const goals = (page, name, at = 0) =>
      destinationsOf(page.drawn.connectors.filter((one) => one.name === name)[at], page, found.pages).map(({ page }) => page);
    assert.deepEqual([goals(main, "IN"), goals(main, "IN", 1), goals(left, "IN"), goals(left, "SHARED")], [[1], [2], [0], [2]]);
  }
});

test("a bus is the nets that enter it, and those that its name says", async () => {
  const list = { D0: ["A.1", "B.1"], D1: ["A.2", "B.2"], D10: ["E.1", "F.1"], X: ["C.1", "D.1"] };
  const entering = [
    ...two("C", 100, 100),
    ...two("D", 100, 140),
    wire(120, 100, 150, 100),
    wire(120, 140, 120, 100),
    bus(150, 80, 150, 120),
  ];
  for (const [name, expected] of [
    ["D[0..1]", ["X", "D0", "D1"]],
    ["D[10:0]", ["X", "D0", "D1", "D10"]],
    ["note", ["X"]],
    ["D[0..99999999]", ["X"]],
  ]) {
    const { pages } = await joined([sheet(...entering, bus(150, 120, 250, 120), words(name, 160, 106))], list);
    assert.deepEqual(
      pages[0].wiring.buses.map((one) => one.nets),
      [expected],
      name,
    );
  }
});

test("pages that hold each other, and a sheet of its own page, end somewhere", () => {
  const loop = (name, other) =>
    pageOf("s", name, "1", [box(10, 10, 50, 50), words(other, 10, 2), box(100, 10, 50, 50), words(name, 100, 2)]);
  const pages = [loop("a", "b"), loop("b", "a")].map((page, index) => ({ ...page, index, drawn: readPage(page.drawing) }));
  arrangePages(pages);
  assert.deepEqual(
    pages.map(({ parent, children }) => [parent, children]),
    [
      [-1, [1]],
      [0, []],
    ],
  );
});

test("a part that is there twice, and wires that tell nothing, are not joined wrongly", async () => {
  const list = { X: ["C4.1", "U.1"], Y: ["C4.1", "V.1"], Z: ["P.1", "Q.2"] };
  const { nets, unjoined } = await joined(
    [
      sheet(
        two("C4", 100, 100),
        two("U", 200, 100),
        wire(120, 100, 180, 100),
        two("C4", 100, 200),
        two("V", 200, 200),
        wire(120, 200, 180, 200),
        two("M", 100, 300),
        two("N", 200, 300),
        wire(120, 300, 180, 300),
      ),
    ],
    list,
  );
  assert.deepEqual(
    nets.map((net) => net.groups.map(pinsOf)),
    [["C4.1 U.0"], ["C4.1 V.0"], []],
  );
  assert.deepEqual(unjoined.map(pinsOf), ["M.1 N.0"]);
});

test("values are in the order of their quantities, names in natural order", () => {
  const inOrder = (texts, order) => assert.deepEqual([...texts].reverse().sort(order), texts);
  inOrder(
    [
      "0R1",
      "10",
      "470R",
      "2k2",
      "4k7",
      "4.75k",
      "10kΩ",
      "1M",
      "100pF",
      "10nF",
      "0,1uF",
      "4u7F",
      "10uF/6.3V",
      "10uH",
      "LM358",
      "国产",
    ],
    byQuantity,
  );
  inOrder(["C2", "R1", "R2", "R10", "R10A"], inNaturalOrder);
});
