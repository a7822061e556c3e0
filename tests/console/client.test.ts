import assert from "node:assert/strict";
import { test } from "node:test";

import { CimClient, CimError, HttpError } from "../../console/src/cim/client";
import { CimXmlError } from "../../console/src/cim/elements";
import type { Instance, ObjectPath } from "../../console/src/cim/model";
import { pathText, propertyOf } from "../../console/src/cim/names";
import { all, reply, result, server } from "./replies";

function clientOf(answer: Parameters<typeof server>[0]) {
    const { fetch, requests } = server(answer);
    return { client: new CimClient({ fetch }), requests };
}

/** The values of the one instance whose properties are written as `properties`. */
async function valuesOf(properties: string): Promise<unknown[]> {
    const text = `<INSTANCE CLASSNAME="A">${properties}</INSTANCE>`;
    const { client } = clientOf(() => result(text));
    const instance = await client.getInstance({ namespace: "n", className: "A", keys: [] });
    return instance.properties.map(({ value }) => value);
}

const name = (key = "1") =>
    `<INSTANCENAME CLASSNAME="A"><KEYBINDING NAME="Id"><KEYVALUE>${key}</KEYVALUE></KEYBINDING></INSTANCENAME>`;
const space =
    '<LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="x"/></LOCALNAMESPACEPATH>';
const instance =
    '<INSTANCE CLASSNAME="A"><PROPERTY NAME="Id" TYPE="string"><VALUE>1</VALUE></PROPERTY></INSTANCE>';

test("reads instances in every form that holds one", async () => {
    const path = `<INSTANCEPATH><NAMESPACEPATH><HOST>h:5988</HOST>${space}</NAMESPACEPATH>${name()}</INSTANCEPATH>`;
    const forms: [string, string][] = [
        [`<VALUE.NAMEDINSTANCE>${name()}${instance}</VALUE.NAMEDINSTANCE>`, 'n:A.Id="1"'],
        [`<VALUE.NAMEDINSTANCE>${instance}${name()}</VALUE.NAMEDINSTANCE>`, 'n:A.Id="1"'],
        [`<VALUE.OBJECTWITHPATH>${path}${instance}</VALUE.OBJECTWITHPATH>`, 'root/x:A.Id="1"'],
        [`<VALUE.INSTANCEWITHPATH>${path}${instance}</VALUE.INSTANCEWITHPATH>`, 'root/x:A.Id="1"'],
        [
            `<VALUE.OBJECTWITHLOCALPATH><LOCALINSTANCEPATH>${space}${name()}</LOCALINSTANCEPATH>` +
                `${instance}</VALUE.OBJECTWITHLOCALPATH>`,
            'root/x:A.Id="1"',
        ],
    ];
    for (const [text, expected] of forms) {
        const { client } = clientOf(() => result(text));
        const [found] = await all(client.instances("n", "A"));
        assert.equal(pathText(found?.path as ObjectPath), expected);
        assert.equal(propertyOf(found as Instance, "ID")?.value, "1");
    }
});

test("reads paths in every form", async () => {
    const forms = [
        name(),
        `<OBJECTPATH><INSTANCEPATH><NAMESPACEPATH><HOST>h</HOST>${space}</NAMESPACEPATH>${name()}</INSTANCEPATH></OBJECTPATH>`,
        `<OBJECTPATH><CLASSPATH><NAMESPACEPATH><HOST>h</HOST>${space}</NAMESPACEPATH><CLASSNAME NAME="A"/></CLASSPATH></OBJECTPATH>`,
        '<INSTANCENAME CLASSNAME="A"><KEYVALUE VALUETYPE="numeric"> 7 </KEYVALUE></INSTANCENAME>',
    ];
    const { client } = clientOf(() => result(forms.join("\n")));
    const paths = await client.associatorNames({ namespace: "n", className: "B", keys: [] });
    assert.deepEqual(paths.map(pathText), ['n:A.Id="1"', 'root/x:A.Id="1"', "root/x:A", "n:A.=7"]);
    assert.equal(paths[1]?.host, "h");
});

