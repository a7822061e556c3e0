/** What the server's stream of events tells. */

export interface Hello {
    program: string;
    version: string;
    /** The server that is looked at through this one; null when it is this one. */
    target: string | null;
    /** The Destination with which indications come here; empty where none can. */
    destination: string;
    hasLogs: boolean;
}

export interface RequestEvent {
    number: number;
    time: string; // of its end
    peer: string;
    user: string;
    operation: string;
    object: string;
    className: string;
    providers: string[];
    status: number; // HTTP
    outcome: string; // a CIM status code, a CIMError, or empty when all went well
    bytes: number;
    micros: number;
}

export interface LogEvent {
    time: string;
    level: string;
    request?: number;
    operation?: string;
    component: string;
    text: string;
}

export interface AlertEvent {
    time: string;
    filter: string;
    instance: string; // CIM-XML
}

export type LiveEvent =
    | { kind: "hello"; hello: Hello }
    | { kind: "request"; request: RequestEvent }
    | { kind: "log"; log: LogEvent }
    | { kind: "alert"; alert: AlertEvent }
    | { kind: "dropped"; count: number };

export const eventNames = ["hello", "request", "log", "alert", "dropped"] as const;
export type EventName = (typeof eventNames)[number];

type Fields = Record<string, unknown>;

function text(fields: Fields, name: string): string {
    const value = fields[name];
    return typeof value === "string" ? value : value == null ? "" : String(value);
}

function number(fields: Fields, name: string): number {
    const value = Number(fields[name]);
    return Number.isFinite(value) ? value : 0;
}

function texts(fields: Fields, name: string): string[] {
    const value = fields[name];
    return Array.isArray(value) ? value.map(String) : [];
}

/** The event of this name with this data; undefined when the data makes no sense. */
export function readEvent(name: EventName, data: string): LiveEvent | undefined {
    let fields: Fields;
    try {
        const value: unknown = JSON.parse(data);
        if (typeof value !== "object" || value === null) return undefined;
        fields = value as Fields;
    } catch {
        return undefined;
    }
    switch (name) {
        case "hello":
            return { kind: "hello", hello: readHello(fields) };
        case "request":
            return { kind: "request", request: readRequest(fields) };
        case "log":
            return { kind: "log", log: readLog(fields) };
        case "alert":
            return {
                kind: "alert",
                alert: {
                    time: text(fields, "time"),
                    filter: text(fields, "filter"),
                    instance: text(fields, "instance"),
                },
            };
        case "dropped":
            return { kind: "dropped", count: number(fields, "count") };
    }
}

function readHello(fields: Fields): Hello {
    return {
        program: text(fields, "program"),
        version: text(fields, "version"),
        target: fields["target"] == null ? null : text(fields, "target"),
        destination: text(fields, "destination"),
        hasLogs: fields["logs"] === true,
    };
}

function readRequest(fields: Fields): RequestEvent {
    return {
        number: number(fields, "number"),
        time: text(fields, "time"),
        peer: text(fields, "peer"),
        user: text(fields, "user"),
        operation: text(fields, "operation"),
        object: text(fields, "object"),
        className: text(fields, "className"),
        providers: texts(fields, "providers"),
        status: number(fields, "status"),
        outcome: text(fields, "outcome"),
        bytes: number(fields, "bytes"),
        micros: number(fields, "micros"),
    };
}

function readLog(fields: Fields): LogEvent {
    const log: LogEvent = {
        time: text(fields, "time"),
        level: text(fields, "level"),
        component: text(fields, "component"),
        text: text(fields, "text"),
    };
    if (fields["request"] != null) log.request = number(fields, "request");
    if (fields["operation"] != null) log.operation = text(fields, "operation");
    return log;
}
