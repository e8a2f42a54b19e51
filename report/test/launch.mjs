// Starts a browser for tests and measurements: Chromium, unless VERNOXA_REPORT_BROWSER says "firefox". The folder of the
// libraries comes in VERNOXA_REPORT_MODULES.

import { createRequire } from "node:module";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

export const modules =
  process.env.VERNOXA_REPORT_MODULES ?? fileURLToPath(new URL("../../.deps/report/node_modules", import.meta.url));
export const kind = process.env.VERNOXA_REPORT_BROWSER ?? "chromium";

const { chromium, firefox } = createRequire(join(modules, "index.js"))("playwright-core");

const BROWSERS = {
  chromium: () =>
    chromium.launch({
      executablePath: "/usr/bin/chromium",
      args: [
        "--no-sandbox",
        "--disable-gpu",
        "--disable-quic",
        "--no-first-run",
        "--disable-background-networking",
        "--disable-component-update",
        "--disable-sync",
      ],
    }),
  firefox: () => firefox.launch({ channel: "moz-firefox", executablePath: "/usr/bin/firefox-esr" }),
};

export const start = () => BROWSERS[kind]();
