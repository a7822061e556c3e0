import { useState } from "preact/hooks";

import {
    isInstance,
    isObjectPath,
    type CimScalar,
    type Class,
    type Instance,
    type ObjectPath,
    type Property,
} from "../../cim/model";
import { hasQualifier, named, pathText, propertyOf, qualifierOf } from "../../cim/names";
import { isReading, readingUnitOf } from "../../cim/readingUnit";
import { shownScalar, unitOf, valueText, type Described } from "../../cim/valueText";
import { href, instanceHref, go } from "../../state/routes";
import { client, loadClass } from "../../state/server";
import { writing } from "../../state/settings";
import { statusOf } from "../../state/status";
import { MethodList } from "../forms/MethodList";
import { ModifyDialog } from "../forms/PropertyForm";
import { Question } from "../forms/Question";
import { Icon } from "../shared/Icon";
import { Loaded } from "../shared/Loaded";
import { StatusBadge } from "../shared/StatusBadge";
import { useLoad } from "../shared/useLoad";
import { copy } from "../shared/VirtualGrid";
import { Associations } from "./Associations";
import { nameOf } from "./walk";

/** One instance: its values, what it is associated with, what can be done with it. */
export function InstanceView({ path }: { path: ObjectPath }) {
    const load = useLoad(async (signal) => {
        const [instance, described] = await Promise.all([
            client.getInstance(path, { signal }),
            loadClass(path.namespace ?? "", path.className),
        ]);
        return { instance, described };
    }, []);
    const namespace = path.namespace ?? "";
    return (
        <div class="page">
            <header class="page-title">
                <ol class="crumbs" aria-label="Where it is">
                    <li>{namespace}</li>
                    <li>
                        <a href={href({ view: "explore", namespace, className: path.className })}>
                            {path.className}
                        </a>
                    </li>
                </ol>
                <h1>
                    {nameOf({ path, ...(load.value ? { instance: load.value.instance } : {}) })}
                </h1>
                {load.value && statusOf(load.value.instance, load.value.described) && (
                    <StatusBadge status={statusOf(load.value.instance, load.value.described)!} />
                )}
                <code class="muted path">{pathText(path)}</code>
            </header>
            <Loaded load={load} what="Asking for the instance">
                {({ instance, described }) => (
                    <InstanceCard
                        {...{ path, instance, described, busy: load.busy, reload: load.reload }}
                    />
                )}
            </Loaded>
        </div>
    );
}

function InstanceCard({
    path,
    instance,
    described,
    busy,
    reload,
}: {
    path: ObjectPath;
    instance: Instance;
    described: Class;
    busy: boolean;
    reload: () => void;
}) {
    const [asking, setAsking] = useState<"modify" | "delete">();
    const [said, setSaid] = useState("");
    const methods = described.methods.filter((method) => !hasQualifier(method, "Static"));
    const off = writing.value ? undefined : "The write switch is off.";
    return (
        <>
            <div class="toolbar">
                <button class="button" type="button" disabled={busy} onClick={reload}>
                    <Icon name="refresh" />
                    Refresh
                </button>
                <button
                    class="button"
                    type="button"
                    onClick={() =>
                        void copy(pathText(path)).then((well) =>
                            setSaid(
                                well
                                    ? "Copied."
                                    : "This browser lets nobody write to the clipboard here.",
                            ),
                        )
                    }
                >
                    <Icon name="copy" />
                    Path
                </button>
                <button
                    class="button"
                    type="button"
                    disabled={!writing.value}
                    title={off}
                    onClick={() => setAsking("modify")}
                >
                    <Icon name="edit" />
                    Change …
                </button>
                <button
                    class="button danger"
                    type="button"
                    disabled={!writing.value}
                    title={off}
                    onClick={() => setAsking("delete")}
                >
                    <Icon name="trash" />
                    Delete …
                </button>
                <span class="muted" role="status">
                    {said}
                </span>
            </div>
            <div class="instance">
                <Values instance={instance} described={described} />
                <div class="instance-side">
                    <Associations path={path} instance={instance} />
                    {methods.length > 0 && (
                        <section class="panel" aria-labelledby="methods">
                            <h2 id="methods">Methods</h2>
                            <MethodList path={path} methods={methods} />
                        </section>
                    )}
                </div>
            </div>
            {asking === "modify" && (
                <ModifyDialog
                    {...{ path, instance, described }}
                    onModified={reload}
                    onClose={() => setAsking(undefined)}
                />
            )}
            {asking === "delete" && (
                <Question
                    title="Delete this instance?"
                    yes="Delete"
                    danger
                    onYes={async () => {
                        await client.deleteInstance(path);
                        go({
                            view: "explore",
                            namespace: path.namespace ?? "",
                            className: path.className,
                        });
                    }}
                    onClose={() => setAsking(undefined)}
                >
                    <p>
                        <code>{pathText(path)}</code>
                    </p>
                </Question>
            )}
        </>
    );
}

