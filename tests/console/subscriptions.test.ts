import assert from "node:assert/strict";
import { test } from "node:test";

import { CimClient, CimError } from "../../console/src/cim/client";
import {
    queuesOf,
    subscribe,
    subscriptionsOf,
    unsubscribe,
} from "../../console/src/live/subscriptions";
import { reply, result, server } from "./replies";

const classes: Record<string, string[]> = {
    CIM_IndicationFilter: [
        "SystemCreationClassName",
        "SystemName",
        "CreationClassName",
        "Name",
        "Query",
        "QueryLanguage",
        "SourceNamespaces",
    ],
    CIM_ListenerDestinationCIMXML: ["SystemName", "CreationClassName", "Name", "Destination"],
};

function classXml(name: string): string {
    const properties = (classes[name] ?? []).map(
        (one) => `<PROPERTY NAME="${one}" TYPE="string"/>`,
    );
    return `<CLASS NAME="${name}">${properties.join("")}</CLASS>`;
}

function pathXml(className: string, name: string): string {
    return (
        `<INSTANCENAME CLASSNAME="${className}"><KEYBINDING NAME="Name">` +
        `<KEYVALUE>${name}</KEYVALUE></KEYBINDING></INSTANCENAME>`
    );
}

function namedXml(className: string, name: string, properties: Record<string, string>): string {
    const inside = Object.entries({ Name: name, ...properties })
        .map(
            ([key, value]) =>
                `<PROPERTY NAME="${key}" TYPE="string"><VALUE>${value}</VALUE></PROPERTY>`,
        )
        .join("");
    return (
        `<VALUE.NAMEDINSTANCE>${pathXml(className, name)}` +
        `<INSTANCE CLASSNAME="${className}">${inside}</INSTANCE></VALUE.NAMEDINSTANCE>`
    );
}

function subscriptionXml(filter: string, handler: string): string {
    const references = [
        ["Filter", pathXml("CIM_IndicationFilter", filter)],
        ["Handler", pathXml("CIM_ListenerDestinationCIMXML", handler)],
    ];
    const keys = references.map(
        ([name, path]) =>
            `<KEYBINDING NAME="${name}"><VALUE.REFERENCE>${path}</VALUE.REFERENCE></KEYBINDING>`,
    );
    const properties = references.map(
        ([name, path]) =>
            `<PROPERTY.REFERENCE NAME="${name}"><VALUE.REFERENCE>${path}</VALUE.REFERENCE></PROPERTY.REFERENCE>`,
    );
    const className = "CIM_IndicationSubscription";
    return (
        `<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME="${className}">${keys.join("")}</INSTANCENAME>` +
        `<INSTANCE CLASSNAME="${className}">${properties.join("")}</INSTANCE></VALUE.NAMEDINSTANCE>`
    );
}

/** A server with these instances by class; what is done to it is listed. */
function host(instances: Record<string, string> = {}, refused = "") {
    const done: string[] = [];
    const { fetch, requests } = server((body, headers) => {
        const method = headers.get("CIMMethod") ?? "";
        const className =
            /(?:CLASSNAME NAME|INSTANCE CLASSNAME|INSTANCENAME CLASSNAME)="([^"]+)"/.exec(
                body,
            )?.[1] ?? "";
        switch (method) {
            case "GetClass":
                return className in classes
                    ? result(classXml(className))
                    : reply('<ERROR CODE="6"/>');
            case "EnumerateInstances":
                return result(instances[className] ?? "");
            default:
                done.push(`${method} ${className}`);
                if (className === refused) return reply('<ERROR CODE="15" DESCRIPTION="no"/>');
                return method === "CreateInstance" ? result(pathXml(className, "made")) : reply("");
        }
    });
    return { client: new CimClient({ fetch }), done, requests };
}

const wish = {
    interop: "interop",
    namespace: "root/x",
    className: "CIM_AlertIndication",
    condition: "PerceivedSeverity > 2",
    destination: "console:",
    mark: "7",
    hostName: "here",
};

