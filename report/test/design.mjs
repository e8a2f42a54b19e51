// Designs for the tests of the report, small and by hand, in the form of the page files and messages.

const STYLE = "stroke:#800000;stroke-width:1;fill:none;stroke-dasharray:0,0";

const element = (name, attr, more = {}) => ({ name, attr, ...more });
export const words = (value, x, y, turn = 0) =>
  element(
    "text",
    {
      style: "stroke:#000000;stroke-width:0;font-size:9;fill:#000000",
      transform: `translate(${x},${y}) rotate(${turn})`,
      "dominant-baseline": "hanging",
    },
    { value },
  );

// The pieces of a page one by one. A symbol's pins are [x, y, turn] of where they leave its body, 10 units long.
const line = (x1, y1, x2, y2, width) =>
  element("line", {
    style: `stroke:#008000;stroke-width:${width};fill:none;stroke-dasharray:0,0;stroke-linecap:round`,
    x1: `${x1}`,
    y1: `${y1}`,
    x2: `${x2}`,
    y2: `${y2}`,
  });
export const wire = (x1, y1, x2, y2) => line(x1, y1, x2, y2, 1);
export const bus = (x1, y1, x2, y2) => line(x1, y1, x2, y2, 5);
export const junction = (x, y) =>
  element("circle", { cx: `${x}`, cy: `${y}`, r: "2", style: "stroke:none;stroke-width:1;fill:#008000" });
export const box = (x, y, width, height) =>
  element("rect", { style: STYLE, x: `${x}`, y: `${y}`, width: `${width}`, height: `${height}` });
export const symbolOf = (
  id,
  pins = [
    [-10, 0, 180],
    [10, 0, 0],
  ],
) =>
  element(
    "g",
    { id },
    {
      children: [
        box(-10, -10, 20, 20),
        ...pins.map(([x, y, turn]) =>
          element("use", { transform: `translate(${x},${y}) rotate(${turn})`, "xlink:href": "#PackagePinShort" }),
        ),
      ],
    },
  );
export const two = (id, x, y, turn = "rotate(0)", mirror = "1,1") => [
  element("use", { id, transform: `translate(${x} ${y}) ${turn} scale(${mirror})`, "xlink:href": "#two" }),
];
export const connector = (symbol, name, x, y, turn = 0) => [
  element("use", { transform: `translate(${x} ${y}) rotate(${turn}) scale(1,1)`, "xlink:href": `#${symbol}` }),
  words(name, x + 14, y - 4),
];

const symbol = (id) =>
  element(
    "g",
    { id },
    {
      children: [
        element("rect", { style: STYLE, x: "-10", y: "-20", width: "20", height: "40" }),
        element("use", { transform: "translate(0,20) rotate(-270)", "xlink:href": "#PackagePinShort" }),
      ],
    },
  );

export function part(reference, x, y, value, name = 'Device:R/1 "x"') {
  return [
    element("use", { id: reference, transform: `translate(${x} ${y}) rotate(0) scale(1,1)`, "xlink:href": `#${name}` }),
    words(reference, x + 14, y - 10),
    words(value, x + 14, y + 4),
  ];
}

export function page(schematic, name, key, children, symbols = ['Device:R/1 "x"']) {
  const pin = element(
    "g",
    { id: "PackagePinShort" },
    {
      children: [element("line", { x1: "0", y1: "0", x2: "10", y2: "0", style: "stroke:#FF0000;stroke-width:1;fill:none" })],
    },
  );
  const drawing = {
    id: "SCH_View",
    style: "background:#FFFFFF",
    height: "800",
    width: "1100",
    children: [
      { name: "defs", children: [pin, ...symbols.map((one) => (typeof one === "string" ? symbol(one) : one))] },
      element("g", { id: name }, { children }),
    ],
  };
  return { schematic, name, key, drawing };
}

const billed = (reference, value, number) => ({
  PartNumber: number,
  Value: value,
  PartRef: reference,
  PartName: "R",
  PCBFootprint: "0603",
  PinNumber: "2",
});

export const finding = (id, value, comment, pageName, at) => ({
  id,
  RequiredValue: "",
  ActualValue: value,
  Comment: comment,
  PagePos: at,
  PageName: pageName,
  ViewBox: "",
  Sch: "top",
});

