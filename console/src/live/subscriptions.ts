/** Subscriptions to indications, made and found as any WBEM client does it. */

import { CimError, type CimClient } from "../cim/client";
import {
    isObjectPath,
    type CimType,
    type CimValue,
    type Class,
    type Instance,
    type ObjectPath,
    type Property,
} from "../cim/model";
import { equalNames, named, pathKey, propertyOf } from "../cim/names";
import { queryText } from "../cim/wql";

/** What the console makes is named so. */
const ownPrefix = "console-";

const destinationClasses = ["CIM_ListenerDestinationCIMXML", "CIM_IndicationHandlerCIMXML"];

const notFound = [5, 6]; // CIM status of a class that is not there

/** A subscription with what it brings together. */
export interface Subscription {
    path: ObjectPath;
    filter: ObjectPath | undefined;
    name: string; // the filter's
    query: string;
    namespaces: string[];
    destination: string;
    listener: string; // the destination's name
    isOwn: boolean;
    isEnabled: boolean;
}

function textOf(instance: Instance | undefined, name: string): string {
    const value = instance && propertyOf(instance, name)?.value;
    return value == null || typeof value === "object" ? "" : String(value);
}

function pathIn(instance: Instance, name: string): ObjectPath | undefined {
    const value = propertyOf(instance, name)?.value;
    return isObjectPath(value) ? value : undefined;
}

function keyText(path: ObjectPath | undefined, name: string): string {
    const value = path?.keys.find((key) => equalNames(key.name, name))?.value;
    return value === undefined || typeof value === "object" ? "" : String(value);
}

async function allOf(client: CimClient, interop: string, className: string): Promise<Instance[]> {
    const all: Instance[] = [];
    try {
        for await (const batch of client.instances(interop, className)) all.push(...batch);
    } catch (error) {
        if (!(error instanceof CimError && notFound.includes(error.code))) throw error;
    }
    return all;
}

/** A path as it is in a namespace, whether it says so or not. */
function keyIn(interop: string, path: ObjectPath): string {
    return pathKey({ ...path, namespace: path.namespace ?? interop });
}

/** All subscriptions of the server. */
export async function subscriptionsOf(client: CimClient, interop: string): Promise<Subscription[]> {
    const [subscriptions, filters, destinations] = await Promise.all([
        allOf(client, interop, "CIM_IndicationSubscription"),
        allOf(client, interop, "CIM_IndicationFilter"),
        allOf(client, interop, "CIM_ListenerDestination"),
    ]);
    const byPath = new Map<string, Instance>();
    for (const instance of [...filters, ...destinations]) {
        if (instance.path) byPath.set(keyIn(interop, instance.path), instance);
    }
    const found = (path: ObjectPath | undefined) => path && byPath.get(keyIn(interop, path));
    return subscriptions.flatMap((subscription): Subscription[] => {
        if (!subscription.path) return [];
        const filterPath = pathIn(subscription, "Filter");
        const handlerPath = pathIn(subscription, "Handler");
        const filter = found(filterPath);
        const destination = found(handlerPath);
        const name = textOf(filter, "Name") || keyText(filterPath, "Name");
        const state = textOf(subscription, "SubscriptionState");
        return [
            {
                path: subscription.path,
                filter: filterPath,
                name,
                query: textOf(filter, "Query"),
                namespaces: namespacesOf(filter),
                destination: textOf(destination, "Destination"),
                listener: textOf(destination, "Name") || keyText(handlerPath, "Name"),
                isOwn: name.startsWith(ownPrefix),
                isEnabled: state === "" || state === "2",
            },
        ];
    });
}

function namespacesOf(filter: Instance | undefined): string[] {
    const many = filter && propertyOf(filter, "SourceNamespaces")?.value;
    if (Array.isArray(many) && many.length) return many.map(String);
    const one = textOf(filter, "SourceNamespace");
    return one ? [one] : [];
}

function property(name: string, value: CimValue, type: CimType = "string"): Property {
    const isArray = Array.isArray(value);
    return { name, type, isArray, qualifiers: [], propagated: false, value };
}

/** An instance of the properties that the class has. */
function instanceFor(definition: Class, properties: Property[]): Instance {
    return {
        className: definition.name,
        properties: properties.filter(({ name }) => named(definition.properties, name)),
    };
}

async function firstClass(
    client: CimClient,
    interop: string,
    names: readonly string[],
): Promise<Class> {
    for (const name of names.slice(0, -1)) {
        try {
            return await client.getClass(interop, name);
        } catch (error) {
            if (!(error instanceof CimError && notFound.includes(error.code))) throw error;
        }
    }
    return client.getClass(interop, names.at(-1) ?? "");
}

