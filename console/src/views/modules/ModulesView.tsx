import { useEffect } from "preact/hooks";

import type { CimValue, Instance } from "../../cim/model";
import { equalNames, propertyOf } from "../../cim/names";
import { href } from "../../state/routes";
import { allInstances, loadNamespaces } from "../../state/server";
import type { Tone } from "../../state/status";
import { Icon } from "../shared/Icon";
import { Loaded } from "../shared/Loaded";
import { useLoad } from "../shared/useLoad";

interface Provider {
    name: string;
    className: string;
    namespace: string;
    kinds: string;
}

interface Module {
    name: string;
    file: string;
    isLoaded: boolean;
    isIsolated: boolean;
    state: string;
    processId: string;
    starts: number;
    crashes: number;
    lastWords: string;
    findings: string[];
    providers: Provider[];
}

const lookAgain = 5000;

function value(instance: Instance, name: string): CimValue {
    return propertyOf(instance, name)?.value ?? null;
}

function text(instance: Instance, name: string): string {
    const found = value(instance, name);
    return found === null || typeof found === "object" ? "" : String(found);
}

function texts(instance: Instance, name: string): string[] {
    const found = value(instance, name);
    return Array.isArray(found) ? found.map(String) : [];
}

/** The modules with their providers; undefined where the server does not tell of them. */
async function loadModules(signal: AbortSignal): Promise<Module[] | undefined> {
    const home = (await loadNamespaces()).find((name) => equalNames(name, "root/cimhost"));
    if (!home) return undefined;
    const [modules, providers] = await Promise.all([
        allInstances(home, "CIMHOST_Module", signal),
        allInstances(home, "CIMHOST_Provider", signal),
    ]);
    return modules
        .map((module) => ({
            name: text(module, "Module"),
            file: text(module, "File"),
            isLoaded: value(module, "Loaded") === true,
            isIsolated: value(module, "Isolated") === true,
            state: text(module, "State"),
            processId: text(module, "ProcessID"),
            starts: Number(text(module, "Starts")),
            crashes: Number(text(module, "Crashes")),
            lastWords: text(module, "LastWords"),
            findings: texts(module, "Findings"),
            providers: providers
                .filter((provider) => text(provider, "Module") === text(module, "Module"))
                .map((provider) => ({
                    name: text(provider, "Provider"),
                    className: text(provider, "ClassName"),
                    namespace: text(provider, "NameSpace"),
                    kinds: texts(provider, "Kinds").join(", "),
                })),
        }))
        .sort((left, right) => left.name.localeCompare(right.name));
}

/** The modules that serve: whether they run, how they ended, what is wrong with them. */
export function ModulesView() {
    const load = useLoad(loadModules, []);
    const { reload } = load;
    useEffect(() => {
        const timer = setInterval(() => document.hidden || reload(), lookAgain);
        return () => clearInterval(timer);
    }, [reload]);
    return (
        <div class="page">
            <div class="toolbar">
                <h1>Modules</h1>
                <span class="grow" />
                <button class="button" type="button" onClick={reload}>
                    <Icon name="refresh" />
                    Refresh
                </button>
            </div>
            <Loaded load={load} what="Looking for modules">
                {(modules) => {
                    if (!modules) {
                        return <p class="empty">This server does not tell of its modules.</p>;
                    }
                    if (!modules.length) return <p class="empty">No module is registered.</p>;
                    return (
                        <div class="modules">
                            {modules.map((module) => (
                                <ModuleCard key={module.name} module={module} />
                            ))}
                        </div>
                    );
                }}
            </Loaded>
        </div>
    );
}

function toneOf({ crashes, findings, state, isLoaded }: Module): Tone {
    if (crashes > 0 || state === "paused") return "error";
    if (findings.length > 0) return "warn";
    return isLoaded ? "ok" : "unknown";
}

function loadedText({ isLoaded, starts, findings }: Module): string {
    if (isLoaded) return "yes";
    if (starts > 0) return "no, the next request starts it again";
    return findings.length ? "no" : "no, no request has needed it yet";
}

function ModuleCard({ module }: { module: Module }) {
    const { name, crashes, starts } = module;
    return (
        <section class="panel" aria-label={name}>
            <div class="module-head">
                <h2>{name}</h2>
                <span class={`badge tone-${toneOf(module)}`}>
                    <span class="light" aria-hidden="true" />
                    {module.state || (module.isLoaded ? "loaded" : "not loaded")}
                </span>
                {crashes > 0 && (
                    <span class="badge tone-error">
                        {crashes} {crashes === 1 ? "crash" : "crashes"}
                    </span>
                )}
            </div>
            <dl class="facts">
                <dt>File</dt>
                <dd>{module.file || "not found"}</dd>
                <dt>Loaded</dt>
                <dd>{loadedText(module)}</dd>
                <dt>Runs in</dt>
                <dd>
                    {module.isIsolated
                        ? `a process of its own${module.processId && `, ${module.processId}`}`
                        : "the server's process"}
                </dd>
                {module.isIsolated && (
                    <>
                        <dt>Starts</dt>
                        <dd>{starts}</dd>
                    </>
                )}
            </dl>
            {module.lastWords && (
                <>
                    <h3>Last words</h3>
                    <pre class="last-words" tabIndex={0} aria-label={`Last words of ${name}`}>
                        {module.lastWords}
                    </pre>
                </>
            )}
            {module.findings.length > 0 && (
                <>
                    <h3>Findings</h3>
                    <ul class="findings">
                        {module.findings.map((finding) => (
                            <li key={finding}>{finding}</li>
                        ))}
                    </ul>
                </>
            )}
            <Providers providers={module.providers} />
        </section>
    );
}

function Providers({ providers }: { providers: readonly Provider[] }) {
    if (!providers.length) return <p class="muted">No provider of it is registered.</p>;
    const names = new Set(providers.map(({ name }) => name));
    return (
        <details>
            <summary>
                {providers.length} {providers.length === 1 ? "class" : "classes"} by{" "}
                {[...names].join(", ")}
            </summary>
            <div class="scrolled" tabIndex={0} role="group" aria-label="Classes">
                <table class="plain">
                    <thead>
                        <tr>
                            <th scope="col">Class</th>
                            <th scope="col">Namespace</th>
                            <th scope="col">Provider</th>
                            <th scope="col">Kinds</th>
                        </tr>
                    </thead>
                    <tbody>
                        {providers.map(({ className, namespace, name, kinds }) => (
                            <tr key={`${namespace}:${className}:${name}`}>
                                <th scope="row">
                                    <a href={href({ view: "explore", namespace, className })}>
                                        {className}
                                    </a>
                                </th>
                                <td>{namespace}</td>
                                <td>{name}</td>
                                <td>{kinds}</td>
                            </tr>
                        ))}
                    </tbody>
                </table>
            </div>
        </details>
    );
}
