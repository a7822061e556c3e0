import assert from "node:assert/strict";
import { test } from "node:test";

import type { Class, CimType, CimValue, Property, Qualifier } from "../../console/src/cim/model";
import {
    columnsOf,
    compareKeys,
    csvOf,
    orderedRows,
    Row,
    sortKeyOf,
    type Column,
} from "../../console/src/views/table/rows";

function property(
    name: string,
    type: CimType,
    value: CimValue = null,
    ...qualifiers: Qualifier[]
): Property {
    return {
        name,
        type,
        isArray: Array.isArray(value),
        value,
        propagated: false,
        qualifiers,
    };
}

const key: Qualifier = { name: "Key", type: "boolean", value: true };
const words: Qualifier[] = [
    { name: "ValueMap", type: "string", value: ["1", "2"] },
    { name: "Values", type: "string", value: ["Idle", "Busy"] },
];
const described: Class = {
    name: "LAB_Thing",
    qualifiers: [],
    methods: [],
    properties: [
        property("Name", "string"),
        property("Number", "uint32", null, key),
        property("Made", "datetime"),
        property("State", "uint16", null, ...words),
    ],
};
const columns = columnsOf(described, []);
const column = (name: string): Column => columns.find((one) => one.name === name)!;

const row = (
    number: number,
    name: string | null,
    made: string | null = null,
    state: number | null = null,
) =>
    new Row({
        className: "LAB_Thing",
        properties: [
            property("number", "uint32", number),
            property("NAME", "string", name),
            property("Made", "datetime", made),
            property("State", "uint16", state),
        ],
    });

const rows = [
    row(2, "fan 10", "20260501120000.000000+060", 1),
    row(10, "Fan 9", "20260501113000.000000+000", 2),
    row(1, null),
];
const never = new AbortController().signal;
const numbers = (found: readonly Row[] | undefined) =>
    found?.map((one) => one.value(column("Number")));

async function sorted(name: string, descending = false) {
    return numbers(
        await orderedRows(
            rows,
            columns,
            { sort: { column: column(name), descending }, filter: "" },
            never,
        ),
    );
}

test("keys are the first columns, and what only subclasses have is among the last", () => {
    const subclass = {
        ...described,
        name: "LAB_Sub",
        properties: [property("More", "string")],
    };
    assert.deepEqual(
        columns.map((one) => one.name),
        ["Number", "Name", "Made", "State"],
    );
    assert.deepEqual(
        columnsOf(described, [subclass]).map((one) => one.name),
        ["", "Number", "Name", "Made", "State", "More"],
    );
});

test("numbers sort by size, texts by their numbers too, times by the moment, NULL last", async () => {
    assert.deepEqual(await sorted("Number"), [1, 2, 10]);
    assert.deepEqual(await sorted("Number", true), [10, 2, 1]);
    assert.deepEqual(await sorted("Name"), [10, 2, 1]);
    assert.deepEqual(await sorted("Name", true), [2, 10, 1]);
    assert.deepEqual(await sorted("Made"), [2, 10, 1]);
    assert.deepEqual(await sorted("Made", true), [10, 2, 1]);
});

test("rows that are equal stay in the order in which they came", async () => {
    const many = Array.from({ length: 3500 }, (_, index) => row(index, index % 2 ? "b" : "a"));
    const order = {
        sort: { column: column("Name"), descending: false },
        filter: "",
    };
    const found = numbers(await orderedRows(many, columns, order, never));
    assert.deepEqual(found?.slice(0, 3), [0, 2, 4]);
    assert.deepEqual(found?.slice(-2), [3497, 3499]);
    assert.equal(found?.length, 3500);
});

test("large integers and numbers sort among one another", () => {
    const ordered = [18446744073709551615n, 3, 4n, null, 2.5]
        .map((value) => sortKeyOf(value))
        .sort((left, right) => compareKeys(left, right, false));
    assert.deepEqual(ordered, [2.5, 3, 4n, 18446744073709551615n, null]);
});

test("a filter looks through all columns as they are shown, for each of its words", async () => {
    const found = async (filter: string) =>
        numbers(await orderedRows(rows, columns, { sort: undefined, filter }, never));
    assert.deepEqual(await found("FAN"), [2, 10]);
    assert.deepEqual(await found("busy fan"), [10]);
    assert.deepEqual(await found("busy 10 nothing"), []);
    assert.deepEqual(await found("  "), [2, 10, 1]);
});

test("work that was aborted has no result", async () => {
    const abort = new AbortController();
    abort.abort();
    const order = { sort: undefined, filter: "a" };
    assert.equal(await orderedRows(rows, columns, order, abort.signal), undefined);
});

test("CSV quotes what needs it, and hands no formula to a spreadsheet", () => {
    const text = csvOf(
        [row(1, 'say "a", b'), row(-2, "=cmd()"), row(3, "-x"), row(4, "line\nline")],
        [column("Number"), column("Name")],
    );
    assert.equal(
        text,
        'Number,Name\r\n1,"say ""a"", b"\r\n-2,\'=cmd()\r\n3,\'-x\r\n4,"line\nline"\r\n',
    );
});

test("tells readings in the unit that their instance says", () => {
    const sensors: Class = {
        name: "CIM_NumericSensor",
        qualifiers: [],
        methods: [],
        properties: [
            property("BaseUnits", "uint16"),
            property("UnitModifier", "sint32"),
            property("CurrentReading", "sint32"),
            property("Accuracy", "sint32"),
        ],
    };
    const columns = columnsOf(sensors, []);
    const texts = (...values: CimValue[]) => {
        const properties = sensors.properties.map((one, at) => ({ ...one, value: values[at]! }));
        const row = new Row({ className: sensors.name, properties });
        return columns.slice(2).map((column) => row.text(column));
    };
    assert.deepEqual(texts(2, -1, 455, 10), ["45.5 °C (455)", "10"]);
    assert.deepEqual(texts(5, -3, 12050, 10), ["12.05 V (12050)", "10"]);
    assert.deepEqual(texts(19, 0, 4200, null), ["4200 RPM (4200)", ""]);
    assert.deepEqual(texts(null, -1, 455, null), ["45.5 (455)", ""]);
    assert.deepEqual(texts(null, null, 455, null), ["455", ""]);
});
