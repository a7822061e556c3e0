import { signal } from "@preact/signals";

import { isObjectPath, type KeyBinding, type ObjectPath } from "../cim/model";

/** What the page shows; each has an address of its own, behind the "#". */
export type Route =
    | { view: "host" | "alerts" | "requests" | "modules" }
    | { view: "explore"; namespace?: string; className?: string }
    | { view: "instance"; path: ObjectPath };

export function parseRoute(hash: string): Route {
    const [view, ...rest] = hash
        .replace(/^#?\/?/, "")
        .split("/")
        .map(decoded);
    if (view === "alerts" || view === "requests" || view === "modules") return { view };
    if (view === "explore") {
        const [namespace, className] = rest;
        return {
            view,
            ...(namespace ? { namespace } : {}),
            ...(className ? { className } : {}),
        };
    }
    const path = view === "instance" && rest[0] ? parsePath(rest[0]) : undefined;
    return path ? { view: "instance", path } : { view: "host" };
}

export function href(route: Route): string {
    if (route.view === "instance") return `#/instance/${encodeURIComponent(writePath(route.path))}`;
    if (route.view !== "explore") return `#/${route.view}`;
    const parts = [route.namespace, route.className].filter((part) => part !== undefined);
    return ["#/explore", ...parts.map(encodeURIComponent)].join("/");
}

export const instanceHref = (path: ObjectPath): string => href({ view: "instance", path });

/**
 * A path in one line that parsePath reads again: as people write it, but with an "@" before a
 * reference, which could not be told from a string otherwise.
 */
export function writePath(path: ObjectPath): string {
    const keys = path.keys.map(({ name, value }) => `${name}=${writeKey(value)}`).join(",");
    return `${path.namespace ?? ""}:${path.className}${keys ? `.${keys}` : ""}`;
}

/** The path that is written so, or undefined. */
export function parsePath(text: string): ObjectPath | undefined {
    const head = /^(?:([^:"]*):)?([^.:="]+)(?:\.|$)/.exec(text);
    if (!head) return undefined;
    const keys: KeyBinding[] = [];
    let rest = text.slice(head[0].length);
    while (rest) {
        const key = /^([^=",]+)=(@?)(?:"((?:[^"\\]|\\[^])*)"|([^",]+))(?:,|$)/.exec(rest);
        if (!key) return undefined;
        const value = readKey(key[2] === "@", key[3], key[4] ?? "");
        if (value === undefined) return undefined;
        keys.push({ name: key[1]!, value });
        rest = rest.slice(key[0].length);
    }
    return { ...(head[1] ? { namespace: head[1] } : {}), className: head[2]!, keys };
}

function writeKey(value: KeyBinding["value"]): string {
    if (typeof value === "boolean") return value ? "TRUE" : "FALSE";
    if (typeof value === "number" || typeof value === "bigint") return String(value);
    if (isObjectPath(value)) return `@${quoted(writePath(value))}`;
    return quoted(String(value));
}

function readKey(
    isReference: boolean,
    text: string | undefined,
    bare: string,
): KeyBinding["value"] | undefined {
    if (text !== undefined) {
        const plain = text.replace(/\\([^])/g, "$1");
        return isReference ? parsePath(plain) : plain;
    }
    if (/^(true|false)$/i.test(bare)) return bare.toLowerCase() === "true";
    if (/^[-+]?\d+$/.test(bare)) {
        const number = Number(bare);
        return Number.isSafeInteger(number) ? number : BigInt(bare);
    }
    const real = Number(bare);
    return Number.isNaN(real) ? undefined : real;
}

const quoted = (text: string): string => `"${text.replace(/["\\]/g, "\\$&")}"`;

function decoded(part: string): string {
    try {
        return decodeURIComponent(part);
    } catch {
        return part;
    }
}

export const route = signal<Route>({ view: "host" });

export function go(to: Route): void {
    location.hash = href(to);
}

/** Has `route` follow the address from now on. */
export function followAddress(): void {
    const read = () => (route.value = parseRoute(location.hash));
    addEventListener("hashchange", read);
    read();
}
