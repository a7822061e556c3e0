/** Reads the reply to one CIM operation as it arrives. */

import {
    CimXmlError,
    ElementBuilder,
    classOf,
    instanceOf,
    isPathElement,
    pathOf,
    qualifierOf,
    typedValueIn,
    typeOf,
    type XmlElement,
} from "./elements";
import { CimError } from "./errors";
import type { CimType, CimValue, Class, Instance, ObjectPath, Qualifier } from "./model";
import { nameKey } from "./names";
import { XmlError, XmlReader, type XmlHandler } from "./xmlReader";

/** One thing that an operation answers. */
export type Item =
    | { kind: "class"; class: Class }
    | { kind: "instance"; instance: Instance }
    | { kind: "path"; path: ObjectPath }
    | { kind: "qualifier"; qualifier: Qualifier }
    | { kind: "value"; value: CimValue }
    | { kind: "parameter"; name: string; value: CimValue }
    | { kind: "returnValue"; value: CimValue };

/** The types that a method declares, for servers that leave them out of their replies. */
export interface DeclaredTypes {
    returnValue?: CimType;
    parameters: Map<string, CimType>; // by nameKey
}

const standardTexts: Record<number, string> = {
    1: "the operation failed",
    2: "access is denied",
    3: "the namespace does not exist",
    4: "a parameter is invalid",
    5: "the class does not exist",
    6: "the object does not exist",
    7: "the operation is not supported",
    8: "the class has subclasses",
    9: "the class has instances",
    10: "the superclass does not exist",
    11: "the object exists already",
    12: "the property does not exist",
    13: "the value has another type than the property",
    14: "the query language is not supported",
    15: "the query is not valid",
    16: "the method is not available",
    17: "the method does not exist",
    20: "the namespace is not empty",
    27: "the server's limits are exceeded",
    28: "the server is shutting down",
    29: "the query uses what is not supported",
};

/** The text of a CIM status, for servers that send the number alone. */
export function statusText(code: number): string {
    return standardTexts[code] ?? `CIM status ${code}`;
}

const envelope: (readonly string[])[] = [
    ["CIM"],
    ["MESSAGE"],
    ["SIMPLERSP"],
    ["IMETHODRESPONSE", "METHODRESPONSE"],
];

/** Fed with the reply, piece by piece; what has become whole is taken by `take`. */
export class ReplyReader implements XmlHandler {
    private readonly reader = new XmlReader(this);
    private readonly builder = new ElementBuilder((element) => this.complete(element));
    private readonly declared: DeclaredTypes | undefined;
    private items: Item[] = [];
    private depth = 0;
    private isInResult = false;
    private hasResponse = false;

    constructor(declared?: DeclaredTypes) {
        this.declared = declared;
    }

    /** May throw CimError, when the reply is one; XmlError and CimXmlError, when it is no reply. */
    push(piece: string): void {
        this.reader.push(piece);
    }

    /** What has been read since the last time. */
    take(): Item[] {
        const items = this.items;
        this.items = [];
        return items;
    }

    get hasItems(): boolean {
        return this.items.length > 0;
    }

    end(): void {
        try {
            this.reader.end();
        } catch (error) {
            if (error instanceof XmlError) {
                throw new CimXmlError(
                    "the reply was cut short: the server failed, or its link did",
                );
            }
            throw error;
        }
        if (!this.hasResponse) throw new CimXmlError("the reply has no response in it");
    }

    open(name: string, attributes: Map<string, string>): void {
        if (!this.builder.isIdle) {
            this.builder.open(name, attributes);
        } else if (this.depth < envelope.length) {
            this.openEnvelope(name);
        } else if (name === "IRETURNVALUE" && this.depth === envelope.length) {
            this.isInResult = true;
            this.depth += 1;
        } else {
            this.builder.open(name, attributes);
        }
    }

    text(text: string): void {
        if (!this.builder.isIdle) this.builder.text(text);
    }

    close(): void {
        if (!this.builder.isIdle) {
            this.builder.close();
            return;
        }
        this.depth -= 1;
        if (this.depth === envelope.length) this.isInResult = false;
    }

    private openEnvelope(name: string): void {
        const expected = envelope[this.depth] ?? [];
        if (!expected.includes(name)) {
            throw new CimXmlError(`the reply has <${name}> where <${expected[0]}> is expected`);
        }
        this.depth += 1;
        if (this.depth === envelope.length) this.hasResponse = true;
    }

    private complete(element: XmlElement): void {
        if (this.isInResult) {
            this.items.push(resultOf(element));
            return;
        }
        switch (element.name) {
            case "ERROR":
                throw errorOf(element);
            case "RETURNVALUE":
                this.items.push({
                    kind: "returnValue",
                    value: typedValueIn(element, this.declared?.returnValue),
                });
                return;
            case "PARAMVALUE":
            case "IPARAMVALUE": {
                const name = element.attributes.get("NAME") ?? "";
                const type = this.declared?.parameters.get(nameKey(name));
                this.items.push({ kind: "parameter", name, value: typedValueIn(element, type) });
                return;
            }
            default:
                throw new CimXmlError(`the response has a <${element.name}> in it`);
        }
    }
}

function errorOf(element: XmlElement): CimError {
    const code = Number(element.attributes.get("CODE")?.trim() || NaN);
    if (!Number.isInteger(code)) throw new CimXmlError("<ERROR> has no CODE");
    return new CimError(code, element.attributes.get("DESCRIPTION") || statusText(code));
}

function resultOf(element: XmlElement): Item {
    if (isPathElement(element)) return { kind: "path", path: pathOf(element) };
    switch (element.name) {
        case "CLASS":
            return { kind: "class", class: classOf(element) };
        case "INSTANCE":
            return { kind: "instance", instance: instanceOf(element) };
        case "QUALIFIER.DECLARATION":
            return { kind: "qualifier", qualifier: qualifierOf(element) };
        case "VALUE":
        case "VALUE.ARRAY":
        case "VALUE.REFERENCE":
            return { kind: "value", value: bareValue(element) };
        case "VALUE.OBJECT":
        case "VALUE.NAMEDOBJECT":
        case "VALUE.NAMEDINSTANCE":
        case "VALUE.INSTANCEWITHPATH":
        case "VALUE.OBJECTWITHPATH":
        case "VALUE.OBJECTWITHLOCALPATH":
            return pathedObject(element);
        default:
            throw new CimXmlError(`the result has a <${element.name}> in it`);
    }
}

/** A value that stands alone, as GetProperty answers it. */
function bareValue(element: XmlElement): CimValue {
    const type = typeOf(element.attributes.get("TYPE"));
    return typedValueIn({ ...element, attributes: new Map(), children: [element] }, type);
}

function pathedObject(element: XmlElement): Item {
    const path = element.children.find(isPathElement);
    const definition = element.children.find(({ name }) => name === "CLASS");
    if (definition) return { kind: "class", class: classOf(definition) };
    const inside = element.children.find(({ name }) => name === "INSTANCE");
    if (!inside) throw new CimXmlError(`<${element.name}> has no <INSTANCE>`);
    const instance = instanceOf(inside);
    if (path) instance.path = pathOf(path);
    return { kind: "instance", instance };
}
