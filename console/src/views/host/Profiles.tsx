import { useMemo } from "preact/hooks";

import { isObjectPath, type Instance } from "../../cim/model";
import { pathKey, propertyOf } from "../../cim/names";
import { valueText } from "../../cim/valueText";
import { go, instanceHref } from "../../state/routes";
import { allInstances, isInterop, loadClass, loadNamespaces, loadTree } from "../../state/server";
import { GraphCanvas } from "../graph/GraphCanvas";
import type { GraphEdge } from "../graph/layout";
import { complete } from "../instance/walk";
import { Loaded } from "../shared/Loaded";
import { useLoad } from "../shared/useLoad";

interface Profile {
    key: string;
    instance: Instance;
    name: string;
    about: string;
}

interface Catalogue {
    profiles: Profile[];
    edges: GraphEdge[];
    hasClass: boolean;
}

async function readCatalogue(): Promise<Catalogue> {
    const none = { profiles: [], edges: [], hasClass: false };
    const namespace = (await loadNamespaces()).find(isInterop);
    if (!namespace || !(await loadTree(namespace)).byName.has("cim_registeredprofile")) return none;
    const instances = await allInstances(namespace, "CIM_RegisteredProfile");
    const described = await loadClass(namespace, "CIM_RegisteredProfile");
    const text = (instance: Instance, name: string) =>
        valueText(propertyOf(instance, name)?.value ?? null, propertyOf(described, name)).replace(
            / \(\d+\)$/,
            "",
        );
    const profiles = instances.flatMap((instance) => {
        if (!instance.path) return [];
        instance.path = complete(instance.path, namespace);
        const about = `${text(instance, "RegisteredOrganization")} ${text(instance, "RegisteredVersion")}`;
        return [
            {
                key: pathKey(instance.path),
                instance,
                name: text(instance, "RegisteredName"),
                about,
            },
        ];
    });
    const known = new Set(profiles.map((profile) => profile.key));
    const edges: GraphEdge[] = [];
    for (const className of ["CIM_ReferencedProfile", "PYL_ExtendsProfile"]) {
        for (const link of await allInstances(namespace, className)) {
            const end = (name: string) => {
                const value = propertyOf(link, name)?.value;
                return isObjectPath(value) ? pathKey(complete(value, namespace)) : "";
            };
            const [source, target] = [end("Dependent"), end("Antecedent")];
            if (!known.has(source) || !known.has(target)) continue;
            const dashed = className === "PYL_ExtendsProfile";
            edges.push({ id: `${className} ${source} ${target}`, source, target, dashed });
        }
    }
    return { profiles, edges, hasClass: true };
}

/** The catalogue of registered profiles, as a graph and as a list. */
export function Profiles() {
    const load = useLoad(readCatalogue, []);
    return (
        <section class="panel" aria-labelledby="profiles">
            <h2 id="profiles">Profiles</h2>
            <Loaded load={load} what="Asking for the profiles">
                {(catalogue) => <Catalogue {...catalogue} />}
            </Loaded>
        </section>
    );
}

function Catalogue({ profiles, edges, hasClass }: Catalogue) {
    const nodes = useMemo(
        () => profiles.map(({ key, name, about }) => ({ id: key, lines: [name, about] })),
        [profiles],
    );
    if (!profiles.length) {
        return (
            <p class="muted">
                {hasClass
                    ? "No profile is registered; the graph of CIM_RegisteredProfile would be here."
                    : "The interop namespace has no class CIM_RegisteredProfile, whose graph would be here."}
            </p>
        );
    }
    return (
        <>
            <p class="muted">
                {profiles.length} profiles. An arrow leads to a profile that is referenced, a dashed
                one to one that is extended.
            </p>
            <GraphCanvas
                label={`Graph of ${profiles.length} profiles; the list below has them all`}
                nodes={nodes}
                edges={edges}
                direction="LR"
                isTall
                onNode={(id) => {
                    const path = profiles.find((one) => one.key === id)?.instance.path;
                    if (path) go({ view: "instance", path });
                }}
            />
            <details>
                <summary>The profiles as a list</summary>
                <ul class="links">
                    {profiles.map(({ key, name, about, instance }) => (
                        <li key={key}>
                            <a href={instanceHref(instance.path!)}>{name}</a>{" "}
                            <span class="muted">{about}</span>
                            {linksText(key, profiles, edges)}
                        </li>
                    ))}
                </ul>
            </details>
        </>
    );
}

function linksText(key: string, profiles: readonly Profile[], edges: readonly GraphEdge[]): string {
    const names = (dashed: boolean) =>
        edges
            .filter((edge) => edge.source === key && edge.dashed === dashed)
            .map((edge) => profiles.find((one) => one.key === edge.target)!.name)
            .join(", ");
    const [references, extended] = [names(false), names(true)];
    return [references && ` – refers to ${references}`, extended && ` – extends ${extended}`]
        .filter(Boolean)
        .join("");
}
