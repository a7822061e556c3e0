import { CimXmlError } from "./elements";
import { CimError } from "./errors";
import {
    type Argument,
    type CimValue,
    type Class,
    type Instance,
    type Method,
    type ObjectPath,
} from "./model";
import { equalNames, nameKey, pathText } from "./names";
import type { DeclaredTypes, Item } from "./replyReader";
import {
    booleanXml,
    classNameXml,
    instanceNameXml,
    instanceXml,
    methodXml,
    namedInstanceXml,
    objectNameXml,
    operationXml,
    optionalClassXml,
    textXml,
    textsXml,
    type OperationArguments,
} from "./requestWriter";
import { pauseForOthers, send, type Surroundings } from "./transport";

export { CimError, HttpError } from "./errors";

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

export interface ClientOptions extends Partial<Surroundings> {
    url?: string;
}

/** CIM status codes that the client itself has a use for. */
const invalidNamespace = 3;

const interopNamespaces = ["interop", "root/interop", "root/PG_InterOp"];
const wellKnownNamespaces = ["root", "root/cimv2", ...interopNamespaces];

/** A WBEM client by fetch. Every call may throw CimError, HttpError, CimXmlError and what fetch throws. */
export class CimClient {
    private readonly url: string;
    private readonly surroundings: Surroundings;
    private lastMessage = 0;

    constructor(options: ClientOptions = {}) {
        this.url = options.url ?? "/cimom";
        this.surroundings = {
            fetch: options.fetch ?? ((input, init) => fetch(input, init)),
            now: options.now ?? (() => performance.now()),
            pause: options.pause ?? pauseForOthers,
        };
    }

    /** The namespaces that the server tells of, or else those of the usual ones that it has. */
    async namespaces(options: CallOptions = {}): Promise<string[]> {
        const found = new NameSet();
        for (const interop of interopNamespaces) {
            const names = await this.namespacesOf(interop, options);
            if (!names) continue;
            found.add(interop, ...names);
            if (names.length > 0) return found.sorted();
        }
        await this.walk("root", found, options);
        for (const namespace of wellKnownNamespaces) {
            if (!found.has(namespace) && (await this.hasNamespace(namespace, options))) {
                found.add(namespace);
            }
        }
        return found.sorted();
    }

    /** All class names, or those below one; with `deep`, which is the default, at every level. */
    async classNames(namespace: string, options: ClassNamesOptions = {}): Promise<string[]> {
        const parameters = {
            ClassName: optionalClassXml(options.className),
            DeepInheritance: booleanXml(options.deep ?? true),
        };
        const items = await this.all("EnumerateClassNames", namespace, parameters, options);
        return pathsOf(items).map(({ className }) => className);
    }

    async *classes(namespace: string, options: ClassesOptions = {}): AsyncGenerator<Class> {
        const parameters = {
            ClassName: optionalClassXml(options.className),
            DeepInheritance: booleanXml(options.deep ?? true),
            LocalOnly: booleanXml(options.localOnly ?? false),
            IncludeQualifiers: booleanXml(options.includeQualifiers ?? true),
            IncludeClassOrigin: booleanXml(true),
        };
        const batches = this.operation("EnumerateClasses", namespace, parameters, options);
        for await (const items of batches) yield* classesOf(items);
    }

    async getClass(namespace: string, name: string, options: CallOptions = {}): Promise<Class> {
        const parameters = {
            ClassName: classNameXml(name),
            LocalOnly: booleanXml(false),
            IncludeQualifiers: booleanXml(true),
            IncludeClassOrigin: booleanXml(true),
        };
        const items = await this.all("GetClass", namespace, parameters, options);
        return only(classesOf(items), `class ${name}`);
    }

    /** The instances in batches, as they arrive; each has its path with the namespace. */
    async *instances(
        namespace: string,
        className: string,
        options: InstancesOptions = {},
    ): AsyncGenerator<Instance[]> {
        const parameters = {
            ClassName: classNameXml(className),
            LocalOnly: booleanXml(false),
            DeepInheritance: booleanXml(options.deep ?? true),
            IncludeQualifiers: booleanXml(false),
            PropertyList: textsXml(options.propertyList),
        };
        const batches = this.operation("EnumerateInstances", namespace, parameters, options);
        for await (const items of batches) yield instancesOf(items, namespace);
    }

    async *instanceNames(
        namespace: string,
        className: string,
        options: CallOptions = {},
    ): AsyncGenerator<ObjectPath[]> {
        const parameters = { ClassName: classNameXml(className) };
        const batches = this.operation("EnumerateInstanceNames", namespace, parameters, options);
        for await (const items of batches) yield pathsOf(items, namespace);
    }

