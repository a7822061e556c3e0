import { useEffect, useRef, useState } from "preact/hooks";

import type { Class } from "../../cim/model";
import { equalNames, nameKey } from "../../cim/names";
import { client, loadClass } from "../../state/server";
import { inSlices } from "../../state/slices";
import { orderedRows, Row, type Column, type Order } from "./rows";

interface Rows {
    rows: readonly Row[];
    /** The classes of the instances other than the one that was asked for. */
    subclasses: readonly Class[];
    busy: boolean;
    error?: unknown;
    /** When they had all come. */
    at?: Date;
}

/** The instances of a class and its subclasses; the former stay while they are asked for anew. */
export function useRows(namespace: string, className: string, asked: number): Rows {
    const [state, setState] = useState<Rows>({ rows: [], subclasses: [], busy: false });
    useEffect(() => {
        if (!asked) return;
        const abort = new AbortController();
        const load = async () => {
            const rows: Row[] = [];
            const subclasses = new Map<string, Class>();
            let shown = performance.now();
            const options = { deep: true, signal: abort.signal };
            for await (const batch of client.instances(namespace, className, options)) {
                await inSlices(batch.length, (index) => rows.push(new Row(batch[index]!)));
                for (const { className: name } of batch) {
                    if (equalNames(name, className) || subclasses.has(nameKey(name))) continue;
                    subclasses.set(nameKey(name), await loadClass(namespace, name));
                }
                if (abort.signal.aborted) return;
                if (performance.now() - shown < 200) continue;
                shown = performance.now();
                setState((before) =>
                    before.at
                        ? before
                        : { rows: [...rows], subclasses: [...subclasses.values()], busy: true },
                );
            }
            setState({ rows, subclasses: [...subclasses.values()], busy: false, at: new Date() });
        };
        setState(({ error: _, ...before }) => ({ ...before, busy: true }));
        load().catch((error: unknown) => {
            if (!abort.signal.aborted) setState((before) => ({ ...before, busy: false, error }));
        });
        return () => abort.abort();
    }, [namespace, className, asked]);
    return state;
}

/** The rows filtered and in order. They are made beside everything else: the former stay meanwhile. */
export function useOrdered(
    rows: readonly Row[],
    columns: readonly Column[],
    order: Order,
): readonly Row[] {
    const plain = !order.sort && !order.filter.trim();
    const [ordered, setOrdered] = useState<readonly Row[]>();
    const latest = useRef({ columns });
    latest.current.columns = columns;
    useEffect(() => {
        if (plain) {
            setOrdered(undefined);
            return;
        }
        const abort = new AbortController();
        void orderedRows(rows, latest.current.columns, order, abort.signal).then(
            (done) => done && setOrdered(done),
        );
        return () => abort.abort();
    }, [rows, plain, order.filter, order.sort?.column.name, order.sort?.descending]);
    return plain ? rows : (ordered ?? rows);
}
