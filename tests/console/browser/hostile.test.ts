import assert from "node:assert/strict";
import { createServer } from "node:http";
import type { AddressInfo } from "node:net";
import { after, test } from "node:test";

import { chromium, type Page } from "playwright-core";

import {
    browser,
    classAt,
    closeBrowser,
    instanceAt,
    labWords,
    look,
    Server,
    withServer,
} from "./harness";

after(closeBrowser);

async function assertHarmless(page: Page): Promise<void> {
    assert.equal(await page.evaluate(() => (globalThis as { hacked?: number }).hacked), undefined);
    assert.equal(await page.locator("main script, main img[src], main b, main i").count(), 0);
}

test("markup in names, descriptions, words and values stays text", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page
                    .getByRole("gridcell", { name: "<script>window.hacked = 3</script>" })
                    .waitFor();
                await page
                    .getByText("<script>window.hacked = 1</script><b>bold</b>")
                    .first()
                    .waitFor();
                await page.getByText("<img src=x onerror='window.hacked = 2'>").first().waitFor();
                await page.getByRole("gridcell", { name: "<i>one</i> 1" }).waitFor();
                await assertHarmless(page);
                await page
                    .getByRole("link", { name: "<script>window.hacked = 3</script>" })
                    .click();
                await page
                    .getByRole("region", { name: "Values" })
                    .getByText("window.hacked = 4")
                    .waitFor();
                await page.getByText("18446744073709551615").first().waitFor();
                await assertHarmless(page);
            },
            { at: classAt("root/lab", "LAB_Hostile") },
        );
    });
});

test("an instance whose key is made of marks has an address", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByRole("region", { name: "Values" }).getByText("=cmd()").waitFor();
                await page.reload();
                await page.getByRole("heading", { level: 1, name: '"]]>&amp;#/?' }).waitFor();
            },
            { at: instanceAt('root/lab:LAB_Hostile.ID="\\"]]>&amp;#/?"') },
        );
    });
});

test("markup in the address, and in what the server says of it, stays text", async () => {
    await withServer(async (server) => {
        await look(
            server,
            async (page) => {
                await page.getByRole("alert").waitFor();
                await page.getByRole("alert").getByText("<img").first().waitFor();
                await assertHarmless(page);
            },
            { at: classAt("root/lab", "<img src=x onerror='window.hacked=5'>") },
        );
    });
});

const intrusion = `<?xml version="1.0"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0">
<SIMPLEREQ><METHODCALL NAME="PostStatus"><LOCALCLASSPATH><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/>
<NAMESPACE NAME="ktq"/></LOCALNAMESPACEPATH><CLASSNAME NAME="PYL_ConsolidatedStatus"/></LOCALCLASSPATH>
<PARAMVALUE NAME="ClassName" PARAMTYPE="string"><VALUE>Foreign</VALUE></PARAMVALUE>
<PARAMVALUE NAME="Status" PARAMTYPE="uint16"><VALUE>6</VALUE></PARAMVALUE></METHODCALL></SIMPLEREQ></MESSAGE></CIM>`;

const headers = {
    "Content-Type": "application/xml",
    CIMOperation: "MethodCall",
    CIMMethod: "PostStatus",
    CIMObject: "root%2Fktq%3APYL_ConsolidatedStatus",
};

/** A page of another site, whose script may try what it likes. */
async function onForeignPage(use: (page: Page, origin: string) => Promise<void>): Promise<void> {
    const site = createServer((_, reply) => {
        reply.writeHead(200, { "Content-Type": "text/html" });
        reply.end("<!doctype html><title>elsewhere</title>");
    });
    await new Promise<void>((resolve) => site.listen(0, "127.0.0.1", resolve));
    const context = await (await browser()).newContext();
    try {
        const page = await context.newPage();
        const origin = `http://127.0.0.1:${(site.address() as AddressInfo).port}`;
        await page.goto(origin);
        await use(page, origin);
    } finally {
        await context.close();
        await new Promise((resolve) => site.close(resolve));
    }
}

