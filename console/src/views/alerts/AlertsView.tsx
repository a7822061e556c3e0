import { useEffect, useMemo, useState } from "preact/hooks";

import type { Class, Property } from "../../cim/model";
import { valueText } from "../../cim/valueText";
import { propertyOf } from "../../cim/names";
import { changes, link, startLive, store, storeChanged } from "../../live/live";
import type { SeenAlert } from "../../live/LiveStore";
import { isInterop, loadNamespaces } from "../../state/server";
import { FilterField } from "../shared/FilterField";
import { LinkState } from "../shared/LinkState";
import { LiveRows, toggled } from "../shared/LiveRows";
import { Loaded } from "../shared/Loaded";
import { TextDialog } from "../shared/TextDialog";
import { Time } from "../shared/Time";
import { useLoad } from "../shared/useLoad";
import { definitionOf } from "./definitions";
import { alertRows, messageOf, type AlertRow } from "./rows";
import { severityOf } from "./severity";
import { SubscribeForm } from "./SubscribeForm";
import { Queues, Subscriptions } from "./Subscriptions";

/** Indications as they arrive, and what makes them come here. */
export function AlertsView() {
    const namespaces = useLoad(loadNamespaces, []);
    const [turn, setTurn] = useState(0);
    useEffect(startLive, []);
    return (
        <div class="page live-page alerts-page">
            <div class="toolbar">
                <h1>Alerts</h1>
                <LinkState />
            </div>
            <div class="alerts-columns">
                <Arrivals />
                <div class="alerts-side">
                    <Loaded load={namespaces} what="Looking for the interop namespace">
                        {(names) => {
                            const interop = names.find(isInterop);
                            if (!interop) {
                                return (
                                    <p class="muted">
                                        The server has no interop namespace: nothing can be
                                        subscribed to.
                                    </p>
                                );
                            }
                            return (
                                <>
                                    <Wanted
                                        interop={interop}
                                        namespaces={names}
                                        onDone={() => setTurn((before) => before + 1)}
                                    />
                                    <Subscriptions interop={interop} turn={turn} />
                                    <Queues interop={interop} turn={turn} />
                                </>
                            );
                        }}
                    </Loaded>
                    <Forwardings />
                </div>
            </div>
        </div>
    );
}

/** The form, where the stream can be a destination. */
function Wanted(props: { interop: string; namespaces: readonly string[]; onDone: () => void }) {
    void changes.value; // the hello is in the store
    const destination = store.hello?.destination;
    if (destination) return <SubscribeForm {...props} destination={destination} />;
    if (link.value.state !== "open") return null;
    return <p class="muted">This server cannot send indications here.</p>;
}

const titles = ["Time", "Severity", "Class", "Message", "Filter"];

function Arrivals() {
    const turn = changes.value;
    const [search, setSearch] = useState("");
    const [open, setOpen] = useState<ReadonlySet<string>>(new Set());
    const rows = useMemo(
        () => alertRows(store.alerts.newestFirst(), search, open),
        [turn, search, open],
    );
    const [read, setRead] = useState<string | undefined>(undefined);
    return (
        <section class="arrivals" aria-label="Arrivals">
            <div class="toolbar">
                <h2>Arrivals</h2>
                <span class="muted" role="status">
                    {store.alertCount} since the page was opened
                </span>
                <span class="grow" />
                <FilterField value={search} onChange={setSearch} />
                <button
                    class="button"
                    type="button"
                    onClick={() => {
                        store.clearAlerts();
                        storeChanged();
                    }}
                >
                    Clear
                </button>
            </div>
            <LiveRows
                label="Alerts"
                layout="alert-columns"
                titles={titles}
                rows={rows}
                cells={alertCells}
                onToggle={(row) => setOpen(toggled(open, row.key))}
                onOpen={(row) => setRead(rowText(row))}
                empty={
                    search
                        ? "No alert has these words."
                        : "No alerts yet: what is subscribed to is shown here."
                }
            />
            {read !== undefined && <TextDialog text={read} onClose={() => setRead(undefined)} />}
        </section>
    );
}

function definitionFor({ indication }: SeenAlert): Class | undefined {
    return indication && definitionOf(indication.className);
}

function propertyText(alert: SeenAlert, property: Property): string {
    const definition = definitionFor(alert);
    return valueText(
        property.value,
        (definition && propertyOf(definition, property.name)) ?? property,
    );
}

function rowText({ alert, property, note }: AlertRow): string {
    return property ? `${property.name} = ${propertyText(alert, property)}` : (note ?? "");
}

function alertCells({ alert, property, note }: AlertRow) {
    const className = alert.indication?.className;
    const definition = definitionFor(alert);
    if (note !== undefined) return [<span class="muted">{note}</span>];
    if (property) {
        const text = propertyText(alert, property);
        return [
            <span title={text}>
                <b>{property.name}</b> = {text}
            </span>,
        ];
    }
    const severity = severityOf(alert.indication, definition);
    return [
        <Time text={alert.time} />,
        severity ? (
            <span class={`badge tone-${severity.tone}`}>
                <span class="light" aria-hidden="true" />
                {severity.words} {severity.number !== undefined && `(${severity.number})`}
            </span>
        ) : (
            ""
        ),
        className ?? <span class="tone-error">not understood</span>,
        <span title={messageOf(alert)}>{messageOf(alert)}</span>,
        alert.filter,
    ];
}

const shownForwardings = 20;

/** What the modules logged about alerts that went on to an enclosure. */
function Forwardings() {
    void changes.value;
    const lines = store.forwardings.newestFirst().slice(0, shownForwardings);
    return (
        <section class="panel" aria-label="What reached the enclosure">
            <h2>Enclosure</h2>
            {lines.length === 0 && <p class="muted">Nothing was logged about an enclosure yet.</p>}
            <ul class="forwardings">
                {lines.map((line) => (
                    <li key={line.key} class="log-line">
                        <Time text={line.time} /> <b>{line.component}</b> {line.text}
                    </li>
                ))}
            </ul>
        </section>
    );
}
