import assert from "node:assert/strict";
import { readFileSync, readdirSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";

import { XmlError, XmlReader } from "../../console/src/cim/xmlReader";

/** What a handler was told, with pieces of text that follow one another joined. */
function read(text: string, pieceLength = text.length): string[] {
    const told: string[] = [];
    let isText = false;
    const reader = new XmlReader({
        open(name, attributes) {
            const shown = [...attributes].map(([key, value]) => ` ${key}=${value}`).join("");
            told.push(`<${name}${shown}>`);
            isText = false;
        },
        text(piece) {
            if (piece === "") return;
            if (isText) told[told.length - 1] += piece;
            else told.push(piece);
            isText = true;
        },
        close(name) {
            told.push(`</${name}>`);
            isText = false;
        },
    });
    for (let place = 0; place < text.length; place += Math.max(pieceLength, 1)) {
        reader.push(text.slice(place, place + Math.max(pieceLength, 1)));
    }
    reader.end();
    return told;
}

function verdict(text: string, pieceLength?: number): string[] | string {
    try {
        return read(text, pieceLength);
    } catch (error) {
        assert.ok(error instanceof XmlError, String(error));
        return "refused";
    }
}

const accepted: [string, string[]][] = [
    ["<a/>", ["<a>", "</a>"]],
    ["\uFEFF<a/>", ["<a>", "</a>"]],
    ['<?xml version="1.0" encoding="utf-8" standalone=\'yes\'?>\r\n<a></a>\n', ["<a>", "</a>"]],
    ["<a b='1' c = \"2\" ></a >", ["<a b=1 c=2>", "</a>"]],
    ["<a>x&lt;&gt;&amp;&quot;&apos;&#65;&#x1F600;y</a>", ["<a>", "x<>&\"'A\u{1F600}y", "</a>"]],
    ["<a b='&lt;&#10;\t\n>'/>", ["<a b=<\n  >>", "</a>"]],
    ["<a>1\r\n2\r3\n</a>", ["<a>", "1\n2\n3\n", "</a>"]],
    ["<a>1<![CDATA[<b>&amp;]]]]><![CDATA[>]]>2</a>", ["<a>", "1<b>&amp;]]>2", "</a>"]],
    ["<!-- - --><?pi some > thing?><a><!----></a><!--x-->", []],
    ["<a>]]&gt; ] ]]</a>", ["<a>", "]]> ] ]]", "</a>"]],
    ["<é:ü.1-2 xml:lang='de'/>", ["<é:ü.1-2 xml:lang=de>", "</é:ü.1-2>"]],
];

const refused = [
    "",
    " ",
    "x",
    "<a>",
    "<a></b>",
    "</a>",
    "<a/><b/>",
    "<a/>x",
    "x<a/>",
    "<a b='1'c='2'/>",
    "<a b=1/>",
    "<a b/>",
    "<a b='<'/>",
    "<a b='1' b='2'/>",
    "<a b='&nbsp;'/>",
    "<a>&nbsp;</a>",
    "<a>&#0;</a>",
    "<a>&#xD800;</a>",
    "<a>&#x110000;</a>",
    "<a>& </a>",
    "<a>&amp</a>",
    "<a>\u0001</a>",
    "<a>\uFFFE</a>",
    "<a>]]></a>",
    "<a><!-- -- --></a>",
    "<a><!-- ---></a>",
    "<1/>",
    "< a/>",
    "<a / >",
    '<!DOCTYPE a [<!ENTITY b "c">]><a>&b;</a>',
    " <?xml version='1.0'?><a/>",
    "<a/><?xml version='1.0'?>",
    "<?XML version='1.0'?><a/>",
    "<?xml version='2.0'?><a/>",
    "<??><a/>",
    "<![CDATA[x]]><a/>",
    "<a><![CDATA[x</a>",
    "<a\u00A0b='1'/>",
];

test("tells elements, attributes and text", () => {
    for (const [text, expected] of accepted) {
        if (expected.length) assert.deepEqual(read(text), expected, text);
        else assert.notEqual(verdict(text), "refused", text);
    }
});

test("refuses what is not well-formed", () => {
    for (const text of refused) assert.equal(verdict(text), "refused", text);
});

test("judges alike however the text is cut", () => {
    const texts = [...accepted.map(([text]) => text), ...refused];
    for (const text of texts) {
        const whole = verdict(text);
        for (const length of [1, 2, 3, 5, 7]) {
            assert.deepEqual(verdict(text, length), whole, `${text} by ${length}`);
        }
    }
});

test("bounds depth, attributes and the length of markup", () => {
    const nested = (depth: number) => "<a>".repeat(depth) + "</a>".repeat(depth);
    assert.notEqual(verdict(nested(256)), "refused");
    assert.equal(verdict(nested(257)), "refused");
    const wide = (count: number) =>
        `<a ${Array.from({ length: count }, (_, i) => `a${i}='1'`).join(" ")}/>`;
    assert.notEqual(verdict(wide(64)), "refused");
    assert.equal(verdict(wide(65)), "refused");
    assert.equal(verdict(`<a b='${"x".repeat(9 << 20)}`, 1 << 20), "refused");
});

test("takes long text without keeping it", () => {
    const told = read(`<a>${"x &amp; ".repeat(100_000)}</a>`, 4096);
    assert.equal(told[1]?.length, 400_000);
});

test("comes to an end with the requests of the fuzzer's corpus", () => {
    const folder = join(process.env["PYL_SOURCE_FOLDER"] ?? "", "fuzz/corpus/cim-xml");
    const files = readdirSync(folder);
    assert.ok(files.length > 10);
    for (const file of files) {
        const text = readFileSync(join(folder, file), "utf8");
        const isDoctype = text.includes("<!DOCTYPE");
        const body = text.slice(Math.max(text.indexOf("<?xml"), text.indexOf("<CIM"), 0));
        assert.equal(verdict(text.startsWith("<") ? text : body) === "refused", isDoctype, file);
        for (let length = 0; length < text.length; length += 3) verdict(text.slice(0, length), 64);
    }
});
