/** Units of CIM: the words of the qualifier Units and the programmatic form of PUnit (DSP0004). */

/** A unit as people write it, and how many of it one of the value is. */
export interface Unit {
    symbol: string;
    factor: number;
    /** Whether the prefixes of 1024 are for it. */
    isBinary?: boolean;
}

const symbols = new Map(
    Object.entries({
        percent: "%",
        count: "",
        decibel: "dB",
        byte: "B",
        bit: "bit",
        second: "s",
        minute: "min",
        hour: "h",
        day: "days",
        week: "weeks",
        hertz: "Hz",
        volt: "V",
        ampere: "A",
        watt: "W",
        joule: "J",
        ohm: "Ω",
        coulomb: "C",
        "degree celsius": "°C",
        "degree fahrenheit": "°F",
        kelvin: "K",
        revolution: "rev",
        cycle: "cycles",
        meter: "m",
        inch: "in",
        gram: "g",
        newton: "N",
        pascal: "Pa",
        bar: "bar",
        liter: "l",
        lux: "lx",
        candela: "cd",
        lumen: "lm",
        "u(rack unit)": "U",
        "rack unit": "U",
        pixel: "px",
        dot: "dots",
        packet: "packets",
        fault: "faults",
        error: "errors",
        message: "messages",
        instruction: "instructions",
        process: "processes",
        event: "events",
    }),
);

/** The words that Units has, and those of BaseUnits; singular or plural, in any case. */
const words = new Map<string, Unit>(
    Object.entries({
        bytes: { symbol: "B", factor: 1, isBinary: true },
        kilobytes: { symbol: "B", factor: 1024, isBinary: true },
        megabytes: { symbol: "B", factor: 1024 ** 2, isBinary: true },
        gigabytes: { symbol: "B", factor: 1024 ** 3, isBinary: true },
        bits: { symbol: "bit", factor: 1 },
        "bits per second": { symbol: "bit/s", factor: 1 },
        "kilobits per second": { symbol: "bit/s", factor: 1e3 },
        "megabits per second": { symbol: "bit/s", factor: 1e6 },
        "bytes per second": { symbol: "B/s", factor: 1 },
        hertz: { symbol: "Hz", factor: 1 },
        kilohertz: { symbol: "Hz", factor: 1e3 },
        megahertz: { symbol: "Hz", factor: 1e6 },
        volts: { symbol: "V", factor: 1 },
        millivolts: { symbol: "V", factor: 1e-3 },
        amps: { symbol: "A", factor: 1 },
        amperes: { symbol: "A", factor: 1 },
        milliamps: { symbol: "A", factor: 1e-3 },
        watts: { symbol: "W", factor: 1 },
        milliwatts: { symbol: "W", factor: 1e-3 },
        joules: { symbol: "J", factor: 1 },
        "degrees c": { symbol: "°C", factor: 1 },
        "degrees celsius": { symbol: "°C", factor: 1 },
        "tenths of degrees c": { symbol: "°C", factor: 0.1 },
        "degrees f": { symbol: "°F", factor: 1 },
        "degrees k": { symbol: "K", factor: 1 },
        rpm: { symbol: "RPM", factor: 1 },
        "revolutions per minute": { symbol: "RPM", factor: 1 },
        percent: { symbol: "%", factor: 1 },
        percentage: { symbol: "%", factor: 1 },
        counts: { symbol: "", factor: 1 },
        seconds: { symbol: "s", factor: 1 },
        milliseconds: { symbol: "s", factor: 1e-3 },
        "milli seconds": { symbol: "s", factor: 1e-3 },
        microseconds: { symbol: "s", factor: 1e-6 },
        nanoseconds: { symbol: "s", factor: 1e-9 },
        "tenths of seconds": { symbol: "s", factor: 0.1 },
        minutes: { symbol: "min", factor: 1 },
        hours: { symbol: "h", factor: 1 },
        days: { symbol: "days", factor: 1 },
        inches: { symbol: "in", factor: 1 },
        pounds: { symbol: "lb", factor: 1 },
        meters: { symbol: "m", factor: 1 },
        blocks: { symbol: "blocks", factor: 1 },
        cfm: { symbol: "CFM", factor: 1 },
    }),
);

/** The unit that Units or BaseUnits says; a word that is not known is its own symbol. */
export function unitOfWords(text: string): Unit {
    const key = text.trim().toLowerCase();
    return words.get(key) ?? words.get(`${key}s`) ?? { symbol: text.trim(), factor: 1 };
}

/** The unit that PUnit says: "byte * 2^20", "volt * 10^-3", "revolution / minute". */
export function unitOfProgram(text: string): Unit {
    const raw = text.trim();
    const first = raw.toLowerCase();
    if (/^(rev|revolution)s?\s*\/\s*minute$/.test(first)) return { symbol: "RPM", factor: 1 };
    let symbol = "";
    let factor = 1;
    let isByte = false;
    for (const [, operator, part = ""] of first.matchAll(/([*/]?)\s*([^*/]+)/g)) {
        const value = part.trim();
        const number = numberOf(value);
        if (number !== undefined) {
            factor = operator === "/" ? factor / number : factor * number;
            continue;
        }
        const known = symbols.get(value) ?? symbols.get(value.replace(/s$/, ""));
        if (known === undefined) return { symbol: raw, factor: 1 };
        isByte = value === "byte" && operator !== "/" && symbol === "";
        symbol += operator === "/" ? `/${known}` : symbol && known ? `·${known}` : known;
    }
    return isByte && symbol === "B" ? { symbol, factor, isBinary: true } : { symbol, factor };
}

/** "2^20", "10^-3", "1000": what a unit is multiplied by. */
function numberOf(text: string): number | undefined {
    const match = /^(\d+(?:\.\d+)?)(?:\s*\^\s*([+-]?\d+))?$/.exec(text);
    if (!match) return undefined;
    return Number(match[1]) ** Number(match[2] ?? 1);
}

const binaryPrefixes = ["", "Ki", "Mi", "Gi", "Ti", "Pi", "Ei"];
const decimalPrefixes = ["", "k", "M", "G", "T", "P"];
const scaled = new Set(["bit", "bit/s", "B/s", "Hz", "W", "J"]);

/** A number with a unit: 2147483648 bytes are "2 GiB", 12050 millivolts "12.05 V". */
export function quantityText(value: number | bigint, unit: Unit): string {
    if (unit.factor === 1 && !unit.isBinary && !scaled.has(unit.symbol)) {
        return withSymbol(String(value), unit.symbol);
    }
    let number = Number(value) * unit.factor;
    const step = unit.isBinary ? 1024 : 1000;
    const prefixes = unit.isBinary
        ? binaryPrefixes
        : scaled.has(unit.symbol)
          ? decimalPrefixes
          : [""];
    let level = 0;
    while (Math.abs(number) >= step && level < prefixes.length - 1) {
        number /= step;
        level += 1;
    }
    return withSymbol(rounded(number), `${prefixes[level] ?? ""}${unit.symbol}`);
}

function withSymbol(number: string, symbol: string): string {
    if (symbol === "") return number;
    return symbol === "%" ? `${number}%` : `${number} ${symbol}`;
}

/** At most five significant digits behind which nothing is hidden by zeros. */
function rounded(number: number): string {
    if (Number.isInteger(number)) return String(number);
    return String(Number(number.toPrecision(Math.abs(number) >= 1000 ? 6 : 4)));
}