test("gives keys the type that is said", async () => {
    const keys = [
        ["", "1", "1"],
        [' VALUETYPE="string"', " 1 ", " 1 "],
        [' VALUETYPE="numeric"', " 1 ", 1],
        [' VALUETYPE="numeric"', "18446744073709551615", 18446744073709551615n],
        [' VALUETYPE="numeric"', "0x10", 16],
        [' VALUETYPE="numeric"', "-1.5e3", -1500],
        [' VALUETYPE="boolean"', "TRUE", true],
        [' VALUETYPE="numeric" TYPE="uint64"', "1", 1n],
        [' VALUETYPE="string" TYPE="uint8"', "1", 1],
    ] as const;
    for (const [attributes, text, expected] of keys) {
        const key = `<KEYBINDING NAME="K"><KEYVALUE${attributes}>${text}</KEYVALUE></KEYBINDING>`;
        const path = `<INSTANCENAME CLASSNAME="A">${key}</INSTANCENAME>`;
        const { client } = clientOf(() => result(path));
        const [found] = await all(client.instanceNames("n", "A"));
        assert.deepEqual(found?.keys[0]?.value, expected);
    }
});

test("reads values of every type as servers write them", async () => {
    const values = await valuesOf(`
        <PROPERTY NAME="a" TYPE="boolean"><VALUE>TRUE</VALUE></PROPERTY>
        <PROPERTY NAME="b" TYPE="Uint32"><VALUE> 42
        </VALUE></PROPERTY>
        <PROPERTY NAME="c" TYPE="uint64"><VALUE>18446744073709551615</VALUE></PROPERTY>
        <PROPERTY NAME="d" TYPE="sint64"><VALUE>-9223372036854775808</VALUE></PROPERTY>
        <PROPERTY NAME="e" TYPE="real32"><VALUE>1.5e-3</VALUE></PROPERTY>
        <PROPERTY NAME="f" TYPE="real64"><VALUE>-INF</VALUE></PROPERTY>
        <PROPERTY NAME="g" TYPE="datetime"><VALUE>20260501120000.000000+000</VALUE></PROPERTY>
        <PROPERTY NAME="h" TYPE="char16"><VALUE>x</VALUE></PROPERTY>
        <PROPERTY NAME="i"><VALUE>no type</VALUE></PROPERTY>
        <PROPERTY NAME="j" TYPE="string"/>
        <PROPERTY NAME="k" TYPE="string"><VALUE></VALUE></PROPERTY>
        <PROPERTY.ARRAY NAME="l" TYPE="uint8"></PROPERTY.ARRAY>
        <PROPERTY.ARRAY NAME="m" TYPE="uint8"><VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY>
        <PROPERTY NAME="n" TYPE="string" xml:lang="de"><VALUE><![CDATA[<b>]]></VALUE></PROPERTY>`);
    const time = "20260501120000.000000+000";
    assert.deepEqual(values, [
        true,
        42,
        2n ** 64n - 1n,
        -(2n ** 63n),
        0.0015,
        -Infinity,
        time,
        "x",
        "no type",
        null,
        "",
        null,
        [1, null],
        "<b>",
    ]);
});

test("reads references and embedded instances", async () => {
    const inner =
        '<INSTANCE CLASSNAME="In"><PROPERTY NAME="p" TYPE="uint8"><VALUE>5</VALUE></PROPERTY></INSTANCE>';
    const escaped = inner.replace(/</g, "&lt;");
    const values = await valuesOf(`
        <PROPERTY.REFERENCE NAME="r" REFERENCECLASS="A"><VALUE.REFERENCE>${name("2")}</VALUE.REFERENCE></PROPERTY.REFERENCE>
        <PROPERTY NAME="e" TYPE="string" EmbeddedObject="instance"><VALUE>${escaped}</VALUE></PROPERTY>
        <PROPERTY NAME="f" TYPE="string" EMBEDDEDOBJECT="object"><VALUE>${escaped}</VALUE></PROPERTY>
        <PROPERTY NAME="g" TYPE="string"><VALUE>${inner}</VALUE></PROPERTY>
        <PROPERTY.ARRAY NAME="h" TYPE="string" EmbeddedObject="instance"><VALUE.ARRAY><VALUE>${escaped}</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>
        <PROPERTY NAME="i" TYPE="string"><VALUE>${escaped}</VALUE></PROPERTY>`);
    assert.equal(pathText(values[0] as ObjectPath), 'A.Id="2"');
    for (const value of [...values.slice(1, 4), (values[4] as unknown[])[0]]) {
        assert.equal((value as Instance).className, "In");
        assert.equal(propertyOf(value as Instance, "p")?.value, 5);
    }
    assert.equal(values[5], inner); // a text stays one
});

