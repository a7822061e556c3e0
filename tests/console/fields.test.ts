import assert from "node:assert/strict";
import { test } from "node:test";

import type { CimType, CimValue, Qualifier } from "../../console/src/cim/model";
import { fieldText, parseField, type Field } from "../../console/src/views/forms/fields";

function field(type: CimType, isArray = false, ...qualifiers: Qualifier[]): Field {
    return { name: "X", type, isArray, qualifiers };
}

function value(text: string, of: Field): CimValue {
    const parsed = parseField(text, of);
    assert.ok("value" in parsed, "error" in parsed ? parsed.error : "");
    return parsed.value;
}

function error(text: string, of: Field): string {
    const parsed = parseField(text, of);
    assert.ok("error" in parsed, text);
    return parsed.error;
}

test("nothing is NULL, unless a value is needed", () => {
    assert.equal(value("", field("string")), null);
    assert.equal(value(" ", field("uint8")), null);
    const required: Qualifier = {
        name: "Required",
        type: "boolean",
        value: true,
    };
    assert.equal(error("", field("string", false, required)), "A value is needed.");
    assert.equal(value('""', field("string", false, required)), "");
});

test("integers are held against the range of their type", () => {
    assert.equal(value("255", field("uint8")), 255);
    assert.equal(error("256", field("uint8")), "A uint8 is from 0 to 255.");
    assert.equal(error("-1", field("uint64")), "A uint64 is from 0 to 18446744073709551615.");
    assert.equal(value("18446744073709551615", field("uint64")), 18446744073709551615n);
    assert.equal(value("-0x10", field("sint8")), -16);
    assert.equal(error("1.5", field("sint32")), "A whole number is wanted.");
});

test("MinValue, MaxValue and MaxLen of the schema hold too", () => {
    const bounds: Qualifier[] = [
        { name: "MinValue", type: "sint64", value: 3n },
        { name: "MaxValue", type: "sint64", value: 5n },
    ];
    assert.equal(error("2", field("uint8", false, ...bounds)), "It is 3 at least.");
    assert.equal(error("6", field("uint64", false, ...bounds)), "It is 5 at most.");
    const short: Qualifier = { name: "MaxLen", type: "uint32", value: 3 };
    assert.match(error("four", field("string", false, short)), /3 are allowed/);
});

test("an array has a line for each value, and says which one is wrong", () => {
    assert.deepEqual(value("1\n2\n", field("uint16", true)), [1, 2]);
    assert.equal(error("1\nx", field("uint16", true)), "Line 2: A whole number is wanted.");
});

test("times may be written as people do", () => {
    assert.equal(value("1d 2h 30m 5s", field("datetime")), "00000001023005.000000:000");
    assert.equal(value("90 s", field("datetime")), "00000000000130.000000:000");
    assert.match(
        String(value("2026-05-01 12:00", field("datetime"))),
        /^20260501120000\.000000[-+]\d{3}$/,
    );
    assert.equal(
        value("20260501120000.000000+060", field("datetime")),
        "20260501120000.000000+060",
    );
    assert.match(error("tomorrow", field("datetime")), /^Wanted is/);
});

test("what a form shows for a value is read as the same value", () => {
    const path = {
        namespace: "n",
        className: "C",
        keys: [{ name: "K", value: 'a"b' }],
    };
    const cases: [CimValue, Field][] = [
        [null, field("string")],
        ["", field("string")],
        ["two\twords", field("string")],
        [true, field("boolean")],
        [-5n, field("sint64")],
        [1.25, field("real32")],
        [path, field("reference")],
        [["a", "b"], field("string", true)],
    ];
    for (const [before, of] of cases) assert.deepEqual(value(fieldText(before), of), before);
});
