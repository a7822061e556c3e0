import assert from "node:assert/strict";
import { test } from "node:test";

import { readEvent, type LiveEvent } from "../../console/src/live/events";
import { LiveStore } from "../../console/src/live/LiveStore";
import { Ring } from "../../console/src/live/Ring";
import { Stream, type Link } from "../../console/src/live/Stream";

const helloData =
    '{"program":"cimhost","version":"1","target":null,"destination":"console:","logs":true}';

function logData(number: number | undefined, text: string): string {
    return JSON.stringify({ time: "t", level: "info", request: number, component: "Fans", text });
}

function taken(store: LiveStore, name: Parameters<typeof readEvent>[0], data: string): void {
    const event = readEvent(name, data);
    assert.ok(event, data);
    store.take(event);
}

test("keeps the newest and tells what had to go", () => {
    const ring = new Ring<number>(3);
    assert.deepEqual(
        [1, 2, 3, 4, 5].map((number) => ring.push(number)),
        [undefined, undefined, undefined, 1, 2],
    );
    assert.deepEqual(ring.newestFirst(), [5, 4, 3]);
    ring.clear();
    ring.push(6);
    assert.deepEqual(ring.newestFirst(), [6]);
});

test("reads events as far as they make sense", () => {
    assert.equal(readEvent("request", "{"), undefined);
    assert.equal(readEvent("request", "null"), undefined);
    const event = readEvent("request", '{"number":1,"providers":"x","micros":"9","operation":7}');
    assert.ok(event?.kind === "request");
    assert.deepEqual(
        [
            event.request.providers,
            event.request.micros,
            event.request.operation,
            event.request.peer,
        ],
        [[], 9, "7", ""],
    );
});

test("folds log lines under their request, of the same run of the server", () => {
    const store = new LiveStore();
    taken(store, "hello", helloData);
    taken(store, "log", logData(1, "first"));
    taken(store, "log", logData(undefined, "of nobody"));
    taken(store, "log", logData(1, "second"));
    taken(store, "request", '{"number":1}');
    taken(store, "hello", helloData);
    taken(store, "log", logData(1, "after the restart"));
    taken(store, "request", '{"number":1}');
    const [after, before] = store.requests.newestFirst();
    assert.ok(after && before);
    assert.deepEqual(
        store.logsOf(before).map(({ text }) => text),
        ["first", "second"],
    );
    assert.deepEqual(
        store.logsOf(after).map(({ text }) => text),
        ["after the restart"],
    );
});

test("does not grow, whatever comes", () => {
    const store = new LiveStore();
    for (let number = 0; number < 20_000; ++number) {
        taken(store, "log", logData(Math.floor(number / 2), "x".repeat(number % 100)));
        if (number % 4 === 0) taken(store, "request", JSON.stringify({ number }));
        if (number % 8 === 0) taken(store, "alert", '{"instance":"<b>"}');
    }
    assert.deepEqual(
        [store.requests.length, store.logs.length, store.alerts.length],
        [2000, 5000, 1000],
    );
    const byRequest = (store as unknown as { logsByRequest: Map<string, unknown[]> }).logsByRequest;
    assert.equal(
        [...byRequest.values()].reduce((sum, lines) => sum + lines.length, 0),
        5000,
    );
    assert.equal(store.alertCount, 2500);
    taken(store, "log", logData(1, "x".repeat(100_000)));
    assert.ok((store.logs.newestFirst()[0]?.text.length ?? 0) < 5000);
});

test("reads the indication of an alert, and keeps what is none", () => {
    const store = new LiveStore();
    const instance =
        '<INSTANCE CLASSNAME="CIM_AlertIndication"><PROPERTY NAME="PerceivedSeverity" TYPE="uint16"><VALUE>6</VALUE></PROPERTY></INSTANCE>';
    taken(store, "alert", JSON.stringify({ time: "t", filter: "f", instance }));
    taken(store, "alert", JSON.stringify({ time: "t", filter: "f", instance: "<script>" }));
    const [none, alert] = store.alerts.newestFirst();
    assert.equal(alert?.indication?.properties[0]?.value, 6);
    assert.equal(none?.indication, undefined);
    assert.equal(none?.instance, "<script>");
});

test("knows the lines that tell what reached the enclosure", () => {
    const store = new LiveStore();
    taken(store, "log", logData(undefined, "calling ENCA_CLI_Exec with arg x"));
    taken(store, "log", logData(undefined, "an alert is not forwarded to the enclosure: full"));
    taken(store, "log", logData(undefined, "cadENCA"));
    assert.equal(store.forwardings.length, 2);
});

/** A browser whose time stands still, with a server that is there or not. */
function world() {
    class Source extends EventTarget {
        closed = false;
        close() {
            this.closed = true;
        }
        tell(name: string, data?: string) {
            this.dispatchEvent(Object.assign(new Event(name), { data }));
        }
    }
    const sources: Source[] = [];
    const timers: { at: number; call: () => void }[] = [];
    const state = { now: 0, links: [] as Link[], events: [] as LiveEvent[] };
    const browser = {
        open: () => {
            sources.push(new Source());
            return sources.at(-1) as unknown as EventSource;
        },
        now: () => state.now,
        after: (milliseconds: number, call: () => void) =>
            void timers.push({ at: state.now + milliseconds, call }),
    };
    const stream = new Stream(
        "events",
        (event) => state.events.push(event),
        (link) => state.links.push(link),
        browser,
    );
    const wait = (milliseconds: number) => {
        state.now += milliseconds;
        for (const timer of timers.splice(0)) {
            if (timer.at <= state.now) timer.call();
            else timers.push(timer);
        }
    };
    return { stream, sources, state, wait, last: () => sources.at(-1) as Source };
}

test("connects anew after pauses that grow, and says since when it is lost", () => {
    const { stream, sources, state, wait, last } = world();
    stream.connect();
    last().tell("hello", helloData);
    assert.deepEqual(
        state.links.map((link) => link.state),
        ["connecting", "open"],
    );
    state.now = 5000;
    const pauses: number[] = [];
    for (let attempt = 0; attempt < 7; ++attempt) {
        last().tell("error");
        const link = state.links.at(-1);
        assert.ok(link?.state === "lost");
        assert.equal(link.since, 5000);
        pauses.push(link.retryAt - state.now);
        wait(link.retryAt - state.now);
    }
    assert.deepEqual(pauses, [1000, 2000, 4000, 8000, 16000, 30000, 30000]);
    assert.equal(sources.length, 8);
    assert.ok(sources.slice(0, 7).every((source) => source.closed));
    last().tell("hello", helloData);
    assert.equal(state.links.at(-1)?.state, "open");
    last().tell("error");
    const link = state.links.at(-1);
    assert.ok(link?.state === "lost" && link.retryAt - state.now === 1000);
});

test("hears of one connection only", () => {
    const { stream, sources, state, wait } = world();
    stream.connect();
    sources[0]?.tell("error");
    stream.connect(); // the user does not wait
    wait(60_000);
    assert.equal(sources.length, 2);
    sources[0]?.tell("dropped", '{"count":1}');
    sources[1]?.tell("dropped", '{"count":2}');
    assert.deepEqual(state.events, [{ kind: "dropped", count: 2 }]);
});
