import assert from "node:assert/strict";
import { after, test } from "node:test";

import type { Page } from "playwright-core";

import { violations } from "./browser";
import { classAt, closeBrowser, instanceAt, labSystem, look, withServer } from "./harness";

after(closeBrowser);

const views: readonly { name: string; at: string; ready: (page: Page) => Promise<unknown> }[] = [
    {
        name: "host",
        at: "#/host",
        ready: async (page) => {
            await page.getByText("45.5 °C").waitFor();
            await page.getByRole("img", { name: /^Graph of/ }).waitFor();
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
        ready: async (page) => {
            await page
                .getByRole("region", { name: "Associations" })
                .getByRole("link")
                .first()
                .waitFor();
            await page.getByText("RequestStateChange").click();
            await page.getByRole("switch", { name: "Write" }).click();
        },
    },
    {
        name: "a question",
        at: classAt("interop", "CIM_IndicationFilter"),
        ready: async (page) => {
            await page.getByRole("switch", { name: "Write" }).click();
            await page.getByRole("button", { name: "Create …" }).click();
            await page.getByRole("dialog").waitFor();
        },
    },
    {
        name: "a failure",
        at: classAt("root/lab", "LAB_Nowhere"),
        ready: (page) => page.getByRole("alert").waitFor(),
    },
    {
        name: "alerts",
        at: "#/alerts",
        ready: (page) => page.getByRole("main").getByRole("heading").first().waitFor(),
    },
    {
        name: "requests",
        at: "#/requests",
        ready: (page) => page.getByRole("main").getByRole("heading").first().waitFor(),
    },
    {
        name: "modules",
        at: "#/modules",
        ready: (page) => page.getByRole("main").getByRole("heading").first().waitFor(),
    },
];

for (const colorScheme of ["light", "dark"] as const) {
    for (const [size, viewport] of [
        ["on a desk", { width: 1280, height: 800 }],
        ["on a phone", { width: 400, height: 800 }],
    ] as const) {
        test(`no view has what keeps people out, ${colorScheme} and ${size}`, async () => {
            await withServer(async (server) => {
                const found: string[] = [];
                for (const { name, at, ready } of views) {
                    await look(
                        server,
                        async (page) => {
                            await ready(page);
                            for (const one of await violations(page)) found.push(`${name}: ${one}`);
                            const wide = await page.evaluate(
                                () => document.documentElement.scrollWidth,
                            );
                            assert.ok(wide <= viewport.width, `${name} is ${wide} pixels wide`);
                        },
                        { at, colorScheme, viewport },
                    );
                }
                assert.deepEqual(found, []);
            });
        });
    }
}
