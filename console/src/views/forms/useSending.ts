import { useState } from "preact/hooks";

/** Sends what a dialog asked for: it closes when that went well, and stays with the error when not. */
export function useSending(onClose: () => void) {
    const [busy, setBusy] = useState(false);
    const [error, setError] = useState<unknown>();
    const send = (what: () => Promise<void>) => {
        setBusy(true);
        setError(undefined);
        what().then(onClose, (failure: unknown) => {
            setError(failure);
            setBusy(false);
        });
    };
    return { busy, error, send };
}
