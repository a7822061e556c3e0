import type { RefObject } from "preact";
import { useLayoutEffect, useState } from "preact/hooks";

const beyond = 8; // rows that are there before they come into sight

/** Which rows of a long list are in sight: from the first up to, but without, the last. */
export function useWindow(
    scroller: RefObject<HTMLElement | null>,
    rowHeight: number,
    count: number,
    head = 0,
): [number, number] {
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
    return [Math.min(first, last), last];
}