    async getInstance(path: ObjectPath, options: InstancesOptions = {}): Promise<Instance> {
        const parameters = {
            InstanceName: instanceNameXml(path),
            LocalOnly: booleanXml(false),
            IncludeQualifiers: booleanXml(false),
            PropertyList: textsXml(options.propertyList),
        };
        const namespace = namespaceOf(path);
        const items = await this.all("GetInstance", namespace, parameters, options);
        const instance = only(instancesOf(items, namespace), `instance of ${path.className}`);
        return { ...instance, path: instance.path ?? { ...path, className: instance.className } };
    }

    async createInstance(
        namespace: string,
        instance: Instance,
        options: CallOptions = {},
    ): Promise<ObjectPath> {
        const parameters = { NewInstance: instanceXml(instance) };
        const items = await this.all("CreateInstance", namespace, parameters, options);
        return only(pathsOf(items, namespace), "path of the new instance");
    }

    /** Changes the properties of `instance` that the list names, or all. */
    async modifyInstance(
        instance: Instance,
        propertyList?: readonly string[],
        options: CallOptions = {},
    ): Promise<void> {
        if (!instance.path) throw new Error("an instance without a path cannot be changed");
        const { path } = instance;
        const parameters = {
            ModifiedInstance: namedInstanceXml(path, instance),
            PropertyList: textsXml(propertyList),
        };
        await this.all("ModifyInstance", namespaceOf(path), parameters, options);
    }

    async deleteInstance(path: ObjectPath, options: CallOptions = {}): Promise<void> {
        const parameters = { InstanceName: instanceNameXml(path) };
        await this.all("DeleteInstance", namespaceOf(path), parameters, options);
    }

    async associators(path: ObjectPath, options: AssociationOptions = {}): Promise<Instance[]> {
        const items = await this.associated("Associators", path, options);
        return instancesOf(items, namespaceOf(path));
    }

    async associatorNames(
        path: ObjectPath,
        options: AssociationOptions = {},
    ): Promise<ObjectPath[]> {
        const items = await this.associated("AssociatorNames", path, options);
        return pathsOf(items, namespaceOf(path));
    }

    async references(path: ObjectPath, options: AssociationOptions = {}): Promise<Instance[]> {
        const items = await this.associated("References", path, options);
        return instancesOf(items, namespaceOf(path));
    }

    async referenceNames(
        path: ObjectPath,
        options: AssociationOptions = {},
    ): Promise<ObjectPath[]> {
        const items = await this.associated("ReferenceNames", path, options);
        return pathsOf(items, namespaceOf(path));
    }

    /** Static methods have a path without keys. `args` are the input parameters that are not NULL. */
    async invokeMethod(
        path: ObjectPath,
        method: Method | string,
        args: readonly Argument[],
        options: CallOptions = {},
    ): Promise<{ returnValue: CimValue; out: Record<string, CimValue> }> {
        const namespace = namespaceOf(path);
        const name = typeof method === "string" ? method : method.name;
        const request = {
            method: name,
            object: methodObject({ ...path, namespace }),
            body: methodXml(++this.lastMessage, name, { ...path, namespace }, args),
            ...(typeof method === "string" ? {} : { declared: declaredTypes(method) }),
            ...signalOf(options),
        };
        let returnValue: CimValue = null;
        // Names come from the server: none of them may be one that every object has.
        const out = Object.create(null) as Record<string, CimValue>;
        for await (const items of send(this.url, request, this.surroundings)) {
            for (const item of items) {
                if (item.kind === "returnValue") returnValue = item.value;
                if (item.kind === "parameter") out[item.name] = item.value;
            }
        }
        return { returnValue, out };
    }

    private operation(
        method: string,
        namespace: string,
        parameters: OperationArguments,
        options: CallOptions,
    ): AsyncGenerator<Item[], void, void> {
        const body = operationXml(++this.lastMessage, method, namespace, parameters);
        const request = { method, object: namespace, body, ...signalOf(options) };
        return send(this.url, request, this.surroundings);
    }

    private async all(
        method: string,
        namespace: string,
        parameters: OperationArguments,
        options: CallOptions,
    ): Promise<Item[]> {
        const all: Item[] = [];
        for await (const items of this.operation(method, namespace, parameters, options)) {
            for (const item of items) all.push(item);
        }
        return all;
    }

