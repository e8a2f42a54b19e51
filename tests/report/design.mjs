// Designs for the tests of the report, small and by hand, in the form of the page files and messages.

const STYLE = "stroke:#800000;stroke-width:1;fill:none;stroke-dasharray:0,0";

const element = (name, attr, more = {}) => ({ name, attr, ...more });
const words = (value, x, y) => element("text", {
  style: "stroke:#000000;stroke-width:0;font-size:9;fill:#000000", transform: `translate(${x},${y}) rotate(0)`,
  "dominant-baseline": "hanging",
}, { value });

const symbol = (id) => element("g", { id }, {
  children: [
    element("rect", { style: STYLE, x: "-10", y: "-20", width: "20", height: "40" }),
    element("use", { transform: "translate(0,20) rotate(-270)", "xlink:href": "#PackagePinShort" }),
  ],
});

export function part(reference, x, y, value, name = "Device:R/1 \"x\"") {
  return [
    element("use", { id: reference, transform: `translate(${x} ${y}) rotate(0) scale(1,1)`, "xlink:href": `#${name}` }),
    words(reference, x + 14, y - 10), words(value, x + 14, y + 4),
  ];
}

export function page(schematic, name, key, children, symbols = ["Device:R/1 \"x\""]) {
  const pin = element("g", { id: "PackagePinShort" }, {
    children: [element("line", { x1: "0", y1: "0", x2: "10", y2: "0", style: "stroke:#FF0000;stroke-width:1;fill:none" })],
  });
  const drawing = {
    id: "SCH_View", style: "background:#FFFFFF", height: "800", width: "1100",
    children: [
      { name: "defs", children: [pin, ...symbols.map(symbol)] },
      element("g", { id: name }, { children }),
    ],
  };
  return { schematic, name, key, drawing };
}

const line = (reference, value, number) => ({
  PartNumber: number, Value: value, PartRef: reference, PartName: "R", PCBFootprint: "0603", PinNumber: "2",
});

export const finding = (id, value, comment, pageName, at) => ({
  id, RequiredValue: "", ActualValue: value, Comment: comment, PagePos: at, PageName: pageName, ViewBox: "", Sch: "top",
});

// Two pages; R1 and R10 are equal, R3 is not fitted and on the second page, with R20, which has two units.
export function small() {
  const wire = element("line", { style: `${STYLE};stroke-linecap:round`, x1: "100", y1: "120", x2: "300", y2: "120" });
  return {
    path: "C:\\设计\\放大器.dsn", pins: "10",
    bom: {
      Stick: [line("R1", "10k", "A-1"), line("R10", "10k", "A-1"), line("R2", "4.7uF", ""), line("R20", "电阻", "B")],
      NotStick: [line("R3", "10k", "A-1")],
      NotPartNumber: [line("R2", "4.7uF", "")],
    },
    checks: ["1001", "1002", "1003", "1004"],
    findings: [
      finding("1003", "R2.1", "引脚未连接", "main", "500 120"), finding("1004", "R3", "R3器件无封装", "第二页", "200 200"),
      finding("1001", "R1", "R10位号重名", "elsewhere", "x y"),
    ],
    properties: [["Value", "10k"], ["Datasheet", "<b>bold</b>"]],
    nets: { CLK: ["R1.1", "R10.2"], "/sub/RESET": ["R3.1"] },
    pages: [
      page("top", "main", "1", [wire, ...part("R1", 100, 100, "10k"), ...part("R10", 300, 100, "10k"),
        ...part("R2", 500, 100, "4.7uF"), words("CLK", 180, 108), words("Filter stage", 60, 700)]),
      page("top", "第二页", "2", [...part("R3", 200, 200, "10k"), words("0603", 230, 225), words("5%", 230, 190), ...part("R20", 400, 200, "电阻"),
        ...part("R20", 600, 200, "电阻"), words("RESET", 210, 300)]),
    ],
  };
}

// More lines than are seen at once, with texts wider than their columns.
export function long() {
  const design = small();
  design.bom.Stick.push(...Array.from({ length: 80 }, (_, at) => line(`C${at}`, `${at}uF/6.3V`, "")));
  design.bom.Stick[0].PCBFootprint = "Resistor_THT:R_Axial_DIN0204_L3.6mm_D1.6mm_P7.62mm_Horizontal";
  return design;
}

// What must stay text: markup, scripts, addresses to fetch, names that are no elements.
export function hostile() {
  const evil = "<img src=x onerror=\"window.ran = 1\"></script><script>window.ran = 1</script>";
  const design = small();
  design.path = `C:\\${evil}`;
  design.pages[0].name = evil;
  design.findings[0] = finding("1003", evil, evil, evil, "500 120");
  design.bom.Stick.push(line(evil.replaceAll(" ", ""), evil, evil));
  design.properties.push([evil, evil]);
  design.nets[evil] = [evil];
  design.pages[0].drawing.children[1].children.push(
    words(evil, 10, 10),
    element("script", {}, { value: "window.ran = 1" }),
    element("image", { href: "http:" + "//127.0.0.1:9/picture.png" }),
    element("foreignObject", {}, { children: [element("iframe", { src: "file:///" })] }),
    element("rect", { style: "fill:url(http:" + "//127.0.0.1:9/x)", x: "1", y: "1", width: "5", height: "5", onclick: "window.ran = 1" }),
    element("use", { id: "R2", transform: "translate(0 0)", "xlink:href": "http:" + "//127.0.0.1:9/x.svg#a" }),
  );
  return design;
}

// One page of so many objects: parts, their texts, and wires.
export function large(objects) {
  const design = small();
  const children = [];
  for (let number = 1; children.length < objects; number++) {
    const [x, y] = [60 + (number % 40) * 60, 60 + Math.floor(number / 40) * 60];
    children.push(...part(`R${number}`, x, y, "10k"),
      element("line", { style: STYLE, x1: x, y1: y + 30, x2: x + 60, y2: y + 30 }));
  }
  design.pages = [page("top", "large", "1", children)];
  Object.assign(design.pages[0].drawing, { width: "2600", height: "2200" });
  design.findings = [];
  return design;
}
