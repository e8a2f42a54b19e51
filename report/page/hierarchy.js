// Which page is inside which: sheets lead to pages, and ports of a page to the pins of its sheet.

const EDGE = 1; // units between a sheet's edge and a connector that stands on it

// Sets of each page: `children` and `parent` (page numbers; -1 at the top), of its sheets: `pages`, of its connectors:
// `sheet`, the sheet that they are pins of. `pages` are {index, schematic, name, drawn}, drawn as readPage gives it.
export function arrangePages(pages) {
  for (const page of pages) Object.assign(page, { children: [], parent: -1 });
  const byName = new Map();
  for (const page of pages) if (!byName.has(page.name)) byName.set(page.name, page);
  const bySchematic = Map.groupBy ? Map.groupBy(pages, (page) => page.schematic) : groupBy(pages, (page) => page.schematic);
  for (const page of pages) {
    for (const sheet of page.drawn.sheets) {
      sheet.pages = pagesOf(sheet, page, byName, bySchematic);
      for (const child of sheet.pages) adopt(page, pages[child], pages);
    }
    page.drawn.sheets = page.drawn.sheets.filter((sheet) => sheet.pages.length);
    for (const connector of page.drawn.connectors) {
      connector.sheet = connector.kind === "power" ? undefined : page.drawn.sheets.find((sheet) => isOnEdge(connector, sheet));
    }
  }
}

function groupBy(items, keyOf) {
  const groups = new Map();
  for (const item of items) groups.set(keyOf(item), [...(groups.get(keyOf(item)) ?? []), item]);
  return groups;
}

// A page of a sheet inside another bears the other's name before its own; else a sheet is named like a schematic.
function pagesOf(sheet, page, byName, bySchematic) {
  const inside = byName.get(`${page.name}/${sheet.name}`) ?? byName.get(sheet.name);
  if (inside && inside !== page) return [inside.index];
  return (bySchematic.get(sheet.name) ?? []).filter((other) => other.schematic !== page.schematic).map((other) => other.index);
}

// A page has one parent, and none that is inside it.
function adopt(page, child, pages) {
  if (child.parent >= 0 || child === page) return;
  for (let at = page; at.parent >= 0; at = pages[at.parent]) if (at.parent === child.index) return;
  child.parent = page.index;
  page.children.push(child.index);
}

function isOnEdge({ x, y }, sheet) {
  const { x: left, y: top } = sheet;
  const [right, bottom] = [left + sheet.width, top + sheet.height];
  const onSide = (at, edge, from, to, along) => Math.abs(at - edge) <= EDGE && along >= from - EDGE && along <= to + EDGE;
  return (
    onSide(x, left, top, bottom, y) ||
    onSide(x, right, top, bottom, y) ||
    onSide(y, top, left, right, x) ||
    onSide(y, bottom, left, right, x)
  );
}

// Where a connector goes on: [{page, connector}...], from its own page on in the order of pages.
export function destinationsOf(connector, page, pages) {
  const named = (other, wanted) =>
    other.drawn.connectors
      .filter((one) => one !== connector && one.name === connector.name && wanted(one))
      .map((one) => ({ page: other.index, connector: one }));
  if (connector.sheet)
    return connector.sheet.pages.flatMap((child) => named(pages[child], (one) => one.kind === "port" && !one.sheet));
  if (connector.kind === "port") {
    const parent = pages[page.parent];
    return parent ? named(parent, (one) => one.sheet?.pages.includes(page.index)) : [];
  }
  if (connector.kind !== "offpage") return [];
  const found = pages.flatMap((other) => named(other, (one) => one.kind === "offpage"));
  return [...found.filter((one) => one.page >= page.index), ...found.filter((one) => one.page < page.index)];
}
