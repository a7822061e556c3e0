import type { Class, Element, Instance, ObjectPath, Property, Qualifier } from "./model";

/** Names of classes, properties, namespaces and the like compare without regard to case. */
export function equalNames(left: string, right: string): boolean {
    return left.length === right.length && nameKey(left) === nameKey(right);
}

/** The form of a name that is the same for equal names: a key of maps. */
export function nameKey(name: string): string {
    return name.toLowerCase();
}

/** The element of this name, or undefined. */
export function named<T extends { name: string }>(
    elements: readonly T[],
    name: string,
): T | undefined {
    return elements.find((element) => equalNames(element.name, name));
}

export function propertyOf(holder: Class | Instance, name: string): Property | undefined {
    return named(holder.properties, name);
}

export function qualifierOf(
    element: Pick<Element, "qualifiers">,
    name: string,
): Qualifier | undefined {
    return named(element.qualifiers, name);
}

/** Whether a boolean qualifier is there and TRUE. */
export function hasQualifier(element: Pick<Element, "qualifiers">, name: string): boolean {
    return qualifierOf(element, name)?.value === true;
}

/** The text of a path without its host, the same for equal paths: a key of maps and of routes. */
export function pathKey(path: ObjectPath): string {
    const keys = path.keys.map(({ name, value }) => `${nameKey(name)}=${keyText(value)}`).sort();
    return `${nameKey(path.namespace ?? "")}:${nameKey(path.className)}.${keys.join(",")}`;
}

function keyText(value: unknown): string {
    if (typeof value === "object" && value !== null && "keys" in value) {
        return JSON.stringify(pathKey(value as ObjectPath));
    }
    return JSON.stringify(String(value));
}

/** A path as people write it: `root/ktq:PYL_Fan.DeviceID="1"`. */
export function pathText(path: ObjectPath): string {
    const keys = path.keys.map(({ name, value }) => `${name}=${shownKey(value)}`).join(",");
    const space = path.namespace ? `${path.namespace}:` : "";
    return `${space}${path.className}${keys ? `.${keys}` : ""}`;
}

function shownKey(value: unknown): string {
    if (typeof value === "boolean") return value ? "TRUE" : "FALSE";
    if (typeof value === "number" || typeof value === "bigint") return String(value);
    const text = typeof value === "string" ? value : pathText(value as ObjectPath);
    return `"${text.replace(/["\\]/g, "\\$&")}"`;
}
