import { useMemo, useState } from "preact/hooks";

import { changes, link, store, storeChanged } from "../../live/live";
import type { SeenLog, SeenRequest } from "../../live/LiveStore";
import { FilterField } from "../shared/FilterField";
import { LinkState } from "../shared/LinkState";
import { LiveRows, toggled } from "../shared/LiveRows";
import { TextDialog } from "../shared/TextDialog";
import { Time } from "../shared/Time";
import { logRows, requestRows, type LogRow, type RequestRow } from "./rows";
import { outcomeOf, sizeText, spanText } from "./words";

type Shown = "requests" | "log";

/** What is listed: while it is paused that of one moment. */
interface Moment {
    requests: readonly SeenRequest[];
    logs: readonly SeenLog[];
}

function now(): Moment {
    return { requests: store.requests.newestFirst(), logs: store.logs.newestFirst() };
}

/** What the server is asked, as it happens, with what is logged meanwhile. */
export function RequestsView() {
    const [shown, setShown] = useState<Shown>("requests");
    const [search, setSearch] = useState("");
    const [slowest, setSlowest] = useState(false);
    const [paused, setPaused] = useState<Moment | undefined>(undefined);
    const [open, setOpen] = useState<ReadonlySet<string>>(new Set());
    const [read, setRead] = useState<string | undefined>(undefined);
    const turn = changes.value;
    const moment = useMemo(() => paused ?? now(), [paused, turn]);
    return (
        <div class="page live-page">
            <div class="toolbar">
                <h1>Requests</h1>
                <LinkState />
                <span class="grow" />
                <div class="toolbar" role="group" aria-label="What is listed">
                    <Choice now={shown} value="requests" onChoose={setShown} words="Requests" />
                    <Choice now={shown} value="log" onChoose={setShown} words="Log lines" />
                </div>
                <FilterField value={search} onChange={setSearch} />
                {shown === "requests" && (
                    <button
                        class="button"
                        type="button"
                        aria-pressed={slowest}
                        onClick={() => setSlowest(!slowest)}
                    >
                        Slowest first
                    </button>
                )}
                <button
                    class="button"
                    type="button"
                    aria-pressed={paused !== undefined}
                    onClick={() => setPaused(paused ? undefined : now())}
                >
                    {paused ? "Go on" : "Pause"}
                </button>
                <button
                    class="button"
                    type="button"
                    onClick={() => {
                        store.clearRequests();
                        setPaused(undefined);
                        storeChanged();
                    }}
                >
                    Clear
                </button>
            </div>
            {shown === "requests" ? (
                <RequestList
                    moment={moment}
                    search={search}
                    slowest={slowest}
                    open={open}
                    onToggle={(key) => setOpen(toggled(open, key))}
                    onRead={setRead}
                />
            ) : (
                <LogList moment={moment} search={search} onRead={setRead} />
            )}
            {read !== undefined && <TextDialog text={read} onClose={() => setRead(undefined)} />}
        </div>
    );
}

function Choice({
    now,
    value,
    words,
    onChoose,
}: {
    now: Shown;
    value: Shown;
    words: string;
    onChoose: (value: Shown) => void;
}) {
    return (
        <button
            class="button"
            type="button"
            aria-pressed={now === value}
            onClick={() => onChoose(value)}
        >
            {words}
        </button>
    );
}

const requestTitles = [
    "Time",
    "Operation",
    "Class",
    "Answered by",
    "Took",
    "Size",
    "Status",
    "Log",
];

function RequestList({
    moment,
    search,
    slowest,
    open,
    onToggle,
    onRead,
}: {
    moment: Moment;
    search: string;
    slowest: boolean;
    open: ReadonlySet<string>;
    onToggle: (key: string) => void;
    onRead: (text: string) => void;
}) {
    const rows = useMemo(
        () => requestRows(moment.requests, (one) => store.logsOf(one), search, slowest, open),
        [moment, search, slowest, open],
    );
    const longest = useMemo(
        () => rows.reduce((most, { request }) => Math.max(most, request.micros), 1),
        [rows],
    );
    return (
        <LiveRows
            label="Requests"
            layout="request-columns"
            titles={requestTitles}
            rows={rows}
            cells={(row) => requestCells(row, longest)}
            onToggle={(row) => onToggle(row.key)}
            onOpen={({ log, detail }) => onRead(log ? lineText(log) : (detail ?? ""))}
            empty={
                search ? "No request has these words." : "No requests yet: each one is shown here."
            }
        />
    );
}

function requestCells(row: RequestRow, longest: number) {
    const { request, log, detail } = row;
    if (log) return [<LogText log={log} />];
    if (detail !== undefined) return [<span class="muted">{detail}</span>];
    const outcome = outcomeOf(request);
    return [
        <Time text={request.time} />,
        request.operation,
        request.className || <span class="muted">{request.object}</span>,
        request.providers.join(", ") || <span class="muted">cimhost</span>,
        <span class="bar-cell">
            <meter
                class="bar"
                min={0}
                max={longest}
                value={request.micros}
                aria-label={spanText(request.micros)}
            />
            <span class="number">{spanText(request.micros)}</span>
        </span>,
        <span class="number">{sizeText(request.bytes)}</span>,
        <span class={`tone-${outcome.tone}`}>{outcome.words}</span>,
        row.logs > 0 ? `${row.logs} ${row.logs === 1 ? "line" : "lines"}` : "",
    ];
}

function lineText({ time, level, component, text }: SeenLog): string {
    return `${time} ${level} ${component}: ${text}`;
}

function LogText({ log }: { log: SeenLog }) {
    return (
        <span class="log-line" title={log.text}>
            <Time text={log.time} /> {log.level} <b>{log.component}</b> {log.text}
        </span>
    );
}

const logTitles = ["Time", "Level", "From", "Request", "Text"];

function LogList({
    moment,
    search,
    onRead,
}: {
    moment: Moment;
    search: string;
    onRead: (text: string) => void;
}) {
    const rows = useMemo(() => logRows(moment.logs, search), [moment, search]);
    const hasLogs = store.hello?.hasLogs ?? true;
    return (
        <LiveRows
            label="Log lines"
            layout="log-columns"
            titles={logTitles}
            rows={rows}
            cells={logCells}
            onToggle={() => undefined}
            onOpen={({ log }) => onRead(lineText(log))}
            empty={
                search
                    ? "No line has these words."
                    : hasLogs || link.value.state !== "open"
                      ? "Nothing was logged yet."
                      : "This server does not tell what it logs."
            }
        />
    );
}

function logCells({ log }: LogRow) {
    return [
        <Time text={log.time} />,
        log.level,
        log.component,
        log.request === undefined ? "" : `${log.request} ${log.operation ?? ""}`,
        <span title={log.text}>{log.text}</span>,
    ];
}
