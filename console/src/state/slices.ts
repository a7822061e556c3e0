/** How long work may hold the page before it lets events through. */
const sliceMillis = 10;

/** Lets the browser handle what has happened meanwhile. */
export function breathe(): Promise<void> {
    return new Promise((resolve) => {
        const { port1, port2 } = new MessageChannel();
        port1.onmessage = () => {
            port1.close();
            resolve();
        };
        port2.postMessage(null);
    });
}

/** Does `work` for each number below `count`, in slices. False when it was aborted. */
export async function inSlices(
    count: number,
    work: (index: number) => void,
    signal?: AbortSignal,
): Promise<boolean> {
    let until = performance.now() + sliceMillis;
    for (let index = 0; index < count; ++index) {
        work(index);
        if (index % 16 === 15 && performance.now() > until) {
            await breathe();
            if (signal?.aborted) return false;
            until = performance.now() + sliceMillis;
        }
    }
    return !signal?.aborted;
}

/** The items in order, stably, made in slices. */
export async function sortedInSlices<T>(
    items: readonly T[],
    compare: (left: T, right: T) => number,
    signal?: AbortSignal,
): Promise<T[]> {
    const runLength = 1000;
    let runs: T[][] = [];
    for (let at = 0; at < items.length; at += runLength) {
        runs.push(items.slice(at, at + runLength).sort(compare));
        await breathe();
        if (signal?.aborted) return [...items];
    }
    while (runs.length > 1) {
        const merged: T[][] = [];
        for (let at = 0; at < runs.length; at += 2) {
            merged.push(merge(runs[at]!, runs[at + 1] ?? [], compare));
            await breathe();
            if (signal?.aborted) return [...items];
        }
        runs = merged;
    }
    return runs[0] ?? [];
}

function merge<T>(left: T[], right: T[], compare: (left: T, right: T) => number): T[] {
    const all: T[] = [];
    let l = 0;
    let r = 0;
    while (l < left.length && r < right.length) {
        all.push(compare(left[l]!, right[r]!) <= 0 ? left[l++]! : right[r++]!);
    }
    while (l < left.length) all.push(left[l++]!);
    while (r < right.length) all.push(right[r++]!);
    return all;
}
