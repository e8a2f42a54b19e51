// The bill as rows and as texts for other programs.

import { inNaturalOrder } from "./quantities.js";
import { stateOf, text } from "./texts.js";

// One row for equal parts, or one for each part when `single`.
export function billRows(model, single) {
  const pagesOf = (references) =>
    [...new Set(references.flatMap((reference) => model.parts.get(reference).pages))]
      .sort((one, other) => one - other)
      .map((page) => model.pages[page].name)
      .join(", ");
  if (!single) return model.lines.map((line) => ({ ...line, page: pagesOf(line.references) }));
  return model.lines
    .flatMap((line) =>
      line.references.map((reference, at) => ({
        ...line,
        id: `${line.id} ${at}`,
        references: [reference],
        quantity: 1,
        page: pagesOf([reference]),
      })),
    )
    .sort((one, other) => inNaturalOrder(one.references[0], other.references[0]));
}

// The lines of a table, its heads first. `fields` are [[member, title]...]; members that begin with "box " are boxes, which
// are said as `ticked` or `open`, and as "2/3" when some of a line's parts are ticked.
export function tableOf(rows, fields, marks, { ticked = "x", open = "" } = {}) {
  const tick = ({ references }, box) => {
    const count = references.filter((reference) => marks.has(box, reference)).length;
    return count === 0 ? open : count === references.length ? ticked : `${count}/${references.length}`;
  };
  const value = (row, field) => {
    if (field.startsWith("box ")) return tick(row, field.slice(4));
    if (field === "references") return row.references.join(", ");
    return field === "fitted" ? stateOf(row.fitted) : String(row[field] ?? "");
  };
  return [fields.map(([, title]) => title), ...rows.map((row) => fields.map(([field]) => value(row, field)))];
}

// For spreadsheets, which take it for UTF-8 by its mark. What they would calculate is made a text.
export function csvOf(table) {
  const cell = (value) => (/["\n\r,;]/.test(value) ? `"${value.replaceAll('"', '""')}"` : value);
  return `\ufeff${table.map((row) => row.map((value) => cell(harmless(value))).join(",")).join("\r\n")}\r\n`;
}

// For the clipboard: a cell between tabs.
export function tabbedOf(table) {
  return table.map((row) => row.map((value) => harmless(value).replace(/[\t\r\n]+/g, " ")).join("\t")).join("\n");
}

function harmless(value) {
  return /^[=@\t\r]/.test(value) || /^[+-](?![\d.]+[\w%]*$)/.test(value) ? `'${value}` : value;
}

export function boxTitle({ id, name }) {
  return name || text(id);
}
