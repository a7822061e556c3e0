import type { ComponentChildren } from "preact";

import { Dialog } from "../shared/Dialog";
import { Problem } from "../shared/Problem";
import { useSending } from "./useSending";

/** Asks before something is changed, does it on a yes, and stays with the reason when it failed. */
export function Question({
    title,
    yes,
    danger = false,
    children,
    onYes,
    onClose,
}: {
    title: string;
    yes: string;
    danger?: boolean;
    children: ComponentChildren;
    onYes: () => Promise<void>;
    onClose: () => void;
}) {
    const { busy, error, send } = useSending(onClose);
    return (
        <Dialog
            title={title}
            onClose={onClose}
            foot={
                <>
                    <button class="button" type="button" onClick={onClose}>
                        No
                    </button>
                    <button
                        class={`button ${danger ? "danger" : "primary"}`}
                        type="button"
                        disabled={busy}
                        onClick={() => send(onYes)}
                    >
                        {yes}
                    </button>
                </>
            }
        >
            {children}
            {error !== undefined && <Problem error={error} />}
        </Dialog>
    );
}
