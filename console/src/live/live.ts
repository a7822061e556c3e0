import { signal } from "@preact/signals";

import { LiveStore } from "./LiveStore";
import { Stream, type Link } from "./Stream";

/** What is known of the server's doings since the page was opened. */
export const store = new LiveStore();

/** Changes with `store`, once in a frame at most: views read it to be drawn anew. */
export const changes = signal(0);

export const link = signal<Link>({ state: "connecting" });

let frame = 0;

function tellChange(): void {
    frame ||= requestAnimationFrame(() => {
        frame = 0;
        changes.value += 1;
    });
}

/** Says that something in `store` was changed by the page itself. */
export const storeChanged = tellChange;

let stream: Stream | undefined;

/** Has the page listen to the server; once is enough. */
export function startLive(): void {
    if (stream) return;
    stream = new Stream(
        "events",
        (event) => {
            store.take(event);
            tellChange();
        },
        (now) => (link.value = now),
    );
    stream.connect();
}

export function reconnect(): void {
    stream?.connect();
}
