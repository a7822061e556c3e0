import { useCallback, useEffect, useRef, useState } from "preact/hooks";

import { useReturn } from "./useReturn";

export interface Load<T> {
    value?: T;
    error?: unknown;
    busy: boolean;
    reload: () => void;
}

/**
 * What `work` comes to. It is done when the component appears, when one of `inputs` changes and on
 * reload, and when it had failed and the link to the server is made again; the former value stays
 * while it is done again. It is aborted with the component.
 */
export function useLoad<T>(
    work: (signal: AbortSignal) => Promise<T>,
    inputs: readonly unknown[],
): Load<T> {
    const [state, setState] = useState<{ value?: T; error?: unknown; busy: boolean }>({
        busy: true,
    });
    const [turn, setTurn] = useState(0);
    const latest = useRef(work);
    latest.current = work;
    useEffect(() => {
        const abort = new AbortController();
        setState((before) => ({ ...before, busy: true }));
        latest.current(abort.signal).then(
            (value) => abort.signal.aborted || setState({ value, busy: false }),
            (error: unknown) =>
                abort.signal.aborted || setState((before) => ({ ...before, error, busy: false })),
        );
        return () => abort.abort();
    }, [turn, ...inputs]);
    const reload = useCallback(() => setTurn((before) => before + 1), []);
    useReturn(state.error !== undefined, reload);
    return { ...state, reload };
}
