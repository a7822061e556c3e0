import assert from "node:assert/strict";
import { test } from "node:test";

import type { Class, CimType } from "../../console/src/cim/model";
import { ancestorsOf, buildClassTree, rowId, treeRows } from "../../console/src/state/classTree";

function classOf(name: string, superClass?: string, types: CimType[] = []): Class {
    const properties = types.map((type, index) => ({
        name: `P${index}`,
        type,
        isArray: false,
        value: null,
        propagated: false,
        qualifiers: [],
    }));
    return {
        name,
        ...(superClass ? { superClass } : {}),
        qualifiers: [],
        properties,
        methods: [],
    };
}

const tree = buildClassTree([
    classOf("CIM_B", "CIM_Root"),
    classOf("CIM_Root"),
    classOf("CIM_a", "cim_root"),
    classOf("CIM_Link", undefined, ["reference", "reference"]),
    classOf("CIM_SubLink", "CIM_Link"),
    classOf("CIM_Indication"),
    classOf("CIM_Alert", "CIM_Indication", ["string"]),
    classOf("Orphan", "Nobody"),
]);
const shelves = [{ namespace: "root/x", tree }, { namespace: "root/y" }];
const shown = (open: string[], search = "") =>
    treeRows(shelves, new Set(open), search).map((row) => `${row.level} ${row.name} ${row.kind}`);

test("classes stand below their superclass, whatever the case of its name", () => {
    assert.deepEqual(
        tree.roots.map((node) => node.name),
        ["CIM_Indication", "CIM_Link", "CIM_Root", "Orphan"],
    );
    assert.deepEqual(
        tree.byName.get("cim_root")?.children.map((node) => node.name),
        ["CIM_a", "CIM_B"],
    );
    assert.deepEqual(ancestorsOf(tree, "CIM_A"), ["cim_root"]);
});

test("associations and indications are known without qualifiers, and what inherits from them", () => {
    const kinds = ["cim_link", "cim_sublink", "cim_alert", "cim_a"].map(
        (name) => tree.byName.get(name)?.kind,
    );
    assert.deepEqual(kinds, ["association", "association", "indication", "class"]);
});

test("only what is open shows what is below it", () => {
    assert.deepEqual(shown([]), ["1 root/x namespace", "1 root/y namespace"]);
    assert.deepEqual(shown([rowId("root/x"), rowId("root/x", "CIM_Link")]), [
        "1 root/x namespace",
        "2 CIM_Indication indication",
        "2 CIM_Link association",
        "3 CIM_SubLink association",
        "2 CIM_Root class",
        "2 Orphan class",
        "1 root/y namespace",
    ]);
});

test("a search shows what matches and what leads to it", () => {
    assert.deepEqual(shown([], " sublink "), [
        "1 root/x namespace",
        "2 CIM_Link association",
        "3 CIM_SubLink association",
        "1 root/y namespace",
    ]);
    const row = treeRows(shelves, new Set(), "cim_").find(({ name }) => name === "CIM_B");
    assert.deepEqual([row?.position, row?.siblings], [2, 2]);
});

test("classes that descend from themselves do no harm", () => {
    const circle = buildClassTree([classOf("A", "B"), classOf("B", "A"), classOf("C", "C")]);
    assert.deepEqual(
        circle.roots.map((node) => node.name),
        ["C"],
    );
    assert.equal(ancestorsOf(circle, "A").length, 64);
});

test("a deep hierarchy of many classes is built", () => {
    const many = Array.from({ length: 2000 }, (_, index) =>
        classOf(`K${index}`, index % 50 ? `K${index - 1}` : undefined),
    );
    const built = buildClassTree(many);
    assert.equal(built.roots.length, 40);
    const all = treeRows([{ namespace: "n", tree: built }], new Set(), "k");
    assert.equal(all.length, 2001);
});
