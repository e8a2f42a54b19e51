// Values of parts as people write them: 4k7, 10uF, 100nF, 0R1, 2.2 kΩ, 1M, 47µF/6.3V.

const PREFIXES = { p: -12, n: -9, u: -6, µ: -6, μ: -6, m: -3, k: 3, K: 3, M: 6, G: 9, R: 0, r: 0, Ω: 0 };
const PLAIN = /^([+-]?\d*[.,]?\d+)\s*([pnuµμmkKMGRrΩ]?)\s*(.*)$/u;
const INFIX = /^(\d+)([pnuµμmkKMGRr])(\d+)(.*)$/u;

// {number, unit} of a text that begins with a quantity, or null. The unit is what distinguishes 10uF from 10uH.
export function quantityIn(text) {
  const words = String(text ?? "").trim();
  const infix = INFIX.exec(words);
  if (infix) return made(`${infix[1]}.${infix[3]}`, infix[2], infix[4]);
  const plain = PLAIN.exec(words);
  return plain && made(plain[1].replace(",", "."), plain[2], plain[3]);
}

function made(digits, prefix, rest) {
  const unit = /^\s*(ohms?|Ω|Hz|[FHVAW])?/iu.exec(rest)[1] ?? "";
  return { number: Number(digits) * 10 ** (PREFIXES[prefix] ?? 0), unit: /^(ohms?|Ω)$/iu.test(unit) ? "" : unit.toUpperCase() };
}

// "R2" stands before "R10". One collator serves all: making one for each comparison is slow.
const collator = new Intl.Collator("en", { numeric: true });

export function inNaturalOrder(one, other) {
  return collator.compare(String(one ?? ""), String(other ?? ""));
}

// 470 before 4k7 before 10k, then 10pF before 4.7uF, then what is no quantity.
export function byQuantity(one, other) {
  const [first, second] = [quantityIn(one), quantityIn(other)];
  if (!first || !second) return Boolean(second) - Boolean(first) || inNaturalOrder(one, other);
  return inNaturalOrder(first.unit, second.unit) || first.number - second.number || inNaturalOrder(one, other);
}
