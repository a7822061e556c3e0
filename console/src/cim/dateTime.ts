/** The datetime of CIM (DSP0004): 25 characters, a point in time or an interval. */

/** A point in time; what has asterisks is undefined. */
export interface PointInTime {
    kind: "point";
    year: number | undefined;
    month: number | undefined;
    day: number | undefined;
    hour: number | undefined;
    minute: number | undefined;
    second: number | undefined;
    microseconds: number;
    digits: number; // how many digits of a second's fraction are known
    offset: number; // minutes east of UTC
}

export interface Interval {
    kind: "interval";
    days: number;
    hours: number;
    minutes: number;
    seconds: number;
    microseconds: number;
}

const pointPattern =
    /^(\d{4}|\*{4})(\d\d|\*\*)(\d\d|\*\*)(\d\d|\*\*)(\d\d|\*\*)(\d\d|\*\*)\.(\d{0,6}\**)([+-])(\d{3}|\*{3})$/;
const intervalPattern = /^(\d{8}|\*{8})(\d\d|\*\*)(\d\d|\*\*)(\d\d|\*\*)\.(\d{0,6}\**):000$/;

/** Undefined when the text is no datetime. */
export function parseDateTime(text: string): PointInTime | Interval | undefined {
    if (text.length !== 25) return undefined;
    return parsePoint(text) ?? parseInterval(text);
}

function known(digits: string | undefined): number | undefined {
    return digits === undefined || digits === "" || digits.includes("*")
        ? undefined
        : Number(digits);
}

function parsePoint(text: string): PointInTime | undefined {
    const match = pointPattern.exec(text);
    if (!match) return undefined;
    const [, year, month, day, hour, minute, second, fraction = "", sign, offset] = match;
    const digits = fraction.replace(/\*/g, "").length;
    return {
        kind: "point",
        year: known(year),
        month: known(month),
        day: known(day),
        hour: known(hour),
        minute: known(minute),
        second: known(second),
        microseconds: Number(fraction.replace(/\*/g, "0").padEnd(6, "0")),
        digits,
        offset: (known(offset) ?? 0) * (sign === "-" ? -1 : 1),
    };
}

function parseInterval(text: string): Interval | undefined {
    const match = intervalPattern.exec(text);
    if (!match) return undefined;
    const [, days, hours, minutes, seconds, fraction = ""] = match;
    return {
        kind: "interval",
        days: known(days) ?? 0,
        hours: known(hours) ?? 0,
        minutes: known(minutes) ?? 0,
        seconds: known(seconds) ?? 0,
        microseconds: Number(fraction.replace(/\*/g, "0")),
    };
}

/** The moment, where all down to the minute is known and the calendar has it. */
export function dateOf(point: PointInTime): Date | undefined {
    const { year, month, day, hour, minute } = point;
    if (year === undefined || !month || !day || hour === undefined || minute === undefined) {
        return undefined;
    }
    if (month > 12 || day > 31 || hour > 23 || minute > 59 || (point.second ?? 0) > 59) {
        return undefined;
    }
    const date = new Date(0);
    date.setUTCFullYear(year, month - 1, day);
    if (date.getUTCDate() !== day) return undefined;
    const milliseconds = Math.floor(point.microseconds / 1000);
    date.setUTCHours(hour, minute - point.offset, point.second ?? 0, milliseconds);
    return date;
}

/** The 25 characters of a moment, in UTC. */
export function dateTimeOf(date: Date): string {
    const text = date.toISOString().replace(/[-:T]/g, ""); // yyyymmddhhmmss.mmmZ
    return `${text.slice(0, 18)}000+000`;
}

function pad(number: number, length = 2): string {
    return String(number).padStart(length, "0");
}

/** A moment in local time, as ISO 8601 has it with a blank: "2026-05-01 14:00:00". */
export function localTime(date: Date): string {
    const day = `${pad(date.getFullYear(), 4)}-${pad(date.getMonth() + 1)}-${pad(date.getDate())}`;
    const time = `${pad(date.getHours())}:${pad(date.getMinutes())}:${pad(date.getSeconds())}`;
    return `${day} ${time}`;
}

/** A moment's time of day to the millisecond. */
export function localTimeOfDay(date: Date): string {
    return `${localTime(date).slice(11)}.${pad(date.getMilliseconds(), 3)}`;
}

/** Words for a datetime: local time, an interval in units, or what is known; else the text itself. */
export function dateTimeText(text: string): string {
    const time = parseDateTime(text);
    if (!time) return text;
    return time.kind === "interval" ? intervalText(time) : (pointText(time) ?? text);
}

function pointText(point: PointInTime): string | undefined {
    const date = dateOf(point);
    if (!date) return partialText(point);
    const local = localTime(date);
    if (point.second === undefined) return local.slice(0, -3);
    if (point.microseconds === 0) return local;
    return `${local}.${pad(point.microseconds, 6).slice(0, point.digits > 3 ? 6 : 3)}`;
}

/** What is known of a point in time that is not known whole, as it was written; no zone applies. */
function partialText({ year, month, day, hour, minute }: PointInTime): string | undefined {
    const isWhole = hour !== undefined && minute !== undefined;
    if (isWhole && year !== undefined && month !== undefined && day !== undefined) {
        return undefined; // all digits, and no moment: as zeros are
    }
    if (year === undefined) return isWhole ? `${pad(hour)}:${pad(minute)}` : "unknown";
    if (month === undefined) return pad(year, 4);
    if (day === undefined) return `${pad(year, 4)}-${pad(month)}`;
    const date = `${pad(year, 4)}-${pad(month)}-${pad(day)}`;
    return hour === undefined ? date : `${date} ${pad(hour)} h`;
}

function intervalText(interval: Interval): string {
    const { days, hours, minutes, seconds, microseconds } = interval;
    const parts: string[] = [];
    if (days) parts.push(`${days} ${days === 1 ? "day" : "days"}`);
    if (hours) parts.push(`${hours} h`);
    if (minutes) parts.push(`${minutes} min`);
    const fraction = microseconds ? `.${pad(microseconds, 6).replace(/0+$/, "")}` : "";
    if (seconds || microseconds || parts.length === 0) parts.push(`${seconds}${fraction} s`);
    return parts.join(" ");
}
