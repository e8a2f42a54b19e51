// Pointing at things. What scrolls or moves under a pointer at rest comes under it too, but only a pointer that moves points.

// Calls tell(target) when the pointer has moved onto another of the element's targets, and tell(null) when it left them.
export function followPointer(element, targetOf, tell) {
  let place = "";
  let last = null;
  const arrive = (target) => {
    if (target !== last) tell(target);
    last = target;
  };
  element.addEventListener("pointermove", (event) => {
    const now = `${event.clientX} ${event.clientY}`;
    if (now !== place) arrive(targetOf(event.target) ?? null);
    place = now;
  });
  element.addEventListener("pointerleave", () => arrive(null));
}
