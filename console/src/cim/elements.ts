/** The elements of CIM-XML (DSP0201) as values of the model. */

import type {
    CimScalar,
    CimType,
    CimValue,
    Class,
    Instance,
    KeyBinding,
    Method,
    ObjectPath,
    Parameter,
    Property,
    Qualifier,
} from "./model";
import { XmlError, XmlReader, type XmlHandler } from "./xmlReader";

/** An element with all that is in it. Text is kept where CIM-XML has text. */
export interface XmlElement {
    name: string;
    attributes: Map<string, string>;
    children: XmlElement[];
    text: string;
}

/** XML that is well-formed and yet not what CIM-XML says. */
export class CimXmlError extends Error {
    constructor(message: string) {
        super(message);
        this.name = "CimXmlError";
    }
}

const textElements = new Set(["VALUE", "KEYVALUE", "HOST"]);

/** Puts elements together; gives each that ends where no other is open to `complete`. */
export class ElementBuilder implements XmlHandler {
    private readonly openElements: XmlElement[] = [];
    private readonly complete: (element: XmlElement) => void;

    constructor(complete: (element: XmlElement) => void) {
        this.complete = complete;
    }

    get isIdle(): boolean {
        return this.openElements.length === 0;
    }

    open(name: string, attributes: Map<string, string>): void {
        const element = { name, attributes, children: [], text: "" };
        this.openElements.at(-1)?.children.push(element);
        this.openElements.push(element);
    }

    text(text: string): void {
        const element = this.openElements.at(-1);
        if (element && textElements.has(element.name)) element.text += text;
    }

    close(): void {
        const element = this.openElements.pop();
        if (element && this.isIdle) this.complete(element);
    }
}

/** The one element of a text. */
export function parseElement(text: string): XmlElement {
    let root: XmlElement | undefined;
    const reader = new XmlReader(new ElementBuilder((element) => (root = element)));
    reader.push(text);
    reader.end();
    return root as unknown as XmlElement;
}

const types = new Set<string>([
    "boolean",
    "string",
    "char16",
    "uint8",
    "uint16",
    "uint32",
    "uint64",
    "sint8",
    "sint16",
    "sint32",
    "sint64",
    "real32",
    "real64",
    "datetime",
    "reference",
]);

const maximumEmbedding = 16;

/** The type of an attribute, in whatever case; undefined when it is missing or none of CIM's. */
export function typeOf(text: string | undefined): CimType | undefined {
    const type = text?.trim().toLowerCase();
    return type !== undefined && types.has(type) ? (type as CimType) : undefined;
}

function required(element: XmlElement, attribute: string): string {
    const value = element.attributes.get(attribute);
    if (value === undefined) throw new CimXmlError(`<${element.name}> has no ${attribute}`);
    return value;
}

function childOf(element: XmlElement, ...names: string[]): XmlElement | undefined {
    return element.children.find((child) => names.includes(child.name));
}

function requiredChild(element: XmlElement, ...names: string[]): XmlElement {
    const child = childOf(element, ...names);
    if (!child) throw new CimXmlError(`<${element.name}> has no <${names[0]}>`);
    return child;
}

function isTrue(text: string | undefined): boolean {
    return text?.trim().toLowerCase() === "true";
}

/** The value that a text stands for. Blanks around all but strings are passed over. */
export function scalarOf(text: string, type: CimType): CimScalar {
    switch (type) {
        case "boolean":
            return booleanOf(text);
        case "uint64":
        case "sint64":
            return integerOf(text, type);
        case "uint8":
        case "uint16":
        case "uint32":
        case "sint8":
        case "sint16":
        case "sint32":
            return Number(integerOf(text, type));
        case "real32":
        case "real64":
            return realOf(text, type);
        case "datetime":
            return text.trim();
        default:
            return text;
    }
}

function refuseValue(text: string, type: string): never {
    throw new CimXmlError(`'${text.trim().slice(0, 40)}' is no ${type}`);
}

function booleanOf(text: string): boolean {
    const word = text.trim().toLowerCase();
    if (word !== "true" && word !== "false") refuseValue(text, "boolean");
    return word === "true";
}

function integerOf(text: string, type: string): bigint {
    const match = /^([+-]?)(\d{1,39}|0[xX][0-9A-Fa-f]{1,32})$/.exec(text.trim());
    if (!match) refuseValue(text, type);
    const magnitude = BigInt(match[2] ?? "");
    return match[1] === "-" ? -magnitude : magnitude;
}

