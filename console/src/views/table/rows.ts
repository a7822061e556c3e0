import type { Class, CimScalar, CimValue, Instance, Property } from "../../cim/model";
import { hasQualifier, nameKey, pathText, propertyOf } from "../../cim/names";
import { isObjectPath } from "../../cim/model";
import { isReading, readingUnitOf } from "../../cim/readingUnit";
import { shownValues, valueText, type Described } from "../../cim/valueText";
import { inSlices, sortedInSlices } from "../../state/slices";

/** A column of a table of instances: a property, or the class where they differ in it. */
export interface Column {
    name: string;
    isKey: boolean;
    numeric: boolean;
    property?: Property; // absent for the class
    /** Of a reading, the property that says in what it is. */
    baseUnits?: Property;
}

/** An instance with its values by nameKey of their names. */
export class Row {
    readonly instance: Instance;
    readonly #values: Map<string, CimValue>;
    #text: string | undefined;

    constructor(instance: Instance) {
        this.instance = instance;
        this.#values = new Map(
            instance.properties.map((property) => [nameKey(property.name), property.value]),
        );
    }

    value(column: Column): CimValue {
        if (!column.property) return this.instance.className;
        return this.#values.get(nameKey(column.name)) ?? null;
    }

    /** How the value of a column is meant. */
    described({ property, baseUnits }: Column): Described | undefined {
        const unit = baseUnits && readingUnitOf(this.instance, baseUnits);
        return property && unit ? { ...property, unit } : property;
    }

    text(column: Column): string {
        const described = this.described(column);
        if (described?.type !== "datetime") return valueText(this.value(column), described);
        return shownValues(this.value(column), described)
            .map(({ words }) => words)
            .join(", ");
    }

    /** What a filter looks through: all that the row shows. */
    searchText(columns: readonly Column[]): string {
        return (this.#text ??= columns
            .map((column) => this.text(column))
            .join("\n")
            .toLowerCase());
    }

    hasValue(column: Column): boolean {
        const value = this.value(column);
        return value !== null && !(Array.isArray(value) && !value.length);
    }
}

const integers = /^(u|s)int|^real/;

// Keys that are the same in most rows say little in the first column.
const isSurrounding = ({ name }: Column): boolean => /CreationClassName$|^SystemName$/i.test(name);

/** Keys first, then the class's other properties in its order, then those that only subclasses have. */
export function columnsOf(base: Class, subclasses: readonly Class[]): Column[] {
    const columns = new Map<string, Column>();
    for (const one of [base, ...subclasses]) {
        const baseUnits = propertyOf(one, "BaseUnits");
        for (const property of one.properties) {
            const key = nameKey(property.name);
            if (columns.has(key)) continue;
            columns.set(key, {
                name: property.name,
                isKey: hasQualifier(property, "Key"),
                numeric: integers.test(property.type) && !property.isArray && !hasWords(property),
                property,
                ...(baseUnits && isReading(property.name) ? { baseUnits } : {}),
            });
        }
    }
    const all = [...columns.values()];
    const classColumn: Column = { name: "", isKey: false, numeric: false };
    return [
        ...(subclasses.length ? [classColumn] : []),
        ...all.filter((column) => column.isKey && !isSurrounding(column)),
        ...all.filter((column) => column.isKey && isSurrounding(column)),
        ...all.filter((column) => !column.isKey),
    ];
}

const hasWords = (property: Property): boolean =>
    property.qualifiers.some((one) => nameKey(one.name) === "values" && Array.isArray(one.value));

export type SortKey = number | bigint | string | null;

/** What a value is sorted by: numbers and times by size, texts without regard to case, 10 after 9. */
export function sortKeyOf(value: CimValue, property?: Property): SortKey {
    const one: CimScalar | null = Array.isArray(value) ? (value[0] ?? null) : value;
    if (one === null) return null;
    if (typeof one === "boolean") return one ? 1 : 0;
    if (typeof one === "number" || typeof one === "bigint") return one;
    if (typeof one === "string") return property?.type === "datetime" ? timeKey(one) : textKey(one);
    return isObjectPath(one) ? textKey(pathText(one)) : textKey(shownValues(one)[0]?.words ?? "");
}

const textKey = (text: string): string =>
    text.toLowerCase().replace(/\d+/g, (digits) => digits.padStart(20, "0"));

// Minutes east of UTC stand at the end of a point in time: the same moment is the same key.
function timeKey(text: string): SortKey {
    const found = /^(\d{4})(\d\d)(\d\d)(\d\d)(\d\d)(\d\d)\.(\d{3})\d{3}([-+]\d{3})$/.exec(text);
    if (!found) return text;
    const [year, month, day, hour, minute, second, millis, zone] = found.slice(1).map(Number);
    return Date.UTC(year!, month! - 1, day, hour, minute! - zone!, second, millis);
}

/** NULL stands at the end in either direction. */
export function compareKeys(left: SortKey, right: SortKey, descending: boolean): number {
    if (left === null || right === null) return left === right ? 0 : left === null ? 1 : -1;
    const kinds = Number(typeof left === "string") - Number(typeof right === "string");
    const order = kinds || (left < right ? -1 : left > right ? 1 : 0);
    return descending ? -order : order;
}

export interface Order {
    sort: { column: Column; descending: boolean } | undefined;
    filter: string;
}

/** The rows that have each word of the filter somewhere, in order; undefined when it was aborted. */
export async function orderedRows(
    rows: readonly Row[],
    columns: readonly Column[],
    { sort, filter }: Order,
    signal: AbortSignal,
): Promise<readonly Row[] | undefined> {
    const words = filter.toLowerCase().split(/\s+/).filter(Boolean);
    const kept: { row: Row; key: SortKey }[] = [];
    const done = await inSlices(
        rows.length,
        (index) => {
            const row = rows[index]!;
            if (words.length && !words.every((word) => row.searchText(columns).includes(word)))
                return;
            const key = sort ? sortKeyOf(row.value(sort.column), sort.column.property) : null;
            kept.push({ row, key });
        },
        signal,
    );
    if (!done) return undefined;
    if (!sort) return kept.map(({ row }) => row);
    const sorted = await sortedInSlices(
        kept,
        (left, right) => compareKeys(left.key, right.key, sort.descending),
        signal,
    );
    return signal.aborted ? undefined : sorted.map(({ row }) => row);
}

/** The rows as RFC 4180 has them, with a head. */
export function csvOf(rows: readonly Row[], columns: readonly Column[]): string {
    const lines = [columns.map((column) => csvField(column.name || "Class"))];
    for (const row of rows) lines.push(columns.map((column) => csvField(row.text(column))));
    return lines.map((fields) => `${fields.join(",")}\r\n`).join("");
}

// A spreadsheet would run what begins so as a formula.
function csvField(text: string): string {
    const harmless = /^[=+@\t\r]|^-(?!\d)/.test(text) ? `'${text}` : text;
    return /[",\r\n]/.test(harmless) ? `"${harmless.replaceAll('"', '""')}"` : harmless;
}

/** How wide a column is for its head and the first rows, in pixels. */
export function widthOf(column: Column, rows: readonly Row[]): number {
    let longest = (column.name || "Class").length + 2;
    for (const row of rows.slice(0, 60)) longest = Math.max(longest, row.text(column).length);
    return Math.round(Math.min(320, Math.max(64, longest * 7.2 + 20)));
}
