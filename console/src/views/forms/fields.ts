import type { CimScalar, CimType, CimValue, Qualifier } from "../../cim/model";
import { isObjectPath } from "../../cim/model";
import { qualifierOf } from "../../cim/names";
import { parsePath, writePath } from "../../state/routes";

/** What a form asks for: a parameter or a property. */
export interface Field {
    name: string;
    type: CimType;
    isArray: boolean;
    referenceClass?: string;
    qualifiers: Qualifier[];
}

export type Parsed<T> = { value: T } | { error: string };

const limits: Partial<Record<CimType, [bigint, bigint]>> = {
    uint8: [0n, 0xffn],
    uint16: [0n, 0xffffn],
    uint32: [0n, 0xffffffffn],
    uint64: [0n, 0xffffffffffffffffn],
    sint8: [-0x80n, 0x7fn],
    sint16: [-0x8000n, 0x7fffn],
    sint32: [-0x80000000n, 0x7fffffffn],
    sint64: [-0x8000000000000000n, 0x7fffffffffffffffn],
};

/**
 * The value of what was typed. Nothing is NULL, a pair of quotation marks the empty string; an array
 * has a line for each value.
 */
export function parseField(text: string, field: Field): Parsed<CimValue> {
    if (text.trim() === "") {
        const required = qualifierOf(field, "Required")?.value === true;
        return required ? { error: "A value is needed." } : { value: null };
    }
    if (!field.isArray) return parseScalar(text, field);
    const values: CimScalar[] = [];
    for (const [index, line] of text.split("\n").entries()) {
        if (line === "") continue;
        const one = parseScalar(line, field);
        if ("error" in one) return { error: `Line ${index + 1}: ${one.error}` };
        values.push(one.value);
    }
    return { value: values };
}

function parseScalar(text: string, field: Field): Parsed<CimScalar> {
    const trimmed = text.trim();
    const { type } = field;
    if (limits[type]) return parseInteger(trimmed, field);
    switch (type) {
        case "boolean":
            if (!/^(true|false)$/i.test(trimmed)) return { error: "True or false is wanted." };
            return { value: trimmed.toLowerCase() === "true" };
        case "real32":
        case "real64": {
            const number = Number(trimmed);
            return Number.isNaN(number) ? { error: "A number is wanted." } : inRange(number, field);
        }
        case "char16":
            return text.length === 1 ? { value: text } : { error: "One character is wanted." };
        case "datetime":
            return parseDateTime(trimmed);
        case "reference": {
            const path = parsePath(trimmed);
            return path ? { value: path } : { error: "The path of an instance is wanted." };
        }
        default:
            return parseString(text, field);
    }
}

function parseInteger(text: string, field: Field): Parsed<CimScalar> {
    if (!/^[-+]?(\d+|0x[\da-f]+)$/i.test(text)) return { error: "A whole number is wanted." };
    const negative = text.startsWith("-");
    const size = BigInt(text.replace(/^[-+]/, ""));
    const number = negative ? -size : size;
    const [least, most] = limits[field.type]!;
    if (number < least || number > most) {
        return { error: `A ${field.type} is from ${least} to ${most}.` };
    }
    return inRange(field.type.endsWith("64") ? number : Number(number), field);
}

function inRange(number: number | bigint, field: Field): Parsed<CimScalar> {
    const least = bound(field, "MinValue");
    const most = bound(field, "MaxValue");
    if (least !== undefined && number < least) return { error: `It is ${least} at least.` };
    if (most !== undefined && number > most) return { error: `It is ${most} at most.` };
    return { value: number };
}

function bound(field: Field, name: string): number | bigint | undefined {
    const value = qualifierOf(field, name)?.value;
    return typeof value === "number" || typeof value === "bigint" ? value : undefined;
}

function parseString(text: string, field: Field): Parsed<CimScalar> {
    const value = text === '""' ? "" : text;
    const longest = bound(field, "MaxLen");
    if (longest !== undefined && value.length > longest) {
        return { error: `It has ${value.length} characters; ${longest} are allowed.` };
    }
    return { value };
}

const pointOrInterval = /^(\d{14}|\d{4}[\d*]{10})\.[\d*]{6}([-+]\d{3}|:000)$/;

/** A datetime as CIM writes it, an ISO date and time, or an interval such as "1d 2h 30m 5s". */
function parseDateTime(text: string): Parsed<CimScalar> {
    if (pointOrInterval.test(text)) return { value: text };
    const span = /^(?:(\d+)\s*d)?\s*(?:(\d+)\s*h)?\s*(?:(\d+)\s*m(?:in)?)?\s*(?:(\d+)\s*s)?$/i.exec(
        text,
    );
    if (span && span.slice(1).some(Boolean)) {
        const [days, hours, minutes, seconds] = span.slice(1).map((part) => Number(part ?? 0));
        return intervalOf(days! * 86400 + hours! * 3600 + minutes! * 60 + seconds!);
    }
    const time = /^\d{4}-\d\d-\d\d/.test(text) ? new Date(text) : undefined;
    if (time && !Number.isNaN(time.getTime())) return { value: pointOf(time) };
    return {
        error: "Wanted is 2026-05-01 12:00, an interval such as 1d 2h 30m, or CIM's 25 characters.",
    };
}

function intervalOf(seconds: number): Parsed<CimScalar> {
    const pad = (number: number, width = 2) => String(Math.floor(number)).padStart(width, "0");
    if (seconds >= 1e8 * 86400) return { error: "An interval is shorter than 100 000 000 days." };
    const time = pad((seconds / 3600) % 24) + pad((seconds / 60) % 60) + pad(seconds % 60);
    return { value: `${pad(seconds / 86400, 8)}${time}.000000:000` };
}

function pointOf(time: Date): string {
    const zone = -time.getTimezoneOffset();
    const local = new Date(time.getTime() + zone * 60000).toISOString();
    const sign = zone < 0 ? "-" : "+";
    return `${local.slice(0, 19).replace(/[-T:]/g, "")}.${local.slice(20, 23)}000${sign}${String(Math.abs(zone)).padStart(3, "0")}`;
}

/** What a form shows for a value: parseField makes the same value of it again. */
export function fieldText(value: CimValue): string {
    if (Array.isArray(value)) return value.map((one) => fieldText(one)).join("\n");
    if (value === null) return "";
    if (value === "") return '""';
    return isObjectPath(value) ? writePath(value) : String(value);
}
