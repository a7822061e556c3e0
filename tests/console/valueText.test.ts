import assert from "node:assert/strict";
import { test } from "node:test";

import type { CimType, CimValue, Qualifier } from "../../console/src/cim/model";
import { shownScalar, unitOf, valueMapOf, valueText } from "../../console/src/cim/valueText";

function described(type: CimType, qualifiers: Record<string, string | string[] | boolean>) {
    const list: Qualifier[] = Object.entries(qualifiers).map(([name, value]) => ({
        name,
        type: typeof value === "boolean" ? "boolean" : "string",
        value,
    }));
    return { type, qualifiers: list };
}

const health = described("uint16", {
    ValueMap: ["0", "5", "10..14", "..", "0x20", "16..31"],
    Values: ["Unknown", "OK", "Degraded", "DMTF Reserved", "Vendor", "Major"],
});

test("shows the words of a value map with the number beside them", () => {
    const cases: [CimValue, string][] = [
        [5, "OK (5)"],
        [12, "Degraded (12)"],
        [14n, "Degraded (14)"],
        [20, "Major (20)"],
        [32, "Vendor (32)"],
        [99, "DMTF Reserved (99)"],
        [[5, 0, null], "OK (5), Unknown (0), NULL"],
        [null, ""],
        [[], ""],
    ];
    for (const [value, expected] of cases) assert.equal(valueText(value, health), expected);
    assert.deepEqual(shownScalar(5, health), { words: "OK", raw: "5" });
});

test("counts values from zero where there is no map, and maps texts", () => {
    const order = described("uint8", { Values: ["No", "Yes"] });
    assert.equal(valueText(1, order), "Yes (1)");
    assert.equal(valueText(2, order), "2");
    const texts = described("string", { ValueMap: ["a", "b"], Values: ["Alpha", "Beta"] });
    assert.equal(valueText("b", texts), "Beta (b)");
    assert.equal(valueText("constructor", texts), "constructor");
    assert.equal(valueText("c", described("string", { ValueMap: ["c"] })), "c");
});

test("shows the bits that are set", () => {
    const bits = described("uint32", { BitMap: ["0", "3"], BitValues: ["Read", "Write"] });
    assert.equal(valueText(9, bits), "Read | Write (9)");
    assert.equal(valueText(3, bits), "Read | 0x2 (3)");
    assert.equal(valueText(0, bits), "none (0)");
});

test("applies units", () => {
    const cases: [number | bigint, string, string, string][] = [
        [2147483648n, "Units", "Bytes", "2 GiB (2147483648)"],
        [1536, "Units", "KiloBytes", "1.5 MiB (1536)"],
        [512, "PUnit", "byte", "512 B (512)"],
        [4, "PUnit", "byte * 2^30", "4 GiB (4)"],
        [12050, "PUnit", "volt * 10^-3", "12.05 V (12050)"],
        [12, "Units", "Volts", "12 V (12)"],
        [45, "Units", "Degrees C", "45 °C (45)"],
        [-5, "PUnit", "degree celsius", "-5 °C (-5)"],
        [4200, "Units", "Revolutions per Minute", "4200 RPM (4200)"],
        [4200, "PUnit", "rev / minute", "4200 RPM (4200)"],
        [80, "Units", "Percent", "80% (80)"],
        [3, "PUnit", "count", "3"],
        [2400, "Units", "MegaHertz", "2.4 GHz (2400)"],
        [1000000000n, "PUnit", "bit / second", "1 Gbit/s (1000000000)"],
        [250, "Units", "MilliSeconds", "0.25 s (250)"],
        [7, "PUnit", "parsec * 2", "7 parsec * 2 (7)"],
        [7, "Units", "constructor", "7 constructor (7)"],
    ];
    for (const [value, qualifier, unit, expected] of cases) {
        assert.equal(valueText(value, described("uint64", { [qualifier]: unit })), expected);
    }
    assert.equal(unitOf(described("uint64", { PUnit: "volt * 10^-3" })), "V");
    assert.equal(unitOf(described("uint64", {})), undefined);
});

test("shows octets, characters, references and embedded instances", () => {
    const octets = described("uint8", { OctetString: true });
    assert.equal(valueText([0, 0, 0, 6, 202, 254], octets), "ca fe");
    assert.equal(valueText([202, 254], octets), "ca fe");
    assert.equal(valueText("\u0007", described("char16", {})), "U+0007 (\u0007)");
    assert.equal(valueText("x", described("char16", {})), "x");
    const path = { className: "A", namespace: "n", keys: [{ name: "K", value: 1 }] };
    assert.equal(valueText(path), "n:A.K=1");
    const text =
        '<INSTANCE CLASSNAME="B"><PROPERTY NAME="Name" TYPE="string"><VALUE>x</VALUE></PROPERTY></INSTANCE>';
    const embedded = described("string", { EmbeddedInstance: "B" });
    assert.equal(shownScalar(text, embedded).words, 'B "x"');
    assert.equal(valueText(text), text);
    assert.equal(valueText("<b>", embedded), "<b>");
});

test("offers the values that a map names one by one", () => {
    assert.deepEqual(
        valueMapOf(health).map(({ words }) => words),
        ["Unknown", "OK", "Vendor"],
    );
});
