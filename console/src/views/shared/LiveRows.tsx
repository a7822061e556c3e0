import type { ComponentChildren } from "preact";
import { useLayoutEffect, useRef, useState } from "preact/hooks";

import { Icon } from "./Icon";
import { parentOf, rowFor } from "./rowKeys";
import { useMedia } from "./useMedia";
import { useWindow } from "./useWindow";

/** A row, or one of those that are folded under it. */
export interface LiveRow {
    key: string;
    level: 1 | 2;
    /** Absent where there is nothing to unfold. */
    open?: boolean;
    tone?: string;
}

interface Props<T extends LiveRow> {
    label: string;
    /** The class that says how wide the columns are. */
    layout: string;
    titles: readonly string[];
    rows: readonly T[];
    /** A row's cells: one for each title, or one for all of them in a row of level 2. */
    cells: (row: T) => ComponentChildren[];
    onToggle: (row: T) => void;
    /** Shows what a row that does not unfold says in full. */
    onOpen: (row: T) => void;
    empty: ComponentChildren;
}

// On a phone a row has two lines.
const narrow = "(max-width: 600px)";

/**
 * A list that goes on growing at its head: only the rows in sight are there, and what is looked at
 * stays where it is. Arrow keys walk; Enter, right and left unfold and fold.
 */
export function LiveRows<T extends LiveRow>(props: Props<T>) {
    const { rows, titles } = props;
    const rowHeight = useMedia(narrow) ? 48 : 28;
    const scroller = useRef<HTMLDivElement>(null);
    const [activeKey, setActiveKey] = useState<string | undefined>(undefined);
    const found = activeKey === undefined ? -1 : rows.findIndex((row) => row.key === activeKey);
    const active = found < 0 ? 0 : found;
    const { shown, page, bringUp } = useWindow(scroller, rowHeight, rows.length, active, rowHeight);
    const moved = useRef(false);
    const topKey = useRef<string | undefined>(undefined);
    // Asking the element would have it laid out anew at each change.
    const scrolled = useRef(0);

    // New rows push what is looked at down: the list is scrolled as far.
    useLayoutEffect(() => {
        const element = scroller.current;
        const before = topKey.current;
        if (element && scrolled.current > 0 && before !== undefined) {
            const pushed = rows.findIndex((row) => row.key === before);
            if (pushed > 0) element.scrollTop += pushed * rowHeight;
        }
        topKey.current = rows[0]?.key;
    }, [rows]);

    useLayoutEffect(() => {
        if (!moved.current) return;
        moved.current = false;
        bringUp(active);
        scroller.current
            ?.querySelector<HTMLElement>('[tabindex="0"]')
            ?.focus({ preventScroll: true });
    });

    const move = (to: number) => {
        moved.current = true;
        setActiveKey(rows[Math.max(0, Math.min(rows.length - 1, to))]?.key);
    };
    const act = (row: T) => (row.open === undefined ? props.onOpen(row) : props.onToggle(row));
    const onKeyDown = (event: KeyboardEvent) => {
        const row = rows[active];
        if (!row) return;
        const to = rowFor(event.key, active, page(), rows.length);
        switch (event.key) {
            case "ArrowRight":
                if (row.open === false) props.onToggle(row);
                break;
            case "ArrowLeft":
                if (row.open) props.onToggle(row);
                else if (row.level === 2) move(parentOf(rows, active));
                break;
            case "Enter":
            case " ":
                act(row);
                break;
            default:
                if (to === undefined) return;
                move(to);
        }
        event.preventDefault();
    };

    return (
        <div
            ref={scroller}
            role="treegrid"
            class={`live-rows ${props.layout}`}
            aria-label={props.label}
            aria-rowcount={rows.length + 1}
            style={{ "--row": `${rowHeight}px` }}
            onKeyDown={onKeyDown}
            onScroll={(event) => (scrolled.current = event.currentTarget.scrollTop)}
        >
            <div role="rowgroup" class="live-head">
                <div role="row" class="live-row" aria-rowindex={1}>
                    {titles.map((title) => (
                        <div key={title} role="columnheader" class="live-cell">
                            {title}
                        </div>
                    ))}
                </div>
            </div>
            {rows.length > 0 && (
                <div
                    role="rowgroup"
                    class="live-body"
                    style={{ height: `${rows.length * rowHeight}px` }}
                >
                    {shown.map((at) => {
                        const row = rows[at]!;
                        return (
                            <div
                                key={row.key}
                                role="row"
                                class={`live-row level-${row.level} ${row.tone ?? ""}`}
                                style={{ top: `${at * rowHeight}px` }}
                                aria-level={row.level}
                                aria-rowindex={at + 2}
                                aria-expanded={row.open}
                                tabIndex={at === active ? 0 : -1}
                                onFocus={() => setActiveKey(row.key)}
                                onClick={() => {
                                    setActiveKey(row.key);
                                    act(row);
                                }}
                            >
                                <Cells row={row} cells={props.cells(row)} columns={titles.length} />
                            </div>
                        );
                    })}
                </div>
            )}
            {rows.length === 0 && <div class="empty">{props.empty}</div>}
        </div>
    );
}

function Cells({
    row,
    cells,
    columns,
}: {
    row: LiveRow;
    cells: ComponentChildren[];
    columns: number;
}) {
    return (
        <>
            {cells.map((cell, at) => (
                <div
                    key={at}
                    role="gridcell"
                    class={`live-cell ${cells.length === 1 ? "whole" : ""}`}
                    aria-colspan={cells.length === 1 ? columns : undefined}
                >
                    {at === 0 && row.open !== undefined && (
                        <span class={`twist ${row.open ? "open" : ""}`}>
                            <Icon name="arrow" />
                        </span>
                    )}
                    <span class="clip">{cell}</span>
                </div>
            ))}
        </>
    );
}

/** Which rows are open, once one of them was turned. */
export function toggled(open: ReadonlySet<string>, key: string): ReadonlySet<string> {
    const next = new Set(open);
    if (!next.delete(key)) next.add(key);
    return next;
}
