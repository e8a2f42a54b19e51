// The pictures on buttons: data-icon names one.

import {
  ArrowLeft,
  ArrowRight,
  ClipboardCopy,
  createElement,
  Download,
  FolderTree,
  GitCompareArrows,
  Languages,
  Maximize,
  Minus,
  Plus,
  Printer,
  Keyboard,
  Settings2,
} from "lucide";

const ICONS = {
  back: ArrowLeft,
  forward: ArrowRight,
  copy: ClipboardCopy,
  save: Download,
  tree: FolderTree,
  compare: GitCompareArrows,
  language: Languages,
  fit: Maximize,
  farther: Minus,
  nearer: Plus,
  print: Printer,
  keys: Keyboard,
  settings: Settings2,
};

export function addIcons() {
  for (const button of document.querySelectorAll("[data-icon]")) {
    const icon = createElement(ICONS[button.dataset.icon], { width: 18, height: 18, "aria-hidden": "true" });
    button.prepend(icon);
  }
}
