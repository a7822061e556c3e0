// node picture.mjs PACKAGES URL FILE.png: takes a picture of the page at the address once nothing is on its way any
// more. PACKAGES is the folder that has node_modules.

import { existsSync } from "node:fs";
import { createRequire } from "node:module";
import { join, resolve } from "node:path";

const [packages, url, file] = process.argv.slice(2);
if (!file) {
    console.error("usage: node picture.mjs PACKAGES URL FILE.png");
    process.exit(2);
}
const executablePath = process.env["PYL_CHROMIUM"] ?? "/usr/bin/chromium";
if (!existsSync(executablePath)) {
    console.error(`There is no ${executablePath} to take a picture with.`);
    process.exit(1);
}

const { chromium } = createRequire(join(resolve(packages), "x"))("playwright-core");
const browser = await chromium.launch({
    executablePath,
    args: ["--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking"],
});
try {
    const page = await browser.newPage({ viewport: { width: 1280, height: 900 } });
    await page.goto(url);
    await page.locator("main h1").waitFor();
    await page.waitForFunction(() => !document.querySelector(".busy"));
    await page.waitForTimeout(500); // graphs are drawn in a frame of their own
    await page.screenshot({ path: file });
} catch (error) {
    console.error(String(error.message).split("\n")[0]);
    process.exitCode = 1;
} finally {
    await browser.close();
}
