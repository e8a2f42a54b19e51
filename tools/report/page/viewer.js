// The page that is shown: pan and zoom, lit and dimmed parts, pinned findings.
//
// While the page moves, only a transform of the whole drawing changes, which the browser composes without drawing the
// objects again; they are drawn anew, sharp, when a change of scale has come to rest.

import { select } from "d3-selection";
import { zoom, zoomIdentity } from "d3-zoom";

import { boxOf, Drawing, svgElement } from "./drawing.js";

const LARGEST_SCALE = 12;
const REST_MILLISECONDS = 120;
const MARGIN = 24;       // pixels around a page that is shown whole
const CLOSE = 3;         // the scale at which a thing is shown that was jumped to
const PIN_RADIUS = 9;    // pixels
const NEAR = 80;         // units within which a part's texts are looked for

export class Viewer {
  // `events`: pointAt(references), choose(references), openFinding(finding), each called by what the user does.
  constructor(frame, model, events) {
    this.frame = frame;
    this.model = model;
    this.events = events;
    this.drawings = new Map();
    this.lit = new Set();
    this.transform = zoomIdentity;
    this.zoom = zoom().scaleExtent([0.05, LARGEST_SCALE]).on("zoom", ({ transform }) => this.#move(transform));
    this.surface = select(frame).call(this.zoom).on("dblclick.zoom", null);
    frame.addEventListener("pointerover", (event) => events.pointAt(this.#referencesAt(event)));
    frame.addEventListener("pointerleave", () => events.pointAt([]));
    frame.addEventListener("click", (event) => this.#click(event));
    new ResizeObserver(() => this.#resized()).observe(frame);
  }

  show(index) {
    if (this.current?.page.index === index) return;
    const page = this.model.pages[index];
    this.current?.svg.remove();
    if (!this.drawings.has(index)) this.drawings.set(index, new Drawing(page));
    this.current = this.drawings.get(index);
    this.frame.append(this.current.svg);
    if (!this.current.overlay) this.#addOverlay(this.current);
    this.drawnScale = 0;
    this.fit();
    this.light(this.lit);
  }

  // Where the pointer is or what was chosen, marked on the page.
  light(references) {
    this.lit = new Set(references);
    for (const hit of this.current.hits) hit.node.classList.toggle("lit", this.lit.has(hit.reference));
    this.current.svg.classList.toggle("some-lit", this.lit.size > 0);
  }

  fit() {
    const { width, height } = this.current.size;
    const { clientWidth, clientHeight } = this.frame;
    if (!clientWidth || !clientHeight) return;
    const scale = Math.min((clientWidth - 2 * MARGIN) / width, (clientHeight - 2 * MARGIN) / height);
    this.zoom.scaleExtent([scale / 2, LARGEST_SCALE]);
    const [x, y] = [(clientWidth - width * scale) / 2, (clientHeight - height * scale) / 2];
    this.surface.call(this.zoom.transform, zoomIdentity.translate(x, y).scale(scale));
    this.wholePage = true;
  }

  zoomBy(factor) {
    this.surface.call(this.zoom.scaleBy, factor);
  }

  panBy(x, y) {
    this.surface.call(this.zoom.translateBy, x / this.transform.k, y / this.transform.k);
  }

  // Brings boxes of the page into the middle, close enough to read.
  lookAt(boxes) {
    if (!boxes.length) return;
    const left = Math.min(...boxes.map((box) => box.x));
    const top = Math.min(...boxes.map((box) => box.y));
    const right = Math.max(...boxes.map((box) => box.x + box.width));
    const bottom = Math.max(...boxes.map((box) => box.y + box.height));
    const { clientWidth, clientHeight } = this.frame;
    const room = Math.min(clientWidth / (right - left + 60), clientHeight / (bottom - top + 60));
    const scale = Math.min(CLOSE, Math.max(room, this.zoom.scaleExtent()[0]));
    const middle = zoomIdentity.translate(clientWidth / 2, clientHeight / 2).scale(scale)
      .translate(-(left + right) / 2, -(top + bottom) / 2);
    this.surface.call(this.zoom.transform, middle);
  }

  lookAtParts(references) {
    const wanted = new Set(references);
    this.lookAt(this.current.hits.filter((hit) => wanted.has(hit.reference)).map((hit) => hit.box));
  }

  lookAtFinding(finding) {
    this.lookAt([{ x: finding.x - 40, y: finding.y - 40, width: 80, height: 80 }]);
  }

  // An element of the page file; it flashes, since nothing else tells which it was.
  lookAtElement(element) {
    const node = this.current.nodes.get(element);
    if (!node) return;
    this.lookAt([boxOf(node)]);
    for (const old of this.frame.querySelectorAll(".flash")) old.classList.remove("flash");
    void node.getBoundingClientRect(); // so that the animation begins anew
    node.classList.add("flash");
  }

  markFinding(finding) {
    for (const pin of this.frame.querySelectorAll(".pin")) {
      pin.classList.toggle("chosen", finding !== null && pin.dataset.finding === String(finding.id));
    }
  }

  // The overlay is as large as the page: boxes that light parts and catch the pointer, and pins.
  #addOverlay(drawing) {
    drawing.overlay = svgElement("g", { class: "overlay" });
    drawing.hits = drawing.parts.map(({ reference, element }) => ({ reference, element, box: boxOf(element) }));
    const bySize = [...drawing.hits].sort((one, other) => area(other.box) - area(one.box));
    for (const hit of bySize) {
      const { x, y, width, height } = hit.box;
      hit.node = svgElement("rect", {
        class: "hit", x: x - 3, y: y - 3, width: width + 6, height: height + 6, rx: 3, "data-reference": hit.reference,
      });
      drawing.overlay.append(hit.node);
    }
    this.#dim(drawing);
    const here = this.model.findings.filter((finding) => finding.placed && finding.page === drawing.page.index);
    for (const finding of here) drawing.overlay.append(pinOf(finding));
    drawing.svg.append(drawing.overlay);
  }

  // What belongs to a part that is not fitted: its symbol, the texts in it, its reference and its value.
  #dim(drawing) {
    const parts = this.model.parts;
    for (const hit of drawing.hits) {
      const part = parts.get(hit.reference);
      if (part.fitted) continue;
      hit.element.classList.add("absent");
      hit.node.classList.add("absent");
    }
    for (const { value, element } of drawing.texts) {
      const place = boxOf(element);
      const point = { x: place.x + place.width / 2, y: place.y + place.height / 2 };
      const near = drawing.hits
        .map((hit) => ({ hit, distance: distanceTo(hit.box, point) }))
        .filter(({ hit, distance }) => distance === 0
          || (distance < NEAR && (isNameOf(value, hit.reference) || parts.get(hit.reference).line?.Value === value)))
        .sort((one, other) => isNameOf(value, other.hit.reference) - isNameOf(value, one.hit.reference)
          || one.distance - other.distance);
      if (near.length && !parts.get(near[0].hit.reference).fitted) element.classList.add("absent");
    }
  }

  #referencesAt(event) {
    const reference = event.target.dataset?.reference;
    return reference ? [reference] : [];
  }

  #click(event) {
    const pin = event.target.closest(".pin");
    if (pin) this.events.openFinding(this.model.findings[Number(pin.dataset.finding)]);
    else this.events.choose(this.#referencesAt(event));
  }

  #move(transform) {
    this.transform = transform;
    this.wholePage = false;
    if (!this.drawnScale) this.#draw();
    const { svg } = this.current;
    svg.style.transform = `translate(${transform.x}px, ${transform.y}px) scale(${transform.k / this.drawnScale})`;
    if (transform.k !== this.drawnScale) {
      clearTimeout(this.resting);
      this.resting = setTimeout(() => this.#draw(), REST_MILLISECONDS);
    }
  }

  #draw() {
    const { svg, size } = this.current;
    const { x, y, k } = this.transform;
    this.drawnScale = k;
    svg.setAttribute("width", size.width * k);
    svg.setAttribute("height", size.height * k);
    svg.style.transform = `translate(${x}px, ${y}px)`;
    for (const pin of svg.querySelectorAll(".pin")) {
      pin.setAttribute("transform", `translate(${pin.dataset.x} ${pin.dataset.y}) scale(${1 / k})`);
    }
  }

  #resized() {
    if (this.current && (this.wholePage || !this.drawnScale)) this.fit();
  }
}

function pinOf(finding) {
  const pin = svgElement("g", {
    class: `pin check${finding.check}`, "data-finding": finding.id, "data-x": finding.x, "data-y": finding.y,
  });
  pin.append(svgElement("path", { d: `M 0 0 L ${-PIN_RADIUS * 0.7} ${-PIN_RADIUS * 1.4} A ${PIN_RADIUS} ${PIN_RADIUS} 0 1 1 `
    + `${PIN_RADIUS * 0.7} ${-PIN_RADIUS * 1.4} Z` }));
  const sign = svgElement("text", { x: 0, y: -PIN_RADIUS * 1.9, "text-anchor": "middle", "dominant-baseline": "central" });
  sign.textContent = "!";
  pin.append(sign);
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
