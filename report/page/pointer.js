// Pointing at things. What scrolls or moves under a pointer at rest comes under it too, but only a pointer that moves points.

// Calls tell(thing) when the pointer has moved onto another of the element's things, and tell(null) when it left them;
// `thingAt(event)` gives what is under it with its `key`, or null. A finger does not point: it only touches.
export function followPointer(element, thingAt, tell) {
  let place = "";
  let last;
  const arrive = (thing) => {
    if (thing?.key !== last) tell(thing);
    last = thing?.key;
  };
  element.addEventListener("pointermove", (event) => {
    if (event.pointerType === "touch") return;
    const now = `${event.clientX} ${event.clientY}`;
    if (now !== place) arrive(thingAt(event));
    place = now;
  });
  element.addEventListener("pointerleave", () => arrive(null));
}
