import { useState } from "preact/hooks";

import type { Class, Method, Property, Qualifier } from "../../cim/model";
import { hasQualifier, nameKey, qualifierOf } from "../../cim/names";
import { unitOf, valueMapOf, valueText } from "../../cim/valueText";
import { ancestorsOf } from "../../state/classTree";
import { go, href } from "../../state/routes";
import { loadClass, loadProviders, loadTree, providersOf } from "../../state/server";
import { writing } from "../../state/settings";
import { CreateDialog } from "../forms/PropertyForm";
import { MethodList } from "../forms/MethodList";
import { Icon } from "../shared/Icon";
import { Loaded } from "../shared/Loaded";
import { useLoad } from "../shared/useLoad";
import { InstanceTable } from "../table/InstanceTable";

/** A class: what it says of itself, who serves it, and its instances. */
export function ClassView({ namespace, className }: { namespace: string; className: string }) {
    const described = useLoad(() => loadClass(namespace, className), [namespace, className]);
    return (
        <div class="page">
            {!described.value && <h1>{className}</h1>}
            <Loaded load={described} what={`Asking for ${className}`}>
                {(one) => <ClassPage namespace={namespace} described={one} />}
            </Loaded>
        </div>
    );
}

function ClassPage({ namespace, described }: { namespace: string; described: Class }) {
    const [creating, setCreating] = useState(false);
    const tree = useLoad(() => loadTree(namespace), [namespace]);
    const lineage = tree.value ? ancestorsOf(tree.value, described.name).reverse() : [];
    const subclasses = tree.value?.byName.get(nameKey(described.name))?.children ?? [];
    const is = (name: string) => hasQualifier(described, name);
    const description = qualifierOf(described, "Description")?.value;
    const version = qualifierOf(described, "Version")?.value;
    const statics = described.methods.filter((method) => hasQualifier(method, "Static"));
    return (
        <>
            <header class="page-title">
                <ol class="crumbs" aria-label="Superclasses">
                    <li>{namespace}</li>
                    {lineage.map((name) => (
                        <li key={name}>
                            <a href={href({ view: "explore", namespace, className: name })}>
                                {name}
                            </a>
                        </li>
                    ))}
                </ol>
                <h1>{described.name}</h1>
                {["Association", "Indication", "Abstract", "Deprecated", "Experimental"]
                    .filter(
                        (name) =>
                            qualifierOf(described, name) &&
                            qualifierOf(described, name)?.value !== false,
                    )
                    .map((name) => (
                        <span key={name} class="badge">
                            {name.toLowerCase()}
                        </span>
                    ))}
                {version !== undefined && <span class="muted">version {valueText(version)}</span>}
            </header>
            {description !== undefined && <p class="description">{valueText(description)}</p>}
            <ServedBy namespace={namespace} lineage={[described.name, ...[...lineage].reverse()]} />
            {!is("Indication") && (
                <section class="panel" aria-labelledby="instances">
                    <div class="toolbar section-head">
                        <h2 id="instances">Instances</h2>
                        <span class="grow" />
                        {!is("Abstract") && !is("Association") && (
                            <button
                                class="button"
                                type="button"
                                disabled={!writing.value}
                                title={writing.value ? undefined : "The write switch is off."}
                                onClick={() => setCreating(true)}
                            >
                                <Icon name="plus" />
                                Create …
                            </button>
                        )}
                    </div>
                    <InstanceTable namespace={namespace} described={described} />
                </section>
            )}
            <section class="panel" aria-labelledby="properties">
                <h2 id="properties">Properties</h2>
                {described.properties.length ? (
                    <PropertyTable namespace={namespace} described={described} />
                ) : (
                    <p class="muted">The class has no properties.</p>
                )}
            </section>
            {described.methods.length > 0 && (
                <section class="panel" aria-labelledby="methods">
                    <h2 id="methods">Methods</h2>
                    <ul class="definitions">
                        {described.methods.map((method) => (
                            <li key={method.name}>
                                <Signature namespace={namespace} method={method} />
                            </li>
                        ))}
                    </ul>
                    {statics.length > 0 && (
                        <>
                            <h3>Of the class itself</h3>
                            <MethodList
                                path={{ namespace, className: described.name, keys: [] }}
                                methods={statics}
                            />
                        </>
                    )}
                </section>
            )}
            <div class="columns">
                {subclasses.length > 0 && (
                    <section class="panel" aria-labelledby="subclasses">
                        <h2 id="subclasses">Subclasses</h2>
                        <ul class="links">
                            {subclasses.map(({ name }) => (
                                <li key={name}>
                                    <a href={href({ view: "explore", namespace, className: name })}>
                                        {name}
                                    </a>
                                </li>
                            ))}
                        </ul>
                    </section>
                )}
                <section class="panel" aria-labelledby="qualifiers">
                    <h2 id="qualifiers">Qualifiers</h2>
                    <Qualifiers qualifiers={described.qualifiers} />
                </section>
            </div>
            {creating && (
                <CreateDialog
                    namespace={namespace}
                    described={described}
                    onCreated={(path) => go({ view: "instance", path })}
                    onClose={() => setCreating(false)}
                />
            )}
        </>
    );
}

