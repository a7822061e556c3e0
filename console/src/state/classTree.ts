import { nameKey } from "../cim/names";
import type { Class } from "../cim/model";

export type ClassKind = "class" | "association" | "indication";

/** A class where the classes of its namespace stand below one another. */
export interface ClassNode {
    name: string;
    superClass?: string;
    kind: ClassKind;
    children: ClassNode[];
}

export interface ClassTree {
    roots: ClassNode[];
    byName: Map<string, ClassNode>;
}

/**
 * The classes in their order of inheritance, children by name. They need no qualifiers: a class with
 * references is an association, and what descends from CIM_Indication is an indication.
 */
export function buildClassTree(classes: readonly Class[]): ClassTree {
    const byName = new Map<string, ClassNode>();
    for (const one of classes) {
        byName.set(nameKey(one.name), {
            name: one.name,
            ...(one.superClass ? { superClass: one.superClass } : {}),
            kind: ownKind(one),
            children: [],
        });
    }
    const roots: ClassNode[] = [];
    for (const node of byName.values()) {
        const parent = node.superClass ? byName.get(nameKey(node.superClass)) : undefined;
        (parent && parent !== node ? parent.children : roots).push(node);
    }
    const order = (left: ClassNode, right: ClassNode) =>
        nameKey(left.name) < nameKey(right.name) ? -1 : 1;
    const settle = (nodes: ClassNode[], inherited: ClassKind) => {
        nodes.sort(order);
        for (const node of nodes) {
            if (node.kind === "class") node.kind = inherited;
            settle(node.children, node.kind);
        }
    };
    settle(roots, "class");
    return { roots, byName };
}

function ownKind(one: Class): ClassKind {
    if (/(^|_)Indication$/i.test(one.name) && !one.superClass) return "indication";
    const truth = (name: string) =>
        one.qualifiers.some(
            (qualifier) => nameKey(qualifier.name) === name && qualifier.value === true,
        );
    if (truth("indication")) return "indication";
    const references = one.properties.filter((property) => property.type === "reference").length;
    return truth("association") || references > 1 ? "association" : "class";
}

/** The class's ancestors, the nearest first. */
export function ancestorsOf(tree: ClassTree, name: string): string[] {
    const names: string[] = [];
    let node = tree.byName.get(nameKey(name));
    while (node?.superClass && names.length < 64) {
        names.push(node.superClass);
        node = tree.byName.get(nameKey(node.superClass));
    }
    return names;
}

/** A line of the tree as it is shown. */
export interface TreeRow {
    id: string;
    level: number;
    name: string;
    namespace: string;
    kind: ClassKind | "namespace";
    open?: boolean; // absent where there is nothing below
    position: number;
    siblings: number;
}

export interface Shelf {
    namespace: string;
    tree?: ClassTree;
}

export const rowId = (namespace: string, className = ""): string =>
    `${nameKey(namespace)}:${nameKey(className)}`;

/**
 * The lines of all namespaces. Without a search what is in `open` shows what is below it; with one,
 * classes whose names contain it, and what leads to them.
 */
export function treeRows(
    shelves: readonly Shelf[],
    open: ReadonlySet<string>,
    search: string,
): TreeRow[] {
    const wanted = nameKey(search.trim());
    const rows: TreeRow[] = [];
    shelves.forEach(({ namespace, tree }, index) => {
        const below: TreeRow[] = [];
        if (wanted && tree) addMatches(below, tree.roots, namespace, 2, wanted);
        const isOpen = wanted ? below.length > 0 : open.has(rowId(namespace));
        rows.push({
            id: rowId(namespace),
            level: 1,
            name: namespace,
            namespace,
            kind: "namespace",
            open: isOpen,
            position: index + 1,
            siblings: shelves.length,
        });
        if (!wanted && isOpen && tree) addOpen(below, tree.roots, namespace, 2, open);
        for (const row of below) rows.push(row);
    });
    return rows;
}

function rowOf(node: ClassNode, namespace: string, level: number, at: number, of: number): TreeRow {
    return {
        id: rowId(namespace, node.name),
        level,
        name: node.name,
        namespace,
        kind: node.kind,
        position: at + 1,
        siblings: of,
    };
}

function addOpen(
    rows: TreeRow[],
    nodes: readonly ClassNode[],
    namespace: string,
    level: number,
    open: ReadonlySet<string>,
): void {
    nodes.forEach((node, index) => {
        const row = rowOf(node, namespace, level, index, nodes.length);
        rows.push(row);
        if (!node.children.length) return;
        row.open = open.has(row.id);
        if (row.open) addOpen(rows, node.children, namespace, level + 1, open);
    });
}

function addMatches(
    rows: TreeRow[],
    nodes: readonly ClassNode[],
    namespace: string,
    level: number,
    wanted: string,
): void {
    const kept: { row: TreeRow; below: TreeRow[] }[] = [];
    for (const node of nodes) {
        const below: TreeRow[] = [];
        addMatches(below, node.children, namespace, level + 1, wanted);
        if (!below.length && !nameKey(node.name).includes(wanted)) continue;
        const row = rowOf(node, namespace, level, 0, 0);
        if (below.length) row.open = true;
        kept.push({ row, below });
    }
    kept.forEach(({ row, below }, index) => {
        rows.push({ ...row, position: index + 1, siblings: kept.length });
        for (const one of below) rows.push(one);
    });
}
