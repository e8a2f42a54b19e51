// Every text of the page in both languages, and what the plug-in's check comments mean in English.

const TEXTS = {
  en: {
    language: "中文", pages: "Pages", bom: "BOM", findings: "Findings", properties: "Properties", search: "Search",
    searchHint: "Reference, value, net or text   ( / )", hideAbsent: "Hide not fitted", fit: "Fit page", print: "Print",
    help: "Keys", close: "Close", nothing: "Nothing found", zoomIn: "Zoom in", zoomOut: "Zoom out",
    quantity: "Qty", references: "References", value: "Value", partNumber: "Part number", partName: "Part",
    footprint: "Footprint", pins: "Pins", state: "State", fitted: "fitted", absent: "not fitted",
    absentHidden: "not fitted, hidden", unnumbered: "none", number: "#", divider: "Width of the lists", about: "About",
    madeOf: "The report holds these libraries, under the licences that follow.", propertiesOf: "Of {parts}:",
    allProperties: "Every property name of the design with one value that it has somewhere. Choose a part to see what is its own.",
    check: "Check", comment: "Finding", page: "Page", name: "Name",
    part: "part", net: "net", text: "text", finding: "finding", noFindings: "No findings",
    summary: "{pages} pages · {parts} parts, {absent} not fitted · {findings} findings",
    notPlaced: "not on a page", empty: "Nothing was reported",
    check1001: "References", check1002: "Characters", check1003: "Pins", check1004: "Netlist",
    keys: [["/", "search"], ["Arrow keys", "move the page"], ["+  -  0", "nearer, farther, whole page"],
      ["Page Up, Page Down", "other page"], ["B  F  P", "BOM, findings, properties"], ["N", "hide or show what is not fitted"],
      ["Enter", "in a list, on a pin: go to what is chosen"],
      ["Ctrl+Enter", "from the search field to the list"], ["L", "中文 / English"], ["Esc", "choose nothing"]],
  },
  zh: {
    language: "English", pages: "页面", bom: "物料清单", findings: "检查结果", properties: "属性", search: "搜索",
    searchHint: "位号、值、网络或文字   ( / )", hideAbsent: "隐藏未贴器件", fit: "整页", print: "打印",
    help: "按键", close: "关闭", nothing: "未找到", zoomIn: "放大", zoomOut: "缩小",
    quantity: "数量", references: "位号", value: "值", partNumber: "料号", partName: "器件",
    footprint: "封装", pins: "引脚", state: "状态", fitted: "贴装", absent: "不贴",
    absentHidden: "不贴，已隐藏", unnumbered: "无", number: "序号", divider: "列表宽度", about: "关于",
    madeOf: "本报告包含以下程序库，其许可如下。", propertiesOf: "{parts}：",
    allProperties: "设计中的全部属性名，各附一个出现过的值。选择器件可查看其自身的属性。", check: "检查", comment: "问题", page: "页面", name: "名称",
    part: "器件", net: "网络", text: "文字", finding: "问题", noFindings: "没有问题",
    summary: "{pages} 页 · {parts} 个器件，{absent} 个不贴 · {findings} 个问题",
    notPlaced: "不在页面上", empty: "没有上报内容",
    check1001: "位号", check1002: "字符", check1003: "引脚", check1004: "网表",
    keys: [["/", "搜索"], ["方向键", "移动页面"], ["+  -  0", "放大、缩小、整页"], ["Page Up, Page Down", "换页"],
      ["B  F  P", "物料清单、检查结果、属性"], ["N", "隐藏或显示未贴器件"], ["Enter", "在列表中或标记上：跳转"],
      ["Ctrl+Enter", "从搜索框到列表"],
      ["L", "中文 / English"], ["Esc", "取消选择"]],
  },
};

const COMMENTS = {
  器件未编号: "has no reference number", 位号重名: "reference used twice", 属性包含非法字符: "holds characters that are not allowed",
  引脚未连接: "pin not connected", 器件无封装: "has no footprint", 器件存在多个封装: "has several footprints",
  引脚未编号: "has a pin without a number", 引脚名重复: "has a pin name twice", 引脚编号重复: "has a pin number twice",
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

export function text(name, values = {}) {
  const found = TEXTS[language][name] ?? name;
  return typeof found === "string" ? found.replace(/\{(\w+)\}/g, (_, key) => values[key]) : found;
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

// Fills every element that names its text: data-text for what it shows, data-title and data-hint for the rest.
export function fillTexts(root = document) {
  for (const node of root.querySelectorAll("[data-text]")) node.textContent = text(node.dataset.text);
  for (const node of root.querySelectorAll("[data-title]")) {
    node.title = text(node.dataset.title);
    node.setAttribute("aria-label", node.title);
  }
  for (const node of root.querySelectorAll("[data-hint]")) {
    node.placeholder = text(node.dataset.hint);
    node.setAttribute("aria-label", text("search"));
  }
}
