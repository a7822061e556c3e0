/** The unit of CIM_NumericSensor and its like, which each instance says itself. */

import type { Instance, Property } from "./model";
import { propertyOf } from "./names";
import { shownScalar } from "./valueText";
import { unitOfWords, type Unit } from "./units";

// Those of CIM_NumericSensor.BaseUnits that servers use, for classes that do not map them to words.
const standard: Record<number, string> = {
    2: "Degrees C",
    3: "Degrees F",
    4: "Degrees K",
    5: "Volts",
    6: "Amps",
    7: "Watts",
    8: "Joules",
    18: "CFM",
    19: "RPM",
    20: "Hertz",
    65: "Percentage",
};

const readings =
    /^(CurrentReading|NominalReading|NormalM(ax|in)|M(ax|in)Readable|Resolution|Hysteresis|(Lower|Upper)Threshold(NonCritical|Critical|Fatal))$/i;

/** Whether a property is in the unit of its instance, where the class has BaseUnits. */
export const isReading = (name: string): boolean => readings.test(name);

/** What an instance reads in: its BaseUnits times ten to its UnitModifier. Undefined where it says neither. */
export function readingUnitOf(instance: Instance, baseUnits: Property): Unit | undefined {
    const base = propertyOf(instance, "BaseUnits")?.value;
    const modifier = Number(propertyOf(instance, "UnitModifier")?.value ?? 0) || 0;
    if (typeof base !== "number")
        return modifier ? { symbol: "", factor: 10 ** modifier } : undefined;
    const { words, raw } = shownScalar(base, baseUnits);
    const unit = unitOfWords((raw === undefined && standard[base]) || words);
    return { ...unit, factor: unit.factor * 10 ** modifier };
}
