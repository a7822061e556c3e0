import assert from "node:assert/strict";
import { mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test, type TestContext } from "node:test";

import type { Page } from "playwright-core";

import { classAt, closeBrowser, look, source, withServer } from "./harness";
import { assertAwake, costOf } from "./tasks";

const folder = mkdtempSync(join(tmpdir(), "console-many-"));
after(async () => {
    rmSync(folder, { recursive: true });
    await closeBrowser();
});

const instances = 10000;
const classes = 1830;

/** Ten thousand instances and a schema of a usual size, as MOF. */
function manyMof(): string {
    const lines = [
        "class LAB_Many { [Key] uint32 Number; string Name; uint64 Size; datetime Made; uint16 State; };",
    ];
    for (let at = 0; at < classes - 1; ++at) {
        const above =
            at % 20 ? ` : LAB_Class${Math.floor(at / 20) * 20 + Math.floor((at % 20) / 2)}` : "";
        const key = above ? "" : "[Key] string ID;";
        const parent = above.endsWith(`LAB_Class${at}`) ? "" : above;
        lines.push(`class LAB_Class${at}${parent} { ${key} string Value${at}; };`);
    }
    for (let at = 0; at < instances; ++at) {
        const mixed = (at * 7919) % instances;
        lines.push(
            `instance of LAB_Many { Number = ${at}; Name = "thing${mixed}"; Size = ${mixed * 1000003}; ` +
                `Made = "20260${1 + (at % 9)}01120000.000000+060"; State = ${at % 3}; };`,
        );
    }
    return lines.join("\n");
}

writeFileSync(join(folder, "many.mof"), manyMof());
const words = [
    ...["--namespace", "root/many", "--schema", join(source, "schema/base/qualifiers.mof")],
    ...["--schema", join(folder, "many.mof")],
];

/** Does `work` with the page of a server that has all this, and holds its tasks against their limit. */
async function withMany(
    context: TestContext,
    at: string,
    work: (page: Page) => Promise<void>,
): Promise<void> {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const cost = await costOf(page, async () => {
                    await page.reload();
                    await work(page);
                });
                assertAwake(context, cost);
            },
            { at },
        );
    }, words);
}

test("ten thousand instances come, sort, filter and scroll while the page stays awake", async (context) => {
    await withMany(context, classAt("root/many", "LAB_Many"), async (page) => {
        await page.getByText("10,000 instances").waitFor();
        const grid = page.getByRole("grid");
        assert.equal(await grid.getAttribute("aria-rowcount"), String(instances + 1));
        assert.ok((await grid.getByRole("row").count()) < 80);
        await grid.getByRole("columnheader", { name: "Name" }).click();
        await page.waitForFunction(
            () =>
                document.querySelector('[aria-rowindex="3"]')?.textContent?.includes("thing1") ??
                false,
        );
        await page.getByRole("searchbox", { name: "Filter instances" }).fill("thing77");
        await page.getByText("111 of 10,000").waitFor();
        await page.getByRole("searchbox", { name: "Filter instances" }).fill("");
        await page.getByText("10,000 instances").waitFor();
        for (let step = 1; step <= 40; ++step) {
            await grid.evaluate((element, to) => (element.scrollTop = to), step * 7000);
            await page.evaluate(() => new Promise(requestAnimationFrame));
        }
        await grid.getByRole("gridcell").first().focus();
        await page.keyboard.press("Control+End");
        await grid.locator(`[aria-rowindex="${instances + 1}"]`).waitFor();
    });
});

test("a schema of 1830 classes is a tree at once, and searched while typing", async (context) => {
    await withMany(context, "#/explore/root%2Fmany", async (page) => {
        const search = page.getByRole("searchbox", { name: "Search classes" });
        await page.getByRole("treeitem", { name: "LAB_Class0" }).waitFor();
        await search.pressSequentially("class182");
        await page.getByRole("treeitem", { name: "LAB_Class1827" }).waitFor();
        assert.ok((await page.getByRole("treeitem").count()) < 80);
    });
});

test("something is painted before the server was asked for anything", async (context) => {
    await withMany(context, "", async (page) => {
        await page.waitForFunction(
            () => performance.getEntriesByName("first-contentful-paint").length,
        );
    });
});
