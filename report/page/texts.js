// Every text of the page in both languages, and what the plug-in's check comments mean in English.

import { CHINESE, ENGLISH } from "./words.js";

const TEXTS = { en: ENGLISH, zh: CHINESE };

const COMMENTS = {
  器件未编号: "has no reference number",
  位号重名: "reference used twice",
  属性包含非法字符: "holds characters that are not allowed",
  引脚未连接: "pin not connected",
  器件无封装: "has no footprint",
  器件存在多个封装: "has several footprints",
  引脚未编号: "has a pin without a number",
  引脚名重复: "has a pin name twice",
  引脚编号重复: "has a pin number twice",
  同一器件Value值不同: "has different values",
};

let language = "en";

export function chooseLanguage(wanted) {
  language = wanted === "zh" ? "zh" : "en";
  document.documentElement.lang = language === "zh" ? "zh-CN" : "en";
}

export function currentLanguage() {
  return language;
}

// The text of a name, or the name itself where there is none. {count} stands for a value, {count:page,pages} for it and the
// word that goes with it.
export function text(name, values = {}) {
  const found = Object.hasOwn(TEXTS[language], name) ? TEXTS[language][name] : name;
  if (typeof found !== "string") return found;
  return found.replace(/\{(\w+)(?::([^,}]+),([^}]+))?\}/g, (_, key, one, many) =>
    one ? `${values[key]} ${values[key] === 1 ? one : many}` : values[key],
  );
}

// Of a part: whether it is fitted, and when not, whether it is shown all the same.
export function stateOf(fitted) {
  return text(fitted ? "fitted" : document.body.classList.contains("hide-absent") ? "absentHidden" : "absent");
}

// A finding's comment is Chinese, what it is about before the fixed words.
export function comment(chinese) {
  if (language === "zh") return chinese;
  const words = Object.keys(COMMENTS).find((words) => chinese.endsWith(words));
  return words ? `${chinese.slice(0, -words.length)} ${COMMENTS[words]}`.trim() : chinese;
}

// Fills every element that names its text: data-text for what it shows, data-title, data-about and data-hint for the rest.
export function fillTexts(root = document) {
  for (const node of root.querySelectorAll("[data-text]")) node.textContent = text(node.dataset.text);
  for (const node of root.querySelectorAll("[data-title]")) {
    node.title = text(node.dataset.title);
    node.setAttribute("aria-label", node.title);
  }
  for (const node of root.querySelectorAll("[data-about]")) node.title = text(node.dataset.about);
  for (const node of root.querySelectorAll("[data-hint]")) {
    node.placeholder = text(node.dataset.hint);
    node.setAttribute("aria-label", text(node.dataset.label ?? node.dataset.hint));
  }
}