// Two pages; R1 and R10 are equal, R3 is not fitted and on the second page, with R20, which has two units.
export function small() {
  const wire = element("line", { style: `${STYLE};stroke-linecap:round`, x1: "100", y1: "120", x2: "300", y2: "120" });
  return {
    path: "C:\\设计\\放大器.dsn",
    pins: "10",
    bom: {
      Stick: [billed("R1", "10k", "A-1"), billed("R10", "10k", "A-1"), billed("R2", "4.7uF", ""), billed("R20", "电阻", "B")],
      NotStick: [billed("R3", "10k", "A-1")],
      NotPartNumber: [billed("R2", "4.7uF", "")],
    },
    checks: ["1001", "1002", "1003", "1004"],
    findings: [
      finding("1003", "R2.1", "引脚未连接", "main", "500 120"),
      finding("1004", "R3", "R3器件无封装", "第二页", "200 200"),
      finding("1001", "R1", "R10位号重名", "elsewhere", "x y"),
    ],
    properties: [
      ["Value", "10k"],
      ["Datasheet", "<b>bold</b>"],
    ],
    nets: { CLK: ["R1.1", "R10.2"], "/sub/RESET": ["R3.1"] },
    pages: [
      page("top", "main", "1", [
        wire,
        ...part("R1", 100, 100, "10k"),
        ...part("R10", 300, 100, "10k"),
        ...part("R2", 500, 100, "4.7uF"),
        words("CLK", 180, 108),
        words("Filter stage", 60, 700),
      ]),
      page("top", "第二页", "2", [
        ...part("R3", 200, 200, "10k"),
        words("0603", 230, 225),
        words("5%", 230, 190),
        ...part("R20", 400, 200, "电阻"),
        ...part("R20", 600, 200, "电阻"),
        words("RESET", 210, 300),
      ]),
    ],
  };
}

// The page "main" holds the sheets Left and Right, whose pages have a port IN and go on to each other by the off-page
// connector SHARED. Twelve resistors of values in no order, of which R12 is not fitted, lie on the main page.
export function linked() {
  const inside = (name, number, reference) =>
    page(
      "channel",
      name,
      number,
      [
        ...two(reference, 100, 100),
        wire(50, 100, 80, 100),
        ...connector("Port-in", "IN", 50, 100),
        wire(120, 100, 150, 100),
        ...connector("OffPage-x", "SHARED", 150, 100),
      ],
      [symbolOf("two"), symbolOf("Port-in", []), symbolOf("OffPage-x", [])],
    );
  const outside = [
    ...two("A", 100, 100),
    ...two("B", 100, 300),
    wire(120, 100, 200, 100),
    wire(120, 300, 200, 300),
    box(200, 50, 100, 100),
    words("Left", 200, 40),
    ...connector("Port-in", "IN", 200, 100),
    box(200, 250, 100, 100),
    words("Right", 200, 240),
    ...connector("Port-in", "IN", 200, 300),
    box(500, 50, 100, 100),
    words("a note", 500, 40),
    words("Rev: 2", 900, 700),
  ];
  const values = ["10k", "4k7", "470", "1M", "2k2", "100k", "0R1", "330", "1k", "47k", "22k", "4.75k"];
  const resistors = values.flatMap((_, at) => two(`R${at + 1}`, 100 + at * 60, 500));
  return {
    ...small(),
    bom: {
      Stick: [
        ...values.slice(0, 11).map((value, at) => billed(`R${at + 1}`, value, `N-${at}`)),
        billed("A", "LM358", "U"),
        billed("B", "=1+1", "U"),
      ],
      NotStick: [billed("R12", "4.75k", "N-12")],
      NotPartNumber: [],
    },
    findings: [
      finding("1003", "A.1", "引脚未连接", "main", "80 100"),
      finding("1004", "A", "A器件无封装", "main", "100 100"),
      finding("1002", "L", "Value属性包含非法字符", "Left", "100 100"),
      finding("1001", "X", "X位号重名", "nowhere", ""),
    ],
    nets: { N1: ["A.2", "L.1"], N2: ["B.2", "R.1"], SHARED: ["L.2", "R.2"] },
    pages: [
      page("top", "main", "1", [...outside, ...resistors], [symbolOf("two"), symbolOf("Port-in", [])]),
      inside("Left", "2", "L"),
      inside("Right", "3", "R"),
    ],
  };
}

// More lines than are seen at once, with texts wider than their columns.
export function long() {
  const design = small();
  design.bom.Stick.push(...Array.from({ length: 80 }, (_, at) => billed(`C${at}`, `${at}uF/6.3V`, "")));
  design.bom.Stick[0].PCBFootprint = "Resistor_THT:R_Axial_DIN0204_L3.6mm_D1.6mm_P7.62mm_Horizontal";
  return design;
}

