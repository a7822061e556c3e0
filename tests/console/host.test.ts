import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { existsSync } from "node:fs";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { test } from "node:test";

import { CimClient, CimError } from "../../console/src/cim/client";
import { CimXmlError } from "../../console/src/cim/elements";
import type { Instance, ObjectPath } from "../../console/src/cim/model";
import { checkCondition } from "../../console/src/cim/wql";
import { subscribe, subscriptionsOf, unsubscribe } from "../../console/src/live/subscriptions";
import { pathKey } from "../../console/src/cim/names";
import { all } from "./replies";

const build = process.env["PYL_BUILD_FOLDER"] ?? "";
const program = join(build, "cimhost/cimhost");
const skip = existsSync(program) ? false : "cimhost is not built";

/** Runs `use` with a client of a cimhost that serves the reference modules. */
async function withHost(use: (client: CimClient) => Promise<void>): Promise<void> {
    const words = ["serve", "--project", join(build, "cimhost.toml"), "--port", "0"];
    const host = spawn(program, [...words, "--max-seconds", "100"], {
        stdio: ["ignore", "pipe", "ignore"],
    });
    const ended = new Promise((resolve) => host.once("close", resolve));
    try {
        let url = "";
        for await (const line of createInterface(host.stdout)) {
            url = / at (http:\S+)/.exec(line)?.[1] ?? "";
            if (url) break;
        }
        assert.ok(url, "cimhost does not start");
        await use(new CimClient({ url }));
    } finally {
        host.kill();
        await ended;
    }
}

async function firstInstance(client: CimClient): Promise<Instance & { path: ObjectPath }> {
    const [found] = await all(client.instances("root/ktq", "CIM_ComputerSystem"));
    assert.ok(found?.path);
    return { ...found, path: found.path };
}

test("reads what a running cimhost answers", { skip }, async () => {
    await withHost(async (client) => {
        const namespaces = await client.namespaces();
        assert.ok(namespaces.includes("interop") && namespaces.includes("root/ktq"));
        const names = await client.classNames("root/ktq");
        let classes = 0;
        for await (const definition of client.classes("root/ktq")) {
            assert.ok(names.includes(definition.name));
            classes += 1;
        }
        assert.equal(classes, names.length);
        const system = await firstInstance(client);
        const again = await client.getInstance(system.path);
        assert.equal(pathKey(again.path ?? system.path), pathKey(system.path));
        assert.deepEqual(
            (await client.associators(system.path)).length,
            (await client.associatorNames(system.path)).length,
        );
        const missing = {
            ...system.path,
            keys: system.path.keys.map((key) => ({ ...key, value: "<&>" })),
        };
        await assert.rejects(
            client.getInstance(missing),
            (error) => error instanceof CimError && error.code === 6,
        );
    });
});

test("fails clearly when a real reply is cut or damaged", { skip }, async () => {
    await withHost(async (client) => {
        const { path } = await firstInstance(client);
        let bytes = new Uint8Array();
        const url = (client as unknown as { url: string }).url;
        const recording = new CimClient({
            url,
            fetch: async (input, init) => {
                const response = await fetch(input, init);
                bytes = new Uint8Array(await response.clone().arrayBuffer());
                return response;
            },
        });
        await recording.getInstance(path);
        assert.ok(bytes.length > 1000);
        let damaged: Uint8Array<ArrayBuffer> = bytes;
        const headers = { "Content-Type": "application/xml" };
        const broken = new CimClient({
            url,
            fetch: async () => new Response(damaged, { headers }),
        });
        const verdict = () =>
            broken.getInstance(path).then(
                () => "read",
                (error: unknown) => {
                    assert.ok(
                        error instanceof CimXmlError || error instanceof CimError,
                        String(error),
                    );
                    return "refused";
                },
            );
        for (let length = 0; length < bytes.length; ++length) {
            damaged = bytes.slice(0, length);
            const isWhole = new TextDecoder().decode(damaged).trimEnd().endsWith("</CIM>");
            assert.equal(await verdict(), isWhole ? "read" : "refused", `of ${length} bytes`);
        }
        for (let place = 0; place < bytes.length; ++place) {
            damaged = bytes.slice();
            damaged[place] = (damaged[place] ?? 0) ^ (1 << place % 8);
            await verdict();
        }
    });
});

const conditions = [
    "PerceivedSeverity > 2",
    "3 <= PerceivedSeverity AND NOT (Description LIKE 'a%_[a-z]' OR AlertType <> 5)",
    "Description = 'it''s \\'\\\\ \"'",
    "CIM_AlertIndication.Description IS NOT NULL",
    "RecommendedActions IS NULL",
    "__CLASS = 'X'",
    "Description NOT LIKE 'x' and PerceivedSeverity = +7",
    "PerceivedSeverity = -1.5e3",
    "PerceivedSeverity",
    "PerceivedSeverity >",
    "Severity > 2",
    "(PerceivedSeverity = 1",
    "PerceivedSeverity = 1)",
    "Description = 'x",
    "1 = 1",
    "Description IS 5",
    "Description LIKE 5",
    "PerceivedSeverity > 2x",
    "Description ~ 'a'",
    "PerceivedSeverity = 1 PerceivedSeverity = 2",
    "SELECT = 1",
    "PerceivedSeverity.Part = 1",
    "Description = 1 OR",
    "'a' IS NULL",
    "PerceivedSeverity == 1",
    "PerceivedSeverity = 1;",
];

test("judges conditions as cimhost does, and subscribes there", { skip }, async () => {
    await withHost(async (client) => {
        const definition = await client.getClass("root/ktq", "CIM_AlertIndication");
        for (const [index, condition] of conditions.entries()) {
            const wish = {
                interop: "interop",
                namespace: "root/ktq",
                className: definition.name,
                condition,
                destination: "http://127.0.0.1:9/",
                mark: String(index),
                hostName: "here",
            };
            const isTaken = await subscribe(client, wish).then(
                () => true,
                (error: unknown) => {
                    assert.ok(
                        error instanceof CimError && error.code === 15,
                        `${condition}: ${String(error)}`,
                    );
                    return false;
                },
            );
            const problem = checkCondition(condition, definition);
            assert.equal(problem === undefined, isTaken, `${condition}: ${problem?.message}`);
        }
        const found = await subscriptionsOf(client, "interop");
        assert.ok(found.length > 5 && found.every((one) => one.isOwn && one.query !== ""));
        for (const one of found) await unsubscribe(client, one);
        assert.deepEqual(await subscriptionsOf(client, "interop"), []);
    });
});
