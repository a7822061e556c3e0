import assert from "node:assert/strict";
import { test } from "node:test";

import { dateOf, dateTimeOf, dateTimeText, parseDateTime } from "../../console/src/cim/dateTime";

process.env["TZ"] = "Europe/Berlin";

test("shows points in time in local time", () => {
    assert.equal(dateTimeText("20260501120000.000000+000"), "2026-05-01 14:00:00");
    assert.equal(dateTimeText("20260501120000.000000+120"), "2026-05-01 12:00:00");
    assert.equal(dateTimeText("20260101003000.123456-060"), "2026-01-01 02:30:00.123456");
    assert.equal(dateTimeText("20260101003000.123***+000"), "2026-01-01 01:30:00.123");
    assert.equal(dateTimeText("202601010030**.******+000"), "2026-01-01 01:30");
});

test("shows of a point in time what is known", () => {
    assert.equal(dateTimeText("2026**********.******+000"), "2026");
    assert.equal(dateTimeText("202605********.******+000"), "2026-05");
    assert.equal(dateTimeText("20260501******.******+000"), "2026-05-01");
    assert.equal(dateTimeText("**************.******+000"), "unknown");
    assert.equal(dateTimeText("********1230**.******+000"), "12:30");
});

test("shows intervals in units", () => {
    assert.equal(dateTimeText("00000000000000.000000:000"), "0 s");
    assert.equal(dateTimeText("00000001020304.500000:000"), "1 day 2 h 3 min 4.5 s");
    assert.equal(dateTimeText("00000012000000.000000:000"), "12 days");
    assert.equal(dateTimeText("000000010203**.******:000"), "1 day 2 h 3 min");
});

test("leaves alone what is no moment", () => {
    for (const text of [
        "",
        "yesterday",
        "00000000000000.000000+000",
        "20261301000000.000000+000",
        "20260230000000.000000+000",
        "20260501250000.000000+000",
        "20260501120000.000000+0000",
        "20260501120000,000000+000",
    ]) {
        assert.equal(dateTimeText(text), text);
    }
});

test("writes a moment as it is read", () => {
    const date = new Date(Date.UTC(2026, 4, 1, 12, 0, 0, 250));
    assert.equal(dateTimeOf(date), "20260501120000.250000+000");
    const time = parseDateTime(dateTimeOf(date));
    assert.equal(time?.kind === "point" && dateOf(time)?.getTime(), date.getTime());
});
