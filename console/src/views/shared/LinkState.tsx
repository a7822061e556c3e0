import { useEffect, useState } from "preact/hooks";

import { localTime } from "../../cim/dateTime";
import { changes, link, reconnect, startLive, store } from "../../live/live";

/** How it stands with the server's events: that they come, or since when they do not. */
export function LinkState() {
    const now = link.value;
    const [seconds, setSeconds] = useState(0);
    useEffect(startLive, []);
    useEffect(() => {
        if (now.state !== "lost") return;
        const look = () => setSeconds(Math.max(0, Math.ceil((now.retryAt - Date.now()) / 1000)));
        look();
        const timer = setInterval(look, 1000);
        return () => clearInterval(timer);
    }, [now]);
    void changes.value; // the counts below are the store's
    return (
        <div class="link-state" role="status">
            <span class={`badge tone-${tones[now.state]}`}>
                <span class="light" aria-hidden="true" />
                {now.state === "open" && "live"}
                {now.state === "connecting" && "connecting …"}
                {now.state === "lost" && `lost since ${localTime(new Date(now.since))}`}
            </span>
            {now.state === "lost" && (
                <>
                    <span class="muted" aria-hidden="true">
                        next try in {seconds} s
                    </span>
                    <button class="button" type="button" onClick={reconnect}>
                        Connect now
                    </button>
                </>
            )}
            {store.dropped > 0 && (
                <span class="badge tone-warn">
                    {store.dropped} {store.dropped === 1 ? "event" : "events"} dropped by the server
                </span>
            )}
        </div>
    );
}

const tones = { open: "ok", connecting: "info", lost: "error" } as const;
