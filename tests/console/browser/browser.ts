import { createRequire } from "node:module";
import { readFileSync } from "node:fs";

import { chromium, type Browser, type Page } from "playwright-core";

const flags = [
    "--no-sandbox",
    "--disable-gpu",
    "--disable-quic",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--force-color-profile=srgb",
    "--font-render-hinting=none",
];

export function launch(): Promise<Browser> {
    return chromium.launch({
        executablePath: process.env["PYL_CHROMIUM"] ?? "/usr/bin/chromium",
        args: flags,
    });
}

export interface Look {
    width?: number;
    colors?: "light" | "dark";
}

/** Opens the page, and collects what it prints to the console and throws, which should be nothing. */
export async function open(
    browser: Browser,
    url: string,
    { width = 1280, colors = "light" }: Look = {},
): Promise<{ page: Page; printed: string[] }> {
    const page = await browser.newPage({ viewport: { width, height: 860 }, colorScheme: colors });
    page.setDefaultTimeout(20_000);
    const printed: string[] = [];
    page.on("console", (message) => printed.push(message.text()));
    page.on("pageerror", (error) => printed.push(error.message));
    page.on("request", (request) => {
        const isOwn = request.url().startsWith(new URL(url).origin) || request.url() === "data:,";
        if (!isOwn) printed.push(`a request to ${request.url()}`);
    });
    await page.goto(url);
    return { page, printed };
}

interface Violation {
    id: string;
    nodes: { target: unknown; failureSummary?: string }[];
}

/** What axe-core finds wrong with what is shown. */
export async function violations(page: Page): Promise<string[]> {
    const file = createRequire(import.meta.url).resolve("axe-core");
    await page.evaluate(readFileSync(file, "utf8"));
    const found = await page.evaluate(async () => {
        const { axe } = globalThis as unknown as {
            axe: { run: () => Promise<{ violations: Violation[] }> };
        };
        return (await axe.run()).violations;
    });
    return found.map(({ id, nodes }) => `${id}: ${JSON.stringify(nodes.slice(0, 3))}`);
}
