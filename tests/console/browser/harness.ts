/** A cimhost that serves its own page, and a browser that looks at it. */

import assert from "node:assert/strict";
import { spawn, type ChildProcess } from "node:child_process";
import { join } from "node:path";
import { createInterface } from "node:readline";

import type { Browser, BrowserContextOptions, Page } from "playwright-core";

import { launch } from "./browser";

export const build = process.env["PYL_BUILD_FOLDER"] ?? "";
export const source = process.env["PYL_SOURCE_FOLDER"] ?? "";

const base = join(source, "schema/base/base.mof");

/** The words of `cimhost serve` for the reference modules, a lab of fixed instances, and what crashes. */
export const labWords: readonly string[] = [
    ...["--project", join(build, "cimhost.toml")],
    ...["--namespace", "root/lab", "--schema", base],
    ...["--schema", join(source, "tests/console/browser/lab.mof")],
];

export const sinWords: readonly string[] = [
    ...["--namespace", "root/test", "--schema", base],
    ...["--schema", join(source, "tests/system/sins/Sins.mof")],
    ...["--registration", join(source, "tests/system/sins/sins.registration")],
    ...["--provider-dir", join(build, "tests/system/sins")],
];

export class Server {
    private readonly process: ChildProcess;
    private readonly ended: Promise<unknown>;

    private constructor(
        child: ChildProcess,
        readonly url: string,
    ) {
        this.process = child;
        this.ended = new Promise((resolve) => child.once("close", resolve));
    }

    static async start(words: readonly string[] = labWords, port = "0"): Promise<Server> {
        const all = ["serve", ...words, "--port", port, "--max-seconds", "280"];
        const child = spawn(join(build, "cimhost/cimhost"), all, {
            stdio: ["ignore", "pipe", "pipe"],
        });
        let said = "";
        child.stderr.on("data", (data: Buffer) => (said = (said + data.toString()).slice(-4000)));
        for await (const line of createInterface(child.stdout)) {
            const url = /^Its console: (\S+)/.exec(line)?.[1];
            if (url) return new Server(child, url);
        }
        throw new Error(`cimhost does not start: ${said}`);
    }

    get port(): string {
        return new URL(this.url).port;
    }

    async stop(): Promise<void> {
        this.process.kill();
        await this.ended;
    }
}

export async function withServer(
    use: (server: Server) => Promise<void>,
    words: readonly string[] = labWords,
): Promise<void> {
    const server = await Server.start(words);
    try {
        await use(server);
    } finally {
        await server.stop();
    }
}

let running: Promise<Browser> | undefined;

export function browser(): Promise<Browser> {
    running ??= launch();
    return running;
}

export async function closeBrowser(): Promise<void> {
    await (await running)?.close();
}

export interface Looking extends BrowserContextOptions {
    /** What the browser itself may say, such as that a connection was refused. */
    mayFail?: boolean;
    at?: string;
}

/**
 * Looks at the server's page. Afterwards the page must have said nothing to the console, thrown
 * nothing, and asked nobody but the server.
 */
export async function look(
    server: Server,
    use: (page: Page) => Promise<void>,
    { mayFail = false, at = "", ...options }: Looking = {},
): Promise<void> {
    const context = await (
        await browser()
    ).newContext({
        viewport: { width: 1280, height: 800 },
        locale: "en-GB",
        timezoneId: "Europe/Berlin",
        reducedMotion: "reduce",
        ...options,
    });
    const page = await context.newPage();
    page.setDefaultTimeout(30000);
    const wrong: string[] = [];
    page.on("console", (message) => {
        if (!mayFail) wrong.push(`console ${message.type()}: ${message.text()}`);
    });
    page.on("pageerror", (error) => wrong.push(`error: ${error.stack ?? error.message}`));
    page.on("request", (request) => {
        const url = new URL(request.url());
        if (url.origin !== new URL(server.url).origin && url.protocol !== "data:") {
            wrong.push(`asked ${url.href}`);
        }
    });
    try {
        await page.goto(server.url + at);
        await use(page);
        assert.deepEqual(wrong, []);
    } finally {
        await context.close();
    }
}

/** The address of an instance, as the page writes it. */
export const instanceAt = (path: string): string => `#/instance/${encodeURIComponent(path)}`;
export const classAt = (namespace: string, name: string): string =>
    `#/explore/${encodeURIComponent(namespace)}/${encodeURIComponent(name)}`;

export const labSystem = 'root/lab:LAB_System.CreationClassName="LAB_System",Name="lab-7"';
