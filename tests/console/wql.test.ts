import assert from "node:assert/strict";
import { test } from "node:test";

import type { CimType, Class, Property } from "../../console/src/cim/model";
import { checkCondition, completeCondition, queryText } from "../../console/src/cim/wql";

function property(name: string, type: CimType, more: Partial<Property> = {}): Property {
    return { name, type, isArray: false, qualifiers: [], value: null, propagated: false, ...more };
}

const severity = property("PerceivedSeverity", "uint16", {
    qualifiers: [
        { name: "ValueMap", type: "string", value: ["2", "6", "7..10"] },
        { name: "Values", type: "string", value: ["Information", "Critical", "Reserved"] },
    ],
});
const alert: Class = {
    name: "CIM_AlertIndication",
    qualifiers: [],
    methods: [],
    properties: [
        severity,
        property("Message", "string"),
        property("IndicationTime", "datetime"),
        property("Urgent", "boolean"),
        property("Arguments", "string", { isArray: true }),
        property("SourceInstance", "string", { embedded: "instance" }),
    ],
};

/** The condition with a mark where it is wrong, and why. */
function wrong(text: string): string {
    const problem = checkCondition(text, alert);
    return problem
        ? `${text.slice(0, problem.position)}^${text.slice(problem.position)}: ${problem.message}`
        : "right";
}

test("accepts what the server accepts", () => {
    for (const text of [
        "",
        "PerceivedSeverity > 2",
        "perceivedseverity>=2 and not (Message like 'a%' or Urgent = true)",
        "3 <= PerceivedSeverity",
        "Message = 'it''s \\'\\\\ \"' OR Message <> \"C:\\dir\"",
        "SourceInstance ISA CIM_Fan AND SourceInstance.Speed != -1.5e3",
        "CIM_AlertIndication.Message IS NOT NULL",
        "Arguments IS NULL",
        "__CLASS = 'X'",
        "Message NOT LIKE '[^a-z]_'",
        "Message = IndicationTime",
        "NOT NOT PerceivedSeverity = +7;",
    ]) {
        assert.equal(wrong(text), "right", text);
    }
});

test("says where a condition is wrong, and why", () => {
    const cases: [string, string][] = [
        ["PerceivedSeverity^", "a comparison is expected"],
        ["PerceivedSeverity >^", "a property or a constant is expected"],
        ["^Severity > 2", "CIM_AlertIndication has no property Severity"],
        ["PerceivedSeverity > ^'2'", "PerceivedSeverity is uint16: a number is expected"],
        ["Message = ^2", "Message is string: a text in quotes is expected"],
        ["Urgent = ^1", "Urgent is boolean: TRUE or FALSE is expected"],
        ["^Arguments = 'x'", "Arguments is an array: it cannot be compared"],
        ["Message = ^'x", "the string is not closed"],
        ["(Urgent = TRUE^", "AND, OR or ')' is expected"],
        ["Urgent = TRUE ^)", "AND, OR or the end is expected: there is ')'"],
        ["Message LIKE ^2", "a pattern in quotes is expected: there is '2'"],
        ["1 ^= 1", "a comparison needs a property"],
        ["Message IS ^5", "NULL is expected: there is '5'"],
        ["PerceivedSeverity > ^2x", "a number is expected: there is '2x'"],
        ["Message ^~ 'a'", "a comparison is expected: there is '~'"],
    ];
    for (const [marked, reason] of cases) {
        assert.equal(wrong(marked.replace("^", "")), `${marked}: ${reason}`);
    }
});

test("holds the server's limits", () => {
    assert.match(wrong("(".repeat(70)), /levels of parentheses/);
    assert.match(wrong(Array(257).fill("Urgent = TRUE").join(" AND ")), /256 comparisons/);
    assert.match(wrong(`Message = '${"x".repeat(16384)}'`), /16 KiB/);
    assert.equal(wrong(Array(256).fill("Urgent = TRUE").join(" AND ")), "right");
});

/** What is offered at the mark. */
function offered(text: string, classNames: string[] = []): string[] {
    const cursor = text.indexOf("^");
    const { choices } = completeCondition(text.replace("^", ""), cursor, alert, classNames);
    return choices.map((choice) => choice.text);
}

test("completes properties, operators, values and joints", () => {
    assert.deepEqual(offered("per^"), ["PerceivedSeverity"]);
    assert.ok(offered("^").includes("Message"));
    assert.ok(!offered("^").includes("Arguments"));
    assert.deepEqual(offered("PerceivedSeverity ^").slice(0, 3), ["=", "<>", "<"]);
    assert.deepEqual(offered("PerceivedSeverity >^"), [">", ">="]);
    assert.deepEqual(offered("PerceivedSeverity = ^"), ["2", "6"]);
    assert.deepEqual(offered("PerceivedSeverity = cri^"), ["6"]);
    assert.deepEqual(offered("Urgent = ^"), ["TRUE", "FALSE"]);
    assert.ok(offered("Message ^").includes("LIKE"));
    assert.deepEqual(offered("Urgent = TRUE ^"), ["AND", "OR"]);
    assert.deepEqual(offered("Urgent = TRUE a^"), ["AND"]);
    assert.ok(offered("Urgent = TRUE AND ^").includes("Message"));
    assert.deepEqual(offered("(Urgent = TRUE ^"), ["AND", "OR", ")"]);
    assert.deepEqual(offered("Message IS ^"), ["NULL", "NOT NULL"]);
    assert.deepEqual(offered("SourceInstance ^"), ["ISA", "IS NULL", "IS NOT NULL"]);
    assert.deepEqual(offered("SourceInstance ISA c^", ["CIM_Fan", "PYL_Fan"]), ["CIM_Fan"]);
    assert.deepEqual(offered("Nothing = ^"), []);
});

test("puts a choice in the place of the word at the cursor", () => {
    const { start, end } = completeCondition("Urgent = TRUE AND Mess = 'a'", 20, alert);
    assert.deepEqual([start, end], [18, 22]);
});

test("makes the query of a class and a condition", () => {
    assert.equal(queryText("A", " "), "SELECT * FROM A");
    assert.equal(queryText("A", "x = 1 "), "SELECT * FROM A WHERE x = 1");
});
