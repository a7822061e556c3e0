import assert from "node:assert/strict";
import { test } from "node:test";

import type { ObjectPath } from "../../console/src/cim/model";
import { href, parsePath, parseRoute, writePath, type Route } from "../../console/src/state/routes";

const hostile: ObjectPath = {
    namespace: "root/lab",
    className: "LAB_Thing",
    keys: [
        { name: "Text", value: 'a "quoted\\" #/?&%\n<script>,b=1' },
        { name: "Number", value: -12 },
        { name: "Large", value: 18446744073709551615n },
        { name: "Flag", value: true },
        { name: "Real", value: 1.5 },
        {
            name: "Of",
            value: {
                namespace: "root/other",
                className: "LAB_System",
                keys: [{ name: "Name", value: 'x"y' }],
            },
        },
    ],
};

test("a path that was written is read again, with references and hostile texts", () => {
    assert.deepEqual(parsePath(writePath(hostile)), hostile);
});

test("a path as people write it is read", () => {
    assert.deepEqual(parsePath('root/ktq:PYL_Fan.DeviceID="1",Number=2'), {
        namespace: "root/ktq",
        className: "PYL_Fan",
        keys: [
            { name: "DeviceID", value: "1" },
            { name: "Number", value: 2 },
        ],
    });
    assert.deepEqual(parsePath("PYL_Fan"), { className: "PYL_Fan", keys: [] });
});

test("what is no path is none", () => {
    for (const text of [
        "",
        ".",
        "a.b",
        'a.b="',
        'a.b="x"y',
        "a.b=nothing",
        'x:y:z.a="1"',
        'a.b=@"="',
    ]) {
        assert.equal(parsePath(text), undefined, text);
    }
});

test("every route has an address that leads back to it", () => {
    const routes: Route[] = [
        { view: "host" },
        { view: "alerts" },
        { view: "requests" },
        { view: "modules" },
        { view: "explore" },
        { view: "explore", namespace: "root/ktq" },
        { view: "explore", namespace: "root/ktq", className: "PYL_Fan" },
        { view: "explore", namespace: "root/a b", className: "<script>/#" },
        { view: "instance", path: hostile },
    ];
    for (const route of routes) assert.deepEqual(parseRoute(href(route)), route);
    assert.equal(
        href({ view: "explore", namespace: "root/ktq", className: "PYL_Fan" }),
        "#/explore/root%2Fktq/PYL_Fan",
    );
});

test("an address that makes no sense shows the host", () => {
    for (const hash of ["", "#", "#/nowhere", "#/instance", "#/instance/%22"]) {
        assert.deepEqual(parseRoute(hash), { view: "host" }, hash);
    }
});
