/** Values for people: words of value maps, units, local time. */

import { dateTimeText } from "./dateTime";
import { instanceOfText } from "./elements";
import {
    isInstance,
    isObjectPath,
    type CimScalar,
    type CimType,
    type CimValue,
    type Instance,
    type Qualifier,
} from "./model";
import { hasQualifier, named, pathText } from "./names";
import { quantityText, unitOfProgram, unitOfWords, type Unit } from "./units";

/** What tells how a value is meant: a property, parameter or method of a class. */
export interface Described {
    type: CimType;
    qualifiers: readonly Qualifier[];
    /** The unit that the instance says, over that of the qualifiers. */
    unit?: Unit;
}

/** A value for people: words ("Degraded", "2 GiB", "12:04:11"), and what was sent where it differs. */
export interface ShownValue {
    words: string;
    raw?: string;
}

interface MapEntry {
    value: string; // as ValueMap has it
    words: string;
    low?: bigint; // of a range: undefined is without an end
    high?: bigint;
    isRange: boolean;
}

/** What the qualifiers of an element say, read once: elements live as long as their class. */
interface Meaning {
    entries: MapEntry[];
    exact: Map<string, MapEntry>;
    bits: MapEntry[];
    unit: Unit | undefined;
    isOctets: boolean;
    isEmbedded: boolean;
}

const meanings = new WeakMap<readonly Qualifier[], Meaning>();

function meaningOf({ qualifiers }: Described): Meaning {
    let meaning = meanings.get(qualifiers);
    if (!meaning) {
        meaning = readMeaning(qualifiers);
        meanings.set(qualifiers, meaning);
    }
    return meaning;
}

function readMeaning(qualifiers: readonly Qualifier[]): Meaning {
    const holder = { qualifiers: [...qualifiers] };
    const entries = mapOf(qualifiers, "ValueMap", "Values");
    const exact = new Map<string, MapEntry>();
    for (const entry of entries) if (!entry.isRange) exact.set(entry.value.trim(), entry);
    return {
        entries,
        exact,
        bits: mapOf(qualifiers, "BitMap", "BitValues"),
        unit: readUnit(qualifiers),
        isOctets: hasQualifier(holder, "OctetString"),
        isEmbedded:
            hasQualifier(holder, "EmbeddedObject") ||
            named(qualifiers, "EmbeddedInstance") !== undefined,
    };
}

function textsOf(qualifiers: readonly Qualifier[], name: string): string[] | undefined {
    const value = named(qualifiers, name)?.value;
    return Array.isArray(value) ? value.map((text) => String(text ?? "")) : undefined;
}

/** The pairs of a map. Values without a ValueMap stand for 0, 1, 2, ... */
function mapOf(qualifiers: readonly Qualifier[], map: string, values: string): MapEntry[] {
    const words = textsOf(qualifiers, values);
    const keys = textsOf(qualifiers, map) ?? words?.map((_, index) => String(index));
    return (keys ?? []).map((value, index) => ({
        value,
        words: words?.[index] ?? value,
        ...rangeOf(value),
    }));
}

/** "0..5", "..", "16..": the ends belong to it. */
function rangeOf(text: string): { isRange: boolean; low?: bigint; high?: bigint } {
    const match = /^\s*([+-]?\w*)\s*\.\.\s*([+-]?\w*)\s*$/.exec(text);
    if (!match) return { isRange: false };
    const low = integerOf(match[1]);
    const high = integerOf(match[2]);
    return {
        isRange: true,
        ...(low === undefined ? {} : { low }),
        ...(high === undefined ? {} : { high }),
    };
}

function integerOf(text: string | undefined): bigint | undefined {
    const match = /^([+-]?)(\d+|0[xX][0-9A-Fa-f]+)$/.exec(text ?? "");
    if (!match) return undefined;
    const magnitude = BigInt(match[2] ?? "");
    return match[1] === "-" ? -magnitude : magnitude;
}

function readUnit(qualifiers: readonly Qualifier[]): Unit | undefined {
    const program = named(qualifiers, "PUnit")?.value;
    if (typeof program === "string" && program !== "") return unitOfProgram(program);
    const words = named(qualifiers, "Units")?.value;
    return typeof words === "string" && words !== "" ? unitOfWords(words) : undefined;
}

/** Exact entries win over ranges, closed ranges over open ones: ".." is all that nothing else is. */
function wordsOf(value: CimScalar, meaning: Meaning): string | undefined {
    const exact = meaning.exact.get(String(value));
    if (exact) return exact.words;
    const number = typeof value === "bigint" ? value : exactNumber(value);
    if (number === undefined) return undefined;
    const same = meaning.entries.find((entry) => integerOf(entry.value.trim()) === number);
    if (same) return same.words;
    const ranges = meaning.entries.filter(
        ({ isRange, low, high }) =>
            isRange &&
            (low === undefined || number >= low) &&
            (high === undefined || number <= high),
    );
    return ranges.sort((left, right) => openEnds(left) - openEnds(right))[0]?.words;
}

function openEnds({ low, high }: MapEntry): number {
    return (low === undefined ? 1 : 0) + (high === undefined ? 1 : 0);
}

