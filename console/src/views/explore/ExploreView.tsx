import { useEffect, useState } from "preact/hooks";

import { equalNames } from "../../cim/names";
import { loadNamespaces } from "../../state/server";
import { Icon } from "../shared/Icon";
import { Loaded } from "../shared/Loaded";
import { useLoad } from "../shared/useLoad";
import { ClassTree } from "./ClassTree";
import { ClassView } from "./ClassView";

/** Namespaces and classes at the left, the class that was chosen beside it. */
export function ExploreView({
    namespace,
    className,
}: {
    namespace?: string | undefined;
    className?: string | undefined;
}) {
    const [drawer, setDrawer] = useState(!className);
    const spaces = useLoad(async () => {
        const names = await loadNamespaces();
        // Not every server tells all namespaces that it has: one that the address names may be there.
        const isTold = !namespace || names.some((name) => equalNames(name, namespace));
        return isTold ? names : [...names, namespace];
    }, [namespace]);
    useEffect(() => {
        if (className) setDrawer(false);
    }, [namespace, className]);
    return (
        <div
            class={`explore ${drawer ? "drawer-open" : ""}`}
            onKeyDown={(event) => {
                if (event.key === "Escape" && drawer) setDrawer(false);
            }}
        >
            <aside class="explore-tree" aria-label="Namespaces and classes">
                <Loaded load={spaces} what="Asking for the namespaces">
                    {(names) =>
                        !names.length ? (
                            <p class="empty">
                                The server tells of no namespace. The address #/explore/NAMESPACE
                                shows one.
                            </p>
                        ) : (
                            <ClassTree
                                namespaces={names}
                                chosen={{ namespace, className }}
                                onChoose={() => setDrawer(false)}
                            />
                        )
                    }
                </Loaded>
            </aside>
            <div class="explore-scrim" onClick={() => setDrawer(false)} />
            <div class="explore-page">
                <button
                    class="button drawer-button"
                    type="button"
                    aria-expanded={drawer}
                    onClick={() => setDrawer(!drawer)}
                >
                    <Icon name="menu" />
                    Classes
                </button>
                {namespace && className ? (
                    <ClassView
                        key={`${namespace}:${className}`}
                        namespace={namespace}
                        className={className}
                    />
                ) : (
                    <div class="page">
                        <h1>Explore</h1>
                        <p class="muted">
                            Choose a class in the tree: its definition and its instances come here.
                            “/” leads to the search.
                        </p>
                    </div>
                )}
            </div>
        </div>
    );
}
