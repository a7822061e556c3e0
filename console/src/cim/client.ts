import type { Argument, Class, CimValue, Instance, Method, ObjectPath } from "./model";

/** A failure that the server told as a CIM status. */
export class CimError extends Error {
    readonly code: number;

    constructor(code: number, message: string) {
        super(message);
        this.name = "CimError";
        this.code = code;
    }
}

/** A refusal of the HTTP layer, with the server's own sentence. */
export class HttpError extends Error {
    readonly status: number;
    readonly cimError?: string;

    constructor(status: number, message: string, cimError?: string) {
        super(message);
        this.name = "HttpError";
        this.status = status;
        if (cimError !== undefined) this.cimError = cimError;
    }
}

export interface CallOptions {
    signal?: AbortSignal;
}

export interface ClassesOptions extends CallOptions {
    className?: string;
    deep?: boolean;
    localOnly?: boolean;
    includeQualifiers?: boolean;
}

export interface InstancesOptions extends CallOptions {
    deep?: boolean;
    propertyList?: readonly string[];
}

export interface AssociationOptions extends CallOptions {
    assocClass?: string;
    resultClass?: string;
    role?: string;
    resultRole?: string;
}

export interface ClassNamesOptions extends CallOptions {
    className?: string;
    deep?: boolean;
}

/** A WBEM client by fetch. Every call may throw CimError, HttpError, and what fetch throws. */
export class CimClient {
    constructor(_options: { url?: string; fetch?: typeof fetch } = {}) {}

    namespaces(_options: CallOptions = {}): Promise<string[]> {
        return todo();
    }

    /** All class names, or those below one; with `deep`, which is the default, at every level. */
    classNames(_namespace: string, _options: ClassNamesOptions = {}): Promise<string[]> {
        return todo();
    }

    classes(_namespace: string, _options: ClassesOptions = {}): AsyncIterable<Class> {
        return todoIterable();
    }

    getClass(_namespace: string, _name: string, _options: CallOptions = {}): Promise<Class> {
        return todo();
    }

    instances(_ns: string, _class: string, _o: InstancesOptions = {}): AsyncIterable<Instance[]> {
        return todoIterable();
    }

    instanceNames(_ns: string, _class: string, _o: CallOptions = {}): AsyncIterable<ObjectPath[]> {
        return todoIterable();
    }

    getInstance(_path: ObjectPath, _options: InstancesOptions = {}): Promise<Instance> {
        return todo();
    }

    createInstance(_ns: string, _instance: Instance, _o: CallOptions = {}): Promise<ObjectPath> {
        return todo();
    }

    /** Of the properties of `instance` those in the list, or all. */
    modifyInstance(
        _instance: Instance,
        _propertyList?: readonly string[],
        _o: CallOptions = {},
    ): Promise<void> {
        return todo();
    }

    deleteInstance(_path: ObjectPath, _options: CallOptions = {}): Promise<void> {
        return todo();
    }

    associators(_path: ObjectPath, _options: AssociationOptions = {}): Promise<Instance[]> {
        return todo();
    }

    associatorNames(_path: ObjectPath, _options: AssociationOptions = {}): Promise<ObjectPath[]> {
        return todo();
    }

    references(_path: ObjectPath, _options: AssociationOptions = {}): Promise<Instance[]> {
        return todo();
    }

    referenceNames(_path: ObjectPath, _options: AssociationOptions = {}): Promise<ObjectPath[]> {
        return todo();
    }

    /** Static methods have a path without keys. `args` are the input parameters that are not NULL. */
    invokeMethod(
        _path: ObjectPath,
        _method: Method | string,
        _args: readonly Argument[],
        _options: CallOptions = {},
    ): Promise<{ returnValue: CimValue; out: Record<string, CimValue> }> {
        return todo();
    }
}

async function todo(): Promise<never> {
    throw new Error("not yet");
}

async function* todoIterable(): AsyncIterable<never> {
    await todo();
}