function ServedBy({ namespace, lineage }: { namespace: string; lineage: readonly string[] }) {
    const rows = useLoad(loadProviders, []);
    if (!rows.value) return null;
    const served = providersOf(rows.value, namespace, lineage);
    return (
        <p class="served">
            <span class="muted">Served by</span>{" "}
            {served.length
                ? served.map(({ className, provider, module, kinds }) => (
                      <span key={provider} class="badge tone-info">
                          {provider} ({kinds.join(", ")}) of {module}
                          {className !== lineage[0] && `, through ${className}`}
                      </span>
                  ))
                : "no provider: the instances are those of the MOF files"}
        </p>
    );
}

const countText = (count: number, what: string): string =>
    `${count} ${what}${count === 1 ? "" : "s"}`;

const typeText = (one: { type: string; isArray?: boolean; referenceClass?: string }): string =>
    `${one.type === "reference" ? `${one.referenceClass ?? ""} REF` : one.type}${one.isArray ? "[]" : ""}`;

function TypeLink({
    namespace,
    of,
}: {
    namespace: string;
    of: Pick<Property, "type" | "isArray" | "referenceClass">;
}) {
    if (of.type !== "reference" || !of.referenceClass) return <code>{typeText(of)}</code>;
    return (
        <code>
            <a href={href({ view: "explore", namespace, className: of.referenceClass })}>
                {of.referenceClass}
            </a>{" "}
            REF
            {of.isArray && "[]"}
        </code>
    );
}

function PropertyTable({ namespace, described }: { namespace: string; described: Class }) {
    const isKey = (property: Property) => hasQualifier(property, "Key");
    const ordered = [
        ...described.properties.filter(isKey),
        ...described.properties.filter((property) => !isKey(property)),
    ];
    return (
        <ul class="definitions">
            {ordered.map((property) => {
                const unit = unitOf(property);
                const values = valueMapOf(property);
                const about = qualifierOf(property, "Description")?.value;
                return (
                    <li key={property.name}>
                        <div class="definition-head">
                            <strong>{property.name}</strong>
                            <TypeLink namespace={namespace} of={property} />
                            {isKey(property) && <span class="badge tone-info">key</span>}
                            {hasQualifier(property, "Write") && <span class="badge">write</span>}
                            {hasQualifier(property, "Required") && (
                                <span class="badge">required</span>
                            )}
                            {unit && <span class="badge">in {unit}</span>}
                            {property.value !== null && (
                                <span class="muted">= {valueText(property.value, property)}</span>
                            )}
                            {property.classOrigin && property.propagated && (
                                <span class="muted origin">of {property.classOrigin}</span>
                            )}
                        </div>
                        {about !== undefined && <p>{valueText(about)}</p>}
                        {values.length > 0 && (
                            <Folded
                                title={countText(values.length, "value")}
                                open={values.length <= 4}
                            >
                                <dl class="value-map">
                                    {values.map(({ value, words }) => (
                                        <div key={value}>
                                            <dt class="number">{value}</dt>
                                            <dd>{words}</dd>
                                        </div>
                                    ))}
                                </dl>
                            </Folded>
                        )}
                        <Folded title={countText(property.qualifiers.length, "qualifier")}>
                            <Qualifiers qualifiers={property.qualifiers} />
                        </Folded>
                    </li>
                );
            })}
        </ul>
    );
}

function Signature({ namespace, method }: { namespace: string; method: Method }) {
    const about = qualifierOf(method, "Description")?.value;
    return (
        <>
            <div class="definition-head">
                <code>{method.type}</code>
                <strong>{method.name}</strong>
                <span class="muted">({method.parameters.map((one) => one.name).join(", ")})</span>
                {hasQualifier(method, "Static") && <span class="badge">static</span>}
            </div>
            {about !== undefined && <p>{valueText(about)}</p>}
            {method.parameters.length > 0 && (
                <Folded title={countText(method.parameters.length, "parameter")}>
                    <ul class="definitions">
                        {method.parameters.map((parameter) => {
                            const text = qualifierOf(parameter, "Description")?.value;
                            return (
                                <li key={parameter.name}>
                                    <div class="definition-head">
                                        <strong>{parameter.name}</strong>
                                        <TypeLink namespace={namespace} of={parameter} />
                                        <span class="muted">
                                            {[isIn(parameter) && "in", isOut(parameter) && "out"]
                                                .filter(Boolean)
                                                .join(", ")}
                                        </span>
                                    </div>
                                    {text !== undefined && <p>{valueText(text)}</p>}
                                </li>
                            );
                        })}
                    </ul>
                </Folded>
            )}
        </>
    );
}

// DSP0004: IN is TRUE and OUT is FALSE where they are not written.
const isIn = (one: { qualifiers: Qualifier[] }): boolean => qualifierOf(one, "In")?.value !== false;
const isOut = (one: { qualifiers: Qualifier[] }): boolean => hasQualifier(one, "Out");

function Qualifiers({ qualifiers }: { qualifiers: readonly Qualifier[] }) {
    if (!qualifiers.length) return <p class="muted">None.</p>;
    return (
        <dl class="value-map">
            {qualifiers.map((one) => (
                <div key={one.name}>
                    <dt>{one.name}</dt>
                    <dd>{valueText(one.value)}</dd>
                </div>
            ))}
        </dl>
    );
}

/** What is shown on demand only, and made only then. */
function Folded({
    title,
    open = false,
    children,
}: {
    title: string;
    open?: boolean;
    children: preact.ComponentChildren;
}) {
    const [shown, setShown] = useState(open);
    return (
        <details open={open} onToggle={(event) => event.currentTarget.open && setShown(true)}>
            <summary class="muted">{title}</summary>
            {shown && children}
        </details>
    );
}