// What must stay text: markup, scripts, addresses to fetch, names that are no elements.
export function hostile() {
  const evil = '<img src=x onerror="window.ran = 1"></script><script>window.ran = 1</script>';
  const design = small();
  design.path = `C:\\${evil}`;
  design.pages[0].name = evil;
  design.findings[0] = finding("1003", evil, evil, evil, "500 120");
  design.bom.Stick.push(billed(evil.replaceAll(" ", ""), evil, evil));
  design.properties.push([evil, evil]);
  design.nets[evil] = [evil];
  design.pages[0].drawing.children[1].children.push(
    words(evil, 10, 10),
    element("script", {}, { value: "window.ran = 1" }),
    element("image", { href: "http:" + "//127.0.0.1:9/picture.png" }),
    element("foreignObject", {}, { children: [element("iframe", { src: "file:///" })] }),
    element("rect", {
      style: "fill:url(http:" + "//127.0.0.1:9/x)",
      x: "1",
      y: "1",
      width: "5",
      height: "5",
      onclick: "window.ran = 1",
    }),
    element("use", { id: "R2", transform: "translate(0 0)", "xlink:href": "http:" + "//127.0.0.1:9/x.svg#a" }),
    element("use", { transform: "translate(30 30)", "xlink:href": `#${evil}` }),
  );
  return design;
}

// One page of so many objects: parts, their texts, and wires.
export function large(objects) {
  const design = small();
  const children = [];
  for (let number = 1; children.length < objects; number++) {
    const [x, y] = [60 + (number % 40) * 60, 60 + Math.floor(number / 40) * 60];
    children.push(
      ...part(`R${number}`, x, y, "10k"),
      element("line", { style: STYLE, x1: x, y1: y + 30, x2: x + 60, y2: y + 30 }),
    );
  }
  design.pages = [page("top", "large", "1", children)];
  Object.assign(design.pages[0].drawing, { width: "2600", height: "2200" });
  design.findings = [];
  return design;
}

// So many pages of a hundred parts with three pins each: every part hangs between two rails of its page, has a supply symbol
// of its own, and every page goes on to the next by an off-page connector.
export function huge(pages) {
  const symbols = [
    symbolOf("lib:T", [
      [-10, 0, 180],
      [10, 0, 0],
      [0, 10, -270],
    ]),
    symbolOf("OffPage-passive", []),
    symbolOf("lib:GND", []),
  ];
  const design = { ...small(), bom: { Stick: [], NotStick: [], NotPartNumber: [] }, nets: { GND: [] }, pages: [], findings: [] };
  for (let number = 1; number <= pages; number++) {
    const children = [];
    for (let at = 0; at < 100; at++) {
      const reference = `Q${number}${String(at).padStart(2, "0")}`;
      const [x, y] = [120 + (at % 10) * 90, 100 + Math.floor(at / 10) * 70];
      const net = (pin) =>
        pin === 3
          ? "GND"
          : at % 10 === 0 && pin === 1
            ? `LINK${number - 1}`
            : at % 10 === 9 && pin === 2
              ? `LINK${number}`
              : `P${number}_${at - (pin === 1 ? 1 : 0)}`;
      for (const pin of [1, 2, 3]) (design.nets[net(pin)] ??= []).push(`${reference}.${pin}`);
      children.push(
        element("use", { id: reference, transform: `translate(${x} ${y}) rotate(0) scale(1,1)`, "xlink:href": "#lib:T" }),
        words(reference, x - 10, y - 22),
        words(`${(at % 17) + 1}k${number % 10}`, x - 40, y + 12),
        words("1", x - 17, y - 10),
        words("2", x + 13, y - 10),
        words("3", x - 8, y + 11),
      );
      design.bom.Stick.push(billed(reference, `${(at % 17) + 1}k${number % 10}`, `T-${number}-${at % 17}`));
      children.push(...connector("lib:GND", "GND", x, y + 20));
      children.push(at % 10 < 9 ? wire(x + 20, y, x + 70, y) : wire(x + 20, y, 980, y));
      if (at % 10 === 0) children.push(wire(60, y, x - 20, y));
      if (at % 97 === 3) design.findings.push(finding("1003", `${reference}.1`, "引脚未连接", `Sheet ${number}`, `${x} ${y}`));
    }
    for (const [x, name] of [
      [60, `LINK${number - 1}`],
      [980, `LINK${number}`],
    ]) {
      children.push(wire(x, 100, x, 730), ...connector("OffPage-passive", name, x, 730, -270));
    }
    design.pages.push(page("top", `Sheet ${number}`, `${number}`, children, symbols));
  }
  return design;
}
