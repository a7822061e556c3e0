import assert from "node:assert/strict";
import { test } from "node:test";

import type { CimValue, Instance, ObjectPath } from "../../console/src/cim/model";
import { pathKey } from "../../console/src/cim/names";
import { statusOf } from "../../console/src/state/status";
import { placeNodes } from "../../console/src/views/graph/layout";
import { History, readingOf } from "../../console/src/views/host/readings";
import { drawnGraph, linksOf, nameOf, walkOn } from "../../console/src/views/instance/walk";

const pathOf = (className: string, id: string): ObjectPath => ({
    namespace: "root/lab",
    className,
    keys: [{ name: "ID", value: id }],
});

function instanceOf(path: ObjectPath, values: Record<string, CimValue>): Instance {
    const properties = Object.entries(values).map(([name, value]) => ({
        name,
        type: "string" as const,
        isArray: Array.isArray(value),
        value,
        propagated: false,
        qualifiers: [],
    }));
    return { className: path.className, path, properties };
}

const system = pathOf("LAB_System", "7");
const fans = Array.from({ length: 20 }, (_, index) => pathOf("LAB_Fan", String(index)));
const withoutSpace = ({ namespace: _, ...path }: ObjectPath): ObjectPath => path;
const references = fans.map((fan, index) =>
    instanceOf(pathOf("LAB_SystemDevice", String(index)), {
        GroupComponent: { ...system, host: "elsewhere" },
        PartComponent: withoutSpace(fan),
    }),
);
const associators = fans.map((fan, index) =>
    instanceOf(fan, {
        ElementName: `Fan ${index}`,
        OperationalStatus: [index ? 2 : 6],
    }),
);
const start = new Map([[pathKey(system), { path: system }]]);

test("a link leads to the other end, whether paths name host and namespace or not", () => {
    const links = linksOf(system, references);
    assert.equal(links.length, 20);
    assert.equal(pathKey(links[3]!.to), pathKey(fans[3]!));
    assert.deepEqual([links[3]!.fromRole, links[3]!.toRole], ["GroupComponent", "PartComponent"]);
});

test("many of one association are one box until it is opened", () => {
    const walk = walkOn(start, system, references, associators);
    const folded = drawnGraph(walk, pathKey(system), new Set());
    const more = folded.nodes.find((node) => node.isMore);
    assert.equal(folded.nodes.length, 10);
    assert.deepEqual(more?.lines, ["12 more", "LAB_Fan"]);
    const opened = drawnGraph(walk, pathKey(system), new Set([more!.id]));
    assert.equal(opened.nodes.length, 21);
    assert.equal(opened.edges.length, 20);
});

test("boxes say class, name and state in words", () => {
    const walk = walkOn(start, system, references, associators);
    const { nodes } = drawnGraph(walk, pathKey(system), new Set());
    const broken = nodes.find((node) => node.id === pathKey(fans[0]!));
    assert.deepEqual(broken?.lines, ["LAB_Fan", "Fan 0", "Error"]);
    assert.equal(broken?.tone, "error");
});

test("an association that is seen from both ends is drawn once", () => {
    const there = walkOn(start, system, references.slice(0, 2), associators.slice(0, 2));
    const back = walkOn(there, fans[0]!, references.slice(0, 1), [instanceOf(system, {})]);
    const { nodes, edges } = drawnGraph(back, pathKey(system), new Set());
    assert.equal(nodes.length, 3);
    assert.equal(edges.length, 2);
});

test("what is associated with itself has no end", () => {
    const self = instanceOf(pathOf("LAB_Self", "1"), {
        Antecedent: system,
        Dependent: system,
    });
    const walk = walkOn(start, system, [self], []);
    const { nodes, edges } = drawnGraph(walk, pathKey(system), new Set());
    assert.equal(nodes.length, 1);
    assert.equal(edges.length, 1);
});

test("boxes are placed beside one another, not on one another", () => {
    const walk = walkOn(start, system, references, associators);
    const { nodes, edges } = drawnGraph(walk, pathKey(system), new Set());
    const places = [...placeNodes(nodes, edges, "LR").values()].map(({ x, y }) => `${x} ${y}`);
    assert.equal(new Set(places).size, nodes.length);
});

test("an instance is called by what it calls itself, or else by its most telling key", () => {
    const path = {
        ...system,
        keys: [
            { name: "SystemName", value: "host" },
            { name: "DeviceID", value: "fan-3" },
            { name: "CreationClassName", value: "LAB_Fan" },
        ],
    };
    assert.equal(nameOf({ path }), "fan-3");
    assert.equal(nameOf({ path, instance: instanceOf(path, { ElementName: "" }) }), "fan-3");
    assert.equal(nameOf({ path, instance: instanceOf(path, { ElementName: "Third" }) }), "Third");
});

test("the worse of OperationalStatus and HealthState gives the tone", () => {
    const tone = (values: Record<string, CimValue>) => statusOf(instanceOf(system, values))?.tone;
    assert.equal(tone({}), undefined);
    assert.equal(tone({ OperationalStatus: null, HealthState: null }), undefined);
    assert.equal(tone({ OperationalStatus: [2], HealthState: 5 }), "ok");
    assert.equal(tone({ OperationalStatus: [2], HealthState: 25 }), "error");
    assert.equal(tone({ OperationalStatus: [3, 2], HealthState: 5 }), "warn");
    assert.equal(tone({ OperationalStatus: [0], HealthState: 5 }), "ok");
    assert.equal(tone({ OperationalStatus: [40000] }), "unknown");
});

test("a sensor's reading has its modifier, unit and limits", () => {
    const sensor = instanceOf(pathOf("LAB_Sensor", "1"), {
        ElementName: "CPU",
        CurrentReading: 455,
        UnitModifier: -1,
        BaseUnits: 2,
        UpperThresholdCritical: 900n,
    });
    const described = {
        name: "LAB_Sensor",
        qualifiers: [],
        methods: [],
        properties: sensor.properties,
    };
    const reading = readingOf(sensor, described);
    assert.deepEqual(
        [reading.value, reading.unit, reading.least, reading.most],
        [45.5, "°C", 0, 200],
    );
    assert.deepEqual(reading.limits, [{ value: 90, isUpper: true, isCritical: true }]);
});

test("a history forgets what is too old", () => {
    const history = new History(3);
    for (let time = 0; time < 5; ++time) history.add(time, time === 3 ? undefined : time * 10);
    assert.deepEqual(history.times, [2, 3, 4]);
    assert.deepEqual(history.values, [20, null, 40]);
});
