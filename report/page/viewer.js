// The page that is shown: pan and zoom, lit and dimmed parts, lit nets, pinned findings, links to other pages.
//
// While the page moves, only a transform of the whole drawing changes, which the browser composes without drawing the
// objects again; they are drawn again, sharp, when a change of scale has come to rest.

import { select } from "d3-selection";
import { zoom, zoomIdentity } from "d3-zoom";

import { boxOf, Drawing } from "./drawing.js";
import { addNets, addOverlay, scalePins } from "./overlay.js";
import { followPointer } from "./pointer.js";
import { comment, text } from "./texts.js";

const LARGEST_SCALE = 12;
const REST_MILLISECONDS = 120;
const MARGIN = 24; // pixels around a page that is shown whole
const CLOSE = 3; // the scale at which a thing is shown that was jumped to
const KEPT = 24; // drawings that are kept for when their page is shown again
const MOVES = 3; // pixels that a click may move

export class Viewer {
  // `events`, each called by what the user does: pointAt(thing), choose(thing), openPin(pin), follow(link), moved(); a thing
  // is {references, nets, pin}, what is under the pointer.
  constructor(frame, model, events) {
    this.frame = frame;
    this.model = model;
    this.events = events;
    this.drawings = new Map();
    this.lit = { references: new Set(), nets: new Set() };
    this.transform = zoomIdentity;
    this.zoom = zoom()
      .scaleExtent([0.05, LARGEST_SCALE])
      .clickDistance(MOVES)
      .on("zoom", ({ transform }) => this.#move(transform));
    this.surface = select(frame).call(this.zoom).on("dblclick.zoom", null);
    followPointer(
      frame,
      (event) => this.#thingAt(event),
      (thing) => events.pointAt(thing),
    );
    frame.addEventListener("click", (event) => this.#click(event));
    frame.addEventListener("keydown", (event) => {
      if (event.key === "Enter" && event.target.closest(".pin, .link")) this.#click(event);
    });
    frame.addEventListener("focusin", (event) => this.#focus(event.target));
    new ResizeObserver(() => this.#resized()).observe(frame);
  }

  show(index) {
    if (this.current?.page.index === index) return;
    this.current?.svg.remove();
    this.current = this.drawings.get(index) ?? new Drawing(this.model.pages[index]);
    this.drawings.delete(index);
    this.drawings.set(index, this.current); // the last one shown is the last one to go
    if (this.drawings.size > KEPT) this.drawings.delete(this.drawings.keys().next().value);
    this.frame.append(this.current.svg);
    if (!this.current.hits) addOverlay(this.current, this.model);
    this.addNets();
    this.drawnScale = 0;
    this.fit();
    this.light(this.lit);
  }

  // Once the nets are known.
  addNets() {
    addNets(this.current, this.model);
    this.label();
    this.light(this.lit);
  }

  // Where the pointer is or what was chosen, marked on the page.
  light({ references, nets }) {
    this.lit = { references: new Set(references), nets: new Set(nets) };
    for (const hit of this.current.hits) {
      const lit = this.lit.references.has(hit.reference);
      hit.node.classList.toggle("lit", lit);
      if (!hit.fitted) for (const element of hit.elements) element.classList.toggle("lit", lit);
    }
    for (const { net, bus, node } of [
      ...(this.current.wires ?? []),
      ...(this.current.names ?? []),
      ...(this.current.links ?? []),
    ]) {
      const lit = bus ? bus.nets.some((one) => this.lit.nets.has(one)) : this.lit.nets.has(net);
      node.classList.toggle("lit", lit);
    }
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

  // What is in the middle, in units of the page, and the scale; null when the page is shown whole.
  get view() {
    if (this.wholePage) return null;
    const { x, y, k } = this.transform;
    return { x: (this.frame.clientWidth / 2 - x) / k, y: (this.frame.clientHeight / 2 - y) / k, scale: k };
  }

  set view(wanted) {
    if (!wanted) return this.fit();
    const scale = Math.min(LARGEST_SCALE, Math.max(this.zoom.scaleExtent()[0], wanted.scale));
    this.surface.call(
      this.zoom.transform,
      zoomIdentity
        .translate(this.frame.clientWidth / 2, this.frame.clientHeight / 2)
        .scale(scale)
        .translate(-wanted.x, -wanted.y),
    );
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
    this.view = { x: (left + right) / 2, y: (top + bottom) / 2, scale: Math.min(CLOSE, room) };
  }

  lookAtParts(references) {
    const wanted = new Set(references);
    this.lookAt(this.current.hits.filter((hit) => wanted.has(hit.reference)).map((hit) => hit.box));
  }

  lookAtNet(net) {
    this.lookAt((this.current.wires ?? []).filter((wire) => wire.net === net).map(({ node }) => boxOf(node)));
  }

  lookAtPlace({ x, y }) {
    this.lookAt([{ x: x - 40, y: y - 40, width: 80, height: 80 }]);
  }

  // A connector of another page that was followed; it flashes, since nothing else tells which it was.
  lookAtConnector(connector) {
    const { x, y, width, height } = connector.box;
    this.lookAt([{ x: x - 60, y: y - 60, width: width + 120, height: height + 120 }]);
    this.#flash(this.current.nodes.get(connector.element));
  }

  lookAtElement(element) {
    const node = this.current.nodes.get(element);
    if (!node) return;
    this.lookAt([boxOf(node)]);
    this.#flash(node);
  }

  #flash(node) {
    for (const old of this.frame.querySelectorAll(".flash")) old.classList.remove("flash");
    if (!node) return;
    void node.getBoundingClientRect(); // so that the animation begins again
    node.classList.add("flash");
  }

  markPin(id) {
    for (const pin of this.frame.querySelectorAll(".pin")) pin.classList.toggle("chosen", pin.dataset.pin === String(id));
  }

  // In the language that is shown.
  label() {
    for (const node of this.frame.querySelectorAll(".pin")) {
      const { findings } = this.model.pins[node.dataset.pin];
      const words = findings.map((finding) => `${finding.number}: ${finding.value}, ${comment(finding.comment)}`).join("\n");
      node.setAttribute("aria-label", findings.length > 1 ? `${findings.length} ${text("findings")}: ${words}` : words);
      node.querySelector("title").textContent = words;
    }
    for (const { node, sheet, connector, destinations } of this.current.links ?? []) {
      const pages = (sheet ? sheet.pages : [...new Set(destinations.map(({ page }) => page))]).map(
        (page) => this.model.pages[page].name,
      );
      node.setAttribute("aria-label", text("leadsTo", { name: sheet?.name ?? connector.name, pages: pages.join(", ") }));
    }
  }

  // What is under the pointer. Of a net, also the pin whose line is nearest to it.
  #thingAt({ target, clientX, clientY }) {
    const { reference, net, group, bus, link } = target.dataset ?? {};
    const { wiring } = this.model.pages[this.current.page.index];
    if (reference) return thing([reference], []);
    if (bus !== undefined) return thing([], wiring.buses[bus].nets);
    if (group !== undefined) {
      const pin = this.#pinAt(wiring.groups[group], clientX, clientY);
      if (net) return thing([], [net], { pin });
      return thing(pin ? [pin.reference] : [], [], { pin, alone: !pin });
    }
    if (net) return thing([], [net]);
    if (link === undefined) return null;
    const found = this.current.links[link];
    return thing([], found.net ? [found.net] : [], { link: found });
  }

  #pinAt(group, clientX, clientY) {
    const { left, top } = this.frame.getBoundingClientRect();
    const [x, y] = this.transform.invert([clientX - left, clientY - top]);
    const off = (pin) => distanceToLine(x, y, pin);
    const nearest = [...group.pins].sort((one, other) => off(one) - off(other))[0];
    return nearest && off(nearest) < 6 ? nearest : undefined;
  }

  #click(event) {
    const pin = this.model.pins[event.target.closest(".pin")?.dataset.pin];
    const thing = pin ? null : this.#thingAt(event);
    if (pin) this.events.openPin(pin);
    else if (thing?.link) this.events.follow(thing.link);
    else this.events.choose(thing ?? { references: [], nets: [] });
  }

  // What was reached with a key may be out of sight.
  #focus(target) {
    if (target === this.frame) return;
    const [node, frame] = [target.getBoundingClientRect(), this.frame.getBoundingClientRect()];
    if (node.left >= frame.left && node.right <= frame.right && node.top >= frame.top && node.bottom <= frame.bottom) return;
    const [x, y] = this.transform.invert([(node.left + node.right) / 2 - frame.left, (node.top + node.bottom) / 2 - frame.top]);
    this.lookAtPlace({ x, y });
  }

  #move(transform) {
    this.transform = transform;
    this.wholePage = false;
    if (!this.drawnScale) this.#draw();
    const { svg } = this.current;
    svg.style.transform = `translate(${transform.x}px, ${transform.y}px) scale(${transform.k / this.drawnScale})`;
    clearTimeout(this.resting);
    this.resting = setTimeout(() => this.#rest(), REST_MILLISECONDS);
  }

  #rest() {
    if (this.transform.k !== this.drawnScale) this.#draw();
    this.events.moved();
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

function thing(references, nets, more = {}) {
  const { pin, link, alone } = more;
  return {
    references,
    nets,
    ...more,
    key: [references, nets, alone, pin && `${pin.reference}.${pin.number}`, link?.node.dataset.link].join("|"),
  };
}

function distanceToLine(x, y, { x: x1, y: y1, bodyX: x2, bodyY: y2 }) {
  const length = (x2 - x1) ** 2 + (y2 - y1) ** 2;
  const share = length ? Math.max(0, Math.min(1, ((x - x1) * (x2 - x1) + (y - y1) * (y2 - y1)) / length)) : 0;
  return Math.hypot(x - x1 - share * (x2 - x1), y - y1 - share * (y2 - y1));
}
