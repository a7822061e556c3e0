import { useId, useState } from "preact/hooks";

import { equalNames } from "../../cim/names";
import { checkCondition } from "../../cim/wql";
import { subscribe } from "../../live/subscriptions";
import type { ClassNode } from "../../state/classTree";
import { client, elementNamespaces, loadClass, loadTree } from "../../state/server";
import { Loaded } from "../shared/Loaded";
import { Problem } from "../shared/Problem";
import { useLoad } from "../shared/useLoad";
import { ConditionInput } from "./ConditionInput";

interface IndicationClass {
    name: string;
    level: number;
}

/** The classes of indications of a tree, each behind its ancestors. */
function indicationClasses(nodes: readonly ClassNode[], level = 0): IndicationClass[] {
    return nodes.flatMap((node) => {
        if (node.kind !== "indication") return level === 0 ? indicationClasses(node.children) : [];
        return [{ name: node.name, level }, ...indicationClasses(node.children, level + 1)];
    });
}

const usual = "CIM_AlertIndication";

/** What is to come here: a class, and a condition where not all of its indications are wanted. */
export function SubscribeForm({
    interop,
    namespaces,
    destination,
    onDone,
}: {
    interop: string;
    namespaces: readonly string[];
    destination: string;
    onDone: () => void;
}) {
    const sources = elementNamespaces(namespaces);
    const [namespace, setNamespace] = useState(sources[0] ?? interop);
    const id = useId();
    const tree = useLoad(() => loadTree(namespace), [namespace]);
    return (
        <section class="panel" aria-labelledby={`${id}-title`}>
            <h2 id={`${id}-title`}>Subscribe</h2>
            <div class="form-lines">
                <label for={`${id}-namespace`}>Namespace</label>
                <select
                    id={`${id}-namespace`}
                    class="field"
                    value={namespace}
                    onChange={(event) => setNamespace(event.currentTarget.value)}
                >
                    {(sources.length ? sources : [interop]).map((name) => (
                        <option key={name} value={name}>
                            {name}
                        </option>
                    ))}
                </select>
                <Loaded load={tree} what="Looking for classes of indications">
                    {(loaded) => (
                        <ClassAndCondition
                            key={namespace}
                            interop={interop}
                            namespace={namespace}
                            classes={indicationClasses(loaded.roots)}
                            classNames={[...loaded.byName.values()].map(({ name }) => name)}
                            destination={destination}
                            onDone={onDone}
                        />
                    )}
                </Loaded>
            </div>
        </section>
    );
}

function ClassAndCondition({
    interop,
    namespace,
    classes,
    classNames,
    destination,
    onDone,
}: {
    interop: string;
    namespace: string;
    classes: readonly IndicationClass[];
    classNames: readonly string[];
    destination: string;
    onDone: () => void;
}) {
    const first = classes.find(({ name }) => equalNames(name, usual)) ?? classes[0];
    const [className, setClassName] = useState(first?.name ?? "");
    const [condition, setCondition] = useState("");
    const [state, setState] = useState<{ busy: boolean; error?: unknown }>({ busy: false });
    const id = useId();
    const definition = useLoad(
        async () => (className ? loadClass(namespace, className) : undefined),
        [namespace, className],
    );
    if (!first) return <p class="muted">This namespace has no classes of indications.</p>;
    const known = definition.value?.name === className ? definition.value : undefined;
    const isRight = checkCondition(condition, known) === undefined;
    const submit = async (event: Event) => {
        event.preventDefault();
        if (!isRight || state.busy) return;
        setState({ busy: true });
        try {
            const mark = Date.now().toString(36).slice(-5);
            const hostName = location.hostname;
            await subscribe(client, {
                interop,
                namespace,
                className,
                condition,
                destination,
                mark,
                hostName,
            });
            setState({ busy: false });
            onDone();
        } catch (error) {
            setState({ busy: false, error });
        }
    };
    return (
        <form class="form-lines" onSubmit={submit}>
            <label for={id}>Class</label>
            <select
                id={id}
                class="field"
                size={Math.min(8, Math.max(classes.length, 2))}
                value={className}
                onChange={(event) => setClassName(event.currentTarget.value)}
            >
                {classes.map(({ name, level }) => (
                    <option key={name} value={name}>
                        {"\u00A0\u00A0".repeat(level) + name}
                    </option>
                ))}
            </select>
            <ConditionInput
                value={condition}
                definition={known}
                classNames={classNames}
                onChange={setCondition}
            />
            {state.error !== undefined && <Problem error={state.error} />}
            <div class="toolbar">
                <button class="button primary" type="submit" disabled={!isRight || state.busy}>
                    Subscribe
                </button>
                {state.busy && <span class="muted">Subscribing …</span>}
            </div>
        </form>
    );
}
