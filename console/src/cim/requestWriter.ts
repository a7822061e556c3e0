/** Writes the requests of CIM operations as CIM-XML, in the forms that every server reads. */

import {
    isInstance,
    isObjectPath,
    type Argument,
    type CimScalar,
    type CimType,
    type CimValue,
    type Instance,
    type KeyBinding,
    type ObjectPath,
    type Property,
} from "./model";

/** An operation's parameter. One that is undefined is left out. */
export type OperationArguments = Record<string, Xml | undefined>;

/** XML that is written already; everything else is text. */
export class Xml {
    readonly text: string;

    constructor(text: string) {
        this.text = text;
    }
}

const forbidden = /[\u0000-\u0008\u000B\u000C\u000E-\u001F\uFFFE\uFFFF]|\p{Surrogate}/u;

const escapes: Record<string, string> = {
    "<": "&lt;",
    ">": "&gt;",
    "&": "&amp;",
    '"': "&quot;",
    "\r": "&#13;",
    "\n": "&#10;",
    "\t": "&#9;",
};

function requireText(text: string): void {
    if (forbidden.test(text)) throw new Error("the text has a character that XML cannot carry");
}

export function escapedText(text: string): string {
    requireText(text);
    return text.replace(/[<>&\r]/g, (character) => escapes[character] ?? "");
}

