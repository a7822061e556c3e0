import type { ComponentChildren } from "preact";
import { useEffect, useLayoutEffect, useRef, useState } from "preact/hooks";

import { Icon } from "./Icon";
import { useWindow } from "./useWindow";

export interface GridColumn {
    name: string;
    title: string;
    width: number;
    numeric?: boolean;
    hint?: string;
}

interface Props {
    label: string;
    columns: readonly GridColumn[];
    count: number;
    cell: (row: number, column: number) => ComponentChildren;
    rowId: (row: number) => string;
    sort?: { name: string; descending: boolean } | undefined;
    onSort?: (name: string) => void;
    onOpen?: (row: number) => void;
    /** Text for the clipboard when Ctrl+C is pressed on a cell. */
    onCopy?: (row: number, column: number) => string;
}

export const rowHeight = 28;

/** A table of any length: only the rows in sight are there. Arrow keys walk, Enter sorts or opens. */
export function VirtualGrid(props: Props) {
    const { columns, count } = props;
    const scroller = useRef<HTMLDivElement>(null);
    // Row -1 is the head.
    const [active, setActive] = useState({ row: 0, column: 0 });
    const moved = useRef(false);
    const row = Math.min(active.row, count - 1);
    const column = Math.min(active.column, Math.max(0, columns.length - 1));
    const { shown, page, bringUp } = useWindow(scroller, rowHeight, count, row, rowHeight);

    useLayoutEffect(() => {
        if (!moved.current) return;
        moved.current = false;
        const cell = scroller.current?.querySelector<HTMLElement>('[tabindex="0"]');
        cell?.focus({ preventScroll: true });
        if (row >= 0) bringUp(row);
        if (cell) intoView(scroller.current!, cell);
    });

    // What is shown first after a new order is its head.
    useEffect(() => {
        if (scroller.current) scroller.current.scrollTop = 0;
    }, [props.sort?.name, props.sort?.descending]);

    const move = (to: { row: number; column: number }) => {
        moved.current = true;
        setActive({
            row: Math.max(-1, Math.min(count - 1, to.row)),
            column: Math.max(0, Math.min(columns.length - 1, to.column)),
        });
    };
    const onKeyDown = (event: KeyboardEvent) => {
        const all = event.ctrlKey || event.metaKey;
        const to = { row, column };
        switch (event.key) {
            case "ArrowDown":
                to.row += 1;
                break;
            case "ArrowUp":
                to.row -= 1;
                break;
            case "ArrowRight":
                to.column += 1;
                break;
            case "ArrowLeft":
                to.column -= 1;
                break;
            case "PageDown":
                to.row += page();
                break;
            case "PageUp":
                to.row = Math.max(0, row - page());
                break;
            case "Home":
                to.column = 0;
                if (all) to.row = 0;
                break;
            case "End":
                to.column = columns.length - 1;
                if (all) to.row = count - 1;
                break;
            case "Enter":
                if (row < 0) props.onSort?.(columns[column]!.name);
                else props.onOpen?.(row);
                break;
            case "c":
                if (!all || row < 0 || !props.onCopy || getSelection()?.toString()) return;
                copy(props.onCopy(row, column));
                break;
            default:
                return;
        }
        event.preventDefault();
        if (to.row !== row || to.column !== column) move(to);
    };

    const width = columns.reduce((sum, one) => sum + one.width, 0);
    const template = columns.map((one) => `minmax(${one.width}px, ${one.width}fr)`).join(" ");
    const tab = (r: number, c: number) => (r === row && c === column ? 0 : -1);

    return (
        <div
            class="grid"
            role="grid"
            aria-label={props.label}
            aria-rowcount={count + 1}
            aria-colcount={columns.length}
            ref={scroller}
            onKeyDown={onKeyDown}
            style={{ "--rows": String(count) }}
        >
            <div role="rowgroup" class="grid-head" style={{ minWidth: `${width}px` }}>
                <div
                    role="row"
                    aria-rowindex={1}
                    class="grid-row"
                    style={{ gridTemplateColumns: template }}
                >
                    {columns.map((one, at) => {
                        const sorted = props.sort?.name === one.name ? props.sort : undefined;
                        return (
                            <div
                                key={one.name}
                                role="columnheader"
                                aria-colindex={at + 1}
                                aria-sort={
                                    sorted
                                        ? sorted.descending
                                            ? "descending"
                                            : "ascending"
                                        : undefined
                                }
                                class={`grid-cell ${one.numeric ? "numeric" : ""}`}
                                title={one.hint}
                                tabIndex={tab(-1, at)}
                                onClick={() => {
                                    move({ row: -1, column: at });
                                    props.onSort?.(one.name);
                                }}
                            >
                                <span class="clip">{one.title}</span>
                                {sorted && (
                                    <span class={`sorted ${sorted.descending ? "down" : "up"}`}>
                                        <Icon name="arrow" />
                                    </span>
                                )}
                            </div>
                        );
                    })}
                </div>
            </div>
            <div
                role="rowgroup"
                class="grid-body"
                style={{ height: `${count * rowHeight}px`, minWidth: `${width}px` }}
            >
                {shown.map((r) => (
                    <div
                        key={props.rowId(r)}
                        role="row"
                        aria-rowindex={r + 2}
                        class={`grid-row ${r === row ? "active" : ""}`}
                        style={{ gridTemplateColumns: template, top: `${r * rowHeight}px` }}
                    >
                        {columns.map((one, c) => (
                            <div
                                key={one.name}
                                role="gridcell"
                                aria-colindex={c + 1}
                                class={`grid-cell ${one.numeric ? "numeric" : ""}`}
                                tabIndex={tab(r, c)}
                                onClick={() => move({ row: r, column: c })}
                                onDblClick={() => props.onOpen?.(r)}
                            >
                                <span class="clip">{props.cell(r, c)}</span>
                            </div>
                        ))}
                    </div>
                ))}
            </div>
        </div>
    );
}

function intoView(scroller: HTMLElement, cell: HTMLElement): void {
    const left = cell.offsetLeft;
    if (left < scroller.scrollLeft) scroller.scrollLeft = left;
    else if (left + cell.offsetWidth > scroller.scrollLeft + scroller.clientWidth) {
        scroller.scrollLeft = left + cell.offsetWidth - scroller.clientWidth;
    }
}

/** Puts a text into the clipboard, where the browser lets us. */
export function copy(text: string): Promise<boolean> {
    // Only secure addresses have a clipboard: not every name of this machine is one.
    const written = navigator.clipboard?.writeText(text);
    return written
        ? written.then(
              () => true,
              () => false,
          )
        : Promise.resolve(false);
}
