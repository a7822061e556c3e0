import assert from "node:assert/strict";
import { existsSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";

import type { Browser } from "playwright-core";

import { result } from "../replies";
import { launch, open, violations, type Look } from "./browser";
import { StandIn, instancesXml, namesXml, notFound, type Asked } from "./standIn";
import { assertAwake, costOf, heapOf } from "./tasks";

const hasPage = existsSync(join(process.env["PYL_PAGE_FOLDER"] ?? "", "index.html"));
const skip = hasPage ? false : "the page is not built";

const markup = "<script>document.title = 'run'</script><img src=x onerror=alert(1)>";
const escaped = markup.replace(/</g, "&lt;");

const severity =
    '<PROPERTY NAME="PerceivedSeverity" TYPE="uint16"><QUALIFIER NAME="ValueMap" TYPE="string"><VALUE.ARRAY>' +
    '<VALUE>2</VALUE><VALUE>6</VALUE></VALUE.ARRAY></QUALIFIER><QUALIFIER NAME="Values" TYPE="string">' +
    "<VALUE.ARRAY><VALUE>Information</VALUE><VALUE>Critical</VALUE></VALUE.ARRAY></QUALIFIER></PROPERTY>";
const classes: Record<string, string> = {
    CIM_Indication: '<CLASS NAME="CIM_Indication"></CLASS>',
    CIM_AlertIndication:
        `<CLASS NAME="CIM_AlertIndication" SUPERCLASS="CIM_Indication">${severity}` +
        '<PROPERTY NAME="Message" TYPE="string"/></CLASS>',
    CIM_IndicationFilter:
        '<CLASS NAME="CIM_IndicationFilter"><PROPERTY NAME="Query" TYPE="string"/></CLASS>',
    CIM_ListenerDestinationCIMXML:
        '<CLASS NAME="CIM_ListenerDestinationCIMXML"><PROPERTY NAME="Destination" TYPE="string"/></CLASS>',
};

/** What cimhost would say of a module that crashed, and of its indications. */
function cimhost({ method, namespace, className }: Asked): string | undefined {
    switch (method) {
        case "EnumerateInstanceNames":
            return namesXml("CIM_Namespace", "Name", ["interop", "root/ktq", "root/cimhost"]);
        case "EnumerateClasses":
            if (namespace === "root/cimhost") {
                return result(
                    '<CLASS NAME="CIMHOST_Module"></CLASS><CLASS NAME="CIMHOST_Provider"></CLASS>',
                );
            }
            return result(`${classes["CIM_Indication"]}${classes["CIM_AlertIndication"]}`);
        case "GetClass":
            return classes[className] ? result(classes[className]) : notFound;
        case "CreateInstance":
            return namesXml(className, "Name", ["made"]);
        case "EnumerateInstances":
            if (className === "CIMHOST_Module") {
                const words = `ended by SIGSEGV: ${escaped}`;
                return instancesXml(className, "Module", [
                    {
                        Module: "fans",
                        State: "paused",
                        Starts: "2",
                        Crashes: "2",
                        LastWords: words,
                    },
                ]);
            }
            if (className === "CIMHOST_Provider") {
                return instancesXml(className, "Provider", [
                    {
                        Provider: "FanProvider",
                        Module: "fans",
                        ClassName: escaped,
                        NameSpace: "root/ktq",
                    },
                ]);
            }
            return undefined;
        default:
            return undefined;
    }
}

function alertOf(number: number, message: string): object {
    const instance =
        '<INSTANCE CLASSNAME="CIM_AlertIndication"><PROPERTY NAME="PerceivedSeverity" TYPE="uint16">' +
        `<VALUE>${number}</VALUE></PROPERTY><PROPERTY NAME="Message" TYPE="string"><VALUE>${message}</VALUE></PROPERTY></INSTANCE>`;
    return { time: new Date().toISOString(), filter: "console-1", instance };
}

function requestOf(number: number, more: object = {}): object {
    return {
        number,
        time: new Date().toISOString(),
        peer: "127.0.0.1:1",
        user: "",
        operation: "GetInstance",
        object: "root/ktq",
        className: "PYL_Fan",
        providers: ["FanProvider"],
        status: 200,
        outcome: "",
        bytes: 100,
        micros: number,
        ...more,
    };
}

let browser: Browser;
before(async () => {
    if (hasPage) browser = await launch();
});
after(() => browser?.close());

type Use = (opened: Awaited<ReturnType<typeof open>> & { host: StandIn }) => Promise<void>;

/** Opens a view of the page that a stand-in serves. */
async function withView(view: string, look: Look, use: Use): Promise<void> {
    const host = new StandIn();
    host.answer = cimhost;
    await host.start();
    try {
        const opened = await open(browser, `${host.url}#/${view}`, look);
        while (host.viewerCount === 0) await opened.page.waitForTimeout(20);
        await use({ ...opened, host });
        await opened.page.close();
    } finally {
        await host.stop();
    }
}

test("shows requests with their log lines, and what they say as text", { skip }, async () => {
    await withView("requests", {}, async ({ page, printed, host }) => {
        host.tell("log", {
            time: "t",
            level: "error",
            request: 1,
            component: "Fans",
            text: markup,
        });
        host.tell("request", requestOf(1, { className: markup, outcome: "6" }));
        host.tell("request", requestOf(2));
        host.tell("dropped", { count: 7 });
        await page.getByText("7 events dropped by the server").waitFor();
        const row = page.getByRole("row", { name: /NOT_FOUND/ });
        await row.waitFor();
        await row.click();
        const line = page.locator(".level-2", { hasText: "Fans" });
        assert.ok((await line.textContent())?.includes(markup));
        assert.equal(await page.title(), "cimhost console");
        assert.deepEqual(await page.locator("main script, main img").count(), 0);
        assert.deepEqual(await violations(page), [], "requests");
        assert.deepEqual(printed, []);
    });
});

test("is walked by the keyboard alone", { skip }, async () => {
    await withView("requests", {}, async ({ page, host }) => {
        for (let number = 1; number <= 100; ++number) host.tell("request", requestOf(number));
        const rows = page.getByRole("treegrid", { name: "Requests" });
        await page.getByRole("row", { name: /100 µs/ }).waitFor();
        await page.getByRole("button", { name: "Pause" }).focus();
        await page.keyboard.press("Enter");
        await page.keyboard.press("Tab"); // Clear
        await page.keyboard.press("Tab");
        await page.keyboard.press("ArrowDown");
        await page.keyboard.press("Enter");
        await rows.locator(".level-2", { hasText: "request 99 " }).waitFor();
        await page.keyboard.press("ArrowRight");
        await page.keyboard.press("ArrowLeft");
        await rows.locator(".level-2").waitFor({ state: "detached" });
        await page.keyboard.press("End");
        await page.locator('[role="row"]:focus', { hasText: "1 µs" }).waitFor();
        await page.keyboard.press("Home");
        await page.locator('[role="row"]:focus', { hasText: "100 µs" }).waitFor();
    });
});

test("tells operation, class and status in full on a phone", { skip }, async () => {
    await withView("requests", { width: 400 }, async ({ page, host }) => {
        const operation = "OpenEnumerateInstancePaths";
        host.tell("request", requestOf(1, { operation, outcome: "7", micros: 123456 }));
        const row = page.getByRole("row", { name: operation });
        await row.waitFor();
        const cut = await row
            .locator(".clip:visible")
            .evaluateAll((cells) =>
                cells
                    .filter((one) => one.scrollWidth > one.clientWidth)
                    .map((one) => one.textContent),
            );
        assert.deepEqual(cut, []);
        for (const words of ["PYL_Fan", "7 NOT_SUPPORTED", "123 ms"]) {
            assert.ok(await row.getByText(words).isVisible(), words);
        }
    });
});

test("holds what is looked at in its place while more comes in", { skip }, async () => {
    await withView("requests", {}, async ({ page, host }) => {
        for (let number = 1; number <= 200; ++number) host.tell("request", requestOf(number));
        await page.getByRole("row", { name: /200 µs/ }).waitFor();
        const list = page.getByRole("treegrid");
        await list.evaluate((element) => (element.scrollTop = 2800));
        const row = page.locator(".live-row", { hasText: "95 µs" });
        await row.waitFor();
        const before = (await row.boundingBox())?.y;
        for (let number = 201; number <= 260; ++number) host.tell("request", requestOf(number));
        await page.waitForFunction(
            () => document.querySelector(".live-rows")?.ariaRowCount === "261",
        );
        // The rows are drawn anew in the frame after the count has changed.
        await page.evaluate(
            () =>
                new Promise((drawn) => {
                    requestAnimationFrame(() => requestAnimationFrame(drawn));
                }),
        );
        await row.waitFor();
        assert.equal((await row.boundingBox())?.y, before);
    });
});

test(
    "shows a thousand log lines a second, awake and without growing",
    { skip },
    async (context) => {
        await withView("requests", {}, async ({ page, host }) => {
            await page.getByRole("button", { name: "Log lines" }).click();
            let lines = 0;
            const tell = async (count: number, pause: number) => {
                for (const until = lines + count; lines < until; ) {
                    const text = `line ${++lines}`;
                    host.tell("log", { time: "t", level: "info", component: "Fans", text });
                    if (lines % 50 === 0) await page.waitForTimeout(pause);
                }
                await page.getByText(`line ${lines}`, { exact: true }).waitFor();
            };
            await tell(10_000, 1);
            const before = await heapOf(page);
            assertAwake(context, await costOf(page, () => tell(3000, 50)));
            await tell(10_000, 1);
            const grown = ((await heapOf(page)) - before) / 1024;
            context.diagnostic(`grown by ${Math.round(grown)} KiB`);
            assert.ok(grown < 1024, `grown by ${grown} KiB`);
            assert.ok((await page.locator(".live-row").count()) < 80);
            assert.equal(await page.getByRole("treegrid").getAttribute("aria-rowcount"), "5001");
        });
    },
);

test("subscribes with a click and shows what arrives", { skip }, async () => {
    await withView("alerts", {}, async ({ page, printed, host }) => {
        const condition = page.getByLabel(/Condition/);
        await condition.fill("Severity > 2");
        await page.getByText("CIM_AlertIndication has no property Severity").waitFor();
        assert.ok(await page.getByRole("button", { name: "Subscribe" }).isDisabled());
        await condition.fill("PerceivedSeverity = cri");
        await page.getByRole("option", { name: /6\s*Critical/ }).waitFor();
        assert.deepEqual(await violations(page), [], "completion");
        await page.keyboard.press("ArrowDown");
        await page.keyboard.press("Enter");
        assert.equal(await condition.inputValue(), "PerceivedSeverity = 6 ");
        await page.getByRole("button", { name: "Subscribe" }).click();
        while (
            !host.asked.some(({ body }) => body.includes('CLASSNAME="CIM_IndicationSubscription"'))
        ) {
            await page.waitForTimeout(50);
        }
        assert.ok(host.asked.some(({ body }) => body.includes("WHERE PerceivedSeverity = 6")));
        host.tell("alert", alertOf(6, escaped));
        const row = page.getByRole("row", { name: /Critical \(6\)/ });
        await row.waitFor();
        assert.ok((await row.textContent())?.includes(markup));
        assert.equal(await row.locator(".badge.tone-error").count(), 1);
        await row.click();
        await page.locator(".level-2", { hasText: "PerceivedSeverity = Critical (6)" }).waitFor();
        assert.deepEqual(printed, []);
    });
});

test("shows how a module fell, in its own words", { skip }, async () => {
    await withView("modules", {}, async ({ page, printed }) => {
        const card = page.getByRole("region", { name: "fans" });
        await card.getByText("2 crashes").waitFor();
        assert.ok(await card.getByText("no, the next request starts it again").isVisible());
        assert.ok((await card.locator("pre").textContent())?.includes(markup));
        await card.locator("summary").click();
        assert.ok((await card.locator("table").textContent())?.includes(markup));
        assert.deepEqual(await violations(page), [], "modules");
        assert.deepEqual(printed, []);
    });
});

test("says since when the server is away, and goes on when it is back", { skip }, async () => {
    await withView("requests", {}, async ({ page, host }) => {
        host.tell("request", requestOf(1));
        await page.getByRole("row", { name: /1 µs/ }).waitFor();
        await host.stop();
        await page.getByText(/lost since \d{4}-/).waitFor();
        assert.deepEqual(await violations(page), [], "a lost link");
        await host.start();
        await page.getByText("live", { exact: true }).first().waitFor();
        host.tell("request", requestOf(1, { operation: "ExecQuery" }));
        await page.getByRole("row", { name: /ExecQuery/ }).waitFor();
        assert.equal(await page.getByRole("row", { name: /1 µs/ }).count(), 2);
    });
});

for (const look of [{ width: 400, colors: "dark" }, { width: 400 }, { colors: "dark" }] as const) {
    const words = `${look.width ?? 1280} pixels, ${"colors" in look ? look.colors : "light"}`;
    test(`is accessible with ${words}`, { skip }, async () => {
        for (const [view, shown] of [
            ["requests", "GetInstance"],
            ["alerts", "a bell"],
            ["modules", "Last words"],
        ] as const) {
            await withView(view, look, async ({ page, printed, host }) => {
                host.tell("request", requestOf(1));
                for (let number = 0; number < 8; ++number)
                    host.tell("alert", alertOf(number, "a bell"));
                await page.getByText(shown).first().waitFor();
                assert.deepEqual(await violations(page), [], view);
                const wide = await page.evaluate(() => document.documentElement.scrollWidth);
                assert.ok(wide <= (look.width ?? 1280), `${view} is ${wide} pixels wide`);
                assert.deepEqual(printed, []);
            });
        }
    });
}
