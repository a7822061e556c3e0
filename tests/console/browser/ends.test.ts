import assert from "node:assert/strict";
import { after, test } from "node:test";

import {
    classAt,
    closeBrowser,
    instanceAt,
    labSystem,
    labWords,
    look,
    Server,
    sinWords,
    withServer,
} from "./harness";

after(closeBrowser);

test("the page finds the server again when it was started anew", async () => {
    let server = await Server.start();
    try {
        await look(
            server,
            async (page) => {
                await page.getByRole("heading", { level: 1, name: "Lab server 7" }).waitFor();
                const light = page.getByRole("banner").getByRole("status");
                await light.getByText("connected", { exact: true }).waitFor({ state: "attached" });
                const { port } = server;
                await server.stop();
                await light.getByText("connection lost").waitFor();
                await page.getByRole("button", { name: "Refresh" }).click();
                await page.getByRole("alert").getByText("No connection").waitFor();
                // The values that were read before stay.
                await page.getByRole("region", { name: "Values" }).getByText("R900").waitFor();
                server = await Server.start(labWords, port);
                await light.getByText("connected", { exact: true }).waitFor({ state: "attached" });
                // What failed meanwhile is asked for again without anybody's help.
                await page.getByRole("alert").waitFor({ state: "detached" });
            },
            { at: instanceAt(labSystem), mayFail: true },
        );
    } finally {
        await server.stop();
    }
});

test("a provider that crashes is told where it was asked, and asked again", async () => {
    await withServer(
        async (server) => {
            await look(
                server,
                async (page) => {
                    const alert = page.getByRole("alert");
                    await alert.getByText("CIM_ERR_FAILED").waitFor();
                    await alert.getByText(/SIGSEGV/).waitFor();
                    await page.getByRole("link", { name: "TST_Sin" }).click();
                    await page.getByRole("heading", { level: 1, name: "TST_Sin" }).waitFor();
                    assert.equal(
                        await page.getByRole("banner").getByText("connection lost").count(),
                        0,
                    );
                },
                { at: instanceAt('root/test:TST_Sin.Name="null"') },
            );
        },
        ["--isolate", ...sinWords],
    );
});

test("a method that crashes its provider leaves its question with the reason", async () => {
    await withServer(
        async (server) => {
            await look(
                server,
                async (page) => {
                    await page.getByRole("switch", { name: "Write" }).click();
                    const methods = page.getByRole("region", { name: "Methods" });
                    await methods.getByText("Commit").last().click();
                    await methods.getByLabel(/^Sin/).fill("abort");
                    await methods.getByRole("button", { name: "Invoke" }).click();
                    const question = page.getByRole("dialog");
                    await question.getByRole("button", { name: "Invoke" }).click();
                    await question.getByText(/SIGABRT/).waitFor();
                },
                { at: classAt("root/test", "TST_Sin") },
            );
        },
        ["--isolate", ...sinWords],
    );
});
