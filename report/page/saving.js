// Ways out of the page: files, the clipboard, and the place where the page says what it did.

// A file that the browser saves.
export function save(name, type, text) {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(new Blob([text], { type }));
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10_000);
}

// The way that works for a page from a file in every browser, in the turn of a key or a click.
export function copy(text) {
  // Before any other listener and in place of it: the page's own answers Ctrl+C by copying, without end if it heard this.
  const take = (event) => {
    event.clipboardData.setData("text/plain", text);
    event.preventDefault();
    event.stopImmediatePropagation();
  };
  document.addEventListener("copy", take, { capture: true });
  const done = document.execCommand("copy");
  document.removeEventListener("copy", take, { capture: true });
  return done;
}

// The text of a file that the user chooses; null when none is chosen.
export function chooseFile(accept) {
  return new Promise((resolve) => {
    const field = document.createElement("input");
    Object.assign(field, { type: "file", accept });
    field.addEventListener("change", () => resolve(field.files[0] ?? null));
    field.addEventListener("cancel", () => resolve(null));
    field.click();
  });
}

// Read out to those who do not see it, and gone after a while.
export function say(words) {
  const room = document.getElementById("said");
  room.textContent = words;
  room.hidden = false;
  clearTimeout(room.timer);
  room.timer = setTimeout(() => (room.hidden = true), 6000);
}
