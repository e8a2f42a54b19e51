// The divider between page and lists: dragged, moved with the arrow keys, put back with a double click.

const [LEAST, MOST, STEP] = [20, 80, 2]; // of 100 for the lists

export function addDivider(divider, room) {
  const move = (share) => {
    const kept = Math.min(MOST, Math.max(LEAST, share));
    room.style.setProperty("--lists", `${kept}%`);
    divider.setAttribute("aria-valuenow", Math.round(kept));
  };
  const share = () => {
    const box = room.getBoundingClientRect();
    return (100 * (box.right - divider.getBoundingClientRect().right)) / box.width;
  };
  divider.setAttribute("aria-valuenow", Math.round(share()));
  divider.addEventListener("pointerdown", (event) => divider.setPointerCapture(event.pointerId));
  divider.addEventListener("pointermove", (event) => {
    if (!divider.hasPointerCapture(event.pointerId)) return;
    const box = room.getBoundingClientRect();
    move((100 * (box.right - event.clientX)) / box.width);
  });
  divider.addEventListener("dblclick", () => room.style.removeProperty("--lists"));
  divider.addEventListener("keydown", (event) => {
    const by = { ArrowLeft: STEP, ArrowRight: -STEP }[event.key];
    if (!by) return;
    move(share() + by);
    event.preventDefault();
    event.stopPropagation();
  });
}
