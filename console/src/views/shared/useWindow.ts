import type { RefObject } from "preact";
import { useLayoutEffect, useState } from "preact/hooks";

const beyond = 8; // rows that are there before they come into sight

interface Window {
    /** The rows that are to be there: those in sight, and the active one, which may have the focus. */
    shown: number[];
    /** How far a key goes that goes by the page. */
    page: () => number;
    bringUp: (row: number) => void;
}

/** What is in sight of a long list of rows of one height, below a head that stays. */
export function useWindow(
    scroller: RefObject<HTMLElement | null>,
    rowHeight: number,
    count: number,
    active: number,
    head = 0,
): Window {
    const [seen, setSeen] = useState({ top: 0, height: 600 });
    useLayoutEffect(() => {
        const element = scroller.current;
        if (!element) return;
        let frame = 0;
        const look = () => {
            frame = 0;
            const top = Math.floor(element.scrollTop / rowHeight) * rowHeight;
            const height = element.clientHeight;
            setSeen((before) =>
                before.top === top && before.height === height ? before : { top, height },
            );
        };
        const later = () => (frame ||= requestAnimationFrame(look));
        look();
        element.addEventListener("scroll", later, { passive: true });
        const size = new ResizeObserver(later);
        size.observe(element);
        return () => {
            cancelAnimationFrame(frame);
            element.removeEventListener("scroll", later);
            size.disconnect();
        };
    }, [rowHeight]);
    const first = Math.max(0, Math.floor(seen.top / rowHeight) - beyond);
    const last = Math.min(count, Math.ceil((seen.top + seen.height - head) / rowHeight) + beyond);
    const shown: number[] = [];
    for (let row = Math.min(first, last); row < last; ++row) shown.push(row);
    if (active >= 0 && active < count && (active < first || active >= last)) shown.push(active);
    const room = () => (scroller.current?.clientHeight ?? 0) - head;
    return {
        shown,
        page: () => Math.max(1, Math.floor(room() / rowHeight) - 1),
        bringUp: (row) => {
            const element = scroller.current;
            if (!element) return;
            const top = row * rowHeight;
            const lowest = top + rowHeight - room();
            if (top < element.scrollTop) element.scrollTop = top;
            else if (lowest > element.scrollTop) element.scrollTop = lowest;
        },
    };
}
