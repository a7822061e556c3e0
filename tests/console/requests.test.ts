import assert from "node:assert/strict";
import { test } from "node:test";

import { readEvent } from "../../console/src/live/events";
import { LiveStore, type SeenRequest } from "../../console/src/live/LiveStore";
import { logRows, requestRows } from "../../console/src/views/requests/rows";
import { outcomeOf, sizeText, spanText } from "../../console/src/views/requests/words";

function storeWith(...requests: object[]): LiveStore {
    const store = new LiveStore();
    for (const [index, request] of requests.entries()) {
        const log = { request: index + 1, level: "error", component: "Fans", text: "fan <b>" };
        for (const [name, data] of [
            ["log", log],
            ["request", { number: index + 1, status: 200, ...request }],
        ] as const) {
            const event = readEvent(name, JSON.stringify(data));
            assert.ok(event);
            store.take(event);
        }
    }
    return store;
}

function operations(
    store: LiveStore,
    search: string,
    slowest: boolean,
    open: string[] = [],
): string[] {
    const rows = requestRows(
        store.requests.newestFirst(),
        (request) => store.logsOf(request),
        search,
        slowest,
        new Set(open),
    );
    return rows.map(({ level, request, log, detail }) =>
        level === 1 ? request.operation : (log?.text ?? detail ?? ""),
    );
}

test("lists the newest first, the slowest on demand, and what has all the words", () => {
    const store = storeWith(
        { operation: "A", micros: 5, className: "PYL_Fan" },
        { operation: "B", micros: 9, className: "PYL_Fan", peer: "127.0.0.1:1" },
        { operation: "C", micros: 7 },
    );
    assert.deepEqual(operations(store, "", false), ["C", "B", "A"]);
    assert.deepEqual(operations(store, "", true), ["B", "C", "A"]);
    assert.deepEqual(operations(store, "fan 127", false), ["B"]);
});

test("unfolds a request to where it came from and what was logged", () => {
    const store = storeWith({ operation: "A", object: "root/x", peer: "p", providers: ["P"] });
    const key = `r${store.requests.newestFirst()[0]?.key}`;
    assert.deepEqual(operations(store, "", false, [key]), [
        "A",
        "request 1 of p on root/x answered by P",
        "fan <b>",
    ]);
});

test("filters the log", () => {
    const store = storeWith({}, {});
    assert.equal(logRows(store.logs.newestFirst(), "").length, 2);
    assert.equal(logRows(store.logs.newestFirst(), "ERROR fans").length, 2);
    assert.equal(logRows(store.logs.newestFirst(), "warning").length, 0);
});

test("says times, sizes and outcomes as people do", () => {
    assert.deepEqual([98, 1250, 12345, 3_400_000].map(spanText), [
        "98 µs",
        "1.25 ms",
        "12.3 ms",
        "3.4 s",
    ]);
    assert.deepEqual([98, 1536, 12 << 20].map(sizeText), ["98 B", "1.5 KiB", "12 MiB"]);
    const outcome = (status: number, text: string) =>
        outcomeOf({ status, outcome: text } as SeenRequest);
    assert.deepEqual(outcome(200, ""), { tone: "ok", words: "OK" });
    assert.deepEqual(outcome(200, "6"), { tone: "warn", words: "6 NOT_FOUND" });
    assert.deepEqual(outcome(200, "1"), { tone: "error", words: "1 FAILED" });
    assert.deepEqual(outcome(403, ""), { tone: "error", words: "403" });
    assert.deepEqual(outcome(400, "header-mismatch"), {
        tone: "error",
        words: "400 header-mismatch",
    });
});