export function escapedAttribute(text: string): string {
    requireText(text);
    return text.replace(/[<>&"\r\n\t]/g, (character) => escapes[character] ?? "");
}

function valueText(value: CimScalar): string {
    if (isInstance(value)) return instanceXml(value).text;
    if (typeof value === "boolean") return value ? "TRUE" : "FALSE";
    return String(value);
}

function valueXml(value: CimScalar): string {
    if (isObjectPath(value)) return `<VALUE.REFERENCE>${pathXml(value)}</VALUE.REFERENCE>`;
    return `<VALUE>${escapedText(valueText(value))}</VALUE>`;
}

/** The element of a value; nothing for NULL. */
function anyValueXml(value: CimValue, type: CimType): string {
    if (value === null) return "";
    if (!Array.isArray(value)) return valueXml(value);
    const tag = type === "reference" ? "VALUE.REFARRAY" : "VALUE.ARRAY";
    const items = value.map((item) => (item === null ? "<VALUE.NULL/>" : valueXml(item)));
    return `<${tag}>${items.join("")}</${tag}>`;
}

function embeddedAttribute(value: CimValue, embedded?: "object" | "instance"): string {
    const first = Array.isArray(value) ? value.find((item) => item !== null) : value;
    const kind = embedded ?? (isInstance(first) ? "instance" : undefined);
    return kind ? ` EmbeddedObject="${kind}"` : "";
}

function propertyXml(property: Property): string {
    const name = `NAME="${escapedAttribute(property.name)}"`;
    const value = anyValueXml(property.value, property.type);
    if (property.type === "reference") {
        const target = property.referenceClass;
        const of = target ? ` REFERENCECLASS="${escapedAttribute(target)}"` : "";
        return `<PROPERTY.REFERENCE ${name}${of}>${value}</PROPERTY.REFERENCE>`;
    }
    const tag = property.isArray ? "PROPERTY.ARRAY" : "PROPERTY";
    const embedded = embeddedAttribute(property.value, property.embedded);
    return `<${tag} ${name} TYPE="${property.type}"${embedded}>${value}</${tag}>`;
}

export function instanceXml(instance: Instance): Xml {
    const properties = instance.properties.map(propertyXml).join("");
    const name = escapedAttribute(instance.className);
    return new Xml(`<INSTANCE CLASSNAME="${name}">${properties}</INSTANCE>`);
}

function keyXml({ name, value }: KeyBinding): string {
    const inside = isObjectPath(value)
        ? `<VALUE.REFERENCE>${pathXml(value)}</VALUE.REFERENCE>`
        : `<KEYVALUE VALUETYPE="${keyKind(value)}">${escapedText(valueText(value))}</KEYVALUE>`;
    return `<KEYBINDING NAME="${escapedAttribute(name)}">${inside}</KEYBINDING>`;
}

function keyKind(value: CimScalar): "boolean" | "numeric" | "string" {
    if (typeof value === "boolean") return "boolean";
    return typeof value === "number" || typeof value === "bigint" ? "numeric" : "string";
}

export function classNameXml(name: string): Xml {
    return new Xml(`<CLASSNAME NAME="${escapedAttribute(name)}"/>`);
}

/** A path without its namespace: that of the request is meant. */
export function instanceNameXml(path: ObjectPath): Xml {
    const keys = path.keys.map(keyXml).join("");
    return new Xml(
        `<INSTANCENAME CLASSNAME="${escapedAttribute(path.className)}">${keys}</INSTANCENAME>`,
    );
}

/** An instance's name, or the class's where there are no keys. */
export function objectNameXml(path: ObjectPath): Xml {
    return path.keys.length ? instanceNameXml(path) : classNameXml(path.className);
}

function namespaceXml(namespace: string): string {
    const parts = namespace.split("/").filter((part) => part !== "");
    const names = parts.map((part) => `<NAMESPACE NAME="${escapedAttribute(part)}"/>`);
    return `<LOCALNAMESPACEPATH>${names.join("")}</LOCALNAMESPACEPATH>`;
}

function pathXml(path: ObjectPath): string {
    const name = objectNameXml(path).text;
    if (!path.namespace) return name;
    const kind = path.keys.length ? "INSTANCEPATH" : "CLASSPATH";
    const local = namespaceXml(path.namespace);
    if (!path.host) return `<LOCAL${kind}>${local}${name}</LOCAL${kind}>`;
    const host = `<HOST>${escapedText(path.host)}</HOST>`;
    return `<${kind}><NAMESPACEPATH>${host}${local}</NAMESPACEPATH>${name}</${kind}>`;
}

export function booleanXml(value: boolean): Xml {
    return new Xml(valueXml(value));
}

export function textXml(value: string | undefined): Xml | undefined {
    return value === undefined ? undefined : new Xml(valueXml(value));
}

export function textsXml(values: readonly string[] | undefined): Xml | undefined {
    return values && new Xml(anyValueXml([...values], "string"));
}

export function optionalClassXml(name: string | undefined): Xml | undefined {
    return name ? classNameXml(name) : undefined;
}

export function namedInstanceXml(path: ObjectPath, instance: Instance): Xml {
    const name = instanceNameXml(path).text;
    return new Xml(
        `<VALUE.NAMEDINSTANCE>${name}${instanceXml(instance).text}</VALUE.NAMEDINSTANCE>`,
    );
}

function messageXml(id: number, call: string): string {
    return (
        '<?xml version="1.0" encoding="utf-8"?>\n<CIM CIMVERSION="2.0" DTDVERSION="2.0">' +
        `<MESSAGE ID="${id}" PROTOCOLVERSION="1.0"><SIMPLEREQ>${call}</SIMPLEREQ></MESSAGE></CIM>`
    );
}

/** The body of an intrinsic operation. */
export function operationXml(
    id: number,
    operation: string,
    namespace: string,
    parameters: OperationArguments,
): string {
    const values = Object.entries(parameters).map(([name, value]) =>
        value ? `<IPARAMVALUE NAME="${name}">${value.text}</IPARAMVALUE>` : "",
    );
    const inside = namespaceXml(namespace) + values.join("");
    return messageXml(id, `<IMETHODCALL NAME="${operation}">${inside}</IMETHODCALL>`);
}

/** The body of a call of a class's own method. */
export function methodXml(
    id: number,
    method: string,
    path: ObjectPath & { namespace: string },
    parameters: readonly Argument[],
): string {
    const target = pathXml({
        namespace: path.namespace,
        className: path.className,
        keys: path.keys,
    });
    const values = parameters.map(
        ({ name, type, value }) =>
            `<PARAMVALUE NAME="${escapedAttribute(name)}" PARAMTYPE="${type}"` +
            `${embeddedAttribute(value)}>${anyValueXml(value, type)}</PARAMVALUE>`,
    );
    const call = `NAME="${escapedAttribute(method)}">${target}${values.join("")}`;
    return messageXml(id, `<METHODCALL ${call}</METHODCALL>`);
}
