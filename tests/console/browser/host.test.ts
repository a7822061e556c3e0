import assert from "node:assert/strict";
import { join } from "node:path";
import { after, test } from "node:test";

import { closeBrowser, look, source, withServer } from "./harness";

after(closeBrowser);

test("the first view tells who the host is, how it is, and what it conforms to", async () => {
    await withServer(async (server) => {
        await look(server, async (page) => {
            const region = (name: string) => page.getByRole("region", { name });
            await region("Identity").getByRole("link", { name: "Lab server 7" }).waitFor();
            await region("Identity").getByText("Acme").waitFor();
            await region("Consolidated status").getByText("Unknown").waitFor();
            await region("Profiles")
                .getByRole("img", { name: /^Graph of \d+ profiles/ })
                .waitFor();
            await region("Profiles").getByText("The profiles as a list").click();
            await region("Profiles")
                .getByRole("link", { name: "KT Base Server", exact: true })
                .click();
            await page.getByRole("heading", { level: 1, name: "KT Base Server" }).waitFor();
        });
    });
});

test("sensors and fans are gauges with a history", async () => {
    await withServer(async (server) => {
        await look(server, async (page) => {
            const sensors = page.getByRole("region", { name: "Sensors and fans" });
            const card = (name: string) => sensors.getByRole("listitem").filter({ hasText: name });
            await card("CPU temperature").getByText("45.5 °C").waitFor();
            await card("Fan 2").getByText("Error, Critical failure").waitFor();
            const line = card("Fan 1").getByRole("img", {
                name: /since the page was opened: 4,200 to 4,200/,
            });
            await line.waitFor();
            assert.equal(await line.locator("canvas").count(), 1);
        });
    });
});

test("what a namespace lacks is said in one line", async () => {
    await withServer(
        async (server) => {
            await look(server, async (page) => {
                await page.getByText(/No namespace has the class CIM_ComputerSystem/).waitFor();
                await page
                    .getByText(/No namespace has the classes CIM_Sensor or CIM_Fan/)
                    .waitFor();
                await page.getByText(/No namespace has the class PYL_ConsolidatedStatus/).waitFor();
                await page.getByText(/CIM_RegisteredProfile/).waitFor();
                assert.equal(await page.getByRole("alert").count(), 0);
            });
        },
        ["--namespace", "root/empty", "--schema", join(source, "schema/base/qualifiers.mof")],
    );
});

test("the theme that was chosen stays", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const shown = () => page.evaluate(() => document.documentElement.dataset["theme"]);
                assert.equal(await shown(), "dark");
                await page.getByRole("button", { name: "Colours: as the system" }).click();
                assert.equal(await shown(), "light");
                await page.reload();
                assert.equal(await shown(), "light");
                await page.getByRole("button", { name: "Colours: light" }).click();
                await page.getByRole("button", { name: "Colours: dark" }).click();
                assert.equal(await shown(), "dark");
                await page.emulateMedia({ colorScheme: "light" });
                await page.locator("html[data-theme=light]").waitFor();
            },
            { colorScheme: "dark" },
        );
    });
});