test("reads a class with its qualifiers and methods", async () => {
    const text = `<CLASS NAME="A" SUPERCLASS="B">
        <QUALIFIER NAME="Abstract" TYPE="boolean"></QUALIFIER>
        <PROPERTY NAME="p" TYPE="uint16" CLASSORIGIN="B" PROPAGATED="true">
          <QUALIFIER NAME="ValueMap" TYPE="string"><VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY></QUALIFIER></PROPERTY>
        <METHOD NAME="m" TYPE="uint32"><PARAMETER NAME="a" TYPE="uint8"/><PARAMETER.ARRAY NAME="b" TYPE="string"/>
          <PARAMETER.REFERENCE NAME="c" REFERENCECLASS="A"/><PARAMETER.REFARRAY NAME="d" REFERENCECLASS="A"/></METHOD></CLASS>`;
    const { client } = clientOf(() => result(text));
    const definition = await client.getClass("n", "A");
    assert.equal(definition.superClass, "B");
    assert.deepEqual(definition.qualifiers, [{ name: "Abstract", type: "boolean", value: true }]);
    const [property] = definition.properties;
    assert.deepEqual([property?.classOrigin, property?.propagated], ["B", true]);
    assert.deepEqual(property?.qualifiers[0]?.value, ["1"]);
    const parameters = definition.methods[0]?.parameters ?? [];
    assert.deepEqual(
        parameters.map((parameter) => [parameter.name, parameter.type, parameter.isArray]),
        [
            ["a", "uint8", false],
            ["b", "string", true],
            ["c", "reference", false],
            ["d", "reference", true],
        ],
    );
});

test("takes the types of a method's results from its declaration where they are not said", async () => {
    const answer = reply("", "x").replace(
        /<IMETHODRESPONSE.*<\/IMETHODRESPONSE>/,
        '<METHODRESPONSE NAME="m"><RETURNVALUE><VALUE>0</VALUE></RETURNVALUE>' +
            '<PARAMVALUE NAME="Out"><VALUE>7</VALUE></PARAMVALUE>' +
            '<PARAMVALUE NAME="__proto__" PARAMTYPE="uint8"><VALUE>1</VALUE></PARAMVALUE></METHODRESPONSE>',
    );
    const { client, requests } = clientOf(() => answer);
    const method = {
        name: "m",
        type: "uint32" as const,
        propagated: false,
        qualifiers: [],
        parameters: [{ name: "out", type: "uint64" as const, isArray: false, qualifiers: [] }],
    };
    const path = { namespace: "n", className: "A", keys: [{ name: "Id", value: 'a"\u00e9' }] };
    const args = [{ name: "p", type: "string" as const, isArray: true, value: ["<", null] }];
    const { returnValue, out } = await client.invokeMethod(path, method, args);
    assert.equal(returnValue, 0);
    assert.equal(out["Out"], 7n);
    assert.deepEqual(Object.keys(out), ["Out", "__proto__"]);
    const { headers, body } = requests[0] as { headers: Headers; body: string };
    assert.equal(headers.get("CIMMethod"), "m");
    assert.equal(headers.get("CIMObject"), 'n:A.Id="a%5C"%C3%A9"');
    assert.ok(body.includes("<VALUE.ARRAY><VALUE>&lt;</VALUE><VALUE.NULL/></VALUE.ARRAY>"));
    assert.ok(body.includes("<LOCALINSTANCEPATH>"));
});

