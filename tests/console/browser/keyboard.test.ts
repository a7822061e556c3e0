import assert from "node:assert/strict";
import { after, test } from "node:test";

import type { Page } from "playwright-core";

import { classAt, closeBrowser, instanceAt, labSystem, look, withServer } from "./harness";

after(closeBrowser);

const focused = (page: Page) =>
    page.evaluate(() => {
        const element = document.activeElement;
        return `${element?.getAttribute("role") ?? element?.tagName} ${element?.textContent}`;
    });

async function press(page: Page, ...keys: string[]): Promise<void> {
    for (const key of keys) await page.keyboard.press(key);
}

test("the first stop leads past the head to the content", async () => {
    await withServer(async (server) => {
        await look(server, async (page) => {
            await page.getByRole("heading", { level: 1, name: "Host" }).waitFor();
            await press(page, "Tab");
            assert.equal(await focused(page), "BUTTON Skip to the content");
            await press(page, "Enter");
            assert.match(await focused(page), /^MAIN Host/);
        });
    });
});

test("a class is found, its table walked and an instance opened without a mouse", async () => {
    await withServer(async (server) => {
        await look(server, async (page) => {
            await page.getByRole("heading", { level: 1, name: "Host" }).waitFor();
            await press(page, "/");
            await page.waitForFunction(
                () => document.activeElement?.matches("[data-search]") ?? false,
            );
            await page.keyboard.type("lab_fan");
            await page.getByRole("treeitem", { name: "LAB_Fan" }).waitFor();
            await press(page, "ArrowDown", "End");
            while (!/LAB_Fan$/.test(await focused(page))) await press(page, "ArrowUp");
            await press(page, "Enter");
            const cell = page.getByRole("gridcell", { name: "fan-1" });
            await cell.waitFor();
            while (!/^gridcell/.test(await focused(page))) await press(page, "Tab");
            await press(page, "ArrowDown", "Control+End");
            const at = () =>
                page.evaluate(() => {
                    const element = document.activeElement;
                    const row = element?.closest("[role=row]")?.getAttribute("aria-rowindex");
                    return `${row} ${element?.getAttribute("aria-colindex")}`;
                });
            const columns = await page.getByRole("grid").getAttribute("aria-colcount");
            assert.equal(await at(), `3 ${columns}`);
            await press(page, "Home", "ArrowUp", "ArrowUp");
            assert.equal(await at(), "1 1");
            await press(page, "Enter");
            await page.locator('[aria-sort="ascending"]').waitFor();
            await press(page, "ArrowDown", "Enter");
            await page.getByRole("heading", { level: 1, name: "Fan 1" }).waitFor();
        });
    });
});

test("the tree opens, closes and leads to parents by arrows", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const item = (name: string) => page.getByRole("treeitem", { name, exact: true });
                await item("interop").waitFor();
                await page.getByRole("searchbox", { name: "Search classes" }).focus();
                await press(page, "ArrowDown", "Home");
                assert.equal(await focused(page), "treeitem interop");
                await press(page, "ArrowRight");
                await item("CIM_ManagedElement").nth(1).waitFor(); // the other is of root/lab
                assert.equal(await item("interop").getAttribute("aria-expanded"), "true");
                await press(page, "ArrowRight");
                assert.notEqual(await focused(page), "treeitem interop");
                await press(page, "ArrowLeft");
                if ((await focused(page)) !== "treeitem interop") await press(page, "ArrowLeft");
                assert.equal(await focused(page), "treeitem interop");
                await press(page, "ArrowLeft");
                assert.equal(await item("interop").getAttribute("aria-expanded"), "false");
            },
            { at: "#/explore" },
        );
    });
});

test("a dialog takes the focus, keeps it, and gives it back", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const columns = page.getByRole("button", { name: "Columns" });
                await page.getByRole("gridcell", { name: "fan-1" }).waitFor();
                await columns.focus();
                await press(page, "Enter");
                const dialog = page.getByRole("dialog", { name: "Columns" });
                await dialog.waitFor();
                for (let step = 0; step < 8; ++step) await press(page, "Tab");
                assert.ok(
                    await page.evaluate(
                        () =>
                            document.activeElement === document.body ||
                            !!document.activeElement?.closest("dialog"),
                    ),
                );
                await press(page, "Escape");
                await dialog.waitFor({ state: "detached" });
                assert.match(await focused(page), /^BUTTON Columns/);
            },
            { at: classAt("root/lab", "LAB_Fan") },
        );
    });
});

test("on a phone the tree is a drawer that Escape closes", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const tree = page.getByRole("tree");
                const button = page.getByRole("button", { name: "Classes" });
                await page.getByRole("gridcell", { name: "fan-1" }).waitFor();
                assert.ok(!(await tree.isVisible()));
                await button.click();
                await page.getByRole("treeitem", { name: "LAB_Fan" }).waitFor();
                await page.getByRole("searchbox", { name: "Search classes" }).focus();
                await press(page, "Escape");
                await tree.waitFor({ state: "hidden" });
            },
            { at: classAt("root/lab", "LAB_Fan"), viewport: { width: 400, height: 800 } },
        );
    });
});

test("everything that can be clicked on a card is reached by Tab, and shows that it has the focus", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page
                    .getByRole("region", { name: "Associations" })
                    .getByRole("link")
                    .first()
                    .waitFor();
                const wanted = await page.evaluate(
                    () =>
                        [
                            ...document.querySelectorAll("main :is(a, button:enabled, summary)"),
                        ].filter((element) => element.checkVisibility()).length,
                );
                const seen = new Set<string>();
                await page.locator("main").focus();
                for (let step = 0; step < wanted; ++step) {
                    await press(page, "Tab");
                    const stop = await page.evaluate(() => {
                        const element = document.activeElement!;
                        const all = [
                            ...document.querySelectorAll("main a, main button, main summary"),
                        ];
                        const outline = getComputedStyle(element).outlineStyle;
                        return { index: all.indexOf(element), outline };
                    });
                    assert.equal(stop.outline, "solid");
                    seen.add(String(stop.index));
                }
                assert.equal(seen.size, wanted);
                assert.ok(!seen.has("-1"));
            },
            { at: instanceAt(labSystem) },
        );
    });
});
