import { isObjectPath, type Instance, type ObjectPath } from "../../cim/model";
import { pathKey, propertyOf } from "../../cim/names";
import { statusOf, type Status } from "../../state/status";
import type { GraphEdge, GraphNode } from "../graph/layout";

/** An association that leads from one instance to another. */
export interface Link {
    id: string;
    association: string;
    associationPath?: ObjectPath;
    from: string; // pathKey
    fromRole: string;
    to: ObjectPath;
    toRole: string;
}

export interface Place {
    path: ObjectPath;
    instance?: Instance;
    /** Its links, once they were asked for. */
    links?: Link[];
}

/** What has been seen on a walk along associations, by pathKey. */
export type Walk = ReadonlyMap<string, Place>;

const atOnce = 8; // of one association in one step

export const complete = (path: ObjectPath, namespace: string | undefined): ObjectPath => {
    const { host: _, ...rest } = path;
    return rest.namespace || !namespace ? rest : { ...rest, namespace };
};

/** The links that the association instances of `centre` make, each with its other end. */
export function linksOf(centre: ObjectPath, references: readonly Instance[]): Link[] {
    const here = pathKey(centre);
    const links: Link[] = [];
    for (const [index, association] of references.entries()) {
        const ends = association.properties.flatMap(({ name, value }) =>
            isObjectPath(value) ? [{ role: name, path: complete(value, centre.namespace) }] : [],
        );
        const mine = ends.find((end) => pathKey(end.path) === here);
        for (const end of ends) {
            if (end === mine) continue;
            links.push({
                id: `${association.path ? pathKey(association.path) : `${here}#${index}`}>${end.role}`,
                association: association.className,
                ...(association.path
                    ? { associationPath: complete(association.path, centre.namespace) }
                    : {}),
                from: here,
                fromRole: mine?.role ?? "",
                to: end.path,
                toRole: end.role,
            });
        }
    }
    return links;
}

/** The walk with what was found at `centre`. */
export function walkOn(
    walk: Walk,
    centre: ObjectPath,
    references: readonly Instance[],
    associators: readonly Instance[],
): Walk {
    const after = new Map(walk);
    const links = linksOf(centre, references);
    const here = pathKey(centre);
    after.set(here, { ...(after.get(here) ?? { path: centre }), links });
    for (const { to } of links) {
        const key = pathKey(to);
        if (!after.has(key)) after.set(key, { path: to });
    }
    for (const instance of associators) {
        if (!instance.path) continue;
        const path = complete(instance.path, centre.namespace);
        const key = pathKey(path);
        after.set(key, { ...(after.get(key) ?? { path }), instance });
    }
    return after;
}

/** A short name for people: what the instance calls itself, or its most telling key. */
export function nameOf({ path, instance }: Place): string {
    for (const name of ["ElementName", "Name", "Caption", "RegisteredName"]) {
        const value = instance && propertyOf(instance, name)?.value;
        if (typeof value === "string" && value) return value;
    }
    const telling = path.keys.filter(({ name }) => !/CreationClassName|^SystemName$/i.test(name));
    const key = telling.at(-1) ?? path.keys.at(-1);
    if (!key) return path.className;
    return isObjectPath(key.value) ? key.value.className : String(key.value);
}

export const statusAt = ({ instance }: Place): Status | undefined => instance && statusOf(instance);

/** The part of a walk that is drawn: many of one association become one box until it is opened. */
export function drawnGraph(
    walk: Walk,
    centre: string,
    opened: ReadonlySet<string>,
): { nodes: GraphNode[]; edges: GraphEdge[] } {
    const nodes = new Map<string, GraphNode>();
    const edges = new Map<string, GraphEdge>();
    const draw = (key: string) => {
        const place = walk.get(key);
        if (place && !nodes.has(key)) nodes.set(key, boxAt(key, place, key === centre));
    };
    draw(centre);
    // What was found at a place is drawn where the place itself is.
    const waiting = [centre];
    for (const key of waiting) {
        const groups = new Map<string, Link[]>();
        for (const link of walk.get(key)?.links ?? []) {
            const group = `${link.association}>${link.toRole}`;
            groups.set(group, [...(groups.get(group) ?? []), link]);
        }
        for (const [group, links] of groups) {
            const id = `${key}>${group}`;
            const shown =
                opened.has(id) || links.length <= atOnce + 1 ? links : links.slice(0, atOnce);
            shown.forEach((link, index) => {
                const to = pathKey(link.to);
                if (!nodes.has(to)) waiting.push(to);
                draw(to);
                // One of many alike says what they all are.
                const isNamed = index === Math.floor((shown.length - 1) / 2);
                addEdge(edges, link, key, to, isNamed);
            });
            if (shown.length === links.length) continue;
            nodes.set(id, {
                id,
                lines: [`${links.length - shown.length} more`, links[0]!.to.className],
                isMore: true,
            });
            addEdge(edges, { ...links[0]!, id: `${id}>edge` }, key, id, false);
        }
    }
    return { nodes: [...nodes.values()], edges: [...edges.values()] };
}

function boxAt(id: string, place: Place, isCentre: boolean): GraphNode {
    const status = statusAt(place);
    const lines = [place.path.className, nameOf(place), ...(status ? [status.words] : [])];
    return { id, lines, isCentre, ...(status ? { tone: status.tone } : {}) };
}

// The same association seen from its other end is not drawn again.
function addEdge(
    edges: Map<string, GraphEdge>,
    link: Link,
    source: string,
    target: string,
    isNamed: boolean,
): void {
    const association = link.id.slice(0, link.id.lastIndexOf(">"));
    const id = `${association}|${[source, target].sort().join("|")}`;
    if (edges.has(id)) return;
    edges.set(id, { id, source, target, ...(isNamed ? { label: link.association } : {}) });
}
