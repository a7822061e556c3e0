import type { Class, Instance } from "../cim/model";
import { propertyOf } from "../cim/names";
import { shownValues } from "../cim/valueText";

/** How well something is, as the colours know it. */
export type Tone = "ok" | "warn" | "error" | "info" | "unknown";

export interface Status {
    tone: Tone;
    words: string;
}

const rank: readonly Tone[] = ["unknown", "info", "ok", "warn", "error"];

// CIM_ManagedSystemElement.OperationalStatus and HealthState.
const operational: Record<number, [Tone, string]> = {
    0: ["unknown", "Unknown"],
    1: ["unknown", "Other"],
    2: ["ok", "OK"],
    3: ["warn", "Degraded"],
    4: ["warn", "Stressed"],
    5: ["warn", "Predictive Failure"],
    6: ["error", "Error"],
    7: ["error", "Non-Recoverable Error"],
    8: ["info", "Starting"],
    9: ["info", "Stopping"],
    10: ["info", "Stopped"],
    11: ["info", "In Service"],
    12: ["error", "No Contact"],
    13: ["error", "Lost Communication"],
    14: ["error", "Aborted"],
    15: ["info", "Dormant"],
    16: ["error", "Supporting Entity in Error"],
    17: ["ok", "Completed"],
    18: ["info", "Power Mode"],
    19: ["info", "Relocating"],
};
const health: Record<number, [Tone, string]> = {
    0: ["unknown", "Unknown"],
    5: ["ok", "OK"],
    10: ["warn", "Degraded/Warning"],
    15: ["warn", "Minor failure"],
    20: ["error", "Major failure"],
    25: ["error", "Critical failure"],
    30: ["error", "Non-recoverable error"],
};

/**
 * What OperationalStatus and HealthState say together: the worse of them gives the colour. Undefined
 * for an instance that has neither. With the class the words are those of its value maps.
 */
export function statusOf(instance: Instance, described?: Class): Status | undefined {
    const found: Status[] = [];
    for (const [name, known] of [
        ["OperationalStatus", operational],
        ["GroupOperationalStatus", operational],
        ["HealthState", health],
    ] as const) {
        const value = propertyOf(instance, name)?.value ?? null;
        const declared = described && propertyOf(described, name);
        for (const one of Array.isArray(value) ? value : [value]) {
            if (typeof one !== "number") continue;
            const [tone, standard] = known[one] ?? ["unknown", String(one)];
            found.push({
                tone,
                words: (declared && shownValues(one, declared)[0]?.words) ?? standard,
            });
        }
    }
    if (!found.length) return undefined;
    const worst = found.reduce((left, right) =>
        rank.indexOf(right.tone) > rank.indexOf(left.tone) ? right : left,
    );
    const words = [
        ...new Set(found.filter((one) => one.tone === worst.tone).map((one) => one.words)),
    ];
    return { tone: worst.tone, words: words.join(", ") };
}
