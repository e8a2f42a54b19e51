// The divider between page and lists: dragged, moved with the arrow keys, put back with a double click. On a narrow screen
// the lists are below the page, and it moves up and down.

const [LEAST, MOST, STEP] = [20, 80, 2]; // of 100 for the lists

export function addDivider(divider, room) {
  const narrow = matchMedia("(max-width: 600px), (max-width: 900px) and (min-height: 501px)");
  const turn = () => divider.setAttribute("aria-orientation", narrow.matches ? "horizontal" : "vertical");
  narrow.addEventListener("change", turn);
  turn();
  const move = (share) => {
    const kept = Math.min(MOST, Math.max(LEAST, share));
    room.style.setProperty("--lists", `${kept}%`);
    divider.setAttribute("aria-valuenow", Math.round(kept));
  };
  const shareAt = (x, y) => {
    const box = room.getBoundingClientRect();
    return narrow.matches ? (100 * (box.bottom - y)) / box.height : (100 * (box.right - x)) / box.width;
  };
  const share = () => {
    const box = divider.getBoundingClientRect();
    return shareAt(box.right, box.bottom);
  };
  divider.setAttribute("aria-valuenow", Math.round(share()));
  divider.addEventListener("pointerdown", (event) => divider.setPointerCapture(event.pointerId));
  divider.addEventListener("pointermove", (event) => {
    if (divider.hasPointerCapture(event.pointerId)) move(shareAt(event.clientX, event.clientY));
  });
  divider.addEventListener("dblclick", () => room.style.removeProperty("--lists"));
  divider.addEventListener("keydown", (event) => {
    const by = { ArrowLeft: STEP, ArrowUp: STEP, ArrowRight: -STEP, ArrowDown: -STEP }[event.key];
    if (!by) return;
    move(share() + by);
    event.preventDefault();
    event.stopPropagation();
  });
}