test("makes destination, filter and subscription of what their classes have", async () => {
    const { client, done, requests } = host();
    await subscribe(client, wish);
    assert.deepEqual(done, [
        "CreateInstance CIM_ListenerDestinationCIMXML",
        "CreateInstance CIM_IndicationFilter",
        "CreateInstance CIM_IndicationSubscription",
    ]);
    const bodies = requests
        .map(({ body }) => body)
        .filter((body) => body.includes("CreateInstance"));
    assert.match(bodies[0] ?? "", /<VALUE>console-page-7<\/VALUE>/);
    assert.doesNotMatch(bodies[0] ?? "", /SystemCreationClassName/);
    assert.match(
        bodies[1] ?? "",
        /SELECT \* FROM CIM_AlertIndication WHERE PerceivedSeverity &gt; 2/,
    );
    assert.doesNotMatch(bodies[1] ?? "", /NAME="SourceNamespace"/);
    assert.match(bodies[2] ?? "", /NAME="Handler" REFERENCECLASS="CIM_ListenerDestinationCIMXML"/);
});

test("takes the destination that the console has already", async () => {
    const { client, done } = host({
        CIM_ListenerDestinationCIMXML:
            namedXml("CIM_ListenerDestinationCIMXML", "other", { Destination: "console:" }) +
            namedXml("CIM_ListenerDestinationCIMXML", "console-page-1", {
                Destination: "console:",
            }),
    });
    await subscribe(client, wish);
    assert.deepEqual(done, [
        "CreateInstance CIM_IndicationFilter",
        "CreateInstance CIM_IndicationSubscription",
    ]);
});

test("takes the filter back when nothing can be subscribed", async () => {
    const { client, done } = host({}, "CIM_IndicationSubscription");
    await assert.rejects(
        subscribe(client, wish),
        (error) => error instanceof CimError && error.code === 15,
    );
    assert.equal(done.at(-1), "DeleteInstance CIM_IndicationFilter");
});

test("lists subscriptions with their query and destination, and removes its own whole", async () => {
    const { client, done } = host({
        CIM_IndicationSubscription:
            subscriptionXml("console-1", "page") + subscriptionXml("theirs", "gone"),
        CIM_IndicationFilter: namedXml("CIM_IndicationFilter", "console-1", {
            Query: "SELECT",
            SourceNamespace: "n",
        }),
        CIM_ListenerDestination: namedXml("CIM_ListenerDestinationCIMXML", "page", {
            Destination: "console:",
        }),
    });
    const [own, theirs] = await subscriptionsOf(client, "interop");
    assert.ok(own && theirs);
    assert.deepEqual(
        [own.query, own.destination, own.namespaces, own.isOwn, own.isEnabled],
        ["SELECT", "console:", ["n"], true, true],
    );
    assert.deepEqual([theirs.name, theirs.listener, theirs.isOwn], ["theirs", "gone", false]);
    await unsubscribe(client, own);
    await unsubscribe(client, theirs);
    assert.deepEqual(done, [
        "DeleteInstance CIM_IndicationSubscription",
        "DeleteInstance CIM_IndicationFilter",
        "DeleteInstance CIM_IndicationSubscription",
    ]);
});

test("reads the states of queues, and what else a service says", async () => {
    const lines = ["a: b: 5 raised, 3 sent, 1 dropped, 1 waiting; 2 retries", "all is well"];
    const values = lines.map((line) => `<VALUE>${line}</VALUE>`).join("");
    const { client } = host({
        CIM_IndicationService:
            `<VALUE.NAMEDINSTANCE>${pathXml("CIM_IndicationService", "s")}<INSTANCE CLASSNAME="CIM_IndicationService">` +
            `<PROPERTY.ARRAY NAME="StatusDescriptions" TYPE="string"><VALUE.ARRAY>${values}</VALUE.ARRAY></PROPERTY.ARRAY>` +
            "</INSTANCE></VALUE.NAMEDINSTANCE>",
    });
    assert.deepEqual(await queuesOf(client, "interop"), {
        queues: [{ listener: "a: b", raised: 5, sent: 3, dropped: 1, waiting: 1, retries: 2 }],
        lines: ["all is well"],
    });
});
