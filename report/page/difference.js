// What differs between two reports of a design, part by part.

import { inNaturalOrder } from "./quantities.js";

const MEMBERS = [
  ["Value", "value"],
  ["PartNumber", "partNumber"],
  ["PartName", "partName"],
  ["PCBFootprint", "footprint"],
];

// Rows {id, change, reference, member, before, now}: parts that came, went, or changed, and whether they are fitted, which
// is said by the name of its text.
export function changesBetween(before, now) {
  const changes = [];
  const note = (change, reference, member = "", from = "", to = "") =>
    changes.push({ id: changes.length, change, reference, member, before: from, now: to });
  const references = [...new Set([...before.parts.keys(), ...now.parts.keys()])].sort(inNaturalOrder);
  for (const reference of references) {
    const [old, present] = [before.parts.get(reference), now.parts.get(reference)];
    // Being in the bill counts: a part can be drawn and left out of it.
    if (!old || (!old.line && present?.line)) note("added", reference, "value", "", present.line?.Value ?? "");
    else if (!present || (old.line && !present.line)) note("removed", reference, "value", old.line?.Value ?? "");
    else {
      for (const [member, title] of MEMBERS) {
        const [from, to] = [old.line?.[member] ?? "", present.line?.[member] ?? ""];
        if (from !== to) note("changed", reference, title, from, to);
      }
      const [from, to] = [old, present].map(({ fitted }) => (fitted ? "fitted" : "absent"));
      if (from !== to) note(present.fitted ? "nowFitted" : "nowAbsent", reference, "state", from, to);
    }
  }
  return changes;
}
