// A small picture of a page, drawn without the page's elements: lines and shapes as they are, texts as strokes.

import { DARK_PAPER, onDark } from "./colours.js";
import { matrixOf } from "./drawn.js";

const LEAST_LINE = 0.6; // pixels

export function drawThumbnail(canvas, { drawing, drawn }, dark) {
  const scale = Math.min(canvas.width / (Number(drawing.width) || 1000), canvas.height / (Number(drawing.height) || 1000));
  const pen = canvas.getContext("2d");
  pen.setTransform(1, 0, 0, 1, 0, 0);
  pen.fillStyle = dark ? DARK_PAPER : "#ffffff";
  pen.fillRect(0, 0, canvas.width, canvas.height);
  pen.setTransform(scale, 0, 0, scale, 0, 0);
  const symbols = new Map();
  const colour = (value) => (/^#[0-9a-f]{6}$/i.test(value ?? "") ? (dark ? onDark(value) : value) : "");
  const ink = ({ style = "" } = {}) => ({
    stroke: colour(/stroke:\s*(#\w+)/.exec(style)?.[1]),
    fill: colour(/fill:\s*(#\w+)/.exec(style)?.[1]),
    width: Math.max(Number(/stroke-width:\s*([\d.]+)/.exec(style)?.[1] ?? 1), LEAST_LINE / scale),
  });
  const draw = (element, depth) => {
    const attr = element.attr ?? {};
    if (element.name === "use") {
      const symbol = symbols.get((attr["xlink:href"] ?? "").slice(1));
      if (!symbol || depth > 3) return;
      const { a, b, c, d, x, y } = matrixOf(attr.transform);
      pen.save();
      pen.transform(a, b, c, d, x, y);
      for (const child of symbol.children ?? []) draw(child, depth + 1);
      pen.restore();
      return;
    }
    for (const child of element.children ?? []) draw(child, depth);
    const path = outlineOf(element.name, attr);
    if (!path) return;
    const { stroke, fill, width } = ink(attr);
    pen.lineWidth = width;
    if (fill) Object.assign(pen, { fillStyle: fill }).fill(path);
    if (stroke) Object.assign(pen, { strokeStyle: stroke }).stroke(path);
  };
  for (const child of drawing.children ?? []) {
    if (child.name === "defs") for (const symbol of child.children ?? []) symbols.set(symbol.attr?.id, symbol);
    else draw(child, 0);
  }
  pen.globalAlpha = 0.4;
  for (const { box, element } of drawn?.texts ?? []) {
    pen.fillStyle = ink(element.attr).fill || "#888888";
    pen.fillRect(box.x, box.y + box.height * 0.2, box.width, box.height * 0.6);
  }
  pen.globalAlpha = 1;
}

function outlineOf(name, attr) {
  const [x, y, width, height] = ["x", "y", "width", "height"].map((key) => Number(attr[key]));
  const path = new Path2D();
  if (name === "line") {
    path.moveTo(Number(attr.x1), Number(attr.y1));
    path.lineTo(Number(attr.x2), Number(attr.y2));
  } else if (name === "rect") path.rect(x, y, width, height);
  else if (name === "circle" || name === "ellipse") {
    const [across, down] = [Number(attr.r ?? attr.rx), Number(attr.r ?? attr.ry)];
    if (!(across > 0 && down > 0)) return null;
    path.ellipse(Number(attr.cx), Number(attr.cy), across, down, 0, 0, 2 * Math.PI);
  } else if (name === "path") return new Path2D(attr.d ?? "");
  else if (name === "polyline") {
    const flat = ((attr.points ?? "").match(/-?[\d.]+/g) ?? []).map(Number);
    for (let at = 0; at + 1 < flat.length; at += 2) path.lineTo(flat[at], flat[at + 1]);
  } else return null;
  return path;
}