test("tells CIM errors, refusals and what is no CIM-XML apart", async () => {
    const xml = { "Content-Type": "application/xml" };
    const cases: [() => Response | string, (error: unknown) => boolean][] = [
        [
            () => reply('<ERROR CODE="6" DESCRIPTION="no &lt;fan&gt;"/>'),
            (e) => e instanceof CimError && e.code === 6 && e.message === "no <fan>",
        ],
        [
            () => reply('<ERROR CODE="5"/>'),
            (e) => e instanceof CimError && e.message === "the class does not exist",
        ],
        [
            () =>
                new Response("over\n", { status: 503, headers: { "Content-Type": "text/plain" } }),
            (e) => e instanceof HttpError && e.status === 503 && e.message === "over",
        ],
        [
            () => new Response("<html>", { status: 401, headers: { "Content-Type": "text/html" } }),
            (e) => e instanceof HttpError && e.message.includes("password"),
        ],
        [
            () => new Response("", { status: 400, headers: { CIMError: "header-mismatch" } }),
            (e) => e instanceof HttpError && e.cimError === "header-mismatch",
        ],
        [
            () =>
                new Response("", {
                    headers: { ...xml, CIMStatusCode: "2", CIMStatusCodeDescription: "no%20way" },
                }),
            (e) => e instanceof CimError && e.code === 2 && e.message === "no way",
        ],
        [
            () => new Response("<html></html>", { headers: { "Content-Type": "text/html" } }),
            (e) => e instanceof HttpError && e.message.includes("text/html"),
        ],
        [() => "<html></html>", (e) => e instanceof CimXmlError && e.message.includes("<html>")],
        [
            () => result(instance).slice(0, -5),
            (e) => e instanceof CimXmlError && e.message.includes("cut short"),
        ],
        [() => "", (e) => e instanceof CimXmlError],
        [() => result("<PROPERTY/>"), (e) => e instanceof CimXmlError],
        [
            () => new Response(new Uint8Array([0x3c, 0xff]), { headers: xml }),
            (e) => e instanceof CimXmlError && e.message.includes("UTF-8"),
        ],
    ];
    for (const [answer, expected] of cases) {
        const { client } = clientOf(answer);
        const path = { namespace: "n", className: "A", keys: [] };
        await assert.rejects(
            client.getInstance(path),
            (error) => expected(error) || assert.fail(String(error)),
        );
    }
});

test("fails or answers, whatever becomes of the bytes", async () => {
    const bytes = new TextEncoder().encode(
        result(`<VALUE.NAMEDINSTANCE>${name("é&lt;")}${instance}</VALUE.NAMEDINSTANCE>`),
    );
    const ask = async (damaged: Uint8Array<ArrayBuffer>) => {
        const { client } = clientOf(
            () => new Response(damaged, { headers: { "Content-Type": "text/xml" } }),
        );
        try {
            return (await all(client.instances("n", "A"))).length;
        } catch (error) {
            assert.ok(error instanceof CimXmlError || error instanceof CimError, String(error));
            return -1;
        }
    };
    for (let length = 0; length < bytes.length; ++length) {
        assert.equal(await ask(bytes.slice(0, length)), -1, `of ${length} bytes`);
    }
    for (let place = 0; place < bytes.length; ++place) {
        for (const byte of [0, 0x20, 0x22, 0x26, 0x2f, 0x3c, 0x3e, 0x41, 0xc3, 0xff]) {
            const damaged = bytes.slice();
            damaged[place] = byte;
            await ask(damaged);
        }
    }
});