function realOf(text: string, type: string): number {
    const word = text.trim();
    if (/^[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?$/.test(word)) return Number(word);
    const special = /^([+-]?)(inf|infinity|nan)$/i.exec(word);
    if (!special) refuseValue(text, type);
    if (/^nan$/i.test(special[2] ?? "")) return NaN;
    return special[1] === "-" ? -Infinity : Infinity;
}

interface Form {
    type: CimType;
    isEmbedded: boolean;
    depth: number;
}

function formOf(element: XmlElement, type: CimType | undefined, depth: number): Form {
    return { type: type ?? "string", isEmbedded: embeddedOf(element) !== undefined, depth };
}

/** DSP0201 writes EmbeddedObject; servers write it in other cases, too. */
function embeddedOf(element: XmlElement): "object" | "instance" | undefined {
    for (const [name, value] of element.attributes) {
        if (name.toLowerCase() !== "embeddedobject") continue;
        return value.trim().toLowerCase() === "instance" ? "instance" : "object";
    }
    return undefined;
}

/** The value among the children of an element; NULL when there is none. */
function valueIn(element: XmlElement, form: Form): CimValue {
    for (const child of element.children) {
        switch (child.name) {
            case "VALUE":
                return valueOf(child, form);
            case "VALUE.ARRAY":
            case "VALUE.REFARRAY":
                return arrayOf(child, form);
            case "VALUE.REFERENCE":
                return referenceOf(child);
            case "VALUE.NULL":
                return null;
        }
    }
    return null;
}

function arrayOf(element: XmlElement, form: Form): (CimScalar | null)[] {
    return element.children.map((child) => {
        switch (child.name) {
            case "VALUE":
                return valueOf(child, form);
            case "VALUE.REFERENCE":
                return referenceOf(child);
            case "VALUE.NULL":
                return null;
            default:
                throw new CimXmlError(`<${element.name}> has a <${child.name}> in it`);
        }
    });
}

function valueOf(element: XmlElement, form: Form): CimScalar {
    const inside = childOf(element, "INSTANCE", "CLASS");
    if (inside) return embeddedIn(inside, form.depth);
    if (!form.isEmbedded) return scalarOf(element.text, form.type);
    return embeddedText(element.text, form.depth);
}

function embeddedText(text: string, depth: number): CimScalar {
    if (depth >= maximumEmbedding) throw new CimXmlError("instances are embedded too deeply");
    if (text.trim() === "") return "";
    return embeddedIn(parseElement(text.trim()), depth);
}

function embeddedIn(element: XmlElement, depth: number): Instance {
    if (depth >= maximumEmbedding) throw new CimXmlError("instances are embedded too deeply");
    if (element.name === "CLASS") {
        const { name, properties } = classOf(element);
        return { className: name, properties };
    }
    return instanceOf(element, depth + 1);
}

/** The instance that a text of CIM-XML is, or undefined when it is none. */
export function instanceOfText(text: string): Instance | undefined {
    try {
        return instanceOf(parseElement(text.trim()));
    } catch (error) {
        if (error instanceof XmlError || error instanceof CimXmlError) return undefined;
        throw error;
    }
}

export function instanceOf(element: XmlElement, depth = 0): Instance {
    if (element.name !== "INSTANCE") throw new CimXmlError(`<${element.name}> is no instance`);
    return {
        className: required(element, "CLASSNAME"),
        properties: propertiesIn(element, depth),
    };
}

function propertiesIn(element: XmlElement, depth: number): Property[] {
    return element.children
        .filter(({ name }) => name.startsWith("PROPERTY"))
        .map((child) => propertyOf(child, depth));
}

function propertyOf(element: XmlElement, depth: number): Property {
    const isReference = element.name === "PROPERTY.REFERENCE";
    const type = isReference ? "reference" : (typeOf(element.attributes.get("TYPE")) ?? "string");
    const property: Property = {
        name: required(element, "NAME"),
        type,
        isArray: element.name === "PROPERTY.ARRAY",
        qualifiers: qualifiersIn(element),
        value: valueIn(element, formOf(element, type, depth)),
        propagated: isTrue(element.attributes.get("PROPAGATED")),
    };
    if (Array.isArray(property.value)) property.isArray = true;
    const embedded = embeddedOf(element);
    const referenceClass = element.attributes.get("REFERENCECLASS");
    const classOrigin = element.attributes.get("CLASSORIGIN");
    if (embedded) property.embedded = embedded;
    if (referenceClass !== undefined) property.referenceClass = referenceClass;
    if (classOrigin !== undefined) property.classOrigin = classOrigin;
    return property;
}

function qualifiersIn(element: XmlElement): Qualifier[] {
    return element.children.filter(({ name }) => name === "QUALIFIER").map(qualifierOf);
}

/** A QUALIFIER or a QUALIFIER.DECLARATION. Without a value a boolean one is TRUE. */
export function qualifierOf(element: XmlElement): Qualifier {
    const type = typeOf(element.attributes.get("TYPE")) ?? "string";
    const value = valueIn(element, formOf(element, type, 0));
    const isBare = value === null && type === "boolean" && element.name === "QUALIFIER";
    return { name: required(element, "NAME"), type, value: isBare ? true : value };
}

export function classOf(element: XmlElement): Class {
    const result: Class = {
        name: required(element, "NAME"),
        qualifiers: qualifiersIn(element),
        properties: propertiesIn(element, 0),
        methods: element.children.filter(({ name }) => name === "METHOD").map(methodOf),
    };
    const superClass = element.attributes.get("SUPERCLASS");
    if (superClass) result.superClass = superClass;
    return result;
}

function methodOf(element: XmlElement): Method {
    const method: Method = {
        name: required(element, "NAME"),
        type: typeOf(element.attributes.get("TYPE")) ?? "uint32",
        qualifiers: qualifiersIn(element),
        parameters: element.children
            .filter(({ name }) => name.startsWith("PARAMETER"))
            .map(parameterOf),
        propagated: isTrue(element.attributes.get("PROPAGATED")),
    };
    const classOrigin = element.attributes.get("CLASSORIGIN");
    if (classOrigin !== undefined) method.classOrigin = classOrigin;
    return method;
}

function parameterOf(element: XmlElement): Parameter {
    const isReference = element.name.includes("REF");
    const parameter: Parameter = {
        name: required(element, "NAME"),
        type: isReference ? "reference" : (typeOf(element.attributes.get("TYPE")) ?? "string"),
        isArray: element.name.endsWith("ARRAY"),
        qualifiers: qualifiersIn(element),
    };
    const referenceClass = element.attributes.get("REFERENCECLASS");
    if (referenceClass !== undefined) parameter.referenceClass = referenceClass;
    return parameter;
}

/** What a RETURNVALUE or PARAMVALUE holds, of the type that it says or else of the declared one. */
export function typedValueIn(element: XmlElement, declared?: CimType): CimValue {
    const said = element.attributes.get("PARAMTYPE") ?? element.attributes.get("TYPE");
    return valueIn(element, formOf(element, typeOf(said) ?? declared, 0));
}

const pathElements = [
    "INSTANCENAME",
    "INSTANCEPATH",
    "LOCALINSTANCEPATH",
    "CLASSNAME",
    "CLASSPATH",
    "LOCALCLASSPATH",
    "OBJECTPATH",
];

export function isPathElement(element: XmlElement): boolean {
    return pathElements.includes(element.name);
}

function referenceOf(element: XmlElement): ObjectPath {
    return pathOf(requiredChild(element, ...pathElements));
}

/** The path of any of the elements that are one. */
export function pathOf(element: XmlElement): ObjectPath {
    switch (element.name) {
        case "OBJECTPATH":
            return referenceOf(element);
        case "CLASSNAME":
            return { className: required(element, "NAME"), keys: [] };
        case "INSTANCENAME":
            return { className: required(element, "CLASSNAME"), keys: keysIn(element) };
        case "CLASSPATH":
        case "LOCALCLASSPATH":
            return inNamespace(element, pathOf(requiredChild(element, "CLASSNAME")));
        default:
            return inNamespace(element, pathOf(requiredChild(element, "INSTANCENAME")));
    }
}

function inNamespace(element: XmlElement, path: ObjectPath): ObjectPath {
    const full = childOf(element, "NAMESPACEPATH");
    const local = requiredChild(full ?? element, "LOCALNAMESPACEPATH");
    const namespace = local.children.map((part) => required(part, "NAME")).join("/");
    const host = full && childOf(full, "HOST")?.text.trim();
    return host ? { host, namespace, ...path } : { namespace, ...path };
}

function keysIn(element: XmlElement): KeyBinding[] {
    return element.children.map((child) => {
        if (child.name !== "KEYBINDING") return keyOf("", child); // a class with one key may do without
        const value = requiredChild(child, "KEYVALUE", "VALUE.REFERENCE");
        return keyOf(required(child, "NAME"), value);
    });
}

function keyOf(name: string, element: XmlElement): KeyBinding {
    if (element.name === "VALUE.REFERENCE") {
        return { name, type: "reference", value: referenceOf(element) };
    }
    if (element.name !== "KEYVALUE") throw new CimXmlError(`<${element.name}> is no key`);
    const type = typeOf(element.attributes.get("TYPE"));
    if (type) return { name, type, value: scalarOf(element.text, type) };
    switch (element.attributes.get("VALUETYPE")?.trim().toLowerCase()) {
        case "boolean":
            return { name, value: booleanOf(element.text) };
        case "numeric":
            return { name, value: numberOf(element.text) };
        default:
            return { name, value: element.text };
    }
}

/** A number of unknown type: an integer is exact. */
function numberOf(text: string): number | bigint {
    if (!/^\s*([+-]?\d+|[+-]?0[xX][0-9A-Fa-f]+)\s*$/.test(text)) return realOf(text, "number");
    const exact = integerOf(text, "number");
    const number = Number(exact);
    return Number.isSafeInteger(number) ? number : exact;
}
