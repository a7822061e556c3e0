import type { SeenRequest } from "../../live/LiveStore";
import { statusName } from "../../cim/statusNames";

/** A time span as people say it: "98 µs", "1.25 ms", "3.4 s". */
export function spanText(micros: number): string {
    if (micros < 1000) return `${micros} µs`;
    if (micros < 1_000_000) return `${threeDigits(micros / 1000)} ms`;
    return `${threeDigits(micros / 1_000_000)} s`;
}

function threeDigits(number: number): string {
    return String(Number(number.toPrecision(3)));
}

/** A size: "98 B", "1.5 KiB", "12 MiB". */
export function sizeText(bytes: number): string {
    if (bytes < 1024) return `${bytes} B`;
    const isKibi = bytes < 1024 * 1024;
    return isKibi ? `${threeDigits(bytes / 1024)} KiB` : `${threeDigits(bytes / 1024 / 1024)} MiB`;
}

/** Whether a request went well, and how it ended. */
export function outcomeOf(request: SeenRequest): { tone: "ok" | "warn" | "error"; words: string } {
    const { status, outcome } = request;
    if (status !== 200) return { tone: "error", words: `${status}${outcome && ` ${outcome}`}` };
    if (outcome === "") return { tone: "ok", words: "OK" };
    const code = Number(outcome);
    if (!Number.isInteger(code)) return { tone: "error", words: outcome };
    const words = `${code} ${statusName(code).replace(/^CIM_ERR_/, "")}`;
    return { tone: code === 1 ? "error" : "warn", words };
}

export function logTone(level: string): string {
    switch (level) {
        case "error":
            return "tone-error";
        case "warning":
            return "tone-warn";
        default:
            return "";
    }
}
