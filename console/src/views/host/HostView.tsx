import type { Class, Instance } from "../../cim/model";
import { propertyOf } from "../../cim/names";
import { valueText } from "../../cim/valueText";
import { instanceHref } from "../../state/routes";
import {
    allInstances,
    elementNamespaces,
    loadClass,
    loadNamespaces,
    loadTree,
} from "../../state/server";
import { statusOf } from "../../state/status";
import { complete, nameOf } from "../instance/walk";
import { Loaded } from "../shared/Loaded";
import { StatusBadge } from "../shared/StatusBadge";
import { useLoad } from "../shared/useLoad";
import { Profiles } from "./Profiles";
import { Sensors } from "./Sensors";

/** What is served here: the machine, how it is, its profiles and its readings. */
export function HostView() {
    return (
        <div class="page">
            <h1>Host</h1>
            <div class="columns">
                <Identity />
                <Consolidated />
            </div>
            <Sensors />
            <Profiles />
        </div>
    );
}

interface Found {
    instance: Instance;
    described: Class;
}

/** The instances of a class in all namespaces that have it; null where none has. */
async function findAll(className: string): Promise<Found[] | null> {
    const found: Found[] = [];
    let isThere = false;
    for (const namespace of elementNamespaces(await loadNamespaces())) {
        isThere ||= (await loadTree(namespace)).byName.has(className.toLowerCase());
        for (const instance of await allInstances(namespace, className)) {
            if (!instance.path) continue;
            instance.path = complete(instance.path, namespace);
            found.push({ instance, described: await loadClass(namespace, instance.className) });
        }
    }
    return isThere ? found : null;
}

const identityOf: Record<string, readonly string[]> = {
    CIM_ComputerSystem: [
        "Manufacturer",
        "Model",
        "SerialNumber",
        "UUID",
        "OperatingSystem",
        "BIOSVendor",
        "BIOSVersion",
        "ServerSystemID",
        "Dedicated",
        "EnabledState",
        "PrimaryOwnerName",
    ],
    CIM_Chassis: [
        "Manufacturer",
        "Model",
        "SerialNumber",
        "PartNumber",
        "SKU",
        "ChassisPackageType",
        "Tag",
    ],
};

function Identity() {
    const load = useLoad(async () => {
        const [systems, chassis] = await Promise.all([
            findAll("CIM_ComputerSystem"),
            findAll("CIM_Chassis"),
        ]);
        return { systems, chassis };
    }, []);
    return (
        <section class="panel" aria-labelledby="identity">
            <h2 id="identity">Identity</h2>
            <Loaded load={load} what="Asking who it is">
                {({ systems, chassis }) => (
                    <>
                        <Elements className="CIM_ComputerSystem" found={systems} />
                        <Elements className="CIM_Chassis" found={chassis} />
                    </>
                )}
            </Loaded>
        </section>
    );
}

function Elements({ className, found }: { className: string; found: Found[] | null }) {
    if (!found?.length) {
        return (
            <p class="muted">
                {found
                    ? `There is no instance of ${className}, which would be here.`
                    : `No namespace has the class ${className}, whose instances would be here.`}
            </p>
        );
    }
    return (
        <>
            {found.slice(0, 4).map(({ instance, described }) => {
                const status = statusOf(instance, described);
                return (
                    <div key={instance.path} class="identity">
                        <h3>
                            <a href={instanceHref(instance.path!)}>
                                {nameOf({ path: instance.path!, instance })}
                            </a>{" "}
                            <span class="muted">{instance.className}</span>{" "}
                            {status && <StatusBadge status={status} />}
                        </h3>
                        <dl class="value-map">
                            {identityOf[className]!.map((name) => {
                                const value = propertyOf(instance, name)?.value ?? null;
                                const text = valueText(value, propertyOf(described, name));
                                return (
                                    text && (
                                        <div key={name}>
                                            <dt>{name}</dt>
                                            <dd>{text}</dd>
                                        </div>
                                    )
                                );
                            })}
                        </dl>
                    </div>
                );
            })}
            {found.length > 4 && (
                <p class="muted">
                    and {found.length - 4} more of {className}
                </p>
            )}
        </>
    );
}

function Consolidated() {
    const load = useLoad(() => findAll("PYL_ConsolidatedStatus"), []);
    return (
        <section class="panel" aria-labelledby="status">
            <div class="toolbar section-head">
                <h2 id="status">Consolidated status</h2>
                <span class="grow" />
                <button class="button" type="button" disabled={load.busy} onClick={load.reload}>
                    Refresh
                </button>
            </div>
            <Loaded load={load} what="Asking how it is">
                {(found) => <Statuses found={found} />}
            </Loaded>
        </section>
    );
}

function Statuses({ found }: { found: Found[] | null }) {
    if (!found?.length) {
        return (
            <p class="muted">
                {found
                    ? "There is no instance of PYL_ConsolidatedStatus, which would be here."
                    : "No namespace has the class PYL_ConsolidatedStatus, whose light would be here."}
            </p>
        );
    }
    const reporting = ({ instance }: Found) =>
        propertyOf(instance, "ReportingClass")?.value ?? null;
    const whole = found.find((one) => reporting(one) === null);
    const parts = found.filter((one) => one !== whole);
    const status = whole && statusOf(whole.instance, whole.described);
    return (
        <>
            {whole && status && (
                <p class={`whole-status tone-${status.tone}`}>
                    <span class="light" aria-hidden="true" />
                    <a href={instanceHref(whole.instance.path!)}>{status.words}</a>
                </p>
            )}
            {parts.length ? (
                <dl class="value-map">
                    {parts.map((one) => {
                        const state = statusOf(one.instance, one.described);
                        const posted = propertyOf(one.instance, "LastPosted");
                        return (
                            <div key={one.instance.path}>
                                <dt>
                                    <a href={instanceHref(one.instance.path!)}>
                                        {String(reporting(one))}
                                    </a>
                                </dt>
                                <dd>
                                    {state && <StatusBadge status={state} />}{" "}
                                    <span class="muted">
                                        {posted &&
                                            valueText(
                                                posted.value,
                                                propertyOf(one.described, "LastPosted"),
                                            )}
                                    </span>
                                </dd>
                            </div>
                        );
                    })}
                </dl>
            ) : (
                <p class="muted">No class has posted a status since the object manager started.</p>
            )}
        </>
    );
}
