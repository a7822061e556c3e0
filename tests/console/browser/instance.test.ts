import assert from "node:assert/strict";
import { after, test } from "node:test";

import { closeBrowser, instanceAt, labSystem, look, withServer } from "./harness";

after(closeBrowser);

test("a card has all values, and what they mean on demand", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByRole("heading", { level: 1, name: "Lab server 7" }).waitFor();
                const values = page.getByRole("region", { name: "Values" });
                await values.getByText("Degraded/Warning 10").waitFor();
                await values.getByRole("button", { name: "EnabledState" }).click();
                await values.getByText("Whether the element is enabled.").waitFor();
                await values.getByText(/\d+ without a value/).click();
                await values.getByRole("button", { name: "InstallDate" }).waitFor();
            },
            { at: instanceAt(labSystem) },
        );
    });
});

test("associations are listed with their states, and walked", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const region = page.getByRole("region", { name: "Associations" });
                await region
                    .getByRole("img", { name: /^Graph of 4 instances and 3 associations/ })
                    .waitFor();
                assert.ok((await region.locator("canvas").count()) > 0);
                await region.getByText("Error, Critical failure").waitFor();
                await region.getByRole("link", { name: "Fan 2", exact: true }).click();
                await page.getByRole("heading", { level: 1, name: "Fan 2" }).waitFor();
                await page
                    .getByRole("region", { name: "Associations" })
                    .getByText("Lab server 7")
                    .first()
                    .waitFor();
                await page.goBack();
                await page.getByRole("heading", { level: 1, name: "Lab server 7" }).waitFor();
            },
            { at: instanceAt(labSystem) },
        );
    });
});

test("a sensor's values are told in the unit that it says", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByRole("link", { name: "CPU temperature" }).first().click();
                const values = page.getByRole("region", { name: "Values" });
                await values.getByText("45.5 °C").waitFor();
                await values.getByText("95 °C").waitFor();
                await page.getByRole("link", { name: "CIM_NumericSensor" }).first().click();
                await page.getByRole("gridcell", { name: "45.5 °C 455" }).waitFor();
            },
            { at: instanceAt(labSystem) },
        );
    });
});

test("an instance that is gone is told, and the page goes on", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByRole("alert").getByText("CIM_ERR_NOT_FOUND").waitFor();
                await page.getByRole("link", { name: "LAB_System" }).click();
                await page.getByRole("gridcell", { name: "lab-7" }).waitFor();
            },
            { at: instanceAt(labSystem.replace("lab-7", "lab-8")) },
        );
    });
});
