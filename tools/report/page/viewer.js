// The page that is shown: pan and zoom, lit and dimmed parts, pinned findings.
//
// While the page moves, only a transform of the whole drawing changes, which the browser composes without drawing the
// objects again; they are drawn anew, sharp, when a change of scale has come to rest.

import { select } from "d3-selection";
import { zoom, zoomIdentity } from "d3-zoom";

import { boxOf, Drawing } from "./drawing.js";
import { addOverlay, scalePins } from "./overlay.js";
import { followPointer } from "./pointer.js";
import { comment } from "./texts.js";

const LARGEST_SCALE = 12;
const REST_MILLISECONDS = 120;
const MARGIN = 24;       // pixels around a page that is shown whole
const CLOSE = 3;         // the scale at which a thing is shown that was jumped to

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
    followPointer(frame, (target) => target.dataset.reference, (reference) => events.pointAt(reference ? [reference] : []));
    frame.addEventListener("click", (event) => this.#click(event.target));
    frame.addEventListener("keydown", (event) => {
      if (event.key === "Enter" && event.target.closest(".pin")) this.#click(event.target);
    });
    frame.addEventListener("focusin", (event) => this.#focus(event.target));
    new ResizeObserver(() => this.#resized()).observe(frame);
  }

  show(index) {
    if (this.current?.page.index === index) return;
    const page = this.model.pages[index];
    this.current?.svg.remove();
    if (!this.drawings.has(index)) this.drawings.set(index, new Drawing(page));
    this.current = this.drawings.get(index);
    this.frame.append(this.current.svg);
    if (!this.current.hits) addOverlay(this.current, this.model);
    this.labelPins();
    this.drawnScale = 0;
    this.fit();
    this.light(this.lit);
  }

  // Where the pointer is or what was chosen, marked on the page.
  light(references) {
    this.lit = new Set(references);
    for (const hit of this.current.hits) {
      const lit = this.lit.has(hit.reference);
      hit.node.classList.toggle("lit", lit);
      if (!hit.fitted) for (const element of hit.elements) element.classList.toggle("lit", lit);
    }
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

  // In the language that is shown.
  labelPins() {
    for (const pin of this.frame.querySelectorAll(".pin")) {
      const finding = this.#findingOf(pin);
      const words = `${finding.number}: ${finding.value}, ${comment(finding.comment)}`;
      pin.setAttribute("aria-label", words);
      pin.querySelector("title").textContent = words;
    }
  }

  #findingOf(target) {
    return this.model.findings[target.closest(".pin")?.dataset.finding];
  }

  #click(target) {
    const finding = this.#findingOf(target);
    if (finding) this.events.openFinding(finding);
    else this.events.choose(target.dataset.reference ? [target.dataset.reference] : []);
  }

  // A pin that was reached with a key may be out of sight.
  #focus(target) {
    const finding = this.#findingOf(target);
    if (!finding) return;
    const [pin, frame] = [target.getBoundingClientRect(), this.frame.getBoundingClientRect()];
    if (pin.left < frame.left || pin.right > frame.right || pin.top < frame.top || pin.bottom > frame.bottom) {
      this.lookAtFinding(finding);
    }
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
    scalePins(this.current, 1 / k);
  }

  #resized() {
    if (this.current && (this.wholePage || !this.drawnScale)) this.fit();
  }
}
