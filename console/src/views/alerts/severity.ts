import type { Class, Instance } from "../../cim/model";
import { propertyOf } from "../../cim/names";
import { shownScalar } from "../../cim/valueText";
import type { Tone } from "../../state/status";

// CIM_AlertIndication.PerceivedSeverity.
const severities: readonly [Tone, string][] = [
    ["unknown", "Unknown"],
    ["unknown", "Other"],
    ["info", "Information"],
    ["warn", "Degraded/Warning"],
    ["warn", "Minor"],
    ["error", "Major"],
    ["error", "Critical"],
    ["error", "Fatal/NonRecoverable"],
];

export interface Severity {
    tone: Tone;
    words: string;
    number?: number;
}

/** How bad an indication says it is, in the words of its class; undefined when it does not say. */
export function severityOf(
    indication: Instance | undefined,
    definition: Class | undefined,
): Severity | undefined {
    const value = indication && propertyOf(indication, "PerceivedSeverity")?.value;
    if (typeof value !== "number") return undefined;
    const [tone, standard] = severities[value] ?? ["unknown", String(value)];
    const declared = definition && propertyOf(definition, "PerceivedSeverity");
    const shown = declared ? shownScalar(value, declared) : undefined;
    return { tone, words: shown?.raw === undefined ? standard : shown.words, number: value };
}
