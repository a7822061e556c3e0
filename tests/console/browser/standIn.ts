/** A server that stands in for cimhost: it serves the page, and says what a test wants it to say. */

import { readFileSync } from "node:fs";
import { createServer, type IncomingMessage, type ServerResponse } from "node:http";
import type { AddressInfo, Socket } from "node:net";
import { join } from "node:path";

import { reply, result } from "../replies";

const policy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; " +
    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

const types: Record<string, string> = {
    "index.html": "text/html; charset=utf-8",
    "console.js": "text/javascript; charset=utf-8",
    "console.css": "text/css; charset=utf-8",
};

export interface Asked {
    method: string;
    namespace: string;
    className: string;
    body: string;
}

export class StandIn {
    /** What CIM operations are answered, or undefined for an empty result. */
    answer: (asked: Asked) => string | undefined = () => undefined;
    readonly asked: Asked[] = [];
    private readonly viewers = new Set<ServerResponse>();
    private readonly sockets = new Set<Socket>();
    private readonly server = createServer((request, response) => this.serve(request, response));
    private port = 0;

    constructor() {
        this.server.on("connection", (socket) => {
            this.sockets.add(socket);
            socket.on("close", () => this.sockets.delete(socket));
        });
    }

    get url(): string {
        return `http://127.0.0.1:${this.port}/`;
    }

    get viewerCount(): number {
        return this.viewers.size;
    }

    async start(): Promise<void> {
        await new Promise<void>((resolve) => this.server.listen(this.port, "127.0.0.1", resolve));
        this.port = (this.server.address() as AddressInfo).port;
    }

    /** Ends, as a server that is stopped does: it may be started again at the same address. */
    async stop(): Promise<void> {
        const closed = new Promise<void>((resolve) => this.server.close(() => resolve()));
        for (const viewer of this.viewers) viewer.end();
        for (const socket of this.sockets) socket.destroy();
        await closed;
    }

    tell(event: string, data: object): void {
        for (const viewer of this.viewers) {
            viewer.write(`event: ${event}\ndata: ${JSON.stringify(data)}\n\n`);
        }
    }

    private serve(request: IncomingMessage, response: ServerResponse): void {
        if (request.method === "POST") {
            void this.serveOperation(request, response);
        } else if (request.url === "/events") {
            response.writeHead(200, { "Content-Type": "text/event-stream" });
            this.viewers.add(response);
            response.on("close", () => this.viewers.delete(response));
            const hello = {
                program: "cimhost",
                version: "1",
                target: null,
                destination: "console:",
            };
            response.write(`event: hello\ndata: ${JSON.stringify({ ...hello, logs: true })}\n\n`);
        } else {
            const name = request.url === "/" ? "index.html" : (request.url ?? "").slice(1);
            const type = types[name];
            if (!type) return void response.writeHead(404).end();
            response.writeHead(200, { "Content-Type": type, "Content-Security-Policy": policy });
            response.end(readFileSync(join(process.env["PYL_PAGE_FOLDER"] ?? "", name)));
        }
    }

    private async serveOperation(
        request: IncomingMessage,
        response: ServerResponse,
    ): Promise<void> {
        let body = "";
        for await (const piece of request) body += String(piece);
        const asked = {
            method: String(request.headers["cimmethod"]),
            namespace: decodeURIComponent(String(request.headers["cimobject"])),
            className: /(?:CLASSNAME NAME|CLASSNAME)="([^"]+)"/.exec(body)?.[1] ?? "",
            body,
        };
        this.asked.push(asked);
        response.writeHead(200, { "Content-Type": "application/xml" });
        response.end(this.answer(asked) ?? result(""));
    }
}

export function namesXml(className: string, key: string, names: readonly string[]): string {
    return result(
        names
            .map(
                (name) =>
                    `<INSTANCENAME CLASSNAME="${className}"><KEYBINDING NAME="${key}">` +
                    `<KEYVALUE>${name}</KEYVALUE></KEYBINDING></INSTANCENAME>`,
            )
            .join(""),
    );
}

export function instancesXml(
    className: string,
    key: string,
    all: readonly Record<string, string>[],
): string {
    return result(
        all
            .map((properties) => {
                const inside = Object.entries(properties).map(
                    ([name, value]) =>
                        `<PROPERTY NAME="${name}" TYPE="string"><VALUE>${value}</VALUE></PROPERTY>`,
                );
                return (
                    `<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME="${className}"><KEYBINDING NAME="${key}">` +
                    `<KEYVALUE>${properties[key] ?? ""}</KEYVALUE></KEYBINDING></INSTANCENAME>` +
                    `<INSTANCE CLASSNAME="${className}">${inside.join("")}</INSTANCE></VALUE.NAMEDINSTANCE>`
                );
            })
            .join(""),
    );
}

export const notFound = reply('<ERROR CODE="6" DESCRIPTION="there is none"/>');