test("lets others run while it reads ten thousand instances", async () => {
    let pauses = 0;
    let time = 0;
    const item = `<VALUE.NAMEDINSTANCE>${name()}${instance}</VALUE.NAMEDINSTANCE>`;
    const text = result(item.repeat(10_000));
    const { fetch } = server(() => text);
    // Each look at the clock, which is one piece of 16 KiB further, is 4 ms later.
    const now = () => (time += 4);
    const pause = async () => void ++pauses;
    const client = new CimClient({ fetch, now, pause });
    const sizes: number[] = [];
    for await (const batch of client.instances("n", "A")) sizes.push(batch.length);
    assert.equal(
        sizes.reduce((sum, size) => sum + size, 0),
        10_000,
    );
    const pieces = Math.ceil(text.length / 16384);
    assert.ok(pauses >= Math.floor(pieces / 4), `${pauses} pauses in ${pieces} pieces`);
    const piece = Math.ceil(16384 / item.length);
    assert.ok(Math.max(...sizes) <= 4 * piece + 1, `a batch of ${Math.max(...sizes)}`);
});

test("ends the request when nobody takes more of its reply", async () => {
    let cancelled = false;
    const encoder = new TextEncoder();
    const parts = result(
        `<VALUE.NAMEDINSTANCE>${name()}${instance}</VALUE.NAMEDINSTANCE>`.repeat(2),
    );
    const body = new ReadableStream<Uint8Array>({
        start: (controller) => controller.enqueue(encoder.encode(parts.slice(0, -40))),
        cancel: () => void (cancelled = true),
    });
    const { client } = clientOf(
        () => new Response(body, { headers: { "Content-Type": "text/xml" } }),
    );
    for await (const batch of client.instances("n", "A")) {
        assert.equal(batch.length, 2);
        break;
    }
    assert.ok(cancelled);
});

test("finds namespaces as each kind of server tells them", async () => {
    const named = (className: string, ...names: string[]) =>
        result(
            names
                .map(
                    (text) =>
                        `<INSTANCENAME CLASSNAME="${className}"><KEYBINDING NAME="Name"><KEYVALUE>${text}</KEYVALUE></KEYBINDING></INSTANCENAME>`,
                )
                .join(""),
        );
    const none = reply('<ERROR CODE="3"/>');
    const interop = clientOf((_body, headers) =>
        headers.get("CIMObject") === "root/interop"
            ? named("CIM_Namespace", "root/a", "Root/Interop")
            : none,
    );
    assert.deepEqual(await interop.client.namespaces(), ["root/a", "root/interop"]);

    const walked = clientOf((body, headers) => {
        if (!body.includes("__Namespace")) return none;
        if (headers.get("CIMObject") === "root") return named("__Namespace", "b", "c");
        return headers.get("CIMObject") === "root/b"
            ? named("__Namespace", "d")
            : named("__Namespace");
    });
    assert.deepEqual(await walked.client.namespaces(), ["root", "root/b", "root/b/d", "root/c"]);

    const silent = clientOf((body, headers) => {
        if (!body.includes("EnumerateClassNames")) return reply('<ERROR CODE="7"/>');
        return headers.get("CIMObject") === "root/cimv2" ? result("") : none;
    });
    assert.ok((await silent.client.namespaces()).includes("root/cimv2"));
});

test("writes what a value holds so that the server reads the same", async () => {
    const { client, requests } = clientOf(() => result(name()));
    const property = (
        value: Instance["properties"][number]["value"],
        type = "string" as const,
    ) => ({
        name: "p",
        type,
        isArray: Array.isArray(value),
        qualifiers: [],
        propagated: false,
        value,
    });
    const made = {
        className: "A",
        properties: [property('a<&>"\r\n'), property(null), property([])],
    };
    await client.createInstance("root/x", made);
    const body = requests[0]?.body ?? "";
    assert.ok(body.includes('<VALUE>a&lt;&amp;&gt;"&#13;\n</VALUE>'), body);
    assert.ok(body.includes('<PROPERTY NAME="p" TYPE="string"></PROPERTY>'), body);
    assert.ok(body.includes("<VALUE.ARRAY></VALUE.ARRAY>"), body);
    assert.ok(body.includes('<NAMESPACE NAME="root"/><NAMESPACE NAME="x"/>'), body);
    const hidden = { className: "A", properties: [property("\u0001")] };
    await assert.rejects(client.createInstance("n", hidden), /XML cannot carry/);
});
