import { signal } from "@preact/signals";

import { CimClient, CimError } from "../cim/client";
import type { Class, Instance } from "../cim/model";
import { equalNames, nameKey } from "../cim/names";
import { buildClassTree, type ClassTree } from "./classTree";

export const client = new CimClient();

/** The namespaces once they are known. */
export const namespaces = signal<string[] | undefined>(undefined);

/** The class trees that were loaded, by nameKey of the namespace. */
export const trees = signal<ReadonlyMap<string, ClassTree>>(new Map());

/** What is asked once and kept until it fails or is forgotten. */
class Kept<T> {
    readonly #promises = new Map<string, Promise<T>>();

    get(key: string, ask: () => Promise<T>): Promise<T> {
        const kept = this.#promises.get(key);
        if (kept) return kept;
        const asked = ask();
        this.#promises.set(key, asked);
        asked.catch(() => this.#promises.delete(key));
        return asked;
    }

    clear(): void {
        this.#promises.clear();
    }
}

const keptNamespaces = new Kept<string[]>();
const keptTrees = new Kept<ClassTree>();
const keptClasses = new Kept<Class>();

/** Asks for schema and namespaces anew: the server may have others now. */
export function forgetSchema(): void {
    keptNamespaces.clear();
    keptTrees.clear();
    keptClasses.clear();
    trees.value = new Map();
}

export function loadNamespaces(): Promise<string[]> {
    return keptNamespaces.get("", async () => {
        const names = await client.namespaces();
        names.sort((left, right) => (nameKey(left) < nameKey(right) ? -1 : 1));
        namespaces.value = names;
        return names;
    });
}

export function loadTree(namespace: string): Promise<ClassTree> {
    return keptTrees.get(nameKey(namespace), async () => {
        const classes: Class[] = [];
        const options = { deep: true, localOnly: true, includeQualifiers: false };
        for await (const one of client.classes(namespace, options)) classes.push(one);
        const tree = buildClassTree(classes);
        trees.value = new Map(trees.value).set(nameKey(namespace), tree);
        return tree;
    });
}

export function loadClass(namespace: string, name: string): Promise<Class> {
    return keptClasses.get(`${nameKey(namespace)}:${nameKey(name)}`, () =>
        client.getClass(namespace, name),
    );
}

const interopNames = ["interop", "root/interop", "root/pg_interop"];

export const isInterop = (namespace: string): boolean => interopNames.includes(nameKey(namespace));

/** The namespaces where the server's own elements are: not those about the object manager itself. */
export const elementNamespaces = (names: readonly string[]): string[] =>
    names.filter((name) => !isInterop(name) && !equalNames(name, "root/cimhost"));

/** All instances of a class and its subclasses; none where the namespace has no such class. */
export async function allInstances(
    namespace: string,
    className: string,
    signal?: AbortSignal,
): Promise<Instance[]> {
    const tree = await loadTree(namespace);
    if (!tree.byName.has(nameKey(className))) return [];
    const all: Instance[] = [];
    const options = { deep: true, ...(signal ? { signal } : {}) };
    try {
        for await (const batch of client.instances(namespace, className, options)) {
            all.push(...batch);
        }
    } catch (error) {
        // Nobody serves the class: it has no instances.
        if (!(error instanceof CimError) || error.code !== 7) throw error;
    }
    return all;
}

export interface ServedBy {
    className: string;
    provider: string;
    module: string;
    kinds: string[];
}

/** Who serves which class, as cimhost tells; undefined where the server does not tell. */
export async function loadProviders(): Promise<
    { namespace: string; served: ServedBy }[] | undefined
> {
    const names = await loadNamespaces();
    const home = names.find((name) => equalNames(name, "root/cimhost"));
    if (!home) return undefined;
    const rows = await allInstances(home, "CIMHOST_Provider");
    return rows.map((row) => {
        const text = (name: string) =>
            String(row.properties.find((one) => equalNames(one.name, name))?.value ?? "");
        const kinds = row.properties.find((one) => equalNames(one.name, "Kinds"))?.value;
        return {
            namespace: text("NameSpace"),
            served: {
                className: text("ClassName"),
                provider: text("Provider"),
                module: text("Module"),
                kinds: Array.isArray(kinds) ? kinds.map(String) : [],
            },
        };
    });
}

/** The providers of a class: those registered for it, or for the nearest ancestor that has any. */
export function providersOf(
    rows: readonly { namespace: string; served: ServedBy }[],
    namespace: string,
    lineage: readonly string[],
): ServedBy[] {
    for (const name of lineage) {
        const found = rows.filter(
            (row) => equalNames(row.namespace, namespace) && equalNames(row.served.className, name),
        );
        if (found.length) return found.map((row) => row.served);
    }
    return [];
}
