import type { LiveStore, SeenLog, SeenRequest } from "../../live/LiveStore";
import type { LiveRow } from "../shared/LiveRows";
import { logTone } from "./words";

export interface RequestRow extends LiveRow {
    request: SeenRequest;
    log?: SeenLog;
    /** What is told of a request in a row of its own. */
    detail?: string;
    logs: number;
}

export interface LogRow extends LiveRow {
    log: SeenLog;
}

/** The requests that have all the words, as they come or slowest first, each open one with what is under it. */
export function requestRows(
    all: readonly SeenRequest[],
    logsOf: LiveStore["logsOf"],
    search: string,
    slowest: boolean,
    open: ReadonlySet<string>,
): RequestRow[] {
    const words = wordsOf(search);
    const requests = all.filter(({ searched }) => words.every((word) => searched.includes(word)));
    if (slowest) requests.sort((left, right) => right.micros - left.micros);
    const rows: RequestRow[] = [];
    for (const request of requests) {
        const key = `r${request.key}`;
        const logs = logsOf(request);
        const isOpen = open.has(key);
        rows.push({ key, level: 1, open: isOpen, request, logs: logs.length });
        if (!isOpen) continue;
        const detail = detailOf(request);
        rows.push({ key: `${key}d`, level: 2, request, detail, logs: 0 });
        for (const log of logs) {
            rows.push({
                key: `l${log.key}`,
                level: 2,
                tone: logTone(log.level),
                request,
                log,
                logs: 0,
            });
        }
    }
    return rows;
}

function detailOf({ number, peer, user, object, className, providers }: SeenRequest): string {
    const parts = [`request ${number}`, `of ${peer || "an unknown peer"}`];
    if (user) parts.push(`as ${user}`);
    parts.push(`on ${object}`);
    if (className) parts.push(`of class ${className}`);
    if (providers.length) parts.push(`answered by ${providers.join(", ")}`);
    return parts.join(" ");
}

/** The lines of the log that have all the words. */
export function logRows(all: readonly SeenLog[], search: string): LogRow[] {
    const words = wordsOf(search);
    const rows: LogRow[] = [];
    for (const log of all) {
        const { level, component, text, operation = "" } = log;
        if (words.length) {
            const searched = `${level} ${component} ${operation} ${text}`.toLowerCase();
            if (!words.every((word) => searched.includes(word))) continue;
        }
        rows.push({ key: `l${log.key}`, level: 1, tone: logTone(level), log });
    }
    return rows;
}

function wordsOf(search: string): string[] {
    return search
        .toLowerCase()
        .split(/\s+/)
        .filter((word) => word !== "");
}
