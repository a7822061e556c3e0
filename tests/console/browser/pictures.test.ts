import assert from "node:assert/strict";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, test } from "node:test";

import pixelmatch from "pixelmatch";
import type { Page } from "playwright-core";
import { PNG } from "pngjs";

import {
    build,
    classAt,
    closeBrowser,
    instanceAt,
    labSystem,
    labWords,
    look,
    source,
    withServer,
} from "./harness";

after(closeBrowser);

/** Those of docs/console.md, for whoever reads it to see what is seen. */
const folder = join(source, "docs/console");

const base = join(source, "schema/base/base.mof");

/** What is alike on every machine: the lab and the profiles, nothing that reads this one. */
const words = [
    ...["--namespace", "interop", "--schema", base],
    ...["--schema", join(source, "schema/PYL_Profiles.mof")],
    ...["--registration", join(source, "schema/pylProfiles.registration")],
    ...["--provider-dir", join(build, "providers/profiles")],
    ...labWords.slice(labWords.indexOf("--namespace")),
];

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

interface View {
    name: string;
    at: string;
    height?: number;
    ready: (page: Page) => Promise<unknown>;
}

const views: readonly View[] = [
    {
        name: "host",
        at: "#/host",
        height: 1000,
        ready: async (page) => {
            await page.getByText("45.5 °C").waitFor();
            await page.getByRole("img", { name: /^Graph of \d+ profiles/ }).waitFor();
            await page.waitForTimeout(500); // the graph is drawn in a frame of its own
        },
    },
    {
        name: "explore",
        at: classAt("root/lab", "LAB_Fan"),
        ready: (page) => page.getByRole("gridcell", { name: "fan-2" }).waitFor(),
    },
    {
        name: "instance",
        at: instanceAt(labSystem),
        height: 1100,
        ready: async (page) => {
            const region = page.getByRole("region", { name: "Associations" });
            await region.getByRole("link").first().waitFor();
            await page.waitForTimeout(500);
        },
    },
    {
        name: "requests",
        at: classAt("root/lab", "LAB_Fan"),
        ready: async (page) => {
            await page.getByRole("gridcell", { name: "fan-2" }).waitFor();
            const light = page.getByRole("banner").getByRole("status");
            await light.getByText("connected", { exact: true }).waitFor({ state: "attached" });
            for (let time = 0; time < 3; ++time) {
                await page.getByRole("button", { name: "Refresh" }).click();
                await page.getByRole("gridcell", { name: "fan-2" }).waitFor();
            }
            await page.getByRole("link", { name: "Requests" }).click();
            await page.getByRole("row").nth(3).waitFor();
        },
    },
];

for (const { name, at, height = 700, ready } of views) {
    for (const colorScheme of ["light", "dark"] as const) {
        test(`${name} looks as it did, ${colorScheme}`, async () => {
            await withServer(async (server) => {
                await look(
                    server,
                    async (page) => {
                        await ready(page);
                        await compare(page, `${name}-${colorScheme}`);
                    },
                    { at, colorScheme, viewport: { width: 1100, height } },
                );
            }, words);
        });
    }
}
