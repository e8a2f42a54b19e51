// What lies over a drawing and is as large as it: boxes that light parts and catch the pointer, and the pins of findings.

import { boxOf, svgElement } from "./drawing.js";

const PIN_RADIUS = 9; // units of a pin's own, see scalePins
const NEAR = 80;      // units of the page within which a part's texts are looked for
const TURN = 40;      // degrees between pins at one place
const SAID_ON_PAGES = ["Value", "PCBFootprint", "PartNumber", "PartName"];

// The drawing gets `hits`, {reference, fitted, elements, box, node} of each placed part. It must be rendered.
export function addOverlay(drawing, model) {
  const overlay = svgElement("g", { class: "overlay" });
  drawing.hits = drawing.parts.map((part) => ({
    ...part, fitted: model.parts.get(part.reference).fitted, elements: [part.element], box: boxOf(part.element),
  }));
  const bySize = [...drawing.hits].sort((one, other) => area(other.box) - area(one.box));
  for (const hit of bySize) {
    const { x, y, width, height } = hit.box;
    hit.node = svgElement("rect", {
      class: "hit", x: x - 3, y: y - 3, width: width + 6, height: height + 6, rx: 3, "data-reference": hit.reference,
    });
    overlay.append(hit.node);
  }
  gatherTexts(drawing, model);
  for (const hit of drawing.hits.filter(({ fitted }) => !fitted)) {
    for (const element of [hit.node, ...hit.elements]) element.classList.add("absent");
  }
  const taken = new Map(); // place -> pins there
  for (const finding of model.findings.filter((finding) => finding.placed && finding.page === drawing.page.index)) {
    const place = `${finding.x} ${finding.y}`;
    const before = taken.get(place) ?? 0;
    taken.set(place, before + 1);
    overlay.append(pinOf(finding, (before % 2 ? 1 : -1) * Math.ceil(before / 2) * TURN));
  }
  drawing.svg.append(overlay);
}

// Pins keep their size while the page changes its own.
export function scalePins(drawing, scale) {
  for (const pin of drawing.svg.querySelectorAll(".pin")) {
    pin.setAttribute("transform", `translate(${pin.dataset.x} ${pin.dataset.y}) scale(${scale})`);
  }
}

// A part's texts: those in it, and those near it that say what it is or were drawn right after it.
function gatherTexts(drawing, model) {
  for (const { value, element, follows } of drawing.texts) {
    const box = boxOf(element);
    const middle = { x: box.x + box.width / 2, y: box.y + box.height / 2 };
    const says = (hit) => isNameOf(value, hit.reference)
      || SAID_ON_PAGES.some((member) => model.parts.get(hit.reference).line?.[member] === value);
    const near = drawing.hits
      .map((hit) => ({ hit, after: hit.element === follows, distance: distanceTo(hit.box, middle) }))
      .filter(({ hit, after, distance }) => distance === 0 || (distance < NEAR && (after || says(hit))))
      .sort((one, other) => other.after - one.after
        || isNameOf(value, other.hit.reference) - isNameOf(value, one.hit.reference) || one.distance - other.distance);
    near[0]?.hit.elements.push(element);
  }
}

// Its tip is at the place, whichever way it leans; its title and label are the viewer's.
function pinOf(finding, lean) {
  const pin = svgElement("g", {
    class: `pin check${finding.check}`, "data-finding": finding.id, "data-x": finding.x, "data-y": finding.y,
    tabindex: 0, role: "button",
  });
  const leaning = svgElement("g", { transform: `rotate(${lean})` });
  const [side, top, middle] = [PIN_RADIUS * 0.7, PIN_RADIUS * -1.4, PIN_RADIUS * -1.9];
  leaning.append(svgElement("path", { d: `M 0 0 L ${-side} ${top} A ${PIN_RADIUS} ${PIN_RADIUS} 0 1 1 ${side} ${top} Z` }));
  const number = svgElement("text", {
    y: middle, transform: `rotate(${-lean} 0 ${middle})`, "text-anchor": "middle", "dominant-baseline": "central",
    "font-size": finding.number > 99 ? 8 : 10,
  });
  number.textContent = finding.number;
  leaning.append(number);
  pin.append(svgElement("title"), leaning);
  return pin;
}

// Units of one part bear a letter after its reference.
function isNameOf(value, reference) {
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
