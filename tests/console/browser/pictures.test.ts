import assert from "node:assert/strict";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, test } from "node:test";

import pixelmatch from "pixelmatch";
import type { Page } from "playwright-core";
import { PNG } from "pngjs";

import { classAt, closeBrowser, instanceAt, labSystem, look, source, withServer } from "./harness";

after(closeBrowser);

const folder = join(source, "tests/console/browser/golden");

/**
 * What is seen against what was seen when the picture was taken. Fonts and their edges differ between
 * machines; a view that lost its layout or its colours differs in much more than this.
 */
const tolerance = 0.08;

async function compare(page: Page, name: string): Promise<void> {
    // The port is another one each time.
    await page.locator(".server .name").evaluate((element) => (element.textContent = "server"));
    const picture = await page.screenshot({ animations: "disabled", caret: "hide" });
    const file = join(folder, `${name}.png`);
    if (process.env["PYL_TAKE_PICTURES"]) {
        mkdirSync(folder, { recursive: true });
        writeFileSync(file, picture);
        return;
    }
    const seen = PNG.sync.read(picture);
    const golden = PNG.sync.read(readFileSync(file));
    const { width, height } = golden;
    assert.deepEqual([seen.width, seen.height], [width, height]);
    const different = pixelmatch(seen.data, golden.data, undefined, width, height, {
        threshold: 0.2,
    });
    const share = different / (width * height);
    if (share > tolerance) writeFileSync(`${name}.seen.png`, picture);
    assert.ok(share <= tolerance, `${name}: ${Math.round(share * 100)} % of it look different`);
}

const views: readonly { name: string; at: string; ready: (page: Page) => Promise<unknown> }[] = [
    {
        name: "explore",
        at: classAt("root/lab", "LAB_Fan"),
        ready: (page) => page.getByRole("gridcell", { name: "fan-2" }).waitFor(),
    },
    {
        name: "instance",
        at: instanceAt(labSystem),
        ready: async (page) => {
            const region = page.getByRole("region", { name: "Associations" });
            await region.getByRole("link").first().waitFor();
            await page.waitForTimeout(500); // the graph is drawn in a frame of its own
        },
    },
];

for (const { name, at, ready } of views) {
    for (const colorScheme of ["light", "dark"] as const) {
        test(`${name} looks as it did, ${colorScheme}`, async () => {
            await withServer(async (server) => {
                await look(
                    server,
                    async (page) => {
                        await ready(page);
                        await compare(page, `${name}-${colorScheme}`);
                    },
                    { at, colorScheme, viewport: { width: 900, height: 600 } },
                );
            });
        });
    }
}
