/** What CIM is made of, as values: classes, instances, paths. */

export type CimType =
    | "boolean"
    | "string"
    | "char16"
    | "uint8"
    | "uint16"
    | "uint32"
    | "uint64"
    | "sint8"
    | "sint16"
    | "sint32"
    | "sint64"
    | "real32"
    | "real64"
    | "datetime"
    | "reference";

/** 64-bit integers are bigint, other numbers number; a datetime stays its 25 characters. */
export type CimScalar = boolean | number | bigint | string | ObjectPath | Instance;
export type CimValue = CimScalar | null | (CimScalar | null)[];

export interface Qualifier {
    name: string;
    type: CimType;
    value: CimValue;
}

export interface Element {
    name: string;
    qualifiers: Qualifier[];
}

export interface Property extends Element {
    type: CimType;
    isArray: boolean;
    referenceClass?: string;
    embedded?: "object" | "instance";
    value: CimValue;
    classOrigin?: string;
    propagated: boolean;
}

export interface Parameter extends Element {
    type: CimType;
    isArray: boolean;
    referenceClass?: string;
}

export interface Method extends Element {
    type: CimType;
    parameters: Parameter[];
    classOrigin?: string;
    propagated: boolean;
}

export interface Class {
    name: string;
    superClass?: string;
    qualifiers: Qualifier[];
    properties: Property[];
    methods: Method[];
}

export interface KeyBinding {
    name: string;
    /** Absent where the server does not say it: the class does. */
    type?: CimType;
    value: CimScalar;
}

/** A path without keys names a class, or the one instance of a class without keys. */
export interface ObjectPath {
    host?: string;
    namespace?: string;
    className: string;
    keys: KeyBinding[];
}

export interface Instance {
    className: string;
    path?: ObjectPath;
    properties: Property[];
}

/** An argument of a method, and a parameter that comes back. */
export interface Argument {
    name: string;
    type: CimType;
    isArray: boolean;
    value: CimValue;
}

export function isObjectPath(value: unknown): value is ObjectPath {
    return typeof value === "object" && value !== null && Object.hasOwn(value, "keys");
}

export function isInstance(value: unknown): value is Instance {
    return typeof value === "object" && value !== null && Object.hasOwn(value, "properties");
}