function exactNumber(value: CimScalar): bigint | undefined {
    return typeof value === "number" && Number.isSafeInteger(value) ? BigInt(value) : undefined;
}

/** The words of the bits that are set. */
function bitWords(value: CimScalar, bits: readonly MapEntry[]): string | undefined {
    const number = typeof value === "bigint" ? value : exactNumber(value);
    if (number === undefined || number < 0n) return undefined;
    const set: string[] = [];
    let rest = number;
    for (const bit of bits) {
        const place = integerOf(bit.value.trim());
        if (place === undefined || place < 0n || place > 63n || !((number >> place) & 1n)) continue;
        set.push(bit.words);
        rest &= ~(1n << place);
    }
    if (rest !== 0n) set.push(`0x${rest.toString(16)}`);
    return set.length ? set.join(" | ") : "none";
}

/** One value as words of its value map, with its unit, or in local time. NULL has the words "". */
export function shownScalar(value: CimScalar | null, described?: Described): ShownValue {
    if (value === null) return { words: "" };
    if (typeof value === "boolean") return { words: value ? "true" : "false" };
    if (isObjectPath(value)) return { words: pathText(value) };
    if (isInstance(value)) return { words: instanceText(value) };
    const raw = String(value);
    if (described) {
        const words = describedWords(value, described);
        if (words !== undefined) return words === raw ? { words } : { words, raw };
    }
    return { words: raw };
}

function describedWords(value: string | number | bigint, described: Described): string | undefined {
    const meaning = meaningOf(described);
    if (meaning.bits.length) return bitWords(value, meaning.bits);
    const words = meaning.entries.length ? wordsOf(value, meaning) : undefined;
    if (words !== undefined) return words;
    if (typeof value !== "string") {
        const unit = described.unit ?? meaning.unit;
        return unit && quantityText(value, unit);
    }
    switch (described.type) {
        case "datetime":
            return dateTimeText(value);
        case "char16":
            return characterText(value);
        default:
            return meaning.isEmbedded ? embeddedText(value) : undefined;
    }
}

/** A character that is seen: others are told by their number. */
function characterText(value: string): string {
    const isSeen = /^[\p{L}\p{N}\p{P}\p{S}]$/u.test(value);
    const code = value.codePointAt(0) ?? 0;
    return isSeen ? value : `U+${code.toString(16).toUpperCase().padStart(4, "0")}`;
}

/** Class and what names it: an instance in one line. */
export function instanceText(instance: Instance): string {
    const name = ["ElementName", "Name", "InstanceID", "DeviceID", "Message", "Tag"]
        .map((property) => named(instance.properties, property)?.value)
        .find((value) => typeof value === "string" && value !== "");
    return name === undefined ? instance.className : `${instance.className} "${String(name)}"`;
}

function embeddedText(value: string): string | undefined {
    const instance = embeddedInstanceOf(value);
    return instance && instanceText(instance);
}

/** The instance in a value: embedded as such, or, as some servers send it, as a text of CIM-XML. */
export function embeddedInstanceOf(value: CimScalar | null): Instance | undefined {
    if (isInstance(value)) return value;
    return typeof value === "string" && value.trimStart().startsWith("<INSTANCE")
        ? instanceOfText(value)
        : undefined;
}

/** A value or the list of an array's; an octet string is one. */
export function shownValues(value: CimValue, described?: Described): ShownValue[] {
    if (!Array.isArray(value)) return value === null ? [] : [shownScalar(value, described)];
    if (described && meaningOf(described).isOctets) {
        const octets = described.type === "uint8" ? octetText(value) : undefined;
        if (octets !== undefined) return [{ words: octets }];
    }
    return value.map((one) => (one === null ? { words: "NULL" } : shownScalar(one, described)));
}

/** Octets in hexadecimal. The first four are the length with them; some providers leave it out. */
function octetText(value: readonly (CimScalar | null)[]): string | undefined {
    const octets = value.map(Number);
    if (octets.some((octet) => !Number.isInteger(octet) || octet < 0 || octet > 255)) {
        return undefined;
    }
    const length = octets.slice(0, 4).reduce((sum, octet) => sum * 256 + octet, 0);
    const content = octets.length >= 4 && length === octets.length ? octets.slice(4) : octets;
    return content.map((octet) => octet.toString(16).padStart(2, "0")).join(" ");
}

/** The same in one line: "Degraded (3)", "OK (1), Sleeping (5)". */
export function valueText(value: CimValue, described?: Described): string {
    return shownValues(value, described)
        .map(({ words, raw }) => (raw === undefined ? words : `${words} (${raw})`))
        .join(", ");
}

/** The pairs of a value map that stand for one value each; for choices in forms and completion. */
export function valueMapOf(described: Described): { value: string; words: string }[] {
    return meaningOf(described)
        .entries.filter(({ isRange }) => !isRange)
        .map(({ value, words }) => ({ value, words }));
}

/** The unit as people write it ("°C", "V", "B"), or undefined. */
export function unitOf(described: Described): string | undefined {
    return (described.unit ?? meaningOf(described).unit)?.symbol || undefined;
}