/** The name of the system, as servers want it in the keys of what is created. */
async function systemName(client: CimClient, interop: string, otherwise: string): Promise<string> {
    try {
        const [manager] = await allOf(client, interop, "CIM_ObjectManager");
        return textOf(manager, "SystemName") || otherwise;
    } catch (error) {
        if (error instanceof CimError) return otherwise;
        throw error;
    }
}

function systemKeys(className: string, system: string, name: string): Property[] {
    return [
        property("SystemCreationClassName", "CIM_ComputerSystem"),
        property("SystemName", system),
        property("CreationClassName", className),
        property("Name", name),
    ];
}

export interface Wish {
    interop: string;
    namespace: string; // where the indications come from
    className: string;
    condition: string;
    destination: string;
    /** What tells this subscription's name from others. */
    mark: string;
    hostName: string;
}

/**
 * Makes a filter and a subscription of it to the destination, and the destination, where the console has
 * none there yet. What was made is taken back when a later step fails.
 */
export async function subscribe(client: CimClient, wish: Wish): Promise<void> {
    const { interop } = wish;
    const system = await systemName(client, interop, wish.hostName);
    const handler = await destinationFor(client, wish, system);
    const filterClass = await client.getClass(interop, "CIM_IndicationFilter");
    const filter = await client.createInstance(
        interop,
        instanceFor(filterClass, [
            ...systemKeys(filterClass.name, system, `${ownPrefix}${wish.mark}`),
            property("Query", queryText(wish.className, wish.condition)),
            property("QueryLanguage", "WQL"),
            property("SourceNamespaces", [wish.namespace]),
            property("SourceNamespace", wish.namespace),
        ]),
    );
    try {
        await client.createInstance(interop, {
            className: "CIM_IndicationSubscription",
            properties: [
                { ...property("Filter", filter, "reference"), referenceClass: filterClass.name },
                { ...property("Handler", handler, "reference"), referenceClass: handler.className },
            ],
        });
    } catch (error) {
        await client.deleteInstance(filter).catch(() => undefined);
        throw error;
    }
}

/** The console's destination: one for all that look, or an alert would come as often as they are. */
async function destinationFor(
    client: CimClient,
    { interop, destination, mark }: Wish,
    system: string,
): Promise<ObjectPath> {
    const definition = await firstClass(client, interop, destinationClasses);
    const own = (await allOf(client, interop, definition.name)).find(
        (instance) =>
            textOf(instance, "Destination") === destination &&
            textOf(instance, "Name").startsWith(ownPrefix),
    );
    if (own?.path) return own.path;
    return client.createInstance(
        interop,
        instanceFor(definition, [
            ...systemKeys(definition.name, system, `${ownPrefix}page-${mark}`),
            property("Destination", destination),
        ]),
    );
}

/** Ends a subscription; of the console's own ones the filter goes, too. */
export async function unsubscribe(client: CimClient, subscription: Subscription): Promise<void> {
    await client.deleteInstance(subscription.path);
    const { filter, isOwn, path } = subscription;
    if (!isOwn || !filter) return;
    const namespace = filter.namespace ?? path.namespace;
    await client.deleteInstance(namespace ? { ...filter, namespace } : filter);
}

/** How a listener's queue stands. */
export interface Queue {
    listener: string;
    raised: number;
    sent: number;
    dropped: number;
    waiting: number;
    retries: number;
}

const queuePattern =
    /^(.*): (\d+) raised, (\d+) sent, (\d+) dropped, (\d+) waiting; (\d+) retries$/s;

/** The queues that CIM_IndicationService tells of, and its lines that tell something else. */
export async function queuesOf(
    client: CimClient,
    interop: string,
): Promise<{ queues: Queue[]; lines: string[] }> {
    const queues: Queue[] = [];
    const lines: string[] = [];
    for (const service of await allOf(client, interop, "CIM_IndicationService")) {
        const said = propertyOf(service, "StatusDescriptions")?.value;
        for (const line of Array.isArray(said) ? said.map(String) : []) {
            const match = queuePattern.exec(line);
            if (!match) {
                lines.push(line);
                continue;
            }
            const [, listener = "", ...counts] = match;
            const [raised = 0, sent = 0, dropped = 0, waiting = 0, retries = 0] =
                counts.map(Number);
            queues.push({ listener, raised, sent, dropped, waiting, retries });
        }
    }
    return { queues, lines };
}
