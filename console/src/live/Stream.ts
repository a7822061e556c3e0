import { eventNames, readEvent, type LiveEvent } from "./events";

/** How it stands with the link to the stream. */
export type Link =
    | { state: "connecting" }
    | { state: "open" }
    /** Lost, or never had, since a moment; `retryAt` is when the next try is made. */
    | { state: "lost"; since: number; retryAt: number };

/** What the stream needs of a browser. */
export interface Browser {
    open: (url: string) => EventSource;
    now: () => number;
    after: (milliseconds: number, call: () => void) => void;
}

const shortestPause = 1000;
const longestPause = 30_000;

export const browser: Browser = {
    open: (url) => new EventSource(url),
    now: () => Date.now(),
    after: (milliseconds, call) => void setTimeout(call, milliseconds),
};

/**
 * The server's events, from when it is started until the page ends. A link that is lost is made anew,
 * after pauses that grow: the browser's own tries stop at the first answer that is none.
 */
export class Stream {
    private readonly url: string;
    private readonly around: Browser;
    private readonly onEvent: (event: LiveEvent) => void;
    private readonly onLink: (link: Link) => void;
    private pause = shortestPause;
    private lostSince: number | undefined;
    private source: EventSource | undefined;
    private tries = 0;

    constructor(
        url: string,
        onEvent: (event: LiveEvent) => void,
        onLink: (link: Link) => void,
        around: Browser = browser,
    ) {
        this.url = url;
        this.onEvent = onEvent;
        this.onLink = onLink;
        this.around = around;
    }

    /** Connects at once, though a pause may be running. */
    connect(): void {
        this.source?.close();
        const attempt = ++this.tries;
        const source = this.around.open(this.url);
        this.source = source;
        if (this.lostSince === undefined) this.onLink({ state: "connecting" });
        for (const name of eventNames) {
            source.addEventListener(name, (message) => {
                if (attempt !== this.tries) return;
                const event = readEvent(name, String((message as MessageEvent).data));
                if (!event) return;
                if (event.kind === "hello") this.welcome();
                this.onEvent(event);
            });
        }
        source.addEventListener("error", () => {
            if (attempt === this.tries) this.lose();
        });
    }

    private welcome(): void {
        this.pause = shortestPause;
        this.lostSince = undefined;
        this.onLink({ state: "open" });
    }

    private lose(): void {
        this.source?.close();
        this.source = undefined;
        const attempt = ++this.tries;
        const now = this.around.now();
        this.lostSince ??= now;
        this.onLink({ state: "lost", since: this.lostSince, retryAt: now + this.pause });
        this.around.after(this.pause, () => {
            if (attempt === this.tries) this.connect();
        });
        this.pause = Math.min(this.pause * 2, longestPause);
    }
}
