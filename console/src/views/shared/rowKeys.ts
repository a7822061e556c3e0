/**
 * The row that a key leads to from this one, as trees and lists have it (WAI-ARIA Authoring Practices); undefined for
 * a key that leads to none. May lie before the first or behind the last row.
 */
export function rowFor(key: string, from: number, page: number, count: number): number | undefined {
    switch (key) {
        case "ArrowDown":
            return from + 1;
        case "ArrowUp":
            return from - 1;
        case "PageDown":
            return from + page;
        case "PageUp":
            return from - page;
        case "Home":
            return 0;
        case "End":
            return count - 1;
        default:
            return undefined;
    }
}

/** The row that a row stands below, or itself. */
export function parentOf(rows: readonly { level: number }[], index: number): number {
    const level = rows[index]!.level;
    for (let above = index - 1; above >= 0; --above) {
        if (rows[above]!.level < level) return above;
    }
    return index;
}
