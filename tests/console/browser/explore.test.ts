import assert from "node:assert/strict";
import { after, test } from "node:test";

import { classAt, closeBrowser, look, withServer } from "./harness";

after(closeBrowser);

test("the tree leads from namespaces to classes, and its search to any of them", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const tree = page.getByRole("tree");
                await tree.getByRole("treeitem", { name: "root/lab" }).click();
                await tree.getByRole("treeitem", { name: "LAB_Hostile" }).waitFor();
                await page.keyboard.press("/");
                await page.keyboard.type("alertind");
                await tree.getByText("AlertInd", { exact: true }).first().waitFor();
                await tree.getByRole("treeitem", { name: "KT_AlertIndication indication" }).click();
                await page.getByRole("heading", { level: 1, name: "KT_AlertIndication" }).waitFor();
                assert.match(page.url(), /#\/explore\/root%2Fktq\/KT_AlertIndication$/);
                await page.goBack();
                await page.getByRole("heading", { level: 1, name: "Explore" }).waitFor();
            },
            { at: "#/explore" },
        );
    });
});

test("a class page tells the definition and shows the instances in words", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const grid = page.getByRole("grid", { name: "Instances of LAB_Fan" });
                await grid.getByRole("gridcell", { name: "fan-2" }).waitFor();
                assert.equal(await grid.getAttribute("aria-rowcount"), "3");
                await grid.getByRole("gridcell", { name: "Critical failure 25" }).waitFor();
                await grid.getByRole("gridcell", { name: /4.?200 RPM|4200 rev/ }).waitFor();
                await page.getByText("How fast it turns.").waitFor();
                await page
                    .getByRole("listitem")
                    .getByRole("link", { name: "CIM_CoolingDevice" })
                    .click();
                await page.getByRole("heading", { level: 1, name: "CIM_CoolingDevice" }).waitFor();
            },
            { at: classAt("root/lab", "LAB_Fan") },
        );
    });
});

test("a class page says who serves the class", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByText("PYL_FanProvider").first().waitFor();
            },
            { at: classAt("root/ktq", "PYL_FanGroup") },
        );
    });
});

test("the table sorts, filters and copies", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const grid = page.getByRole("grid");
                const names = () =>
                    grid.getByRole("row").locator('[aria-colindex="1"]').allInnerTexts();
                await grid.getByRole("gridcell", { name: "fan-1" }).waitFor();
                const speed = grid.getByRole("columnheader", { name: "CurrentSpeed" });
                await speed.click();
                assert.equal(await speed.getAttribute("aria-sort"), "ascending");
                await page.waitForFunction(
                    () =>
                        document
                            .querySelector('[aria-rowindex="2"]')
                            ?.textContent?.includes("fan-2") ?? false,
                );
                await speed.click();
                await page.waitForFunction(
                    () =>
                        document
                            .querySelector('[aria-rowindex="2"]')
                            ?.textContent?.includes("fan-1") ?? false,
                );
                await page
                    .getByRole("searchbox", { name: "Filter instances" })
                    .fill("critical fan");
                await page.getByText("1 of 2").waitFor();
                assert.equal((await names()).length, 2);
                await page.getByRole("button", { name: "CSV" }).click();
                await page.getByText("1 rows copied.").waitFor();
                const csv = await page.evaluate(() => navigator.clipboard.readText());
                assert.match(csv, /^DeviceID,/);
                assert.match(csv, /Fan 2/);
                assert.doesNotMatch(csv, /Fan 1/);
            },
            {
                at: classAt("root/lab", "LAB_Fan"),
                permissions: ["clipboard-read", "clipboard-write"],
            },
        );
    });
});

test("the rows stay while they are put in order", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByRole("gridcell", { name: "fan-1" }).waitFor();
                const counts = page.evaluate(
                    () =>
                        new Promise<(string | null)[]>((resolve) => {
                            const seen: (string | null)[] = [];
                            const grid = document.querySelector('[role="grid"]')!;
                            new MutationObserver(() => {
                                seen.push(grid.getAttribute("aria-rowcount"));
                                const first = grid.querySelector('[aria-rowindex="2"]');
                                if (first?.textContent?.includes("fan-2")) resolve(seen);
                            }).observe(grid, {
                                attributes: true,
                                childList: true,
                                subtree: true,
                            });
                        }),
                );
                await page.getByRole("columnheader", { name: "CurrentSpeed" }).click();
                assert.deepEqual([...new Set(await counts)], ["3"]);
            },
            { at: classAt("root/lab", "LAB_Fan") },
        );
    });
});

test("columns are chosen", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByRole("gridcell", { name: "fan-1" }).waitFor();
                await page.getByRole("button", { name: "Columns" }).click();
                const dialog = page.getByRole("dialog");
                const outer = (await dialog.boundingBox())!;
                const list = (await dialog.getByRole("list").boundingBox())!;
                assert.ok(list.y + list.height < outer.y + outer.height, "the list is cut");
                await page.getByRole("checkbox", { name: "DesiredSpeed" }).check();
                await page.getByRole("checkbox", { name: "CurrentSpeed" }).uncheck();
                await page.keyboard.press("Escape");
                await page
                    .getByRole("columnheader", { name: "DesiredSpeed" })
                    .waitFor({ state: "attached" });
                assert.equal(
                    await page.getByRole("columnheader", { name: "CurrentSpeed" }).count(),
                    0,
                );
            },
            { at: classAt("root/lab", "LAB_Fan") },
        );
    });
});

test("what fails is told where it failed, with another try", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const alert = page.getByRole("alert");
                await alert.getByText("CIM_ERR_NOT_FOUND").waitFor();
                await alert.getByRole("button", { name: "Try again" }).click();
                await alert.getByText("CIM_ERR_NOT_FOUND").waitFor();
                await page.getByRole("link", { name: "Host" }).click();
                await page.getByRole("heading", { level: 1, name: "Host" }).waitFor();
            },
            { at: classAt("root/lab", "LAB_Nowhere") },
        );
    });
});
