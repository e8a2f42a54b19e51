// The design that a report holds, see report_page.py.

import { Model } from "./model.js";

export function modelIn(document) {
  const drawings = document.querySelectorAll("script[data-drawing]");
  return new Model(JSON.parse(document.getElementById("design").textContent), (index) => JSON.parse(drawings[index].textContent));
}

// Of the text of a report, or of what a report is made of. Throws an Error for anything else.
export function modelOf(text) {
  const model = text.trimStart().startsWith("{")
    ? new Model(JSON.parse(text))
    : modelIn(new DOMParser().parseFromString(text, "text/html"));
  for (const page of model.pages) if (!page.drawing) throw new Error("a page without a drawing");
  return model;
}