const isEmpty = ({ value }: Property): boolean =>
    value === null || (Array.isArray(value) && !value.length);

function Values({ instance, described }: { instance: Instance; described: Class }) {
    // In the order of the class; what only the instance has stands behind.
    const baseUnits = propertyOf(described, "BaseUnits");
    const unit = baseUnits && readingUnitOf(instance, baseUnits);
    const declared = described.properties.map((one) => ({
        ...one,
        value: propertyOf(instance, one.name)?.value ?? null,
        ...(unit && isReading(one.name) ? { unit } : {}),
    }));
    const all = [...declared, ...instance.properties.filter((one) => !named(declared, one.name))];
    const keys = all.filter((one) => hasQualifier(one, "Key"));
    const others = all.filter((one) => !hasQualifier(one, "Key"));
    const empty = others.filter(isEmpty);
    return (
        <section class="panel values" aria-labelledby="values">
            <h2 id="values">Values</h2>
            <h3>Keys</h3>
            <PropertyRows properties={keys} />
            <h3>Properties</h3>
            <PropertyRows properties={others.filter((one) => !isEmpty(one))} />
            {empty.length > 0 && (
                <details>
                    <summary class="muted">{empty.length} without a value</summary>
                    <PropertyRows properties={empty} />
                </details>
            )}
        </section>
    );
}

function PropertyRows({ properties }: { properties: readonly Property[] }) {
    return (
        <ul class="property-rows">
            {properties.map((property) => (
                <PropertyRow key={property.name} property={property} />
            ))}
        </ul>
    );
}

function PropertyRow({ property }: { property: Property }) {
    const [told, setTold] = useState(false);
    const about = qualifierOf(property, "Description")?.value;
    const unit = unitOf(property);
    return (
        <li>
            <div class="property-row">
                <button
                    class="property-name"
                    type="button"
                    aria-expanded={told}
                    title="What it means"
                    onClick={() => setTold(!told)}
                >
                    {property.name}
                </button>
                <div class="property-value">
                    <Value property={property} />
                </div>
            </div>
            {told && (
                <div class="property-about">
                    <code>
                        {property.type === "reference"
                            ? `${property.referenceClass ?? ""} REF`
                            : property.type}
                        {property.isArray && "[]"}
                    </code>
                    {unit && <span class="muted"> in {unit}</span>}
                    {property.classOrigin && <span class="muted"> of {property.classOrigin}</span>}
                    <p>
                        {about === undefined
                            ? "The schema has no description of it."
                            : valueText(about)}
                    </p>
                </div>
            )}
        </li>
    );
}

function Value({ property }: { property: Property }) {
    const { value } = property;
    if (value === null) return <span class="muted">NULL</span>;
    if (!Array.isArray(value)) return <One value={value} described={property} />;
    if (!value.length) return <span class="muted">an empty array</span>;
    return (
        <ol class="array">
            {value.map((one, index) => (
                <li key={index}>
                    {one === null ? (
                        <span class="muted">NULL</span>
                    ) : (
                        <One value={one} described={property} />
                    )}
                </li>
            ))}
        </ol>
    );
}

function One({ value, described }: { value: CimScalar; described: Described }) {
    if (isObjectPath(value)) return <a href={instanceHref(value)}>{pathText(value)}</a>;
    if (isInstance(value)) return <Embedded instance={value} />;
    if (value === "") return <span class="muted">an empty text</span>;
    const { words, raw } = shownScalar(value, described);
    return (
        <>
            <span class="words">{words}</span>
            {raw !== undefined && <span class="raw"> {raw}</span>}
        </>
    );
}

function Embedded({ instance }: { instance: Instance }) {
    return (
        <details>
            <summary>{instance.className}</summary>
            <PropertyRows properties={instance.properties} />
        </details>
    );
}
