import { instanceOfText } from "../cim/elements";
import type { Instance } from "../cim/model";
import type { AlertEvent, Hello, LiveEvent, LogEvent, RequestEvent } from "./events";
import { Ring } from "./Ring";

const keptRequests = 2000;
const keptLogs = 5000;
const keptAlerts = 1000;
const keptForwardings = 200;
const keptText = 4096; // characters of a line

/** Each has a key of its own: a server that was restarted counts its requests anew. */
export interface SeenRequest extends RequestEvent {
    key: number;
    session: number;
    /** All that a filter looks through, in lower case. */
    searched: string;
}

export interface SeenLog extends LogEvent {
    key: number;
    session: number;
}

export interface SeenAlert extends AlertEvent {
    key: number;
    /** Undefined when what came is no instance. */
    indication: Instance | undefined;
}

/** What the modules log about alerts that they forward to an enclosure. */
const forwardingPattern = /\bENCA(_CLI_Exec)?\b|\benclosure\b/;

/** What the stream told, as much of it as is kept. Nothing here grows without end. */
export class LiveStore {
    readonly requests = new Ring<SeenRequest>(keptRequests);
    readonly logs = new Ring<SeenLog>(keptLogs);
    readonly alerts = new Ring<SeenAlert>(keptAlerts);
    readonly forwardings = new Ring<SeenLog>(keptForwardings);
    hello: Hello | undefined;
    /** What the server could not keep for this page. */
    dropped = 0;
    /** How many alerts came in all. */
    alertCount = 0;
    private readonly logsByRequest = new Map<string, SeenLog[]>();
    private lastKey = 0;
    private session = 0;

    take(event: LiveEvent): void {
        switch (event.kind) {
            case "hello":
                this.hello = event.hello;
                this.session += 1;
                break;
            case "request":
                this.takeRequest(event.request);
                break;
            case "log":
                this.takeLog(event.log);
                break;
            case "alert":
                this.takeAlert(event.alert);
                break;
            case "dropped":
                this.dropped += event.count;
                break;
        }
    }

    /** The lines that were logged while a request ran, in their order. */
    logsOf(request: SeenRequest): readonly SeenLog[] {
        return this.logsByRequest.get(`${request.session}:${request.number}`) ?? [];
    }

    clearRequests(): void {
        this.requests.clear();
        this.logs.clear();
        this.logsByRequest.clear();
        this.dropped = 0;
    }

    clearAlerts(): void {
        this.alerts.clear();
        this.forwardings.clear();
        this.alertCount = 0;
    }

    private takeRequest(request: RequestEvent): void {
        const { operation, object, className, providers, peer, user, outcome, status } = request;
        const searched = [operation, object, className, ...providers, peer, user, outcome, status]
            .join(" ")
            .toLowerCase();
        this.requests.push({ ...request, key: ++this.lastKey, session: this.session, searched });
    }

    private takeLog(event: LogEvent): void {
        const isLong = event.text.length > keptText;
        const text = isLong ? `${event.text.slice(0, keptText)}…` : event.text;
        const log = { ...event, text, key: ++this.lastKey, session: this.session };
        const forgotten = this.logs.push(log);
        if (forgotten) this.forget(forgotten);
        if (forwardingPattern.test(log.text)) this.forwardings.push(log);
        if (log.request === undefined) return;
        const key = `${log.session}:${log.request}`;
        const lines = this.logsByRequest.get(key);
        if (lines) lines.push(log);
        else this.logsByRequest.set(key, [log]);
    }

    /** The oldest line of all is the oldest of its request. */
    private forget(log: SeenLog): void {
        if (log.request === undefined) return;
        const key = `${log.session}:${log.request}`;
        const lines = this.logsByRequest.get(key);
        lines?.shift();
        if (lines?.length === 0) this.logsByRequest.delete(key);
    }

    private takeAlert(alert: AlertEvent): void {
        const indication = instanceOfText(alert.instance);
        this.alerts.push({ ...alert, key: ++this.lastKey, indication });
        this.alertCount += 1;
    }
}
