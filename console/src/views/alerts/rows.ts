import { nameKey, propertyOf } from "../../cim/names";
import type { Property } from "../../cim/model";
import type { SeenAlert } from "../../live/LiveStore";
import type { LiveRow } from "../shared/LiveRows";

export interface AlertRow extends LiveRow {
    alert: SeenAlert;
    /** What a row of level 2 shows: a property, or a note. */
    property?: Property;
    note?: string;
}

/** The alerts, each open one with those of its properties that have a value. */
export function alertRows(
    alerts: readonly SeenAlert[],
    search: string,
    open: ReadonlySet<string>,
): AlertRow[] {
    const words = nameKey(search)
        .split(/\s+/)
        .filter((word) => word !== "");
    const rows: AlertRow[] = [];
    for (const alert of alerts) {
        if (words.length) {
            const searched = nameKey(`${alert.filter} ${alert.instance}`);
            if (!words.every((word) => searched.includes(word))) continue;
        }
        const key = `a${alert.key}`;
        const isOpen = open.has(key);
        rows.push({ key, level: 1, open: isOpen, alert });
        if (!isOpen) continue;
        const properties = alert.indication?.properties.filter(({ value }) => value !== null) ?? [];
        if (alert.indication) {
            const note = `${alert.indication.className} of the filter ${alert.filter}`;
            rows.push({ key: `${key}:`, level: 2, alert, note });
        }
        for (const property of properties) {
            rows.push({ key: `${key}.${property.name}`, level: 2, alert, property });
        }
        if (!alert.indication) {
            rows.push({ key: `${key}:`, level: 2, alert, note: alert.instance });
        }
    }
    return rows;
}

const messages = [
    "Message",
    "Description",
    "ElementName",
    "SourceInstanceModelPath",
    "AlertingManagedElement",
];

/** What an indication says first of all. */
export function messageOf({ indication, instance }: SeenAlert): string {
    if (!indication) return instance;
    for (const name of messages) {
        const value = propertyOf(indication, name)?.value;
        if (typeof value === "string" && value !== "") return value;
    }
    return "";
}