    private associated(
        method: "Associators" | "AssociatorNames" | "References" | "ReferenceNames",
        path: ObjectPath,
        options: AssociationOptions,
    ): Promise<Item[]> {
        const isReference = method.startsWith("Reference");
        const parameters: OperationArguments = {
            ObjectName: objectNameXml(path),
            AssocClass: isReference ? undefined : optionalClassXml(options.assocClass),
            ResultClass: optionalClassXml(options.resultClass),
            Role: textXml(options.role),
            ResultRole: isReference ? undefined : textXml(options.resultRole),
        };
        return this.all(method, namespaceOf(path), parameters, options);
    }

    /** What CIM_Namespace tells in an interop namespace; undefined when there is no such namespace. */
    private async namespacesOf(
        interop: string,
        options: CallOptions,
    ): Promise<string[] | undefined> {
        try {
            return await this.keysOfAll(interop, "CIM_Namespace", options);
        } catch (error) {
            if (!(error instanceof CimError)) throw error;
            return error.code === invalidNamespace ? undefined : [];
        }
    }

    /** Namespaces by __Namespace, whose instances are named seen from their own. */
    private async walk(namespace: string, found: NameSet, options: CallOptions): Promise<void> {
        try {
            const names = await this.keysOfAll(namespace, "__Namespace", options);
            found.add(namespace);
            for (const name of names) {
                const below = `${namespace}/${name}`;
                if (!found.has(below)) await this.walk(below, found, options);
            }
        } catch (error) {
            if (!(error instanceof CimError)) throw error;
        }
    }

    /** The values of the key Name of all instances of a class. */
    private async keysOfAll(
        namespace: string,
        className: string,
        options: CallOptions,
    ): Promise<string[]> {
        const names: string[] = [];
        for await (const paths of this.instanceNames(namespace, className, options)) {
            for (const { keys } of paths) {
                const name = keys.find((key) => equalNames(key.name, "Name"))?.value;
                if (typeof name === "string" && name !== "") names.push(name);
            }
        }
        return names;
    }

    private async hasNamespace(namespace: string, options: CallOptions): Promise<boolean> {
        try {
            await this.classNames(namespace, { ...options, deep: false });
            return true;
        } catch (error) {
            if (!(error instanceof CimError)) throw error;
            return error.code !== invalidNamespace;
        }
    }
}

/** Names without regard to case, as they were first seen. */
class NameSet {
    private readonly names = new Map<string, string>();

    add(...names: string[]): void {
        for (const name of names) {
            const key = nameKey(name);
            if (!this.names.has(key)) this.names.set(key, name);
        }
    }

    has(name: string): boolean {
        return this.names.has(nameKey(name));
    }

    sorted(): string[] {
        return [...this.names.values()].sort((left, right) => left.localeCompare(right));
    }
}

function signalOf({ signal }: CallOptions): { signal?: AbortSignal } {
    return signal ? { signal } : {};
}

function namespaceOf(path: ObjectPath): string {
    if (!path.namespace) throw new Error(`the path of ${path.className} has no namespace`);
    return path.namespace;
}

function declaredTypes(method: Method): DeclaredTypes {
    const parameters = method.parameters.map(({ name, type }) => [nameKey(name), type] as const);
    return { returnValue: method.type, parameters: new Map(parameters) };
}

/** The CIMObject header of a method call: DSP0200 writes keys as they are written in paths. */
function methodObject(path: ObjectPath & { namespace: string }): string {
    return pathText({ namespace: path.namespace, className: path.className, keys: path.keys });
}

function classesOf(items: readonly Item[]): Class[] {
    return items.flatMap((item) => (item.kind === "class" ? [item.class] : []));
}

function pathsOf(items: readonly Item[], namespace?: string): ObjectPath[] {
    return items.flatMap((item) => (item.kind === "path" ? [placed(item.path, namespace)] : []));
}

function instancesOf(items: readonly Item[], namespace: string): Instance[] {
    return items.flatMap((item) => {
        if (item.kind !== "instance") return [];
        const { instance } = item;
        return [instance.path ? { ...instance, path: placed(instance.path, namespace) } : instance];
    });
}

/** A path with a namespace: the request's, where it says none. */
function placed(path: ObjectPath, namespace: string | undefined): ObjectPath {
    return path.namespace || !namespace ? path : { ...path, namespace };
}

function only<T>(found: readonly T[], what: string): T {
    const [first] = found;
    if (first === undefined) throw new CimXmlError(`the reply has no ${what}`);
    return first;
}
