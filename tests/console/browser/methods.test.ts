import assert from "node:assert/strict";
import { after, test } from "node:test";

import { classAt, closeBrowser, look, withServer } from "./harness";

after(closeBrowser);

test("a method runs behind the switch and a question, and its result is told", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByRole("grid").getByRole("link").first().click();
                const methods = page.getByRole("region", { name: "Methods" });
                await methods.getByText("GetCollectedClasses").click();
                const invoke = methods.getByRole("button", { name: "Invoke" });
                assert.ok(await invoke.isDisabled());
                await page.getByRole("switch", { name: "Write" }).click();
                await invoke.click();
                await methods.getByText("A value is needed.").waitFor();
                await methods.getByLabel("RegisteredName").fill("KT Memory");
                await invoke.click();
                const question = page.getByRole("dialog", { name: "Invoke GetCollectedClasses?" });
                await question.getByRole("button", { name: "Invoke" }).click();
                await methods.getByText("Returned 0").waitFor();
                await methods.getByText("root/ktq", { exact: true }).waitFor();
                await methods.getByLabel("RegisteredName").fill("<b>no such</b>");
                await invoke.click();
                await question.getByRole("button", { name: "Invoke" }).click();
                await question.getByRole("alert").getByText("CIM_ERR_NOT_FOUND").waitFor();
                await page.keyboard.press("Escape");
                await question.waitFor({ state: "detached" });
            },
            { at: classAt("root/ktq", "PYL_PXDataCollection") },
        );
    });
});

test("instances are made, changed and deleted behind the switch", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                const create = page.getByRole("button", { name: "Create …" });
                assert.ok(await create.isDisabled());
                await page.getByRole("switch", { name: "Write" }).click();
                await create.click();
                const form = page.getByRole("dialog");
                await form.getByLabel(/^Name /).fill("a <b>name</b>");
                await form.getByLabel(/^Query /).fill("SELECT * FROM CIM_AlertIndication");
                await form.getByLabel(/^QueryLanguage /).fill("WQL");
                await form.getByLabel(/^SourceNamespaces /).fill("root/ktq");
                await form.getByRole("button", { name: "Create" }).click();
                await page.getByRole("heading", { level: 1, name: "a <b>name</b>" }).waitFor();

                await page.getByRole("button", { name: "Change …" }).click();
                await form.getByLabel(/^ElementName /).fill("changed");
                await form.getByRole("button", { name: "Change", exact: true }).click();
                await page.getByRole("heading", { level: 1, name: "changed" }).waitFor();

                await page.getByRole("button", { name: "Delete …" }).click();
                await form.getByRole("button", { name: "Delete" }).click();
                await page.getByText("There are no instances of this class now.").waitFor();
            },
            { at: classAt("interop", "CIM_IndicationFilter") },
        );
    });
});

test("the switch is off again when the page is opened anew", async () => {
    await withServer(async (server) => {
        await look(server, async (page) => {
            const write = page.getByRole("switch", { name: "Write" });
            await write.click();
            assert.equal(await write.getAttribute("aria-checked"), "true");
            await page.reload();
            assert.equal(await write.getAttribute("aria-checked"), "false");
        });
    });
});
