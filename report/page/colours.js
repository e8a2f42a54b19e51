// A drawing's colours: as they are on white paper, and lightened on dark paper until they can be told from it.

export const DARK_PAPER = "#1a1f26";
const CONTRAST = 4.5;
const COLOUR = /^#[0-9a-f]{6}$/i;

// What a colour is written as in the drawing; the style sheet that it needs is made on the way.
export function inkOf(value) {
  if (!COLOUR.test(value)) return value;
  const name = `--ink-${value.slice(1).toLowerCase()}`;
  if (!known.has(name)) {
    known.add(name);
    sheet ??= document.head.appendChild(document.createElement("style")).sheet;
    sheet.insertRule(`@media screen and (prefers-color-scheme: dark) { :root { ${name}: ${onDark(value)} } }`);
  }
  return `var(${name}, ${value})`;
}

const known = new Set();
let sheet;

export function onDark(colour) {
  const parts = [1, 3, 5].map((at) => parseInt(colour.slice(at, at + 2), 16));
  const paper = luminance(DARK_PAPER);
  for (let white = 0; white <= 1; white += 0.05) {
    const mixed = `#${parts
      .map((part) =>
        Math.round(part + (255 - part) * white)
          .toString(16)
          .padStart(2, "0"),
      )
      .join("")}`;
    if ((luminance(mixed) + 0.05) / (paper + 0.05) >= CONTRAST) return mixed;
  }
  return "#ffffff";
}

// As the accessibility guidelines define it.
function luminance(colour) {
  const [red, green, blue] = [1, 3, 5]
    .map((at) => parseInt(colour.slice(at, at + 2), 16) / 255)
    .map((part) => (part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4));
  return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}
