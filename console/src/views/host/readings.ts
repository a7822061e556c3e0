import type { Class, Instance, ObjectPath } from "../../cim/model";
import { propertyOf } from "../../cim/names";
import { readingUnitOf } from "../../cim/readingUnit";
import { unitOf } from "../../cim/valueText";
import { statusOf, type Status } from "../../state/status";
import { nameOf } from "../instance/walk";

/** What a sensor or a fan says now. */
export interface Reading {
    name: string;
    path: ObjectPath;
    value?: number;
    unit: string;
    least: number;
    most: number;
    /** Where the reading stops being well, outermost last. */
    limits: { value: number; isUpper: boolean; isCritical: boolean }[];
    status?: Status;
}

const limitNames = [
    ["LowerThresholdNonCritical", false, false],
    ["UpperThresholdNonCritical", true, false],
    ["LowerThresholdCritical", false, true],
    ["UpperThresholdCritical", true, true],
    ["LowerThresholdFatal", false, true],
    ["UpperThresholdFatal", true, true],
] as const;

/** The reading of a CIM_NumericSensor, a fan with a speed, or another element with a state only. */
export function readingOf(instance: Instance, described: Class): Reading {
    const number = (name: string): number | undefined => {
        const value = propertyOf(instance, name)?.value;
        return typeof value === "number" || typeof value === "bigint" ? Number(value) : undefined;
    };
    const path = instance.path!;
    const status = statusOf(instance, described);
    const base = { name: nameOf({ path, instance }), path, ...(status ? { status } : {}) };
    const isSensor = propertyOf(described, "CurrentReading") !== undefined;
    const baseUnits = propertyOf(described, "BaseUnits");
    const sensorUnit = isSensor && baseUnits && readingUnitOf(instance, baseUnits);
    const scale = sensorUnit ? sensorUnit.factor : 1;
    const raw = number(isSensor ? "CurrentReading" : "CurrentSpeed");
    const limits: Reading["limits"] = [];
    for (const [name, isUpper, isCritical] of limitNames) {
        const value = number(name);
        if (value !== undefined) limits.push({ value: value * scale, isUpper, isCritical });
    }
    const slowest = number("MinimumSpeed");
    if (slowest !== undefined) limits.push({ value: slowest, isUpper: false, isCritical: true });
    const value = raw === undefined ? undefined : raw * scale;
    const ends = [value ?? 0, ...limits.map((limit) => limit.value)];
    const most = number("MaxReadable");
    const least = number("MinReadable");
    return {
        ...base,
        ...(value === undefined ? {} : { value }),
        unit: sensorUnit ? sensorUnit.symbol : isSensor ? "" : speedUnit(described),
        least: least === undefined ? Math.min(0, ...ends) : least * scale,
        most: most === undefined ? roundUp(Math.max(1, ...ends) * 1.25) : most * scale,
        limits,
    };
}

function speedUnit(described: Class): string {
    const speed = propertyOf(described, "CurrentSpeed");
    const unit = speed && unitOf(speed);
    return unit === undefined || /rev/i.test(unit) ? "RPM" : unit;
}

function roundUp(number: number): number {
    const step = 10 ** Math.floor(Math.log10(number));
    return Math.ceil(number / step) * step;
}

/** Values over time since the page was opened; the oldest go first. */
export class History {
    readonly times: number[] = [];
    readonly values: (number | null)[] = [];
    readonly #most: number;

    constructor(most = 720) {
        this.#most = most;
    }

    add(time: number, value: number | undefined): void {
        this.times.push(time);
        this.values.push(value ?? null);
        if (this.times.length > this.#most) {
            this.times.shift();
            this.values.shift();
        }
    }
}
