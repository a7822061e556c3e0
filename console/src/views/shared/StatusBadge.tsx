import type { Status } from "../../state/status";

/** A state as a light and words. */
export function StatusBadge({ status }: { status: Status }) {
    return (
        <span class={`badge tone-${status.tone}`}>
            <span class="light" aria-hidden="true" />
            {status.words}
        </span>
    );
}