async function postedBy(server: Server): Promise<string> {
    const ask = intrusion
        .replace('METHODCALL NAME="PostStatus"', 'IMETHODCALL NAME="EnumerateInstances"')
        .replace("</METHODCALL>", "</IMETHODCALL>")
        .replace(/<LOCALCLASSPATH>|<CLASSNAME.*?\/><\/LOCALCLASSPATH>/g, "")
        .replace(
            /<PARAMVALUE[^]*<\/PARAMVALUE>/,
            '<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="PYL_ConsolidatedStatus"/></IPARAMVALUE>',
        );
    const reply = await fetch(server.url, {
        method: "POST",
        headers: { ...headers, CIMMethod: "EnumerateInstances", CIMObject: "root%2Fktq" },
        body: ask,
    });
    return reply.text();
}

test("a page of another site invokes no method, hears no events and frames nothing", async () => {
    await withServer(async (server) => {
        await onForeignPage(async (page) => {
            const tried = await page.evaluate(
                async ({ url, body, fields }) => {
                    const attempt = (init: RequestInit) =>
                        fetch(url, init).then(
                            (reply) => `${reply.type} ${reply.status}`,
                            () => "failed",
                        );
                    const plain = { "Content-Type": "text/plain" };
                    const events = new Promise((resolve) => {
                        const source = new EventSource(`${url}events`);
                        source.onmessage = source.onopen = () => resolve("heard");
                        source.onerror = () => {
                            source.close();
                            resolve("failed");
                        };
                    });
                    const framed = new Promise((resolve) => {
                        const frame = document.createElement("iframe");
                        frame.src = url;
                        frame.onload = () => {
                            try {
                                resolve(frame.contentDocument ? "same" : "blocked");
                            } catch {
                                resolve("blocked");
                            }
                        };
                        document.body.append(frame);
                    });
                    return {
                        cors: await attempt({ method: "POST", headers: fields, body }),
                        noCors: await attempt({
                            method: "POST",
                            mode: "no-cors",
                            headers: plain,
                            body,
                        }),
                        events: await events,
                        framed: await framed,
                    };
                },
                { url: server.url, body: intrusion, fields: headers },
            );
            assert.equal(tried.cors, "failed");
            assert.match(tried.noCors, /^opaque|^failed/);
            assert.equal(tried.events, "failed");
            assert.equal(tried.framed, "blocked");
            assert.ok(
                page
                    .frames()
                    .slice(1)
                    .every((frame) => !frame.url().startsWith(server.url)),
            );
        });
        const stored = await postedBy(server);
        assert.match(stored, /PYL_ConsolidatedStatus/);
        assert.doesNotMatch(stored, /Foreign/);
    });
});

test("the same request of the page itself is served", async () => {
    await withServer(async (server) => {
        await look(server, async (page) => {
            const status = await page.evaluate(
                async ({ url, body, fields }) =>
                    (await fetch(url, { method: "POST", headers: fields, body })).status,
                { url: server.url, body: intrusion, fields: headers },
            );
            assert.equal(status, 200);
        });
        assert.match(await postedBy(server), /Foreign/);
    });
});

test("a host name that was made to stand for this machine invokes nothing", async () => {
    const server = await Server.start(labWords);
    try {
        const rebound = `http://rebound.example:${server.port}/`;
        const own = await chromium.launch({
            executablePath: process.env["PYL_CHROMIUM"] ?? "/usr/bin/chromium",
            args: [
                "--no-sandbox",
                "--disable-gpu",
                "--host-resolver-rules=MAP rebound.example 127.0.0.1",
            ],
        });
        try {
            const page = await own.newPage();
            const reply = await page.goto(rebound);
            assert.equal(reply?.status(), 421);
            const status = await page.evaluate(
                async ({ body, fields }) =>
                    (await fetch("/cimom", { method: "POST", headers: fields, body })).status,
                { body: intrusion, fields: headers },
            );
            assert.equal(status, 421);
        } finally {
            await own.close();
        }
        assert.doesNotMatch(await postedBy(server), /Foreign/);
    } finally {
        await server.stop();
    }
});
