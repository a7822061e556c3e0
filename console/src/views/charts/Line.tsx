import { useEffect, useRef } from "preact/hooks";
import uPlot from "uplot";

import { shownTheme } from "../../state/settings";
import type { History } from "../host/readings";

const height = 44;

/** Values over time as a line. `seen` tells that the history has more than before. */
export function Line({ history, seen, label }: { history: History; seen: number; label: string }) {
    const box = useRef<HTMLDivElement>(null);
    const plot = useRef<uPlot | null>(null);
    const theme = shownTheme.value;

    useEffect(() => {
        const colour = getComputedStyle(document.documentElement)
            .getPropertyValue("--accent")
            .trim();
        const made = new uPlot(
            {
                width: box.current!.clientWidth || 160,
                height,
                cursor: { show: false },
                legend: { show: false },
                axes: [{ show: false }, { show: false }],
                scales: { y: { range: (_, low, high) => roomAround(low, high) } },
                series: [{}, { stroke: colour, width: 1.5, points: { show: false } }],
            },
            dataOf(history),
            box.current!,
        );
        plot.current = made;
        const size = new ResizeObserver(() => {
            const width = box.current?.clientWidth;
            if (width && width !== made.width) made.setSize({ width, height });
        });
        size.observe(box.current!);
        return () => {
            size.disconnect();
            made.destroy();
        };
    }, [theme, history]);

    useEffect(() => plot.current?.setData(dataOf(history)), [history, seen]);

    return <div class="line" ref={box} role="img" aria-label={label} />;
}

const dataOf = (history: History): uPlot.AlignedData => [[...history.times], [...history.values]];

function roomAround(low: number | null, high: number | null): [number, number] {
    if (low === null || high === null) return [0, 1];
    const room = (high - low) * 0.1 || Math.abs(high) * 0.05 || 1;
    return [low - room, high + room];
}
