import { Dialog } from "./Dialog";

/** A text that found no room in a row, in full. */
export function TextDialog({ text, onClose }: { text: string; onClose: () => void }) {
    return (
        <Dialog title="In full" onClose={onClose}>
            <pre class="full-text" tabIndex={0} aria-label="Text">
                {text}
            </pre>
        </Dialog>
    );
}
