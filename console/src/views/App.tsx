import { useEffect, useRef } from "preact/hooks";

import { isObjectPath } from "../cim/model";
import { pathKey } from "../cim/names";
import { href, route, type Route } from "../state/routes";
import { AlertsView } from "./alerts/AlertsView";
import { ExploreView } from "./explore/ExploreView";
import { Header } from "./Header";
import { HostView } from "./host/HostView";
import { InstanceView } from "./instance/InstanceView";
import { ModulesView } from "./modules/ModulesView";
import { RequestsView } from "./requests/RequestsView";

export function App() {
    const shown = route.value;
    const main = useRef<HTMLElement>(null);
    const opened = useRef(href(shown));

    // Who follows a link reads on from the head of what it leads to.
    useEffect(() => {
        const now = href(shown);
        if (now === opened.current) return;
        const onlyClass = shown.view === "explore" && opened.current.startsWith("#/explore");
        opened.current = now;
        document.title = `${titleOf(shown)} – console`;
        main.current?.scrollTo(0, 0);
        if (!onlyClass) main.current?.focus({ preventScroll: true });
    }, [shown]);

    return (
        <div class="shell">
            <button class="skip" type="button" onClick={() => main.current?.focus()}>
                Skip to the content
            </button>
            <Header />
            <main class="main" tabIndex={-1} ref={main}>
                <View shown={shown} />
            </main>
            {/* cytoscape looks for an element of this name before it adds a style that our policy forbids. */}
            <span id="__________cytoscape_stylesheet" hidden />
        </div>
    );
}

function View({ shown }: { shown: Route }) {
    switch (shown.view) {
        case "host":
            return <HostView />;
        case "explore":
            return <ExploreView namespace={shown.namespace} className={shown.className} />;
        case "instance":
            return <InstanceView key={pathKey(shown.path)} path={shown.path} />;
        case "alerts":
            return <AlertsView />;
        case "requests":
            return <RequestsView />;
        case "modules":
            return <ModulesView />;
    }
}

function titleOf(shown: Route): string {
    if (shown.view === "explore") return shown.className ?? shown.namespace ?? "Explore";
    if (shown.view !== "instance") return shown.view[0]!.toUpperCase() + shown.view.slice(1);
    const last = shown.path.keys.at(-1)?.value;
    return `${shown.path.className} ${last === undefined || isObjectPath(last) ? "" : String(last)}`;
}
