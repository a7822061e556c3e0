/** What a page costs the thread that answers a person, as the browser's own trace tells it. */

import assert from "node:assert/strict";
import type { TestContext } from "node:test";

import type { Page } from "playwright-core";

interface TraceEvent {
    name: string;
    ph: string;
    pid: number;
    tid: number;
    ts: number; // microseconds
    tdur?: number; // microseconds of the processor, however busy the machine is
    args: { name?: string };
}

export interface Cost {
    /** The longest for which the page could not react, in milliseconds of the processor. */
    longestTask: number;
    /** All that was done before the first content was painted, in the same. */
    firstPaint: number;
}

/** Does `work` with a page. Where a page is loaded meanwhile, that counts, too. */
export async function costOf(page: Page, work: () => Promise<void>): Promise<Cost> {
    const browser = page.context().browser();
    assert.ok(browser);
    await browser.startTracing(page, { categories: ["toplevel", "loading"] });
    let trace: Buffer;
    try {
        await work();
    } finally {
        trace = await browser.stopTracing();
    }
    const { traceEvents } = JSON.parse(trace.toString()) as { traceEvents: TraceEvent[] };
    const thread = ({ pid, tid }: TraceEvent) => `${pid} ${tid}`;
    const main = new Set(
        traceEvents
            .filter(({ name, args }) => name === "thread_name" && args.name === "CrRendererMain")
            .map(thread),
    );
    const tasks = traceEvents.filter(
        (event) => event.ph === "X" && event.name.endsWith("RunTask") && main.has(thread(event)),
    );
    assert.ok(tasks.length > 100, "the browser's trace tells of no tasks");
    const painted = traceEvents.find(({ name }) => name === "firstContentfulPaint")?.ts ?? 0;
    const millis = tasks.map(({ tdur = 0 }) => tdur / 1000);
    return {
        longestTask: Math.max(...millis),
        firstPaint: millis.reduce((sum, one, at) => sum + (tasks[at]!.ts < painted ? one : 0), 0),
    };
}

const bearable = 50; // milliseconds: a person feels what is longer
const untilPainted = 300; // milliseconds, of a page that comes from this machine

export function assertAwake(context: TestContext, { longestTask, firstPaint }: Cost): void {
    context.diagnostic(`longest task: ${longestTask.toFixed(1)} ms`);
    context.diagnostic(`until the first paint: ${firstPaint.toFixed(1)} ms`);
    assert.ok(longestTask < bearable, `a task took ${longestTask} ms`);
    assert.ok(firstPaint < untilPainted, `the first paint took ${firstPaint} ms`);
}

/** The bytes that the page's objects take once what nobody needs is gone. */
export async function heapOf(page: Page): Promise<number> {
    const session = await page.context().newCDPSession(page);
    await session.send("HeapProfiler.collectGarbage");
    const { usedSize } = await session.send("Runtime.getHeapUsage");
    await session.detach();
    return usedSize;
}
