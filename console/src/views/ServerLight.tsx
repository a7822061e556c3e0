import { changes, link, store } from "../live/live";

/** The server's name, and whether it answers. */
export function ServerLight() {
    void changes.value; // the greeting is the store's
    const { state } = link.value;
    const { hello } = store;
    const name = hello?.target?.replace(/^https?:\/\//, "") ?? location.host;
    return (
        <div class="server">
            <span class={`light tone-${tones[state]}`} aria-hidden="true" />
            <span class="name" title={hello ? `${hello.program} ${hello.version}` : undefined}>
                {name}
            </span>
            <span class={state === "lost" ? "badge tone-error" : "hidden-text"} role="status">
                {words[state]}
            </span>
        </div>
    );
}

const tones = { open: "ok", connecting: "info", lost: "error" } as const;
const words = { open: "connected", connecting: "connecting", lost: "connection lost" } as const;
